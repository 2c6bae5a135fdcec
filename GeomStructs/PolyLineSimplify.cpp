// PolyLine thinned out.
#include <algorithm>
#include <cmath>

#include "GeomEnts/Pi.h"
#include "GeomStructs/PolyLine.h"

namespace TamLib {
namespace {

struct Limits {
    double deviation;
    double maxLength;
};

// How far vertex `last` lies from the straight slope through `mid`, in the profile of height over
// plan length. Each is seen from the vertex ahead of it: `mid` from the anchor, `last` from `mid`.
double ProfileDeviation(const Point3d& anchor, const Point3d& mid, const Point3d& last) {
    const Line slope({}, {mid.z - anchor.z, Distance2d(mid, anchor), 0.0});
    return slope.LineDistance2d({last.z - mid.z, Distance2d(last, mid), 0.0}, nullptr);
}

// Whether the vertex `last`, ahead of `next`, may go. The vertex behind the anchor is `mid`.
bool MayGo(const Point3d& anchor, const Point3d& mid, const Point3d& last, const Point3d& next,
           const Limits& limits) {
    const double a0 = Angle(anchor, mid), a1 = Angle(mid, next), a2 = Angle(last, next);
    const double side = std::fabs(std::sin(a1 - a0) * Distance2d(mid, next));
    const double rise = ProfileDeviation(anchor, mid, last);
    // Intended: the difference as it is, so that directions on both sides of -x count as a turn.
    const double turn = std::fabs(a2 - a0);
    return !(side > limits.deviation) && !(rise > limits.deviation) && !(turn > kPi * 0.5) &&
           (!(limits.maxLength > 0.0) || !(Distance(anchor, mid) > limits.maxLength));
}

}  // namespace

int PolyLine::Simplify(double deviation, double maxLength) {
    if (count >= 3) RemoveNearDuplicates(1e-07);
    if (count < 3) return static_cast<int>(count);
    // What is kept is written ahead of what is read: the anchor and the vertex behind
    // it are copied.
    std::uint32_t kept = 1;
    Point3d anchor = data[0], mid = data[1];
    for (std::uint32_t j = 2; j < count; ++j) {
        if (MayGo(anchor, mid, data[j - 1], data[j], {deviation, maxLength})) continue;
        anchor = data[j - 1];
        mid = data[j];
        data[kept++] = anchor;
    }
    data[kept++] = data[count - 1];
    count = kept;
    sorted = false;
    hasBounds = 0;
    offset = Point3d();
    return static_cast<int>(count);
}

}  // namespace TamLib
