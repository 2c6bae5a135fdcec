#include "General/ListFiles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <map>
#include <random>
#include <set>

#include "tests/General/Settled.h"
#include "tests/General/TestFolder.h"

using namespace TamLib;
using test::Folder;
using test::Path;
using test::Std;
using test::WriteBytes;

namespace {

std::vector<test::fs::path> List(const std::wstring& folder, const wchar_t* pattern,
                                 bool withDirectories, bool recurse, FILETIME* newest = nullptr) {
    std::vector<test::fs::path> files;
    for (const std::wstring& file :
         Std(ListFiles(folder.c_str(), pattern, withDirectories, recurse, newest)))
        files.push_back(Path(file));
    return files;
}

// The finds by their place in the folder, in order.
std::vector<std::string> Names(const Folder& folder, const wchar_t* pattern, bool withDirectories,
                               bool recurse) {
    std::vector<std::string> names;
    for (const auto& file : List(folder.Wide(), pattern, withDirectories, recurse))
        names.push_back(file.lexically_relative(folder.Disk()).generic_u8string());
    return names;
}

std::vector<std::string> Sorted(std::vector<std::string> names) {
    std::sort(names.begin(), names.end());
    return names;
}

using Expected = std::vector<std::string>;

// a.txt, B.TXT, plain, sub/, sub/c.txt, sub/deep/d.txt, other.txt/ (a folder), other.txt/e
struct Tree : Folder {
    Tree() {
        test::fs::create_directories(*this / "sub" / "deep");
        test::fs::create_directories(*this / "other.txt");
        for (const char* file :
             {"a.txt", "B.TXT", "plain", "sub/c.txt", "sub/deep/d.txt", "other.txt/e"})
            WriteBytes(*this / file, file);
    }
};

TEST(ListFiles, FilesOfOneFolderThatMatchWhateverTheirCase) {
    const Tree tree;
    EXPECT_EQ(Sorted(Names(tree, L"*.txt", false, false)), (Expected{"B.TXT", "a.txt"}));
    EXPECT_EQ(Sorted(Names(tree, L"?.TXT", false, false)), (Expected{"B.TXT", "a.txt"}));
    EXPECT_EQ(Names(tree, L"plain", false, false), (Expected{"plain"}));
    EXPECT_EQ(Names(tree, L"none*", false, false), Expected{});
}

TEST(ListFiles, TheLastFindIsNotLost) {
    const Folder folder;
    WriteBytes(folder / "only", "");
    EXPECT_EQ(Names(folder, L"*", false, false), (Expected{"only"}));
    EXPECT_EQ(Names(folder, L"only", false, false), (Expected{"only"}));
}

TEST(ListFiles, StarDotStarMatchesNamesWithoutADot) {
    const Tree tree;
    const Expected all{"B.TXT", "a.txt", "plain"};
    EXPECT_EQ(Sorted(Names(tree, L"*.*", false, false)), all);
    EXPECT_EQ(Sorted(Names(tree, L"*", false, false)), all);
}

TEST(ListFiles, FoldersAreListedOnlyWhenAskedForAndNeverTheDots) {
    const Tree tree;
    EXPECT_EQ(Sorted(Names(tree, L"*.*", true, false)),
              (Expected{"B.TXT", "a.txt", "other.txt", "plain", "sub"}));
    EXPECT_EQ(Sorted(Names(tree, L"*.txt", true, false)),
              (Expected{"B.TXT", "a.txt", "other.txt"}));  // listed, not walked
    const Folder empty;
    EXPECT_EQ(Names(empty, L"*.*", true, true), Expected{});
}

TEST(ListFiles, TheFoldersBelowAreWalkedThoughNothingMatchesAbove) {
    const Tree tree;
    EXPECT_EQ(Names(tree, L"d.txt", false, true), (Expected{"sub/deep/d.txt"}));
    EXPECT_EQ(Names(tree, L"e", false, true), (Expected{"other.txt/e"}));
    EXPECT_EQ(Names(tree, L"e", false, false), Expected{});
}

TEST(ListFiles, AllOfAFolderComesBeforeWhatLiesBelow) {
    const Tree tree;
    const auto depth = [](const std::string& name) {
        return std::count(name.begin(), name.end(), '/');
    };
    for (const bool withDirectories : {false, true}) {
        const Expected names = Names(tree, L"*.*", withDirectories, true);
        EXPECT_EQ(names.size(), withDirectories ? 9u : 6u);
        EXPECT_TRUE(std::is_sorted(names.begin(), names.end(), [&](const auto& a, const auto& b) {
            return depth(a) < depth(b);
        }));
    }
}

TEST(ListFiles, AMissingFolderGivesNothingAndLeavesTheTime) {
    const Folder folder;
    FILETIME newest{123, 456};
    const auto files = ListFiles(folder.Wide(L"none").c_str(), L"*.*", true, true, &newest);
    EXPECT_EQ(files.count, 0u);
    EXPECT_EQ(newest.dwLowDateTime, 123u);
    EXPECT_EQ(newest.dwHighDateTime, 456u);
    EXPECT_TRUE(List(folder.Wide(), L"*.*", true, true, &newest).empty());
    EXPECT_EQ(newest.dwLowDateTime, 123u);
    WriteBytes(folder / "file", "");
    EXPECT_TRUE(List(folder.Wide(L"file"), L"*.*", true, true, &newest).empty());
    EXPECT_EQ(newest.dwHighDateTime, 456u);
    const wchar_t* const none = nullptr;
    EXPECT_EQ(ListFiles(folder.Wide(L"none").c_str(), none, false, true, &newest).count, 0u);
    EXPECT_EQ(newest.dwHighDateTime, 456u);
}

TEST(ListFiles, TheResultBeginsWithRoomForTen) {
    const Folder folder;
    const auto none = ListFiles(folder.Wide().c_str(), L"*.*", false, false);
    EXPECT_EQ(none.increment, 10u);
    EXPECT_EQ(none.capacity, 10u);
    for (int i = 0; i < 11; ++i) WriteBytes(folder / std::to_string(i), "");
    const auto eleven = ListFiles(folder.Wide().c_str(), L"*.*", false, false);
    EXPECT_EQ(eleven.count, 11u);
    EXPECT_EQ(eleven.increment, 10u);
    EXPECT_EQ(eleven.capacity, 20u);
}

ULONGLONG Units(const FILETIME& time) {
    return static_cast<ULONGLONG>(time.dwHighDateTime) << 32 | time.dwLowDateTime;
}

TEST(ListFiles, TheNewestTimeIsTheLatestOfWhatIsListedOverAllFolders) {
    const Tree tree;
    const auto start = test::fs::last_write_time(tree / "a.txt");
    const auto set = [&](const char* file, int seconds) {
        test::fs::last_write_time(tree / file, start + std::chrono::seconds(seconds));
    };
    set("a.txt", 0);
    set("B.TXT", 10);
    set("plain", 1000);
    set("sub/c.txt", -50);
    set("sub/deep/d.txt", 30);
    const auto newest = [&](const wchar_t* pattern, bool recurse) {
        FILETIME time{0xFFFFFFFF, 0x7FFFFFFF};  // the first find sets it whatever it was
        List(tree.Wide(), pattern, false, recurse, &time);
        return Units(time);
    };
    constexpr ULONGLONG second = 10000000;
    const ULONGLONG a = newest(L"a.txt", false);
    EXPECT_EQ(newest(L"B.TXT", false) - a, 10 * second);
    EXPECT_EQ(newest(L"*.txt", false) - a, 10 * second);
    EXPECT_EQ(newest(L"*.txt", true) - a, 30 * second);  // "plain" is not listed
    EXPECT_EQ(newest(L"*", true) - a, 1000 * second);
    EXPECT_EQ(a - newest(L"c.txt", true), 50 * second);
}

TEST(ListFiles, TheOtherSeparatorAndRelativeFoldersGiveWholePaths) {
    const Tree tree;
    const auto before = test::fs::current_path();
    test::fs::current_path(tree.Disk());
    const auto files = List(L"./sub/../sub", L"*.txt", false, false);
    test::fs::current_path(before);
    ASSERT_EQ(files.size(), 1u);
    EXPECT_EQ(files[0], tree / "sub" / "c.txt");
}

TEST(ListFiles, ATreeOfThousandsComesBreadthFirstWithEveryNameOnce) {
    const Folder folder;
    std::mt19937 random(7);
    std::vector<test::fs::path> folders{folder.Disk()};
    std::map<test::fs::path, int> depths{{folder.Disk(), 0}};
    std::set<test::fs::path> wanted;
    const std::wstring words[] = {L"\u00E4iti ", L"p\u00F6yt\u00E4", L"\u00C5bo ",
                                  L"plain",      L"two words ",      L".dot"};
    for (int i = 0; i < 120; ++i) {
        const auto& parent = folders[random() % folders.size()];
        if (depths[parent] > 4) continue;
        const auto made = parent / test::FromWide(words[random() % 6] + std::to_wstring(i));
        test::fs::create_directory(made);
        depths[made] = depths[parent] + 1;
        folders.push_back(made);
    }
    for (int i = 0; i < 3000; ++i) {
        const auto file =
            folders[random() % folders.size()] /
            test::FromWide(words[random() % 6] + std::to_wstring(i) + (i % 3 == 0 ? L".dwg" : L""));
        WriteBytes(file, "");
        if (i % 3 == 0) wanted.insert(file);
    }
    const auto files = List(folder.Wide(), L"*.dwg", false, true);
    EXPECT_EQ(files.size(), wanted.size());
    EXPECT_EQ(std::set<test::fs::path>(files.begin(), files.end()), wanted);
    int depth = 0;
    std::set<test::fs::path> finished;
    test::fs::path present;
    for (const auto& file : files) {
        if (file.parent_path() != present) {
            EXPECT_TRUE(finished.insert(present).second || present.empty());
            present = file.parent_path();
            EXPECT_EQ(finished.count(present), 0u) << "a folder's finds stand together";
        }
        EXPECT_GE(depths[present], depth);
        depth = depths[present];
    }
    EXPECT_EQ(List(folder.Wide(), L"*", false, true).size(), 3000u);
    EXPECT_EQ(List(folder.Wide(), L"*", true, true).size(), 3000u + folders.size() - 1);
}

#ifndef _WIN32
TEST(ListFiles, NativelyTheOrderIsByNameIgnoringCase) {
    const Tree tree;
    EXPECT_EQ(Names(tree, L"*.*", true, true),
              (Expected{"a.txt", "B.TXT", "other.txt", "plain", "sub", "other.txt/e", "sub/c.txt",
                        "sub/deep", "sub/deep/d.txt"}));
}

TEST(ListFiles, NativelyAnUnreadableFolderByAnOrderedFailureAddsNothingAndTheWalkGoesOn) {
    const Tree tree;
    // Searches in turn: the folder and its folders, other.txt, its folders, sub, ...
    const settled::FailingCall failing("FindFirstFileW", 3, ERROR_ACCESS_DENIED, 1);
    EXPECT_EQ(Sorted(Names(tree, L"*", false, true)),
              (Expected{"B.TXT", "a.txt", "plain", "sub/c.txt", "sub/deep/d.txt"}));
}

TEST(ListFiles, NativelyAFolderThatGoesWhileItIsWalkedAddsNothing) {
    const Tree tree;
    test::fs::create_directory_symlink(tree / "gone", tree / "broken");
    EXPECT_EQ(Names(tree, L"e", false, true), (Expected{"other.txt/e"}));
}

TEST(ListFiles, NativelyNamesThatAreNoTextAreKept) {
    const Folder folder;
    const std::string latin = "p\xF6yt\xE4.txt";  // no UTF-8
    WriteBytes(folder / latin, "abc");
    const auto files = ListFiles(folder.Wide().c_str(), L"*.txt", false, false);
    ASSERT_EQ(files.count, 1u);
    std::FILE* const file = _wfopen(files[0].Data(), L"rb");  // the name leads back to it
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(std::fgetc(file), 'a');
    std::fclose(file);
}
#endif

}  // namespace
