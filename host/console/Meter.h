// Progress of long work: a line that is drawn over itself, on a terminal only.
#pragma once

#include <chrono>
#include <string>
#include <string_view>

#include "host/dxf/Document.h"

namespace host::console {

// A line on standard error with a label and a percentage; nothing when that is no terminal. Work
// that is over within a quarter of a second shows nothing. A label that the window is too narrow
// for is shown by its beginning and its end.
class StatusLine {
  public:
    StatusLine();
    ~StatusLine() { clear(); }
    StatusLine(const StatusLine&) = delete;
    StatusLine& operator=(const StatusLine&) = delete;

    // Shows how far the work is, from 0 to 1; what lies outside is taken for the nearer of the two.
    // The quarter of a second runs from the first call behind `clear`.
    void show(const std::string& label, double fraction);
    // Takes the line away: the work is done, or something else is to be shown in its place.
    void clear();

  private:
    using Clock = std::chrono::steady_clock;

    const bool terminal_;
    bool running_ = false;
    Clock::time_point start_;
    std::size_t columns_ = 0;  // that are shown
    std::string shown_;
};

// A text within so many columns, its middle left out when it is wider; letters of East Asia take
// two. As UTF-8.
std::string fitted(const std::string& text, std::size_t columns);
std::size_t columnsOf(std::wstring_view text);

// A progress function that shows `label` while the work goes on, and takes the line away when it is
// done. Empty when standard error is no terminal.
dxf::Progress progressMeter(std::string label);

}  // namespace host::console
