#include "host/console/Table.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "host/dxf/Utf8.h"

namespace host::console {

namespace {

// How many characters a UTF-8 text has.
std::size_t width(std::string_view text) {
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
        return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;
    }));
}

}  // namespace

std::string tame(std::string_view text) {
    std::string tamed;
    while (!text.empty()) {
        const std::size_t length = dxf::utf8::sequenceLength(text);
        char32_t c = length == 0 ? dxf::utf8::kReplacement : dxf::utf8::decodeOne(text, length);
        if (c < 0x20 || (c >= 0x7F && c < 0xA0)) c = ' ';
        dxf::utf8::append(tamed, c);
        text.remove_prefix(length == 0 ? 1 : length);
    }
    return tamed;
}

Table::Table(Row heads, std::vector<Side> sides) : sides_(std::move(sides)) {
    add(std::move(heads));
}

std::string Table::text() const {
    std::vector<std::size_t> widths(sides_.size());
    for (const Row& row : rows_)
        for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], width(row[i]));
    std::string all;
    for (const Row& row : rows_) {
        std::string line = " ";
        for (std::size_t i = 0; i < row.size(); ++i) {
            const std::string blanks(widths[i] - width(row[i]), ' ');
            line += " " + (sides_[i] == Side::left ? row[i] + blanks : blanks + row[i]) + " ";
        }
        all += line.substr(0, line.find_last_not_of(' ') + 1) + "\n";
    }
    return all;
}

}  // namespace host::console
