// What a terminal shows of the bytes that a program writes to it: enough of a VT100 for programs
// that edit one line. Lines that scroll out are kept.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace console_test {

class Screen {
  public:
    // What becomes of lines that were broken at the width when it changes: most terminals break
    // them anew, some leave them as they are.
    enum class OnResize { breakAnew, leave };
    explicit Screen(std::size_t width, OnResize onResize = OnResize::breakAnew)
        : width_(width), onResize_(onResize) {}

    // Takes bytes in any portions. Understood are UTF-8, "\r", "\n", "\b", BEL, and the sequences
    // CSI n A, B, C, D, G, J, K, P, @ and h, l, m; anything else is kept in `strange`.
    void write(std::string_view bytes);
    void resize(std::size_t width);

    // The lines without the blanks at their ends, as UTF-8; the last is the one with the cursor, or
    // one below it.
    std::vector<std::string> lines() const;
    // The line with the cursor, up to the cursor and behind it.
    std::string beforeCursor() const;
    std::string behindCursor() const;
    std::size_t row() const { return row_; }

    const std::string& strange() const { return strange_; }

  private:
    struct Row {
        std::u32string text;
        bool goesOn = false;  // in the next row: it was broken at the width
    };

    void put(char32_t c);
    void control(char32_t c);
    void sequence(char kind, std::size_t count);
    Row& atCursor();
    void eraseBelow();

    std::size_t width_;
    OnResize onResize_;
    std::vector<Row> rows_{1};
    std::size_t row_ = 0;
    std::size_t column_ = 0;
    std::string pending_;  // an unfinished character or sequence
    std::string strange_;
};

}  // namespace console_test
