// Tables of text: columns as wide as their widest cell.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace host::console {

// A text from a drawing or the system on one line, and harmless for a terminal: what controls it
// becomes a blank, what is no UTF-8 U+FFFD.
std::string tame(std::string_view text);

// Cells are UTF-8; every character counts as one column wide.
class Table {
  public:
    using Row = std::vector<std::string>;
    enum class Side { left, right };

    // A column for each head, its cells at that side.
    Table(Row heads, std::vector<Side> sides);

    void add(Row row) { rows_.push_back(std::move(row)); }

    // Two blanks before each column, no blanks at line ends.
    std::string text() const;

  private:
    std::vector<Side> sides_;
    std::vector<Row> rows_;
};

}  // namespace host::console
