#include "host/console/AlignAnswers.h"

#include <string>
#include <utility>

#include "host/console/Narrowing.h"
#include "host/console/SelectionNotes.h"
#include "host/editor/Session.h"
#include "host/editor/Words.h"

namespace host::console {

namespace {

using editor::Reply;

Reply typed(std::wstring text) {
    Reply reply;
    reply.kind = Reply::Kind::text;
    reply.text = std::move(text);
    return reply;
}

}  // namespace

Reply AlignAnswers::next(const editor::Request&) {
    switch (step_) {
        case Step::command:
            step_ = Step::line;
            return typed(L"ZEPTAlignEntities");
        case Step::line:
            step_ = Step::selection;
            return line();
        case Step::selection:
            step_ = Step::endOfSelection;
            return selection();
        case Step::endOfSelection:
            step_ = Step::flip;
            return typed(L"");
        case Step::flip:
            step_ = Step::end;
            return typed(request_.flip ? L"k" : L"");
        case Step::end:
            break;
    }
    return {};
}

Reply AlignAnswers::line() const {
    if (!request_.linePoint.empty()) return typed(editor::fromUtf8(request_.linePoint));
    if (!request_.lineLayer.empty()) {
        Reply reply = typed(editor::fromUtf8("layer=" + request_.lineLayer));
        reply.kind = Reply::Kind::entities;
        reply.entities = linesOn(*editor::Session::current()->drawing(), request_.lineLayer);
        return reply;
    }
    Reply reply = typed(L"(handent \"" + editor::fromUtf8(request_.lineHandle) + L"\")");
    reply.kind = Reply::Kind::lisp;
    return reply;
}

Reply AlignAnswers::selection() const {
    if (selectsAll(request_.filters)) return typed(L"ALL");
    Reply reply = typed(editor::fromUtf8(described(request_.filters)));
    reply.kind = Reply::Kind::entities;
    const AcDbDatabase& drawing = *editor::Session::current()->drawing();
    // Something else than what was named is not done.
    if (!lackingHandles(drawing, request_.filters).empty()) return reply;
    Narrowed found = narrowed(drawing, request_.filters);
    reply.entities = std::move(found.entities);
    reply.lockedOut = std::move(found.lockedOut);
    return reply;
}

}  // namespace host::console
