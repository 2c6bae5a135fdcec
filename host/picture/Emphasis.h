// What makes a change seen at once: the grounds below what was turned, and where the picked line
// leads. The elements are those of the group "model", each on a line of its own.
#pragma once

#include <dbid.h>

#include <cstdint>
#include <string>

#include "host/picture/Look.h"
#include "host/picture/Sheet.h"

namespace host::picture {

// Whether a text or symbol that was turned, and whose insertion point moved by `moved`, points
// where it pointed, to 0.05 degrees, and hangs where it hung, to 0.05 mm on paper.
bool looksAsBefore(const Sheet& sheet, const Piece& before, const Piece& now, double moved);

// Whether a box is smaller than half a millimetre on paper, so that its ground is a ring.
bool hasRing(const Sheet& sheet, const PlanBox& box);

// The ground of an entity with a box: of a text its letters' box as it lies, of anything else one
// along the axes with a margin; a ring around what is tiny. `handle` 0: none. Nothing for an empty
// box.
std::string groundOf(const Sheet& sheet, const Piece& piece, const PlanBox& box,
                     std::uint64_t handle, bool isUnchanged);

// Arrowheads along a picked line with a box, in its direction, and a ring around one below 8 mm on
// paper.
std::string directionMarks(const Sheet& sheet, AcDbImpDatabase& database, AcDbObjectId line,
                           const PlanBox& box);

}  // namespace host::picture
