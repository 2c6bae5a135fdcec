// What transcripts can't hold: bytes that are no text, files that end anywhere, disks that are
// full.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "tests/host/console/ChildProcess.h"

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
        "orlinth: out.dxf was not written, because the session did not end well\n");
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

// Natively only: the shell that closes the pipe.
TEST_F(Program, AReaderThatLeavesEarlyDoesNotStopTheJob) {
    const std::string command = "'" + orlinth().string() +
                                "' align streets.dxf --line handle=2F -o out.dxf --verify | true";
    run({"/bin/sh", {"-c", command}, folder_.path(), {}});
    EXPECT_TRUE(std::filesystem::exists(folder_ / "out.dxf"));
}
#endif

}  // namespace
