// Replies from standard input: a person at a terminal, or lines from a pipe or file, which are
// taken like a script. Never waits for a key when standard input is not a terminal: its end is the
// end of the replies.
#pragma once

#include <memory>
#include <string>

#include "host/console/LineReader.h"
#include "host/console/SessionOutput.h"
#include "host/console/TerminalSignals.h"
#include "host/editor/Console.h"
#include "host/editor/Script.h"

namespace host::console {

class StandardInput : public editor::Input {
  public:
    // `output` is told which replies a terminal has shown already; it outlives this object.
    explicit StandardInput(SessionOutput& output);
    ~StandardInput() override;

    editor::Reply next(const editor::Request& request) override;
    void stop() override;
    bool stopsWhenOutOfStep() const override { return !terminal_; }
    bool pending() const override { return reader_.pending(); }
    bool takeCancel() override;
    void dropLine() override { reader_.drop(); }

  private:
    editor::ReplyReader::Line readLine(const editor::Request* request, bool continuing);

    SessionOutput& output_;
    const bool terminal_;
    bool ended_ = false;
    bool lineIsNew_ = false;
    bool asked_ = false;                        // for this reply
    std::unique_ptr<TerminalSignals> signals_;  // of a terminal
    std::unique_ptr<LineReader> lines_;
    editor::ReplyReader reader_;
};

}  // namespace host::console
