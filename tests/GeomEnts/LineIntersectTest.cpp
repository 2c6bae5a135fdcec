// Line::Intersect and what it rests on: hand-made cases for each class, then whole grids of
// segments against the same decisions in exact integer arithmetic and against orientation tests.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>

#include "GeomEnts/Line.h"

namespace TamLib {
namespace {

const Point3d kOrigin, kFar(25e6, 7e6, 0);

Line At(const Point3d& base, double x1, double y1, double x2, double y2) {
    return {base + Point3d(x1, y1, 0), base + Point3d(x2, y2, 0)};
}

// --- PointOn.

TEST(LinePointOn, IsStrictlyWithinTheTolerance) {
    for (const Point3d& base : {kOrigin, kFar}) {
        const Line east = At(base, 0, 0, 10, 0);
        EXPECT_TRUE(east.PointOn(base + Point3d(5, 0.00009, 99), 0.0001));
        EXPECT_FALSE(east.PointOn(base + Point3d(5, -0.00011, 0), 0.0001));
        EXPECT_TRUE(east.PointOn(base.x + 5, base.y, 0.0001));
        EXPECT_FALSE(east.PointOn(base + Point3d(-1, 0, 0), 0.0001));
        EXPECT_FALSE(east.PointOn(base + Point3d(11, 0, 0), 0.0001));
    }
    // On the limit: tolerance^2 must be above the squared distance, and 0.5 is exact.
    EXPECT_FALSE(Line({0, 0, 0}, {8, 0, 0}).PointOn(4, 0.5, 0.5));
    EXPECT_TRUE(Line({0, 0, 0}, {8, 0, 0}).PointOn(4, std::nextafter(0.5, 0), 0.5));
}

TEST(LinePointOn, ComparesTheToleranceWithTheSquaredLength) {
    // A line of length 0.009 has the square 0.000081, below 0.0001: it counts as its start.
    const Line shortLine({0, 0, 0}, {0.009, 0, 0});
    EXPECT_TRUE(shortLine.PointOn(0.00009, -0.00009, 0.0001));
    EXPECT_FALSE(shortLine.PointOn(0.0045, 0, 0.0001));
    EXPECT_FALSE(shortLine.PointOn(0.009, 0, 0.0001));
    // At 0.0101 it is a line.
    EXPECT_TRUE(Line({0, 0, 0}, {0.0101, 0, 0}).PointOn(0.005, 0, 0.0001));
}

TEST(LinePointOn, MixesParametersAndLengthsBeyondTheEnds) {
    // Length 100: an overshoot of 0.005 is 0.00005 as a parameter, but 0.005 in length: refused.
    const Line longLine({0, 0, 0}, {100, 0, 0});
    EXPECT_FALSE(longLine.PointOn(100.005, 0, 0.0001));
    EXPECT_TRUE(longLine.PointOn(100.00009, 0, 0.0001));
    EXPECT_TRUE(longLine.PointOn(-0.00009, 0, 0.0001));
    EXPECT_FALSE(longLine.PointOn(-0.00011, 0, 0.0001));
    // Length 0.1: an overshoot of 0.00005 in length is 0.0005 as a parameter: refused, though near.
    const Line tenth({0, 0, 0}, {0.1, 0, 0});
    EXPECT_FALSE(tenth.PointOn(0.10005, 0, 0.0001));
    EXPECT_FALSE(tenth.PointOn(-0.00005, 0, 0.0001));
    EXPECT_TRUE(tenth.PointOn(0.100005, 0, 0.0001));
}

// --- IsBelow.

struct BelowCase {
    const char* what;
    double x1, y1, x2, y2, px, py;
    int plain, touching;
};

TEST(LineIsBelow, TableOfCases) {
    const BelowCase cases[] = {
        {"under the middle", 0, 0, 10, 10, 4, 6, 1, 1},
        {"the other way round", 10, 10, 0, 0, 4, 6, 1, 1},
        {"over the point", 0, 0, 10, 10, 4, 2, 0, 0},
        {"beside to the left", 0, 0, 10, 10, -1, 6, 0, 0},
        {"beside to the right", 0, 0, 10, 10, 11, 60, 0, 0},
        {"under, at the span's left end", 0, 0, 10, 10, 0, 6, 1, 1},
        {"under, at the span's right end", 0, 0, 10, 10, 10, 16, 1, 1},
        {"on the line", 0, 0, 10, 10, 4, 4, 0, 2},
        {"a little above the line", 0, 0, 10, 10, 4, 4.00009, 1, 2},
        {"a little below the line", 0, 0, 10, 10, 4, 3.99991, 0, 2},
        {"above by more", 0, 0, 10, 10, 4, 4.00011, 1, 1},
        {"at the start", 0, 0, 10, 10, 0, 0, 0, 2},
        {"at the end", 0, 0, 10, 10, 10, 10, 0, 2},
        {"near the start, outside", 0, 0, 10, 10, -0.00009, 0.00009, 0, 2},
        {"not near enough", 0, 0, 10, 10, -0.00011, 0, 0, 0},
        {"on the line extended", 0, 0, 10, 10, 12, 12, 0, 0},
        {"vertical, through its middle", 5, 0, 5, 10, 5, 4, 0, 2},
        {"vertical, near its middle", 5, 0, 5, 10, 5.00009, 4, 0, 2},
        {"vertical, not near enough", 5, 0, 5, 10, 5.00011, 4, 0, 0},
        {"vertical, above it", 5, 0, 5, 10, 5, 12, 0, 0},
        {"nearly vertical is vertical", 5, 0, 5.00009, 10, 5, 12, 0, 0},
        {"steep is not vertical", 5, 0, 5.00011, 10, 5.00005, 12, 1, 1},
    };
    for (const BelowCase& c : cases) {
        const Line line({c.x1, c.y1, 0}, {c.x2, c.y2, 0});
        Point3d foot;
        EXPECT_EQ(c.plain, line.IsBelow({c.px, c.py, 0}, foot, false)) << c.what;
        EXPECT_EQ(c.touching, line.IsBelow({c.px, c.py, 0}, foot, true)) << c.what;
    }
}

TEST(LineIsBelow, FootStartsAsThePointAndGetsTheHeightOfTheLine) {
    Point3d foot;
    EXPECT_EQ(1, Line({0, 0, 0}, {10, 5, 0}).IsBelow({4, 9, 77}, foot, false));
    EXPECT_EQ(4.0, foot.x);
    EXPECT_EQ(2.0, foot.y);
    EXPECT_EQ(77.0, foot.z);
    EXPECT_EQ(0, Line({5, 0, 0}, {5, 5, 0}).IsBelow({4, 9, 77}, foot, true));
    EXPECT_EQ(9.0, foot.y);
}

TEST(LineIsBelow, SpansWithinATenBillionthCountAtTheirEnds) {
    // Ends 0.0001 apart in x make it not vertical; a vertical line shorter than 1e-10 has a span
    // that both ends reach. Its start test would answer first, so the point stands off in x and y.
    Point3d foot;
    EXPECT_EQ(2, Line({5, 3, 0}, {5, 3, 0}).IsBelow({5, 3.00009, 0}, foot, true));
    EXPECT_EQ(0, Line({5, 3, 0}, {5, 3, 0}).IsBelow({5, 3.00011, 0}, foot, true));
}

TEST(LineIsBelow, ExactVariantHasNoDistanceTolerance) {
    Point3d foot;
    const Line line({0, 0, 0}, {8, 8, 0});
    EXPECT_EQ(2, line.IsBelowExact({4, 4, 0}, foot));
    EXPECT_EQ(1, line.IsBelowExact({4, 4.00001, 0}, foot));
    EXPECT_EQ(0, line.IsBelowExact({4, 3.99999, 0}, foot));
    EXPECT_EQ(2, line.IsBelowExact({0, 0, 0}, foot));
    EXPECT_EQ(2, line.IsBelowExact({8, 8, 0}, foot));
    EXPECT_EQ(0, line.IsBelowExact({-0.00001, 5, 0}, foot));
    const Line vertical({5, 0, 0}, {5, 10, 0});
    EXPECT_EQ(2, vertical.IsBelowExact({5, 4, 0}, foot));
    EXPECT_EQ(0, vertical.IsBelowExact({5.00001, 4, 0}, foot));
    EXPECT_EQ(0, vertical.IsBelowExact({5, 11, 0}, foot));
    // A line whose ends differ in x at all is not vertical here.
    EXPECT_EQ(1, Line({5, 0, 0}, {5.00001, 10, 0}).IsBelowExact({5.000005, 12, 0}, foot));
    // The span keeps its 1e-10: both ends of so short a line are within it.
    EXPECT_EQ(1, Line({5, 0, 0}, {5 + 2e-11, 0, 0}).IsBelowExact({5 + 5e-11, 1, 0}, foot));
    EXPECT_EQ(0, Line({5, 0, 0}, {5 + 2e-11, 0, 0}).IsBelowExact({5 + 2e-10, 1, 0}, foot));
}

TEST(LineIsBelow, EpsilonVariantIsRelativeWithTheSignOfTheCoordinate) {
    Point3d foot;
    const Line line({1, 1, 0}, {8, 8, 0});
    EXPECT_EQ(2, line.IsBelowEpsilon({4, 4, 0}, foot));
    EXPECT_EQ(2, line.IsBelowEpsilon({4, std::nextafter(4.0, 5.0), 0}, foot));
    EXPECT_EQ(1, line.IsBelowEpsilon({4, 4 + 1e-13, 0}, foot));
    EXPECT_EQ(0, line.IsBelowEpsilon({4, 4 - 1e-13, 0}, foot));
    // Spans are strict: at the end of the span there is nothing below.
    EXPECT_EQ(0, line.IsBelowEpsilon({1, 5, 0}, foot));
    EXPECT_EQ(1, line.IsBelowEpsilon({1 + 1e-12, 5, 0}, foot));
    // A negative coordinate gives a tolerance below 0, so that not even the same value is the same.
    const Line negative({-8, -8, 0}, {-1, -1, 0});
    EXPECT_EQ(0, negative.IsBelowEpsilon({-4, -4, 0}, foot));
    EXPECT_EQ(0, negative.IsBelowEpsilon({-8, -8, 0}, foot));
    EXPECT_EQ(1, negative.IsBelowEpsilon({-4, -3, 0}, foot));
    // At 0 the tolerance is the small constant alone.
    EXPECT_EQ(2, Line({0, 0, 0}, {0, 4, 0}).IsBelowEpsilon({2e-16, 2, 0}, foot));
    EXPECT_EQ(0, Line({0, 0, 0}, {0, 4, 0}).IsBelowEpsilon({3e-16, 2, 0}, foot));
}

// --- Intersect: the classes by hand. Expected codes: line-other and other-line, each without and
// with touches.

struct PairCase {
    const char* what;
    double a[4], b[4];
    int plain, touch, plainSwapped, touchSwapped;
};

// clang-format off
const PairCase kPairs[] = {
    // Neither vertical.
    {"crossing", {0, 0, 10, 10}, {0, 10, 10, 0}, 1, 1, 1, 1},
    {"crossing, one level", {0, 5, 10, 5}, {2, 0, 4, 9}, 1, 1, 1, 1},
    {"apart", {0, 0, 4, 4}, {6, 0, 10, 4}, 0, 0, 0, 0},
    {"lines would cross beyond an end", {0, 0, 4, 4}, {0, 10, 10, 0}, 0, 0, 0, 0},
    {"T: end on the middle", {0, 0, 10, 0}, {5, 0, 7, 8}, 1, 2, 1, 2},
    {"T: end near the middle", {0, 0, 10, 0}, {5, 0.00009, 7, 8}, 0, 2, 0, 2},
    {"T: end just too far", {0, 0, 10, 0}, {5, 0.00011, 7, 8}, 0, 0, 0, 0},
    {"T: end reaches through", {0, 0, 10, 0}, {5, -0.00009, 7, 8}, 1, 2, 1, 2},
    {"L: a common end", {0, 0, 10, 0}, {10, 0, 14, 8}, 1, 2, 1, 2},
    {"parallel, apart", {0, 0, 10, 10}, {0, 2, 10, 12}, 0, 0, 0, 0},
    {"parallel, 0.00005 apart", {0, 0, 10, 0}, {2, 0.00005, 8, 0.00005}, 1, 2, 1, 2},
    {"parallel, 0.0002 apart", {0, 0, 10, 0}, {2, 0.0002, 8, 0.0002}, 0, 0, 0, 0},
    {"collinear, overlapping", {0, 0, 10, 10}, {5, 5, 15, 15}, 1, 2, 1, 2},
    {"collinear, one inside the other", {0, 0, 10, 10}, {2, 2, 4, 4}, 1, 2, 1, 2},
    {"collinear, meeting at an end", {0, 0, 4, 4}, {4, 4, 9, 9}, 1, 2, 1, 2},
    {"collinear, apart", {0, 0, 4, 4}, {5, 5, 9, 9}, 0, 0, 0, 0},
    {"the same", {0, 0, 4, 4}, {0, 0, 4, 4}, 1, 2, 1, 2},
    {"the same, reversed", {0, 0, 4, 4}, {4, 4, 0, 0}, 1, 2, 1, 2},
    // One vertical (first), then with the roles exchanged.
    {"vertical crossing", {5, -5, 5, 5}, {0, 0, 10, 2}, 1, 1, 1, 1},
    {"vertical crossing, downwards", {5, 5, 5, -5}, {0, 0, 10, 2}, 1, 1, 1, 1},
    {"vertical, all above", {5, 2, 5, 9}, {0, 0, 10, 2}, 0, 0, 0, 0},
    {"vertical, all below", {5, -9, 5, 0}, {0, 0, 10, 2}, 0, 0, 0, 0},
    {"vertical, beside", {11, -5, 11, 5}, {0, 0, 10, 2}, 0, 0, 0, 0},
    {"vertical, lower end on the other", {5, 0, 5, 9}, {0, 0, 10, 0}, 1, 2, 1, 2},
    {"vertical, upper end on the other", {5, -9, 5, 0}, {0, 0, 10, 0}, 0, 2, 0, 2},
    {"vertical, lower end near the other", {5, 0.00009, 5, 9}, {0, 0, 10, 0}, 0, 2, 0, 2},
    {"vertical, lower end within 1e-8", {5, 0.9e-8, 5, 9}, {0, 0, 10, 0}, 1, 2, 1, 2},
    {"vertical, lower end beyond 1e-8", {5, 1.1e-8, 5, 9}, {0, 0, 10, 0}, 0, 2, 0, 2},
    {"vertical, upper end just above the other", {5, -9, 5, 0.00005}, {0, 0, 10, 0}, 1, 2, 0, 2},
    {"other's end on the vertical's middle", {0, 0, 0, 10}, {-5, 5, 0, 5}, 1, 2, 1, 1},
    {"other's end at the vertical's top", {0, 0, 0, 10}, {-5, 10, 0, 10}, 0, 2, 0, 2},
    {"other's end at the vertical's foot", {0, 0, 0, 10}, {-5, 0, 0, 0}, 1, 2, 1, 2},
    {"other's end straight below the vertical", {0, 1, 0, 4}, {0, 0, 1, 3}, 0, 2, 0, 0},
    {"other passes below the vertical", {0, 1, 0, 4}, {-1, 0, 1, 0}, 0, 0, 0, 0},
    {"near vertical, a slope", {5, -5, 5.00000002, 5}, {0, 0, 10, 2}, 1, 1, 1, 1},
    {"near vertical, within 1e-8", {5, -5, 5.000000009, 5}, {0, 0, 10, 2}, 1, 1, 1, 1},
    // Both vertical: only the top of the first on the second counts, and only with touch.
    {"verticals, first above", {0, 5, 0, 15}, {0, 0, 0, 10}, 0, 0, 0, 2},
    {"verticals, 0..10 and 5..15", {0, 0, 0, 10}, {0, 5, 0, 15}, 0, 2, 0, 0},
    {"verticals, 0..10 and 2..8", {0, 0, 0, 10}, {0, 2, 0, 8}, 0, 0, 0, 2},
    {"verticals, 0..10 and -5..5", {0, 0, 0, 10}, {0, -5, 0, 5}, 0, 0, 0, 2},
    {"verticals, end to end", {0, 0, 0, 10}, {0, 10, 0, 20}, 0, 2, 0, 0},
    {"verticals, apart in y", {0, 0, 0, 10}, {0, 11, 0, 20}, 0, 0, 0, 0},
    {"verticals, side by side", {0, 0, 0, 10}, {1, 0, 1, 10}, 0, 0, 0, 0},
    {"verticals, the same", {0, 0, 0, 10}, {0, 0, 0, 10}, 0, 2, 0, 2},
    // Without length: such a line is vertical.
    {"a point on a line", {5, 0, 5, 0}, {0, 0, 10, 0}, 0, 2, 0, 2},
    {"a point above a line", {5, 1, 5, 1}, {0, 0, 10, 0}, 0, 0, 0, 0},
    {"a point at a line's end", {10, 0, 10, 0}, {0, 0, 10, 0}, 0, 2, 0, 2},
};
// clang-format on

TEST(LineIntersect, TableOfClassesAtTheOriginAndFarAway) {
    for (const Point3d& base : {kOrigin, kFar}) {
        for (const PairCase& c : kPairs) {
            // Differences of 1e-8 do not survive at map coordinates.
            const std::string what = c.what;
            if (base.x != 0 && what.find("1e-8") != std::string::npos) continue;
            const Line a = At(base, c.a[0], c.a[1], c.a[2], c.a[3]);
            const Line b = At(base, c.b[0], c.b[1], c.b[2], c.b[3]);
            Point3d p;
            const std::string where = what + (base.x != 0 ? ", far away" : "");
            EXPECT_EQ(c.plain, a.Intersect(b, p, false)) << where;
            EXPECT_EQ(c.touch, a.Intersect(b, p, true)) << where << ", touch";
            EXPECT_EQ(c.plainSwapped, b.Intersect(a, p, false)) << where << ", swapped";
            EXPECT_EQ(c.touchSwapped, b.Intersect(a, p, true)) << where << ", swapped, touch";
        }
    }
}

void ExpectAt(double x, double y, const Line& a, const Line& b, bool touch) {
    Point3d p(0, 0, 55);
    ASSERT_NE(0, a.Intersect(b, p, touch));
    EXPECT_NEAR(x, p.x, 1e-12);
    EXPECT_NEAR(y, p.y, 1e-12);
    EXPECT_EQ(55.0, p.z);  // the height is left alone
}

TEST(LineIntersect, StoresWhereTheyMeet) {
    ExpectAt(5, 5, {{0, 0, 0}, {10, 10, 0}}, {{0, 10, 0}, {10, 0, 0}}, false);
    ExpectAt(5, 1, {{5, -5, 0}, {5, 5, 0}}, {{0, 0, 0}, {10, 2, 0}}, false);
    ExpectAt(5, 1, {{0, 0, 0}, {10, 2, 0}}, {{5, -5, 0}, {5, 5, 0}}, false);
}

TEST(LineIntersect, CollinearOverlapMeetsAtTheLargerOfTheSmallerX) {
    const Line a({0, 0, 0}, {10, 10, 0}), b({-5, -5, 0}, {5, 5, 0});
    ExpectAt(0, 0, a, b, false);
    ExpectAt(0, 0, b, a, false);
    // With touches the first end found on the other line is told instead: b's end.
    ExpectAt(5, 5, a, b, true);
    // Other's start comes first.
    ExpectAt(5, 5, a, {{5, 5, 0}, {15, 15, 0}}, true);
}

TEST(LineIntersect, TouchingEndsAreTriedInOrder) {
    const Line a({0, 0, 0}, {10, 0, 0});
    // All four ends touch: the other's start wins; reversed, the same place is its end.
    ExpectAt(10, 0, a, {{10, 0, 0}, {0, 0, 0}}, true);
    ExpectAt(0, 0, a, {{0, 0, 0}, {10, 0, 0}}, true);
    // Only own ends touch: the start before the end.
    ExpectAt(0, 0, a, {{-5, 0, 0}, {15, 0, 0}}, true);
    // Only the end touches.
    ExpectAt(10, 0, a, {{9, -5, 0}, {11, 5, 0}}, true);
}

TEST(LineIntersect, ParallelResultTakesItsHeightFromTheEndNearX) {
    // 0.00004 apart: the y is that of the line whose end gives x, tested this line first.
    const Line low({0, 0, 0}, {10, 0, 0}), high({3, 0.00004, 0}, {8, 0.00004, 0});
    ExpectAt(3, 0.00004, low, high, false);
    ExpectAt(3, 0.00004, high, low, false);
    // An end within 1e-9 of x is taken, though x is the other line's.
    const Line near({3 + 0.9e-9, 0.00004, 0}, {8, 0.00004, 0});
    const Line apart({3 + 1.1e-9, 0.00004, 0}, {8, 0.00004, 0});
    ExpectAt(3 + 0.9e-9, 0, {{3, 0, 0}, {10, 0, 0}}, near, false);
    ExpectAt(3 + 1.1e-9, 0.00004, {{3, 0, 0}, {10, 0, 0}}, apart, false);
}

TEST(LineIntersect, SlopesBelowAHundredMillionthApartAreParallel) {
    // Crossing at x = 0 with a slope difference of 0.9e-8: parallel, so they meet at the larger
    // left end.
    ExpectAt(-1, 0, {{-1, 0, 0}, {1, 0, 0}}, {{-1, -0.9e-8, 0}, {1, 0.9e-8, 0}}, false);
    // 1.1e-8: a crossing at 0.
    Point3d p;
    EXPECT_EQ(
        1, Line({-1, 0, 0}, {1, 0, 0}).Intersect(Line({-1, -1.1e-8, 0}, {1, 1.1e-8, 0}), p, false));
    EXPECT_NEAR(0.0, p.x, 1e-7);
}

TEST(LineIntersect, AMissMayStillHaveStoredTheCrossingOfTheLines) {
    Point3d p;
    EXPECT_EQ(0, Line({0, 0, 0}, {4, 4, 0}).Intersect(Line({0, 10, 0}, {10, 0, 0}), p, false));
    EXPECT_EQ(5.0, p.x);
    EXPECT_EQ(5.0, p.y);
}

// --- The whole grid against exact arithmetic. Coordinates are small integers, so that every
// difference is 0 or far above the tolerances, and each decision can be made in integers.

struct Cell {
    std::int64_t x, y;
};
struct Segment {
    Cell a, b;
};

std::int64_t Cross(Cell o, Cell p, Cell q) {
    return (p.x - o.x) * (q.y - o.y) - (p.y - o.y) * (q.x - o.x);
}
bool Between(std::int64_t v, std::int64_t a, std::int64_t b) {
    return std::min(a, b) <= v && v <= std::max(a, b);
}
bool OnSegment(const Segment& s, Cell p) {
    return Cross(s.a, s.b, p) == 0 && Between(p.x, s.a.x, s.b.x) && Between(p.y, s.a.y, s.b.y);
}
int Sign(std::int64_t v) {
    return v < 0 ? -1 : (v > 0 ? 1 : 0);
}

// The segments cross in the inside of both.
bool CrossInside(const Segment& s, const Segment& t) {
    return Sign(Cross(s.a, s.b, t.a)) * Sign(Cross(s.a, s.b, t.b)) < 0 &&
           Sign(Cross(t.a, t.b, s.a)) * Sign(Cross(t.a, t.b, s.b)) < 0;
}
bool SomeEndTouches(const Segment& s, const Segment& t) {
    return OnSegment(s, t.a) || OnSegment(s, t.b) || OnSegment(t, s.a) || OnSegment(t, s.b);
}

template <class Visit>
void ForAllPairs(std::int64_t size, const Visit& visit) {
    const std::int64_t cells = size * size, pairs = cells * cells * cells * cells;
    for (std::int64_t n = 0; n < pairs; ++n) {
        const auto cell = [&](std::int64_t k) { return Cell{k % cells % size, k % cells / size}; };
        visit(Segment{cell(n), cell(n / cells)},
              Segment{cell(n / cells / cells), cell(n / cells / cells / cells)});
    }
}

Line ToLine(const Point3d& base, const Segment& s) {
    return At(base, static_cast<double>(s.a.x), static_cast<double>(s.a.y),
              static_cast<double>(s.b.x), static_cast<double>(s.b.y));
}

std::string Text(const Segment& s, const Segment& t) {
    const auto cell = [](Cell c) {
        return "(" + std::to_string(c.x) + "," + std::to_string(c.y) + ")";
    };
    return cell(s.a) + "-" + cell(s.b) + " " + cell(t.a) + "-" + cell(t.b);
}

TEST(LineIntersectGrid, SlantingPairsAgreeWithExactGeometry) {
    for (const Point3d& base : {kOrigin, kFar}) {
        int tested = 0;
        ForAllPairs(4, [&](const Segment& s, const Segment& t) {
            if (s.a.x == s.b.x || t.a.x == t.b.x) return;
            ++tested;
            const Line a = ToLine(base, s), b = ToLine(base, t);
            Point3d p;
            const bool inside = CrossInside(s, t), touching = SomeEndTouches(s, t);
            EXPECT_EQ(touching ? 2 : (inside ? 1 : 0), a.Intersect(b, p, true)) << Text(s, t);
            // At an end the rounding of the crossing decides whether it lies in the span.
            if (touching) return;
            EXPECT_EQ(inside ? 1 : 0, a.Intersect(b, p, false)) << Text(s, t);
        });
        EXPECT_EQ(192 * 192, tested);
    }
}

TEST(LineIntersectGrid, CrossingsLieWhereExactArithmeticPutsThem) {
    ForAllPairs(4, [&](const Segment& s, const Segment& t) {
        if (!CrossInside(s, t)) return;
        Point3d p;
        ASSERT_EQ(1, ToLine(kOrigin, s).Intersect(ToLine(kOrigin, t), p, false)) << Text(s, t);
        // s.a + u (s.b - s.a), with u a ratio of two integers.
        const double upper = static_cast<double>(Cross(t.a, t.b, s.a));
        const double lower = upper - static_cast<double>(Cross(t.a, t.b, s.b));
        const double u = upper / lower;
        EXPECT_NEAR(static_cast<double>(s.a.x) + u * static_cast<double>(s.b.x - s.a.x), p.x,
                    1e-13);
        EXPECT_NEAR(static_cast<double>(s.a.y) + u * static_cast<double>(s.b.y - s.a.y), p.y,
                    1e-13);
    });
}

// Vertical lines follow rules of their own, told here in integers. A rational y is kept as a
// numerator over the width of the line it lies on.
struct Height {
    std::int64_t numerator, width;  // y = numerator / width, width above 0
};

Height HeightOn(const Segment& s, std::int64_t x) {
    const std::int64_t width = s.b.x - s.a.x;
    const std::int64_t numerator = s.a.y * width + (x - s.a.x) * (s.b.y - s.a.y);
    return width > 0 ? Height{numerator, width} : Height{-numerator, -width};
}
int CompareTo(Height h, std::int64_t y) {
    return Sign(h.numerator - y * h.width);
}
bool Same(Cell p, Cell q) {
    return p.x == q.x && p.y == q.y;
}

int ExactBelow(const Segment& s, Cell p, Height& foot, bool touch) {
    foot = {p.y, 1};
    if (touch && (Same(p, s.a) || Same(p, s.b))) return 2;
    if (s.a.x == s.b.x) return touch && p.x == s.a.x && Between(p.y, s.a.y, s.b.y) ? 2 : 0;
    foot = HeightOn(s, p.x);
    const bool inSpan = Between(p.x, s.a.x, s.b.x);
    if (touch && CompareTo(foot, p.y) == 0 && inSpan) return 2;
    return CompareTo(foot, p.y) < 0 && inSpan ? 1 : 0;
}

// `first` says whether the vertical line is the one asked.
int ExactWithVertical(const Segment& vertical, const Segment& other, bool first, bool touch) {
    const std::int64_t low = std::min(vertical.a.y, vertical.b.y);
    const std::int64_t high = std::max(vertical.a.y, vertical.b.y), x = vertical.a.x;
    Height foot{};
    const int code = ExactBelow(other, {x, high}, foot, first ? touch : true);
    const auto footIs = [&](std::int64_t y) { return CompareTo(foot, y) == 0; };
    if (touch && code == 1) {
        if (footIs(low) || footIs(high)) return 2;
        const bool atEnd =
            (x == other.a.x && footIs(other.a.y)) || (x == other.b.x && footIs(other.b.y));
        if (first && atEnd) return 2;
    }
    if (touch && code == 2) return CompareTo(foot, low) >= 0 ? 2 : 0;
    return code == 1 && CompareTo(foot, low) >= 0 ? 1 : 0;
}

TEST(LineIntersectGrid, PairsWithVerticalLinesFollowTheirOwnRules) {
    for (const Point3d& base : {kOrigin, kFar}) {
        int tested = 0;
        ForAllPairs(4, [&](const Segment& s, const Segment& t) {
            const bool first = s.a.x == s.b.x;
            if (!first && t.a.x != t.b.x) return;
            ++tested;
            const Line a = ToLine(base, s), b = ToLine(base, t);
            for (const bool touch : {false, true}) {
                Point3d p;
                const int expected = first ? ExactWithVertical(s, t, true, touch)
                                           : ExactWithVertical(t, s, false, touch);
                EXPECT_EQ(expected, a.Intersect(b, p, touch)) << Text(s, t) << " touch " << touch;
            }
        });
        EXPECT_EQ(256 * 256 - 192 * 192, tested);
    }
}

// --- Intersect3d.

TEST(LineIntersect3d, HeightComesFromTheLineAskedFor) {
    const Line here({0, 0, 10}, {10, 10, 20}), there({0, 10, 100}, {10, 0, 300});
    Point3d p;
    EXPECT_EQ(1, here.Intersect3d(there, p, 0, false));
    EXPECT_DOUBLE_EQ(15.0, p.z);
    EXPECT_EQ(1, here.Intersect3d(there, p, 1, false));
    EXPECT_DOUBLE_EQ(200.0, p.z);
    EXPECT_EQ(1, here.Intersect3d(there, p, 2, false));
    EXPECT_DOUBLE_EQ(107.5, p.z);
    EXPECT_EQ(1, here.Intersect3d(there, p, 3, false));
    EXPECT_EQ(0.0, p.z);
}

TEST(LineIntersect3d, HeightAtTheStartAndOfALineWithoutPlanLengthIsTheFirst) {
    Point3d p;
    EXPECT_EQ(2, Line({0, 0, 7}, {10, 0, 20}).Intersect3d(Line({0, 0, 1}, {5, 5, 2}), p, 0, true));
    EXPECT_EQ(7.0, p.z);
    EXPECT_EQ(2, Line({5, 0, 7}, {5, 0, 20}).Intersect3d(Line({0, 0, 1}, {10, 0, 2}), p, 0, true));
    EXPECT_EQ(7.0, p.z);
}

TEST(LineIntersect3d, HeightIsComputedForAMissToo) {
    // The lines extended cross at (5, 5), half way beyond the first one's end.
    Point3d p;
    EXPECT_EQ(0, Line({0, 0, 0}, {4, 4, 8}).Intersect3d(Line({0, 10, 0}, {10, 0, 0}), p, 0, false));
    EXPECT_NEAR(10.0, p.z, 1e-12);
}

}  // namespace
}  // namespace TamLib
