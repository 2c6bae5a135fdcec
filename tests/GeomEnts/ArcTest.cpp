// Arc: how it is made, measured and walked. Expected values come from the circle's own geometry,
// worked out beside each case, or from sampling.
#include "GeomEnts/Arc.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <string>
#include <type_traits>

#include "GeomEnts/Box.h"
#include "GeomEnts/circle.h"
#include "tam/TamExceptions.h"
#include "tests/support/Points.h"

namespace TamLib {
namespace {

const Point3d kOrigin, kFar(25e6, 7e6, 0);

Line At(const Point3d& base, const Point3d& start, const Point3d& end) {
    return {base + start, base + end};
}

// From (0, 0) to (2, 0) with that height.
Arc Over(double height, const Point3d& base = kOrigin) {
    return {height, At(base, {0, 0, 0}, {2, 0, 0})};
}

Point3d CentreOf(const Arc& arc) {
    Point3d centre;
    arc.Centre(centre);
    return centre;
}

template <class Make>
std::wstring MessageOf(const Make& make) {
    try {
        make();
    } catch (const TamExpDivZero& e) {
        EXPECT_EQ(std::wstring(L"GeomEnts/Arc"), e.file);
        return e.message;
    }
    return L"nothing thrown";
}

// --- The record.

TEST(Arc, IsALineAndOneDouble) {
    EXPECT_EQ(72u, sizeof(Arc));
    EXPECT_TRUE((std::is_base_of_v<Line, Arc>));
    Line chord({1, 2, 3}, {4, 5, 6});
    chord.valid = 0;
    const Arc arc(0.5, chord);
    EXPECT_EQ(0, arc.valid);
    EXPECT_EQ(0, Arc(chord, Point3d(0, 9, 0)).valid);
    EXPECT_EQ(0, Arc(Point3d(0, 9, 0), chord, true).valid);
    EXPECT_EQ(1.0, arc.x1);
    EXPECT_EQ(6.0, arc.z2);
    EXPECT_EQ(0.5, arc.Height());
    Arc copy = arc;
    copy.SetHeight(-2);
    EXPECT_EQ(-2.0, copy.height);
    EXPECT_EQ(0.5, arc.height);
}

TEST(Arc, ReplacesTheLengthOfTheLineItIs) {
    const Arc half = Over(1.0);
    const Line& line = half;
    EXPECT_NEAR(kPi, line.Length(), 1e-12);
    EXPECT_EQ(2.0, line.Line::Length());
    EXPECT_EQ(2.0, line.Length2d());
}

// --- About a centre. The chord runs from (0, 0) to (8, 0); a centre 3 off it gives radius 5.

TEST(ArcAboutCentre, FourWaysRoundACircle) {
    for (const Point3d& base : {kOrigin, kFar}) {
        const Line chord = At(base, {0, 0, 0}, {8, 0, 0});
        const Point3d left = base + Point3d(4, 3, 0), right = base + Point3d(4, -3, 0);
        // The centre left: clockwise is the long way round, over it.
        EXPECT_EQ(8.0, Arc(left, chord, true).height);
        EXPECT_EQ(-2.0, Arc(left, chord, false).height);
        EXPECT_EQ(2.0, Arc(right, chord, true).height);
        EXPECT_EQ(-8.0, Arc(right, chord, false).height);
        EXPECT_EQ(8.0, Arc(left, chord.Start(), chord.End(), true).height);
    }
}

TEST(ArcAboutCentre, OnTheChordItIsAHalfCircleBothWays) {
    const Line chord({0, 0, 0}, {8, 0, 0});
    EXPECT_EQ(4.0, Arc({4, 0, 0}, chord, true).height);
    EXPECT_EQ(-4.0, Arc({4, 0, 0}, chord, false).height);
}

TEST(ArcAboutCentre, WithinAHundredthByTheCrossProductItCountsAsOnTheChord) {
    // A chord of length 1: the cross product is the distance. r - d is below d + r either way.
    for (const Point3d& base : {kOrigin, kFar}) {
        const Line chord = At(base, {0, 0, 0}, {1, 0, 0});
        const auto height = [&](double off, bool clockwise) {
            return Arc(base + Point3d(0.5, off, 0), chord, clockwise).height;
        };
        EXPECT_GT(height(0.0101, true), 0.5);
        EXPECT_LT(height(0.0099, true), 0.5);  // the side is not seen
        EXPECT_LT(height(-0.0101, false), -0.5);
        EXPECT_GT(height(-0.0099, false), -0.5);
        EXPECT_LT(height(-0.0099, false), 0);
    }
    // On the limit the side counts: sqrt(0.0001) as it is.
    const double limit = std::sqrt(0.0001);
    const Line unit({0, 0, 0}, {1, 0, 0});
    EXPECT_GT(Arc(Point3d(0.5, limit, 0), unit, true).height, 0.5);
    EXPECT_LT(Arc(Point3d(0.5, std::nextafter(limit, 0), 0), unit, true).height, 0.5);
}

TEST(ArcAboutCentre, ARadiusBelowHalfTheChordIsTheHeight) {
    // The start is 1 from the centre, the chord 8 long: no circle, d counts as 0.
    EXPECT_EQ(1.0, Arc(Point3d(1, 0, 0), Line({0, 0, 0}, {8, 0, 0}), true).height);
}

TEST(ArcAboutCentre, HeightsDoNotMatter) {
    EXPECT_EQ(2.0, Arc({4, -3, 99}, {0, 0, 5}, {8, 0, -7}, true).height);
}

TEST(ArcAboutCentre, TheStartOnTheCentreInPlanIsRefused) {
    const wchar_t* const text = L"Distance from start point to center point was zero";
    EXPECT_EQ(text, MessageOf([] { return Arc({1, 2, 9}, {1, 2, 3}, {4, 5, 6}, true); }));
    EXPECT_EQ(text, MessageOf([] { return Arc({1, 2, 9}, Line({1, 2, 3}, {4, 5, 6}), true); }));
    // Exactly on it alone, and the end may lie there.
    EXPECT_EQ(L"nothing thrown", MessageOf([] {
                  return Arc({std::nextafter(1.0, 2.0), 2, 0}, {1, 2, 3}, {4, 5, 6}, 1);
              }));
    EXPECT_EQ(L"nothing thrown", MessageOf([] { return Arc({4, 5, 0}, {1, 2, 3}, {4, 5, 6}, 1); }));
}

// --- Through a third point.

TEST(ArcThroughPoint, SideAndHeightOfThePoint) {
    for (const Point3d& base : {kOrigin, kFar}) {
        const Line chord = At(base, {0, 0, 0}, {8, 0, 0});
        const auto through = [&](double x, double y) {
            return Arc(chord, base + Point3d(x, y, 0)).height;
        };
        EXPECT_NEAR(2.0, through(4, 2), 1e-6);
        EXPECT_NEAR(-2.0, through(4, -2), 1e-6);
        EXPECT_NEAR(8.0, through(4, 8), 1e-6);
        EXPECT_NEAR(-8.0, through(4, -8), 1e-6);
        EXPECT_NEAR(8.0, through(9, 3), 1e-6);  // on the far side of the same circle
        EXPECT_NEAR(4.0, through(4, 4), 1e-6);  // a half circle
        EXPECT_NEAR(-4.0, through(4, -4), 1e-6);
    }
}

TEST(ArcThroughPoint, PointsOnOneLineGiveAStraightArc) {
    const Line chord({0, 0, 0}, {8, 4, 0});
    EXPECT_EQ(0.0, Arc(chord, Point3d(4, 2, 0)).height);
    EXPECT_EQ(0.0, Arc(chord, Point3d(16, 8, 0)).height);
    EXPECT_EQ(0.0, Arc(chord, chord.Start()).height);
    // Exactly on the line alone.
    EXPECT_NE(0.0, Arc(chord, Point3d(4, 2.000001, 0)).height);
}

TEST(ArcThroughPoint, WithinAHundredthByTheCrossProductThePointCountsAsLeft) {
    // Intended. The chord is 1 long, so the point lies 0.0099 and 0.0101 to the right.
    for (const Point3d& base : {kOrigin, kFar}) {
        const Line chord = At(base, {0, 0, 0}, {1, 0, 0});
        EXPECT_NEAR(0.0099, Arc(chord, base + Point3d(0.5, -0.0099, 0)).height, 1e-6);
        EXPECT_NEAR(-0.0101, Arc(chord, base + Point3d(0.5, -0.0101, 0)).height, 1e-6);
        EXPECT_NEAR(0.0099, Arc(chord, base + Point3d(0.5, 0.0099, 0)).height, 1e-6);
    }
}

TEST(ArcThroughPoint, ACentreOnThePointIsRefusedWithAnEmptyMessage) {
    // A right angle of the smallest steps that coordinates of 2^25 have: the centre, half a step
    // away, rounds to the point.
    const double place = 33554432.0, step = std::nextafter(place, 1e9) - place;
    const Point3d corner(place, place, 0);
    const Line chord({place + step, place, 0}, {place, place + step, 0});
    EXPECT_EQ(L"", MessageOf([&] { return Arc(chord, corner); }));
}

// --- From angles.

TEST(ArcFromAngle, ATangentAngleWithinTheFirstQuarter) {
    // r = half / cos(pi / 2 - a) = half / sin a; the height is r - r cos a.
    const Line chord({0, 0, 0}, {2, 0, 0});
    for (const double a : {0.1, 0.5, 1.0, 1.5})
        EXPECT_NEAR((1 - std::cos(a)) / std::sin(a), Arc(chord, a).height, 1e-12) << a;
}

TEST(ArcFromAngle, QuarterTurnsAreTakenOffAsPlainNumbers) {
    // Intended: from pi / 2 on the angle less 1, from pi on less 2, from 3 pi / 2 on less 3.
    const Line chord({0, 0, 0}, {2, 0, 0});
    const auto height = [](double a) {
        const double r = 1 / std::cos(kPi * 0.5 - a);
        return std::fabs(std::fabs(r) - std::sqrt(r * r - 1));
    };
    EXPECT_NEAR(height(1.6 - 1), Arc(chord, 1.6).height, 1e-12);
    EXPECT_NEAR(height(3.2 - 2), Arc(chord, 3.2).height, 1e-12);
    EXPECT_NEAR(height(5.0 - 3), Arc(chord, 5.0).height, 1e-12);
    // Angles are brought into one turn first.
    EXPECT_NEAR(Arc(chord, 5.0).height, Arc(chord, 5.0 - 2 * kPi).height, 1e-9);
    EXPECT_NEAR(Arc(chord, 0.5).height, Arc(chord, 0.5 + 6 * kPi).height, 1e-9);
}

TEST(ArcFromAngle, TheSineFormTakesHalfThePlanChord) {
    const Line chord({0, 0, 0}, {3, 4, 12});
    EXPECT_EQ(2.5 * std::sin(0.7), Arc(chord, 0.7, Arc::SineForm()).height);
    EXPECT_EQ(2.5 * std::sin(-0.7), Arc(chord, -0.7, Arc::SineForm()).height);
}

// --- Bulges.

TEST(ArcBulge, HasTheOppositeSignOfTheHeight) {
    EXPECT_EQ(-0.5, Over(0.5).Bulge());
    EXPECT_EQ(0.5, Over(-0.5).Bulge());
    EXPECT_EQ(-2.0, Over(2.0).Bulge());
    Arc arc = Over(0);
    arc.SetBulge(1.0);
    EXPECT_NEAR(-1.0, arc.height, 1e-12);
    EXPECT_EQ(-0.9999999999999999, arc.height);
    arc.SetBulge(-0.5);
    EXPECT_NEAR(0.5, arc.height, 1e-12);
}

TEST(ArcBulge, HeightsBelowABillionthHaveNone) {
    EXPECT_EQ(0.0, Over(std::nextafter(1e-9, 0)).Bulge());
    EXPECT_EQ(-1e-9, Over(1e-9).Bulge());
    EXPECT_EQ(1e-9, Over(-1e-9).Bulge());
}

TEST(ArcBulge, IsSetOverTheChordInSpaceAndReadOverThePlanChord) {
    // Intended: 3:4 in plan and 12 up make a chord of 13 in space.
    Arc arc(0, Line({0, 0, 0}, {3, 4, 12}));
    arc.SetBulge(0.5);
    EXPECT_NEAR(-0.5 * 6.5, arc.height, 1e-12);
    EXPECT_NEAR(0.5 * 6.5 / 2.5, arc.Bulge(), 1e-12);
}

TEST(ArcBulge, BulgesBelowATenThousandthAreStraight) {
    EXPECT_EQ(0.0, Arc::BulgeToHeight(std::nextafter(0.0001, 0), 2));
    EXPECT_EQ(0.0, Arc::BulgeToHeight(-std::nextafter(0.0001, 0), 2));
    EXPECT_NEAR(-0.0001, Arc::BulgeToHeight(0.0001, 2), 1e-8);
    EXPECT_NEAR(0.0001, Arc::BulgeToHeight(-0.0001, 2), 1e-8);
}

TEST(ArcBulge, AboveOneTheArcIsTheLongWayRound) {
    for (const double bulge : {0.001, 0.2, 0.5, 0.999, 1.001, 2.0, 7.0, 50.0}) {
        EXPECT_NEAR(-bulge * 1.5, Arc::BulgeToHeight(bulge, 3), 1e-9 * (1 + bulge * bulge))
            << bulge;
        EXPECT_NEAR(bulge * 1.5, Arc::BulgeToHeight(-bulge, 3), 1e-9 * (1 + bulge * bulge))
            << bulge;
    }
}

// --- Measures. A chord of 8 with height 2 or 8 lies on a circle of radius 5.

TEST(ArcMeasures, OfArcsBelowAndAboveAHalfCircle) {
    const double small = 2 * std::asin(0.8), large = 2 * kPi - small;
    for (const double sign : {1.0, -1.0}) {
        const Line chord({0, 0, 3}, {8, 0, 5});
        const Arc minor(2 * sign, chord), major(8 * sign, chord);
        EXPECT_NEAR(small, minor.SweepAngle(), 1e-12);
        EXPECT_NEAR(large, major.SweepAngle(), 1e-12);
        EXPECT_NEAR(kPi / 2 - small / 2, minor.HalfAngle(), 1e-12);
        EXPECT_NEAR(kPi / 2 - large / 2, major.HalfAngle(), 1e-12);
        EXPECT_LT(major.HalfAngle(), 0);
        EXPECT_NEAR(5.0, minor.Radius(), 1e-12);
        EXPECT_NEAR(5.0, major.Radius(), 1e-12);
        EXPECT_NEAR(5 * small, minor.Length(), 1e-12);
        EXPECT_NEAR(5 * large, major.Length(), 1e-12);
        // Sector and triangle of sides 5 under a chord of 8, height 3.
        EXPECT_NEAR(12.5 * small - 12, minor.SegmentArea(), 1e-12);
        EXPECT_NEAR(12.5 * large + 12, major.SegmentArea(), 1e-12);
        ExpectNear({4, -3 * sign, 3}, CentreOf(minor));
        ExpectNear({4, 3 * sign, 3}, CentreOf(major));
    }
}

TEST(ArcMeasures, OfAHalfCircle) {
    for (const double sign : {1.0, -1.0}) {
        const Arc half = Over(sign);
        EXPECT_NEAR(kPi, half.SweepAngle(), 1e-15);
        EXPECT_NEAR(1.0, half.Radius(), 1e-15);
        EXPECT_NEAR(kPi, half.Length(), 1e-14);
        EXPECT_NEAR(kPi / 2, half.SegmentArea(), 1e-14);
        ExpectNear({1, 0, 0}, CentreOf(half), 1e-12);
    }
}

TEST(ArcMeasures, OfAStraightArc) {
    const Arc straight(0, Line({0, 0, 1}, {3, 4, 13}));
    EXPECT_EQ(1.7976931348623157e308, straight.Radius());
    EXPECT_EQ(0.0, straight.SweepAngle());
    EXPECT_EQ(5.0, straight.Length());  // in plan
    EXPECT_EQ(0.0, straight.SegmentArea());
    ExpectNear({1.5, 2, 7}, CentreOf(straight));
    EXPECT_EQ(0.0, straight.Bulge());
    // The smallest height has a radius of its own.
    EXPECT_NE(1.7976931348623157e308, Over(5e-324).Radius());
}

TEST(ArcMeasures, TheSweepIsComputedTheLongWay) {
    // At small heights 4 |atan(2 h / c)| differs in the last digits; the long form is kept.
    const double x = std::atan(1e-5 / 1.0);
    const double expected = kPi * 2.0 - (kPi * 0.5 - std::fabs(x)) * 2.0 * 2.0;
    EXPECT_EQ(expected, Over(1e-5).SweepAngle());
    EXPECT_NE(4 * x, Over(1e-5).SweepAngle());
    EXPECT_NEAR(4 * x, Over(1e-5).SweepAngle(), 1e-14);
}

TEST(ArcMeasures, LengthAndAreaAreFlatStrictlyBelowATenThousandth) {
    for (const Point3d& base : {kOrigin, kFar}) {
        for (const double sign : {1.0, -1.0}) {
            const double below = std::nextafter(0.0001, 0) * sign;
            EXPECT_EQ(2.0, Over(below, base).Length());
            EXPECT_EQ(0.0, Over(below, base).SegmentArea());
            EXPECT_GT(Over(0.0001 * sign, base).Length(), 2.0);
            EXPECT_GT(Over(0.0001 * sign, base).SegmentArea(), 0.0001);
            EXPECT_GT(Over(0.00011 * sign, base).Length(), 2.0);
        }
    }
}

TEST(ArcMeasures, TheCentreIsTheMiddleStrictlyBelowABillionth) {
    ExpectNear({1, 0, 0}, CentreOf(Over(std::nextafter(1e-9, 0))));
    EXPECT_LT(CentreOf(Over(1e-9)).y, -1e8);
    EXPECT_GT(CentreOf(Over(-1e-9)).y, 1e8);
    Arc sloped(5e-10, Line({0, 0, 0}, {2, 0, 10}));
    EXPECT_EQ(5.0, CentreOf(sloped).z);  // the middle in space
    sloped.SetHeight(0.5);
    EXPECT_EQ(0.0, CentreOf(sloped).z);  // the height of the start
}

TEST(ArcMeasures, AChordWithoutLengthDividesByZero) {
    EXPECT_FALSE(std::isfinite(Arc(1, Line({1, 1, 0}, {1, 1, 0})).Bulge()));
}

TEST(ArcAngles, TurnClockwiseFromTheFirstToTheSecond) {
    // Radius 5 about (4, -3): the start at 143.13 degrees, the end at 36.87.
    const Line chord({0, 0, 0}, {8, 0, 0});
    const double toStart = std::atan2(3, -4), toEnd = std::atan2(3, 4);
    EXPECT_NEAR(toStart, Arc(2, chord).StartAngle(), 1e-12);
    EXPECT_NEAR(toEnd, Arc(2, chord).EndAngle(), 1e-12);
    // About (4, 3), counter-clockwise: exchanged, and in 0 to 2 pi.
    EXPECT_NEAR(2 * kPi - toEnd, Arc(-2, chord).StartAngle(), 1e-12);
    EXPECT_NEAR(2 * kPi - toStart, Arc(-2, chord).EndAngle(), 1e-12);
    EXPECT_NEAR(2 * kPi - toStart, Arc(8, chord).StartAngle(), 1e-12);
    EXPECT_NEAR(2 * kPi - toEnd, Arc(8, chord).EndAngle(), 1e-12);
    // A height of 0 is exchanged too.
    EXPECT_NEAR(0, Arc(0, chord).StartAngle(), 1e-12);
    EXPECT_NEAR(kPi, Arc(0, chord).EndAngle(), 1e-12);
}

// --- Sides.

TEST(ArcSides, TheBulgeOfAPositiveHeightIsLeft) {
    for (const Point3d& base : {kOrigin, kFar}) {
        const Point3d left = base + Point3d(1, 1, 0), right = base + Point3d(1, -1, 0);
        EXPECT_TRUE(Over(0.5, base).IsOnBulgeSide(left));
        EXPECT_FALSE(Over(0.5, base).IsOnBulgeSide(right));
        EXPECT_FALSE(Over(-0.5, base).IsOnBulgeSide(left));
        EXPECT_TRUE(Over(-0.5, base).IsOnBulgeSide(right));
    }
}

TEST(ArcSides, OnTheChordIsNoSideExceptForAHeightOfZero) {
    // The chord is 2 long: 0.005 off it is the limit of the cross product.
    for (const Point3d& base : {kOrigin, kFar}) {
        EXPECT_FALSE(Over(0.5, base).IsOnBulgeSide(base + Point3d(1, 0.00499, 0)));
        EXPECT_TRUE(Over(0.5, base).IsOnBulgeSide(base + Point3d(1, 0.00501, 0)));
        EXPECT_TRUE(Over(0, base).IsOnBulgeSide(base + Point3d(1, 0.00499, 0)));
        EXPECT_FALSE(Over(0, base).IsOnBulgeSide(base + Point3d(1, 0.00501, 0)));
    }
    const Arc unit(0.5, Line({0, 0, 0}, {1, 0, 0}));
    EXPECT_TRUE(unit.IsOnBulgeSide({0.5, std::sqrt(0.0001), 0}));  // on the limit it is a side
    EXPECT_FALSE(unit.IsOnBulgeSide({0.5, std::nextafter(std::sqrt(0.0001), 0), 0}));
    // The smallest height has sides.
    EXPECT_TRUE(Over(5e-324).IsOnBulgeSide({1, 1, 0}));
}

TEST(ArcSides, SegmentEndsAtTheCircle) {
    const Arc minor(2, Line({0, 0, 0}, {8, 0, 0})), major(8, Line({0, 0, 0}, {8, 0, 0}));
    EXPECT_TRUE(minor.InSegment({4, 1, 99}));
    EXPECT_TRUE(minor.InSegment({4, 2, 0}));  // on the arc
    EXPECT_FALSE(minor.InSegment({4, 2.000001, 0}));
    EXPECT_FALSE(minor.InSegment({4, -1, 0}));
    EXPECT_FALSE(minor.InSegment({4, 0, 0}));  // on the chord
    EXPECT_TRUE(major.InSegment({-0.9, 3, 0}));
    EXPECT_FALSE(Over(std::nextafter(0.0001, 0)).InSegment({1, 0.00005, 0}));
    EXPECT_FALSE(Over(0.0001).InSegment({1, 0.00005, 0}));  // too near to the chord
    EXPECT_TRUE(Arc(0.0002, Line({0, 0, 0}, {200, 0, 0})).InSegment({100, 0.0001, 0}));
    EXPECT_FALSE(Arc(0.00009, Line({0, 0, 0}, {200, 0, 0})).InSegment({100, 0.00008, 0}));
}

TEST(ArcSides, BoxHoldsTheExtremesOnTheBulgeSide) {
    const Line chord({0, 0, 1}, {8, 0, 2});
    const auto expectBox = [](const Box& expected, const Box& actual) {
        EXPECT_NEAR(expected.xMin, actual.xMin, 1e-6);
        EXPECT_NEAR(expected.xMax, actual.xMax, 1e-6);
        EXPECT_NEAR(expected.yMin, actual.yMin, 1e-6);
        EXPECT_NEAR(expected.yMax, actual.yMax, 1e-6);
        EXPECT_NEAR(expected.zMin, actual.zMin, 1e-6);
        EXPECT_NEAR(expected.zMax, actual.zMax, 1e-6);
    };
    expectBox(Box(0., 8., 0., 2., 1., 2.), Arc(2, chord).GetBox());
    expectBox(Box(0., 8., -2., 0., 1., 2.), Arc(-2, chord).GetBox());
    expectBox(Box(-1., 9., 0., 8., 1., 2.), Arc(8, chord).GetBox());
    expectBox(Box(-1., 9., -8., 0., 1., 2.), Arc(-8, chord).GetBox());
    expectBox(Box(0., 8., 0., 0., 1., 2.), Arc(std::nextafter(0.0001, 0), chord).GetBox());
    EXPECT_GT(Arc(0.0001, Line({0, 0, 0}, {200, 0, 0})).GetBox().yMax, 0.00009f);
}

// The side by walking: which side of the nearest of many small chords a point lies on.
TEST(ArcSides, SideIsThatOfTheWayAlongTheArc) {
    for (const double height : {2.0, -2.0, 8.0, -8.0, 4.0, -4.0}) {
        const Arc arc(height, Line({0, 0, 0}, {8, 0, 0}));
        const Point3d centre = CentreOf(arc);
        const int outside = height > 0 ? -1 : 1;
        // Within the circle it is the side of the centre, whatever the way round.
        EXPECT_EQ(-outside, arc.Side(centre, false)) << height;
        EXPECT_EQ(-outside, arc.Side({4, height * 0.9, 0}, false)) << height;
        EXPECT_EQ(outside, arc.Side({4, height * 1.1, 0}, false)) << height;
    }
    // Off the circle and before the chord of a minor arc: the side of the chord.
    const Arc minor(2, Line({0, 0, 0}, {8, 0, 0}));
    EXPECT_EQ(1, minor.Side({4, -9, 0}, false));
    EXPECT_EQ(-1, minor.Side({-3, 1, 0}, false));
    // Off the circle of a major one: right only where both spokes say so.
    const Arc major(8, Line({0, 0, 0}, {8, 0, 0}));
    EXPECT_EQ(-1, major.Side({-3, 3, 0}, false));
    EXPECT_EQ(-1, major.Side({12, 9, 0}, false));
    EXPECT_EQ(1, major.Side({4, -3, 0}, false));
    const Arc mirrored(-8, Line({0, 0, 0}, {8, 0, 0}));
    EXPECT_EQ(1, mirrored.Side({-3, -3, 0}, false));
    EXPECT_EQ(-1, mirrored.Side({4, 3, 0}, false));
}

TEST(ArcSides, SideIsZeroOnTheWholeCircleByTheDistanceInSpace) {
    for (const Point3d& base : {kOrigin, kFar}) {
        const Arc arc(2, At(base, {0, 0, 0}, {8, 0, 0}));
        const auto side = [&](double x, double y, double z) {
            return arc.Side(base + Point3d(x, y, z), false);
        };
        EXPECT_EQ(0, side(4, 2, 0));
        EXPECT_EQ(0, side(4, -8, 0));  // where the circle goes on
        EXPECT_EQ(0, side(4, 2.00009, 0));
        EXPECT_EQ(-1, side(4, 2.00011, 0));
        EXPECT_EQ(0, side(4, 1.99991, 0));
        EXPECT_EQ(1, side(4, 1.99989, 0));
        // In space: 3 beside the centre and 4 above it.
        EXPECT_EQ(0, side(4, 0, 4));
        EXPECT_EQ(1, side(4, 0.5, 3.4));   // within the sphere
        EXPECT_EQ(-1, side(4, 0.5, 4.1));  // outside, left of the chord
        EXPECT_EQ(1, side(4, -0.5, 4.4));  // outside, right of the chord
    }
}

TEST(ArcSides, AFlatArcHasTheSidesOfItsChord) {
    const Arc flat = Over(std::nextafter(0.0001, 0));
    EXPECT_EQ(-1, flat.Side({1, 1, 0}, false));
    EXPECT_EQ(1, flat.Side({1, 0, 0}, false));
    EXPECT_EQ(0, flat.Side({1, 0, 0}, true));
    // At 0.0001 it is an arc, and the chord's middle within 0.0001 of the circle counts as on it.
    EXPECT_EQ(1, Over(0.0001).Side({1, -1, 0}, false));
}

TEST(ArcSides, SweepIsSeenFromTheCentre) {
    for (const Point3d& base : {kOrigin, kFar}) {
        for (const double sign : {1.0, -1.0}) {
            const Line chord = At(base, {0, 0, 0}, {8, 0, 0});
            const Arc minor(2 * sign, chord), major(8 * sign, chord);
            const auto at = [&](double x, double y) { return base + Point3d(x, y * sign, 0); };
            // The centre of the minor one is (4, -3), of the major one (4, 3).
            EXPECT_TRUE(minor.InSweep(at(4, 9)));
            EXPECT_TRUE(minor.InSweep(at(4, -2)));  // within the circle, on the way
            EXPECT_FALSE(minor.InSweep(at(4, -4)));
            EXPECT_FALSE(minor.InSweep(at(12, -2)));
            EXPECT_TRUE(minor.InSweep(at(4, -3)));  // the centre
            EXPECT_TRUE(major.InSweep(at(4, 9)));
            EXPECT_TRUE(major.InSweep(at(-2, 3)));
            EXPECT_TRUE(major.InSweep(at(4, 4)));
            EXPECT_FALSE(major.InSweep(at(4, 2)));
            EXPECT_FALSE(major.InSweep(at(4, -9)));
        }
    }
}

TEST(ArcSides, TheCentreIsInTheSweepWithinATenThousandth) {
    const Arc minor(2, Line({0, 0, 0}, {8, 0, 0}));
    EXPECT_TRUE(minor.InSweep({4, -3.00009, 0}));
    EXPECT_FALSE(minor.InSweep({4, -3.00011, 0}));
}

TEST(ArcSides, OnlyAPositiveHalfCircleIsDecidedByItsSide) {
    // Of a half circle over (0, 0)-(2, 0) a point on the chord's line is on no side. Asked by the
    // ray, the one on the chord's far part is met.
    const Point3d onChord(1.5, 0, 0);
    EXPECT_FALSE(Over(1).InSweep(onChord));
    EXPECT_FALSE(Over(1.00009).InSweep(onChord));
    EXPECT_TRUE(Over(1).InSweep({1.1, 0.5, 0}));
    EXPECT_FALSE(Over(1).InSweep({1.1, -0.5, 0}));
    // Intended: a negative one is asked by the ray, which starts on the chord and so meets it
    // whatever its direction; an upright ray does where its lower end lies there, see
    // Line::Intersect.
    EXPECT_TRUE(Over(-1).InSweep(onChord));
    EXPECT_TRUE(Over(-1).InSweep({1.1, -0.5, 0}));
    EXPECT_TRUE(Over(-1).InSweep({1.1, 0.5, 0}));
    EXPECT_FALSE(Over(-1).InSweep({1, -0.5, 0}));
    EXPECT_TRUE(Over(-1).InSweep({1, 0.5, 0}));
}

TEST(ArcSides, AFlatArcHasNoSweep) {
    EXPECT_FALSE(Over(0).InSweep({1, 1, 0}));
    EXPECT_FALSE(Over(std::nextafter(0.0001, 0)).InSweep({1, 1, 0}));
    EXPECT_TRUE(Over(0.0001).InSweep({1, 1, 0}));
}

// --- Points along.

TEST(ArcPoints, AreWalkedFromTheStartWhateverTheSign) {
    const double quarter = kPi / 2;
    Point3d p;
    for (const double sign : {1.0, -1.0}) {
        const Arc half(sign, Line({0, 0, 7}, {2, 0, 9}));
        half.PointAtDistance(quarter, p);
        ExpectNear({1, sign, 7}, p);  // the height of the start
        half.PointAtFraction(0.5, p);
        ExpectNear({1, sign, 7}, p);
        half.PointAtFraction(0.25, p);
        ExpectNear({1 - std::sqrt(0.5), sign * std::sqrt(0.5), 7}, p);
    }
    const Arc major(8, Line({0, 0, 0}, {8, 0, 0}));
    major.PointAtFraction(0.5, p);
    ExpectNear({4, 8, 0}, p);
}

TEST(ArcPoints, StayBetweenTheEnds) {
    const Arc half(1, Line({0, 0, 7}, {2, 0, 9}));
    const double nan = std::numeric_limits<double>::quiet_NaN();
    Point3d p;
    for (const double before : {0.0, -1.0, nan}) {
        half.PointAtDistance(before, p);
        EXPECT_TRUE(p.x == 0 && p.y == 0 && p.z == 7) << before;
    }
    half.PointAtDistance(4, p);
    EXPECT_TRUE(p.x == 2 && p.y == 0 && p.z == 9);
    half.PointAtFraction(1.0001, p);
    EXPECT_EQ(9.0, p.z);
    half.PointAtFraction(1, p);  // at the length itself the walk gets there
    ExpectNear({2, 0, 7}, p);
}

TEST(ArcPoints, OfAFlatArcRunAlongTheChordInSpaceByThePlanLength) {
    // Intended: 3:4 in plan, 12 up: the length is 5, the way 13 long.
    const Arc flat(std::nextafter(0.0001, 0), Line({0, 0, 0}, {3, 4, 12}));
    Point3d p;
    flat.PointAtDistance(2.6, p);
    ExpectNear({0.6, 0.8, 2.4}, p);
    flat.PointAtDistance(5, p);
    ExpectNear({15. / 13, 20. / 13, 60. / 13}, p);
    flat.PointAtDistance(5.0001, p);
    EXPECT_EQ(12.0, p.z);
}

TEST(ArcPoints, OfAChordBelowATenBillionthAreTheVectorBetweenTheEnds) {
    // Intended. The distance has to be above 0 and at most the length.
    Point3d p;
    const Arc tiny(0, Line({5, 5, 5}, {5 + 9e-11, 5, 5}));
    tiny.PointAtDistance(1e-11, p);
    EXPECT_EQ(tiny.x2 - 5, p.x);
    EXPECT_EQ(0.0, p.y);
    const Arc more(0, Line({0, 0, 0}, {1.1e-10, 0, 0}));
    more.PointAtDistance(1e-10, p);
    EXPECT_EQ(1e-10, p.x);
    const Arc on(0, Line({0, 0, 0}, {1e-10, 0, 0}));
    on.PointAtDistance(0.5e-10, p);
    EXPECT_EQ(0.5e-10, p.x);
}

// --- The circle of an arc.

TEST(CircleOfArc, HasItsCentreAndRadius) {
    const Circle circle(Arc(8, Line({0, 0, 3}, {8, 0, 5})));
    ExpectNear({4, 3, 3}, circle.centre);
    EXPECT_NEAR(5.0, circle.radius, 1e-12);
    const Circle straight(Arc(0, Line({0, 0, 3}, {8, 0, 5})));
    ExpectNear({4, 0, 4}, straight.centre);
    EXPECT_EQ(1.7976931348623157e308, straight.radius);
}

}  // namespace
}  // namespace TamLib
