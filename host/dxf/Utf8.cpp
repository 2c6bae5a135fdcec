#include "host/dxf/Utf8.h"

namespace host::dxf::utf8 {
namespace {

unsigned byteAt(std::string_view bytes, std::size_t at) {
    return static_cast<unsigned char>(bytes[at]);
}

bool isTail(std::string_view bytes, std::size_t at) {
    return at < bytes.size() && (byteAt(bytes, at) & 0xC0) == 0x80;
}

bool isScalar(char32_t character) {
    return character <= 0x10FFFF && (character < 0xD800 || character > 0xDFFF);
}

}  // namespace

std::size_t sequenceLength(std::string_view bytes) {
    if (bytes.empty()) return 0;
    const unsigned head = byteAt(bytes, 0);
    if (head < 0x80) return 1;
    if (head < 0xC2 || head > 0xF4) return 0;
    const std::size_t length = head < 0xE0 ? 2 : head < 0xF0 ? 3 : 4;
    for (std::size_t at = 1; at < length; ++at) {
        if (!isTail(bytes, at)) return 0;
    }
    const unsigned second = byteAt(bytes, 1);
    const bool overlong = (head == 0xE0 && second < 0xA0) || (head == 0xF0 && second < 0x90);
    const bool surrogate = head == 0xED && second > 0x9F;
    const bool tooLarge = head == 0xF4 && second > 0x8F;
    return overlong || surrogate || tooLarge ? 0 : length;
}

bool isValid(std::string_view bytes) {
    while (!bytes.empty()) {
        const std::size_t length = sequenceLength(bytes);
        if (length == 0) return false;
        bytes.remove_prefix(length);
    }
    return true;
}

char32_t decodeOne(std::string_view bytes, std::size_t length) {
    if (length == 1) return byteAt(bytes, 0);
    char32_t character = byteAt(bytes, 0) & (0xFFU >> (length + 1));
    for (std::size_t at = 1; at < length; ++at) {
        character = (character << 6) | (byteAt(bytes, at) & 0x3F);
    }
    return character;
}

void append(std::string& bytes, char32_t character) {
    if (!isScalar(character)) character = kReplacement;
    const auto put = [&bytes](char32_t byte) { bytes += static_cast<char>(byte); };
    if (character < 0x80) {
        put(character);
    } else if (character < 0x800) {
        put(0xC0 | (character >> 6));
        put(0x80 | (character & 0x3F));
    } else if (character < 0x10000) {
        put(0xE0 | (character >> 12));
        put(0x80 | ((character >> 6) & 0x3F));
        put(0x80 | (character & 0x3F));
    } else {
        put(0xF0 | (character >> 18));
        put(0x80 | ((character >> 12) & 0x3F));
        put(0x80 | ((character >> 6) & 0x3F));
        put(0x80 | (character & 0x3F));
    }
}

void append(std::wstring& text, char32_t character) {
    if (sizeof(wchar_t) == 2 && character > 0xFFFF) {
        const char32_t above = character - 0x10000;
        text += static_cast<wchar_t>(0xD800 + (above >> 10));
        text += static_cast<wchar_t>(0xDC00 + (above & 0x3FF));
    } else {
        text += static_cast<wchar_t>(character);
    }
}

}  // namespace host::dxf::utf8
