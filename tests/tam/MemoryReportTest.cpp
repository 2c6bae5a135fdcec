#include <gtest/gtest.h>

#include <regex>
#include <string>

#include <tchar.h>
#include <windows.h>
#ifndef _WIN32
#include <Headless.h>
#endif

#include "tam/TamExceptions.h"

using namespace TamLib;

namespace {

const wchar_t* const source = L"datastruct/Array";

// The text of an error as the report is to show it, without line ends.
std::wstring ErrorText(DWORD code) {
    wchar_t buffer[500];
    const DWORD length = FormatMessageW(0x1200, nullptr, code, 0x400, buffer, 500, nullptr);
    std::wstring text;
    for (DWORD i = 0; i < length; ++i) {
        if (buffer[i] != L'\r' && buffer[i] != L'\n') text += buffer[i];
    }
    return text;
}

// The report of any machine: each line's words stand, its numbers may be any.
std::wstring Pattern() {
    const std::wstring amount = L" {0,7}-?[0-9]+ MB ";
    return L"[0-9]+ percent of memory is in use\\.\n" + amount + L"total physical memory\\.\n" +
           amount + L"of physical memory free\\.\n" + amount + L"total paging file size\\.\n" +
           amount + L"of paging file free\\.\n" + amount + L"total virtual memory\\.\n" + amount +
           L"of virtual memory free\\.\n\nWIN32 last error code was:\n   [^\n]*\n\n\n\n";
}

TEST(MemoryReport, FollowsTheMessageWithoutASeparator) {
    SetLastError(2);
    const TamExpNoMem exception(L"Old size was 7 bytes.", 826, source);
    const std::wstring message = exception.message;
    const std::wstring start = L"Old size was 7 bytes.";
    ASSERT_EQ(message.substr(0, start.size()), start);
    EXPECT_TRUE(std::regex_match(message.substr(start.size()), std::wregex(Pattern())))
        << message.c_str();
    const std::wstring tail = L"WIN32 last error code was:\n   " + ErrorText(2) + L"\n\n\n\n";
    ASSERT_GT(message.size(), tail.size());
    EXPECT_EQ(message.substr(message.size() - tail.size()), tail);
    EXPECT_EQ(exception.line, 826);
    EXPECT_EQ(exception.file, source);
}

TEST(MemoryReport, AmountsAreEightWideInMegabytes) {
    MEMORYSTATUS status{};
    status.dwLength = sizeof status;
    GlobalMemoryStatus(&status);
    const TamExpNoMem exception(L"", 1, source);
    wchar_t line[100];
    _snwprintf(line, 100, L".\n%8i MB total physical memory.\n",
               static_cast<std::int32_t>(status.dwTotalPhys >> 20));
    EXPECT_NE(std::wstring(exception.message).find(line), std::wstring::npos);
}

TEST(MemoryReport, ACopyDoesNotReportAgain) {
    const TamExpNoMem original(L"x", 1, source);
    const TamExpNoMem copy(original);  // NOLINT(performance-unnecessary-copy-initialization)
    EXPECT_EQ(std::wstring(copy.message), original.message);
    try {
        throw original;
    } catch (const TamExpNoMem& caught) {
        EXPECT_EQ(std::wstring(caught.message), original.message);
    }
}

TEST(MemoryReport, CanBeAppendedToAnyExceptionAndAgain) {
    TamExpUser exception(L"user", 1, source);
    AppendMemoryReport(exception);
    AppendMemoryReport(exception);
    EXPECT_TRUE(std::regex_match(std::wstring(exception.message),
                                 std::wregex(L"user" + Pattern() + Pattern())));
}

TEST(MemoryReport, IsCutAtTheRoomOfTheMessage) {
    const std::wstring message(2030, L'm');
    const TamExpNoMem exception(message.c_str(), 1, source);
    const std::wstring result = exception.message;
    EXPECT_EQ(result.size(), 2047u);
    EXPECT_EQ(result.substr(0, 2030), message);
    const std::wstring full(2047, L'm');
    EXPECT_EQ(std::wstring(TamExpNoMem(full.c_str(), 1, source).message), full);
}

#ifndef _WIN32

TEST(MemoryReport, CharacterByCharacter) {
    MEMORYSTATUS settled{};
    settled.dwMemoryLoad = 37;
    settled.dwTotalPhys = SIZE_T{16384} << 20;
    settled.dwAvailPhys = (SIZE_T{1} << 20) - 1;        // below one megabyte: 0
    settled.dwTotalPageFile = (SIZE_T{2} << 20) + 5;    // rest dropped
    settled.dwAvailPageFile = SIZE_T{123456789} << 20;  // wider than the field
    settled.dwTotalVirtual = SIZE_T{1} << 47;
    settled.dwAvailVirtual = SIZE_T{0x80000000u} << 20;  // taken as 32 bits with a sign
    headless::SetMemoryStatus(settled);
    SetLastError(8);
    const TamExpNoMem exception(L"Out.", 1, source);
    headless::SetMemoryStatus(std::nullopt);
    EXPECT_EQ(std::wstring(exception.message),
              L"Out.37 percent of memory is in use.\n"
              L"   16384 MB total physical memory.\n"
              L"       0 MB of physical memory free.\n"
              L"       2 MB total paging file size.\n"
              L"123456789 MB of paging file free.\n"
              L"134217728 MB total virtual memory.\n"
              L"-2147483648 MB of virtual memory free.\n\n"
              L"WIN32 last error code was:\n"
              L"   Not enough memory resources are available to process this command.\n\n"
              L"\n\n");
}

TEST(MemoryReport, AnErrorWithoutATextLeavesItsLineEmpty) {
    SetLastError(0x2FFFFFFF);
    const TamExpNoMem exception(L"", 1, source);
    const std::wstring message = exception.message;
    const std::wstring tail = L"WIN32 last error code was:\n   \n\n\n\n";
    EXPECT_EQ(message.substr(message.size() - tail.size()), tail);
}

#endif

}  // namespace
