// The two ends of a session for tests: replies from lines of text, and everything said kept as one
// text as a console would show it.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "host/editor/Console.h"
#include "host/editor/Script.h"

namespace host::test {

// Words as a console shows them: replies end their line, errors stand on a line of their own behind
// "! ".
class RecordingOutput : public editor::Output {
  public:
    void print(std::wstring_view text) override {
        shown += text;
        if (onPrint) onPrint(text);
    }
    void prompt(std::wstring_view text) override { shown += text; }
    void reply(const editor::Reply& reply) override;
    void error(std::wstring_view sentence) override;
    void meter(const editor::Meter* meter) override;

    std::function<void(std::wstring_view)> onPrint;  // may be empty
    std::wstring shown;
    std::vector<std::wstring> errors;
    std::vector<std::wstring> meters;  // "label from..to at", "gone"
};

// A person at a terminal whose lines are typed beforehand; "^C" cancels.
class TypedInput : public editor::Input {
  public:
    explicit TypedInput(std::vector<std::wstring> lines) : lines_(std::move(lines)) {}

    editor::Reply next(const editor::Request& request) override;
    void stop() override { ++stops; }
    bool stopsWhenOutOfStep() const override { return false; }
    bool pending() const override { return reader_.pending(); }

    int stops = 0;
    std::vector<editor::Request> requests;

  private:
    editor::ReplyReader::Line nextLine();

    std::vector<std::wstring> lines_;
    std::size_t at_ = 0;
    editor::ReplyReader reader_{[this](const editor::Request*, bool) { return nextLine(); }};
};

}  // namespace host::test
