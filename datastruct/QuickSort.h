// Bodies of the sorting routines. Included by Ordering.h.
#pragma once

#include <memory>
#include <new>

#include "datastruct/Ordering.h"

namespace TamLib {

// Raises TamExpNoMem with an empty message (and the memory report) from L"datastruct/Ordering".
[[noreturn]] void RaiseOrderingNoMemory(std::int32_t line);

namespace detail {

constexpr std::int32_t kPointersLine = 334;
constexpr std::int32_t kSortedBlockLine = 343;
constexpr std::int32_t kSortedBlockNullLine = 344;
constexpr std::int32_t kMergeLine = 466;

constexpr std::int32_t kSampledSpan = 200;  // above it the pivot comes from a sample
constexpr std::int32_t kFunctionInsertionSpan = 10;
constexpr std::int32_t kOtherInsertionSpan = 48;

// An element taken out of its slot while others move up; it returns to the slot that is free, also
// when a comparison raises.
template <class T>
class Lifted {
  public:
    explicit Lifted(T* slot) : free_(slot) {
        std::memcpy(bytes_, static_cast<const void*>(slot), kElementBytes<T>);
    }
    ~Lifted() { std::memcpy(static_cast<void*>(free_), bytes_, kElementBytes<T>); }
    Lifted(const Lifted&) = delete;
    Lifted& operator=(const Lifted&) = delete;

    const T* Element() const { return std::launder(reinterpret_cast<const T*>(bytes_)); }
    // Moves another element to the free slot, and its slot is the free one then.
    void Fill(T* slot) {
        std::memcpy(static_cast<void*>(free_), static_cast<const void*>(slot), kElementBytes<T>);
        free_ = slot;
    }

  private:
    alignas(T) unsigned char bytes_[kElementBytes<T>];
    T* free_;
};

template <class T, class C>
const T* ChoosePivot(const T* block, const C& comparison, std::int32_t high, std::int32_t low) {
    const std::int32_t span = high - low;
    const std::int32_t middle = low + span / 2;
    if (span <= kSampledSpan) return block + middle;
    const std::int32_t a = high - Random() % span;
    const std::int32_t b = low + Random() % span;
    const T* m = MedianOfThree(block + high, block + low, block + middle, comparison);
    return MedianOfThree(m, block + b, block + a, comparison);
}

template <std::int32_t insertionSpan, class T, class C>
void SortPart(T* block, const C& comparison, std::int32_t high, std::int32_t low);

// A part that partitioning has left.
template <std::int32_t insertionSpan, class T, class C>
void FinishPart(T* block, const C& comparison, std::int32_t high, std::int32_t low) {
    if (high - low > insertionSpan) {
        SortPart<insertionSpan>(block, comparison, high, low);
    } else {
        InsertionSort(block, comparison, high, low);
    }
}

// What is left to partition: elements from `low` to `high` between the two scans.
struct Scans {
    std::int32_t low;
    std::int32_t high;
};

// The exchanges with which the scans of Hoare's partition begin, found block by block: first the
// places where each scan would stop, without a branch on the outcome of a comparison, then the
// exchanges of the first with the first, the second with the second and so on (S. Edelkamp and A.
// Weiss, BlockQuicksort, 2016). The elements end where the scans one by one would have put them.
template <std::int32_t size, class T, class C>
Scans PartitionBlocks(T* block, const C& comparison, const T& pivot, Scans scans) {
    unsigned char lowStops[size];
    unsigned char highStops[size];
    std::int32_t lowFound = 0, lowUsed = 0, highFound = 0, highUsed = 0;
    while (scans.high - scans.low >= 2 * size) {
        if (lowUsed == lowFound) {
            lowUsed = lowFound = 0;
            for (std::int32_t k = 0; k < size; ++k) {
                lowStops[lowFound] = static_cast<unsigned char>(k);
                lowFound += !(comparison(block + scans.low + k, &pivot) < 0);
            }
        }
        if (highUsed == highFound) {
            highUsed = highFound = 0;
            for (std::int32_t k = 0; k < size; ++k) {
                highStops[highFound] = static_cast<unsigned char>(k);
                highFound += !(comparison(&pivot, block + scans.high - k) < 0);
            }
        }
        while (lowUsed < lowFound && highUsed < highFound) {
            SwapElements(block[scans.low + lowStops[lowUsed++]],
                         block[scans.high - highStops[highUsed++]]);
        }
        if (lowUsed == lowFound) scans.low += size;
        if (highUsed == highFound) scans.high -= size;
    }
    if (lowUsed < lowFound) scans.low += lowStops[lowUsed];
    if (highUsed < highFound) scans.high -= highStops[highUsed];
    return scans;
}

// Hoare's partition. Gives the ends of both parts: the lower one ends at `high`, the upper one
// begins at `low`.
template <class T, class C>
Scans Partition(T* block, const C& comparison, const T& pivot, std::int32_t high,
                std::int32_t low) {
    Scans scans = PartitionBlocks<64>(block, comparison, pivot, {low, high});
    scans = PartitionBlocks<16>(block, comparison, pivot, scans);
    auto [i, j] = scans;
    while (i <= j) {
        while (comparison(block + i, &pivot) < 0) ++i;
        while (comparison(&pivot, block + j) < 0) --j;
        if (i > j) break;
        SwapElements(block[i++], block[j--]);
    }
    return {i, j};
}

template <std::int32_t insertionSpan, class T, class C>
void SortPart(T* block, const C& comparison, std::int32_t high, std::int32_t low) {
    while (high > low) {
        const T pivot(*ChoosePivot(block, comparison, high, low));
        const auto [i, j] = Partition(block, comparison, pivot, high, low);
        FinishPart<insertionSpan>(block, comparison, j, low);
        if (high - i <= insertionSpan) {
            InsertionSort(block, comparison, high, i);
            return;
        }
        low = i;
    }
}

// A comparison of elements as one of pointers to them.
template <class T, class C>
struct PointeeComparison {
    const C& comparison;
    std::int32_t operator()(T* const* first, T* const* second) const {
        return comparison(*first, *second);
    }
};

// The pointer block of a sort, from the array form of new.
template <class T>
class PointerBlock {
  public:
    explicit PointerBlock(std::uint32_t n)
        : pointers_(static_cast<T**>(runTimeMemory.allocateArray(n * kElementBytes<T*>))) {
        if (pointers_ == nullptr) RaiseOrderingNoMemory(kPointersLine);
    }
    ~PointerBlock() { runTimeMemory.releaseArray(pointers_); }
    PointerBlock(const PointerBlock&) = delete;
    PointerBlock& operator=(const PointerBlock&) = delete;

    T** Get() { return pointers_; }

  private:
    T** pointers_;
};

}  // namespace detail

template <class T, class C>
void InsertionSort(T* block, const C& comparison, std::int32_t high, std::int32_t low) {
    for (std::int32_t k = low + 1; k <= high; ++k) {
        if (comparison(block + k - 1, block + k) <= 0) continue;
        detail::Lifted<T> lifted(block + k);
        std::int32_t at = k;
        do {
            lifted.Fill(block + at - 1);
            --at;
        } while (at > low && comparison(block + at - 1, lifted.Element()) > 0);
    }
}

template <class T, class C>
void QuickSort(T* block, const C& comparison, std::int32_t high, std::int32_t low) {
    constexpr std::int32_t kSpan =
        detail::kIsFunction<C> ? detail::kFunctionInsertionSpan : detail::kOtherInsertionSpan;
    detail::SortPart<kSpan>(block, comparison, high, low);
}

template <class T, class C>
T* const* MedianOfThreePointers(T* const* a, T* const* b, T* const* c, const C& comparison) {
    return MedianOfThree(a, b, c, detail::PointeeComparison<T, C>{comparison});
}

template <class T, class C>
void InsertionSortPointers(T** pointers, std::int32_t high, std::int32_t low, const C& comparison) {
    InsertionSort(pointers, detail::PointeeComparison<T, C>{comparison}, high, low);
}

template <class T, class C>
void QuickSortPointers(T** pointers, std::int32_t high, std::int32_t low, const C& comparison) {
    QuickSort(pointers, detail::PointeeComparison<T, C>{comparison}, high, low);
}

template <class T, class C>
void SortByPointers(T*& block, std::int32_t high, std::uint32_t& capacity, const C& comparison) {
    if (high < 1) return;
    if (high == 1) {
        if (comparison(block + 1, block) < 0) SwapElements(block[0], block[1]);
        return;
    }
    const std::uint32_t n = static_cast<std::uint32_t>(high) + 1;
    detail::PointerBlock<T> pointers(n);
    for (std::uint32_t i = 0; i < n; ++i) pointers.Get()[i] = block + i;
    QuickSortPointers(pointers.Get(), high, 0, comparison);

    T* const fresh = ArrayMemory<T>::_Allocate(n, n, detail::kSortedBlockLine);
    // Intended, though _Allocate raises by itself: the block is tested like the pointers.
    if (fresh == nullptr) RaiseOrderingNoMemory(detail::kSortedBlockNullLine);
    for (std::uint32_t i = 0; i < n; ++i) MoveElements(fresh + i, pointers.Get()[i], 1);
    if (capacity > n) std::destroy(block + n, block + capacity);
    ArrayMemory<T>::Release(block);
    block = fresh;
    capacity = n;
}

}  // namespace TamLib
