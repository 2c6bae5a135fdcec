// LineArray: tidying and splitting.
#include "GeomStructs/LineArray.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "GeomStructs/PolyArray.h"

namespace TamLib {
namespace {

const Point3d kOrigin, kFar(25e6, 7e6, 0);

Line At(const Point3d& base, const Point3d& start, const Point3d& end) {
    return {base + start, base + end};
}

LineArray Lines(std::initializer_list<Line> lines) {
    LineArray array;
    for (const Line& line : lines) array.Append(line);
    return array;
}

bool Same(const Line& a, const Line& b) {
    return a.x1 == b.x1 && a.y1 == b.y1 && a.z1 == b.z1 && a.x2 == b.x2 && a.y2 == b.y2 &&
           a.z2 == b.z2;
}

void ExpectLines(std::initializer_list<Line> expected, const LineArray& lines) {
    ASSERT_EQ(expected.size(), lines.count);
    int i = 0;
    for (const Line& line : expected) {
        const Line& actual = lines[i];
        EXPECT_TRUE(Same(line, actual))
            << i << ": (" << actual.x1 << " " << actual.y1 << " " << actual.z1 << ")-(" << actual.x2
            << " " << actual.y2 << " " << actual.z2 << ")";
        EXPECT_EQ(1, actual.valid);
        ++i;
    }
}

// --- The array.

TEST(LineArray, GrowsByItsCapacity) {
    const LineArray usual, few(3), many(40), none(0), negative(-7);
    EXPECT_EQ(10u, usual.capacity);
    EXPECT_EQ(10u, usual.increment);
    EXPECT_EQ(3u, few.capacity);
    EXPECT_EQ(5u, few.increment);
    EXPECT_EQ(40u, many.capacity);
    EXPECT_EQ(40u, many.increment);
    EXPECT_EQ(0u, none.capacity);
    EXPECT_EQ(5u, none.increment);
    EXPECT_EQ(0u, negative.capacity);
}

TEST(LineArray, HasThreeUnusedFieldsThatAreCopied) {
    EXPECT_EQ(sizeof(Array<Line>) + 24, sizeof(LineArray));
    LineArray lines = Lines({{{1, 2, 3}, {4, 5, 6}}});
    EXPECT_EQ(0u, lines.unused1 + lines.unused2 + lines.unused3);
    lines.unused1 = 1;
    lines.unused2 = 2;
    lines.unused3 = 3;
    const LineArray copy(lines);
    LineArray assigned;
    assigned = lines;
    for (const LineArray* other : {&copy, static_cast<const LineArray*>(&assigned)}) {
        EXPECT_EQ(1u, other->unused1);
        EXPECT_EQ(2u, other->unused2);
        EXPECT_EQ(3u, other->unused3);
        ExpectLines({{{1, 2, 3}, {4, 5, 6}}}, *other);
    }
    lines.Tidy(true, true, true);
    EXPECT_EQ(2u, lines.unused2);
}

TEST(LineArray, CopiesAreLinesWithATableOfTheirOwn) {
    const LineArray copy(Lines({{{0, 0, 0}, {3, 4, 12}}}));
    EXPECT_EQ(13.0, copy[0].Length());
    LineArray longer;
    longer.Set(30, Line({0, 0, 0}, {3, 4, 0}));
    EXPECT_EQ(5.0, longer[30].Length());
}

// --- Tidy.

TEST(LineArrayTidy, DropsLinesWithoutLength) {
    for (const Point3d& base : {kOrigin, kFar}) {
        const double below = 0.00009, above = 0.00011;
        const auto count = [&](const Point3d& end, bool planar) {
            LineArray lines = Lines({At(base, {0, 0, 0}, end)});
            lines.Tidy(false, planar, true);
            return lines.count;
        };
        for (const bool planar : {false, true}) {
            EXPECT_EQ(0u, count({below, -below, below}, planar));
            EXPECT_EQ(1u, count({above, 0, 0}, planar));
            EXPECT_EQ(1u, count({0, -above, 0}, planar));
        }
        EXPECT_EQ(1u, count({0, 0, above}, false));
        EXPECT_EQ(0u, count({0, 0, above}, true));
    }
    LineArray limit = Lines({{{0, 0, 0}, {0.0001, 0, 0}}});
    limit.Tidy(false, true, true);
    EXPECT_EQ(1u, limit.count);  // strictly below
    limit.Tidy(false, true, false);
    LineArray kept = Lines({{{1, 1, 1}, {1, 1, 1}}});
    kept.Tidy(true, true, false);
    EXPECT_EQ(1u, kept.count);  // only when asked for
}

TEST(LineArrayTidy, EqualCoordinatesAreEqualAlsoWhereTheyHaveNoDifference) {
    const double inf = std::numeric_limits<double>::infinity();
    LineArray lines = Lines({{{inf, 1, 0}, {inf, 1, 0}}});
    lines.Tidy(false, true, true);
    EXPECT_EQ(0u, lines.count);
    lines = Lines({{{inf, 1, 0}, {inf, 1, 1}}});
    lines.Tidy(false, false, true);
    EXPECT_EQ(1u, lines.count);
}

TEST(LineArrayTidy, RemovesThroughItsTableAndLooksAtTheSamePlaceAgain) {
    struct Counting : LineArray {
        std::vector<std::int32_t> removed;
        void Remove(std::int32_t index, std::uint32_t n) override {
            removed.push_back(index);
            LineArray::Remove(index, n);
        }
    } lines;
    const Line none({5, 5, 0}, {5, 5, 0});
    for (const Line& line : {Line({0, 0, 0}, {1, 0, 0}), none, none, none}) lines.Append(line);
    lines.Tidy(false, true, true);
    EXPECT_EQ((std::vector<std::int32_t>{1, 1, 1}), lines.removed);
    EXPECT_EQ(1u, lines.count);
}

TEST(LineArrayTidy, OrientsByXThenYThenZExactly) {
    LineArray lines = Lines({{{5, 0, 1}, {4, 9, 2}}});
    lines.Tidy(true, true, false);
    ExpectLines({{{4, 9, 2}, {5, 0, 1}}}, lines);
    lines = Lines({{{5, 9, 1}, {5, 0, 2}}});
    lines.Tidy(true, true, false);
    ExpectLines({{{5, 0, 2}, {5, 9, 1}}}, lines);
    // A hair decides, once the ends are not equal.
    lines = Lines({{{5, 0, 0}, {std::nextafter(5.0, 0), 9, 0}}});
    lines.Tidy(true, true, false);
    EXPECT_LT(lines[0].x1, 5.0);
    // Upright lines count in space alone.
    lines = Lines({{{5, 0, 9}, {5, 0, 1}}});
    lines.Tidy(true, true, false);
    ExpectLines({{{5, 0, 9}, {5, 0, 1}}}, lines);
    lines.Tidy(true, false, false);
    ExpectLines({{{5, 0, 1}, {5, 0, 9}}}, lines);
    // Ends that are equal stay as they are.
    lines = Lines({{{5.00009, 0, 0}, {5, 0, 0}}});
    lines.Tidy(true, true, false);
    EXPECT_EQ(5.00009, lines[0].x1);
    lines = Lines({{{5, 0, 0}, {4, 0, 0}}});
    lines.Tidy(false, true, false);
    EXPECT_EQ(5.0, lines[0].x1);
}

TEST(LineArrayTidy, SortsByX1X2Y1Y2AndInSpaceByZ1Z2) {
    const Line a({0, 9, 5}, {1, 9, 5}), b({0, 0, 5}, {2, 0, 5}), c({0, 1, 5}, {2, 0, 5});
    const Line d({0, 1, 5}, {2, 3, 5}), e({1, 0, 0}, {2, 0, 0});
    LineArray lines = Lines({e, d, c, b, a});
    lines.Tidy(false, true, false);
    ExpectLines({a, b, c, d, e}, lines);
    EXPECT_FALSE(lines.sorted);
    const Line low({0, 0, 1}, {1, 0, 9}), high({0, 0, 2}, {1, 0, 0}), higher({0, 0, 2}, {1, 0, 3});
    lines = Lines({higher, high, low});
    lines.Tidy(false, false, false);
    ExpectLines({low, high, higher}, lines);
}

TEST(LineArrayTidy, KeepsOneOfEqualLines) {
    for (const Point3d& base : {kOrigin, kFar}) {
        const auto count = [&](double off, bool planar, double z) {
            LineArray lines =
                Lines({At(base, {0, 0, 0}, {5, 5, 0}), At(base, {9, 0, 0}, {12, 5, 0}),
                       At(base, {off, -off, z}, {5 + off, 5, z})});
            lines.Tidy(false, planar, false);
            return lines.count;
        };
        EXPECT_EQ(2u, count(0.00009, true, 0));
        EXPECT_EQ(3u, count(0.00011, true, 0));
        EXPECT_EQ(2u, count(0, true, 77));
        EXPECT_EQ(3u, count(0, false, 77));
        EXPECT_EQ(3u, count(0, false, 0.00011));
        EXPECT_EQ(2u, count(0, false, 0.00009));
    }
    // On the limit they differ.
    LineArray limit = Lines({{{0, 0, 0}, {5, 5, 0}}, {{0.0001, 0, 0}, {5, 5, 0}}});
    limit.Tidy(false, true, false);
    EXPECT_EQ(2u, limit.count);
    // A line and its reverse are one after orienting.
    LineArray both = Lines({{{0, 0, 0}, {5, 5, 0}}, {{5, 5, 0}, {0, 0, 0}}});
    both.Tidy(false, true, false);
    EXPECT_EQ(2u, both.count);
    both.Tidy(true, true, false);
    EXPECT_EQ(1u, both.count);
}

TEST(LineArrayTidy, OfTwoEqualLinesTheFirstStaysAndOfMoreTheLastMerged) {
    const auto marked = [](double z) { return Line({0, 0, z}, {5, 5, z}); };
    LineArray two = Lines({marked(1), marked(2)});
    two.Tidy(false, true, false);
    ExpectLines({marked(1)}, two);
    LineArray four = Lines({marked(1), {{9, 0, 0}, {12, 0, 0}}, marked(2), {{7, 0, 0}, {8, 0, 0}}});
    four.Tidy(false, true, false);
    ExpectLines({marked(2), {{7, 0, 0}, {8, 0, 0}}, {{9, 0, 0}, {12, 0, 0}}}, four);
}

TEST(LineArrayTidy, LeavesFewerThanTwoLinesAlone) {
    LineArray none;
    none.Tidy(true, true, true);
    EXPECT_EQ(0u, none.count);
    LineArray one = Lines({{{5, 0, 0}, {0, 0, 0}}, {{1, 1, 1}, {1, 1, 1}}});
    one.Tidy(true, true, true);
    ExpectLines({{{0, 0, 0}, {5, 0, 0}}}, one);
}

// --- SplitAtCrossings.

TEST(LineArraySplit, CutsBothLinesWhereTheyCross) {
    for (const Point3d& base : {kOrigin, kFar}) {
        LineArray lines = Lines({At(base, {0, 8, 0}, {8, 0, 0}), At(base, {0, 0, 0}, {8, 8, 0})});
        PolyArray crossings;
        lines.SplitAtCrossings(true, &crossings);
        ExpectLines({At(base, {0, 0, 0}, {4, 4, 0}), At(base, {0, 8, 0}, {4, 4, 0}),
                     At(base, {4, 4, 0}, {8, 8, 0}), At(base, {4, 4, 0}, {8, 0, 0})},
                    lines);
        ASSERT_EQ(2u, crossings.count);
        for (const PolyLine* cuts : crossings) {
            ASSERT_EQ(1u, cuts->count);
            EXPECT_EQ(base.x + 4, cuts->data[0].x);
            EXPECT_EQ(base.y + 4, cuts->data[0].y);
        }
    }
}

TEST(LineArraySplit, PiecesStandInPlaceAndBehindInTheOrderAlongTheLine) {
    LineArray lines = Lines({{{20, 0, 0}, {0, 0, 0}},
                             {{10, -1, 0}, {12, 1, 0}},
                             {{4, -1, 0}, {6, 1, 0}},
                             {{14, -1, 0}, {16, 1, 0}}});
    PolyArray crossings;
    lines.SplitAtCrossings(true, &crossings);
    ExpectLines({{{0, 0, 0}, {5, 0, 0}},
                 {{4, -1, 0}, {5, 0, 0}},
                 {{10, -1, 0}, {11, 0, 0}},
                 {{14, -1, 0}, {15, 0, 0}},
                 {{5, 0, 0}, {11, 0, 0}},
                 {{11, 0, 0}, {15, 0, 0}},
                 {{15, 0, 0}, {20, 0, 0}},
                 {{5, 0, 0}, {6, 1, 0}},
                 {{11, 0, 0}, {12, 1, 0}},
                 {{15, 0, 0}, {16, 1, 0}}},
                lines);
    ASSERT_EQ(4u, crossings.count);
    EXPECT_EQ(3u, crossings[0]->count);
    EXPECT_EQ(5.0, crossings[0]->data[0].x);
    EXPECT_EQ(15.0, crossings[0]->data[2].x);
    // Room was made for all pieces at once, and for as many crossings.
    EXPECT_EQ(10u, lines.capacity);
    EXPECT_EQ(6u, crossings.capacity);
}

TEST(LineArraySplit, UprightLinesAreCutInTheOrderOfY) {
    LineArray lines = Lines({{{5, 20, 0}, {5, 0, 0}},
                             {{0, 12, 0}, {10, 12, 0}},
                             {{0, 4, 0}, {10, 4, 0}},
                             {{0, 16, 0}, {10, 16, 0}}});
    lines.SplitAtCrossings(true, nullptr);
    EXPECT_EQ(10u, lines.count);
    double y = 0;
    for (const Line& line : lines) {
        if (line.x1 != 5 || line.x2 != 5) continue;
        EXPECT_EQ(y, line.y1);
        y = line.y2;
    }
    EXPECT_EQ(20.0, y);
}

TEST(LineArraySplit, ALineThatOnlyTouchesAtItsOwnEndIsNotCut) {
    for (const Point3d& base : {kOrigin, kFar}) {
        LineArray tee = Lines({At(base, {0, 0, 0}, {8, 0, 0}), At(base, {4, 0, 0}, {6, 5, 0})});
        tee.SplitAtCrossings(true, nullptr);
        ExpectLines({At(base, {0, 0, 0}, {4, 0, 0}), At(base, {4, 0, 0}, {6, 5, 0}),
                     At(base, {4, 0, 0}, {8, 0, 0})},
                    tee);
        LineArray corner = Lines({At(base, {0, 0, 0}, {8, 0, 0}), At(base, {8, 0, 0}, {9, 5, 0})});
        corner.SplitAtCrossings(true, nullptr);
        EXPECT_EQ(2u, corner.count);
    }
}

TEST(LineArraySplit, EndsWithinATenThousandthOfALineCutIt) {
    for (const Point3d& base : {kOrigin, kFar}) {
        const auto pieces = [&](double off) {
            LineArray lines =
                Lines({At(base, {0, -0.08, 0}, {8, 0.08, 0}), At(base, {4, off, 0}, {6, 5, 0})});
            lines.SplitAtCrossings(true, nullptr);
            return lines.count;
        };
        EXPECT_EQ(3u, pieces(0.00009));
        EXPECT_EQ(2u, pieces(0.00011));
    }
    // Intended: spans of y that don't meet are not looked at, so a level line is not cut.
    LineArray level = Lines({{{0, 0, 0}, {8, 0, 0}}, {{4, 0.00009, 0}, {6, 5, 0}}});
    level.SplitAtCrossings(true, nullptr);
    EXPECT_EQ(2u, level.count);
}

TEST(LineArraySplit, CutsWithinATenBillionthOfAnEndAreNone) {
    const auto pieces = [](double off) {
        LineArray lines = Lines({{{0, 0, 0}, {8, 0, 0}}, {{8 - off, 0, 0}, {9, 5, 0}}});
        lines.SplitAtCrossings(true, nullptr);
        return lines.count;
    };
    // Farther, the first line is cut there, and the second at the end of the first.
    EXPECT_EQ(4u, pieces(1.1e-10));
    EXPECT_EQ(2u, pieces(0.9e-10));
    EXPECT_EQ(2u, pieces(0.0));
}

TEST(LineArraySplit, CutsAtOnePlaceGiveNoPieceBetweenThem) {
    // Three lines through (4, 4): each is cut there twice.
    LineArray lines =
        Lines({{{0, 0, 0}, {8, 8, 0}}, {{0, 8, 0}, {8, 0, 0}}, {{0, 4, 0}, {8, 4, 0}}});
    PolyArray crossings;
    lines.SplitAtCrossings(true, &crossings);
    EXPECT_EQ(6u, lines.count);
    ASSERT_EQ(3u, crossings.count);
    EXPECT_EQ(2u, crossings[0]->count);
    for (const Line& line : lines) EXPECT_GT(line.Length2d(), 3.9);
}

TEST(LineArraySplit, LinesOnOneAnotherAreCutAtEachOthersEnds) {
    // 0..10 and 5..15: the later start cuts the first, the earlier end the second.
    LineArray lines = Lines({{{0, 0, 0}, {10, 0, 0}}, {{5, 0, 0}, {15, 0, 0}}});
    lines.SplitAtCrossings(true, nullptr);
    ExpectLines({{{0, 0, 0}, {5, 0, 0}},
                 {{5, 0, 0}, {10, 0, 0}},
                 {{5, 0, 0}, {10, 0, 0}},
                 {{10, 0, 0}, {15, 0, 0}}},
                lines);
    // Intended: one within the other is cut into by its start alone, where the two meet.
    lines = Lines({{{0, 0, 0}, {10, 0, 0}}, {{2, 0, 0}, {4, 0, 0}}});
    lines.SplitAtCrossings(true, nullptr);
    EXPECT_EQ(3u, lines.count);
    // End to end nothing is cut.
    lines = Lines({{{0, 0, 0}, {4, 0, 0}}, {{4, 0, 0}, {9, 0, 0}}});
    lines.SplitAtCrossings(true, nullptr);
    EXPECT_EQ(2u, lines.count);
}

TEST(LineArraySplit, InSpaceLinesHaveToMeet) {
    for (const Point3d& base : {kOrigin, kFar}) {
        const auto pieces = [&](double rise, bool planar) {
            LineArray lines =
                Lines({At(base, {0, 0, 0}, {8, 8, 0}), At(base, {0, 8, rise}, {8, 0, rise})});
            lines.SplitAtCrossings(planar, nullptr);
            return lines.count;
        };
        EXPECT_EQ(4u, pieces(0.00009, false));
        EXPECT_EQ(2u, pieces(0.00011, false));
        EXPECT_EQ(4u, pieces(0.00011, true));
        EXPECT_EQ(2u, pieces(9, false));
    }
    LineArray limit = Lines({{{0, 0, 0}, {8, 8, 0}}, {{0, 8, 0.0001}, {8, 0, 0.0001}}});
    limit.SplitAtCrossings(false, nullptr);
    EXPECT_EQ(2u, limit.count);
}

TEST(LineArraySplit, InPlanBothLinesGetTheHeightOfTheEarlier) {
    LineArray lines = Lines({{{0, 8, 100}, {8, 0, 100}}, {{0, 0, 0}, {8, 8, 8}}});
    lines.SplitAtCrossings(true, nullptr);
    ASSERT_EQ(4u, lines.count);
    for (const Line& line : lines) EXPECT_EQ(4.0, line.x1 == 4 ? line.z1 : line.z2);
}

TEST(LineArraySplit, TidiesFirstInPlanAndKeepsLinesWithoutLength) {
    // Whatever `planar` is: lines alike in plan lose one.
    LineArray lines =
        Lines({{{5, 0, 7}, {0, 0, 7}}, {{0, 0, 0}, {5, 0, 0}}, {{3, 3, 0}, {3, 3, 9}}});
    lines.SplitAtCrossings(false, nullptr);
    EXPECT_EQ(2u, lines.count);
    LineArray none;
    PolyArray crossings;
    none.SplitAtCrossings(true, &crossings);
    EXPECT_EQ(0u, none.count);
    EXPECT_EQ(0u, crossings.count);
}

TEST(LineArraySplit, CrossingsAreAppendedToWhatIsThere) {
    PolyArray crossings;
    crossings.Append(new PolyLine(3));
    LineArray lines = Lines({{{0, 8, 0}, {8, 0, 0}}, {{0, 0, 0}, {8, 8, 0}}});
    lines.SplitAtCrossings(true, &crossings);
    EXPECT_EQ(3u, crossings.count);
    EXPECT_EQ(0u, crossings[0]->count);
}

// The steps as they read, over tidied lines, without looking ahead.
std::vector<Line> SplitPlainly(LineArray lines, bool planar) {
    lines.Tidy(true, true, false);
    std::vector<Line> out(lines.begin(), lines.end());
    std::vector<std::vector<Point3d>> cuts(out.size());
    const auto apart = [](const Point3d& a, const Point3d& b) {
        return std::fabs(a.x - b.x) >= 1e-10 || std::fabs(a.y - b.y) >= 1e-10;
    };
    const auto cut = [&](std::size_t i, const Point3d& c) {
        auto place = cuts[i].end();
        while (place != cuts[i].begin() && Point3d::CompareArray(&c, &*(place - 1)) < 0) --place;
        cuts[i].insert(place, c);
    };
    for (std::size_t i = 0; i < out.size(); ++i) {
        for (std::size_t j = i + 1; j < out.size(); ++j) {
            const Line &here = out[i], &there = out[j];
            if (there.x1 > here.x2) break;
            if (std::max(there.y1, there.y2) < std::min(here.y1, here.y2) ||
                std::min(there.y1, there.y2) > std::max(here.y1, here.y2))
                continue;
            Point3d c, onThere;
            if (here.Intersect3d(there, c, 0, true) == 0) continue;
            here.Intersect3d(there, onThere, 1, true);
            if (!planar && std::fabs(c.z - onThere.z) >= 0.0001) continue;
            if (apart(c, here.Start()) && apart(c, here.End())) {
                cut(i, c);
                if (!apart(c, there.Start()) && there.PointOn(here.End(), 0.0001))
                    cut(j, here.End());
            }
            if (apart(c, there.Start()) && apart(c, there.End())) cut(j, c);
        }
    }
    const std::size_t before = out.size();
    for (std::size_t i = 0; i < before; ++i) {
        if (cuts[i].empty()) continue;
        const Point3d end = out[i].End();
        out[i].SetEnd(cuts[i][0]);
        for (std::size_t k = 1; k < cuts[i].size(); ++k)
            if (apart(cuts[i][k], cuts[i][k - 1])) out.emplace_back(cuts[i][k - 1], cuts[i][k]);
        out.emplace_back(cuts[i].back(), end);
    }
    return out;
}

LineArray Scattered(int n, const Point3d& base, int cells, unsigned seed) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> place(0, cells > 0 ? cells : 100);
    LineArray lines;
    for (int i = 0; i < n; ++i) {
        Point3d a(place(random), place(random), place(random));
        Point3d b(place(random), place(random), place(random));
        if (cells > 0) {
            a = Point3d(std::floor(a.x), std::floor(a.y), 0);
            b = Point3d(std::floor(b.x), std::floor(b.y), 0);
        }
        lines.Append(At(base, a, b));
    }
    return lines;
}

TEST(LineArraySplit, AgreesWithThePlainStepsToTheBit) {
    for (const Point3d& base : {kOrigin, kFar}) {
        for (const int cells : {0, 5, 30}) {
            for (const bool planar : {true, false}) {
                for (unsigned seed = 1; seed < 6; ++seed) {
                    LineArray lines = Scattered(120, base, cells, seed);
                    const std::vector<Line> expected = SplitPlainly(lines, planar);
                    lines.SplitAtCrossings(planar, nullptr);
                    ASSERT_EQ(expected.size(), lines.count);
                    for (std::uint32_t i = 0; i < lines.count; ++i)
                        EXPECT_TRUE(Same(expected[i], lines.data[i])) << i;
                }
            }
        }
    }
}

TEST(LineArraySplit, AnUprightLineIsCutAtAnEndStraightBelowIt) {
    // Intended: that is where Line::Intersect lets the two meet. The pieces go there and back.
    LineArray lines = Lines({{{0, 1, 0}, {0, 4, 0}}, {{0, 0, 0}, {1, 3, 0}}});
    lines.SplitAtCrossings(true, nullptr);
    ExpectLines({{{0, 1, 0}, {0, 0, 0}}, {{0, 0, 0}, {1, 3, 0}}, {{0, 0, 0}, {0, 4, 0}}}, lines);
}

TEST(LineArraySplit, LeavesNoCrossingInsideTwoPieces) {
    for (const Point3d& base : {kOrigin, kFar}) {
        for (const int cells : {0, 7}) {
            LineArray lines = Scattered(90, base, cells, 77);
            double before = 0, after = 0;
            for (int i = static_cast<int>(lines.count) - 1; i >= 0; --i)
                if (lines[i].x1 == lines[i].x2) lines.Remove(i, 1);  // see above
            lines.Tidy(true, true, true);
            for (const Line& line : lines) before += line.Length2d();
            lines.SplitAtCrossings(true, nullptr);
            for (const Line& line : lines) after += line.Length2d();
            EXPECT_GT(lines.count, 200u);
            EXPECT_NEAR(before, after, 1e-3);  // nothing is lost
            int inside = 0;
            for (std::uint32_t i = 0; i < lines.count; ++i) {
                for (std::uint32_t j = i + 1; j < lines.count; ++j) {
                    const Line &a = lines.data[i], &b = lines.data[j];
                    Point3d c;
                    if (a.Intersect(b, c, true) != 1) continue;
                    // Lines that were cut at one place meet there by rounding.
                    const double room = 0.001;
                    inside += Distance2d(c, a.Start()) > room && Distance2d(c, a.End()) > room &&
                              Distance2d(c, b.Start()) > room && Distance2d(c, b.End()) > room;
                }
            }
            EXPECT_EQ(0, inside);
        }
    }
}

}  // namespace
}  // namespace TamLib
