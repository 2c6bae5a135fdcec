#include "host/editor/Keywords.h"

#include <algorithm>
#include <vector>

#include "host/editor/Words.h"
#include "tam/TextCase.h"

namespace host::editor {

namespace {

std::vector<std::wstring> wordsOf(std::wstring_view text) {
    std::vector<std::wstring> words = split(text, L' ');
    words.erase(std::remove(words.begin(), words.end(), L""), words.end());
    return words;
}

bool isCapital(wchar_t c) {
    return TamLib::LowerChar(c) != c || (c >= L'0' && c <= L'9');
}

bool means(std::wstring_view reply, const std::wstring& keyword) {
    const auto begin = std::find_if(keyword.begin(), keyword.end(), isCapital);
    const auto end = std::find_if_not(begin, keyword.end(), isCapital);
    if (begin != end && equalIgnoringCase(reply, std::wstring(begin, end))) return true;
    const auto capitals = begin == end ? keyword.begin() : end;
    const auto shortest =
        std::max<std::size_t>(1, static_cast<std::size_t>(capitals - keyword.begin()));
    return reply.size() >= shortest && reply.size() <= keyword.size() &&
           equalIgnoringCase(reply, std::wstring_view(keyword).substr(0, reply.size()));
}

}  // namespace

std::optional<std::wstring> matchKeyword(std::wstring_view reply, std::wstring_view keywords) {
    const bool global = !reply.empty() && reply.front() == L'_';
    if (global) reply.remove_prefix(1);
    const std::size_t border = keywords.find(L" _");
    const std::vector<std::wstring> local = wordsOf(keywords.substr(0, border));
    const std::vector<std::wstring> names =
        border == std::wstring_view::npos ? local : wordsOf(keywords.substr(border + 2));
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (means(reply, names[i]) || (!global && i < local.size() && means(reply, local[i])))
            return names[i];
    }
    return std::nullopt;
}

}  // namespace host::editor
