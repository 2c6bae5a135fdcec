// Progress of long work: a line that is drawn over itself, on a terminal only.
#pragma once

#include <chrono>
#include <string>

#include "host/dxf/Document.h"

namespace host::console {

// A line on standard error with a label and a percentage; nothing when that is no terminal. Work
// that is over within a quarter of a second shows nothing.
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
    std::string shown_;
};

// A progress function that shows `label` while the work goes on, and takes the line away when it is
// done. Empty when standard error is no terminal.
dxf::Progress progressMeter(std::string label);

}  // namespace host::console
