// From the text of expressions to values.
#include <algorithm>
#include <optional>
#include <utility>

#include "host/editor/LispValue.h"
#include "host/editor/Words.h"

namespace host::editor::lisp {

namespace {

bool isSpace(wchar_t c) {
    return c == L' ' || c == L'\t' || c == L'\n' || c == L'\r' || c == L'\f';
}

bool endsAtom(wchar_t c) {
    return isSpace(c) || c == L'(' || c == L')' || c == L'"' || c == L'\'' || c == L';';
}

bool isDigit(wchar_t c) {
    return c >= L'0' && c <= L'9';
}

// What begins like a number and is none would pass for a symbol without a value. "1+" and "1-" are
// names of functions.
bool isMeantAsNumber(const std::wstring& word) {
    if (word == L"1+" || word == L"1-") return false;
    std::size_t digit = std::min(word.find_first_not_of(L"+-"), word.size());
    if (digit < word.size() && word[digit] == L'.') ++digit;
    return digit < word.size() && isDigit(word[digit]);
}

int octalDigit(wchar_t c) {
    return c >= L'0' && c <= L'7' ? static_cast<int>(c - L'0') : -1;
}

class Reader {
  public:
    Reader(std::wstring_view text, Position start) : text_(text), at_(start) {}

    std::vector<Value> all() {
        std::vector<Value> expressions;
        for (skip(); !done(); skip()) expressions.push_back(expression(0));
        return expressions;
    }

  private:
    bool done() const { return i_ >= text_.size(); }
    wchar_t peek(std::size_t ahead = 0) const {
        return i_ + ahead < text_.size() ? text_[i_ + ahead] : L'\0';
    }

    wchar_t take() {
        const wchar_t c = text_[i_++];
        if (c == L'\n') {
            ++at_.line;
            at_.column = 1;
        } else {
            ++at_.column;
        }
        return c;
    }

    // Past blanks and comments.
    void skip() {
        while (!done()) {
            if (isSpace(peek())) {
                take();
            } else if (peek() == L';') {
                peek(1) == L'|' ? skipBlock() : skipLine();
            } else {
                return;
            }
        }
    }

    void skipLine() {
        while (!done() && peek() != L'\n') take();
    }

    void skipBlock() {
        const Position start = at_;
        take();
        take();
        while (!done()) {
            if (take() == L'|' && peek() == L';') {
                take();
                return;
            }
        }
        throw Error(L"the comment that begins here has no end \"|;\"", start);
    }

    Value expression(int depth) {
        const Position start = at_;
        if (depth > deepestNesting) {
            throw Error(L"lists are nested more than " + std::to_wstring(deepestNesting) + L" deep",
                        start);
        }
        switch (peek()) {
            case L'(':
                return listFrom(start, depth);
            case L')':
                throw Error(L"this parenthesis closes nothing", start);
            case L'"':
                return textFrom(start);
            case L'\'': {
                take();
                skip();
                if (done()) throw Error(L"there is nothing behind the quote mark", start);
                return list({Symbol{Text(L"QUOTE", start)}, expression(depth + 1)}, start);
            }
            default:
                return atom(start);
        }
    }

    Value listFrom(Position start, int depth) {
        take();
        std::vector<Value> values;
        Value tail;
        while (true) {
            skip();
            if (done()) throw Error(L"the list that begins here has no closing parenthesis", start);
            if (peek() == L')') break;
            if (isDot()) {
                tail = dotted(values, depth);
                break;
            }
            values.push_back(expression(depth + 1));
        }
        take();
        return list(std::move(values), start, std::move(tail));
    }

    bool isDot() const { return peek() == L'.' && (peek(1) == L'\0' || endsAtom(peek(1))); }

    Value dotted(const std::vector<Value>& before, int depth) {
        const Position dot = at_;
        take();
        skip();
        if (before.empty() || done() || peek() == L')')
            throw Error(L"a dot stands between two values", dot);
        Value rest = expression(depth + 1);
        skip();
        if (peek() != L')') throw Error(L"one value and the closing parenthesis follow a dot", dot);
        return rest;
    }

    Value textFrom(Position start) {
        take();
        std::wstring value;
        while (true) {
            if (done())
                throw Error(L"the text that begins here has no closing quotation mark", start);
            const Position at = at_;
            const wchar_t c = take();
            if (c == L'"') return Text(std::move(value), start);
            value += c == L'\\' && !done() ? escaped(at) : c;
            if (value.back() == L'\0') throw Error(L"a text can't hold the character 0", at);
        }
    }

    // What the backslash at `where` begins.
    wchar_t escaped(Position where) {
        const wchar_t c = take();
        switch (c) {
            case L'n':
                return L'\n';
            case L'r':
                return L'\r';
            case L't':
                return L'\t';
            case L'e':
                return L'\x1B';
            case L'"':
            case L'\\':
                return c;
            default:
                break;
        }
        int code = octalDigit(c);
        if (code < 0) throw Error(L"a text has no escape \"\\" + std::wstring(1, c) + L"\"", where);
        for (int digits = 1; digits < 3 && octalDigit(peek()) >= 0; ++digits)
            code = code * 8 + octalDigit(take());
        return static_cast<wchar_t>(code);
    }

    Value atom(Position start) {
        std::wstring word;
        while (!done() && !endsAtom(peek())) word += take();
        if (const auto whole = parseInteger(word)) return static_cast<std::int32_t>(*whole);
        if (const auto number = parseNumber(word)) return *number;
        if (isMeantAsNumber(word)) {
            throw Error(
                briefText(word) + L" is no number; numbers are written like 7, -2.5 and 1e3",
                start);
        }
        if (word == L".") throw Error(L"a dot stands between two values", start);
        std::wstring name = upperCase(word);
        if (name == L"NIL") return Nil{};
        return Symbol{Text(std::move(name), start)};
    }

    std::wstring_view text_;
    std::size_t i_ = 0;
    Position at_;
};

}  // namespace

std::vector<Value> read(std::wstring_view text, Position start) {
    return Reader(text, start).all();
}

}  // namespace host::editor::lisp
