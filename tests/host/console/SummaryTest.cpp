// Summaries of calls: their bytes for results made by hand, and those of the program against their
// schema and its table.
#include "host/console/Summary.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/host/console/ChildProcess.h"
#include "tests/host/console/Transcript.h"

namespace {

using namespace console_test;
using namespace host;
using console::Exit;
using console::Options;
using console::TaskResult;

std::vector<Options> tasks() {
    std::vector<Options> all(3);
    all[0].drawing = "a.dxf";
    all[1].drawing = "b, the other.dxf";
    all[2].drawing = "c.dxf";
    return all;
}

// The first was done, the second can't be read, the third was not tried.
std::vector<TaskResult> results() {
    std::vector<TaskResult> all(2);
    all[0].session = console::SessionResult{{9, 2, 3}, {1, 2, 0, 0, 0, 0, 0}, "9 turned", {}};
    all[0].session->findings.all = {{{dxf::Position::Unit::line, 7}, "odd"},
                                    {{dxf::Position::Unit::byte, 0}, "odder"}};
    all[0].session->findings.omitted = 4;
    all[0].savedAs = "out/a.dxf";
    all[0].changedSince = true;
    all[1].exit = Exit::unreadable;
    all[1].errors = {"the first error", "the second"};
    return all;
}

TEST(Summary, IsATableOfAllDrawings) {
    EXPECT_EQ(console::csvSummary({tasks(), results(), Exit::unreadable}),
              "drawing,exit,sentence,savedAs,changedSince,turned,unchanged,left,lockedLayer,"
              "classNotTurned,arrayInsert,attributeDefinition,notOpened,erased,noAngle,"
              "findingCount,findings\n"
              "a.dxf,0,9 turned,out/a.dxf,true,9,2,3,1,2,0,0,0,0,0,6,\"line 7: odd, and 5 more\"\n"
              "\"b, the other.dxf\",3,the first error,,false,,,,,,,,,,,,\n"
              "c.dxf,,not tried,,,,,,,,,,,,,,\n");
}

TEST(Summary, IsJsonOfAllDrawings) {
    const std::string json = console::jsonSummary({tasks(), results(), Exit::unreadable});
    for (const char* part :
         {"\"format\": \"orlinth summary\"", "\n  \"exit\": 3,", "\"sentence\": \"9 turned\"",
          "\"unchanged\": 2", "\"leftByReason\": {\"lockedLayer\": 1, \"classNotTurned\": 2,",
          "{\"line\": 7, \"byte\": null, \"message\": \"odd\"}",
          "{\"line\": null, \"byte\": 0, \"message\": \"odder\"}", "\"omittedFindings\": 4",
          "\"sentence\": \"the first error\"", "\"sentence\": \"not tried\"",
          "\"changedSince\": true"})
        EXPECT_NE(json.find(part), std::string::npos) << part << "\n" << json;
}

class SummaryOf : public testing::Test {
  protected:
    SummaryOf() { write(folder_ / "streets.dxf", read(exampleDrawing())); }

    Outcome call(std::vector<std::string> arguments) const {
        return run({orlinth(), std::move(arguments), folder_.path(), {}});
    }

    // All JSON files of the folder, by another program's reading.
    void expectValid(const std::string& folder, int count) const {
#ifdef _WIN32  // the interpreter is not there under Wine
        static_cast<void>(folder);
        static_cast<void>(count);
#else
        const std::filesystem::path sources = exampleDrawing().parent_path().parent_path();
        const Outcome outcome = run({"/usr/bin/python3",
                                     {(sources / "tests/host/console/validate_reports.py").string(),
                                      (sources / "docs/summary.schema.json").string(), folder},
                                     folder_.path(),
                                     {}});
        EXPECT_EQ(outcome.output + outcome.error, std::to_string(count) + " valid\n");
#endif
    }

    Folder folder_;
};

TEST_F(SummaryOf, IsValidWhateverBecameOfTheDrawings) {
    std::filesystem::create_directory(folder_ / "s");
    write(folder_ / "broken.dxf", "no drawing");
    write(folder_ / "cut.dxf", read(exampleDrawing()).substr(0, 20000));
    EXPECT_EQ(call({"align", "streets.dxf", "broken.dxf", "cut.dxf", "--line", "handle=2F", "-o",
                    "out/", "--summary", "s/all.json"})
                  .exit,
              3);
    EXPECT_EQ(
        call({"align", "cut.dxf", "--line", "handle=2F", "--dry-run", "--summary", "s/one.json"})
            .exit,
        0);
    EXPECT_EQ(
        call({"-s", "missing.scr", "streets.dxf", "cut.dxf", "--summary", "s/none.json"}).exit, 3);
    write(folder_ / "help.scr", "HELP\n");
    EXPECT_EQ(call({"-s", "help.scr", "--summary", "s/empty.json"}).exit, 0);
    expectValid("s", 4);
    const std::string all = read(folder_ / "s/all.json");
    EXPECT_NE(all.find("the drawing ends within a section, without EOF"), std::string::npos);
    EXPECT_NE(all.find("\"sentence\": \"broken.dxf, line 1: "), std::string::npos) << all;
    EXPECT_NE(read(folder_ / "s/none.json").find("not tried"), std::string::npos);
}

TEST_F(SummaryOf, IsWrittenAnewOrNotAtAll) {
    write(folder_ / "all.csv", "yesterday");
    call({"align", "streets.dxf", "--line", "handle=2F", "--dry-run", "--summary", "all.csv"});
    EXPECT_EQ(read(folder_ / "all.csv").rfind("drawing,", 0), 0U);
}

}  // namespace
