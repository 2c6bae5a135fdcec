// Where the program's words go: standard output, standard error, and the log that keeps both.
//
// All text is UTF-8 with "\n" line ends in every build; bytes that are none, as names of files may
// have them, are shown as \xNN. Nothing here throws after construction: a reader of standard output
// that has gone away does not stop a job whose result goes to a file.
#pragma once

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace host::console {

// The log can't be opened; what() is the whole sentence.
class LogError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// A text as a terminal may show it: characters that would steer the terminal, but for the line end
// and the tab, are written as "^[" and "\\x9B". Drawings and folders may hold any.
std::string visible(std::string_view text);

class Printer {
  public:
    // Makes the standard streams carry UTF-8 bytes unchanged. `log` empty: no log is kept. An
    // existing log is written anew. Throws LogError.
    explicit Printer(const std::filesystem::path& log);

    // From now on what `print` gets goes to the log alone.
    void beQuiet() { quiet_ = true; }

    // Prompts, answers and what commands say; shown at once, on a terminal as `visible` has it.
    void print(std::string_view text);

    // What was asked for: a report, the table of the drawings. Shown also when the rest is quiet.
    void result(std::string_view text);

    // An error, a whole sentence or several lines; standard error gets it with "orlinth: " before
    // it and a line end behind. A prompt that stands open on standard output is ended first, so
    // that a terminal and the log show the error on a line of its own.
    void error(std::string_view sentence);

    // What the errors from now on are about: "orlinth: katu.dxf: " stands before them, unless they
    // begin with it themselves. Empty: nothing.
    void setSubject(std::string subject) { subject_ = std::move(subject); }

    // The errors since it was last asked, as they were given.
    std::vector<std::string> takeErrors() { return std::exchange(errors_, {}); }

    // Ends a line of standard output that stands open, such as a prompt that nobody answers any
    // more.
    void endLine();

    // Text that stands on the screen already, such as a typed line with its end: only the log gets
    // it.
    void isShown(std::string_view text);

    // False once the log could not take everything that was printed.
    bool logComplete() const { return logComplete_; }

    // Why standard output could not take everything, "No space left on device"; empty when it
    // could. A reader that has gone away wanted no more: that is no loss.
    const std::string& outputLoss() const { return outputLoss_; }

  private:
    void show(std::string_view text);
    void log(std::string_view text);

    std::ofstream log_;
    std::string subject_;
    std::vector<std::string> errors_;
    std::string outputLoss_;
    bool quiet_ = false;
    bool logging_ = false;
    const bool outputIsShown_;  // on a terminal
    const bool errorIsShown_;
    bool logComplete_ = true;
    bool atLineStart_ = true;
};

// True when the stream is a terminal, where a person types or reads.
bool inputIsTerminal();
bool outputIsTerminal();
bool errorIsTerminal();

}  // namespace host::console
