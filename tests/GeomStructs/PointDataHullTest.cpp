// What PointData encloses: hull, diameter, smallest rectangle, outline.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <random>

#include "GeomStructs/PointData.h"
#include "GeomStructs/PolyLine.h"
#include "tests/GeomStructs/TestProgress.h"
#include "tests/support/Points.h"

namespace TamLib {
namespace {

const Point3d kOrigin, kFar(25e6, 7e6, 0);

PointData Set(std::initializer_list<Point3d> points, const Point3d& base = kOrigin) {
    PointData set;
    for (const Point3d& p : points) set.Append(base + p);
    return set;
}

PointData Scattered(int n, const Point3d& base, unsigned seed) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> place(0, 100);
    PointData set;
    for (int i = 0; i < n; ++i)
        set.Append(base + Point3d(place(random), place(random), place(random)));
    return set;
}

PolyLine Hull(const PointData& set, double tolerance = -1.0) {
    PolyLine hull;
    hull.Append({77, 77, 77});  // is taken away
    set.ConvexHull(&hull, tolerance);
    return hull;
}

void ExpectRing(std::initializer_list<Point3d> expected, const PolyLine& ring,
                const Point3d& base = kOrigin) {
    ASSERT_EQ(expected.size(), ring.count);
    std::uint32_t i = 0;
    for (const Point3d& p : expected) {
        const Point3d at = base + p;
        EXPECT_EQ(at.x, ring.data[i].x) << i;
        EXPECT_EQ(at.y, ring.data[i].y) << i;
        EXPECT_EQ(at.z, ring.data[i].z) << i;
        ++i;
    }
}

// Twice the signed area, from the first vertex on; above 0 counter-clockwise.
double TwiceTheArea(const PolyLine& ring) {
    double sum = 0;
    for (std::uint32_t i = 1; i + 1 < ring.count; ++i)
        sum += CrossProduct(ring.data[i] - ring.data[0], ring.data[i + 1] - ring.data[0]).z;
    return sum;
}

// --- Hulls.

TEST(ConvexHull, RunsCounterClockwiseFromTheSmallestX) {
    for (const Point3d& base : {kOrigin, kFar}) {
        const PointData set = Set(
            {{4, 4, 1}, {0, 0, 2}, {2, 1, 99}, {4, 0, 3}, {2, 2, 0}, {0, 4, 4}, {3, 3, 0}}, base);
        ExpectRing({{0, 0, 2}, {4, 0, 3}, {4, 4, 1}, {0, 4, 4}, {0, 0, 2}}, Hull(set), base);
    }
}

TEST(ConvexHull, OfPointsOnOneLineIsARingOfTwoSegments) {
    for (const Point3d& base : {kOrigin, kFar}) {
        ExpectRing({{0, 0, 0}, {2, 2, 0}, {0, 0, 0}},
                   Hull(Set({{1, 1, 0}, {0, 0, 0}, {2, 2, 0}}, base)), base);
        ExpectRing({{0, 0, 0}, {0, 9, 0}, {0, 0, 0}},
                   Hull(Set({{0, 5, 0}, {0, 9, 0}, {0, 0, 0}, {0, 2, 0}}, base)), base);
    }
    ExpectRing({{0, 0, 0}, {2, 2, 0}, {0, 0, 0}}, Hull(Set({{2, 2, 0}, {0, 0, 0}})));
}

TEST(ConvexHull, LeavesOutPointsOnItsEdges) {
    ExpectRing({{0, 0, 0}, {4, 0, 0}, {4, 4, 0}, {0, 4, 0}, {0, 0, 0}}, Hull(Set({{0, 0, 0},
                                                                                  {2, 0, 0},
                                                                                  {4, 0, 0},
                                                                                  {4, 2, 0},
                                                                                  {4, 4, 0},
                                                                                  {2, 4, 0},
                                                                                  {0, 4, 0},
                                                                                  {0, 2, 0}})));
}

TEST(ConvexHull, OfFewerThanTwoPointsIsACopy) {
    EXPECT_EQ(0u, Hull(PointData()).count);
    ExpectRing({{1, 2, 3}}, Hull(Set({{1, 2, 3}})));
}

TEST(ConvexHull, OfPointsAlikeInPlanTheFirstInOrderStays) {
    ExpectRing({{1, 2, -5}}, Hull(Set({{1, 2, 3}, {1, 2, -5}, {1, 2, 9}})));
    ExpectRing({{1, 2, 3}}, Hull(Set({{1, 2, 3}, {1, 2, 3}})));
    ExpectRing({{0, 0, 1}, {4, 0, 2}, {2, 5, 3}, {0, 0, 1}},
               Hull(Set({{0, 0, 8}, {0, 0, 1}, {4, 0, 7}, {4, 0, 2}, {2, 5, 3}, {2, 5, 9}})));
}

TEST(ConvexHull, PassesOverPointsNearerThanATenThousandthInPlan) {
    for (const Point3d& base : {kOrigin, kFar}) {
        const auto vertices = [&](double off) {
            return Hull(Set({{0, 0, 0}, {4, 0, 0}, {4, 4, 0}, {4 + off, 0.0, 0}}, base)).count;
        };
        EXPECT_EQ(4u, vertices(0.00009));
        EXPECT_EQ(4u, vertices(0.00011));  // (4, 0) gives way to the point farther out
        const auto corner = [&](double off) {
            return Hull(Set({{0, 0, 0}, {4, 0, 0}, {0, 4, 0}, {4 + off, off, 0}}, base)).count;
        };
        EXPECT_EQ(4u, corner(0.00006));  // though farther out
        EXPECT_EQ(5u, corner(0.00008));
    }
    // On the limit it counts.
    EXPECT_EQ(3u, Hull(Set({{0, 0, 0}, {0.0001, 0, 0}})).count);
    EXPECT_EQ(1u, Hull(Set({{0, 0, 0}, {std::nextafter(0.0001, 0), 0, 0}})).count);
}

TEST(ConvexHull, ToleranceLeavesOutVerticesThatAddLittleLength) {
    // (5, -1) adds 2 sqrt(26) - 10 = 0.198 to the lower side.
    const PointData set = Set({{0, 0, 0}, {5, -1, 0}, {10, 0, 0}, {5, 9, 0}});
    EXPECT_EQ(5u, Hull(set, -1.0).count);
    EXPECT_EQ(5u, Hull(set, 0.0).count);
    EXPECT_EQ(5u, Hull(set, 0.19).count);
    ExpectRing({{0, 0, 0}, {10, 0, 0}, {5, 9, 0}, {0, 0, 0}}, Hull(set, 0.2));
    // On the limit the vertex stays: 6 + 8 - 10 = 4.
    const PointData right = Set({{0, 0, 0}, {6, 0, 0}, {6, 8, 0}});
    EXPECT_EQ(4u, Hull(right, 4.0).count);
    EXPECT_EQ(3u, Hull(right, std::nextafter(4.0, 5.0)).count);
    // A negative tolerance asks nothing, however small.
    EXPECT_EQ(5u, Hull(set, -1e-300).count);
}

TEST(ConvexHull, LeavesTheSetAsItStands) {
    PointData set = Set({{4, 4, 0}, {0, 0, 0}, {4, 4, 0}, {4, 0, 0}});
    Hull(set);
    EXPECT_EQ(4u, set.count);
    EXPECT_EQ(4.0, set[0].x);
    EXPECT_FALSE(set.sorted);
}

TEST(ConvexHull, EnclosesEveryPoint) {
    for (const Point3d& base : {kOrigin, kFar}) {
        for (unsigned seed = 1; seed < 20; ++seed) {
            const PointData set = Scattered(200, base, seed);
            const PolyLine hull = Hull(set);
            EXPECT_TRUE(hull.IsClosed());
            EXPECT_GT(TwiceTheArea(hull), 0);
            for (const Point3d& p : set)
                EXPECT_TRUE(hull.Inside(p, false, true) != 0 || hull.MinDistance2d(p) < 1e-4);
            for (std::uint32_t i = 0; i + 2 < hull.count; ++i)
                EXPECT_TRUE(Line(hull.data[i], hull.data[i + 1]).IsRightOf(hull.data[i + 2]));
        }
    }
}

TEST(ConvexHull, TellsTheProgressDialogHowFarItIs) {
    const PointData set = Scattered(50, kOrigin, 1);
    TestProgress progress;
    Hull(set);
    ASSERT_EQ(100u, progress.told.size());  // both passes
    EXPECT_EQ(0.0f, progress.told[0]);
    EXPECT_EQ(98.0f, progress.told[49]);
    EXPECT_EQ(0.0f, progress.told[50]);
    EXPECT_EQ(0, progress.polls);  // it can't be cancelled
    progress.told.clear();
    progress.suppressed = true;
    Hull(set);
    EXPECT_TRUE(progress.told.empty());
}

// --- Diameter.

TEST(Diameter, IsTheLargestDistanceInSpaceBetweenHullVertices) {
    EXPECT_EQ(13.0, Set({{0, 0, 0}, {3, 4, 12}, {1, 1, 0}}).Diameter());
    // Intended: heights within the hull are not seen.
    EXPECT_EQ(5.0, Set({{0, 0, 0}, {3, 4, 0}, {3, 0, 0}, {2, 1, 99}}).Diameter());
    EXPECT_EQ(0.0, PointData().Diameter());
    EXPECT_EQ(0.0, Set({{1, 2, 3}}).Diameter());
    for (const Point3d& base : {kOrigin, kFar}) {
        PointData set = Scattered(150, base, 4);
        for (Point3d& p : set) p.z = 0;
        double largest = 0;
        for (const Point3d& p : set)
            for (const Point3d& q : set) largest = std::max(largest, Distance(p, q));
        EXPECT_EQ(largest, set.Diameter());
    }
}

// --- Smallest rectangle.

TEST(MinBoundingBox, OfATurnedRectangleIsThatRectangle) {
    for (const Point3d& base : {kOrigin, kFar}) {
        for (const double turn : {0.0, 0.3, 1.2, 2.9}) {
            PointData set;
            std::mt19937 random(9);
            std::uniform_real_distribution<double> share(0, 1);
            for (const Point3d& corner :
                 {Point3d(0, 0, 2), Point3d(30, 0, 4), Point3d(30, 7, 6), Point3d(0, 7, 2)}) {
                Point3d p = corner;
                p.RotateAbout({}, turn, 0);
                set.Append(base + p);
            }
            for (int i = 0; i < 40; ++i) {
                Point3d p(30 * share(random), 7 * share(random), 3);
                p.RotateAbout({}, turn, 0);
                set.Append(base + p);
            }
            PolyLine box;
            box.Append({1, 1, 1});  // is taken away
            set.MinBoundingBox(&box);
            ASSERT_EQ(5u, box.count);
            EXPECT_TRUE(box.IsClosed());
            const double a = Distance2d(box[0], box[1]), b = Distance2d(box[1], box[2]);
            EXPECT_NEAR(30, std::max(a, b), 1e-4) << turn;
            EXPECT_NEAR(7, std::min(a, b), 1e-4) << turn;
            for (const Point3d& p : box) EXPECT_NEAR(4.0, p.z, 1e-6);
            for (const Point3d& p : set)
                EXPECT_TRUE(box.Inside(p, false, true) != 0 || box.MinDistance2d(p) < 1e-4);
        }
    }
}

TEST(MinBoundingBox, IsNoLargerThanAnyRectangleAboutThePoints) {
    for (unsigned seed = 1; seed < 15; ++seed) {
        const PointData set = Scattered(30, kOrigin, seed);
        PolyLine best;
        set.MinBoundingBox(&best);
        const double area = std::fabs(TwiceTheArea(best)) / 2;
        for (int i = 0; i < 180; ++i) {
            Box box;
            for (Point3d p : set) {
                p.RotateAbout({50, 50, 0}, i * kPi / 360, 0);
                box.Add(p);
            }
            EXPECT_LE(area, static_cast<double>(box.Area()) * 1.0001);
        }
    }
}

TEST(MinBoundingBox, OfOnePointAndOfNone) {
    PolyLine box;
    Set({{3, 4, 5}}).MinBoundingBox(&box);
    ASSERT_EQ(4u, box.count);  // four equal corners
    for (const Point3d& p : box) EXPECT_TRUE(Equals({3, 4, 5}, p));
    PointData().MinBoundingBox(&box);
    EXPECT_EQ(0u, box.count);
    Set({{0, 0, 0}, {6, 8, 0}}).MinBoundingBox(&box);
    EXPECT_NEAR(0.0, TwiceTheArea(box), 1e-4);
}

// --- Outlines.

// Points on all whole places of an L: 6 by 6 without the upper right 3 by 3.
PointData Bracket(const Point3d& base) {
    PointData set;
    for (int x = 0; x <= 6; ++x)
        for (int y = 0; y <= 6; ++y)
            if (x <= 3 || y <= 3) set.Append(base + Point3d(x, y, x + y));
    return set;
}

PolyLine OutlineOf(const PointData& set, double distance) {
    PolyLine outline;
    outline.Append({77, 77, 77});  // is taken away
    set.Outline(&outline, distance);
    return outline;
}

TEST(Outline, FollowsAReentrantCorner) {
    for (const Point3d& base : {kOrigin, kFar}) {
        const PointData set = Bracket(base);
        const PolyLine outline = OutlineOf(set, 1.1);
        EXPECT_TRUE(outline.IsClosed());
        EXPECT_EQ(25u, outline.count);  // 24 places along the edge, and the first again
        EXPECT_EQ(54.0, TwiceTheArea(outline));
        // A reach that spans the corner cuts it off.
        EXPECT_GT(TwiceTheArea(OutlineOf(set, 1.5)), 54.0);
        EXPECT_EQ(63.0, TwiceTheArea(OutlineOf(set, 20.0)));
        EXPECT_EQ(63.0, TwiceTheArea(Hull(set)));
    }
}

TEST(Outline, LeavesNoPointOutsideOfAConnectedSet) {
    for (unsigned seed = 1; seed < 15; ++seed) {
        const PointData set = Scattered(250, kOrigin, seed);
        const PolyLine outline = OutlineOf(set, 25);
        EXPECT_TRUE(outline.IsClosed());
        int outside = 0;
        for (const Point3d& p : set)
            outside += outline.Inside(p, false, true) == 0 && outline.MinDistance2d(p) >= 0.0001;
        EXPECT_EQ(0, outside) << seed;
        EXPECT_LE(TwiceTheArea(outline), TwiceTheArea(Hull(set)) * (1 + 1e-12));
        EXPECT_GT(TwiceTheArea(outline), 0.5 * TwiceTheArea(Hull(set)));
        for (std::uint32_t i = 0; i + 1 < outline.count; ++i)
            EXPECT_LE(Distance2d(outline.data[i], outline.data[i + 1]), 25.0);
    }
}

TEST(Outline, ANegativeDistanceGivesTheHull) {
    const PointData set = Bracket(kOrigin);
    const PolyLine hull = Hull(set), outline = OutlineOf(set, -1);
    ASSERT_EQ(hull.count, outline.count);
    EXPECT_EQ(0, std::memcmp(hull.data, outline.data, hull.count * sizeof(Point3d)));
}

TEST(Outline, GoesOutAlongASpurAndBack) {
    PointData set;
    for (int x = 0; x <= 2; ++x)
        for (int y = 0; y <= 2; ++y) set.Append({1.0 * x, 1.0 * y, 0});
    for (int x = 3; x <= 6; ++x) set.Append({1.0 * x, 1, 0});
    const PolyLine outline = OutlineOf(set, 1.1);
    EXPECT_EQ(8.0, TwiceTheArea(outline));
    EXPECT_EQ(6.0, outline[0].x);
    for (const Point3d& p : set)
        EXPECT_LT(outline.Inside(p, false, true) != 0 ? 0 : outline.MinDistance2d(p), 1e-9);
}

TEST(Outline, StartsAgainFromPointsLeftOutside) {
    // Two points far to the right, which nothing reaches, and a square.
    PointData set = Set({{50, 0, 0}, {50.5, 0, 0}});
    for (int x = 0; x <= 4; ++x)
        for (int y = 0; y <= 4; ++y) set.Append({1.0 * x, 1.0 * y, 0});
    EXPECT_EQ(32.0, TwiceTheArea(OutlineOf(set, 1.1)));
}

TEST(Outline, PassesOverPointsNearerThanAThousandth) {
    // (4, 0) is doubled at 0.0009 and at 0.0011.
    EXPECT_EQ(4u, OutlineOf(Set({{0, 0, 0}, {4, 0.0009, 0}, {4, 0, 0}, {2, 3, 0}}), 10).count);
    EXPECT_EQ(5u, OutlineOf(Set({{0, 0, 0}, {4, 0.0011, 0}, {4, 0, 0}, {2, 3, 0}}), 10).count);
}

TEST(Outline, OfFewPoints) {
    EXPECT_EQ(0u, OutlineOf(PointData(), 1).count);
    EXPECT_EQ(1u, OutlineOf(Set({{1, 2, 3}}), 1).count);
    ExpectRing({{4, 0, 0}, {0, 0, 0}, {4, 0, 0}}, OutlineOf(Set({{0, 0, 0}, {4, 0, 0}}), 5));
    // Out of reach of each other: one alone.
    EXPECT_EQ(1u, OutlineOf(Set({{0, 0, 0}, {4, 0, 0}}), 3).count);
    EXPECT_EQ(2u, OutlineOf(Set({{0, 0, 0}, {4, 0, 0}}), 4).count - 1);  // 4 is within reach
}

TEST(Outline, IsPolledEveryThreeThousandStepsAndGivesWhatItHasWhenCancelled) {
    PointData ring;
    for (int i = 0; i < 7000; ++i)
        ring.Append({1000 * std::cos(i * 2 * kPi / 7000), 1000 * std::sin(i * 2 * kPi / 7000), 0});
    TestProgress progress;
    EXPECT_EQ(7001u, OutlineOf(ring, 1.0).count);
    EXPECT_EQ(2, progress.polls);
    progress.polls = 0;
    progress.cancelAt = 1;
    const PolyLine half = OutlineOf(ring, 1.0);
    EXPECT_EQ(1, progress.polls);
    EXPECT_EQ(3001u, half.count);
    EXPECT_TRUE(half.IsClosed());
}

}  // namespace
}  // namespace TamLib
