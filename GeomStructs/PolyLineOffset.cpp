// The parallel of a polyline.
#include <cmath>

#include "GeomStructs/PolyArray.h"
#include "GeomStructs/PolyArrayParts.h"
#include "GeomStructs/PolyLine.h"

namespace TamLib {
namespace {

constexpr double kTurn = 6.283185307179586;
constexpr double kQuarter = 1.5707963267948966;
constexpr double kLongestSpike = 25.0;  // distances

double NonNegative(double angle) {
    return angle < 0.0 ? angle + kTurn : angle;
}

double AngleTo(const Point3d& from, const Point3d& to) {
    return NonNegative(Angle(from, to));
}

// Moves vertices by a distance; `flip` is to the left of the way.
struct Mover {
    double distance;  // not negative
    bool flip;

    // `half` of the sweep from `back` to `ahead`, the directions to both neighbours.
    Point3d Moved(const Point3d& vertex, double back, double ahead, double half) const {
        double direction = half + back;
        if (flip) {
            direction = (kTurn - half * 2.0) * 0.5 + ahead;
        } else {
            half = kTurn - half;
        }
        double length = distance / std::fabs(std::sin(half));
        if (length > distance * kLongestSpike) length = distance * kLongestSpike;
        return {vertex.x + length * std::cos(direction), vertex.y + length * std::sin(direction),
                vertex.z};
    }
    Point3d Corner(const Point3d& previous, const Point3d& vertex, const Point3d& next) const {
        const double back = AngleTo(vertex, previous), ahead = AngleTo(vertex, next);
        return Moved(vertex, back, ahead, NonNegative(ahead - back) * 0.5);
    }
    Point3d First(const Point3d& vertex, const Point3d& next) const {
        const double ahead = AngleTo(vertex, next);
        return Moved(vertex, ahead, ahead, flip ? kQuarter : -kQuarter);
    }
    Point3d Last(const Point3d& previous, const Point3d& vertex) const {
        const double back = AngleTo(vertex, previous);
        return Moved(vertex, back, back, flip ? -kQuarter : kQuarter);
    }
};

// Each vertex of `line`, that of a ring not repeated, moved in its place.
PolyLine Moved(const PolyLine& line, bool closed, const Mover& mover) {
    PolyLine moved(static_cast<int>(line.count) + 1);
    for (std::uint32_t i = 0; i < line.count; ++i) {
        const Point3d& vertex = line.data[i];
        const Point3d& previous = line.data[i > 0 ? i - 1 : line.count - 1];
        const Point3d& next = line.data[i + 1 < line.count ? i + 1 : 0];
        if (!closed && i == 0) {
            moved.Append(mover.First(vertex, next));
        } else if (!closed && i + 1 == line.count) {
            moved.Append(mover.Last(previous, vertex));
        } else {
            moved.Append(mover.Corner(previous, vertex, next));
        }
    }
    if (closed) moved.Append(Point3d(moved.data[0]));
    return moved;
}

// Whether each side of the moved ring runs against the side it comes from.
bool IsInverted(const PolyLine& line, const PolyLine& moved) {
    for (std::uint32_t i = 0; i < line.count; ++i) {
        const Point3d &from = line.data[i], &to = line.data[i + 1 < line.count ? i + 1 : 0];
        const Point3d &movedFrom = moved.data[i], &movedTo = moved.data[i + 1];
        const double along = (to.x - from.x) * (movedTo.x - movedFrom.x) +
                             (to.y - from.y) * (movedTo.y - movedFrom.y);
        if (!(along < 0.0)) return false;
    }
    return true;
}

// The loops of a moved line of `closed` or open origin that count. Where a polygon has been used
// up, a single loop is its inside turned inside out.
PolyArray Cleaned(const PolyLine& line, const PolyLine& moved, bool closed, bool clockwise) {
    PolyArray loops;
    moved.SplitSelfCrossings(loops);
    const bool single = loops.count == 1;
    if (single && !closed) return loops;
    if (single && IsInverted(line, moved)) return PolyArray();
    detail::DropIf(loops, [&](const PolyLine& loop) {
        return loop.IsClosed() && loop.IsClockwise() != clockwise;
    });
    return loops;
}

PolyArray Offsets(const PolyLine& original, double distance, bool clean) {
    if (std::fabs(distance) < 0.0001) return detail::ArrayOf(original);
    const bool closed = original.IsClosed(), clockwise = original.IsClockwise();
    const bool flip = (closed && clockwise) != (distance < 0.0);
    PolyLine line(original);
    line.RemoveNearDuplicates(1e-07);
    if (closed && line.count > 1) line.Remove(-1, 1);
    const PolyLine moved = Moved(line, closed, {std::fabs(distance), flip});
    if (!clean) return detail::ArrayOf(moved);
    return Cleaned(line, moved, closed, closed ? clockwise : !flip);
}

}  // namespace

void PolyLine::Offset(PolyArray* result, double distance, bool clean) const {
    PolyArray offsets = Offsets(*this, distance, clean);
    for (PolyLine* const parallel : offsets) parallel->offset = offset;
    detail::Replace(*result, offsets);
}

}  // namespace TamLib
