// What a person's terminal tells besides keys: Ctrl-C while a command works, and (not under
// Windows) that the window has another size.
//
// Without such an object Ctrl-C ends the program, as it does by default.
#pragma once

namespace host::console {

class TerminalSignals {
  public:
    // From here on until the object is gone, SIGINT asks the running command to stop
    // (Session::interrupt) and is noted, and SIGWINCH and SIGCONT are noted. A signal that the
    // caller of the program has told to be ignored stays ignored. SIGTERM, SIGHUP, SIGQUIT and
    // SIGABRT give the terminal back as it was found before they end the program. One object at a
    // time.
    TerminalSignals();
    ~TerminalSignals();
    TerminalSignals(const TerminalSignals&) = delete;
    TerminalSignals& operator=(const TerminalSignals&) = delete;

    // True once for what was noted since the last call.
    bool takeCancel();
    bool takeResize();
    bool takeContinue();  // the program has been stopped and goes on

    // Readable once something was noted, until `drain`; -1 where there is no such thing.
    int descriptor() const;
    void drain();
};

}  // namespace host::console
