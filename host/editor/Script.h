// Scripts: how the lines of a .scr file, and lines that somebody types, become replies.
//
// A line is cut into replies: a blank or tab ends one, and so does the line's end, each counting as
// Enter. An empty line is an empty reply, and every blank of a run but the first is one as well. A
// line that begins with ";" is a comment and no reply. Text in double quotes keeps its blanks and
// loses the quotes; such a reply is never an expression nor a "!symbol". A "(" at the start of a
// reply begins an expression that runs until it balances, over lines, texts in quotes and comments
// observed; parentheses too many directly behind it belong to it, so that its reader can tell them,
// and so does the one blank or line end that follows. Where a prompt takes free text, the
// rest of the line is one reply as it stands.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include "host/editor/Console.h"

namespace host::editor {

// Cuts lines into replies. The lines come from a function, so that scripts, pipes and terminals are
// cut alike.
class ReplyReader {
  public:
    struct Line {
        // cancel: the line was given up (Ctrl-C); end: there are no more lines.
        enum class Kind { text, cancel, end };
        Kind kind = Kind::end;
        std::wstring text;  // without its end
        // The input ends with it: nothing follows a blank at its end.
        bool unended = false;
    };
    // Gives the next line. `continuing` is true inside an expression that has not balanced yet; the
    // request is null then.
    using LineSource = std::function<Line(const Request* request, bool continuing)>;

    explicit ReplyReader(LineSource source) : source_(std::move(source)) {}

    // The next reply. `where` stays empty. An expression that the input ends inside of is given as
    // it stands, so that its reader can say what is missing.
    Reply next(const Request& request);

    // The number of the line that the last reply began on, from 1.
    std::size_t line() const { return replyLine_; }
    // True when a part of a line is still unread.
    bool pending() const { return haveLine_; }
    // That part, empty when there is none.
    std::wstring_view rest() const;
    // Forgets the rest of the line.
    void drop() { haveLine_ = false; }

  private:
    Reply takeWord();
    Reply takeText();
    Reply takeExpression();
    void takeLine(Line line);
    void endReply(std::size_t position);

    LineSource source_;
    std::wstring lineText_;
    std::size_t position_ = 0;
    std::size_t lineNumber_ = 0;
    std::size_t replyLine_ = 0;
    bool haveLine_ = false;
    bool unended_ = false;
};

// A script as input. Its end is the end of input.
class ScriptInput : public Input {
  public:
    // A file often ends with empty lines that nobody meant: they repeat no command. What is sent to
    // the command line is meant as it stands.
    enum class Of { file, sentText };

    // `text` is the decoded script (decodeScript), `name` what messages call it.
    ScriptInput(std::wstring text, std::wstring name, Of of = Of::file);

    Reply next(const Request& request) override;
    void stop() override;
    bool stopsWhenOutOfStep() const override { return true; }
    bool pending() const override;
    void commandComes() override;
    bool isScript() const override { return true; }

  private:
    ReplyReader::Line nextLine();
    bool onlyEmptyLinesFollow() const;

    std::wstring text_;
    std::wstring name_;
    Of of_;
    std::size_t position_ = 0;
    ReplyReader reader_;
};

// The text of a script file: UTF-8 with or without byte order mark, UTF-16 with one, and
// Windows-1252 when the bytes are no UTF-8.
std::wstring decodeScript(std::string_view bytes);

}  // namespace host::editor
