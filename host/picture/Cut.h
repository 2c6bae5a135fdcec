// Paths cut to a rectangle. Renderers calculate with numbers of limited size: lines that run far
// out of the picture come out anywhere, unless they are cut before.
#pragma once

#include "host/editor/PlanFigure.h"
#include "host/picture/Path.h"

namespace host::picture {

// Whether all points of the path (x and y) are in the rectangle.
bool isWithin(const Path& path, const editor::PlanBox& box);

// What is left of a path (x and y) near the rectangle: straight pieces end at its border, curves
// not further outside than it is wide. Nothing for a path with coordinates
// that are no numbers or beyond 1e99.
Path cutTo(const editor::PlanBox& box, const Path& path);

// The parts of the polygons of a path that lie in the rectangle, each closed. A polygon begins
// where the path is moved to; curves are taken as their chords.
Path polygonCutTo(const editor::PlanBox& box, const Path& path);

}  // namespace host::picture
