// Bodies of Array that search, order and compare. Included by Array.h.
#pragma once

#include "datastruct/Array.h"
#include "datastruct/MergeSort.h"
#include "datastruct/Ordering.h"

namespace TamLib {

template <class T>
typename Array<T>::CompareFunction Array<T>::Comparison() const {
    return compare != nullptr ? compare : &CompareElementBytes<T>;
}

template <class T>
void Array<T>::ForEach(void (*fn)(T*)) {
    for (std::uint32_t i = 0; i < count; ++i) fn(data + i);
}

template <class T>
bool Array<T>::Contains(const T& item) const {
    const CompareFunction comparison = Comparison();
    for (std::uint32_t i = 0; i < count; ++i) {
        if (comparison(&item, data + i) == 0) return true;
    }
    return false;
}

template <class T>
ArrayIterator<T>* Array<T>::NewIterator() {
    return new ArrayIterator<T>(this);
}

template <class T>
std::int32_t Array<T>::Add(const T& item) {
    if (!sorted) return Append(item);
    const CompareFunction comparison = Comparison();
    std::uint32_t i = 0;
    while (i < count && comparison(&item, data + i) == 1) ++i;
    this->Insert(static_cast<std::int32_t>(i), item);
    return static_cast<std::int32_t>(i);
}

template <class T>
std::int32_t Array<T>::AddUnique(const T& item) {
    return this->Contains(item) ? this->Find(item) : Append(item);
}

template <class T>
std::int32_t Array<T>::Find(const T& item) const {
    if (sorted) return BinarySearch(item, false);
    const CompareFunction comparison = Comparison();
    for (std::uint32_t i = 0; i < count; ++i) {
        if (comparison(&item, data + i) == 0) return static_cast<std::int32_t>(i);
    }
    return -1;
}

template <class T>
std::uint32_t Array<T>::Count(const T& item) const {
    const CompareFunction comparison = Comparison();
    std::uint32_t equal = 0;
    for (std::uint32_t i = 0; i < count; ++i) equal += comparison(&item, data + i) == 0;
    return equal;
}

namespace detail {

// Calls `sort` with the comparison, in a form that can be inlined when it is the usual one.
template <class T, class Sorting>
void WithComparison(std::int32_t (*compare)(const T*, const T*), Sorting sort) {
    if constexpr (UsualComparison<T>::kExists) {
        if (compare == UsualComparison<T>::kFunction) {
            sort(KnownFunction<UsualComparison<T>::kFunction>());
            return;
        }
    }
    sort(compare);
}

}  // namespace detail

template <class T>
void Array<T>::Sort() {
    const std::int32_t high = static_cast<std::int32_t>(count) - 1;
    if (compare != nullptr) {
        detail::WithComparison<T>(compare,
                                  [&](const auto& known) { QuickSort(data, known, high, 0); });
    } else if (count >= 2) {
        SortByPointers(data, high, capacity, ByteComparison<T>());
    }
    sorted = true;
}

template <class T>
void Array<T>::SortUnique() {
    detail::WithComparison<T>(Comparison(), [&](const auto& known) {
        Order(data, count, capacity, MergeMode::keepOne, known);
    });
    sorted = true;
    unique = true;
}

template <class T>
void Array<T>::MakeUnique() {
    if (unique) return;
    for (std::uint32_t i = 0; i < count; ++i) {
        while (i < count && HasAnother(data[i])) this->Remove(this->Find(data[i]), 1);
    }
    unique = true;
}

// Whether Count(item) is at least 2.
template <class T>
bool Array<T>::HasAnother(const T& item) const {
    const CompareFunction comparison = Comparison();
    bool one = false;
    for (std::uint32_t i = 0; i < count; ++i) {
        if (comparison(&item, data + i) != 0) continue;
        if (one) return true;
        one = true;
    }
    return false;
}

template <class T>
void Array<T>::Reverse() {
    for (std::uint32_t i = 0; i < count / 2; ++i) SwapElements(data[i], data[count - 1 - i]);
}

template <class T>
T* Array<T>::At(std::int32_t index) {
    return data + Normal(index);
}

template <class T>
std::uint32_t Array<T>::Checksum(ChecksumFunction fn) const {
    std::uint32_t sum = 0;
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::uint32_t one =
            fn != nullptr ? fn(data + i) : ByteChecksum(data + i, kElementBytes<T>);
        sum += one * (i + 1) * 119u;
    }
    return sum;
}

template <class T>
T* Array<T>::Data() {
    return data;
}

template <class T>
std::int32_t Array<T>::BinarySearch(const T& item, bool nearest) const {
    if (count == 0) return -1;
    const CompareFunction comparison = Comparison();
    std::uint32_t low = 0;
    std::uint32_t high = count - 1;
    if (comparison(data + high, &item) >= 1) {
        bool above = comparison(&item, data + low) >= 1;
        while (above && high - low >= 2) {
            const std::uint32_t middle = low + (high - low) / 2;
            if (comparison(data + middle, &item) < 1) {
                low = middle;
                above = comparison(&item, data + low) >= 1;
            } else {
                high = middle;
            }
        }
    }
    if (comparison(&item, data + low) == 0) return static_cast<std::int32_t>(low);
    if (comparison(&item, data + high) == 0) return static_cast<std::int32_t>(high);
    return nearest ? static_cast<std::int32_t>(low) : -1;
}

template <class T>
Array<T> Array<T>::Slice(std::int32_t first, std::int32_t last) const {
    const std::int64_t n = count;
    const std::int64_t from = first < 0 ? first + n : first;
    std::int64_t to = last < 0 ? last + n : last;
    if (to < from) to += n;
    const std::int64_t length = to < from ? 0 : to - from + 1;

    Array slice;
    slice.bitwise = bitwise;
    slice.compare = compare;
    slice.increment = 10;
    slice.Resize(length > 10 ? detail::Grown(static_cast<std::uint64_t>(length), 0, 0) : 10);
    std::int64_t at = n == 0 ? 0 : (from % n + n) % n;
    for (std::int64_t i = 0; n != 0 && i < length; ++i) {
        slice.Append(data[at]);
        if (++at == n) at = 0;
    }
    slice.sorted = sorted;
    slice.unique = unique;
    return slice;
}

}  // namespace TamLib
