#include "General/Paths.h"

#include <gtest/gtest.h>

#include <random>

#include <windows.h>

#include "tests/General/Settled.h"
#include "tests/General/TestFolder.h"

using namespace TamLib;
using test::Path;
using test::Std;

namespace {

TEST(Paths, SeparatorsAreBothSlashesAndTheColonOfADrive) {
    for (int c = 0; c < 0x180; ++c) {
        EXPECT_EQ(IsPathSeparator(static_cast<wchar_t>(c)), c == '/' || c == '\\' || c == ':') << c;
    }
}

TEST(Paths, TheProgramIsThisProgram) {
    const auto file = Path(Std(ProgramPath()));
    EXPECT_EQ(file.stem(), "test_general");
    EXPECT_TRUE(file.is_absolute());
    EXPECT_TRUE(test::fs::exists(file));
}

TEST(Paths, TheProgramIsToldWithin512Characters) {
    const std::wstring fits = L"\\" + std::wstring(510, L'p');
    {
        const settled::ModulePath path(fits);
        EXPECT_EQ(Std(ProgramPath()), fits);
    }
    {
        const settled::ModulePath path(fits + L'p');  // cut by the system: no path at all
        EXPECT_EQ(ProgramPath().count, 0u);
    }
    const settled::FailingCall failing("GetModuleFileNameW");
    EXPECT_EQ(ProgramPath().count, 0u);
}

TEST(Paths, TheModuleIsToldWithin260Characters) {
    const std::wstring fits = L"\\" + std::wstring(258, L'm');
    {
        const settled::ModulePath path(fits);
        EXPECT_EQ(Std(ModulePath()), fits);
    }
    {
        const settled::ModulePath path(fits + L'm');
        EXPECT_EQ(ModulePath().count, 0u);
        EXPECT_EQ(ProgramPath().count, 260u);  // the limits are two
    }
    {
        const settled::FailingCall failing("GetModuleFileNameW");
        EXPECT_EQ(ModulePath().count, 0u);
    }
    const settled::FailingCall failing("VirtualQuery");
    EXPECT_EQ(ModulePath().count, 0u);
}

TEST(Paths, TheModuleOfALinkedLibraryIsTheProgram) {
    EXPECT_EQ(Std(ModulePath()), Std(ProgramPath()));
}

TEST(Paths, TheModuleBeginsBeforeThePageOfItsCode) {
    MEMORY_BASIC_INFORMATION information{};
    ASSERT_NE(
        VirtualQuery(reinterpret_cast<LPCVOID>(&ModulePath), &information, sizeof information), 0u);
    EXPECT_NE(information.AllocationBase, information.BaseAddress);
}

TEST(Paths, PiecesMakeThePathAgain) {
    struct Case {
        const wchar_t *path, *drive, *directory, *name, *extension;
    };
    const Case cases[] = {
        {L"", L"", L"", L"", L""},
        {L"c:\\a\\b.txt", L"c:", L"\\a\\", L"b.", L"txt"},
        {L"c:/a.b/c", L"c:", L"/a.b/", L"c", L""},
        {L"c:a.b", L"c:", L"", L"a.", L"b"},
        {L"name", L"", L"", L"name", L""},
        {L".hidden", L"", L"", L".", L"hidden"},
        {L"a.b.c", L"", L"", L"a.b.", L"c"},
        {L"f.", L"", L"", L"f.", L""},
        {L"dir.d\\", L"", L"dir.d\\", L"", L""},
        {L"stream.x:y", L"", L"stream.x:", L"y", L""},
        {L"\\\\srv\\share\\x.y", L"", L"\\\\srv\\share\\", L"x.", L"y"},
    };
    for (const Case& c : cases) {
        const PathPieces pieces = SplitPath(c.path);
        EXPECT_EQ(Std(pieces.drive), c.drive) << Std(c.path).size();
        EXPECT_EQ(Std(pieces.directory), c.directory);
        EXPECT_EQ(Std(pieces.name), c.name);
        EXPECT_EQ(Std(pieces.extension), c.extension);
        EXPECT_EQ(Std(pieces.drive + pieces.directory + pieces.name + pieces.extension), c.path);
    }
}

TEST(Paths, TheExtensionIsWhatFollowsTheLastDotOfTheName) {
    const wchar_t* const cases[][2] = {
        {L"c:\\a\\b.txt", L"c:\\a\\b"},
        {L"c:\\a.b\\f", L"c:\\a.b\\f"},
        {L"f.", L"f"},
        {L"a.b.c", L"a.b"},
        {L"a..b", L"a."},
        {L"a..", L"a."},
        {L".hidden", L""},
        {L"", L""},
        {L".", L""},
        {L"..", L"."},
        {L"c:\\a.b\\", L"c:\\a.b\\"},
        {L"c:f.x", L"c:f"},
        {L"x.y:z", L"x.y:z"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Std(RemoveExtension(c[0])), c[1]) << test::Path(c[0]);
    }
    EXPECT_EQ(RemoveExtension(static_cast<const wchar_t*>(nullptr)).count, 0u);
}

TEST(Paths, RelativePathsOverATable) {
    struct Case {
        const wchar_t *path, *base;
        int levels;
        const wchar_t* relative;
    };
    const Case cases[] = {
        {L"c:\\a\\b\\f", L"c:\\a\\c\\d", 9, L"..\\..\\b\\f"},
        {L"c:\\a\\b\\f", L"c:\\a\\c\\d", 2, L"..\\..\\b\\f"},
        {L"c:\\a\\b\\f", L"c:\\a\\c\\d", 1, L"c:\\a\\b\\f"},
        {L"c:\\a\\b\\f", L"c:\\a\\c\\d", 0, L"c:\\a\\b\\f"},
        {L"c:\\a\\b\\f", L"c:\\a\\c\\d", -5, L"c:\\a\\b\\f"},
        {L"c:\\a\\b\\f", L"c:\\a", 0, L"b\\f"},             // no step up is needed
        {L"c:\\a\\b\\f", L"c:\\a", -1, L"b\\f"},            // nor allowed
        {L"c:/a/b/f", L"c:\\a/c\\\\", 9, L"..\\b\\f"},      // separators are turned
        {L"c:/a/b/f", L"d:\\a", 9, L"c:\\a\\b\\f"},         // nothing in common: turned too
        {L"c:/a/b/f", L"c:/a/c/d", 1, L"c:\\a\\b\\f"},      // too far up: turned too
        {L"C:\\A\\b", L"c:\\a", 9, L"b"},                   // case is ignored
        {L"c:\\\u00C4\\b", L"c:\\\u00E4\\c", 9, L"..\\b"},  // of Finnish letters too
        {L"c:\\a\\b", L"c:\\a\\b", 9, L""},                 // the folder itself
        {L"c:\\a\\b", L"c:\\a\\b\\", 9, L""},
        {L"c:\\a\\b", L"c:\\a\\b\\\\\\", 9, L""},
        {L"c:\\a\\b\\\\x", L"c:\\a\\b", 9, L"x"},  // empty pieces vanish
        {L"c:\\a", L"c:\\a\\b\\c", 9, L"..\\.."},  // above the base
        {L"c:\\a", L"c:\\a\\b\\c", 1, L"c:\\a"},
        {L"c:\\ab\\x", L"c:\\a", 9, L"..\\ab\\x"},  // pieces are whole names
        {L"\\\\srv\\s\\x", L"\\\\SRV\\s\\y", 9, L"..\\x"},
        {L"a\\b", L"a\\c", 9, L"..\\b"},
        {L"a b\\c d", L"a b\\e f", 9, L"..\\c d"},
        {L"c:x", L"c:y", 9, L"c:x"},  // the colon does not split
        {L"", L"c:\\a", 9, L""},
        {L"", L"", 9, L""},
        {L"c:/a", L"", 9, L"c:\\a"},
        {L".\\a", L"", 9, L"a"},  // the "." of an empty base agrees
    };
    for (const Case& c : cases) {
        EXPECT_EQ(Std(MakeRelativePath(c.path, c.base, c.levels)), c.relative)
            << Path(c.path) << " from " << Path(c.base);
    }
    const wchar_t* const none = nullptr;
    EXPECT_EQ(MakeRelativePath(none, none, 3).count, 0u);
}

// Follows a relative path from a folder.
std::vector<std::wstring> Follow(std::vector<std::wstring> folder, const std::wstring& relative) {
    std::wstring piece;
    for (const wchar_t c : relative + L'\\') {
        if (c != L'\\') {
            piece += c;
        } else if (piece == L"..") {
            folder.pop_back();
            piece.clear();
        } else if (!piece.empty()) {
            folder.push_back(piece);
            piece.clear();
        }
    }
    return folder;
}

std::wstring Join(const std::vector<std::wstring>& pieces) {
    std::wstring path;
    for (const std::wstring& piece : pieces) path += (path.empty() ? L"" : L"\\") + piece;
    return path;
}

TEST(Paths, TheRelativePathLeadsFromTheBaseToThePath) {
    std::mt19937 random(31);
    const auto pieces = [&random] {
        std::vector<std::wstring> path{L"c:"};
        const std::size_t length = random() % 6;
        for (std::size_t i = 0; i < length; ++i) path.push_back(random() % 2 != 0 ? L"x" : L"y");
        return path;
    };
    for (int round = 0; round < 3000; ++round) {
        const auto path = pieces();
        const auto base = pieces();
        const std::wstring relative =
            Std(MakeRelativePath(Join(path).c_str(), Join(base).c_str(), 100));
        ASSERT_EQ(Follow(base, relative), path) << Path(Join(base)) << Path(Join(path));
        // Exactly as many steps up as needed are enough.
        int up = 0;
        for (std::size_t at = 0; (at = relative.find(L"..", at)) != std::wstring::npos; ++at) ++up;
        EXPECT_EQ(Std(MakeRelativePath(Join(path).c_str(), Join(base).c_str(), up)), relative);
        if (up > 0) {
            EXPECT_EQ(Std(MakeRelativePath(Join(path).c_str(), Join(base).c_str(), up - 1)),
                      Join(path));
        }
    }
}

TEST(Paths, PathsOfAnyLengthAreSplit) {
    const std::wstring longName(5000, L'n');
    const std::wstring path = L"c:\\" + longName + L"\\" + longName + L".ext";
    EXPECT_EQ(Std(RemoveExtension(path.c_str())), path.substr(0, path.size() - 4));
    EXPECT_EQ(Std(MakeRelativePath(path.c_str(), (L"c:\\" + longName).c_str(), 0)),
              longName + L".ext");
}

}  // namespace
