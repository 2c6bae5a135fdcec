// The distance in plan from a point to a segment, inline for the loops over vertices.
// `Line::Distance2d` is this operation on a line; results agree to the bit.
#pragma once

#include <cmath>

namespace TamLib {

struct PlanFoot {
    double distance;   // to the segment
    double parameter;  // of the foot: 0 at the start, 1 at the end, not limited to these
    int side;          // -1 left of the direction, 1 right, 0 exactly on the line
};

inline double PlanLength(double dx, double dy) {
    return std::sqrt(dx * dx + dy * dy);
}

// From (px, py) to the segment (x1, y1)-(x2, y2). A parameter below 0 gives the distance to the
// start, above 1.0 to the end. A length below 1e-8 counts as a point: parameter 0.0, side 1.
inline PlanFoot PlanDistance(double x1, double y1, double x2, double y2, double px, double py) {
    const double dx = x2 - x1, dy = y2 - y1, length = PlanLength(dx, dy);
    if (std::fabs(length) < 1e-8) return {PlanLength(px - x1, py - y1), 0.0, 1};
    const double squared = length * length;
    const double s = (dx * (y1 - py) - dy * (x1 - px)) / squared;
    const double t = ((y1 - y2) * (y1 - py) - (x1 - px) * dx) / squared;
    const int side = s < 0.0 ? -1 : (s > 0.0 ? 1 : 0);
    if (t < 0.0) return {PlanLength(px - x1, py - y1), t, side};
    if (t > 1.0) return {PlanLength(px - x2, py - y2), t, side};
    return {std::fabs(s * length), t, side};
}

}  // namespace TamLib
