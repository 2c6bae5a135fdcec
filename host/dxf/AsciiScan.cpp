// Reads the groups of an ASCII drawing: two lines each, a code and a value.
#include <limits>

#include "host/dxf/IndexBuilder.h"
#include "host/dxf/Lines.h"

namespace host::dxf {
namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

class AsciiScanner {
  public:
    explicit AsciiScanner(IndexBuilder& builder)
        : builder_(builder),
          begin_(builder.bytes().data()),
          end_(begin_ + builder.bytes().size()) {}

    void run() {
        const char* at = begin_;
        if (builder_.bytes().substr(0, 3) == "\xEF\xBB\xBF") {
            builder_.find(builder_.codePosition(0), "the file begins with a byte order mark");
            builder_.index().groupsBegin = 3;
            at += 3;
        }
        loneReturns_ = usesLoneReturns(at);
        builder_.index().form.loneReturns = loneReturns_;
        while (at < end_ && !builder_.ended()) {
            if (endsInBlanks(at)) break;
            at = takeGroup(at);
            builder_.reportProgress(offset(at));
        }
        builder_.finish(offset(at));
    }

  private:
    std::uint64_t offset(const char* at) const { return static_cast<std::uint64_t>(at - begin_); }

    static std::string_view span(const char* from, const char* to) {
        return {from, static_cast<std::size_t>(to - from)};
    }

    // A file whose first line ends in a return alone ends other lines so too. In other files such a
    // return is part of a value.
    bool usesLoneReturns(const char* at) const {
        while (at < end_ && *at != '\r' && *at != '\n') ++at;
        if (at == end_ || *at == '\n') return false;
        while (at < end_ && *at == '\r') ++at;
        return at == end_ || *at != '\n';
    }

    // Whether nothing but blanks follows: a file without EOF may end in empty lines.
    bool endsInBlanks(const char* at) const {
        if (isDigit(*at) || (*at == ' ' && at + 2 < end_ && (isDigit(at[1]) || isDigit(at[2])))) {
            return false;
        }
        return !builder_.index().records.empty() && isBlank(span(at, end_));
    }

    const char* takeGroup(const char* at) {
        const char* value = nullptr;
        const int code = takeCode(at, value);
        if (value == end_) {
            Position where = builder_.valuePosition();
            builder_.fail(where, "the value of group code " + std::to_string(code),
                          "the end of the file");
        }
        if (builder_.groupCount() == comments_) checkStart(code, at);
        const LineSpan line = checkedValue(code, value);
        builder_.group(code, span(value, line.end), offset(at));
        return line.next;
    }

    // The code at `at`; `value` becomes the beginning of the next line.
    int takeCode(const char* at, const char*& value) {
        const int code = loneReturns_ ? kUnusualCode : plainCode(at, value);
        if (code != kUnusualCode) return code;
        return takeUnusualCode(at, value);
    }

    int takeUnusualCode(const char* at, const char*& value) {
        const LineSpan line = lineAt(at, end_, loneReturns_);
        const std::string_view text = span(at, line.end);
        const std::optional<std::int64_t> code = parseInteger(text);
        if (!code || *code < std::numeric_limits<std::int16_t>::min() ||
            *code > std::numeric_limits<std::int16_t>::max()) {
            const bool first = builder_.groupCount() == 0;
            builder_.fail(builder_.codePosition(offset(at)),
                          first ? "a DXF drawing, which begins with a group code (a whole number)"
                                : "a group code (a whole number of at most 16 bits)",
                          trimmed(text).empty() ? "an empty line" : shown(text));
        }
        value = line.next;
        return static_cast<int>(*code);
    }

    // Before the first record nothing but comments may stand: other text that happens to begin with
    // a number is no drawing.
    void checkStart(int code, const char* at) {
        if (code == 999) {
            ++comments_;
        } else if (code != 0) {
            builder_.fail(builder_.codePosition(offset(at)),
                          "group code 0, with which the first record begins (0 SECTION)",
                          "group code " + std::to_string(code));
        }
    }

    LineSpan checkedValue(int code, const char* value) {
        const ValueType type = valueType(code);
        switch (type) {
            case ValueType::real:
                return checkedReal(code, value);
            case ValueType::int16:
            case ValueType::int32:
            case ValueType::int64:
            case ValueType::boolean:
                return checkedInteger(code, value);
            default:
                break;
        }
        const LineSpan line = lineAt(value, end_, loneReturns_);
        const std::string_view bytes = span(value, line.end);
        if (type == ValueType::handle) {
            checkHandle(code, bytes);
        } else if (type == ValueType::chunk) {
            checkLength();
        } else if (hasHighBytes(bytes)) {
            builder_.checkEncoding(bytes);
        }
        announced_ = nullptr;
        return line;
    }

    // Plain decimals are recognised in passing, on the way to the line's end.
    LineSpan checkedReal(int code, const char* value) {
        announced_ = nullptr;
        const char* digits = skipSign(value);
        const char* p = skipDigits(digits);
        std::ptrdiff_t count = p - digits;
        if (*p == '.') {
            const char* decimals = p + 1;
            p = skipDigits(decimals);
            count += p - decimals;
        }
        if (const char* next = plainEnd(p); next != nullptr && count > 0 && count < 300) {
            return {p, next};
        }
        const LineSpan line = lineAt(value, end_, loneReturns_);
        if (!parseReal(span(value, line.end))) {
            builder_.oddValue(code, span(value, line.end), "a number");
        }
        return line;
    }

    LineSpan checkedInteger(int code, const char* value) {
        announced_ = value;
        const char* digits = skipSign(value);
        const char* p = skipDigits(digits);
        const std::ptrdiff_t count = p - digits;
        if (const char* next = plainEnd(p); next != nullptr && count > 0 && count < 18) {
            announcedEnd_ = p;
            return {p, next};
        }
        const LineSpan line = lineAt(value, end_, loneReturns_);
        announcedEnd_ = line.end;
        if (!parseInteger(span(value, line.end))) {
            builder_.oddValue(code, span(value, line.end), "a whole number");
        }
        return line;
    }

    static const char* skipSign(const char* p) {
        while (*p == ' ') ++p;
        return p + (*p == '-' ? 1 : 0);
    }

    // The beginning of the next line when a line feed, or a return and a line feed, stand at `p`.
    static const char* plainEnd(const char* p) {
        p += *p == '\r' ? 1 : 0;
        return *p == '\n' ? p + 1 : nullptr;
    }

    void checkHandle(int code, std::string_view value) {
        // The record's own handle is looked at when it is taken; 5 of a DIMSTYLE is a name.
        if (code != 5 && code != 105 && !parseHandle(value)) {
            builder_.oddValue(code, value, "a handle");
        }
    }

    void checkLength() {
        if (announced_ == nullptr) return;
        if (const auto length = parseInteger(span(announced_, announcedEnd_))) {
            builder_.checkAnnouncedLength(*length);
        }
    }

    IndexBuilder& builder_;
    const char* begin_;
    const char* end_;
    bool loneReturns_ = false;
    std::uint64_t comments_ = 0;       // groups 999 at the head of the file
    const char* announced_ = nullptr;  // the value before, when it was a whole number
    const char* announcedEnd_ = nullptr;
};

}  // namespace

void scanAscii(IndexBuilder& builder) {
    AsciiScanner(builder).run();
}

}  // namespace host::dxf
