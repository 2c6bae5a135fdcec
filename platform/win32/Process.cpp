#include <dlfcn.h>
#include <sys/auxv.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <climits>
#include <cstring>
#include <mutex>
#include <set>
#include <string>

#include "Faults.h"
#include "HeadlessSystem.h"
#include "PathNames.h"
#include "tchar.h"

namespace {

struct Settled {
    std::mutex guard;
    std::optional<std::wstring> modulePath;
    std::set<std::string> hidden;
};

Settled& TheSettled() {
    static auto* const settled = new Settled;
    return *settled;
}

// What the two system modules are known by.
int kernelModule;
int nativeModule;

HMODULE Token(int& module) {
    return reinterpret_cast<HMODULE>(&module);
}

// Where the module of an address begins, null for none.
void* ModuleBase(const void* address) {
    Dl_info info{};
    return dladdr(address, &info) != 0 ? info.dli_fbase : nullptr;
}

void* ProgramBase() {
    return ModuleBase(reinterpret_cast<const void*>(getauxval(AT_ENTRY)));
}

// The file of a module by its begin; empty when there is none.
std::string ModuleFile(const void* base) {
    char path[PATH_MAX] = {};
    if (base == ProgramBase()) {
        const ssize_t length = readlink("/proc/self/exe", path, sizeof path - 1);
        return length > 0 ? std::string(path, static_cast<std::size_t>(length)) : std::string();
    }
    Dl_info info{};
    if (dladdr(base, &info) == 0 || info.dli_fbase != base) return {};
    return realpath(info.dli_fname, path) != nullptr ? path : "";
}

// The beginning of the record that ntdll gives for class 0.
struct ProcessBasicInformation {
    PVOID before[4];
    ULONG_PTR uniqueProcessId;
    PVOID behind;
};

LONG NtQueryInformationProcess(HANDLE process, int which, PVOID information, ULONG length,
                               ULONG* returned) {
    constexpr LONG kInvalidClass = static_cast<LONG>(0xC0000003u);
    constexpr LONG kInvalidHandle = static_cast<LONG>(0xC0000008u);
    if (posix::Refused("NtQueryInformationProcess")) return kInvalidHandle;
    if (which != 0 || length != sizeof(ProcessBasicInformation)) return kInvalidClass;
    if (process != GetCurrentProcess()) return kInvalidHandle;
    ProcessBasicInformation basic{};
    basic.uniqueProcessId = GetCurrentProcessId();
    std::memcpy(information, &basic, sizeof basic);
    if (returned != nullptr) *returned = sizeof basic;
    return 0;
}

bool IsHidden(const char* name) {
    const std::lock_guard<std::mutex> lock(TheSettled().guard);
    return TheSettled().hidden.count(name) != 0;
}

}  // namespace

HANDLE GetCurrentProcess() {
    return INVALID_HANDLE_VALUE;  // the same number on Windows
}

DWORD GetCurrentProcessId() {
    return static_cast<DWORD>(getpid());
}

DWORD GetCurrentThreadId() {
    return static_cast<DWORD>(syscall(SYS_gettid));
}

DWORD GetProcessId(HANDLE process) {
    if (posix::Refused("GetProcessId")) return 0;
    if (process == GetCurrentProcess()) return GetCurrentProcessId();
    SetLastError(ERROR_INVALID_HANDLE);
    return 0;
}

HMODULE GetModuleHandleW(LPCWSTR name) {
    if (name == nullptr) return reinterpret_cast<HMODULE>(ProgramBase());
    if (_wcsicmp(name, L"kernel32.dll") == 0) return Token(kernelModule);
    if (_wcsicmp(name, L"ntdll.dll") == 0) return Token(nativeModule);
    SetLastError(ERROR_MOD_NOT_FOUND);
    return nullptr;
}

FARPROC GetProcAddress(HMODULE module, LPCSTR name) {
    const auto is = [module, name](int& token, const char* known) {
        return module == Token(token) && std::strcmp(name, known) == 0 && !IsHidden(name);
    };
    void* address = nullptr;
    if (is(kernelModule, "GetProcessId")) {
        address = reinterpret_cast<void*>(&GetProcessId);
    } else if (is(nativeModule, "NtQueryInformationProcess")) {
        address = reinterpret_cast<void*>(&NtQueryInformationProcess);
    } else {
        SetLastError(ERROR_PROC_NOT_FOUND);
    }
    return reinterpret_cast<FARPROC>(address);
}

DWORD GetModuleFileNameW(HMODULE module, LPWSTR buffer, DWORD size) {
    if (posix::Refused("GetModuleFileNameW")) return 0;
    const void* const base = module != nullptr ? module : ProgramBase();
    std::wstring path = posix::WindowsPath(ModuleFile(base));
    {
        const std::lock_guard<std::mutex> lock(TheSettled().guard);
        path = TheSettled().modulePath.value_or(path);
    }
    if (path.empty() || size == 0) {
        SetLastError(path.empty() ? ERROR_MOD_NOT_FOUND : ERROR_INSUFFICIENT_BUFFER);
        return 0;
    }
    const std::size_t length = path.copy(buffer, size - 1);
    buffer[length] = 0;
    if (path.size() < size) return static_cast<DWORD>(length);
    SetLastError(ERROR_INSUFFICIENT_BUFFER);
    return size;
}

SIZE_T VirtualQuery(LPCVOID address, MEMORY_BASIC_INFORMATION* information, SIZE_T size) {
    if (posix::Refused("VirtualQuery")) return 0;
    void* const base = ModuleBase(address);
    if (base == nullptr || size < sizeof *information) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return 0;
    }
    constexpr std::uintptr_t kPage = 4096;
    *information = {};
    information->AllocationBase = base;
    information->BaseAddress =
        reinterpret_cast<PVOID>(reinterpret_cast<std::uintptr_t>(address) / kPage * kPage);
    return sizeof *information;
}

void headless::SetModulePath(const std::optional<std::wstring>& path) {
    const std::lock_guard<std::mutex> lock(TheSettled().guard);
    TheSettled().modulePath = path;
}

void headless::HideProcedure(const std::string& name, bool hide) {
    const std::lock_guard<std::mutex> lock(TheSettled().guard);
    if (hide) {
        TheSettled().hidden.insert(name);
    } else {
        TheSettled().hidden.erase(name);
    }
}
