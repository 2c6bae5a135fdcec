#include "host/editor/Script.h"

#include <algorithm>

#include "host/dxf/CodePage.h"
#include "host/dxf/Utf8.h"
#include "host/editor/Words.h"

namespace host::editor {

namespace {

constexpr wchar_t comment = L';';

bool isBlank(wchar_t c) {
    return c == L' ' || c == L'\t';
}

// Follows an expression character by character and knows when it balances.
class ExpressionScan {
  public:
    // Takes a line from `position` on; gives the position behind the closing parenthesis, or npos
    // when the line does not close the expression.
    std::size_t take(std::wstring_view line, std::size_t position) {
        for (std::size_t i = position; i < line.size(); ++i) {
            if (blockComment_) {
                if (line[i] == L'|' && at(line, i + 1) == comment) {
                    blockComment_ = false;
                    ++i;
                }
            } else if (quoted_) {
                if (line[i] == L'\\')
                    ++i;
                else if (line[i] == L'"')
                    quoted_ = false;
            } else if (line[i] == L'"') {
                quoted_ = true;
            } else if (line[i] == comment) {
                if (at(line, i + 1) != L'|') return std::wstring_view::npos;
                blockComment_ = true;
                ++i;
            } else if (line[i] == L'(') {
                ++depth_;
            } else if (line[i] == L')' && --depth_ == 0) {
                return i + 1;
            }
        }
        return std::wstring_view::npos;
    }

  private:
    static wchar_t at(std::wstring_view line, std::size_t i) {
        return i < line.size() ? line[i] : L'\0';
    }

    int depth_ = 0;
    bool quoted_ = false;
    bool blockComment_ = false;
};

std::wstring fromUtf16(std::string_view bytes, bool bigEndian) {
    const auto unit = [&](std::size_t i) -> char32_t {
        if (i + 1 >= bytes.size()) return 0;
        const auto first = static_cast<unsigned char>(bytes[i]);
        const auto second = static_cast<unsigned char>(bytes[i + 1]);
        return bigEndian ? first * 256u + second : second * 256u + first;
    };
    std::wstring text;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        char32_t code = unit(i);
        const char32_t low = unit(i + 2);
        if (code >= 0xD800 && code < 0xDC00 && low >= 0xDC00 && low < 0xE000) {
            code = 0x10000 + ((code - 0xD800) << 10) + (low - 0xDC00);
            i += 2;
        }
        dxf::utf8::append(text, code);
    }
    return text;
}

std::wstring fromWindows1252(std::string_view bytes) {
    const char16_t* upper = dxf::findCodePage("ANSI_1252")->upper;
    std::wstring text;
    for (const char byte : bytes) {
        const auto code = static_cast<unsigned char>(byte);
        text += static_cast<wchar_t>(code < 0x80 ? code : upper[code - 0x80]);
    }
    return text;
}

bool startsWith(std::string_view bytes, std::string_view mark) {
    return bytes.substr(0, mark.size()) == mark;
}

}  // namespace

Reply ReplyReader::next(const Request& request) {
    while (!haveLine_) {
        Line line = source_(&request, false);
        if (line.kind == Line::Kind::cancel) return {Reply::Kind::cancel, {}, {}, 0, 0};
        if (line.kind == Line::Kind::end) return {};
        const bool isComment = !line.text.empty() && line.text.front() == comment;
        takeLine(std::move(line));
        position_ = 0;
        haveLine_ = !isComment;
    }
    replyLine_ = lineNumber_;
    const std::size_t column = position_ + 1;
    Reply reply = request.kind == Request::Kind::text                            ? takeText()
                  : position_ < lineText_.size() && lineText_[position_] == L'(' ? takeExpression()
                                                                                 : takeWord();
    reply.line = replyLine_;
    reply.column = column;
    reply.rest = rest();
    return reply;
}

std::wstring_view ReplyReader::rest() const {
    return haveLine_ ? std::wstring_view(lineText_).substr(position_) : std::wstring_view();
}

void ReplyReader::takeLine(Line line) {
    ++lineNumber_;
    lineText_ = std::move(line.text);
    unended_ = line.unended;
}

// Leaves `position` and the one blank or line end there behind.
void ReplyReader::endReply(std::size_t position) {
    const bool blankIsLast = unended_ && position + 1 == lineText_.size();
    if (position >= lineText_.size() || (blankIsLast && isBlank(lineText_[position]))) {
        haveLine_ = false;
    } else {
        position_ = isBlank(lineText_[position]) ? position + 1 : position;
    }
}

Reply ReplyReader::takeWord() {
    std::wstring word;
    std::size_t i = position_;
    const bool quoted = i < lineText_.size() && lineText_[i] == L'"';
    if (quoted) {
        for (++i; i < lineText_.size() && lineText_[i] != L'"'; ++i) word += lineText_[i];
        if (i < lineText_.size()) ++i;
    }
    for (; i < lineText_.size() && !isBlank(lineText_[i]); ++i) word += lineText_[i];
    endReply(i);
    return {Reply::Kind::text, std::move(word), {}, 0, 0, {}, quoted};
}

Reply ReplyReader::takeText() {
    std::wstring text = lineText_.substr(position_);
    haveLine_ = false;
    return {Reply::Kind::text, std::move(text), {}, 0, 0};
}

Reply ReplyReader::takeExpression() {
    ExpressionScan scan;
    std::wstring expression;
    std::size_t from = position_;
    while (true) {
        const std::size_t end = scan.take(lineText_, from);
        if (end != std::wstring::npos) {
            const std::size_t behind =
                std::min(lineText_.find_first_not_of(L')', end), lineText_.size());
            expression.append(lineText_, from, behind - from);
            endReply(behind);
            break;
        }
        expression.append(lineText_, from, std::wstring::npos);
        Line line = source_(nullptr, true);
        if (line.kind != Line::Kind::text) {
            haveLine_ = false;
            if (line.kind == Line::Kind::cancel) return {Reply::Kind::cancel, {}, {}, 0, 0};
            break;
        }
        expression += L'\n';
        takeLine(std::move(line));
        from = 0;
    }
    return {Reply::Kind::lisp, std::move(expression), {}, 0, 0};
}

ScriptInput::ScriptInput(std::wstring text, std::wstring name, Of of)
    : text_(std::move(text)),
      name_(std::move(name)),
      of_(of),
      reader_([this](const Request*, bool) { return nextLine(); }) {}

ReplyReader::Line ScriptInput::nextLine() {
    if (position_ >= text_.size()) return {ReplyReader::Line::Kind::end, {}};
    std::size_t end = text_.find(L'\n', position_);
    const bool unended = end == std::wstring::npos;
    if (unended) end = text_.size();
    const std::size_t next = unended ? end : end + 1;
    if (end > position_ && text_[end - 1] == L'\r') --end;
    ReplyReader::Line line{ReplyReader::Line::Kind::text, text_.substr(position_, end - position_),
                           unended};
    position_ = next;
    return line;
}

Reply ScriptInput::next(const Request& request) {
    Reply reply = reader_.next(request);
    if (reply.kind == Reply::Kind::text || reply.kind == Reply::Kind::lisp) {
        reply.where = name_ + L", line " + std::to_wstring(reply.line);
    }
    return reply;
}

void ScriptInput::stop() {
    position_ = text_.size();
    reader_.drop();
}

bool ScriptInput::pending() const {
    return reader_.pending() || position_ < text_.size();
}

// Comments are no replies, so they count as empty.
bool ScriptInput::onlyEmptyLinesFollow() const {
    if (!trimmed(reader_.rest()).empty()) return false;
    for (std::size_t at = position_; at < text_.size();) {
        const std::size_t end = std::min(text_.find(L'\n', at), text_.size());
        const bool isEmpty = text_.find_first_not_of(L" \t\r", at) >= end;
        if (!isEmpty && text_[at] != comment) return false;
        at = end + 1;
    }
    return true;
}

void ScriptInput::commandComes() {
    if (of_ == Of::file && onlyEmptyLinesFollow()) stop();
}

std::wstring decodeScript(std::string_view bytes) {
    if (startsWith(bytes, "\xEF\xBB\xBF")) return fromUtf8(bytes.substr(3));
    if (startsWith(bytes, "\xFF\xFE")) return fromUtf16(bytes.substr(2), false);
    if (startsWith(bytes, "\xFE\xFF")) return fromUtf16(bytes.substr(2), true);
    return dxf::utf8::isValid(bytes) ? fromUtf8(bytes) : fromWindows1252(bytes);
}

}  // namespace host::editor
