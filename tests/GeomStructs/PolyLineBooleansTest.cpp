// Union, difference and intersection of polygons.
#include <gtest/gtest.h>

#include <functional>

#include "tests/GeomStructs/NewFaults.h"
#include "tests/GeomStructs/PlainBooleans.h"
#include "tests/GeomStructs/SeededLines.h"
#include "tests/GeomStructs/TextLines.h"
#include "tests/datastruct/ArrayFaults.h"

namespace TamLib {
namespace {

constexpr Boolean kAll[] = {Boolean::unite, Boolean::subtract, Boolean::intersect};

// One polyline a row; a closed one in parentheses, without its repeated vertex.
std::string Rows(const PolyArray& array) {
    std::string rows;
    for (const PolyLine* line : array) {
        PolyLine vertices(*line);
        if (line->IsClosed()) vertices.Remove(-1, 1);
        rows += line->IsClosed() ? "(" + ToText(vertices) + ")\n" : ToText(vertices) + "\n";
    }
    return rows;
}

// The three results, and checks that the plain form gives them too and that the operands stay.
struct Results {
    Results(const std::string& first, const std::string& second)
        : Results(FromText(first), FromText(second)) {}
    Results(const PolyLine& first, const PolyLine& second) {
        const std::string before = Text(first) + "\n" + Text(second);
        std::string* const rows[] = {&unite, &subtract, &intersect};
        for (int i = 0; i < 3; ++i) {
            const PolyArray result = Combined(kAll[i], first, second);
            EXPECT_EQ(Text(CombinedPlainly(kAll[i], first, second)), Text(result));
            *rows[i] = Rows(result);
        }
        EXPECT_EQ(before, Text(first) + "\n" + Text(second));
    }
    std::string unite, subtract, intersect;
};

const char* const kSquare = "(0 0, 0 10, 10 10, 10 0)";
const char* const kSquareRow = "(0 0, 0 10, 10 10, 10 0)\n";

TEST(PolyLineBooleans, OfSquaresApart) {
    const Results r(kSquare, "(20 0, 30 0, 30 10, 20 10)");
    EXPECT_EQ("(0 0, 0 10, 10 10, 10 0)\n(20 0, 20 10, 30 10, 30 0)\n", r.unite);
    EXPECT_EQ(kSquareRow, r.subtract);
    EXPECT_EQ("", r.intersect);
}

TEST(PolyLineBooleans, OfSquaresThatOverlap) {
    const Results r(kSquare, "(5 5, 15 5, 15 15, 5 15)");
    EXPECT_EQ("(0 0, 0 10, 5 10, 5 15, 15 15, 15 5, 10 5, 10 0)\n", r.unite);
    EXPECT_EQ("(0 0, 0 10, 5 10, 5 5, 10 5, 10 0)\n", r.subtract);
    EXPECT_EQ("(5 5, 5 10, 10 10, 10 5)\n", r.intersect);
}

TEST(PolyLineBooleans, AHoleIsARingOfItsOwn) {
    const Results r(kSquare, "(3 3, 7 3, 7 7, 3 7)");
    EXPECT_EQ(kSquareRow, r.unite);
    EXPECT_EQ("(0 0, 0 10, 10 10, 10 0)\n(3 3, 3 7, 7 7, 7 3)\n", r.subtract);
    EXPECT_EQ("(3 3, 3 7, 7 7, 7 3)\n", r.intersect);
    const Results inverse("(3 3, 7 3, 7 7, 3 7)", kSquare);
    EXPECT_EQ(kSquareRow, inverse.unite);
    EXPECT_EQ("", inverse.subtract);
    EXPECT_EQ("(3 3, 3 7, 7 7, 7 3)\n", inverse.intersect);
}

TEST(PolyLineBooleans, OfEqualRingsEachIsTheRing) {
    // Intended: for the difference too. The turning sense is no matter.
    for (const char* const other : {kSquare, "(0 0, 10 0, 10 10, 0 10)"}) {
        const Results r(kSquare, other);
        EXPECT_EQ(kSquareRow, r.unite);
        EXPECT_EQ(kSquareRow, r.subtract);
        EXPECT_EQ(kSquareRow, r.intersect);
    }
    PolyLine square = FromText(kSquare);
    EXPECT_EQ(kSquareRow, Rows(square.Union(square)));
    EXPECT_EQ(kSquareRow, Rows(square.Difference(square)));
}

TEST(PolyLineBooleans, ASharedEdgeIsKeptOnceAndRunOver) {
    const Results upright(kSquare, "(10 0, 20 0, 20 10, 10 10)");
    EXPECT_EQ("10 0, 0 0, 0 10, 10 10, 10 0, 20 0, 20 10, 10 10\n", upright.unite);
    EXPECT_EQ(kSquareRow, upright.subtract);
    EXPECT_EQ("10 0, 10 10\n", upright.intersect);
    const Results level(kSquare, "(0 10, 10 10, 10 20, 0 20)");
    EXPECT_EQ("10 10, 10 0, 0 0, 0 10, 0 20, 10 20, 10 10, 0 10\n", level.unite);
    EXPECT_EQ(kSquareRow, level.subtract);
    EXPECT_EQ("0 10, 10 10\n", level.intersect);
}

TEST(PolyLineBooleans, SquaresThatSharePartOfAnEdgeStayApart) {
    const Results r(kSquare, "(10 3, 20 3, 20 7, 10 7)");
    EXPECT_EQ("(0 0, 0 10, 10 10, 10 0)\n(10 3, 10 7, 20 7, 20 3)\n", r.unite);
    EXPECT_EQ(kSquareRow, r.subtract);
    EXPECT_EQ("10 0, 10 10\n10 3, 10 7\n", r.intersect);
}

TEST(PolyLineBooleans, WhereVertexZeroLiesOnASideChainsStayOpen) {
    const char* const triangle = "(5 0, 8 5, 5 -5)";
    const Results r(kSquare, triangle);
    EXPECT_EQ("(0 0, 0 10, 10 10, 10 0, 6.5 0)\n6.5 0, 5 -5, 5 0\n", r.unite);
    EXPECT_EQ("(0 0, 0 10, 10 10, 10 0, 6.5 0)\n5 0, 8 5, 6.5 0\n", r.subtract);
    EXPECT_EQ("5 0, 8 5, 6.5 0\n", r.intersect);
    // Begun at another vertex, the same triangle goes through the side and is noded there.
    const Results other(kSquare, "(8 5, 5 -5, 5 0)");
    EXPECT_EQ("(0 0, 0 10, 10 10, 10 0, 6.5 0, 5 -5, 5 0)\n", other.unite);
    EXPECT_EQ("(0 0, 0 10, 10 10, 10 0, 6.5 0, 8 5, 5 0)\n", other.subtract);
    EXPECT_EQ("(5 0, 6.5 0, 8 5)\n", other.intersect);
}

TEST(PolyLineBooleans, TwinsWithinRoundingOfUprightBothStay) {
    // The shared side is built upwards here and downwards there.
    const double off = 1e-9;
    const PolyLine here =
        MakeLine({{0, 0, 0}, {10 - off, 0, 0}, {10 + off, 10, 0}, {0, 10, 0}, {0, 0, 0}});
    const PolyLine there =
        MakeLine({{10 + off, 0, 0}, {20, 0, 0}, {20, 10, 0}, {10 - off, 10, 0}, {10 + off, 0, 0}});
    const Results r(here, there);
    const PolyArray both = here.Intersection(there);
    ASSERT_EQ(1u, both.count);
    EXPECT_EQ(3u, both[0]->count);  // there and back
    EXPECT_TRUE(both[0]->IsClosed());
}

TEST(PolyLineBooleans, OfPiecesThatCoincideTheOneOfTheOtherIsLeft) {
    const PolyLine low = FromText("(0 0 1, 10 0 1, 10 10 1, 0 10 1)");
    const PolyLine high = FromText("(0 0 2, 10 0 2, 10 10 2, 0 10 2)");
    EXPECT_EQ("(0 0 2, 0 10 2, 10 10 2, 10 0 2)\n", Rows(low.Intersection(high)));
    EXPECT_EQ("(0 0 1, 0 10 1, 10 10 1, 10 0 1)\n", Rows(high.Intersection(low)));
    EXPECT_EQ("(0 0 1, 0 10 1, 10 10 1, 10 0 1)\n", Rows(low.Difference(high)));
}

TEST(PolyLineBooleans, HeightsAreThoseOfTheEdgeThatIsDivided) {
    const PolyLine low = FromText("(0 0 0, 10 0 10, 10 10 10, 0 10 0)");
    const PolyLine high = FromText("(5 5 50, 15 5 50, 15 15 50, 5 15 50)");
    const PolyArray cut = low.Difference(high);
    ASSERT_EQ(1u, cut.count);
    // The crossings at (5,10) and (10,5) are chained from pieces of both, each with its height.
    EXPECT_EQ("(0 0, 0 10, 5 10 5, 5 5 50, 10 5 50, 10 0 10)\n", Rows(cut));
}

TEST(PolyLineBooleans, OneThatIsNotClosed) {
    const char* const open = "0 0, 5 0, 5 5";
    const char* const none = "";
    const Results openOther(kSquare, open);
    EXPECT_EQ(kSquareRow, openOther.unite);
    EXPECT_EQ(kSquareRow, openOther.subtract);
    EXPECT_EQ("", openOther.intersect);
    const Results openHere(open, kSquare);
    EXPECT_EQ(kSquareRow, openHere.unite);
    EXPECT_EQ("0 0, 5 0, 5 5\n", openHere.subtract);
    EXPECT_EQ("", openHere.intersect);
    const Results emptyHere(none, kSquare);
    EXPECT_EQ(kSquareRow, emptyHere.unite);
    EXPECT_EQ("", emptyHere.subtract);
    EXPECT_EQ("", emptyHere.intersect);
    const Results emptyOther(kSquare, none);
    EXPECT_EQ(kSquareRow, emptyOther.unite);
    EXPECT_EQ(kSquareRow, emptyOther.subtract);
    EXPECT_EQ("", emptyOther.intersect);
    const Results one(kSquare, "5 5");
    EXPECT_EQ(kSquareRow, one.unite);
    EXPECT_EQ("", one.intersect);
    // The other one is looked at first.
    const Results bothOpen(open, "7 7, 8 8");
    EXPECT_EQ("0 0, 5 0, 5 5\n", bothOpen.unite);
    EXPECT_EQ("0 0, 5 0, 5 5\n", bothOpen.subtract);
    const Results nothing(none, open);
    EXPECT_EQ("", nothing.unite);
    EXPECT_EQ("", nothing.subtract);
}

TEST(PolyLineBooleans, ACopyIsWhole) {
    PolyLine open = FromText("0 0 1, 5 0 2, 5 0 2");
    open.offset = {7, 8, 9};
    const PolyArray copy = open.Difference(FromText(kSquare));
    ASSERT_EQ(1u, copy.count);
    EXPECT_EQ(Text(open), Text(*copy[0]));
    EXPECT_EQ(7.0, copy[0]->offset.x);
    EXPECT_NE(&open, copy[0]);
}

TEST(PolyLineBooleans, AClosedFigureOfTwoVerticesHasNoInside) {
    const Results r("(5 5, 5 5)", kSquare);
    EXPECT_EQ(kSquareRow, r.unite);
    EXPECT_EQ("", r.subtract);
    EXPECT_EQ("", r.intersect);
}

TEST(PolyLineBooleans, PointsAreNotAskedOfTheStoredBox) {
    PolyLine outer = FromText(kSquare);
    const PolyLine hole = FromText("(3 3, 7 3, 7 7, 3 7)");
    outer.hasBounds = 1;
    outer.minPoint = {1000, 1000, 0};
    outer.maxPoint = {1001, 1001, 0};
    EXPECT_EQ("(0 0, 0 10, 10 10, 10 0)\n(3 3, 3 7, 7 7, 7 3)\n", Rows(outer.Difference(hole)));
    EXPECT_EQ("(3 3, 3 7, 7 7, 7 3)\n", Rows(hole.Intersection(outer)));
    // Crossings are, as ever: this ring stays undivided.
    const PolyLine crossing = FromText("(5 5, 15 5, 15 15, 5 15)");
    EXPECT_EQ(Text(CombinedPlainly(Boolean::unite, crossing, outer)), Text(crossing.Union(outer)));
}

TEST(PolyLineBooleans, RepeatedVerticesLeaveNoTrace) {
    const Results r("(0 0, 0 10, 0 10, 10 10, 10 10, 10 0)", "(5 5, 15 5, 15 5, 15 15, 5 15)");
    EXPECT_EQ("(0 0, 0 10, 5 10, 5 15, 15 15, 15 5, 10 5, 10 0)\n", r.unite);
    EXPECT_EQ("(5 5, 5 10, 10 10, 10 5)\n", r.intersect);
}

TEST(PolyLineBooleans, OnTheMap) {
    const Point3d place(25496000, 6672000, 12);
    PolyLine here = FromText(kSquare), there = FromText("(5 5, 15 5, 15 15, 5 15)");
    here.Translate(place);
    there.Translate(place);
    const PolyArray both = here.Intersection(there);
    ASSERT_EQ(1u, both.count);
    EXPECT_EQ(
        "(25496005 6672005 12, 25496005 6672010 12, 25496010 6672010 12, 25496010 6672005 12)\n",
        Rows(both));
}

// --- Against the plain form.

PolyLine AnyRing(RandomLines& random, const Point3d& base, double size, int kind) {
    switch (kind % 4) {
        case 0: {
            PolyLine walk = random.Walk(random.Whole(2, 40), base, size * 0.2, true);
            walk.Close();
            return walk;
        }
        case 1:
            return random.Roughened(random.Ring(base, size));
        case 2:
            return random.Walk(random.Whole(0, 30), base, size * 0.2, false);
        default:
            return random.Ring(base + Point3d(random.Real(-size, size), 0, 0), size);
    }
}

TEST(PolyLineBooleans, AreThoseOfThePlainForm) {
    SeededLines random(101);
    int members = 0, open = 0;
    for (const Point3d& base : {Point3d(), Point3d(25496000, 6672000, 100), Point3d(-3e5, 6.7e6, 0),
                                Point3d(1e12, -1e12, 0)}) {
        for (int i = 0; i < 160; ++i) {
            const double size = std::pow(10.0, random.Whole(-3, 4));
            const PolyLine here = AnyRing(random, base, size, i);
            PolyLine there = AnyRing(random, base, size, random.Whole(0, 3));
            if (random.Chance(3)) there = random.Roughened(here);
            if (random.Chance(8)) there.Translate({size * 0.2, 0, 0});
            for (const Boolean operation : kAll) {
                const PolyArray result = Combined(operation, here, there);
                ASSERT_EQ(Text(CombinedPlainly(operation, here, there)), Text(result))
                    << "base " << base.x << " pair " << i;
                members += static_cast<int>(result.count);
                for (const PolyLine* line : result) open += line->IsClosed() ? 0 : 1;
            }
        }
    }
    EXPECT_GT(members, 2000);
    EXPECT_GT(open, 200);
}

TEST(PolyLineBooleans, OfLargeRingsAreThoseOfThePlainForm) {
    SeededLines random(102);
    const Point3d place(25496000, 6672000, 0);
    const PolyLine here = random.Star(700, place, 1000), there = random.Star(500, place, 1000);
    for (const Boolean operation : kAll) {
        const PolyArray result = Combined(operation, here, there);
        EXPECT_GT(result.count, 0u);
        EXPECT_EQ(Text(CombinedPlainly(operation, here, there)), Text(result));
    }
}

// --- Refused memory.

void RefuseAll(const PolyLine& here, const PolyLine& there) {
    for (const Boolean operation : kAll) {
        int refused = 0;
        for (int n = 1;; ++n) {
            test::MemoryFaults faults;
            faults.Fail(test::Request::any, n);
            const test::Raised raised = test::Catch([&] { Combined(operation, here, there); });
            EXPECT_EQ(0, test::MemoryFaults::Live());
            if (test::MemoryFaults::Passed() < n) break;
            if (raised.type == "nothing") continue;  // done without, in another way
            EXPECT_EQ("TamExpNoMem", raised.type);
            EXPECT_EQ(L"datastruct/Array", raised.file);
            ++refused;
        }
        EXPECT_GT(refused, 20);
    }
}

TEST(PolyLineBooleans, RefusedMemoryLeavesNothingBehind) {
    const PolyLine here = FromText(kSquare), there = FromText("(3 3, 7 3, 7 7, 3 7)");
    RefuseAll(here, there);
    // Rings large enough to be noded by an index.
    SeededLines random(103);
    RefuseAll(random.Star(20, {}, 100), random.Star(20, {10, 5, 0}, 100));
    int refused = 0;
    for (int n = 1;; ++n) {
        const test::NewFaults faults;
        test::NewFaults::Fail(n);
        const test::Raised raised = test::Catch([&] { here.Union(PolyLine()); });
        if (test::NewFaults::Passed() < n) break;
        test::ExpectNoMemory(raised, L"", raised.line, L"GeomStructs/PolyArray");
        ++refused;
    }
    EXPECT_EQ(1, refused);
}

}  // namespace
}  // namespace TamLib
