#include "host/console/Json.h"

#include <charconv>
#include <cmath>

#include "host/dxf/Utf8.h"

namespace host::console {

namespace {

constexpr std::size_t indent = 2;

// The short escape of a character, or an empty text.
std::string_view shortEscape(char c) {
    switch (c) {
        case '"':
            return "\\\"";
        case '\\':
            return "\\\\";
        case '\n':
            return "\\n";
        case '\r':
            return "\\r";
        case '\t':
            return "\\t";
        default:
            return {};
    }
}

std::string controlEscape(unsigned char c) {
    constexpr char digits[] = "0123456789abcdef";
    return std::string("\\u00") + digits[c >> 4U] + digits[c & 15U];
}

}  // namespace

JsonWriter& JsonWriter::key(std::string_view name) {
    nextMember();
    quoted(name);
    json_ += ": ";
    afterKey_ = true;
    return *this;
}

void JsonWriter::text(std::string_view utf8) {
    nextMember();
    quoted(utf8);
}

void JsonWriter::textOrNull(std::string_view utf8) {
    utf8.empty() ? null() : text(utf8);
}

void JsonWriter::number(double value) {
    if (!std::isfinite(value)) return null();
    char digits[32];
    const auto result = std::to_chars(digits, digits + sizeof digits, value);
    raw({digits, static_cast<std::size_t>(result.ptr - digits)});
}

void JsonWriter::number(std::size_t value) {
    raw(std::to_string(value));
}

void JsonWriter::boolean(bool value) {
    raw(value ? "true" : "false");
}

void JsonWriter::null() {
    raw("null");
}

void JsonWriter::begin(char bracket, Layout layout) {
    nextMember();
    json_ += bracket;
    const bool inRow = !levels_.empty() && levels_.back().layout == Layout::row;
    levels_.push_back({inRow ? Layout::row : layout});
}

void JsonWriter::end(char bracket) {
    const Level level = levels_.back();
    levels_.pop_back();
    if (!level.empty && level.layout == Layout::lines) newLine();
    json_ += bracket;
}

void JsonWriter::nextMember() {
    if (afterKey_) {
        afterKey_ = false;
        return;
    }
    if (levels_.empty()) return;
    Level& level = levels_.back();
    if (!level.empty) json_ += level.layout == Layout::row ? ", " : ",";
    level.empty = false;
    if (level.layout == Layout::lines) newLine();
}

void JsonWriter::raw(std::string_view token) {
    nextMember();
    json_ += token;
}

void JsonWriter::quoted(std::string_view utf8) {
    json_ += '"';
    while (!utf8.empty()) {
        const std::size_t length = dxf::utf8::sequenceLength(utf8);
        const char c = utf8.front();
        if (length == 0) {
            dxf::utf8::append(json_, dxf::utf8::kReplacement);
        } else if (length > 1) {
            json_ += utf8.substr(0, length);
        } else if (const std::string_view escape = shortEscape(c); !escape.empty()) {
            json_ += escape;
        } else if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) {
            json_ += controlEscape(static_cast<unsigned char>(c));
        } else {
            json_ += c;
        }
        utf8.remove_prefix(length == 0 ? 1 : length);
    }
    json_ += '"';
}

void JsonWriter::newLine() {
    json_ += '\n';
    json_.append(levels_.size() * indent, ' ');
}

}  // namespace host::console
