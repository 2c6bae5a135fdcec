#include "host/console/StandardInput.h"

#include <iostream>
#include <optional>
#include <string>

#ifdef _WIN32
#include <windows.h>
#endif

namespace host::console {

namespace {

using editor::ReplyReader;

#ifdef _WIN32

// A console gives its lines as wide text; its code page would lose letters. Ctrl-Z at the start
// ends the input.
std::optional<std::wstring> readConsoleLine() {
    std::wstring line;
    for (;;) {
        wchar_t part[512];
        DWORD count = 0;
        if (!ReadConsoleW(GetStdHandle(STD_INPUT_HANDLE), part, 512, &count, nullptr) || count == 0)
            return std::nullopt;
        line.append(part, count);
        if (line.front() == 0x1A) return std::nullopt;
        if (line.back() == L'\n') break;
    }
    line.erase(line.find_last_not_of(L"\r\n") + 1);
    return line;
}

#endif

std::optional<std::wstring> readStreamLine() {
    std::string line;
    if (!std::getline(std::cin, line)) return std::nullopt;
    if (!line.empty() && line.back() == '\r') line.pop_back();
    return editor::decodeScript(line);
}

}  // namespace

StandardInput::StandardInput(SessionOutput& output)
    : output_(output),
      terminal_(inputIsTerminal()),
      reader_([this](const editor::Request*, bool) { return readLine(); }) {}

editor::Reply StandardInput::next(const editor::Request& request) {
    lineIsNew_ = false;
    editor::Reply reply = reader_.next(request);
    // The first reply of a line stands where it was typed; what follows in the line does not.
    if (terminal_ && lineIsNew_) output_.nextReplyIsShown();
    if (!terminal_) reply.where = L"standard input, line " + std::to_wstring(reader_.line());
    return reply;
}

void StandardInput::stop() {
    reader_.drop();
    ended_ = true;
}

ReplyReader::Line StandardInput::readLine() {
    if (ended_) return {};
#ifdef _WIN32
    std::optional<std::wstring> line = terminal_ ? readConsoleLine() : readStreamLine();
#else
    std::optional<std::wstring> line = readStreamLine();
#endif
    ended_ = !line;
    lineIsNew_ = true;
    if (ended_) return {};
    return {ReplyReader::Line::Kind::text, std::move(*line)};
}

}  // namespace host::console
