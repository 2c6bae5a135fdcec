// Polylines taken apart into loops and where another one cuts them.
#include <gtest/gtest.h>

#include "tests/GeomStructs/NewFaults.h"
#include "tests/GeomStructs/PlainChaining.h"
#include "tests/datastruct/ArrayFaults.h"

namespace TamLib {
namespace {

std::string Told(const std::vector<Points>& lines) {
    return Text(lines);
}

// The loops, and checks that the plain walk gives the same, remainder included.
std::string Loops(const Points& points) {
    PolyLine line = MakeLine(points);
    const PolyArray loops = line.SplitLoops();
    Points remainder = points;
    std::vector<Points> plain;
    SplitLoopsPlainly(remainder, plain);
    EXPECT_EQ(Text(plain), Text(loops));
    EXPECT_EQ(Text(remainder), Text(line));
    return Text(loops);
}

const Point3d kO(0, 0, 0), kA(1, 0, 0), kB(1, 1, 0), kC(-1, 0, 0), kD(-1, -1, 0), kE(5, 5, 0);

TEST(PolyLineLoops, ASimpleLineIsItsOwnRemainder) {
    EXPECT_EQ(Told({{kO, kA, kE}}), Loops({kO, kA, kE}));
    EXPECT_EQ(Told({{}}), Loops({}));
    EXPECT_EQ(Told({{kO}}), Loops({kO}));
    EXPECT_EQ(Told({{kO, kO}}), Loops({kO, kO}));
}

TEST(PolyLineLoops, TheLastVertexDoesNotCountAsComingBack) {
    EXPECT_EQ(Told({{kO, kA, kB, kO}}), Loops({kO, kA, kB, kO}));
    // But one vertex further it does.
    EXPECT_EQ(Told({{kO, kA, kB, kO}, {kO, kE}}), Loops({kO, kA, kB, kO, kE}));
}

TEST(PolyLineLoops, AFigureOfEightGivesTheTwoRings) {
    EXPECT_EQ(Told({{kO, kA, kB, kO}, {kO, kC, kD, kO}}), Loops({kO, kA, kB, kO, kC, kD, kO}));
}

TEST(PolyLineLoops, ALoopWithinALoopStandsBeforeIt) {
    const Point3d p(2, 2, 0), q(3, 3, 0);
    EXPECT_EQ(Told({{kA, p, q, kA}, {kO, kA, kB, kO}, {kO, kE}}),
              Loops({kO, kA, p, q, kA, kB, kO, kE}));
}

TEST(PolyLineLoops, AfterACutTheSameVertexIsLookedForAgain) {
    EXPECT_EQ(Told({{kO, kA, kO}, {kO, kB, kO}, {kO, kC, kO}, {kO, kE}}),
              Loops({kO, kA, kO, kB, kO, kC, kO, kE}));
}

TEST(PolyLineLoops, NeighboursThatCoincideAreALoopOfTwoVertices) {
    EXPECT_EQ(Told({{kO, kO}, {kO, kA, kE}}), Loops({kO, kO, kA, kE}));
}

TEST(PolyLineLoops, PlacesAreTheSameBelowATenThousandthInPlan) {
    const auto loops = [](double dx, double dy, double dz) {
        PolyLine line = MakeLine({kO, kA, kB, {dx, dy, dz}, kE});
        return line.SplitLoops().count;
    };
    EXPECT_EQ(2u, loops(0.00009999, -0.00009999, 0));
    EXPECT_EQ(2u, loops(0, 0, 99));  // whatever the height
    EXPECT_EQ(1u, loops(0.0001, 0, 0));
    EXPECT_EQ(1u, loops(0, -0.0001, 0));
}

TEST(PolyLineLoops, TheStretchEndsWithThePlaceItCameTo) {
    const Point3d back(0.00005, 0, 3);
    EXPECT_EQ(Told({{kO, kA, kB, back}, {back, kE}}), Loops({kO, kA, kB, back, kE}));
}

TEST(PolyLineLoops, BoxAndOffsetGoToTheRemainder) {
    PolyLine line = MakeLine({kO, kA, kB, kO, kE});
    line.offset = {7, 8, 9};
    line.hasBounds = 1;
    line.maxPoint = {1, 2, 3};
    const PolyArray loops = line.SplitLoops();
    ASSERT_EQ(2u, loops.count);
    EXPECT_EQ(0.0, loops[0]->offset.x);
    EXPECT_EQ(0, loops[0]->hasBounds);
    EXPECT_EQ(7.0, loops[1]->offset.x);
    EXPECT_EQ(1, loops[1]->hasBounds);
    EXPECT_EQ(2.0, loops[1]->maxPoint.y);
    EXPECT_EQ(7.0, line.offset.x);
    EXPECT_NE(loops[1]->data, line.data);
}

TEST(PolyLineLoops, DeepNestingIsNoMatter) {
    // There and back again: each vertex but the turning point is met twice.
    Points there;
    for (int i = 0; i < 50000; ++i) there.push_back({1.0 * i, 0, 0});
    Points points = there;
    points.insert(points.end(), there.rbegin() + 1, there.rend());
    points.push_back({0, 5, 0});
    PolyLine line = MakeLine(points);
    const PolyArray loops = line.SplitLoops();
    EXPECT_EQ(50000u, loops.count);
    EXPECT_EQ("49998,0,0 49999,0,0 49998,0,0", Text(*loops[0]));
    EXPECT_EQ("0,0,0 0,5,0", Text(line));
}

TEST(PolyLineLoops, AreThoseOfThePlainWalk) {
    Numbers numbers(41);
    int loops = 0;
    for (int round = 0; round < 3000; ++round) {
        const double east = numbers.OneIn(3) ? 25e6 : 0, north = east == 0 ? 0 : 7e6;
        const int places = 1 + numbers.Below(12);
        const double jitter = numbers.One(std::vector<double>{0, 0.00006, 0.0001});
        Points points;
        for (int i = numbers.Below(25); i > 0; --i)
            points.push_back({east + numbers.Below(places) + numbers.Between(-jitter, jitter),
                              north + numbers.Below(2) + numbers.Between(-jitter, jitter),
                              1.0 * numbers.Below(2)});
        PolyLine line = MakeLine(points);
        const PolyArray split = line.SplitLoops();
        std::vector<Points> plain;
        SplitLoopsPlainly(points, plain);
        ASSERT_EQ(Text(plain), Text(split)) << "round " << round;
        ASSERT_EQ(Text(points), Text(line));
        loops += static_cast<int>(split.count) - 1;
    }
    EXPECT_GT(loops, 5000);
}

TEST(PolyLineLoops, RefusedMemoryLeavesTheLine) {
    const Points points = {kO, kA, kB, kO, kC, kD, kO, kE};
    for (int n = 1; n <= 3; ++n) {
        PolyLine line = MakeLine(points);
        const test::NewFaults faults;
        test::NewFaults::Fail(n);
        const test::Raised raised = test::Catch([&] { line.SplitLoops(); });
        test::ExpectNoMemory(raised, L"", raised.line, L"GeomStructs/PolyLine");
        EXPECT_EQ(Text(points), Text(line));
    }
    int n = 1;
    for (;; ++n) {
        PolyLine line = MakeLine(points);
        test::MemoryFaults faults;
        faults.Fail(test::Request::any, n);
        const test::Raised raised = test::Catch([&] { line.SplitLoops(); });
        if (raised.type == "nothing") break;
        EXPECT_EQ(L"datastruct/Array", raised.file);
        EXPECT_EQ(Text(points), Text(line));
    }
    EXPECT_GT(n, 8);
}

// --- Crossing itself.

TEST(PolyLineSelfCrossings, ABowTieGivesItsTwoTriangles) {
    const PolyLine bow = MakeLine({{0, 0, 0}, {4, 4, 0}, {4, 0, 0}, {0, 4, 0}, {0, 0, 0}});
    PolyArray loops;
    bow.SplitSelfCrossings(loops);
    EXPECT_EQ(Told({{{2, 2, 0}, {4, 4, 0}, {4, 0, 0}, {2, 2, 0}},
                    {{0, 0, 0}, {2, 2, 0}, {0, 4, 0}, {0, 0, 0}}}),
              Text(loops));
    EXPECT_EQ(5u, bow.count);
}

TEST(PolyLineSelfCrossings, LoopsAreAddedToTheResult) {
    PolyArray loops = MakeArray({{kE}});
    MakeLine({kO, kA, kB}).SplitSelfCrossings(loops);
    EXPECT_EQ(Told({{kE}, {kO, kA, kB}}), Text(loops));
}

TEST(PolyLineSelfCrossings, AVertexOnAnotherSideSplitsOnlyWhereTheLineGoesThrough) {
    // The ring comes back to its first side at (2,0) and stays above it.
    const Points touching = {{0, 0, 0}, {4, 0, 0}, {4, 3, 0}, {2, 0, 0}, {0, 3, 0}, {0, 0, 0}};
    PolyArray loops;
    MakeLine(touching).SplitSelfCrossings(loops);
    EXPECT_EQ(Told({touching}), Text(loops));
    // Now it goes on below.
    loops.Clear();
    MakeLine({{0, 0, 0}, {4, 0, 0}, {4, 3, 0}, {2, 0, 0}, {0, -3, 0}, {0, 0, 0}})
        .SplitSelfCrossings(loops);
    EXPECT_EQ(Told({{{2, 0, 0}, {4, 0, 0}, {4, 3, 0}, {2, 0, 0}},
                    {{0, 0, 0}, {2, 0, 0}, {0, -3, 0}, {0, 0, 0}}}),
              Text(loops));
}

TEST(PolyLineSelfCrossings, RemoveLoopsKeepsTheFirstOne) {
    PolyLine bow = MakeLine({{0, 0, 0}, {4, 4, 0}, {4, 0, 0}, {0, 4, 0}, {0, 0, 0}});
    bow.offset = {5, 5, 5};
    bow.RemoveLoops();
    EXPECT_EQ("2,2,0 4,4,0 4,0,0 2,2,0", Text(bow));
    EXPECT_EQ(5.0, bow.offset.x);
    PolyLine simple = MakeLine({kO, kA, kB});
    simple.RemoveLoops();
    EXPECT_EQ(Text({kO, kA, kB}), Text(simple));
    PolyLine none;
    none.RemoveLoops();
    EXPECT_EQ(0u, none.count);
}

// --- Cut by another one.

std::string Parts(const Points& line, const Points& cutter) {
    PolyArray parts;
    MakeLine(line).SplitAt(parts, MakeLine(cutter));
    return Text(parts);
}

TEST(PolyLineSplitAt, WithoutACutTheWholeLineIsTheOnePart) {
    EXPECT_EQ(Told({{kO, kA}}), Parts({kO, kA}, {{0, 5, 0}, {5, 5, 0}}));
    EXPECT_EQ(Told({{kO, kA}}), Parts({kO, kA}, {{0, 5, 0}}));
    EXPECT_EQ(Told({{kO, kA}}), Parts({kO, kA}, {}));
    EXPECT_EQ(Told({{}}), Parts({}, {kO, kA}));
    EXPECT_EQ(Told({{kO}}), Parts({kO}, {kO, kA}));
}

TEST(PolyLineSplitAt, PartsStandInOrderAlongTheLine) {
    const Points zigzag = {{2, 1, 0}, {2, -1, 0}, {6, -1, 0}, {6, 1, 0}};
    EXPECT_EQ(
        Told({{{0, 0, 0}, {2, 0, 0}}, {{2, 0, 0}, {4, 0, 0}, {6, 0, 0}}, {{6, 0, 0}, {9, 0, 0}}}),
        Parts({{0, 0, 0}, {4, 0, 0}, {9, 0, 0}}, zigzag));
    // Also where a segment is cut twice from its end on.
    EXPECT_EQ(Told({{{9, 0, 0}, {6, 0, 0}}, {{6, 0, 0}, {2, 0, 0}}, {{2, 0, 0}, {0, 0, 0}}}),
              Parts({{9, 0, 0}, {0, 0, 0}}, zigzag));
}

TEST(PolyLineSplitAt, ATouchCutsToo) {
    EXPECT_EQ(Told({{{0, 0, 0}, {4, 0, 0}}, {{4, 0, 0}, {9, 0, 0}}}),
              Parts({{0, 0, 0}, {9, 0, 0}}, {{2, 5, 0}, {4, 0, 0}, {6, 5, 0}}));
}

TEST(PolyLineSplitAt, AVertexThatLiesOnTheCutterIsNoCut) {
    // Intended: only places between vertices are told.
    EXPECT_EQ(Told({{{0, 0, 0}, {4, 0, 0}, {9, 0, 0}}}),
              Parts({{0, 0, 0}, {4, 0, 0}, {9, 0, 0}}, {{4, -1, 0}, {4, 1, 0}}));
}

TEST(PolyLineSplitAt, OfAClosedLineTheFirstPartContinuesTheLast) {
    const Points square = {{0, 0, 0}, {4, 0, 0}, {4, 4, 0}, {0, 4, 0}, {0, 0, 0}};
    EXPECT_EQ(Told({{{2, 0, 0}, {4, 0, 0}, {4, 4, 0}, {2, 4, 0}},
                    {{2, 4, 0}, {0, 4, 0}, {0, 0, 0}, {2, 0, 0}}}),
              Parts(square, {{2, -1, 0}, {2, 9, 0}}));
    // One cut: the whole ring, beginning there.
    EXPECT_EQ(Told({{{2, 0, 0}, {4, 0, 0}, {4, 4, 0}, {0, 4, 0}, {0, 0, 0}, {2, 0, 0}}}),
              Parts(square, {{2, -1, 0}, {2, 2, 0}}));
}

TEST(PolyLineSplitAt, PartsAreAddedToTheResult) {
    PolyArray parts = MakeArray({{kE}});
    MakeLine({kO, kA}).SplitAt(parts, MakeLine({{0.5, -1, 0}, {0.5, 1, 0}}));
    EXPECT_EQ(Told({{kE}, {kO, {0.5, 0, 0}}, {{0.5, 0, 0}, kA}}), Text(parts));
}

TEST(PolyLineSplitAt, TogetherThePartsAreTheNodedLine) {
    Numbers numbers(42);
    int cuts = 0;
    for (int round = 0; round < 500; ++round) {
        const auto random = [&](int n) {
            Points points;
            for (int i = 0; i < n; ++i)
                points.push_back({numbers.Between(0, 9), numbers.Between(0, 9), 1.0 * i});
            return points;
        };
        Points points = random(2 + numbers.Below(8));
        if (numbers.OneIn(2)) points.push_back(points[0]);
        const PolyLine line = MakeLine(points), cutter = MakeLine(random(2 + numbers.Below(8)));
        PolyArray parts;
        line.SplitAt(parts, cutter);
        Array<int> hits;
        const PolyLine noded = line.WithIntersections(cutter, &hits, true, 0);
        ASSERT_EQ(Edges({PointsOf(noded)}), Edges(PointsOf(parts)));
        const std::uint32_t open = line.IsClosed() && hits.count > 0 ? 0 : 1;
        ASSERT_EQ(hits.count + open, parts.count);
        cuts += static_cast<int>(hits.count);
    }
    EXPECT_GT(cuts, 1000);
}

TEST(PolyLineSplitAt, RefusedMemoryLeavesTheResultAsItWas) {
    const PolyLine line = MakeLine({{0, 0, 0}, {9, 0, 0}});
    const PolyLine cutter = MakeLine({{2, 1, 0}, {2, -1, 0}, {6, -1, 0}, {6, 1, 0}});
    int refused = 0;
    for (int n = 1;; ++n) {
        PolyArray parts = MakeArray({{kE}});
        const test::NewFaults faults;
        test::NewFaults::Fail(n);
        const test::Raised raised = test::Catch([&] { line.SplitAt(parts, cutter); });
        if (test::NewFaults::Passed() < n) break;
        if (raised.type == "nothing")
            continue;  // the buffer of a standard sort, which does without
        test::ExpectNoMemory(raised, L"", raised.line, L"GeomStructs/PolyLine");
        EXPECT_EQ(Told({{kE}}), Text(parts));
        ++refused;
    }
    EXPECT_EQ(3, refused);
    int n = 1;
    for (;; ++n) {
        PolyArray parts = MakeArray({{kE}});
        test::MemoryFaults faults;
        faults.Fail(test::Request::any, n);
        const test::Raised raised = test::Catch([&] { line.SplitAt(parts, cutter); });
        if (raised.type == "nothing") break;
        EXPECT_EQ(Told({{kE}}), Text(parts));
    }
    EXPECT_GT(n, 6);
}

}  // namespace
}  // namespace TamLib
