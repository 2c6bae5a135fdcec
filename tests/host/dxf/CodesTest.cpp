#include "host/dxf/Codes.h"

#include <gtest/gtest.h>

namespace host::dxf {
namespace {

struct Row {
    int first;
    int last;
    ValueType type;
};

// The table of the format, range by range.
constexpr Row kRows[] = {
    {0, 4, ValueType::text},        {5, 5, ValueType::handle},      {6, 9, ValueType::text},
    {10, 59, ValueType::real},      {60, 79, ValueType::int16},     {90, 99, ValueType::int32},
    {100, 102, ValueType::text},    {105, 105, ValueType::handle},  {110, 149, ValueType::real},
    {160, 169, ValueType::int64},   {170, 179, ValueType::int16},   {210, 239, ValueType::real},
    {270, 289, ValueType::int16},   {290, 299, ValueType::boolean}, {300, 309, ValueType::text},
    {310, 319, ValueType::chunk},   {320, 369, ValueType::handle},  {370, 389, ValueType::int16},
    {390, 399, ValueType::handle},  {400, 409, ValueType::int16},   {410, 419, ValueType::text},
    {420, 429, ValueType::int32},   {430, 439, ValueType::text},    {440, 459, ValueType::int32},
    {460, 469, ValueType::real},    {470, 479, ValueType::text},    {480, 481, ValueType::handle},
    {999, 1003, ValueType::text},   {1004, 1004, ValueType::chunk}, {1005, 1005, ValueType::handle},
    {1006, 1009, ValueType::text},  {1010, 1059, ValueType::real},  {1060, 1070, ValueType::int16},
    {1071, 1071, ValueType::int32},
};

TEST(Codes, EachCodeHasTheTypeOfItsRange) {
    for (const Row& row : kRows) {
        for (int code = row.first; code <= row.last; ++code) {
            EXPECT_EQ(valueType(code), row.type) << code;
            EXPECT_TRUE(isKnownCode(code)) << code;
        }
    }
}

TEST(Codes, CodesBetweenTheRangesAreUnknownAndPassAsText) {
    int code = 0;
    for (const Row& row : kRows) {
        for (; code < row.first; ++code) {
            EXPECT_FALSE(isKnownCode(code)) << code;
            EXPECT_EQ(valueType(code), ValueType::text) << code;
        }
        code = row.last + 1;
    }
    for (const int outside : {-32768, -5, -1, 1072, 5000, 32767}) {
        EXPECT_FALSE(isKnownCode(outside)) << outside;
        EXPECT_EQ(valueType(outside), ValueType::text) << outside;
    }
}

}  // namespace
}  // namespace host::dxf
