// The entry point of orlinth: arguments as UTF-8 in every build.
#include <string>
#include <vector>

#include "host/console/Program.h"

#ifdef _WIN32

#include <windows.h>

namespace {

std::string utf8(const wchar_t* text) {
    const int size = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
    std::string result(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text, -1, result.data(), size, nullptr, nullptr);
    result.pop_back();  // the terminator that was counted
    return result;
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    std::vector<std::string> texts;
    for (int i = 1; i < count; ++i) texts.push_back(utf8(arguments[i]));
    return host::console::runProgram(texts);
}

#else

#include <fcntl.h>
#include <unistd.h>

namespace {

// A stream that the caller has closed leaves its number to the next file that is opened: words for
// standard output would then land in a drawing.
void openClosedStreams() {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(stream, F_GETFD) == -1) open("/dev/null", O_RDWR);
    }
}

}  // namespace

int main(int count, char** arguments) {
    openClosedStreams();
    if (count == 0) return host::console::runProgram({});
    return host::console::runProgram({arguments + 1, arguments + count});
}

#endif
