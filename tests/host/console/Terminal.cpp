#include "tests/host/console/Terminal.h"

#ifndef _WIN32

#include <gtest/gtest.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <stdexcept>

#include "tests/host/console/Transcript.h"

namespace console_test {

namespace {

constexpr unsigned limitSeconds = 60;

[[noreturn]] void becomeProgram(const Terminal::Start& start) {
    std::vector<std::string> words{"orlinth"};
    words.insert(words.end(), start.arguments.begin(), start.arguments.end());
    std::vector<char*> arguments;
    for (std::string& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    setenv("TERM", start.kind, 1);
    setenv("HOME", start.folder.c_str(), 1);
    unsetenv("XDG_STATE_HOME");
    for (const char* const name : {"TMUX", "STY", "XTERM_VERSION"}) unsetenv(name);
    if (start.onResize == Screen::OnResize::leave) setenv("XTERM_VERSION", "XTerm(379)", 1);
    alarm(limitSeconds);  // survives the exec and ends a program that hangs
    if (chdir(start.folder.c_str()) != 0) _exit(126);
    if (start.outputToFile && std::freopen("out", "wb", stdout) == nullptr) _exit(126);
    execv(orlinth().c_str(), arguments.data());
    _exit(126);
}

winsize sizeOf(unsigned short columns) {
    winsize size{};
    size.ws_row = 50;
    size.ws_col = columns;
    return size;
}

}  // namespace

Terminal::Terminal(const Start& start) : screen_(start.columns, start.onResize) {
    winsize size = sizeOf(start.columns);
    child_ = forkpty(&master_, nullptr, nullptr, &size);
    if (child_ < 0) throw std::runtime_error("no pseudo-terminal");
    if (child_ == 0) becomeProgram(start);
}

Terminal::~Terminal() {
    close(master_);
    if (child_ > 0) waitpid(child_, nullptr, 0);
}

void Terminal::type(const std::string& bytes) {
    ASSERT_EQ(::write(master_, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
}

void Terminal::resize(unsigned short columns) {
    const winsize size = sizeOf(columns);
    screen_.resize(columns);
    ASSERT_EQ(ioctl(master_, TIOCSWINSZ, &size), 0);
}

void Terminal::signal(int number) const {
    ASSERT_EQ(kill(child_, number), 0);
}

void Terminal::stopAndGoOn() {
    signal(SIGSTOP);
    int status = 0;
    ASSERT_EQ(waitpid(child_, &status, WUNTRACED), child_);
    ASSERT_TRUE(WIFSTOPPED(status));
    termios modes{};
    ASSERT_EQ(tcgetattr(master_, &modes), 0);
    modes.c_lflag |= ICANON | ECHO | ISIG;
    ASSERT_EQ(tcsetattr(master_, TCSANOW, &modes), 0);
    signal(SIGCONT);
}

bool Terminal::isAsFound() const {
    constexpr tcflag_t all = ICANON | ECHO | ISIG;
    termios now{};
    return tcgetattr(master_, &now) == 0 && (now.c_lflag & all) == all;
}

bool Terminal::readMore() {
    char bytes[4096];
    const ssize_t count = ::read(master_, bytes, sizeof bytes);
    if (count <= 0) return false;
    const std::string_view part(bytes, static_cast<std::size_t>(count));
    bytes_ += part;
    screen_.write(part);
    return true;
}

bool Terminal::showsPrompt(const std::string& text) {
    const auto isThere = [&] {
        return screen_.beforeCursor() == text && screen_.behindCursor().empty() &&
               (screen_.row() != lastRow_ || text != lastText_);
    };
    while (!isThere())
        if (!readMore()) return false;
    lastRow_ = screen_.row();
    lastText_ = text;
    return true;
}

bool Terminal::showsLines(const std::vector<std::string>& lines) {
    while (screen_.lines() != lines) {
        if (readMore()) continue;
        ADD_FAILURE() << "the terminal shows " << testing::PrintToString(screen_.lines());
        return false;
    }
    return true;
}

bool Terminal::shows(const std::string& bytes) {
    std::size_t at = 0;
    while ((at = bytes_.find(bytes, seen_)) == std::string::npos)
        if (!readMore()) return false;
    seen_ = at + bytes.size();
    return true;
}

int Terminal::exitCode() {
    while (readMore()) {
    }
    int status = 0;
    waitpid(child_, &status, 0);
    child_ = -1;
    endedBy_ = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::string keys(const std::string& text) {
    static const std::map<std::string, std::string> names{
        {"Enter", "\r"},           {"Escape", "\x1B"},        {"Tab", "\t"},
        {"Up", "\x1B[A"},          {"Down", "\x1B[B"},        {"Right", "\x1B[C"},
        {"Left", "\x1B[D"},        {"Backspace", "\x7F"},     {"Delete", "\x1B[3~"},
        {"Home", "\x1B[H"},        {"End", "\x1BOF"},         {"PageUp", "\x1B[5~"},
        {"CtrlLeft", "\x1B[1;5D"}, {"CtrlRight", "\x1B[1;5C"}};
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::size_t end = text[i] == '{' ? text.find('}', i) : std::string::npos;
        if (end == std::string::npos) {
            bytes += text[i];
            continue;
        }
        const std::string name = text.substr(i + 1, end - i - 1);
        if (name.rfind("Ctrl-", 0) == 0 && name.size() == 6)
            bytes += static_cast<char>(name[5] & 0x1F);
        else if (names.count(name) != 0)
            bytes += names.at(name);
        else
            throw std::runtime_error("there is no key {" + name + "}");
        i = end;
    }
    return bytes;
}

namespace {

// A session that is being played.
class Player {
  public:
    explicit Player(const std::string& name) : name_(name) {
        write(folder_ / "streets.dxf", read(exampleDrawing()));
    }
    ~Player() { finish(); }

    // False when the session can't go on.
    bool play(const std::string& line, int number) {
        place_ = name_ + ":" + std::to_string(number);
        const std::string rest = line.substr(std::min<std::size_t>(2, line.size()));
        const std::vector<std::string> words = splitCommandLine(line);
        switch (line[0]) {
            case '$':
                finish();
                start({words.begin() + 2, words.end()});
                return true;
            case '|':
                content_ += rest + "\n";
                write(folder_ / file_, content_);
                return true;
            case '?':
                EXPECT_TRUE(terminal().showsPrompt(rest))
                    << place_ << ": the program ended before '" << rest << "' was shown\n"
                    << terminal().bytes();
                return !testing::Test::HasFailure();
            case '~':
                EXPECT_TRUE(terminal().shows(rest)) << place_ << ": '" << rest << "' never came";
                return !testing::Test::HasFailure();
            case '<':
                terminal().type(keys(rest));
                return true;
            case '>':
                expected_.push_back(rest);
                return true;
            case '=':
                exit_ = std::stoi(rest);
                return true;
            default:
                return playWord(words);
        }
    }

    void finish() {
        if (terminal_ == nullptr) return;
        EXPECT_EQ(terminal_->exitCode(), exit_) << place_ << ": exit code";
        std::vector<std::string> shown = terminal_->screen().lines();
        while (!shown.empty() && shown.back().empty()) shown.pop_back();
        std::string all;
        for (const std::string& line : shown) all += "> " + line + "\n";
        EXPECT_TRUE(matches(expected_, shown)) << place_ << ": the terminal shows\n" << all;
        EXPECT_EQ(terminal_->screen().strange(), "") << place_;
        terminal_.reset();
    }

  private:
    void start(const std::vector<std::string>& arguments) {
        expected_.clear();
        exit_ = 0;
        Terminal::Start how;
        how.arguments = arguments;
        how.folder = folder_.path();
        terminal_ = std::make_unique<Terminal>(how);
    }

    Terminal& terminal() const {
        if (terminal_ == nullptr) throw std::runtime_error(place_ + ": nothing runs");
        return *terminal_;
    }

    bool playWord(const std::vector<std::string>& words) {
        if (words.at(0) == "size") {
            terminal().resize(static_cast<unsigned short>(std::stoi(words.at(1))));
        } else if (words.at(0) == "file") {
            finish();
            file_ = words.at(1);
            content_.clear();
        } else if (words.at(0) == "same" || words.at(0) == "differ") {
            finish();
            const bool same = read(folder_ / words.at(1)) == read(folder_ / words.at(2));
            EXPECT_EQ(same, words.at(0) == "same") << place_;
        } else {
            throw std::runtime_error(place_ + ": '" + words.at(0) + "' begins no step");
        }
        return true;
    }

    const std::string name_;
    Folder folder_;
    std::string place_;
    std::string file_, content_;
    std::unique_ptr<Terminal> terminal_;
    std::vector<std::string> expected_;
    int exit_ = 0;
};

}  // namespace

void playSession(const std::string& text, const std::string& name) {
    Player player(name);
    int number = 0;
    for (const std::string& line : lines(text)) {
        ++number;
        if (line.empty() || line[0] == '#') continue;
        if (!player.play(line, number)) return;
    }
}

}  // namespace console_test

#endif
