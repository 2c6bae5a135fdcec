// Reports: their bytes for accounts made by hand, and those of the program against their schema and
// the drawings before and after.
#include "host/console/Report.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <limits>
#include <string>

#include "host/console/Json.h"
#include "tests/host/console/ChildProcess.h"
#include "tests/host/console/Transcript.h"

namespace {

using namespace console_test;
using namespace host;
using console::CommandRun;
using console::jsonReport;
using console::JsonWriter;
using console::LeftEntity;
using console::Reason;
using console::textReport;
using console::TurnedEntity;

// --- JSON ----------------------------------------------------------------------------------------

std::string written(const std::string& text) {
    JsonWriter json;
    json.text(text);
    return json.take();
}

std::string written(double value) {
    JsonWriter json;
    json.number(value);
    return json.take();
}

TEST(Json, EscapesWhatMustNotStandInAText) {
    EXPECT_EQ(written("a\"b\\c/d"), "\"a\\\"b\\\\c/d\"\n");
    EXPECT_EQ(written("\n\r\t\b\x1f\x7f"), "\"\\n\\r\\t\\u0008\\u001f\\u007f\"\n");
    EXPECT_EQ(written(std::string("nul\0end", 7)), "\"nul\\u0000end\"\n");
    EXPECT_EQ(written(""), "\"\"\n");
}

TEST(Json, KeepsUtf8AndReplacesWhatIsNone) {
    EXPECT_EQ(written("Käännös 漢 𝄞"), "\"Käännös 漢 𝄞\"\n");
    EXPECT_EQ(written("a\xFF\xC3z"), "\"a\xEF\xBF\xBD\xEF\xBF\xBDz\"\n");
    EXPECT_EQ(written("\xED\xA0\x80").find("\xED"), std::string::npos);  // a lone surrogate
}

TEST(Json, NumbersReadBackAsTheIdenticalDouble) {
    unsigned seed = 11;
    for (int i = 0; i < 2000; ++i) {
        seed = seed * 1664525U + 1013904223U;
        const double value =
            std::ldexp(static_cast<double>(seed) - 2e9, static_cast<int>(seed >> 8) % 120 - 60);
        EXPECT_EQ(std::stod(written(value)), value);
    }
    EXPECT_EQ(written(0.1), "0.1\n");
    EXPECT_EQ(written(90.0), "90\n");
    EXPECT_EQ(written(25496000.125), "25496000.125\n");
    EXPECT_EQ(written(-0.0), "-0\n");
}

TEST(Json, WhatIsNoNumberIsNull) {
    EXPECT_EQ(written(std::numeric_limits<double>::infinity()), "null\n");
    EXPECT_EQ(written(std::numeric_limits<double>::quiet_NaN()), "null\n");
}

TEST(Json, NestsOnLinesAndInRows) {
    JsonWriter json;
    json.beginObject();
    json.key("empty").beginArray();
    json.endArray();
    json.key("rows").beginArray();
    for (const double x : {1.0, 2.0}) {
        json.beginObject(JsonWriter::Layout::row);
        json.key("x").number(x);
        json.key("at").beginArray();
        json.number(x);
        json.boolean(true);
        json.endArray();
        json.endObject();
    }
    json.endArray();
    json.key("none").textOrNull("");
    json.endObject();
    EXPECT_EQ(json.take(),
              "{\n  \"empty\": [],\n  \"rows\": [\n    {\"x\": 1, \"at\": [1, true]},\n"
              "    {\"x\": 2, \"at\": [2, true]}\n  ],\n  \"none\": null\n}\n");
}

// --- reports of accounts made by hand
// --------------------------------------------------------------

console::Record handMade() {
    console::Record record;
    record.drawing = "katu.dxf";
    record.release = "R12";
    record.version = "AC1009";
    const auto id = [](int number) { return AcDbObjectId(static_cast<Adesk::IntDbId>(number)); };
    CommandRun run;
    run.command = "ZEPTAlignEntities";
    run.where = "run.scr, line 3";
    run.reply = "k";
    run.line.emplace();
    run.line->handle = "2F";
    run.line->type = "LINE";
    run.line->className = "AcDbLine";
    run.line->layer = "KATU";
    run.line->point = AcGePoint3d(1, 2, 0);
    run.line->vertices = {AcGePoint3d(0, 0, 0), AcGePoint3d(10, 0, 0)};
    TurnedEntity text;
    text.id = id(1);
    text.handle = "30";
    text.type = "TEXT";
    text.className = "AcDbText";
    text.layer = "NIMET";
    text.wording = "Mäntytie\t\"1\"";
    text.before = {15.0, AcGePoint3d(5, 1, 0)};
    text.after = {374.5, AcGePoint3d(5, 4, 0)};
    text.segment = 0;
    text.distance = 1.25;
    run.turned = {text};
    LeftEntity left;
    left.id = id(2);
    left.type = "MTEXT";
    left.className = "AcDbMText";
    left.layer = "NIMET";
    left.hangsAt = AcGePoint3d(7, 8.5, 0);
    run.left.push_back(left);
    left.hangsAt.reset();
    left.id = id(3);
    left.reason = Reason::lockedLayer;
    left.selected = false;
    run.left.push_back(left);
    run.selected = 2;
    record.runs = {run};
    return record;
}

TEST(TextReport, TellsTheLineTheTurnedTheLeftAndTheTotals) {
    EXPECT_EQ(textReport(handMade(), {"out.dxf", false}),
              "Report of katu.dxf, R12, AC1009\n"
              "Saved as out.dxf\n"
              "\n"
              "ZEPTAlignEntities (run.scr, line 3)\n"
              "  along LINE 2F on layer KATU, picked at 1.000,2.000\n"
              "  reply \"k\"\n"
              "  1 turned of 2 selected\n"
              "  handle  type  layer     was      is  segment  distance  moved  name\n"
              "  30      TEXT  NIMET  15.000  14.500        0     1.250  3.000  Mäntytie \"1\"\n"
              "  2 left\n"
              "  handle or place  type   layer  reason                       name\n"
              "  7.000,8.500      MTEXT  NIMET  class not turned: AcDbMText\n"
              "  -                MTEXT  NIMET  locked layer, not selected\n"
              "\n"
              "Total: 1 turned, 2 left: 1 locked layer, 1 class not turned\n");
}

TEST(TextReport, TellsWhereItWasSaved) {
    const auto second = [](const console::Saved& saved) {
        return lines(textReport(handMade(), saved))[1];
    };
    EXPECT_EQ(second({"", false}), "Not saved.");
    EXPECT_EQ(second({"", true}), "A dry run: nothing is written.");
    EXPECT_EQ(second({"out.dxf", true}), "A dry run; it would be saved as out.dxf");
    EXPECT_EQ(second({"out.dxf", false, true}),
              "Saved as out.dxf, and changed since; that is not saved.");
}

TEST(TextReport, AnglesAreWithinAWholeTurn) {
    console::Record record = handMade();
    record.runs[0].turned[0].before.degrees = -0.0001;
    record.runs[0].turned[0].after.degrees = -90.0;
    const std::string text = textReport(record, {});
    EXPECT_NE(text.find("  0.000  270.000  "), std::string::npos) << text;
}

TEST(TextReport, AnglesThatDifferLookDifferent) {
    console::Record record = handMade();
    const auto row = [&](double before, double after) {
        record.runs[0].turned[0].before.degrees = before;
        record.runs[0].turned[0].after.degrees = after;
        return textReport(record, {});
    };
    EXPECT_NE(row(0, 359.99987).find("  0.0000  359.9999  "), std::string::npos);
    EXPECT_NE(row(30, 30 + 1e-9).find("  30.000000000  30.000000001  "), std::string::npos);
    EXPECT_NE(row(7.25, 367.25).find("  7.250  367.250  "), std::string::npos);  // a whole turn
    EXPECT_NE(row(7.25, 7.25).find("  7.250  7.250  "), std::string::npos);
    record.runs[0].turned[0].after.insertion = AcGePoint3d(5, 1 + 1e-6, 0);
    EXPECT_NE(row(0, 1).find("  0.000001  "), std::string::npos) << row(0, 1);
}

TEST(TextReport, FarDistancesStayShort) {
    console::Record record = handMade();
    record.runs[0].turned[0].distance = 1e308;
    EXPECT_NE(textReport(record, {}).find("  1.000e+308  "), std::string::npos);
}

TEST(TextReport, LinesAndTheLikeAreCountedByTheirClass) {
    console::Record record = handMade();
    std::vector<LeftEntity>& left = record.runs[0].left;
    left.clear();
    const auto add = [&](const char* type, Reason reason, bool selected) {
        LeftEntity entity;
        entity.id = AcDbObjectId(static_cast<Adesk::IntDbId>(100 + left.size()));
        entity.handle = std::to_string(100 + left.size());
        entity.type = type;
        entity.className = "AcDbX";
        entity.reason = reason;
        entity.selected = selected;
        left.push_back(entity);
    };
    for (const char* label : {"MTEXT", "INSERT", "ATTDEF", "ATTRIB", "DIMENSION", "ARC_DIMENSION"})
        add(label, Reason::classNotTurned, true);
    for (int i = 0; i < 3; ++i) add("LINE", Reason::classNotTurned, true);
    add("HATCH", Reason::classNotTurned, true);
    add("LINE", Reason::lockedLayer, false);
    add("LINE", Reason::erased, true);
    const std::string text = textReport(record, {});
    for (int row = 100; row < 106; ++row)
        EXPECT_NE(text.find("\n  " + std::to_string(row) + " "), std::string::npos) << row;
    EXPECT_EQ(text.find("\n  106 "), std::string::npos) << text;
    EXPECT_NE(text.find("\n  111     LINE "), std::string::npos) << text;
    EXPECT_NE(text.find("\n  1 HATCH, 3 LINE: class not turned\n"
                        "  1 LINE: locked layer, not selected\n"),
              std::string::npos)
        << text;
}

TEST(TextReport, WhereHandlesAreMissingPlacesTellTheEntities) {
    console::Record record = handMade();
    record.runs[0].turned[0].handle.clear();
    record.runs[0].turned[0].hangsAt = AcGePoint3d(25496000.5, 6672000, 0);
    EXPECT_NE(textReport(record, {}).find("  25496000.500,6672000.000  TEXT "), std::string::npos);
}

TEST(TextReport, TellsWhatIsOddInTheDrawing) {
    console::Record record = handMade();
    for (std::uint64_t line = 1; line <= 12; ++line)
        record.findings.all.push_back({{dxf::Position::Unit::line, line}, "odd"});
    record.findings.omitted = 3;
    const std::string text = textReport(record, {});
    EXPECT_NE(text.find("Odd in it, and kept as it stands:\n  line 1: odd\n"), std::string::npos);
    EXPECT_NE(text.find("  line 10: odd\n  and 5 more\n\n"), std::string::npos) << text;
    EXPECT_EQ(record.findings.text(), "line 1: odd, and 14 more");
    EXPECT_EQ(console::Findings().text(), "");
}

TEST(CsvReport, HasARowForEachEntityAndEmptyCellsForWhatDoesNotApply) {
    console::Record record = handMade();
    record.runs[0].left[0].layer = "A,\"B\"\n";
    EXPECT_EQ(
        console::csvReport(record),
        "run,command,outcome,handle,type,class,layer,name,angleBefore,angleAfter,xBefore,"
        "yBefore,xAfter,yAfter,hangsAtX,hangsAtY,segment,distance,reason,detail,selected\n"
        "1,ZEPTAlignEntities,turned,30,TEXT,AcDbText,NIMET,\"Mäntytie\t\"\"1\"\"\",15,374.5,5,1,"
        "5,4,0,0,0,1.25,,,\n"
        "1,ZEPTAlignEntities,left,,MTEXT,AcDbMText,\"A,\"\"B\"\"\n\",,,,,,,,7,8.5,,,class not "
        "turned,,true\n"
        "1,ZEPTAlignEntities,left,,MTEXT,AcDbMText,NIMET,,,,,,,,,,,,locked layer,,false\n");
}

TEST(TextReport, WhatControlsATerminalIsABlank) {
    console::Record record = handMade();
    record.runs[0].turned[0].wording =
        "a\x1b[2Jb\xC2\x9B"
        "c\nd\xFF";
    const std::string text = textReport(record, {});
    EXPECT_NE(text.find("a [2Jb c d\xEF\xBF\xBD\n"), std::string::npos) << text;
}

TEST(TextReport, TellsWhatWasTakenBackAndWhatChangedOtherwise) {
    console::Record record = handMade();
    record.runs[0].otherChanges = 4;
    record.runs.push_back(record.runs[0]);
    record.runs[1].takenBack = true;
    record.runs[1].end = editor::CommandResult::End::exceptionLeft;
    record.runs[1].exception = "std::bad_alloc";
    const std::string text = textReport(record, {});
    EXPECT_NE(text.find("  4 changed otherwise, made or erased\n"), std::string::npos) << text;
    EXPECT_NE(text.find("  stopped by std::bad_alloc\n  taken back: nothing of it"),
              std::string::npos)
        << text;
    EXPECT_NE(text.find("Total: 1 turned, 2 left"), std::string::npos) << text;
    EXPECT_NE(textReport({}, {}).find("No command was run."), std::string::npos);
}

TEST(JsonReport, TellsTheSame) {
    const std::string json = jsonReport(handMade(), {"out.dxf", false});
    for (const char* part :
         {"\"drawing\": {\n    \"file\": \"katu.dxf\",\n    \"release\": \"R12\",\n    "
          "\"version\": \"AC1009\",\n    \"findings\": [],\n    \"omittedFindings\": 0\n  },",
          "\"savedAs\": \"out.dxf\"", "\"pickedAt\": [1, 2, 0]",
          "\"name\": \"Mäntytie\\t\\\"1\\\"\", \"angleBefore\": 15, \"angleAfter\": 374.5, "
          "\"insertionBefore\": [5, 1, 0], \"insertionAfter\": [5, 4, 0]",
          "\"segment\": 0, \"distance\": 1.25}", "{\"handle\": null, \"type\": \"MTEXT\"",
          "\"hangsAt\": [7, 8.5, 0], \"reason\": \"classNotTurned\"", "\"changedSince\": false",
          "\"reason\": \"lockedLayer\", \"detail\": null, "
          "\"selected\": false}"})
        EXPECT_NE(json.find(part), std::string::npos) << part << "\n" << json;
    EXPECT_EQ(json, jsonReport(handMade(), {"out.dxf", false}));
}

// --- reports of the program
// ------------------------------------------------------------------------

class Report : public testing::Test {
  protected:
    Report() { write(folder_ / "streets.dxf", read(exampleDrawing())); }

    Outcome call(std::vector<std::string> arguments) const {
        return run({orlinth(), std::move(arguments), folder_.path(), {}});
    }

    // Schema and numbers, by other programs' reading; how many entities were turned in the end.
    void expectTrue(const std::string& report, const std::string& before, const std::string& after,
                    int turned) const {
        EXPECT_NE(read(folder_ / report).find("\"turned\": " + std::to_string(turned)),
                  std::string::npos);
#ifdef _WIN32  // the packages that read them are those of Linux
        static_cast<void>(before);
        static_cast<void>(after);
#else
        const std::filesystem::path sources = exampleDrawing().parent_path().parent_path();
        const Outcome outcome =
            run({"/usr/bin/python3",
                 {(sources / "tests/host/console/check_report.py").string(),
                  (sources / "docs/report.schema.json").string(), report, before, after},
                 folder_.path(),
                 {}});
        EXPECT_EQ(outcome.output + outcome.error, std::to_string(turned) + " turned\n");
        EXPECT_EQ(outcome.exit, 0);
#endif
    }

    Folder folder_;
};

TEST_F(Report, IsTrueOfEverythingInTheDrawing) {
    write(folder_ / "all.scr", "ZEPTAlignEntities\n25496080,6672015\n(ssget \"X\")\n\nk\n");
    const Outcome outcome =
        call({"streets.dxf", "-s", "all.scr", "-o", "out.dxf", "--report", "out.json"});
    EXPECT_EQ(outcome.exit, 0) << outcome.error;
    const std::string json = read(folder_ / "out.json");
    EXPECT_NE(json.find("\"arrayInsert\": 1"), std::string::npos);
    EXPECT_NE(json.find("\"attributeDefinition\": 1"), std::string::npos);
    expectTrue("out.json", "streets.dxf", "out.dxf", 69);  // one of them on a frozen layer
}

TEST_F(Report, IsTrueOfOneShots) {
    for (const char* flip : {"--flip", "--verify"}) {
        EXPECT_EQ(call({"align", "streets.dxf", "--line", "handle=2F", flip, "-o", "out.dxf",
                        "--report", "out.json"})
                      .exit,
                  0);
        expectTrue("out.json", "streets.dxf", "out.dxf", 68);
    }
}

TEST_F(Report, IsTrueOfSeveralCommandsAndWhatWasUndone) {
    write(folder_ / "several.scr",
          "ZEPTAlignEntities\n(handent \"2F\")\nALL\n\n\n"
          "ZEPTAlignEntities\n(handent \"2F\")\n(handent \"95\")\n\nk\n"
          "U\n"
          "ZEPTAlignEntities\n(handent \"30\")\n(handent \"64\")\n(handent \"97\")\n\nk\n"
          "ZEPTAlignEntities\n(handent \"30\")\nALL\n\n\nU\nREDO\nU\n");
    EXPECT_EQ(
        call({"streets.dxf", "-s", "several.scr", "-o", "out.dxf", "--report", "out.json"}).exit,
        0);
    const std::string json = read(folder_ / "out.json");
    std::size_t takenBack = 0;
    for (std::size_t at = 0; (at = json.find("\"takenBack\": true", at)) != std::string::npos; ++at)
        ++takenBack;
    EXPECT_EQ(takenBack, 2U);
    expectTrue("out.json", "streets.dxf", "out.dxf", 68);
}

TEST_F(Report, OfADryRunIsThatOfTheRealOneButForItsMark) {
    const std::vector<std::string> align = {"align",     "streets.dxf", "--line",
                                            "handle=2F", "-o",          "out.dxf"};
    const auto with = [&](std::vector<std::string> more) {
        more.insert(more.begin(), align.begin(), align.end());
        return more;
    };
    EXPECT_EQ(call(with({"--dry-run", "--report", "dry.json"})).exit, 0);
    EXPECT_FALSE(std::filesystem::exists(folder_ / "out.dxf"));
    EXPECT_EQ(call(with({"--report", "real.json"})).exit, 0);
    std::string dry = read(folder_ / "dry.json");
    const std::string mark = "\"dryRun\": true";
    ASSERT_NE(dry.find(mark), std::string::npos);
    dry.replace(dry.find(mark), mark.size(), "\"dryRun\": false");
    EXPECT_EQ(dry, read(folder_ / "real.json"));
}

TEST_F(Report, ADrawingThatIsAlignedAgainStaysAsItIs) {
    unsigned seed = 5;
    const auto random = [&seed] {
        seed = seed * 1664525U + 1013904223U;
        return static_cast<double>(seed) / 4294967296.0 * 60.0 - 30.0;
    };
    // Texts near the origin show each bit of a rotation in the place where they stand.
    std::string drawing = "  0\nSECTION\n  2\nENTITIES\n";
    drawing += "  0\nLINE\n  5\n2F\n  8\n0\n 10\n-30.0\n 20\n-7.0\n 11\n31.0\n 21\n17.0\n";
    for (int i = 0; i < 300; ++i) {
        const auto group = [&drawing](int code, const std::string& value) {
            drawing += std::to_string(code) + "\n" + value + "\n";
        };
        char handle[16];
        std::snprintf(handle, sizeof handle, "%X", 0x100 + i);
        group(0, "TEXT");
        group(5, handle);
        group(8, "0");
        for (const int code : {10, 20, 11, 21}) group(code, std::to_string(random()));
        group(40, "1.0");
        group(1, "a");
        group(72, std::to_string(1 + i % 2));
        group(73, std::to_string(i % 4));
    }
    drawing += "  0\nENDSEC\n  0\nEOF\n";
    write(folder_ / "0.dxf", drawing);
    for (int round = 0; round < 3; ++round) {
        const std::string from = std::to_string(round) + ".dxf";
        const std::string to = std::to_string(round + 1) + ".dxf";
        const Outcome outcome = call({"align", from, "--line", "handle=2F", "-o", to});
        EXPECT_EQ(outcome.exit, 0) << outcome.error;
        if (round == 0) continue;
        EXPECT_NE(outcome.output.find("300 turned (300 stood so already), 1 left"),
                  std::string::npos)
            << outcome.output;
        EXPECT_EQ(read(folder_ / from), read(folder_ / to));
    }
}

TEST_F(Report, ALineWithoutADirectionGivesNoAngle) {
    std::string drawing = "  0\nSECTION\n  2\nENTITIES\n";
    drawing += "  0\nLINE\n  5\n2F\n  8\n0\n 10\n-1e308\n 20\n-1e308\n 11\n1e308\n 21\n1e308\n";
    drawing += "  0\nTEXT\n  5\n30\n  8\n0\n 10\n1.0\n 20\n1.0\n 40\n1.0\n  1\na\n";
    drawing += "  0\nENDSEC\n  0\nEOF\n";
    write(folder_ / "far.dxf", drawing);
    const Outcome outcome =
        call({"align", "far.dxf", "--line", "handle=2F", "--dry-run", "--report", "far.json"});
    EXPECT_EQ(outcome.exit, 0) << outcome.error;
    const std::string json = read(folder_ / "far.json");
    EXPECT_NE(json.find("\"reason\": \"noAngle\", \"detail\": null"), std::string::npos) << json;
}

TEST_F(Report, IsTheSameEveryTime) {
    for (const char* name : {"a.json", "b.json"})
        call({"align", "streets.dxf", "--line", "handle=2F", "--dry-run", "--report", name});
    EXPECT_EQ(read(folder_ / "a.json"), read(folder_ / "b.json"));
    EXPECT_NE(read(folder_ / "a.json"), "");
}

}  // namespace
