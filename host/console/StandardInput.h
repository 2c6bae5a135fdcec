// Replies from standard input: a person at a terminal, or lines from a pipe or file, which are
// taken like a script. Never waits for a key when standard input is not a terminal: its end is the
// end of the replies.
#pragma once

#include <string>

#include "host/console/SessionOutput.h"
#include "host/editor/Console.h"
#include "host/editor/Script.h"

namespace host::console {

class StandardInput : public editor::Input {
  public:
    // `output` is told which replies a terminal has shown already; it outlives this object.
    explicit StandardInput(SessionOutput& output);

    editor::Reply next(const editor::Request& request) override;
    void stop() override;
    bool stopsWhenOutOfStep() const override { return !terminal_; }
    bool pending() const override { return reader_.pending(); }

  private:
    editor::ReplyReader::Line readLine();

    SessionOutput& output_;
    const bool terminal_;
    bool ended_ = false;
    bool lineIsNew_ = false;
    editor::ReplyReader reader_;
};

}  // namespace host::console
