// What a command did to a drawing, read from the undo log: texts and symbols that were turned, and
// everything else. For reports and pictures; nothing here opens an object.
#pragma once

#include <dbid.h>
#include <gepnt3d.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

class AcDbDatabase;

namespace host::database {

// How a text or a symbol stands.
struct Stance {
    double degrees = 0.0;   // group 50 as saving leaves or writes it
    AcGePoint3d insertion;  // groups 10, 20 and 30, in the entity's own plane
};

// To the bit.
bool same(const Stance& a, const Stance& b);

// How many texts and symbols were turned and how many entities were left: one sentence for all
// places that tell it.
struct TurnCounts {
    std::size_t turned = 0;
    std::size_t unchanged = 0;  // of those turned: to where they stood
    std::size_t left = 0;

    std::string text() const;  // "99 turned (26 stood so already), 868 left"
};

// An AcDbText or AcDbBlockReference, of exactly that class, whose rotation was set and nothing
// else; perhaps to what it was.
struct Turned {
    AcDbObjectId entity;
    Stance before, after;
};

struct GroupChanges {
    std::vector<Turned> turned;        // in the order in which they were first changed
    std::vector<AcDbObjectId> others;  // changed otherwise, made or erased
};

// The changes of a group of the undo log (UndoLog::beginGroup), as the drawing has them now;
// nothing for a group that does not stand.
GroupChanges changesOf(const AcDbDatabase& database, std::uint64_t group);

// Whether a group's changes are in the drawing: neither undone nor rolled back.
bool stands(const AcDbDatabase& database, std::uint64_t group);

// Where a text or symbol hangs, in world coordinates: the insertion point of symbols, of paragraphs
// and of texts that stand on the baseline at the left or lie between two points, the alignment
// point of other texts. None for everything else, and where a coordinate is no number.
std::optional<AcGePoint3d> hangingPoint(AcDbObjectId entity);

// What is written in a text, the tag of an attribute or of its definition, the name of a block
// reference's block; empty for everything else.
std::wstring wording(AcDbObjectId entity);

}  // namespace host::database
