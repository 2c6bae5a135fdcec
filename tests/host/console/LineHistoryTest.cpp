#include "host/console/LineHistory.h"

#include <gtest/gtest.h>

#include "tests/host/console/ChildProcess.h"

namespace {

using host::console::LineHistory;
using Lines = std::vector<std::wstring>;

TEST(LineHistory, KeepsLinesForTheNextSession) {
    const console_test::Folder folder;
    const auto file = folder / "state" / "history";
    LineHistory first(file);
    EXPECT_TRUE(first.add(L"REDO"));
    EXPECT_FALSE(first.add(L"REDO")) << "the same line again";
    EXPECT_FALSE(first.add(L"")) << "an empty line";
    EXPECT_TRUE(first.add(L"äö"));
    LineHistory second(file);
    EXPECT_EQ(second.lines(), (Lines{L"REDO", L"äö"}));
    EXPECT_TRUE(second.add(L"REDO"));
    EXPECT_EQ(console_test::read(file), "REDO\näö\nREDO\n");
}

TEST(LineHistory, RemembersTheLastThousandAndCutsALongFile) {
    const console_test::Folder folder;
    const auto file = folder / "history";
    std::string text;
    for (int i = 0; i < 2000; ++i) text += std::to_string(i) + "\n";
    console_test::write(file, text);
    EXPECT_EQ(LineHistory(file).lines().size(), LineHistory::most);
    EXPECT_EQ(console_test::read(file), text) << "up to twice as many stay";
    console_test::write(file, text + "2000\n");
    EXPECT_EQ(LineHistory(file).lines().front(), L"1001");
    EXPECT_EQ(console_test::read(file).substr(0, 5), "1001\n");
}

TEST(LineHistory, WhatIsNoFileIsLeftAlone) {
    const console_test::Folder folder;
    LineHistory history(folder.path());
    EXPECT_TRUE(history.add(L"REDO"));
    EXPECT_EQ(history.lines(), Lines{L"REDO"});
}

TEST(LineHistory, WhatCannotBeWrittenIsKeptForTheSession) {
    const console_test::Folder folder;
    console_test::write(folder / "file", "x");
    LineHistory history(folder / "file" / "history");
    EXPECT_TRUE(history.add(L"REDO"));
    EXPECT_EQ(history.lines(), Lines{L"REDO"});
    LineHistory nowhere{std::filesystem::path()};
    EXPECT_TRUE(nowhere.add(L"REDO"));
}

}  // namespace
