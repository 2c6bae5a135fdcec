#include "host/dxf/CodePage.h"

#include <array>
#include <cstddef>
#include <optional>

#include "host/dxf/CodePageTables.h"
#include "host/dxf/DoubleByte.h"
#include "host/dxf/Lines.h"
#include "host/dxf/Utf8.h"

namespace host::dxf {
namespace {

constexpr int kDefaultPage = 1252;

struct PageName {
    std::string_view name;  // lower case
    int number;
};

// Names that don't end in the page's own number.
constexpr PageName kNames[] = {
    {"", kDefaultPage},   {"ascii", kDefaultPage}, {"undefined", kDefaultPage},
    {"mac-roman", 10000}, {"macintosh", 10000},    {"gb2312", 936},
    {"gbk", 936},         {"big5", 950},           {"ksc5601", 949},
    {"johab", 1361},      {"iso8859-1", 28591},
};

// Prefixes before the page's number; ISO parts are numbered from 28590.
constexpr PageName kPrefixes[] = {
    {"ansi_", 0}, {"dos", 0}, {"cp", 0}, {"iso8859_", 28590}, {"8859_", 28590},
};

constexpr int kDoubleBytePages[] = {932, 936, 949, 950, 1361};

std::string lowered(std::string_view name) {
    std::string lower(name);
    for (char& c : lower) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return lower;
}

std::optional<int> pageNumber(std::string_view name) {
    for (const PageName& known : kNames) {
        if (known.name == name) return known.number;
    }
    for (const PageName& prefix : kPrefixes) {
        if (name.substr(0, prefix.name.size()) != prefix.name) continue;
        const std::string_view digits = name.substr(prefix.name.size());
        int number = 0;
        if (digits.empty() || digits.size() > 5) return std::nullopt;
        for (const char c : digits) {
            if (c < '0' || c > '9') return std::nullopt;
            number = number * 10 + (c - '0');
        }
        return prefix.number + number;
    }
    return std::nullopt;
}

const CodePage* pageNumbered(int number) {
    static const auto pages = [] {
        std::array<CodePage, 64> all{};
        std::size_t count = 0;
        for (std::size_t at = 0; at < kSingleBytePageCount; ++at) {
            all[count++] = {kSingleBytePages[at].number, kSingleBytePages[at].upper};
        }
        for (const int page : kDoubleBytePages) all[count++] = {page, nullptr};
        return all;
    }();
    for (const CodePage& page : pages) {
        if (page.number == number && number != 0) return &page;
    }
    return nullptr;
}

std::u32string decodeUtf8(std::string_view bytes) {
    std::u32string text;
    while (!bytes.empty()) {
        const std::size_t length = utf8::sequenceLength(bytes);
        text += length == 0 ? utf8::kReplacement : utf8::decodeOne(bytes, length);
        bytes.remove_prefix(length == 0 ? 1 : length);
    }
    return text;
}

std::u32string decodeSingle(std::string_view bytes, const char16_t* upper) {
    std::u32string text;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        text.push_back(byte < 0x80 ? byte : upper[byte - 0x80]);
    }
    return text;
}

std::optional<char32_t> hexValue(std::u32string_view digits) {
    char32_t value = 0;
    for (const char32_t c : digits) {
        char32_t digit;
        if (c >= '0' && c <= '9') {
            digit = c - '0';
        } else if (c >= 'A' && c <= 'F') {
            digit = c - 'A' + 10;
        } else if (c >= 'a' && c <= 'f') {
            digit = c - 'a' + 10;
        } else {
            return std::nullopt;
        }
        value = value * 16 + digit;
    }
    return value;
}

// The character of the escape at the head of `text`, and the escape's length; 0 when none is there.
struct Escape {
    char32_t character = 0;
    std::size_t length = 0;
};

Escape unicodeEscape(std::u32string_view text) {
    constexpr std::size_t kLength = 7;  // \U+nnnn
    if (text.size() < kLength || text.substr(0, 3) != U"\\U+") return {};
    const auto value = hexValue(text.substr(3, 4));
    return value ? Escape{*value, kLength} : Escape{};
}

Escape multiByteEscape(std::u32string_view text) {
    constexpr std::size_t kLength = 8;  // \M+nxxxx
    constexpr int kPages[] = {932, 950, 949, 1361, 936};
    if (text.size() < kLength || text.substr(0, 3) != U"\\M+") return {};
    const char32_t which = text[3];
    const auto value = hexValue(text.substr(4, 4));
    if (which < '1' || which > '5' || !value) return {};
    const char bytes[] = {static_cast<char>(*value >> 8), static_cast<char>(*value & 0xFF)};
    const std::string_view pair =
        *value > 0xFF ? std::string_view(bytes, 2) : std::string_view(bytes + 1, 1);
    const DoubleByteDecoder decoder(kPages[which - '1']);
    return {decoder.decode(pair).front(), kLength};
}

std::u32string withoutEscapes(std::u32string_view text) {
    std::u32string plain;
    while (!text.empty()) {
        Escape escape;
        if (text.front() == '\\') {
            escape = unicodeEscape(text);
            if (escape.length == 0) escape = multiByteEscape(text);
        }
        plain += escape.length == 0 ? text.front() : escape.character;
        text.remove_prefix(escape.length == 0 ? 1 : escape.length);
    }
    return plain;
}

bool isHighSurrogate(char32_t c) {
    return c >= 0xD800 && c <= 0xDBFF;
}
bool isLowSurrogate(char32_t c) {
    return c >= 0xDC00 && c <= 0xDFFF;
}

// Joins surrogates that stand side by side; others become U+FFFD.
std::u32string joinedSurrogates(std::u32string_view text) {
    std::u32string joined;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (isHighSurrogate(text[at]) && at + 1 < text.size() && isLowSurrogate(text[at + 1])) {
            joined.push_back(0x10000 + ((text[at] - 0xD800) << 10) + (text[at + 1] - 0xDC00));
            ++at;
        } else {
            const bool alone = isHighSurrogate(text[at]) || isLowSurrogate(text[at]);
            joined += alone ? utf8::kReplacement : text[at];
        }
    }
    return joined;
}

void appendEscape(std::string& bytes, char32_t unit) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    bytes += "\\U+";
    for (int shift = 12; shift >= 0; shift -= 4) bytes += kDigits[(unit >> shift) & 15];
}

void appendEscaped(std::string& bytes, char32_t character) {
    if (character > 0xFFFF) {
        appendEscape(bytes, 0xD800 + ((character - 0x10000) >> 10));
        appendEscape(bytes, 0xDC00 + ((character - 0x10000) & 0x3FF));
    } else {
        appendEscape(bytes, character);
    }
}

void appendInPage(std::string& bytes, char32_t character, const CodePage& page) {
    if (character < 0x80) {
        bytes += static_cast<char>(character);
        return;
    }
    for (unsigned at = 0; page.upper != nullptr && at < 128; ++at) {
        if (page.upper[at] == character && character != utf8::kReplacement) {
            bytes += static_cast<char>(0x80 + at);
            return;
        }
    }
    appendEscaped(bytes, character);
}

}  // namespace

const CodePage* findCodePage(std::string_view name) {
    const std::optional<int> number = pageNumber(lowered(name));
    return number ? pageNumbered(*number) : nullptr;
}

std::wstring decodeText(std::string_view bytes, const CodePage* page) {
    // ASCII without an escape is the same in every code page.
    if (!hasHighBytes(bytes) && bytes.find('\\') == std::string_view::npos) {
        return {bytes.begin(), bytes.end()};
    }
    std::u32string text;
    if (page == nullptr) {
        text = decodeUtf8(bytes);
    } else if (page->upper != nullptr) {
        text = decodeSingle(bytes, page->upper);
    } else {
        text = DoubleByteDecoder(page->number).decode(bytes);
    }
    std::wstring wide;
    for (const char32_t c : joinedSurrogates(withoutEscapes(text))) utf8::append(wide, c);
    return wide;
}

std::string encodeText(std::wstring_view text, const CodePage* page) {
    std::u32string units;
    for (const wchar_t c : text) units += static_cast<char32_t>(c);
    std::string bytes;
    for (const char32_t c : joinedSurrogates(units)) {
        if (page == nullptr) {
            utf8::append(bytes, c);
        } else {
            appendInPage(bytes, c, *page);
        }
    }
    return bytes;
}

}  // namespace host::dxf
