#include "GeomStructs/EntityRegions.h"

#include "GeomStructs/BrepEdges.h"
#include "GeomStructs/PolyArray.h"

namespace TamLib {

// The status is not looked at: what was read before a failure may hold the outline.
bool ReadRegion(const AcDbEntity* region, PolyLine& line) {
    PolyArray outlines;
    ARXGetBrepEdges(region, /*outerOnly=*/true, outlines);
    if (outlines.count == 0) return false;
    line = *outlines.data[0];
    return true;
}

bool HasOutline(const AcDbEntity* region) {
    PolyLine outline;
    return ReadRegion(region, outline);
}

}  // namespace TamLib
