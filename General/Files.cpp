#include "General/Files.h"

#include <sys/stat.h>
#include <windows.h>

#include <cerrno>
#include <climits>
#include <cstdio>

#include <afx.h>
#include <tchar.h>

#include "datastruct/Random.h"

namespace TamLib {
namespace {

const wchar_t* TextOf(const wchar_t* path) {
    return path != nullptr ? path : L"";
}

// What the run-time knows of a file.
using Status = struct _stat64;

bool Look(const wchar_t* path, Status& status) {
    return _wstat64(TextOf(path), &status) == 0;
}

// An existing file opened for reading, as long as this lives.
class OpenFile {
  public:
    OpenFile(const wchar_t* path, DWORD share)
        : handle_(
              CreateFileW(TextOf(path), GENERIC_READ, share, nullptr, OPEN_EXISTING, 0, nullptr)) {}
    ~OpenFile() {
        if (IsOpen()) CloseHandle(handle_);
    }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    bool IsOpen() const { return handle_ != INVALID_HANDLE_VALUE; }
    bool Describe(BY_HANDLE_FILE_INFORMATION& information) const {
        return GetFileInformationByHandle(handle_, &information) != FALSE;
    }

  private:
    HANDLE handle_;
};

// Closed before the file is opened for writing: an open handle would refuse that.
bool CanBeOpened(const wchar_t* path) {
    return OpenFile(path, FILE_SHARE_READ | FILE_SHARE_WRITE).IsOpen();
}

std::int32_t CopyBlocks(std::FILE* from, std::FILE* to, std::int64_t& copied) {
    char block[1024];
    for (;;) {
        const std::size_t length = std::fread(block, 1, sizeof block, from);
        if (length == 0) {
            const int error = std::ferror(from);
            return error != 0 ? error | kCopyRead : 0;
        }
        for (std::size_t done = 0; done < length;) {
            const std::size_t written = std::fwrite(block + done, 1, length - done, to);
            // Intended: the error looked at is the source's, so that a full target is tried again.
            const int error = written == 0 ? std::ferror(from) : 0;
            if (error != 0) return error | kCopyWrite;
            done += written;
        }
        copied += static_cast<std::int64_t>(length);
    }
}

}  // namespace

std::int32_t FileSize(const char* path) {
    Status status{};
    if (_stat64(path != nullptr ? path : "", &status) != 0 || status.st_size > INT32_MAX) return -1;
    return static_cast<std::int32_t>(status.st_size);
}

std::int32_t FileSize(const wchar_t* path) {
    const std::int64_t size = FileSize64(path);
    return size > INT32_MAX ? -1 : static_cast<std::int32_t>(size);
}

std::int64_t FileSize64(const wchar_t* path) {
    Status status{};
    return Look(path, status) ? static_cast<std::int64_t>(status.st_size) : -1;
}

std::int32_t CompareFileTimes(const wchar_t* first, const wchar_t* second, std::int64_t* firstTime,
                              std::int64_t* secondTime) {
    Status firstStatus{};
    Status secondStatus{};
    if (!Look(first, firstStatus) || !Look(second, secondStatus)) return kFileTimesUnknown;
    if (firstTime != nullptr) *firstTime = firstStatus.st_mtime;
    if (secondTime != nullptr) *secondTime = secondStatus.st_mtime;
    return firstStatus.st_mtime > secondStatus.st_mtime ? 1 : 0;
}

std::int32_t IsSameFile(const wchar_t* first, const wchar_t* second) {
    const OpenFile firstFile(first, FILE_SHARE_READ);
    const OpenFile secondFile(second, FILE_SHARE_READ);
    if (!firstFile.IsOpen() || !secondFile.IsOpen()) return -1;
    BY_HANDLE_FILE_INFORMATION a{};
    BY_HANDLE_FILE_INFORMATION b{};
    if (!firstFile.Describe(a) || !secondFile.Describe(b)) return -2;
    return a.dwVolumeSerialNumber == b.dwVolumeSerialNumber &&
                   a.nFileIndexHigh == b.nFileIndexHigh && a.nFileIndexLow == b.nFileIndexLow
               ? 1
               : 0;
}

std::int64_t FileAgeSeconds(const wchar_t* path) {
    Status status{};
    return Look(path, status) ? _time64(nullptr) - status.st_mtime : -1;
}

std::int32_t CopyFileBytes(const wchar_t* source, const wchar_t* target, std::int64_t* copied) {
    std::int64_t unasked = 0;
    std::int64_t& count = copied != nullptr ? *copied : unasked;
    count = 0;
    if (CanBeOpened(target) && IsSameFile(source, target) == 1) return kCopyOntoItself;
    std::FILE* const from = _wfopen(TextOf(source), L"rb");
    if (from == nullptr) return errno | kCopyOpenSource;
    std::FILE* const to = _wfopen(TextOf(target), L"wb");
    if (to == nullptr) {
        const int error = errno;
        std::fclose(from);
        return error | kCopyOpenTarget;
    }
    const std::int32_t code = CopyBlocks(from, to, count);
    std::fclose(from);
    std::fclose(to);
    return code;
}

StringBase<wchar_t> TempFileName(const StringBase<wchar_t>& prefix) {
    const wchar_t* const folder = _wgetenv(L"TEMP");
    if (folder == nullptr) return {};
    SeedRandom(static_cast<std::uint32_t>(_time64(nullptr)));
    const std::int32_t r1 = Random();
    const std::int32_t r2 = Random();
    const std::int32_t r3 = Random();
    StringBase<wchar_t> tail;
    tail.Format(L"\\%s.%04x%04x%04x", prefix.Data(), r3, r2, r1);
    return StringBase<wchar_t>(folder) + tail;
}

StringBase<wchar_t> MakeTempDirectory(const StringBase<wchar_t>& prefix) {
    StringBase<wchar_t> name = TempFileName(prefix);
    if (name.count == 0 || _wmkdir(name.Data()) != 0) return {};
    return name;
}

bool DeleteDirectory(const wchar_t* path) {
    if (path == nullptr || *path == 0) return false;
    CFileFind search;
    StringBase<wchar_t> pattern = StringBase<wchar_t>(path) + StringBase<wchar_t>(L"/*.*");
    for (BOOL more = search.FindFile(pattern.Data()); more != FALSE;) {
        more = search.FindNextFile();
        _wunlink(search.GetFilePath());  // refuses the folders among the finds
    }
    search.Close();
    return _wrmdir(path) == 0;
}

}  // namespace TamLib
