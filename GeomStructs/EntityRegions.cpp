#include "GeomStructs/EntityRegions.h"

#include "GeomStructs/BrepEdges.h"
#include "GeomStructs/PolyArray.h"

namespace TamLib {

// The status is not looked at: what was read before a failure may hold the outline.
void ReadRegion(const AcDbEntity* region, PolyLine& line) {
    PolyArray outlines;
    ARXGetBrepEdges(region, /*outerOnly=*/true, outlines);
    if (outlines.count != 0) line = *outlines.data[0];
}

}  // namespace TamLib
