// Regions of the drawing as lines.
#pragma once

class AcDbEntity;

namespace TamLib {

class PolyLine;

// The first outer outline of a region, in place of all that `line` holds, box and offset too; arcs
// become their chords. `line` is unchanged when the host gives no outline: it may know the body of
// a region no better than to keep it. The entity stays open.
void ReadRegion(const AcDbEntity* region, PolyLine& line);

}  // namespace TamLib
