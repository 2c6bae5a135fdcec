// The Booleans and the bands of PolyLine written down step by step, each search a walk over
// everything: what the indexed forms are compared with, bit for bit.
#pragma once

#include <cmath>
#include <string>
#include <vector>

#include "tests/GeomStructs/PlainChaining.h"
#include "tests/GeomStructs/PlainLinking.h"
#include "tests/GeomStructs/PlainPolygon.h"

namespace TamLib {

enum class Boolean { unite, subtract, intersect };

inline PolyArray Combined(Boolean operation, const PolyLine& here, const PolyLine& there) {
    if (operation == Boolean::unite) return here.Union(there);
    if (operation == Boolean::subtract) return here.Difference(there);
    return here.Intersection(there);
}

inline std::vector<Points> CombinedPlainly(Boolean operation, const PolyLine& here,
                                           const PolyLine& there) {
    const std::vector<Points> copyOfHere =
        here.count > 0 ? std::vector<Points>{PointsOf(here)} : std::vector<Points>{};
    if (!there.IsClosed() || !here.IsClosed()) {
        if (operation == Boolean::intersect) return {};
        if (operation == Boolean::subtract || !there.IsClosed()) return copyOfHere;
        return {PointsOf(there)};
    }
    LineArray lines;
    const auto add = [&](const PolyLine& ring, const PolyLine& other, bool isHere) {
        const PolyLine noded = NodedPlainly(ring, other, nullptr, false, 0);
        for (int i = 0; i <= static_cast<int>(noded.count) - 2; ++i) {
            const Point3d &a = noded.data[i], &b = noded.data[i + 1];
            const Point3d middle((a.x + b.x) * 0.5, (a.y + b.y) * 0.5, (a.z + b.z) * 0.5);
            const int where = InsidePlainly(other, middle, false, true);
            bool kept = where == 1 || where == 2;
            if (operation == Boolean::unite) kept = where != 1;
            if (operation == Boolean::subtract) kept = isHere ? where != 1 : where == 1;
            if (kept) lines.Append(Line(a, b, true));
        }
    };
    add(here, there, true);
    add(there, here, false);
    lines.Tidy(false, true, false);
    return PlainLinking(lines, false, 0.001).result;
}

// --- Bands.

inline std::vector<Points> SplitSelfCrossingsPlainly(const Points& points) {
    const PolyLine line = MakeLine(points);
    Points remainder = PointsOf(NodedPlainly(line, line, nullptr, false, 0));
    std::vector<Points> loops;
    SplitLoopsPlainly(remainder, loops);
    return loops;
}

inline void CutPlainly(Points& ring) {
    for (std::size_t i = 0; i + 3 < ring.size() && ring.size() > 6; ++i) {
        for (std::size_t j = ring.size() - 2; j >= i + 2; --j) {
            if (i == 0 && j == ring.size() - 2) continue;
            Point3d crossing;
            const Line here(ring[i], ring[i + 1]), there(ring[j], ring[j + 1]);
            if (here.Intersect(there, crossing, false) == 0) continue;
            here.Intersect3d(there, crossing, 0, false);
            const auto from = ring.begin() + static_cast<std::ptrdiff_t>(i) + 1;
            const auto to = ring.begin() + static_cast<std::ptrdiff_t>(j) + 1;
            ring.insert(ring.erase(from, to), crossing);
            break;
        }
    }
}

struct PlainBand {
    std::vector<Points> rings;
    std::vector<Points> ribs;

    PlainBand(const PolyLine& original, double leftWidth, double rightWidth, bool clean) {
        left_ = std::fabs(leftWidth);
        right_ = rightWidth < 0 ? left_ : rightWidth;
        PolyLine line(original);
        line.RemoveNearDuplicates(1e-07);
        vertices_ = PointsOf(line);
        closed_ = original.IsClosed() || line.IsClosed();
        if (closed_ && vertices_.size() > 1) vertices_.pop_back();
        if (vertices_.size() < 2) closed_ = false;
        if (vertices_.empty()) return;
        for (std::size_t i = 0; i < vertices_.size(); ++i) AddCorner(i);
        Points back(rightRun_.rbegin(), rightRun_.rend());
        if (closed_) {
            AddRing(leftRun_, clean);
            AddRing(back, clean);
        } else {
            leftRun_.insert(leftRun_.end(), back.begin(), back.end());
            AddRing(leftRun_, clean);
        }
    }

  private:
    static constexpr double kTurn = 6.283185307179586, kQuarter = 1.5707963267948966;

    static Point3d Moved(const Point3d& p, double length, double direction) {
        return {p.x + length * std::cos(direction), p.y + length * std::sin(direction), p.z};
    }

    void AddCorner(std::size_t i) {
        const std::size_t n = vertices_.size();
        const Point3d v = vertices_[i], previous = vertices_[(i + n - 1) % n];
        const Point3d next = vertices_[(i + 1) % n];
        const bool first = !closed_ && i == 0, last = !closed_ && i == n - 1 && !first;
        const double ahead = Angle(v, next), back = Angle(v, previous);
        const double ahead0 = std::fmod(ahead + kTurn, kTurn);
        const double back0 = std::fmod(back + kTurn, kTurn);
        double half = (ahead0 - back0) * 0.5;
        double bisector = (ahead + back) * 0.5;
        if (first) bisector = ahead0 - kQuarter;
        if (last) bisector = back0 + kQuarter;
        if (first || last) half = kQuarter;
        const double before = Distance2d(previous, v), after = Distance2d(v, next);
        const double shortest = before < after ? before : after;
        const auto length = [&](double width) {
            const double limit = shortest > width ? shortest : width;
            const double wanted = width == 0 ? 0 : std::fabs(width / std::sin(half));
            return wanted > limit ? limit : wanted;
        };
        const double leftLength = length(left_), rightLength = length(right_);
        if (first || last || std::fabs(half * 180.0 / 3.141592653589793) < 0.1 ||
            (leftLength <= 1.7 * left_ && rightLength <= 1.7 * right_)) {
            Point3d leftPoint = Moved(v, leftLength, bisector);
            Point3d rightPoint = Moved(v, -rightLength, bisector);
            const Point3d probe = Moved(v, left_ > 0 ? leftLength : rightLength, bisector);
            bool exchange;
            if (first) {
                exchange = Line(v, next).Side(probe, false) == 1;
            } else {
                double turning = Angle(previous, probe) - Angle(previous, v);
                if (turning < 0) turning += kTurn;
                exchange = turning > kQuarter;
            }
            if (exchange) std::swap(leftPoint, rightPoint);
            leftRun_.push_back(leftPoint);
            rightRun_.push_back(rightPoint);
            ribs.push_back({leftPoint, rightPoint});
            return;
        }
        const bool turnsLeft =
            (v.x - previous.x) * (next.y - v.y) > (v.y - previous.y) * (next.x - v.x);
        Points& inner = turnsLeft ? leftRun_ : rightRun_;
        Points& outer = turnsLeft ? rightRun_ : leftRun_;
        const double innerLength = turnsLeft ? leftLength : rightLength;
        const double outerWidth = turnsLeft ? right_ : -left_;
        inner.push_back(
            Moved(v, std::cos(bisector - ahead) < 0 ? -innerLength : innerLength, bisector));
        outer.push_back({v.x + (v.y - previous.y) / before * outerWidth,
                         v.y - (v.x - previous.x) / before * outerWidth, v.z});
        outer.push_back({v.x + (next.y - v.y) / after * outerWidth,
                         v.y - (next.x - v.x) / after * outerWidth, v.z});
    }

    void AddRing(Points ring, bool clean) {
        if (!Equals(ring.back(), ring.front())) ring.push_back(Point3d(ring.front()));
        CutPlainly(ring);
        if (!clean) {
            rings.push_back(ring);
            return;
        }
        const std::vector<Points> loops = SplitSelfCrossingsPlainly(ring);
        const bool wanted = MakeLine(loops.back()).IsClockwise();
        for (const Points& loop : loops) {
            const PolyLine line = MakeLine(loop);
            if (line.IsClockwise() == wanted || RelationPlainly(line, MakeLine(ring)) != 0)
                rings.push_back(loop);
        }
    }

    double left_, right_;
    bool closed_;
    Points vertices_, leftRun_, rightRun_;
};

}  // namespace TamLib
