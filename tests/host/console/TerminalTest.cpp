// Sessions at a terminal. Natively only: Wine gives programs no pseudo-terminal.
#ifndef _WIN32

#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>

#include "tests/host/console/ChildProcess.h"

namespace {

using namespace console_test;

// The program with a pseudo-terminal as its three streams.
class Terminal {
  public:
    explicit Terminal(const std::filesystem::path& folder) {
        child_ = forkpty(&master_, nullptr, nullptr, nullptr);
        if (child_ != 0) return;
        alarm(120);
        if (chdir(folder.c_str()) == 0) execl(orlinth().c_str(), "orlinth", "streets.dxf", nullptr);
        _exit(126);
    }

    ~Terminal() {
        close(master_);
        if (child_ > 0) waitpid(child_, nullptr, 0);
    }

    void type(const std::string& keys) {
        ASSERT_EQ(write(master_, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
    }

    // Reads until the screen has shown `text` since the last call; false when the program ends
    // before.
    bool shows(const std::string& text) {
        std::size_t at;
        while ((at = screen_.find(text, seen_)) == std::string::npos)
            if (!readMore()) return false;
        seen_ = at + text.size();
        return true;
    }

    int exitCode() {
        while (readMore()) {
        }
        int status = 0;
        waitpid(child_, &status, 0);
        child_ = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    const std::string& screen() const { return screen_; }

  private:
    bool readMore() {
        char bytes[4096];
        const ssize_t count = read(master_, bytes, sizeof bytes);
        if (count <= 0) return false;
        screen_.append(bytes, static_cast<std::size_t>(count));
        return true;
    }

    int master_ = -1;
    pid_t child_ = -1;
    std::string screen_;
    std::size_t seen_ = 0;
};

class TerminalSession : public testing::Test {
  protected:
    TerminalSession() { write(folder_ / "streets.dxf", read(exampleDrawing())); }

    Folder folder_;
};

TEST_F(TerminalSession, AScriptStopsWhereWhatItPicksIsNoLine) {
    write(folder_ / "circle.scr", "ZEPTAlignEntities\n(handent \"60\")\nALL\n\n\n");
    Terminal terminal(folder_.path());
    ASSERT_TRUE(terminal.shows("Command: "));
    terminal.type("SCRIPT circle.scr\n");
    EXPECT_TRUE(terminal.shows("can't be read as a line"));
    EXPECT_TRUE(terminal.shows("Command: "));
    terminal.type("QUIT\n");
    EXPECT_EQ(terminal.exitCode(), 1);
    EXPECT_EQ(terminal.screen().find("there is no command ALL"), std::string::npos);
}

TEST_F(TerminalSession, ShowsACommandPromptAndRunsWhatIsTyped) {
    Terminal terminal(folder_.path());
    ASSERT_TRUE(terminal.shows("Command: "));
    terminal.type("ZEPTAlignEntities\n");
    ASSERT_TRUE(terminal.shows("Valitse suunnan määräävä viiva : "));
    terminal.type("(handent \"2F\")\n");
    ASSERT_TRUE(terminal.shows("Select objects: "));
    terminal.type("ALL\n");
    ASSERT_TRUE(terminal.shows("Select objects: "));
    terminal.type("\n");
    ASSERT_TRUE(terminal.shows("Käännetäänkö symboleja 180 astetta k/<e> : "));
    terminal.type("k\n");
    ASSERT_TRUE(terminal.shows("Command: "));
    terminal.type("QSAVE\n");
    ASSERT_TRUE(terminal.shows("Command: "));
    terminal.type("QUIT\n");
    EXPECT_EQ(terminal.exitCode(), 0);
    EXPECT_NE(read(folder_ / "streets.dxf"), read(exampleDrawing()));
}

TEST_F(TerminalSession, WhatIsTypedStandsOnTheScreenOnce) {
    Terminal terminal(folder_.path());
    ASSERT_TRUE(terminal.shows("Command: "));
    terminal.type("REDO\n");
    ASSERT_TRUE(terminal.shows("Command: "));
    terminal.type("QUIT\n");
    EXPECT_EQ(terminal.exitCode(), 0);
    EXPECT_EQ(terminal.screen().find("REDO"), terminal.screen().rfind("REDO"));
}

TEST_F(TerminalSession, EndOfInputLeavesWithoutSaving) {
    Terminal terminal(folder_.path());
    ASSERT_TRUE(terminal.shows("Command: "));
    terminal.type("\x04");
    EXPECT_EQ(terminal.exitCode(), 0);
    EXPECT_EQ(read(folder_ / "streets.dxf"), read(exampleDrawing()));
}

}  // namespace

#endif
