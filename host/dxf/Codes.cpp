#include "host/dxf/Codes.h"

#include <array>
#include <cstddef>

namespace host::dxf {
namespace {

struct CodeRange {
    int first;
    int last;
    ValueType type;
};

// Later rows override earlier ones.
constexpr CodeRange kRanges[] = {
    {0, 9, ValueType::text},        {5, 5, ValueType::handle},       {10, 59, ValueType::real},
    {60, 79, ValueType::int16},     {90, 99, ValueType::int32},      {100, 102, ValueType::text},
    {105, 105, ValueType::handle},  {110, 149, ValueType::real},     {160, 169, ValueType::int64},
    {170, 179, ValueType::int16},   {210, 239, ValueType::real},     {270, 289, ValueType::int16},
    {290, 299, ValueType::boolean}, {300, 309, ValueType::text},     {310, 319, ValueType::chunk},
    {320, 369, ValueType::handle},  {370, 389, ValueType::int16},    {390, 399, ValueType::handle},
    {400, 409, ValueType::int16},   {410, 419, ValueType::text},     {420, 429, ValueType::int32},
    {430, 439, ValueType::text},    {440, 459, ValueType::int32},    {460, 469, ValueType::real},
    {470, 479, ValueType::text},    {480, 481, ValueType::handle},   {999, 1009, ValueType::text},
    {1004, 1004, ValueType::chunk}, {1005, 1005, ValueType::handle}, {1010, 1059, ValueType::real},
    {1060, 1070, ValueType::int16}, {1071, 1071, ValueType::int32},
};

constexpr int kCodes = 1072;

struct CodeTable {
    std::array<ValueType, kCodes> type{};
    std::array<bool, kCodes> known{};
};

constexpr CodeTable makeTable() {
    CodeTable table;
    for (const CodeRange& range : kRanges) {
        for (int code = range.first; code <= range.last; ++code) {
            table.type[static_cast<std::size_t>(code)] = range.type;
            table.known[static_cast<std::size_t>(code)] = true;
        }
    }
    return table;
}

constexpr CodeTable kTable = makeTable();

}  // namespace

bool isKnownCode(int code) {
    return code >= 0 && code < kCodes && kTable.known[static_cast<std::size_t>(code)];
}

ValueType valueType(int code) {
    if (code < 0 || code >= kCodes) return ValueType::text;
    return kTable.type[static_cast<std::size_t>(code)];
}

}  // namespace host::dxf
