#include "General/Files.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <thread>

#include <tchar.h>

#include "datastruct/Random.h"
#include "tests/General/Settled.h"
#include "tests/General/TestFolder.h"

using namespace TamLib;
using test::Folder;
using test::Path;
using test::Std;
using test::WriteBytes;

namespace {

const wchar_t* const noPath = nullptr;

// When a file was changed: so many seconds after another moment.
void ChangedAt(const test::fs::path& file, const test::fs::path& reference, int seconds) {
    test::fs::last_write_time(file,
                              test::fs::last_write_time(reference) + std::chrono::seconds(seconds));
}

TEST(FileSize, IsThatOfTheFile) {
    const Folder folder;
    WriteBytes(folder / "empty", "");
    WriteBytes(folder / "five", "12345");
    EXPECT_EQ(FileSize(folder.Wide(L"empty").c_str()), 0);
    EXPECT_EQ(FileSize(folder.Wide(L"five").c_str()), 5);
    EXPECT_EQ(FileSize64(folder.Wide(L"five").c_str()), 5);
    EXPECT_EQ(FileSize((folder.Disk().string() + "\\five").c_str()), 5);
    EXPECT_EQ(FileSize((folder.Disk().string() + "/five").c_str()), 5);
}

TEST(FileSize, OfNamesWithFinnishLettersAndBlanks) {
    const Folder folder;
    WriteBytes(Path(folder.Wide(L"t\u00E4h\u00E4n p\u00F6yt\u00E4\u00E4n.txt")), "abc");
    EXPECT_EQ(FileSize(folder.Wide(L"t\u00E4h\u00E4n p\u00F6yt\u00E4\u00E4n.txt").c_str()), 3);
    EXPECT_EQ(FileSize((folder.Disk().string() + "/t\xE4h\xE4n p\xF6yt\xE4\xE4n.txt").c_str()), 3);
}

TEST(FileSize, IsMinusOneForWhatIsNotThere) {
    const Folder folder;
    EXPECT_EQ(FileSize(folder.Wide(L"none").c_str()), -1);
    EXPECT_EQ(FileSize64(folder.Wide(L"none\\deep").c_str()), -1);
    EXPECT_EQ(FileSize("no such file"), -1);
    EXPECT_EQ(FileSize(""), -1);
    EXPECT_EQ(FileSize(L""), -1);
    EXPECT_EQ(FileSize64(L""), -1);
    EXPECT_EQ(FileSize(noPath), -1);
    EXPECT_EQ(FileSize64(noPath), -1);
    EXPECT_EQ(FileSize(static_cast<const char*>(nullptr)), -1);
    EXPECT_EQ(FileSize64((folder.Wide() + L"\\" + std::wstring(40000, L'x')).c_str()), -1);
}

// Makes a file as long as that, its blocks left out where the system can.
void MakeLong(const std::wstring& path, std::int64_t size) {
    std::FILE* const file = _wfopen(path.c_str(), L"wb");
    ASSERT_NE(file, nullptr);
#ifdef _WIN32
    _fseeki64(file, size - 1, SEEK_SET);
#else
    fseeko(file, size - 1, SEEK_SET);
#endif
    std::fputc(0, file);
    std::fclose(file);
}

TEST(FileSize, Beyond31BitsOnlyTheLongFormKnowsIt) {
    const Folder folder;
    const auto file = folder.Wide(L"large");
    const std::string narrow = folder.Disk().string() + "/large";
    MakeLong(file, 0x7FFFFFFF);
    EXPECT_EQ(FileSize(file.c_str()), 0x7FFFFFFF);
    EXPECT_EQ(FileSize(narrow.c_str()), 0x7FFFFFFF);
    MakeLong(file, 0x80000000ll);
    EXPECT_EQ(FileSize(file.c_str()), -1);
    EXPECT_EQ(FileSize(narrow.c_str()), -1);
    EXPECT_EQ(FileSize64(file.c_str()), 0x80000000ll);
    MakeLong(file, 0x1'0000'0005);
    EXPECT_EQ(FileSize64(file.c_str()), 0x1'0000'0005);
}

TEST(CompareFileTimes, IsOneOnlyWhenTheFirstIsLater) {
    const Folder folder;
    WriteBytes(folder / "a", "");
    WriteBytes(folder / "b", "");
    const auto a = folder.Wide(L"a");
    const auto b = folder.Wide(L"b");
    std::int64_t first = 0;
    std::int64_t second = 0;
    ChangedAt(folder / "b", folder / "a", 0);
    EXPECT_EQ(CompareFileTimes(a.c_str(), b.c_str(), &first, &second), 0);
    EXPECT_EQ(first, second);
    EXPECT_GT(first, 1500000000);
    ChangedAt(folder / "b", folder / "a", 2);
    EXPECT_EQ(CompareFileTimes(a.c_str(), b.c_str(), &first, &second), 0);  // earlier: not -1
    EXPECT_EQ(second - first, 2);
    EXPECT_EQ(CompareFileTimes(b.c_str(), a.c_str(), &first, &second), 1);
    EXPECT_EQ(first - second, 2);
    EXPECT_EQ(CompareFileTimes(b.c_str(), a.c_str()), 1);
    EXPECT_EQ(CompareFileTimes(b.c_str(), a.c_str(), nullptr, &second), 1);
}

TEST(CompareFileTimes, AFailureIsMinusOneWithoutItsLowByteAndLeavesTheTimes) {
    const Folder folder;
    WriteBytes(folder / "a", "");
    const auto a = folder.Wide(L"a");
    const auto none = folder.Wide(L"none");
    std::int64_t first = 1;
    std::int64_t second = 2;
    for (const auto& [x, y] : {std::pair(a, none), std::pair(none, a), std::pair(none, none)}) {
        const std::int32_t result = CompareFileTimes(x.c_str(), y.c_str(), &first, &second);
        EXPECT_EQ(static_cast<std::uint32_t>(result), 0xFFFFFF00u);
        EXPECT_EQ(result, kFileTimesUnknown);
        EXPECT_EQ(first, 1);
        EXPECT_EQ(second, 2);
    }
    EXPECT_EQ(CompareFileTimes(noPath, L""), kFileTimesUnknown);
}

TEST(IsSameFile, ByAnyNameThatLeadsToIt) {
    const Folder folder;
    WriteBytes(folder / "a", "same");
    WriteBytes(folder / "b", "same");
    test::fs::create_hard_link(folder / "a", folder / "link");
    const auto a = folder.Wide(L"a");
    EXPECT_EQ(IsSameFile(a.c_str(), a.c_str()), 1);
    EXPECT_EQ(IsSameFile(a.c_str(), (folder.Wide() + L"/./a").c_str()), 1);
    EXPECT_EQ(IsSameFile(a.c_str(), folder.Wide(L"link").c_str()), 1);
    EXPECT_EQ(IsSameFile(a.c_str(), folder.Wide(L"b").c_str()), 0);
}

TEST(IsSameFile, MinusOneWhenOneCannotBeOpened) {
    const Folder folder;
    WriteBytes(folder / "a", "");
    const auto a = folder.Wide(L"a");
    EXPECT_EQ(IsSameFile(a.c_str(), folder.Wide(L"none").c_str()), -1);
    EXPECT_EQ(IsSameFile(folder.Wide(L"none").c_str(), a.c_str()), -1);
    EXPECT_EQ(IsSameFile(folder.Wide().c_str(), folder.Wide().c_str()), -1);  // folders
    EXPECT_EQ(IsSameFile(noPath, L""), -1);
    {
        const settled::FailingCall failing("CreateFileW", 2);
        EXPECT_EQ(IsSameFile(a.c_str(), a.c_str()), -1);
    }
    EXPECT_EQ(IsSameFile(a.c_str(), a.c_str()), 1);
}

TEST(IsSameFile, MinusTwoWhenTheSystemDoesNotTell) {
    const Folder folder;
    WriteBytes(folder / "a", "");
    const auto a = folder.Wide(L"a");
    for (const int call : {1, 2}) {
        const settled::FailingCall failing("GetFileInformationByHandle", call);
        EXPECT_EQ(IsSameFile(a.c_str(), a.c_str()), -2);
    }
}

TEST(IsSameFile, NeedsToShareWithOpenHandlesAndLeavesNoneOpen) {
    const Folder folder;
    WriteBytes(folder / "a", "");
    const auto a = folder.Wide(L"a");
    const auto open = [&a](DWORD access, DWORD share) {
        return CreateFileW(a.c_str(), access, share, nullptr, OPEN_EXISTING, 0, nullptr);
    };
    const HANDLE writer = open(GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE);
    ASSERT_NE(writer, INVALID_HANDLE_VALUE);
    EXPECT_EQ(IsSameFile(a.c_str(), a.c_str()), -1);  // it shares reading alone
    CloseHandle(writer);
    const HANDLE reader = open(GENERIC_READ, FILE_SHARE_READ);
    ASSERT_NE(reader, INVALID_HANDLE_VALUE);
    EXPECT_EQ(IsSameFile(a.c_str(), a.c_str()), 1);
    CloseHandle(reader);
    const HANDLE alone = open(GENERIC_READ | GENERIC_WRITE, 0);  // nobody else has it open
    EXPECT_NE(alone, INVALID_HANDLE_VALUE);
    EXPECT_EQ(IsSameFile(a.c_str(), a.c_str()), -1);
    CloseHandle(alone);
}

TEST(FileAge, CountsFromTheLastChange) {
    const Folder folder;
    WriteBytes(folder / "a", "");
    std::int64_t changed = 0;
    const auto a = folder.Wide(L"a");
    ASSERT_EQ(CompareFileTimes(a.c_str(), a.c_str(), &changed), 0);
    settled::Clock clock;
    for (const int age : {0, 1, 100, 86400, -5}) {
        clock.seconds = changed + age;
        clock.Show();
        EXPECT_EQ(FileAgeSeconds(a.c_str()), age);
    }
    EXPECT_EQ(FileAgeSeconds(folder.Wide(L"none").c_str()), -1);
    EXPECT_EQ(FileAgeSeconds(noPath), -1);
    EXPECT_EQ(FileAgeSeconds(L""), -1);
}

TEST(TempFileName, HoldsTheThirdSecondAndFirstRandomNumberOfTheTime) {
    const settled::Variable temp("TEMP", L"c:\\some folder");
    settled::Clock clock;
    clock.seconds = 1234567890;
    clock.Show();
    SeedRandom(1234567890u);
    const std::int32_t r1 = Random();
    const std::int32_t r2 = Random();
    const std::int32_t r3 = Random();
    wchar_t expected[80];
    _snwprintf(expected, 80, L"c:\\some folder\\pre fix.%04x%04x%04x", r3, r2, r1);
    EXPECT_EQ(Std(TempFileName(L"pre fix")), expected);
    EXPECT_EQ(Std(TempFileName(L"pre fix")), expected);  // the same within a second
    clock.seconds += 1;
    clock.Show();
    EXPECT_NE(Std(TempFileName(L"pre fix")), expected);
    clock.seconds += (std::int64_t{1} << 32) - 1;  // the seed has 32 bits
    clock.Show();
    EXPECT_EQ(Std(TempFileName(L"pre fix")), expected);
}

TEST(TempFileName, StartsTheRandomNumbersAnew) {
    const settled::Variable temp("TEMP", L"x");
    settled::Clock clock;
    clock.seconds = 77;
    clock.Show();
    SeedRandom(77);
    std::int32_t fourth = 0;
    for (int i = 0; i < 4; ++i) fourth = Random();
    SeedRandom(5);
    TempFileName(L"p");
    EXPECT_EQ(Random(), fourth);
}

TEST(TempFileName, DigitsAreFourForEachNumber) {
    const settled::Variable temp("TEMP", L"t");
    for (unsigned seed = 0; seed < 200; ++seed) {
        settled::Clock clock;
        clock.seconds = seed;
        clock.Show();
        const std::wstring name = Std(TempFileName(L""));
        ASSERT_EQ(name.size(), std::wstring(L"t\\.").size() + 12);
        EXPECT_EQ(name.substr(3).find_first_not_of(L"0123456789abcdef"), std::wstring::npos);
    }
}

TEST(TempFileName, IsEmptyWithoutTheVariableWhateverElseIsSet) {
    const settled::Variable temp("TEMP", std::nullopt);
    const settled::Variable other("TMP", L"c:\\tmp");
    EXPECT_EQ(TempFileName(L"p").count, 0u);
    EXPECT_EQ(MakeTempDirectory(L"p").count, 0u);
}

TEST(TempFileName, DoesNotLookWhetherThereIsSuchAFile) {
    const Folder folder;
    const settled::Variable temp("TEMP", folder.Wide());
    const settled::Clock clock;
    const std::wstring name = Std(TempFileName(L"\u00E4 "));
    WriteBytes(Path(name), "");
    EXPECT_EQ(Std(TempFileName(L"\u00E4 ")), name);
    EXPECT_EQ(std::distance(test::fs::directory_iterator(folder.Disk()), {}), 1);
}

TEST(MakeTempDirectory, MakesItAndNamesIt) {
    const Folder folder;
    const settled::Variable temp("TEMP", folder.Wide());
    const settled::Clock clock;
    const std::wstring expected = Std(TempFileName(L"d\u00F6"));
    EXPECT_EQ(Std(MakeTempDirectory(L"d\u00F6")), expected);
    EXPECT_TRUE(test::fs::is_directory(Path(expected)));
    EXPECT_EQ(MakeTempDirectory(L"d\u00F6").count, 0u);  // it is there already
    EXPECT_TRUE(DeleteDirectory(expected.c_str()));
    EXPECT_TRUE(test::fs::is_empty(folder.Disk()));
}

TEST(MakeTempDirectory, IsEmptyWhereNoneCanBeMade) {
    const Folder folder;
    const settled::Variable temp("TEMP", folder.Wide(L"none"));
    EXPECT_EQ(MakeTempDirectory(L"d").count, 0u);
    EXPECT_TRUE(test::fs::is_empty(folder.Disk()));
}

TEST(DeleteDirectory, DeletesTheFilesAndTheFolder) {
    const Folder folder;
    test::fs::create_directory(folder / "d");
    for (const wchar_t* name : {L"a", L"b.txt", L".hidden", L"two words", L"\u00E4\u00F6\u00E5"})
        WriteBytes(Path(folder.Wide(std::wstring(L"d\\") + name)), "x");
    for (int i = 0; i < 300; ++i) WriteBytes(folder / "d" / std::to_string(i), "");
    WriteBytes(folder / "beside", "");
    EXPECT_TRUE(DeleteDirectory(folder.Wide(L"d").c_str()));
    EXPECT_FALSE(test::fs::exists(folder / "d"));
    EXPECT_TRUE(test::fs::exists(folder / "beside"));
}

TEST(DeleteDirectory, AFolderThatHoldsAnotherStaysWithoutItsFiles) {
    const Folder folder;
    test::fs::create_directories(folder / "d" / "below");
    WriteBytes(folder / "d" / "a", "x");
    WriteBytes(folder / "d" / "z", "x");
    WriteBytes(folder / "d" / "below" / "kept", "x");
    EXPECT_FALSE(DeleteDirectory(folder.Wide(L"d").c_str()));
    EXPECT_FALSE(test::fs::exists(folder / "d" / "a"));
    EXPECT_FALSE(test::fs::exists(folder / "d" / "z"));
    EXPECT_TRUE(test::fs::exists(folder / "d" / "below" / "kept"));
}

TEST(DeleteDirectory, WhatIsNoFolderIsFalse) {
    const Folder folder;
    WriteBytes(folder / "file", "x");
    EXPECT_FALSE(DeleteDirectory(L""));
    EXPECT_FALSE(DeleteDirectory(noPath));
    EXPECT_FALSE(DeleteDirectory(folder.Wide(L"none").c_str()));
    EXPECT_FALSE(DeleteDirectory(folder.Wide(L"file").c_str()));
    EXPECT_TRUE(test::fs::exists(folder / "file"));
}

}  // namespace
