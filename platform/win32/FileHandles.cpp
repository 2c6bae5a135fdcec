// Files by handle, with the share modes of the handles that this process has open.
#include "FileHandles.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <list>
#include <mutex>

#include "Faults.h"
#include "PathNames.h"
#include "winbase.h"

namespace {

struct OpenFile {
    int descriptor;
    dev_t device;
    ino_t index;
    DWORD access;
    DWORD share;
};

struct OpenFiles {
    std::mutex guard;
    std::list<OpenFile> files;  // a handle is the address of its entry
};

OpenFiles& TheFiles() {
    static auto* const files = new OpenFiles;
    return *files;
}

HANDLE FailOpening(DWORD code) {
    SetLastError(code);
    return INVALID_HANDLE_VALUE;
}

// Whether `share` grants the access.
bool Grants(DWORD share, DWORD access) {
    if ((access & GENERIC_READ) != 0 && (share & FILE_SHARE_READ) == 0) return false;
    return (access & GENERIC_WRITE) == 0 || (share & FILE_SHARE_WRITE) != 0;
}

// Under the guard of the open files.
bool Allowed(const struct stat& status, DWORD access, DWORD share) {
    const auto& files = TheFiles().files;
    return std::all_of(files.begin(), files.end(), [&](const OpenFile& other) {
        if (other.device != status.st_dev || other.index != status.st_ino) return true;
        return Grants(other.share, access) && Grants(share, other.access);
    });
}

OpenFile* FindFile(HANDLE handle) {
    for (OpenFile& file : TheFiles().files) {
        if (&file == handle) return &file;
    }
    SetLastError(ERROR_INVALID_HANDLE);
    return nullptr;
}

int OpenFlags(DWORD access) {
    // A pipe is opened without waiting for its other end.
    const int common = O_CLOEXEC | O_NONBLOCK;
    if ((access & GENERIC_WRITE) == 0) return common | O_RDONLY;
    return common | ((access & GENERIC_READ) != 0 ? O_RDWR : O_WRONLY);
}

}  // namespace

HANDLE CreateFileW(LPCWSTR path, DWORD access, DWORD share, SECURITY_ATTRIBUTES* /*security*/,
                   DWORD disposition, DWORD /*flags*/, HANDLE /*pattern*/) {
    if (posix::Refused("CreateFileW")) return INVALID_HANDLE_VALUE;
    if (disposition != OPEN_EXISTING) return FailOpening(ERROR_INVALID_PARAMETER);
    std::string name;
    if (!posix::NativePath(path, name)) return FailOpening(ERROR_INVALID_NAME);
    if (name.empty()) return FailOpening(ERROR_PATH_NOT_FOUND);
    const int descriptor = open(name.c_str(), OpenFlags(access));
    if (descriptor < 0) return FailOpening(posix::SystemError(errno));

    struct stat status {};
    OpenFiles& open = TheFiles();
    const std::lock_guard<std::mutex> lock(open.guard);
    DWORD refusal = ERROR_SUCCESS;
    if (fstat(descriptor, &status) != 0) {
        refusal = posix::SystemError(errno);
    } else if (S_ISDIR(status.st_mode)) {
        refusal = ERROR_ACCESS_DENIED;
    } else if (!Allowed(status, access, share)) {
        refusal = ERROR_SHARING_VIOLATION;
    }
    if (refusal != ERROR_SUCCESS) {
        close(descriptor);
        return FailOpening(refusal);
    }
    open.files.push_back({descriptor, status.st_dev, status.st_ino, access, share});
    return &open.files.back();
}

BOOL CloseHandle(HANDLE handle) {
    OpenFiles& open = TheFiles();
    const std::lock_guard<std::mutex> lock(open.guard);
    const OpenFile* const file = FindFile(handle);
    if (file == nullptr) return FALSE;
    close(file->descriptor);
    open.files.remove_if([file](const OpenFile& other) { return &other == file; });
    return TRUE;
}

BOOL GetFileInformationByHandle(HANDLE handle, BY_HANDLE_FILE_INFORMATION* information) {
    if (posix::Refused("GetFileInformationByHandle")) return FALSE;
    OpenFiles& open = TheFiles();
    const std::lock_guard<std::mutex> lock(open.guard);
    const OpenFile* const file = FindFile(handle);
    struct stat status {};
    if (file == nullptr) return FALSE;
    if (fstat(file->descriptor, &status) != 0) {
        SetLastError(posix::SystemError(errno));
        return FALSE;
    }
    *information = {};
    posix::FillFileData(status, *information);
    const auto device = static_cast<ULONGLONG>(status.st_dev);
    const auto index = static_cast<ULONGLONG>(status.st_ino);
    information->dwVolumeSerialNumber = static_cast<DWORD>(device ^ device >> 32);
    information->nNumberOfLinks = static_cast<DWORD>(status.st_nlink);
    information->nFileIndexHigh = static_cast<DWORD>(index >> 32);
    information->nFileIndexLow = static_cast<DWORD>(index);
    return TRUE;
}

LONG CompareFileTime(const FILETIME* first, const FILETIME* second) {
    const auto units = [](const FILETIME& time) {
        return static_cast<ULONGLONG>(time.dwHighDateTime) << 32 | time.dwLowDateTime;
    };
    const ULONGLONG a = units(*first);
    const ULONGLONG b = units(*second);
    return a < b ? -1 : a > b ? 1 : 0;
}

namespace posix {

FILETIME WindowsTime(ULONGLONG units) {
    return {static_cast<DWORD>(units), static_cast<DWORD>(units >> 32)};
}

FILETIME WindowsTime(const timespec& time) {
    constexpr LONGLONG kSecondsFrom1601To1970 = 11644473600;
    const LONGLONG units =
        (static_cast<LONGLONG>(time.tv_sec) + kSecondsFrom1601To1970) * 10000000 +
        time.tv_nsec / 100;
    return WindowsTime(static_cast<ULONGLONG>(units));
}

bool SharingAllows(const char* path, DWORD access, DWORD share) {
    const std::lock_guard<std::mutex> lock(TheFiles().guard);
    struct stat status {};
    return TheFiles().files.empty() || stat(path, &status) != 0 || Allowed(status, access, share);
}

}  // namespace posix
