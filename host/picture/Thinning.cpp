// Sleeve fitting after Zhao and Saalfeld (1997): as long as a ray from the last vertex kept passes
// all later ones within the tolerance, they can be left out.
#include "host/picture/Thinning.h"

#include <algorithm>
#include <cmath>

namespace host::picture {
namespace {

constexpr double pi = 3.14159265358979323846;

struct Polar {
    double distance, angle;
};

Polar polar(const AcGePoint3d& from, const AcGePoint3d& to) {
    const double dx = to.x - from.x, dy = to.y - from.y;
    return {std::sqrt(dx * dx + dy * dy), std::atan2(dy, dx)};
}

// From minus half a turn to half a turn.
double turned(double angle) {
    return angle - 2.0 * pi * std::round(angle / (2.0 * pi));
}

// The rays from one point that pass others within a tolerance.
class Sleeve {
  public:
    Sleeve(const AcGePoint3d& from, double tolerance) : from_(from), tolerance_(tolerance) {}

    // Whether the chord to `point` passes all points that were taken, and does not end before them.
    bool reaches(const AcGePoint3d& point) const {
        const Polar to = polar(from_, point);
        if (to.distance < farthest_ - tolerance_) return false;
        return !narrow_ || std::fabs(turned(to.angle - middle_)) <= half_;
    }

    void take(const AcGePoint3d& point) {
        const Polar to = polar(from_, point);
        farthest_ = std::max(farthest_, to.distance);
        if (to.distance <= tolerance_) return;
        const double slack = std::asin(tolerance_ / to.distance);
        if (!narrow_) {
            narrow_ = true;
            middle_ = to.angle;
            half_ = slack;
            return;
        }
        // Both sleeves hold the ray to the point, so that they overlap.
        const double off = turned(to.angle - middle_);
        const double low = std::max(-half_, off - slack), high = std::min(half_, off + slack);
        middle_ += (low + high) / 2.0;
        half_ = (high - low) / 2.0;
    }

  private:
    AcGePoint3d from_;
    double tolerance_;
    double farthest_ = 0.0;
    bool narrow_ = false;  // some ray is ruled out
    double middle_ = 0.0, half_ = 0.0;
};

class Thinner {
  public:
    explicit Thinner(double tolerance) : tolerance_(tolerance), sleeve_({}, tolerance) {}

    void move(const AcGePoint3d& to) {
        flush();
        result_.moveTo(to);
        begin(to);
    }
    void line(const AcGePoint3d& to) {
        if (hasLast_ && !sleeve_.reaches(to)) {
            result_.lineTo(last_);
            begin(last_);
        }
        sleeve_.take(to);
        last_ = to;
        hasLast_ = true;
    }
    void curve(const AcGePoint3d& b, const AcGePoint3d& c, const AcGePoint3d& d) {
        const AcGePoint3d& a = at();
        const auto isNear = [&](const AcGePoint3d& p) { return polar(a, p).distance < tolerance_; };
        if (isNear(b) && isNear(c) && isNear(d)) return line(d);
        flush();
        result_.curveTo(b, c, d);
        begin(d);
    }
    void close() {
        flush();
        result_.close();
    }
    Path take() {
        flush();
        return std::move(result_);
    }

  private:
    const AcGePoint3d& at() const { return hasLast_ ? last_ : start_; }
    void begin(const AcGePoint3d& at) {
        start_ = at;
        sleeve_ = Sleeve(at, tolerance_);
        hasLast_ = false;
    }
    void flush() {
        if (!hasLast_) return;
        result_.lineTo(last_);
        begin(AcGePoint3d(last_));
    }

    Path result_;
    const double tolerance_;
    Sleeve sleeve_;
    AcGePoint3d start_, last_;
    bool hasLast_ = false;  // passed, and not yet in the result
};

}  // namespace

Path thinned(const Path& path, double tolerance) {
    Thinner thinner(tolerance);
    const std::vector<AcGePoint3d>& points = path.points();
    std::size_t next = 0;
    for (const Path::Step step : path.steps()) {
        switch (step) {
            case Path::Step::move:
                thinner.move(points[next++]);
                break;
            case Path::Step::line:
                thinner.line(points[next++]);
                break;
            case Path::Step::curve:
                thinner.curve(points[next], points[next + 1], points[next + 2]);
                next += 3;
                break;
            case Path::Step::close:
                thinner.close();
                break;
        }
    }
    return thinner.take();
}

}  // namespace host::picture
