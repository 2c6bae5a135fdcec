#include "host/console/Meter.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <utility>

#include "host/console/Printer.h"
#include "host/editor/Words.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <sys/ioctl.h>
#include <unistd.h>
#endif

namespace host::console {

namespace {

constexpr std::chrono::milliseconds patience(250);
constexpr std::size_t percentage = 6;  // columns of " 100 %"

std::size_t windowWidth() {
    constexpr std::size_t usual = 80;
#ifdef _WIN32
    CONSOLE_SCREEN_BUFFER_INFO info;
    const bool known = GetConsoleScreenBufferInfo(GetStdHandle(STD_ERROR_HANDLE), &info) != 0;
    return known && info.dwSize.X > 0 ? static_cast<std::size_t>(info.dwSize.X) : usual;
#else
    winsize size{};
    const bool known = ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return known ? size.ws_col : usual;
#endif
}

// From Hangul on letters may be wide; one that is not leaves a column free.
std::size_t columnsOf(wchar_t c) {
    constexpr wchar_t firstWide = 0x1100;
    return c >= firstWide ? 2 : 1;
}

}  // namespace

StatusLine::StatusLine() : terminal_(errorIsTerminal()) {}

void StatusLine::show(const std::string& label, double fraction) {
    if (!terminal_) return;
    if (!running_) start_ = Clock::now();
    running_ = true;
    if (Clock::now() - start_ < patience) return;
    const int percent = static_cast<int>(std::clamp(fraction, 0.0, 1.0) * 100);
    // The last column stays free: a terminal may go on in the next line behind it.
    const std::size_t width = windowWidth();
    const std::size_t room = width > percentage + 1 ? width - percentage - 1 : 0;
    std::string text = fitted(visible(label), room) + ' ' + std::to_string(percent) + " %";
    if (text == shown_) return;
    const std::size_t columns = columnsOf(editor::fromUtf8(text));
    const std::size_t left = columns_ - std::min(columns_, columns);
    std::fprintf(stderr, "\r%s%*s", text.c_str(), static_cast<int>(left), "");
    std::fflush(stderr);
    shown_ = std::move(text);
    columns_ = columns;
}

void StatusLine::clear() {
    running_ = false;
    if (shown_.empty()) return;
    std::fprintf(stderr, "\r%*s\r", static_cast<int>(columns_), "");
    std::fflush(stderr);
    shown_.clear();
    columns_ = 0;
}

std::size_t columnsOf(std::wstring_view text) {
    std::size_t columns = 0;
    for (const wchar_t c : text) columns += columnsOf(c);
    return columns;
}

std::string fitted(const std::string& text, std::size_t columns) {
    constexpr std::size_t dots = 3;
    std::wstring wide = editor::fromUtf8(text);
    if (columnsOf(wide) <= columns) return text;
    if (columns <= dots) return std::string(columns, '.');
    std::size_t at = wide.size() / 2;
    while (columnsOf(wide) + dots > columns && !wide.empty()) {
        if (at > 0 && at * 2 >= wide.size()) --at;
        wide.erase(at, 1);
    }
    wide.insert(at, L"...");
    return editor::toUtf8(wide);
}

dxf::Progress progressMeter(std::string label) {
    if (!errorIsTerminal()) return {};
    return [label = std::move(label), line = std::make_shared<StatusLine>()](double fraction) {
        fraction < 1 ? line->show(label, fraction) : line->clear();
    };
}

}  // namespace host::console
