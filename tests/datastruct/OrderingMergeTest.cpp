// The merge sort: its modes against the plain form over all small inputs and random large ones, its
// blocks and capacities, and what is left when memory or a comparison fails.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <stdexcept>
#include <vector>

#include "datastruct/Array.h"
#include "datastruct/MergeSort.h"
#include "tests/datastruct/ArrayFaults.h"
#include "tests/datastruct/ArrayLives.h"
#include "tests/datastruct/OrderingModel.h"

using namespace TamLib;
using test::Catch;
using test::CompareKeys;
using test::ForEachSequence;
using test::Life;
using test::Marked;
using test::MarkedLarge;
using test::MemoryFaults;
using test::PlainMergeSort;
using test::PlainRun;
using test::Request;

namespace {

std::int32_t CompareWithinOne(const Marked* a, const Marked* b) {
    return (a->key > b->key + 1) - (b->key > a->key + 1);
}

bool IsOne(const Marked* element) {
    return element->key == 1;
}

Array<Marked> ArrayOf(const std::vector<int>& keys, std::uint32_t spare = 3) {
    Array<Marked> array(static_cast<std::uint32_t>(keys.size()) + spare);
    array.compare = CompareKeys<Marked>;
    for (int key : keys) array.Append({key, static_cast<int>(array.count)});
    return array;
}

template <class T>
std::vector<T> Values(const T* block, std::uint32_t count) {
    return std::vector<T>(block, block + count);
}

template <class C>
void ExpectPlainRun(const std::vector<int>& keys, MergeMode mode, const C& comparison,
                    MergeFilter<Marked> filter) {
    Array<Marked> array = ArrayOf(keys);
    std::function<bool(const Marked*)> plainFilter;
    if (filter != nullptr) plainFilter = filter;
    PlainMergeSort<Marked> sort(comparison, static_cast<int>(mode), plainFilter);
    const PlainRun<Marked> plain = sort.Sort(Values(array.data, array.count), array.capacity);
    std::uint32_t count = 77;
    std::uint32_t capacity = 77;
    bool isNew = !plain.isNew;
    Marked* block = MergeSortRun(array.data, array.count, array.capacity, count, capacity, mode,
                                 comparison, isNew, filter);
    ASSERT_EQ(Values(block, count), plain.kept);
    ASSERT_EQ(capacity, plain.capacity);
    ASSERT_EQ(isNew, plain.isNew);
    ASSERT_EQ(block == array.data, !isNew);
    if (!isNew) return;
    for (std::uint32_t i = count; i < capacity; ++i) ASSERT_TRUE((block[i] == Marked{0, 0}));
    HeapRelease(block);
}

constexpr MergeMode modes[] = {MergeMode::keepAll, MergeMode::keepOne, MergeMode::dropPairs};

TEST(Ordering, MergeModesAreThePlainFormOverAllInputsUpToEightElements) {
    ForEachSequence(8, 3, [](const std::vector<int>& keys) {
        for (const MergeMode mode : modes) {
            ExpectPlainRun(keys, mode, CompareKeys<Marked>, nullptr);
            if (HasFatalFailure()) return;
        }
    });
}

TEST(Ordering, MergeModesAreThePlainFormWithAFilter) {
    ForEachSequence(7, 3, [](const std::vector<int>& keys) {
        for (const MergeMode mode : modes) {
            ExpectPlainRun(keys, mode, CompareKeys<Marked>, IsOne);
            if (HasFatalFailure()) return;
        }
    });
}

TEST(Ordering, MergeModesAreThePlainFormForAComparisonWithATolerance) {
    ForEachSequence(7, 4, [](const std::vector<int>& keys) {
        for (const MergeMode mode : modes) {
            ExpectPlainRun(keys, mode, CompareWithinOne, keys.size() % 2 == 0 ? nullptr : IsOne);
            if (HasFatalFailure()) return;
        }
    });
}

TEST(Ordering, MergeModesAreThePlainFormForLargeRandomInput) {
    std::mt19937 random(21);
    for (const std::size_t n : {9u, 31u, 100u, 1000u, 20001u}) {
        for (const unsigned different : {2u, 30u, 1000000u}) {
            std::vector<int> keys(n);
            for (int& key : keys) key = static_cast<int>(random() % different);
            for (const MergeMode mode : modes) {
                ExpectPlainRun(keys, mode, CompareKeys<Marked>, nullptr);
                ExpectPlainRun(keys, mode, CompareWithinOne, IsOne);
                ASSERT_FALSE(HasFatalFailure());
            }
        }
    }
}

TEST(Ordering, MergeModesAreThePlainFormForComparisonsWithoutAnyOrder) {
    // Each pair has an answer of its own, only that both ways round belong together.
    std::mt19937 random(22);
    for (int round = 0; round < 3000; ++round) {
        int answers[8][8] = {};
        for (int a = 0; a < 8; ++a) {
            for (int b = 0; b < a; ++b) {
                answers[a][b] = static_cast<int>(random() % 3) - 1;
                answers[b][a] = -answers[a][b];
            }
        }
        const auto comparison = [&](const Marked* a, const Marked* b) -> std::int32_t {
            return answers[a->key][b->key];
        };
        std::vector<int> keys(random() % 40);
        for (int& key : keys) key = static_cast<int>(random() % 8);
        for (const MergeMode mode : modes) ExpectPlainRun(keys, mode, comparison, nullptr);
        ASSERT_FALSE(HasFatalFailure());
    }
}

TEST(Ordering, LargeElementsAreMergedAsSmallOnes) {
    std::mt19937 random(23);
    for (int round = 0; round < 300; ++round) {
        for (const MergeMode mode : {MergeMode::keepOne, MergeMode::dropPairs}) {
            Array<MarkedLarge> large(2);
            Array<Marked> small(2);
            const int n = static_cast<int>(random() % 60);
            for (int i = 0; i < n; ++i) {
                const int key = static_cast<int>(random() % 20);
                large.Append({key, i, {}});
                small.Append({key, i});
            }
            Order(large.data, large.count, large.capacity, mode, CompareKeys<MarkedLarge>);
            Order(small.data, small.count, small.capacity, mode, CompareKeys<Marked>);
            ASSERT_EQ(large.count, small.count);
            ASSERT_EQ(large.capacity, small.capacity);
            for (std::uint32_t i = 0; i < small.count; ++i) {
                ASSERT_EQ(large.data[i].key, small.data[i].key);
                ASSERT_EQ(large.data[i].mark, small.data[i].mark);
            }
        }
    }
}

TEST(Ordering, MergeModeZeroKeepsTheOrderOfEqualsThatStandInDifferentRuns) {
    Array<Marked> array = ArrayOf({2, 1, 1});  // runs 2 and 1, 1
    std::uint32_t count = 0;
    std::uint32_t capacity = 0;
    bool isNew = false;
    Marked* block = MergeSortRun(array.data, 3u, array.capacity, count, capacity,
                                 MergeMode::keepAll, CompareKeys<Marked>, isNew);
    EXPECT_EQ(Values(block, count), (std::vector<Marked>{{1, 1}, {1, 2}, {2, 0}}));
    HeapRelease(block);
}

TEST(Ordering, MergeModeZeroWeavesEqualsOfOneRunWithThoseOfTheOther) {
    Array<Marked> array = ArrayOf({1, 1, 1, 2});  // runs 1, 1 and 1, 2
    std::uint32_t count = 0;
    std::uint32_t capacity = 0;
    bool isNew = false;
    Marked* block = MergeSortRun(array.data, 4u, array.capacity, count, capacity,
                                 MergeMode::keepAll, CompareKeys<Marked>, isNew);
    // Intended: left, right, left.
    EXPECT_EQ(Values(block, count), (std::vector<Marked>{{1, 0}, {1, 2}, {1, 1}, {2, 3}}));
    HeapRelease(block);
}

TEST(Ordering, MergeModeOneKeepsTheRightOfTwoEqualsButTheFirstOfTwoAlone) {
    Array<Marked> three = ArrayOf({5, 5, 9});  // runs 5 and 5, 9
    three.SortUnique();
    EXPECT_EQ(Values(three.data, three.count), (std::vector<Marked>{{5, 1}, {9, 2}}));
    Array<Marked> two = ArrayOf({5, 5});
    two.SortUnique();
    EXPECT_EQ(Values(two.data, two.count), (std::vector<Marked>{{5, 0}}));
}

TEST(Ordering, SortUniqueOfTwoEqualsKeepsTheBlock) {
    Array<Marked> array = ArrayOf({5, 5}, 7);
    const Marked* block = array.data;
    MemoryFaults memory;
    array.SortUnique();
    EXPECT_EQ(memory.Requests(), 0);
    EXPECT_EQ(array.data, block);
    EXPECT_EQ(array.count, 1u);
    EXPECT_EQ(array.capacity, 9u);
    EXPECT_TRUE(array.sorted);
    EXPECT_TRUE(array.unique);
}

TEST(Ordering, SortUniqueOfTwoOutOfOrderExchangesThem) {
    Array<Marked> array = ArrayOf({6, 5});
    array.SortUnique();
    EXPECT_EQ(Values(array.data, array.count), (std::vector<Marked>{{5, 1}, {6, 0}}));
}

TEST(Ordering, SortUniqueSetsBothFlagsAlsoForNoneAndOne) {
    for (const std::vector<int>& keys : {std::vector<int>{}, std::vector<int>{4}}) {
        Array<Marked> array = ArrayOf(keys);
        array.SortUnique();
        EXPECT_TRUE(array.sorted);
        EXPECT_TRUE(array.unique);
        EXPECT_EQ(array.count, keys.size());
    }
}

TEST(Ordering, SortUniqueMakesTheCapacityThatOfBothHalves) {
    // Halves 1, 1 and 1, 1, 1: the left keeps 1, the right keeps 1 of 1 and 1, 1.
    Array<Marked> array = ArrayOf({1, 1, 1, 1, 1}, 20);
    array.SortUnique();
    EXPECT_EQ(array.count, 1u);
    EXPECT_EQ(array.capacity, 2u);
    EXPECT_TRUE((array.data[1] == Marked{0, 0}));
}

TEST(Ordering, OfThreeEqualsDropPairsLeavesOne) {
    Array<Marked> array = ArrayOf({4, 4, 4});
    Order(array.data, array.count, array.capacity, MergeMode::dropPairs, CompareKeys<Marked>);
    EXPECT_EQ(Values(array.data, array.count), (std::vector<Marked>{{4, 0}}));
    EXPECT_EQ(array.capacity, 1u);
}

TEST(Ordering, DropPairsLeavesOneOfAnOddNumberAndNoneOfAnEven) {
    ForEachSequence(8, 3, [](const std::vector<int>& keys) {
        Array<Marked> array = ArrayOf(keys);
        Order(array.data, array.count, array.capacity, MergeMode::dropPairs, CompareKeys<Marked>);
        std::vector<int> expected;
        for (int key = 0; key < 3; ++key) {
            if (std::count(keys.begin(), keys.end(), key) % 2 == 1) expected.push_back(key);
        }
        std::vector<int> left;
        for (const Marked& element : array) left.push_back(element.key);
        ASSERT_EQ(left, expected);
    });
}

TEST(Ordering, FourEqualsWithDropPairsEndInABlockOfNoSlots) {
    Array<Marked> same = ArrayOf({4, 4, 4, 4});
    Order(same.data, same.count, same.capacity, MergeMode::dropPairs, CompareKeys<Marked>);
    EXPECT_EQ(same.count, 0u);
    EXPECT_EQ(same.capacity, 0u);
    EXPECT_NE(same.data, nullptr);
    same.Append({1, 1});
    EXPECT_EQ(same.capacity, same.increment);
    EXPECT_EQ(same[0].key, 1);
}

TEST(Ordering, OrderWithKeepAllSortsThroughPointers) {
    Array<Marked> array = ArrayOf({3, 1, 2, 1}, 9);
    Order(array.data, array.count, array.capacity, MergeMode::keepAll, CompareKeys<Marked>);
    EXPECT_EQ(array.count, 4u);
    EXPECT_EQ(array.capacity, 4u);
    for (std::uint32_t i = 1; i < 4; ++i) EXPECT_LE(array.data[i - 1].key, array.data[i].key);
}

TEST(Ordering, OrderOfOneOrNoneDoesNothing) {
    Array<Marked> array = ArrayOf({3}, 9);
    const Marked* block = array.data;
    for (const MergeMode mode : modes) {
        Order(array.data, array.count, array.capacity, mode, CompareKeys<Marked>);
        EXPECT_EQ(array.data, block);
        EXPECT_EQ(array.count, 1u);
        EXPECT_EQ(array.capacity, 10u);
    }
}

TEST(Ordering, FilterLeavesElementsOutOfMergesButNotOfTwoAlone) {
    for (const std::vector<int>& keys : {std::vector<int>{1, 2}, std::vector<int>{1, 2, 1}}) {
        Array<Marked> array = ArrayOf(keys);
        std::uint32_t count = 0;
        std::uint32_t capacity = 0;
        bool isNew = false;
        Marked* block = MergeSortRun(array.data, array.count, array.capacity, count, capacity,
                                     MergeMode::keepAll, CompareKeys<Marked>, isNew, IsOne);
        EXPECT_EQ(count, keys.size() == 2 ? 2u : 1u);
        EXPECT_EQ(capacity, keys.size() == 2 ? 5u : 3u);
        if (isNew) HeapRelease(block);
    }
}

// Two runs of lives merged by the routine itself.
TEST(Ordering, MergeRunsMovesTheKeptAndDestroysTheOthers) {
    Life::Start();
    {
        Array<Life> left(3);
        Array<Life> right(2);
        for (int value : {1, 1, 5}) left.Append(Life(value));
        for (int value : {5, 6}) right.Append(Life(value));
        std::uint32_t count = 0;
        std::uint32_t capacity = 0;
        Life* block = MergeRuns(left.data, 3u, right.data, 2u, count, capacity, MergeMode::keepOne,
                                Life::Compare);
        EXPECT_EQ(count, 3u);
        EXPECT_EQ(capacity, 5u);
        EXPECT_EQ(block[0].Value(), 1);  // the second 1 equals what was written before it
        EXPECT_EQ(block[1].Value(), 5);
        EXPECT_EQ(block[2].Value(), 6);
        EXPECT_EQ(block[3].Value(), 0);
        EXPECT_EQ(Life::living.size(), 5u);
        for (Array<Life>* run : {&left, &right}) {
            HeapRelease(run->data);  // its slots are dead
            run->data = nullptr;
            run->count = run->capacity = 0;
        }
        std::destroy(block, block + capacity);
        HeapRelease(block);
    }
    EXPECT_EQ(Life::living.size(), 0u);
    EXPECT_EQ(Life::errors, 0);
}

TEST(Ordering, MergeRunsIsThePlainMergeOfAnyRuns) {
    std::mt19937 random(24);
    for (int round = 0; round < 3000; ++round) {
        std::vector<Marked> runs[2];
        int mark = 0;
        for (std::vector<Marked>& run : runs) {
            run.resize(random() % 7);
            for (Marked& element : run) element = {static_cast<int>(random() % 5), mark++};
            std::stable_sort(run.begin(), run.end(),
                             [](const Marked& a, const Marked& b) { return a.key < b.key; });
        }
        for (const MergeMode mode : modes) {
            const PlainRun<Marked> plain =
                PlainMergeSort<Marked>(CompareKeys<Marked>, static_cast<int>(mode))
                    .Merge(runs[0], runs[1]);
            std::uint32_t count = 0;
            std::uint32_t capacity = 0;
            Marked* block = MergeRuns(runs[0].data(), static_cast<std::uint32_t>(runs[0].size()),
                                      runs[1].data(), static_cast<std::uint32_t>(runs[1].size()),
                                      count, capacity, mode, CompareKeys<Marked>);
            ASSERT_EQ(Values(block, count), plain.kept);
            ASSERT_EQ(capacity, plain.capacity);
            HeapRelease(block);
        }
    }
}

Array<Life> Lives(std::initializer_list<int> values, std::uint32_t spare) {
    Array<Life> array(static_cast<std::uint32_t>(values.size()) + spare);
    array.compare = Life::Compare;
    for (int value : values) array.Append(Life(value));
    return array;
}

std::vector<int> Values(const Array<Life>& array) {
    std::vector<int> values;
    for (const Life& life : array) values.push_back(life.Value());
    return values;
}

TEST(Ordering, NoMemoryForThePointersIsLine334AndLeavesTheArray) {
    Life::Start();
    {
        Array<Life> array = Lives({3, 1, 2}, 4);
        array.compare = nullptr;
        MemoryFaults memory;
        memory.Fail(Request::allocateArray, 1);
        test::ExpectNoMemory(Catch([&] { array.Sort(); }), L"", 334, L"datastruct/Ordering");
        EXPECT_EQ(Values(array), (std::vector<int>{3, 1, 2}));
        EXPECT_EQ(array.capacity, 7u);
        EXPECT_FALSE(array.sorted);
        EXPECT_EQ(Life::living.size(), 7u);
    }
    EXPECT_EQ(Life::living.size(), 0u);
    EXPECT_EQ(Life::errors, 0);
}

TEST(Ordering, NoMemoryForTheSortedBlockIsLine343AndLeavesTheArray) {
    Array<double> array(7);
    array.compare = nullptr;
    for (double value : {3.0, 1.0, 2.0}) array.Append(value);
    MemoryFaults memory;
    memory.Fail(Request::allocate, 1);
    test::ExpectNoMemory(Catch([&] { array.Sort(); }),
                         L"Out of memory in TamLib::Array::_Allocate().\n"
                         L"malloc() trying to allocate 8*3 = 24 bytes.\n"
                         L"Old size was 24 bytes.",
                         343, L"datastruct/Array");
    EXPECT_EQ(std::vector<double>(array.begin(), array.end()), (std::vector<double>{3, 1, 2}));
    EXPECT_EQ(array.capacity, 7u);
    EXPECT_EQ(memory.Live(), 0) << "the pointers are given back";
}

TEST(Ordering, NoMemoryForAMergeIsLine466AndLeavesTheArray) {
    Array<double> array(7);
    for (double value : {3.0, 1.0, 2.0}) array.Append(value);
    for (int n = 1; n <= 3; ++n) {
        MemoryFaults memory;
        memory.Fail(Request::allocate, n);
        test::ExpectNoMemory(Catch([&] { array.SortUnique(); }),
                             L"Out of memory in TamLib::Array::_Allocate().\n"
                             L"malloc() trying to allocate 8*3 = 24 bytes.\n"
                             L"Old size was 24 bytes.",
                             466, L"datastruct/Array");
        EXPECT_EQ(std::vector<double>(array.begin(), array.end()), (std::vector<double>{3, 1, 2}));
        EXPECT_EQ(array.capacity, 7u);
        EXPECT_FALSE(array.sorted);
        EXPECT_FALSE(array.unique);
        EXPECT_EQ(memory.Live(), 0);
    }
}

// An element that is merged through pointers: the refusal names its own size all the same.
struct Wide72 {
    double key = 0;
    double more[8] = {};
};

TEST(Ordering, NoMemoryForAMergeOfLargeElementsNamesTheirSize) {
    for (int n = 1; n <= 3; ++n) {
        Array<Wide72> array(3);
        array.compare = [](const Wide72* a, const Wide72* b) -> std::int32_t {
            return (a->key > b->key) - (a->key < b->key);
        };
        for (const double key : {3.0, 1.0, 2.0}) array.Append({key});
        MemoryFaults memory;
        memory.Fail(Request::allocate, n);
        test::ExpectNoMemory(Catch([&] { array.SortUnique(); }),
                             L"Out of memory in TamLib::Array::_Allocate().\n"
                             L"malloc() trying to allocate 72*3 = 216 bytes.\n"
                             L"Old size was 216 bytes.",
                             466, L"datastruct/Array");
        EXPECT_EQ(array[0].key, 3.0);
        EXPECT_EQ(memory.Live(), 0);
    }
}

TEST(Ordering, AMergeOfMoreElementsThanABlockHoldsIsRefusedWithoutAnAttempt) {
    Wide72 one[2];
    std::uint32_t count = 0;
    std::uint32_t capacity = 0;
    const auto compare = [](const Wide72*, const Wide72*) -> std::int32_t { return 0; };
    constexpr std::uint32_t refused = 0x7FFFFFFFu / 72;
    MemoryFaults memory;
    const test::Raised raised = Catch([&] {
        MergeRuns(one, refused - 1, one + 1, 1, count, capacity, MergeMode::keepAll, compare);
    });
    test::ExpectNoMemory(raised,
                         L"Out of memory in TamLib::Array::_Allocate().\n"
                         L"malloc() trying to allocate 72*29826161 = 2147483592 bytes.\n"
                         L"Old size was 2147483592 bytes.",
                         466, L"datastruct/Array");
    EXPECT_EQ(memory.Requests(), 0);
}

// Fails each request, then each comparison of a sort of lives in turn.
template <class Sort>
void ExpectNothingLost(Sort sort, bool merging) {
    for (int n = 1; n < 60; ++n) {
        for (const bool byMemory : {true, false}) {
            Life::Start();
            MemoryFaults memory;
            {
                Array<Life> array = Lives({5, 2, 4, 2, 1, 5, 5, 3}, 4);
                static int comparisons;
                comparisons = byMemory ? 0 : n;
                array.compare = [](const Life* a, const Life* b) {
                    if (comparisons != 0 && --comparisons == 0) throw std::runtime_error("refused");
                    return Life::Compare(a, b);
                };
                bool raised = false;
                if (byMemory) memory.Fail(Request::any, n);
                try {
                    sort(array);
                } catch (const TamExpNoMem&) {
                    raised = true;
                } catch (const std::runtime_error&) {
                    raised = true;
                }
                memory.Fail(Request::any, 0);
                ASSERT_EQ(Life::living.size(), array.capacity);
                if (raised && merging) {
                    ASSERT_EQ(Values(array), (std::vector<int>{5, 2, 4, 2, 1, 5, 5, 3}));
                } else if (raised) {
                    std::vector<int> left = Values(array);
                    std::sort(left.begin(), left.end());
                    ASSERT_EQ(left, (std::vector<int>{1, 2, 2, 3, 4, 5, 5, 5}));
                }
            }
            ASSERT_EQ(Life::living.size(), 0u);
            ASSERT_EQ(Life::errors, 0);
            ASSERT_EQ(memory.Live(), 0);
        }
    }
}

TEST(Ordering, NoSortOfObjectsLosesOrDoublesOneWhenMemoryOrAComparisonFails) {
    ExpectNothingLost([](Array<Life>& a) { a.Sort(); }, false);
    ExpectNothingLost([](Array<Life>& a) { a.SortUnique(); }, true);
    for (const MergeMode mode : modes) {
        ExpectNothingLost(
            [mode](Array<Life>& a) { Order(a.data, a.count, a.capacity, mode, a.compare); }, true);
    }
}

}  // namespace
