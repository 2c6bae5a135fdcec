// Sorting in place over the block of an array: quicksort that finishes small parts by insertion.
// The order of equal elements is not defined; the merge sort of datastruct/MergeSort.h can keep it.
//
// `high` and `low` are the indexes of the last and the first element to sort; a `high` not above
// `low`, such as -1 for an empty array, sorts nothing. Comparisons come in the forms of
// datastruct/Comparison.h. Elements are moved as bytes; one copy of an element is constructed as
// the pivot of each part.
//
// A part of more than 201 elements takes its pivot from a sample of five, two of them drawn from
// Random(), which is never seeded here. After Hoare's partition (C. A. R. Hoare, Quicksort, The
// Computer Journal 5, 1962) each part is finished by insertion when it spans at most 10 steps (by a
// comparison function) or 48 (the other forms).
#pragma once

#include <cstdint>

#include "datastruct/Comparison.h"
#include "datastruct/Memory.h"
#include "datastruct/Random.h"

namespace TamLib {

// The middle one of three elements. For equal ones: the greater of two is the first only when the
// comparison gives above 0, the lesser is the first only when it gives below 0.
template <class T, class C>
const T* MedianOfThree(const T* a, const T* b, const T* c, const C& comparison) {
    const auto greater = [&](const T* p, const T* q) { return comparison(p, q) > 0 ? p : q; };
    const auto lesser = [&](const T* p, const T* q) { return comparison(p, q) < 0 ? p : q; };
    const T* x = greater(b, c);
    const T* y = greater(a, c);
    const T* z = greater(a, b);
    const T* u = lesser(x, y);
    const T* w = lesser(y, z);
    return lesser(u, w);
}

// Sorts by exchanging neighbours; stable.
template <class T, class C>
void InsertionSort(T* block, const C& comparison, std::int32_t high, std::int32_t low);

// Sorts the elements.
template <class T, class C>
void QuickSort(T* block, const C& comparison, std::int32_t high, std::int32_t low);

// The same on pointers, which are ordered by what they point to.
template <class T, class C>
T* const* MedianOfThreePointers(T* const* a, T* const* b, T* const* c, const C& comparison);
template <class T, class C>
void InsertionSortPointers(T** pointers, std::int32_t high, std::int32_t low, const C& comparison);
template <class T, class C>
void QuickSortPointers(T** pointers, std::int32_t high, std::int32_t low, const C& comparison);

// Sorts the `high` + 1 elements of a whole block so that each is moved once: pointers to them
// are sorted, then the elements go to a new block, and `capacity` falls to their number. Two
// elements are exchanged where they stand, fewer stay. Live elements in slots above `high` are
// destroyed with the old block. Raises TamExpNoMem, the array untouched: from
// L"datastruct/Ordering", line 334, without memory for the pointers, from L"datastruct/Array",
// line 343, without memory for the block.
template <class T, class C>
void SortByPointers(T*& block, std::int32_t high, std::uint32_t& capacity, const C& comparison);

}  // namespace TamLib

#include "datastruct/QuickSort.h"
