#include "host/dxf/SystemFile.h"

#include <algorithm>

#ifdef _WIN32
#include <windows.h>
#else
#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <system_error>
#endif

namespace host::dxf {

SystemFile::~SystemFile() {
    close();
}

#ifdef _WIN32

const int SystemFile::kNoSpace = ERROR_DISK_FULL;
const int SystemFile::kExists = ERROR_FILE_EXISTS;
const int SystemFile::kDenied = ERROR_ACCESS_DENIED;

namespace {

constexpr std::size_t kLargestPiece = 1U << 30;

HANDLE asHandle(std::intptr_t handle) {
    return reinterpret_cast<HANDLE>(handle);  // NOLINT(performance-no-int-to-ptr)
}

int lastError() {
    return static_cast<int>(GetLastError());
}

int openAs(std::intptr_t& handle, const std::filesystem::path& path, DWORD access, DWORD how) {
    const HANDLE opened =
        CreateFileW(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                    nullptr, how, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (opened == INVALID_HANDLE_VALUE) return lastError();
    handle = reinterpret_cast<std::intptr_t>(opened);
    return 0;
}

}  // namespace

int SystemFile::openToRead(const std::filesystem::path& path) {
    return openAs(handle_, path, GENERIC_READ, OPEN_EXISTING);
}

bool SystemFile::somebodyWrites() {
    return true;
}

int SystemFile::createNew(const std::filesystem::path& path) {
    return openAs(handle_, path, GENERIC_WRITE, CREATE_NEW);
}

std::uint64_t SystemFile::size() const {
    LARGE_INTEGER size;
    if (GetFileSizeEx(asHandle(handle_), &size) == 0) return 0;
    return static_cast<std::uint64_t>(size.QuadPart);
}

int SystemFile::read(char* buffer, std::size_t size, std::size_t& got) {
    DWORD count = 0;
    const auto piece = static_cast<DWORD>(std::min(size, kLargestPiece));
    if (ReadFile(asHandle(handle_), buffer, piece, &count, nullptr) == 0) {
        got = 0;
        return lastError();
    }
    got = count;
    return 0;
}

int SystemFile::write(const char* bytes, std::size_t size) {
    while (size > 0) {
        DWORD count = 0;
        const auto piece = static_cast<DWORD>(std::min(size, kLargestPiece));
        if (WriteFile(asHandle(handle_), bytes, piece, &count, nullptr) == 0) return lastError();
        bytes += count;
        size -= count;
    }
    return 0;
}

void SystemFile::copyPermissions(const std::filesystem::path&) {
    // A new file inherits what its folder grants; the target was made in the same folder.
}

int SystemFile::flush() {
    return FlushFileBuffers(asHandle(handle_)) == 0 ? lastError() : 0;
}

int SystemFile::close() {
    if (handle_ == kClosed) return 0;
    const HANDLE handle = asHandle(handle_);
    handle_ = kClosed;
    return CloseHandle(handle) == 0 ? lastError() : 0;
}

int SystemFile::tryWriting(const std::filesystem::path& path) {
    SystemFile file;
    return openAs(file.handle_, path, GENERIC_WRITE, OPEN_EXISTING);
}

int SystemFile::replace(const std::filesystem::path& from, const std::filesystem::path& to) {
    const DWORD how = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;
    return MoveFileExW(from.c_str(), to.c_str(), how) == 0 ? lastError() : 0;
}

unsigned long SystemFile::processId() {
    return GetCurrentProcessId();
}

std::string SystemFile::message(int error) {
    wchar_t wide[512];
    DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
                                  nullptr, static_cast<DWORD>(error), 0, wide, 512, nullptr);
    while (length > 0 && (wide[length - 1] <= L' ' || wide[length - 1] == L'.')) --length;
    if (length == 0) return "system error " + std::to_string(error);
    const auto units = static_cast<int>(length);
    const int size = WideCharToMultiByte(CP_UTF8, 0, wide, units, nullptr, 0, nullptr, nullptr);
    std::string text(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, wide, units, text.data(), size, nullptr, nullptr);
    return text;
}

#else

const int SystemFile::kNoSpace = ENOSPC;
const int SystemFile::kExists = EEXIST;
const int SystemFile::kDenied = EACCES;

namespace {

int descriptor(std::intptr_t handle) {
    return static_cast<int>(handle);
}

}  // namespace

int SystemFile::openToRead(const std::filesystem::path& path) {
    const int opened = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (opened < 0) return errno;
    handle_ = opened;
    return 0;
}

bool SystemFile::somebodyWrites() {
    constexpr int patience = 2000;  // milliseconds
    const int file = descriptor(handle_);
    struct stat status;
    if (::fstat(file, &status) == 0 && S_ISFIFO(status.st_mode)) {
        // Waits for the first bytes, or for a writer that leaves without any.
        pollfd watched = {file, POLLIN, 0};
        const bool silent = ::poll(&watched, 1, patience) == 0;
        // Without a writer there is an end; with one that is slow there are no bytes yet, or since
        // a moment ago.
        char byte = 0;
        const ssize_t count = silent ? ::read(file, &byte, 1) : -1;
        if (count == 0) return false;
        if (count == 1) ahead_ = byte;
    }
    ::fcntl(file, F_SETFL, ::fcntl(file, F_GETFL) & ~O_NONBLOCK);
    return true;
}

int SystemFile::createNew(const std::filesystem::path& path) {
    const int opened = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (opened < 0) return errno;
    handle_ = opened;
    return 0;
}

std::uint64_t SystemFile::size() const {
    struct stat status;
    if (::fstat(descriptor(handle_), &status) != 0 || status.st_size < 0) return 0;
    return static_cast<std::uint64_t>(status.st_size);
}

int SystemFile::read(char* buffer, std::size_t size, std::size_t& got) {
    got = 0;
    if (ahead_ && size != 0) {
        *buffer = *ahead_;
        ahead_.reset();
        got = 1;
        return 0;
    }
    ssize_t count;
    do {
        count = ::read(descriptor(handle_), buffer, size);
    } while (count < 0 && errno == EINTR);
    if (count < 0) return errno;
    got = static_cast<std::size_t>(count);
    return 0;
}

int SystemFile::write(const char* bytes, std::size_t size) {
    while (size > 0) {
        const ssize_t count = ::write(descriptor(handle_), bytes, size);
        if (count < 0) {
            if (errno == EINTR) continue;
            return errno;
        }
        bytes += count;
        size -= static_cast<std::size_t>(count);
    }
    return 0;
}

void SystemFile::copyPermissions(const std::filesystem::path& from) {
    struct stat status;
    if (::stat(from.c_str(), &status) != 0) return;
    // The owner first, for changing it may clear mode bits. Both may be refused: a user who may
    // write into the folder need not own the file.
    const int owner = ::fchown(descriptor(handle_), status.st_uid, status.st_gid);
    const int mode = ::fchmod(descriptor(handle_), status.st_mode & 07777);
    static_cast<void>(owner);
    static_cast<void>(mode);
}

int SystemFile::flush() {
    return ::fsync(descriptor(handle_)) == 0 ? 0 : errno;
}

int SystemFile::close() {
    if (handle_ == kClosed) return 0;
    const int closing = descriptor(handle_);
    handle_ = kClosed;
    return ::close(closing) == 0 ? 0 : errno;
}

int SystemFile::tryWriting(const std::filesystem::path& path) {
    return ::access(path.c_str(), W_OK) == 0 ? 0 : errno;
}

int SystemFile::replace(const std::filesystem::path& from, const std::filesystem::path& to) {
    return std::rename(from.c_str(), to.c_str()) == 0 ? 0 : errno;
}

unsigned long SystemFile::processId() {
    return static_cast<unsigned long>(::getpid());
}

std::string SystemFile::message(int error) {
    return std::generic_category().message(error);
}

#endif

}  // namespace host::dxf
