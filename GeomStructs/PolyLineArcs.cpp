// Where a PolyLine meets arcs and circles.
#include "GeomEnts/Arc.h"
#include "GeomEnts/circle.h"
#include "GeomStructs/MeetingPoints.h"

namespace TamLib {
namespace {

template <class Figure>
PolyLine AllPoints(const Figure& figure, const PolyLine& line, Array<int>* segments) {
    return MeetingPoints(line, segments, [&](int i, Point3dArrayBase<Point3d>& here) {
        figure.Intersect(Line(line.data[i], line.data[i + 1]), here);
    });
}

}  // namespace

PolyLine PolyLine::Intersections(const Arc& arc, Array<int>* segments) const {
    return AllPoints(arc, *this, segments);
}

PolyLine PolyLine::Intersections(const Circle& circle, Array<int>* segments) const {
    return AllPoints(circle, *this, segments);
}

}  // namespace TamLib
