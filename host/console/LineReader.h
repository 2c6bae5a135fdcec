// Where the lines of standard input come from: an editor of lines at a terminal that can show one,
// otherwise whatever the system makes of the keys, or a pipe or file.
#pragma once

#include <memory>
#include <string>

#include "host/console/Completion.h"
#include "host/console/TerminalSignals.h"
#include "host/editor/Script.h"

namespace host::console {

class LineReader {
  public:
    using Line = editor::ReplyReader::Line;

    virtual ~LineReader() = default;

    // The next line, its end left out. cancel: Escape or Ctrl-C; end: there are no more lines.
    // An editor shows `prompt` (one line) and completes from `vocabulary`; others ignore both.
    virtual Line read(const std::wstring& prompt, const Vocabulary& vocabulary) = 0;

    // Whether `read` shows the prompt: it has to stand on the line that is edited.
    virtual bool showsPrompt() const { return false; }
};

// Lines of a pipe or file.
std::unique_ptr<LineReader> streamLines();

// Whether standard input, a pipe or file, has nothing at all; waits for its first byte or its end.
bool inputIsEmpty();

// Lines that a person types, as the system's own line editing gives them. `signals` outlives it.
std::unique_ptr<LineReader> terminalLines(TerminalSignals& signals);

// Lines that a person edits here, with history and completion. Null where there is no editor
// (Windows) or the terminal can't show one: standard output is none, or $TERM is missing or "dumb".
std::unique_ptr<LineReader> editedLines(TerminalSignals& signals);

}  // namespace host::console
