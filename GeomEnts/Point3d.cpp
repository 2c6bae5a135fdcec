#include "GeomEnts/Point3d.h"

#include "GeomEnts/Line.h"
#include "GeomEnts/Pi.h"

namespace TamLib {
namespace {

int ExactOrder(const Point3d& a, const Point3d& b) {
    if (a.x != b.x) return a.x > b.x ? 1 : -1;
    if (a.y != b.y) return a.y > b.y ? 1 : -1;
    return a.z > b.z ? 1 : -1;
}

bool AllWithin(const Point3d& a, const Point3d& b, double tolerance) {
    return std::fabs(a.x - b.x) < tolerance && std::fabs(a.y - b.y) < tolerance &&
           std::fabs(a.z - b.z) < tolerance;
}

// What stands for "no direction": just short of a full turn.
double NoAngle() {
    return std::atan(1.0) * 7.999999999999999;
}

double Elevation(const Point3d& v) {
    return std::atan2(v.z, std::sqrt(v.x * v.x + v.y * v.y));
}

}  // namespace

int Point3d::Compare(const Point3d* a, const Point3d* b) {
    return AllWithin(*a, *b, 0.0001) ? 0 : ExactOrder(*a, *b);
}

int Point3d::CompareFine(const Point3d* a, const Point3d* b) {
    return AllWithin(*a, *b, 1e-9) ? 0 : ExactOrder(*a, *b);
}

int Point3d::CompareExact(const Point3d* a, const Point3d* b) {
    if (a->x > b->x) return 1;
    if (b->x > a->x) return -1;
    if (a->y > b->y) return 1;
    if (b->y > a->y) return -1;
    if (a->z > b->z) return 1;
    return b->z > a->z ? -1 : 0;
}

int Point3d::ComparePointers(Point3d* const* a, Point3d* const* b) {
    return Compare(*a, *b);
}

Point3d Point3d::Unit() const {
    const double length = VectorLength(*this);
    return length < 0.0001 ? *this : *this / length;
}

void Point3d::RotateAbout(const Point3d& centre, double azimuth, double elevation) {
    const Point3d v = *this - centre;
    const double cosAz = std::cos(azimuth), sinAz = std::sin(azimuth);
    const double cosEl = std::cos(elevation), sinEl = std::sin(elevation);
    x = v.x * cosAz * cosEl - v.y * sinAz * cosEl;
    y = v.x * sinAz * cosEl + v.y * cosAz * cosEl;
    z = std::sqrt(v.x * v.x + v.y * v.y) * sinEl + v.z * cosEl;
    *this += centre;
}

void Point3d::RotateAxis(const Point3d& axis, double angle) {
    const Point3d unit = axis / VectorLength(axis);
    const double cosine = std::cos(angle), sine = std::sin(angle);
    const Point3d turned = CrossProduct(unit, *this);
    const double along = DotProduct(unit, *this) * (1.0 - cosine);
    x = x * cosine + turned.x * sine + unit.x * along;
    y = y * cosine + turned.y * sine + unit.y * along;
    z = z * cosine + turned.z * sine + unit.z * along;
}

void Point3d::RotateLine(const Line& line, double angle) {
    const Point3d start = line.Start();
    *this = *this - start;
    RotateAxis(line.Direction(), angle);
    *this += start;
}

bool Equals(const Point3d& a, const Point3d& b) {
    return AllWithin(a, b, 0.0001);
}

bool Equals2d(const Point3d& a, const Point3d& b) {
    return std::fabs(a.x - b.x) < 0.0001 && std::fabs(a.y - b.y) < 0.0001;
}

int CompareDistance(const Point3d& point, const Point3d& a, const Point3d& b) {
    const double toA = SquaredDistance(point, a), toB = SquaredDistance(point, b);
    if (toA == toB) return 0;
    return toA < toB ? -1 : 1;
}

bool IsFartherThan(const Point3d& a, const Point3d& b, const Point3d& origin) {
    return Distance(b, origin) > Distance(a, origin);
}

bool IsSameDirection(const Point3d& a, const Point3d& b) {
    // Intended: `b` is not tested, a short one just stays as it is.
    return DotProduct(a, a) < 0.0001 ? Equals(a, b) : Equals(a.Unit(), b.Unit());
}

double RadiansToDegrees(double angle) {
    return angle * 180.0 / kPi;
}

double Angle(const Point3d& from, const Point3d& to) {
    return Equals(from, to) ? NoAngle() : std::atan2(to.y - from.y, to.x - from.x);
}

double AngleAt(const Point3d& centre, const Point3d& a, const Point3d& b) {
    const double sweep = Angle(centre, b) - Angle(centre, a);
    return sweep < 0.0 ? sweep + kPi * 2.0 : sweep;
}

double SlopeAngle(const Point3d& from, const Point3d& to) {
    return Equals(from, to) ? NoAngle() : std::atan2(to.z - from.z, Distance2d(from, to));
}

double ElevationDifference(const Point3d& a, const Point3d& b) {
    return Equals(a, b) ? NoAngle() : std::fabs(Elevation(a) - Elevation(b));
}

Point3d PolarPoint(const Point3d& centre, double radius, double azimuth, double elevation) {
    const double cosEl = std::cos(elevation);
    return Point3d(radius * std::cos(azimuth) * cosEl, radius * std::sin(azimuth) * cosEl,
                   radius * std::sin(elevation)) +
           centre;
}

}  // namespace TamLib
