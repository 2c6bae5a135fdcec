#include "host/editor/Words.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>

#include "tam/TextCase.h"

namespace host::editor {

namespace {

bool isDigit(wchar_t c) {
    return c >= L'0' && c <= L'9';
}

// Characters of ASCII as bytes, or nothing when there is another character.
std::optional<std::string> ascii(std::wstring_view text) {
    std::string bytes;
    bytes.reserve(text.size());
    for (const wchar_t c : text) {
        if (static_cast<std::uint32_t>(c) > 0x7E) return std::nullopt;
        bytes += static_cast<char>(c);
    }
    return bytes;
}

// Sign, digits and point, exponent: what a number may consist of, in this order.
bool looksLikeNumber(std::wstring_view text) {
    std::size_t i = 0;
    if (i < text.size() && (text[i] == L'+' || text[i] == L'-')) ++i;
    std::size_t digits = 0;
    for (bool point = false; i < text.size(); ++i) {
        if (text[i] == L'.' && !point) {
            point = true;
        } else if (isDigit(text[i])) {
            ++digits;
        } else {
            break;
        }
    }
    if (digits == 0) return false;
    if (i == text.size()) return true;
    if (text[i] != L'e' && text[i] != L'E') return false;
    ++i;
    if (i < text.size() && (text[i] == L'+' || text[i] == L'-')) ++i;
    return i < text.size() &&
           std::all_of(text.begin() + static_cast<std::ptrdiff_t>(i), text.end(), isDigit);
}

}  // namespace

std::wstring upperCase(std::wstring_view text) {
    std::wstring upper(text);
    for (wchar_t& c : upper) c = TamLib::UpperChar(c);
    return upper;
}

std::wstring_view trimmed(std::wstring_view text) {
    const std::size_t first = text.find_first_not_of(L" \t");
    if (first == std::wstring_view::npos) return {};
    return text.substr(first, text.find_last_not_of(L" \t") - first + 1);
}

std::vector<std::wstring> split(std::wstring_view text, wchar_t separator) {
    std::vector<std::wstring> parts;
    std::size_t from = 0;
    for (std::size_t at = text.find(separator); at != std::wstring_view::npos;
         at = text.find(separator, from)) {
        parts.emplace_back(text.substr(from, at - from));
        from = at + 1;
    }
    parts.emplace_back(text.substr(from));
    return parts;
}

std::optional<double> parseNumber(std::wstring_view text) {
    if (!looksLikeNumber(text)) return std::nullopt;
    const auto bytes = ascii(text.front() == L'+' ? text.substr(1) : text);
    double value = 0.0;
    const auto [end, error] = std::from_chars(bytes->data(), bytes->data() + bytes->size(), value);
    if (error != std::errc() || end != bytes->data() + bytes->size() || !std::isfinite(value)) {
        return std::nullopt;
    }
    return value;
}

std::optional<int> parseInteger(std::wstring_view text) {
    if (text.find_first_of(L"+-", 1) != std::wstring_view::npos) return std::nullopt;
    const auto bytes = ascii(!text.empty() && text.front() == L'+' ? text.substr(1) : text);
    if (!bytes || bytes->empty()) return std::nullopt;
    std::int32_t value = 0;
    const auto [end, error] = std::from_chars(bytes->data(), bytes->data() + bytes->size(), value);
    if (error != std::errc() || end != bytes->data() + bytes->size()) return std::nullopt;
    return value;
}

std::optional<unsigned long long> parseHandle(std::wstring_view text) {
    const auto bytes = ascii(text);
    if (!bytes || bytes->empty() || bytes->size() > 16) return std::nullopt;
    unsigned long long value = 0;
    const auto [end, error] =
        std::from_chars(bytes->data(), bytes->data() + bytes->size(), value, 16);
    if (error != std::errc() || end != bytes->data() + bytes->size()) return std::nullopt;
    return value;
}

std::wstring numberText(double value) {
    char bytes[64];
    const auto [end, error] = std::to_chars(bytes, bytes + sizeof(bytes), value);
    std::wstring text(bytes, error == std::errc() ? end : bytes);
    if (text.find_first_not_of(L"-0123456789") == std::wstring::npos) text += L".0";
    return text;
}

}  // namespace host::editor
