// Where a PolyLine meets arcs and circles.
#include "GeomEnts/Arc.h"
#include "GeomEnts/circle.h"
#include "GeomStructs/PolyLine.h"

namespace TamLib {
namespace {

template <class Figure>
PolyLine AllPoints(const Figure& figure, const PolyLine& line, Array<int>* segments) {
    PolyLine points;
    for (int i = 0; i + 1 < static_cast<int>(line.count); ++i) {
        Point3dArrayBase<Point3d> here;
        figure.Intersect(Line(line.data[i], line.data[i + 1]), here);
        for (const Point3d& point : here) {
            points.Append(point);
            if (segments != nullptr) segments->Append(i);
        }
    }
    if (segments == nullptr) points.SortUnique();
    return points;
}

}  // namespace

PolyLine PolyLine::Intersections(const Arc& arc, Array<int>* segments) const {
    return AllPoints(arc, *this, segments);
}

PolyLine PolyLine::Intersections(const Circle& circle, Array<int>* segments) const {
    return AllPoints(circle, *this, segments);
}

}  // namespace TamLib
