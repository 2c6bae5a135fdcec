// Where arcs meet lines and arcs, how far points are from them, and arcs as polylines. The arcs
// stand over the chord from (0, 0) to (8, 0): with height 2 about (4, -3), with 8 about (4, 3),
// both of radius 5.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <string>

#include "GeomEnts/Arc.h"
#include "GeomStructs/PolyLine.h"
#include "host/editor/Scripted.h"
#include "tests/support/Points.h"

namespace TamLib {
namespace {

const double kAlmostFlat = std::nextafter(0.0001, 0);
const Point3d kOrigin, kFar(25e6, 7e6, 0);
using Points = Point3dArrayBase<Point3d>;

Arc Over(double height, const Point3d& base = kOrigin) {
    return {height, Line(base, base + Point3d(8, 0, 0))};
}

void ExpectPlan(double x, double y, const Point3d& p, double tolerance = 1e-9) {
    EXPECT_NEAR(x, p.x, tolerance);
    EXPECT_NEAR(y, p.y, tolerance);
}

template <class Other>
Points Meet(const Arc& arc, const Other& other) {
    Points points;
    points.Append({9, 9, 9});  // is taken away
    arc.Intersect(other, points);
    return points;
}

// --- Lines.

TEST(ArcIntersectLine, KeepsWhatLiesOnTheBulgeSide) {
    for (const Point3d& base : {kOrigin, kFar}) {
        const Line across(base + Point3d(5, -20, 0), base + Point3d(3, 20, 0));
        for (const double height : {2.0, -2.0, 8.0, -8.0}) {
            const Points points = Meet(Over(height, base), across);
            ASSERT_EQ(1u, points.count) << height;
            EXPECT_NEAR(height, points[0].y - base.y, 0.1);
            EXPECT_EQ(base.z, points[0].z);
        }
    }
}

TEST(ArcIntersectLine, ThroughBothEndsOfTheChordKeepsBoth) {
    for (const double height : {2.0, -2.0, 8.0, -8.0}) {
        const Points points = Meet(Over(height), Line({-1, 0, 0}, {9, 0, 0}));
        ASSERT_EQ(2u, points.count) << height;
        ExpectPlan(8, 0, points[0]);
        ExpectPlan(0, 0, points[1]);
    }
}

TEST(ArcIntersectLine, OrderIsThatOfTheCircle) {
    // Level lines: along the direction; others: the larger y first.
    Points points = Meet(Over(8), Line({-5, 6, 0}, {20, 6, 0}));
    ASSERT_EQ(2u, points.count);
    ExpectPlan(8, 6, points[0]);
    ExpectPlan(0, 6, points[1]);
    points = Meet(Over(8), Line({-0.5, 9, 0}, {-0.5, 0, 0}));
    ASSERT_EQ(2u, points.count);
    EXPECT_GT(points[0].y, points[1].y);
}

TEST(ArcIntersectLine, ATangentGivesItsPointTwice) {
    Points points = Meet(Over(2), Line({-5, 2, 0}, {20, 2, 0}));
    ASSERT_EQ(2u, points.count);
    ExpectPlan(4, 2, points[0]);
    ExpectPlan(4, 2, points[1]);
    points = Meet(Over(2), Line({-5, 2.001, 0}, {20, 2.001, 0}));
    EXPECT_EQ(0u, points.count);
}

TEST(ArcIntersectLine, TheBandOfTheChordIsAHundredthByTheCrossProduct) {
    // The chord is 8 long: 0.00125 off it. A steep line through the circle's other part near the
    // end meets it just below the chord.
    const Arc arc = Over(2);
    const auto hits = [&](double below) {
        // The circle at y = -below, left of (8, 0).
        const double x = 4 + std::sqrt(25 - (3 - below) * (3 - below));
        return Meet(arc, Line({x - 1, -below, 0}, {x + 1, -below, 0})).count;
    };
    EXPECT_EQ(1u, hits(0.00124));
    EXPECT_EQ(0u, hits(0.00126));
}

TEST(ArcIntersectLine, AFlatArcIsItsChordAndMeetsOnce) {
    const Line across({4, -1, 0}, {5, 1, 0});
    const Points points = Meet(Over(kAlmostFlat), across);
    ASSERT_EQ(1u, points.count);
    ExpectPlan(4.5, 0, points[0], 1e-12);
    EXPECT_EQ(0.0, points[0].z);
    // An end on the chord is a crossing; beside it there is none.
    EXPECT_EQ(1u, Meet(Over(0), Line({4, 0, 0}, {5, 1, 0})).count);
    EXPECT_EQ(0u, Meet(Over(0), Line({4, 0.00005, 0}, {5, 1, 0})).count);
    EXPECT_EQ(0u, Meet(Over(0), Line({9, -1, 0}, {9, 1, 0})).count);
    // At 0.0001 it is an arc: the hit lies on it and not on the chord.
    const Points curved = Meet(Over(0.0001), across);
    ASSERT_EQ(1u, curved.count);
    EXPECT_GT(curved[0].y, 0.00009);
}

// --- Arcs.

TEST(ArcIntersectArc, KeepsWhatLiesOnBothArcs) {
    // Circles about (4, 3) and (12, 3) of radius 5 meet in (8, 6) and (8, 0).
    const Arc here = Over(8), whole(8, Line({8, 0, 0}, {16, 0, 0}));
    Points points = Meet(here, whole);
    ASSERT_EQ(2u, points.count);
    ExpectPlan(8, 6, points[0]);
    ExpectPlan(8, 0, points[1]);
    // The upper part of the other circle alone.
    const Arc upper(2, Line({8, 6, 0}, {16, 6, 0}));
    points = Meet(here, upper);
    ASSERT_EQ(1u, points.count);
    ExpectPlan(8, 6, points[0]);
    points = Meet(upper, here);
    ASSERT_EQ(1u, points.count);
    ExpectPlan(8, 6, points[0]);
    // Its lower part, over the same chord.
    const Arc lower(-8, Line({8, 6, 0}, {16, 6, 0}));
    points = Meet(here, lower);
    EXPECT_EQ(2u, points.count);
    // The lower part of this one.
    points = Meet(Arc(-2, Line({0, 0, 0}, {8, 0, 0})), upper);
    EXPECT_EQ(0u, points.count);
}

TEST(ArcIntersectArc, FlatOnesTakePartAsTheirChords) {
    const Arc across(kAlmostFlat, Line({4, -1, 0}, {5, 9, 0}));
    // Both flat.
    Points points = Meet(Over(0), across);
    ASSERT_EQ(1u, points.count);
    ExpectPlan(4.1, 0, points[0], 1e-12);
    // The other flat, and this one.
    const Points other = Meet(Over(8), across), self = Meet(across, Over(8));
    ASSERT_EQ(1u, other.count);
    ASSERT_EQ(1u, self.count);
    EXPECT_EQ(other[0].x, self[0].x);
    EXPECT_EQ(other[0].y, self[0].y);
    EXPECT_NEAR(5.0, Distance2d(other[0], {4, 3, 0}), 1e-9);
    // Flat and unable to meet the arc's part of the circle.
    EXPECT_EQ(0u, Meet(Over(8), Arc(0, Line({4, -2, 0}, {5, -1, 0}))).count);
}

// --- Distance.

TEST(ArcDistance, WithinTheSweepItIsTheDistanceToTheCircle) {
    const double half = 5 * std::asin(0.8);
    for (const Point3d& base : {kOrigin, kFar}) {
        const Arc minor = Over(2, base), major = Over(8, base);
        double along = -1;
        EXPECT_NEAR(3.0, minor.Distance(base + Point3d(4, 5, 99), &along), 1e-6);
        EXPECT_NEAR(half, along, 1e-6);
        EXPECT_NEAR(1.0, minor.Distance(base + Point3d(4, 1, 0), &along), 1e-6);
        EXPECT_NEAR(half, along, 1e-6);
        // More than half way round: clockwise from 216.87 degrees to 0.
        EXPECT_NEAR(1.0, major.Distance(base + Point3d(10, 3, 0), &along), 1e-6);
        EXPECT_NEAR(5 * (2 * kPi - std::acos(-0.8)), along, 1e-6);
        EXPECT_NEAR(1.0, Over(-8, base).Distance(base + Point3d(10, -3, 0), &along), 1e-6);
        EXPECT_NEAR(5 * (2 * kPi - std::acos(-0.8)), along, 1e-6);
        EXPECT_NEAR(1.0, major.Distance(base + Point3d(-2, 3, 0), &along), 1e-6);
        EXPECT_NEAR(5 * std::acos(0.8), along, 1e-6);
        EXPECT_NEAR(3.0, minor.Distance(base + Point3d(4, 5, 0), nullptr), 1e-6);
    }
}

TEST(ArcDistance, AtTheCentreItIsTheRadiusAndTheStart) {
    double along = -1;
    EXPECT_NEAR(5.0, Over(2).Distance({4, -3, 0}, &along), 1e-12);
    EXPECT_EQ(0.0, along);
    EXPECT_EQ(Over(2).Radius(), Over(2).Distance({4, -3.00009, 0}, &along));
    EXPECT_NE(Over(2).Radius(), Over(2).Distance({4, -3.00011, 0}, &along));
}

TEST(ArcDistance, BesideTheSweepItIsTheNearerEnd) {
    const Arc minor = Over(2);
    double along = -1;
    EXPECT_EQ(4.0, minor.Distance({12, 0, 0}, &along));
    EXPECT_EQ(minor.Length(), along);
    EXPECT_EQ(4.0, minor.Distance({-4, 0, 0}, &along));
    EXPECT_EQ(0.0, along);
    // As near to both: the end.
    EXPECT_NEAR(std::sqrt(16 + 400.0), minor.Distance({4, -20, 0}, &along), 1e-12);
    EXPECT_EQ(minor.Length(), along);
}

TEST(ArcDistance, AtItsOwnEndsAndMiddle) {
    const Arc minor = Over(2);
    double along = -1;
    EXPECT_NEAR(0.0, minor.Distance({0, 0, 0}, &along), 1e-12);
    EXPECT_NEAR(0.0, along, 1e-6);
    EXPECT_NEAR(0.0, minor.Distance({8, 0, 0}, &along), 1e-12);
    EXPECT_NEAR(minor.Length(), along, 1e-6);
    // The foot in the direction of the start itself: no angle, and no NaN by rounding.
    EXPECT_NEAR(5.0, minor.Distance({-4, 3, 0}, &along), 1e-12);
    EXPECT_NEAR(0.0, along, 1e-6);
}

TEST(ArcDistance, OfAFlatArcIsThatOfTheChordAndLimited) {
    const Arc flat(kAlmostFlat, Line({0, 0, 0}, {8, 0, 6}));
    double along = -1;
    EXPECT_EQ(3.0, flat.Distance({2, 3, 0}, &along));
    EXPECT_EQ(2.0, along);
    EXPECT_EQ(5.0, flat.Distance({-3, 4, 0}, &along));
    EXPECT_EQ(0.0, along);
    EXPECT_EQ(5.0, flat.Distance({11, 4, 0}, &along));
    EXPECT_EQ(8.0, along);  // in plan
    EXPECT_EQ(5.0, flat.Distance({11, 4, 0}, nullptr));
    EXPECT_NE(3.0, Over(0.0001).Distance({2, 3, 0}, nullptr));
}

TEST(ArcDistance, AFootThatIsNotOnTheArcIsPrintedAndLeavesTheStart) {
    // A half circle of negative height takes points on its far side for its own, see InSweep; the
    // ray to them meets the other half.
    host::editor::Scripted host;
    const Arc half(-4, Line({0, 0, 0}, {8, 0, 0}));
    double along = -1;
    EXPECT_NEAR(3.0, half.Distance({4.6, 0.8, 0}, nullptr), 1e-12);
    EXPECT_EQ(L"", host.printed());  // who does not ask for the length does not get the line
    EXPECT_NEAR(3.0, half.Distance({4.6, 0.8, 0}, &along), 1e-12);
    EXPECT_EQ(0.0, along);
    EXPECT_EQ(0u, host.printed().find(L"Shouldn't happen GeomEnts/Arc:"));
    EXPECT_EQ(L".\n", host.printed().substr(host.printed().size() - 2));
}

TEST(ArcDistance, PointsOnTheArcFarAwayHaveTheirFootThere) {
    host::editor::Scripted host;
    for (const double height : {8.0, -8.0, 2.0, -2.0}) {
        const Arc arc(height, Line(kFar, kFar + Point3d(8, 1, 0)));
        for (int i = 1; i < 1000; ++i) {
            Point3d on;
            arc.PointAtFraction(i / 1000.0, on);
            double along = -1;
            EXPECT_NEAR(0.0, arc.Distance(on, &along), 1e-6);
            EXPECT_NEAR(arc.Length() * i / 1000.0, along, 1e-5);
        }
    }
    EXPECT_EQ(L"", host.printed());
}

TEST(ArcDistance, AgreesWithSampling) {
    std::mt19937 random(5);
    std::uniform_real_distribution<double> place(-20, 20), bow(0.2, 9);
    for (int n = 0; n < 300; ++n) {
        const double height = bow(random) * (n % 2 == 0 ? 1 : -1);
        const Arc arc(height, Line({0, 0, 0}, {8, 2, 0}));
        // See InSweep for half circles of negative height.
        if (std::fabs(std::fabs(height) - arc.Radius()) < 0.01) continue;
        const Point3d p(place(random), place(random), 0);
        double nearest = 1e9, where = 0;
        for (int i = 0; i <= 4000; ++i) {
            Point3d on;
            arc.PointAtFraction(i / 4000.0, on);
            if (Distance2d(on, p) < nearest) {
                nearest = Distance2d(on, p);
                where = arc.Length() * i / 4000.0;
            }
        }
        double along = -1;
        const double distance = arc.Distance(p, &along);
        EXPECT_NEAR(nearest, distance, 1e-3) << height << " " << p.x << " " << p.y;
        // Near the centre all feet are as near.
        Point3d centre;
        arc.Centre(centre);
        if (Distance2d(p, centre) > 1) {
            EXPECT_NEAR(where, along, 0.2) << height;
        }
    }
}

// --- As polylines.

void ExpectEnds(const PolyLine& line, const Arc& arc) {
    ASSERT_EQ(2u, line.count);
    EXPECT_TRUE(Equals(arc.Start(), line[0]));
    EXPECT_TRUE(Equals(arc.End(), line[1]));
}

TEST(ArcToPolyLine, OfAStraightArcIsItsEnds) {
    const Arc flat(std::nextafter(1e-9, 0), Line({0, 0, 3}, {8, 0, 5}));
    const PolyLine line = flat.ToPolyLine(0.1, true);
    ASSERT_EQ(2u, line.count);
    EXPECT_EQ(8.0, line[1].x);
    EXPECT_EQ(5.0, line[1].z);
    EXPECT_EQ(20u, line.increment);
    // From a billionth on it is walked.
    EXPECT_GT(Over(1e-9).ToPolyLine(1e-10, true).count, 2u);
    EXPECT_EQ(20u, Over(1).ToPolyLine(0.1, true).increment);
}

TEST(ArcToPolyLine, StepsByAngleOrByLengthOfEitherSign) {
    // A half circle of radius 4, steps of a tenth of it.
    const Arc half = Over(4);
    const PolyLine byAngle = half.ToPolyLine(kPi / 10, true);
    EXPECT_GE(byAngle.count, 10u);
    EXPECT_LE(byAngle.count, 11u);
    {
        const PolyLine same = half.ToPolyLine(-kPi / 10, true);
        ASSERT_EQ(byAngle.count, same.count);
        for (std::uint32_t i = 0; i < same.count; ++i)
            EXPECT_EQ(0, std::memcmp(&byAngle.data[i], &same.data[i], sizeof(Point3d)));
    }
    const PolyLine byLength = half.ToPolyLine(4 * kPi / 10, false);
    ASSERT_EQ(byAngle.count, byLength.count);
    for (std::uint32_t i = 0; i < byLength.count; ++i)
        EXPECT_LT(Distance(byAngle.data[i], byLength.data[i]), 1e-12);
}

TEST(ArcToPolyLine, AStepBeyondTheSweepGivesTheTwoEnds) {
    for (const double height : {2.0, -2.0, 0.001})
        ExpectEnds(Over(height).ToPolyLine(6.2, true), Over(height));
    std::mt19937 random(3);
    std::uniform_real_distribution<double> place(-50, 50), bow(0.05, 2.5);
    for (int i = 0; i < 20000; ++i) {
        const Line chord({place(random), place(random), 0}, {place(random), place(random), 0});
        if (chord.Length2d() < 1) continue;
        const Arc arc(bow(random) * chord.Length2d() * (i % 2 == 0 ? 1 : -1), chord);
        EXPECT_EQ(2u, arc.ToPolyLine(arc.SweepAngle() * 1.01, true).count);
    }
}

TEST(ArcToPolyLine, AStepThatLeadsNowhereGivesTheTwoEnds) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    for (const double step : {0.0, -0.0, 1e-18, nan, inf, -inf}) {
        ExpectEnds(Over(2).ToPolyLine(step, true), Over(2));
        ExpectEnds(Over(2).ToPolyLine(step, false), Over(2));
    }
}

TEST(ArcToPolyLine, TheLastIntervalIsUpToTwoStepsLong) {
    // Over the chord the angles run from 143.13 down to 36.87 degrees without passing 0: 1.8546 by
    // steps of 0.3 are 6.18; the fifth point is the last before the end, 0.354 + 0.3 behind it.
    const PolyLine line = Over(2).ToPolyLine(0.3, true);
    ASSERT_EQ(7u, line.count);
    const Point3d centre(4, -3, 0);
    for (int i = 0; i + 2 < 7; ++i)
        EXPECT_NEAR(0.3, AngleAt(centre, line[i + 1], line[i]), 1e-12) << i;
    EXPECT_NEAR(1.8545904360032244 - 1.5, AngleAt(centre, line[6], line[5]), 1e-12);
    // Steps of 0.35: 5.3; after four steps 0.4546 are left, above the step; so five, and 0.1046.
    // Steps of 0.4: 4.64; after four 0.2546 are left, not above the step: the fourth is the last.
    const PolyLine longer = Over(2).ToPolyLine(0.4, true);
    ASSERT_EQ(5u, longer.count);
    EXPECT_NEAR(1.8545904360032244 - 1.2, AngleAt(centre, longer[4], longer[3]), 1e-12);
}

TEST(ArcToPolyLine, HeightsRunEvenlyByAngleFromEndToEnd) {
    for (const double sign : {1.0, -1.0}) {
        const Arc arc(2 * sign, Line({0, 0, 10}, {8, 0, 20}));
        const PolyLine line = arc.ToPolyLine(0.3, true);
        ASSERT_GE(line.count, 6u);
        EXPECT_TRUE(Equals(arc.Start(), line[0])) << sign;
        EXPECT_TRUE(Equals(arc.End(), line[-1])) << sign;
        Point3d centre;
        arc.Centre(centre);
        for (const Point3d& p : line) {
            const double turned =
                sign > 0 ? AngleAt(centre, p, arc.Start()) : AngleAt(centre, arc.Start(), p);
            const double share = std::fmod(turned + 1, 2 * kPi) - 1;  // near 0 it may be a turn
            EXPECT_NEAR(10 + 10 * share / arc.SweepAngle(), p.z, 1e-9) << sign;
        }
    }
}

TEST(ArcToPolyLine, HeightsRunAwayWhereTheAnglesPassZero) {
    // Intended. About (4, 3) clockwise from 216.87 degrees over 0 to -36.87, told as 323.13: the
    // raw difference is +106.26 instead of -253.74 degrees.
    const Arc arc(8, Line({0, 0, 10}, {8, 0, 20}));
    const PolyLine line = arc.ToPolyLine(0.5, true);
    EXPECT_EQ(10.0, line[0].z);
    EXPECT_EQ(20.0, line[-1].z);
    EXPECT_NEAR(10 - 10 * 0.5 / 1.8545904360032244, line[1].z, 1e-9);
    EXPECT_LT(line[-2].z, -10);
}

}  // namespace
}  // namespace TamLib
