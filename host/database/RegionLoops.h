// The closed plane loops that curves make, which bound regions.
#pragma once

#include <gepnt3d.h>
#include <gevec3d.h>

#include <vector>

class AcDbCurve;

namespace host::database {

// A circle, or a polygon when it has corners; these are in the world's coordinates, the first one
// not repeated, counter-clockwise about the normal.
struct RegionLoop {
    AcGePoint3d center;
    AcGeVector3d normal = AcGeVector3d::kZAxis;
    double radius = 0.0;
    std::vector<AcGePoint3d> corners;
};

// Circles with a radius above 0, closed polylines of straight segments, and lines and open
// polylines that chain into rings, ends meeting within a millionth of the size of what they belong
// to. Only what lies in one plane, to the same measure, and has an area. Whether a loop crosses
// itself is not looked at. Everything else is passed over.
std::vector<RegionLoop> regionLoops(const std::vector<const AcDbCurve*>& curves);

}  // namespace host::database
