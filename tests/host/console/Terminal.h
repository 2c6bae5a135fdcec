// The program at a pseudo-terminal, and sessions there written down. Natively only: Wine gives
// programs no pseudo-terminal.
//
// A session (terminal/*.txt) is read line by line, by the first characters:
//     # ...        prose
//     file NAME    the lines "| ..." that follow are the content of NAME
//     $ orlinth ...  the program is started at a terminal of 100 columns, in a fresh folder that
//                  holds the example drawing as streets.dxf; a second one goes on in that folder
//     ? ...        waits until the line with the cursor reads so, the cursor behind its end; the
//                  blanks at the end count
//     ~ ...        waits until the program has written this since the last such wait; before a "?"
//                  for a prompt that stands there for a moment before, such as those of a script
//     < ...        keys are typed: {Enter} {Escape} {Ctrl-A}... {Tab} {Up} {Down} {Left} {Right}
//                  {Backspace}
//                  {Delete} {Home} {End} {PageUp} {CtrlLeft} {CtrlRight}
//     size N       the window gets N columns; lines that were broken are broken anew
//     > ...        all lines that the terminal shows in the end, or {*} and {...} for some of them
//     = N          the exit code
//     same A B     the files are equal, byte for byte; differ A B: they are not
// What is waited for has to be another state than what was waited for before: without a sleep, a
// key is typed when the program has done what the key before asked for.
#pragma once

#ifndef _WIN32

#include <sys/types.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/host/console/ChildProcess.h"
#include "tests/host/console/Screen.h"

namespace console_test {

class Terminal {
  public:
    struct Start {
        std::vector<std::string> arguments;  // of the program
        std::filesystem::path folder;        // the working folder, and the home of the user
        const char* kind = "xterm";          // $TERM
        unsigned short columns = 100;
        // Whether broken lines are broken anew when the width changes.
        Screen::OnResize onResize = Screen::OnResize::breakAnew;
        bool outputToFile = false;  // standard output goes to the file "out" of the folder
    };
    explicit Terminal(const Start& start);
    ~Terminal();
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    void type(const std::string& bytes);
    void resize(unsigned short columns);
    void signal(int number) const;
    // Stops the program, gives the terminal other modes as a shell would, and lets it go on.
    void stopAndGoOn();
    // Waits until the line with the cursor reads so, in another state than the last one; false when
    // the program ends before.
    bool showsPrompt(const std::string& text);
    // Waits until the terminal shows these lines and nothing else; false when the program ends
    // before.
    bool showsLines(const std::vector<std::string>& lines);
    // Waits until these bytes have come since the last call; false when the program ends before.
    bool shows(const std::string& bytes);
    // Waits for the end; -1 for a program that was killed.
    int exitCode();
    // The signal that has ended the program; 0 for none.
    int endedBy() const { return endedBy_; }

    // Whether the terminal edits lines, echoes and knows Ctrl-C by itself, as it was found.
    bool isAsFound() const;

    const Screen& screen() const { return screen_; }
    const std::string& bytes() const { return bytes_; }

  private:
    bool readMore();

    int master_ = -1;
    pid_t child_ = -1;
    int endedBy_ = 0;
    Screen screen_;
    std::string bytes_;
    std::size_t seen_ = 0;
    std::size_t lastRow_ = 0;
    std::string lastText_ = "\n";
};

// Plays a session; what differs becomes a failure of the running test. Throws std::runtime_error
// for what can't be read.
void playSession(const std::string& text, const std::string& name);

// The bytes of keys written as above.
std::string keys(const std::string& text);

}  // namespace console_test

#endif
