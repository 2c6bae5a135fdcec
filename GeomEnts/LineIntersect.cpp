// The plan tests of Line: on, below, crossing, clipping.
#include <algorithm>

#include "GeomEnts/Box.h"
#include "GeomEnts/Line.h"

namespace TamLib {
namespace {

constexpr double kEpsilon = 2.220446049250313e-16;

bool Inclusive(double v, double a, double b) {
    return std::min(a, b) <= v && v <= std::max(a, b);
}

// Within the span of `a` and `b`, or within 1e-10 of both, for spans without extent.
bool InSpan(double v, double a, double b) {
    return Inclusive(v, a, b) || (std::fabs(a - v) < 1e-10 && std::fabs(b - v) < 1e-10);
}

double YAt(const Line& line, double x) {
    return line.y1 + (x - line.x1) * (line.y2 - line.y1) / (line.x2 - line.x1);
}

double XAt(const Line& line, double y) {
    return line.x1 + (y - line.y1) * (line.x2 - line.x1) / (line.y2 - line.y1);
}

// What decides `IsBelow` and its variants: when two coordinates are the same, and what a span is.
// The coordinate of the line comes first.
struct FixedTolerance {
    static bool Same(double v, double other) { return std::fabs(v - other) < 0.0001; }
    static bool Within(double v, double a, double b) { return InSpan(v, a, b); }
};
struct NoTolerance {
    static bool Same(double v, double other) { return v == other; }
    static bool Within(double v, double a, double b) { return InSpan(v, a, b); }
};
struct RelativeTolerance {
    // Intended: the tolerance has the sign of `v`, so that below -0.2 nothing is the same.
    static bool Same(double v, double other) {
        return std::fabs(v - other) < v * kEpsilon * 5.0 + kEpsilon;
    }
    static bool Within(double v, double a, double b) {
        return (std::min(a, b) < v && v < std::max(a, b)) || (Same(a, v) && Same(b, v));
    }
};

template <class Rule>
int Below(const Line& line, const Point3d& point, Point3d& foot, bool touch) {
    foot = point;
    const double px = point.x, py = point.y;
    if (touch && ((Rule::Same(line.x1, px) && Rule::Same(line.y1, py)) ||
                  (Rule::Same(line.x2, px) && Rule::Same(line.y2, py))))
        return 2;
    if (!Rule::Same(line.x1, line.x2)) {
        const double y = YAt(line, px);
        foot.y = y;
        if (touch && Rule::Same(y, py) && Rule::Within(px, line.x1, line.x2)) return 2;
        if (!(py > y)) return 0;
        return Rule::Within(px, line.x1, line.x2) ? 1 : 0;
    }
    if (!touch || !Rule::Same(line.x1, px)) return 0;
    return Rule::Within(py, line.y1, line.y2) ? 2 : 0;
}

bool IsVertical(const Line& line) {
    return std::fabs(line.x2 - line.x1) < 1e-8;
}

Point3d Top(const Line& vertical) {
    return {vertical.x1, std::max(vertical.y1, vertical.y2), 0.0};
}

bool WithinY(const Line& vertical, double y) {
    return std::fabs(y - vertical.y1) < 0.0001 || std::fabs(y - vertical.y2) < 0.0001;
}

// A ray from the top of a vertical line came down on the other line at `y`.
int ReachesDown(const Line& vertical, double y) {
    const double low = std::min(vertical.y1, vertical.y2);
    return y > low || std::fabs(y - low) < 1e-8 ? 1 : 0;
}

// The top of a vertical line touches the other line at `y`.
int TopTouches(const Line& vertical, double y) {
    const double low = std::min(vertical.y1, vertical.y2);
    return std::fabs(y - low) < 0.0001 || y > low ? 2 : 0;
}

int IntersectFromVertical(const Line& vertical, const Line& other, Point3d& result, bool touch) {
    Point3d foot;
    const int code = Below<FixedTolerance>(other, Top(vertical), foot, touch);
    result.x = foot.x;
    result.y = foot.y;
    if (touch && code == 1 &&
        (WithinY(vertical, foot.y) || Equals2d(foot, other.Start()) || Equals2d(foot, other.End())))
        return 2;
    if (touch && code == 2) return TopTouches(vertical, foot.y);
    return code == 1 ? ReachesDown(vertical, foot.y) : 0;
}

// Intended: not the mirror of the above. The step down is made with touches whatever is asked, and
// an end of the slanting line near the vertical one is no touch by itself.
int IntersectWithVertical(const Line& slanting, const Line& vertical, Point3d& result, bool touch) {
    Point3d foot;
    const int code = Below<FixedTolerance>(slanting, Top(vertical), foot, true);
    result.x = foot.x;
    result.y = foot.y;
    if (touch && code == 1 && WithinY(vertical, foot.y)) return 2;
    if (touch && code == 2) return TopTouches(vertical, foot.y);
    return code == 1 ? ReachesDown(vertical, foot.y) : 0;
}

// `m1` and `m2` are the slopes. Whether they meet.
bool IntersectParallel(const Line& here, const Line& there, double m1, double m2, Point3d& result) {
    const double left = std::max(std::min(here.x1, here.x2), std::min(there.x1, there.x2));
    const double right = std::min(std::max(here.x1, here.x2), std::max(there.x1, there.x2));
    if (!(left <= right)) return false;
    if (std::fabs((here.y1 - m1 * here.x1) - (there.y1 - m2 * there.x1)) >= 0.0001) return false;
    result.x = left;
    if (std::fabs(left - here.x1) < 1e-9) {
        result.y = here.y1;
    } else if (std::fabs(left - here.x2) < 1e-9) {
        result.y = here.y2;
    } else if (std::fabs(left - there.x1) < 1e-9) {
        result.y = there.y1;
    } else if (std::fabs(left - there.x2) < 1e-9) {
        result.y = there.y2;
    } else {
        result.y = left * m2 + there.y1 - m2 * there.x1;
    }
    return true;
}

int IntersectSlanting(const Line& here, const Line& there, Point3d& result, bool touch) {
    const double m1 = (here.y2 - here.y1) / (here.x2 - here.x1);
    const double m2 = (there.y2 - there.y1) / (there.x2 - there.x1);
    if (!(std::fabs(m1 - m2) >= 1e-8)) {
        if (!IntersectParallel(here, there, m1, m2, result)) return 0;
        return touch ? 2 : 1;
    }
    const double d = ((there.x1 - here.x1) * m1 + here.y1 - there.y1) / (m2 - m1);
    const double x = there.x1 + d, y = there.y1 + d * m2;
    result.x = x;
    result.y = y;
    return InSpan(x, here.x1, here.x2) && InSpan(x, there.x1, there.x2) &&
                   InSpan(y, here.y1, here.y2) && InSpan(y, there.y1, there.y2)
               ? 1
               : 0;
}

// The first end that lies on the other segment.
bool TouchingEnd(const Line& here, const Line& there, Point3d& result) {
    Point3d end;
    if (here.PointOn(there.x1, there.y1, 0.0001)) {
        end = there.Start();
    } else if (here.PointOn(there.x2, there.y2, 0.0001)) {
        end = there.End();
    } else if (there.PointOn(here.x1, here.y1, 0.0001)) {
        end = here.Start();
    } else if (there.PointOn(here.x2, here.y2, 0.0001)) {
        end = here.End();
    } else {
        return false;
    }
    result.x = end.x;
    result.y = end.y;
    return true;
}

double HeightAt(const Line& line, const Point3d& point) {
    const double length = line.Length2d(), along = Distance2d(line.Start(), point);
    if (along == 0.0 || length == 0.0) return line.z1;
    return (line.z2 - line.z1) * along / length + line.z1;
}

// Puts coordinate `axis` of `moving` on `bound`, the other two by interpolation towards `fixed`.
// Without a difference on that axis there is nothing to interpolate, and the point stays outside.
void MoveTo(double* moving, const double* fixed, int axis, double bound) {
    const double span = fixed[axis] - moving[axis];
    if (span == 0.0) return;
    const double t = (bound - moving[axis]) / span;
    for (int other = 0; other < 3; ++other)
        if (other != axis) moving[other] += t * (fixed[other] - moving[other]);
    moving[axis] = bound;
}

void ClipPoint(Point3d& movingEnd, const Point3d& fixedEnd, const Box& box) {
    double moving[3] = {movingEnd.x, movingEnd.y, movingEnd.z};
    const double fixed[3] = {fixedEnd.x, fixedEnd.y, fixedEnd.z};
    const float low[3] = {box.xMin, box.yMin, box.zMin}, high[3] = {box.xMax, box.yMax, box.zMax};
    for (int axis = 0; axis < 3; ++axis) {
        if (moving[axis] < low[axis]) MoveTo(moving, fixed, axis, low[axis]);
        if (moving[axis] > high[axis]) MoveTo(moving, fixed, axis, high[axis]);
    }
    movingEnd = {moving[0], moving[1], moving[2]};
}

bool Outside(double v, float low, float high) {
    return v < low || v > high;
}

// Both ends have the same coordinate on an axis, and it lies outside the box.
bool PassesBeside(const Line& line, const Box& box) {
    return (line.x1 == line.x2 && Outside(line.x1, box.xMin, box.xMax)) ||
           (line.y1 == line.y2 && Outside(line.y1, box.yMin, box.yMax)) ||
           (line.z1 == line.z2 && Outside(line.z1, box.zMin, box.zMax));
}

bool Between(double v, float low, float high) {
    return low <= v && v <= high;
}

// An end lies in the limits, or the ends lie on both sides of them.
bool Reaches(double a, double b, float low, float high) {
    return Between(a, low, high) || Between(b, low, high) || (a < low && b > high) ||
           (a > high && b < low);
}

}  // namespace

bool Line::PointOn(const Point3d& point, double tolerance) const {
    return PointOn(point.x, point.y, tolerance);
}

bool Line::PointOn(double x, double y, double tolerance) const {
    const double dx = x2 - x1, dy = y2 - y1, q = dx * dx + dy * dy;
    if (tolerance > std::fabs(q))
        return std::fabs(x - x1) < tolerance && std::fabs(y - y1) < tolerance;
    const double s = (dx * (y1 - y) - dy * (x1 - x)) / q;
    const double t = ((y1 - y2) * (y1 - y) - (x1 - x) * dx) / q;
    const double r = tolerance * tolerance;
    if (t > 1.0) {
        if ((t - 1.0) * (t - 1.0) + s * s > r) return false;
        if ((x - x2) * (x - x2) + (y - y2) * (y - y2) > r) return false;
    }
    if (t < 0.0) {
        if (t * t + s * s > r) return false;
        if ((x - x1) * (x - x1) + (y - y1) * (y - y1) > r) return false;
    }
    return r > s * s * q;
}

int Line::IsBelow(const Point3d& point, Point3d& foot, bool touch) const {
    return Below<FixedTolerance>(*this, point, foot, touch);
}

int Line::IsBelowExact(const Point3d& point, Point3d& foot) const {
    return Below<NoTolerance>(*this, point, foot, true);
}

int Line::IsBelowEpsilon(const Point3d& point, Point3d& foot) const {
    return Below<RelativeTolerance>(*this, point, foot, true);
}

int Line::Intersect(const Line& other, Point3d& result, bool touch) const {
    if (IsVertical(*this)) return IntersectFromVertical(*this, other, result, touch);
    if (IsVertical(other)) return IntersectWithVertical(*this, other, result, touch);
    if (touch && TouchingEnd(*this, other, result)) return 2;
    return IntersectSlanting(*this, other, result, touch);
}

int Line::Intersect3d(const Line& other, Point3d& result, int zMode, bool touch) const {
    const int code = Intersect(other, result, touch);
    switch (zMode) {
        case 0:
            result.z = HeightAt(*this, result);
            break;
        case 1:
            result.z = HeightAt(other, result);
            break;
        case 2:
            result.z = (HeightAt(*this, result) + HeightAt(other, result)) * 0.5;
            break;
        default:
            result.z = 0.0;
    }
    return code;
}

bool Line::ClipToBox(const Box& box) {
    if (box.Contains(GetBox())) return false;
    if (PassesBeside(*this, box)) return true;
    Point3d start = Start(), end = End();
    ClipPoint(start, end, box);
    SetStart(start);
    if (PassesBeside(*this, box)) return true;
    ClipPoint(end, start, box);
    SetEnd(end);
    return Equals(start, end);
}

bool Line::IntersectsBox2d(const Box& box) const {
    if ((x1 < box.xMin && x2 < box.xMin) || (x1 > box.xMax && x2 > box.xMax) ||
        (y1 < box.yMin && y2 < box.yMin) || (y1 > box.yMax && y2 > box.yMax))
        return false;
    const bool xInside = Between(x1, box.xMin, box.xMax) && Between(x2, box.xMin, box.xMax);
    const bool yInside = Between(y1, box.yMin, box.yMax) && Between(y2, box.yMin, box.yMax);
    if (yInside && Reaches(x1, x2, box.xMin, box.xMax)) return true;
    if (xInside && Reaches(y1, y2, box.yMin, box.yMax)) return true;
    return Between(YAt(*this, box.xMax), box.yMin, box.yMax) ||
           Between(YAt(*this, box.xMin), box.yMin, box.yMax) ||
           Between(XAt(*this, box.yMax), box.xMin, box.xMax) ||
           Between(XAt(*this, box.yMin), box.xMin, box.xMax);
}

}  // namespace TamLib
