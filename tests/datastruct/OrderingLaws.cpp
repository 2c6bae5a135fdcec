// Sorting over random input: order, permutation, and the merge modes against the plain form.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <map>
#include <vector>

#include "datastruct/Array.h"
#include "tests/datastruct/OrderingModel.h"

using namespace TamLib;
using test::CompareKeys;
using test::Marked;

namespace {

std::int32_t CompareInts(const int* a, const int* b) {
    return (*a > *b) - (*a < *b);
}

std::vector<Marked> MarkedOf(const std::vector<int>& keys, int different) {
    std::vector<Marked> marked;
    for (int key : keys) {
        marked.push_back({std::abs(key % different), static_cast<int>(marked.size())});
    }
    return marked;
}

RC_GTEST_PROP(OrderingLaws, EveryFormSorts, (const std::vector<int>& values)) {
    std::vector<int> expected = values;
    std::sort(expected.begin(), expected.end());
    const auto high = static_cast<std::int32_t>(values.size()) - 1;
    std::vector<int> sorted = values;
    QuickSort(sorted.data(), CompareInts, high, 0);
    RC_ASSERT(sorted == expected);
    sorted = values;
    QuickSort(sorted.data(), FunctionComparator<int>(CompareInts), high, 0);
    RC_ASSERT(sorted == expected);
    Array<int> array;
    for (int value : values) array.Append(value);
    array.compare = nullptr;
    array.Sort();
    array.compare = CompareInts;
    array.Sort();
    RC_ASSERT(std::vector<int>(array.begin(), array.end()) == expected);
}

RC_GTEST_PROP(OrderingLaws, BytesOrderAsMemoryDoes, (const std::vector<std::uint64_t>& values)) {
    Array<std::uint64_t> array;
    for (std::uint64_t value : values) array.Append(value);
    array.compare = nullptr;
    array.Sort();
    std::vector<std::uint64_t> expected = values;
    std::sort(expected.begin(), expected.end(),
              [](std::uint64_t a, std::uint64_t b) { return std::memcmp(&a, &b, sizeof(a)) < 0; });
    RC_ASSERT(std::vector<std::uint64_t>(array.begin(), array.end()) == expected);
}

RC_GTEST_PROP(OrderingLaws, SortUniqueIsTheSet, (std::vector<int> values)) {
    Array<int> array;
    array.compare = CompareInts;
    for (int& value : values) {
        value %= 40;
        array.Append(value);
    }
    array.SortUnique();
    std::sort(values.begin(), values.end());
    values.erase(std::unique(values.begin(), values.end()), values.end());
    RC_ASSERT(std::vector<int>(array.begin(), array.end()) == values);
    RC_ASSERT(array.count <= array.capacity);
}

RC_GTEST_PROP(OrderingLaws, DropPairsLeavesTheOddOnes, (std::vector<int> values)) {
    Array<int> array;
    array.compare = CompareInts;
    std::map<int, int> times;
    for (int& value : values) {
        value %= 40;
        array.Append(value);
        ++times[value];
    }
    Order(array.data, array.count, array.capacity, MergeMode::dropPairs, CompareInts);
    std::vector<int> odd;
    for (const auto& [value, n] : times) {
        if (n % 2 == 1) odd.push_back(value);
    }
    RC_ASSERT(std::vector<int>(array.begin(), array.end()) == odd);
}

RC_GTEST_PROP(OrderingLaws, MergeModesAreThePlainForm, (const std::vector<int>& keys)) {
    const auto mode = static_cast<MergeMode>(*rc::gen::inRange(0, 3));
    const std::vector<Marked> elements = MarkedOf(keys, *rc::gen::inRange(1, 60));
    const auto plain = test::PlainMergeSort<Marked>(CompareKeys<Marked>, static_cast<int>(mode))
                           .Sort(elements, 500);
    Array<Marked> array;
    for (const Marked& element : elements) array.Append(element);
    std::uint32_t count = 0;
    std::uint32_t capacity = 0;
    bool isNew = false;
    Marked* block = MergeSortRun(array.data, array.count, 500u, count, capacity, mode,
                                 CompareKeys<Marked>, isNew);
    const std::vector<Marked> merged(block, block + count);
    if (isNew) HeapRelease(block);
    RC_ASSERT(merged == plain.kept);
    RC_ASSERT(capacity == plain.capacity);
    RC_ASSERT(isNew == plain.isNew);
}

}  // namespace
