#include "host/console/StandardInput.h"

#include <string>

#include "host/editor/Session.h"

namespace host::console {

namespace {

using editor::Reply;
using editor::ReplyReader;
using editor::Request;

// Stands before the lines of an expression that has not been closed yet.
constexpr const wchar_t* openExpression = L"(_> ";

Vocabulary vocabularyOf(const Request* request) {
    Vocabulary vocabulary;
    if (request != nullptr) {
        vocabulary.kind = request->kind;
        vocabulary.words = request->completions;
        vocabulary.fileTypes = request->fileTypes;
    }
    vocabulary.symbols = [] {
        const editor::Session* session = editor::Session::current();
        return session == nullptr ? std::vector<std::wstring>() : session->lispNames();
    };
    return vocabulary;
}

}  // namespace

StandardInput::StandardInput(SessionOutput& output)
    : output_(output),
      terminal_(inputIsTerminal()),
      reader_([this](const Request* request, bool continuing) {
          return readLine(request, continuing);
      }) {
    if (terminal_) {
        signals_ = std::make_unique<TerminalSignals>();
        lines_ = editedLines(*signals_);
        if (lines_ == nullptr) lines_ = terminalLines(*signals_);
    } else {
        lines_ = streamLines();
    }
    output_.holdPrompts(lines_->showsPrompt());
}

StandardInput::~StandardInput() {
    output_.holdPrompts(false);
}

Reply StandardInput::next(const Request& request) {
    lineIsNew_ = false;
    asked_ = false;
    Reply reply = reader_.next(request);
    // The first reply of a line stands where it was typed; what follows in the line does not.
    const bool typed = reply.kind == Reply::Kind::text || reply.kind == Reply::Kind::lisp;
    if (terminal_ && lineIsNew_ && typed) output_.nextReplyIsShown();
    if (!terminal_) reply.where = L"standard input, line " + std::to_wstring(reader_.line());
    return reply;
}

void StandardInput::stop() {
    reader_.drop();
    ended_ = true;
}

bool StandardInput::takeCancel() {
    return signals_ != nullptr && signals_->takeCancel();
}

ReplyReader::Line StandardInput::readLine(const Request* request, bool continuing) {
    if (ended_) return {};
    // Behind a comment the prompt stands there once more.
    if (terminal_ && asked_ && !continuing) output_.promptAgain();
    asked_ = true;
    const std::wstring prompt = continuing ? openExpression : output_.takePrompt();
    ReplyReader::Line line = lines_->read(prompt, vocabularyOf(request));
    ended_ = line.kind == ReplyReader::Line::Kind::end;
    lineIsNew_ = true;
    return line;
}

}  // namespace host::console
