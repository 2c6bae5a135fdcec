#include "GeomEnts/Box.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>

#include "datastruct/Random.h"
#include "tests/support/Points.h"

namespace TamLib {
namespace {

const Box kBox(1.0, 4.0, 2.0, 8.0, 3.0, 5.0);

void ExpectBox(const Box& expected, const Box& actual) {
    EXPECT_EQ(0, std::memcmp(&expected, &actual, sizeof(Box)))
        << actual.xMin << ' ' << actual.xMax << ' ' << actual.yMin << ' ' << actual.yMax << ' '
        << actual.zMin << ' ' << actual.zMax;
}

TEST(Box, InterleavesMinimaAndMaxima) {
    float values[6];
    std::memcpy(values, &kBox, sizeof values);
    const float expected[6] = {1, 4, 2, 8, 3, 5};
    for (int i = 0; i < 6; ++i) EXPECT_EQ(expected[i], values[i]);
}

TEST(Box, EmptyHoldsTheLargestFloats) {
    std::uint32_t bits[6];
    const Box empty;
    std::memcpy(bits, &empty, sizeof bits);
    for (int i = 0; i < 6; ++i) EXPECT_EQ(i % 2 == 0 ? 0x7F7FFFFFu : 0xFF7FFFFFu, bits[i]);
    EXPECT_FALSE(empty.Contains(Point3d(0, 0, 0)));
    Box box = kBox;
    box.Reset();
    ExpectBox(empty, box);
}

TEST(Box, ConstructorsNarrowInTheOrderTold) {
    const double values[6] = {1, 4, 2, 8, 3, 5}, corners[6] = {1, 2, 3, 4, 8, 5};
    ExpectBox(kBox, Box(values));
    ExpectBox(kBox, Box::FromCorners(corners));
    ExpectBox(kBox, Box(1.0f, 4.0f, 2.0f, 8.0f, 3.0f, 5.0f));
    ExpectBox(kBox, Box(Point3d(1, 2, 3), Point3d(4, 8, 5)));
    // Corners are not sorted.
    EXPECT_EQ(4.0f, Box(Point3d(4, 8, 5), Point3d(1, 2, 3)).xMin);
    EXPECT_EQ(0.0f, Box(1e-50, 1, 0, 1, 0, 1).xMin);
    EXPECT_EQ(25496000.0f, Box(25496000.4, 1, 0, 1, 0, 1).xMin);  // a float's step is 2 there
}

TEST(Box, OfPointsTakesTheFirstOnes) {
    const Point3d a(1, 8, 3), b(4, 2, 5), c(100, 100, 100);
    ExpectBox(kBox, Box(2, &a, &b, &c));
    ExpectBox(Box(), Box(0, &a, &b, &c));
    EXPECT_EQ(100.0f, Box(3, &a, &b, &c).zMax);
}

TEST(Box, OfOnePointIsFlatAndContainsIt) {
    for (const Point3d& p :
         {Point3d(1.5, -2.25, 1e-50), Point3d(25496123.456, 6672345.678, 12.3)}) {
        Box box;
        box.Add(p);
        EXPECT_EQ(0.0f, box.Width());
        EXPECT_EQ(0.0f, box.Depth());
        EXPECT_EQ(0.0f, box.Height());
        EXPECT_TRUE(box.Contains(p));
        EXPECT_TRUE(box.Contains2d(p));
    }
}

TEST(Box, AddWidens) {
    Box box;
    box.Add(Point3d(1, 8, 3));
    box.Add(Point3d(4, 2, 5));
    ExpectBox(kBox, box);
    box.Add(Point3d(2, 3, 4));
    ExpectBox(kBox, box);
    box.AddX(-1);
    box.AddY(9);
    box.AddZ(7);
    ExpectBox(Box(-1.0, 4.0, 2.0, 9.0, 3.0, 7.0), box);
    Box other;
    other.Add(kBox);
    ExpectBox(kBox, other);
    other.Add(Box());
    ExpectBox(kBox, other);
    Box six;
    const double points[6] = {1, 8, 3, 4, 2, 5};
    six.Add(points);
    ExpectBox(kBox, six);
}

TEST(Box, PlusAddsNumbersAndIsNoUnion) {
    Box box = kBox;
    box += Box(10.0, 20.0, 30.0, 40.0, 50.0, 60.0);
    ExpectBox(Box(11.0, 24.0, 32.0, 48.0, 53.0, 65.0), box);
}

TEST(Box, GrowsByOneMarginOnAllSides) {
    Box box = kBox;
    const double margin = 0.5;
    box.Grow(&margin);
    ExpectBox(Box(0.5, 4.5, 1.5, 8.5, 2.5, 5.5), box);
    // At map coordinates a thousandth vanishes.
    Box far(25e6, 25e6, 7e6, 7e6, 0.0, 0.0);
    const double thousandth = 0.001;
    far.Grow(&thousandth);
    ExpectBox(Box(25e6, 25e6, 7e6, 7e6, -0.001, 0.001), far);
    // The sum is made in double and then narrowed.
    Box sum(0.1f, 0.1f, 0.0f, 0.0f, 0.0f, 0.0f);
    const double tenth = 0.1;
    sum.Grow(&tenth);
    EXPECT_EQ(static_cast<float>(static_cast<double>(0.1f) + 0.1), sum.xMax);
}

TEST(Box, TranslatesInFloat) {
    Box box = kBox;
    box.Translate({10, -20, 30});
    ExpectBox(Box(11.0, 14.0, -18.0, -12.0, 33.0, 35.0), box);
    Box fine(0.1f, 0.1f, 0.0f, 0.0f, 0.0f, 0.0f);
    fine.Translate({0.2, 0, 0});
    EXPECT_EQ(0.1f + 0.2f, fine.xMin);
}

TEST(Box, ContainsIsInclusiveOnNarrowedCoordinates) {
    EXPECT_TRUE(kBox.Contains(Point3d(1, 2, 3)));
    EXPECT_TRUE(kBox.Contains(Point3d(4, 8, 5)));
    EXPECT_FALSE(kBox.Contains(Point3d(4.001, 8, 5)));
    EXPECT_FALSE(kBox.Contains(Point3d(4, 8.001, 5)));
    EXPECT_FALSE(kBox.Contains(Point3d(4, 8, 5.001)));
    EXPECT_TRUE(kBox.Contains2d(Point3d(4, 8, 500)));
    // Just outside in double, on the limit as a float.
    EXPECT_TRUE(kBox.Contains(Point3d(std::nextafter(4.0, 5.0), 8, 5)));
    EXPECT_TRUE(kBox.Contains(Point3d(std::nextafter(1.0, 0.0), 2, 3)));
}

TEST(Box, ContainsBoxesInclusively) {
    EXPECT_TRUE(kBox.Contains(kBox));
    EXPECT_FALSE(kBox.Contains(Box(1.0, 4.5, 2.0, 8.0, 3.0, 5.0)));
    EXPECT_FALSE(kBox.Contains(Box(1.0, 4.0, 2.0, 8.0, 2.0, 5.0)));
    EXPECT_TRUE(kBox.Contains2d(Box(1.0, 4.0, 2.0, 8.0, 2.0, 9.0)));
    EXPECT_FALSE(kBox.Contains2d(Box(1.0, 4.0, 1.0, 8.0, 3.0, 5.0)));
    EXPECT_TRUE(kBox.Contains(Box()));
}

TEST(Box, OverlapsWhereTheLimitsTouch) {
    EXPECT_TRUE(kBox.Overlaps2d(Box(4.0, 9.0, 8.0, 9.0, 90.0, 99.0)));
    EXPECT_FALSE(kBox.Overlaps2d(Box(4.1, 9.0, 8.0, 9.0, 3.0, 5.0)));
    EXPECT_FALSE(kBox.Overlaps2d(Box(0.0, 0.9, 2.0, 8.0, 3.0, 5.0)));
    EXPECT_FALSE(kBox.Overlaps2d(Box(1.0, 4.0, 8.1, 9.0, 3.0, 5.0)));
    EXPECT_FALSE(kBox.Overlaps2d(Box(1.0, 4.0, 0.0, 1.9, 3.0, 5.0)));
    EXPECT_FALSE(kBox.Overlaps2d(Box()));
    EXPECT_TRUE(kBox.Overlaps(Box(1.0, 4.0, 2.0, 8.0, 5.0, 6.0)));
    EXPECT_FALSE(kBox.Overlaps(Box(1.0, 4.0, 2.0, 8.0, 5.1, 6.0)));
    EXPECT_FALSE(kBox.Overlaps(Box(1.0, 4.0, 2.0, 8.0, 1.0, 2.9)));
}

TEST(Box, ClampComparesInDouble) {
    Point3d p(0, 9, 4);
    kBox.Clamp(p);
    ExpectPoint({1, 8, 4}, p);
    Point3d outside(std::nextafter(4.0, 5.0), 2, 3);
    kBox.Clamp(outside);
    ExpectPoint({4, 2, 3}, outside);
    // 0.1 lies below the float 0.1 and keeps its value above a lower limit.
    Point3d inside(0.3, 0, 0);
    Box(0.1, 0.5, 0.0, 0.0, 0.0, 0.0).Clamp(inside);
    EXPECT_EQ(0.3, inside.x);
}

TEST(Box, MeasuresAreFloatProducts) {
    EXPECT_EQ(3.0f, kBox.Width());
    EXPECT_EQ(6.0f, kBox.Depth());
    EXPECT_EQ(2.0f, kBox.Height());
    EXPECT_EQ(18.0f, kBox.Area());
    EXPECT_EQ(36.0f, kBox.Volume());
    const Box odd(0.1, 0.7, 0.2, 0.9, 0.3, 0.8);
    EXPECT_EQ((0.7f - 0.1f) * (0.9f - 0.2f) * (0.8f - 0.3f), odd.Volume());
}

TEST(Box, CentreIsInDouble) {
    ExpectPoint({2.5, 5, 4}, kBox.Centre());
    // The sum of the two floats would not fit a float.
    ExpectPoint({16777217.0, 0, 0}, Box(16777216.0, 16777218.0, 0.0, 0.0, 0.0, 0.0).Centre());
}

TEST(Box, CornersByBits) {
    ExpectPoint({1, 2, 3}, kBox.Corner(0));
    ExpectPoint({4, 2, 3}, kBox.Corner(1));
    ExpectPoint({1, 8, 3}, kBox.Corner(2));
    ExpectPoint({1, 2, 5}, kBox.Corner(4));
    ExpectPoint({4, 2, 5}, kBox.Corner(5));
    ExpectPoint({4, 8, 5}, kBox.Corner(7));
}

TEST(Box, PlanCornersAreAtTheMeanHeight) {
    ExpectPoint({1, 8, 4}, kBox.UpperLeft());
    ExpectPoint({4, 2, 4}, kBox.LowerRight());
    ExpectPoint({1, 2, 4}, kBox.LowerLeft());
    ExpectPoint({4, 8, 4}, kBox.UpperRight());
}

TEST(Box, IntersectionOfBoxesThatMeet) {
    Box result;
    kBox.Intersection(Box(2.0, 9.0, 0.0, 3.0, 4.0, 4.5), result);
    ExpectBox(Box(2.0, 4.0, 2.0, 3.0, 4.0, 4.5), result);
    kBox.Intersection2d(Box(2.0, 9.0, 0.0, 3.0, 4.0, 4.5), result);
    ExpectBox(Box(2.0, 4.0, 2.0, 3.0, 3.0, 3.0), result);
}

TEST(Box, IntersectionOfBoxesApartIsFlatAtALimitOfThisOne) {
    Box result;
    kBox.Intersection(Box(10.0, 20.0, -9.0, -5.0, 3.0, 5.0), result);
    ExpectBox(Box(4.0, 4.0, 2.0, 2.0, 3.0, 5.0), result);
    // Into itself.
    Box self = kBox;
    self.Intersection(Box(2.0, 3.0, 2.0, 8.0, 3.0, 5.0), self);
    ExpectBox(Box(2.0, 3.0, 2.0, 8.0, 3.0, 5.0), self);
}

TEST(Box, RandomPointsLieInsideAndFollowTheGenerator) {
    SeedRandom(1);
    std::int32_t draws[3];
    for (std::int32_t& draw : draws) draw = Random();
    SeedRandom(1);
    Point3d p;
    kBox.RandomPoint(p);
    ExpectPoint({1.0f + static_cast<float>(draws[0]) * 3.0f / 32767.0f,
                 2.0f + static_cast<float>(draws[1]) * 6.0f / 32767.0f,
                 3.0f + static_cast<float>(draws[2]) * 2.0f / 32767.0f},
                p);
    for (int i = 0; i < 10000; ++i) {
        kBox.RandomPoint(p);
        EXPECT_TRUE(kBox.Contains(p));
    }
}

// --- RayHit.

TEST(BoxRayHit, FromInsideIsTrueAndLeavesHitUnset) {
    Point3d hit(9, 9, 9);
    EXPECT_TRUE(kBox.RayHit({2, 3, 4}, {1, 0, 0}, &hit));
    ExpectPoint({9, 9, 9}, hit);
    EXPECT_TRUE(kBox.RayHit({1, 2, 3}, {-1, 0, 0}, &hit));  // on the border is inside
    ExpectPoint({9, 9, 9}, hit);
}

TEST(BoxRayHit, EntersThroughEachFace) {
    const struct {
        Point3d origin, direction, hit;
    } cases[] = {
        {{-1, 5, 4}, {1, 0, 0}, {1, 5, 4}}, {{9, 5, 4}, {-3, 0, 0}, {4, 5, 4}},
        {{2, -1, 4}, {0, 1, 0}, {2, 2, 4}}, {{2, 10, 4}, {0, -1, 0}, {2, 8, 4}},
        {{2, 5, 0}, {0, 0, 1}, {2, 5, 3}},  {{2, 5, 9}, {0, 0, -9}, {2, 5, 5}},
        {{-1, 3, 4}, {1, 1, 0}, {1, 5, 4}},
    };
    for (const auto& c : cases) {
        Point3d hit;
        EXPECT_TRUE(kBox.RayHit(c.origin, c.direction, &hit));
        EXPECT_NEAR(c.hit.x, hit.x, 1e-14);
        EXPECT_NEAR(c.hit.y, hit.y, 1e-14);
        EXPECT_NEAR(c.hit.z, hit.z, 1e-14);
        EXPECT_TRUE(kBox.RayHit(c.origin, c.direction, nullptr));
    }
}

TEST(BoxRayHit, MissesBesideBehindAndAlong) {
    EXPECT_FALSE(kBox.RayHit({-1, 9, 4}, {1, 0, 0}, nullptr));
    EXPECT_FALSE(kBox.RayHit({-1, 5, 4}, {-1, 0, 0}, nullptr));
    EXPECT_FALSE(kBox.RayHit({-1, 5, 4}, {0, 1, 0}, nullptr));
    EXPECT_FALSE(kBox.RayHit({-1, 0, 4}, {1, 4.2, 0}, nullptr));
}

TEST(BoxRayHit, LimitsOfTheOtherAxesAreInclusive) {
    Point3d hit;
    EXPECT_TRUE(kBox.RayHit({-1, 8, 5}, {1, 0, 0}, &hit));
    ExpectPoint({1, 8, 5}, hit);
    EXPECT_FALSE(kBox.RayHit({-1, std::nextafter(8.0, 9.0), 5}, {1, 0, 0}, &hit));
}

TEST(BoxRayHit, ShortDirectionsCountDownToTheirLimit) {
    EXPECT_FALSE(kBox.RayHit({-1, 5, 4}, {std::nextafter(1e-10, 0), 0, 0}, nullptr));
    EXPECT_TRUE(kBox.RayHit({-1, 5, 4}, {1e-10, 0, 0}, nullptr));
    EXPECT_FALSE(kBox.RayHit({2, 3, 4}, {0, 0, 0}, nullptr));  // not even from inside
}

TEST(BoxRayHit, ComponentOfUpToABillionthRunsAlongThePlane) {
    // Long enough for such a ray to come in.
    const Box wall(0.0, 1.0, -1e9, 1e9, 0.0, 1.0);
    Point3d hit;
    EXPECT_FALSE(wall.RayHit({-1e-3, 0, 0.5}, {0.9e-9, 1, 0}, nullptr));
    EXPECT_FALSE(wall.RayHit({-1e-3, 0, 0.5}, {1e-9, 1, 0}, nullptr));
    EXPECT_TRUE(wall.RayHit({-1e-3, 0, 0.5}, {std::nextafter(1e-9, 1.0), 1, 0}, &hit));
    EXPECT_EQ(0.0, hit.x);
    EXPECT_NEAR(1e6, hit.y, 1.0);
}

TEST(BoxRayHit, CoordinateThatIsNoNumberLiesNeitherBelowNorAboveIntended) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    Point3d hit(9, 9, 9);
    EXPECT_TRUE(kBox.RayHit({nan, 3, 4}, {1, 0, 0}, &hit));
    ExpectPoint({9, 9, 9}, hit);
    EXPECT_FALSE(kBox.RayHit({nan, 1, 4}, {0, 1, 0}, &hit));
}

TEST(BoxRayHit, LaterAxisWinsOnlyStrictly) {
    // The ray enters exactly through an edge: x and y at the same distance, x is chosen.
    Point3d hit;
    EXPECT_TRUE(Box(0.0, 1.0, 0.0, 1.0, 0.0, 1.0).RayHit({-1, -1, 0.5}, {1, 1, 0}, &hit));
    EXPECT_EQ(0.0, hit.x);
    EXPECT_NEAR(0.0, hit.y, 1e-15);
}

TEST(BoxRayHit, AgreesWithWalkingTheRay) {
    std::mt19937 random(31);
    std::uniform_real_distribution<double> place(-10, 15), turn(-1, 1);
    int hits = 0;
    for (int i = 0; i < 2000; ++i) {
        const Point3d origin(place(random), place(random), place(random));
        const Point3d direction(turn(random), turn(random), turn(random));
        Point3d hit(-99, -99, -99);
        const bool result = kBox.RayHit(origin, direction, &hit);
        bool walked = false;
        Point3d entered;
        for (int k = 0; k <= 20000 && !walked; ++k) {
            const double t = k * 0.005;
            entered = origin + Point3d(direction.x * t, direction.y * t, direction.z * t);
            walked = kBox.Contains(entered);
        }
        if (walked) {
            ++hits;
            ASSERT_TRUE(result) << i;
            if (hit.x > -99) {
                EXPECT_LT(Distance(hit, entered), 0.01) << i;
            }
        } else if (result) {
            // Entered and left again between two steps.
            EXPECT_TRUE(kBox.Contains(hit)) << i;
        }
    }
    EXPECT_GT(hits, 20);
}

}  // namespace
}  // namespace TamLib
