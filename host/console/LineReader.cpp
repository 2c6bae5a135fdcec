// Lines without an editor.
#include "host/console/LineReader.h"

#include <iostream>
#include <string>
#include <utility>

#ifdef _WIN32
#include <windows.h>
#else
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#endif

namespace host::console {

namespace {

using Line = LineReader::Line;

Line textLine(std::string bytes) {
    if (!bytes.empty() && bytes.back() == '\r') bytes.pop_back();
    return {Line::Kind::text, editor::decodeScript(bytes)};
}

class StreamLines : public LineReader {
  public:
    Line read(const std::wstring&, const Vocabulary&) override {
        std::string line;
        if (!std::getline(std::cin, line)) return {};
        return textLine(std::move(line));
    }
};

#ifdef _WIN32

// A console gives its lines as wide text; its code page would lose letters. Ctrl-Z at the start
// ends the input.
class TerminalLines : public LineReader {
  public:
    explicit TerminalLines(TerminalSignals& signals) : signals_(signals) {}

    Line read(const std::wstring&, const Vocabulary&) override {
        std::wstring line;
        do {
            wchar_t part[512];
            DWORD count = 0;
            SetLastError(ERROR_SUCCESS);
            const BOOL done =
                ReadConsoleW(GetStdHandle(STD_INPUT_HANDLE), part, 512, &count, nullptr);
            if (done && count == 0 && GetLastError() == ERROR_OPERATION_ABORTED) {
                signals_.takeCancel();
                return {Line::Kind::cancel, {}};
            }
            if (!done || count == 0) return {};
            line.append(part, count);
            if (line.front() == 0x1A) return {};
        } while (line.back() != L'\n');
        line.erase(line.find_last_not_of(L"\r\n") + 1);
        return {Line::Kind::text, std::move(line)};
    }

  private:
    TerminalSignals& signals_;
};

#else

class TerminalLines : public LineReader {
  public:
    explicit TerminalLines(TerminalSignals& signals) : signals_(signals) {}

    Line read(const std::wstring&, const Vocabulary&) override {
        std::string line;
        for (;;) {
            if (!waitForKeys()) return {Line::Kind::cancel, {}};
            char byte = 0;
            const ssize_t count = ::read(STDIN_FILENO, &byte, 1);
            if (count < 0 && (errno == EINTR || errno == EAGAIN)) continue;
            if (count <= 0) return line.empty() ? Line() : textLine(std::move(line));
            if (byte == '\n') return textLine(std::move(line));
            line += byte;
        }
    }

  private:
    // False when Ctrl-C comes instead.
    bool waitForKeys() {
        for (;;) {
            pollfd watched[2] = {{STDIN_FILENO, POLLIN, 0}, {signals_.descriptor(), POLLIN, 0}};
            const int ready = poll(watched, 2, -1);
            signals_.drain();
            if (signals_.takeCancel()) return false;
            if (ready > 0 && watched[0].revents != 0) return true;
        }
    }

    TerminalSignals& signals_;
};

#endif

}  // namespace

std::unique_ptr<LineReader> streamLines() {
    return std::make_unique<StreamLines>();
}

bool inputIsEmpty() {
    return std::cin.peek() == std::istream::traits_type::eof();
}

std::unique_ptr<LineReader> terminalLines(TerminalSignals& signals) {
    return std::make_unique<TerminalLines>(signals);
}

#ifdef _WIN32
std::unique_ptr<LineReader> editedLines(TerminalSignals&) {
    return nullptr;
}
#endif

}  // namespace host::console
