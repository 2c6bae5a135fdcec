// Parallels of open and closed polylines.
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

PolyArray OffsetOf(const PolyLine& line, double distance, bool clean = false) {
    PolyArray result;
    const std::string before = Text(line);
    line.Offset(&result, distance, clean);
    EXPECT_EQ(before, Text(line));
    return result;
}

std::string Offset(const std::string& line, double distance, bool clean = false) {
    return Rows(OffsetOf(FromText(line), distance, clean));
}

const char* const kCounterClockwise = "(0 0, 10 0, 10 10, 0 10)";
const char* const kClockwise = "(0 0, 0 10, 10 10, 10 0)";

TEST(PolyLineOffset, OfAnOpenLineAPositiveDistanceLiesToTheRight) {
    EXPECT_EQ("0 -1, 10 -1\n", Offset("0 0, 10 0", 1));
    EXPECT_EQ("0 1, 10 1\n", Offset("0 0, 10 0", -1));
    EXPECT_EQ("1 0, 1 10\n", Offset("0 0, 0 10", 1));
    EXPECT_EQ("-1 0, -1 10\n", Offset("0 0, 0 10", -1));
}

TEST(PolyLineOffset, ACornerMovesByTheRootOfTwo) {
    EXPECT_EQ("0 -1, 11 -1, 11 10\n", Offset("0 0, 10 0, 10 10", 1));
    EXPECT_EQ("0 1, 9 1, 9 10\n", Offset("0 0, 10 0, 10 10", -1));
    const PolyArray moved = OffsetOf(FromText("0 0, 10 0, 10 10"), 1);
    EXPECT_NEAR(std::sqrt(2.0), Distance(*moved[0]->At(1), {10, 0, 0}), 1e-15);
    // A straight vertex moves across, one without neighbours apart as well.
    EXPECT_EQ("0 -1, 10 -1, 20 -1\n", Offset("0 0, 10 0, 20 0", 1));
}

TEST(PolyLineOffset, OfARingAPositiveDistanceLiesOutsideWhateverItsSense) {
    EXPECT_EQ("(-1 -1, 11 -1, 11 11, -1 11)\n", Offset(kCounterClockwise, 1));
    EXPECT_EQ("(-1 -1, -1 11, 11 11, 11 -1)\n", Offset(kClockwise, 1));
    EXPECT_EQ("(1 1, 9 1, 9 9, 1 9)\n", Offset(kCounterClockwise, -1));
    EXPECT_EQ("(1 1, 1 9, 9 9, 9 1)\n", Offset(kClockwise, -1));
    EXPECT_EQ("(1 1, 9 1, 9 9, 1 9)\n", Offset(kCounterClockwise, -1, true));
    EXPECT_EQ("(1 1, 1 9, 9 9, 9 1)\n", Offset(kClockwise, -1, true));
}

TEST(PolyLineOffset, TheRepeatedVertexIsACopyOfTheFirst) {
    const PolyArray moved = OffsetOf(FromText("(0 0 5, 10 1 6, 9 11 7)"), 1.23);
    ASSERT_EQ(4u, moved[0]->count);
    EXPECT_TRUE(SameBits(*moved[0]->At(0), *moved[0]->At(3)));
}

TEST(PolyLineOffset, HeightsStay) {
    EXPECT_EQ("0 -1 5, 11 -1 6, 11 10 7\n", Offset("0 0 5, 10 0 6, 10 10 7", 1));
}

TEST(PolyLineOffset, WithoutADistanceItIsACopyAsItStands) {
    const PolyLine line = MakeLine({{0, 0, 1}, {0, 0, 1}, {5e-8, 0, 1}, {3, 0, 1}, {0, 0, 1}});
    for (const double distance : {0.0, 0.0000999, -0.0000999})
        for (const bool clean : {false, true})
            EXPECT_EQ(Text(line) + "\n", Text(OffsetOf(line, distance, clean)));
    // On the limit vertices move, and near duplicates have gone.
    for (const double distance : {0.0001, -0.0001}) {
        const PolyArray moved = OffsetOf(line, distance);
        EXPECT_EQ(3u, moved[0]->count);
        EXPECT_NE(0.0, moved[0]->At(0)->x);
    }
}

TEST(PolyLineOffset, NearDuplicatesArePassedOver) {
    EXPECT_EQ("0 -1, 11 -1, 11 10\n", Offset("0 0, 0.00000009 0, 10 0, 10 0.00000009, 10 10", 1));
    EXPECT_EQ(4u, OffsetOf(FromText("0 0, 0.00000011 0, 10 0, 10 10"), 1)[0]->count);
}

TEST(PolyLineOffset, VerticesThatAreEqualPointAnywhere) {
    // Intended: 0.00005 apart there is no direction but that of `Angle` for equal points, +x.
    const PolyArray moved = OffsetOf(FromText("0 0, 0 10, 0 10.00005, 0 20"), 1);
    ASSERT_EQ(4u, moved[0]->count);
    EXPECT_NEAR(1, moved[0]->At(0)->x, 1e-9);
    EXPECT_NEAR(9, moved[0]->At(1)->y, 1e-9);
    EXPECT_NEAR(1, moved[0]->At(3)->x, 1e-9);
}

// --- Spikes.

// A corner at the origin between a segment from the right and one back to it, `angle` apart, and
// where the corner goes.
Point3d Spike(double angle, double distance) {
    const PolyLine line =
        MakeLine({{10, 0, 0}, {0, 0, 0}, {10 * std::cos(angle), 10 * std::sin(angle), 0}});
    return *OffsetOf(line, distance)[0]->At(1);
}

TEST(PolyLineOffset, ASpikeIsCutAtTwentyFiveDistances) {
    const double limit = 2 * std::asin(1.0 / 25.0);  // the corner whose spike is as long
    for (const double distance : {2.0, -2.0}) {
        for (const double side : {1.0, -1.0}) {
            const double below = side * limit * 0.999, above = side * limit * 1.001;
            EXPECT_NEAR(50.0, VectorLength(Spike(below, distance)), 1e-12);
            EXPECT_NEAR(2.0 / std::sin(limit * 1.001 / 2), VectorLength(Spike(above, distance)),
                        1e-9);
            EXPECT_LT(VectorLength(Spike(above, distance)), 49.99);
            EXPECT_NEAR(50.0, VectorLength(Spike(side * 1e-6, distance)), 1e-12);
        }
    }
    // The direction is that of the bisector.
    const Point3d spike = Spike(0.01, -2.0);
    EXPECT_NEAR(0.005 - 3.141592653589793, Angle({}, spike), 1e-12);
    EXPECT_NEAR(0.005, Angle({}, Spike(0.01, 2.0)), 1e-12);
}

TEST(PolyLineOffset, AHairpinThatRunsBackOnItselfIsCutToo) {
    const PolyArray moved = OffsetOf(FromText("0 0, 10 0, 0 0.0, 0 5"), 1);
    EXPECT_NEAR(25.0, Distance(*moved[0]->At(1), {10, 0, 0}), 1e-12);
}

// --- Cleaning.

TEST(PolyLineOffset, TheInsideOfAUsedUpPolygonIsInvertedAndDropped) {
    EXPECT_EQ("(6 6, 4 6, 4 4, 6 4)\n", Offset(kCounterClockwise, -6));
    for (const char* const ring :
         {kCounterClockwise, kClockwise, "(0 0, 20 0, 20 10, 0 10)", "(0 0, 0 10, 20 10, 20 0)",
          "(0 0, 10 0, 0 10)", "(0 0, 0 10, 10 0)"})
        EXPECT_EQ("", Offset(ring, -6, true)) << ring;
    EXPECT_EQ("(4.5 4.5, 5.5 4.5, 5.5 5.5, 4.5 5.5)\n", Offset(kCounterClockwise, -4.5, true));
    // Each side of a rectangle turns round by itself: this ring has turned the other way.
    EXPECT_EQ("(6 6, 14 6, 14 4, 6 4)\n", Offset("(0 0, 20 0, 20 10, 0 10)", -6));
}

TEST(PolyLineOffset, AnOutlineThatPartsKeepsBothParts) {
    // A waist 2 wide.
    const char* const waist = "(0 0, 15 4, 30 0, 30 10, 15 6, 0 10)";
    EXPECT_EQ(1u, OffsetOf(FromText(waist), -1.5).count);
    const PolyArray parts = OffsetOf(FromText(waist), -1.5, true);
    ASSERT_EQ(2u, parts.count);
    for (const PolyLine* part : parts) {
        EXPECT_TRUE(part->IsClosed());
        EXPECT_FALSE(part->IsClockwise());
        EXPECT_EQ(4u, part->count);
    }
    EXPECT_EQ(1u, OffsetOf(FromText(waist), -0.5, true).count);
}

TEST(PolyLineOffset, WallsThatComeToLieOnOneAnotherPartNothing) {
    // Two rooms joined by a corridor 2 wide. Intended: its ends meet the rooms' walls along the
    // walls, which is no crossing.
    const char* const rooms =
        "(0 0, 10 0, 10 4, 20 4, 20 0, 30 0, 30 10, 20 10, 20 6, 10 6, 10 10, 0 10)";
    EXPECT_EQ(Offset(rooms, -1.5), Offset(rooms, -1.5, true));
}

TEST(PolyLineOffset, LoopsOnTheInnerSideOfAnOpenLineAreCutAway) {
    // A notch narrower than the distance.
    const char* const notch = "0 0, 10 0, 10 -2, 12 -2, 12 0, 22 0";
    const PolyArray raw = OffsetOf(FromText(notch), -1.5),
                    clean = OffsetOf(FromText(notch), -1.5, true);
    EXPECT_EQ("0 1.5, 11.5 1.5, 11.5 -0.5, 10.5 -0.5, 10.5 1.5, 22 1.5\n", Rows(raw));
    ASSERT_LT(0u, clean.count);
    for (const PolyLine* loop : clean) {
        EXPECT_TRUE(!loop->IsClosed() || !loop->IsClockwise());
    }
}

// A run across itself: a loop to the left of the way and what remains.
const char* const kLeftLoop = "0 0, 20 0, 20 10, 10 10, 10 -10";
const char* const kRightLoop = "0 0, 20 0, 20 -10, 10 -10, 10 10";

TEST(PolyLineOffset, OfAnOpenLineLoopsOfTheOtherSenseGo) {
    // To the right of the way clockwise loops are wanted, to the left the others.
    const auto kept = [](const char* line, double distance) {
        return OffsetOf(FromText(line), distance, true).count;
    };
    EXPECT_EQ(1u, kept(kLeftLoop, 0.5));
    EXPECT_EQ(2u, kept(kLeftLoop, -0.5));
    EXPECT_EQ(2u, kept(kRightLoop, 0.5));
    EXPECT_EQ(1u, kept(kRightLoop, -0.5));
    // What stays is not closed, and comes last.
    const PolyArray left = OffsetOf(FromText(kLeftLoop), -0.5, true);
    EXPECT_TRUE(left[0]->IsClosed());
    EXPECT_FALSE(left[1]->IsClosed());
    EXPECT_EQ("0 -0.5, 9.5 -0.5, 9.5 -10\n", Rows(OffsetOf(FromText(kLeftLoop), 0.5, true)));
}

TEST(PolyLineOffset, ALoopThatEndsAtAnotherHeightStaysWhateverItsSense) {
    // Intended: it is a loop in plan, but not closed.
    const PolyArray pieces =
        OffsetOf(FromText("0 0 0, 20 0 0, 20 10 5, 10 10 5, 10 -10 9"), 0.5, true);
    ASSERT_EQ(2u, pieces.count);
    const PolyLine& loop = *pieces[0];
    EXPECT_FALSE(loop.IsClosed());
    EXPECT_FALSE(loop.IsClockwise());
    EXPECT_TRUE(Equals2d(*loop.At(0), *loop.At(-1)));
    EXPECT_EQ(1u, OffsetOf(FromText("0 0, 20 0, 20 10, 10 10, 10 -10"), 0.5, true).count);
}

TEST(PolyLineOffset, ALoneOpenPieceIsTheResultWhateverItsSense) {
    for (const double distance : {1.0, -1.0})
        for (const char* const bend : {"0 0, 10 0, 10 10", "0 0, 10 0, 10 -10"})
            EXPECT_EQ(Offset(bend, distance), Offset(bend, distance, true));
}

TEST(PolyLineOffset, TheResultIsEmptiedFirst) {
    PolyArray result = MakeArray({{{1, 2, 3}}, {{4, 5, 6}}});
    result.box = new Box;
    FromText("0 0, 10 0").Offset(&result, 1, false);
    EXPECT_EQ("0 -1, 10 -1\n", Rows(result));
    EXPECT_EQ(nullptr, result.box);
    FromText(kCounterClockwise).Offset(&result, -6, true);
    EXPECT_EQ(0u, result.count);
    // Also when it holds the line itself.
    result = MakeArray({{{0, 0, 0}, {10, 0, 0}}});
    result[0]->Offset(&result, 1, false);
    EXPECT_EQ("0 -1, 10 -1\n", Rows(result));
}

TEST(PolyLineOffset, TheResultPromisesNoOrder) {
    PolyArray result;
    result.Sort();
    ASSERT_TRUE(result.sorted);
    result.unique = true;
    FromText("(0 0, 15 4, 30 0, 30 10, 15 6, 0 10)").Offset(&result, -1.5, true);
    EXPECT_EQ(2u, result.count);
    EXPECT_FALSE(result.sorted);
    EXPECT_FALSE(result.unique);
}

TEST(PolyLineOffset, OfFewVertices) {
    for (const bool clean : {false, true}) {
        const PolyArray none = OffsetOf(PolyLine(), 1, clean);
        ASSERT_EQ(1u, none.count);
        EXPECT_EQ(0u, none[0]->count);
        // A single vertex moves as the first one of a way along +x.
        EXPECT_EQ("5 4\n", Offset("5 5", 1, clean));
        EXPECT_EQ("5 6\n", Offset("5 5", -1, clean));
    }
    // A closed figure without extent has no bisector: the limit takes its place.
    const PolyArray point = OffsetOf(FromText("5 5, 5 5"), 1);
    ASSERT_EQ(2u, point[0]->count);
    EXPECT_NEAR(25.0, Distance(*point[0]->At(0), {5, 5, 0}), 1e-12);
}

TEST(PolyLineOffset, ClosedInPlanAloneIsOpen) {
    EXPECT_EQ("0 1, 9 1, 9 9, 1 9, 1 0 7\n", Offset("0 0 0, 10 0, 10 10, 0 10, 0 0 7", -1));
}

TEST(PolyLineOffset, ClosedIsWhatTheLineIsBeforeNearDuplicatesGo) {
    // The repeated vertex goes with the one above it, which stands for it then.
    const char* const ring = "0 0, 10 0, 10 10, 0 10, 0 0 7, 0 0";
    for (const bool clean : {false, true}) {
        EXPECT_EQ("(-1 -1, 11 -1, 11 11, -1 11)\n", Offset(ring, 1, clean));
        EXPECT_EQ("(1 1, 9 1, 9 9, 1 9)\n", Offset(ring, -1, clean));
    }
    // The one above the repeated vertex goes, and leaves an open line that ends where it begins.
    const char* const open = "0 0, 10 0, 10 10, 0 10, 0 0, 0 0 7";
    EXPECT_EQ("0 -1, 11 -1, 11 11, -1 11, -1 0\n", Offset(open, 1));
    EXPECT_EQ("0 1, 9 1, 9 9, 1 9, 1 0\n", Offset(open, -1));
}

TEST(PolyLineOffset, TheShiftForOutputIsThatOfTheLine) {
    PolyLine line = FromText("(0 0, 15 4, 30 0, 30 10, 15 6, 0 10)");
    line.offset = {7, 8, 9};
    for (const double distance : {0.0, 0.5, -1.5}) {
        for (const bool clean : {false, true}) {
            const PolyArray parts = OffsetOf(line, distance, clean);
            EXPECT_EQ(clean && distance < 0 ? 2u : 1u, parts.count);
            for (const PolyLine* part : parts)
                EXPECT_TRUE(SameBits(Point3d(7, 8, 9), part->offset)) << distance;
        }
    }
}

TEST(PolyLineOffset, NumbersAtTheLimitsOfDoubleComeThrough) {
    const double infinity = std::numeric_limits<double>::infinity();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const double odd : {infinity, -infinity, nan, 1e308, 1e-320}) {
        for (const bool clean : {false, true}) {
            const PolyLine line = MakeLine({{0, 0, 0}, {odd, 0, 0}, {5, odd, odd}, {0, 0, 0}});
            for (const double distance : {1.0, odd})
                EXPECT_LT(OffsetOf(line, distance, clean).count, 10u);
        }
    }
}

// --- Laws.

// Each new vertex lies at the distance from the lines through both segments, unless it was cut.
TEST(PolyLineOffset, EachVertexKeepsItsDistanceFromBothSegments) {
    SeededLines random(111);
    int corners = 0, cut = 0;
    for (const Point3d& base : {Point3d(), Point3d(25496000, 6672000, 30)}) {
        for (int i = 0; i < 1500; ++i) {
            PolyLine line = i % 2 == 0 ? random.Ring(base, 100)
                                       : random.Walk(random.Whole(2, 30), base, 20, false);
            if (random.Chance(2)) line.Reverse();
            const double distance = random.Real(0.1, 5) * (random.Chance(2) ? 1 : -1);
            const PolyArray result = OffsetOf(line, distance);
            ASSERT_EQ(1u, result.count);
            const PolyLine& moved = *result[0];
            ASSERT_EQ(line.count, moved.count);
            const bool closed = line.IsClosed();
            // To the right of the way, or for a ring away from its inside.
            const double right = closed && line.IsClockwise() ? -distance : distance;
            const int n = static_cast<int>(line.count) - (closed ? 1 : 0);
            for (int k = 0; k < n; ++k) {
                const Point3d &v = line.data[k], &p = moved.data[k];
                ASSERT_EQ(v.z, p.z);
                const double away = Distance2d(v, p);
                ASSERT_LE(away, 25 * std::fabs(distance) + 1e-7);
                if (away > 24.99 * std::fabs(distance)) {
                    ++cut;
                    continue;
                }
                for (const int step : {-1, 1}) {
                    if (!closed && (k + step < 0 || k + step >= n)) continue;
                    const Point3d& w = line.data[(k + step + n) % n];
                    const Line segment = step < 0 ? Line(w, v) : Line(v, w);
                    ASSERT_NEAR(std::fabs(distance), segment.LineDistance2d(p, nullptr), 1e-6);
                    ASSERT_EQ(right > 0 ? 1 : -1, segment.Side(p, false));
                    ++corners;
                }
            }
        }
    }
    EXPECT_GT(corners, 50000);
    EXPECT_GT(cut, 20);
}

std::vector<Points> CleanedPlainly(const PolyLine& line, double distance) {
    const PolyArray raw = OffsetOf(line, distance);
    std::vector<Points> loops = SplitSelfCrossingsPlainly(PointsOf(*raw[0]));
    const bool closed = line.IsClosed();
    const bool flip = (closed && line.IsClockwise()) != (distance < 0);
    if (loops.size() == 1 && !closed) return loops;
    const bool wanted = closed ? line.IsClockwise() : !flip;
    std::vector<Points> kept;
    for (const Points& loop : loops) {
        const PolyLine candidate = MakeLine(loop);
        if (!candidate.IsClosed() || candidate.IsClockwise() == wanted) kept.push_back(loop);
    }
    if (loops.size() > 1) return kept;
    PolyLine corners(line);
    corners.RemoveNearDuplicates(1e-07);
    if (closed && corners.count > 1) corners.Remove(-1, 1);
    for (std::uint32_t i = 0; i < corners.count; ++i) {
        const Point3d before = corners.data[(i + 1) % corners.count] - corners.data[i];
        const Point3d after = raw[0]->data[i + 1] - raw[0]->data[i];
        if (!(before.x * after.x + before.y * after.y < 0)) return kept;
    }
    return {};
}

TEST(PolyLineOffset, CleaningIsThatOfThePlainForm) {
    SeededLines random(112);
    int loops = 0, none = 0;
    for (const Point3d& base : {Point3d(), Point3d(25496000, 6672000, 30)}) {
        for (int i = 0; i < 600; ++i) {
            PolyLine line = i % 3 == 0 ? random.Roughened(random.Ring(base, 30))
                                       : random.Walk(random.Whole(2, 25), base, 10, i % 3 == 1);
            if (random.Chance(2)) line.Reverse();
            const double distance = random.Real(0.1, 15) * (random.Chance(2) ? 1 : -1);
            const PolyArray result = OffsetOf(line, distance, true);
            ASSERT_EQ(Text(CleanedPlainly(line, distance)), Text(result)) << i;
            loops += static_cast<int>(result.count);
            none += result.count == 0 ? 1 : 0;
        }
    }
    EXPECT_GT(loops, 3000);
    EXPECT_GT(none, 10);
}

// --- Refused memory.

TEST(PolyLineOffset, RefusedMemoryLeavesTheResultAsItWas) {
    const PolyLine line = FromText(kLeftLoop);
    for (const bool clean : {false, true}) {
        int refused = 0;
        for (int n = 1;; ++n) {
            PolyArray result = MakeArray({{{1, 2, 3}}});
            test::MemoryFaults faults;
            faults.Fail(test::Request::any, n);
            const test::Raised raised = test::Catch([&] { line.Offset(&result, -0.5, clean); });
            if (test::MemoryFaults::Passed() < n) break;
            if (raised.type == "nothing") continue;  // done without, in another way
            EXPECT_EQ(0, test::MemoryFaults::Live());
            EXPECT_EQ(L"datastruct/Array", raised.file);
            EXPECT_EQ("1,2,3\n", Text(result));
            ++refused;
        }
        EXPECT_GT(refused, 2);
        refused = 0;
        for (int n = 1;; ++n) {
            PolyArray result = MakeArray({{{1, 2, 3}}});
            const test::NewFaults faults;
            test::NewFaults::Fail(n);
            const test::Raised raised = test::Catch([&] { line.Offset(&result, -0.5, clean); });
            if (test::NewFaults::Passed() < n) break;
            if (raised.type == "nothing") continue;  // a standard sort does without its buffer
            EXPECT_EQ("TamExpNoMem", raised.type);
            EXPECT_EQ("1,2,3\n", Text(result));
            ++refused;
        }
        EXPECT_EQ(clean ? 2 : 1, refused);
    }
}

}  // namespace
}  // namespace TamLib
