// Several drawings in one call: whose results go where, and what is refused.
#include "host/console/Bulk.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/host/console/ChildProcess.h"

namespace {

using namespace host::console;

Options over(const std::vector<std::string>& drawings) {
    Options options;
    if (drawings.size() == 1) options.drawing = drawings.front();
    if (drawings.size() > 1) options.drawings.assign(drawings.begin(), drawings.end());
    return options;
}

std::string outputOf(const std::vector<std::string>& drawings, const std::string& output) {
    Options options = over(drawings);
    options.output = output;
    return utf8(tasksOf(options).back().output);
}

bool refused(const Options& options) {
    try {
        tasksOf(options);
        return false;
    } catch (const std::invalid_argument&) {
        return true;
    }
}

TEST(TasksOf, OneDrawingOrNoneIsTheCallItself) {
    EXPECT_EQ(tasksOf(over({})).size(), 1U);
    EXPECT_EQ(tasksOf(over({"a.dxf"})).front().drawing, "a.dxf");
    EXPECT_EQ(outputOf({"a.dxf"}, "b.dxf"), "b.dxf");
    EXPECT_EQ(outputOf({"a.dxf"}, ""), "");
}

TEST(TasksOf, EachDrawingIsATaskOfItsOwn) {
    const std::vector<Options> tasks = tasksOf(over({"x/a.dxf", "b.dxf"}));
    ASSERT_EQ(tasks.size(), 2U);
    EXPECT_EQ(tasks[0].drawing, "x/a.dxf");
    EXPECT_EQ(tasks[1].drawing, "b.dxf");
    EXPECT_TRUE(tasks[1].drawings.empty());
    EXPECT_TRUE(tasks[1].output.empty());
}

TEST(TasksOf, AFolderKeepsTheDrawingsNames) {
    EXPECT_EQ(std::filesystem::path(outputOf({"a.dxf", "x/b.dxf"}, "out/")),
              std::filesystem::path("out") / "b.dxf");
    EXPECT_EQ(std::filesystem::path(outputOf({"x/b.dxf"}, "out/")),
              std::filesystem::path("out") / "b.dxf");
}

TEST(TasksOf, AFolderThatIsThereNeedsNoSlash) {
    const console_test::Folder folder;
    const std::string there = utf8(folder.path());
    EXPECT_EQ(outputOf({"x/b.dxf"}, there), utf8(folder / "b.dxf"));
    EXPECT_EQ(outputOf({"a.dxf", "x/b.dxf"}, there), utf8(folder / "b.dxf"));
}

TEST(TasksOf, OneNameForSeveralDrawingsIsRefused) {
    Options options = over({"a.dxf", "b.dxf"});
    options.output = "same.dxf";
    EXPECT_TRUE(refused(options));
    options.output = "same";
    EXPECT_TRUE(refused(options));
}

TEST(TasksOf, FoldersOfNamesThatAreFilledInAreMade) {
    Options options = over({"a.dxf", "b.dxf"});
    options.output = "x/y/";
    options.report = "r/{}.json";
    const Options task = tasksOf(options).front();
    EXPECT_EQ(task.folders, (std::vector<std::filesystem::path>{"x/y", "r"}));
    options = over({"a.dxf"});
    options.output = "x/a.dxf";
    EXPECT_TRUE(tasksOf(options).front().folders.empty());
}

TEST(TasksOf, AFolderWhereAFileStandsIsRefused) {
    const console_test::Folder folder;
    console_test::write(folder / "file", "x");
    Options options = over({"a.dxf"});
    options.output = utf8(folder / "file") + "/";
    EXPECT_TRUE(refused(options));
    options.output = utf8(folder / "file") + "/below/";
    EXPECT_TRUE(refused(options));
    options.output = utf8(folder / "new") + "/below/";
    EXPECT_FALSE(refused(options));
}

TEST(TasksOf, ADrawingGetsItsExtension) {
    EXPECT_EQ(outputOf({"a.dxf"}, "out"), "out.dxf");
    EXPECT_EQ(outputOf({"b.c.dxf"}, "{}"), "b.c.dxf");
    EXPECT_EQ(outputOf({"a.dxf"}, "out.new"), "out.new");
}

TEST(TasksOf, OtherFormatsThanDxfAreRefused) {
    for (const char* name : {"out.dwg", "out.DWT", "out.dws", "{}.dwg"}) {
        Options options = over({"a.dxf"});
        options.output = name;
        EXPECT_TRUE(refused(options)) << name;
    }
    // One of many drawings that has such a name is told by itself.
    EXPECT_EQ(outputOf({"a.dxf", "b.dwg"}, "out/"), "out/b.dwg");
}

TEST(TasksOf, BracesStandForTheNameWithoutItsExtension) {
    EXPECT_EQ(outputOf({"a.dxf", "x/b.c.dxf"}, "out/{}-{}.dxf"), "out/b.c-b.c.dxf");
    EXPECT_EQ(outputOf({"x/{}.dxf"}, "{}-new.dxf"), "{}-new.dxf");  // filled in once
    Options options = over({"a.dxf", "b.dxf"});
    options.report = "{}.json";
    EXPECT_EQ(tasksOf(options)[1].report, "b.json");
    options.log = "{}.log";
    EXPECT_TRUE(refused(options));
}

TEST(TasksOf, ReportOnStandardOutputIsAskedForAndNotFilledIn) {
    Options options = over({"-.dxf"});
    options.report = "{}";
    EXPECT_NE(tasksOf(options).front().report, "-");
}

TEST(TasksOf, ResultsInOnePlaceAreRefusedWhateverTheirCase) {
    Options options = over({"a.dxf", "x/A.DXF"});
    options.output = "out/";
    EXPECT_TRUE(refused(options));
    options.output = "out/../{}.new";
    EXPECT_TRUE(refused(options));
    options.output = "";
    EXPECT_FALSE(refused(options));
    options = over({"a.dxf", "b.dxf"});
    options.output = "{}.out";
    options.report = "./{}.out";
    EXPECT_TRUE(refused(options));
}

TEST(TasksOf, ADrawingNamedTwiceIsRefused) {
    EXPECT_TRUE(refused(over({"a.dxf", "./a.dxf"})));
    EXPECT_FALSE(refused(over({"a.dxf", "x/a.dxf"})));
}

#ifndef _WIN32
// Natively only: Windows has no such names.
TEST(TasksOf, NamesThatAreNoUtf8StayApart) {
    Options options = over({"lat\xE4.dxf", "lat\xF6.dxf"});
    options.output = "out/";
    EXPECT_FALSE(refused(options));
}

// Natively only: links there need no rights.
TEST(TasksOf, LinksToOneFileAreOneFileBeforeItIsThere) {
    const console_test::Folder folder;
    std::filesystem::create_symlink("common", folder / "a.dxf");
    std::filesystem::create_symlink("common", folder / "b.dxf");
    Options options = over({"a.dxf", "b.dxf"});
    options.output = folder.path();
    EXPECT_TRUE(refused(options));
}
#endif

TEST(TasksOf, OnlyItsOwnDrawingMayBeOverwritten) {
    Options options = over({"a.dxf", "b.dxf"});
    options.output = "./";
    EXPECT_FALSE(refused(options));
    options = over({"a.dxf", "x/a.dxf"});
    options.output = "x/";
    EXPECT_TRUE(refused(options));
}

TEST(TasksOf, AReportOfSeveralNeedsANameForEach) {
    Options options = over({"a.dxf", "b.dxf"});
    options.report = "r.json";
    EXPECT_TRUE(refused(options));
    options.report = "-";
    EXPECT_FALSE(refused(options));
}

}  // namespace
