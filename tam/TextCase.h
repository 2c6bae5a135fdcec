// Upper and lower case, the same in every build and locale. The run-time's own functions know A to
// Z only unless a program chooses a locale, and the users write Finnish.
//
// Wide characters: ASCII, Latin-1, Latin Extended-A (with it all letters of Windows-1252), Greek
// and Cyrillic letters that have one partner each. Left as they are: the dotted and dotless i of
// Turkish, sharp s, long s, final sigma, and everything that would change the number of characters.
//
// Narrow characters are bytes of Windows-1252. Intended: of its letters the narrow map leaves out
// the pair 0x8E, 0x9E, and 0xD7, 0xF7 are signs and no letters.
//
// Letters of the wide form are all that Unicode counts as such, not only those with two cases.
//
// Everything is inline, so that who wants no more than this links nothing.
#pragma once

#include <array>
#include <cstdint>

#include "tam/Letters.h"

namespace TamLib {
namespace text_case {

constexpr std::uint32_t kTableSize = 0x460;  // up to the end of the basic Cyrillic letters

constexpr bool Between(std::uint32_t code, std::uint32_t first, std::uint32_t last) {
    return code >= first && code <= last;
}

// The lower case of a capital letter by its Unicode number; any other number as it is.
constexpr std::uint32_t LowerOfCapital(std::uint32_t code) {
    const bool even = code % 2 == 0;
    if (Between(code, 'A', 'Z')) return code + 0x20;
    if (Between(code, 0xC0, 0xDE) && code != 0xD7) return code + 0x20;
    if (Between(code, 0x100, 0x136) && code != 0x130) return even ? code + 1 : code;
    if (Between(code, 0x139, 0x147)) return even ? code : code + 1;
    if (Between(code, 0x14A, 0x176)) return even ? code + 1 : code;
    if (code == 0x178) return 0xFF;
    if (Between(code, 0x179, 0x17D)) return even ? code : code + 1;
    if (code == 0x386) return 0x3AC;
    if (Between(code, 0x388, 0x38A)) return code + 0x25;
    if (code == 0x38C) return 0x3CC;
    if (Between(code, 0x38E, 0x38F)) return code + 0x3F;
    if (Between(code, 0x391, 0x3AB) && code != 0x3A2) return code + 0x20;
    if (Between(code, 0x400, 0x40F)) return code + 0x50;
    if (Between(code, 0x410, 0x42F)) return code + 0x20;
    return code;
}

using Table = std::array<std::uint16_t, kTableSize>;

constexpr Table MakeLower() {
    Table table{};
    for (std::uint32_t code = 0; code < kTableSize; ++code) {
        table[code] = static_cast<std::uint16_t>(LowerOfCapital(code));
    }
    return table;
}

constexpr Table MakeUpper() {
    Table table{};
    for (std::uint32_t code = 0; code < kTableSize; ++code) {
        table[code] = static_cast<std::uint16_t>(code);
    }
    for (std::uint32_t code = 0; code < kTableSize; ++code) {
        const std::uint32_t lower = LowerOfCapital(code);
        if (lower != code) table[lower] = static_cast<std::uint16_t>(code);
    }
    return table;
}

inline constexpr Table kLowerTable = MakeLower();
inline constexpr Table kUpperTable = MakeUpper();

}  // namespace text_case

// NOLINTBEGIN(bugprone-signed-char-misuse): a wide character above the table is no letter, sign or not
// The lower case of a wide character, or the character itself when it has none.
constexpr wchar_t LowerChar(wchar_t c) {
    const auto code = static_cast<std::uint32_t>(c);
    return code < text_case::kTableSize ? static_cast<wchar_t>(text_case::kLowerTable[code]) : c;
}

// The upper case of a wide character, or the character itself when it has none.
constexpr wchar_t UpperChar(wchar_t c) {
    const auto code = static_cast<std::uint32_t>(c);
    return code < text_case::kTableSize ? static_cast<wchar_t>(text_case::kUpperTable[code]) : c;
}

// NOLINTEND(bugprone-signed-char-misuse)

// The upper case of a byte of Windows-1252.
constexpr char UpperChar(char c) {
    const auto code = static_cast<unsigned char>(c);
    const bool letter = (code >= 0xE0 && code <= 0xF6) || (code >= 0xF8 && code <= 0xFE);
    if ((code >= 'a' && code <= 'z') || letter) return static_cast<char>(code - 0x20);
    if (code == 0x9A || code == 0x9C) return static_cast<char>(code - 0x10);
    return code == 0xFF ? static_cast<char>(0x9F) : c;
}

// The lower case of a byte of Windows-1252.
constexpr char LowerChar(char c) {
    const auto code = static_cast<unsigned char>(c);
    const bool letter = (code >= 0xC0 && code <= 0xD6) || (code >= 0xD8 && code <= 0xDE);
    if ((code >= 'A' && code <= 'Z') || letter) return static_cast<char>(code + 0x20);
    if (code == 0x8A || code == 0x8C) return static_cast<char>(code + 0x10);
    return code == 0x9F ? static_cast<char>(0xFF) : c;
}

// Whether the wide character is a letter, with or without case (tam/Letters.h).
inline bool IsAlpha(wchar_t c) {
    return text_case::IsLetter(static_cast<std::uint32_t>(c));
}

// Whether the byte of Windows-1252 is a letter. Intended: those of the narrow map alone, so that
// sharp s and z with caron are none.
constexpr bool IsAlpha(char c) {
    return LowerChar(c) != c || UpperChar(c) != c;
}

}  // namespace TamLib
