// A container whose elements have indexes. Indexes are signed; a negative one counts from the end,
// -1 being the last element, unless said otherwise. See Array, which implements all of it.
#pragma once

#include <cstdint>

#include "datastruct/Container.h"

namespace TamLib {

template <class T>
class Vector : public Container<T> {
  public:
    virtual std::int32_t Add(const T& item) = 0;
    virtual std::int32_t AddUnique(const T& item) = 0;
    virtual void Set(std::int32_t index, const T& item) = 0;
    virtual void Insert(std::int32_t index, const T& item) = 0;
    virtual void Remove(std::int32_t index, std::uint32_t n) = 0;
    virtual std::int32_t Find(const T& item) const = 0;
    virtual std::uint32_t Count(const T& item) const = 0;
    virtual void Sort() = 0;
    // Sort(), then MakeUnique().
    virtual void SortUnique() {
        Sort();
        MakeUnique();
    }
    virtual void MakeUnique() = 0;
    virtual void Reverse() = 0;
    virtual T* At(std::int32_t index) = 0;

  protected:
    Vector() = default;
    Vector(const Vector&) = default;
    Vector& operator=(const Vector&) = default;
    ~Vector() = default;
};

}  // namespace TamLib
