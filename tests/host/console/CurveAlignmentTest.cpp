// Curves as the picked line, through the program: its rotations against curves that are evaluated
// here apart from it (by their basis functions, by plain trigonometry, by solving for the second
// derivatives) and walked step by step by their lengths; arcs turned about their middles.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "tests/app/BruteForce.h"
#include "tests/host/console/ChildProcess.h"
#include "tests/host/console/PlainDrawing.h"

namespace {

using namespace console_test;
using app_test::DrawingText;
using app_test::Vertex;

constexpr double kPi = 3.141592653589793;

Vertex operator+(Vertex a, Vertex b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
Vertex operator-(Vertex a, Vertex b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
Vertex operator*(Vertex a, double factor) {
    return {a.x * factor, a.y * factor, a.z * factor};
}

// A curve known by formula.
struct Formula {
    double from = 0.0;
    double to = 1.0;
    bool closed = false;
    std::function<Vertex(double)> at;
};

// A formula by the length passed: lengths of many short pieces, each by its chord and those of its
// halves, of which the error of second order is taken out.
class ByLength {
  public:
    explicit ByLength(Formula curve) : curve_(std::move(curve)) {
        lengths_.push_back(0.0);
        Vertex begin = curve_.at(curve_.from);
        for (int i = 0; i < kPieces; ++i) {
            const Vertex middle = curve_.at(Parameter(i + 0.5));
            const Vertex end = curve_.at(Parameter(i + 1.0));
            const double chord = app_test::Length3d(begin, end);
            const double halves =
                app_test::Length3d(begin, middle) + app_test::Length3d(middle, end);
            lengths_.push_back(lengths_.back() + (4.0 * halves - chord) / 3.0);
            begin = end;
        }
    }

    double LengthTo(double parameter) const {
        const double place = (parameter - curve_.from) / (curve_.to - curve_.from) * kPieces;
        const auto piece = std::min(static_cast<std::size_t>(place), lengths_.size() - 2);
        const double part = place - static_cast<double>(piece);
        return lengths_[piece] + part * (lengths_[piece + 1] - lengths_[piece]);
    }

    // False beyond the end.
    bool PointAt(double length, Vertex& point) const {
        if (length > lengths_.back()) return false;
        const auto above = std::upper_bound(lengths_.begin() + 1, lengths_.end() - 1, length);
        const auto piece = static_cast<std::size_t>(above - lengths_.begin()) - 1;
        const double part = (length - lengths_[piece]) / (lengths_[piece + 1] - lengths_[piece]);
        point = curve_.at(Parameter(static_cast<double>(piece) + part));
        return true;
    }

    const Formula& Curve() const { return curve_; }
    double Length() const { return lengths_.back(); }

  private:
    static constexpr int kPieces = 60000;

    double Parameter(double pieces) const {
        return curve_.from + (curve_.to - curve_.from) * (pieces / kPieces);
    }

    Formula curve_;
    std::vector<double> lengths_;
};

// The vertices that the command reads from a curve: steps by length, each as long as lets the
// direction turn by a third of the limit up to the limit in the step ahead.
std::vector<Vertex> Vertices(const ByLength& curve) {
    constexpr double step = 0.05;
    const double total = curve.LengthTo(curve.Curve().to - 1e-07);
    const double limit = 1.5707963267948966 - (3.141592653589793 - step * 0.5) * 0.5;
    const double first = total / (6.283185307179586 / step);
    std::vector<Vertex> points;
    Vertex point, middle, end;
    const auto isEnd = [&](double length, bool found) {
        return !(total > length) || std::fabs(total - length) < 0.0001 || !found;
    };
    const auto angleTo = [&](Vertex to) {
        return std::atan2(to.y - points.back().y, to.x - points.back().x);
    };
    double length = first;
    for (double position = 0.0;; position += length) {
        for (int round = 0; round < 30 && !points.empty(); ++round) {
            const bool atEnd = isEnd(position + length, curve.PointAt(position + length, end));
            curve.PointAt(position + length * 0.5, middle);
            double turn = std::fabs(angleTo(middle) - angleTo(end));
            if (turn > kPi) turn = 2.0 * kPi - turn;
            if (turn < limit / 3.0 && !atEnd) {
                if (length >= 2.0 * first) break;
                length *= 1.5;
                continue;
            }
            if (turn >= limit / 3.0 && turn < limit && !atEnd) break;
            if (length <= total / 10000.0) break;
            length *= 0.5;
        }
        if (isEnd(position, curve.PointAt(position, point))) break;
        points.push_back(point);
    }
    points.push_back(curve.Curve().at(curve.Curve().to));
    if (curve.Curve().closed) points.push_back(points.front());
    return points;
}

// --- Formulas.

// A basis function by its recursion; the last span has its end.
double Basis(const std::vector<double>& knots, std::size_t i, int degree, double t) {
    if (degree == 0) return knots[i] <= t && t < knots[i + 1] ? 1.0 : 0.0;
    const auto width = static_cast<std::size_t>(degree);
    double sum = 0.0;
    if (knots[i + width] > knots[i]) {
        sum += (t - knots[i]) / (knots[i + width] - knots[i]) * Basis(knots, i, degree - 1, t);
    }
    if (knots[i + width + 1] > knots[i + 1]) {
        sum += (knots[i + width + 1] - t) / (knots[i + width + 1] - knots[i + 1]) *
               Basis(knots, i + 1, degree - 1, t);
    }
    return sum;
}

Formula FormulaOf(const DrawingText::Spline& spline) {
    const auto degree = static_cast<std::size_t>(spline.degree);
    const double last = spline.knots[spline.controls.size()];
    return {spline.knots[degree], last, (spline.flags & 1) != 0, [spline, last](double t) {
                const double inside = std::min(t, std::nextafter(last, spline.knots.front()));
                Vertex point;
                double whole = 0.0;
                for (std::size_t i = 0; i < spline.controls.size(); ++i) {
                    const double share = Basis(spline.knots, i, spline.degree, inside) *
                                         (spline.weights.empty() ? 1.0 : spline.weights[i]);
                    point = point + spline.controls[i] * share;
                    whole += share;
                }
                return point * (1.0 / whole);
            }};
}

// The natural cubic through points at the lengths of their chords: second derivatives by Gauss.
Formula NaturalCubic(const std::vector<Vertex>& points) {
    const std::size_t n = points.size();
    std::vector<double> t(n, 0.0);
    for (std::size_t i = 1; i < n; ++i)
        t[i] = t[i - 1] + app_test::Length3d(points[i - 1], points[i]);
    std::vector<double> diagonal(n, 1.0), upper(n, 0.0);
    std::vector<Vertex> curvature(n);
    for (std::size_t i = 1; i + 1 < n; ++i) {
        const double before = t[i] - t[i - 1];
        const double after = t[i + 1] - t[i];
        const Vertex bend = (points[i + 1] - points[i]) * (6.0 / after) -
                            (points[i] - points[i - 1]) * (6.0 / before);
        const double factor = before / diagonal[i - 1];
        diagonal[i] = 2.0 * (before + after) - factor * upper[i - 1];
        upper[i] = after;
        curvature[i] = bend - curvature[i - 1] * factor;
    }
    curvature[n - 1] = {};
    for (std::size_t i = n - 1; i-- > 1;)
        curvature[i] = (curvature[i] - curvature[i + 1] * upper[i]) * (1.0 / diagonal[i]);
    return {0.0, t.back(), false, [=](double at) {
                const auto above = std::upper_bound(t.begin() + 1, t.end() - 1, at);
                const auto i = static_cast<std::size_t>(above - t.begin()) - 1;
                const double h = t[i + 1] - t[i];
                const double a = (t[i + 1] - at) / h;
                const double b = (at - t[i]) / h;
                return points[i] * a + points[i + 1] * b +
                       curvature[i] * ((a * a * a - a) * h * h / 6.0) +
                       curvature[i + 1] * ((b * b * b - b) * h * h / 6.0);
            }};
}

// `way`: 1, or -1 for an ellipse seen from below.
Formula EllipseFormula(Vertex centre, Vertex major, double ratio, double from, double to, int way) {
    const Vertex minor{-major.y * ratio * way, major.x * ratio * way, 0.0};
    return {from, to, to - from > 6.28,
            [=](double t) { return centre + major * std::cos(t) + minor * std::sin(t); }};
}

// The middle of the arc of a bulge, which lies square to the chord.
Vertex MiddleOf(Vertex from, Vertex to, double bulge) {
    const Vertex chord = to - from;
    const double away = 0.5 / std::tan(2.0 * std::atan(bulge));
    return from + chord * 0.5 + Vertex{-chord.y * away, chord.x * away, 0.0};
}

Vertex Turned(Vertex point, Vertex middle, double turn) {
    const Vertex radius = point - middle;
    return middle + Vertex{radius.x * std::cos(turn) - radius.y * std::sin(turn),
                           radius.x * std::sin(turn) + radius.y * std::cos(turn), 0.0};
}

// Straight and bulged segments, the parameter counting them.
Formula PolylineFormula(std::vector<DrawingText::PlaneVertex> vertices, bool closed) {
    vertices.erase(std::remove_if(vertices.begin(), vertices.end(),
                                  [](const auto& vertex) { return (vertex.flags & 16) != 0; }),
                   vertices.end());
    if (closed) vertices.push_back({vertices.front().at, 0, 0.0});
    return {0.0, static_cast<double>(vertices.size() - 1), closed, [vertices](double t) {
                const auto i = std::min(static_cast<std::size_t>(t), vertices.size() - 2);
                const Vertex from = vertices[i].at, to = vertices[i + 1].at;
                const double part = t - static_cast<double>(i);
                const double bulge = vertices[i].bulge;
                if (bulge == 0.0) return from + (to - from) * part;
                return Turned(from, MiddleOf(from, to, bulge), 4.0 * std::atan(bulge) * part);
            }};
}

// One arc as chords of 0.05 radians, taken clockwise. The last chord takes up what is left: more
// than one step, or less than one where the angles pass 0 on the way.
std::vector<Vertex> Chords(Vertex from, Vertex to, double bulge) {
    if (bulge == 0.0) return {from, to};
    const Vertex middle = MiddleOf(from, to, bulge);
    const Vertex first = bulge < 0.0 ? from : to, last = bulge < 0.0 ? to : from;
    const auto angle = [&](Vertex point) {
        const double plain = std::atan2(point.y - middle.y, point.x - middle.x);
        return plain < 0.0 ? plain + 2.0 * kPi : plain;
    };
    const double sweep = std::fabs(4.0 * std::atan(bulge));
    const double least = angle(first) < angle(last) ? 0.0 : 0.05;
    std::vector<Vertex> points{first};
    for (double turn = 0.05; sweep - turn > least; turn += 0.05)
        points.push_back(Turned(first, middle, -turn));
    points.push_back(last);
    if (bulge > 0.0) std::reverse(points.begin(), points.end());
    return points;
}

std::vector<Vertex> Chords(std::vector<DrawingText::PlaneVertex> vertices, bool closed) {
    if (closed) vertices.push_back({vertices.front().at, 0, 0.0});
    std::vector<Vertex> points{vertices.front().at};
    for (std::size_t i = 0; i + 1 < vertices.size(); ++i) {
        const auto arc = Chords(vertices[i].at, vertices[i + 1].at, vertices[i].bulge);
        points.insert(points.end(), arc.begin() + 1, arc.end());
    }
    return points;
}

// --- Comparing.

class CurveAlignment : public testing::Test {
  protected:
    void Expect(const DrawingText& drawing, const Formula& formula) const {
        const ByLength curve(formula);
        const std::vector<Vertex> line = Vertices(curve);
        ASSERT_GT(line.size(), 50u);
        Expect(drawing, curve, line);
    }
    // Of segments and arcs as they lie in plan.
    void ExpectArcs(const DrawingText& drawing,
                    const std::vector<DrawingText::PlaneVertex>& vertices, bool closed) const {
        Expect(drawing, ByLength(PolylineFormula(vertices, closed)), Chords(vertices, closed));
    }

    // Labels at both sides all along the curve, aligned by the program along the entity 2F. A label
    // beside a vertex is as near to the segment before, which it may follow as well: which one it
    // is hangs on the last bit of a length.
    void Expect(DrawingText drawing, const ByLength& curve, const std::vector<Vertex>& line) const {
        std::mt19937 random(25);
        std::vector<Vertex> places;
        for (int i = 0; i < 80; ++i) {
            Vertex on;
            ASSERT_TRUE(curve.PointAt(curve.Length() * (i + 0.5) / 80.0, on));
            const auto shift = [&] { return static_cast<double>(random() % 6001) / 1000.0 - 3.0; };
            places.push_back(on + Vertex{shift(), shift(), 0.0});
            const std::string handle = std::to_string(1000 + i);
            if (i % 2 == 0)
                drawing.Text(handle, places.back());
            else
                drawing.Insert(handle, places.back());
        }
        write(folder_ / "in.dxf", drawing.Bytes());
        const Outcome outcome =
            run({orlinth(),
                 {"align", "in.dxf", "--line", "handle=2F", "--flip", "-o", "out.dxf", "--verify"},
                 folder_.path(),
                 {}});
        ASSERT_EQ(outcome.exit, 0) << outcome.error;
        const auto result = readEntities(folder_ / "out.dxf");
        for (std::size_t i = 0; i < places.size(); ++i) {
            const bool isText = i % 2 == 0;
            const double written = result.at(std::to_string(1000 + i)).number(50) * kPi / 180.0;
            const std::size_t nearest = app_test::NearestSegment(line, places[i]);
            double least = 9.0;
            for (std::size_t segment = nearest == 0 ? 0 : nearest - 1; segment <= nearest;
                 ++segment) {
                const std::vector<Vertex> alone{line[segment], line[segment + 1]};
                const double rotation = isText ? app_test::TextRotation(alone, places[i])
                                               : app_test::SymbolRotation(alone, places[i], true);
                least = std::min(least, std::fabs(written - rotation));
            }
            EXPECT_LT(least, 1e-6) << (isText ? "text " : "symbol ") << i;
        }
    }

    Folder folder_;
};

const std::vector<Vertex> bends{{0, 0}, {60, 90}, {150, -40}, {210, 60}, {300, 70}, {330, -50}};

TEST_F(CurveAlignment, RationalSpline) {
    DrawingText::Spline spline;
    spline.flags = 12;
    spline.knots = {0, 0, 0, 0, 1, 2.5, 4, 4, 4, 4};
    spline.weights = {1, 2, 0.5, 3, 1, 1};
    spline.controls = bends;
    DrawingText drawing;
    drawing.SplineEntity("2F", spline);
    Expect(drawing, FormulaOf(spline));
}

TEST_F(CurveAlignment, SplineOfTheSecondDegreeInMapCoordinates) {
    DrawingText::Spline spline;
    spline.degree = 2;
    spline.knots = {0, 0, 0, 1, 2, 3, 4, 4, 4};
    for (const Vertex& vertex : bends)
        spline.controls.push_back(vertex + Vertex{25496000, 6672000});
    DrawingText drawing;
    drawing.SplineEntity("2F", spline);
    Expect(drawing, FormulaOf(spline));
}

TEST_F(CurveAlignment, ClosedPeriodicSpline) {
    DrawingText::Spline spline;
    spline.flags = 11;
    spline.controls = {{0, 0}, {120, -20}, {160, 80}, {70, 130}, {-30, 90}};
    for (int i = 0; i < 3; ++i)
        spline.controls.push_back(spline.controls[static_cast<std::size_t>(i)]);
    for (int i = 0; i < 12; ++i) spline.knots.push_back(i);
    DrawingText drawing;
    drawing.SplineEntity("2F", spline);
    Expect(drawing, FormulaOf(spline));
}

TEST_F(CurveAlignment, ControlPointsCountBeforeFitPoints) {
    DrawingText::Spline spline;
    spline.knots = {0, 0, 0, 0, 1, 2, 3, 3, 3, 3};
    spline.controls = bends;
    spline.fits = {{0, 0}, {500, 500}, {330, -50}};
    DrawingText drawing;
    drawing.SplineEntity("2F", spline);
    Expect(drawing, FormulaOf(spline));
}

TEST_F(CurveAlignment, SplineThroughFitPointsAlone) {
    DrawingText::Spline spline;
    spline.fits = bends;
    DrawingText drawing;
    drawing.SplineEntity("2F", spline);
    Expect(drawing, NaturalCubic(bends));
}

TEST_F(CurveAlignment, PartOfAnEllipse) {
    DrawingText drawing;
    drawing.Ellipse("2F", {100, 50}, {80, 30}, 0.4, 0.3, 4.0);
    Expect(drawing, EllipseFormula({100, 50}, {80, 30}, 0.4, 0.3, 4.0, 1));
}

TEST_F(CurveAlignment, WholeEllipseSeenFromBelow) {
    DrawingText drawing;
    drawing.Ellipse("2F", {100, 50}, {80, 30}, 0.4, 0.0, 2.0 * kPi,
                    {{210, "0.0"}, {220, "0.0"}, {230, "-1.0"}});
    Expect(drawing, EllipseFormula({100, 50}, {80, 30}, 0.4, 0.0, 2.0 * kPi, -1));
}

TEST_F(CurveAlignment, PolylineFittedWithArcs) {
    const std::vector<DrawingText::PlaneVertex> vertices{
        {{0, 0}, 0, 0.3},    {{50, 20}, 1, -0.2},  {{90, 70}, 0, 0.45},
        {{40, 120}, 1, 0.1}, {{-20, 140}, 0, 0.0}, {{-90, 130}, 0, 0.0}};
    DrawingText drawing;
    drawing.Polyline2d("2F", 2, vertices);
    Expect(drawing, PolylineFormula(vertices, false));
}

TEST_F(CurveAlignment, ClosedPolylineFittedWithArcs) {
    const std::vector<DrawingText::PlaneVertex> vertices{
        {{0, 0}, 0, 0.3}, {{100, 0}, 1, 0.4}, {{120, 90}, 0, 0.25}, {{-20, 80}, 1, 0.5}};
    DrawingText drawing;
    drawing.Polyline2d("2F", 3, vertices);
    Expect(drawing, PolylineFormula(vertices, true));
}

// The vertices of the frame (16) are no part of the curve.
TEST_F(CurveAlignment, SplinedPolyline) {
    std::vector<DrawingText::PlaneVertex> vertices;
    for (const Vertex& vertex : bends) vertices.push_back({vertex, 16, 0.0});
    DrawingText::Spline spline;
    spline.knots = {0, 0, 0, 0, 1, 2, 3, 3, 3, 3};
    spline.controls = bends;
    const Formula smooth = FormulaOf(spline);
    for (int i = 0; i <= 24; ++i) vertices.push_back({smooth.at(i / 8.0), 8, 0.0});
    DrawingText drawing;
    drawing.Polyline2d("2F", 4, vertices, {{75, "6"}});
    Expect(drawing, PolylineFormula(vertices, false));
}

// --- Arcs.

using PlaneVertices = std::vector<DrawingText::PlaneVertex>;

const DrawingText::Groups fromBelow{{210, "0.0"}, {220, "0.0"}, {230, "-1.0"}};

PlaneVertices CircleVertices(Vertex centre, double radius) {
    return {{centre + Vertex{radius, 0, 0}, 0, -1.0}, {centre - Vertex{radius, 0, 0}, 0, -1.0}};
}

TEST_F(CurveAlignment, Circle) {
    DrawingText drawing;
    drawing.Circle("2F", {100, 50}, 70);
    ExpectArcs(drawing, CircleVertices({100, 50}, 70), true);
}

TEST_F(CurveAlignment, CircleSeenFromBelowInMapCoordinates) {
    DrawingText drawing;
    drawing.Circle("2F", {-25496000, 6672000, 12}, 70, fromBelow);
    ExpectArcs(drawing, CircleVertices({25496000, 6672000}, 70), true);
}

// Start and end in degrees, counter-clockwise.
PlaneVertices ArcVertices(Vertex centre, double radius, double start, double end) {
    const auto at = [&](double degrees) {
        const double angle = degrees * kPi / 180.0;
        return centre + Vertex{radius * std::cos(angle), radius * std::sin(angle), 0};
    };
    const double sweep = (end > start ? end - start : end + 360.0 - start) * kPi / 180.0;
    return {{at(start), 0, std::tan(sweep / 4.0)}, {at(end), 0, 0.0}};
}

TEST_F(CurveAlignment, ArcsShortAndLongAndPastAngleZero) {
    // Of exactly half a circle, and with an end at angle 0, the last bit of an angle decides.
    const double ranges[][2] = {{20, 155}, {20, 310}, {300, 80},  {130, 100},
                                {10, 189}, {10, 191}, {0.01, 90}, {200, 359.99}};
    for (const auto& range : ranges) {
        SCOPED_TRACE(range[0]);
        DrawingText drawing;
        drawing.Arc("2F", {100, 50}, 70, range[0], range[1]);
        ExpectArcs(drawing, ArcVertices({100, 50}, 70, range[0], range[1]), false);
    }
}

TEST_F(CurveAlignment, ArcSeenFromBelow) {
    for (const double end : {155.0, 310.0}) {
        DrawingText drawing;
        drawing.Arc("2F", {100, 50}, 70, 20, end, fromBelow);
        // Mirrored, it runs clockwise.
        PlaneVertices vertices = ArcVertices({100, 50}, 70, 20, end);
        for (auto& vertex : vertices) {
            vertex.at.x = -vertex.at.x;
            vertex.bulge = -vertex.bulge;
        }
        ExpectArcs(drawing, vertices, false);
    }
}

TEST_F(CurveAlignment, ArcInMapCoordinates) {
    DrawingText drawing;
    drawing.Arc("2F", {25496000, 6672000}, 300, 40, 130);
    ExpectArcs(drawing, ArcVertices({25496000, 6672000}, 300, 40, 130), false);
}

const PlaneVertices bulges{{{0, 0}, 0, 0.3},     {{50, 20}, 0, -0.2},   {{90, 70}, 0, 0.0},
                           {{140, 70}, 0, -1.0}, {{190, 70}, 0, 0.05},  {{190, 170}, 0, 1.8},
                           {{150, 150}, 0, 0.4}, {{-30, 160}, 0, -0.35}};

TEST_F(CurveAlignment, LightPolylineWithBulges) {
    for (const bool closed : {false, true}) {
        DrawingText drawing;
        drawing.BulgedPolyline("2F", bulges, closed);
        ExpectArcs(drawing, bulges, closed);
    }
}

TEST_F(CurveAlignment, LightPolylineWithBulgesInMapCoordinates) {
    PlaneVertices vertices = bulges;
    for (auto& vertex : vertices) vertex.at = vertex.at + Vertex{25496000, 6672000, 0};
    DrawingText drawing;
    drawing.BulgedPolyline("2F", vertices, true);
    ExpectArcs(drawing, vertices, true);
}

TEST_F(CurveAlignment, PlanePolylineWithBulges) {
    for (const bool closed : {false, true}) {
        DrawingText drawing;
        drawing.Polyline2d("2F", closed ? 1 : 0, bulges);
        ExpectArcs(drawing, bulges, closed);
    }
}

// Intended: the vertices are mirrored, the bulges stay as they are.
TEST_F(CurveAlignment, BulgesOfPolylinesSeenFromBelowCountAsSeenFromAbove) {
    PlaneVertices mirrored = bulges;
    for (auto& vertex : mirrored) vertex.at.x = -vertex.at.x;
    for (const bool closed : {false, true}) {
        DrawingText light, plane;
        light.BulgedPolyline("2F", bulges, closed, fromBelow);
        ExpectArcs(light, mirrored, closed);
        plane.Polyline2d("2F", closed ? 1 : 0, bulges, fromBelow);
        ExpectArcs(plane, mirrored, closed);
    }
}

// Sampled along its length, a fitted one is followed as it shows.
TEST_F(CurveAlignment, FittedPolylineSeenFromBelow) {
    const PlaneVertices vertices{
        {{0, 0}, 0, 0.3}, {{50, 20}, 1, -0.2}, {{90, 70}, 0, 0.45}, {{40, 120}, 1, 0.0}};
    PlaneVertices mirrored = vertices;
    for (auto& vertex : mirrored) {
        vertex.at.x = -vertex.at.x;
        vertex.bulge = -vertex.bulge;
    }
    DrawingText drawing;
    drawing.Polyline2d("2F", 2, vertices, fromBelow);
    Expect(drawing, PolylineFormula(mirrored, false));
}

}  // namespace
