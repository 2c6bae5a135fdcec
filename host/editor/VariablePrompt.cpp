#include "host/editor/VariablePrompt.h"

#include <acutads.h>
#include <adscodes.h>

#include <optional>
#include <vector>

#include "host/editor/Points.h"
#include "host/editor/SessionState.h"
#include "host/editor/Words.h"

namespace host::editor {

namespace {

struct Show {
    std::wstring operator()(short number) const { return std::to_wstring(number); }
    std::wstring operator()(std::int32_t number) const { return std::to_wstring(number); }
    std::wstring operator()(double number) const { return numberText(number); }
    std::wstring operator()(const AcGePoint3d& point) const { return pointText(point); }
    std::wstring operator()(const std::wstring& text) const { return text; }
    std::wstring operator()(const PlanePoint& point) const {
        return numberText(point.x) + L"," + numberText(point.y);
    }
};

// The typed text as a value of the kind that `like` is of.
std::optional<VariableValue> typedValue(const std::wstring& text, const VariableValue& like) {
    if (std::holds_alternative<short>(like)) {
        const auto number = parseInteger(text);
        if (!number || *number < -32768 || *number > 32767) return std::nullopt;
        return VariableValue(static_cast<short>(*number));
    }
    if (std::holds_alternative<std::int32_t>(like)) {
        const auto number = parseInteger(text);
        return number ? std::optional<VariableValue>(*number) : std::nullopt;
    }
    if (std::holds_alternative<double>(like)) {
        const auto number = parseNumber(text);
        return number ? std::optional<VariableValue>(*number) : std::nullopt;
    }
    if (std::holds_alternative<AcGePoint3d>(like)) {
        const auto point = parsePoint(text, {});
        return point ? std::optional<VariableValue>(*point) : std::nullopt;
    }
    if (std::holds_alternative<PlanePoint>(like)) {
        const auto point = parsePoint(text, {});
        if (!point) return std::nullopt;
        return VariableValue(PlanePoint{point->x, point->y});
    }
    return VariableValue(text == L"." ? std::wstring() : text);
}

void listVariables(Session::Implementation& state, const std::wstring& pattern) {
    std::wstring text;
    for (const std::wstring& name : state.variables.names()) {
        if (!acutWcMatchEx(name.c_str(), pattern.c_str(), true)) continue;
        text += L"\n" + name + std::wstring(name.size() < 12 ? 12 - name.size() : 1, L' ') +
                variableText(*state.variables.get(name));
        if (state.variables.isReadOnly(name)) text += L"  (read only)";
    }
    state.print(text.empty() ? L"\nNo system variable is called " + pattern + L"." : text);
}

}  // namespace

void setVariables(Session& session) {
    Session::Implementation& state = session.implementation();
    const std::wstring& last = state.lastVariable;
    const std::wstring shown = last.empty() ? L"" : L" <" + last + L">";
    std::vector<std::wstring> words = state.variables.names();
    words.push_back(L"?");
    std::wstring name =
        upperCase(session.askWord(L"\nEnter variable name or [?]" + shown + L": ", words));
    if (name.empty()) name = last;
    if (name.empty()) return;
    if (name == L"?") {
        const std::wstring given = session.askWord(L"\nEnter variable(s) to list <*>: ");
        return listVariables(state, given.empty() ? L"*" : given);
    }
    if (state.variables.get(name) == nullptr)
        throw CommandFailure(L"there is no system variable " + name + L"; SETVAR ? lists them");
    state.lastVariable = name;
    askVariable(session, name);
}

std::wstring variableText(const VariableValue& value) {
    return std::visit(Show(), value);
}

void askVariable(Session& session, std::wstring_view given) {
    Session::Implementation& state = session.implementation();
    const std::wstring name = upperCase(given);
    const VariableValue* current = state.variables.get(name);
    if (current == nullptr) throw CommandFailure(L"there is no system variable " + name);
    const VariableValue before = *current;
    if (state.variables.isReadOnly(name)) {
        state.print(L"\n" + name + L" = " + variableText(before) + L" (read only)");
        return;
    }
    const bool isText = std::holds_alternative<std::wstring>(before);
    const std::wstring prompt =
        L"\nEnter new value for " + name + L" <" + variableText(before) + L">: ";
    const std::wstring reply = isText ? session.askText(prompt) : session.askWord(prompt);
    if (reply.empty()) return;
    const auto value = typedValue(reply, before);
    if (!value || !state.variables.set(name, *value)) {
        throw CommandFailure(name + L" can't be '" + reply + L"'; it stays " +
                             variableText(before));
    }
}

}  // namespace host::editor
