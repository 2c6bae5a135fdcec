#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "GeomEnts/Box.h"
#include "GeomEnts/Line.h"

namespace TamLib {
namespace {

const Box kUnit(0.0, 1.0, 0.0, 1.0, 0.0, 1.0);

void ExpectLine(const Point3d& start, const Point3d& end, const Line& line) {
    EXPECT_EQ(start.x, line.x1);
    EXPECT_EQ(start.y, line.y1);
    EXPECT_EQ(start.z, line.z1);
    EXPECT_EQ(end.x, line.x2);
    EXPECT_EQ(end.y, line.y2);
    EXPECT_EQ(end.z, line.z2);
}

TEST(LineClipToBox, TrueMeansOutside) {
    Line inside({0.25, 0.25, 0.25}, {0.75, 0.75, 0.75});
    EXPECT_FALSE(inside.ClipToBox(kUnit));
    ExpectLine({0.25, 0.25, 0.25}, {0.75, 0.75, 0.75}, inside);
    Line outside({2, 0.5, 0.5}, {3, 0.5, 0.5});
    EXPECT_TRUE(outside.ClipToBox(kUnit));
    Line cut({-1, 0.5, 0.5}, {3, 0.5, 0.5});
    EXPECT_FALSE(cut.ClipToBox(kUnit));
    ExpectLine({0, 0.5, 0.5}, {1, 0.5, 0.5}, cut);
}

TEST(LineClipToBox, CutsAtEachOfTheSixLimits) {
    const Point3d centre(0.5, 0.5, 0.5);
    const struct {
        Point3d outer, cut;
    } cases[] = {
        {{-0.5, 0.5, 0.5}, {0, 0.5, 0.5}},     {{1.5, 0.5, 0.5}, {1, 0.5, 0.5}},
        {{0.5, -0.5, 0.5}, {0.5, 0, 0.5}},     {{0.5, 1.5, 0.5}, {0.5, 1, 0.5}},
        {{0.5, 0.5, -0.5}, {0.5, 0.5, 0}},     {{0.5, 0.5, 1.5}, {0.5, 0.5, 1}},
        {{-0.5, 0.0, 0.75}, {0, 0.25, 0.625}},
    };
    for (const auto& c : cases) {
        Line in(c.outer, centre), out(centre, c.outer);
        EXPECT_FALSE(in.ClipToBox(kUnit));
        EXPECT_FALSE(out.ClipToBox(kUnit));
        ExpectLine(c.cut, centre, in);
        ExpectLine(centre, c.cut, out);
    }
}

TEST(LineClipToBox, EqualCoordinatesBesideTheBoxAreOutside) {
    for (const Line& line : {Line({2, -5, 0.5}, {2, 5, 0.5}), Line({-5, 2, 0.5}, {5, 2, 0.5}),
                             Line({-5, 0.5, 2}, {5, 0.5, 2})}) {
        Line clipped = line;
        EXPECT_TRUE(clipped.ClipToBox(kUnit));
        ExpectLine(line.Start(), line.End(), clipped);  // told before anything is moved
    }
}

TEST(LineClipToBox, AStartCutOntoTheEndIsOutside) {
    // The start lands on the end, which is itself below the box: the equal y tells.
    Line line({-1, -1, 0.5}, {0, -0.5, 0.5});
    EXPECT_TRUE(line.ClipToBox(kUnit));
    EXPECT_FALSE(std::isnan(line.x1) || std::isnan(line.x2));
}

TEST(LineClipToBox, LinesThatMissACornerAreOutside) {
    Line corner({-1, 0.5, 0.5}, {0.5, -1, 0.5});
    EXPECT_TRUE(corner.ClipToBox(kUnit));
}

TEST(LineClipToBox, AgreesWithSamplingInSpace) {
    std::mt19937 random(2024);
    std::uniform_real_distribution<double> place(-2, 3);
    const auto point = [&] { return Point3d(place(random), place(random), place(random)); };
    int insides = 0;
    for (int i = 0; i < 5000; ++i) {
        const Line line(point(), point());
        Line clipped = line;
        const bool outside = clipped.ClipToBox(kUnit);
        int hits = 0;
        double first = 2, last = -1;
        for (int k = 0; k <= 400; ++k) {
            const double t = k / 400.0;
            if (!kUnit.Contains(line.PointAt(t))) continue;
            ++hits;
            first = std::min(first, t);
            last = std::max(last, t);
        }
        if (hits > 1) {
            ++insides;
            ASSERT_FALSE(outside) << i;
            EXPECT_NEAR(0.0, Distance(clipped.Start(), line.PointAt(first)), line.Length() / 390);
            EXPECT_NEAR(0.0, Distance(clipped.End(), line.PointAt(last)), line.Length() / 390);
        } else if (!outside) {
            // A corner may be cut off between two samples, no more.
            EXPECT_LT(clipped.Length(), line.Length() / 190) << i;
        }
    }
    EXPECT_GT(insides, 500);
}

TEST(LineIntersectsBox2d, TableOfCases) {
    const Box box(0.0, 10.0, 0.0, 4.0, 0.0, 0.0);
    const struct {
        const char* what;
        double x1, y1, x2, y2;
        bool expected;
    } cases[] = {
        {"inside", 1, 1, 2, 2, true},
        {"one end inside", 1, 1, 20, 20, true},
        {"an end on the border", 10, 2, 20, 2, true},
        {"left of it", -5, 1, -1, 3, false},
        {"right of it", 11, 1, 12, 3, false},
        {"below it", 1, -5, 3, -1, false},
        {"above it", 1, 5, 3, 9, false},
        {"across it level", -5, 2, 15, 2, true},
        {"across it level, ends exchanged", 15, 2, -5, 2, true},
        {"across it upright", 5, -5, 5, 15, true},
        {"across it upright, ends exchanged", 5, 15, 5, -5, true},
        {"slanting across both sides", -5, -1, 15, 5, true},
        {"cutting the corner", -1, 3, 2, 6, true},
        {"at the corner", -1, 3, 1, 5, true},
        {"beside the corner", -1, 3.5, 0.4, 5, false},
        {"cutting the lower right corner", 9, -1, 11, 1, true},
        {"missing the lower right corner", 9.5, -1, 12, 1, false},
        {"a point inside", 5, 2, 5, 2, true},
        {"a point outside", 15, 2, 15, 2, false},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.expected, Line({c.x1, c.y1, 99}, {c.x2, c.y2, -99}).IntersectsBox2d(box))
            << c.what;
    }
}

TEST(LineIntersectsBox2d, ComparesInDoubleWithTheFloatLimits) {
    const Box box(0.0, 1.0, 0.0, 1.0, 0.0, 0.0);
    // A hair outside in double, the same float as the limit: outside here.
    const double outside = std::nextafter(1.0, 2.0);
    EXPECT_FALSE(Line({outside, 0.5, 0}, {2, 0.5, 0}).IntersectsBox2d(box));
    EXPECT_TRUE(Line({1.0, 0.5, 0}, {2, 0.5, 0}).IntersectsBox2d(box));
}

TEST(LineIntersectsBox2d, AgreesWithClipping) {
    std::mt19937 random(5);
    std::uniform_real_distribution<double> place(-2, 3);
    for (int i = 0; i < 20000; ++i) {
        const Line line({place(random), place(random), 0.5}, {place(random), place(random), 0.5});
        Line clipped = line;
        EXPECT_EQ(!clipped.ClipToBox(kUnit), line.IntersectsBox2d(kUnit)) << i;
    }
}

}  // namespace
}  // namespace TamLib
