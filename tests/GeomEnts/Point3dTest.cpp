#include "GeomEnts/Point3d.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "GeomEnts/Line.h"
#include "tests/support/Points.h"

namespace TamLib {
namespace {

constexpr double kNoAngle = 6.283185307179585;
const double kBelow = std::nextafter(0.0001, 0.0), kAbove = std::nextafter(0.0001, 1.0);

int Compare(const Point3d& a, const Point3d& b) {
    return Point3d::Compare(&a, &b);
}
int CompareFine(const Point3d& a, const Point3d& b) {
    return Point3d::CompareFine(&a, &b);
}
int CompareArray(const Point3d& a, const Point3d& b) {
    return Point3d::CompareArray(&a, &b);
}
int CompareExact(const Point3d& a, const Point3d& b) {
    return Point3d::CompareExact(&a, &b);
}

TEST(Point3d, IsNewAtTheOrigin) {
    ExpectPoint({0, 0, 0}, Point3d());
}

TEST(Point3d, EqualityIsStrictlyBelowTheTolerance) {
    EXPECT_TRUE(Equals({0, 0, 0}, {0.00005, 0, 0}));
    EXPECT_FALSE(Equals({0, 0, 0}, {0.0001, 0, 0}));
    for (int axis = 0; axis < 3; ++axis) {
        const auto moved = [axis](double by) {
            return Point3d(axis == 0 ? by : 0, axis == 1 ? by : 0, axis == 2 ? by : 0);
        };
        EXPECT_TRUE(Equals({}, moved(kBelow))) << axis;
        EXPECT_TRUE(Equals({}, moved(-kBelow))) << axis;
        EXPECT_FALSE(Equals({}, moved(0.0001))) << axis;
        EXPECT_FALSE(Equals({}, moved(-kAbove))) << axis;
    }
}

TEST(Point3d, EqualityHoldsFarFromTheOrigin) {
    const Point3d far(25e6, 7e6, 100);
    EXPECT_TRUE(Equals(far, {25e6 + 0.00009, 7e6 - 0.00009, 100.00009}));
    EXPECT_FALSE(Equals(far, {25e6 + 0.00011, 7e6, 100}));
    EXPECT_FALSE(Equals(far, {25e6, 7e6 - 0.00011, 100}));
}

TEST(Point3d, EqualityIsNoDistance) {
    // All three differences are below the tolerance, the distance is above it.
    EXPECT_TRUE(Equals({0, 0, 0}, {0.00009, 0.00009, 0.00009}));
}

TEST(Point3d, EqualityInPlanIgnoresZ) {
    EXPECT_TRUE(Equals2d({1, 2, 3}, {1 + 0.00005, 2 - 0.00005, 99}));
    EXPECT_FALSE(Equals2d({0, 0, 0}, {0.0001, 0, 0}));
    EXPECT_FALSE(Equals2d({0, 0, 0}, {0, 0.0001, 0}));
    EXPECT_TRUE(Equals2d({0, 0, 0}, {kBelow, kBelow, 0}));
}

TEST(Point3d, CompareIsNotTransitive) {
    const Point3d a(0, 0, 0), b(0.00006, 0, 0), c(0.00012, 0, 0);
    EXPECT_EQ(0, Compare(a, b));
    EXPECT_EQ(0, Compare(b, c));
    EXPECT_EQ(-1, Compare(a, c));
}

TEST(Point3d, CompareFallsBackToTheExactOrder) {
    // x differs by less than the tolerance and still decides, since z is apart.
    EXPECT_EQ(1, Compare({1.00001, 0, 0}, {1, 5, 9}));
    EXPECT_EQ(-1, Compare({1, 5, 9}, {1.00001, 0, 0}));
    EXPECT_EQ(1, Compare({1, 2.00001, 0}, {1, 2, 5}));
    EXPECT_EQ(-1, Compare({1, 2, 0}, {1, 2, 5}));
    EXPECT_EQ(1, Compare({1, 2, 5}, {1, 2, 0}));
}

TEST(Point3d, FineComparisonHasItsOwnTolerance) {
    EXPECT_EQ(0, CompareFine({0, 0, 0}, {std::nextafter(1e-9, 0), 0, 0}));
    EXPECT_EQ(-1, CompareFine({0, 0, 0}, {1e-9, 0, 0}));
    EXPECT_EQ(1, CompareFine({0, 0, 1}, {0, 0, 0}));
    EXPECT_EQ(0, CompareFine({25e6, 7e6, 0}, {25e6, 7e6, 0}));
}

TEST(Point3d, ArrayComparisonDecidesByOneCoordinateAlone) {
    EXPECT_EQ(1, CompareArray({1, 2, 3}, {1.0000001, 1, 3}));
    EXPECT_EQ(-1, CompareArray({1, 1, 3}, {1.0000001, 2, 3}));
    EXPECT_EQ(-1, CompareArray({0, 9, 9}, {1e-6, 0, 0}));
    EXPECT_EQ(1, CompareArray({0, 9, 9}, {std::nextafter(1e-6, 0), 0, 0}));
    EXPECT_EQ(1, CompareArray({0, 0, 1}, {0, 0, 0}));
    EXPECT_EQ(-1, CompareArray({0, 0, 0}, {0, 1e-6, 0}));
    EXPECT_EQ(0, CompareArray({1, 2, 3}, {1.0000001, 1.9999999, 3.0000001}));
}

TEST(Point3d, ExactComparisonHasNoTolerance) {
    EXPECT_EQ(0, CompareExact({1, 2, 3}, {1, 2, 3}));
    EXPECT_EQ(-1, CompareExact({1, 2, 3}, {std::nextafter(1.0, 2.0), 0, 0}));
    EXPECT_EQ(1, CompareExact({1, std::nextafter(2.0, 3.0), 3}, {1, 2, 9}));
    EXPECT_EQ(-1, CompareExact({1, 2, 3}, {1, 2, std::nextafter(3.0, 4.0)}));
    EXPECT_EQ(0, CompareExact({0.0, 0, 0}, {-0.0, 0, 0}));
}

TEST(Point3d, PointersCompareByWhatTheyPointAt) {
    Point3d a(0, 0, 0), b(0.00005, 0, 0), c(1, 0, 0);
    Point3d* const pa = &a;
    Point3d* const pb = &b;
    Point3d* const pc = &c;
    EXPECT_EQ(0, Point3d::ComparePointers(&pa, &pb));
    EXPECT_EQ(-1, Point3d::ComparePointers(&pa, &pc));
    EXPECT_EQ(1, Point3d::ComparePointers(&pc, &pa));
}

TEST(Point3d, DistancesCompareWithoutTolerance) {
    const Point3d origin;
    EXPECT_EQ(0, CompareDistance(origin, {3, 4, 0}, {0, 0, 5}));
    EXPECT_EQ(-1, CompareDistance(origin, {1, 0, 0}, {std::nextafter(1.0, 2.0), 0, 0}));
    EXPECT_EQ(1, CompareDistance(origin, {0, 0, 2}, {1, 1, 0}));
}

TEST(Point3d, FartherThanSpeaksOfTheSecondPoint) {
    EXPECT_TRUE(IsFartherThan({1, 0, 0}, {0, 0, 2}, {}));
    EXPECT_FALSE(IsFartherThan({0, 0, 2}, {1, 0, 0}, {}));
    EXPECT_FALSE(IsFartherThan({1, 0, 0}, {0, 1, 0}, {}));
}

TEST(Point3d, ArithmeticIsByComponent) {
    Point3d p(1, 2, 3);
    p += {10, 20, 30};
    ExpectPoint({11, 22, 33}, p);
    ExpectPoint({10, 20, 30}, p - Point3d(1, 2, 3));
    ExpectPoint({12, 24, 36}, p + Point3d(1, 2, 3));
    ExpectPoint({5.5, 11, 16.5}, p / 2.0);
}

TEST(Point3d, ProductsFollowTheRightHand) {
    EXPECT_EQ(1 * 4 + 2 * 5 + 3 * 6, DotProduct({1, 2, 3}, {4, 5, 6}));
    ExpectPoint({0, 0, 1}, CrossProduct({1, 0, 0}, {0, 1, 0}));
    ExpectPoint({-3, 6, -3}, CrossProduct({1, 2, 3}, {4, 5, 6}));
}

TEST(Point3d, UnitLeavesShortVectorsAsTheyAre) {
    ExpectPoint({0.6, 0, 0.8}, Point3d(3, 0, 4).Unit());
    ExpectPoint({0, 0, 0}, Point3d().Unit());
    ExpectPoint({kBelow, 0, 0}, Point3d(kBelow, 0, 0).Unit());
    ExpectPoint({1, 0, 0}, Point3d(0.0001, 0, 0).Unit());
    ExpectPoint({0, -1, 0}, Point3d(0, -kAbove, 0).Unit());
}

TEST(Point3d, SameDirectionLooksAtTheFirstLengthAlone) {
    EXPECT_TRUE(IsSameDirection({2, 0, 0}, {500, 0, 0}));
    EXPECT_FALSE(IsSameDirection({2, 0, 0}, {-2, 0, 0}));
    // The squared length of the first is below 0.0001: raw vectors are compared.
    EXPECT_FALSE(IsSameDirection({0.009, 0, 0}, {1, 0, 0}));
    EXPECT_TRUE(IsSameDirection({0.009, 0, 0}, {0.00905, 0, 0}));
    // 0.01 is long enough; the second may be short and then stays as it is.
    EXPECT_TRUE(IsSameDirection({0.0101, 0, 0}, {1, 0, 0}));
    EXPECT_TRUE(IsSameDirection({1, 0, 0}, {0.005, 0, 0}));
    EXPECT_FALSE(IsSameDirection({1, 0, 0}, {0.00005, 0, 0}));
}

TEST(Point3d, DegreesOfAHalfTurn) {
    EXPECT_EQ(180.0, RadiansToDegrees(kPi));
    EXPECT_EQ(-90.0, RadiansToDegrees(-kPi / 2));
}

TEST(Point3d, AngleIsPlanAndCounterClockwise) {
    EXPECT_EQ(0.0, Angle({0, 0, 0}, {5, 0, 9}));
    EXPECT_EQ(std::atan2(3.0, 4.0), Angle({1, 1, 0}, {5, 4, 0}));
    EXPECT_EQ(kPi, Angle({0, 0, 0}, {-1, 0, 0}));
    EXPECT_EQ(-kPi / 2, Angle({25e6, 7e6, 0}, {25e6, 7e6 - 1, 0}));
    // Above each other: not equal points, so atan2 of two zeros.
    EXPECT_EQ(0.0, Angle({0, 0, 0}, {0, 0, 1}));
}

TEST(Point3d, AngleOfEqualPointsIsNoAngleThatAtan2Gives) {
    EXPECT_EQ(kNoAngle, Angle({1, 2, 3}, {1, 2, 3}));
    EXPECT_EQ(kNoAngle, Angle({0, 0, 0}, {kBelow, -kBelow, kBelow}));
    EXPECT_EQ(std::atan2(0.0, 0.0001), Angle({0, 0, 0}, {0.0001, 0, 0}));
    EXPECT_EQ(std::atan(1.0) * 7.999999999999999, kNoAngle);
    EXPECT_NE(2 * kPi, kNoAngle);
}

TEST(Point3d, SweepIsCounterClockwiseAndNotNegative) {
    EXPECT_EQ(kPi / 2, AngleAt({}, {1, 0, 0}, {0, 1, 0}));
    EXPECT_EQ(-kPi / 2 + 2 * kPi, AngleAt({}, {0, 1, 0}, {1, 0, 0}));
    EXPECT_EQ(0.0, AngleAt({}, {0, 1, 0}, {0, 2, 0}));
}

TEST(Point3d, SlopeIsRiseOverPlanDistance) {
    EXPECT_EQ(std::atan2(5.0, 5.0), SlopeAngle({0, 0, 0}, {3, 4, 5}));
    EXPECT_EQ(-kPi / 2, SlopeAngle({1, 1, 1}, {1, 1, 0}));
    EXPECT_EQ(kNoAngle, SlopeAngle({1, 1, 1}, {1, 1, 1}));
}

TEST(Point3d, ElevationDifferenceIsAbsolute) {
    EXPECT_EQ(kPi / 4, ElevationDifference({1, 0, 0}, {0, 1, 1}));
    EXPECT_EQ(kPi / 4, ElevationDifference({0, 1, 1}, {1, 0, 0}));
    EXPECT_EQ(kNoAngle, ElevationDifference({1, 0, 0}, {1, 0, 0}));
}

TEST(Point3d, PolarPointAddsItsCentre) {
    ExpectNear({12, 20, 30}, PolarPoint({10, 20, 30}, 2, 0, 0), 1e-14);
    ExpectNear({10, 22, 30}, PolarPoint({10, 20, 30}, 2, kPi / 2, 0), 1e-14);
    ExpectNear({10, 20, 32}, PolarPoint({10, 20, 30}, 2, 1, kPi / 2), 1e-14);
}

TEST(Point3d, RotateAboutTurnsInPlanAndLifts) {
    Point3d p(11, 20, 5);
    p.RotateAbout({10, 20, 5}, kPi / 2, 0);
    ExpectNear({10, 21, 5}, p, 1e-14);

    Point3d q(3, 4, 0);
    q.RotateAbout({}, 0, kPi / 2);
    // The height comes from the plan length of before, not from the shrunk x and y.
    ExpectNear({0, 0, 5}, q, 1e-14);

    Point3d r(3, 4, 2);
    r.RotateAbout({}, 0.5, 0.25);
    ExpectNear({(3 * std::cos(0.5) - 4 * std::sin(0.5)) * std::cos(0.25),
                (3 * std::sin(0.5) + 4 * std::cos(0.5)) * std::cos(0.25),
                5 * std::sin(0.25) + 2 * std::cos(0.25)},
               r, 1e-14);
}

TEST(Point3d, RotateAxisIsRightHanded) {
    Point3d p(1, 0, 7);
    p.RotateAxis({0, 0, 5}, kPi / 2);
    ExpectNear({0, 1, 7}, p, 1e-14);
    Point3d q(0, 1, 0);
    q.RotateAxis({2, 0, 0}, kPi / 2);
    ExpectNear({0, 0, 1}, q, 1e-14);
    // A third of a turn about the diagonal passes the axes on.
    Point3d r(1, 2, 3);
    r.RotateAxis({1, 1, 1}, 2 * kPi / 3);
    ExpectNear({3, 1, 2}, r, 1e-14);
}

TEST(Point3d, RotateAxisDoesNotGuardAZeroAxis) {
    Point3d p(1, 2, 3);
    p.RotateAxis({0, 0, 0}, 1.0);
    EXPECT_TRUE(std::isnan(p.x) && std::isnan(p.y) && std::isnan(p.z));
}

TEST(Point3d, RotateLineTurnsAboutTheLineInSpace) {
    Point3d p(11, 10, 3);
    p.RotateLine(Line({10, 10, 0}, {10, 10, 9}), kPi);
    ExpectNear({9, 10, 3}, p, 1e-13);
}

TEST(Point3d, TurnsKeepTheDistanceToTheAxis) {
    std::mt19937 random(4711);
    std::uniform_real_distribution<double> place(-1000, 1000), angle(-7, 7);
    const auto point = [&] { return Point3d(place(random), place(random), place(random)); };
    for (int i = 0; i < 1000; ++i) {
        const Point3d start = point(), end = point(), before = point();
        Point3d after = before;
        after.RotateLine(Line(start, end), angle(random));
        EXPECT_NEAR(Distance(before, start), Distance(after, start), 1e-9);
        EXPECT_NEAR(Distance(before, end), Distance(after, end), 1e-9);
    }
}

}  // namespace
}  // namespace TamLib
