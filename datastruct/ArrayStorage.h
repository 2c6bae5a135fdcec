// Bodies of Array that take, move and give back memory. Included by Array.h.
#pragma once

#include <cassert>
#include <functional>
#include <memory>

#include "datastruct/Array.h"

namespace TamLib {

[[noreturn]] void RaiseArrayRange(std::int32_t line);

namespace detail {

constexpr std::int32_t kAllocateLine = 804;
constexpr std::int32_t kResizeLine = 826;
constexpr std::int32_t kMakeRoomLine = 850;
constexpr std::int32_t kRemoveLengthLine = 997;
constexpr std::int32_t kRemoveIndexLine = 999;

// The capacity to ask for; a sum beyond 32 bits is one that is refused.
inline std::uint32_t Grown(std::uint64_t capacity, std::uint64_t step, std::uint64_t extra) {
    const std::uint64_t sum = capacity + step + extra;
    return sum > 0xFFFFFFFFu ? 0xFFFFFFFFu : static_cast<std::uint32_t>(sum);
}

}  // namespace detail

template <class T>
Array<T>::Array(const std::uint32_t initialCapacity) {
    increment = initialCapacity > 5 ? initialCapacity : 5;
    if (initialCapacity != 0) Resize(initialCapacity);
}

template <class T>
Array<T>::Array(const Array& other) : Array() {
    *this = other;
}

template <class T>
Array<T>::Array(Array&& other) noexcept
    : bitwise(other.bitwise),
      compare(other.compare),
      sorted(other.sorted),
      unique(other.unique),
      increment(other.increment) {
    SwapBlocks(other);
}

template <class T>
Array<T>& Array<T>::operator=(const Array& other) {
    if (this == &other) return *this;
    FreeBlock();
    compare = other.compare;
    sorted = other.sorted;
    unique = other.unique;
    increment = other.increment;
    bitwise = other.bitwise;
    CopyElements(other);
    return *this;
}

template <class T>
void Array<T>::CopyElements(const Array& other) {
    if (bitwise) {
        if (other.count == 0) return;
        data = _Allocate(other.count, 0, detail::kAllocateLine);
        capacity = other.count;
        MoveElements(data, other.data, other.count);
        count = other.count;
        return;
    }
    Allocate(other.count);
    if (other.count != 0) sorted = false;
    for (; count < other.count; ++count) data[count] = other.data[count];
}

template <class T>
Array<T>::~Array() {
    FreeBlock();
}

template <class T>
std::int32_t Array<T>::Clear() {
    FreeBlock();
    return 0;
}

template <class T>
void Array<T>::FreeBlock() {
    DestroySlots(0, data != nullptr ? capacity : 0);
    ArrayMemory<T>::Release(data);
    data = nullptr;
    count = 0;
    capacity = 0;
}

template <class T>
void Array<T>::Allocate(std::uint32_t n) {
    FreeBlock();
    if (n == 0) return;
    data = _Allocate(n, 0, detail::kAllocateLine);
    FillSlots(0, n);
    capacity = n;
}

template <class T>
void Array<T>::Resize(std::uint32_t n) {
    if (n == 0) {
        FreeBlock();
        return;
    }
    const std::uint32_t old = data != nullptr ? capacity : 0;
    if (n < old) {
        DestroySlots(n, old);
        capacity = n;  // what is alive, should the smaller block be refused
        if (count > n) count = n;
    }
    data = _ReAllocate(data, n, old, detail::kResizeLine);
    if (n > old) FillSlots(old, n);
    capacity = n;
}

template <class T>
std::int32_t Array<T>::Append(const T& item) {
    sorted = false;
    if (capacity > count && data != nullptr) {
        Store(data[count], item);
    } else {
        AppendGrowing(item);
    }
    return static_cast<std::int32_t>(count++);
}

template <class T>
void Array<T>::AppendGrowing(const T& item) {
    const std::int64_t slot = SlotOf(item);
    Resize(detail::Grown(capacity, increment, 0));
    Store(data[count], Moved(slot, item));
}

template <class T>
void Array<T>::Set(std::int32_t index, const T& item) {
    const std::uint32_t at = Normal(index);
    const std::int64_t slot = SlotOf(item);
    if (at >= capacity) Resize(detail::Grown(at, increment, 1));
    Store(data[at], Moved(slot, item));
    if (at >= count) count = at + 1;
}

template <class T>
void Array<T>::Insert(std::int32_t index, const T& item) {
    if (unique && this->Contains(item)) return;
    const std::uint32_t at = static_cast<std::uint32_t>(index) + (index < 0 ? count + 1 : 0);
    // Stored behind the end first, so that a failing assignment opens no gap.
    const std::int64_t slot = SlotOf(item);
    EnsureSpare(1);
    Store(data[count], Moved(slot, item));
    RotateSpareTo(at, 1);
    ++count;
}

template <class T>
void Array<T>::MakeRoom(std::uint32_t index, std::uint32_t n) {
    EnsureSpare(n);
    RotateSpareTo(index, n);
}

template <class T>
void Array<T>::EnsureSpare(std::uint32_t n) {
    if (capacity - count < n) Resize(detail::Grown(capacity, increment, n));
}

// Moves the first `n` spare slots behind the elements to the index, and the elements from there up.
template <class T>
void Array<T>::RotateSpareTo(std::uint32_t index, std::uint32_t n) {
    if (count == 0 || count == index) return;
    assert(index < count);
    T* const kept = _Allocate(n, capacity, detail::kMakeRoomLine);
    MoveElements(kept, data + count, n);
    MoveElements(data + index + n, data + index, count - index);
    MoveElements(data + index, kept, n);
    ArrayMemory<T>::Release(kept);
}

template <class T>
void Array<T>::Remove(std::int32_t index, std::uint32_t n) {
    const std::uint32_t at = Normal(index);
    if (std::uint64_t{at} + n > count) RaiseArrayRange(detail::kRemoveLengthLine);
    if (at >= count) RaiseArrayRange(detail::kRemoveIndexLine);
    DestroySlots(at, at + n);
    MoveElements(data + at, data + at + n, count - at - n);
    FillSlots(count - n, count);
    count -= n;
    if (capacity - count > increment) Resize(count + 5);
}

template <class T>
void Array<T>::SwapBlocks(Array& other) {
    std::swap(data, other.data);
    std::swap(capacity, other.capacity);
    std::swap(count, other.count);
}

template <class T>
void Array<T>::Store(T& slot, const T& item) {
    if (bitwise) {
        MoveElements(&slot, &item, 1);
    } else {
        slot = item;
    }
}

template <class T>
void Array<T>::FillSlots(std::uint32_t from, std::uint32_t to) {
    if (bitwise) {
        std::memset(static_cast<void*>(data + from), 0, (to - from) * kElementBytes<T>);
    } else {
        std::uninitialized_value_construct(data + from, data + to);
    }
}

template <class T>
void Array<T>::DestroySlots(std::uint32_t from, std::uint32_t to) {
    if (!bitwise) std::destroy(data + from, data + to);
}

template <class T>
std::uint32_t Array<T>::Normal(std::int32_t index) const {
    return static_cast<std::uint32_t>(index) + (index < 0 ? count : 0);
}

// The slot that `item` stands in, -1 if it is no part of the block.
template <class T>
std::int64_t Array<T>::SlotOf(const T& item) const {
    const std::less<const T*> before;
    const bool inside = !before(&item, data) && before(&item, data + capacity);
    return inside ? &item - data : -1;
}

// The item again, after the block may have moved.
template <class T>
const T& Array<T>::Moved(std::int64_t slot, const T& item) const {
    return slot < 0 ? item : data[slot];
}

}  // namespace TamLib
