// PolyLine sampled along curves, against the same steps taken on an analytic curve.
#include <dbcurve.h>
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <iomanip>
#include <sstream>
#include <string>
#include <vector>

#include "GeomStructs/PolyLine.h"
#include "tam/TamExceptions.h"
#include "tests/GeomEnts/TestDrawing.h"
#include "tests/support/Points.h"

namespace TamLib {
namespace {

// A curve known by formula: its length, and the point at a distance from its start, if it is on the
// curve.
struct Analytic {
    double length;
    std::function<Point3d(double)> at;
    bool closed;

    bool PointAt(double distance, Point3d& point) const {
        if (distance < 0 || distance > length) return false;
        point = at(distance);
        return true;
    }
};

// The sampling step by step. `tail` is what the parameter just short of the end leaves of the
// length.
std::vector<Point3d> Sampled(const Analytic& curve, double tail, double step, bool adaptive,
                             std::vector<Point3d> points = {}) {
    const double total = curve.length - tail;
    double position = 0, segmentLength = step, angleLimit = step;
    if (adaptive) {
        angleLimit = 1.5707963267948966 - (3.141592653589793 - step * 0.5) * 0.5;
        segmentLength = total / (6.283185307179586 / step);
    }
    const double firstLength = segmentLength;
    Point3d endPoint, midPoint;
    for (;;) {
        if (adaptive && !points.empty()) {
            for (int round = 0; round < 30; ++round) {
                const double endDistance = position + segmentLength;
                const bool ok = curve.PointAt(endDistance, endPoint);
                const bool atEnd =
                    total <= endDistance || std::fabs(total - endDistance) < 0.0001 || !ok;
                curve.PointAt(position + segmentLength * 0.5, midPoint);
                double deviation =
                    std::fabs(Angle(points.back(), midPoint) - Angle(points.back(), endPoint));
                if (deviation > 3.141592653589793) deviation = 6.283185307179586 - deviation;
                bool halve = false;
                if (deviation >= angleLimit / 3.0) {
                    if (!atEnd && deviation < angleLimit) break;
                    halve = true;
                } else if (atEnd) {
                    halve = true;
                } else if (segmentLength >= 2.0 * firstLength) {
                    if (deviation < angleLimit) break;
                    halve = true;
                } else {
                    segmentLength *= 1.5;
                }
                if (halve) {
                    if (segmentLength <= total / 10000.0) break;
                    segmentLength *= 0.5;
                }
            }
        }
        Point3d point;
        const bool ok = curve.PointAt(position, point);
        if (total <= position || std::fabs(total - position) < 0.0001 || !ok) break;
        position += segmentLength;
        points.push_back(point);
    }
    points.push_back(curve.at(curve.length));
    if (curve.closed) points.push_back(points.front());
    return points;
}

void ExpectVertices(const std::vector<Point3d>& expected, const PolyLine& line, double tolerance) {
    ASSERT_EQ(expected.size(), line.count);
    for (std::size_t i = 0; i < expected.size(); ++i)
        EXPECT_LT(Distance(expected[i], line.data[i]), tolerance) << i;
}

// A spline of degree 3 whose control points lie evenly on a line: the line itself.
std::string StraightSpline(double length) {
    std::ostringstream record;
    record << "SPLINE|5 2F|8 0|70 8|71 3|72 8|73 4|74 0|40 0|40 0|40 0|40 0|40 1|40 1|40 1|40 1";
    for (int i = 0; i < 4; ++i)
        record << std::setprecision(17) << "|10 " << i * length / 3 << "|20 0|30 0";
    return record.str();
}

// Part of a circle about (100, 50, 3), from angle 0 on, as an ellipse of ratio 1.
std::string RoundEllipse(double radius, double end) {
    std::ostringstream record;
    record << std::setprecision(17) << "ELLIPSE|5 2F|8 0|10 100|20 50|30 3|11 " << radius
           << "|21 0|31 0|210 0|220 0|230 1|40 1|41 0|42 " << end;
    return record.str();
}

Analytic Circle(double radius, double end) {
    return {radius * end,
            [radius](double d) {
                return Point3d(100 + radius * std::cos(d / radius),
                               50 + radius * std::sin(d / radius), 3);
            },
            end > 6.28};
}

PolyLine Read(const TestDrawing& drawing, double step, bool adaptive) {
    PolyLine line;
    line.FromCurve(drawing.Open(0x2F), 1, step, adaptive);
    return line;
}

TEST(PolyLineFromCurve, StraightSplineIsSampledEveryStep) {
    const TestDrawing drawing{StraightSpline(10)};
    const PolyLine line = Read(drawing, 3, false);
    ExpectVertices({{0, 0, 0}, {3, 0, 0}, {6, 0, 0}, {9, 0, 0}, {10, 0, 0}}, line, 1e-6);
    // A point that falls on the end is left to the end point.
    ExpectVertices({{0, 0, 0}, {5, 0, 0}, {10, 0, 0}}, Read(drawing, 5, false), 1e-6);
}

TEST(PolyLineFromCurve, AdaptiveStepsOnAStraightCurveGrowToTwiceTheFirst) {
    const TestDrawing drawing{StraightSpline(100)};
    const PolyLine line = Read(drawing, 0.1, true);
    // The first length is total * 0.1 / 2 pi; it grows by 1.5 until it is at least doubled: 2.25
    // times.
    const double first = 100 * 0.1 / (2 * kPi);
    ASSERT_GT(line.count, 10u);
    EXPECT_NEAR(0.0, line.data[0].x, 1e-6);
    EXPECT_NEAR(first, line.data[1].x, 1e-5);
    EXPECT_NEAR(first + 2.25 * first, line.data[2].x, 1e-5);
    EXPECT_NEAR(first + 4.5 * first, line.data[3].x, 1e-5);
    EXPECT_NEAR(100.0, line.data[line.count - 1].x, 1e-6);
}

TEST(PolyLineFromCurve, RoundCurvesFollowTheStepsOnACircle) {
    for (const double end : {2 * kPi, 1.0, 3.0, 4.0, 5.0}) {
        for (const double step : {0.05, 0.1, 0.2, 0.7}) {
            const TestDrawing drawing{RoundEllipse(10, end)};
            const std::vector<Point3d> expected = Sampled(Circle(10, end), 10 * 1e-07, step, true);
            ExpectVertices(expected, Read(drawing, step, true), 1e-5);
            const std::vector<Point3d> even = Sampled(Circle(10, end), 10 * 1e-07, step, false);
            ExpectVertices(even, Read(drawing, step, false), 1e-6);
        }
    }
}

TEST(PolyLineFromCurve, TurnsAreTakenTheShortWayWhereAnglesPassHalfATurn) {
    EXPECT_EQ(35u, Read(TestDrawing{RoundEllipse(10, 5.0)}, 0.2, true).count);
}

TEST(PolyLineFromCurve, TheFirstStepIsTunedByAVertexThatIsThereAlready) {
    const TestDrawing drawing{RoundEllipse(10, 2 * kPi)};
    PolyLine line;
    line.Append({50, 0, 0});
    line.FromCurve(drawing.Open(0x2F), 1, 0.05, true);
    const std::vector<Point3d> expected =
        Sampled(Circle(10, 2 * kPi), 10 * 1e-07, 0.05, true, {{50, 0, 0}});
    ExpectVertices(expected, line, 1e-5);
    EXPECT_NE(expected.size(), Read(drawing, 0.05, true).count + 1);
}

TEST(PolyLineFromCurve, TheEndIsThatOfTheParameter1e07BeforeItAndNearWithin0p0001) {
    const double end = 1.0, total = 1000 * (end - 1e-07);
    const TestDrawing drawing{RoundEllipse(1000, end)};
    for (const double left : {0.00005, 0.00015}) {
        const double step = (total - left) / 4;
        const PolyLine line = Read(drawing, step, false);
        ExpectVertices(Sampled(Circle(1000, end), 1000 * 1e-07, step, false), line, 1e-6);
        EXPECT_EQ(left < 0.0001 ? 5u : 6u, line.count);
    }
}

// Straight runs drawn as one splined polyline.
TEST(PolyLineFromCurve, StepsHalvedAtACornerGrowAgainToTwiceTheFirst) {
    const std::vector<Point3d> corners{{0, 0, 0}, {20, 0, 0}, {22, 0.5, 0}, {100, 20, 0}};
    std::ostringstream record;
    record << "POLYLINE|5 2F|8 0|66 1|10 0|20 0|30 0|70 4|75 6";
    double length = 0;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        record << "\nVERTEX|5 " << 30 + i << "|8 0|10 " << corners[i].x << "|20 " << corners[i].y
               << "|70 8";
        if (i > 0) length += Distance(corners[i - 1], corners[i]);
    }
    record << "\nSEQEND|8 0";
    const auto at = [&corners](double distance) {
        std::size_t i = 1;
        double run = Distance(corners[0], corners[1]);
        for (; distance > run && i + 1 < corners.size(); ++i) {
            distance -= run;
            run = Distance(corners[i], corners[i + 1]);
        }
        const Point3d along = (corners[i] - corners[i - 1]) / run;
        return corners[i - 1] + Point3d(along.x * distance, along.y * distance, 0);
    };
    const TestDrawing drawing{record.str()};
    const double tail = Distance(corners[2], corners[3]) * 1e-07;
    for (const double step : {0.05, 0.1, 0.2, 0.4}) {
        const PolyLine line = Read(drawing, step, true);
        ExpectVertices(Sampled({length, at, false}, tail, step, true), line, 1e-5);
    }
}

TEST(PolyLineFromCurve, PointsLieOnTheEllipseAndAFullOneEndsWithTheStartTwice) {
    const TestDrawing drawing{
        "ELLIPSE|5 2F|8 0|10 0|20 0|30 7|11 10|21 0|31 0|210 0|220 0|230 1|40 0.5|41 0|"
        "42 6.283185307179586"};
    const PolyLine line = Read(drawing, 0.05, true);
    ASSERT_GT(line.count, 50u);
    for (const Point3d& p : line) {
        EXPECT_NEAR(1.0, p.x * p.x / 100 + p.y * p.y / 25, 1e-6);
        EXPECT_NEAR(7.0, p.z, 1e-9);
    }
    const int last = static_cast<int>(line.count) - 1;
    EXPECT_LT(Distance({10, 0, 7}, line[0]), 1e-6);
    EXPECT_LT(Distance({10, 0, 7}, line[last - 1]), 1e-6);  // the end point
    EXPECT_EQ(line[0].x, line[last].x);                     // vertex 0 again
    EXPECT_EQ(line[0].y, line[last].y);
}

TEST(PolyLineFromCurve, SplinedPlanePolylineIsSampledAlongItsDrawnVertices) {
    const TestDrawing drawing{
        "POLYLINE|5 2F|8 0|66 1|10 0|20 0|30 0|70 4|75 6\n"
        "VERTEX|5 30|8 0|10 0|20 0|70 16\nVERTEX|5 31|8 0|10 0|20 9|70 16\n"
        "VERTEX|5 32|8 0|10 0|20 0|70 8\nVERTEX|5 33|8 0|10 10|20 0|70 8\nSEQEND|8 0"};
    ExpectVertices({{0, 0, 0}, {4, 0, 0}, {8, 0, 0}, {10, 0, 0}}, Read(drawing, 4, false), 1e-6);
}

TEST(PolyLineFromCurve, WhatIsNoCurveIsReadByItsVertices) {
    const TestDrawing drawing{"LINE|5 2F|8 0|10 1|20 2|30 3|11 4|21 5|31 6"};
    ExpectVertices({{1, 2, 3}, {4, 5, 6}}, Read(drawing, 0.05, true), 1e-12);
}

TEST(PolyLineFromCurve, AppendsToTheVerticesThatAreThere) {
    const TestDrawing drawing{StraightSpline(10)};
    PolyLine line;
    line.Append({-5, 0, 0});
    line.FromCurve(drawing.Open(0x2F), 1, 5, false);
    ExpectVertices({{-5, 0, 0}, {0, 0, 0}, {5, 0, 0}, {10, 0, 0}}, line, 1e-6);
    line.FromCurve(nullptr, 1, 5, false);
    EXPECT_EQ(4u, line.count);
}

TEST(PolyLineFromCurve, DisposalLeavesOpenClosesOrErases) {
    const TestDrawing drawing{StraightSpline(10)};
    AcDbEntity* const entity = drawing.Open(0x2F);
    PolyLine line;
    line.FromCurve(entity, 0, 5, false);
    EXPECT_TRUE(entity->isReadEnabled());
    line.FromCurve(entity, 1, 5, false);
    EXPECT_FALSE(entity->isReadEnabled());
    line.FromCurve(drawing.Open(0x2F, AcDb::kForWrite), 2, 5, false);
    EXPECT_TRUE(drawing.IsErased(0x2F));
}

TEST(PolyLineFromCurve, ArcsAreFlattenedByAngleOrByLengthAndDisposedOf) {
    const TestDrawing drawing{"CIRCLE|5 2F|8 0|10 1|20 2|30 3|40 2.5"};
    const auto expectCircle = [](const PolyLine& line) {
        EXPECT_LT(Distance({3.5, 2, 3}, line.data[0]), 1e-12);
        EXPECT_LT(Distance({3.5, 2, 3}, line.data[line.count - 1]), 1e-12);
        EXPECT_LT(line.data[1].y, 2.0);  // clockwise
        for (const Point3d& p : line) EXPECT_NEAR(2.5, Distance({1, 2, 3}, p), 1e-12);
    };
    const PolyLine byAngle = Read(drawing, 0.05, true);
    // The last chord of each half circle is up to two steps long.
    EXPECT_EQ(125u, byAngle.count);
    expectCircle(byAngle);
    const PolyLine byLength = Read(drawing, 0.05, false);
    EXPECT_EQ(315u, byLength.count);
    expectCircle(byLength);
    PolyLine line;
    line.Append({9, 9, 9});
    line.offset = {1, 1, 1};
    line.hasBounds = 1;
    line.FromCurve(drawing.Open(0x2F, AcDb::kForWrite), 2, 0.05, true);
    EXPECT_TRUE(drawing.IsErased(0x2F));
    // Intended: in place of what was there, box and shift too.
    EXPECT_EQ(125u, line.count);
    EXPECT_EQ(0.0, line.offset.x);
    EXPECT_EQ(0, line.hasBounds);
}

TEST(PolyLineFromCurve, AnArcThatAllButClosesIsAPointOrNothing) {
    const auto read = [](const char* angles) {
        const TestDrawing drawing{std::string("ARC|5 2F|8 0|10 1|20 2|30 3|40 5|") + angles};
        return Read(drawing, 0.05, true);
    };
    for (const char* const angles : {"50 0|51 360", "50 0|51 359.9999", "50 0|51 359.999"})
        ExpectVertices({{6, 2, 3}, {6, 2, 3}}, read(angles), 0.0001);
    EXPECT_EQ(0u, read("50 30|51 30").count);
    EXPECT_GT(read("50 0|51 359.99").count, 100u);  // its ends are apart by more than 0.0001
}

TEST(PolyLineFromCurve, BulgedPolylinesAreFlattenedWhereTheyBulge) {
    const TestDrawing drawing{
        "LWPOLYLINE|5 2F|8 0|90 3|70 0|38 7|10 0|20 0|42 -1|10 10|20 0|10 10|20 5",
        "POLYLINE|5 30|8 0|66 1|10 0|20 0|30 7|70 0\nVERTEX|5 31|8 0|10 0|20 0|42 -1\n"
        "VERTEX|5 32|8 0|10 10|20 0\nVERTEX|5 33|8 0|10 10|20 5\nSEQEND|8 0"};
    for (const std::uint64_t handle : {0x2Fu, 0x30u}) {
        const PolyLine line(drawing.Id(handle), 0.05, true);
        ASSERT_EQ(64u, line.count);
        for (std::uint32_t i = 0; i < 63; ++i) {
            EXPECT_NEAR(5.0, Distance({5, 0, 7}, line.data[i]), 1e-12);
            EXPECT_GE(line.data[i].y, -1e-12);
        }
        EXPECT_LT(Distance({10, 5, 7}, line.data[63]), 1e-12);
    }
}

TEST(PolyLineFromCurve, ARefusedVertexOfABulgedPolylineRaisesWithTheEntityOpen) {
    const TestDrawing drawing{"LWPOLYLINE|5 2F|8 0|90 2|70 0|10 0|20 0|42 1|10 10|20 0"};
    AcDbEntity* const entity = drawing.Open(0x2F);
    PolyLine line;
    line.Append({9, 9, 9});
    host::fault::arm("AcDbPolyline::getPointAt", 2, Acad::eInvalidIndex);
    EXPECT_THROW(line.FromCurve(entity, 1, 0.05, true), TamExpAcad);
    EXPECT_EQ(1u, line.count);
    EXPECT_TRUE(entity->isReadEnabled());
    entity->close();
}

TEST(PolyLineFromCurve, ConstructorsSampleOnlyWithAStepThatCounts) {
    const TestDrawing drawing{StraightSpline(10)};
    const AcDbObjectId id = drawing.Id(0x2F);
    EXPECT_EQ(3u, PolyLine(id, 5, false).count);
    // No step: by the vertices, of which a spline has none.
    for (const double step : {0.0, 0.00009, -0.00009, -5.0}) {
        EXPECT_EQ(0u, PolyLine(id, step, false).count) << step;
        EXPECT_EQ(0u, PolyLine(drawing.Open(0x2F), 1, step, false).count) << step;
    }
    EXPECT_GT(PolyLine(id, 0.0001, true).count, 100u);
    EXPECT_EQ(3u, PolyLine(drawing.Open(0x2F), 1, 5, false).count);
    EXPECT_EQ(0u, PolyLine(AcDbObjectId(), 5, false).count);
}

TEST(PolyLineFromCurve, AStepThatLeadsNowhereEndsTheWalk) {
    const TestDrawing drawing{StraightSpline(10)};
    ExpectVertices({{0, 0, 0}, {10, 0, 0}}, Read(drawing, 0, false), 1e-6);
    ExpectVertices({{0, 0, 0}, {10, 0, 0}}, Read(drawing, -1, false), 1e-6);
    ExpectVertices({{0, 0, 0}, {10, 0, 0}}, Read(drawing, 0, true), 1e-6);
}

TEST(PolyLineFromCurve, EachRefusedCallIsSurvivedAndTheEntityDisposedOf) {
    const TestDrawing drawing{StraightSpline(10)};
    AcDbEntity* entity = drawing.Open(0x2F);
    host::fault::disarm();
    PolyLine whole;
    whole.FromCurve(entity, 0, 3, true);
    const std::vector<std::string> calls = host::fault::names();
    ASSERT_GT(calls.size(), 5u);
    for (std::size_t n = 1; n <= calls.size(); ++n) {
        PolyLine line;
        host::fault::arm(n, Acad::eInvalidInput);
        line.FromCurve(entity, 0, 3, true);
        EXPECT_TRUE(host::fault::fired()) << n;
        EXPECT_LE(line.count, whole.count + 200) << calls[n - 1];
        EXPECT_TRUE(entity->isReadEnabled()) << calls[n - 1];
    }
    host::fault::disarm();
    entity->close();
}

TEST(PolyLineFromCurve, RefusedCallsAndTheirEffects) {
    const TestDrawing drawing{StraightSpline(10)};
    const auto readFailing = [&](const char* name, std::size_t n) {
        AcDbEntity* const entity = drawing.Open(0x2F);
        host::fault::arm(name, n, Acad::eInvalidInput);
        PolyLine line;
        line.FromCurve(entity, 1, 3, false);
        EXPECT_TRUE(host::fault::fired()) << name;
        return line;
    };
    // No length: nothing but the end point.
    ExpectVertices({{10, 0, 0}}, readFailing("AcDbCurve::getDistAtParam", 1), 1e-6);
    ExpectVertices({{10, 0, 0}}, readFailing("AcDbCurve::getEndParam", 1), 1e-6);
    // No point: the walk ends there.
    ExpectVertices({{0, 0, 0}, {3, 0, 0}, {10, 0, 0}}, readFailing("AcDbCurve::getPointAtDist", 3),
                   1e-6);
    // No end point: it is left out.
    ExpectVertices({{0, 0, 0}, {3, 0, 0}, {6, 0, 0}, {9, 0, 0}},
                   readFailing("AcDbCurve::getEndPoint", 1), 1e-6);
}

}  // namespace
}  // namespace TamLib
