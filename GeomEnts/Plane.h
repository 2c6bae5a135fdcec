// Plane: the plane a x + b y + c z + d = 0 as four plain doubles, not normalised.
//
// Nothing throws; divisions by zero are unguarded unless said so. Several answers look like slips
// and are intended; each says so.
#pragma once

#include "GeomEnts/Point3d.h"

namespace TamLib {

struct Plane {
    double a = 0.0;
    double b = 0.0;
    double c = 0.0;
    double d = 0.0;

    Plane() = default;
    Plane(double pa, double pb, double pc, double pd) : a(pa), b(pb), c(pc), d(pd) {}
    // Through three points; the normal is (p2 - p1) x (p3 - p1). Points on one line give
    // a zero normal.
    Plane(const Point3d& p1, const Point3d& p2, const Point3d& p3);
    // Through `point`, with (a, b, c) = `normal`.
    Plane(const Point3d& normal, const Point3d& point);

    Point3d Normal() const { return {a, b, c}; }

    // With value = a x + b y + c z + d: 0 when |value| is below 0.0001. Otherwise -1 when value
    // equals d exactly, else 1. Intended: the test is against d and not against 0, so that points
    // on either side give 1.
    int Side(const Point3d& point) const;
    // The height of the plane at a plan position. A vertical plane (c = 0) divides by zero.
    double ZAt(double x, double y) const;
    // The distance of a point, never negative.
    double Distance(const Point3d& point) const;
    // The foot of the perpendicular from `point`; returns the distance.
    double Project(const Point3d& point, Point3d& foot) const;
    // d over the length of the normal, with its sign.
    double DistanceFromOrigin() const;
    // True when a, b, c or d is NaN, or the squared length of the normal is below 0.0001.
    bool IsInvalid() const;

    // Where the infinite line through `line` meets the plane. False, with nothing stored, when the
    // line runs along the plane: |normal . direction| below 0.0001, the direction not being made a
    // unit. Otherwise stores the parameter, when `parameter` is not null, and the point; the result
    // says whether the point lies strictly inside the segment, 0 < parameter < 1.
    bool IntersectLine(const Line& line, Point3d& point, double* parameter) const;
    // The line in which two planes meet: its direction as a unit vector, and the point of it that
    // has 0 for the coordinate in which the direction is largest (ties go to the earlier of x, y,
    // z). False when the planes are parallel, the squared length of the cross product of the
    // normals being below 0.0001: `direction` then holds that product and `point` is untouched.
    // Intended: when z is the largest, x is divided by the y component of the direction and not by
    // its z.
    bool IntersectPlane(const Plane& other, Point3d& direction, Point3d& point) const;
    // `IntersectPlane` with `other`, then `third.IntersectLine` of the line from the point found to
    // that point plus the unit direction; the result is that of `IntersectLine`, so that it is true
    // only within that unit step. Parallel planes give false and leave `point` as it is.
    bool IntersectPlanes(const Plane& other, const Plane& third, Point3d& point) const;
};

static_assert(sizeof(Plane) == 32, "four doubles");

}  // namespace TamLib
