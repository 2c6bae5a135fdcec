// The three forms in which the sorting routines take a comparison of elements: a function, the
// bytes of the elements, or an object. Each is called with two elements and gives a number that is
// negative, 0 or positive as the first comes before, equals or comes after the second. A comparison
// has to be pure and to call an element equal to itself.
#pragma once

#include <cstdint>
#include <type_traits>

#include "datastruct/Bytes.h"

namespace TamLib {

// The comparison as an object.
template <class T>
class Comparator {
  public:
    virtual std::int32_t operator()(const T* first, const T* second) const = 0;

  protected:
    Comparator() = default;
    Comparator(const Comparator&) = default;
    Comparator& operator=(const Comparator&) = default;
    ~Comparator() = default;
};

// A comparison function in the form of an object.
template <class T>
class FunctionComparator final : public Comparator<T> {
  public:
    using Function = std::int32_t (*)(const T*, const T*);

    explicit FunctionComparator(Function compared) : function_(compared) {}
    std::int32_t operator()(const T* first, const T* second) const override {
        return function_(first, second);
    }

  private:
    Function function_;
};

// The bytes of two elements, without a sign: -1, 0 or 1.
template <class T>
std::int32_t CompareElementBytes(const T* first, const T* second) {
    return CompareBytes(first, second, kElementBytes<T>);
}

// CompareElementBytes in the form of an object.
template <class T>
struct ByteComparison {
    std::int32_t operator()(const T* first, const T* second) const {
        return CompareElementBytes(first, second);
    }
};

// The order of numbers, for the `compare` of arrays of them: -1, 0 or 1.
template <class T>
std::int32_t CompareNumbers(const T* first, const T* second) {
    return (*first > *second) - (*first < *second);
}

// The comparison function that arrays of T usually have, if one stands out. An array whose
// `compare` it is sorts without a call per comparison, into the same order. Types specialise it.
template <class T, class = void>
struct UsualComparison {
    static constexpr bool kExists = false;
};
template <class T>
struct UsualComparison<T, std::enable_if_t<std::is_arithmetic_v<T>>> {
    static constexpr bool kExists = true;
    static constexpr std::int32_t (*kFunction)(const T*, const T*) = &CompareNumbers<T>;
};

namespace detail {

// A comparison function that is known when compiling.
template <auto function>
struct KnownFunction {
    template <class T>
    std::int32_t operator()(const T* first, const T* second) const {
        return function(first, second);
    }
};

template <class C>
constexpr bool kIsKnownFunction = false;
template <auto function>
constexpr bool kIsKnownFunction<KnownFunction<function>> = true;

// The comparison C is a function rather than an object.
template <class C>
constexpr bool kIsFunction = std::is_function_v<C> || kIsKnownFunction<C> ||
                             (std::is_pointer_v<C> && std::is_function_v<std::remove_pointer_t<C>>);

}  // namespace detail
}  // namespace TamLib
