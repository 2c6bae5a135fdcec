#include "host/dxf/CodePage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>

#include "host/dxf/CodePageTables.h"
#include "host/dxf/DoubleByte.h"
#include "host/dxf/Utf8.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <iconv.h>
#endif

namespace host::dxf {
namespace {

int numberOf(std::string_view name) {
    const CodePage* page = findCodePage(name);
    return page == nullptr ? 0 : page->number;
}

std::wstring decoded(std::string_view bytes, std::string_view page) {
    return decodeText(bytes, findCodePage(page));
}

std::string encoded(std::wstring_view text, std::string_view page) {
    return encodeText(text, findCodePage(page));
}

// What the system's own converter makes of one byte; 0 when nothing.
char32_t systemDecode(int page, unsigned char byte) {
#ifdef _WIN32
    const char one = static_cast<char>(byte);
    wchar_t wide[2] = {};
    const int units =
        MultiByteToWideChar(static_cast<UINT>(page), MB_ERR_INVALID_CHARS, &one, 1, wide, 2);
    return units == 1 ? wide[0] : 0;
#else
    std::string name = "CP" + std::to_string(page);
    if (page == 10000) name = "MACINTOSH";
    if (page > 28590) name = "ISO-8859-" + std::to_string(page - 28590);
    const iconv_t converter = iconv_open("UTF-32LE", name.c_str());
    if (converter == reinterpret_cast<iconv_t>(-1)) return 0;
    char in = static_cast<char>(byte);
    char32_t out = 0;
    char* from = &in;
    char* to = reinterpret_cast<char*>(&out);
    std::size_t fromLeft = 1;
    std::size_t toLeft = sizeof(out);
    const std::size_t result = iconv(converter, &from, &fromLeft, &to, &toLeft);
    iconv(converter, nullptr, nullptr, &to, &toLeft);
    iconv_close(converter);
    return result == static_cast<std::size_t>(-1) ? 0 : out;
#endif
}

TEST(CodePage, NamesOfDrawingsAreUnderstood) {
    EXPECT_EQ(numberOf("ANSI_1252"), 1252);
    EXPECT_EQ(numberOf("ansi_1252"), 1252);
    EXPECT_EQ(numberOf("ANSI_874"), 874);
    EXPECT_EQ(numberOf("ANSI_932"), 932);
    EXPECT_EQ(numberOf("ANSI_936"), 936);
    EXPECT_EQ(numberOf("ANSI_949"), 949);
    EXPECT_EQ(numberOf("ANSI_950"), 950);
    for (int page = 1250; page <= 1258; ++page) {
        EXPECT_EQ(numberOf("ANSI_" + std::to_string(page)), page);
    }
    EXPECT_EQ(numberOf("dos850"), 850);
    EXPECT_EQ(numberOf("DOS437"), 437);
    EXPECT_EQ(numberOf("MAC-ROMAN"), 10000);
    EXPECT_EQ(numberOf("ISO8859_1"), 28591);
    EXPECT_EQ(numberOf("8859_1"), 28591);
    EXPECT_EQ(numberOf("ISO8859_15"), 28605);
    EXPECT_EQ(numberOf("GB2312"), 936);
    EXPECT_EQ(numberOf("BIG5"), 950);
    EXPECT_EQ(numberOf("KSC5601"), 949);
    EXPECT_EQ(numberOf("JOHAB"), 1361);
    EXPECT_EQ(numberOf("ASCII"), 1252);
    EXPECT_EQ(numberOf("UNDEFINED"), 1252);
    EXPECT_EQ(numberOf(""), 1252);
    for (const char* unknown : {"KOI-8", "ANSI_", "ANSI_0", "ANSI_1", "ANSI_125x", "ANSI_999999999",
                                "1252", "ISO8859_99", "dos"}) {
        EXPECT_EQ(numberOf(unknown), 0) << unknown;
    }
}

TEST(CodePage, EachPageHasItsKnownCharacters) {
    EXPECT_EQ(decoded("H\xE4me \x80", "ANSI_1252"), L"H\u00E4me \u20AC");
    EXPECT_EQ(decoded("H\x84me \x9B", "dos850"), L"H\u00E4me \u00F8");
    EXPECT_EQ(decoded("H\x84me \x9B", "dos437"), L"H\u00E4me \u00A2");
    EXPECT_EQ(decoded("H\x8Ame", "MAC-ROMAN"), L"H\u00E4me");
    EXPECT_EQ(decoded("\xD3\xEB\xE8\xF6\xE0", "ANSI_1251"), L"\u0423\u043B\u0438\u0446\u0430");
    EXPECT_EQ(decoded("\xA1", "ANSI_874"), L"\u0E01");
    EXPECT_EQ(decoded("\xE8", "ANSI_1250"), L"\u010D");
    EXPECT_EQ(decoded("\xE1", "ANSI_1253"), L"\u03B1");
    EXPECT_EQ(decoded("\xFD", "ANSI_1254"), L"\u0131");
    EXPECT_EQ(decoded("\xE0", "ANSI_1255"), L"\u05D0");
    EXPECT_EQ(decoded("\xC7", "ANSI_1256"), L"\u0627");
    EXPECT_EQ(decoded("\xEB", "ANSI_1257"), L"\u0117");
    EXPECT_EQ(decoded("\xFD", "ANSI_1258"), L"\u01B0");
    EXPECT_EQ(decoded("\xE4\xA4", "ISO8859_1"), L"\u00E4\u00A4");
    EXPECT_EQ(decoded("\xE4\xA4", "ISO8859_15"), L"\u00E4\u20AC");
    EXPECT_EQ(decoded("\x81", "ANSI_1252"), L"\uFFFD");  // nothing has that place
}

// Places that the editions of a page's standard fill differently: omega, delta, euro and apple of
// Mac Roman, quotation marks of the Greek page, the overline of the Hebrew one.
bool isDisputed(int page, unsigned byte) {
    return (page == 10000 && (byte == 0xBD || byte == 0xC6 || byte == 0xDB || byte == 0xF0)) ||
           (page == 28597 && (byte == 0xA1 || byte == 0xA2)) || (page == 28598 && byte == 0xAF);
}

// The characters of the system's converter are those of our tables, wherever both have one.
TEST(CodePage, TablesAgreeWithTheSystemsConverter) {
    int compared = 0;
    for (std::size_t at = 0; at < kSingleBytePageCount; ++at) {
        const SingleBytePage& page = kSingleBytePages[at];
        for (unsigned byte = 0x80; byte < 0x100; ++byte) {
            const char32_t ours = page.upper[byte - 0x80];
            const char32_t theirs = systemDecode(page.number, static_cast<unsigned char>(byte));
            if (ours == utf8::kReplacement || theirs == 0) continue;
            EXPECT_TRUE(ours == theirs || isDisputed(page.number, byte))
                << page.number << " " << byte;
            ++compared;
        }
    }
    EXPECT_GT(compared, 128 * 15);
}

TEST(CodePage, EncodingIsTheReverseOfDecoding) {
    for (std::size_t at = 0; at < kSingleBytePageCount; ++at) {
        const CodePage page{kSingleBytePages[at].number, kSingleBytePages[at].upper};
        std::string bytes;
        for (unsigned byte = 0x20; byte < 0x100; ++byte) {
            const bool has = byte < 0x80 || page.upper[byte - 0x80] != utf8::kReplacement;
            if (has) bytes += static_cast<char>(byte);
        }
        EXPECT_EQ(encodeText(decodeText(bytes, &page), &page), bytes) << page.number;
    }
}

TEST(CodePage, DoubleBytePagesDecodeTheirCharacters) {
    EXPECT_EQ(decoded("\x93\x8C\x8B\x9E", "ANSI_932"), L"\u6771\u4EAC");
    EXPECT_EQ(decoded("\xB1", "ANSI_932"), L"\uFF71");  // of one byte, above 7F
    EXPECT_EQ(decoded("\xB1\xB1\xBE\xA9", "ANSI_936"), L"\u5317\u4EAC");
    EXPECT_EQ(decoded("\xBC\xAD\xBF\xEF", "ANSI_949"), L"\uC11C\uC6B8");
    EXPECT_EQ(decoded("\xA5\x78\xA5\x5F", "ANSI_950"), L"\u53F0\u5317");
    EXPECT_EQ(decoded("abc", "ANSI_932"), L"abc");
}

TEST(CodePage, ABackslashWithinADoubleByteCharacterBeginsNoEscape) {
    // U+8868 is 95 5C in page 932: its second byte is the backslash.
    EXPECT_EQ(decoded("\x95\x5CU+0041", "ANSI_932"), L"\u8868U+0041");
}

TEST(CodePage, WhatIsNoDoubleByteCharacterIsReplacedByteByByte) {
    EXPECT_EQ(decoded("\x93", "ANSI_932"), L"\uFFFD");
    EXPECT_EQ(decoded("\x93 x", "ANSI_932"), L"\uFFFD x");
}

TEST(CodePage, DoubleByteTextsAreEncodedByEscapes) {
    EXPECT_EQ(encoded(L"a\u6771", "ANSI_932"), "a\\U+6771");
    EXPECT_EQ(decoded(encoded(L"a\u6771", "ANSI_932"), "ANSI_932"), L"a\u6771");
}

TEST(CodePage, UnicodeEscapesAreReplaced) {
    EXPECT_EQ(decoded("\\U+00C4yri", "ANSI_1252"), L"\u00C4yri");
    EXPECT_EQ(decoded("\\U+00c4\\U+00e4", "ANSI_1252"), L"\u00C4\u00E4");
    EXPECT_EQ(decodeText("\\U+0416\xC3\xA4", nullptr), L"\u0416\u00E4");
}

TEST(CodePage, EscapesThatAreNoneStayAsTheyAre) {
    for (const char* text : {"\\U+00C", "\\U+00CG", "\\u+00C4", "U+00C4", "\\U00C4", "\\", "\\U+",
                             "\\M+", "\\M+0887A", "\\M+6887A", "\\M+1887", "\\P"}) {
        EXPECT_EQ(decoded(text, "ANSI_1252"), std::wstring(text, text + std::string(text).size()));
    }
}

TEST(CodePage, MultiByteEscapesNameTheirPage) {
    EXPECT_EQ(decoded("\\M+1938C", "ANSI_1252"), L"\u6771");
    EXPECT_EQ(decoded("\\M+2A578", "ANSI_1252"), L"\u53F0");
    EXPECT_EQ(decoded("\\M+3BCAD", "ANSI_1252"), L"\uC11C");
    EXPECT_EQ(decoded("\\M+5B1B1x", "ANSI_1252"), L"\u5317x");
    EXPECT_EQ(decoded("\\M+100B1", "ANSI_1252"), L"\uFF71");
}

TEST(CodePage, SurrogatePairsOfEscapesAreOneCharacter) {
    std::wstring face;
    utf8::append(face, 0x1F600);
    EXPECT_EQ(decoded("\\U+D83D\\U+DE00", "ANSI_1252"), face);
    EXPECT_EQ(decodeText("\xF0\x9F\x98\x80", nullptr), face);
    EXPECT_EQ(encoded(face, "ANSI_1252"), "\\U+D83D\\U+DE00");
    EXPECT_EQ(encodeText(face, nullptr), "\xF0\x9F\x98\x80");
    EXPECT_EQ(decoded("\\U+D83Dx", "ANSI_1252"), L"\uFFFDx");
    EXPECT_EQ(decoded("\\U+DE00", "ANSI_1252"), L"\uFFFD");
}

TEST(CodePage, AsciiIsTheSameInEveryPageAloneAndBesideOtherCharacters) {
    std::string ascii;
    std::wstring wide;
    for (char c = 1; c > 0; c = static_cast<char>(c + 1)) {
        if (c == '\\') continue;
        ascii += c;
        wide += static_cast<wchar_t>(c);
        if (c == 127) break;
    }
    std::vector<const CodePage*> pages{nullptr};
    for (const char* name : {"ANSI_1252", "ANSI_1251", "ANSI_932", "ANSI_949", "ANSI_950",
                             "ANSI_936", "DOS850", "MACINTOSH"}) {
        pages.push_back(findCodePage(name));
        EXPECT_NE(pages.back(), nullptr) << name;
    }
    for (const CodePage* page : pages) {
        EXPECT_EQ(decodeText(ascii, page), wide);
        EXPECT_EQ(decodeText(ascii + "\\U+00E4", page), wide + L'\u00E4');
        EXPECT_EQ(decodeText("\xFF" + ascii, page).substr(1), wide);
    }
}

TEST(CodePage, InvalidUtf8IsReplacedByteByByte) {
    EXPECT_EQ(decodeText("H\xE4me", nullptr), L"H\uFFFDme");
    EXPECT_EQ(decodeText("\xC3", nullptr), L"\uFFFD");
    EXPECT_EQ(decodeText("\xC0\x80", nullptr), L"\uFFFD\uFFFD");            // overlong
    EXPECT_EQ(decodeText("\xED\xA0\x80", nullptr), L"\uFFFD\uFFFD\uFFFD");  // a surrogate
}

TEST(CodePage, Utf8KnowsItsBounds) {
    const std::pair<const char*, std::size_t> kCases[] = {{"", 0},
                                                          {"a", 1},
                                                          {"\x7F", 1},
                                                          {"\x80", 0},
                                                          {"\xC1\xBF", 0},
                                                          {"\xC2\x80", 2},
                                                          {"\xDF\xBF", 2},
                                                          {"\xE0\x9F\xBF", 0},
                                                          {"\xE0\xA0\x80", 3},
                                                          {"\xED\x9F\xBF", 3},
                                                          {"\xED\xA0\x80", 0},
                                                          {"\xEE\x80\x80", 3},
                                                          {"\xF0\x8F\xBF\xBF", 0},
                                                          {"\xF0\x90\x80\x80", 4},
                                                          {"\xF4\x8F\xBF\xBF", 4},
                                                          {"\xF4\x90\x80\x80", 0},
                                                          {"\xF5\x80\x80\x80", 0},
                                                          {"\xE0\xA0", 0},
                                                          {"\xC2x", 0}};
    for (const auto& [bytes, length] : kCases) {
        EXPECT_EQ(utf8::sequenceLength(bytes), length) << bytes;
    }
    for (char32_t c = 1; c <= 0x10FFFF; c += 97) {
        if (c >= 0xD800 && c <= 0xDFFF) continue;
        std::string bytes;
        utf8::append(bytes, c);
        ASSERT_EQ(utf8::sequenceLength(bytes), bytes.size());
        ASSERT_EQ(utf8::decodeOne(bytes, bytes.size()), c);
    }
}

}  // namespace
}  // namespace host::dxf
