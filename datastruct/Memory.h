// The one place where the containers take memory. Blocks come from the run-time's heap; elements
// are moved in memory as bytes, so that element types hold no pointer to themselves.
//
// A request is refused without an attempt when it reaches 0x7FFFFFFF / sizeof(T) elements, so
// that every byte size stays a positive 32-bit integer. A refused or failed request raises
// TamExpNoMem from L"datastruct/Array" with the line of the caller; the block that the caller
// holds stays whole.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "datastruct/Bytes.h"

namespace TamLib {

// The run-time's functions under all containers. Tests put failing ones here; nothing else changes
// them. `allocateArray` and `releaseArray` are the array forms of new (null without memory) and
// delete for the pointer blocks of sorting.
struct RunTimeMemory {
    void* (*allocate)(std::size_t bytes);
    void* (*reallocate)(void* block, std::size_t bytes);
    void (*release)(void* block);
    void* (*allocateArray)(std::size_t bytes);
    void (*releaseArray)(void* block);
};
extern RunTimeMemory runTimeMemory;

// A block of `bytes` bytes, or of 1 byte for 0; null without memory.
void* HeapAllocate(std::size_t bytes);
// `block` with the size `newBytes`, above 0; a null block gives a new one. When the run-time cannot
// resize it, a new block is filled with the smaller of both sizes and the old one is released. Null
// without memory for either; `block` is whole then.
void* HeapReallocate(void* block, std::size_t oldBytes, std::size_t newBytes);
// Gives a block back; null does nothing.
void HeapRelease(void* block);

// "Out of memory in TamLib::Array::_Allocate()...", in numbers of 32 bits that wrap.
[[noreturn]] void RaiseAllocateFailed(std::size_t elementSize, std::uint32_t count,
                                      std::uint32_t oldCount, std::int32_t line);
// "Out of memory in TamLib::Array::_ReAllocate()...".
[[noreturn]] void RaiseReAllocateFailed(std::size_t elementSize, std::uint32_t count,
                                        std::uint32_t oldCount, std::int32_t line);

// Blocks of raw memory for elements of type T; nothing is constructed or destroyed here.
template <class T>
struct ArrayMemory {
    static_assert(alignof(T) <= alignof(std::max_align_t), "the heap aligns no further");

    // The first count that is refused.
    static constexpr std::uint32_t kRefusedCount =
        static_cast<std::uint32_t>(0x7FFFFFFFu / kElementBytes<T>);

    // A new block for `count` elements. `oldCount` is for the message alone.
    static T* _Allocate(std::uint32_t count, std::uint32_t oldCount, std::int32_t line) {
        void* block = count < kRefusedCount ? HeapAllocate(count * kElementBytes<T>) : nullptr;
        if (block == nullptr) RaiseAllocateFailed(kElementBytes<T>, count, oldCount, line);
        return static_cast<T*>(block);
    }

    // `block` of `oldCount` elements, or null for 0, resized to `count`, which is not 0.
    static T* _ReAllocate(T* block, std::uint32_t count, std::uint32_t oldCount,
                          std::int32_t line) {
        void* resized = count < kRefusedCount ? HeapReallocate(block, oldCount * kElementBytes<T>,
                                                               count * kElementBytes<T>)
                                              : nullptr;
        if (resized == nullptr) RaiseReAllocateFailed(kElementBytes<T>, count, oldCount, line);
        return static_cast<T*>(resized);
    }

    static void Release(T* block) { HeapRelease(static_cast<void*>(block)); }
};

// Moves `count` elements as bytes; the ranges may overlap. What stood at `target` is overwritten
// and what stood at `source` is dead, without any element operation.
template <class T>
void MoveElements(T* target, const T* source, std::size_t count) {
    if (count != 0) {
        std::memmove(static_cast<void*>(target), static_cast<const void*>(source),
                     count * kElementBytes<T>);
    }
}

// Exchanges two elements as bytes.
template <class T>
void SwapElements(T& first, T& second) {
    if (&first == &second) return;
    alignas(T) unsigned char kept[kElementBytes<T>];
    std::memcpy(kept, static_cast<const void*>(&first), kElementBytes<T>);
    std::memcpy(static_cast<void*>(&first), static_cast<const void*>(&second), kElementBytes<T>);
    std::memcpy(static_cast<void*>(&second), kept, kElementBytes<T>);
}

}  // namespace TamLib
