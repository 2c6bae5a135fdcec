// Capacities, growth by fixed steps, what slots hold, what Remove gives back.
#include <gtest/gtest.h>

#include <vector>

#include "datastruct/Array.h"
#include "tests/datastruct/ArrayFaults.h"

using TamLib::Array;
using test::Catch;

namespace {

Array<int> Counting(std::uint32_t n) {
    Array<int> array;
    for (std::uint32_t i = 0; i < n; ++i) array.Append(static_cast<int>(i));
    return array;
}

std::vector<int> Values(const Array<int>& array) {
    return std::vector<int>(array.begin(), array.end());
}

TEST(Array, IncrementIsTheLargerOfTheCapacityAndFive) {
    EXPECT_EQ(Array<int>(0).increment, 5u);
    EXPECT_EQ(Array<int>(4).increment, 5u);
    EXPECT_EQ(Array<int>(5).increment, 5u);
    EXPECT_EQ(Array<int>(6).increment, 6u);
    EXPECT_EQ(Array<int>(1000).increment, 1000u);
    EXPECT_EQ(Array<int>(3).capacity, 3u);
}

TEST(Array, SixthAppendMovesCapacityFromFiveToTen) {
    Array<int> array(0);
    for (int i = 0; i < 5; ++i) EXPECT_EQ(array.Append(i), i);
    EXPECT_EQ(array.capacity, 5u);
    array.Append(5);
    EXPECT_EQ(array.capacity, 10u);
}

TEST(Array, AppendGrowsByTheIncrementAndNeverDoubles) {
    Array<int> array(1000);
    for (int i = 0; i < 3001; ++i) array.Append(i);
    EXPECT_EQ(array.capacity, 4000u);
}

TEST(Array, SetBeyondTheCapacityLeavesDefaultContentBefore) {
    Array<int> array(0);
    array.Set(7, 9);
    EXPECT_EQ(array.capacity, 13u);
    EXPECT_EQ(array.count, 8u);
    EXPECT_EQ(Values(array), (std::vector<int>{0, 0, 0, 0, 0, 0, 0, 9}));
}

TEST(Array, SetBeyondTheCapacityLeavesZeroBytesBeforeInABitwiseArray) {
    Array<int> array(0);
    array.bitwise = true;
    array.Set(7, 9);
    EXPECT_EQ(array.capacity, 13u);
    EXPECT_EQ(Values(array), (std::vector<int>{0, 0, 0, 0, 0, 0, 0, 9}));
}

TEST(Array, SetBetweenCountAndCapacityStoresWithoutResizing) {
    Array<int> array(10);
    array.Append(1);
    const int* block = array.data;
    array.data[3] = 77;  // what a passed slot holds stays
    array.Set(5, 9);
    EXPECT_EQ(array.data, block);
    EXPECT_EQ(array.capacity, 10u);
    EXPECT_EQ(Values(array), (std::vector<int>{1, 0, 0, 77, 0, 9}));
    array.Set(9, 8);
    EXPECT_EQ(array.capacity, 10u);
    array.Set(10, 7);
    EXPECT_EQ(array.capacity, 21u);
}

TEST(Array, InsertGrowsByTheIncrementAndOne) {
    Array<int> array = Counting(5);
    array.Insert(0, 9);
    EXPECT_EQ(array.capacity, 11u);
    Array<int> empty(0);
    empty.Insert(0, 9);
    EXPECT_EQ(empty.capacity, 6u);
}

TEST(Array, MakeRoomGrowsByTheIncrementAndTheGap) {
    Array<int> array = Counting(5);
    array.MakeRoom(2, 7);
    EXPECT_EQ(array.capacity, 17u);
    EXPECT_EQ(array.count, 5u);  // the caller stores and counts
    EXPECT_EQ(std::vector<int>(array.data, array.data + 12),
              (std::vector<int>{0, 1, 0, 0, 0, 0, 0, 0, 0, 2, 3, 4}));
    Array<int> roomy = Counting(8);
    roomy.MakeRoom(1, 2);
    EXPECT_EQ(roomy.capacity, 10u);
}

TEST(Array, MakeRoomAtTheEndOrInAnEmptyArrayMovesNothing) {
    Array<int> array = Counting(3);
    test::MemoryFaults memory;
    array.MakeRoom(3, 2);
    EXPECT_EQ(memory.Requests(), 0);
    EXPECT_EQ(array.capacity, 5u);
    Array<int> empty(5);
    const int before = memory.Requests();
    empty.MakeRoom(0, 5);
    EXPECT_EQ(memory.Requests(), before);
}

TEST(Array, RemoveOfTheLastElementGivesSparesBackDownToFive) {
    Array<int> array(0);
    array.Resize(100);
    array.count = 90;
    ASSERT_EQ(array.increment, 5u);
    array.Remove(-1, 1);
    EXPECT_EQ(array.count, 89u);
    EXPECT_EQ(array.capacity, 94u);
}

TEST(Array, RemoveShrinksToFiveSparesWhateverTheIncrement) {
    Array<int> array(20);
    array.Resize(40);
    array.count = 20;
    array.Remove(0, 1);  // 40 - 19 = 21 spares, above 20
    EXPECT_EQ(array.capacity, 24u);
    Array<int> kept(20);
    kept.Resize(40);
    kept.count = 21;
    kept.Remove(0, 1);  // 20 spares are not above 20
    EXPECT_EQ(kept.capacity, 40u);
}

TEST(Array, RemoveWithAnIncrementBelowFiveMayGrow) {
    Array<int> array(3);
    array.increment = 1;
    array.count = 3;
    array.Remove(0, 2);
    EXPECT_EQ(array.count, 1u);
    EXPECT_EQ(array.capacity, 6u);  // intended: count + 5
}

TEST(Array, RemoveTakesElementsOutAndClosesTheGap) {
    Array<int> array = Counting(6);
    array.Remove(1, 2);
    EXPECT_EQ(Values(array), (std::vector<int>{0, 3, 4, 5}));
    array.Remove(-1, 1);
    EXPECT_EQ(Values(array), (std::vector<int>{0, 3, 4}));
    array.Remove(-3, 3);
    EXPECT_EQ(array.count, 0u);
    EXPECT_EQ(array.capacity, 5u);
    array.Append(7);
    array.Remove(0, 0);
    EXPECT_EQ(array.count, 1u);
}

TEST(Array, RemoveCleansTheFreedSlots) {
    for (const bool bitwise : {false, true}) {
        Array<int> array(10);
        array.bitwise = bitwise;
        for (int i = 1; i <= 10; ++i) array.Append(i);
        array.Remove(2, 3);
        EXPECT_EQ(std::vector<int>(array.data, array.data + 10),
                  (std::vector<int>{1, 2, 6, 7, 8, 9, 10, 0, 0, 0}));
    }
}

TEST(Array, RemoveBeyondTheEndRaisesLine997) {
    Array<int> array = Counting(3);
    for (const auto& raised :
         {Catch([&] { array.Remove(0, 4); }), Catch([&] { array.Remove(3, 1); }),
          Catch([&] { array.Remove(7, 0); }), Catch([&] { array.Remove(1, 0xFFFFFFFFu); }),
          Catch([&] { array.Remove(-1, 2); }), Catch([&] { array.Remove(-4, 1); }),
          Catch([&] { array.Remove(-5, 10); })}) {
        EXPECT_EQ(raised.type, "TamExpRange");
        EXPECT_EQ(raised.line, 997);
        EXPECT_EQ(raised.file, L"datastruct/Array");
        EXPECT_EQ(raised.text, L"");
    }
    EXPECT_EQ(array.count, 3u);
    EXPECT_EQ(array.capacity, 5u);
}

TEST(Array, RemoveOfNothingAtCountRaisesLine999) {
    Array<int> array = Counting(3);
    const auto raised = Catch([&] { array.Remove(3, 0); });
    EXPECT_EQ(raised.type, "TamExpRange");
    EXPECT_EQ(raised.line, 999);
    EXPECT_EQ(raised.file, L"datastruct/Array");
    EXPECT_EQ(raised.text, L"");
    EXPECT_EQ(Catch([] { Array<int>().Remove(0, 0); }).line, 999);
    EXPECT_EQ(Catch([] { Array<int>().Remove(0, 1); }).line, 997);
}

TEST(Array, ResizeGivesUpElementsAndTheBlock) {
    Array<int> array = Counting(5);
    array.Resize(3);
    EXPECT_EQ(Values(array), (std::vector<int>{0, 1, 2}));
    EXPECT_EQ(array.capacity, 3u);
    array.Resize(0);
    EXPECT_EQ(array.count, 0u);
    EXPECT_EQ(array.capacity, 0u);
    EXPECT_EQ(array.data, nullptr);
}

TEST(Array, ResizeFillsNewSlotsWithDefaultContent) {
    for (const bool bitwise : {false, true}) {
        Array<int> array;
        array.bitwise = bitwise;
        array.Resize(3);
        array.data[0] = 7;
        array.Resize(300);
        EXPECT_EQ(array.count, 0u);
        EXPECT_EQ(array.data[0], 7);
        for (int i = 1; i < 300; ++i) EXPECT_EQ(array.data[i], 0);
    }
}

TEST(Array, AllocateTakesExactlySoManySlots) {
    Array<int> array = Counting(4);
    array.Allocate(9);
    EXPECT_EQ(array.count, 0u);
    EXPECT_EQ(array.capacity, 9u);
    for (int i = 0; i < 9; ++i) EXPECT_EQ(array.data[i], 0);
    array.Allocate(0);
    EXPECT_EQ(array.capacity, 0u);
    EXPECT_EQ(array.data, nullptr);
}

TEST(Array, ItemsMayBeElementsOfTheArrayItself) {
    Array<int> array = Counting(5);
    array.Append(array.data[1]);  // grows
    array.Append(array.data[2]);
    EXPECT_EQ(Values(array), (std::vector<int>{0, 1, 2, 3, 4, 1, 2}));
    Array<int> full = Counting(5);
    full.Set(11, full.data[4]);
    EXPECT_EQ(full[11], 4);
    for (int at = 0; at <= 5; ++at) {
        for (int from = 0; from < 5; ++from) {
            for (const bool grows : {true, false}) {
                Array<int> inserted = Counting(5);
                if (!grows) inserted.Resize(9);
                std::vector<int> expected = Values(inserted);
                expected.insert(expected.begin() + at, from);
                inserted.Insert(at, inserted.data[from]);
                EXPECT_EQ(Values(inserted), expected) << at << ' ' << from;
            }
        }
    }
}

}  // namespace
