#include "host/dxf/Errors.h"

#include <utility>

#include "host/dxf/Utf8.h"

namespace host::dxf {
namespace {

std::string readSentence(const std::string& file, const std::optional<Position>& where,
                         const std::string& expected, const std::string& found) {
    if (!where) return file + ": expected " + expected + ", found " + found;
    return file + ", " + where->text() + ": expected " + expected + ", found " + found;
}

void appendEscaped(std::string& text, unsigned char byte) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    text += "\\x";
    text += kDigits[byte >> 4];
    text += kDigits[byte & 15];
}

}  // namespace

std::string Position::text() const {
    return (unit == Unit::line ? "line " : "byte ") + std::to_string(number);
}

ReadError::ReadError(std::string file, std::optional<Position> where, std::string expected,
                     std::string found)
    : std::runtime_error(readSentence(file, where, expected, found)),
      file_(std::move(file)),
      where_(where),
      expected_(std::move(expected)),
      found_(std::move(found)) {}

ReadError::ReadError(std::string file, const std::string& refusal)
    : std::runtime_error(file + " can't be " + refusal), file_(std::move(file)) {}

WriteError::WriteError(std::string file, std::string reason)
    : std::runtime_error(file + " was not written: " + reason),
      file_(std::move(file)),
      reason_(std::move(reason)) {}

std::string shown(std::string_view bytes) {
    constexpr std::size_t kLongest = 40;
    std::string text = "'";
    std::size_t at = 0;
    while (at < bytes.size() && at < kLongest) {
        const std::size_t length = utf8::sequenceLength(bytes.substr(at));
        const auto byte = static_cast<unsigned char>(bytes[at]);
        if (length == 0 || byte < 0x20 || byte == 0x7f) {
            appendEscaped(text, byte);
            ++at;
        } else {
            text.append(bytes.substr(at, length));
            at += length;
        }
    }
    return text + (at < bytes.size() ? "'..." : "'");
}

}  // namespace host::dxf
