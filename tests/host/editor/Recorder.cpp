#include "tests/host/editor/Recorder.h"

namespace host::test {

void RecordingOutput::reply(const editor::Reply& reply) {
    shown += reply.kind == editor::Reply::Kind::cancel ? L"*Cancel*" : reply.text;
    shown += L'\n';
}

void RecordingOutput::error(std::wstring_view sentence) {
    errors.emplace_back(sentence);
    if (!shown.empty() && shown.back() != L'\n') shown += L'\n';
    shown += L"! " + std::wstring(sentence) + L'\n';
}

void RecordingOutput::meter(const editor::Meter* meter) {
    if (meter == nullptr) {
        meters.emplace_back(L"gone");
    } else {
        meters.push_back(meter->label + L" " + std::to_wstring(meter->from) + L".." +
                         std::to_wstring(meter->to) + L" " + std::to_wstring(meter->position));
    }
}

editor::Reply TypedInput::next(const editor::Request& request) {
    requests.push_back(request);
    return reader_.next(request);
}

editor::ReplyReader::Line TypedInput::nextLine() {
    using Line = editor::ReplyReader::Line;
    if (at_ == lines_.size()) return {Line::Kind::end, {}};
    const std::wstring& line = lines_[at_++];
    if (line == L"^C") return {Line::Kind::cancel, {}};
    return {Line::Kind::text, line};
}

}  // namespace host::test
