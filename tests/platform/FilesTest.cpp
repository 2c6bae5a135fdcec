// Files by handle, searches and whole paths: the same on the real interface and on ours.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <set>
#include <string>

#include <afx.h>
#include <tchar.h>

namespace {

namespace fs = std::filesystem;

// A fresh folder under the working folder, named in plain letters.
class Folder {
  public:
    Folder() : name_("platform files " + std::to_string(std::random_device{}())) {
        fs::create_directory(name_);
    }
    ~Folder() {
        std::error_code ignored;
        fs::remove_all(name_, ignored);
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    std::wstring Wide(const std::wstring& name = L"") const {
        const std::wstring folder(name_.begin(), name_.end());
        return name.empty() ? folder : folder + L"\\" + name;
    }
    void Make(const std::wstring& name, const std::string& bytes = "") const {
        std::FILE* const file = _wfopen(Wide(name).c_str(), L"wb");
        ASSERT_NE(file, nullptr);
        std::fwrite(bytes.data(), 1, bytes.size(), file);
        std::fclose(file);
    }
    const std::string& Disk() const { return name_; }

  private:
    std::string name_;
};

HANDLE Open(const std::wstring& path, DWORD access, DWORD share) {
    return CreateFileW(path.c_str(), access, share, nullptr, OPEN_EXISTING, 0, nullptr);
}

TEST(FileHandles, WhatCannotBeOpenedHasItsCode) {
    const Folder folder;
    SetLastError(0);
    EXPECT_EQ(Open(folder.Wide(L"none"), GENERIC_READ, FILE_SHARE_READ), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), 2u);
    EXPECT_EQ(Open(folder.Wide(), GENERIC_READ, FILE_SHARE_READ), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), 5u);
    EXPECT_EQ(Open(L"", GENERIC_READ, FILE_SHARE_READ), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), 3u);
}

TEST(FileHandles, BothHaveToShareWhatTheOtherDoes) {
    const Folder folder;
    folder.Make(L"a");
    const auto a = folder.Wide(L"a");
    const DWORD accesses[] = {GENERIC_READ, GENERIC_WRITE, GENERIC_READ | GENERIC_WRITE};
    const auto grants = [](DWORD share, DWORD access) {
        return ((access & GENERIC_READ) == 0 || (share & FILE_SHARE_READ) != 0) &&
               ((access & GENERIC_WRITE) == 0 || (share & FILE_SHARE_WRITE) != 0);
    };
    for (const DWORD firstAccess : accesses) {
        for (DWORD firstShare = 0; firstShare < 4; ++firstShare) {
            const HANDLE first = Open(a, firstAccess, firstShare);
            ASSERT_NE(first, INVALID_HANDLE_VALUE);
            for (const DWORD access : accesses) {
                for (DWORD share = 0; share < 4; ++share) {
                    const HANDLE second = Open(a, access, share);
                    const bool allowed = grants(firstShare, access) && grants(share, firstAccess);
                    EXPECT_EQ(second != INVALID_HANDLE_VALUE, allowed);
                    if (second == INVALID_HANDLE_VALUE) {
                        EXPECT_EQ(GetLastError(), 32u);
                    } else {
                        EXPECT_TRUE(CloseHandle(second));
                    }
                }
            }
            EXPECT_TRUE(CloseHandle(first));
        }
    }
}

TEST(FileHandles, StreamsRespectOpenHandles) {
    const Folder folder;
    folder.Make(L"a", "abc");
    const auto a = folder.Wide(L"a");
    const HANDLE reader = Open(a, GENERIC_READ, FILE_SHARE_READ);
    errno = 0;
    EXPECT_EQ(_wfopen(a.c_str(), L"wb"), nullptr);
    EXPECT_EQ(errno, 13);
    std::FILE* const stream = _wfopen(a.c_str(), L"rb");
    EXPECT_NE(stream, nullptr);
    if (stream != nullptr) std::fclose(stream);
    CloseHandle(reader);
    EXPECT_EQ(fs::file_size(fs::path(folder.Disk()) / "a"), 3u);
}

TEST(FileHandles, DescribeOneFileByEveryName) {
    const Folder folder;
    folder.Make(L"a", "12345");
    folder.Make(L"b", "12345");
    fs::create_hard_link(fs::path(folder.Disk()) / "a", fs::path(folder.Disk()) / "link");
    const auto describe = [&folder](const wchar_t* name) {
        BY_HANDLE_FILE_INFORMATION information{};
        const HANDLE file = Open(folder.Wide(name), GENERIC_READ, FILE_SHARE_READ);
        EXPECT_TRUE(GetFileInformationByHandle(file, &information));
        CloseHandle(file);
        return information;
    };
    const auto a = describe(L"a");
    const auto link = describe(L"link");
    const auto b = describe(L"b");
    EXPECT_EQ(a.nFileSizeLow, 5u);
    EXPECT_EQ(a.nNumberOfLinks, 2u);
    EXPECT_EQ(a.dwVolumeSerialNumber, link.dwVolumeSerialNumber);
    EXPECT_EQ(a.nFileIndexLow, link.nFileIndexLow);
    EXPECT_EQ(a.nFileIndexHigh, link.nFileIndexHigh);
    EXPECT_TRUE(a.nFileIndexLow != b.nFileIndexLow || a.nFileIndexHigh != b.nFileIndexHigh);
}

// Names found by a pattern.
std::set<std::wstring> Find(const std::wstring& path) {
    std::set<std::wstring> names;
    WIN32_FIND_DATAW data{};
    const HANDLE search = FindFirstFileW(path.c_str(), &data);
    if (search == INVALID_HANDLE_VALUE) return names;
    do {
        EXPECT_TRUE(names.insert(data.cFileName).second);
    } while (FindNextFileW(search, &data) != FALSE);
    EXPECT_EQ(GetLastError(), 18u);
    FindClose(search);
    return names;
}

using Names = std::set<std::wstring>;

TEST(FileSearch, PatternsOfNames) {
    const Folder folder;
    for (const wchar_t* name :
         {L"a.txt", L"ab.TXT", L"plain", L"a.b.c", L"\u00E4\u00E4 \u00F6.txt"})
        folder.Make(name);
    const auto find = [&folder](const wchar_t* pattern) { return Find(folder.Wide(pattern)); };
    const Names all{
        L".", L"..", L"a.txt", L"ab.TXT", L"plain", L"a.b.c", L"\u00E4\u00E4 \u00F6.txt"};
    EXPECT_EQ(find(L"*.*"), all);
    EXPECT_EQ(find(L"*"), all);
    EXPECT_EQ(find(L"*.txt"), (Names{L"a.txt", L"ab.TXT", L"\u00E4\u00E4 \u00F6.txt"}));
    EXPECT_EQ(find(L"A*.TXT"), (Names{L"a.txt", L"ab.TXT"}));
    EXPECT_EQ(find(L"?.txt"), Names{L"a.txt"});
    EXPECT_EQ(find(L"plain.*"), Names{L"plain"});
    EXPECT_EQ(find(L"a*c"), Names{L"a.b.c"});
    EXPECT_EQ(find(L"ab*"), Names{L"ab.TXT"});
    EXPECT_EQ(find(L"\u00C4*"), Names{L"\u00E4\u00E4 \u00F6.txt"});
    EXPECT_EQ(Find(folder.Wide() + L"/*.c"), Names{L"a.b.c"});
}

TEST(FileSearch, NothingFoundHasItsCode) {
    const Folder folder;
    WIN32_FIND_DATAW data{};
    EXPECT_EQ(FindFirstFileW(folder.Wide(L"x*").c_str(), &data), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), 2u);
    EXPECT_EQ(FindFirstFileW(folder.Wide(L"none\\*").c_str(), &data), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), 3u);
}

TEST(FileSearch, FileFindTellsMoreBehindThisOne) {
    const Folder folder;
    folder.Make(L"a", "x");
    fs::create_directory(fs::path(folder.Disk()) / "d");
    CFileFind search;
    EXPECT_TRUE(search.GetFileName().IsEmpty());
    EXPECT_TRUE(search.GetFilePath().IsEmpty());
    EXPECT_FALSE(search.FindNextFile());
    EXPECT_FALSE(search.FindFile(folder.Wide(L"none*").c_str()));
    ASSERT_TRUE(search.FindFile(folder.Wide(L"*.*").c_str()));
    EXPECT_TRUE(search.GetFileName().IsEmpty());  // none is the present one yet
    FILETIME time{};
    EXPECT_FALSE(search.GetLastWriteTime(&time));
    std::map<std::wstring, std::pair<bool, bool>> found;
    for (BOOL more = TRUE; more != FALSE;) {
        more = search.FindNextFile();
        found[search.GetFileName().GetString()] = {search.IsDirectory() != FALSE,
                                                   search.IsDots() != FALSE};
        EXPECT_TRUE(search.GetLastWriteTime(&time));
        const std::wstring path = search.GetFilePath().GetString();
        EXPECT_EQ(path.substr(path.rfind(L'\\') + 1), search.GetFileName().GetString());
        EXPECT_EQ(path.find(L'/'), std::wstring::npos);
    }
    const std::map<std::wstring, std::pair<bool, bool>> expected{
        {L".", {true, true}}, {L"..", {true, true}}, {L"a", {false, false}}, {L"d", {true, false}}};
    EXPECT_EQ(found, expected);
    search.Close();
    EXPECT_FALSE(search.FindNextFile());
}

std::wstring Whole(const std::wstring& name) {
    wchar_t buffer[2000];
    const DWORD length = GetFullPathNameW(name.c_str(), 2000, buffer, nullptr);
    return std::wstring(buffer, length);
}

TEST(FullPath, IsWithoutDotsAndBehindTheWorkingFolder) {
    EXPECT_EQ(Whole(L"a\\.\\b\\..\\c"), Whole(L"a") + L"\\c");
    EXPECT_EQ(Whole(L"./a//b"), Whole(L"a") + L"\\b");
    EXPECT_EQ(Whole(Whole(L"a")), Whole(L"a"));
    wchar_t small[2] = {};
    EXPECT_EQ(GetFullPathNameW(L"a", 2, small, nullptr), Whole(L"a").size() + 1);
    EXPECT_EQ(GetFullPathNameW(L"", 2, small, nullptr), 0u);
    wchar_t buffer[2000];
    LPWSTR last = nullptr;
    GetFullPathNameW(L"a\\name.x", 2000, buffer, &last);
    EXPECT_EQ(std::wstring(last), L"name.x");
}

TEST(FileTimes, CompareAs64Bits) {
    const FILETIME small{0xFFFFFFFF, 0};
    const FILETIME large{0, 1};
    EXPECT_EQ(CompareFileTime(&small, &large), -1);
    EXPECT_EQ(CompareFileTime(&large, &small), 1);
    EXPECT_EQ(CompareFileTime(&large, &large), 0);
}

TEST(CodePage, WidensEveryByteOfWindows1252) {
    for (int byte = 1; byte < 256; ++byte) {
        const char text[] = {static_cast<char>(byte), 0};
        wchar_t wide[4] = {};
        ASSERT_EQ(MultiByteToWideChar(CP_ACP, 0, text, -1, wide, 4), 2);
        const bool special = byte >= 0x80 && byte < 0xA0;
        EXPECT_TRUE(special || wide[0] == byte) << byte;
    }
    wchar_t wide[4] = {};
    EXPECT_EQ(MultiByteToWideChar(CP_ACP, 0, "\x80\x8A\x9E", 3, wide, 4), 3);
    EXPECT_EQ(wide[0], 0x20AC);
    EXPECT_EQ(wide[1], 0x160);
    EXPECT_EQ(wide[2], 0x17E);
    EXPECT_EQ(MultiByteToWideChar(CP_ACP, 0, "abc", 3, nullptr, 0), 3);
    EXPECT_EQ(MultiByteToWideChar(CP_ACP, 0, "abc", 3, wide, 2), 0);
    EXPECT_EQ(GetLastError(), 122u);
    EXPECT_EQ(MultiByteToWideChar(CP_ACP, 0, "abc", 0, wide, 4), 0);
}

TEST(RunTimeFiles, FoldersAndFilesAreMadeAndDeleted) {
    const Folder folder;
    const auto made = folder.Wide(L"d\u00F6");
    EXPECT_EQ(_wmkdir(made.c_str()), 0);
    errno = 0;
    EXPECT_EQ(_wmkdir(made.c_str()), -1);
    EXPECT_EQ(errno, 17);
    EXPECT_EQ(_wmkdir(folder.Wide(L"none\\d").c_str()), -1);
    EXPECT_EQ(errno, 2);
    folder.Make(L"d\u00F6\\file", "abc");
    struct _stat64 status {};
    EXPECT_EQ(_wstat64(folder.Wide(L"d\u00F6\\file").c_str(), &status), 0);
    EXPECT_EQ(status.st_size, 3);
    EXPECT_EQ(_stat64((folder.Disk() + "\\d\xF6\\file").c_str(), &status), 0);
    EXPECT_EQ(_wrmdir(made.c_str()), -1);   // not empty
    EXPECT_EQ(_wunlink(made.c_str()), -1);  // a folder
    EXPECT_EQ(_wunlink(folder.Wide(L"d\u00F6\\file").c_str()), 0);
    EXPECT_EQ(_wunlink(folder.Wide(L"d\u00F6\\file").c_str()), -1);
    EXPECT_EQ(_wrmdir(made.c_str()), 0);
    EXPECT_EQ(_wstat64(made.c_str(), &status), -1);
}

}  // namespace
