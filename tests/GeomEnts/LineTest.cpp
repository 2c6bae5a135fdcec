#include "GeomEnts/Line.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstring>
#include <limits>
#include <random>

#include "GeomEnts/Box.h"
#include "datastruct/Bytes.h"
#include "tests/support/Points.h"

namespace TamLib {
namespace {

void ExpectLine(const Point3d& start, const Point3d& end, const Line& line) {
    ExpectPoint(start, line.Start());
    ExpectPoint(end, line.End());
}

TEST(Line, KeepsPlanCoordinatesTogetherAndHeightsBehindThem) {
    const Line line({1, 2, 3}, {4, 5, 6});
    double inMemory[6];
    std::memcpy(inMemory, &line.x1, sizeof inMemory);
    const double expected[6] = {1, 2, 4, 5, 3, 6};
    for (int i = 0; i < 6; ++i) EXPECT_EQ(expected[i], inMemory[i]) << i;
    EXPECT_EQ(1, line.valid);
    const auto offset =
        reinterpret_cast<const char*>(&line.valid) - reinterpret_cast<const char*>(&line);
    EXPECT_EQ(static_cast<std::ptrdiff_t>(sizeof(void*)), offset);
    EXPECT_EQ(1u, sizeof line.valid);
}

TEST(Line, OfAFlagSetsTheFlagAlone) {
    EXPECT_EQ(1, Line(true).valid);
    EXPECT_EQ(0, Line(false).valid);
}

TEST(Line, OrderedPointFormPutsTheLargerEndLast) {
    ExpectLine({0, 9, 9}, {1, 0, 0}, Line({0, 9, 9}, {1, 0, 0}, true));
    ExpectLine({0, 9, 9}, {1, 0, 0}, Line({1, 0, 0}, {0, 9, 9}, true));
    ExpectLine({1, 0, 9}, {1, 1, 0}, Line({1, 1, 0}, {1, 0, 9}, true));
    ExpectLine({1, 1, 0}, {1, 1, 9}, Line({1, 1, 9}, {1, 1, 0}, true));
    ExpectLine({1, 1, 0}, {1, 1, 9}, Line({1, 1, 0}, {1, 1, 9}, true));
    // Exact: no tolerance.
    ExpectLine({1, 0, 0}, {std::nextafter(1.0, 2.0), 0, 0},
               Line({std::nextafter(1.0, 2.0), 0, 0}, {1, 0, 0}, true));
    ExpectLine({1, 0, 0}, {0, 0, 0}, Line({1, 0, 0}, {0, 0, 0}));
}

TEST(Line, OrderedPointFormExchangesEqualAndNanEnds) {
    // Equal points are exchanged, which zeros of different sign show.
    const Line equal({0.0, 0.0, 0.0}, {-0.0, 0.0, 0.0}, true);
    EXPECT_TRUE(std::signbit(equal.x1));
    EXPECT_FALSE(std::signbit(equal.x2));
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const Line line({1, 2, 3}, {nan, 5, 6}, true);
    EXPECT_TRUE(std::isnan(line.x1));
    EXPECT_EQ(1.0, line.x2);
    EXPECT_EQ(6.0, line.z1);
}

TEST(Line, OrderedCoordinateFormHasItsOwnRule) {
    // x1 below x2: stays.
    ExpectLine({0, 9, 1}, {1, 0, 2}, Line(0, 9, 1, 1, 0, 2, true));
    // x1 above x2 by the tolerance or more: exchanged, whatever y says.
    ExpectLine({0, 9, 2}, {0.0001, 0, 1}, Line(0.0001, 0, 1, 0, 9, 2, true));
    // x1 above x2 by less: exchanged unless y2 is above y1.
    ExpectLine({0.00005, 0, 1}, {0, 9, 2}, Line(0.00005, 0, 1, 0, 9, 2, true));
    ExpectLine({0, 0, 2}, {0.00005, 9, 1}, Line(0.00005, 9, 1, 0, 0, 2, true));
    ExpectLine({0, 5, 2}, {0, 5, 1}, Line(0, 5, 1, 0, 5, 2, true));
    // The point form looks at x alone here.
    ExpectLine({0, 9, 2}, {0.00005, 0, 1}, Line({0.00005, 0, 1}, {0, 9, 2}, true));
    ExpectLine({1, 2, 3}, {0, 0, 0}, Line(1, 2, 3, 0, 0, 0));
}

TEST(Line, FromAnglesEndsAtThePolarPoint) {
    const Line line({1, 2, 3}, kPi / 2, 10, 0.25);
    ExpectPoint({1, 2, 3}, line.Start());
    ExpectPoint(PolarPoint({1, 2, 3}, 10, kPi / 2, 0.25), line.End());
    EXPECT_EQ(1, line.valid);
}

TEST(Line, LengthsDirectionAndAngles) {
    const Line line({1, 1, 1}, {4, 5, 13});
    EXPECT_EQ(13.0, line.Length());
    EXPECT_EQ(5.0, line.Length2d());
    ExpectPoint({3, 4, 12}, line.Direction());
    EXPECT_EQ(Angle(line.Start(), line.End()), line.Azimuth());
    EXPECT_EQ(SlopeAngle(line.Start(), line.End()), line.Slope());
    ExpectPoint({2.5, 3, 7}, line.MidPoint());
    ExpectPoint({2.5, 3, 0}, line.MidPoint2d());
    EXPECT_EQ(0.0, Line({1, 2, 3}, {1, 2, 3}).Length());
}

TEST(Line, PointAtStaysBetweenTheEnds) {
    const Line line({0, 0, 10}, {10, 20, 30});
    ExpectPoint({0, 0, 10}, line.PointAt(-0.5));
    ExpectPoint({0, 0, 10}, line.PointAt(0));
    ExpectPoint({2.5, 5, 15}, line.PointAt(0.25));
    ExpectPoint({10, 20, 30}, line.PointAt(1));
    ExpectPoint({10, 20, 30}, line.PointAt(1.5));
}

TEST(Line, PointAtHeightTellsEndsFromTheInside) {
    const Line line({0, 0, 10}, {10, 20, 20});
    Point3d point;
    EXPECT_EQ(1, line.PointAtZ(15, point));
    ExpectPoint({5, 10, 15}, point);
    EXPECT_EQ(2, line.PointAtZ(10, point));
    EXPECT_EQ(2, line.PointAtZ(20, point));
    EXPECT_EQ(2, line.PointAtZ(10 + 0.00099, point));  // t within 0.0001 of 0
    EXPECT_EQ(2, line.PointAtZ(10 - 0.00099, point));
    EXPECT_EQ(1, line.PointAtZ(10 + 0.00101, point));
    EXPECT_EQ(0, line.PointAtZ(10 - 0.00101, point));
    EXPECT_EQ(2, line.PointAtZ(20 + 0.00099, point));
    EXPECT_EQ(0, line.PointAtZ(20 + 0.00101, point));
    // Outside, the point lies on the line extended.
    EXPECT_EQ(0, line.PointAtZ(40, point));
    ExpectPoint({30, 60, 40}, point);
}

TEST(Line, PointAtHeightOfALevelLineIsTheStartOrNothing) {
    const Line level({1, 2, 3}, {4, 5, 3});
    Point3d point(9, 9, 9);
    EXPECT_EQ(0, level.PointAtZ(std::nextafter(3.0, 4.0), point));
    ExpectPoint({9, 9, 9}, point);
    EXPECT_EQ(1, level.PointAtZ(3, point));
    ExpectPoint({1, 2, 3}, point);
}

TEST(Line, EndsAreReplacedMovedAndExchanged) {
    Line line({1, 2, 3}, {4, 5, 6});
    line.SetStart({7, 8, 9});
    line.SetEnd({10, 11, 12});
    ExpectLine({7, 8, 9}, {10, 11, 12}, line);
    line.Reverse();
    ExpectLine({10, 11, 12}, {7, 8, 9}, line);
    line.Translate({1, 1, -1});
    ExpectLine({11, 12, 11}, {8, 9, 8}, line);
}

TEST(Line, ExtendsOutwardInSpace) {
    Line line({0, 0, 0}, {3, 0, 4});
    line.ExtendStart(5);
    ExpectLine({-3, 0, -4}, {3, 0, 4}, line);
    line.ExtendEnd(-5);
    ExpectLine({-3, 0, -4}, {0, 0, 0}, line);
    line.Extend(5);
    ExpectLine({-6, 0, -8}, {3, 0, 4}, line);
}

TEST(Line, ExtendingWithoutLengthIsNotGuarded) {
    Line line({1, 2, 3}, {1, 2, 3});
    line.ExtendStart(1);
    EXPECT_TRUE(std::isnan(line.x1));
}

TEST(Line, TurnsTurnBothEnds) {
    const Line line({1, 2, 3}, {4, 5, 6});
    Point3d start = line.Start(), end = line.End();
    Line turned = line;
    turned.RotateAbout({1, 1, 1}, 0.5, 0.25);
    start.RotateAbout({1, 1, 1}, 0.5, 0.25);
    end.RotateAbout({1, 1, 1}, 0.5, 0.25);
    ExpectLine(start, end, turned);
    turned.RotateAxis({1, 0, 2}, 0.3);
    start.RotateAxis({1, 0, 2}, 0.3);
    end.RotateAxis({1, 0, 2}, 0.3);
    ExpectLine(start, end, turned);
    turned.RotateLine(line, 0.7);
    start.RotateLine(line, 0.7);
    end.RotateLine(line, 0.7);
    ExpectLine(start, end, turned);
}

TEST(Line, IsRightOfPointsThatLieToItsLeft) {
    const Line east({0, 0, 0}, {1, 0, 0});
    EXPECT_TRUE(east.IsRightOf({0.5, 1, 0}));
    EXPECT_FALSE(east.IsRightOf({0.5, -1, 0}));
    EXPECT_FALSE(east.IsRightOf({0.5, 0, 0}));
}

TEST(Line, SideWithoutTouchIsNeverZero) {
    const Line east({0, 0, 0}, {10, 0, 0});
    EXPECT_EQ(-1, east.Side({5, 1, 0}, false));
    EXPECT_EQ(1, east.Side({5, -1, 0}, false));
    EXPECT_EQ(1, east.Side({5, 0, 0}, false));
    EXPECT_EQ(-1, east.Side({5, 1e-12, 0}, false));
}

TEST(Line, SideWithTouchIsZeroStrictlyBelowAHundredth) {
    const Line east({0, 0, 0}, {1, 0, 0});  // the cross product is the point's y
    EXPECT_EQ(0, east.Side({5, std::nextafter(0.01, 0), 0}, true));
    EXPECT_EQ(-1, east.Side({5, 0.01, 0}, true));
    EXPECT_EQ(0, east.Side({5, -std::nextafter(0.01, 0), 0}, true));
    EXPECT_EQ(1, east.Side({5, -0.01, 0}, true));
    const Line far({25e6, 7e6, 0}, {25e6 + 1, 7e6, 0});
    EXPECT_EQ(0, far.Side({25e6, 7e6 + 0.0099, 0}, true));
    EXPECT_EQ(-1, far.Side({25e6, 7e6 + 0.0101, 0}, true));
}

TEST(Line, ParallelIsAnEqualSlope) {
    const Line line({0, 0, 0}, {1, 1, 5});
    EXPECT_TRUE(line.IsParallel2d(Line({5, 0, 0}, {4, -1, 0})));
    EXPECT_TRUE(line.IsParallel2d(Line({0, 0, 0}, {1, 1 + 1.9e-8, 0})));
    EXPECT_FALSE(line.IsParallel2d(Line({0, 0, 0}, {1, 1 + 2.1e-8, 0})));
    // Vertical lines divide by zero: infinity minus infinity is no equality.
    const Line up({0, 0, 0}, {0, 1, 0});
    EXPECT_FALSE(up.IsParallel2d(Line({1, 0, 0}, {1, 2, 0})));
}

TEST(Line, BoxHoldsBothEnds) {
    const Box box = Line({4, 2, 6}, {1, 5, 3}).GetBox();
    EXPECT_EQ(1.0f, box.xMin);
    EXPECT_EQ(4.0f, box.xMax);
    EXPECT_EQ(2.0f, box.yMin);
    EXPECT_EQ(5.0f, box.yMax);
    EXPECT_EQ(3.0f, box.zMin);
    EXPECT_EQ(6.0f, box.zMax);
}

TEST(Line, ChecksumAddsThePartsUp) {
    const Line line({1, 2, 3}, {4, 5, 6});
    std::uint32_t expected = 7;  // the flag 1: one byte, times 1, times 7
    for (const double v : {1.0, 4.0, 2.0, 5.0, 3.0, 6.0}) expected += ByteChecksum(&v, sizeof v);
    EXPECT_EQ(expected, line.Checksum());
    Line invalid = line;
    invalid.valid = 0;
    EXPECT_EQ(expected - 7, invalid.Checksum());
    EXPECT_EQ(line.Checksum(), Line({4, 5, 6}, {1, 2, 3}).Checksum());  // it's a sum: order is lost
}

TEST(Line, ArraysOrderLinesByX1X2Y1Y2Z1Z2) {
    const auto compare = [](const Line& a, const Line& b) { return Line::Compare(&a, &b); };
    const Line line({1, 1, 1}, {1, 1, 1});
    EXPECT_EQ(0, compare(line, line));
    EXPECT_EQ(0, compare(line, Line({1.00009, 1, 1}, {1, 1, 0.99991})));
    // Each coordinate outweighs all behind it.
    EXPECT_EQ(-1, compare(line, Line({2, 0, 0}, {0, 0, 0})));
    EXPECT_EQ(-1, compare(line, Line({1, 0, 0}, {2, 0, 0})));
    EXPECT_EQ(-1, compare(line, Line({1, 2, 0}, {1, 0, 0})));
    EXPECT_EQ(-1, compare(line, Line({1, 1, 0}, {1, 2, 0})));
    EXPECT_EQ(-1, compare(line, Line({1, 1, 2}, {1, 1, 0})));
    EXPECT_EQ(-1, compare(line, Line({1, 1, 1}, {1, 1, 2})));
    EXPECT_EQ(1, compare(Line({2, 0, 0}, {0, 0, 0}), line));
    // A difference of the tolerance itself decides.
    EXPECT_EQ(-1, compare(Line({0, 0, 0}, {0, 0, 0}), Line({0.0001, 0, 0}, {0, 0, 0})));
}

// --- Distance and projection.

TEST(LineDistance, LeftIsMinusOne) {
    const Line east({0, 0, 5}, {10, 0, 9});
    int side = 7;
    double t = -1;
    EXPECT_EQ(3.0, east.Distance2d({4, 3, 77}, &side, &t));
    EXPECT_EQ(-1, side);
    EXPECT_EQ(0.4, t);
    EXPECT_EQ(3.0, east.Distance2d({4, -3, 77}, &side, &t));
    EXPECT_EQ(1, side);
    EXPECT_EQ(0.0, east.Distance2d({4, 0, 77}, &side, &t));
    EXPECT_EQ(0, side);
    EXPECT_EQ(3.0, east.Distance2d({4, 3, 0}, nullptr, nullptr));
}

TEST(LineDistance, BeyondTheEndsItIsTheDistanceToThem) {
    const Line east({0, 0, 0}, {10, 0, 0});
    int side = 7;
    double t = 0;
    EXPECT_EQ(5.0, east.Distance2d({-3, 4, 0}, &side, &t));
    EXPECT_EQ(-0.3, t);
    EXPECT_EQ(-1, side);
    EXPECT_EQ(5.0, east.Distance2d({14, -3, 0}, &side, &t));
    EXPECT_EQ(1.4, t);
    EXPECT_EQ(1, side);
    EXPECT_EQ(4.0, east.Distance2d({0, 4, 0}, &side, &t));
    EXPECT_EQ(0.0, t);
    EXPECT_EQ(4.0, east.Distance2d({10, 4, 0}, &side, &t));
    EXPECT_EQ(1.0, t);
}

TEST(LineDistance, ALineWithoutLengthHasSideOneAndParameterZero) {
    const Line point({2, 2, 0}, {2, 2, 9});
    int side = 7;
    double t = 7;
    EXPECT_EQ(5.0, point.Distance2d({5, 6, 0}, &side, &t));
    EXPECT_EQ(1, side);
    EXPECT_EQ(0.0, t);
    // Just below the limit of 1e-8, and at it.
    Line({0, 0, 0}, {std::nextafter(1e-8, 0), 0, 0}).Distance2d({1e-8, 1, 0}, &side, &t);
    EXPECT_EQ(1, side);
    EXPECT_EQ(0.0, t);
    Line({0, 0, 0}, {1e-8, 0, 0}).Distance2d({1e-8, 1, 0}, &side, &t);
    EXPECT_EQ(-1, side);
    EXPECT_EQ(1.0, t);
}

TEST(LineDistance, AgreesWithSamplingTheSegment) {
    std::mt19937 random(1234);
    std::uniform_real_distribution<double> place(-10, 10);
    for (const Point3d& base : {Point3d(), Point3d(25e6, 7e6, 0)}) {
        for (int i = 0; i < 200; ++i) {
            const auto point = [&] {
                return base + Point3d(place(random), place(random), place(random));
            };
            const Line line(point(), point());
            const Point3d p = point();
            double sampled = 1e300;
            for (int k = 0; k <= 2000; ++k)
                sampled = std::min(sampled, Distance2d(line.PointAt(k / 2000.0), p));
            const double distance = line.Distance2d(p, nullptr, nullptr);
            EXPECT_LE(distance, sampled + 1e-7);
            EXPECT_NEAR(sampled, distance, 0.02);
        }
    }
}

TEST(LineDistance, ToTheInfiniteLineIsNotLimited) {
    const Line east({0, 0, 0}, {10, 0, 50});
    double along = 0;
    EXPECT_EQ(4.0, east.LineDistance2d({-30, 4, 0}, &along));
    EXPECT_EQ(-30.0, along);
    EXPECT_EQ(4.0, east.LineDistance2d({30, -4, 0}, &along));
    EXPECT_EQ(30.0, along);
    EXPECT_EQ(4.0, east.LineDistance2d({30, -4, 0}, nullptr));
}

TEST(LineDistance, ToTheInfiniteLineHasACutOffOfItsOwn) {
    double along = 7;
    const Point3d point(3, 4, 0);
    EXPECT_EQ(5.0,
              Line({0, 0, 0}, {std::nextafter(0.0001, 0), 0, 0}).LineDistance2d(point, &along));
    EXPECT_EQ(0.0, along);
    EXPECT_NEAR(4.0, Line({0, 0, 0}, {0.0001, 0, 0}).LineDistance2d(point, &along), 1e-12);
    EXPECT_NEAR(3.0, along, 1e-12);
}

TEST(LineDistance, ProjectionPutsThePlanLengthOnTheSlope) {
    Point3d foot;
    Line({0, 0, 0}, {10, 0, 0}).Project(foot, {4, 7, 7});
    ExpectNear({4, 0, 0}, foot, 1e-14);
    // Slope 3:4, length 5 for a plan length of 3: the foot of x = 3 falls short of the end.
    const Line sloped({0, 0, 0}, {3, 0, 4});
    sloped.Project(foot, {3, 1, 99});
    ExpectNear({3 * 3 / 5.0, 0, 3 * 4 / 5.0}, foot, 1e-14);
    // Without length: the start. A vertical line has length but no plan length: `along` is 0.
    Line({1, 2, 3}, {1, 2, 3.00009}).Project(foot, {5, 5, 5});
    ExpectPoint({1, 2, 3}, foot);
    Line({1, 2, 3}, {1, 2, 9}).Project(foot, {5, 5, 5});
    ExpectPoint({1, 2, 3}, foot);
}

TEST(LineDistance, ClosestPointIsThePerpendicularFootOrTheNearerEnd) {
    const Line line({0, 0, 0}, {0, 0, 10});
    Point3d foot;
    double distance = 0;
    EXPECT_EQ(1, line.ClosestPoint({3, 4, 5}, foot, &distance));
    ExpectPoint({0, 0, 5}, foot);
    EXPECT_EQ(5.0, distance);
    EXPECT_EQ(0, line.ClosestPoint({3, 0, 14}, foot, &distance));
    ExpectPoint({0, 0, 10}, foot);
    EXPECT_EQ(5.0, distance);
    EXPECT_EQ(0, line.ClosestPoint({0, 0, -2}, foot, nullptr));
    ExpectPoint({0, 0, 0}, foot);
    // At an end itself the foot stays.
    EXPECT_EQ(1, line.ClosestPoint({1, 0, 10}, foot, &distance));
    // Without length the nearer end, which is both.
    EXPECT_EQ(0, Line({1, 1, 1}, {1, 1, 1}).ClosestPoint({1, 1, 3}, foot, &distance));
    ExpectPoint({1, 1, 1}, foot);
    EXPECT_EQ(2.0, distance);
}

TEST(LineDistance, SegmentsCrossingInSpace) {
    const Line here({0, 0, 0}, {10, 0, 0}), there({5, -5, 3}, {5, 5, 3});
    Point3d a, b;
    EXPECT_EQ(3.0, here.SegmentDistance(there, &a, &b));
    ExpectPoint({5, 0, 0}, a);
    ExpectPoint({5, 0, 3}, b);
    EXPECT_EQ(3.0, here.SegmentDistance(there, nullptr, nullptr));
}

TEST(LineDistance, SegmentsWithoutLengthOrParallel) {
    Point3d a, b;
    const Line point({1, 2, 3}, {1, 2, 3});
    EXPECT_EQ(5.0, point.SegmentDistance(Line({4, 6, 3}, {4, 6, 3}), &a, &b));
    ExpectPoint({1, 2, 3}, a);
    ExpectPoint({4, 6, 3}, b);
    EXPECT_NEAR(4.0,
                Line({0, 0, 0}, {10, 0, 0}).SegmentDistance(Line({3, 4, 0}, {7, 4, 0}), &a, &b),
                1e-14);
    EXPECT_NEAR(5.0,
                Line({0, 0, 0}, {10, 0, 0}).SegmentDistance(Line({13, 4, 0}, {17, 4, 0}), &a, &b),
                1e-14);
    ExpectPoint({10, 0, 0}, a);
    ExpectPoint({13, 4, 0}, b);
}

TEST(LineDistance, ToASegmentWithoutLengthItIsMeasuredFromTheStart) {
    const Line line({0, 0, 0}, {10, 0, 0}), point({5, 3, 0}, {5, 3, 0});
    Point3d a, b;
    EXPECT_EQ(std::sqrt(34.0), line.SegmentDistance(point, &a, &b));
    ExpectPoint({0, 0, 0}, a);
    // Asked of the one without length, the whole other line counts.
    EXPECT_EQ(3.0, point.SegmentDistance(line, &a, &b));
    ExpectPoint({5, 0, 0}, b);
}

TEST(LineDistance, SegmentDistanceAgreesWithSampling) {
    std::mt19937 random(99);
    std::uniform_real_distribution<double> place(-10, 10);
    std::uniform_int_distribution<int> grid(-2, 2);
    for (int i = 0; i < 300; ++i) {
        // Every other pair on a coarse grid: parallel, touching and crossing ones come up often.
        const auto point = [&] {
            if (i % 2 == 0) return Point3d(place(random), place(random), place(random));
            return Point3d(grid(random), grid(random), grid(random));
        };
        const Line here(point(), point());
        Line there(point(), point());
        if (there.Length() == 0) there.SetEnd(there.Start() + Point3d(1, 2, 1));
        Point3d a, b;
        const double distance = here.SegmentDistance(there, &a, &b);
        EXPECT_DOUBLE_EQ(distance, Distance(a, b));
        double sampled = 1e300;
        for (int s = 0; s <= 100; ++s)
            for (int t = 0; t <= 100; ++t)
                sampled =
                    std::min(sampled, Distance(here.PointAt(s / 100.0), there.PointAt(t / 100.0)));
        EXPECT_LE(distance, sampled + 1e-9) << i;
        EXPECT_NEAR(sampled, distance, 0.35) << i;
    }
}

}  // namespace
}  // namespace TamLib
