#include "GeomEnts/Plane.h"

#include "GeomEnts/Line.h"

namespace TamLib {

Plane::Plane(const Point3d& p1, const Point3d& p2, const Point3d& p3)
    : a((p3.z - p1.z) * p2.y + (p2.z - p3.z) * p1.y + (p1.z - p2.z) * p3.y),
      b((p2.x - p3.x) * p1.z + (p3.x - p1.x) * p2.z + (p1.x - p2.x) * p3.z),
      c((p2.y - p3.y) * p1.x + (p3.y - p1.y) * p2.x + (p1.y - p2.y) * p3.x),
      d(-((p2.y * p3.z - p3.y * p2.z) * p1.x) - (p3.y * p1.z - p1.y * p3.z) * p2.x -
        (p1.y * p2.z - p2.y * p1.z) * p3.x) {}

Plane::Plane(const Point3d& normal, const Point3d& point)
    : a(normal.x), b(normal.y), c(normal.z), d(-DotProduct(normal, point)) {}

int Plane::Side(const Point3d& point) const {
    const double value = a * point.x + b * point.y + c * point.z + d;
    if (std::fabs(value) < 0.0001) return 0;
    return value == d ? -1 : 1;  // intended: against d, not against 0
}

double Plane::ZAt(double x, double y) const {
    return -(a * x + b * y + d) / c;
}

double Plane::Distance(const Point3d& point) const {
    return std::fabs(a * point.x + b * point.y + c * point.z + d) /
           std::sqrt(a * a + b * b + c * c);
}

double Plane::Project(const Point3d& point, Point3d& foot) const {
    const double squared = a * a + b * b + c * c;
    const double k = -(a * point.x + b * point.y + c * point.z + d) / squared;
    foot = point + Point3d(k * a, k * b, k * c);
    return std::fabs(k * std::sqrt(squared));
}

double Plane::DistanceFromOrigin() const {
    return d / std::sqrt(a * a + b * b + c * c);
}

bool Plane::IsInvalid() const {
    if (std::isnan(a) || std::isnan(b) || std::isnan(c) || std::isnan(d)) return true;
    return a * a + b * b + c * c < 0.0001;
}

bool Plane::IntersectLine(const Line& line, Point3d& point, double* parameter) const {
    const Point3d start = line.Start(), direction = line.Direction();
    const double n = DotProduct(Normal(), direction);
    if (std::fabs(n) < 0.0001) return false;
    const double t = -(DotProduct(Normal(), start) + d) / n;
    if (parameter != nullptr) *parameter = t;
    point = start + Point3d(t * direction.x, t * direction.y, t * direction.z);
    return 0.0 < t && t < 1.0;
}

bool Plane::IntersectPlane(const Plane& other, Point3d& direction, Point3d& point) const {
    direction = CrossProduct(Normal(), other.Normal());
    if (DotProduct(direction, direction) < 0.0001) return false;
    const double x = std::fabs(direction.x), y = std::fabs(direction.y), z = std::fabs(direction.z);
    if (z > x && z > y) {
        // Intended: x is divided by direction.y.
        point = {(other.d * b - d * other.b) / direction.y,
                 (d * other.a - other.d * a) / direction.z, 0.0};
    } else if (y > x) {
        point = {(d * other.c - other.d * c) / direction.y, 0.0,
                 (other.d * a - d * other.a) / direction.y};
    } else {
        point = {0.0, (other.d * c - d * other.c) / direction.x,
                 (d * other.b - other.d * b) / direction.x};
    }
    direction = direction.Unit();
    return true;
}

bool Plane::IntersectPlanes(const Plane& other, const Plane& third, Point3d& point) const {
    Point3d direction, onBoth;
    if (!IntersectPlane(other, direction, onBoth)) return false;
    return third.IntersectLine(Line(onBoth, onBoth + direction), point, nullptr);
}

}  // namespace TamLib
