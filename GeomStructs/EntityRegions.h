// Regions of the drawing as lines.
#pragma once

class AcDbEntity;

namespace TamLib {

class PolyLine;

// The first outer outline of a region, in place of all that `line` holds, box and offset too; arcs
// become their chords. False, and `line` is unchanged, when the host gives no outline: it may know
// the body of a region no better than to keep it. The entity stays open.
bool ReadRegion(const AcDbEntity* region, PolyLine& line);

// Whether an outline of the region can be had.
bool HasOutline(const AcDbEntity* region);

}  // namespace TamLib
