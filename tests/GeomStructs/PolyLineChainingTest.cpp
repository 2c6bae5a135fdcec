// Pieces and lines chained into one polyline, and two polylines joined.
#include <gtest/gtest.h>

#include "tests/GeomStructs/PlainChaining.h"
#include "tests/datastruct/ArrayFaults.h"

namespace TamLib {
namespace {

std::string Chained(const std::vector<Points>& pieces) {
    PolyArray array = MakeArray(pieces);
    return Text(PolyLine(array));
}
std::string ChainedLines(const std::vector<Line>& all) {
    LineArray lines = MakeLines(all);
    return Text(PolyLine(lines));
}
Line L(double x1, double y1, double x2, double y2, double z1 = 0, double z2 = 0) {
    return {{x1, y1, z1}, {x2, y2, z2}};
}

// --- Pieces.

TEST(PolyLineChaining, NoPiecesGiveAnEmptyPolyline) {
    PolyArray none;
    const PolyLine line(none);
    EXPECT_EQ(0u, line.count);
    EXPECT_EQ(0u, line.capacity);
    EXPECT_EQ(5u, line.increment);
}

TEST(PolyLineChaining, GrowthIsAThirdMoreThanThePieces) {
    PolyArray pieces = MakeArray(std::vector<Points>(10, Points{{0, 0, 0}, {1, 0, 0}}));
    EXPECT_EQ(13u, PolyLine(pieces).increment);
    PolyArray few = MakeArray({{{0, 0, 0}, {1, 0, 0}}});
    EXPECT_EQ(5u, PolyLine(few).increment);
}

TEST(PolyLineChaining, ThreeSegmentsInAnyOrderAndDirectionChain) {
    std::vector<Points> pieces = {
        {{0, 0, 0}, {1, 0, 0}}, {{1, 0, 0}, {2, 1, 0}}, {{2, 1, 0}, {3, 0, 0}}};
    std::vector<int> order = {0, 1, 2};
    const std::string forward = "0,0,0 1,0,0 2,1,0 3,0,0", backward = "3,0,0 2,1,0 1,0,0 0,0,0";
    do {
        for (unsigned turned = 0; turned < 8; ++turned) {
            std::vector<Points> shuffled;
            for (const int index : order) {
                shuffled.push_back(pieces[static_cast<std::size_t>(index)]);
                if ((turned >> index & 1u) != 0)
                    std::reverse(shuffled.back().begin(), shuffled.back().end());
            }
            const std::string chained = Chained(shuffled);
            EXPECT_TRUE(chained == forward || chained == backward) << chained;
        }
    } while (std::next_permutation(order.begin(), order.end()));
}

TEST(PolyLineChaining, AClosedRingRepeatsVertexZeroOnceMore) {
    // Four sides end with vertex 0 already; intended: it is appended again.
    PolyArray pieces = MakeArray({{{0, 0, 0}, {1, 0, 0}},
                                  {{1, 0, 0}, {1, 1, 0}},
                                  {{1, 1, 0}, {0, 1, 0}},
                                  {{0, 1, 0}, {0, 0, 0}}});
    const PolyLine ring(pieces);
    EXPECT_EQ("1,0,0 1,1,0 0,1,0 0,0,0 1,0,0 1,0,0", Text(ring));
    EXPECT_TRUE(ring.IsClosed());
}

TEST(PolyLineChaining, AnOpenRingClosesBelowOneTenMillionthIn3d) {
    const auto vertices = [](double dx, double dz) {
        PolyArray pieces = MakeArray({{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {dx, 0, dz}}});
        return PolyLine(pieces).count;
    };
    EXPECT_EQ(5u, vertices(0.99e-7, 0));
    EXPECT_EQ(4u, vertices(1.01e-7, 0));
    EXPECT_EQ(4u, vertices(0, 1.01e-7));
    EXPECT_EQ(5u, vertices(0, 0.99e-7));
}

TEST(PolyLineChaining, ASinglePointIsItsOwnRing) {
    EXPECT_EQ("1,2,3 1,2,3", Chained(std::vector<Points>{{{1, 2, 3}}}));
}

TEST(PolyLineChaining, PiecesWithoutVerticesArePassedOver) {
    PolyArray pieces = MakeArray({{}, {{0, 0, 0}, {1, 0, 0}}, {}, {{1, 0, 0}, {2, 0, 0}}, {}});
    EXPECT_EQ("0,0,0 1,0,0 2,0,0", Text(PolyLine(pieces)));
    for (const PolyLine* piece : pieces) EXPECT_EQ(-1.0, piece->maxPoint.x);
}

TEST(PolyLineChaining, TheStoredBoxesOfThePiecesAreSpoiled) {
    PolyArray pieces = MakeArray({{{0, 0, 0}, {1, 0, 0}}, {{1, 0, 0}, {2, 0, 0}}});
    pieces[0]->maxPoint = pieces[1]->maxPoint = {77, 78, 79};
    const PolyLine line(pieces);
    EXPECT_EQ(-1.0, pieces[0]->maxPoint.x);
    EXPECT_EQ(-1.0, pieces[1]->maxPoint.x);
    EXPECT_EQ(78.0, pieces[0]->maxPoint.y);
    EXPECT_EQ(0, line.hasBounds);
    EXPECT_EQ(0.0, line.offset.x);
}

TEST(PolyLineChaining, PiecesThatJoinTheOtherWayRoundAreReversedInPlace) {
    // The last one starts. Its end takes a piece by its last vertex, its start one by its first.
    PolyArray pieces =
        MakeArray({{{3, 0, 0}, {2, 0, 0}}, {{1, 0, 0}, {0, 0, 0}}, {{1, 0, 0}, {2, 0, 0}}});
    EXPECT_EQ("0,0,0 1,0,0 2,0,0 3,0,0", Text(PolyLine(pieces)));
    EXPECT_EQ("2,0,0 3,0,0", Text(*pieces[0]));
    EXPECT_EQ("0,0,0 1,0,0", Text(*pieces[1]));
    EXPECT_EQ("1,0,0 2,0,0", Text(*pieces[2]));
}

TEST(PolyLineChaining, OnlyAJoinAtTheEndDropsAVertex) {
    // Ends that are equal within 0.0001 but farther apart than near duplicates.
    EXPECT_EQ(Text({{0, 0, 0}, {1.00005, 0, 0}, {2, 0, 0}}),
              Chained({{{1.00005, 0, 0}, {2, 0, 0}}, {{0, 0, 0}, {1, 0, 0}}}));
    EXPECT_EQ(Text({{0, 0, 0}, {1, 0, 0}, {1.00005, 0, 0}, {2, 0, 0}}),
              Chained({{{0, 0, 0}, {1, 0, 0}}, {{1.00005, 0, 0}, {2, 0, 0}}}));
}

TEST(PolyLineChaining, OfEqualDistancesTheLastPieceCounts) {
    // Two pieces leave the end (1,0), both by their first vertex; the other one is joined to the
    // start then.
    EXPECT_EQ("9,9,0 1,0,0 0,0,0 1,0,0 5,5,0",
              Chained({{{1, 0, 0}, {9, 9, 0}}, {{1, 0, 0}, {5, 5, 0}}, {{0, 0, 0}, {1, 0, 0}}}));
}

TEST(PolyLineChaining, EndsAreTriedBeforeStarts) {
    // A piece as far from the end as from the start: it is joined at the end, by its first vertex.
    EXPECT_EQ("0,0,0 2,0,0 1,1,0 1,5,0", Chained({{{1, 1, 0}, {1, 5, 0}}, {{0, 0, 0}, {2, 0, 0}}}));
    // By its last one where that is as near.
    EXPECT_EQ("0,0,0 2,0,0 1,1,0 1,5,0", Chained({{{1, 5, 0}, {1, 1, 0}}, {{0, 0, 0}, {2, 0, 0}}}));
    // Nearer to the start.
    EXPECT_EQ("1,5,0 0.5,1,0 0,0,0 2,0,0",
              Chained({{{0.5, 1, 0}, {1, 5, 0}}, {{0, 0, 0}, {2, 0, 0}}}));
}

TEST(PolyLineChaining, NearDuplicatesGo) {
    EXPECT_EQ("0,0,0 1,0,0 2,0,0",
              Chained(std::vector<Points>{{{0, 0, 0}, {1, 0, 0}, {1, 0.00000009, 5}, {2, 0, 0}}}));
}

TEST(PolyLineChaining, WhatIsNoNumberIsChainedAllTheSame) {
    const double nan = std::nan(""), inf = HUGE_VAL;
    PolyArray pieces = MakeArray({{{nan, 0, 0}, {1, 0, 0}},
                                  {{inf, 0, 0}, {2, 0, nan}},
                                  {{1e200, 0, 0}, {-1e200, 0, 0}},
                                  {{3, 0, 0}, {nan, 4, 0}}});
    const PolyLine line(pieces);
    EXPECT_GE(line.count, 6u);
    for (const PolyLine* piece : pieces) EXPECT_EQ(-1.0, piece->maxPoint.x);
    LineArray lines = MakeLines({L(nan, 0, nan, 0), L(inf, 0, 1, 0), L(0, 0, 1, 0)});
    EXPECT_GE(PolyLine(lines).count, 4u);
}

TEST(PolyLineChaining, ChainsAsThePlainWalkDoes) {
    Numbers numbers(21);
    for (int round = 0; round < 1500; ++round) {
        const double east = numbers.OneIn(3) ? 25e6 : 0, north = east == 0 ? 0 : 7e6;
        std::vector<Points> pieces(static_cast<std::size_t>(numbers.Below(12)));
        for (Points& piece : pieces)
            for (int i = numbers.Below(5); i > 0; --i)
                piece.push_back({east + numbers.Below(5) + (numbers.OneIn(4) ? 0.00006 : 0.0),
                                 north + numbers.Below(5), 1.0 * numbers.Below(2)});
        PolyLine expected = MakeLine(ChainPlainly(pieces));
        expected.RemoveNearDuplicates(1e-07);
        if (expected.count > 0 && Distance(expected[-1], expected[0]) < 1e-07)
            expected.Append(Point3d(expected[0]));
        ASSERT_EQ(Text(expected), Chained(pieces)) << "round " << round;
    }
}

// --- Lines.

TEST(PolyLineChaining, NoLinesGiveAnEmptyPolyline) {
    LineArray none;
    EXPECT_EQ(0u, PolyLine(none).count);
}

TEST(PolyLineChaining, ALinesGapBecomesASegment) {
    EXPECT_EQ("0,0,0 1,0,0 2,0,0 3,0,0", ChainedLines({L(2, 0, 3, 0), L(0, 0, 1, 0)}));
    EXPECT_EQ("0,0,0 1,0,0 2,0,0 3,0,0", ChainedLines({L(3, 0, 2, 0), L(0, 0, 1, 0)}));
    // At the front the nearer end comes to stand nearer.
    EXPECT_EQ("-3,0,0 -2,0,0 0,0,0 1,0,0", ChainedLines({L(-2, 0, -3, 0), L(0, 0, 1, 0)}));
    EXPECT_EQ("-3,0,0 -2,0,0 0,0,0 1,0,0", ChainedLines({L(-3, 0, -2, 0), L(0, 0, 1, 0)}));
}

TEST(PolyLineChaining, AGapBeginsAtTheSquareOfOneTenMillionth) {
    const auto vertices = [](double gap) {
        LineArray lines = MakeLines({L(gap, 0, gap, 5), L(0, 9, 0, 0)});
        return PolyLine(lines).count;
    };
    EXPECT_EQ(3u, vertices(0.0));
    EXPECT_EQ(3u, vertices(0.99999999e-7));
    // 1e-7 squared is 9.999999999999998e-15 in doubles, exactly the bound: a gap.
    EXPECT_EQ(9.999999999999998e-15, 1e-7 * 1e-7);
    EXPECT_EQ(4u, vertices(1e-7));
    EXPECT_EQ(4u, vertices(1.1e-7));
}

TEST(PolyLineChaining, LinesChainInAnyOrderAndDirection) {
    Numbers numbers(22);
    for (int round = 0; round < 100; ++round) {
        std::vector<Line> lines;
        for (int i = 0; i < 12; ++i)
            lines.push_back(numbers.OneIn(2) ? L(i, i * i, i + 1, (i + 1) * (i + 1))
                                             : L(i + 1, (i + 1) * (i + 1), i, i * i));
        numbers.Shuffle(lines);
        LineArray array = MakeLines(lines);
        PolyLine line(array);
        if (line[0].x != 0) line.Reverse();
        ASSERT_EQ(13u, line.count);
        for (int i = 0; i < 13; ++i) EXPECT_EQ(i * i, line[i].y);
    }
}

TEST(PolyLineChaining, TheArrayLosesItsLastLineAndItsFlags) {
    LineArray lines = MakeLines({L(1, 0, 2, 0), L(2, 0, 3, 0), L(0, 0, 1, 0)});
    const PolyLine line(lines);
    EXPECT_EQ(4u, line.count);
    ASSERT_EQ(2u, lines.count);
    EXPECT_EQ(0, lines[0].valid);
    EXPECT_EQ(0, lines[1].valid);
    EXPECT_EQ(1.0, lines[0].x1);
}

TEST(PolyLineChaining, LinesThatAreNotValidAreNotFree) {
    LineArray lines = MakeLines({L(1, 0, 2, 0), L(2, 0, 3, 0), L(0, 0, 1, 0)});
    lines[0].valid = 0;
    lines[2].valid = 0;  // the last one starts all the same
    EXPECT_EQ("0,0,0 1,0,0 2,0,0 3,0,0", Text(PolyLine(lines)));
    LineArray all = MakeLines({L(1, 0, 2, 0), L(0, 0, 1, 0)});
    all[0].valid = 2;  // whatever is not 0
    EXPECT_EQ("0,0,0 1,0,0 2,0,0", Text(PolyLine(all)));
}

TEST(PolyLineChaining, LinesKeepNearDuplicates) {
    EXPECT_EQ(4u, [] {
        LineArray lines = MakeLines({L(1, 0, 1, 1e-8), L(1, 1e-8, 2, 0), L(0, 0, 1, 0)});
        return PolyLine(lines).count;
    }());
}

TEST(PolyLineChaining, ARingOfLinesClosesAndRepeatsVertexZeroOnceMore) {
    const std::string ring = ChainedLines({L(0, 0, 1, 0), L(1, 0, 1, 1), L(1, 1, 0, 0)});
    EXPECT_EQ("1,0,0 1,1,0 0,0,0 1,0,0 1,0,0", ring);
}

TEST(PolyLineChaining, ChainsLinesAsThePlainWalkDoes) {
    Numbers numbers(23);
    for (int round = 0; round < 1500; ++round) {
        const double east = numbers.OneIn(3) ? 25e6 : 0, north = east == 0 ? 0 : 7e6;
        std::vector<Line> lines;
        for (int i = numbers.Below(14); i > 0; --i) {
            const auto point = [&] {
                return Point3d(east + numbers.Below(4) + (numbers.OneIn(4) ? 5e-8 : 0.0),
                               north + numbers.Below(4), 1.0 * numbers.Below(2));
            };
            const Point3d start = point();
            lines.emplace_back(start, point());
            if (numbers.OneIn(5)) lines.back().valid = 0;
        }
        PolyLine expected = MakeLine(ChainLinesPlainly(lines));
        if (expected.count > 0 && Distance(expected[-1], expected[0]) < 1e-07)
            expected.Append(Point3d(expected[0]));
        ASSERT_EQ(Text(expected), ChainedLines(lines)) << "round " << round;
    }
}

TEST(PolyLineChaining, RefusedMemoryLeavesNothingBehind) {
    int n = 1;
    for (;; ++n) {
        PolyArray pieces = MakeArray({{{0, 0, 0}, {1, 0, 0}}, {{1, 0, 0}, {2, 0, 0}}});
        LineArray lines = MakeLines({L(1, 0, 2, 0), L(0, 0, 1, 0)});
        test::MemoryFaults faults;
        faults.Fail(test::Request::any, n);
        const test::Raised raised = test::Catch([&] {
            const PolyLine fromPieces(pieces);
            const PolyLine fromLines(lines);
        });
        EXPECT_EQ(0, test::MemoryFaults::Live());
        if (raised.type == "nothing") break;
        EXPECT_EQ(L"datastruct/Array", raised.file);
    }
    EXPECT_GT(n, 6);
}

// --- Join.

const Points kA = {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}};

TEST(PolyLineJoin, WithAnEmptyOneItIsACopyOfTheOther) {
    const PolyLine a = MakeLine(kA), none;
    EXPECT_EQ(Text(kA), Text(a.Join(none)));
    EXPECT_EQ(Text(kA), Text(none.Join(a)));
    EXPECT_EQ("", Text(none.Join(none)));
}

TEST(PolyLineJoin, WithoutEqualEndsTheyFollowEachOther) {
    EXPECT_EQ("0,0,0 1,0,0 2,0,0 5,5,0 6,6,0",
              Text(MakeLine(kA).Join(MakeLine({{5, 5, 0}, {6, 6, 0}}))));
}

TEST(PolyLineJoin, EachPairOfEqualEndsHasItsOrder) {
    const PolyLine a = MakeLine(kA);
    EXPECT_EQ("0,0,0 1,0,0 2,0,0 5,5,0", Text(a.Join(MakeLine({{2, 0, 0}, {5, 5, 0}}))));
    EXPECT_EQ("0,0,0 1,0,0 2,0,0 5,5,0", Text(a.Join(MakeLine({{5, 5, 0}, {2, 0, 0}}))));
    EXPECT_EQ("2,0,0 1,0,0 0,0,0 5,5,0", Text(a.Join(MakeLine({{0, 0, 0}, {5, 5, 0}}))));
    EXPECT_EQ("5,5,0 0,0,0 1,0,0 2,0,0", Text(a.Join(MakeLine({{5, 5, 0}, {0, 0, 0}}))));
}

TEST(PolyLineJoin, FirstAndFirstComesBeforeLastAndFirst) {
    // Both ends of this ring equal the other's first.
    const PolyLine ring = MakeLine({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 0, 0}});
    EXPECT_EQ("0,0,0 1,1,0 1,0,0 0,0,0 9,9,0", Text(ring.Join(MakeLine({{0, 0, 0}, {9, 9, 0}}))));
    // Last and first before last and last, and that before first and last.
    const PolyLine a = MakeLine(kA);
    EXPECT_EQ("0,0,0 1,0,0 2,0,0 5,5,0 2,0,0",
              Text(a.Join(MakeLine({{2, 0, 0}, {5, 5, 0}, {2, 0, 0}}))));
    EXPECT_EQ("0,0,0 1,1,0 1,0,0 0,0,0 9,9,0",
              Text(MakeLine({{0, 0, 0}, {1, 1, 0}, {1, 0, 0}, {0, 0, 0}})
                       .Join(MakeLine({{9, 9, 0}, {0, 0, 0}}))));
}

TEST(PolyLineJoin, WithItselfItTakesTheRowOfEqualFirstVertices) {
    const PolyLine a = MakeLine(kA);
    EXPECT_EQ("2,0,0 1,0,0 0,0,0 1,0,0 2,0,0", Text(a.Join(a)));
}

TEST(PolyLineJoin, EndsAreEqualWithinATenThousandthInEachCoordinate) {
    const PolyLine a = MakeLine(kA);
    EXPECT_EQ(4u, a.Join(MakeLine({{2.00009, -0.00009, 0.00009}, {5, 5, 0}})).count);
    EXPECT_EQ(5u, a.Join(MakeLine({{2, 0, 0.00011}, {5, 5, 0}})).count);
    // The vertex of the second one goes.
    EXPECT_EQ(2.0, a.Join(MakeLine({{2.00009, 0, 0}, {5, 5, 0}}))[2].x);
}

TEST(PolyLineJoin, SingleVerticesJoin) {
    EXPECT_EQ("0,0,0", Text(MakeLine({{0, 0, 0}}).Join(MakeLine({{0, 0, 0}}))));
    EXPECT_EQ("2,0,0 1,0,0 0,0,0", Text(MakeLine(kA).Join(MakeLine({{0, 0, 0}}))));
}

TEST(PolyLineJoin, SettingsBoxAndOffsetAreThoseOfTheFirst) {
    PolyLine a = MakeLine(kA), b = MakeLine({{5, 5, 0}, {0, 0, 0}});
    a.offset = {1, 0, 0};
    b.offset = {2, 0, 0};
    EXPECT_EQ(1.0, a.Join(MakeLine({{9, 9, 9}})).offset.x);
    EXPECT_EQ(2.0, a.Join(b).offset.x);  // the other one comes first
    EXPECT_EQ(10u, a.Join(b).increment);
}

}  // namespace
}  // namespace TamLib
