// PointData: nearest pairs, neighbours, heights and profiles, against brute force and the plain
// loops.
#include "GeomStructs/PointData.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "GeomStructs/PolyLine.h"
#include "tam/TamExceptions.h"

namespace TamLib {
namespace {

const Point3d kOrigin, kFar(25e6, 7e6, 0);

PointData Set(std::initializer_list<Point3d> points) {
    PointData set;
    for (const Point3d& p : points) set.Append(p);
    return set;
}

// On a grid of `cells` places a side, or scattered with 0.
PointData Random(int n, const Point3d& base, int cells, unsigned seed) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> place(0, 100);
    PointData set;
    for (int i = 0; i < n; ++i) {
        Point3d p(place(random), place(random), place(random));
        if (cells > 0) {
            p = Point3d(std::floor(p.x * cells / 100), std::floor(p.y * cells / 100),
                        std::floor(p.z * cells / 100));
        }
        set.Append(base + p);
    }
    return set;
}

bool Same(const Point3d& a, const Point3d& b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

// --- The set.

TEST(PointData, IsAPointArrayThatGrowsByItsCapacity) {
    EXPECT_EQ(sizeof(Point3dArrayBase<Point3d>), sizeof(PointData));
    const PointData empty, five(5), many(100);
    EXPECT_EQ(0u, empty.count);
    EXPECT_EQ(0u, empty.capacity);
    EXPECT_EQ(5u, empty.increment);
    EXPECT_EQ(5u, five.increment);
    EXPECT_EQ(100u, many.increment);
    EXPECT_EQ(100u, many.capacity);
    EXPECT_TRUE(many.bitwise);
    EXPECT_EQ(&Point3d::CompareArray, many.compare);
}

// --- The nearest pair.

struct Pair {
    double distance;
    int i, j;
};

// Over a sorted set, the sweep as it reads.
Pair NearestPlainly(const PointData& set) {
    Pair best = {Distance(set[0], set[1]), 0, 1};
    for (int i = 0; i < static_cast<int>(set.count); ++i) {
        for (int j = i + 1; j < static_cast<int>(set.count); ++j) {
            if (!(set[j].x - set[i].x < best.distance)) break;
            const double d = Distance(set[i], set[j]);
            if (d < best.distance) best = {d, i, j};
        }
    }
    return best;
}

double SmallestOfAll(const PointData& set) {
    double best = 1e300;
    for (std::uint32_t i = 0; i < set.count; ++i)
        for (std::uint32_t j = i + 1; j < set.count; ++j)
            best = std::min(best, Distance(set.data[i], set.data[j]));
    return best;
}

TEST(PointDataMinDist, IsTheSmallestOfAllAndThatOfThePlainSweep) {
    for (const Point3d& base : {kOrigin, kFar}) {
        for (const int cells : {0, 3, 20}) {
            for (unsigned seed = 1; seed < 30; ++seed) {
                PointData set = Random(2 + static_cast<int>(seed) * 3, base, cells, seed);
                const double smallest = SmallestOfAll(set);
                int i = -1, j = -1;
                const double distance = set.MinDist(&i, &j);
                EXPECT_EQ(smallest, distance);
                const Pair plain = NearestPlainly(set);
                EXPECT_EQ(plain.distance, distance);
                EXPECT_EQ(plain.i, i);
                EXPECT_EQ(plain.j, j);
                EXPECT_EQ(distance, Distance(set[i], set[j]));
            }
        }
    }
}

TEST(PointDataMinDist, SortsTheSetThroughItsTable) {
    struct Counting : PointData {
        int sorts = 0;
        void Sort() override {
            ++sorts;
            PointData::Sort();
        }
    } set;
    for (const double x : {9.0, 1.0, 5.0, 4.5}) set.Append({x, 0, 0});
    int i = -1, j = -1;
    EXPECT_EQ(0.5, set.MinDist(&i, &j));
    EXPECT_EQ(1, set.sorts);
    EXPECT_TRUE(set.sorted);
    EXPECT_EQ(1, i);
    EXPECT_EQ(2, j);
    EXPECT_EQ(0.5, set.MinDist(nullptr, nullptr));
}

TEST(PointDataMinDist, IsInSpaceAndKeepsTheFirstOfEquals) {
    PointData set = Set({{0, 0, 0}, {3, 4, 12}, {20, 0, 0}});
    EXPECT_EQ(13.0, set.MinDist(nullptr, nullptr));
    PointData row = Set({{0, 0, 0}, {2, 0, 0}, {4, 0, 0}, {6, 0, 0}});
    int i = -1, j = -1;
    EXPECT_EQ(2.0, row.MinDist(&i, &j));
    EXPECT_EQ(0, i);
    EXPECT_EQ(1, j);
    PointData twice = Set({{7, 7, 7}, {1, 1, 1}, {7, 7, 7}});
    EXPECT_EQ(0.0, twice.MinDist(&i, &j));
    EXPECT_EQ(1, i);
    EXPECT_EQ(2, j);
}

TEST(PointDataMinDist, BelowTwoPointsItIsRefused) {
    for (PointData set : {Set({}), Set({{1, 2, 3}})}) {
        int i = 77, j = 77;
        try {
            set.MinDist(&i, &j);
            FAIL() << "nothing thrown";
        } catch (const TamExpInternal& e) {
            EXPECT_STREQ(L"Amount of Points too small in PointData::MinDist()\n", e.message);
            EXPECT_STREQ(L"GeomStructs/PointData", e.file);
        }
        EXPECT_EQ(77, i);
        EXPECT_TRUE(set.sorted);  // it was sorted before
    }
}

// --- Neighbours.

std::vector<double> SmallestSquares(const PointData& set, const Point3d& from, std::size_t n) {
    std::vector<double> squares;
    for (const Point3d& p : set) squares.push_back(SquaredDistance(from, p));
    std::sort(squares.begin(), squares.end());
    squares.resize(std::min(n, squares.size()));
    return squares;
}

TEST(PointDataNearest, AreTheNearestOfAll) {
    for (const Point3d& base : {kOrigin, kFar}) {
        for (const int cells : {0, 4}) {
            PointData set = Random(300, base, cells, 11);
            set.Sort();
            const PointData from = Random(60, base + Point3d(-20, -20, 0), 0, 12);
            for (const Point3d& p : from) {
                const Point3d stretched = base + Point3d((p.x - base.x) * 1.5, p.y - base.y, p.z);
                for (const int n : {1, 2, 5, 17, 300}) {
                    Array<Point3d> points;
                    Array<double> squares;
                    set.NearestPoints(n, stretched, points, squares);
                    ASSERT_EQ(static_cast<std::uint32_t>(n), points.count);
                    ASSERT_EQ(points.count, squares.count);
                    std::vector<double> found;
                    for (std::uint32_t i = 0; i < points.count; ++i) {
                        EXPECT_EQ(SquaredDistance(stretched, points.data[i]), squares.data[i]);
                        found.push_back(squares.data[i]);
                    }
                    std::sort(found.begin(), found.end());
                    EXPECT_EQ(SmallestSquares(set, stretched, static_cast<std::size_t>(n)), found);
                }
            }
        }
    }
}

TEST(PointDataNearest, AreFoundFromBeforeAndBehindAll) {
    PointData set = Set({{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {3, 0, 0}, {4, 0, 0}});
    set.Sort();
    Array<Point3d> points;
    Array<double> squares;
    // Behind all the search begins at the front, and the list fills from there.
    set.NearestPoints(2, {99, 0, 0}, points, squares);
    ASSERT_EQ(2u, points.count);
    EXPECT_EQ(7.0, points[0].x + points[1].x);
    set.NearestPoints(2, {-99, 0, 0}, points, squares);
    EXPECT_EQ(1.0, points[0].x + points[1].x);
    // From the last one, fewer follow than are wanted.
    set.NearestPoints(3, {4, 0, 0}, points, squares);
    ASSERT_EQ(3u, points.count);
    EXPECT_EQ(9.0, points[0].x + points[1].x + points[2].x);
}

TEST(PointDataNearest, CountIsCutToTheSetAndListsAreEmptiedFirst) {
    PointData set = Set({{0, 0, 0}, {1, 0, 0}});
    set.Sort();
    Array<Point3d> points;
    Array<double> squares;
    set.NearestPoints(9, {0.2, 0, 0}, points, squares);
    EXPECT_EQ(2u, points.count);
    EXPECT_EQ(2u, squares.count);
    for (const int none : {0, -3}) {
        set.NearestPoints(9, {0.2, 0, 0}, points, squares);
        set.NearestPoints(none, {0.2, 0, 0}, points, squares);
        EXPECT_EQ(0u, points.count);
        EXPECT_EQ(0u, squares.count);
    }
    PointData().NearestPoints(3, {0, 0, 0}, points, squares);
    EXPECT_EQ(0u, points.count);
}

TEST(PointDataNearest, OnlyANearerPointTakesTheWorstsPlace) {
    // Both at distance 1: the one met first stays.
    PointData set = Set({{-1, 0, 0}, {1, 0, 0}});
    set.Sort();
    Array<Point3d> points;
    Array<double> squares;
    set.NearestPoints(1, {0, 0, 0}, points, squares);
    EXPECT_EQ(-1.0, points[0].x);
    // A gap in x whose square equals the worst does not end the search yet.
    PointData far = Set({{0, 3, 0}, {0, 4, 0}, {3, 0, 0}, {2.999, 0, 0}});
    far.Sort();
    far.NearestPoints(1, {0, 0, 0}, points, squares);
    EXPECT_EQ(2.999, points[0].x);
}

// --- Heights.

TEST(PointDataHeight, AtAPointItIsThatPointsOwn) {
    for (const Point3d& base : {kOrigin, kFar}) {
        PointData set = Random(200, base, 0, 21);
        set.Sort();
        for (const Point3d& p : set) EXPECT_EQ(p.z, set.InterpolateZ(p, 5));
    }
}

TEST(PointDataHeight, TheShortcutIsForSquaresStrictlyBelowATenThousandth) {
    for (const Point3d& base : {kOrigin, kFar}) {
        PointData set = Set({base + Point3d(0, 0, 5), base + Point3d(10, 0, 7)});
        set.Sort();
        EXPECT_EQ(5.0, set.InterpolateZ(base + Point3d(0.0099, 0, 5), 2));
        EXPECT_NE(5.0, set.InterpolateZ(base + Point3d(0.0101, 0, 5), 2));
    }
    PointData set = Set({{0, 0, 5}, {10, 0, 7}});
    set.Sort();
    const double limit = std::sqrt(0.0001);  // its square is 0.0001 as written
    ASSERT_EQ(0.0001, limit * limit);
    EXPECT_NE(5.0, set.InterpolateZ({limit, 0, 5}, 2));
    EXPECT_EQ(5.0, set.InterpolateZ({std::nextafter(limit, 0), 0, 5}, 2));
}

TEST(PointDataHeight, WeighsByTheInverseSquareInSpace) {
    PointData set = Set({{0, 0, 10}, {3, 0, 20}});
    set.Sort();
    // At z 10: squares 1 and 4 + 100.
    EXPECT_DOUBLE_EQ((10 / 1.0 + 20 / 104.0) / (1 / 1.0 + 1 / 104.0),
                     set.InterpolateZ({1, 0, 10}, 2));
    // Intended: the height asked at takes part.
    EXPECT_DOUBLE_EQ((10 / 101.0 + 20 / 4.0) / (1 / 101.0 + 1 / 4.0),
                     set.InterpolateZ({1, 0, 20}, 2));
    // One neighbour gives its height.
    EXPECT_DOUBLE_EQ(10.0, set.InterpolateZ({1, 0, 10}, 1));
}

TEST(PointDataHeight, ACountBeyondTheSetUsesAllPoints) {
    PointData set = Random(20, kOrigin, 0, 5);
    set.Sort();
    const Point3d p(50, 50, 50);
    double heights = 0, weights = 0;
    for (const Point3d& q : set) {
        heights += q.z / SquaredDistance(p, q);
        weights += 1 / SquaredDistance(p, q);
    }
    EXPECT_NEAR(heights / weights, set.InterpolateZ(p, 1000), 1e-9);
    EXPECT_EQ(set.InterpolateZ(p, 20), set.InterpolateZ(p, 1000));
    EXPECT_EQ(0.0, PointData().InterpolateZ(p, 5));
    EXPECT_EQ(0.0, set.InterpolateZ(p, 0));
}

// --- Profiles.

TEST(PointDataProfile, StartsWithTheStartAndGoesToTheEndInSteps) {
    for (const Point3d& base : {kOrigin, kFar}) {
        PointData set = Set({base + Point3d(0, 0, 1), base + Point3d(8, 4, 3)});
        set.Sort();
        PolyLine line;
        line.Append({1, 1, 1});  // is taken away
        // The height of the end has no say, or it would never be reached.
        set.Profile(base + Point3d(0, 0, 9), base + Point3d(8, 4, -50), 4, &line, 2);
        ASSERT_EQ(6u, line.count);
        EXPECT_TRUE(Same(base + Point3d(0, 0, 9), line[0]));
        for (int i = 0; i <= 4; ++i) {
            const Point3d& p = line[i + 1];
            EXPECT_EQ(base.x + 2 * i, p.x);
            EXPECT_EQ(base.y + i, p.y);
            EXPECT_EQ(set.InterpolateZ({p.x, p.y, 9}, 2), p.z);
        }
    }
}

TEST(PointDataProfile, HasItsPointsHoweverTheStepsAddUp) {
    PointData set = Set({{25e6, 7e6, 1}});
    set.Sort();
    PolyLine line;
    // Steps of a seventh of a metre at map coordinates drift off the end.
    set.Profile({25e6, 7e6, 0}, {25e6 + 12345.678, 7e6 + 3, 0}, 86419, &line, 1);
    EXPECT_EQ(86419u + 2, line.count);
    EXPECT_NEAR(25e6 + 12345.678, line[-1].x, 0.01);
    set.Profile({0, 0, 0}, {1, 0, 0}, 10, &line, 1);
    EXPECT_EQ(12u, line.count);
}

TEST(PointDataProfile, EndsWithinAThousandthOfAStepBeyondTheEnd) {
    PointData set = Set({{0, 0, 5}});
    set.Sort();
    PolyLine line;
    // Steps of 0.00101 and 0.00099: the last point is one step before the one beyond the end.
    set.Profile({0, 0, 0}, {0.00404, 0, 0}, 4, &line, 1);
    EXPECT_EQ(6u, line.count);
    set.Profile({0, 0, 0}, {0.00396, 0, 0}, 4, &line, 1);
    EXPECT_EQ(5u, line.count);
}

TEST(PointDataProfile, WithoutStepsOrWayItIsTheStart) {
    PointData set = Set({{0, 0, 5}});
    set.Sort();
    PolyLine line;
    set.Profile({1, 2, 3}, {1, 2, 3}, 4, &line, 1);
    ASSERT_EQ(1u, line.count);
    EXPECT_TRUE(Same({1, 2, 3}, line[0]));
    set.Profile({1, 2, 3}, {5, 2, 3}, -2, &line, 1);
    EXPECT_EQ(1u, line.count);
    // A step of no steps is infinite: the start, twice.
    set.Profile({1, 2, 3}, {5, 3, 3}, 0, &line, 1);
    ASSERT_EQ(2u, line.count);
    EXPECT_NEAR(5.0, line[1].z, 1e-12);
    EXPECT_EQ(1.0, line[1].x);
}

}  // namespace
}  // namespace TamLib
