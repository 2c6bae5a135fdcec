#include "GeomStructs/Point3dArray.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <random>

#include "tests/support/Points.h"

namespace TamLib {
namespace {

using Points = Point3dArrayBase<Point3d>;

Points Make(std::initializer_list<Point3d> list) {
    Points points;
    for (const Point3d& p : list) points.Append(p);
    return points;
}

TEST(Point3dArray, IsPlainDataWithTheArrayComparison) {
    const Points points(7);
    EXPECT_TRUE(points.bitwise);
    EXPECT_EQ(7u, points.increment);
    EXPECT_EQ(7u, points.capacity);
    EXPECT_EQ(5u, Points(2).increment);
    EXPECT_EQ(0u, Points().capacity);
    EXPECT_EQ(&Point3d::CompareArray, points.compare);
    EXPECT_EQ(0, points.hasBounds);
    ExpectPoint({0, 0, 0}, points.offset);
}

TEST(Point3dArray, ClearForgetsTheOffsetAndRemovingDoesNot) {
    Points points = Make({{1, 2, 3}});
    points.hasBounds = 1;
    points.offset = {1, 1, 1};
    points.Remove(0, 1);
    EXPECT_EQ(0u, points.count);
    ExpectPoint({1, 1, 1}, points.offset);
    EXPECT_EQ(1, points.hasBounds);
    EXPECT_EQ(0, points.Clear());
    ExpectPoint({0, 0, 0}, points.offset);
    EXPECT_EQ(0, points.hasBounds);
    EXPECT_EQ(nullptr, points.data);
    EXPECT_EQ(0u, points.capacity);
}

TEST(Point3dArray, SortsByXThenYThenZ) {
    Points points = Make({{2, 0, 0}, {1, 5, 0}, {1, 2, 9}, {1, 2, 3}});
    points.Sort();
    EXPECT_TRUE(points.sorted);
    ExpectPoint({1, 2, 3}, points[0]);
    ExpectPoint({1, 2, 9}, points[1]);
    ExpectPoint({1, 5, 0}, points[2]);
    ExpectPoint({2, 0, 0}, points[3]);
    Points doubles = Make({{2, 0, 0}, {1, 0, 0}, {2, 0, 0}, {1, 0, 1e-7}});
    doubles.SortUnique();
    EXPECT_EQ(2u, doubles.count);
    EXPECT_TRUE(doubles.unique);
}

TEST(Point3dArrayFind, UnsortedGivesTheFirstEqualOne) {
    const Points points = Make({{5, 5, 5}, {1, 2, 3}, {1.0000005, 2, 3}});
    EXPECT_EQ(1, points.Find({1.0000004, 2, 3}));
    EXPECT_EQ(2, points.Find({1.0000012, 2, 3}));
    EXPECT_EQ(-1, points.Find({1, 2, 4}));
    EXPECT_EQ(-1, Points().Find({1, 2, 4}));
    EXPECT_EQ(-1, Points().FindPoint({1, 2, 4}, true));
}

TEST(Point3dArrayFind, SortedFindsPointsWithinTheToleranceOnEitherSide) {
    Points points = Make({{3, 3, 3}, {1, 1, 1}, {2, 2, 2}});
    points.Sort();
    for (const double d : {-1e-7, 0.0, 1e-7, 9e-7, -9e-7}) {
        EXPECT_EQ(0, points.FindPoint({1 + d, 1 + d, 1 - d}, false)) << d;
        EXPECT_EQ(1, points.FindPoint({2 + d, 2 - d, 2 + d}, false)) << d;
        EXPECT_EQ(2, points.FindPoint({3 - d, 3 + d, 3 + d}, false)) << d;
    }
    EXPECT_EQ(-1, points.FindPoint({2, 2, 2.0000011}, false));
    EXPECT_EQ(-1, points.FindPoint({0, 0, 0}, false));
    EXPECT_EQ(-1, points.FindPoint({9, 0, 0}, false));
}

TEST(Point3dArrayFind, SortedLooksAtNeighboursAlikeInX) {
    // x within 1e-6 of one another and of the point, told apart by y: the bisection alone may end
    // beside it.
    Points points(10);
    for (int i = 0; i < 10; ++i) points.Append({1.0 + i * 0.9e-6, 10.0 - i, 0});
    points.sorted = true;
    for (int i = 0; i < 10; ++i) EXPECT_EQ(i, points.FindPoint(points[i], false)) << i;
}

TEST(Point3dArrayFind, ApproximateGivesTheNearestOnlyWhenNothingIsEqual) {
    Points points = Make({{0, 0, 0}, {10, 0, 0}, {4, 0, 3}});
    EXPECT_EQ(2, points.FindPoint({5, 0, 3}, true));
    EXPECT_EQ(0, points.FindPoint({1, 0, 0}, true));
    EXPECT_EQ(0, points.FindPoint({5, 0, -100}, true));  // equally far from 0 and 1: the first
    EXPECT_EQ(1, points.FindPoint({10, 0, 0}, true));
    points.Sort();
    EXPECT_EQ(1, points.FindPoint({5, 0, 3}, true));
    EXPECT_EQ(2, points.FindPoint({100, 0, 0}, true));
    EXPECT_EQ(0, points.FindPoint({-100, 0, 0}, true));
}

TEST(Point3dArrayFind, AgreesSortedAndUnsorted) {
    std::mt19937 random(11);
    std::uniform_int_distribution<int> cell(0, 6);
    for (int round = 0; round < 200; ++round) {
        Points points;
        for (int i = 0; i < 30; ++i)
            points.Append({cell(random) * 1.0, cell(random) * 1.0, cell(random) * 1.0});
        Points sorted = points;
        sorted.Sort();
        for (int i = 0; i < 30; ++i) {
            const Point3d p(cell(random), cell(random), cell(random));
            const int plain = points.FindPoint(p, false), bisected = sorted.FindPoint(p, false);
            ASSERT_EQ(plain < 0, bisected < 0);
            ASSERT_TRUE(bisected < 0 || Equals(p, sorted[bisected]));
            const Point3d a = points[points.FindPoint(p, true)],
                          b = sorted[sorted.FindPoint(p, true)];
            ASSERT_EQ(Distance(p, a), Distance(p, b));
        }
    }
}

TEST(Point3dArray, SortsByDistanceAndIsNotSortedThen) {
    Points points = Make({{3, 0, 0}, {0, 0, 1}, {0, 2, 0}, {0, 1, 0}});
    points.Sort();
    points.SortByDistance({0, 0, 0});
    EXPECT_FALSE(points.sorted);
    ExpectPoint({0, 0, 1}, points[0]);
    ExpectPoint({0, 1, 0}, points[1]);
    ExpectPoint({0, 2, 0}, points[2]);
    ExpectPoint({3, 0, 0}, points[3]);
    Points empty;
    empty.SortByDistance({1, 2, 3});
    EXPECT_EQ(0u, empty.count);
}

}  // namespace
}  // namespace TamLib
