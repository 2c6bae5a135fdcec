// Files and the environment as the run-time library has them.
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <mutex>
#include <set>
#include <string>

#include "PathNames.h"
#include "tchar.h"
#include "windows.h"

namespace {

// Calls a function of POSIX on the name on disk.
template <class Function>
int OnDisk(const wchar_t* path, Function function) {
    std::string name;
    if (!posix::NativePath(path, name)) {
        errno = EILSEQ;
        return -1;
    }
    return function(name.c_str());
}

std::wstring FromCodePage(const char* text) {
    std::wstring wide;
    const int size = MultiByteToWideChar(CP_ACP, 0, text, -1, nullptr, 0);
    if (size <= 0) return wide;
    wide.resize(static_cast<std::size_t>(size));
    MultiByteToWideChar(CP_ACP, 0, text, -1, wide.data(), size);
    return wide;
}

}  // namespace

int _wstat64(const wchar_t* path, struct _stat64* status) {
    return OnDisk(path, [status](const char* name) { return stat(name, status); });
}

int _stat64(const char* path, struct _stat64* status) {
    return _wstat64(FromCodePage(path).c_str(), status);
}

int _wmkdir(const wchar_t* path) {
    return OnDisk(path, [](const char* name) { return mkdir(name, 0777); });
}

int _wrmdir(const wchar_t* path) {
    return OnDisk(path, rmdir);
}

int _wunlink(const wchar_t* path) {
    return OnDisk(path, unlink);
}

wchar_t* _wgetenv(const wchar_t* name) {
    static std::mutex guard;
    static auto* const values = new std::set<std::wstring>;
    std::string plain;
    if (!posix::NativePath(name, plain)) return nullptr;
    const char* const value = std::getenv(plain.c_str());
    if (value == nullptr) return nullptr;
    const std::lock_guard<std::mutex> lock(guard);
    return const_cast<wchar_t*>(values->insert(posix::WideName(value)).first->c_str());
}
