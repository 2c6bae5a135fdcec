// Arc as a polyline.
#include <cmath>

#include "GeomEnts/Arc.h"
#include "GeomEnts/Pi.h"
#include "GeomStructs/PolyLine.h"

namespace TamLib {
namespace {

PolyLine Ends(const Arc& arc) {
    PolyLine ends(20);
    ends.Append(arc.Start());
    ends.Append(arc.End());
    return ends;
}

// The step cannot move the angle, or there is none.
bool LeadsNowhere(double angle, double step) {
    return !(angle - step < angle) || !(angle - step >= -1.7976931348623157e308);
}

}  // namespace

PolyLine Arc::ToPolyLine(double step, bool stepIsAngle) const {
    if (std::fabs(height) < 1e-9) return Ends(*this);
    const double first = StartAngle(), last = EndAngle(), radius = Radius();
    const double width = std::fabs(stepIsAngle ? step : step / radius), zSpan = z2 - z1;
    const bool isTooShort = !std::isfinite(radius) || first == last;  // the chord, for angles
    if (LeadsNowhere(first, width) || isTooShort) return Ends(*this);
    Point3d centre;
    Centre(centre);
    const auto at = [&](double angle, double z) {
        return Point3d(centre.x + radius * std::cos(angle), centre.y + radius * std::sin(angle), z);
    };
    PolyLine points(20);
    double angle = first;
    do {
        // Intended: the angles are not unwound where they pass 0.
        points.Append(at(angle, (angle - first) / (last - first) * zSpan + z1));
        angle -= width;
    } while (std::fabs(std::fmod(angle - last, kPi * 2.0)) > width);
    points.Append(at(last, z2));
    if (TamLib::Distance2d(points[0], End()) < TamLib::Distance2d(points[0], Start())) {
        points.Reverse();
        for (Point3d& point : points) point.z = z1 + zSpan - (point.z - z1);
    }
    return points;
}

}  // namespace TamLib
