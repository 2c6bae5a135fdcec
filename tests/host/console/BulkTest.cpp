// Several drawings in one call: whose results go where, and what is refused.
#include "host/console/Bulk.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

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
    EXPECT_EQ(std::filesystem::path(outputOf({"a.dxf", "x/b.dxf"}, "out")),
              std::filesystem::path("out") / "b.dxf");
    EXPECT_EQ(std::filesystem::path(outputOf({"x/b.dxf"}, "out/")),
              std::filesystem::path("out") / "b.dxf");
}

TEST(TasksOf, BracesStandForTheNameWithoutItsExtension) {
    EXPECT_EQ(outputOf({"a.dxf", "x/b.c.dxf"}, "out/{}-{}.dxf"), "out/b.c-b.c.dxf");
    EXPECT_EQ(outputOf({"x/{}.dxf"}, "{}-new.dxf"), "{}-new.dxf");  // filled in once
    Options options = over({"a.dxf", "b.dxf"});
    options.report = "{}.json";
    EXPECT_EQ(tasksOf(options)[1].report, "b.json");
}

TEST(TasksOf, ResultsInOnePlaceAreRefusedWhateverTheirCase) {
    Options options = over({"a.dxf", "x/A.DXF"});
    options.output = "out";
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

TEST(TasksOf, OnlyItsOwnDrawingMayBeOverwritten) {
    Options options = over({"a.dxf", "b.dxf"});
    options.output = "./";
    EXPECT_FALSE(refused(options));
    options = over({"a.dxf", "x/a.dxf"});
    options.output = "x";
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
