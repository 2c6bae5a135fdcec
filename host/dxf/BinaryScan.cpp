// Reads the groups of a binary drawing: a code of one or two bytes, then a value whose size the
// code decides.
#include <cmath>

#include "host/dxf/IndexBuilder.h"
#include "host/dxf/Lines.h"

namespace host::dxf {
namespace {

class BinaryScanner {
  public:
    explicit BinaryScanner(IndexBuilder& builder)
        : builder_(builder),
          begin_(builder.bytes().data()),
          end_(begin_ + builder.bytes().size()) {}

    void run() {
        builder_.index().form.binary = true;
        checkSentinel();
        builder_.index().groupsBegin = kSentinelSize;
        const char* at = begin_ + kSentinelSize;
        wideCodes_ = usesWideCodes(at);
        builder_.index().form.wideCodes = wideCodes_;
        while (at < end_ && !builder_.ended()) {
            at = takeGroup(at);
            builder_.reportProgress(offset(at));
        }
        builder_.finish(offset(at));
    }

  private:
    std::uint64_t offset(const char* at) const { return static_cast<std::uint64_t>(at - begin_); }
    std::size_t left(const char* at) const { return static_cast<std::size_t>(end_ - at); }
    Position place(const char* at) const { return {Position::Unit::byte, offset(at)}; }

    void checkSentinel() const {
        const std::string_view sentinel(kSentinel, kSentinelSize);
        const std::string_view head = builder_.bytes().substr(0, kSentinelSize);
        if (head == sentinel) return;
        std::size_t same = 0;
        while (same < head.size() && head[same] == sentinel[same]) ++same;
        builder_.fail(place(begin_ + same),
                      "a return, a line feed, 1A and NUL after 'AutoCAD Binary DXF'",
                      same == head.size() ? "the end of the file" : shown(head.substr(18)));
    }

    // The first group is 0 SECTION (or a comment): 00 'S' has codes of one byte, 00 00 'S' of two.
    bool usesWideCodes(const char* at) const {
        if (left(at) < 2) builder_.fail(place(at), "a group", "the end of the file");
        const auto first = static_cast<unsigned char>(at[0]);
        const auto second = static_cast<unsigned char>(at[1]);
        return (first == 0 && second == 0) || (first == 0xE7 && second == 0x03);
    }

    const char* takeGroup(const char* at) {
        const char* value = at;
        const int code = takeCode(at, value);
        builder_.setValueOffset(offset(value));
        if (builder_.groupCount() == comments_) checkStart(code, at);
        const ValueType type = valueType(code);
        if (type == ValueType::chunk) return takeChunk(code, at, value);
        if (const std::size_t size = fixedSize(type); size > 0) {
            return takeNumber(code, type, size, at, value);
        }
        return takeText(code, type, at, value);
    }

    static std::string count(std::size_t bytes) {
        return std::to_string(bytes) + (bytes == 1 ? " byte" : " bytes");
    }

    void need(const char* at, std::size_t bytes, const std::string& what) const {
        if (left(at) >= bytes) return;
        builder_.fail(place(at), what + " of " + count(bytes),
                      "the end of the file after " + count(left(at)));
    }

    int takeCode(const char* at, const char*& value) const {
        int code;
        if (wideCodes_) {
            need(at, 2, "a group code");
            code = loadNumber<std::int16_t>(at);
            value = at + 2;
        } else {
            code = static_cast<unsigned char>(*at);
            value = at + 1;
            if (code == kWideCodeFollows) {
                need(value, 2, "a group code");
                code = loadNumber<std::int16_t>(value);
                value += 2;
            }
        }
        if (!isKnownCode(code)) {
            builder_.fail(place(at), "a group code of the format",
                          std::to_string(wideCodes_ ? static_cast<std::uint16_t>(code) : code) +
                              ", whose value could be of any length");
        }
        return code;
    }

    void checkStart(int code, const char* at) {
        if (code == 999) {
            ++comments_;
        } else if (code != 0) {
            builder_.fail(place(at), "group code 0, with which the first record begins (0 SECTION)",
                          "group code " + std::to_string(code));
        }
    }

    const char* takeChunk(int code, const char* at, const char* value) {
        if (value == end_) {
            builder_.fail(place(value), "the length of a chunk", "the end of the file");
        }
        const auto length = static_cast<unsigned char>(*value);
        ++value;
        need(value, length, "a chunk");
        if (announced_) builder_.checkAnnouncedLength(*announced_);
        announced_.reset();
        builder_.group(code, {value, length}, offset(at));
        return value + length;
    }

    const char* takeNumber(int code, ValueType type, std::size_t size, const char* at,
                           const char* value) {
        need(value, size, "a value");
        const Group group(at, value, size, value + size, code, true);
        if (type == ValueType::real && !std::isfinite(loadNumber<double>(value))) {
            builder_.find(builder_.valuePosition(), "group " + std::to_string(code) +
                                                        " holds a value that is no finite number");
        }
        announced_ = group.integer();
        builder_.group(code, group.bytes(), offset(at));
        return value + size;
    }

    const char* takeText(int code, ValueType type, const char* at, const char* value) {
        const auto* nul = static_cast<const char*>(std::memchr(value, '\0', left(value)));
        if (nul == nullptr) {
            builder_.fail(place(value), "a text that ends in a NUL", "the end of the file");
        }
        const std::string_view text(value, static_cast<std::size_t>(nul - value));
        if (type == ValueType::handle) {
            if (code != 5 && code != 105 && !parseHandle(text)) {
                builder_.oddValue(code, text, "a handle");
            }
        } else if (hasHighBytes(text)) {
            builder_.checkEncoding(text);
        }
        announced_.reset();
        builder_.group(code, text, offset(at));
        return nul + 1;
    }

    IndexBuilder& builder_;
    const char* begin_;
    const char* end_;
    bool wideCodes_ = false;
    std::uint64_t comments_ = 0;
    std::optional<std::int64_t> announced_;  // the value before, when it was a whole number
};

}  // namespace

void scanBinary(IndexBuilder& builder) {
    BinaryScanner(builder).run();
}

}  // namespace host::dxf
