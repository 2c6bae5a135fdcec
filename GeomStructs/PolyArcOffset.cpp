// The parallel curve of a PolyArc.
#include <cmath>
#include <vector>

#include "GeomEnts/Pi.h"
#include "GeomStructs/PolyArc.h"

namespace TamLib {
namespace {

// A segment moved sideways. Its arc lies in plan, at height 0.
struct Piece {
    Arc arc;
    Point3d centre;      // of an arc
    Point3d corner;      // the old vertex that it starts at
    Point3d start, end;  // where it is cut to, at the heights of the old vertices
    bool cut = false;
    bool joined = true;  // meets the piece before it

    bool IsStraight() const { return arc.height == 0.0; }
};

Point3d InPlan(const Point3d& point) {
    return {point.x, point.y, 0.0};
}

Point3d At(const Point3d& place, double z) {
    return {place.x, place.y, z};
}

Point3d Scaled(const Point3d& point, const Point3d& centre, double scale) {
    return {centre.x + (point.x - centre.x) * scale, centre.y + (point.y - centre.y) * scale, 0.0};
}

// Moves the arc by `right` to the right of the way. False when it loses its place.
bool MoveArc(Piece& piece, double right) {
    Arc& arc = piece.arc;
    arc.Centre(piece.centre);
    const double radius = arc.Radius(), moved = arc.height > 0.0 ? radius - right : radius + right;
    if (!(moved > 0.0)) return false;
    const double scale = moved / radius;
    const Point3d start = Scaled(arc.Start(), piece.centre, scale);
    const Point3d end = Scaled(arc.End(), piece.centre, scale);
    // Too small for the coordinates' digits.
    if (Distance2d(start, end) == 0.0 || Distance2d(start, piece.centre) == 0.0) return false;
    arc = Arc(arc.height * scale, Line(start, end));
    return true;
}

void MoveStraight(Arc& arc, double right) {
    arc.height = 0.0;
    const double length = arc.Length2d();
    const Point3d along = arc.Direction();
    arc.Translate({along.y / length * right, -along.x / length * right, 0.0});
}

std::vector<Piece> MovedPieces(const PolyArc& line, double right) {
    std::vector<Piece> pieces;
    for (int i = 0; i + 1 < static_cast<int>(line.count); ++i) {
        const Point3d &from = line.data[i], &to = line.data[i + 1];
        Piece piece;
        piece.arc = Arc(line.GetArc(i).height, Line(InPlan(from), InPlan(to)));
        piece.corner = from;
        if (std::fabs(piece.arc.height) < 0.0001) {
            MoveStraight(piece.arc, right);
        } else if (!MoveArc(piece, right)) {
            continue;
        }
        piece.start = At(piece.arc.Start(), from.z);
        piece.end = At(piece.arc.End(), to.z);
        pieces.push_back(piece);
    }
    return pieces;
}

Line Extended(const Line& line) {
    Line longer(line);
    longer.Extend(3.0);
    return longer;
}

// The points in which two pieces meet.
void Meet(const Piece& before, const Piece& after, Point3dArrayBase<Point3d>& points) {
    if (before.IsStraight() && after.IsStraight()) {
        Point3d point;
        if (Extended(before.arc).Intersect(Extended(after.arc), point, /*touch=*/false) != 0)
            points.Append(point);
    } else if (before.IsStraight()) {
        after.arc.Intersect(Extended(before.arc), points);
    } else if (after.IsStraight()) {
        before.arc.Intersect(Extended(after.arc), points);
    } else {
        before.arc.Intersect(after.arc, points);
    }
}

// Circles within each other, or about one centre, give points of one of them or none at all.
// Tested against the centre of the moved arc itself: where it is flat the digits of its ends shift
// it from the one it was moved about, far beyond the tolerance.
bool IsOnCircle(const Piece& piece, const Point3d& point) {
    if (piece.IsStraight()) return true;
    Point3d centre;
    piece.arc.Centre(centre);
    return std::fabs(Distance2d(point, centre) - piece.arc.Radius()) <= 0.0001;
}

// Cuts two pieces where they meet nearest to the corner between them.
void CutAtCorner(Piece& before, Piece& after) {
    if (Equals2d(before.end, after.start)) {
        after.start = before.end;
        return;
    }
    Point3dArrayBase<Point3d> points;
    Meet(before, after, points);
    const Point3d* nearest = nullptr;
    for (const Point3d& point : points) {
        if (!IsOnCircle(before, point) || !IsOnCircle(after, point)) continue;
        if (nearest == nullptr ||
            Distance2d(point, after.corner) < Distance2d(*nearest, after.corner))
            nearest = &point;
    }
    after.joined = nearest != nullptr;
    if (nearest == nullptr) return;
    before.end = after.start = At(*nearest, after.corner.z);
    before.cut = after.cut = true;
}

// The angle from the middle of the piece's arc to a point, along the way.
double TurnFromMiddle(const Piece& piece, const Point3d& point) {
    Point3d middle;
    piece.arc.PointAtFraction(0.5, middle);
    const auto angle = [&](const Point3d& p) {
        return std::atan2(p.y - piece.centre.y, p.x - piece.centre.x);
    };
    const double turn = std::remainder(angle(point) - angle(middle), 2.0 * kPi);
    return piece.arc.height > 0.0 ? -turn : turn;
}

// The height of what is left of the arc; with its ends exchanged by the cuts it runs the other way.
double HeightOf(const Piece& piece) {
    if (piece.IsStraight() || !piece.cut) return piece.arc.height;
    const double turn = TurnFromMiddle(piece, piece.end) - TurnFromMiddle(piece, piece.start);
    const double quarter = std::sin(turn * 0.25);
    const double rise = piece.arc.Radius() * 2.0 * quarter * quarter;
    return (piece.arc.height > 0.0) == (turn > 0.0) ? rise : -rise;
}

}  // namespace

void PolyArc::Offset(PolyArc* result, double distance) const {
    if (std::fabs(distance) < 0.0001) {
        if (result != this) *result = *this;
        return;
    }
    PolyArc line(*this);
    line.RemoveNearDuplicates(1e-07);
    const bool closed = IsClosed();
    const bool flip = (closed && IsClockwise()) != (distance < 0.0);
    std::vector<Piece> pieces =
        MovedPieces(line, flip ? -std::fabs(distance) : std::fabs(distance));
    const std::size_t n = pieces.size();
    for (std::size_t i = 1; i < n; ++i) CutAtCorner(pieces[i - 1], pieces[i]);
    if (closed && n > 1) CutAtCorner(pieces[n - 1], pieces[0]);

    PolyArc moved(static_cast<int>(line.count));
    moved.offset = offset;
    for (std::size_t i = 0; i < n; ++i) {
        if (i == 0 || !pieces[i].joined) moved.AddVertex(pieces[i].start, 0.0);
        moved.AddVertex(pieces[i].end, HeightOf(pieces[i]));
    }
    if (closed && n > 1 && !pieces[0].joined) moved.AddVertex(pieces[0].start, 0.0);
    *result = moved;
}

}  // namespace TamLib
