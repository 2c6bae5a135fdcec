// Loose lines linked into polylines: each rule, and everything against the plain walk.
#include <gtest/gtest.h>

#include "tests/GeomStructs/NewFaults.h"
#include "tests/GeomStructs/PlainLinking.h"
#include "tests/datastruct/ArrayFaults.h"

namespace TamLib {
namespace {

std::string Linked(const std::vector<Line>& lines, bool use3d, double tol) {
    return Text(PolyArray(MakeLines(lines), use3d, tol));
}

Line L(double x1, double y1, double x2, double y2, double z1 = 0, double z2 = 0) {
    return {{x1, y1, z1}, {x2, y2, z2}};
}

TEST(PolyArrayLinking, NoLinesGiveNoPolylines) {
    const PolyArray array(LineArray(), false, 0.001);
    EXPECT_EQ(0u, array.count);
    EXPECT_EQ(5u, array.increment);
}

TEST(PolyArrayLinking, OneLineGivesOnePolylineOfTwoPoints) {
    const PolyArray array(MakeLines({L(1, 2, 3, 4, 5, 6)}), false, 0.001);
    EXPECT_EQ("1,2,5 3,4,6\n", Text(array));
    EXPECT_EQ(20u, array[0]->increment);
}

TEST(PolyArrayLinking, ThreeLinesOfAClosedChainGiveOneClosedPolyline) {
    const PolyArray array(MakeLines({L(0, 0, 4, 0), L(4, 0, 2, 3), L(2, 3, 0, 0)}), false, 0.001);
    ASSERT_EQ(1u, array.count);
    EXPECT_TRUE(array[0]->IsClosed());
    EXPECT_EQ(4u, array[0]->count);
}

TEST(PolyArrayLinking, LinesMeetingAtOneHundredMillionthAreJoinedByTheTightPass) {
    // The loose pass alone would take the first line that comes; the tight one takes the near end.
    const std::vector<Line> lines = {L(0, 0, 1, 0), L(1.0005, 0, 2, 5), L(1.00000001, 0, 3, -5)};
    EXPECT_EQ(
        Text(std::vector<Points>{{{0, 0, 0}, {1, 0, 0}, {3, -5, 0}}, {{1.0005, 0, 0}, {2, 5, 0}}}),
        Linked(lines, false, 0.001));
}

TEST(PolyArrayLinking, ATightJoinAtTheStartComesBeforeALooseOneAtTheEnd) {
    // The end of the first line has a loose neighbour, its start a tight one: the tight chain is
    // made first, and the loose one goes on from the end.
    const std::vector<Line> lines = {L(0, 0, 1, 0), L(1.0005, 0, 2, 0), L(0, 0, 0, 5)};
    EXPECT_EQ(Text(std::vector<Points>{{{2, 0, 0}, {1, 0, 0}, {0, 0, 0}, {0, 5, 0}}}),
              Linked({L(0, 0, 0, 5), L(0, 0, 1, 0), L(1.0005, 0, 2, 0)}, false, 0.001));
    EXPECT_EQ(Linked({L(0, 0, 0, 5), L(0, 0, 1, 0), L(1.0005, 0, 2, 0)}, false, 0.001),
              Linked(lines, false, 0.001));
}

TEST(PolyArrayLinking, AfterALooseMatchTheWalkGoesOnLoosely) {
    // From (1,0) loosely on to (2,0), where both a loose and a tight neighbour wait; the loose one
    // comes first in the array.
    const std::vector<Line> lines = {L(0, 0, 1, 0), L(1.0005, 0, 2, 0), L(1.9995, 0, 5, 5),
                                     L(2, 0, 5, -5)};
    const PolyArray array(MakeLines(lines), false, 0.001);
    // The chain of the first line: (1,0) has no tight neighbour, so (2,0) is reached loosely, and
    // there (2,0)-(5,-5) is the next in the array behind the line before it.
    EXPECT_EQ(Text(PlainLinking(MakeLines(lines), false, 0.001).result), Text(array));
    EXPECT_EQ("0,0,0 1,0,0 2,0,0 5,5,0\n2,0,0 5,-5,0\n", Text(array));
}

TEST(PolyArrayLinking, ToleranceBelowAMillionthHasNoTightPass) {
    // 1e-7 apart to the rounding: beyond the tight tolerance in both.
    const std::vector<Line> near = {L(0, 0, 1, 0), L(1.00000005, 0, 2, 0)};
    EXPECT_EQ(2u, PolyArray(MakeLines(near), false, 1e-8).count);
    EXPECT_EQ(1u, PolyArray(MakeLines(near), false, 9.9e-7).count);
    EXPECT_EQ(1u, PolyArray(MakeLines(near), false, 1e-6).count);
    // With 0, and with less, nothing meets.
    const std::vector<Line> exact = {L(0, 0, 1, 0), L(1, 0, 2, 0)};
    EXPECT_EQ(2u, PolyArray(MakeLines(exact), false, 0.0).count);
    EXPECT_EQ(2u, PolyArray(MakeLines(exact), false, -1.0).count);
    EXPECT_EQ(1u, PolyArray(MakeLines(exact), false, 1e-300).count);
    // The tight pass finds what is exact before what is loose only when there is one: at 1e-6.
    const std::vector<Line> choice = {L(0, 0, 1, 0), L(1 - 8e-7, 0, 2, 5), L(1, 0, 2, -5)};
    EXPECT_EQ("0,0,0 1,0,0 2,-5,0", Linked(choice, false, 1e-6).substr(0, 18));
}

TEST(PolyArrayLinking, TheMatchIsStrictByAxisAndNotByDistance) {
    const auto meets = [](double dx, double dy) {
        return PolyArray(MakeLines({L(0, 0, 1, 0), L(1 + dx, dy, 2, 5)}), false, 0.5).count == 1;
    };
    EXPECT_TRUE(meets(0.4999, 0.4999));  // 0.707 away
    EXPECT_FALSE(meets(0.5, 0));
    EXPECT_TRUE(meets(0.49999999999, 0));
    EXPECT_FALSE(meets(0, 0.5));
    EXPECT_TRUE(meets(0, -0.4999999999));
    EXPECT_FALSE(meets(0, -0.5));
}

TEST(PolyArrayLinking, HeightsCountWithUse3dOnly) {
    const std::vector<Line> lines = {L(0, 0, 1, 0, 0, 0), L(1, 0, 2, 0, 5, 5)};
    EXPECT_EQ("0,0,0 1,0,0 2,0,5\n", Linked(lines, false, 0.001));
    EXPECT_EQ("0,0,0 1,0,0\n1,0,5 2,0,5\n", Linked(lines, true, 0.001));
    EXPECT_EQ("0,0,0 1,0,0 2,0,5\n", Linked(lines, true, 5.0001));
    EXPECT_EQ(2u, PolyArray(MakeLines(lines), true, 5.0).count);
}

TEST(PolyArrayLinking, LinesWithoutLengthInPlanAreDroppedUnlessTheyAreVertical) {
    EXPECT_EQ("", Linked({L(1, 1, 1, 1)}, false, 0.001));
    EXPECT_EQ("", Linked({L(1, 1, 1, 1, 0, 9)}, false, 0.001));
    EXPECT_EQ("1,1,0 1,1,9\n", Linked({L(1, 1, 1, 1, 0, 9)}, true, 0.001));
    EXPECT_EQ("", Linked({L(1, 1, 1.00009, 1, 0, 9)}, false, 0.001));
    EXPECT_EQ(1u, PolyArray(MakeLines({L(1, 1, 1.00011, 1, 0, 9)}), false, 0.001).count);
    EXPECT_EQ("", Linked({L(1, 1, 1, 1, 0, 0.00009999)}, true, 0.001));
    EXPECT_EQ("1,1,0 1,1,0.0001\n", Linked({L(1, 1, 1, 1, 0, 0.0001)}, true, 0.001));
    EXPECT_EQ(Text(std::vector<Points>{{{1, 1, 0}, {1, 1, -0.0001}}}),
              Linked({L(1, 1, 1, 1, 0, -0.0001)}, true, 0.001));
}

TEST(PolyArrayLinking, LinesOneAboveTheOtherLoseOneEvenWithUse3d) {
    // Intended: repeats are dropped in plan.
    const std::vector<Line> lines = {L(0, 0, 1, 0, 0, 0), L(0, 0, 1, 0, 7, 7)};
    EXPECT_EQ(1u, PolyArray(MakeLines(lines), true, 0.001).count);
    EXPECT_EQ(1u, PolyArray(MakeLines(lines), false, 0.001).count);
    // The other way round they are not equal, and make a ring there and back.
    EXPECT_EQ("0,0,0 1,0,0 0,0,0\n", Linked({L(0, 0, 1, 0), L(1, 0, 0, 0)}, false, 0.001));
}

TEST(PolyArrayLinking, TheFirstLineOfTheTidiedArrayStartsAndKeepsItsDirection) {
    // Tidied: by x1. The line from (0,0) comes first; the other is joined to its start, in front.
    EXPECT_EQ("9,9,0 0,0,0 5,0,0\n", Linked({L(9, 9, 0, 0), L(0, 0, 5, 0)}, false, 0.001));
    // Neither line is turned: the one from x 0 starts, and the other one goes on from its start.
    EXPECT_EQ("5,0,0 0,0,0 -1,5,0\n", Linked({L(5, 0, 0, 0), L(0, 0, -1, 5)}, false, 0.001));
}

TEST(PolyArrayLinking, ALineIsJoinedByItsStartRatherThanItsEnd) {
    // Both ends of the second line lie within the tolerance of (10,0).
    EXPECT_EQ("0,0,0 10,0,0 10.5,0,0\n",
              Linked({L(0, 0, 10, 0), L(10.25, 0, 10.5, 0)}, false, 1.0));
    EXPECT_EQ("0,0,0 10,0,0 10.25,0,0\n",
              Linked({L(0, 0, 10, 0), L(10.5, 0, 10.25, 0)}, false, 1.0));
}

TEST(PolyArrayLinking, ARingInPlanWithAStepInHeightStaysOpen) {
    const auto closes = [](double step) {
        const PolyArray array(MakeLines({L(0, 0, 4, 0), L(4, 0, 2, 3), L(2, 3, 0, 0, 0, step)}),
                              false, 0.001);
        EXPECT_EQ(1u, array.count);
        return array[0]->IsClosed();
    };
    EXPECT_TRUE(closes(0.0));
    EXPECT_TRUE(closes(0.00009999));
    EXPECT_FALSE(closes(0.0001));
    EXPECT_FALSE(closes(5.0));
}

TEST(PolyArrayLinking, AClosedPolylineIsLeftAtOnce) {
    // A triangle, and a tail at its closing corner that nothing takes in.
    const PolyArray array(MakeLines({L(0, 0, 4, 0), L(4, 0, 2, 3), L(2, 3, 0, 0), L(4, 0, 9, -5)}),
                          false, 0.001);
    EXPECT_EQ(
        Text(PlainLinking(MakeLines({L(0, 0, 4, 0), L(4, 0, 2, 3), L(2, 3, 0, 0), L(4, 0, 9, -5)}),
                          false, 0.001)
                 .result),
        Text(array));
    ASSERT_EQ(2u, array.count);
    EXPECT_TRUE(array[0]->IsClosed());
    EXPECT_EQ("4,0,0 9,-5,0", Text(*array[1]));
}

TEST(PolyArrayLinking, TheNextLineBehindTheOneTakenBeforeIsTaken) {
    // Four lines leave (1,0); the walk goes round the array, behind the line before it.
    const std::vector<Line> lines = {L(0, 0, 1, 0), L(1, 0, 2, 1), L(1, 0, 2, 2), L(0.5, 5, 1, 0)};
    EXPECT_EQ("0,0,0 1,0,0 0.5,5,0", Linked(lines, false, 0.001).substr(0, 19));
}

TEST(PolyArrayLinking, ATestWithoutNumbersEnds) {
    const double nan = std::nan(""), inf = HUGE_VAL;
    const std::vector<Line> lines = {L(nan, 0, 1, nan), L(inf, 0, -inf, 0), L(inf, 0, 5, 5),
                                     L(1e300, 0, 1e300, 5), L(1e300, 5, 1e300, 9)};
    for (const double tol : {0.001, 1e-9, inf, nan, 1e308}) {
        const LineArray all = MakeLines(lines);
        EXPECT_EQ(PlainLinking(all, false, tol).result.size(), PolyArray(all, false, tol).count);
    }
}

// --- Against the plain walk.

struct Scene {
    const char* name;
    double size;    // of the square that the ends lie in
    double grid;    // they lie on multiples of this
    double jitter;  // moved by up to this
    double east, north;
};

LineArray RandomLines(Numbers& numbers, int n, const Scene& scene, bool vertical) {
    const auto coordinate = [&] {
        const int cells = static_cast<int>(scene.size / scene.grid) + 1;
        return numbers.Below(cells) * scene.grid + numbers.Between(-scene.jitter, scene.jitter);
    };
    LineArray lines(n);
    Point3d last;
    for (int i = 0; i < n; ++i) {
        const auto point = [&] {
            return Point3d(scene.east + coordinate(), scene.north + coordinate(),
                           numbers.Below(3) * 0.5);
        };
        const Point3d start = numbers.OneIn(3) ? point() : last;
        Point3d end = point();
        if (vertical && numbers.OneIn(4)) end = {start.x, start.y, start.z + numbers.Below(3)};
        lines.Append(numbers.OneIn(2) ? Line(start, end) : Line(end, start));
        last = end;
    }
    return lines;
}

class LinkingScenes : public ::testing::TestWithParam<Scene> {};

TEST_P(LinkingScenes, LinkAsThePlainWalkDoes) {
    Numbers numbers(7);
    int polylines = 0, joined = 0;
    for (int round = 0; round < 400; ++round) {
        const LineArray lines =
            RandomLines(numbers, numbers.Below(60), GetParam(), numbers.OneIn(2));
        const bool use3d = numbers.OneIn(2);
        const double tol = numbers.One(std::vector<double>{0, 1e-9, 1e-7, 9.99e-7, 1e-6, 2e-6, 1e-4,
                                                           0.001, 0.5, 1, 1.5, 40, 1e9});
        const PolyArray array(lines, use3d, tol);
        ASSERT_EQ(Text(PlainLinking(lines, use3d, tol).result), Text(array))
            << "round " << round << ", tolerance " << tol;
        polylines += static_cast<int>(array.count);
        for (const PolyLine* line : array) joined += line->count > 2 ? 1 : 0;
    }
    EXPECT_GT(polylines, 1000);
    EXPECT_GT(joined, 100);
}

INSTANTIATE_TEST_SUITE_P(
    Scenes, LinkingScenes,
    ::testing::Values(
        Scene{"Crowded", 4, 1, 0, 0, 0}, Scene{"Wide", 1000, 1, 0, 0, 0},
        Scene{"TightJitter", 5, 1, 1.2e-7, 0, 0}, Scene{"ToleranceJitter", 5, 1, 0.0006, 0, 0},
        Scene{"Random", 10, 0.001, 0.0005, 0, 0}, Scene{"OnTheMap", 5, 1, 0.0006, 25e6, 7e6},
        Scene{"OnTheMapTight", 5, 1, 1e-7, 25e6, 7e6}, Scene{"Negative", 6, 0.5, 1e-7, -3, -3},
        Scene{"Astronomic", 1e13, 1e12, 1e-3, 4e15, -4e15},
        Scene{"StepsOfTwo", 64, 2, 0, 9.007199254740992e15, 9.007199254740992e15},
        Scene{"Small", 0.004, 0.001, 1e-7, 0, 0}),
    [](const ::testing::TestParamInfo<Scene>& scene) { return scene.param.name; });

TEST(PolyArrayLinking, LongChainsAndStarsLinkAsThePlainWalkDoes) {
    Numbers numbers(8);
    std::vector<Line> chain, star;
    for (int i = 0; i < 700; ++i) {
        chain.push_back(L(i, i % 7, i + 1, (i + 1) % 7));
        star.push_back(L(0, 0, std::cos(i) * 9, std::sin(i) * 9));
    }
    for (std::vector<Line>* lines : {&chain, &star}) {
        numbers.Shuffle(*lines);
        for (Line& line : *lines)
            if (numbers.OneIn(2)) line.Reverse();
        EXPECT_EQ(Text(PlainLinking(MakeLines(*lines), false, 0.001).result),
                  Linked(*lines, false, 0.001));
    }
    EXPECT_EQ(1u, PolyArray(MakeLines(chain), false, 0.001).count);
    EXPECT_EQ(350u, PolyArray(MakeLines(star), false, 0.001).count);
}

TEST(PolyArrayLinking, TheLinesGivenStayAsTheyAre) {
    const LineArray lines = MakeLines({L(5, 5, 0, 0), L(0, 0, 0, 0), L(0, 0, 5, 5)});
    const PolyArray array(lines, false, 0.001);
    ASSERT_EQ(3u, lines.count);
    EXPECT_EQ(5.0, lines[0].x1);
}

// --- Refused memory.

int RefusedLine(const std::vector<Line>& lines, int n) {
    const LineArray all = MakeLines(lines);
    const test::NewFaults faults;
    test::NewFaults::Fail(n);
    const test::Raised raised = test::Catch([&] { PolyArray(all, false, 0.001); });
    test::ExpectNoMemory(raised, L"", raised.line, L"GeomStructs/PolyArray");
    return raised.line;
}

TEST(PolyArrayLinking, EachPlaceThatStoresHasItsLine) {
    const std::vector<Line> triangle = {L(0, 0, 4, 0), L(4, 0, 2, 3), L(2, 3, 0, 0)};
    EXPECT_EQ(470, RefusedLine(triangle, 1));
    const std::vector<Line> two = {L(0, 0, 1, 0), L(5, 0, 6, 0)};
    EXPECT_EQ(510, RefusedLine(two, 1));  // open, and a line is left
    EXPECT_EQ(543, RefusedLine(two, 2));  // the last line
    EXPECT_EQ(543, RefusedLine({L(0, 0, 1, 0)}, 1));
}

TEST(PolyArrayLinking, EachRefusalLeavesNothingBehind) {
    const LineArray lines =
        MakeLines({L(0, 0, 4, 0), L(4, 0, 2, 3), L(2, 3, 0, 0), L(7, 7, 8, 8), L(9, 9, 8, 8)});
    int n = 1;
    for (;; ++n) {
        test::MemoryFaults faults;
        faults.Fail(test::Request::any, n);
        const test::Raised raised =
            test::Catch([&] { EXPECT_EQ(2u, PolyArray(lines, false, 0.001).count); });
        EXPECT_EQ(0, test::MemoryFaults::Live()) << n;
        if (raised.type == "nothing") break;
        EXPECT_EQ("TamExpNoMem", raised.type);
        EXPECT_EQ(L"datastruct/Array", raised.file);
    }
    EXPECT_GT(n, 15);
}

}  // namespace
}  // namespace TamLib
