// The two ends of a session: where replies come from and where words go. The program and tests
// implement them.
#pragma once

#include <dbid.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace host::editor {

// What a prompt wants.
struct Request {
    // word: a blank ends the reply, as it ends most; text: blanks belong to it, only the line's end
    // ends it; command: a word at the prompt for commands.
    enum class Kind { command, word, text };
    Kind kind = Kind::word;
    std::wstring prompt;                    // as it was shown, for an editor that has to redraw it
    std::vector<std::wstring> completions;  // what makes sense here; may be empty
    // Endings of the files that make sense here (".dxf"), "" for any; none: no file is asked for.
    std::vector<std::wstring> fileTypes = {};
};

// One reply.
struct Reply {
    // text: what was typed, empty for a bare Enter; lisp: a whole expression that begins with "(";
    // entities: a selection that the program has made, with words for it in `text`; cancel: Escape
    // or Ctrl-C; end: there will be no further reply.
    enum class Kind { text, lisp, entities, cancel, end };
    Kind kind = Kind::end;
    std::wstring text;
    std::wstring where;      // "RUN.scr, line 3"; empty when a person types
    std::size_t line = 0;    // of the reply's first character in what was read, from 1
    std::size_t column = 0;  // from 1
    std::vector<AcDbObjectId> entities = {};
    bool quoted = false;                       // it stood in double quotes, and means what it says
    std::wstring rest = {};                    // what stands behind it in its line, unread
    std::vector<AcDbObjectId> lockedOut = {};  // left out of `entities` for their locked layers
};

// Replies. Never waits when nobody can answer: that is `end`.
class Input {
  public:
    virtual ~Input() = default;
    virtual Reply next(const Request& request) = 0;
    // Gives up the rest. A script is stopped so when a command did not get what it asked for,
    // because the answers that follow would be taken for others.
    virtual void stop() = 0;
    // False for a person, who sees what went wrong and answers again.
    virtual bool stopsWhenOutOfStep() const = 0;
    // True when `next` would answer without asking anybody.
    virtual bool pending() const = 0;
    // A command is asked for next: replies that would only repeat the last command, with nothing
    // else behind them, may be dropped.
    virtual void commandComes() {}
    // Gives up what a person has typed behind the last reply in the same line.
    virtual void dropLine() {}
    // True for a script: another script takes its place.
    virtual bool isScript() const { return false; }
    // True once when a person has asked to cancel while nothing was being asked: what runs by
    // itself, such as a script, stops then.
    virtual bool takeCancel() { return false; }
};

// A running meter; `from` .. `to` with the position between.
struct Meter {
    std::wstring label;
    int from = 0;
    int to = 0;
    int position = 0;
};

// Words. Texts end with "\n" where a line ends, nothing is added.
class Output {
  public:
    virtual ~Output() = default;
    virtual void print(std::wstring_view text) = 0;
    // A prompt; the reply to it is asked for next.
    virtual void prompt(std::wstring_view text) = 0;
    // The reply that was given, without a line end. A terminal shows typed ones by itself; others
    // are shown and their line ended.
    virtual void reply(const Reply& reply) = 0;
    // What went wrong, as one sentence without a line end.
    virtual void error(std::wstring_view sentence) = 0;
    // A meter appears, moves, or (null) goes.
    virtual void meter(const Meter* meter) { static_cast<void>(meter); }
};

}  // namespace host::editor
