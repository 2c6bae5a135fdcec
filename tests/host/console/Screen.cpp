#include "tests/host/console/Screen.h"

#include <algorithm>
#include <utility>

namespace console_test {

namespace {

std::string utf8(std::u32string_view text) {
    std::string bytes;
    for (const char32_t c : text) {
        const auto add = [&](char32_t part) { bytes += static_cast<char>(part); };
        if (c < 0x80) {
            add(c);
        } else if (c < 0x800) {
            add(0xC0 | c >> 6);
            add(0x80 | (c & 0x3F));
        } else {
            add(0xE0 | c >> 12);
            add(0x80 | (c >> 6 & 0x3F));
            add(0x80 | (c & 0x3F));
        }
    }
    return bytes;
}

std::u32string withoutBlanksAtTheEnd(std::u32string_view text) {
    const std::size_t last = text.find_last_not_of(U' ');
    return std::u32string(text.substr(0, last == std::u32string_view::npos ? 0 : last + 1));
}

}  // namespace

Screen::Row& Screen::atCursor() {
    if (row_ >= rows_.size()) rows_.resize(row_ + 1);
    return rows_[row_];
}

void Screen::put(char32_t c) {
    if (column_ >= width_) {
        atCursor().goesOn = true;
        ++row_;
        column_ = 0;
    }
    std::u32string& at = atCursor().text;
    if (at.size() <= column_) at.resize(column_ + 1, U' ');
    at[column_++] = c;
}

void Screen::control(char32_t c) {
    if (c == U'\r') column_ = 0;
    if (c == U'\n') ++row_;
    if (c == U'\b' && column_ > 0) --column_;
    atCursor();
}

void Screen::eraseBelow() {
    Row& at = atCursor();
    at.text.resize(std::min(at.text.size(), column_));
    at.goesOn = false;
    rows_.resize(row_ + 1);
}

void Screen::resize(std::size_t width) {
    const std::size_t before = std::exchange(width_, width);
    if (onResize_ == OnResize::leave) return;
    const std::vector<Row> old = std::exchange(rows_, {});
    const std::size_t cursorRow = std::exchange(row_, 0);
    const std::size_t cursorColumn = std::exchange(column_, 0);
    for (std::size_t i = 0; i < old.size(); ++i) {
        std::u32string whole;
        std::size_t cursor = std::u32string::npos;
        for (;; ++i) {
            if (i == cursorRow) cursor = whole.size() + cursorColumn;
            whole += old[i].text;
            if (!old[i].goesOn || i + 1 == old.size()) break;
            whole.resize((whole.size() + before - 1) / before * before, U' ');
        }
        const std::size_t first = rows_.size();
        for (std::size_t at = 0; at < whole.size() || at == 0; at += width)
            rows_.push_back({whole.substr(at, width), at + width < whole.size()});
        if (cursor == std::u32string::npos) continue;
        row_ = first + cursor / width;
        column_ = cursor % width;
    }
    atCursor();
}

void Screen::sequence(char kind, std::size_t count) {
    const std::size_t steps = std::max<std::size_t>(1, count);
    std::u32string& at = atCursor().text;
    switch (kind) {
        case 'A':
            row_ -= std::min(row_, steps);
            break;
        case 'B':
            row_ += steps;
            break;
        case 'C':
            column_ = std::min(column_ + steps, width_ - 1);
            break;
        case 'D':
            column_ -= std::min(column_, steps);
            break;
        case 'G':
            column_ = steps - 1;
            break;
        case 'J':
            eraseBelow();
            break;
        case 'K':
            at.resize(std::min(at.size(), column_));
            atCursor().goesOn = false;
            break;
        case 'P':
            if (column_ < at.size()) at.erase(column_, steps);
            break;
        case '@':
            if (column_ < at.size()) at.insert(column_, steps, U' ');
            at.resize(std::min(at.size(), width_));
            break;
        case 'h':
        case 'l':
        case 'm':
            break;
        default:
            strange_ += std::string("CSI ") + kind + ' ';
            break;
    }
}

void Screen::write(std::string_view bytes) {
    for (const char byte : bytes) {
        pending_ += byte;
        const auto first = static_cast<unsigned char>(pending_[0]);
        if (first == 0x1B) {
            if (pending_.size() == 1 || (pending_.size() == 2 && byte == '[')) continue;
            if (pending_[1] != '[') {
                strange_ += "ESC " + std::string(1, pending_[1]) + ' ';
            } else if (byte < '@' || byte > '~') {
                continue;
            } else {
                const std::string digits = pending_.substr(2, pending_.size() - 3);
                const bool number =
                    !digits.empty() && digits.find_first_not_of("0123456789") == std::string::npos;
                sequence(byte, number ? std::stoul(digits) : 0);
            }
        } else if (first < 0x20) {
            control(first);
        } else {
            const std::size_t length = first >= 0xE0 ? 3 : first >= 0xC0 ? 2 : 1;
            if (pending_.size() < length) continue;
            char32_t c = length == 1 ? first : first & (length == 2 ? 0x1FU : 0x0FU);
            for (std::size_t i = 1; i < length; ++i)
                c = c << 6 | (static_cast<unsigned char>(pending_[i]) & 0x3FU);
            put(c);
        }
        pending_.clear();
    }
}

std::vector<std::string> Screen::lines() const {
    std::vector<std::string> all;
    for (const Row& row : rows_) all.push_back(utf8(withoutBlanksAtTheEnd(row.text)));
    return all;
}

std::string Screen::beforeCursor() const {
    std::u32string text = row_ < rows_.size() ? rows_[row_].text : std::u32string();
    text.resize(column_, U' ');
    return utf8(text);
}

std::string Screen::behindCursor() const {
    const std::u32string text = row_ < rows_.size() ? rows_[row_].text : std::u32string();
    return utf8(withoutBlanksAtTheEnd(text.substr(std::min(column_, text.size()))));
}

}  // namespace console_test
