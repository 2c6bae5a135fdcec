#include "host/console/Csv.h"

#include <charconv>
#include <cmath>

#include "host/dxf/Utf8.h"

namespace host::console {

namespace {

std::string valid(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const std::size_t length = dxf::utf8::sequenceLength(text);
        if (length == 0)
            dxf::utf8::append(result, dxf::utf8::kReplacement);
        else
            result += text.substr(0, length);
        text.remove_prefix(length == 0 ? 1 : length);
    }
    return result;
}

std::string quoted(std::string_view text) {
    std::string result = "\"";
    for (const char c : text) {
        if (c == '"') result += '"';
        result += c;
    }
    return result + '"';
}

}  // namespace

void CsvWriter::text(std::string_view utf8) {
    if (rowBegun_) csv_ += ',';
    rowBegun_ = true;
    const std::string cell = valid(utf8);
    csv_ += cell.find_first_of(",\"\r\n") == std::string::npos ? cell : quoted(cell);
}

void CsvWriter::number(double value) {
    if (!std::isfinite(value)) return empty();
    char digits[32];
    const auto result = std::to_chars(digits, digits + sizeof digits, value);
    text({digits, static_cast<std::size_t>(result.ptr - digits)});
}

void CsvWriter::number(std::size_t value) {
    text(std::to_string(value));
}

void CsvWriter::endRow() {
    csv_ += '\n';
    rowBegun_ = false;
}

}  // namespace host::console
