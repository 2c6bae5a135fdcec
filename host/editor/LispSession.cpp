// Functions of LISP that run commands and read files.
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "host/editor/SessionState.h"
#include "host/editor/Words.h"

namespace host::editor {

using State = Session::Implementation;

// The next argument of (command ...) as an answer: a number as it would be typed, nil as
// cancelling.
Answer State::takeGiven() {
    const lisp::Value& value = given_->values[given_->next++];
    Answer answer;
    const std::wstring* text = lisp::textIn(value);
    answer.text = text == nullptr ? lisp::brief(value) : *text;
    answer.value = value;
    if (lisp::isNil(value))
        answer.kind = Answer::Kind::cancel;
    else if (lisp::isWord(value))
        answer.kind = Answer::Kind::text;
    else
        answer.kind = Answer::Kind::value;
    return answer;
}

bool State::isGiven() const {
    return given_ != nullptr && given_->next < given_->values.size();
}

bool State::isPauseGiven() const {
    const std::wstring* text = lisp::textIn(given_->values[given_->next]);
    return text != nullptr && *text == L"\\";
}

// Shows what was asked and how it was answered, unless CMDECHO says otherwise.
void State::echo(std::wstring_view prompt, const Answer& answer) {
    const VariableValue* echoes = variables.get(L"CMDECHO");
    if (echoes != nullptr && *echoes == VariableValue(short{0})) return;
    showPrompt(prompt);
    Reply reply;
    reply.kind = answer.kind == Answer::Kind::cancel ? Reply::Kind::cancel : Reply::Kind::text;
    reply.text = answer.text;
    output_.reply(reply);
    freshLine_ = true;
}

void State::runFromLisp(const std::vector<lisp::Value>& values, lisp::Position where) {
    if (commandIsRunning())
        throw lisp::Error(L"command can't be used inside of " + commandName_, where);
    for (const lisp::Value& value : values) {
        const std::wstring* text = lisp::textIn(value);
        if (text != nullptr) lisp.spend(lisp::making * text->size(), where);
    }
    Given given{values, 0};
    given_ = &given;
    try {
        while (isGiven() && !quitting) runNextFromLisp(where);
        given_ = nullptr;
    } catch (...) {
        given_ = nullptr;
        throw;
    }
}

// One command by the next argument; an empty one repeats the last command, nil would cancel one.
void State::runNextFromLisp(lisp::Position where) {
    const Answer name = takeGiven();
    if (name.kind == Answer::Kind::cancel) return;
    if (name.kind != Answer::Kind::text || lisp::textIn(name.value) == nullptr) {
        throw lisp::Error(L"command takes the name of a command, not " + lisp::brief(name.value),
                          where);
    }
    const std::wstring typed(name.isEmpty() ? lastCommand_ : trimmed(name.text));
    if (typed.empty()) return;
    echo(L"\nCommand: ", name);
    CommandResult result = runCommand(typed, {});
    if (result.end == CommandResult::End::unknown)
        throw lisp::Error(L"there is no command " + lisp::briefText(result.name), where);
    lastCommand_ = result.name;
    conclude(result, name);
    if (result.end != CommandResult::End::done)
        throw lisp::Error(result.name + L" did not finish", where);
}

namespace lisp {

namespace {

namespace fs = std::filesystem;

// A file of expressions has at most so many bytes.
constexpr std::uintmax_t largestFile = 16U << 20U;

Value command(Call& call) {
    State* const state = currentState();
    if (state == nullptr) call.fail(L"there is no session that could run commands");
    state->runFromLisp(call.arguments, call.where);
    return Nil{};
}

// The text of a file, or none, with the reason.
std::optional<std::wstring> textOf(const fs::path& file, std::wstring& reason) {
    std::error_code error;
    if (!fs::is_regular_file(file, error)) {
        reason = fs::exists(file, error) ? L"is no file that can be read"
                                         : L"is not there: no file of that name was found";
        return std::nullopt;
    }
    if (fs::file_size(file, error) > largestFile || error) {
        reason = L"is too large: at most 16 MB can be loaded";
        return std::nullopt;
    }
    std::ifstream stream(file, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
    if (!stream) {
        reason = L"can't be read";
        return std::nullopt;
    }
    return decodeScript(bytes);
}

// (load file [value when it can't be read])
Value load(Call& call, std::vector<fs::path>& loading) {
    fs::path file = fs::u8path(toUtf8(call.text(0)));
    if (!file.has_extension()) file += ".lsp";
    const std::wstring name = briefText(fromUtf8(file.u8string()));
    for (const fs::path& outer : loading) {
        if (outer == file) call.fail(name + L" has led to itself and would never end");
    }
    std::wstring reason;
    std::optional<std::wstring> text = textOf(file, reason);
    if (!text && call.has(1)) return call.arguments[1];
    if (!text) call.fail(name + L" " + reason);
    call.spend(text->size());
    loading.push_back(file);
    try {
        const std::vector<Value> expressions = read(*text);
        text.reset();
        Value value = call.interpreter.evaluateAll(expressions);
        loading.pop_back();
        return value;
    } catch (const Error& error) {
        loading.pop_back();
        call.fail(error.sentence() + L", in " + name + L", line " +
                  std::to_wstring(error.where().line) + L", column " +
                  std::to_wstring(error.where().column));
    }
}

}  // namespace

void defineSessionFunctions(Interpreter& interpreter) {
    interpreter.define(L"command", {0, 1000, command});
    const auto loading = std::make_shared<std::vector<fs::path>>();
    interpreter.define(L"load", {1, 2, [loading](Call& call) { return load(call, *loading); }});
}

}  // namespace lisp

}  // namespace host::editor
