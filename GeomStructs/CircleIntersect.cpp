// The intersections of Circle, which give arrays of points.
#include <algorithm>

#include "GeomEnts/Line.h"
#include "GeomEnts/circle.h"
#include "GeomStructs/Point3dArray.h"

namespace TamLib {
namespace {

bool InWidenedBox(const Line& line, const Point3d& p) {
    return p.x >= std::min(line.x1, line.x2) - 1e-9 && p.x <= std::max(line.x1, line.x2) + 1e-9 &&
           p.y >= std::min(line.y1, line.y2) - 1e-9 && p.y <= std::max(line.y1, line.y2) + 1e-9;
}

}  // namespace

void Circle::Intersect(const Line& line, Point3dArrayBase<Point3d>& points) const {
    points.Clear();
    const double x1 = line.x1 - centre.x, y1 = line.y1 - centre.y;
    const double x2 = line.x2 - centre.x, y2 = line.y2 - centre.y;
    const double dx = x2 - x1, dy = y2 - y1, dr = std::sqrt(dx * dx + dy * dy), squared = dr * dr;
    const double determinant = x1 * y2 - x2 * y1;
    double discriminant = radius * radius * squared - determinant * determinant;
    if (std::fabs(discriminant) < 0.0001) discriminant = 0.0;
    if (discriminant < 0.0) return;
    const double root = std::sqrt(discriminant), sign = dy < 0.0 ? -1.0 : 1.0;
    const Point3d candidates[2] = {{(determinant * dy + sign * dx * root) / squared,
                                    (-determinant * dx + std::fabs(dy) * root) / squared, 0.0},
                                   {(determinant * dy - sign * dx * root) / squared,
                                    (-determinant * dx - std::fabs(dy) * root) / squared, 0.0}};
    for (const Point3d& candidate : candidates) {
        const Point3d point = candidate + centre;
        if (InWidenedBox(line, point)) points.Append(point);
    }
}

void Circle::Intersect(const Circle& other, Point3dArrayBase<Point3d>& points) const {
    points.Clear();
    const double d = Distance(centre, other.centre), sum = radius + other.radius;
    if (std::fabs(d - sum) < 0.0001) {
        const Point3d way = (other.centre - centre) / d;
        points.Append(centre + Point3d(way.x * radius, way.y * radius, way.z * radius));
        return;
    }
    if (d > sum) return;
    const double cosine =
        (radius * radius + d * d - other.radius * other.radius) * 0.5 / radius / d;
    const double a = std::acos(std::min(std::max(cosine, -1.0), 1.0));
    const double b = Angle(centre, other.centre);
    points.Append(PolarPoint(centre, radius, b + a, 0.0));
    points.Append(PolarPoint(centre, radius, b - a, 0.0));
}

}  // namespace TamLib
