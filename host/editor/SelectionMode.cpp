#include "host/editor/SelectionMode.h"

#include <cstddef>

#include "host/editor/Words.h"

namespace host::editor {

namespace {

using Takes = SelectionMode::Takes;

Takes takesOf(const std::wstring& method, bool prompts) {
    if (method.empty()) return prompts ? Takes::prompts : Takes::point;
    if (method == L"W" || method == L"C") return Takes::corners;
    if (method == L"WP" || method == L"CP" || method == L"F") return Takes::points;
    const bool known =
        method == L"X" || method == L"A" || method == L"P" || method == L"L" || method == L"I";
    return known ? Takes::nothing : Takes::unknown;
}

}  // namespace

SelectionMode parseSelectionMode(std::wstring_view text) {
    SelectionMode mode;
    const std::size_t start = text.find_first_not_of(L"_.");
    text.remove_prefix(start == std::wstring_view::npos ? text.size() : start);
    const std::size_t colon = text.find(L':');
    mode.method = upperCase(text.substr(0, colon));
    bool known = true;
    for (std::size_t i = colon; i < text.size(); ++i) {
        switch (text[i]) {
            case L':':
                break;
            case L'$':
                mode.prompts = true;
                break;
            case L'S':
            case L's':
                mode.single = true;
                break;
            case L'L':
            case L'l':
                mode.refuseLocked = true;
                break;
            default:
                known = false;
                break;
        }
    }
    if (known) mode.takes = takesOf(mode.method, mode.prompts);
    return mode;
}

}  // namespace host::editor
