// The account of a session: which commands were run on the open drawing, what each of them turned
// and what it left, and why. Reports and pictures are made from it.
//
// It is kept by what the host sees: the picks and selections handed to a command, and the changes
// that the command made. Texts are UTF-8, angles degrees, points world coordinates unless said
// otherwise. Ids hold while the drawing is open.
#pragma once

#include <dbid.h>
#include <gepnt3d.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/database/Turning.h"
#include "host/dxf/Document.h"
#include "host/editor/Session.h"

namespace host::console {

// Why an entity was not turned.
enum class Reason {
    lockedLayer,
    classNotTurned,  // EntityNote::className tells which
    arrayInsert,     // a block reference with columns or rows
    attributeDefinition,
    notOpened,  // LeftEntity::detail tells why, when the host knows
    erased,
    noAngle,  // the direction of the line is no number there
};

constexpr std::array<Reason, 7> allReasons = {
    Reason::lockedLayer, Reason::classNotTurned, Reason::arrayInsert, Reason::attributeDefinition,
    Reason::notOpened,   Reason::erased,         Reason::noAngle};

// How many entities were left for each of allReasons.
using ReasonCounts = std::array<std::size_t, allReasons.size()>;

// Which entity it is.
struct EntityNote {
    AcDbObjectId id;
    std::string handle;     // upper case hexadecimal; empty in a drawing without handles
    std::string className;  // "AcDbText"
    std::string type;       // "TEXT", as the drawing names it
    std::string layer;
    std::string wording;  // database::wording: a text's words, a symbol's block
};

// The entity that was picked to give the direction.
struct PickedLine : EntityNote {
    std::optional<AcGePoint3d> point;   // where it was picked; none when it was named
    std::vector<AcGePoint3d> vertices;  // as the command reads it; none when it can't be read
};

struct TurnedEntity : EntityNote {
    // Group 50, and groups 10, 20, 30 in the entity's own plane, before the command and after it.
    // The insertion moves with texts that hang on an alignment point. A turned entity may have
    // been turned to where it stood: both are the same then.
    database::Stance before, after;
    AcGePoint3d hangsAt;         // the point whose nearest segment it follows
    std::optional<int> segment;  // that segment of the line, counted from 0
    double distance = 0.0;       // to it, in plan; means nothing without `segment`
};

struct LeftEntity : EntityNote {
    std::optional<AcGePoint3d> hangsAt;  // of texts and symbols
    Reason reason = Reason::classNotTurned;
    std::string detail;    // more about the reason, a part of a sentence; may be empty
    bool selected = true;  // false: found by the selection, which left it out for its locked layer
};

// One run of a command of a module.
struct CommandRun {
    std::string command;  // "ZEPTALIGNENTITIES" as the module registered it
    std::string where;    // "RUN.scr, line 3"; empty when no script called it
    editor::CommandResult::End end = editor::CommandResult::End::done;
    std::string exception;             // what stopped it, with End::exceptionLeft
    std::optional<PickedLine> line;    // none when the pick got nothing
    std::optional<std::string> reply;  // to its last question for a text; none when not answered
    std::size_t selected = 0;          // entities handed to the command
    std::vector<TurnedEntity> turned;  // in the order of the selection
    std::vector<LeftEntity> left;      // likewise, then those that were not selected
    std::size_t otherChanges = 0;      // entities changed otherwise, made or erased
    // Undone (and not done again), or rolled back because of the exception: nothing of it is in the
    // drawing. `turned` and `left` are empty then.
    bool takenBack = false;
    std::uint64_t undoGroup = 0;  // in the drawing's undo log; 0: it could change nothing
};

// What the runs that stand came to in the end: each entity once, however many of them met it. Holds
// while the runs do.
struct Outcome {
    struct Turned {
        const TurnedEntity* first;  // as the first run that turned it tells of it
        const TurnedEntity* last;
        bool stoodSo() const { return same(first->before, last->after); }
    };

    std::vector<Turned> turned;           // in the order in which they were first turned
    std::vector<const LeftEntity*> left;  // turned by none; as the last run that left it tells
    std::size_t otherChanges = 0;         // entities changed otherwise, made or erased

    database::TurnCounts counts() const;
    ReasonCounts leftByReason() const;

    // "99 turned (26 stood so already), 868 left", and ", 3 changed otherwise" when there are any.
    std::string text() const;
    // The same with reasons: "68 turned, 30 left: 2 locked layer, 28 class not turned".
    std::string textWithReasons() const;
};

Outcome outcomeOf(const CommandRun& run);

// What a run came to, in the sentence that follows it in a session: "68 turned, 30 left: 2 locked
// layer, 28 class not turned." Where nothing was turned it names the classes. Empty for a run that
// neither selected nor turned anything, and for one that an exception has stopped.
std::string sentenceOf(const CommandRun& run);

// What is odd in a drawing that was read all the same.
struct Findings {
    std::vector<dxf::Finding> all;
    std::size_t omitted = 0;  // beyond these

    std::size_t count() const { return all.size() + omitted; }
    std::string text() const;  // "line 33: the drawing has no HEADER section, and 1 more"; or empty
};

Findings findingsOf(const dxf::Document& drawing);

struct Record {
    std::string drawing;  // the name that it was opened by
    std::string release;  // "R2000"; empty when the drawing does not tell
    std::string version;  // the same in the drawing's own words, "AC1015"
    Findings findings;
    std::vector<CommandRun> runs;

    std::size_t selected() const;  // handed to the runs that stand; twice, when to two of them
    Outcome outcome() const;       // of all of them
};

class Account {
  public:
    // Takes note of a command that has ended, right after it, and gives the note; it holds until
    // the next one. Commands of the host itself are none: null.
    const CommandRun* hear(const editor::Session& session, const editor::CommandResult& result);

    // Another drawing has been opened.
    void forget() { runs_.clear(); }

    // What stands now in the session's drawing, which is open.
    Record record(const AcDbDatabase& drawing) const;

  private:
    std::vector<CommandRun> runs_;
};

// "locked layer", "class not turned" and so on, for people.
std::string described(Reason reason);

// "lockedLayer", "classNotTurned" and so on, for machines.
const char* keyOf(Reason reason);

}  // namespace host::console
