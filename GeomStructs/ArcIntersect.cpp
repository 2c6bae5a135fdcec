// The intersections of Arc, and what rests on them; they give arrays of points.
#include <acutads.h>

#include <algorithm>

#include "GeomEnts/Arc.h"
#include "GeomEnts/Pi.h"
#include "GeomEnts/circle.h"
#include "GeomStructs/Point3dArray.h"

namespace TamLib {
namespace {

bool IsFlat(const Arc& arc) {
    return std::fabs(arc.height) < 0.0001;
}

// Removes the points on the side of the chord to which the arc does not bulge, the last first.
// Points on the chord stay.
void RemoveOffside(const Arc& arc, Point3dArrayBase<Point3d>& points) {
    const int offside = arc.height > 0.0 ? 1 : -1;
    for (int i = static_cast<int>(points.count) - 1; i >= 0; --i)
        if (static_cast<const Line&>(arc).Side(points[i], true) == offside) points.Remove(i, 1);
}

void IntersectChords(const Line& chord, const Line& other, Point3dArrayBase<Point3d>& points) {
    points.Clear();
    Point3d point;
    if (chord.Intersect(other, point, false) == 1) points.Append(point);
}

}  // namespace

void Arc::Intersect(const Line& line, Point3dArrayBase<Point3d>& points) const {
    if (IsFlat(*this)) {
        IntersectChords(*this, line, points);
        return;
    }
    Circle(*this).Intersect(line, points);
    RemoveOffside(*this, points);
}

void Arc::Intersect(const Arc& other, Point3dArrayBase<Point3d>& points) const {
    if (IsFlat(other)) {
        Intersect(static_cast<const Line&>(other), points);
    } else if (IsFlat(*this)) {
        other.Intersect(static_cast<const Line&>(*this), points);
    } else {
        Circle(*this).Intersect(Circle(other), points);
        RemoveOffside(*this, points);
        RemoveOffside(other, points);
    }
}

void Arc::AlongInSweep(const Point3d& point, const Point3d& centre, double radius,
                       double& along) const {
    Point3dArrayBase<Point3d> hits;
    Intersect(RayThrough(point, centre, radius), hits);
    if (hits.count != 1) {
        acutPrintf(L"Shouldn't happen %s:%i.\n", L"GeomEnts/Arc", __LINE__);
        return;
    }
    const Point3d toHit = hits[0] - centre, toStart = Start() - centre;
    const double lengths =
        TamLib::Distance2d(hits[0], centre) * TamLib::Distance2d(Start(), centre);
    const double cosine = DotProduct(toHit, toStart) / lengths;
    // Rounding may lead out of what acos takes.
    double angle = std::acos(std::min(std::max(cosine, -1.0), 1.0));
    const int side = Line(Start(), centre).Side(hits[0], true);
    if ((side == -1 && height < 0.0) || (side == 1 && height > 0.0)) angle = kPi * 2.0 - angle;
    along = radius * angle;
}

}  // namespace TamLib
