// Writing CSV (RFC 4180), with plain line ends.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace host::console {

// Builds one table, cell by cell. Texts are UTF-8, in double quotes where they have to be; what is
// no UTF-8 in them becomes U+FFFD. Numbers are the shortest decimals that read back as the
// identical double, whatever the locale; one that is infinite or no number is an empty cell. The
// same calls give the same bytes everywhere.
class CsvWriter {
  public:
    void text(std::string_view utf8);
    void number(double value);
    void number(std::size_t value);
    void boolean(bool value) { text(value ? "true" : "false"); }
    void empty() { text({}); }
    void endRow();

    const std::string& take() const { return csv_; }

  private:
    std::string csv_;
    bool rowBegun_ = false;
};

}  // namespace host::console
