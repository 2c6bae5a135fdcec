// The outline of a band along a polyline.
#include <algorithm>
#include <cmath>
#include <utility>

#include "GeomEnts/Pi.h"
#include "GeomStructs/PolyArray.h"
#include "GeomStructs/PolyArrayParts.h"
#include "GeomStructs/SegmentIndex.h"

namespace TamLib {
namespace {

constexpr double kTurn = 6.283185307179586;
constexpr double kQuarter = 1.5707963267948966;
constexpr double kHairpin = 0.1;       // degrees, of half the corner
constexpr double kLongestMitre = 1.7;  // widths
constexpr int kFewVertices = 6;        // of a ring that is not cut any more

double Normalised(double angle) {
    return std::fmod(angle + kTurn, kTurn);
}

struct Pair {
    Point3d left, right;
};

struct Widths {
    double left, right;
};

// A vertex with the directions to its neighbours, which at the ends of an open line are those at
// the other end.
struct Corner {
    Point3d previous, vertex, next;
    bool first, last;  // of an open line
    double ahead, back;
    double half;      // of the difference of both; -pi to pi
    double bisector;  // or the direction across, at an end

    Corner(const PolyLine& line, std::uint32_t i, bool closed)
        : previous(line.data[i > 0 ? i - 1 : line.count - 1]),
          vertex(line.data[i]),
          next(line.data[i + 1 < line.count ? i + 1 : 0]),
          first(!closed && i == 0),
          last(!closed && !first && i + 1 == line.count),
          ahead(Angle(vertex, next)),
          back(Angle(vertex, previous)) {
        half = IsEnd() ? kQuarter : (Normalised(ahead) - Normalised(back)) * 0.5;
        bisector = first  ? Normalised(ahead) - kQuarter
                   : last ? Normalised(back) + kQuarter
                          : (ahead + back) * 0.5;
    }

    bool IsEnd() const { return first || last; }
    bool IsHairpin() const { return std::fabs(half * 180.0 / kPi) < kHairpin; }
    bool TurnsLeft() const {
        return (vertex.x - previous.x) * (next.y - vertex.y) >
               (vertex.y - previous.y) * (next.x - vertex.x);
    }

    // How far one side moves along the bisector.
    double Length(double width) const {
        if (width == 0.0) return 0.0;
        const double shortest = std::min(Distance2d(previous, vertex), Distance2d(vertex, next));
        return std::min(width / std::fabs(std::sin(half)), std::max(shortest, width));
    }
    // Along the bisector; backwards with a negative length.
    Point3d Along(double length) const {
        return {vertex.x + length * std::cos(bisector), vertex.y + length * std::sin(bisector),
                vertex.z};
    }
    // Whether a point lies right of the way.
    bool IsRight(const Point3d& point) const {
        if (first) return Line(vertex, next).Side(point, /*touch=*/false) > 0;
        const double turning = Angle(previous, point) - Angle(previous, vertex);
        return (turning < 0.0 ? turning + kTurn : turning) > kQuarter;
    }
    Pair Simple(const Widths& lengths) const {
        const Pair pair{Along(lengths.left), Along(-lengths.right)};
        // Without a width there is no side: that of the other one decides.
        const Point3d left = lengths.left > 0.0 ? pair.left : Along(lengths.right);
        // Intended: with their lengths.
        return IsRight(left) ? Pair{pair.right, pair.left} : pair;
    }
    // On the bisector, within the corner.
    Point3d Inner(double length) const {
        return Along(std::cos(bisector - ahead) < 0.0 ? -length : length);
    }
    // Across the segment from `from` to `to`, to the right with a positive width.
    Point3d Across(const Point3d& from, const Point3d& to, double width) const {
        const double dx = to.x - from.x, dy = to.y - from.y, length = Distance2d(from, to);
        return {vertex.x + dy / length * width, vertex.y - dx / length * width, vertex.z};
    }
};

// The two sides of a band, vertex by vertex.
class Sides {
  public:
    Sides(std::uint32_t vertices, PolyArray* ribs)
        : left(static_cast<int>(vertices) + 1),
          right(static_cast<int>(vertices) + 1),
          ribs_(ribs) {}

    void Add(const Corner& corner, const Widths& widths) {
        const Widths lengths{corner.Length(widths.left), corner.Length(widths.right)};
        const bool isShort = lengths.left <= widths.left * kLongestMitre &&
                             lengths.right <= widths.right * kLongestMitre;
        if (corner.IsEnd() || corner.IsHairpin() || isShort) {
            AddPair(corner.Simple(lengths));
        } else if (corner.TurnsLeft()) {
            left.Append(corner.Inner(lengths.left));
            AddBevel(corner, widths.right, right);
        } else {
            right.Append(corner.Inner(lengths.right));
            AddBevel(corner, -widths.left, left);
        }
    }

    PolyLine left, right;

  private:
    void AddPair(const Pair& pair) {
        left.Append(pair.left);
        right.Append(pair.right);
        if (ribs_ == nullptr) return;
        auto rib = detail::MakeNew<PolyLine>(detail::kCopyLine, 2);
        rib->Append(pair.left);
        rib->Append(pair.right);
        ribs_->Add(rib.release());
    }
    static void AddBevel(const Corner& corner, double width, PolyLine& side) {
        side.Append(corner.Across(corner.previous, corner.vertex, width));
        side.Append(corner.Across(corner.vertex, corner.next, width));
    }

    PolyArray* ribs_;
};

// Finds where the segments of a ring are crossed further on.
class RingCrossings {
  public:
    explicit RingCrossings(const PolyLine& ring) : ring_(ring), index_(ring) {}

    // The last of the segments `from` to `to` that `segment` crosses, or -1. `point` gets the place
    // and the height of `segment` there.
    int Last(const Line& segment, int from, int to, Point3d& point) const {
        int last = -1;
        index_.ForEachNear(segment, [&](int i) {
            Point3d crossing;
            if (i < from || i > to) return i > to;
            const Line other(ring_.data[i], ring_.data[i + 1]);
            if (segment.Intersect3d(other, crossing, 0, /*touch=*/false) == 0) return false;
            last = i;
            point = crossing;
            return false;
        });
        return last;
    }

  private:
    const PolyLine& ring_;
    SegmentIndex index_;
};

// A closed ring with its small loops cut out. What lies ahead of a segment is still as it was in
// the ring, however many loops have gone behind it.
PolyLine Cut(const PolyLine& ring) {
    const RingCrossings crossings(ring);
    const int vertices = static_cast<int>(ring.count);
    PolyLine cut(vertices);
    cut.Append(ring.data[0]);
    for (int next = 1; next < vertices;) {
        Point3d point;
        int last = -1;
        const auto left = static_cast<int>(cut.count) + vertices - next;
        if (left > kFewVertices) {
            // The last segment ends where the first one begins.
            const int to = vertices - (cut.count == 1 ? 3 : 2);
            last = crossings.Last(Line(cut[-1], ring.data[next]), next + 1, to, point);
        }
        cut.Append(last < 0 ? ring.data[next] : point);
        next = last < 0 ? next + 1 : last + 1;
    }
    return cut;
}

// The loops of a ring that turn as its last one does, and those that lie at it.
PolyArray Cleaned(const PolyLine& ring) {
    PolyArray loops;
    ring.SplitSelfCrossings(loops);
    const SegmentIndex index(ring);
    // `Relation` is not 0 for what has a vertex on the ring.
    const auto touches = [&](const Point3d& vertex) { return index.Inside(vertex, true) == 2; };
    const bool clockwise = loops[-1]->IsClockwise();
    detail::DropIf(loops, [&](const PolyLine& loop) {
        return loop.IsClockwise() != clockwise && std::none_of(loop.begin(), loop.end(), touches) &&
               loop.Relation(ring) == 0;
    });
    return loops;
}

// Both sides along a line. A ring that has come down to one vertex is open: it has no way round.
Sides SidesOf(const PolyLine& original, const Widths& widths, bool& closed, PolyArray* ribs) {
    PolyLine line(original);
    line.RemoveNearDuplicates(1e-07);
    closed = (original.IsClosed() || line.IsClosed()) && line.count > 1;
    if (closed) line.Remove(-1, 1);
    closed = closed && line.count > 1;
    Sides sides(line.count, ribs);
    for (std::uint32_t i = 0; i < line.count; ++i) sides.Add({line, i, closed}, widths);
    return sides;
}

}  // namespace

void PolyLine::OffsetBand(PolyArray* result, double left, double right, PolyArray* ribs, bool clean,
                          int /*flags*/) const {
    PolyArray rings, newRibs;
    const auto add = [&](PolyLine& ring) {
        ring.Close();
        const PolyLine cut = Cut(ring);
        PolyArray loops = clean ? Cleaned(cut) : detail::ArrayOf(cut);
        detail::MoveAll(loops, rings);
    };
    if (count > 0) {
        const double width = std::fabs(left);
        bool closed = false;
        Sides sides = SidesOf(*this, {width, right < 0.0 ? width : right}, closed,
                              ribs != nullptr ? &newRibs : nullptr);
        sides.right.Reverse();
        if (closed) {
            add(sides.left);
            add(sides.right);
        } else {
            sides.left.Append(sides.right);
            add(sides.left);
        }
    }
    for (PolyArray* const made : {&rings, &newRibs})
        for (PolyLine* const line : *made) line->offset = offset;
    if (ribs != nullptr) detail::MoveAll(newRibs, *ribs);
    detail::Replace(*result, rings);
}

}  // namespace TamLib
