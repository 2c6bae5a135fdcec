// The owning array: lives of its polylines, order, hash, segments, square and wedge.
#include "GeomStructs/PolyArray.h"

#include <gtest/gtest.h>

#include <memory>

#include "tests/GeomStructs/NewFaults.h"
#include "tests/GeomStructs/PolyArrayShapes.h"
#include "tests/datastruct/ArrayFaults.h"

namespace TamLib {
namespace {

// Counts those that live.
class Counted : public PolyLine {
  public:
    explicit Counted(int& living) : PolyLine(0), living_(living) { ++living_; }
    ~Counted() override { --living_; }
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;

  private:
    int& living_;
};

TEST(PolyArray, GrowthIsTheCapacityAndAtLeastFive) {
    EXPECT_EQ(5u, PolyArray().increment);
    EXPECT_EQ(5u, PolyArray(3).increment);
    EXPECT_EQ(3u, PolyArray(3).capacity);
    EXPECT_EQ(12u, PolyArray(12).increment);
    EXPECT_EQ(12u, PolyArray(12).capacity);
    EXPECT_EQ(0u, PolyArray().capacity);
    EXPECT_EQ(nullptr, PolyArray().box);
}

TEST(PolyArray, ANegativeCapacityIsNone) {
    EXPECT_EQ(0u, PolyArray(-3).capacity);
}

TEST(PolyArray, TheEndDeletesEachPolylineThroughItsVirtualDestructor) {
    int living = 0;
    {
        PolyArray array;
        array.Add(new Counted(living));
        array.Add(new Counted(living));
        EXPECT_EQ(2, living);
    }
    EXPECT_EQ(0, living);
}

TEST(PolyArray, ClearDeletesPolylinesAndBoxAndGivesTheBlockBack) {
    int living = 0;
    PolyArray array(9);
    array.Add(new Counted(living));
    array.box = new Box(0.0, 1.0, 0.0, 1.0, 0.0, 1.0);
    EXPECT_EQ(0, array.Clear());
    EXPECT_EQ(0, living);
    EXPECT_EQ(nullptr, array.box);
    EXPECT_EQ(nullptr, array.data);
    EXPECT_EQ(0u, array.count);
    EXPECT_EQ(0u, array.capacity);
    EXPECT_EQ(9u, array.increment);
}

TEST(PolyArray, RemoveHandsAPolylineBack) {
    int living = 0;
    PolyArray array;
    array.Add(new Counted(living));
    const std::unique_ptr<PolyLine> kept(array[0]);
    array.Remove(0, 1);
    array.Clear();
    EXPECT_EQ(1, living);
}

TEST(PolyArray, ADuplicateThatIsDeclinedIsDeleted) {
    int living = 0;
    const auto at = [&](double x) {
        auto* const line = new Counted(living);
        line->Append({x, 0, 0});
        return line;
    };
    {
        PolyArray array;
        for (const double x : {3.0, 1.0, 2.0}) array.Add(at(x));
        array.Sort();
        array.unique = true;
        PolyLine* const first = array[0];
        EXPECT_EQ(1, array.Add(at(2.0)));  // the place where its equal stands
        EXPECT_EQ(3u, array.count);
        EXPECT_EQ(3, living);
        EXPECT_EQ(0, array.Add(first));  // what is held already stays
        EXPECT_EQ(3, living);
        EXPECT_EQ(first, array[0]);
        EXPECT_EQ(3, array.Add(at(9.0)));
        EXPECT_EQ(4, living);
        // Unsorted it takes everything.
        array.sorted = false;
        EXPECT_EQ(4, array.Add(at(9.0)));
        EXPECT_EQ(5, living);
    }
    EXPECT_EQ(0, living);
}

TEST(PolyArray, WhatInsertAndAddUniqueDeclineStaysTheCallers) {
    int living = 0;
    PolyArray array;
    array.Add(new Counted(living));
    array.Sort();
    array.unique = true;
    const std::unique_ptr<PolyLine> inserted(new Counted(living)), added(new Counted(living));
    array.Insert(0, inserted.get());
    EXPECT_EQ(0, array.AddUnique(added.get()));
    EXPECT_EQ(1u, array.count);
    EXPECT_EQ(3, living);
}

TEST(PolyArray, CopiesAreDeepAndLeaveTheBoxBehind) {
    PolyArray array = MakeArray({{{1, 2, 3}, {4, 5, 6}}, {}, {{7, 8, 9}}});
    array[0]->offset = {1, 1, 1};
    array.box = new Box(0.0, 1.0, 0.0, 1.0, 0.0, 1.0);
    const PolyArray copy(array);
    EXPECT_EQ(Text(array), Text(copy));
    EXPECT_NE(array[0], copy[0]);
    EXPECT_EQ(1.0, copy[0]->offset.x);
    EXPECT_EQ(nullptr, copy.box);
    array[0]->data[0].x = 99;
    EXPECT_EQ(1.0, copy[0]->data[0].x);

    PolyArray assigned = MakeArray({{{0, 0, 0}}});
    assigned = array;
    EXPECT_EQ(Text(array), Text(assigned));
    EXPECT_EQ(nullptr, assigned.box);
    PolyArray& same = assigned;
    assigned = same;
    EXPECT_EQ(Text(array), Text(assigned));
}

TEST(PolyArray, MovedFromItIsLeftEmpty) {
    PolyArray array = MakeArray({{{1, 2, 3}}});
    array.box = new Box;
    const PolyLine* const line = array[0];
    const PolyArray moved(std::move(array));
    EXPECT_EQ(line, moved[0]);
    EXPECT_NE(nullptr, moved.box);
    EXPECT_EQ(0u, array.count);  // NOLINT(bugprone-use-after-move): that is the question
    EXPECT_EQ(nullptr, array.box);
}

TEST(PolyArray, ACopyThatMemoryIsRefusedToLeavesTheTargetAsItWas) {
    const PolyArray array = MakeArray({{{1, 2, 3}}, {{4, 5, 6}}, {{7, 8, 9}}});
    for (int n = 1;; ++n) {
        PolyArray target = MakeArray({{{0, 0, 0}}});
        test::MemoryFaults faults;
        const test::NewFaults newFaults;
        faults.Fail(test::Request::any, n);
        const test::Raised raised = test::Catch([&] { target = array; });
        if (raised.type == "nothing") {
            EXPECT_EQ(5, n);  // the block, and one for each polyline
            break;
        }
        EXPECT_EQ("TamExpNoMem", raised.type);
        EXPECT_EQ(L"datastruct/Array", raised.file);
        EXPECT_EQ("0,0,0\n", Text(target));
    }
    for (int n = 1; n <= 3; ++n) {
        PolyArray target = MakeArray({{{0, 0, 0}}});
        const test::NewFaults newFaults;
        test::NewFaults::Fail(n);
        const test::Raised raised = test::Catch([&] { target = array; });
        test::ExpectNoMemory(raised, L"", 120, L"GeomStructs/PolyArray");
        EXPECT_EQ("0,0,0\n", Text(target));
    }
}

TEST(PolyArray, AddTakesOverEvenWithoutMemory) {
    int living = 0;
    PolyArray array;
    test::MemoryFaults faults;
    faults.Fail(test::Request::any, 1);
    EXPECT_EQ("TamExpNoMem", test::Catch([&] { array.Add(new Counted(living)); }).type);
    EXPECT_EQ(0, living);
    EXPECT_EQ(0u, array.count);
}

TEST(PolyArray, OrdersByTheFirstVertexAndKeepsTheOrderOfEquals) {
    PolyArray array = MakeArray({{{5, 0, 0}, {0, 0, 1}},
                                 {{1, 2, 3}, {0, 0, 2}},
                                 {{5, 0, 0}, {0, 0, 3}},
                                 {},
                                 {{1, 2, 2}, {0, 0, 4}},
                                 {{5.0000005, 0, 0}, {0, 0, 5}},
                                 {{1, 1, 9}, {0, 0, 6}},
                                 {}});
    const PolyLine* const emptyOnes[] = {array[3], array[7]};
    array.Sort();
    EXPECT_EQ(
        "\n\n1,1,9 0,0,6\n1,2,2 0,0,4\n1,2,3 0,0,2\n5,0,0 0,0,1\n5,0,0 0,0,3\n"
        "5.0000004999999996,0,0 0,0,5\n",
        Text(array));
    EXPECT_EQ(emptyOnes[0], array[0]);
    EXPECT_EQ(emptyOnes[1], array[1]);
    EXPECT_TRUE(array.sorted);
    EXPECT_EQ(&PolyArray::Compare, array.compare);
}

TEST(PolyArray, SortsManyAsAStandardSortDoes) {
    Numbers numbers(1);
    for (const int n : {0, 1, 2, 3, 7, 100, 1000}) {
        std::vector<Points> all;
        for (int i = 0; i < n; ++i)
            all.push_back({{1.0 * numbers.Below(4), 1.0 * numbers.Below(4), 0}, {i + 0.5, 0, 0}});
        PolyArray array = MakeArray(all);
        array.Sort();
        std::stable_sort(all.begin(), all.end(), [](const Points& a, const Points& b) {
            return Point3d::CompareExact(&a[0], &b[0]) < 0;
        });
        EXPECT_EQ(Text(all), Text(array));
    }
}

TEST(PolyArray, AddToASortedArrayKeepsItInOrder) {
    PolyArray array = MakeArray({{{5, 0, 0}}, {{1, 0, 0}}});
    array.Sort();
    EXPECT_EQ(1, array.Add(new PolyLine(MakeLine({{3, 0, 0}}))));
    EXPECT_EQ("1,0,0\n3,0,0\n5,0,0\n", Text(array));
    EXPECT_TRUE(array.sorted);
}

TEST(PolyArray, HashSumsTheChecksumsTimesSeventeenTimesTheirPlace) {
    const PolyArray array = MakeArray({{{1, 2, 3}, {4, 5, 6}}, {}, {{7, 8, 9}}});
    const std::uint32_t first = array[0]->Checksum(nullptr), third = array[2]->Checksum(nullptr);
    EXPECT_EQ(17u * first + 51u * third, array.Hash());
    EXPECT_EQ(0u, PolyArray().Hash());
    EXPECT_NE(array.Hash(), MakeArray({{{7, 8, 9}}, {}, {{1, 2, 3}, {4, 5, 6}}}).Hash());
}

TEST(PolyArray, LinesAreAllSegmentsInOrder) {
    const PolyArray array =
        MakeArray({{{0, 0, 1}, {1, 0, 2}, {1, 1, 3}}, {{5, 5, 5}}, {}, {{2, 2, 2}, {3, 3, 3}}});
    const LineArray lines = array.ToLines();
    ASSERT_EQ(3u, lines.count);
    EXPECT_EQ("0,0,1 1,0,2", Text({lines[0].Start(), lines[0].End()}));
    EXPECT_EQ("1,0,2 1,1,3", Text({lines[1].Start(), lines[1].End()}));
    EXPECT_EQ("2,2,2 3,3,3", Text({lines[2].Start(), lines[2].End()}));
    EXPECT_EQ(1, lines[0].valid);
    EXPECT_EQ(0u, PolyArray().ToLines().count);
}

TEST(PolyArray, ASquareHasFourCornersFromTheUpperLeftOn) {
    const PolyLine square = PolyArray::MakeSquare({10, 20, 3}, 0.5);
    EXPECT_EQ("9.5,20.5,3 10.5,20.5,3 10.5,19.5,3 9.5,19.5,3", Text(square));
    EXPECT_FALSE(square.IsClosed());
}

TEST(PolyArray, AWedgeOpensAwayFromWhereTheLineComesFrom) {
    const double s = std::sin(0.1), c = std::cos(0.1);
    // From the south: a bearing of 0, to the north.
    const PolyLine north = PolyArray::MakeWedge({1, 2, 7}, {1, 0, 99}, 0.1, 10);
    EXPECT_EQ(Text({{1, 2, 7}, {1 + 10 * -s, 2 + 10 * c, 7}, {1 + 10 * s, 2 + 10 * c, 7}}),
              Text(north));
    // From the west: a bearing of a quarter turn, to the east.
    const PolyLine east = PolyArray::MakeWedge({1, 2, 7}, {-5, 2, 7}, 0.1, 10);
    ASSERT_EQ(3u, east.count);
    EXPECT_NEAR(1 + 10 * c, east[1].x, 1e-14);
    EXPECT_NEAR(2 + 10 * s, east[1].y, 1e-14);
    EXPECT_NEAR(1 + 10 * c, east[2].x, 1e-14);
    EXPECT_NEAR(2 - 10 * s, east[2].y, 1e-14);
    EXPECT_EQ(7.0, east[1].z);
}

TEST(PolyArray, AWedgeFromTheSamePointOpensToTheNorth) {
    const PolyLine wedge = PolyArray::MakeWedge({0, 0, 0}, {0.00005, 0.00005, 0}, 0.1, 10);
    EXPECT_EQ(10 * std::cos(0.1), wedge[1].y);
    EXPECT_EQ(10 * std::sin(-0.1), wedge[1].x);
    // Equal in 3D is asked: one height off by more, and the bearing is that of the difference.
    const PolyLine off = PolyArray::MakeWedge({0, 0, 0}, {0.00005, 0, 1}, 0.1, 10);
    EXPECT_LT(off[1].x, -9.0);
}

}  // namespace
}  // namespace TamLib
