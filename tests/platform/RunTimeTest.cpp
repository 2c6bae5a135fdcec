#include <gtest/gtest.h>

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <string>

#include <tchar.h>
#include <windows.h>

namespace {

int Sign(int value) {
    return value < 0 ? -1 : value > 0 ? 1 : 0;
}

TEST(RunTime, WideComparisonsIgnoreTheCaseOfAscii) {
    EXPECT_EQ(_wcsicmp(L"Katu", L"kATU"), 0);
    EXPECT_EQ(Sign(_wcsicmp(L"katu", L"KUJA")), -1);
    EXPECT_EQ(Sign(_wcsicmp(L"katua", L"KATU")), 1);
    EXPECT_EQ(Sign(_wcsicmp(L"_", L"A")), -1);  // compared as small letters
    EXPECT_EQ(_wcsnicmp(L"katuA", L"KATUB", 4), 0);
    EXPECT_EQ(Sign(_wcsnicmp(L"katuA", L"KATUB", 5)), -1);
    EXPECT_EQ(_wcsnicmp(L"a", L"b", 0), 0);
}

TEST(RunTime, NarrowComparisonsIgnoreTheCaseOfAscii) {
    EXPECT_EQ(_stricmp("Katu", "kATU"), 0);
    EXPECT_EQ(_strnicmp("katuA", "KATUB", 4), 0);
    EXPECT_EQ(Sign(_strnicmp("katuA", "KATUB", 5)), -1);
}

TEST(RunTime, NumbersAreReadFromTheStartOfAText) {
    EXPECT_EQ(_wtof(L"12.5"), 12.5);
    EXPECT_EQ(_wtof(L"  -1e3abc"), -1000.0);
    EXPECT_EQ(_wtof(L"abc"), 0.0);
    EXPECT_EQ(_wtof(L""), 0.0);
    EXPECT_EQ(_wtof(L"1,5"), 1.0);
    EXPECT_EQ(_wtoi(L" 42x"), 42);
    EXPECT_EQ(_wtoi(L"x"), 0);
}

TEST(RunTime, OnlyDecimalNumbersAreRead) {
    for (const wchar_t* const text : {L"inf", L"-infinity", L"nan", L"nan(1)", L"0x10", L"0x1p3"}) {
        EXPECT_EQ(_wtof(text), 0.0) << std::string(text, text + std::wcslen(text));
    }
    EXPECT_EQ(_wtof(L"1#INF"), 1.0);
    for (const wchar_t* const text : {L".", L"-", L"+ 5", L"--5", L"e5", L".e5"}) {
        EXPECT_EQ(_wtof(text), 0.0) << std::string(text, text + std::wcslen(text));
    }
}

TEST(RunTime, EveryFormOfADecimalNumberIsRead) {
    EXPECT_EQ(_wtof(L".5"), 0.5);
    EXPECT_EQ(_wtof(L"5."), 5.0);
    EXPECT_EQ(_wtof(L"+5.25"), 5.25);
    EXPECT_EQ(_wtof(L"-.5e1"), -5.0);
    EXPECT_EQ(_wtof(L"1.e2"), 100.0);
    EXPECT_EQ(_wtof(L"1d5"), 100000.0);
    EXPECT_EQ(_wtof(L"1D-2"), 0.01);
    EXPECT_EQ(_wtof(L"1e"), 1.0);
    EXPECT_EQ(_wtof(L"1e+"), 1.0);
    EXPECT_EQ(_wtof(L"1.5.5"), 1.5);
    EXPECT_EQ(_wtof(L"9007199254740993"), 9007199254740992.0);
    EXPECT_EQ(_wtof(L"4.9e-324"), 4.9406564584124654e-324);
    EXPECT_TRUE(std::signbit(_wtof(L"-0")));
}

TEST(RunTime, NumbersBeyondTheRangeAreInfiniteOrZero) {
    EXPECT_EQ(_wtof(L"1e400"), HUGE_VAL);
    EXPECT_EQ(_wtof(L"-1e400"), -HUGE_VAL);
    EXPECT_EQ(_wtof(L"1e99999999999"), HUGE_VAL);
    EXPECT_EQ(_wtof(L"1e-400"), 0.0);
    EXPECT_EQ(_wtof(L"1e00000000000000000001"), 10.0);
}

TEST(RunTime, BlanksOfEveryKindStandBeforeANumber) {
    EXPECT_EQ(_wtof(L" \t\n\v\f\r5"), 5.0);
    EXPECT_EQ(_wtof(L"\u00A0\u2003\u3000-5"), -5.0);
    EXPECT_EQ(_wtof(L"\u200B5"), 0.0);
}

TEST(RunTime, ADuplicateIsAnOwnCopy) {
    const wchar_t text[] = L"tie";
    wchar_t* const copy = _wcsdup(text);
    ASSERT_NE(copy, nullptr);
    EXPECT_NE(copy, text);
    EXPECT_EQ(std::wstring(copy), text);
    std::free(copy);
}

TEST(RunTime, AFileIsOpenedByAWidePathWithEitherSeparator) {
    const wchar_t* const name = L".\\run_time_\u00E4\u00F6.txt";
    std::FILE* file = _wfopen(name, L"wb");
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(std::fputs("abc", file), std::fputs("", file));
    std::fclose(file);
    file = _wfopen(L"./run_time_\u00E4\u00F6.txt", L"rb");
    ASSERT_NE(file, nullptr);
    char text[8] = {};
    EXPECT_EQ(std::fread(text, 1, sizeof text, file), 3u);
    EXPECT_STREQ(text, "abc");
    std::fclose(file);
#ifdef _WIN32
    EXPECT_EQ(_wunlink(name), 0);
#else
    EXPECT_EQ(std::remove("./run_time_\xC3\xA4\xC3\xB6.txt"), 0);
#endif
}

TEST(RunTime, AMissingFileIsErrorTwo) {
    errno = 0;
    EXPECT_EQ(_wfopen(L".\\no_such_file_here", L"rb"), nullptr);
    EXPECT_EQ(errno, 2);
}

#ifndef _WIN32
TEST(RunTime, AnUncodablePathIsRefused) {
    for (const wchar_t bad : {static_cast<wchar_t>(0xD800), static_cast<wchar_t>(0x110000)}) {
        const std::wstring path = {L'a', bad};
        errno = 0;
        EXPECT_EQ(_wfopen(path.c_str(), L"rb"), nullptr);
        EXPECT_EQ(errno, EILSEQ);
    }
}

TEST(RunTime, PathsOfEveryPlaneAreCoded) {
    const std::wstring path = {L'x', static_cast<wchar_t>(0x20AC), static_cast<wchar_t>(0x1F600)};
    std::FILE* const file = _wfopen(path.c_str(), L"wt");
    ASSERT_NE(file, nullptr);
    std::fclose(file);
    EXPECT_EQ(std::remove("x\xE2\x82\xAC\xF0\x9F\x98\x80"), 0);
}
#endif

TEST(System, TheLastErrorIsKept) {
    SetLastError(5);
    EXPECT_EQ(GetLastError(), 5u);
    SetLastError(0);
    EXPECT_EQ(GetLastError(), 0u);
}

std::wstring MessageOf(DWORD code) {
    LPWSTR text = nullptr;
    const DWORD length =
        FormatMessageW(0x1300, nullptr, code, 0x400, reinterpret_cast<LPWSTR>(&text), 0, nullptr);
    const std::wstring message = text != nullptr ? text : L"";
    EXPECT_EQ(message.size(), length);
    EXPECT_EQ(LocalFree(text), nullptr);
    return message;
}

TEST(System, MessagesOfKnownErrorsEndTheirLine) {
    for (const DWORD code : {0u, 2u, 5u, 8u, 87u}) {
        const std::wstring message = MessageOf(code);
        ASSERT_GT(message.size(), 2u) << code;
        EXPECT_EQ(message.substr(message.size() - 2), L"\r\n") << code;
    }
}

TEST(System, AnUnknownErrorHasNoMessage) {
    EXPECT_EQ(MessageOf(0x2FFFFFFF), L"");
    MessageOf(0x2FFFFFFF);
    EXPECT_EQ(GetLastError(), 317u);
}

TEST(System, AMessageGoesIntoABufferOfTheCaller) {
    wchar_t buffer[200];
    EXPECT_GT(FormatMessageW(0x1200, nullptr, 2, 0x400, buffer, 200, nullptr), 0u);
    EXPECT_EQ(FormatMessageW(0x1200, nullptr, 2, 0x400, buffer, 3, nullptr), 0u);
    EXPECT_EQ(GetLastError(), 122u);
}

TEST(System, TheMemoryHasAPlausibleSize) {
    MEMORYSTATUS status{};
    status.dwLength = sizeof status;
    GlobalMemoryStatus(&status);
    EXPECT_LE(status.dwMemoryLoad, 100u);
    EXPECT_GT(status.dwTotalPhys, SIZE_T{64} << 20);
    EXPECT_LE(status.dwAvailPhys, status.dwTotalPhys);
    EXPECT_LE(status.dwAvailPageFile, status.dwTotalPageFile);
    EXPECT_LT(status.dwAvailVirtual, status.dwTotalVirtual);
    EXPECT_GT(status.dwAvailVirtual, 0u);
}

TEST(System, LocalMemoryIsZeroedOnRequest) {
    const HLOCAL block = LocalAlloc(66, 100);
    ASSERT_NE(block, nullptr);
    const auto* const bytes = static_cast<const unsigned char*>(LocalLock(block));
    for (int i = 0; i < 100; ++i) EXPECT_EQ(bytes[i], 0);
    LocalUnlock(block);
    EXPECT_EQ(LocalFree(block), nullptr);
    EXPECT_EQ(LocalFree(nullptr), nullptr);
}

}  // namespace
