// The roots of the array family: what every container offers, and the cursor over it. Neither holds
// data. The order of the virtual operations is fixed. None of these classes has a virtual
// destructor; arrays add one.
#pragma once

#include <cstdint>

namespace TamLib {

// A cursor over the elements of a container.
template <class T>
class IteratorBase {
  public:
    // The element at the cursor.
    virtual T* Current() = 0;
    // Moves to the next element; false when there is none, and nothing moves.
    virtual bool Next() = 0;
    // Moves to the first element.
    virtual bool First() = 0;
    // Next().
    virtual bool Advance() { return Next(); }

  protected:
    IteratorBase() = default;
    IteratorBase(const IteratorBase&) = default;
    IteratorBase& operator=(const IteratorBase&) = default;
    ~IteratorBase() = default;
};

template <class T>
class Container {
  public:
    // Calls `fn` on each element in order.
    virtual void ForEach(void (*fn)(T*)) = 0;
    // Empties the container; returns 0.
    virtual std::int32_t Clear() = 0;
    // Whether an element compares equal to `item`.
    virtual bool Contains(const T& item) const = 0;
    // A new cursor at the first element. The caller owns it and deletes it by its own class.
    virtual IteratorBase<T>* NewIterator() = 0;

  protected:
    Container() = default;
    Container(const Container&) = default;
    Container& operator=(const Container&) = default;
    ~Container() = default;
};

}  // namespace TamLib
