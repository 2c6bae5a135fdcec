// Sessions at a terminal. Natively only: Wine gives programs no pseudo-terminal.
#ifndef _WIN32

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/host/console/Terminal.h"

namespace {

using namespace console_test;

// What a person is told of the drawing that the program was started with.
const std::string introduction = "streets.dxf, R2010, 99 entities. HELP lists the commands.\n";

std::string introductionLine() {
    return introduction.substr(0, introduction.size() - 1);
}

std::filesystem::path sessionFolder() {
    return std::filesystem::path(ORLINTH_TEST_DATA).parent_path() / "host" / "console" / "terminal";
}

std::vector<std::string> sessionNames() {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(sessionFolder()))
        if (entry.path().extension() == ".txt") names.push_back(entry.path().stem().string());
    std::sort(names.begin(), names.end());
    if (names.empty()) throw std::runtime_error("no sessions in " + sessionFolder().string());
    return names;
}

class LinuxTerminal : public testing::TestWithParam<std::string> {};

TEST_P(LinuxTerminal, ShowsWhatIsWrittenDown) {
    const std::string file = GetParam() + ".txt";
    playSession(read(sessionFolder() / file), file);
}

INSTANTIATE_TEST_SUITE_P(Sessions, LinuxTerminal, testing::ValuesIn(sessionNames()),
                         [](const auto& session) { return session.param; });

class LinuxTerminalSession : public testing::Test {
  protected:
    LinuxTerminalSession() { write(folder_ / "streets.dxf", read(exampleDrawing())); }

    Terminal::Start start(std::vector<std::string> arguments = {"streets.dxf"}) const {
        Terminal::Start how;
        how.arguments = std::move(arguments);
        how.folder = folder_.path();
        return how;
    }

    static std::string probe() { return std::string(ORLINTH_BIN_DIR) + "/ConsoleProbe.arx"; }

    Folder folder_;
};

TEST_F(LinuxTerminalSession, WithoutAnEditorTheSystemsOwnLinesAreTaken) {
    Terminal::Start how = start();
    how.kind = "dumb";
    Terminal terminal(how);
    ASSERT_TRUE(terminal.showsPrompt("Command: "));
    terminal.type("REDO\n");
    ASSERT_TRUE(terminal.shows("Nothing to redo."));
    ASSERT_TRUE(terminal.shows("Command: "));
    terminal.type("ZEPTAlignEntities\n");
    ASSERT_TRUE(terminal.shows("Valitse suunnan määräävä viiva : "));
    terminal.type("\x03");
    ASSERT_TRUE(terminal.shows("*Cancel*"));
    ASSERT_TRUE(terminal.shows("Command: "));
    terminal.type("\x04");
    EXPECT_EQ(terminal.exitCode(), 1);
    EXPECT_FALSE(std::filesystem::exists(folder_ / ".local"));
}

TEST_F(LinuxTerminalSession, AScriptStopsWhereWhatItPicksIsNoLine) {
    write(folder_ / "text.scr", "ZEPTAlignEntities\n(handent \"63\")\nALL\n\n\n");
    Terminal terminal(start());
    ASSERT_TRUE(terminal.showsPrompt("Command: "));
    terminal.type("SCRIPT text.scr\r");
    ASSERT_TRUE(terminal.shows("ZEPTAlignEntities did nothing"));
    ASSERT_TRUE(terminal.showsPrompt("Command: "));
    terminal.type("REDO\r");
    ASSERT_TRUE(terminal.shows("Nothing to redo."));
    ASSERT_TRUE(terminal.showsPrompt("Command: "));
    terminal.type("\x04");
    EXPECT_EQ(terminal.exitCode(), 1);
    EXPECT_EQ(terminal.bytes().find("no command ALL"), std::string::npos);
}

TEST_F(LinuxTerminalSession, WithItsOutputInAFileThePersonIsStillAsked) {
    Terminal::Start how = start();
    how.outputToFile = true;
    Terminal terminal(how);
    terminal.type("REDO\nQUIT\n");
    EXPECT_EQ(terminal.exitCode(), 0);
    EXPECT_EQ(read(folder_ / "out"), introduction + "Command: Nothing to redo.\nCommand: ");
}

TEST_F(LinuxTerminalSession, TheLogHasWhatTheTerminalShowed) {
    Terminal terminal(start({"streets.dxf", "--log", "session.log"}));
    ASSERT_TRUE(terminal.showsPrompt("Command: "));
    terminal.type("REDOO\x7F\r");
    ASSERT_TRUE(terminal.showsPrompt("Command: "));
    terminal.type("\x03");
    ASSERT_TRUE(terminal.showsPrompt("Command: "));
    terminal.type("UNDO 1\r");
    ASSERT_TRUE(terminal.showsPrompt("Command: "));
    terminal.type("\x04");
    EXPECT_EQ(terminal.exitCode(), 0);
    EXPECT_EQ(read(folder_ / "session.log"),
              introduction +
                  "Command: REDO\nNothing to redo.\nCommand: *Cancel*\n"
                  "Command: UNDO\nEnter the number of operations to undo <1>: 1\nNothing to undo.\n"
                  "Command: \n");
}

TEST_F(LinuxTerminalSession, TheHistoryIsTheUsersAlone) {
    Terminal terminal(start());
    ASSERT_TRUE(terminal.showsPrompt("Command: "));
    for (const char* const line : {"REDO\r", "REDO\r", "\r", "U\r", "\x04"}) {
        terminal.type(line);
        if (*line == '\x04') break;
        ASSERT_TRUE(terminal.showsPrompt("Command: "));
    }
    EXPECT_EQ(terminal.exitCode(), 0);
    const auto history = folder_ / ".local/state/orlinth/history";
    EXPECT_EQ(read(history), "REDO\nU\n");
    EXPECT_EQ(std::filesystem::status(history).permissions(),
              std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
}

TEST_F(LinuxTerminalSession, AnInterruptFromOutsideCancelsToo) {
    Terminal terminal(start());
    ASSERT_TRUE(terminal.showsPrompt("Command: "));
    terminal.type("ZEPTAlignEntities\r");
    ASSERT_TRUE(terminal.showsPrompt("Valitse suunnan määräävä viiva : "));
    terminal.signal(SIGINT);
    ASSERT_TRUE(terminal.shows("*Cancel*"));
    ASSERT_TRUE(terminal.showsPrompt("Command: "));
    terminal.type("QUIT\r");
    EXPECT_EQ(terminal.exitCode(), 1);
}

TEST_F(LinuxTerminalSession, CtrlCStopsACommandThatWorksAndIsToldOnce) {
    Terminal terminal(start({"streets.dxf", "--module", probe()}));
    ASSERT_TRUE(terminal.showsPrompt("Command: "));
    terminal.type("PROBEWORK\r");
    ASSERT_TRUE(terminal.shows("working"));
    terminal.type("\x03");
    ASSERT_TRUE(terminal.shows("stopped"));
    ASSERT_TRUE(terminal.showsPrompt("Command: "));
    terminal.type("REDO\r");
    ASSERT_TRUE(terminal.shows("Nothing to redo."));
    ASSERT_TRUE(terminal.showsPrompt("Command: "));
    terminal.type("QUIT\r");
    EXPECT_EQ(terminal.exitCode(), 0);
    EXPECT_EQ(terminal.screen().lines(),
              (std::vector<std::string>{introductionLine(), "Command: PROBEWORK", "working", "^C",
                                        "stopped", "*Cancel*", "Command: REDO", "Nothing to redo.",
                                        "Command: QUIT", ""}));
}

TEST_F(LinuxTerminalSession, CtrlCWhileACommandWorksCancelsItsNextPrompt) {
    Terminal terminal(start({"streets.dxf", "--module", probe()}));
    ASSERT_TRUE(terminal.showsPrompt("Command: "));
    terminal.type("PROBEWORKASK\r");
    ASSERT_TRUE(terminal.shows("working"));
    terminal.type("\x03");
    ASSERT_TRUE(terminal.shows("stopped"));
    ASSERT_TRUE(terminal.showsPrompt("Command: "));
    terminal.type("QUIT\r");
    terminal.exitCode();
    EXPECT_EQ(terminal.screen().lines(),
              (std::vector<std::string>{introductionLine(), "Command: PROBEWORKASK", "working",
                                        "^C", "stopped", "Entity: *Cancel*", "Command: QUIT", ""}));
}

TEST_F(LinuxTerminalSession, CtrlCThatACommandDoesNotHeedCancelsNothingElse) {
    Terminal terminal(start({"streets.dxf", "--module", probe()}));
    ASSERT_TRUE(terminal.showsPrompt("Command: "));
    terminal.type("PROBEMETER\r");
    ASSERT_TRUE(terminal.shows("Measuring 50 %"));
    terminal.type("\x03");
    ASSERT_TRUE(terminal.shows("measured"));
    ASSERT_TRUE(terminal.showsPrompt("Command: "));
    terminal.type("QUIT\r");
    EXPECT_EQ(terminal.exitCode(), 0);
    EXPECT_EQ(terminal.bytes().find("*Cancel*"), std::string::npos);
}

using Widths = std::vector<unsigned short>;

// A line as a window of that width shows it, with room for the cursor behind it.
std::vector<std::string> brokenAt(std::size_t width, const std::string& line) {
    std::vector<std::string> rows;
    for (std::size_t at = 0; at <= line.size(); at += width) {
        rows.push_back(line.substr(at, width));
        rows.back().erase(rows.back().find_last_not_of(' ') + 1);
    }
    return rows;
}

std::string longText() {
    std::string text;
    for (int i = 1; text.size() < 230; ++i) text += "word" + std::to_string(i) + "-";
    return text;
}

TEST_F(LinuxTerminalSession, ALineLongerThanTheWindowSurvivesEachOfItsWidths) {
    Terminal terminal(start());
    ASSERT_TRUE(terminal.showsPrompt("Command: "));
    const std::string text = longText();
    std::string line = "Command: (setq long \"" + text + "\")";
    const auto screenAt = [&](std::size_t columns) {
        std::vector<std::string> all = brokenAt(columns, introductionLine());
        for (const std::string& row : brokenAt(columns, line)) all.push_back(row);
        return all;
    };
    terminal.type(line.substr(9));
    ASSERT_TRUE(terminal.showsLines(screenAt(100)));
    for (const unsigned short columns : Widths{37, 100, 13, 61, 200, 29, 11, 300, 80}) {
        terminal.resize(columns);
        ASSERT_TRUE(terminal.shows("\x1B[J"));
        ASSERT_TRUE(terminal.showsLines(screenAt(columns))) << columns;
    }
    // The cursor in the middle of the line, which goes on being edited there.
    const auto typeInTheMiddle = [&] {
        terminal.type("X");
        line.insert(line.size() - 120, "X");
    };
    for (int i = 0; i < 120; ++i) terminal.type("\x1B[D");
    typeInTheMiddle();
    ASSERT_TRUE(terminal.showsLines(screenAt(80)));
    for (const unsigned short columns : Widths{23, 90, 40}) {
        terminal.resize(columns);
        ASSERT_TRUE(terminal.shows("\x1B[J"));
        typeInTheMiddle();
        ASSERT_TRUE(terminal.showsLines(screenAt(columns))) << columns;
    }
    terminal.type("\r");
    const std::size_t quote = line.find('"');
    const std::string value = line.substr(quote, line.rfind('"') + 1 - quote);
    ASSERT_TRUE(terminal.shows("\r\n" + value + "\r\n"));
    ASSERT_TRUE(terminal.showsPrompt("Command: "));
    terminal.type("\x04");
    EXPECT_EQ(terminal.exitCode(), 0);
}

// Such a terminal can't show the line well, but it keeps what stands above it.
TEST_F(LinuxTerminalSession, WhereLinesAreNotBrokenAnewNothingAboveIsLost) {
    Terminal::Start how = start();
    how.onResize = Screen::OnResize::leave;
    Terminal terminal(how);
    ASSERT_TRUE(terminal.showsPrompt("Command: "));
    terminal.type("REDO\r");
    ASSERT_TRUE(terminal.shows("Nothing to redo."));
    ASSERT_TRUE(terminal.showsPrompt("Command: "));
    const std::string line = "Command: (setq long \"" + longText() + "\")";
    terminal.type(line.substr(9));
    const auto screenAt = [&](std::size_t columns) {
        std::vector<std::string> all = brokenAt(columns, line);
        all.insert(all.begin(), {introductionLine(), "Command: REDO", "Nothing to redo."});
        return all;
    };
    ASSERT_TRUE(terminal.showsLines(screenAt(100)));
    for (const unsigned short columns : Widths{50, 31, 120, 47, 100}) {
        terminal.resize(columns);
        ASSERT_TRUE(terminal.shows("\x1B[J"));
        ASSERT_TRUE(terminal.showsLines(screenAt(columns))) << columns;
    }
    terminal.type("\r");
    ASSERT_TRUE(terminal.showsPrompt("Command: "));
    terminal.type("\x04");
    EXPECT_EQ(terminal.exitCode(), 0);
}

TEST_F(LinuxTerminalSession, AResizeWhileACommandWorksCountsForTheNextPrompt) {
    Terminal terminal(start({"streets.dxf", "--module", probe()}));
    ASSERT_TRUE(terminal.showsPrompt("Command: "));
    terminal.type("PROBEWORK\r");
    ASSERT_TRUE(terminal.shows("working"));
    for (const unsigned short columns : Widths{60, 20, 30}) terminal.resize(columns);
    terminal.type("\x03");
    ASSERT_TRUE(terminal.shows("stopped"));
    ASSERT_TRUE(terminal.showsPrompt("Command: "));
    terminal.type("(setq t30 \"abcdefghijklmnopqrst\")");
    ASSERT_TRUE(terminal.showsPrompt("klmnopqrst\")"));
    terminal.type("\r");
    ASSERT_TRUE(terminal.shows("\r\n\"abcdefghijklmnopqrst\"\r\n"));
    ASSERT_TRUE(terminal.showsPrompt("Command: "));
    terminal.type("\x04");
    EXPECT_EQ(terminal.exitCode(), 0);
}

TEST_F(LinuxTerminalSession, AResizeDoesNotDisturbTheSystemsOwnLines) {
    Terminal::Start how = start();
    how.kind = "dumb";
    Terminal terminal(how);
    ASSERT_TRUE(terminal.showsPrompt("Command: "));
    terminal.type("RE");
    ASSERT_TRUE(terminal.shows("RE"));
    for (const unsigned short columns : Widths{60, 5, 100}) terminal.resize(columns);
    terminal.type("DO\n");
    ASSERT_TRUE(terminal.shows("Nothing to redo."));
    terminal.type("QUIT\n");
    EXPECT_EQ(terminal.exitCode(), 0);
}

TEST_F(LinuxTerminalSession, CtrlCStopsAScriptThatRuns) {
    write(folder_ / "long.scr", "PROBEWORK\nREDO\n");
    Terminal terminal(start({"streets.dxf", "--module", probe()}));
    ASSERT_TRUE(terminal.showsPrompt("Command: "));
    terminal.type("SCRIPT long.scr\r");
    ASSERT_TRUE(terminal.shows("working"));
    terminal.type("\x03");
    ASSERT_TRUE(terminal.shows("*Cancel*"));
    ASSERT_TRUE(terminal.shows("Command: "));
    terminal.type("QUIT\r");
    EXPECT_EQ(terminal.exitCode(), 0);
    EXPECT_EQ(terminal.bytes().find("Nothing to redo."), std::string::npos);
}

TEST_F(LinuxTerminalSession, AMeterOfACommandIsShownAndTakenAway) {
    Terminal terminal(start({"streets.dxf", "--module", probe()}));
    ASSERT_TRUE(terminal.showsPrompt("Command: "));
    terminal.type("PROBEMETER\r");
    ASSERT_TRUE(terminal.shows("Measuring 50 %"));
    ASSERT_TRUE(terminal.shows("measured"));
    ASSERT_TRUE(terminal.showsPrompt("Command: "));
    terminal.type("QUIT\r");
    EXPECT_EQ(terminal.exitCode(), 0);
    EXPECT_EQ(terminal.screen().lines(),
              (std::vector<std::string>{introduction.substr(0, introduction.size() - 1),
                                        "Command: PROBEMETER", "measured", "Command: QUIT", ""}));
}

TEST_F(LinuxTerminalSession, LinesInUtf16AreTakenByTheirMark) {
    const auto wide = [](const std::string& text, bool bigEndian) {
        std::string bytes = bigEndian ? "\xFE\xFF" : "\xFF\xFE";
        for (const char c : text) {
            if (bigEndian) bytes += '\0';
            bytes += c;
            if (!bigEndian) bytes += '\0';
        }
        return bytes;
    };
    for (const bool bigEndian : {false, true}) {
        const Outcome outcome = run({orlinth(),
                                     {"streets.dxf"},
                                     folder_.path(),
                                     wide("REDO\r\n(list 1)\n\nREDO", bigEndian)});
        EXPECT_EQ(outcome.output,
                  "Command: REDO\nNothing to redo.\nCommand: (list 1)\n(1)\nCommand: \n"
                  "Nothing to redo.\nCommand: REDO\nNothing to redo.\n");
        EXPECT_EQ(outcome.error, "");
    }
}

TEST_F(LinuxTerminalSession, AMeterIsSilentElsewhere) {
    const Outcome outcome =
        run({orlinth(), {"streets.dxf", "--module", probe()}, folder_.path(), "PROBEMETER\n"});
    EXPECT_EQ(outcome.output, "Command: PROBEMETER\nmeasured\n");
    EXPECT_EQ(outcome.error, "");
}

TEST_F(LinuxTerminalSession, OpeningTellsWhatHasBeenOpenedAndWhatIsOddInIt) {
    write(folder_ / "one.dxf", "0\nSECTION\n2\nENTITIES\n0\nPOINT\n10\n1\n20\n2\n0\nENDSEC\n");
    Terminal terminal(start({}));
    ASSERT_TRUE(terminal.showsPrompt("Command: "));
    terminal.type("OPEN one.dxf\r");
    ASSERT_TRUE(terminal.shows("kept as it stands"));
    ASSERT_TRUE(terminal.showsPrompt("Command: "));
    terminal.type("OPEN streets.dxf\r");
    ASSERT_TRUE(terminal.shows("99 entities."));
    ASSERT_TRUE(terminal.showsPrompt("Command: "));
    terminal.type("QUIT\r");
    EXPECT_EQ(terminal.exitCode(), 0);
    const std::vector<std::string> shown = terminal.screen().lines();
    ASSERT_GE(shown.size(), 7U);
    EXPECT_EQ(shown[0], "No drawing is open. OPEN opens one, HELP lists the commands.");
    EXPECT_EQ(shown[3], "one.dxf, 1 entity.");
    EXPECT_EQ(shown[4].rfind("one.dxf, line ", 0), 0U) << shown[4];
}

TEST_F(LinuxTerminalSession, ARequestToEndEndsItAndGivesTheTerminalBack) {
    for (const int signal : {SIGTERM, SIGHUP, SIGQUIT, SIGABRT}) {
        Terminal terminal(start());
        ASSERT_TRUE(terminal.showsPrompt("Command: "));
        EXPECT_FALSE(terminal.isAsFound());
        terminal.signal(signal);
        EXPECT_EQ(terminal.exitCode(), -1);
        EXPECT_EQ(terminal.endedBy(), signal);
        EXPECT_TRUE(terminal.isAsFound()) << signal;
    }
    EXPECT_EQ(read(folder_ / "streets.dxf"), read(exampleDrawing()));
}

TEST_F(LinuxTerminalSession, StoppedFromOutsideItGoesOnWithItsOwnModes) {
    Terminal terminal(start());
    ASSERT_TRUE(terminal.showsPrompt("Command: "));
    terminal.stopAndGoOn();
    ASSERT_TRUE(terminal.shows("Command: Command: "));
    EXPECT_FALSE(terminal.isAsFound());
    terminal.type("REDO\r");
    ASSERT_TRUE(terminal.shows("Nothing to redo."));
    ASSERT_TRUE(terminal.showsPrompt("Command: "));
    terminal.type("\x04");
    EXPECT_EQ(terminal.exitCode(), 0);
}

TEST_F(LinuxTerminalSession, CtrlCDropsTheRestOfTheLine) {
    Terminal terminal(start({"streets.dxf", "--module", probe()}));
    ASSERT_TRUE(terminal.showsPrompt("Command: "));
    terminal.type("PROBEWORK REDO\r");
    ASSERT_TRUE(terminal.shows("working"));
    terminal.type("\x03");
    ASSERT_TRUE(terminal.shows("*Cancel*"));
    ASSERT_TRUE(terminal.showsPrompt("Command: "));
    terminal.type("QUIT\r");
    EXPECT_EQ(terminal.exitCode(), 0);
    EXPECT_EQ(terminal.bytes().find("Nothing to redo."), std::string::npos);
}

TEST_F(LinuxTerminalSession, EscapeTypedAheadCancelsAPromptAndLeavesTheNextLineAlone) {
    Terminal terminal(start({"streets.dxf", "--module", probe()}));
    ASSERT_TRUE(terminal.showsPrompt("Command: "));
    terminal.type("PROBEMETER\r");
    ASSERT_TRUE(terminal.shows("Measuring 50 %"));
    terminal.type("\x1BREDO\r");
    ASSERT_TRUE(terminal.shows("Nothing to redo."));
    ASSERT_TRUE(terminal.showsPrompt("Command: "));
    terminal.type("QUIT\r");
    EXPECT_EQ(terminal.exitCode(), 0);
    const std::string& shown = terminal.bytes();
    EXPECT_EQ(shown.find("measured"), shown.rfind("measured")) << "the command ran once";
}

TEST_F(LinuxTerminalSession, AByteThatBeginsNoCharacterTakesNoKeyAlong) {
    Terminal terminal(start());
    ASSERT_TRUE(terminal.showsPrompt("Command: "));
    terminal.type("(list \"t\xE4\xE4ll\xE4\")\r");
    ASSERT_TRUE(terminal.shows("(\"täällä\")"));
    ASSERT_TRUE(terminal.showsPrompt("Command: "));
    terminal.type("\xE4\x03");
    ASSERT_TRUE(terminal.shows("*Cancel*"));
    ASSERT_TRUE(terminal.showsPrompt("Command: "));
    terminal.type("\x04");
    EXPECT_EQ(terminal.exitCode(), 0);
}

TEST_F(LinuxTerminalSession, WhatADrawingHoldsDoesNotSteerTheTerminal) {
    write(folder_ / "hostile.dxf",
          "  0\nSECTION\n  2\nENTITIES\n  0\nTEXT\n  5\nA\n  8\n0\n 10\n0.0\n 20\n0.0\n 30\n0.0\n"
          " 40\n1.0\n  1\nhi \x1B]0;owned\x07\n  0\nENDSEC\n  0\nEOF\n");
    Terminal terminal(start({"hostile.dxf"}));
    ASSERT_TRUE(terminal.showsPrompt("Command: "));
    terminal.type("LIST ALL \r");
    ASSERT_TRUE(terminal.shows("text \"hi ^[]0;owned^G\""));
    ASSERT_TRUE(terminal.showsPrompt("Command: "));
    terminal.type("\x04");
    terminal.exitCode();
    EXPECT_EQ(terminal.screen().strange(), "");
}

}  // namespace

#endif
