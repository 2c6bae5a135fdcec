#include <cstring>
#include <map>
#include <mutex>

#include "Faults.h"
#include "HeadlessSystem.h"
#include "tchar.h"

namespace {

struct Settled {
    std::mutex guard;
    std::optional<OSVERSIONINFOW> version;
    WORD architecture = PROCESSOR_ARCHITECTURE_AMD64;
    std::map<std::wstring, VS_FIXEDFILEINFO> files;
};

Settled& TheSettled() {
    static auto* const settled = new Settled;
    return *settled;
}

OSVERSIONINFOW UsualVersion() {
    return {sizeof(OSVERSIONINFOW), 6, 1, 7601, 2, L"Service Pack 1"};
}

// The version of a file, or none with the last error.
std::optional<VS_FIXEDFILEINFO> VersionOf(LPCWSTR path) {
    const std::lock_guard<std::mutex> lock(TheSettled().guard);
    const auto found = TheSettled().files.find(path != nullptr ? path : L"");
    if (found != TheSettled().files.end()) return found->second;
    struct _stat64 status {};
    SetLastError(_wstat64(path, &status) != 0 ? ERROR_FILE_NOT_FOUND
                                              : ERROR_RESOURCE_TYPE_NOT_FOUND);
    return std::nullopt;
}

}  // namespace

BOOL GetVersionExW(OSVERSIONINFOW* version) {
    if (posix::Refused("GetVersionExW")) return FALSE;
    if (version->dwOSVersionInfoSize != sizeof *version) {
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
        return FALSE;
    }
    const std::lock_guard<std::mutex> lock(TheSettled().guard);
    *version = TheSettled().version.value_or(UsualVersion());
    version->dwOSVersionInfoSize = sizeof *version;
    return TRUE;
}

void GetNativeSystemInfo(SYSTEM_INFO* information) {
    const std::lock_guard<std::mutex> lock(TheSettled().guard);
    *information = {TheSettled().architecture};
}

DWORD GetFileVersionInfoSizeW(LPCWSTR path, LPDWORD /*ignored*/) {
    return VersionOf(path) ? static_cast<DWORD>(sizeof(VS_FIXEDFILEINFO)) : 0;
}

BOOL GetFileVersionInfoW(LPCWSTR path, DWORD /*ignored*/, DWORD size, LPVOID block) {
    if (posix::Refused("GetFileVersionInfoW")) return FALSE;
    const auto version = VersionOf(path);
    if (!version || size < sizeof *version) return FALSE;
    std::memcpy(block, &*version, sizeof *version);
    return TRUE;
}

BOOL VerQueryValueW(LPCVOID block, LPCWSTR part, LPVOID* value, UINT* size) {
    if (posix::Refused("VerQueryValueW")) return FALSE;
    if (std::wcscmp(part, L"\\") != 0) {
        SetLastError(ERROR_RESOURCE_TYPE_NOT_FOUND);
        return FALSE;
    }
    *value = const_cast<LPVOID>(block);
    *size = sizeof(VS_FIXEDFILEINFO);
    return TRUE;
}

void headless::SetWindowsVersion(const std::optional<OSVERSIONINFOW>& version) {
    const std::lock_guard<std::mutex> lock(TheSettled().guard);
    TheSettled().version = version;
}

void headless::SetProcessorArchitecture(WORD architecture) {
    const std::lock_guard<std::mutex> lock(TheSettled().guard);
    TheSettled().architecture = architecture;
}

void headless::SetFileVersion(const std::wstring& path,
                              const std::optional<VS_FIXEDFILEINFO>& version) {
    const std::lock_guard<std::mutex> lock(TheSettled().guard);
    if (version) {
        TheSettled().files[path] = *version;
    } else {
        TheSettled().files.erase(path);
    }
}
