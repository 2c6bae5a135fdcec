#include "host/picture/Path.h"

#include <algorithm>
#include <cmath>

namespace host::picture {
namespace {

using database::Curve;

constexpr double tolerancePerLength = 1.0 / 20000.0;
constexpr int mostHalvings = 8;

// A piece of a curve between two parameters, both ends with their derivatives scaled to the piece.
struct Piece {
    double from, to;
    AcGePoint3d start, end;
    AcGeVector3d startTangent, endTangent;
};

Piece pieceOf(const Curve& curve, double from, double to) {
    const double width = to - from;
    return {from,
            to,
            curve.pointAt(from),
            curve.pointAt(to),
            curve.derivativeAt(from) * width,
            curve.derivativeAt(to) * width};
}

// How long the handles of the cubic have to be, as a part of the tangents, for it to pass through
// the middle of the curve; a third, as for a polynomial of third degree, where that does not
// decide.
double handleFactor(const Piece& piece, const AcGePoint3d& middle) {
    constexpr double third = 1.0 / 3.0;
    const AcGeVector3d turn = piece.startTangent - piece.endTangent;
    const double square = turn.dotProduct(turn);
    const AcGeVector3d rise = (middle - piece.start) * 0.5 + (middle - piece.end) * 0.5;
    const double factor = square > 0.0 ? 8.0 / 3.0 * rise.dotProduct(turn) / square : third;
    return factor > 0.1 && factor < 1.0 ? factor : third;
}

AcGePoint3d onCubic(const AcGePoint3d (&p)[4], double t) {
    const double s = 1.0 - t;
    const double a = s * s * s, b = 3.0 * s * s * t, c = 3.0 * s * t * t, d = t * t * t;
    return {a * p[0].x + b * p[1].x + c * p[2].x + d * p[3].x,
            a * p[0].y + b * p[1].y + c * p[2].y + d * p[3].y,
            a * p[0].z + b * p[1].z + c * p[2].z + d * p[3].z};
}

void addPiece(Path& path, const Curve& curve, double from, double to, double tolerance,
              int halvings) {
    const Piece piece = pieceOf(curve, from, to);
    const double factor = handleFactor(piece, curve.pointAt(from + (to - from) * 0.5));
    const AcGePoint3d cubic[4] = {piece.start, piece.start + piece.startTangent * factor,
                                  piece.end - piece.endTangent * factor, piece.end};
    bool fits = true;
    for (const double t : {0.25, 0.5, 0.75}) {
        const AcGePoint3d wanted = curve.pointAt(from + (to - from) * t);
        fits = fits && onCubic(cubic, t).distanceTo(wanted) <= tolerance;
    }
    if (fits || halvings == 0) {
        path.curveTo(cubic[1], cubic[2], cubic[3]);
    } else {
        const double middle = from + (to - from) * 0.5;
        addPiece(path, curve, from, middle, tolerance, halvings - 1);
        addPiece(path, curve, middle, to, tolerance, halvings - 1);
    }
}

bool isSame(const AcGePoint3d& a, const AcGePoint3d& b) {
    return a.x == b.x && a.y == b.y && a.z == b.z;
}

// About the length of a span: its size is what is wanted.
double roughLength(const Curve& curve, double from, double to) {
    const double half = (to - from) * 0.5;
    return (curve.derivativeAt(from).length() + curve.derivativeAt(from + half).length()) * half;
}

}  // namespace

void Path::moveTo(const AcGePoint3d& point) {
    steps_.push_back(Step::move);
    points_.push_back(point);
}

void Path::lineTo(const AcGePoint3d& point) {
    steps_.push_back(Step::line);
    points_.push_back(point);
}

void Path::curveTo(const AcGePoint3d& handle1, const AcGePoint3d& handle2,
                   const AcGePoint3d& point) {
    steps_.push_back(Step::curve);
    points_.insert(points_.end(), {handle1, handle2, point});
}

void Path::close() {
    steps_.push_back(Step::close);
}

void Path::add(const Curve& curve, double largestError) {
    const std::vector<double>& breaks = curve.breaks();
    const AcGePoint3d start = curve.pointAt(breaks.front());
    moveTo(start);
    for (std::size_t i = 0; i + 1 < breaks.size(); ++i) {
        const double from = breaks[i], to = breaks[i + 1];
        if (curve.isStraight(i))
            lineTo(curve.pointAt(to));
        else
            addPiece(*this, curve, from, to,
                     std::min(largestError, roughLength(curve, from, to) * tolerancePerLength),
                     mostHalvings);
    }
    if (steps_.size() > 2 && isSame(start, points_.back())) close();
}

void Path::add(const std::vector<AcGePoint3d>& chain) {
    if (chain.empty()) return;
    moveTo(chain.front());
    for (std::size_t i = 1; i < chain.size(); ++i) lineTo(chain[i]);
    if (chain.size() > 2 && isSame(chain.front(), chain.back())) close();
}

void Path::addRing(const std::vector<AcGePoint3d>& ring) {
    add(ring);
    if (!ring.empty() && steps_.back() != Step::close) close();
}

Path Path::mapped(const AcGeMatrix3d& matrix) const {
    Path path(*this);
    for (AcGePoint3d& point : path.points_) point.transformBy(matrix);
    return path;
}

}  // namespace host::picture
