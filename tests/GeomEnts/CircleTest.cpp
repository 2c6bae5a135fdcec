#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "GeomEnts/Line.h"
#include "GeomEnts/circle.h"
#include "GeomStructs/Point3dArray.h"
#include "tests/support/Points.h"

namespace TamLib {
namespace {

using Points = Point3dArrayBase<Point3d>;

TEST(Circle, OfADiameterHasTheMiddleInSpaceAndHalfThePlanDistance) {
    const Circle circle({0, 0, 10}, {6, 8, 30});
    ExpectNear({3, 4, 20}, circle.centre);
    EXPECT_EQ(5.0, circle.radius);
}

TEST(Circle, MeasuresAndTheCircumferenceWithoutTheFactorTwo) {
    const Circle circle({0, 0, 0}, 1);
    EXPECT_EQ(3.141592653589793, circle.Area());
    EXPECT_EQ(3.141592653589793, circle.Circumference());
    EXPECT_EQ(4 * kPi, Circle({0, 0, 0}, 2).Area());
    EXPECT_EQ(2 * kPi, Circle({0, 0, 0}, 2).Circumference());
}

TEST(Circle, ContainsTellsInsideFirstAndTouchesOnSquares) {
    const Circle circle({1, 1, 0}, 2);
    EXPECT_EQ(1, circle.Contains({1, 2, 99}, false));
    EXPECT_EQ(0, circle.Contains({3, 1, 0}, false));
    EXPECT_EQ(2, circle.Contains({3, 1, 0}, true));
    EXPECT_EQ(0, circle.Contains({4, 1, 0}, true));
    // Just inside is inside, however near.
    EXPECT_EQ(1, circle.Contains({3 - 1e-9, 1, 0}, true));
    // The squares differ by 4 e: 0.0001 is reached at e = 0.000025.
    EXPECT_EQ(2, circle.Contains({3.0000249, 1, 0}, true));
    EXPECT_EQ(0, circle.Contains({3.0000251, 1, 0}, true));
}

TEST(Circle, ThroughThreePointsContainsThem) {
    std::mt19937 random(77);
    std::uniform_real_distribution<double> place(-100, 100);
    for (const Point3d& base : {Point3d(), Point3d(25e6, 7e6, 0)}) {
        for (int i = 0; i < 2000; ++i) {
            const auto point = [&] { return base + Point3d(place(random), place(random), 0); };
            const Point3d a = point(), b = point(), c = point();
            const double doubledArea = CrossProduct(b - a, c - a).z;
            if (std::fabs(doubledArea) < 100) continue;
            const Circle circle(a, b, c);
            EXPECT_NEAR(circle.radius, Distance2d(circle.centre, b), 1e-5 * (1 + circle.radius));
            EXPECT_NEAR(circle.radius, Distance2d(circle.centre, c), 1e-5 * (1 + circle.radius));
        }
    }
}

TEST(Circle, ThroughThreePointsAddsTheHeightOfTheReferenceToTheMean) {
    // Usually the first point.
    const Circle usual({0, 0, 1}, {1, 1, 2}, {-1, 2, 6});
    EXPECT_EQ(3.0 + 1, usual.centre.z);
    // The first two level: the third.
    const Circle level({0, 0, 1}, {2, 0, 2}, {1, 1, 6});
    EXPECT_EQ(3.0 + 6, level.centre.z);
    ExpectNear({1, 0, 9}, level.centre);
    EXPECT_NEAR(1.0, level.radius, 1e-12);
    // The first and third level: the second.
    const Circle other({0, 0, 1}, {1, 1, 2}, {2, 0, 6});
    EXPECT_EQ(3.0 + 2, other.centre.z);
    ExpectNear({1, 0, 5}, other.centre);
    // Levels within 0.0001 count as level.
    EXPECT_EQ(9.0, Circle({0, 0, 1}, {2, 0.00009, 2}, {1, 1, 6}).centre.z);
    EXPECT_EQ(4.0, Circle({0, 0, 1}, {2, 0.00011, 2}, {1, 1, 6}).centre.z);
}

TEST(Circle, ThroughPointsOnOneLineDividesByZero) {
    const Circle circle({0, 0, 0}, {1, 1, 0}, {2, 2, 0});
    EXPECT_FALSE(std::isfinite(circle.radius));
}

TEST(CircleIntersect, LineThroughTheCentreGivesTheLargerYFirst) {
    const Circle circle({10, 20, 5}, 2);
    Points points;
    points.Append({9, 9, 9});  // is taken away
    circle.Intersect(Line({10, 0, 1}, {10, 40, 1}), points);
    ASSERT_EQ(2u, points.count);
    ExpectNear({10, 22, 5}, points[0]);
    ExpectNear({10, 18, 5}, points[1]);
    // Downwards too: |dy| decides.
    circle.Intersect(Line({10, 40, 1}, {10, 0, 1}), points);
    ASSERT_EQ(2u, points.count);
    ExpectNear({10, 22, 5}, points[0]);
    // A level line: its direction decides.
    circle.Intersect(Line({0, 20, 1}, {40, 20, 1}), points);
    ASSERT_EQ(2u, points.count);
    ExpectNear({12, 20, 5}, points[0]);
    circle.Intersect(Line({40, 20, 1}, {0, 20, 1}), points);
    ExpectNear({8, 20, 5}, points[0]);
}

TEST(CircleIntersect, LineThatStopsInsideGivesOnePoint) {
    Points points;
    Circle({0, 0, 0}, 2).Intersect(Line({0, 0, 0}, {10, 0, 0}), points);
    ASSERT_EQ(1u, points.count);
    ExpectNear({2, 0, 0}, points[0]);
    Circle({0, 0, 0}, 2).Intersect(Line({-1, 0, 0}, {1, 0, 0}), points);
    EXPECT_EQ(0u, points.count);
    // The segment's box is widened by a billionth.
    Circle({0, 0, 0}, 2).Intersect(Line({0, 0, 0}, {2 - 0.9e-9, 0, 0}), points);
    EXPECT_EQ(1u, points.count);
    Circle({0, 0, 0}, 2).Intersect(Line({0, 0, 0}, {2 - 1.1e-9, 0, 0}), points);
    EXPECT_EQ(0u, points.count);
}

TEST(CircleIntersect, TangentGivesTheSamePointTwice) {
    Points points;
    Circle({0, 0, 7}, 2).Intersect(Line({-3, 2, 0}, {3, 2, 0}), points);
    ASSERT_EQ(2u, points.count);
    ExpectNear({0, 2, 7}, points[0]);
    ExpectNear({0, 2, 7}, points[1]);
    Circle({0, 0, 7}, 2).Intersect(Line({-3, 2.01, 0}, {3, 2.01, 0}), points);
    EXPECT_EQ(0u, points.count);
}

TEST(CircleIntersect, CirclesGiveTheLeftPointFirst) {
    Points points;
    Circle({0, 0, 0}, 5).Intersect(Circle({8, 0, 0}, 5), points);
    ASSERT_EQ(2u, points.count);
    ExpectNear({4, 3, 0}, points[0]);
    ExpectNear({4, -3, 0}, points[1]);
}

TEST(CircleIntersect, CirclesThatTouchOutsideGiveOnePoint) {
    Points points;
    Circle({0, 0, 0}, 2).Intersect(Circle({5, 0, 0}, 3), points);
    ASSERT_EQ(1u, points.count);
    ExpectNear({2, 0, 0}, points[0]);
    Circle({0, 0, 0}, 2).Intersect(Circle({5.00009, 0, 0}, 3), points);
    EXPECT_EQ(1u, points.count);
    Circle({0, 0, 0}, 2).Intersect(Circle({5.00011, 0, 0}, 3), points);
    EXPECT_EQ(0u, points.count);
    Circle({0, 0, 0}, 2).Intersect(Circle({4.99989, 0, 0}, 3), points);
    EXPECT_EQ(2u, points.count);
}

TEST(CircleIntersect, DistanceOfCirclesIsInSpace) {
    // 3:4:5: the centres are 5 apart in space, 3 in plan.
    Points points;
    Circle({0, 0, 0}, 2).Intersect(Circle({3, 0, 4}, 3), points);
    ASSERT_EQ(1u, points.count);
    ExpectNear({1.2, 0, 1.6}, points[0]);
}

TEST(CircleIntersect, ACircleInsideTheOtherGivesTheSamePointTwice) {
    Points points;
    Circle({0, 0, 0}, 5).Intersect(Circle({1, 0, 0}, 2), points);
    ASSERT_EQ(2u, points.count);
    ExpectNear({5, 0, 0}, points[0]);
    ExpectNear({5, 0, 0}, points[1]);
    Circle({1, 0, 0}, 2).Intersect(Circle({0, 0, 0}, 5), points);
    ASSERT_EQ(2u, points.count);
    ExpectNear({3, 0, 0}, points[0], 1e-9);
    ExpectNear({3, 0, 0}, points[1], 1e-9);
}

}  // namespace
}  // namespace TamLib
