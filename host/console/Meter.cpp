#include "host/console/Meter.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <utility>

#include "host/console/Printer.h"

namespace host::console {

namespace {

constexpr std::chrono::milliseconds patience(250);

}  // namespace

StatusLine::StatusLine() : terminal_(errorIsTerminal()) {}

void StatusLine::show(const std::string& label, double fraction) {
    if (!terminal_) return;
    if (!running_) start_ = Clock::now();
    running_ = true;
    if (Clock::now() - start_ < patience) return;
    const int percent = static_cast<int>(std::clamp(fraction, 0.0, 1.0) * 100);
    std::string text = label + ' ' + std::to_string(percent) + " %";
    if (text == shown_) return;
    const std::size_t left = shown_.size() - std::min(shown_.size(), text.size());
    std::fprintf(stderr, "\r%s%*s", text.c_str(), static_cast<int>(left), "");
    std::fflush(stderr);
    shown_ = std::move(text);
}

void StatusLine::clear() {
    running_ = false;
    if (shown_.empty()) return;
    std::fprintf(stderr, "\r%*s\r", static_cast<int>(shown_.size()), "");
    std::fflush(stderr);
    shown_.clear();
}

dxf::Progress progressMeter(std::string label) {
    if (!errorIsTerminal()) return {};
    return [label = std::move(label), line = std::make_shared<StatusLine>()](double fraction) {
        fraction < 1 ? line->show(label, fraction) : line->clear();
    };
}

}  // namespace host::console
