#include "datastruct/StringPrint.h"

#include <gtest/gtest.h>

#include <string>

using namespace TamLib;

namespace {

TEST(PrintLimited, AShorterTextIsTerminatedAndItsLengthGiven) {
    wchar_t buffer[] = L"########";
    EXPECT_EQ(PrintLimited(buffer, 8, L"%s-%i", L"ab", 12), 5);
    EXPECT_EQ(std::wstring(buffer, 8), std::wstring(L"ab-12\0##", 8));
    char narrow[] = "########";
    EXPECT_EQ(PrintLimited(narrow, 8, "%s-%i", "ab", 12), 5);
    EXPECT_EQ(std::string(narrow), "ab-12");
}

TEST(PrintLimited, AnExactFitHasNoTerminator) {
    wchar_t buffer[] = L"########";
    EXPECT_EQ(PrintLimited(buffer, 5, L"%s-%i", L"ab", 12), 5);
    EXPECT_EQ(std::wstring(buffer), L"ab-12###");
    char narrow[] = "########";
    EXPECT_EQ(PrintLimited(narrow, 5, "%s-%i", "ab", 12), 5);
    EXPECT_EQ(std::string(narrow), "ab-12###");
}

TEST(PrintLimited, OverflowIsTerminatedAndGivesTheNextEstimate) {
    wchar_t buffer[] = L"########";
    EXPECT_EQ(PrintLimited(buffer, 4, L"%s-%i", L"ab", 12), 4 * 13 / 10 + 3);
    EXPECT_EQ(std::wstring(buffer, 8), std::wstring(L"ab-\0####", 8));
    wchar_t large[1000];
    for (const std::size_t size : {1u, 2u, 9u, 10u, 11u, 600u, 999u}) {
        EXPECT_EQ(PrintLimited(large, size, L"%1000i", 1), static_cast<int>(size * 13 / 10 + 3));
        EXPECT_EQ(large[size - 1], L'\0');
    }
    char narrow[] = "########";
    EXPECT_EQ(PrintLimited(narrow, 4, "%s-%i", "ab", 12), 8);
    EXPECT_EQ(std::string(narrow), "ab-");
}

TEST(PrintLimited, WithoutRoomNothingIsWritten) {
    wchar_t buffer[] = L"##";
    EXPECT_EQ(PrintLimited(buffer, 0, L"abc"), 3);
    EXPECT_EQ(PrintLimited(static_cast<wchar_t*>(nullptr), 0, L"abc"), 3);
    EXPECT_EQ(PrintLimited(buffer, 0, L"%s", L""), 0);
    EXPECT_EQ(std::wstring(buffer), L"##");
    EXPECT_EQ(PrintLimited(static_cast<char*>(nullptr), 0, "abc"), 3);
}

TEST(PrintWithin, ABufferOfOneMoreHoldsTheWholeLength) {
    wchar_t buffer[5];
    EXPECT_EQ(std::wstring(PrintWithin(buffer, L"%s", L"abc")), L"abc");
    EXPECT_EQ(std::wstring(PrintWithin(buffer, L"%s", L"abcd")), L"abcd");
    EXPECT_EQ(std::wstring(PrintWithin(buffer, L"%s", L"abcde")), L"abcd");  // the exact fit
    EXPECT_EQ(std::wstring(PrintWithin(buffer, L"%s", L"abcdefgh")), L"abcd");
    char narrow[3];
    EXPECT_EQ(std::string(PrintWithin(narrow, "%i", 123)), "12");
}

TEST(CopyLimited, GivesTheSourcesLengthAndAlwaysTerminates) {
    wchar_t target[] = L"######";
    EXPECT_EQ(CopyLimited(target, L"abc", 5), 3u);
    EXPECT_EQ(std::wstring(target, 6), std::wstring(L"abc\0##", 6));
    EXPECT_EQ(CopyLimited(target, L"12345678", 5), 8u);
    EXPECT_EQ(std::wstring(target, 6), std::wstring(L"1234\0#", 6));
    EXPECT_EQ(CopyLimited(target, L"vwxyz", 5), 5u);  // one too many for the terminator
    EXPECT_EQ(std::wstring(target), L"vwxy");
    EXPECT_EQ(CopyLimited(target, L"q", 1), 1u);
    EXPECT_EQ(std::wstring(target), L"");
}

TEST(CopyLimited, WithoutRoomCopiesNothing) {
    char target[] = "##";
    EXPECT_EQ(CopyLimited(target, "abc", 0), 3u);
    EXPECT_STREQ(target, "##");
}

TEST(AppendLimited, GoesBehindTheTerminatorWithinTheWholeRoom) {
    wchar_t target[10] = L"abc";
    EXPECT_EQ(AppendLimited(target, L"de", 10), 2u);
    EXPECT_EQ(std::wstring(target), L"abcde");
    EXPECT_EQ(AppendLimited(target, L"fghijkl", 10), 7u);
    EXPECT_EQ(std::wstring(target), L"abcdefghi");
    EXPECT_EQ(AppendLimited(target, L"x", 10), 1u);
    EXPECT_EQ(std::wstring(target), L"abcdefghi");
    EXPECT_EQ(AppendLimited(target, L"", 10), 0u);
    EXPECT_EQ(std::wstring(target), L"abcdefghi");
}

TEST(AppendLimited, ATargetWithoutATerminatorInItsRoomStays) {
    char target[] = "abcd";
    EXPECT_EQ(AppendLimited(target, "xy", 3), 2u);
    EXPECT_STREQ(target, "abcd");
}

}  // namespace
