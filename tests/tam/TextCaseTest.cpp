#include "tam/TextCase.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cwctype>
#include <map>
#include <set>
#include <string>

using namespace TamLib;

namespace {

// The letters of Windows-1252 with two cases, as Unicode, capitals and small letters in the same
// order.
const std::wstring capitals =
    L"ABCDEFGHIJKLMNOPQRSTUVWXYZ\u0160\u0152\u017D\u0178"
    L"\u00C0\u00C1\u00C2\u00C3\u00C4\u00C5\u00C6\u00C7\u00C8\u00C9\u00CA\u00CB\u00CC\u00CD\u00CE"
    L"\u00CF"
    L"\u00D0\u00D1\u00D2\u00D3\u00D4\u00D5\u00D6\u00D8\u00D9\u00DA\u00DB\u00DC\u00DD\u00DE";
const std::wstring smalls =
    L"abcdefghijklmnopqrstuvwxyz\u0161\u0153\u017E\u00FF"
    L"\u00E0\u00E1\u00E2\u00E3\u00E4\u00E5\u00E6\u00E7\u00E8\u00E9\u00EA\u00EB\u00EC\u00ED\u00EE"
    L"\u00EF"
    L"\u00F0\u00F1\u00F2\u00F3\u00F4\u00F5\u00F6\u00F8\u00F9\u00FA\u00FB\u00FC\u00FD\u00FE";

TEST(TextCase, WideFoldsEveryLetterOfWindows1252) {
    ASSERT_EQ(capitals.size(), smalls.size());
    for (std::size_t i = 0; i < capitals.size(); ++i) {
        EXPECT_EQ(LowerChar(capitals[i]), smalls[i]) << i;
        EXPECT_EQ(UpperChar(smalls[i]), capitals[i]) << i;
        EXPECT_EQ(LowerChar(smalls[i]), smalls[i]) << i;
        EXPECT_EQ(UpperChar(capitals[i]), capitals[i]) << i;
        EXPECT_TRUE(IsAlpha(capitals[i])) << i;
        EXPECT_TRUE(IsAlpha(smalls[i])) << i;
    }
}

TEST(TextCase, WideLeavesEverythingElseOfLatin1Alone) {
    for (int code = 0; code < 0x100; ++code) {
        const auto c = static_cast<wchar_t>(code);
        const bool letter = (capitals + smalls).find(c) != std::wstring::npos;
        // Letters without a partner: both ordinal signs, micro, sharp s.
        const bool lone = code == 0xAA || code == 0xB5 || code == 0xBA || code == 0xDF;
        EXPECT_EQ(IsAlpha(c), letter || lone) << code;
        if (letter) continue;
        EXPECT_EQ(LowerChar(c), c) << code;
        EXPECT_EQ(UpperChar(c), c) << code;
    }
}

TEST(TextCase, WideLeavesLettersWithoutASinglePartnerAlone) {
    for (const wchar_t c :
         std::wstring(L"\u00DF\u0130\u0131\u0138\u0149\u017F\u03C2\u0390\u03B0")) {
        EXPECT_EQ(LowerChar(c), c);
        EXPECT_EQ(UpperChar(c), c);
    }
}

TEST(TextCase, WideLettersAreThoseOfUnicodeWithAndWithoutCase) {
    for (const wchar_t c : std::wstring(L"\u00DF\u0138\u0192\u01C0\u02C6\u03C2\u0561\u05D0\u0628"
                                        L"\u0E01\u1E9E\u3042\u4E2D\uAC00\uFB01\uFF21")) {
        EXPECT_TRUE(IsAlpha(c)) << static_cast<std::uint32_t>(c);
    }
    for (const wchar_t c : std::wstring(L"09_-.* \u00B2\u00D7\u00F7\u0301\u0378\u0660\u2018\u20AC"
                                        L"\u2160\uE000\uFFFF")) {
        EXPECT_FALSE(IsAlpha(c)) << static_cast<std::uint32_t>(c);
    }
    EXPECT_FALSE(IsAlpha(static_cast<wchar_t>(0xD835)));  // half of a pair
    for (std::uint32_t code = 0; code < 0x10000; ++code) {
        const auto c = static_cast<wchar_t>(code);
        if (LowerChar(c) != c || UpperChar(c) != c) {
            EXPECT_TRUE(IsAlpha(c)) << code;
        }
    }
}

TEST(TextCase, RangesOfLettersAscendWithoutTouching) {
    std::int64_t last = -1;
    for (const text_case::LetterRange& range : text_case::kLetterRanges) {
        EXPECT_GT(range.first, last + 1);
        EXPECT_GE(range.last, range.first);
        last = range.last;
    }
}

TEST(TextCase, WideFoldsGreekAndCyrillic) {
    EXPECT_EQ(LowerChar(L'\u0391'), L'\u03B1');
    EXPECT_EQ(UpperChar(L'\u03CE'), L'\u038F');
    EXPECT_EQ(LowerChar(L'\u0410'), L'\u0430');
    EXPECT_EQ(LowerChar(L'\u042F'), L'\u044F');
    EXPECT_EQ(UpperChar(L'\u0451'), L'\u0401');
}

TEST(TextCase, WideLeavesCharactersBeyondTheTableAlone) {
    for (const wchar_t c : std::wstring(L"\u0460\u2126\u212A\uFF21\uFFFF")) {
        EXPECT_EQ(LowerChar(c), c);
        EXPECT_EQ(UpperChar(c), c);
    }
}

TEST(TextCase, WideCasesAreInverseToEachOther) {
    for (std::uint32_t code = 0; code < 0x600; ++code) {
        const auto c = static_cast<wchar_t>(code);
        if (LowerChar(c) != c) {
            EXPECT_EQ(UpperChar(LowerChar(c)), c) << code;
        }
        if (UpperChar(c) != c) {
            EXPECT_EQ(LowerChar(UpperChar(c)), c) << code;
        }
    }
}

#ifndef _WIN32  // the Windows run-time has no neutral Unicode locale to ask
TEST(TextCase, WideAgreesWithUnicodeWhereverItFolds) {
    const std::string before = std::setlocale(LC_CTYPE, nullptr);
    ASSERT_NE(std::setlocale(LC_CTYPE, "C.UTF-8"), nullptr);
    int folded = 0;
    for (std::uint32_t code = 0; code < text_case::kTableSize; ++code) {
        const auto c = static_cast<wchar_t>(code);
        if (LowerChar(c) != c) {
            ++folded;
            EXPECT_EQ(LowerChar(c), static_cast<wchar_t>(std::towlower(static_cast<wint_t>(c))))
                << code;
        }
        if (UpperChar(c) != c) {
            EXPECT_EQ(UpperChar(c), static_cast<wchar_t>(std::towupper(static_cast<wint_t>(c))))
                << code;
        }
    }
    std::setlocale(LC_CTYPE, before.c_str());
    EXPECT_EQ(folded, 26 + 30 + 62 + 33 + 48);
}
#endif

// Bytes of Windows-1252: small letter to capital.
std::map<int, int> NarrowPairs() {
    std::map<int, int> pairs;
    for (int c = 'a'; c <= 'z'; ++c) pairs[c] = c - 0x20;
    for (int c = 0xE0; c <= 0xFE; ++c) {
        if (c != 0xF7) pairs[c] = c - 0x20;
    }
    pairs[0x9A] = 0x8A;
    pairs[0x9C] = 0x8C;
    pairs[0xFF] = 0x9F;
    return pairs;
}

int Byte(char c) {
    return static_cast<unsigned char>(c);
}

TEST(TextCase, NarrowMapsTheLettersOfWindows1252ButZWithCaron) {
    const std::map<int, int> pairs = NarrowPairs();
    std::map<int, int> reverse;
    for (const auto& pair : pairs) reverse[pair.second] = pair.first;
    for (int code = 0; code < 256; ++code) {
        const char c = static_cast<char>(code);
        const auto up = pairs.find(code);
        const auto down = reverse.find(code);
        EXPECT_EQ(Byte(UpperChar(c)), up != pairs.end() ? up->second : code) << code;
        EXPECT_EQ(Byte(LowerChar(c)), down != reverse.end() ? down->second : code) << code;
        EXPECT_EQ(IsAlpha(c), up != pairs.end() || down != reverse.end()) << code;
    }
}

TEST(TextCase, NarrowLeavesZWithCaronAndTheSignsAlone) {
    for (const int code : {0x8E, 0x9E, 0xD7, 0xF7, 0xDF}) {
        EXPECT_EQ(Byte(UpperChar(static_cast<char>(code))), code);
        EXPECT_EQ(Byte(LowerChar(static_cast<char>(code))), code);
    }
    EXPECT_EQ(Byte(UpperChar(static_cast<char>(0xFF))), 0x9F);
}

}  // namespace
