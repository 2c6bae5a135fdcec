// What transcripts can't hold: bytes that are no text, files that end anywhere, disks that are
// full.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "tests/host/console/ChildProcess.h"
#include "tests/host/console/Transcript.h"

namespace {

using namespace console_test;

class Program : public testing::Test {
  protected:
    Program() : drawing_(read(exampleDrawing())) { write(folder_ / "streets.dxf", drawing_); }

    Outcome call(std::vector<std::string> arguments, const std::string& input = {}) const {
        return run({orlinth(), std::move(arguments), folder_.path(), input});
    }

    // How many files the folder holds; a forgotten half-written one would be one too many.
    std::ptrdiff_t fileCount() const {
        return std::distance(std::filesystem::directory_iterator(folder_.path()),
                             std::filesystem::directory_iterator());
    }

    Folder folder_;
    const std::string drawing_;
};

bool contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

TEST_F(Program, RandomBytesAreNoDrawing) {
    std::mt19937 random(8);
    for (int round = 0; round < 10; ++round) {
        std::string bytes(1 + random() % 5000, '\0');
        for (char& byte : bytes) byte = static_cast<char>(random());
        write(folder_ / "garbage.dxf", bytes);
        const Outcome outcome =
            call({"align", "garbage.dxf", "--line", "handle=2F", "-o", "out.dxf"});
        EXPECT_EQ(outcome.exit, 3);
        EXPECT_TRUE(contains(outcome.error, "garbage.dxf")) << outcome.error;
        EXPECT_FALSE(std::filesystem::exists(folder_ / "out.dxf"));
    }
}

// A drawing that was cut anywhere is either refused with its place, or kept as it stands.
TEST_F(Program, ADrawingCutAnywhereIsRefusedOrKept) {
    std::mt19937 random(9);
    for (int round = 0; round < 25; ++round) {
        const std::string cut = drawing_.substr(0, random() % drawing_.size());
        write(folder_ / "cut.dxf", cut);
        const Outcome outcome = call({"cut.dxf", "-o", "out.dxf"});
        if (outcome.exit == 0) {
            EXPECT_TRUE(contains(outcome.output, "kept as it stands")) << cut.size();
            EXPECT_EQ(read(folder_ / "out.dxf"), cut);
        } else {
            EXPECT_EQ(outcome.exit, 3) << cut.size();
            EXPECT_TRUE(contains(outcome.error, "cut.dxf, line ")) << outcome.error;
            EXPECT_FALSE(std::filesystem::exists(folder_ / "out.dxf"));
        }
        std::filesystem::remove(folder_ / "out.dxf");
    }
}

TEST_F(Program, AScriptWithZeroBytesIsNoScript) {
    write(folder_ / "run.scr", std::string("QSAVE\n\0\x01garbage", 15));
    const Outcome outcome = call({"streets.dxf", "-s", "run.scr"});
    EXPECT_EQ(outcome.exit, 3);
    EXPECT_EQ(outcome.error, "orlinth: the script 'run.scr' is no text: byte 6 is zero\n");
    EXPECT_EQ(outcome.output, "");
}

TEST_F(Program, ADwgIsToldApart) {
    write(folder_ / "town.dwg", std::string("AC1032\0\0\0\0\0\x03", 12));
    const Outcome outcome = call({"align", "town.dwg", "--line", "handle=2F", "-o", "out.dxf"});
    EXPECT_EQ(outcome.exit, 3);
    EXPECT_EQ(outcome.error,
              "orlinth: town.dwg, line 1: expected a DXF drawing, found a DWG drawing; save it as "
              "DXF in a "
              "CAD program\n");
}

TEST_F(Program, ScriptsInEveryEncodingAreRead) {
    const std::string utf8 = "SAVE \xC3\xB6.dxf\n";
    std::string utf16 = "\xFF\xFE";
    for (const char c : std::string("SAVE ")) utf16 += {c, '\0'};
    utf16 += std::string("\xF6\0", 2);
    for (const char c : std::string(".dxf\r\n")) utf16 += {c, '\0'};
    for (const std::string& script :
         {utf8, "\xEF\xBB\xBF" + utf8, utf16, std::string("SAVE \xF6.dxf\r\n")}) {
        write(folder_ / "run.scr", script);
        const Outcome outcome = call({"streets.dxf", "-s", "run.scr"});
        EXPECT_EQ(outcome.exit, 0) << outcome.error;
        EXPECT_TRUE(contains(outcome.output, "ö.dxf written")) << outcome.output;
        EXPECT_TRUE(std::filesystem::remove(folder_ / std::filesystem::u8path("ö.dxf")));
    }
}

TEST_F(Program, TheLogHoldsEverythingPrintedInItsOrder) {
    write(folder_ / "run.scr",
          "ZEPTAlignEntities\n(handent \"2F\")\n(handent \"63\")\n\nk\nNOSUCHCOMMAND\n");
    const Outcome outcome =
        call({"streets.dxf", "-s", "run.scr", "-o", "out.dxf", "--log", "log.txt"});
    EXPECT_EQ(outcome.exit, 5);
    EXPECT_EQ(read(folder_ / "log.txt"), outcome.output + outcome.error);
    EXPECT_EQ(
        read(folder_ / "log.txt"),
        "Command: ZEPTAlignEntities\n"
        "Valitse suunnan määräävä viiva : (handent \"2F\")\n"
        "Valitse suunnattavat kohteet : \n"
        "Select objects: (handent \"63\")\n"
        "1 found\n"
        "Select objects: \n"
        "Käännetäänkö symboleja 180 astetta k/<e> : k\n"
        "1 turned, 0 left.\n"
        "Command: NOSUCHCOMMAND\n"
        "orlinth: run.scr, line 6: there is no command NOSUCHCOMMAND. HELP lists the commands\n"
        "orlinth: out.dxf was not written, because the session did not end well; what was done "
        "till then is given up: 1 turned, 0 left\n");
}

// Messages stay readable whatever was typed.
TEST_F(Program, LongLinesAreToldByTheirBeginning) {
    write(folder_ / "run.scr", std::string(1'000'000, 'A') + "\n");
    const Outcome command = call({"streets.dxf", "-s", "run.scr"});
    EXPECT_EQ(command.exit, 5);
    EXPECT_EQ(command.error, "orlinth: run.scr, line 1: there is no command " +
                                 std::string(100, 'A') + " .... HELP lists the commands\n");
    write(folder_ / "run.scr",
          "ZEPTAlignEntities\n(handent \"2F\")\nALL\n\n" + std::string(1'000'000, 'k') + "\n");
    EXPECT_EQ(call({"streets.dxf", "-s", "run.scr", "-o", "out.dxf"}).exit, 0);
    write(folder_ / "run.scr", std::string(1'000'000, '(') + "\n");
    EXPECT_EQ(call({"streets.dxf", "-s", "run.scr"}).exit, 1);
}

TEST_F(Program, TheLogHoldsWhatAQuietCallDoesNotPrint) {
    const std::vector<std::string> arguments = {"align", "streets.dxf", "--line",  "handle=2F",
                                                "-o",    "out.dxf",     "--verify"};
    const Outcome loud = call(arguments);
    std::vector<std::string> more = arguments;
    more.insert(more.end(), {"--quiet", "--log", "log.txt"});
    const Outcome quiet = call(more);
    EXPECT_EQ(quiet.exit, 0);
    EXPECT_EQ(lines(quiet.output).size(), 3U) << quiet.output;
    EXPECT_EQ(read(folder_ / "log.txt"), loud.output + "\n" + quiet.output);
}

TEST_F(Program, TheLogIsWrittenAnew) {
    write(folder_ / "log.txt", std::string(10000, 'x'));
    EXPECT_EQ(call({"streets.dxf", "--log", "log.txt"}).exit, 0);
    EXPECT_EQ(read(folder_ / "log.txt"), "");
}

TEST_F(Program, LinesEndAlikeInEveryBuild) {
    const Outcome outcome = call({"streets.dxf"}, "HELP\r\nQUIT\r\n");
    EXPECT_EQ(outcome.exit, 0) << outcome.error;
    EXPECT_EQ(outcome.output.find('\r'), std::string::npos);
}

TEST_F(Program, ATargetMarkedReadOnlyStaysAsItWas) {
    write(folder_ / "out.dxf", "mine");
    std::filesystem::permissions(folder_ / "out.dxf", std::filesystem::perms::owner_read |
                                                          std::filesystem::perms::group_read |
                                                          std::filesystem::perms::others_read);
    const Outcome outcome = call({"align", "streets.dxf", "--line", "handle=2F", "-o", "out.dxf"});
    std::filesystem::permissions(folder_ / "out.dxf", std::filesystem::perms::owner_all);
    EXPECT_EQ(outcome.exit, 4);
    EXPECT_TRUE(contains(outcome.error, "out.dxf was not written")) << outcome.error;
    EXPECT_EQ(read(folder_ / "out.dxf"), "mine");
    EXPECT_EQ(fileCount(), 2);
}

#ifndef _WIN32
// Natively only: a limit on the size of files stands for a full disk.
TEST_F(Program, AFullDiskLeavesEverythingAsItWas) {
    write(folder_ / "out.dxf", "mine");
    const std::string command = "ulimit -f 8; exec '" + orlinth().string() +
                                "' align streets.dxf --line handle=2F -o out.dxf --verify";
    const Outcome outcome = run({"/bin/sh", {"-c", command}, folder_.path(), {}});
    EXPECT_EQ(outcome.exit, 4) << outcome.error;
    EXPECT_TRUE(contains(outcome.error, "out.dxf was not written")) << outcome.error;
    EXPECT_EQ(read(folder_ / "out.dxf"), "mine");
    EXPECT_EQ(read(folder_ / "streets.dxf"), drawing_);
    EXPECT_EQ(fileCount(), 2);
}

// Natively only: Windows has no such device.
TEST_F(Program, ALogOnAFullDiskIsToldAndTheJobIsDone) {
    const Outcome outcome = call(
        {"align", "streets.dxf", "--line", "handle=2F", "-o", "out.dxf", "--log", "/dev/full"});
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_EQ(outcome.error, "orlinth: the log '/dev/full' could not be written to its end\n");
    EXPECT_TRUE(std::filesystem::exists(folder_ / "out.dxf"));
}

// Natively only: the shell that closes the streams. Their numbers go to files that are opened
// later, which must not get the words meant for a screen.
TEST_F(Program, ClosedStreamsNeverLandInAFile) {
    ASSERT_EQ(
        call({"align", "streets.dxf", "--line", "handle=2F", "-o", "open.dxf", "--log", "open.txt"})
            .exit,
        0);
    const std::string command =
        "exec '" + orlinth().string() +
        "' align streets.dxf --line handle=2F -o shut.dxf --log shut.txt <&- >&- 2>&-";
    EXPECT_EQ(run({"/bin/sh", {"-c", command}, folder_.path(), {}}).exit, 0);
    EXPECT_EQ(read(folder_ / "shut.dxf"), read(folder_ / "open.dxf"));
    std::string log = read(folder_ / "open.txt");
    log.replace(log.find("open.dxf"), 4, "shut");
    EXPECT_EQ(read(folder_ / "shut.txt"), log);
}

// Natively only: the shell's signals. Whether the signal comes before, in or behind the writing is
// left to chance; what holds in each case is not.
TEST_F(Program, SavingThatIsInterruptedLeavesTheTargetAndNothingElse) {
    const std::size_t end = drawing_.rfind("ENDSEC", drawing_.find("OBJECTS"));
    ASSERT_NE(end, std::string::npos);
    const std::size_t record = drawing_.rfind('0', end);
    std::string large = drawing_.substr(0, drawing_.rfind('\n', record) + 1);
    const std::string eol = drawing_.find("\r\n") == std::string::npos ? "\n" : "\r\n";
    const std::string point = "  0" + eol + "POINT" + eol + "  8" + eol + "0" + eol + " 10" + eol +
                              "1.0" + eol + " 20" + eol + "1.0" + eol;
    while (large.size() < 12'000'000) large += point;
    large += drawing_.substr(drawing_.rfind('\n', record) + 1);
    write(folder_ / "large.dxf", large);
    int interrupted = 0;
    for (int round = 0; round < 3; ++round) {
        write(folder_ / "out.dxf", "mine");
        const std::string command =
            "'" + orlinth().string() +
            "' align large.dxf --line handle=30 --select handle=63 -o out.dxf & p=$!; "
            "while kill -0 $p 2>/dev/null; do for f in orlinth-*.tmp; do "
            "if [ -e \"$f\" ]; then kill -TERM $p; wait $p; exit $?; fi; done; done; "
            "wait $p; exit $?";
        const Outcome outcome = run({"/bin/sh", {"-c", command}, folder_.path(), {}});
        if (outcome.exit == 4) {
            ++interrupted;
            EXPECT_EQ(outcome.error, "orlinth: out.dxf was not written: it was interrupted\n");
            EXPECT_EQ(read(folder_ / "out.dxf"), "mine");
        } else {
            EXPECT_EQ(outcome.exit, 0) << outcome.error;
            EXPECT_GT(read(folder_ / "out.dxf").size(), large.size());
        }
        EXPECT_EQ(fileCount(), 3);
    }
    RecordProperty("interrupted", interrupted);
}

// Natively only: Windows has no such devices.
TEST_F(Program, DevicesThatNeverEndAreNotRead) {
    const Outcome drawing = call({"/dev/zero"});
    EXPECT_EQ(drawing.exit, 3);
    EXPECT_EQ(drawing.error, "orlinth: /dev/zero: expected a DXF drawing, found a device\n");
    const Outcome script = call({"streets.dxf", "-s", "/dev/zero"});
    EXPECT_EQ(script.exit, 3);
    EXPECT_EQ(script.error, "orlinth: the script '/dev/zero' can't be read: it is a device\n");
}

// Natively only: Windows has no such pipes.
TEST_F(Program, APipeThatNobodyWritesIntoIsNotWaitedForForEver) {
    const std::string command = "mkfifo ff && exec '" + orlinth().string() + "' ff -o out.dxf";
    const Outcome outcome = run({"/bin/sh", {"-c", command}, folder_.path(), {}});
    EXPECT_EQ(outcome.exit, 3);
    EXPECT_EQ(outcome.error,
              "orlinth: ff: expected a DXF drawing, found a pipe that nobody writes into\n");
}

TEST_F(Program, ADrawingMayComeFromAPipe) {
    const std::string command =
        "mkfifo ff && { cat streets.dxf > ff & exec '" + orlinth().string() + "' ff -o out.dxf; }";
    const Outcome outcome = run({"/bin/sh", {"-c", command}, folder_.path(), {}});
    EXPECT_EQ(outcome.exit, 0) << outcome.error;
    EXPECT_EQ(read(folder_ / "out.dxf"), drawing_);
}

// Natively only: the words are the system's.
TEST_F(Program, WhatTheSystemRefusesToOpenIsToldInItsWords) {
    const std::string name = std::string(300, 'a') + ".dxf";
    const Outcome outcome = call({name});
    EXPECT_EQ(outcome.exit, 3);
    EXPECT_EQ(outcome.error, "orlinth: " + name + " can't be opened: File name too long\n");
}

// Natively only: Windows has no such device. What was asked for on standard output is a result.
TEST_F(Program, AStandardOutputThatTakesNothingIsAFailure) {
    const auto full = [&](const std::string& arguments) {
        const std::string command =
            "exec '" + orlinth().string() + "' " + arguments + " > /dev/full";
        return run({"/bin/sh", {"-c", command}, folder_.path(), {}});
    };
    for (const char* arguments :
         {"align streets.dxf --line handle=2F --dry-run --report -", "--help", "--version"}) {
        const Outcome outcome = full(arguments);
        EXPECT_EQ(outcome.exit, 4) << arguments;
        EXPECT_EQ(outcome.error,
                  "orlinth: standard output could not take everything: No space left on device\n");
    }
    EXPECT_EQ(full("align streets.dxf --line handle=63 --report -").exit, 1);
    EXPECT_EQ(full("align streets.dxf --line handle=2F -o out.dxf --quiet").exit, 4);  // its table
    EXPECT_TRUE(std::filesystem::exists(folder_ / "out.dxf"));
}

// Natively only: the shell that makes the pipe.
TEST_F(Program, AScriptFromAPipeIsThatOfAllDrawings) {
    write(folder_ / "other.dxf", drawing_);
    write(folder_ / "run.scr", "ZEPTAlignEntities\n(handent \"2F\")\n(handent \"63\")\n\nk\n");
    const std::string command = "mkfifo pipe; cat run.scr > pipe & exec '" + orlinth().string() +
                                "' -s pipe streets.dxf other.dxf -o out/ --quiet";
    const Outcome outcome = run({"/bin/sh", {"-c", command}, folder_.path(), {}});
    EXPECT_EQ(outcome.exit, 0) << outcome.error;
    EXPECT_NE(read(folder_ / "out/streets.dxf"), drawing_);
    EXPECT_EQ(read(folder_ / "out/other.dxf"), read(folder_ / "out/streets.dxf"));
}

// Natively only: links there need no rights.
TEST_F(Program, ALinkToWhatIsNotThereYetIsThatFile) {
    std::filesystem::create_symlink("out.dxf", folder_ / "link.json");
    const Outcome outcome = call(
        {"align", "streets.dxf", "--line", "handle=2F", "-o", "out.dxf", "--report", "link.json"});
    EXPECT_EQ(outcome.exit, 2);
    EXPECT_TRUE(contains(outcome.error, "name the same file")) << outcome.error;
}

// Natively only: Windows has no such names.
TEST_F(Program, NamesThatAreNoUtf8AreToldByTheirBytes) {
    write(folder_ / "n\xE4rhi.dxf", drawing_);
    write(folder_ / "n\\xE4rhi.dxf", drawing_);
    const Outcome outcome = call({"align", "n\xE4rhi.dxf", "n\\xE4rhi.dxf", "--line", "handle=2F",
                                  "-o", "out/", "--report", "{}.json", "--summary", "all.csv"});
    EXPECT_EQ(outcome.exit, 0) << outcome.error;
    EXPECT_TRUE(contains(outcome.output, "saved as out/n\\xE4rhi.dxf\n")) << outcome.output;
    EXPECT_TRUE(contains(outcome.output, "saved as out/n\\x5CxE4rhi.dxf\n")) << outcome.output;
    EXPECT_FALSE(contains(outcome.output, "n\xE4rhi"));
    EXPECT_TRUE(contains(read(folder_ / "n\xE4rhi.json"), "\"file\": \"n\\\\xE4rhi.dxf\""));
    EXPECT_TRUE(contains(read(folder_ / "all.csv"), "\nn\\xE4rhi.dxf,0,"));
    EXPECT_EQ(read(folder_ / "out/n\xE4rhi.dxf"), read(folder_ / "out/n\\xE4rhi.dxf"));
}

// Natively only: the shell's signals. The script is a pipe that gives nothing till the signal has
// come.
TEST_F(Program, ACallOverSeveralThatIsInterruptedStillTellsWhatWasDone) {
    write(folder_ / "wait.scr", "QSAVE\n");
    for (const char* name : {"a.dxf", "b.dxf", "c.dxf"}) write(folder_ / name, drawing_);
    const std::string command =
        "mkfifo pipe; '" + orlinth().string() +
        "' -s pipe a.dxf b.dxf c.dxf --summary all.csv --quiet & p=$!; exec 3>pipe; "
        "kill -TERM $p; cat wait.scr >&3; exec 3>&-; wait $p; exit $?";
    const Outcome outcome = run({"/bin/sh", {"-c", command}, folder_.path(), {}});
    EXPECT_EQ(outcome.exit, 4) << outcome.error;
    EXPECT_TRUE(contains(outcome.error, "a.dxf was not written: it was interrupted\n"));
    EXPECT_TRUE(contains(outcome.output, "  b.dxf         -         -     -     -  not tried\n"))
        << outcome.output;
    EXPECT_EQ(read(folder_ / "a.dxf"), drawing_);
    EXPECT_TRUE(contains(outcome.error, "interrupted")) << outcome.error;
    EXPECT_TRUE(contains(read(folder_ / "all.csv"), "c.dxf,,not tried"));
}

// Natively only: the shell's signals. The signal comes while the report or the drawing is written,
// or after both.
TEST_F(Program, AReportThatIsInterruptedLeavesNoHalfAndTellsOfASavedDrawing) {
    std::string large = drawing_;
    const std::size_t at = large.find("ENDSEC", large.find("ENTITIES"));
    const std::size_t record = large.rfind('0', at);
    const std::string eol = large.find("\r\n") == std::string::npos ? "\n" : "\r\n";
    std::string texts;
    for (int i = 0; i < 30000; ++i)
        texts += "  0" + eol + "TEXT" + eol + "  8" + eol + "0" + eol + " 10" + eol + "25496000.5" +
                 eol + " 20" + eol + "6672000.5" + eol + " 40" + eol + "1.0" + eol + "  1" + eol +
                 "a" + eol;
    const std::size_t begin = large.rfind('\n', record) + 1;
    large.insert(begin, texts);
    write(folder_ / "large.dxf", large);
    for (const char* file : {"orlinth-*.tmp", "out.dxf"}) {
        std::filesystem::remove(folder_ / "out.dxf");
        std::filesystem::remove(folder_ / "r.json");
        const std::string command =
            "'" + orlinth().string() +
            "' align large.dxf --line handle=2F -o out.dxf --report r.json --verify --quiet & "
            "p=$!; "
            "while kill -0 $p 2>/dev/null; do for f in " +
            std::string(file) +
            "; do if [ -e \"$f\" ]; then kill -TERM $p; wait $p; exit $?; fi; done; done; "
            "wait $p; exit $?";
        const Outcome outcome = run({"/bin/sh", {"-c", command}, folder_.path(), {}});
        const bool saved = std::filesystem::exists(folder_ / "out.dxf");
        EXPECT_EQ(outcome.exit, saved ? 0 : 4) << outcome.error;
        if (saved) {
            EXPECT_TRUE(contains(read(folder_ / "r.json"), "\"savedAs\": \"out.dxf\""));
        }
        EXPECT_EQ(fileCount(),
                  saved ? 4 : 2 + (std::filesystem::exists(folder_ / "r.json") ? 1 : 0));
    }
}

// Natively only: the shell that closes the pipe.
TEST_F(Program, AReaderThatLeavesEarlyDoesNotStopTheJob) {
    const std::string command = "'" + orlinth().string() +
                                "' align streets.dxf --line handle=2F -o out.dxf --verify | true";
    run({"/bin/sh", {"-c", command}, folder_.path(), {}});
    EXPECT_TRUE(std::filesystem::exists(folder_ / "out.dxf"));
}
#endif

}  // namespace
