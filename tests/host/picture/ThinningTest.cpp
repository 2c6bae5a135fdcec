// Paths with fewer vertices against the paths they were.
#include "host/picture/Thinning.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

namespace {

using host::picture::Path;
using host::picture::thinned;

Path pathOf(const std::vector<AcGePoint3d>& points) {
    Path path;
    path.add(points);
    return path;
}

double distance(const AcGePoint3d& p, const AcGePoint3d& a, const AcGePoint3d& b) {
    const double dx = b.x - a.x, dy = b.y - a.y, square = dx * dx + dy * dy;
    const double t =
        square > 0 ? std::clamp(((p.x - a.x) * dx + (p.y - a.y) * dy) / square, 0.0, 1.0) : 0.0;
    return std::hypot(a.x + dx * t - p.x, a.y + dy * t - p.y);
}

double distance(const AcGePoint3d& p, const std::vector<AcGePoint3d>& chain) {
    double least = std::hypot(p.x - chain[0].x, p.y - chain[0].y);
    for (std::size_t i = 0; i + 1 < chain.size(); ++i)
        least = std::min(least, distance(p, chain[i], chain[i + 1]));
    return least;
}

TEST(Thinning, LeavesOutWhatLiesOnTheLineAndKeepsCorners) {
    const Path path = pathOf({{0, 0, 0}, {1, 0.001, 0}, {2, 0, 0}, {3, 0, 0}, {3, 5, 0}});
    const auto points = thinned(path, 0.01).points();
    ASSERT_EQ(points.size(), 3U);
    EXPECT_EQ(points[1].x, 3);
    EXPECT_EQ(points[1].y, 0);
    EXPECT_EQ(points[2].y, 5);
}

TEST(Thinning, KeepsThePointWhereALineTurnsBack) {
    const auto points = thinned(pathOf({{0, 0, 0}, {5, 0, 0}, {2, 0, 0}}), 0.01).points();
    ASSERT_EQ(points.size(), 3U);
    EXPECT_EQ(points[1].x, 5);
}

TEST(Thinning, LeavesShortPathsAndRingsWhatTheyAre) {
    const Path dot = pathOf({{1, 1, 0}, {1, 1, 0}});
    EXPECT_EQ(thinned(dot, 0.01).points().size(), 2U);
    const Path ring = pathOf({{0, 0, 0}, {4, 0, 0}, {4, 4, 0}, {0, 0, 0}});
    EXPECT_EQ(thinned(ring, 0.01).steps(), ring.steps());
    EXPECT_TRUE(thinned(Path(), 0.01).empty());
}

TEST(Thinning, KeepsCurvesThatAreLargerThanTheTolerance) {
    Path path;
    path.moveTo({0, 0, 0});
    path.curveTo({0, 1, 0}, {1, 1, 0}, {1, 0, 0});
    path.curveTo({1, 0.001, 0}, {1.001, 0.001, 0}, {1.001, 0, 0});
    EXPECT_EQ(thinned(path, 0.01).steps(),
              (std::vector<Path::Step>{Path::Step::move, Path::Step::curve, Path::Step::line}));
}

TEST(Thinning, StaysWithinTwiceTheToleranceOfRandomWalks) {
    std::mt19937_64 random(7);
    std::uniform_real_distribution<double> step(-1, 1);
    std::size_t before = 0, after = 0;
    for (int run = 0; run < 300; ++run) {
        const double tolerance = std::pow(10.0, -run % 3);
        const double east = run % 2 == 0 ? 0 : 25496000;
        std::vector<AcGePoint3d> walk{{east, 0, 0}};
        for (int i = 0; i < 200; ++i)
            walk.emplace_back(walk.back().x + step(random), walk.back().y + step(random), 0);
        const auto left = thinned(pathOf(walk), tolerance).points();
        EXPECT_EQ(left.front().x, walk.front().x);
        EXPECT_EQ(left.back().y, walk.back().y);
        for (const AcGePoint3d& point : walk)
            EXPECT_LE(distance(point, left), 2 * tolerance + 1e-8) << run;
        before += walk.size();
        after += left.size();
    }
    EXPECT_LT(after * 2, before * 2 - before / 2);
}

}  // namespace
