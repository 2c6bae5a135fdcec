// Chains of corners put together by their ends.
#pragma once

#include <gepnt3d.h>

#include <vector>

namespace host::database {

using Corners = std::vector<AcGePoint3d>;

// The longest distance from the first corner; 0 without one.
double sizeOf(const Corners& corners);

// How far apart are points that meet, as part of the size of what they belong to.
constexpr double kMeeting = 1e-6;

// Whether two points meet, of something so large.
bool meet(const AcGePoint3d& a, const AcGePoint3d& b, double size);

// Puts chains of two corners or more, all of them finite, together until no end meets another, to
// the measure of the larger chain. Each in its turn takes in the first of the others that meets
// its end, otherwise its beginning, for which it is turned round; then the first of all others
// again. Rings, whose own ends meet, are left alone. Intended: where more than two ends meet, that
// is all that decides, so that a ring may be lost to a chain that leads away from it.
// Takes time in proportion to the corners, save for ends crowded within a millionth of the extent
// of everything.
void joinChains(std::vector<Corners>& chains);

}  // namespace host::database
