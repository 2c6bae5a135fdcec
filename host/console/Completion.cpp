#include "host/console/Completion.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "host/console/Options.h"
#include "host/editor/Words.h"
#include "tam/TextCase.h"

namespace host::console {

namespace {

using editor::Request;
using Words = std::vector<std::wstring>;

bool isBlank(wchar_t c) {
    return c == L' ' || c == L'\t';
}

bool beginsWith(std::wstring_view text, std::wstring_view beginning) {
    return text.size() >= beginning.size() &&
           editor::equalIgnoringCase(text.substr(0, beginning.size()), beginning);
}

// The last reply of a line, which is still being typed.
struct OpenReply {
    std::size_t start = 0;
    bool isFirst = true;
    bool quoted = false;      // inside of double quotes, also of those in an expression
    std::size_t atQuote = 0;  // the opening one
    int depth = 0;            // of parentheses; above 0 in an expression
};

OpenReply lastReply(std::wstring_view line) {
    OpenReply reply;
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (reply.quoted) {
            if (line[i] == L'\\' && reply.depth > 0)
                ++i;
            else if (line[i] == L'"')
                reply.quoted = false;
        } else if (line[i] == L'"' && (reply.depth > 0 || i == reply.start)) {
            reply.quoted = true;
            reply.atQuote = i;
        } else if (line[i] == L'(' && (reply.depth > 0 || i == reply.start)) {
            ++reply.depth;
        } else if (line[i] == L')' && reply.depth > 0) {
            --reply.depth;
        } else if (isBlank(line[i]) && reply.depth == 0) {
            reply.start = i + 1;
            reply.isFirst = false;
        }
    }
    return reply;
}

// What all of them begin with, case ignored, spelled as the first one is.
std::wstring sharedBeginning(const Words& words) {
    std::wstring shared = words.front();
    for (const std::wstring& word : words) {
        std::size_t same = 0;
        while (same < shared.size() && same < word.size() &&
               TamLib::LowerChar(shared[same]) == TamLib::LowerChar(word[same]))
            ++same;
        shared.resize(same);
    }
    return shared;
}

// Puts what all candidates share in the place of the last `typed` characters.
Completion among(Words candidates, std::size_t typed) {
    if (candidates.empty()) return {};
    std::sort(candidates.begin(), candidates.end());
    candidates.erase(std::unique(candidates.begin(), candidates.end()), candidates.end());
    Completion completion{typed, sharedBeginning(candidates), {}};
    if (candidates.size() > 1) completion.choices = std::move(candidates);
    return completion;
}

Words beginningWith(const Words& words, std::wstring_view typed) {
    Words fitting;
    std::copy_if(words.begin(), words.end(), std::back_inserter(fitting),
                 [&](const std::wstring& word) { return beginsWith(word, typed); });
    return fitting;
}

std::wstring lowerCase(std::wstring text) {
    for (wchar_t& c : text) c = TamLib::LowerChar(c);
    return text;
}

Completion symbols(std::wstring_view typed, const Vocabulary& vocabulary) {
    Words names = vocabulary.symbols ? vocabulary.symbols() : Words();
    const bool capitals = lowerCase(std::wstring(typed)) != typed;
    if (!capitals)
        for (std::wstring& name : names) name = lowerCase(name);
    return among(beginningWith(names, typed), typed.size());
}

// --- files -------------------------------------------------------------------------------------

bool hasType(const std::wstring& name, const Words& types) {
    return std::any_of(types.begin(), types.end(), [&](const std::wstring& type) {
        return name.size() >= type.size() &&
               editor::equalIgnoringCase(name.substr(name.size() - type.size()), type);
    });
}

std::size_t endOfFolder(std::wstring_view path) {
#ifdef _WIN32
    const std::size_t last = path.find_last_of(L"/\\:");
#else
    const std::size_t last = path.rfind(L'/');
#endif
    return last == std::wstring_view::npos ? 0 : last + 1;
}

// Files of the types, and folders with a slash behind them, that begin like `typed`.
Words filesLike(std::wstring_view typed, const Words& types) {
    namespace fs = std::filesystem;
    const std::size_t end = endOfFolder(typed);
    const std::wstring_view beginning = typed.substr(end);
    const fs::path folder =
        end == 0 ? fs::path(".") : pathFromUtf8(editor::toUtf8(typed.substr(0, end)));
    Words found;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), none; !error && entry != none;
         entry.increment(error)) {
        std::wstring name = editor::fromUtf8(utf8(entry->path().filename()));
        const bool hidden = !name.empty() && name.front() == L'.' && beginning.empty();
        // Names of files are told apart by case where the system does.
        if (hidden || name.compare(0, beginning.size(), beginning) != 0) continue;
        std::error_code ignored;
        if (entry->is_directory(ignored))
            name += L'/';
        else if (!hasType(name, types))
            continue;
        found.push_back(std::wstring(typed.substr(0, end)) + name);
    }
    return found;
}

// `typed` is the name without the quote that may stand before it.
Completion files(std::wstring_view typed, const Words& types, bool quoted) {
    Completion completion = among(filesLike(typed, types), typed.size() + (quoted ? 1 : 0));
    if (completion.text.empty()) return {};
    // Without quotes these would be something else, or end the reply.
    const bool needsQuotes =
        quoted || completion.text.find_first_of(L" \t") != std::wstring::npos ||
        std::wstring_view(L"(!;'\"").find(completion.text.front()) != std::wstring_view::npos;
    const bool whole = completion.choices.empty() && completion.text.back() != L'/';
    if (needsQuotes) completion.text = L'"' + completion.text + (whole ? L"\"" : L"");
    return completion;
}

// --- expressions -------------------------------------------------------------------------------

Completion expression(std::wstring_view line, const OpenReply& reply,
                      const Vocabulary& vocabulary) {
    const std::wstring_view whole = line.substr(reply.start);
    const Words offered = beginningWith(vocabulary.words, whole);
    if (!offered.empty()) return among(offered, whole.size());
    if (reply.quoted) {
        const std::wstring_view before = line.substr(0, reply.atQuote);
        const bool loads = beginsWith(
            before.substr(before.size() - std::min<std::size_t>(6, before.size())), L"(load ");
        return loads ? files(line.substr(reply.atQuote + 1), {L".lsp"}, true) : Completion();
    }
    const std::size_t border = line.find_last_of(L" \t()'\"");
    return symbols(line.substr(border + 1), vocabulary);
}

}  // namespace

bool Completion::changesNothing(std::wstring_view before) const {
    return before.size() >= replaced && before.substr(before.size() - replaced) == text;
}

Completion complete(std::wstring_view before, const Vocabulary& vocabulary) {
    if (vocabulary.kind == Request::Kind::text)
        return vocabulary.fileTypes.empty() ? Completion()
                                            : files(before, vocabulary.fileTypes, false);
    const OpenReply reply = lastReply(before);
    if (reply.depth > 0) return expression(before, reply, vocabulary);
    std::wstring_view word = before.substr(reply.start);
    if (reply.quoted) word.remove_prefix(1);
    if (!word.empty() && word.front() == L'!') return symbols(word.substr(1), vocabulary);
    const bool behindCommand = vocabulary.kind == Request::Kind::command && !reply.isFirst;
    if (behindCommand) return files(word, {L""}, reply.quoted);
    if (!vocabulary.fileTypes.empty()) return files(word, vocabulary.fileTypes, reply.quoted);
    if (reply.quoted) return {};
    const std::size_t prefix = std::min(word.find_first_not_of(L"_.'"), word.size());
    const std::wstring_view name = word.substr(prefix);
    return among(beginningWith(vocabulary.words, name), name.size());
}

}  // namespace host::console
