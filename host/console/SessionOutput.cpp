#include "host/console/SessionOutput.h"

#include "host/editor/Words.h"

namespace host::console {

void SessionOutput::print(std::wstring_view text) {
    printer_.print(editor::toUtf8(text));
}

void SessionOutput::prompt(std::wstring_view text) {
    printer_.print(editor::toUtf8(text));
}

void SessionOutput::reply(const editor::Reply& reply) {
    using Kind = editor::Reply::Kind;
    if (reply.kind == Kind::end) return;
    const std::string line = reply.kind == Kind::cancel ? "*Cancel*" : editor::toUtf8(reply.text);
    if (shown_)
        printer_.typed(line);
    else
        printer_.print(line + "\n");
    shown_ = false;
}

void SessionOutput::error(std::wstring_view sentence) {
    printer_.error(editor::toUtf8(sentence));
}

}  // namespace host::console
