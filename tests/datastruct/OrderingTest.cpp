// Quicksort, insertion sort, the sort through pointers and the random numbers they draw.
#include "datastruct/Ordering.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <numeric>
#include <random>
#include <stdexcept>
#include <vector>

#include "datastruct/Array.h"
#include "tests/datastruct/OrderingModel.h"

using namespace TamLib;
using test::CompareKeys;
using test::ForEachSequence;
using test::Marked;
using test::PlainQuickSort;

namespace {

struct CompareMarked final : Comparator<Marked> {
    std::int32_t operator()(const Marked* a, const Marked* b) const override {
        return CompareKeys(a, b);
    }
};

std::int32_t CompareInts(const int* a, const int* b) {
    return (*a > *b) - (*a < *b);
}

// Random numbers that are counted, from a series of the test's own.
class CountedRandom {
  public:
    CountedRandom() : before_(randomSource) {
        drawn.clear();
        generator.seed(99);
        randomSource = [] {
            drawn.push_back(static_cast<std::int32_t>(generator() % 32768));
            return drawn.back();
        };
    }
    ~CountedRandom() { randomSource = before_; }
    CountedRandom(const CountedRandom&) = delete;
    CountedRandom& operator=(const CountedRandom&) = delete;

    static inline std::vector<std::int32_t> drawn;
    static inline std::mt19937 generator;

  private:
    std::int32_t (*before_)();
};

std::vector<Marked> MarkedOf(const std::vector<int>& keys) {
    std::vector<Marked> marked;
    for (int key : keys) marked.push_back({key, static_cast<int>(marked.size())});
    return marked;
}

std::vector<int> RandomKeys(std::mt19937& random, std::size_t n, unsigned different) {
    std::vector<int> keys(n);
    for (int& key : keys) key = static_cast<int>(random() % different);
    return keys;
}

std::int32_t High(const std::vector<Marked>& v) {
    return static_cast<std::int32_t>(v.size()) - 1;
}

TEST(Ordering, MedianOfThreeTakesTheMiddleOneOfAllInputs) {
    for (int a = 0; a < 3; ++a) {
        for (int b = 0; b < 3; ++b) {
            for (int c = 0; c < 3; ++c) {
                const int x[3] = {a, b, c};
                const int middle = a + b + c - std::max({a, b, c}) - std::min({a, b, c});
                EXPECT_EQ(*MedianOfThree(x, x + 1, x + 2, CompareInts), middle);
                EXPECT_EQ(*MedianOfThree(x, x + 1, x + 2, ByteComparison<int>()), middle);
            }
        }
    }
    const unsigned char bytes[3] = {3, 1, 2};
    EXPECT_EQ(*MedianOfThree(bytes, bytes + 1, bytes + 2, ByteComparison<unsigned char>()), 2);
}

TEST(Ordering, MedianOfThreeBreaksTiesTowardsTheSecondOperand) {
    const auto place = [](int a, int b, int c) {
        const Marked x[3] = {{a, 0}, {b, 1}, {c, 2}};
        return MedianOfThree(x, x + 1, x + 2, CompareKeys<Marked>)->mark;
    };
    // Greater of b and c, of a and c, of a and b; then lesser of the first two, of the last two;
    // then lesser of these. Marks a = 0, b = 1, c = 2:
    EXPECT_EQ(place(5, 5, 5), 1);  // c, c, b; c, b; b
    EXPECT_EQ(place(5, 5, 9), 1);  // c, c, b; c, b; b
    EXPECT_EQ(place(5, 5, 1), 1);  // b, a, b; a, b; b
    EXPECT_EQ(place(1, 5, 5), 1);  // c, c, b; c, b; b
    EXPECT_EQ(place(9, 5, 5), 2);  // c, a, a; c, a; c
    EXPECT_EQ(place(5, 1, 5), 0);  // c, c, a; c, a; a
    EXPECT_EQ(place(5, 9, 5), 2);  // b, c, b; c, c; c
}

TEST(Ordering, MedianOfThreePointersOrdersByWhatIsPointedTo) {
    int values[3] = {7, 3, 5};
    int* pointers[3] = {values, values + 1, values + 2};
    EXPECT_EQ(MedianOfThreePointers(pointers, pointers + 1, pointers + 2, CompareInts),
              pointers + 2);
}

TEST(Ordering, SortsEveryInputUpToEightElementsInEveryForm) {
    ForEachSequence(8, 3, [](const std::vector<int>& keys) {
        std::vector<int> expected = keys;
        std::sort(expected.begin(), expected.end());
        const auto high = static_cast<std::int32_t>(keys.size()) - 1;
        std::vector<int> v = keys;
        QuickSort(v.data(), CompareInts, high, 0);
        ASSERT_EQ(v, expected);
        v = keys;
        QuickSort(v.data(), FunctionComparator<int>(CompareInts), high, 0);
        ASSERT_EQ(v, expected);
        v = keys;
        QuickSort(v.data(), ByteComparison<int>(), high, 0);  // 0 to 2 order as their first bytes
        ASSERT_EQ(v, expected);
        v = keys;
        InsertionSort(v.data(), CompareInts, high, 0);
        ASSERT_EQ(v, expected);
        v = keys;
        std::vector<int*> pointers;
        for (int& value : v) pointers.push_back(&value);
        QuickSortPointers(pointers.data(), high, 0, CompareInts);
        for (std::size_t i = 0; i < v.size(); ++i) ASSERT_EQ(*pointers[i], expected[i]);
        ASSERT_EQ(v, keys) << "the elements stay";
    });
}

TEST(Ordering, SortsOnlyFromLowToHigh) {
    std::vector<int> v{9, 8, 7, 6, 5, 4};
    QuickSort(v.data(), CompareInts, 4, 1);
    EXPECT_EQ(v, (std::vector<int>{9, 5, 6, 7, 8, 4}));
    QuickSort(v.data(), CompareInts, 1, 1);
    QuickSort(v.data(), CompareInts, -1, 0);
    EXPECT_EQ(v, (std::vector<int>{9, 5, 6, 7, 8, 4}));
}

TEST(Ordering, InsertionSortKeepsTheOrderOfEquals) {
    ForEachSequence(7, 3, [](const std::vector<int>& keys) {
        std::vector<Marked> v = MarkedOf(keys);
        std::vector<Marked> expected = v;
        std::stable_sort(expected.begin(), expected.end(),
                         [](const Marked& a, const Marked& b) { return a.key < b.key; });
        InsertionSort(v.data(), CompareKeys<Marked>, High(v), 0);
        ASSERT_EQ(v, expected);
    });
}

// The very same permutation as the plain form, equals included, with the same random numbers.
template <class Sort>
void ExpectPlainSteps(int insertionSpan, Sort sort) {
    std::mt19937 random(4);
    for (const std::size_t n : {0u,  1u,  2u,   10u,  11u,  12u,  13u,  40u,  48u,   49u,   50u,
                                51u, 60u, 199u, 200u, 201u, 202u, 203u, 500u, 3000u, 40000u}) {
        for (const unsigned different : {1u, 2u, 7u, 1000000u}) {
            std::vector<Marked> v = MarkedOf(RandomKeys(random, n, different));
            std::vector<Marked> plain = v;
            CountedRandom counted;
            sort(v);
            const std::vector<std::int32_t> drawn = counted.drawn;
            std::size_t next = 0;
            PlainQuickSort<Marked>(CompareKeys<Marked>, insertionSpan, [&] {
                return drawn.at(next++);
            }).Sort(plain, High(plain), 0);
            ASSERT_EQ(next, drawn.size());
            ASSERT_EQ(v, plain) << n << " elements, " << different << " different";
        }
    }
}

TEST(Ordering, FunctionFormIsQuickSortFromASpanOfElevenStepByStep) {
    ExpectPlainSteps(10, [](auto& v) { QuickSort(v.data(), CompareKeys<Marked>, High(v), 0); });
}

TEST(Ordering, TheUsualComparisonSortsAsAnyFunctionDoes) {
    const auto own = [](const std::int16_t* a, const std::int16_t* b) -> std::int32_t {
        return (*a > *b) - (*a < *b);
    };
    std::mt19937 random(8);
    for (const std::uint32_t n : {0u, 1u, 2u, 11u, 12u, 48u, 50u, 201u, 202u, 5000u}) {
        Array<std::int16_t> usual;
        for (std::uint32_t i = 0; i < n; ++i) {
            usual.Append(static_cast<std::int16_t>(random() % 1000));
        }
        usual.compare = CompareNumbers<std::int16_t>;
        Array<std::int16_t> called(usual);
        called.compare = own;
        Array<std::int16_t> usualUnique(usual);
        Array<std::int16_t> calledUnique(called);
        const auto sorted = [](Array<std::int16_t>& array, bool unique) {
            CountedRandom counted;
            if (unique) {
                array.SortUnique();
            } else {
                array.Sort();
            }
            return counted.drawn;
        };
        EXPECT_EQ(sorted(usual, false), sorted(called, false)) << n;
        EXPECT_EQ(sorted(usualUnique, true), sorted(calledUnique, true)) << n;
        const auto values = [](const Array<std::int16_t>& array) {
            return std::vector<std::int16_t>(array.begin(), array.end());
        };
        EXPECT_EQ(values(usual), values(called)) << n;
        EXPECT_EQ(values(usualUnique), values(calledUnique)) << n;
        EXPECT_TRUE(std::is_sorted(usual.begin(), usual.end()));
        EXPECT_EQ(usualUnique.capacity, calledUnique.capacity);
    }
    // The form is that of a function: part spans above 10 are partitioned.
    ExpectPlainSteps(10, [](auto& v) {
        QuickSort(v.data(), detail::KnownFunction<&CompareKeys<Marked>>(), High(v), 0);
    });
}

TEST(Ordering, ObjectFormIsQuickSortFromASpanOf49StepByStep) {
    ExpectPlainSteps(48, [](auto& v) { QuickSort(v.data(), CompareMarked(), High(v), 0); });
}

TEST(Ordering, PointerFormIsQuickSortFromASpanOf49StepByStep) {
    ExpectPlainSteps(48, [](auto& v) {
        std::vector<Marked> elements = v;
        std::vector<Marked*> pointers;
        for (Marked& element : elements) pointers.push_back(&element);
        QuickSortPointers(pointers.data(), High(v), 0, CompareKeys<Marked>);
        for (std::size_t i = 0; i < v.size(); ++i) v[i] = *pointers[i];
    });
}

TEST(Ordering, ByteFormIsQuickSortFromASpanOf49StepByStep) {
    using Bytes = std::array<unsigned char, 3>;
    const auto compare = [](const Bytes* a, const Bytes* b) {
        return std::memcmp(a->data(), b->data(), sizeof(Bytes));
    };
    std::mt19937 random(6);
    for (const std::size_t n : {0u, 1u, 2u, 48u, 49u, 50u, 51u, 200u, 201u, 202u, 500u, 20000u}) {
        for (const unsigned different : {1u, 2u, 256u}) {
            std::vector<Bytes> v(n);
            for (Bytes& bytes : v) {
                for (unsigned char& b : bytes) {
                    b = static_cast<unsigned char>(255 - random() % different);
                }
            }
            std::vector<Bytes> plain = v;
            const auto high = static_cast<std::int32_t>(n) - 1;
            CountedRandom counted;
            QuickSort(v.data(), ByteComparison<Bytes>(), high, 0);
            const std::vector<std::int32_t> drawn = counted.drawn;
            std::size_t next = 0;
            PlainQuickSort<Bytes>(compare, 48, [&] {
                return drawn.at(next++);
            }).Sort(plain, high, 0);
            ASSERT_EQ(next, drawn.size()) << n;
            ASSERT_EQ(v, plain) << n << " elements, " << different << " different";
            ASSERT_TRUE(std::is_sorted(v.begin(), v.end()));
        }
    }
}

TEST(Ordering, TheInsertionSpansShowInTheOrderOfEquals) {
    // 50 equal keys: partitioned or inserted, the marks end in different places.
    std::vector<Marked> function = MarkedOf(std::vector<int>(40, 1));
    std::vector<Marked> object = function;
    QuickSort(function.data(), CompareKeys<Marked>, 39, 0);
    QuickSort(object.data(), CompareMarked(), 39, 0);
    EXPECT_FALSE(function == object);
}

TEST(Ordering, DrawsNoRandomNumberFor201ElementsAndTwoFor202) {
    for (const std::size_t n : {201u, 202u}) {
        std::vector<int> ascending(n);
        std::iota(ascending.begin(), ascending.end(), 0);
        CountedRandom counted;
        QuickSort(ascending.data(), CompareInts, static_cast<std::int32_t>(n) - 1, 0);
        EXPECT_EQ(counted.drawn.size(), n == 201 ? 0u : 2u);
        EXPECT_TRUE(std::is_sorted(ascending.begin(), ascending.end()));
    }
}

TEST(Ordering, TheSampleNearTheHighEndIsDrawnFirst) {
    std::vector<int> v(401);
    std::iota(v.begin(), v.end(), 0);
    struct Watching {
        const int* block;
        std::vector<std::pair<std::ptrdiff_t, std::ptrdiff_t>>* places;
        std::int32_t operator()(const int* a, const int* b) const {
            if (places->size() < 12) places->emplace_back(a - block, b - block);
            return CompareInts(a, b);
        }
    };
    std::vector<std::pair<std::ptrdiff_t, std::ptrdiff_t>> places;
    static int drawn;
    drawn = 0;
    auto* const before = randomSource;
    randomSource = [] { return drawn++ % 2 == 0 ? 390 : 30; };  // a = 400 - 390, b = 0 + 30
    QuickSort(v.data(), Watching{v.data(), &places}, 400, 0);
    randomSource = before;
    EXPECT_TRUE(std::is_sorted(v.begin(), v.end()));
    // The median of high, low and middle takes six comparisons, then that of it, b and a.
    using Places = std::pair<std::ptrdiff_t, std::ptrdiff_t>;
    ASSERT_EQ(places.size(), 12u);
    EXPECT_EQ(places[0], Places(0, 200));
    EXPECT_EQ(places[1], Places(400, 200));
    EXPECT_EQ(places[2], Places(400, 0));
    EXPECT_EQ(places[6], Places(30, 10));
    EXPECT_EQ(places[7], Places(200, 10));
    EXPECT_EQ(places[8], Places(200, 30));
}

TEST(Ordering, SortsAscendingDescendingOrganPipeAndEqualInput) {
    for (const int n : {1000, 20000}) {
        std::vector<std::vector<int>> inputs(4, std::vector<int>(static_cast<std::size_t>(n)));
        for (int i = 0; i < n; ++i) {
            const auto at = static_cast<std::size_t>(i);
            inputs[0][at] = i;
            inputs[1][at] = -i;
            inputs[2][at] = std::min(i, n - i);
            inputs[3][at] = 7;
        }
        for (std::vector<int>& v : inputs) {
            std::vector<int> expected = v;
            std::sort(expected.begin(), expected.end());
            QuickSort(v.data(), CompareInts, n - 1, 0);
            EXPECT_EQ(v, expected);
        }
    }
}

TEST(Ordering, AComparisonThatRaisesLosesNoElement) {
    struct Raising {
        mutable int left;
        std::int32_t operator()(const int* a, const int* b) const {
            if (--left == 0) throw std::runtime_error("refused");
            return CompareInts(a, b);
        }
    };
    std::mt19937 random(8);
    const std::vector<int> keys = RandomKeys(random, 90, 1000);
    std::vector<int> sorted = keys;
    std::sort(sorted.begin(), sorted.end());
    for (int at = 1; at < 700; at += 3) {
        std::vector<int> v = keys;
        try {
            QuickSort(v.data(), Raising{at}, 89, 0);
        } catch (const std::runtime_error&) {
            std::sort(v.begin(), v.end());
        }
        ASSERT_EQ(v, sorted) << at;
    }
}

TEST(Ordering, SortByPointersLowersTheCapacityToTheCount) {
    Array<unsigned char> array(50);
    array.compare = nullptr;
    for (unsigned char byte : std::vector<unsigned char>{9, 3, 200}) array.Append(byte);
    array.Sort();
    EXPECT_EQ(array.capacity, 3u);
    EXPECT_EQ(array.count, 3u);
    EXPECT_TRUE(array.sorted);
    EXPECT_EQ(array[0], 3);
    EXPECT_EQ(array[1], 9);
    EXPECT_EQ(array[2], 200);
}

TEST(Ordering, SortByPointersExchangesTwoElementsWhereTheyStand) {
    Array<unsigned char> array(50);
    array.compare = nullptr;
    array.Append(9);
    array.Append(3);
    const unsigned char* block = array.data;
    array.Sort();
    EXPECT_EQ(array.data, block);
    EXPECT_EQ(array.capacity, 50u);
    EXPECT_EQ(array[0], 3);
    array.Sort();
    EXPECT_EQ(array[0], 3);
    EXPECT_EQ(array[1], 9);
}

TEST(Ordering, SortWithANullComparisonOfLessThanTwoOnlySetsTheFlag) {
    Array<int> array(5);
    array.compare = nullptr;
    array.Sort();
    EXPECT_TRUE(array.sorted);
    array.Append(1);
    array.Sort();
    EXPECT_TRUE(array.sorted);
    EXPECT_EQ(array.capacity, 5u);
    unsigned char* none = nullptr;
    std::uint32_t capacity = 0;
    SortByPointers(none, -1, capacity, ByteComparison<unsigned char>());
    EXPECT_EQ(none, nullptr);
}

TEST(Ordering, SortOfAnEmptyArraySetsTheFlag) {
    Array<int> array;
    ASSERT_NE(array.compare, nullptr);
    array.Sort();
    EXPECT_TRUE(array.sorted);
    EXPECT_EQ(array.data, nullptr);
}

int compared = 0;

TEST(Ordering, SortOfASortedArrayComparesAgain) {
    Array<int> array;
    array.compare = [](const int* a, const int* b) {
        ++compared;
        return CompareInts(a, b);
    };
    for (int i = 0; i < 5; ++i) array.Append(5 - i);
    array.sorted = true;  // a promise that is not kept
    compared = 0;
    array.Sort();
    EXPECT_GT(compared, 0);
    EXPECT_EQ(array[0], 1);
}

TEST(Ordering, DefaultArraysKeepTheirCapacityWhenSorted) {
    Array<unsigned char> array(50);
    for (unsigned char byte : std::vector<unsigned char>{9, 3, 200}) array.Append(byte);
    array.Sort();  // by the default function, so in place
    EXPECT_EQ(array.capacity, 50u);
    EXPECT_EQ(array[0], 3);
}

TEST(Random, GivesTheSeriesOfTheRunTimeFrom0To32767) {
    // Reseeding is visible to everybody; the series of 1 is the one of the start.
    SeedRandom(1);
    const std::int32_t expected[] = {41, 18467, 6334, 26500, 19169, 15724, 11478, 29358};
    for (const std::int32_t number : expected) EXPECT_EQ(Random(), number);
    SeedRandom(1);
    EXPECT_EQ(Random(), 41);
    for (int i = 0; i < 100000; ++i) {
        const std::int32_t number = Random();
        ASSERT_TRUE(number >= 0 && number <= kRandomMaximum);
    }
}

}  // namespace
