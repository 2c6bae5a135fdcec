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

// Lines of bytes, or of pairs of bytes behind the mark of UTF-16.
class StreamLines : public LineReader {
  public:
    Line read(const std::wstring&, const Vocabulary&) override {
        if (std::exchange(isFirst_, false)) takeMark();
        if (!mark_.empty()) return readPairs();
        std::string line = std::exchange(begun_, {});
        const bool whole = !line.empty() && line.back() == '\n';
        if (whole) line.pop_back();
        std::string rest;
        if (!whole && !std::getline(std::cin, rest) && line.empty()) return {};
        return textLine(line + rest);
    }

  private:
    static bool takePair(std::string& pair) {
        pair.resize(2);
        return static_cast<bool>(std::cin.read(pair.data(), 2));
    }

    void takeMark() {
        const int first = std::cin.peek();
        if (first != 0xFE && first != 0xFF) return;
        std::string pair(1, static_cast<char>(std::cin.get()));
        if (std::cin.peek() != std::char_traits<char>::eof())
            pair += static_cast<char>(std::cin.get());
        (pair == "\xFF\xFE" || pair == "\xFE\xFF" ? mark_ : begun_) = pair;
    }

    Line readPairs() {
        const std::string lineEnd =
            mark_[0] == '\xFF' ? std::string("\n\0", 2) : std::string("\0\n", 2);
        std::string line = mark_;
        std::string pair;
        bool ended = false;
        while (!ended && takePair(pair)) {
            ended = pair == lineEnd;
            if (!ended) line += pair;
        }
        if (!ended && line.size() == mark_.size()) return {};
        std::wstring text = editor::decodeScript(line);
        if (!text.empty() && text.back() == L'\r') text.pop_back();
        return {Line::Kind::text, std::move(text)};
    }

    bool isFirst_ = true;
    std::string mark_;   // of UTF-16
    std::string begun_;  // of the first line, looked at for the mark
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
