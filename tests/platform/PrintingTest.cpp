// The rules of printing that everything above relies on. On Windows the same tests ask the run-time
// itself; what differs between its versions is tested natively only.
#include <gtest/gtest.h>

#include <climits>
#include <clocale>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cwchar>
#include <limits>
#include <string>
#include <vector>

#include <tchar.h>

namespace {

int PrintWide(wchar_t* buffer, std::size_t size, const wchar_t* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const int length = _vsnwprintf(buffer, size, format, arguments);
    va_end(arguments);
    return length;
}

int PrintNarrow(char* buffer, std::size_t size, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const int length = _vsnprintf(buffer, size, format, arguments);
    va_end(arguments);
    return length;
}

template <class... Values>
std::wstring Wide(const wchar_t* format, Values... values) {
    wchar_t buffer[600];
    const int length = PrintWide(buffer, 600, format, values...);
    return length < 0 ? L"(" + std::to_wstring(length) + L")"
                      : std::wstring(buffer, static_cast<std::size_t>(length));
}

template <class... Values>
std::string Narrow(const char* format, Values... values) {
    char buffer[600];
    const int length = PrintNarrow(buffer, 600, format, values...);
    return length < 0 ? "(" + std::to_string(length) + ")"
                      : std::string(buffer, static_cast<std::size_t>(length));
}

TEST(Printing, WideFormatsTakeWideText) {
    EXPECT_EQ(Wide(L"%s|%10s|%-10s|%.2s|%5.1s", L"tie", L"tie", L"tie", L"tie", L"tie"),
              L"tie|       tie|tie       |ti|    t");
    EXPECT_EQ(Wide(L"%ls %S %hs", L"a\u00E4", "b", "c"), L"a\u00E4 b c");
    EXPECT_EQ(Wide(L"%c%C%hc%lc", L'\u00E4', 'b', 'c', L'd'), L"\u00E4bcd");
}

TEST(Printing, NarrowFormatsTakeNarrowText) {
    EXPECT_EQ(Narrow("%s|%5s|%-5s|%.2s", "tie", "tie", "tie", "tie"), "tie|  tie|tie  |ti");
    EXPECT_EQ(Narrow("%S %ls %hs", L"a", L"b", "c"), "a b c");
    EXPECT_EQ(Narrow("%c%C", 'a', L'b'), "ab");
}

TEST(Printing, APrecisionKeepsTextFromBeingReadBeyondIt) {
    const wchar_t open[3] = {L'a', L'b', L'c'};
    const char narrow[2] = {'x', 'y'};
    EXPECT_EQ(Wide(L"%.3s%.2S", open, narrow), L"abcxy");
    EXPECT_EQ(Wide(L"%.*s", 1, open), L"a");
    EXPECT_EQ(Wide(L"<%.0s>", open), L"<>");
}

TEST(Printing, NullTextsPrintAsNull) {
    EXPECT_EQ(Wide(L"%s", static_cast<const wchar_t*>(nullptr)), L"(null)");
    EXPECT_EQ(Narrow("%s", static_cast<const char*>(nullptr)), "(null)");
}

TEST(Printing, LongIntegersHave32Bits) {
    const std::int32_t least = INT_MIN;
    EXPECT_EQ(Wide(L"%ld %li %i %d", least, INT_MAX, -1, 0), L"-2147483648 2147483647 -1 0");
    EXPECT_EQ(Wide(L"%lu %u %lx %X", 4294967295u, 4294967295u, 48879u, 48879u),
              L"4294967295 4294967295 beef BEEF");
}

TEST(Printing, TheArgumentBehindALongIntegerIsFound) {
    EXPECT_EQ(Wide(L"%ld%s%ld", std::int32_t{-1}, L"/", std::int32_t{2}), L"-1/2");
}

TEST(Printing, SizedIntegers) {
    EXPECT_EQ(Wide(L"%I64i %I64d", std::int64_t{INT64_MIN}, std::int64_t{1} << 40),
              L"-9223372036854775808 1099511627776");
    EXPECT_EQ(Wide(L"%I64u %I64x", std::uint64_t{UINT64_MAX}, std::uint64_t{UINT64_MAX}),
              L"18446744073709551615 ffffffffffffffff");
    EXPECT_EQ(Wide(L"%I32d %hd %hu", -5, 65537, 65537), L"-5 1 1");
    EXPECT_EQ(Narrow("%I64i", std::int64_t{-7}), "-7");
}

TEST(Printing, IntegersInFields) {
    EXPECT_EQ(Wide(L"[%5i][%-5i][%05i][%+i][% i]", 42, 42, 42, 42, 42),
              L"[   42][42   ][00042][+42][ 42]");
    EXPECT_EQ(Wide(L"[%05i][%+05i]", -42, 42), L"[-0042][+0042]");
    EXPECT_EQ(Wide(L"[%.4i][%6.4i][%.0i]", 42, -42, 0), L"[0042][ -0042][]");
    EXPECT_EQ(Wide(L"[%*d][%-*d][%*d]", 8, 5, 4, 5, -4, 5), L"[       5][5   ][5   ]");
    EXPECT_EQ(Wide(L"%04x %#x %#X %o %#o", 10u, 255u, 255u, 8u, 8u), L"000a 0xff 0XFF 10 010");
    EXPECT_EQ(Wide(L"%#x %#o", 0u, 0u), L"0 0");
    EXPECT_EQ(Wide(L"%02d:%02i", 7, 12), L"07:12");
}

TEST(Printing, Doubles) {
    EXPECT_EQ(Wide(L"%f|%.3lf|%8.8f|%7.2f|%2.0f|%.0lf", 1.5, -0.0627, 3.14159265358979, 2.345678,
                   7.3, 2.6),
              L"1.500000|-0.063|3.14159265|   2.35| 7|3");
    EXPECT_EQ(Wide(L"%02.3f|%+f|%-9.1f|%09.2f", 0.125, 2.25, 3.14, -3.14),
              L"0.125|+2.250000|3.1      |-00003.14");
    EXPECT_EQ(Wide(L"%g %g %g", 0.5, 100000.0, 25000000.0 / 1e7), L"0.5 100000 2.5");
    EXPECT_EQ(Wide(L"%Lf", 1.5), L"1.500000");
    EXPECT_EQ(Narrow("%.2f", 25000000.123), "25000000.12");
}

TEST(Printing, PercentSignsAndUnknownLettersStandForThemselves) {
    EXPECT_EQ(Wide(L"100%% %i%%", 5), L"100% 5%");
    EXPECT_EQ(Wide(L"%y"), L"y");
}

TEST(Printing, PointersAreSixteenCapitals) {
    EXPECT_EQ(Wide(L"%p", reinterpret_cast<void*>(std::uintptr_t{0xBEEF})), L"000000000000BEEF");
}

TEST(Printing, ShorterThanTheRoomIsTerminated) {
    wchar_t buffer[] = L"######";
    EXPECT_EQ(PrintWide(buffer, 5, L"%s", L"abcd"), 4);
    EXPECT_EQ(std::wstring(buffer, 6), std::wstring(L"abcd\0#", 6));
}

TEST(Printing, AnExactFitIsNotTerminated) {
    wchar_t buffer[] = L"######";
    EXPECT_EQ(PrintWide(buffer, 4, L"%s", L"abcd"), 4);
    EXPECT_EQ(std::wstring(buffer), L"abcd##");
    char narrow[] = "######";
    EXPECT_EQ(PrintNarrow(narrow, 4, "%s", "abcd"), 4);
    EXPECT_EQ(std::string(narrow), "abcd##");
}

TEST(Printing, OverflowIsNegativeAndLeavesTheRoomFilled) {
    wchar_t buffer[] = L"######";
    EXPECT_EQ(PrintWide(buffer, 4, L"%s", L"abcdef"), -1);
    EXPECT_EQ(std::wstring(buffer), L"abcd##");
    char narrow[] = "######";
    EXPECT_EQ(PrintNarrow(narrow, 4, "%i", 123456), -1);
    EXPECT_EQ(std::string(narrow), "1234##");
}

int WideLength(const wchar_t* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const int length = _vscwprintf(format, arguments);
    va_end(arguments);
    return length;
}

int NarrowLength(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const int length = _vscprintf(format, arguments);
    va_end(arguments);
    return length;
}

TEST(Printing, TheLengthCanBeAskedFor) {
    EXPECT_EQ(WideLength(L"%s %i", L"tie", 12), 6);
    EXPECT_EQ(WideLength(L""), 0);
    EXPECT_EQ(NarrowLength("%20s", "a"), 20);
}

#ifndef _WIN32

TEST(Printing, NarrowAndWideCharactersTurnIntoEachOtherByNumber) {
    EXPECT_EQ(Wide(L"%S", "\xE4"), L"\u00E4");
    EXPECT_EQ(Narrow("%S", L"\u00E4\u20AC"), "\xE4?");
}

TEST(Printing, ZerosFillTextToo) {
    EXPECT_EQ(Wide(L"%05s", L"ab"), L"000ab");
}

TEST(Printing, AnEnormousWidthOrPrecisionIsRefusedAtOnce) {
    wchar_t buffer[8];
    EXPECT_EQ(PrintWide(buffer, 8, L"%2147483647d%d", 1, 1), -1);
    EXPECT_EQ(PrintWide(buffer, 8, L"%99999999999999d", 1), -1);
    EXPECT_EQ(PrintWide(buffer, 8, L"%.2147483647d", 1), -1);
    EXPECT_EQ(PrintWide(buffer, 8, L"%*d", INT_MIN, 1), -1);
    EXPECT_EQ(PrintWide(buffer, 8, L"%.2147483647f", 1.0), -1);
}

TEST(Printing, TheLargestAndTheSmallestDoubleAreExact) {
    std::vector<wchar_t> buffer(2000);
    EXPECT_EQ(PrintWide(buffer.data(), buffer.size(), L"%f", std::numeric_limits<double>::max()),
              309 + 7);
    EXPECT_EQ(PrintWide(buffer.data(), buffer.size(), L"%.1074f",
                        std::numeric_limits<double>::denorm_min()),
              2 + 1074);
    EXPECT_EQ(buffer[2 + 1073], L'5');
}

TEST(Printing, WritingThroughAnArgumentIsRefused) {
    int written = 7;
    EXPECT_EQ(Wide(L"abc%n", &written), L"(-1)");
    EXPECT_EQ(written, 7);
}

TEST(Printing, AFormatThatEndsWithinAConversionEndsThere) {
    EXPECT_EQ(Wide(L"a%"), L"a");
    EXPECT_EQ(Wide(L"a%-08.3I64"), L"a");
}

TEST(Printing, TheDecimalPointIsAPointInEveryLocale) {
    const std::string before = std::setlocale(LC_NUMERIC, nullptr);
    for (const char* name : {"fi_FI.UTF-8", "de_DE.UTF-8"}) {
        std::setlocale(LC_NUMERIC, name);
        EXPECT_EQ(Wide(L"%.1f", 0.5), L"0.5");
        EXPECT_EQ(_wtof(L"0.5"), 0.5);
    }
    std::setlocale(LC_NUMERIC, before.c_str());
}

TEST(Printing, ALongDoubleOfThisMachineIsNotMeantByL) {
    EXPECT_EQ(Wide(L"%.2Lf %i", 0.25, 3), L"0.25 3");
}

// Every integer conversion against the machine's own, whose rules are the same for these.
TEST(Printing, IntegersAgreeWithTheMachinesOwnPrinting) {
    const std::vector<std::string> flags = {"",   "-",  "0",  "+",  " ", "#",
                                            "-0", "+0", "#0", "- ", "+-"};
    const std::vector<std::string> fields = {"", "1", "5", "12", ".0", ".3", "8.3", "3.8"};
    for (const std::string& flag : flags) {
        for (const std::string& field : fields) {
            for (const char kind : {'d', 'i', 'u', 'o', 'x', 'X'}) {
                const std::string format = "%" + flag + field + kind;
                const std::wstring wide(format.begin(), format.end());
                for (const int number : {0, 1, -1, 7, 42, -300, INT_MAX, INT_MIN}) {
                    char expected[64];
                    std::snprintf(expected, sizeof expected, format.c_str(), number);
                    EXPECT_EQ(Narrow(format.c_str(), number), expected) << format;
                    const std::string narrow = expected;
                    EXPECT_EQ(Wide(wide.c_str(), number),
                              std::wstring(narrow.begin(), narrow.end()))
                        << format;
                }
            }
        }
    }
}

TEST(Printing, DoublesAgreeWithTheMachinesOwnPrinting) {
    const std::vector<std::string> flags = {"", "-", "0", "+", " ", "#", "-0", "+0"};
    const std::vector<std::string> fields = {"", "1", "20", ".0", ".3", "12.3", "3.8"};
    for (const std::string& flag : flags) {
        for (const std::string& field : fields) {
            for (const char kind : {'f', 'F', 'e', 'E', 'g', 'G', 'a', 'A'}) {
                const std::string format = "%" + flag + field + kind;
                for (const double number : {0.0, -0.0, 1.0, -1.5, 3.14159265358979, 25000000.123,
                                            1e-9, 1e300, std::numeric_limits<double>::infinity()}) {
                    char expected[400];
                    std::snprintf(expected, sizeof expected, format.c_str(), number);
                    EXPECT_EQ(Narrow(format.c_str(), number), expected) << format;
                }
            }
        }
    }
}

#endif

}  // namespace
