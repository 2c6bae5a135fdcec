#include "datastruct/LwArray.h"

#include <gtest/gtest.h>

#include <vector>

#include "tests/datastruct/ArrayFaults.h"

using TamLib::LwArray;
using test::MemoryFaults;
using test::Request;

namespace {

// Counts lives; owns nothing, so that those left behind are no leak.
struct Counted {
    Counted() { ++living; }
    Counted(int number) : value(number) { ++living; }
    Counted(const Counted& other) : value(other.value) { ++living; }
    Counted& operator=(const Counted&) = default;
    ~Counted() { --living; }

    static inline int living = 0;
    int value = 0;
};

template <std::uint32_t N>
std::vector<int> Values(const LwArray<int, N>& array) {
    return std::vector<int>(array.begin(), array.end());
}

TEST(LwArray, IsACountAndAPointer) {
    EXPECT_EQ(sizeof(LwArray<int, 6>), 16u);
    const LwArray<int, 6> array;
    EXPECT_EQ(array.count, 0u);
    EXPECT_EQ(array.data, nullptr);
}

TEST(LwArray, AddGivesTheIndexAndGrowsByChunks) {
    MemoryFaults memory;
    LwArray<int, 4> array;
    for (int i = 0; i < 9; ++i) {
        EXPECT_EQ(array.Add(i * i), i);
        EXPECT_EQ(memory.Requests(), i / 4 + 1);
        EXPECT_EQ(memory.LastSize(), static_cast<std::size_t>(i / 4 + 1) * 4 * sizeof(int));
    }
    EXPECT_EQ(Values(array), (std::vector<int>{0, 1, 4, 9, 16, 25, 36, 49, 64}));
    EXPECT_EQ(array[3], 9);
    array.Clear();
    EXPECT_EQ(array.count, 0u);
    EXPECT_EQ(array.data, nullptr);
    EXPECT_EQ(memory.Live(), 0);
}

TEST(LwArray, AddMayTakeAnElementOfItsOwn) {
    LwArray<int, 4> array;
    for (int i = 1; i <= 4; ++i) array.Add(i);
    array.Add(array[1]);
    array.Add(array[4]);
    EXPECT_EQ(Values(array), (std::vector<int>{1, 2, 3, 4, 2, 2}));
}

TEST(LwArray, AddMovedLeavesDefaultContentBehind) {
    Counted::living = 0;
    LwArray<Counted, 5> array;
    for (int i = 1; i <= 6; ++i) {
        Counted item(i);
        EXPECT_EQ(array.AddMoved(item), i - 1);
        EXPECT_EQ(item.value, 0);
    }
    EXPECT_EQ(Counted::living, 10);
    EXPECT_EQ(array[0].value, 1);
    EXPECT_EQ(array[5].value, 6);
}

TEST(LwArray, CopyAddsEachElement) {
    LwArray<int, 5> array;
    for (int i = 0; i < 7; ++i) array.Add(i);
    LwArray<int, 5> copy(array);
    EXPECT_EQ(Values(copy), Values(array));
    EXPECT_NE(copy.data, array.data);
    LwArray<int, 5> target;
    target.Add(9);
    target = array;
    EXPECT_EQ(Values(target), Values(array));
    target = LwArray<int, 5>();
    EXPECT_EQ(target.count, 0u);
    EXPECT_EQ(target.data, nullptr);
}

TEST(LwArray, ConstructsAChunkAndDestroysOnlyTheElements) {
    Counted::living = 0;
    {
        LwArray<Counted, 5> array;
        for (int i = 0; i < 7; ++i) array.Add(Counted(i));
        EXPECT_EQ(Counted::living, 10);
    }
    EXPECT_EQ(Counted::living, 3);  // intended: the spare ones of the chunk stay
}

TEST(LwArray, AssignmentDestroysNoElement) {
    Counted::living = 0;
    LwArray<Counted, 5> target;
    for (int i = 0; i < 5; ++i) target.Add(Counted(i));
    const LwArray<Counted, 5> empty;
    target = empty;
    EXPECT_EQ(target.count, 0u);
    EXPECT_EQ(Counted::living, 5);  // intended
}

TEST(LwArray, AssignmentToItselfEmptiesIt) {
    LwArray<int, 5> array;
    array.Add(1);
    const LwArray<int, 5>& same = array;
    array = same;
    EXPECT_EQ(array.count, 0u);  // intended
    EXPECT_EQ(array.data, nullptr);
}

#if defined(GTEST_HAS_DEATH_TEST) && !defined(_WIN32)  // Wine shows a dialog for the fault
TEST(LwArrayDeathTest, RefusedMemoryIsNotNoticed) {
    const auto add = [] {
        MemoryFaults memory;
        memory.Fail(Request::reallocate, 1);
        LwArray<int, 5> array;
        array.Add(1);
    };
    EXPECT_DEATH(add(), "");
}
#endif

}  // namespace
