// The inside tests of PolyLine: points and boxes against the ring.
#include <algorithm>

#include "GeomStructs/PolyLine.h"
#include "GeomStructs/WindingCount.h"

namespace TamLib {
namespace {

bool Between(double v, double low, double high) {
    return low <= v && v <= high;
}

}  // namespace

bool PolyLine::IsBeyondBounds(const Line& line) const {
    return hasBounds != 0 && ((line.x1 < minPoint.x && line.x2 < minPoint.x) ||
                              (line.x1 > maxPoint.x && line.x2 > maxPoint.x) ||
                              (line.y1 < minPoint.y && line.y2 < minPoint.y) ||
                              (line.y1 > maxPoint.y && line.y2 > maxPoint.y));
}

int PolyLine::Inside(const Point3d& point, bool useBox, bool touch) const {
    if (count < 3 || !IsClosed()) return 0;
    if (useBox && hasBounds != 0 &&
        !(Between(point.x, minPoint.x, maxPoint.x) && Between(point.y, minPoint.y, maxPoint.y)))
        return 0;
    WindingCount winding{point.x, point.y, touch};
    for (const Point3d *from = data, *last = data + count - 1; from != last; ++from)
        if (winding.Add(from)) return 2;
    return winding.winding & 1;
}

int PolyLine::MidPointInside(const Point3d& a, const Point3d& b) const {
    return Inside(Line(a, b).MidPoint(), /*useBox=*/false, /*touch=*/true);
}

int PolyLine::BoxRelation(const Box& box) const {
    if (!GetBox().Overlaps2d(box)) return 0;
    if (std::any_of(begin(), end(), [&](const Point3d& p) { return box.Contains2d(p); })) return 2;
    int inside = 0;
    for (const Point3d& corner :
         {box.UpperLeft(), box.LowerRight(), box.LowerLeft(), box.UpperRight()})
        inside += Inside(corner, /*useBox=*/false, /*touch=*/true) != 0 ? 1 : 0;
    if (BoxTouches(box)) return 2;
    if (inside == 0) return 0;
    return inside < 4 ? 2 : 1;
}

bool PolyLine::BoxTouches(const Box& box) const {
    if (!GetBox().Overlaps2d(box)) return false;
    for (std::uint32_t i = 0; i + 1 < count; ++i)
        if (Line(data[i], data[i + 1]).IntersectsBox2d(box)) return true;
    return false;
}

}  // namespace TamLib
