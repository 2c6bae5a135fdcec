#include "host/picture/PlainText.h"

#include <algorithm>

#include "host/dxf/CodePage.h"
#include "host/picture/FontWidths.h"

namespace host::picture {
namespace {

constexpr wchar_t noBreak = L'\u00A0';
constexpr wchar_t ellipsis = L'\u2026';

bool isDigit(wchar_t character) {
    return character >= L'0' && character <= L'9';
}

wchar_t lowered(wchar_t character) {
    return character >= L'A' && character <= L'Z' ? static_cast<wchar_t>(character + 32)
                                                  : character;
}

// What a code stands for: a character (0 for none) or a switch, and how long the code is; a length
// of 0 for what is no code.
struct Code {
    std::size_t length = 0;
    wchar_t character = 0;
    wchar_t toggle = 0;  // u, o or k
};

// Numbers from 128 on count in Windows' Western code page. Control characters are none.
wchar_t numberedCharacter(int number) {
    if (number == L'\t') return L' ';
    if (number < 0x20 || number == 0x7F) return 0;
    static const dxf::CodePage* const western = dxf::findCodePage("ANSI_1252");
    return number < 0x80 ? static_cast<wchar_t>(number)
                         : static_cast<wchar_t>(western->upper[number - 0x80]);
}

Code numberedCode(std::wstring_view rest) {
    constexpr std::size_t length = 5;  // %%nnn
    if (rest.size() < length || !std::all_of(rest.begin() + 2, rest.begin() + length, isDigit))
        return {};
    const int number = (rest[2] - L'0') * 100 + (rest[3] - L'0') * 10 + (rest[4] - L'0');
    if (number < 1 || number > 255) return {};
    return {length, numberedCharacter(number), 0};
}

// Of a text that begins with %%.
Code percentCode(std::wstring_view rest) {
    if (rest.size() < 3) return {};
    switch (lowered(rest[2])) {
        case L'd':
            return {3, L'\u00B0', 0};
        case L'p':
            return {3, L'\u00B1', 0};
        case L'c':
            return {3, L'\u2300', 0};
        case L'%':
            return {3, L'%', 0};
        case L'u':
        case L'o':
        case L'k':
            return {3, 0, lowered(rest[2])};
        default:
            return numberedCode(rest);
    }
}

// Of a text that begins with a caret: a control character by its letter.
Code caretCode(std::wstring_view rest) {
    if (rest.size() < 2) return {};
    if (rest[1] == L' ') return {2, L'^', 0};
    if (rest[1] == L'I') return {2, L' ', 0};
    return rest[1] >= L'@' && rest[1] <= L'_' ? Code{2, 0, 0} : Code{};
}

Code codeAt(std::wstring_view rest) {
    if (rest.substr(0, 2) == L"%%") return percentCode(rest);
    return rest.substr(0, 1) == L"^" ? caretCode(rest) : Code{};
}

std::wstring cut(std::wstring_view text) {
    if (text.size() <= longestText) return std::wstring(text);
    return std::wstring(text.substr(0, longestText)) + ellipsis;
}

void toggle(Run& run, wchar_t which) {
    bool& state = which == L'u' ? run.underlined : which == L'o' ? run.overlined : run.struck;
    state = !state;
}

// Reads an MTEXT from its first character to its last.
class Contents {
  public:
    explicit Contents(std::wstring_view text) : rest_(text) {}

    std::vector<std::wstring> lines() {
        while (!rest_.empty() && lines_.size() < mostLines) {
            if (rest_.front() == L'\\' && rest_.size() > 1) {
                escape(rest_[1]);
            } else if (rest_.front() == L'{' || rest_.front() == L'}') {
                skip(1);
            } else if (rest_.front() == L'\n' || rest_.substr(0, 2) == L"^J") {
                skip(rest_.front() == L'^' ? 2 : 1);
                lines_.emplace_back();
            } else {
                letter();
            }
        }
        return std::move(lines_);
    }

  private:
    void skip(std::size_t count) { rest_.remove_prefix(std::min(count, rest_.size())); }
    void put(wchar_t character) { lines_.back() += character; }

    void letter() {
        const Code code = codeAt(rest_);
        if (code.length == 0) {
            put(rest_.front());
            skip(1);
        } else {
            if (code.character != 0) put(code.character);
            skip(code.length);
        }
    }

    void escape(wchar_t code) {
        switch (code) {
            case L'P':
            case L'N':
                lines_.emplace_back();
                return skip(2);
            case L'~':
                put(noBreak);
                return skip(2);
            case L'\\':
            case L'{':
            case L'}':
                put(code);
                return skip(2);
            case L'S':
                return fraction();
            case L'A':
            case L'C':
            case L'c':
            case L'F':
            case L'f':
            case L'H':
            case L'Q':
            case L'T':
            case L'W':
            case L'p':
                return skip(lengthOfValue());
            default:
                return skip(2);  // a switch without a value
        }
    }

    // The code with its value up to the semicolon; the code alone when there is none.
    std::size_t lengthOfValue() const {
        const std::size_t end = rest_.find(L';');
        return end == std::wstring_view::npos ? 2 : end + 1;
    }

    void fraction() {
        const std::size_t length = lengthOfValue();
        const std::wstring_view value =
            length > 2 ? rest_.substr(2, length - 3) : std::wstring_view();
        std::wstring parts[2];
        std::size_t part = 0;
        for (std::size_t i = 0; i < value.size(); ++i) {
            const wchar_t character = value[i];
            if (character == L'\\' && i + 1 < value.size()) {
                parts[part] += value[++i];
            } else if (part == 0 && (character == L'/' || character == L'#' || character == L'^')) {
                part = 1;
            } else {
                parts[part] += character;
            }
        }
        lines_.back() += parts[0];
        if (!parts[0].empty() && !parts[1].empty()) put(L'/');
        lines_.back() += parts[1];
        skip(length);
    }

    std::wstring_view rest_;
    std::vector<std::wstring> lines_{std::wstring()};
};

// Appends `line` in pieces that are no wider than `width`, words that are wider on their own
// excepted.
void addBroken(std::vector<std::wstring>& lines, const std::wstring& line, double width) {
    std::wstring current;
    std::size_t begin = 0;
    while (begin < line.size()) {
        const std::size_t blank = line.find(L' ', begin);
        const std::size_t end = blank == std::wstring::npos ? line.size() : blank;
        const std::wstring word = line.substr(begin, end - begin);
        if (!current.empty() && widthOf(current) + widthOf(L" ") + widthOf(word) > width) {
            lines.push_back(std::move(current));
            current = word;
        } else {
            current += (begin == 0 ? L"" : L" ") + word;
        }
        begin = end + 1;
    }
    lines.push_back(std::move(current));
}

}  // namespace

std::vector<Run> runsOf(std::wstring_view text) {
    const std::wstring kept = cut(text);
    std::vector<Run> runs{Run()};
    std::wstring_view rest = kept;
    while (!rest.empty()) {
        const Code code = codeAt(rest);
        if (code.toggle != 0) {
            Run next = runs.back();
            next.text.clear();
            toggle(next, code.toggle);
            if (runs.back().text.empty()) runs.pop_back();
            runs.push_back(std::move(next));
        } else if (code.length == 0) {
            runs.back().text += rest.front();
        } else if (code.character != 0) {
            runs.back().text += code.character;
        }
        rest.remove_prefix(std::max<std::size_t>(code.length, 1));
    }
    if (runs.back().text.empty()) runs.pop_back();
    return runs;
}

std::wstring lettersOf(const std::vector<Run>& runs) {
    std::wstring letters;
    for (const Run& run : runs) letters += run.text;
    return letters;
}

std::vector<std::wstring> linesOf(std::wstring_view contents, double width) {
    const std::wstring kept = cut(contents);
    std::vector<std::wstring> paragraphs = Contents(kept).lines();
    if (!(width > 0.0)) return paragraphs;
    std::vector<std::wstring> lines;
    for (const std::wstring& paragraph : paragraphs) addBroken(lines, paragraph, width);
    if (lines.size() > mostLines) lines.resize(mostLines);
    return lines;
}

}  // namespace host::picture
