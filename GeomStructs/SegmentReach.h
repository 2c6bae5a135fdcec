// Which segments a line can meet: a filter ahead of `Line::Intersect` that never holds back a
// segment for which that gives 1 or 2.
//
// Boxes in plan are compared with a margin. `Intersect` meets what is not in the box of both lines
// by its tolerances and by rounding:
//   - ends within 0.0001 of the other line, and what 2e-4 covers beyond that
//   - rounding of coordinate differences, products and quotients, below 1e-13 of the coordinates
//   - parallel lines are compared by their heights at x = 0, within 0.0001. Slopes may differ by
//     1e-8, which at x makes 1e-8 |x| in y; and the product of slope and x is rounded, by a few
//     units of 2.2e-16 of it. The slope of the other line differs by less than 1e-8.
//   - an upright line, when it is the one asked, is touched by all ends that lie below it
// Coordinates beyond 1e100, or none, pass everything.
#pragma once

#include <algorithm>
#include <cmath>
#include <limits>

#include "GeomEnts/Line.h"

namespace TamLib {

struct PlanBox {
    double xMin, xMax, yMin, yMax;
};

inline PlanBox BoxOf(const Point3d& a, const Point3d& b) {
    return {std::min(a.x, b.x), std::max(a.x, b.x), std::min(a.y, b.y), std::max(a.y, b.y)};
}

inline bool AreApart(const PlanBox& a, const PlanBox& b) {
    return a.xMin > b.xMax || a.xMax < b.xMin || a.yMin > b.yMax || a.yMax < b.yMin;
}

// Whether squares and products of plan coordinates stay numbers.
inline bool IsTame(const Point3d& point) {
    return std::fabs(point.x) < 1e100 && std::fabs(point.y) < 1e100;
}

class SegmentReach {
  public:
    // `lineIsAsked`: for `line.Intersect(segment)`, otherwise for `segment.Intersect(line)`.
    explicit SegmentReach(const Line& line, bool lineIsAsked = true)
        : box_(BoxOf(line.Start(), line.End())),
          size_(Largest(box_.xMin, box_.xMax) + Largest(box_.yMin, box_.yMax)),
          lineIsAsked_(lineIsAsked),
          tame_(IsTame(line.Start()) && IsTame(line.End())) {
        const double dx = line.x2 - line.x1;
        if (IsUpright(dx)) {
            if (lineIsAsked) box_.yMin = -kInfinite;
        } else {
            perX_ = 1.1e-8 + 4e-15 * (std::fabs((line.y2 - line.y1) / dx) + 1e-8);
        }
    }

    // The box beyond which no segment of a figure with that extent can be met, its coordinates
    // being tame.
    PlanBox Within(const PlanBox& extent) const {
        if (!tame_) return {-kInfinite, kInfinite, -kInfinite, kInfinite};
        const double x = Largest(extent.xMin, extent.xMax), y = Largest(extent.yMin, extent.yMax);
        const double margin = 2e-4 + 1e-13 * (size_ + x + y);
        const double slopes = margin + perX_ * (size_ + x);
        return {box_.xMin - margin, box_.xMax + margin, box_.yMin - slopes, box_.yMax + slopes};
    }
    // True when the segment from `from[0]` to `from[1]` can't be met, whatever its coordinates.
    bool Misses(const Point3d* from) const {
        PlanBox box = BoxOf(from[0], from[1]);
        if (!lineIsAsked_ && IsUpright(from[1].x - from[0].x) && box.yMin > box_.yMax)
            box.yMin = box_.yMax;
        return AreApart(box, Within(box)) && IsTame(from[0]) && IsTame(from[1]);
    }

  private:
    static constexpr double kInfinite = std::numeric_limits<double>::infinity();

    static bool IsUpright(double dx) { return std::fabs(dx) < 1e-8; }
    static double Largest(double low, double high) {
        return std::max(std::fabs(low), std::fabs(high));
    }

    PlanBox box_;
    double size_;        // of the line's coordinates
    double perX_ = 0.0;  // how much y may be off per unit of x
    bool lineIsAsked_;
    bool tame_;
};

}  // namespace TamLib
