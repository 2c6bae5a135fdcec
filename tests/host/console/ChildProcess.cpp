#include "tests/host/console/ChildProcess.h"

#include <atomic>
#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>

#ifdef _WIN32
#include <windows.h>
#else
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

namespace console_test {

namespace {

constexpr unsigned limitSeconds = 120;

#ifdef _WIN32

// One argument as the run-time library of the child takes it apart again.
std::wstring quoted(const std::wstring& argument) {
    std::wstring result = L"\"";
    std::size_t backslashes = 0;
    for (const wchar_t c : argument) {
        if (c == L'\\') {
            ++backslashes;
            continue;
        }
        result.append(c == L'"' ? 2 * backslashes + 1 : backslashes, L'\\');
        backslashes = 0;
        result += c;
    }
    return result.append(2 * backslashes, L'\\') + L'"';
}

HANDLE openStream(const std::filesystem::path& file, bool forWriting) {
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    const HANDLE handle = CreateFileW(
        file.c_str(), forWriting ? GENERIC_WRITE : GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
        &inherited, forWriting ? CREATE_ALWAYS : OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE) throw std::runtime_error("can't open " + file.u8string());
    return handle;
}

int runProcess(const Call& call, const std::filesystem::path& in, const std::filesystem::path& out,
               const std::filesystem::path& err) {
    std::wstring line = quoted(call.program.wstring());
    for (const std::string& argument : call.arguments)
        line += L' ' + quoted(std::filesystem::u8path(argument).wstring());
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = openStream(in, false);
    startup.hStdOutput = openStream(out, true);
    startup.hStdError = openStream(err, true);
    PROCESS_INFORMATION process{};
    const BOOL started = CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr,
                                        call.folder.c_str(), &startup, &process);
    CloseHandle(startup.hStdInput);
    CloseHandle(startup.hStdOutput);
    CloseHandle(startup.hStdError);
    if (!started) throw std::runtime_error("can't start " + call.program.u8string());
    DWORD code = 0;
    const bool ended = WaitForSingleObject(process.hProcess, limitSeconds * 1000) == WAIT_OBJECT_0;
    if (!ended) TerminateProcess(process.hProcess, 255);
    GetExitCodeProcess(process.hProcess, &code);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return ended ? static_cast<int>(code) : -1;
}

#else

[[noreturn]] void becomeProgram(const Call& call, const std::filesystem::path& in,
                                const std::filesystem::path& out,
                                const std::filesystem::path& err) {
    const auto redirect = [](const std::filesystem::path& file, int flags, int stream) {
        const int handle = open(file.c_str(), flags, 0600);
        if (handle < 0 || dup2(handle, stream) < 0) _exit(126);
        close(handle);
    };
    redirect(in, O_RDONLY, STDIN_FILENO);
    redirect(out, O_WRONLY | O_CREAT | O_TRUNC, STDOUT_FILENO);
    redirect(err, O_WRONLY | O_CREAT | O_TRUNC, STDERR_FILENO);
    std::vector<char*> arguments{const_cast<char*>(call.program.c_str())};
    for (const std::string& argument : call.arguments)
        arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    if (chdir(call.folder.c_str()) != 0) _exit(126);
    alarm(limitSeconds);  // survives the exec and ends a program that hangs
    execv(call.program.c_str(), arguments.data());
    _exit(126);
}

int runProcess(const Call& call, const std::filesystem::path& in, const std::filesystem::path& out,
               const std::filesystem::path& err) {
    const pid_t child = fork();
    if (child < 0) throw std::runtime_error("can't start a process");
    if (child == 0) becomeProgram(call, in, out, err);
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

#endif

}  // namespace

Outcome run(const Call& call) {
    const Folder streams;
    write(streams / "in", call.input);
    Outcome outcome;
    outcome.exit = runProcess(call, streams / "in", streams / "out", streams / "err");
    outcome.output = read(streams / "out");
    outcome.error = read(streams / "err");
    return outcome;
}

std::filesystem::path orlinth() {
#ifdef _WIN32
    return std::filesystem::path(ORLINTH_BIN_DIR) / "orlinth.exe";
#else
    return std::filesystem::path(ORLINTH_BIN_DIR) / "orlinth";
#endif
}

std::filesystem::path exampleDrawing() {
    return std::filesystem::path(ORLINTH_TEST_DATA).parent_path().parent_path() / "examples" /
           "streets.dxf";
}

Folder::Folder() {
    static std::mt19937_64 names(std::random_device{}());
    static std::atomic<unsigned> count{0};
    path_ = std::filesystem::temp_directory_path() /
            ("orlinth-test-" + std::to_string(names()) + "-" + std::to_string(count++));
    std::filesystem::create_directories(path_);
}

Folder::~Folder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::string read(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

void write(const std::filesystem::path& file, const std::string& bytes) {
    std::ofstream stream(file, std::ios::binary);
    stream << bytes;
    if (!stream.flush()) throw std::runtime_error("can't write " + file.u8string());
}

}  // namespace console_test
