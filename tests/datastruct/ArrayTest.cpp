// What the array's operations give, store and promise; growth is in ArrayGrowthTest.cpp.
#include "datastruct/Array.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <initializer_list>
#include <memory>
#include <random>
#include <type_traits>
#include <utility>
#include <vector>

using TamLib::Array;
using TamLib::ArrayIterator;

namespace {

std::int32_t CompareInts(const int* a, const int* b) {
    return (*a > *b) - (*a < *b);
}

Array<int> Of(std::initializer_list<int> values) {
    Array<int> array;
    array.compare = CompareInts;
    for (int value : values) array.Append(value);
    return array;
}

template <class T>
std::vector<T> Values(const Array<T>& array) {
    return std::vector<T>(array.begin(), array.end());
}

using Ints = std::vector<int>;
using Bytes = std::vector<unsigned char>;

// The slot of a virtual operation in its class's table. Both compilers of this test keep 1 + offset
// in a pointer to a virtual member.
template <class Member>
std::ptrdiff_t TableSlot(Member member) {
    std::ptrdiff_t parts[2];
    static_assert(sizeof(member) == sizeof(parts));
    std::memcpy(parts, &member, sizeof(parts));
    return (parts[0] - 1) / static_cast<std::ptrdiff_t>(sizeof(void*));
}

TEST(Array, OperationsStandInTheTableInTheirFixedOrder) {
    using A = Array<int>;
    EXPECT_EQ(TableSlot(&A::ForEach), 0);
    EXPECT_EQ(TableSlot(&A::Clear), 1);
    EXPECT_EQ(TableSlot(&A::Contains), 2);
    EXPECT_EQ(TableSlot(&A::NewIterator), 3);
    EXPECT_EQ(TableSlot(&A::Add), 4);
    EXPECT_EQ(TableSlot(&A::AddUnique), 5);
    EXPECT_EQ(TableSlot(&A::Set), 6);
    EXPECT_EQ(TableSlot(&A::Insert), 7);
    EXPECT_EQ(TableSlot(&A::Remove), 8);
    EXPECT_EQ(TableSlot(&A::Find), 9);
    EXPECT_EQ(TableSlot(&A::Count), 10);
    EXPECT_EQ(TableSlot(&A::Sort), 11);
    EXPECT_EQ(TableSlot(&A::SortUnique), 12);
    EXPECT_EQ(TableSlot(&A::MakeUnique), 13);
    EXPECT_EQ(TableSlot(&A::Reverse), 14);
    EXPECT_EQ(TableSlot(static_cast<int* (A::*)(std::int32_t)>(&A::At)), 15);
    // The destructor takes the two slots between.
    EXPECT_EQ(TableSlot(&A::Checksum), 18);
    EXPECT_EQ(TableSlot(static_cast<int* (A::*)()>(&A::Data)), 19);
}

TEST(Array, FieldsStandInTheirFixedOrder) {
    const Array<int> array;
    const auto* fields = reinterpret_cast<const unsigned char*>(&array);
    const auto offset = [&](const void* field) {
        return static_cast<const unsigned char*>(field) - fields;
    };
    EXPECT_EQ(offset(&array.bitwise), 8);
    EXPECT_EQ(offset(&array.compare), 16);
    EXPECT_EQ(offset(&array.sorted), 24);
    EXPECT_EQ(offset(&array.unique), 25);
    EXPECT_EQ(offset(&array.count), 28);
    EXPECT_EQ(offset(&array.increment), 32);
    EXPECT_EQ(offset(&array.capacity), 36);
    EXPECT_EQ(offset(&array.data), 40);
    EXPECT_EQ(sizeof(array), 48u);
}

TEST(Array, HasAVirtualDestructorUnlikeItsBases) {
    EXPECT_TRUE(std::has_virtual_destructor_v<Array<int>>);
    EXPECT_FALSE(std::has_virtual_destructor_v<TamLib::Vector<int>>);
    EXPECT_FALSE(std::has_virtual_destructor_v<TamLib::Container<int>>);
}

TEST(Array, StartsWithNothingSet) {
    const Array<int> array;
    EXPECT_FALSE(array.bitwise);
    EXPECT_FALSE(array.sorted);
    EXPECT_FALSE(array.unique);
    EXPECT_NE(array.compare, nullptr);
    EXPECT_EQ(array.count, 0u);
    EXPECT_EQ(array.capacity, 0u);
    EXPECT_EQ(array.data, nullptr);
}

TEST(Array, DefaultComparisonIsOfUnsignedBytes) {
    Array<unsigned char> bytes;
    const unsigned char low = 0x7F;
    const unsigned char high = 0x80;
    EXPECT_EQ(bytes.compare(&low, &high), -1);
    EXPECT_EQ(bytes.compare(&high, &low), 1);
    EXPECT_EQ(bytes.compare(&high, &high), 0);
    // In memory 256 is 00 01 00 00 and 1 is 01 00 00 00.
    Array<int> ints;
    const int one = 1;
    const int many = 256;
    EXPECT_EQ(ints.compare(&many, &one), -1);
}

TEST(Array, ForEachVisitsInOrder) {
    static Ints seen;
    seen.clear();
    Array<int> array = Of({3, 1, 2});
    array.ForEach([](int* element) {
        seen.push_back(*element);
        *element = -*element;
    });
    EXPECT_EQ(seen, (Ints{3, 1, 2}));
    EXPECT_EQ(Values(array), (Ints{-3, -1, -2}));
}

TEST(Array, ClearKeepsTheSettingsAndAnswersZero) {
    Array<int> array = Of({1, 2});
    array.increment = 7;
    array.sorted = true;
    array.unique = true;
    EXPECT_EQ(array.Clear(), 0);
    EXPECT_EQ(array.count, 0u);
    EXPECT_EQ(array.capacity, 0u);
    EXPECT_EQ(array.data, nullptr);
    EXPECT_EQ(array.increment, 7u);
    EXPECT_TRUE(array.sorted);
    EXPECT_TRUE(array.unique);
    EXPECT_EQ(array.compare, &CompareInts);
}

// A comparison that is no order: only the first argument decides.
std::int32_t FirstIsSeven(const int* a, const int*) {
    return *a == 7 ? 0 : 1;
}

TEST(Array, SearchesPassTheItemAsTheFirstArgument) {
    Array<int> array = Of({1, 2});
    array.compare = FirstIsSeven;
    EXPECT_TRUE(array.Contains(7));
    EXPECT_FALSE(array.Contains(1));
    EXPECT_EQ(array.Find(7), 0);
    EXPECT_EQ(array.Find(1), -1);
    EXPECT_EQ(array.Count(7), 2u);
    EXPECT_EQ(array.Count(1), 0u);
}

TEST(Array, ContainsIsLinearWhateverSortedSays) {
    Array<int> array = Of({5, 1, 9});
    array.sorted = true;
    EXPECT_TRUE(array.Contains(9));
    EXPECT_TRUE(array.Contains(5));
    EXPECT_FALSE(Of({}).Contains(5));
}

TEST(Array, AddAppendsToAnUnsortedArray) {
    Array<int> array = Of({5, 1});
    EXPECT_EQ(array.Add(3), 2);
    EXPECT_EQ(Values(array), (Ints{5, 1, 3}));
}

TEST(Array, AddKeepsASortedArrayInOrderAndSorted) {
    Array<int> array = Of({1, 3, 3, 5});
    array.sorted = true;
    EXPECT_EQ(array.Add(4), 3);
    EXPECT_EQ(array.Add(0), 0);
    EXPECT_EQ(array.Add(9), 6);
    EXPECT_EQ(array.Add(3), 2);  // before its equals
    EXPECT_EQ(Values(array), (Ints{0, 1, 3, 3, 3, 4, 5, 9}));
    EXPECT_TRUE(array.sorted);
}

TEST(Array, AddToASortedArrayGoesOnOnlyWhileTheComparisonGivesOne) {
    Array<int> array;
    array.compare = [](const int* a, const int* b) { return *a - *b; };  // 2 is not 1
    array.sorted = true;
    array.Append(1);
    array.sorted = true;
    EXPECT_EQ(array.Add(3), 0);
    EXPECT_EQ(array.Add(4), 1);
    EXPECT_EQ(Values(array), (Ints{3, 4, 1}));
}

TEST(Array, AddToASortedUniqueArrayDeclinesADuplicateButGivesItsPlace) {
    Array<int> array = Of({1, 3, 5});
    array.sorted = true;
    array.unique = true;
    EXPECT_EQ(array.Add(3), 1);
    EXPECT_EQ(Values(array), (Ints{1, 3, 5}));
}

struct Refusing final : Array<int> {
    void Insert(std::int32_t index, const int&) override { asked = index; }
    std::int32_t asked = -1;
};

TEST(Array, AddToASortedArrayInsertsThroughTheTable) {
    Refusing array;
    array.compare = CompareInts;
    array.Append(1);
    array.sorted = true;
    EXPECT_EQ(array.Add(2), 1);
    EXPECT_EQ(array.asked, 1);
    EXPECT_EQ(array.count, 1u);
}

TEST(Array, AddUniqueFindsWhatIsThere) {
    Array<int> array = Of({5, 1, 5});
    EXPECT_EQ(array.AddUnique(5), 0);
    EXPECT_EQ(array.AddUnique(8), 3);
    EXPECT_EQ(array.AddUnique(8), 3);
    EXPECT_EQ(Values(array), (Ints{5, 1, 5, 8}));
}

TEST(Array, InsertMinusOneStoresBehindTheLastElement) {
    Array<int> array = Of({1, 2, 3});
    array.Insert(-1, 9);
    EXPECT_EQ(Values(array), (Ints{1, 2, 3, 9}));
    array.Insert(-2, 8);
    EXPECT_EQ(Values(array), (Ints{1, 2, 3, 8, 9}));
    array.Insert(-6, 7);
    EXPECT_EQ(Values(array), (Ints{7, 1, 2, 3, 8, 9}));
}

TEST(Array, InsertAcceptsEachPlaceUpToCount) {
    for (int at = 0; at <= 3; ++at) {
        Array<int> array = Of({1, 2, 3});
        Ints expected{1, 2, 3};
        array.Insert(at, 9);
        expected.insert(expected.begin() + at, 9);
        EXPECT_EQ(Values(array), expected) << at;
    }
}

TEST(Array, InsertChecksForDuplicatesOnlyWhenUniqueIsSet) {
    Array<int> array = Of({1, 2});
    array.Insert(0, 2);
    EXPECT_EQ(Values(array), (Ints{2, 1, 2}));
    array.unique = true;
    array.Insert(0, 2);
    EXPECT_EQ(array.count, 3u);
    array.Append(2);  // not asked here
    EXPECT_EQ(array.count, 4u);
    EXPECT_TRUE(array.unique);
}

TEST(Array, SetStoresAtNegativeIndexesFromTheEnd) {
    Array<int> array = Of({1, 2, 3});
    array.Set(-1, 9);
    array.Set(-3, 7);
    array.Set(1, 8);
    EXPECT_EQ(Values(array), (Ints{7, 8, 9}));
}

TEST(Array, AppendTakesBackSortedAndNothingTakesBackUnique) {
    Array<int> array = Of({2, 1});
    array.SortUnique();
    EXPECT_TRUE(array.sorted);
    EXPECT_TRUE(array.unique);
    array.Set(0, 5);
    array.Insert(0, 7);
    array.Reverse();
    array.Remove(0, 1);
    EXPECT_TRUE(array.sorted);
    array.Append(7);
    EXPECT_FALSE(array.sorted);
    EXPECT_TRUE(array.unique);
}

TEST(Array, FindTurnsLinearAfterAnAppendToASortedArray) {
    Array<int> array = Of({9, 5, 7});
    array.Sort();
    array.Append(1);  // out of order: bisection would not find it
    EXPECT_EQ(array.Find(1), 3);
}

TEST(Array, FindOnASortedArrayAboveAllIsMinusOneAndTheNearestIsZero) {
    Array<int> array = Of({1, 3, 5});
    array.Sort();
    EXPECT_EQ(array.Find(7), -1);
    EXPECT_EQ(array.BinarySearch(7, false), -1);
    EXPECT_EQ(array.BinarySearch(7, true), 0);  // intended
}

TEST(Array, BinarySearchGivesTheLastElementBeforeWhenNearestIsAsked) {
    Array<int> array = Of({10, 20, 30, 40, 50});
    array.Sort();
    EXPECT_EQ(array.BinarySearch(5, true), 0);
    EXPECT_EQ(array.BinarySearch(10, true), 0);
    EXPECT_EQ(array.BinarySearch(19, true), 0);
    EXPECT_EQ(array.BinarySearch(21, true), 1);
    EXPECT_EQ(array.BinarySearch(35, true), 2);
    EXPECT_EQ(array.BinarySearch(49, true), 3);
    EXPECT_EQ(array.BinarySearch(50, true), 4);
    EXPECT_EQ(array.BinarySearch(35, false), -1);
    EXPECT_EQ(Of({}).BinarySearch(1, true), -1);
    EXPECT_EQ(Of({}).BinarySearch(1, false), -1);
    EXPECT_EQ(Of({4}).BinarySearch(4, false), 0);
    EXPECT_EQ(Of({4}).BinarySearch(3, true), 0);
}

// The search as it reads step by step, with every comparison.
std::int32_t PlainSearch(const Array<int>& array, int item, bool nearest) {
    if (array.count == 0) return -1;
    const auto compare = array.compare;
    const int* data = array.data;
    std::uint32_t low = 0;
    std::uint32_t high = array.count - 1;
    if (compare(&data[high], &item) >= 1) {
        for (;;) {
            if (compare(&item, &data[low]) < 1 || high - low < 2) break;
            const std::uint32_t middle = low + (high - low) / 2;
            if (compare(&data[middle], &item) < 1) {
                low = middle;
            } else {
                high = middle;
            }
            if (!(compare(&data[high], &item) > 0)) break;
        }
    }
    if (compare(&item, &data[low]) == 0) return static_cast<std::int32_t>(low);
    if (compare(&item, &data[high]) == 0) return static_cast<std::int32_t>(high);
    return nearest ? static_cast<std::int32_t>(low) : -1;
}

TEST(Array, BinarySearchIsTheSearchStepByStepAlsoOnUnsortedContent) {
    std::mt19937 random(11);
    for (int round = 0; round < 5000; ++round) {
        Array<int> array = Of({});
        const int n = static_cast<int>(random() % 12);
        for (int i = 0; i < n; ++i) array.Append(static_cast<int>(random() % 8));
        if (round % 2 == 0) array.Sort();
        for (int item = -1; item <= 8; ++item) {
            EXPECT_EQ(array.BinarySearch(item, false), PlainSearch(array, item, false));
            EXPECT_EQ(array.BinarySearch(item, true), PlainSearch(array, item, true));
        }
    }
}

TEST(Array, ReverseOfASortedArrayKeepsTheFlag) {
    Array<int> array = Of({3, 1, 2});
    array.Sort();
    array.Reverse();
    EXPECT_EQ(Values(array), (Ints{3, 2, 1}));
    EXPECT_TRUE(array.sorted);
    EXPECT_EQ(array.Find(2), -1);  // bisecting the wrong order
    EXPECT_TRUE(array.Contains(2));
}

TEST(Array, ReverseExchangesFromBothEnds) {
    Array<int> even = Of({1, 2, 3, 4});
    even.Reverse();
    EXPECT_EQ(Values(even), (Ints{4, 3, 2, 1}));
    Array<int> one = Of({1});
    one.Reverse();
    EXPECT_EQ(Values(one), (Ints{1}));
    Array<int> none = Of({});
    none.Reverse();
    EXPECT_EQ(none.count, 0u);
}

TEST(Array, MakeUniqueKeepsTheLastOfEquals) {
    Array<int> array = Of({1, 2, 1});
    array.MakeUnique();
    EXPECT_EQ(Values(array), (Ints{2, 1}));
    EXPECT_TRUE(array.unique);
    Array<int> many = Of({4, 4, 1, 2, 4, 1, 3});
    many.MakeUnique();
    EXPECT_EQ(Values(many), (Ints{2, 4, 1, 3}));
}

TEST(Array, MakeUniqueDoesNothingWhenUniqueIsSet) {
    Array<int> array = Of({1, 1});
    array.unique = true;
    array.MakeUnique();
    EXPECT_EQ(array.count, 2u);
}

// MakeUnique as it reads step by step, counting every element.
void PlainMakeUnique(Array<int>& array) {
    for (std::uint32_t i = 0; i < array.count; ++i) {
        while (i < array.count && array.Count(array.data[i]) >= 2) {
            array.Remove(array.Find(array.data[i]), 1);
        }
    }
    array.unique = true;
}

std::int32_t CompareWithinOne(const int* a, const int* b) {
    return (*a > *b + 1) - (*b > *a + 1);
}

TEST(Array, MakeUniqueIsTheSameStepByStepForAnyComparisonAndFlag) {
    std::mt19937 random(12);
    for (int round = 0; round < 4000; ++round) {
        Array<int> array = Of({});
        if (round % 4 >= 2) array.compare = CompareWithinOne;  // not transitive
        const int n = static_cast<int>(random() % 14);
        for (int i = 0; i < n; ++i) array.Append(static_cast<int>(random() % 9));
        if (round % 2 == 1) array.Sort();
        if (round % 8 == 7) array.Reverse();
        Array<int> plain = array;
        plain.sorted = array.sorted;
        plain.Resize(array.capacity);
        array.MakeUnique();
        PlainMakeUnique(plain);
        EXPECT_EQ(Values(array), Values(plain));
        EXPECT_EQ(array.capacity, plain.capacity);
        EXPECT_TRUE(array.unique);
    }
}

TEST(Array, SortUniqueOfTheBaseSortsThenMakesUnique) {
    Array<int> array = Of({3, 1, 3, 2, 1});
    array.Vector<int>::SortUnique();
    EXPECT_EQ(Values(array), (Ints{1, 2, 3}));
    EXPECT_TRUE(array.sorted);
    EXPECT_TRUE(array.unique);
}

TEST(Array, AtAndBracketsCountNegativeIndexesFromTheEnd) {
    Array<int> array = Of({1, 2, 3});
    EXPECT_EQ(*array.At(0), 1);
    EXPECT_EQ(*array.At(-1), 3);
    EXPECT_EQ(*array.At(-3), 1);
    EXPECT_EQ(array[-2], 2);
    const Array<int>& fixed = array;
    EXPECT_EQ(*fixed.At(-1), 3);
    EXPECT_EQ(fixed[2], 3);
    EXPECT_EQ(fixed.Data(), array.data);
    EXPECT_EQ(array.Data(), array.data);
}

TEST(Array, ChecksumWeighsEachElementByItsPlace) {
    const Array<int> array = Of({10, 20, 30});
    const auto value = [](const int* element) { return static_cast<std::uint32_t>(*element); };
    EXPECT_EQ(array.Checksum(value), (10u * 1 + 20u * 2 + 30u * 3) * 119u);
    EXPECT_EQ(Of({}).Checksum(value), 0u);
    // 32-bit wrap: 0xFFFFFFFF * 1 * 119 is -119.
    EXPECT_EQ(Of({-1}).Checksum(value), 0u - 119u);
}

TEST(Array, ChecksumWithoutAFunctionWeighsTheBytes) {
    Array<unsigned char> array;
    for (unsigned char byte : Bytes{1, 2, 255}) array.Append(byte);
    // Each byte alone is byte * 1 * 7.
    EXPECT_EQ(array.Checksum(nullptr), (7u * 1 + 14u * 2 + 1785u * 3) * 119u);
}

TEST(Array, ByteChecksumWeighsEachByteByItsPlace) {
    const unsigned char bytes[] = {1, 0, 200};
    EXPECT_EQ(TamLib::ByteChecksum(bytes, 3), (1u + 600u) * 7u);
    EXPECT_EQ(TamLib::ByteChecksum(bytes, 0), 0u);
    // 2^20 bytes of 255: 255 * 7 * n(n+1)/2, n(n+1)/2 = 549756338176, mod 2^32.
    const std::vector<unsigned char> many(1u << 20, 255);
    EXPECT_EQ(TamLib::ByteChecksum(many.data(), many.size()),
              static_cast<std::uint32_t>(1785ull * 549756338176ull));
}

TEST(Array, CopyOfASortedObjectArrayIsNotSorted) {
    Array<int> array = Of({2, 1});
    array.SortUnique();
    const Array<int> copy(array);
    EXPECT_FALSE(copy.sorted);
    EXPECT_TRUE(copy.unique);
    EXPECT_EQ(Values(copy), (Ints{1, 2}));
}

TEST(Array, CopyOfASortedBitwiseArrayIsSorted) {
    Array<int> array = Of({2, 1});
    array.bitwise = true;
    array.Sort();
    const Array<int> copy(array);
    EXPECT_TRUE(copy.sorted);
    EXPECT_TRUE(copy.bitwise);
    EXPECT_EQ(Values(copy), (Ints{1, 2}));
}

TEST(Array, CopyOfAnEmptyArrayKeepsTheFlag) {
    Array<int> array = Of({});
    array.Sort();
    EXPECT_TRUE(Array<int>(array).sorted);
}

TEST(Array, AssignmentTakesTheSettingsAndExactlyTheCount) {
    Array<int> source(40);
    source.compare = CompareInts;
    source.Append(1);
    source.Append(2);
    source.unique = true;
    Array<int> target = Of({7, 8, 9});
    target = source;
    EXPECT_EQ(Values(target), (Ints{1, 2}));
    EXPECT_EQ(target.capacity, 2u);
    EXPECT_EQ(target.increment, 40u);
    EXPECT_EQ(target.compare, source.compare);
    EXPECT_TRUE(target.unique);
    target = Array<int>();
    EXPECT_EQ(target.count, 0u);
    EXPECT_EQ(target.capacity, 0u);
    EXPECT_EQ(target.data, nullptr);
    EXPECT_EQ(target.increment, 5u);
}

TEST(Array, AssignmentToItselfDoesNothing) {
    Array<int> array = Of({2, 1});
    array.Sort();
    const int* block = array.data;
    const Array<int>& same = array;
    array = same;
    EXPECT_EQ(array.data, block);
    EXPECT_EQ(array.capacity, 5u);
    EXPECT_TRUE(array.sorted);
}

TEST(Array, MoveConstructionTakesTheBlockOver) {
    Array<int> source = Of({2, 1});
    source.Sort();
    const int* block = source.data;
    const Array<int> target(std::move(source));
    EXPECT_EQ(target.data, block);
    EXPECT_TRUE(target.sorted);
    EXPECT_EQ(target.capacity, 5u);
    EXPECT_EQ(source.count, 0u);      // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(source.data, nullptr);  // NOLINT(bugprone-use-after-move)
}

TEST(Array, SwapBlocksLeavesTheSettings) {
    Array<int> first = Of({1, 2});
    first.increment = 8;
    Array<int> second = Of({3});
    first.SwapBlocks(second);
    EXPECT_EQ(Values(first), (Ints{3}));
    EXPECT_EQ(Values(second), (Ints{1, 2}));
    EXPECT_EQ(first.increment, 8u);
    EXPECT_EQ(second.increment, 5u);
}

TEST(Array, NullComparisonStandsForTheBytes) {
    Array<unsigned char> array;
    array.compare = nullptr;
    for (unsigned char byte : Bytes{200, 3, 100, 3}) array.Append(byte);
    EXPECT_TRUE(array.Contains(100));
    EXPECT_EQ(array.Find(3), 1);
    EXPECT_EQ(array.Count(3), 2u);
    array.Sort();
    EXPECT_EQ(Values(array), (Bytes{3, 3, 100, 200}));
    EXPECT_EQ(array.Find(200), 3);
    array.SortUnique();
    EXPECT_EQ(Values(array), (Bytes{3, 100, 200}));
    EXPECT_EQ(array.Add(50), 1);
    Array<unsigned char> twice;
    twice.compare = nullptr;
    for (unsigned char byte : Bytes{9, 1, 9}) twice.Append(byte);
    twice.MakeUnique();
    EXPECT_EQ(Values(twice), (Bytes{1, 9}));
}

TEST(Array, SliceTakesARingOfElements) {
    const Array<int> array = Of({10, 11, 12, 13});
    EXPECT_EQ(Values(array.Slice(1, 2)), (Ints{11, 12}));
    EXPECT_EQ(Values(array.Slice(0, 3)), (Ints{10, 11, 12, 13}));
    EXPECT_EQ(Values(array.Slice(3, 0)), (Ints{13, 10}));
    EXPECT_EQ(Values(array.Slice(2, 1)), (Ints{12, 13, 10, 11}));
    EXPECT_EQ(Values(array.Slice(-1, 1)), (Ints{13, 10, 11}));
    EXPECT_EQ(Values(array.Slice(-2, -1)), (Ints{12, 13}));
    EXPECT_EQ(Values(array.Slice(2, 7)), (Ints{12, 13, 10, 11, 12, 13}));
    EXPECT_EQ(Values(array.Slice(10, 2)), Ints{});               // still behind its end
    EXPECT_EQ(Values(array.Slice(-6, -4)), (Ints{12, 13, 10}));  // two before the start
    EXPECT_EQ(Values(Of({}).Slice(0, 3)), Ints{});
}

TEST(Array, SliceKeepsTheSettingsWithAnIncrementOfTen) {
    Array<int> array = Of({});
    for (int i = 0; i < 30; ++i) array.Append(i);
    array.sorted = true;
    array.unique = true;
    const Array<int> small = array.Slice(0, 2);
    EXPECT_EQ(small.increment, 10u);
    EXPECT_EQ(small.capacity, 10u);
    EXPECT_TRUE(small.sorted);
    EXPECT_TRUE(small.unique);
    EXPECT_FALSE(small.bitwise);
    EXPECT_EQ(small.compare, &CompareInts);
    EXPECT_EQ(array.Slice(0, 19).capacity, 20u);
    EXPECT_EQ(Of({}).Slice(0, 19).capacity, 20u);
    EXPECT_EQ(Of({}).Slice(0, 0).capacity, 10u);
}

TEST(ArrayIterator, OnOneElementMovesNowhereButStandsOnIt) {
    Array<int> array = Of({42});
    const std::unique_ptr<ArrayIterator<int>> cursor(array.NewIterator());
    EXPECT_FALSE(cursor->First());
    EXPECT_FALSE(cursor->Next());
    EXPECT_FALSE(cursor->Advance());
    EXPECT_FALSE(cursor->Previous());
    EXPECT_EQ(*cursor->Current(), 42);
    EXPECT_EQ(cursor->Position(), 0u);
}

TEST(ArrayIterator, WalksToTheLastElementAndBack) {
    Array<int> array = Of({1, 2, 3});
    ArrayIterator<int> cursor(&array);
    EXPECT_TRUE(cursor.Next());
    EXPECT_TRUE(cursor.Advance());
    EXPECT_EQ(*cursor.Current(), 3);
    EXPECT_FALSE(cursor.Next());
    EXPECT_EQ(cursor.Position(), 2u);
    EXPECT_TRUE(cursor.Back());
    EXPECT_TRUE(cursor.Previous());
    EXPECT_FALSE(cursor.Previous());
    EXPECT_EQ(*cursor.Current(), 1);
    cursor.Next();
    EXPECT_TRUE(cursor.First());
    EXPECT_EQ(cursor.Position(), 0u);
}

TEST(ArrayIterator, SeekRefusesTheLastIndex) {
    Array<int> array = Of({1, 2, 3});
    ArrayIterator<int> cursor(&array);
    EXPECT_TRUE(cursor.Seek(1));
    EXPECT_EQ(*cursor.Current(), 2);
    EXPECT_FALSE(cursor.Seek(2));  // intended
    EXPECT_FALSE(cursor.Seek(3));
    EXPECT_FALSE(cursor.Seek(-1));
    EXPECT_EQ(cursor.Position(), 1u);
    EXPECT_EQ(cursor.SeekIndex(0), 0);
    EXPECT_EQ(cursor.SeekIndex(2), -1);
    EXPECT_EQ(cursor.Position(), 0u);
}

TEST(ArrayIterator, SeesNoEndOnAnEmptyArray) {
    Array<int> array = Of({});
    ArrayIterator<int> cursor(&array);
    EXPECT_TRUE(cursor.First());
    EXPECT_TRUE(cursor.Next());  // intended: the bound is count - 1 without a sign
    EXPECT_TRUE(cursor.Seek(1000));
    EXPECT_EQ(cursor.Position(), 1000u);
    EXPECT_FALSE(cursor.Seek(-1));
}

TEST(ArrayIterator, CurrentAsksTheArrayThroughItsTable) {
    struct Shifted final : Array<int> {
        int* At(std::int32_t index) override { return data + index + 1; }
    };
    Shifted array;
    array.Append(1);
    array.Append(2);
    ArrayIterator<int> cursor(&array);
    EXPECT_EQ(*cursor.Current(), 2);
}

TEST(ArrayIterator, OperationsStandInTheTableInTheirFixedOrder) {
    using I = ArrayIterator<int>;
    EXPECT_EQ(TableSlot(&I::Current), 0);
    EXPECT_EQ(TableSlot(&I::Next), 1);
    EXPECT_EQ(TableSlot(&I::First), 2);
    EXPECT_EQ(TableSlot(&TamLib::IteratorBase<int>::Advance), 3);
    EXPECT_EQ(TableSlot(&I::Previous), 4);
    EXPECT_EQ(TableSlot(&I::Seek), 5);
    EXPECT_EQ(TableSlot(&I::SeekIndex), 6);
    EXPECT_EQ(TableSlot(&I::Back), 7);
    EXPECT_EQ(TableSlot(&I::Position), 8);
}

}  // namespace
