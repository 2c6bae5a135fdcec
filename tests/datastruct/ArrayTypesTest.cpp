// The same operations over element types of every kind that the library keeps in arrays.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include <afx.h>

#include "datastruct/Array.h"
#include "datastruct/LwArray.h"
#include "datastruct/String.h"

using TamLib::Array;
using TamLib::LwArray;
using TamLib::StringBase;

namespace {

using Function = int (*)(int);

int Twice(int number) {
    return 2 * number;
}
int Same(int number) {
    return number;
}

// The element with the number 0 or 1, by type.
template <class T>
T Made(int number) {
    return static_cast<T>(number);
}
template <>
StringBase<wchar_t> Made(int number) {
    return number == 0 ? L"a text too long for any room inside of an object" : L"b";
}
template <>
StringBase<char> Made(int number) {
    return number == 0 ? "a" : "another text too long for any room inside of an object";
}
template <>
CStringW Made(int number) {
    return number == 0 ? L"a" : L"another text too long for any room inside of an object";
}
template <>
const int* Made(int number) {
    static const int targets[2] = {7, 8};
    return targets + number;
}
template <>
Function Made(int number) {
    return number == 0 ? Same : Twice;
}
template <>
LwArray<int, 6> Made(int number) {
    LwArray<int, 6> array;
    for (int i = 0; i < 10 * number; ++i) array.Add(i);
    return array;
}

template <class T>
bool SameElement(const T& a, const T& b) {
    return a == b;
}
template <class T>
bool SameElement(const StringBase<T>& a, const StringBase<T>& b) {
    return a.Compare(b) == 0;
}
template <>
bool SameElement(const LwArray<int, 6>& a, const LwArray<int, 6>& b) {
    return std::vector<int>(a.begin(), a.end()) == std::vector<int>(b.begin(), b.end());
}

template <class T>
class ArrayOfType : public testing::Test {};

using Types = testing::Types<char, wchar_t, int, unsigned, float, double, std::int64_t, bool,
                             StringBase<char>, StringBase<wchar_t>, CStringW, const int*, Function,
                             LwArray<int, 6>>;
class ByNumber {
  public:
    template <class T>
    static std::string GetName(int number) {
        return std::to_string(number);
    }
};
TYPED_TEST_SUITE(ArrayOfType, Types, ByNumber);

TYPED_TEST(ArrayOfType, KeepsItsElementsThroughEveryMove) {
    const TypeParam zero = Made<TypeParam>(0);
    const TypeParam one = Made<TypeParam>(1);
    Array<TypeParam> array;
    for (int i = 0; i < 12; ++i) array.Append(i % 2 == 0 ? zero : one);
    array.Insert(0, one);
    array.Insert(5, zero);
    array.Remove(3, 2);
    array.Reverse();
    array.Set(20, one);
    // 1 0 1 0 0 1 0 1 0 1 0 1 turned round, with what Set passed over behind.
    const std::vector<int> expected = {1, 0, 1, 0, 1, 0, 1, 0, 0, 1, 0, 1};
    const Array<TypeParam> copy(array);
    ASSERT_EQ(copy.count, 21u);
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const TypeParam& wanted = expected[i] == 0 ? zero : one;
        EXPECT_TRUE(SameElement(copy[static_cast<std::int32_t>(i)], wanted)) << i;
    }
    EXPECT_TRUE(SameElement(copy[12], TypeParam()));
    EXPECT_TRUE(SameElement(copy[20], one));
    array.Clear();
    EXPECT_EQ(array.data, nullptr);
}

}  // namespace
