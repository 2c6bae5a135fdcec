// The closed plane loops that curves make, which bound regions.
#pragma once

#include <gepnt3d.h>
#include <gevec3d.h>

#include <vector>

class AcDbCurve;

namespace host::database {

// Lengths below are none to the modeller of bodies.
constexpr double kShortestEdge = 1e-6;

// A circle, or a polygon when it has corners; these are in the world's coordinates, the first one
// not repeated, counter-clockwise about the normal.
struct RegionLoop {
    AcGePoint3d center;
    AcGeVector3d normal = AcGeVector3d::kZAxis;
    double radius = 0.0;
    std::vector<AcGePoint3d> corners;
};

// Circles with a radius of 1e-6 or more, closed polylines of straight segments, and lines and open
// polylines that chain into rings (`joinChains`), ends meeting within a millionth of the size of
// what they belong to. Only what lies in one plane, to the same measure, and has an area. Whether a
// loop crosses itself is not looked at, and a ring that more than two ends meet at may not be
// found. Everything else is passed over. A corner farther than 1e-6 from the plane is moved into
// it, one nearer than 1e-6 to the corner before it is dropped: a body would be void to the modeller
// otherwise.
std::vector<RegionLoop> regionLoops(const std::vector<const AcDbCurve*>& curves);

// Drops the corners of a ring, the first one not repeated, that are nearer than 1e-6 to the one
// before them, the last ones when nearer than that to the first.
void dropShortEdges(std::vector<AcGePoint3d>& ring);

}  // namespace host::database
