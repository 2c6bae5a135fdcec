#include "host/console/Meter.h"

#include <chrono>
#include <cstdio>
#include <utility>

#include "host/console/Printer.h"

namespace host::console {

namespace {

using Clock = std::chrono::steady_clock;
constexpr std::chrono::milliseconds patience(250);

class Meter {
  public:
    explicit Meter(std::string label) : label_(std::move(label)) {}

    void show(double fraction) {
        const int percent = static_cast<int>(fraction * 100);
        if (fraction >= 1) return clear();
        if (percent == shown_ || Clock::now() - start_ < patience) return;
        shown_ = percent;
        std::fprintf(stderr, "\r%s %d %%", label_.c_str(), percent);
        std::fflush(stderr);
    }

  private:
    void clear() {
        if (shown_ < 0) return;
        std::fprintf(stderr, "\r%*s\r", static_cast<int>(label_.size()) + 6, "");
        std::fflush(stderr);
        shown_ = -1;
    }

    const std::string label_;
    const Clock::time_point start_ = Clock::now();
    int shown_ = -1;
};

}  // namespace

dxf::Progress progressMeter(std::string label) {
    if (!errorIsTerminal()) return {};
    return [meter = std::make_shared<Meter>(std::move(label))](double fraction) {
        meter->show(fraction);
    };
}

}  // namespace host::console
