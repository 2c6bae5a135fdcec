#include <acutads.h>

#include <string_view>
#include <vector>

#include "host/database/Fault.h"
#include "tam/TextCase.h"

namespace {

using View = std::wstring_view;

constexpr wchar_t escape = L'`';

bool isDigit(wchar_t c) {
    return c >= L'0' && c <= L'9';
}

bool equal(wchar_t a, wchar_t b, bool ignoreCase) {
    return a == b || (ignoreCase && TamLib::UpperChar(a) == TamLib::UpperChar(b));
}

bool between(wchar_t c, wchar_t first, wchar_t last, bool ignoreCase) {
    if (first <= c && c <= last) return true;
    if (!ignoreCase) return false;
    const wchar_t upper = TamLib::UpperChar(c);
    const wchar_t lower = TamLib::LowerChar(c);
    return (first <= upper && upper <= last) || (first <= lower && lower <= last);
}

// One element of a pattern: what it takes from the text.
struct Element {
    enum class Kind { character, digit, letter, other, one, any, set };
    Kind kind = Kind::character;
    wchar_t character = L'\0';
    View set;              // between the brackets, without a leading ~
    bool outside = false;  // [~...]
};

// The position of the "]" that closes the bracket opened before `from`, or npos.
std::size_t closingBracket(View pattern, std::size_t from) {
    for (std::size_t i = from; i < pattern.size(); ++i) {
        if (pattern[i] == escape)
            ++i;
        else if (pattern[i] == L']')
            return i;
    }
    return View::npos;
}

Element takeElement(View pattern, std::size_t& position) {
    const wchar_t c = pattern[position];
    ++position;
    switch (c) {
        case L'#':
            return {Element::Kind::digit, c, {}, false};
        case L'@':
            return {Element::Kind::letter, c, {}, false};
        case L'.':
            return {Element::Kind::other, c, {}, false};
        case L'?':
            return {Element::Kind::one, c, {}, false};
        case L'*':
            return {Element::Kind::any, c, {}, false};
        case L'[': {
            const std::size_t end = closingBracket(pattern, position);
            if (end == View::npos) break;
            View set = pattern.substr(position, end - position);
            position = end + 1;
            const bool outside = !set.empty() && set.front() == L'~';
            if (outside) set.remove_prefix(1);
            return {Element::Kind::set, c, set, outside};
        }
        case escape:
            if (position < pattern.size())
                return {Element::Kind::character, pattern[position++], {}, false};
            break;
        default:
            break;
    }
    return {Element::Kind::character, c, {}, false};
}

bool inSet(View set, wchar_t c, bool ignoreCase) {
    for (std::size_t i = 0; i < set.size(); ++i) {
        if (set[i] == escape && i + 1 < set.size()) ++i;
        const bool range = i + 2 < set.size() && set[i + 1] == L'-';
        if (range ? between(c, set[i], set[i + 2], ignoreCase) : equal(c, set[i], ignoreCase))
            return true;
        if (range) i += 2;
    }
    return false;
}

bool takes(const Element& element, wchar_t c, bool ignoreCase) {
    switch (element.kind) {
        case Element::Kind::digit:
            return isDigit(c);
        case Element::Kind::letter:
            return TamLib::IsAlpha(c);
        case Element::Kind::other:
            return !isDigit(c) && !TamLib::IsAlpha(c);
        case Element::Kind::set:
            return inSet(element.set, c, ignoreCase) != element.outside;
        case Element::Kind::character:
            return equal(c, element.character, ignoreCase);
        default:
            return true;
    }
}

// Falls back to the last "*" only, which is enough: an earlier one could take nothing that the last
// can't.
bool matchElements(View text, const std::vector<Element>& elements, bool ignoreCase) {
    constexpr std::size_t none = static_cast<std::size_t>(-1);
    std::size_t t = 0;
    std::size_t e = 0;
    std::size_t star = none;
    std::size_t starText = 0;
    while (t < text.size()) {
        if (e < elements.size() && elements[e].kind == Element::Kind::any) {
            star = e++;
            starText = t;
        } else if (e < elements.size() && takes(elements[e], text[t], ignoreCase)) {
            ++e;
            ++t;
        } else if (star != none) {
            e = star + 1;
            t = ++starText;
        } else {
            return false;
        }
    }
    while (e < elements.size() && elements[e].kind == Element::Kind::any) ++e;
    return e == elements.size();
}

bool matchOne(View text, View pattern, bool ignoreCase) {
    const bool negated = !pattern.empty() && pattern.front() == L'~';
    std::vector<Element> elements;
    for (std::size_t position = negated ? 1 : 0; position < pattern.size();) {
        elements.push_back(takeElement(pattern, position));
    }
    return matchElements(text, elements, ignoreCase) != negated;
}

// The end of the pattern that begins at `from`: the next comma that is neither escaped nor in
// brackets.
std::size_t patternEnd(View patterns, std::size_t from) {
    for (std::size_t i = from; i < patterns.size(); ++i) {
        if (patterns[i] == escape) {
            ++i;
        } else if (patterns[i] == L'[') {
            const std::size_t end = closingBracket(patterns, i + 1);
            if (end != View::npos) i = end;
        } else if (patterns[i] == L',') {
            return i;
        }
    }
    return patterns.size();
}

bool matchAny(View text, View patterns, bool ignoreCase) {
    for (std::size_t from = 0; from <= patterns.size();) {
        const std::size_t end = patternEnd(patterns, from);
        if (matchOne(text, patterns.substr(from, end - from), ignoreCase)) return true;
        from = end + 1;
    }
    return false;
}

}  // namespace

bool acutWcMatchEx(const ACHAR* text, const ACHAR* pattern, bool ignoreCase) {
    return text != nullptr && pattern != nullptr && matchAny(text, pattern, ignoreCase);
}

int acutWcMatch(const ACHAR* text, const ACHAR* pattern) {
    HOST_CALL("acutWcMatch");
    return acutWcMatchEx(text, pattern, false) ? RTNORM : RTERROR;
}
