// What PointData encloses: convex hull, diameter, smallest rectangle.
#include <algorithm>

#include "GeomStructs/PointData.h"
#include "GeomStructs/PolyLine.h"
#include "tam/Progress.h"

namespace TamLib {
namespace {

// Appends `point` to a chain that turns left at each vertex from index `base` on.
void Extend(PolyLine& chain, std::uint32_t base, const Point3d& point) {
    if (chain.count > 0 && Distance2d(chain.data[chain.count - 1], point) < 0.0001) return;
    while (chain.count >= base + 2 &&
           !Line(chain.data[chain.count - 2], chain.data[chain.count - 1]).IsRightOf(point))
        --chain.count;
    chain.Append(point);
}

// Sorted; of points alike in plan, within 1e-6, the first.
PointData DistinctInPlan(PointData points) {
    points.SortUnique();
    std::uint32_t kept = 0;
    for (const Point3d& point : points) {
        const Point3d* const last = kept > 0 ? points.data + kept - 1 : nullptr;
        if (last != nullptr && std::fabs(point.x - last->x) < 1e-6 &&
            std::fabs(point.y - last->y) < 1e-6)
            continue;
        points.data[kept++] = point;
    }
    points.count = kept;
    return points;
}

void TellPosition(std::uint32_t index, std::uint32_t count) {
    ReportProgress(static_cast<float>(index * 100.0 / count));
}

// Leaves out the vertices of a ring that make it longer by less than `tolerance` in plan, seen from
// the last one kept to the next.
void Simplify(PolyLine& ring, double tolerance) {
    if (ring.count < 3) return;
    std::uint32_t kept = 1;
    for (std::uint32_t i = 1; i + 1 < ring.count; ++i) {
        const Point3d &from = ring.data[kept - 1], &vertex = ring.data[i], &to = ring.data[i + 1];
        const double added =
            Distance2d(from, vertex) + Distance2d(vertex, to) - Distance2d(from, to);
        if (added < tolerance) continue;
        ring.data[kept++] = vertex;
    }
    ring.data[kept++] = ring.data[ring.count - 1];
    ring.count = kept;
}

}  // namespace

void PointData::ConvexHull(PolyLine* result, double tolerance) const {
    PolyLine hull;
    if (count < 2) {
        for (const Point3d& point : *this) hull.Append(point);
    } else {
        const PointData points = DistinctInPlan(*this);
        for (std::uint32_t i = 0; i < points.count; ++i) {
            TellPosition(i, points.count);
            Extend(hull, 0, points.data[i]);
        }
        const std::uint32_t turn = hull.count - 1;
        for (std::uint32_t i = points.count; i-- > 0;) {
            TellPosition(points.count - 1 - i, points.count);
            Extend(hull, turn, points.data[i]);
        }
    }
    hull.Close();
    if (tolerance >= 0.0) Simplify(hull, tolerance);
    *result = hull;
}

double PointData::Diameter() const {
    PolyLine hull;
    ConvexHull(&hull, -1.0);
    double largest = 0.0;
    for (std::uint32_t i = 0; i < hull.count; ++i)
        for (std::uint32_t j = i + 1; j < hull.count; ++j)
            largest = std::max(largest, Distance(hull.data[i], hull.data[j]));
    return largest;
}

void PointData::MinBoundingBox(PolyLine* result) const {
    PolyLine hull;
    ConvexHull(&hull, -1.0);
    result->Clear();
    if (hull.count == 0) return;
    const Point3d centre = hull.GetBox().Centre();
    for (Point3d& vertex : hull) vertex = vertex - centre;
    Box best = hull.GetBox();
    double turn = 0.0;
    bool any = false;
    for (std::uint32_t i = 0; i + 1 < hull.count; ++i) {
        const double angle = Angle(hull.data[i], hull.data[i + 1]);
        Box box;
        for (Point3d vertex : hull) {
            vertex.RotateAbout({}, -angle, 0.0);
            box.Add(vertex);
        }
        if (any && !(box.Area() < best.Area())) continue;
        best = box;
        turn = angle;
        any = true;
    }
    *result = PolyLine(best);
    for (Point3d& vertex : *result) {
        vertex.RotateAbout({}, turn, 0.0);
        vertex += centre;
    }
}

}  // namespace TamLib
