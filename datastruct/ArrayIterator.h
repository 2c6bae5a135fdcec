// The cursor over an array. It does not own the array and does not notice changes of it.
//
// Intended: moving by index stops one short of the end, so that Seek refuses the last index and
// First() of a one-element array answers false, although the cursor stands on that element. The
// bound is count - 1 without a sign, so that on an empty array Next() and Seek() accept everything.
#pragma once

#include <cstdint>

#include "datastruct/Container.h"

namespace TamLib {

template <class T>
class Array;

template <class T>
class ArrayIterator final : public IteratorBase<T> {
  public:
    explicit ArrayIterator(Array<T>* iterated) : array(iterated) {}

    // The array's At(position); no test of the position.
    T* Current() override { return array->At(static_cast<std::int32_t>(position)); }
    // One forward when the position is below count - 1.
    bool Next() override {
        if (position >= array->count - 1) return false;
        ++position;
        return true;
    }
    // Seek(0).
    bool First() override { return Seek(0); }
    // One back when the position is at least 1.
    virtual bool Previous() {
        if (position < 1) return false;
        --position;
        return true;
    }
    // Moves to `index` when it is not negative and below count - 1.
    virtual bool Seek(std::int32_t index) {
        if (index < 0 || static_cast<std::uint32_t>(index) >= array->count - 1) return false;
        position = static_cast<std::uint32_t>(index);
        return true;
    }
    // Seek(index), giving the index, or -1 when it is refused.
    virtual std::int32_t SeekIndex(std::int32_t index) { return Seek(index) ? index : -1; }
    // Previous().
    virtual bool Back() { return Previous(); }
    virtual std::uint32_t Position() { return position; }

    Array<T>* array;
    std::uint32_t position = 0;
};

}  // namespace TamLib
