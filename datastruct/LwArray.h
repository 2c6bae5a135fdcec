// A small array of two fields, the chain of the hash tables: it grows by N slots at a time and only
// at its end. Indexes are 0 to count - 1.
//
// Elements are moved in memory as bytes and hold no pointer to themselves. Of the slots taken,
// those from `count` on hold elements constructed by default that nobody destroys (intended: N
// serves types that own nothing when empty).
#pragma once

#include <cstdint>
#include <memory>

#include "datastruct/Memory.h"

namespace TamLib {

template <class T, std::uint32_t N>
class LwArray {
  public:
    LwArray() = default;
    LwArray(const LwArray& other) : LwArray() { AddAll(other); }
    // Releases the block, then adds each element of `other`. Intended: the elements of before
    // are not destroyed, so that what they own stays allocated, and assignment to itself
    // empties the array.
    LwArray& operator=(const LwArray& other) {  // NOLINT(bugprone-unhandled-self-assignment)
        runTimeMemory.release(data);
        data = nullptr;
        count = 0;
        AddAll(other);
        return *this;
    }
    ~LwArray() { Clear(); }

    // Stores a copy behind the last element and gives its index. `item` may be an element of the
    // array itself. Intended: memory that is refused is not noticed; an access fault follows.
    // When its copying raises, the array stays as it was.
    std::int32_t Add(const T& item) {
        T added(item);
        return AddMoved(added);
    }

    // As Add, but moves `item`, which is no element of the array, as bytes; default content is left
    // in it.
    std::int32_t AddMoved(T& item) {
        if (count % N == 0) Grow();
        SwapElements(data[count], item);
        return static_cast<std::int32_t>(count++);
    }

    // Destroys the elements and gives the block back.
    void Clear() {
        std::destroy(data, data + count);
        runTimeMemory.release(data);
        data = nullptr;
        count = 0;
    }

    T& operator[](std::uint32_t index) { return data[index]; }
    const T& operator[](std::uint32_t index) const { return data[index]; }
    T* begin() { return data; }
    T* end() { return data + count; }
    const T* begin() const { return data; }
    const T* end() const { return data + count; }

    std::uint32_t count = 0;
    T* data = nullptr;

  private:
    void Grow() {
        const std::size_t bytes = (std::size_t{count} + N) * kElementBytes<T>;
        data = static_cast<T*>(runTimeMemory.reallocate(data, bytes));
        std::uninitialized_value_construct(data + count, data + count + N);
    }

    void AddAll(const LwArray& other) {
        for (std::uint32_t i = 0; i < other.count; ++i) Add(other.data[i]);
    }
};

}  // namespace TamLib
