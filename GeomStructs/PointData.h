// PointData: a set of measured points that finds neighbours, interpolates heights, and computes
// hull, outline and extreme distances. Surfaces derive from it.
//
// Neighbour searches want the points sorted (`Sort` or `SortUnique`); they look at a window of x.
// Distances are 3D, hulls and outlines are in plan. Nothing here fails unless said so.
#pragma once

#include "GeomStructs/Point3dArray.h"

namespace TamLib {

class PolyLine;

class PointData : public Point3dArrayBase<Point3d> {
  public:
    // Empty; growth is the larger of `initialCapacity` and 5.
    explicit PointData(int initialCapacity = 0);
    PointData(const PointData&) = default;
    PointData(PointData&&) noexcept = default;
    PointData& operator=(const PointData&) = default;
    ~PointData() override;

    // The smallest 3D distance between two points, and the indexes of both in `i` and `j` when
    // given, the lower one first; of equally near pairs the first in the order of the sorted array.
    // Sorts this set unless it is sorted. Throws `TamExpInternal`, "Amount of Points too small in
    // PointData::MinDist()\n", below two points.
    double MinDist(int* i, int* j);

    // The up to `count` points nearest to `point` in 3D, in no order, and the squares of their
    // distances in step with them. Both arrays are emptied first. The points must be sorted.
    // A point takes the place of the worst kept one only when it is nearer.
    void NearestPoints(int count, const Point3d& point, Array<Point3d>& points,
                       Array<double>& distances) const;

    // The height at a point, from its `count` nearest points weighted by the inverse of their
    // squared 3D distances (D. Shepard's interpolation): the sum of z / d^2 over the sum of
    // 1 / d^2. A point whose squared distance is below 0.0001 gives its height alone. 0.0
    // without points. The points must be sorted. Intended: the height of `point` itself takes
    // part in the distances.
    double InterpolateZ(const Point3d& point, int count) const;

    // Heights along a line in plan, in place of what `result` held: `start` as it is, then steps +
    // 1 points from the start to the end, with their heights from `InterpolateZ(point, count)` at
    // the height of `start`. The walk ends within 0.001 of the place one step beyond the end, so
    // that shorter steps give fewer points. Negative `steps` give `start` alone, 0 gives it and its
    // height there.
    void Profile(const Point3d& start, const Point3d& end, int steps, PolyLine* result,
                 int count) const;

    // The convex hull in plan as a closed polyline, counter-clockwise from the point with the
    // smallest x, in place of what `result` held (A. M. Andrew's monotone chain). Of points within
    // 1e-6 in plan the lowest takes part; a point within 0.0001 in plan of the last vertex is
    // passed over. With `tolerance` at least 0.0, a vertex that adds less than `tolerance` of plan
    // length along the hull is left out. Points on one line give a ring of two segments, one point
    // that point. This set is not sorted by it: a surface's points never change their places.
    // Reports to the progress dialog how far it is.
    void ConvexHull(PolyLine* result, double tolerance) const;

    // The largest 3D distance between two vertices of `ConvexHull(result, -1.0)`; 0.0
    // below two points.
    double Diameter() const;

    // The rectangle of smallest area about the points, in plan, as a closed polyline of five
    // vertices halfway between the hull's lowest and highest, with a side along an edge of the
    // hull; of equal ones the first. Box sizes are single precision, taken about the middle of the
    // set. One point gives four equal corners; without points `result` is emptied.
    void MinBoundingBox(PolyLine* result) const;

    // The outline of the set, not convex, as a closed polyline in place of what `result` held: a
    // walk along the boundary, counter-clockwise, from the point with the largest x, each time on
    // to the neighbour that makes the smallest turn from the way back, which itself comes last, so
    // that a spur is followed out and back. Neighbours are the points from 0.001 up to `distance`
    // away in plan that are reached without crossing the outline so far; those nearer than 0.001 to
    // the point before are passed over. The walk ends at its first point, where it can go no
    // further, or when its points have been gone to 200 times; what it has found is closed. Points
    // left outside by 0.001 or more start a further walk from the rightmost of them, up to ten
    // walks; the one that leaves the fewest outside is the result, the first of equals. A negative
    // `distance` gives `ConvexHull(result, -1.0)`. A walk polls the progress dialog every 3000
    // steps; a cancelled one gives what it has. Time grows with the square of the outline's length.
    void Outline(PolyLine* result, double distance) const;
};

}  // namespace TamLib
