#include "GeomEnts/Plane.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "GeomEnts/Line.h"
#include "tests/support/Points.h"

namespace TamLib {
namespace {

double Value(const Plane& plane, const Point3d& p) {
    return plane.a * p.x + plane.b * p.y + plane.c * p.z + plane.d;
}

TEST(Plane, ThroughThreePointsHasTheCrossProductAsNormal) {
    const Plane plane({1, 0, 0}, {0, 1, 0}, {0, 0, 1});
    EXPECT_EQ(1.0, plane.a);
    EXPECT_EQ(1.0, plane.b);
    EXPECT_EQ(1.0, plane.c);
    EXPECT_EQ(-1.0, plane.d);

    std::mt19937 random(7);
    std::uniform_real_distribution<double> place(-100, 100);
    const auto point = [&] { return Point3d(place(random), place(random), place(random)); };
    for (int i = 0; i < 1000; ++i) {
        const Point3d p1 = point(), p2 = point(), p3 = point();
        const Plane any(p1, p2, p3);
        const Point3d normal = CrossProduct(p2 - p1, p3 - p1);
        EXPECT_NEAR(normal.x, any.a, 1e-9);
        EXPECT_NEAR(normal.y, any.b, 1e-9);
        EXPECT_NEAR(normal.z, any.c, 1e-9);
        EXPECT_NEAR(0.0, Value(any, p1), 1e-8);
        EXPECT_NEAR(0.0, Value(any, p2), 1e-8);
        EXPECT_NEAR(0.0, Value(any, p3), 1e-8);
    }
}

TEST(Plane, FromNormalAndPointIsNotNormalised) {
    const Plane plane(Point3d(0, 0, 2), Point3d(5, 5, 3));
    EXPECT_EQ(2.0, plane.c);
    EXPECT_EQ(-6.0, plane.d);
}

TEST(Plane, SideComparesTheValueWithDAndNotWithZero) {
    const Plane plane(0, 0, 1, 4);
    // Value is d exactly: -1, although the point lies on the positive side.
    EXPECT_EQ(-1, plane.Side({0, 0, 0}));
    EXPECT_EQ(-1, plane.Side({99, -99, 0}));
    EXPECT_EQ(1, plane.Side({0, 0, 1}));
    EXPECT_EQ(1, plane.Side({0, 0, -100}));  // the negative side gives 1 too
    EXPECT_EQ(0, plane.Side({0, 0, -4}));
}

TEST(Plane, SideIsZeroStrictlyBelowItsTolerance) {
    const Plane plane(1, 0, 0, 0);
    EXPECT_EQ(0, plane.Side({std::nextafter(0.0001, 0), 0, 0}));
    EXPECT_EQ(0, plane.Side({-std::nextafter(0.0001, 0), 0, 0}));
    EXPECT_EQ(1, plane.Side({0.0001, 0, 0}));
    EXPECT_EQ(0, plane.Side({0, 0, 0}));  // nearness comes before equality with d
}

TEST(Plane, HeightDistanceAndFoot) {
    const Plane plane(0, 3, 4, -20);
    EXPECT_EQ(5.0, plane.ZAt(7, 0));
    EXPECT_EQ(2.0, plane.ZAt(7, 4));
    EXPECT_EQ(4.0, plane.Distance({9, 0, 0}));
    EXPECT_EQ(4.0, plane.Distance({0, 0, 10}));
    Point3d foot;
    EXPECT_DOUBLE_EQ(4.0, plane.Project({9, 0, 0}, foot));
    EXPECT_NEAR(9.0, foot.x, 1e-14);
    EXPECT_NEAR(2.4, foot.y, 1e-14);
    EXPECT_NEAR(3.2, foot.z, 1e-14);
}

TEST(Plane, DistanceFromOriginIsSigned) {
    EXPECT_EQ(-4.0, Plane(0, 3, 4, -20).DistanceFromOrigin());
    EXPECT_EQ(4.0, Plane(0, 3, 4, 20).DistanceFromOrigin());
}

TEST(Plane, ZeroCInHeightDividesByZero) {
    EXPECT_TRUE(std::isinf(Plane(1, 0, 0, 1).ZAt(5, 5)));
}

TEST(Plane, IsInvalidWithNanOrAShortNormal) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_TRUE(Plane().IsInvalid());
    EXPECT_TRUE(Plane(nan, 1, 1, 1).IsInvalid());
    EXPECT_TRUE(Plane(1, nan, 1, 1).IsInvalid());
    EXPECT_TRUE(Plane(1, 1, nan, 1).IsInvalid());
    EXPECT_TRUE(Plane(1, 1, 1, nan).IsInvalid());
    EXPECT_TRUE(Plane(0.0099, 0, 0, 1).IsInvalid());
    EXPECT_FALSE(Plane(0.0101, 0, 0, 1).IsInvalid());
    EXPECT_FALSE(Plane(1, 0, 0, 0).IsInvalid());
    // 0.01 squared is a little above 0.0001: the limit itself is valid.
    EXPECT_FALSE(Plane(0.01, 0, 0, 0).IsInvalid());
}

TEST(Plane, LineMeetsPlaneInsideItsEndsOnly) {
    const Plane plane(0, 0, 1, -5);
    Point3d point;
    double t = 0;
    EXPECT_TRUE(plane.IntersectLine(Line({0, 0, 0}, {10, 0, 10}), point, &t));
    EXPECT_EQ(0.5, t);
    ExpectPoint({5, 0, 5}, point);
    // At an end and beyond it: false, with point and parameter stored.
    EXPECT_FALSE(plane.IntersectLine(Line({0, 0, 5}, {0, 0, 10}), point, &t));
    EXPECT_EQ(0.0, std::fabs(t));
    EXPECT_FALSE(plane.IntersectLine(Line({0, 0, 0}, {5, 0, 5}), point, &t));
    EXPECT_EQ(1.0, t);
    EXPECT_FALSE(plane.IntersectLine(Line({0, 0, 0}, {1, 0, 1}), point, nullptr));
    ExpectPoint({5, 0, 5}, point);
}

TEST(Plane, LineAlongPlaneStoresNothing) {
    const Plane plane(0, 0, 1, -5);
    Point3d point(1, 2, 3);
    double t = 42;
    EXPECT_FALSE(plane.IntersectLine(Line({0, 0, 5}, {9, 0, 5 + 0.00009}), point, &t));
    EXPECT_EQ(42.0, t);
    ExpectPoint({1, 2, 3}, point);
    EXPECT_FALSE(plane.IntersectLine(Line({0, 0, 5}, {9, 0, 5 + 0.00011}), point, &t));
    EXPECT_NE(42.0, t);
}

TEST(Plane, PlanesMeetInALineThroughACoordinatePlane) {
    Point3d direction, point;
    // x is the largest component.
    const Plane y1(0, 1, 0, -3), z1(0, 0, 1, -4);
    ASSERT_TRUE(y1.IntersectPlane(z1, direction, point));
    ExpectPoint({1, 0, 0}, direction);
    ExpectPoint({0, 3, 4}, point);
    // y is the largest.
    const Plane x1(1, 0, 0, -2);
    ASSERT_TRUE(z1.IntersectPlane(x1, direction, point));
    ExpectPoint({0, 1, 0}, direction);
    ExpectPoint({2, 0, 4}, point);
}

TEST(Plane, IntersectPlaneDividesXByTheYOfTheDirectionWhenZIsLargest) {
    // x = 2 and y + z / 4 = 3: the direction is (0, -1/4, 1), and x is divided by -1/4 instead
    // of 1.
    const Plane p(1, 0, 0, -2), q(0, 1, 0.25, -3);
    Point3d direction, point;
    ASSERT_TRUE(p.IntersectPlane(q, direction, point));
    EXPECT_EQ(2.0 / -0.25, point.x);
    EXPECT_EQ(3.0, point.y);
    EXPECT_EQ(0.0, point.z);
    EXPECT_NEAR(1.0, VectorLength(direction), 1e-15);
    // Without a y component that is a division by zero.
    ASSERT_TRUE(p.IntersectPlane(Plane(0, 1, 0, -3), direction, point));
    EXPECT_TRUE(std::isinf(point.x));
    EXPECT_EQ(3.0, point.y);
}

TEST(Plane, LargestComponentTiesGoToTheEarlierAxis) {
    Point3d direction, point;
    // The direction is (1, 1, 1) but for signs: x is chosen, so the point has x 0.
    ASSERT_TRUE(Plane(1, -1, 0, 1).IntersectPlane(Plane(0, 1, -1, 1), direction, point));
    EXPECT_EQ(std::fabs(direction.x), std::fabs(direction.z));
    ExpectPoint({0, 1, 2}, point);
    // (0, 1, 1): y is chosen before z.
    ASSERT_TRUE(Plane(1, 0, 0, -5).IntersectPlane(Plane(0, 1, -1, 0), direction, point));
    EXPECT_EQ(0.0, point.y);
    ExpectPoint({5, 0, 0}, point);
}

TEST(Plane, ParallelPlanesDoNotMeet) {
    Point3d direction, point(1, 2, 3);
    EXPECT_FALSE(Plane(0, 0, 1, 0).IntersectPlane(Plane(0, 0.0099, 1, 5), direction, point));
    ExpectPoint({1, 2, 3}, point);
    EXPECT_TRUE(Plane(0, 0, 1, 0).IntersectPlane(Plane(0, 0.0101, 1, 5), direction, point));
}

TEST(Plane, ThreePlanesMeetWithinOneUnitOfTheLine) {
    const Plane y3(0, 1, 0, -3), z4(0, 0, 1, -4);
    Point3d point(9, 9, 9);
    // The line starts at (0, 3, 4) in direction +x: x = 0.5 lies within the unit, x = 2 beyond it.
    EXPECT_TRUE(y3.IntersectPlanes(z4, Plane(1, 0, 0, -0.5), point));
    ExpectPoint({0.5, 3, 4}, point);
    EXPECT_FALSE(y3.IntersectPlanes(z4, Plane(1, 0, 0, -2), point));
    ExpectPoint({2, 3, 4}, point);
    EXPECT_FALSE(y3.IntersectPlanes(y3, z4, point));
    ExpectPoint({2, 3, 4}, point);
}

}  // namespace
}  // namespace TamLib
