// Bands along open and closed polylines.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "tests/GeomStructs/NewFaults.h"
#include "tests/GeomStructs/PlainBooleans.h"
#include "tests/GeomStructs/RoundedRows.h"
#include "tests/GeomStructs/SeededLines.h"
#include "tests/GeomStructs/TextLines.h"
#include "tests/datastruct/ArrayFaults.h"

namespace TamLib {
namespace {

// A band with its ribs, checked to be that of the plain form.
struct Band {
    Band(const std::string& text, double left, double right, bool clean = false)
        : Band(FromText(text), left, right, clean) {}
    Band(const PolyLine& line, double left, double right, bool clean = false) {
        const std::string before = Text(line);
        PolyArray result, across;
        line.OffsetBand(&result, left, right, &across, clean);
        EXPECT_EQ(before, Text(line));
        const PlainBand plain(line, left, right, clean);
        EXPECT_EQ(Text(plain.rings), Text(result));
        EXPECT_EQ(Text(plain.ribs), Text(across));
        rings = Rows(result);
        ribs = Rows(across);
    }
    std::string rings, ribs;
};

TEST(PolyLineOffsetBand, OfAnOpenLineIsOneRingThroughBothEnds) {
    const Band straight("0 0, 10 0", 1, 1);
    EXPECT_EQ("(0 1, 10 1, 10 -1, 0 -1)\n", straight.rings);
    EXPECT_EQ("0 1, 0 -1\n10 1, 10 -1\n", straight.ribs);
    EXPECT_EQ("(0 1, 9 1, 9 10, 11 10, 11 -1, 0 -1)\n", Band("0 0, 10 0, 10 10", 1, 1).rings);
    EXPECT_EQ("(0 1, 11 1, 11 -10, 9 -10, 9 -1, 0 -1)\n", Band("0 0, 10 0, 10 -10", 1, 1).rings);
    EXPECT_EQ("(-1 0, -1 10, 1 10, 1 0)\n", Band("0 0, 0 10", 1, 1).rings);
    EXPECT_EQ("(10 -1, 0 -1, 0 1, 10 1)\n", Band("10 0, 0 0", 1, 1).rings);
}

TEST(PolyLineOffsetBand, OfAClosedLineAreTwoRings) {
    // The left side, then the right one backwards.
    const Band counterClockwise("(0 0, 10 0, 10 10, 0 10)", 1, 1);
    EXPECT_EQ("(1 1, 9 1, 9 9, 1 9)\n(-1 11, 11 11, 11 -1, -1 -1)\n", counterClockwise.rings);
    EXPECT_EQ("1 1, -1 -1\n9 1, 11 -1\n9 9, 11 11\n1 9, -1 11\n", counterClockwise.ribs);
    EXPECT_EQ("(-1 -1, -1 11, 11 11, 11 -1)\n(9 1, 9 9, 1 9, 1 1)\n",
              Band("(0 0, 0 10, 10 10, 10 0)", 1, 1).rings);
}

TEST(PolyLineOffsetBand, ANegativeRightMeansAsWideAsLeft) {
    const char* const line = "0 0, 10 0, 13 7";
    const std::string even = Band(line, 2, 2).rings;
    EXPECT_EQ(even, Band(line, 2, -1).rings);
    EXPECT_EQ(even, Band(line, -2, -7).rings);
    EXPECT_EQ(even, Band(line, -2, 2).rings);
    EXPECT_NE(even, Band(line, 2, 1).rings);
}

TEST(PolyLineOffsetBand, WherePairsAreExchangedTheyTakeTheirWidthsAlong) {
    // Intended: at both ends of an open line the left side has the right width.
    const Band straight("0 0, 10 0, 20 0", 1, 2);
    EXPECT_EQ("(0 2, 10 1, 20 2, 20 -1, 10 -2, 0 -1)\n", straight.rings);
    EXPECT_EQ("0 2, 0 -1\n10 1, 10 -2\n20 2, 20 -1\n", straight.ribs);
    // And where the mean of both directions points to the right: at (10,10) of this square.
    const Band square("(0 0, 10 0, 10 10, 0 10)", 1, 2);
    EXPECT_EQ("(1 1, 9 1, 8 8, 1 9)\n(-2 12, 11 11, 12 -2, -2 -2)\n", square.rings);
}

TEST(PolyLineOffsetBand, OneSideMayBeWithoutWidth) {
    EXPECT_EQ("(0 2, 10 0, 8 10, 10 10, 12 -2, 0 0)\n", Band("0 0, 10 0, 10 10", 0, 2).rings);
    EXPECT_EQ("(0 0, 8 2, 10 10, 12 10, 10 0, 0 -2)\n", Band("0 0, 10 0, 10 10", 2, 0).rings);
}

TEST(PolyLineOffsetBand, OfFewVertices) {
    const Band none("", 1, 1);
    EXPECT_EQ("", none.rings);
    EXPECT_EQ("", none.ribs);
    EXPECT_EQ("", Band("", 1, 1, true).rings);
    // A single vertex has a point on each side of a way along +x.
    const Band one("5 5", 1, 1);
    EXPECT_EQ("(5 6, 5 4)\n", one.rings);
    EXPECT_EQ("5 6, 5 4\n", one.ribs);
    EXPECT_EQ("5 6, 5 4\n", Band("5 5, 5.00000009 5", 1, 1).ribs);
    // So has a ring of which no more is left.
    for (const char* const ring : {"5 5, 5 5", "5 5, 5.00005 5"}) {
        for (const bool clean : {false, true}) {
            const Band point(ring, 1, 1, clean);
            EXPECT_EQ("(5 6, 5 4)\n", point.rings);
            EXPECT_EQ("5 6, 5 4\n", point.ribs);
        }
    }
}

TEST(PolyLineOffsetBand, NearDuplicatesArePassedOver) {
    EXPECT_EQ("0 1, 0 -1\n10 1, 10 -1\n", Band("0 0, 0.00000009 0, 10 0", 1, 1).ribs);
    PolyArray result, ribs;
    FromText("0 0, 0.00000011 0, 10 0").OffsetBand(&result, 1, 1, &ribs, false);
    EXPECT_EQ(3u, ribs.count);
}

TEST(PolyLineOffsetBand, ARingIsWhatIsClosedBeforeOrAfterNearDuplicatesGo) {
    const std::string square = Band("(0 0, 10 0, 10 10, 0 10)", 1, 1).rings;
    for (const char* const ring :
         {"0 0, 10 0, 10 10, 0 10, 0 0 7, 0 0", "0 0, 10 0, 10 10, 0 10, 0 0, 0 0 7"})
        for (const bool clean : {false, true}) EXPECT_EQ(square, Band(ring, 1, 1, clean).rings);
    // Closed in plan alone is open.
    PolyArray open;
    FromText("0 0, 10 0, 10 10, 0 10, 0 0 7").OffsetBand(&open, 1, 1, nullptr, false);
    EXPECT_EQ(1u, open.count);
}

TEST(PolyLineOffsetBand, EndsAreAcrossDirectionsFromZeroToAWholeTurn) {
    // To the bit: less a quarter, it differs from the same direction told from below zero.
    const double turn = 6.283185307179586, quarter = 1.5707963267948966;
    const Point3d far(-7, -3, 0);
    const double right = std::fmod(Angle({}, far) + turn, turn) - quarter;
    PolyArray result;
    MakeLine({{}, far}).OffsetBand(&result, 1, 1, nullptr, false);
    EXPECT_EQ(-std::cos(right), result[0]->data[0].x);
    EXPECT_EQ(-std::sin(right), result[0]->data[0].y);
    EXPECT_NEAR(0.39391929857916758, result[0]->data[0].x, 1e-15);
}

TEST(PolyLineOffsetBand, TheShiftForOutputIsThatOfTheLine) {
    for (const char* const text : {"0 0, 10 0, 13 7", "(0 0, 10 0, 10 10, 0 10)"}) {
        for (const bool clean : {false, true}) {
            PolyLine line = FromText(text);
            line.offset = {7, 8, 9};
            PolyArray result, ribs;
            line.OffsetBand(&result, 1, 1, &ribs, clean);
            ASSERT_LT(0u, result.count);
            ASSERT_LT(0u, ribs.count);
            for (const PolyArray* made : {&result, &ribs})
                for (const PolyLine* part : *made)
                    EXPECT_TRUE(SameBits(Point3d(7, 8, 9), part->offset));
        }
    }
}

TEST(PolyLineOffsetBand, TheResultPromisesNoOrder) {
    PolyArray result;
    result.Sort();
    ASSERT_TRUE(result.sorted);
    result.unique = true;
    FromText("(0 0, 10 0, 10 10, 0 10)").OffsetBand(&result, 1, 1, nullptr, false);
    EXPECT_EQ(2u, result.count);
    EXPECT_FALSE(result.sorted);
    EXPECT_FALSE(result.unique);
}

TEST(PolyLineOffsetBand, HeightsStay) {
    EXPECT_EQ("(0 1 5, 9 1 6, 9 10 7, 11 10 7, 11 -1 6, 0 -1 5)\n",
              Band("0 0 5, 10 0 6, 10 10 7", 1, 1).rings);
}

TEST(PolyLineOffsetBand, CornersUpToOnePointSevenWidthsAreSimple) {
    // The corner at the origin has the half angle whose mitre is that long.
    const auto ribs = [](double widths) {
        const double angle = 2 * std::asin(1 / widths);
        const PolyLine line =
            MakeLine({{100, 0, 0}, {0, 0, 0}, {100 * std::cos(angle), 100 * std::sin(angle), 0}});
        PolyArray result, across;
        line.OffsetBand(&result, 2, 2, &across, false);
        return across.count;
    };
    EXPECT_EQ(3u, ribs(1.6999));
    EXPECT_EQ(2u, ribs(1.7001));
}

TEST(PolyLineOffsetBand, ASharpCornerGetsABevelOutsideAndTheBisectorInside) {
    for (const double turn : {1.0, -1.0}) {
        const double width = 2;
        const Point3d ends[2] = {{100, 0, 0}, {80, turn * 30, 0}};
        const PolyLine line = MakeLine({ends[0], {}, ends[1]});
        PolyArray result, ribs;
        line.OffsetBand(&result, width, width, &ribs, false);
        EXPECT_EQ(2u, ribs.count);
        ASSERT_EQ(1u, result.count);
        ASSERT_EQ(8u, result[0]->count);
        // Coming in along -x: a positive turn goes to the right.
        const PolyLine& ring = *result[0];
        const bool left = turn > 0;  // the outer side
        const Point3d outer[2] = {ring.data[left ? 1 : 4], ring.data[left ? 2 : 5]};
        const Point3d inner = ring.data[left ? 5 : 1];
        for (const Point3d& p : outer) {
            double nearest = 1e9;
            for (const Point3d& end : ends)
                nearest = std::min(nearest, Line({}, end).Distance2d(p, nullptr, nullptr));
            EXPECT_NEAR(width, nearest, 1e-12);
        }
        EXPECT_NEAR(0, outer[left ? 0 : 1].x, 1e-12);
        for (const Point3d& end : ends) {
            EXPECT_NEAR(width, Line({}, end).Distance2d(inner, nullptr, nullptr), 1e-12);
            EXPECT_GT(inner.x * end.x + inner.y * end.y, 0);
        }
    }
}

TEST(PolyLineOffsetBand, OnEachSideOfABevelItsOwnWidthHolds) {
    PolyArray result;
    FromText("100 0, 0 0, 80 30").OffsetBand(&result, 1, 3, nullptr, false);
    const PolyLine& ring = *result[0];
    ASSERT_EQ(8u, ring.count);
    EXPECT_NEAR(1, VectorLength(ring.data[1]), 1e-12);
    EXPECT_NEAR(1, VectorLength(ring.data[2]), 1e-12);
    EXPECT_NEAR(3, Line({}, {80, 30, 0}).Distance2d(ring.data[5], nullptr, nullptr), 1e-12);
}

TEST(PolyLineOffsetBand, MitresAreCutToTheShorterSegmentOrTheWidth) {
    // 20 degrees: the mitre would be 5.76 widths.
    const auto inner = [](double shorter, double width) {
        const double angle = 0.3490658503988659;
        const PolyLine line = MakeLine(
            {{100, 0, 0}, {0, 0, 0}, {shorter * std::cos(angle), shorter * std::sin(angle), 0}});
        PolyArray result, ribs;
        line.OffsetBand(&result, width, width, &ribs, false);
        // Simple when the cut makes it short.
        const Point3d right = ribs.count == 3 ? *ribs[1]->At(1) : result[0]->data[5];
        return VectorLength(right);
    };
    EXPECT_NEAR(5.758770483143634, inner(50, 1), 1e-9);
    EXPECT_NEAR(1.2, inner(1.2, 1), 1e-12);
    EXPECT_NEAR(1.0, inner(0.5, 1), 1e-12);
}

TEST(PolyLineOffsetBand, HairpinsBelowATwoTenthsOfADegreeAreSimple) {
    const auto ribs = [](double degrees) {
        const double angle = degrees * 3.141592653589793 / 180, start = 0.7;
        const PolyLine line =
            MakeLine({{100 * std::cos(start), 100 * std::sin(start), 0},
                      {0, 0, 0},
                      {50 * std::cos(start + angle), 50 * std::sin(start + angle), 0}});
        PolyArray result, across;
        line.OffsetBand(&result, 1, 1, &across, false);
        return across.count;
    };
    EXPECT_EQ(3u, ribs(0.199));
    EXPECT_EQ(2u, ribs(0.201));
    EXPECT_EQ(3u, ribs(-0.199));
    EXPECT_EQ(3u, ribs(0));
    // Intended: not where the directions lie on both sides of +x, whose difference is near a turn.
    PolyArray result, across;
    FromText("100 -0.05, 0 0, 50 0.05").OffsetBand(&result, 1, 1, &across, false);
    EXPECT_EQ(2u, across.count);
}

// --- The small loops.

TEST(PolyLineOffsetBand, ALoopOnTheInnerSideIsCutAtItsCrossing) {
    // A bump as wide as the band to one side.
    const Band bump("0 0, 10 0, 10 2, 12 2, 12 0, 22 0", 2, 2);
    EXPECT_EQ(
        "(0 2, 8.585786 1.414214, 8.585786 3.414214, 13.414214 3.414214, 13.414214 1.414214, "
        "22 2, 22 -2, 11 -1.435471, 0 -2)\n",
        bump.rings);
}

TEST(PolyLineOffsetBand, TheCrossingHasTheHeightOfTheEarlierSegment) {
    PolyArray result;
    FromText("0 0, 10 0, 10 2, 12 2, 12 0 100, 22 0").OffsetBand(&result, 2, 2, nullptr, false);
    ASSERT_EQ(10u, result[0]->count);
    EXPECT_NEAR(100 * 11 / 11.414213562373096, result[0]->At(7)->z, 1e-9);
}

TEST(PolyLineOffsetBand, ARingOfSixVerticesIsNotCut) {
    // A bow tie crosses itself in the middle. Five vertices with the repeated one, six, seven.
    const auto vertices = [](const char* bowTie) {
        PolyArray result;
        FromText(bowTie).OffsetBand(&result, 1, 1, nullptr, false);
        return std::make_pair(result[0]->count, result[1]->count);
    };
    EXPECT_EQ(std::make_pair(5u, 5u), vertices("(0 0, 100 20, 100 0, 0 20)"));
    EXPECT_EQ(std::make_pair(6u, 6u), vertices("(0 0, 100 20, 100 10, 100 0, 0 20)"));
    EXPECT_EQ(std::make_pair(5u, 5u), vertices("(0 0, 100 20, 100 10, 100 0, 0 20, 0 10)"));
}

TEST(PolyLineOffsetBand, TheFirstAndTheLastSegmentOfARingDoNotCutEachOther) {
    // Intended: they meet in the vertex that is repeated, which rounding may tell as a crossing.
    SeededLines random(123);
    for (const Point3d& base : {Point3d(), Point3d(25496000, 6672000, 0)}) {
        for (int i = 0; i < 2000; ++i) {
            PolyLine ring(10);
            const double start = random.Real(0, 6.28);
            for (int k = 0; k < 8; ++k) {
                const double angle = start + k * 0.7853981633974483, r = random.Real(90, 110);
                ring.Append(base + Point3d(r * std::cos(angle), r * std::sin(angle), 0));
            }
            ring.Close();
            PolyArray result;
            ring.OffsetBand(&result, 1, 1, nullptr, false);
            ASSERT_EQ(2u, result.count);
            ASSERT_EQ(9u, result[0]->count) << i;
            ASSERT_EQ(9u, result[1]->count) << i;
        }
    }
}

// --- Cleaning.

TEST(PolyLineOffsetBand, LoopsOfTheOtherSenseStayAsFarAsTheyTouchTheRing) {
    const char* const bowTie = "(0 0, 100 20, 100 0, 0 20)";
    PolyArray result;
    FromText(bowTie).OffsetBand(&result, 1, 1, nullptr, true);
    EXPECT_EQ(Text(PlainBand(FromText(bowTie), 1, 1, true).rings), Text(result));
    ASSERT_EQ(4u, result.count);
    EXPECT_NE(result[0]->IsClockwise(), result[1]->IsClockwise());
    EXPECT_NE(result[2]->IsClockwise(), result[3]->IsClockwise());
}

TEST(PolyLineOffsetBand, TheResultIsEmptiedAndRibsAreAddedTo) {
    PolyArray result = MakeArray({{{1, 2, 3}}}), ribs = MakeArray({{{4, 5, 6}}});
    FromText("0 0, 10 0").OffsetBand(&result, 1, 1, &ribs, true);
    EXPECT_EQ("(0 1, 10 1, 10 -1, 0 -1)\n", Rows(result));
    EXPECT_EQ("4 5 6\n0 1, 0 -1\n10 1, 10 -1\n", Rows(ribs));
    PolyLine().OffsetBand(&result, 1, 1, &ribs, true);
    EXPECT_EQ(0u, result.count);
    EXPECT_EQ(3u, ribs.count);
    FromText("0 0, 10 0").OffsetBand(&result, 1, 1, nullptr, false);
    EXPECT_EQ(1u, result.count);
}

TEST(PolyLineOffsetBand, FlagsAreWithoutEffect) {
    const PolyLine line = FromText("0 0, 10 0, 10 1, 20 1, 5 -8");
    for (const bool clean : {false, true}) {
        PolyArray plain, flagged;
        line.OffsetBand(&plain, 2, 3, nullptr, clean);
        for (const int flags : {0, 1, -1, 255}) {
            line.OffsetBand(&flagged, 2, 3, nullptr, clean, flags);
            EXPECT_EQ(Text(plain), Text(flagged));
        }
    }
}

// --- Against the plain form.

TEST(PolyLineOffsetBand, IsThatOfThePlainForm) {
    SeededLines random(121);
    std::size_t cut = 0, bevels = 0;
    for (const Point3d& base :
         {Point3d(), Point3d(25496000, 6672000, 30), Point3d(1e12, -1e12, 0)}) {
        for (int i = 0; i < 500; ++i) {
            PolyLine line = i % 3 == 0   ? random.Roughened(random.Ring(base, 30))
                            : i % 3 == 1 ? random.Walk(random.Whole(1, 40), base, 10, true)
                                         : random.Walk(random.Whole(1, 40), base, 10, false);
            if (random.Chance(2)) line.Reverse();
            if (random.Chance(10))
                line.Append(Point3d(line.data[line.count - 1]) + Point3d(5e-5, 0, 0));
            const double left = random.Chance(10) ? 0 : random.Real(0.1, 12);
            const double right = random.Chance(3) ? -1 : random.Real(0, 12);
            const bool clean = random.Chance(2);
            PolyArray result, ribs;
            line.OffsetBand(&result, left, right, &ribs, clean);
            const PlainBand plain(line, left, right, clean);
            ASSERT_EQ(Text(plain.rings), Text(result)) << i << " " << base.x;
            ASSERT_EQ(Text(plain.ribs), Text(ribs)) << i;
            std::size_t vertices = 0;
            for (const PolyLine* ring : result) vertices += ring->count;
            if (!clean && vertices < 2 * line.count) ++cut;
            if (ribs.count < line.count - 1) ++bevels;
        }
    }
    EXPECT_GT(cut, 100u);
    EXPECT_GT(bevels, 300u);
}

TEST(PolyLineOffsetBand, OfALongLineIsThatOfThePlainForm) {
    SeededLines random(122);
    const PolyLine line = random.Walk(1500, {25496000, 6672000, 30}, 10, false);
    for (const bool clean : {false, true}) {
        PolyArray result;
        line.OffsetBand(&result, 3, 2, nullptr, clean);
        ASSERT_EQ(Text(PlainBand(line, 3, 2, clean).rings), Text(result));
    }
}

TEST(PolyLineOffsetBand, NumbersAtTheLimitsOfDoubleComeThrough) {
    const double infinity = std::numeric_limits<double>::infinity();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const double odd : {infinity, -infinity, nan, 1e308, 1e-320}) {
        for (const bool clean : {false, true}) {
            const PolyLine line = MakeLine({{0, 0, 0}, {odd, 0, 0}, {5, odd, odd}, {0, 0, 0}});
            for (const double width : {1.0, odd}) {
                PolyArray result;
                line.OffsetBand(&result, width, width, nullptr, clean);
                EXPECT_LT(result.count, 30u);
            }
        }
    }
}

// --- Refused memory.

TEST(PolyLineOffsetBand, RefusedMemoryLeavesResultAndRibs) {
    const PolyLine line = FromText("0 0, 10 0, 10 1, 20 1, 5 -8, 2 0");
    PolyArray result, ribs;
    const auto check = [&](const test::Raised& raised) {
        if (raised.type == "nothing") return 0;  // done without, in another way
        EXPECT_EQ("TamExpNoMem", raised.type);
        EXPECT_EQ("1,2,3\n", Text(result));
        EXPECT_EQ("4,5,6\n", Text(ribs));
        return 1;
    };
    int times = 0;
    for (int n = 1;; ++n) {
        result = MakeArray({{{1, 2, 3}}});
        ribs = MakeArray({{{4, 5, 6}}});
        test::MemoryFaults faults;
        faults.Fail(test::Request::any, n);
        const auto raised = test::Catch([&] { line.OffsetBand(&result, 2, 2, &ribs, true); });
        if (test::MemoryFaults::Passed() < n) break;
        EXPECT_TRUE(raised.type == "nothing" || test::MemoryFaults::Live() == 0) << n;
        times += check(raised);
    }
    EXPECT_GT(times, 20);
    times = 0;
    for (int n = 1;; ++n) {
        result = MakeArray({{{1, 2, 3}}});
        ribs = MakeArray({{{4, 5, 6}}});
        const test::NewFaults faults;
        test::NewFaults::Fail(n);
        const auto raised = test::Catch([&] { line.OffsetBand(&result, 2, 2, &ribs, true); });
        if (test::NewFaults::Passed() < n) break;
        times += check(raised);
    }
    EXPECT_GT(times, 3);
}

}  // namespace
}  // namespace TamLib
