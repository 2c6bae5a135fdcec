#include "host/database/Area.h"

#include <dbcurve.h>
#include <dbregion.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>
#include <vector>

#include "host/database/Curve.h"
#include "host/database/ObjectFields.h"
#include "host/database/ObjectImp.h"

namespace host::database {
namespace {

constexpr double kFlatness = 1e-6;  // of the extent: how far points may lie off the plane
constexpr double kNothing = 1e-12;  // of the extent squared: what is no area
constexpr int kPartsOfSpan = 16;
constexpr std::array<std::pair<double, double>, 5> kGauss{
    {{-0.9061798459386640, 0.2369268850561891},
     {-0.5384693101056831, 0.4786286704993665},
     {0.0, 0.5688888888888889},
     {0.5384693101056831, 0.4786286704993665},
     {0.9061798459386640, 0.2369268850561891}}};

// Adds up the area vector of a run of points and curved pieces, seen from its first point.
class Sweep {
  public:
    explicit Sweep(const AcGePoint3d& origin) : origin_(origin) {}

    void straight(const AcGePoint3d& from, const AcGePoint3d& to) {
        add(from);
        twice_ += (from - origin_).crossProduct(to - origin_);
    }

    void curved(const Curve& curve, double from, double to) {
        const double half = (to - from) / (2.0 * kPartsOfSpan);
        for (int part = 0; part < kPartsOfSpan; ++part) {
            const double middle = from + (2 * part + 1) * half;
            for (const auto& [node, weight] : kGauss) {
                const AcGePoint3d at = curve.pointAt(middle + node * half);
                add(at);
                twice_ += (at - origin_).crossProduct(curve.derivativeAt(middle + node * half)) *
                          (weight * half);
            }
        }
    }

    std::optional<double> area() const {
        double extent = 0.0;
        for (const AcGePoint3d& point : points_)
            extent = std::max(extent, (point - origin_).length());
        const double length = twice_.length();
        if (!(length > kNothing * extent * extent)) return std::nullopt;
        for (const AcGePoint3d& point : points_) {
            const double off = std::fabs((point - origin_).dotProduct(twice_)) / length;
            if (!(off <= kFlatness * extent)) return std::nullopt;
        }
        return length / 2.0;
    }

  private:
    void add(const AcGePoint3d& point) { points_.push_back(point); }

    AcGePoint3d origin_;
    AcGeVector3d twice_;
    std::vector<AcGePoint3d> points_;
};

std::optional<double> areaOf(const Curve& curve) {
    const std::vector<double>& breaks = curve.breaks();
    Sweep sweep(curve.pointAt(breaks.front()));
    for (std::size_t span = 0; span + 1 < breaks.size(); ++span) {
        if (curve.isStraight(span))
            sweep.straight(curve.pointAt(breaks[span]), curve.pointAt(breaks[span + 1]));
        else
            sweep.curved(curve, breaks[span], breaks[span + 1]);
    }
    return sweep.area();
}

std::optional<double> areaOf(const RegionLoop& loop) {
    constexpr double kPi = 3.14159265358979323846;
    if (loop.corners.empty()) return kPi * loop.radius * loop.radius;
    Sweep sweep(loop.corners.front());
    for (std::size_t i = 0; i < loop.corners.size(); ++i)
        sweep.straight(loop.corners[i], loop.corners[(i + 1) % loop.corners.size()]);
    return sweep.area();
}

}  // namespace

std::optional<double> enclosedArea(const AcDbEntity& entity) {
    if (entity.impl()->fields().unreadable) return std::nullopt;
    if (entity.isKindOf(AcDbRegion::desc())) {
        const auto& loop = fieldsOf<RegionFields>(entity).loop;
        return loop ? areaOf(*loop) : std::nullopt;
    }
    const auto* closed = AcDbCurve::cast(&entity);
    if (closed == nullptr || !closed->isClosed()) return std::nullopt;
    const Curve* const curve = entity.impl()->curve();
    return curve == nullptr ? std::nullopt : areaOf(*curve);
}

}  // namespace host::database
