#include "host/editor/Nearest.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <numeric>
#include <optional>

#include "host/editor/Words.h"

namespace host::editor {

namespace {

using Names = std::vector<std::wstring>;

// The place of the only name that passes.
std::optional<std::size_t> onlyOne(const Names& names,
                                   const std::function<bool(const std::wstring&)>& passes) {
    const auto found = std::find_if(names.begin(), names.end(), passes);
    if (found == names.end() || std::any_of(found + 1, names.end(), passes)) return std::nullopt;
    return static_cast<std::size_t>(found - names.begin());
}

std::optional<std::size_t> bySlips(const std::wstring& typed, const Names& names) {
    const std::size_t most = typed.size() <= 4 ? 1 : typed.size() <= 8 ? 2 : 3;
    std::optional<std::size_t> best;
    std::size_t fewest = most + 1;
    for (std::size_t i = 0; i < names.size(); ++i) {
        const std::size_t shorter = std::min(names[i].size(), typed.size());
        const std::size_t longer = std::max(names[i].size(), typed.size());
        if (longer - shorter >= fewest) continue;
        const std::size_t count = slips(typed, names[i]);
        // With nothing left of one of the two they are different words.
        if (count >= fewest || count >= shorter) continue;
        fewest = count;
        best = i;
    }
    return best;
}

}  // namespace

std::size_t slips(std::wstring_view a, std::wstring_view b) {
    std::vector<std::size_t> before;
    std::vector<std::size_t> last(b.size() + 1);
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(last.begin(), last.end(), std::size_t{0});
    for (std::size_t i = 1; i <= a.size(); ++i) {
        row[0] = i;
        for (std::size_t k = 1; k <= b.size(); ++k) {
            const std::size_t replaced = last[k - 1] + (a[i - 1] == b[k - 1] ? 0 : 1);
            row[k] = std::min({last[k] + 1, row[k - 1] + 1, replaced});
            if (i > 1 && k > 1 && a[i - 1] == b[k - 2] && a[i - 2] == b[k - 1])
                row[k] = std::min(row[k], before[k - 2] + 1);
        }
        before = last;
        last = row;
    }
    return last[b.size()];
}

std::wstring nearest(std::wstring_view typed, const Names& names) {
    constexpr std::size_t longest = 64;
    constexpr std::size_t shortestBeginning = 3;
    constexpr std::size_t shortestPart = 4;
    if (typed.empty() || typed.size() > longest) return {};
    const std::wstring word = upperCase(typed);
    Names known;
    std::transform(names.begin(), names.end(), std::back_inserter(known),
                   [](const std::wstring& name) { return upperCase(name); });
    std::optional<std::size_t> found;
    if (word.size() >= shortestBeginning)
        found = onlyOne(known, [&](const std::wstring& name) { return name.find(word) == 0; });
    if (!found) found = bySlips(word, known);
    if (!found && word.size() >= shortestPart)
        found = onlyOne(
            known, [&](const std::wstring& name) { return name.find(word) != std::wstring::npos; });
    return found ? names[*found] : std::wstring();
}

std::wstring didYouMean(std::wstring_view typed, const Names& names) {
    const std::wstring meant = nearest(typed, names);
    return meant.empty() ? meant : L"; did you mean " + meant + L"?";
}

}  // namespace host::editor
