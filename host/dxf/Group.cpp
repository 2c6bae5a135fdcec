#include "host/dxf/Group.h"

#include <charconv>
#include <cmath>
#include <system_error>

#include "host/dxf/Lines.h"

namespace host::dxf {
namespace {

bool isBlank(char c) {
    return c == ' ' || c == '\t';
}

Group parseAscii(const char* at, const char* end, bool loneReturns) {
    const char* value = nullptr;
    int code = loneReturns ? kUnusualCode : plainCode(at, value);
    if (code == kUnusualCode) {
        const LineSpan line = lineAt(at, end, loneReturns);
        const std::string_view text(at, static_cast<std::size_t>(line.end - at));
        code = static_cast<int>(parseInteger(text).value_or(0));
        value = line.next;
    }
    const LineSpan line = lineAt(value, end, loneReturns);
    return {at, value, static_cast<std::size_t>(line.end - value), line.next, code, false};
}

Group parseBinary(const char* at, const char* end, bool wideCodes) {
    const char* value = at;
    int code;
    if (wideCodes) {
        code = loadNumber<std::int16_t>(value);
        value += 2;
    } else {
        code = static_cast<unsigned char>(*value++);
        if (code == kWideCodeFollows) {
            code = loadNumber<std::int16_t>(value);
            value += 2;
        }
    }
    const ValueType type = valueType(code);
    if (type == ValueType::chunk) {
        const auto length = static_cast<unsigned char>(*value++);
        return {at, value, length, value + length, code, true};
    }
    if (const std::size_t size = fixedSize(type); size > 0) {
        return {at, value, size, value + size, code, true};
    }
    const auto* nul =
        static_cast<const char*>(std::memchr(value, '\0', static_cast<std::size_t>(end - value)));
    return {at, value, static_cast<std::size_t>(nul - value), nul + 1, code, true};
}

Group parseGroup(const char* at, const char* end, Form form) {
    return form.binary ? parseBinary(at, end, form.wideCodes)
                       : parseAscii(at, end, form.loneReturns);
}

int hexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

// Whether `text`, which from_chars found out of range, is too small rather than too large.
bool underflows(std::string_view text) {
    const std::size_t exponent = text.find_first_of("eE");
    if (exponent != std::string_view::npos) return text[exponent + 1] == '-';
    const std::size_t point = text.find('.');
    const std::size_t firstDigit = text.find_first_not_of("-0");
    return point != std::string_view::npos && point <= firstDigit;
}

}  // namespace

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
    return text;
}

std::optional<double> parseReal(std::string_view text) {
    text = trimmed(text);
    if (!text.empty() && text.front() == '+') {
        text.remove_prefix(1);
        if (!text.empty() && text.front() == '-') return std::nullopt;
    }
    // from_chars also takes "inf" and "nan".
    const std::size_t first = !text.empty() && text.front() == '-' ? 1 : 0;
    if (text.size() <= first || !(isDigit(text[first]) || text[first] == '.')) return std::nullopt;
    double value = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (stop != end) return std::nullopt;
    if (error == std::errc()) return value;
    if (error != std::errc::result_out_of_range || !underflows(text)) return std::nullopt;
    return first == 1 ? -0.0 : 0.0;
}

std::optional<std::int64_t> parseInteger(std::string_view text) {
    text = trimmed(text);
    if (!text.empty() && text.front() == '+') {
        text.remove_prefix(1);
        if (!text.empty() && text.front() == '-') return std::nullopt;
    }
    std::int64_t value = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (stop != end || error != std::errc()) return std::nullopt;
    return value;
}

std::optional<std::uint64_t> parseHandle(std::string_view text) {
    text = trimmed(text);
    if (text.empty() || text.size() > 16) return std::nullopt;
    std::uint64_t value = 0;
    for (const char c : text) {
        const int digit = hexDigit(c);
        if (digit < 0) return std::nullopt;
        value = value * 16 + static_cast<unsigned>(digit);
    }
    return value;
}

std::optional<double> Group::real() const {
    if (type() != ValueType::real) return std::nullopt;
    if (!binary_) return parseReal(bytes());
    const auto value = loadNumber<double>(value_);
    if (!std::isfinite(value)) return std::nullopt;
    return value;
}

std::optional<std::int64_t> Group::integer() const {
    const ValueType kind = type();
    if (fixedSize(kind) == 0 || kind == ValueType::real) return std::nullopt;
    if (!binary_) return parseInteger(bytes());
    switch (kind) {
        case ValueType::int64:
            return loadNumber<std::int64_t>(value_);
        case ValueType::int32:
            return loadNumber<std::int32_t>(value_);
        case ValueType::int16:
            return loadNumber<std::int16_t>(value_);
        default:
            return static_cast<unsigned char>(*value_);
    }
}

std::optional<std::uint64_t> Group::handle() const {
    if (type() != ValueType::handle) return std::nullopt;
    return parseHandle(bytes());
}

GroupRange::iterator::iterator(const char* at, const char* end, Form form)
    : at_(at), end_(end), form_(form) {
    if (at_ != end_) group_ = parseGroup(at_, end_, form_);
}

GroupRange::iterator& GroupRange::iterator::operator++() {
    at_ += group_.raw().size();
    if (at_ != end_) group_ = parseGroup(at_, end_, form_);
    return *this;
}

std::optional<Group> GroupRange::find(int code) const {
    for (const Group& group : *this) {
        if (group.code() == code) return group;
    }
    return std::nullopt;
}

}  // namespace host::dxf
