#include "host/picture/Svg.h"

#include <charconv>

#include "host/database/Names.h"

namespace host::picture {
namespace {

constexpr std::string_view replacement = "\xEF\xBF\xBD";

bool isForbidden(unsigned char byte) {
    return byte < 0x20 && byte != '\t' && byte != '\n' && byte != '\r';
}

// U+FFFE and U+FFFF.
bool isNoncharacter(std::string_view rest) {
    return rest.substr(0, 3) == "\xEF\xBF\xBE" || rest.substr(0, 3) == "\xEF\xBF\xBF";
}

void trimZeros(std::string& number) {
    if (number.find('.') == std::string::npos) return;
    number.erase(number.find_last_not_of('0') + 1);
    if (number.back() == '.') number.pop_back();
}

}  // namespace

std::string escaped(std::wstring_view text) {
    const std::string bytes = database::toUtf8(text);
    std::string result;
    result.reserve(bytes.size());
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const char byte = bytes[i];
        if (byte == '&') {
            result += "&amp;";
        } else if (byte == '<') {
            result += "&lt;";
        } else if (byte == '>') {
            result += "&gt;";
        } else if (byte == '"') {
            result += "&quot;";
        } else if (isForbidden(static_cast<unsigned char>(byte))) {
            result += replacement;
        } else if (isNoncharacter(std::string_view(bytes).substr(i))) {
            result += replacement;
            i += 2;
        } else {
            result += byte;
        }
    }
    return result;
}

std::string fixedText(double value, int decimals) {
    char buffer[400];  // the largest double has 309 digits before the point
    const auto end =
        std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, decimals);
    std::string text(buffer, end.ptr);
    trimZeros(text);
    return text == "-0" ? "0" : text;
}

std::string shortText(double value) {
    char buffer[32];
    const auto end =
        std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, 6);
    const std::string text(buffer, end.ptr);
    return text == "-0" ? "0" : text;
}

void addAttribute(std::string& out, std::string_view name, std::string_view value) {
    out += ' ';
    out += name;
    out += "=\"";
    out += value;
    out += '"';
}

}  // namespace host::picture
