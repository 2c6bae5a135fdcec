#include "host/console/SessionOutput.h"

#include <utility>

#include "host/editor/Words.h"

namespace host::console {

namespace {

// Of a meter, so that it stays on one line of the screen.
constexpr std::size_t longestLabel = 50;

}  // namespace

void SessionOutput::showHeldPrompt() {
    meter_.clear();
    if (!held_.empty()) printer_.print(editor::toUtf8(std::exchange(held_, {})));
}

std::wstring SessionOutput::takePrompt() {
    printer_.isShown(editor::toUtf8(held_));
    return std::exchange(held_, {});
}

void SessionOutput::print(std::wstring_view text) {
    showHeldPrompt();
    printer_.print(editor::toUtf8(text));
}

void SessionOutput::prompt(std::wstring_view text) {
    showHeldPrompt();
    const std::size_t lastLine = text.rfind(L'\n') + 1;
    printer_.print(editor::toUtf8(text.substr(0, lastLine)));
    lastPrompt_ = text.substr(lastLine);
    promptAgain();
}

void SessionOutput::promptAgain() {
    if (holds_)
        held_ = lastPrompt_;
    else
        printer_.print(editor::toUtf8(lastPrompt_));
}

void SessionOutput::reply(const editor::Reply& reply) {
    using Kind = editor::Reply::Kind;
    showHeldPrompt();
    if (reply.kind == Kind::end) return;
    const std::string line =
        (reply.kind == Kind::cancel ? "*Cancel*" : editor::toUtf8(reply.text)) + "\n";
    if (shown_)
        printer_.isShown(line);
    else
        printer_.print(line);
    shown_ = false;
}

void SessionOutput::error(std::wstring_view sentence) {
    showHeldPrompt();
    printer_.error(editor::toUtf8(sentence));
}

void SessionOutput::meter(const editor::Meter* meter) {
    if (meter == nullptr) return meter_.clear();
    const double whole = static_cast<double>(meter->to) - meter->from;
    meter_.show(editor::toUtf8(meter->label.substr(0, longestLabel)),
                (static_cast<double>(meter->position) - meter->from) / whole);
}

}  // namespace host::console
