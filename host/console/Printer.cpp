#include "host/console/Printer.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <system_error>

#include "host/console/Files.h"
#include "host/console/Options.h"
#include "host/dxf/Utf8.h"

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <windows.h>
#else
#include <unistd.h>
#endif

namespace host::console {

namespace {

void carryBytesUnchanged() {
#ifdef _WIN32
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
    SetConsoleOutputCP(CP_UTF8);
    SetConsoleCP(CP_UTF8);
#else
    // Whoever reads our output may leave early; the work goes on and the write just fails.
    std::signal(SIGPIPE, SIG_IGN);
    // A file that grows beyond the user's limit is an error of writing, not the end of the program.
    std::signal(SIGXFSZ, SIG_IGN);
#endif
}

// 0, or the error of the system.
int write(std::FILE* stream, std::string_view text) {
    errno = 0;
    const bool all = std::fwrite(text.data(), 1, text.size(), stream) == text.size();
    const bool flushed = std::fflush(stream) == 0;
    if (all && flushed) return 0;
    std::clearerr(stream);
    return errno == 0 ? EIO : errno;
}

// Whoever read our output has gone away.
bool readerHasLeft(int error) {
#ifdef _WIN32
    if (error == EINVAL) return true;
#endif
    return error == EPIPE;
}

std::string valid(std::string_view text) {
    if (dxf::utf8::isValid(text)) return std::string(text);
    return shownText(text);
}

}  // namespace

std::string visible(std::string_view text) {
    std::string shown;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto c = static_cast<unsigned char>(text[i]);
        const auto next = static_cast<unsigned char>(i + 1 < text.size() ? text[i + 1] : 0);
        if ((c < 0x20 && c != '\n' && c != '\t') || c == 0x7F) {
            shown += {'^', static_cast<char>(c ^ 0x40)};
        } else if (c == 0xC2 && next >= 0x80 && next < 0xA0) {
            constexpr const char* digits = "0123456789ABCDEF";
            shown += std::string("\\x") + digits[next >> 4U] + digits[next & 15U];
            ++i;
        } else {
            shown += text[i];
        }
    }
    return shown;
}

Printer::Printer(const std::filesystem::path& log)
    : logging_(!log.empty()), outputIsShown_(outputIsTerminal()), errorIsShown_(errorIsTerminal()) {
    carryBytesUnchanged();
    if (!logging_) return;
    log_.open(log, std::ios::binary | std::ios::trunc);
    if (!log_)
        throw LogError("the log '" + utf8(log) +
                       "' can't be written: " + std::generic_category().message(errno));
}

void Printer::print(std::string_view text) {
    if (text.empty()) return;
    if (quiet_)
        log(valid(text));
    else
        show(text);
    atLineStart_ = text.back() == '\n';
}

void Printer::result(std::string_view text) {
    if (text.empty()) return;
    endLine();
    show(text);
    atLineStart_ = text.back() == '\n';
}

void Printer::show(std::string_view text) {
    const std::string shown = valid(text);
    const int error = write(stdout, outputIsShown_ ? visible(shown) : shown);
    if (error != 0 && !readerHasLeft(error) && outputLoss_.empty())
        outputLoss_ = std::generic_category().message(error);
    log(shown);
}

void Printer::error(std::string_view sentence) {
    endLine();
    errors_.push_back(valid(sentence));
    const bool told = sentence.substr(0, subject_.size()) == subject_;
    const std::string line =
        "orlinth: " + (told ? "" : valid(subject_) + ": ") + errors_.back() + "\n";
    write(stderr, errorIsShown_ ? visible(line) : line);
    log(line);
}

void Printer::endLine() {
    if (!atLineStart_) print("\n");
}

void Printer::isShown(std::string_view text) {
    if (text.empty()) return;
    log(text);
    atLineStart_ = text.back() == '\n';
}

void Printer::log(std::string_view text) {
    if (!logging_) return;
    log_.write(text.data(), static_cast<std::streamsize>(text.size()));
    log_.flush();
    if (!log_) logComplete_ = false;
}

#ifdef _WIN32
namespace {

// Unlike _isatty this says no to NUL, which is a character device without anyone behind it.
bool isConsole(DWORD stream) {
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(stream), &mode) != 0;
}

}  // namespace

bool inputIsTerminal() {
    return isConsole(STD_INPUT_HANDLE);
}
bool outputIsTerminal() {
    return isConsole(STD_OUTPUT_HANDLE);
}
bool errorIsTerminal() {
    return isConsole(STD_ERROR_HANDLE);
}
#else
bool inputIsTerminal() {
    return isatty(STDIN_FILENO) != 0;
}
bool outputIsTerminal() {
    return isatty(STDOUT_FILENO) != 0;
}
bool errorIsTerminal() {
    return isatty(STDERR_FILENO) != 0;
}
#endif

}  // namespace host::console
