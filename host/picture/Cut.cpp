#include "host/picture/Cut.h"

#include <algorithm>
#include <cmath>

namespace host::picture {
namespace {

using editor::PlanBox;
using Points = std::vector<AcGePoint3d>;

constexpr int mostHalvings = 60;

// Beyond this, products of coordinates overflow.
constexpr double largest = 1e99;

bool isFinite(const AcGePoint3d& point) {
    return std::fabs(point.x) < largest && std::fabs(point.y) < largest;
}

AcGePoint3d between(const AcGePoint3d& a, const AcGePoint3d& b, double t) {
    return {a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t, 0.0};
}

PlanBox boxOf(std::initializer_list<AcGePoint3d> points) {
    PlanBox box;
    for (const AcGePoint3d& point : points) box.add({point.x, point.y});
    return box;
}

// One of the rectangle's sides as a half plane: how far inside of it a point lies.
struct Side {
    bool across;   // the side bounds x
    double bound;  // at this value
    double sense;  // 1: inside above it, -1: inside below
    double inside(const AcGePoint3d& p) const { return ((across ? p.x : p.y) - bound) * sense; }
};

std::vector<Side> sidesOf(const PlanBox& box) {
    return {{true, box.min.x, 1.0},
            {true, box.max.x, -1.0},
            {false, box.min.y, 1.0},
            {false, box.max.y, -1.0}};
}

class Cutter {
  public:
    explicit Cutter(const PlanBox& box) : box_(box), sides_(sidesOf(box)) {}

    void move(const AcGePoint3d& to) { at_ = to; }

    // Liang and Barsky: the part between the last entry and the first exit.
    void line(const AcGePoint3d& to) {
        double enter = 0.0, leave = 1.0;
        for (const Side& side : sides_) {
            const double a = side.inside(at_), b = side.inside(to);
            if (a < 0.0 && b < 0.0)
                enter = 2.0;
            else if (a < 0.0)
                enter = std::max(enter, a / (a - b));
            else if (b < 0.0)
                leave = std::min(leave, a / (a - b));
        }
        if (enter <= leave) {
            connect(between(at_, to, enter));
            result_.lineTo(leave < 1.0 ? between(at_, to, leave) : to);
        }
        at_ = to;
    }

    void curve(const AcGePoint3d& b, const AcGePoint3d& c, const AcGePoint3d& d) {
        curve(at_, b, c, d, mostHalvings);
        at_ = d;
    }

    Path take() { return std::move(result_); }

  private:
    // The path goes on from `point`, or begins anew there.
    void connect(const AcGePoint3d& point) {
        const bool goesOn = !result_.empty() && result_.points().back().x == point.x &&
                            result_.points().back().y == point.y;
        if (!goesOn) result_.moveTo(point);
    }

    // De Casteljau: halves until a part lies apart from the rectangle or is no larger than it.
    void curve(const AcGePoint3d& a, const AcGePoint3d& b, const AcGePoint3d& c,
               const AcGePoint3d& d, int halvings) {
        const PlanBox hull = boxOf({a, b, c, d});
        if (!hull.overlaps(box_)) return;
        const bool isSmall = hull.max.x - hull.min.x <= box_.max.x - box_.min.x &&
                             hull.max.y - hull.min.y <= box_.max.y - box_.min.y;
        if (isSmall || halvings == 0) {
            connect(a);
            result_.curveTo(b, c, d);
            return;
        }
        const AcGePoint3d ab = between(a, b, 0.5), bc = between(b, c, 0.5), cd = between(c, d, 0.5);
        const AcGePoint3d abc = between(ab, bc, 0.5), bcd = between(bc, cd, 0.5);
        const AcGePoint3d middle = between(abc, bcd, 0.5);
        curve(a, ab, abc, middle, halvings - 1);
        curve(middle, bcd, cd, d, halvings - 1);
    }

    const PlanBox box_;
    const std::vector<Side> sides_;
    AcGePoint3d at_;
    Path result_;
};

// Sutherland and Hodgman, one side of the rectangle.
Points cutAt(const Side& side, const Points& polygon) {
    Points result;
    for (std::size_t i = 0; i < polygon.size(); ++i) {
        const AcGePoint3d& a = polygon[i];
        const AcGePoint3d& b = polygon[(i + 1) % polygon.size()];
        const double from = side.inside(a), to = side.inside(b);
        if (from >= 0.0) result.push_back(a);
        if ((from < 0.0) != (to < 0.0)) result.push_back(between(a, b, from / (from - to)));
    }
    return result;
}

}  // namespace

bool isWithin(const Path& path, const PlanBox& box) {
    const Points& points = path.points();
    return std::all_of(points.begin(), points.end(), [&](const AcGePoint3d& point) {
        return isFinite(point) && box.contains(editor::PlanPoint{point.x, point.y});
    });
}

Path cutTo(const PlanBox& box, const Path& path) {
    const Points& points = path.points();
    if (!std::all_of(points.begin(), points.end(), isFinite)) return {};
    Cutter cutter(box);
    AcGePoint3d start;
    std::size_t next = 0;
    for (const Path::Step step : path.steps()) {
        switch (step) {
            case Path::Step::move:
                start = points[next++];
                cutter.move(start);
                break;
            case Path::Step::line:
                cutter.line(points[next++]);
                break;
            case Path::Step::curve:
                cutter.curve(points[next], points[next + 1], points[next + 2]);
                next += 3;
                break;
            case Path::Step::close:
                cutter.line(start);
                break;
        }
    }
    return cutter.take();
}

Path polygonCutTo(const PlanBox& box, const Path& path) {
    const Points& points = path.points();
    Path result;
    if (!std::all_of(points.begin(), points.end(), isFinite)) return result;
    Points ring;
    const auto finish = [&] {
        for (const Side& side : sidesOf(box)) ring = cutAt(side, ring);
        if (ring.size() > 2) result.addRing(ring);
        ring.clear();
    };
    std::size_t next = 0;
    for (const Path::Step step : path.steps()) {
        if (step == Path::Step::move) finish();
        if (step == Path::Step::curve) next += 2;
        if (step != Path::Step::close) ring.push_back(points[next++]);
    }
    finish();
    return result;
}

}  // namespace host::picture
