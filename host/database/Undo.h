// Undoing: what each command changed, restored exactly.
//
// Changes are collected in groups. A command is one group; groups may nest (a script around its
// commands), and the outer one is then undone as a whole once it has ended. Changes made outside of
// any group form a group of their own up to the next one. Undoing gives every object the fields it
// had, so that saving writes the bytes of before.
#pragma once

#include <dbmain.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/database/Fields.h"

namespace host::database {

class UndoLog {
  public:
    explicit UndoLog(AcDbImpDatabase& database) : database_(database) {}

    // Gives the group's number, which no other group of the log ever has; never 0.
    std::uint64_t beginGroup(std::wstring name);
    void endGroup();
    // Takes the innermost open group back and drops it.
    void rollback();
    // Undoes the last step that has ended, inside the innermost open group if there is one; false
    // when there is none. A group that has changed nothing is no step.
    bool undo();
    // Does again what was undone last; false when nothing was, or something has changed since.
    bool redo();

    std::size_t openGroups() const { return open_.size(); }
    std::size_t undoSteps() const;
    // The step that undo() or redo() would take; none when there is none.
    struct StepNote {
        std::wstring name;         // of its group; empty for changes outside of any
        std::size_t entities = 0;  // how many it changed, made or erased
    };
    std::optional<StepNote> undoStep() const;
    std::optional<StepNote> redoStep() const;

    // Notes an object as it is before a change; once for each group is enough.
    void aboutToChange(AcDbObject& object);

    // Whether the group's changes are in the drawing: neither undone nor rolled back.
    bool stands(std::uint64_t group) const;
    // What each object was that the group, or a group inside it, has changed, in the order of the
    // first changes; nothing when the group does not stand. Holds until the log changes.
    struct Former {
        std::uint32_t object;
        const Fields* fields;
        bool erased;
    };
    std::vector<Former> formerOf(std::uint64_t group) const;

  private:
    // An object as it was, or a whole group that ended inside another.
    struct Step {
        std::wstring name;
        std::uint64_t serial = 0;  // of a group
        bool closed = true;        // a loose step takes further changes made outside of groups
        std::uint32_t object = 0;
        std::unique_ptr<Fields> fields;  // null for a group
        bool erased = false;
        std::vector<Step> steps;
    };

    static bool changesNothing(const Step& step);
    // The last step that undo() can take, counted from 0; none when there is none.
    std::optional<std::size_t> lastStep() const;
    StepNote noteOf(const Step& step) const;
    std::vector<Step>& level();
    const std::vector<Step>& level() const;
    Step& currentGroup();
    static const Step* findGroup(const std::vector<Step>& steps, std::uint64_t group);
    const Step* findGroup(std::uint64_t group) const;
    static void collect(const Step& group, std::vector<Former>& former);
    void exchange(Step& step, bool backwards);
    void closeLoose();

    AcDbImpDatabase& database_;
    std::uint64_t lastSerial_ = 0;
    std::vector<Step> done_;
    std::vector<Step> open_;
    std::vector<Step> undone_;
};

// The same for whom the database is no more than an AcDbDatabase.
std::uint64_t beginGroup(AcDbDatabase& database, std::wstring name);
void endGroup(AcDbDatabase& database);
void rollback(AcDbDatabase& database);
bool undo(AcDbDatabase& database);
bool redo(AcDbDatabase& database);
UndoLog& undoLog(AcDbDatabase& database);

}  // namespace host::database
