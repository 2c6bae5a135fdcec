// Merge sort over the block of an array, which can drop duplicates and filter elements on the way.
// The result stands in a new block, except for fewer than three elements.
//
// The elements are split at half their number, each half is sorted the same way, and the two runs
// are merged (top-down merge sort). What happens to equal elements is settled at each merge:
// - `keepAll` keeps them; of two equal heads the left goes first, then the right. Intended: runs
//   without equals of their own keep their order; two equals on the left and one on the right come
//   out left, right, left.
// - `keepOne` keeps the right one of two equal heads, and drops an element that equals the one
//   written before it.
// - `dropPairs` drops both of two equal heads, so that of an odd number of equals one is left, and
//   drops an element that equals the one written before it.
// An element that the filter accepts is left out of the merge. Intended: fewer than three elements
// are not merged, and so not filtered.
//
// Comparisons come in the forms of datastruct/Comparison.h. Elements are moved as bytes; those left
// out are destroyed. TamExpNoMem from L"datastruct/Array", line 466, when memory is refused; it and
// an exception of the comparison leave the elements untouched and nothing behind.
#pragma once

#include <cstdint>

#include "datastruct/Ordering.h"

namespace TamLib {

enum class MergeMode : std::int32_t { keepAll = 0, keepOne = 1, dropPairs = 2 };

// Says of an element that it is to be left out.
template <class T>
using MergeFilter = bool (*)(const T*);

// Merges two sorted runs into a new block of `leftCount` + `rightCount` slots, also given as
// `outCapacity`; a block of 0 slots is not null. Slots from `outCount` up hold default content.
// The elements of both runs are moved or destroyed; their blocks stay the caller's.
template <class T, class C>
T* MergeRuns(T* left, std::uint32_t leftCount, T* right, std::uint32_t rightCount,
             std::uint32_t& outCount, std::uint32_t& outCapacity, MergeMode mode,
             const C& comparison, MergeFilter<T> filter = nullptr);

// Sorts `count` elements. From three on `isNew` is true and the result a new block with as many
// slots as both halves kept; the given block is the caller's to release, its first `count` slots
// being dead. Below three the given block is the result, with `capacity` as it was: two elements
// out of order are exchanged, and of two equal ones the second, with `dropPairs` both, fall out of
// `outCount` and stay where they are.
template <class T, class C>
T* MergeSortRun(T* block, std::uint32_t count, std::uint32_t capacity, std::uint32_t& outCount,
                std::uint32_t& outCapacity, MergeMode mode, const C& comparison, bool& isNew,
                MergeFilter<T> filter = nullptr);

// Orders a whole block in place of the caller: SortByPointers for `keepAll` (intended: equal
// elements stand in no defined order then), MergeSortRun otherwise. Nothing happens to fewer than
// two elements. Slots above `count` hold live elements.
template <class T, class C>
void Order(T*& block, std::uint32_t& count, std::uint32_t& capacity, MergeMode mode,
           const C& comparison);

}  // namespace TamLib

#include "datastruct/MergeRuns.h"
