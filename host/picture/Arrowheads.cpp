#include "host/picture/Arrowheads.h"

#include <algorithm>
#include <cmath>

namespace host::picture {
namespace {

using editor::PlanPoint;

// A curve is measured by so many chords.
constexpr int chords = 8;

// Points of a line and how far along it they lie.
class Stretch {
  public:
    void add(const PlanPoint& point) {
        if (!points_.empty())
            along_.push_back(along_.back() + std::hypot(point.x - points_.back().x,  //
                                                        point.y - points_.back().y));
        else
            along_.push_back(0.0);
        points_.push_back(point);
    }

    // A cubic from the last point.
    void addCurve(const AcGePoint3d& b, const AcGePoint3d& c, const AcGePoint3d& d) {
        const PlanPoint a = points_.back();
        for (int i = 1; i <= chords; ++i) {
            const double t = static_cast<double>(i) / chords, s = 1.0 - t;
            const double fa = s * s * s, fb = 3.0 * s * s * t, fc = 3.0 * s * t * t, fd = t * t * t;
            add({fa * a.x + fb * b.x + fc * c.x + fd * d.x,
                 fa * a.y + fb * b.y + fc * c.y + fd * d.y});
        }
    }

    double length() const { return along_.back(); }
    const PlanPoint& first() const { return points_.front(); }

    PlanPoint at(double distance) const {
        const auto next = std::upper_bound(along_.begin(), along_.end(), distance);
        if (next == along_.begin()) return points_.front();
        if (next == along_.end()) return points_.back();
        const auto i = static_cast<std::size_t>(next - along_.begin());
        const double t = (distance - along_[i - 1]) / (along_[i] - along_[i - 1]);
        return {points_[i - 1].x + (points_[i].x - points_[i - 1].x) * t,
                points_[i - 1].y + (points_[i].y - points_[i - 1].y) * t};
    }

  private:
    std::vector<PlanPoint> points_;
    std::vector<double> along_;
};

std::vector<Stretch> stretchesOf(const Path& path) {
    std::vector<Stretch> stretches;
    const std::vector<AcGePoint3d>& points = path.points();
    std::size_t next = 0;
    for (const Path::Step step : path.steps()) {
        switch (step) {
            case Path::Step::move:
                stretches.emplace_back();
                [[fallthrough]];
            case Path::Step::line:
                stretches.back().add({points[next].x, points[next].y});
                ++next;
                break;
            case Path::Step::curve:
                stretches.back().addCurve(points[next], points[next + 1], points[next + 2]);
                next += 3;
                break;
            case Path::Step::close:
                stretches.back().add(PlanPoint(stretches.back().first()));
                break;
        }
    }
    return stretches;
}

}  // namespace

std::vector<Arrowhead> arrowheadsOn(const Path& path, const ArrowRule& rule) {
    const std::vector<Stretch> stretches = stretchesOf(path);
    double total = 0.0;
    for (const Stretch& stretch : stretches) total += stretch.length();
    const double step = std::max(rule.step, total / static_cast<double>(mostArrowheads));
    std::vector<Arrowhead> arrowheads;
    for (const Stretch& stretch : stretches) {
        const double length = stretch.length();
        if (length < rule.least) continue;
        // Once at its end, however long the step is.
        for (double at = length; at == length || at >= step / 2.0; at -= step) {
            if (arrowheads.size() == mostArrowheads) return arrowheads;
            const PlanPoint tip = stretch.at(at), from = stretch.at(at - rule.length);
            const double chord = std::hypot(tip.x - from.x, tip.y - from.y);
            if (!(chord > 0.0)) continue;
            const double part = rule.length / chord;
            arrowheads.push_back(
                {tip, {tip.x - (tip.x - from.x) * part, tip.y - (tip.y - from.y) * part}});
        }
    }
    return arrowheads;
}

}  // namespace host::picture
