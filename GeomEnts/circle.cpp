#include "GeomEnts/circle.h"

#include "GeomEnts/Arc.h"
#include "GeomEnts/Pi.h"

namespace TamLib {
namespace {

// Two points seen from a third, on the circle that is looked for.
struct Chords {
    const Point3d& reference;
    double dx1, dy1, dx2, dy2;

    Chords(const Point3d& from, const Point3d& to1, const Point3d& to2)
        : reference(from),
          dx1(to1.x - from.x),
          dy1(to1.y - from.y),
          dx2(to2.x - from.x),
          dy2(to2.y - from.y) {}
};

// The chords from a point that is level with neither of the other two, if there is one.
Chords ChooseChords(const Point3d& a, const Point3d& b, const Point3d& c) {
    if (std::fabs(b.y - a.y) < 0.0001) return {c, a, b};
    const Chords fromA(a, b, c);
    if (std::fabs(fromA.dy2) < 0.0001 ||
        std::fabs(fromA.dx1 / fromA.dy1 - fromA.dx2 / fromA.dy2) < 0.0001)
        return {b, a, c};
    return fromA;
}

}  // namespace

Circle::Circle(const Point3d& circleCentre, double circleRadius)
    : centre(circleCentre), radius(circleRadius) {}

Circle::Circle(const Arc& arc) : radius(arc.Radius()) {
    arc.Centre(centre);
}

Circle::Circle(const Point3d& a, const Point3d& b)
    : centre(Line(a, b).MidPoint()), radius(Distance2d(a, b) * 0.5) {}

Circle::Circle(const Point3d& a, const Point3d& b, const Point3d& c) {
    const Chords chords = ChooseChords(a, b, c);
    const double dx1 = chords.dx1, dy1 = chords.dy1, dx2 = chords.dx2, dy2 = chords.dy2;
    const double u = dx1 * dx1 * 0.5 / dy1 + dy1 * 0.5 - dy2 * 0.5 - dx2 * dx2 * 0.5 / dy2;
    const double w = dx1 / dy1 - dx2 / dy2;
    const double cx = u / w;
    centre.x = chords.reference.x + cx;
    centre.y = chords.reference.y + dy2 * 0.5 - (dx2 / dy2) * cx + dx2 * dx2 * 0.5 / dy2;
    centre.z = (a.z + b.z + c.z) / 3.0 + chords.reference.z;  // intended: the reference adds itself
    radius = Distance2d(a, centre);
}

double Circle::Area() const {
    return radius * radius * kPi;
}

double Circle::Circumference() const {
    return kPi * radius;
}  // intended: no 2

int Circle::Contains(const Point3d& point, bool touch) const {
    const double dx = point.x - centre.x, dy = point.y - centre.y, squared = dx * dx + dy * dy;
    if (radius * radius > squared) return 1;
    return touch && std::fabs(squared - radius * radius) < 0.0001 ? 2 : 0;
}

}  // namespace TamLib
