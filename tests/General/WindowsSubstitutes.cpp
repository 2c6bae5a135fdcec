// The functions of Windows that the library imports, replaced in this program: each does what a
// test has settled and otherwise calls the real one. An imported function is called through a
// pointer named __imp_<function>; the pointers defined here are found before those of the import
// libraries.
#ifdef _WIN32
#include <cstdlib>
#include <cstring>
#include <ctime>

#include "tests/General/Settled.h"

namespace {

// Some of these functions are called before the program's static objects are made; what they look
// at needs no making.
char orderedFunction[64];
int firstFailure = 0;
int lastFailure = 0;
int passedCalls = 0;
DWORD failureCode = 0;

std::optional<settled::Clocks> settledClocks;
std::optional<OSVERSIONINFOW> settledVersion;
WORD settledArchitecture = PROCESSOR_ARCHITECTURE_AMD64;
const std::wstring* settledModulePath = nullptr;
const std::wstring* settledProcessorName = nullptr;
bool hidesGetProcessId = false;
std::optional<int> shellAnswer;

std::vector<std::wstring>& ShellRecord() {
    static auto* const calls = new std::vector<std::wstring>;
    return *calls;
}

bool Refused(const char* function, DWORD& code) {
    if (std::strcmp(orderedFunction, function) != 0) return false;
    ++passedCalls;
    if (passedCalls < firstFailure || passedCalls > lastFailure) return false;
    code = failureCode;
    SetLastError(code);
    return true;
}

template <class Function>
Function Real(const char* module, const char* name) {
    return reinterpret_cast<Function>(
        reinterpret_cast<void*>(GetProcAddress(LoadLibraryA(module), name)));
}

}  // namespace

// A function that can be ordered to fail; `failure` may use the ordered `code`.
#define FAILING(module, failure, result, name, parameters, arguments)               \
    static result WINAPI Substitute_##name parameters {                             \
        static const auto real = Real<decltype(&Substitute_##name)>(module, #name); \
        DWORD code = 0;                                                             \
        if (Refused(#name, code)) return failure;                                   \
        return real arguments;                                                      \
    }                                                                               \
    extern "C" {                                                                    \
    decltype(&Substitute_##name) __imp_##name = Substitute_##name;                  \
    }

FAILING("kernel32.dll", FALSE, BOOL, GetFileInformationByHandle,
        (HANDLE file, BY_HANDLE_FILE_INFORMATION* information), (file, information))
FAILING("kernel32.dll", INVALID_HANDLE_VALUE, HANDLE, CreateFileW,
        (LPCWSTR path, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security, DWORD disposition,
         DWORD flags, HANDLE pattern),
        (path, access, share, security, disposition, flags, pattern))
FAILING("kernel32.dll", 0, SIZE_T, VirtualQuery,
        (LPCVOID address, PMEMORY_BASIC_INFORMATION information, SIZE_T size),
        (address, information, size))
FAILING("user32.dll", FALSE, BOOL, OpenClipboard, (HWND owner), (owner))
FAILING("user32.dll", nullptr, HANDLE, SetClipboardData, (UINT format, HANDLE memory),
        (format, memory))
FAILING("kernel32.dll", nullptr, HGLOBAL, GlobalAlloc, (UINT flags, SIZE_T bytes), (flags, bytes))
FAILING("kernel32.dll", nullptr, LPVOID, GlobalLock, (HGLOBAL memory), (memory))
FAILING("user32.dll", nullptr, HDC, GetDC, (HWND window), (window))
FAILING("advapi32.dll", static_cast<LSTATUS>(code), LSTATUS, RegOpenKeyExW,
        (HKEY key, LPCWSTR subkey, DWORD options, REGSAM access, PHKEY result),
        (key, subkey, options, access, result))
FAILING("advapi32.dll", static_cast<LSTATUS>(code), LSTATUS, RegCreateKeyW,
        (HKEY key, LPCWSTR subkey, PHKEY result), (key, subkey, result))
FAILING("advapi32.dll", static_cast<LSTATUS>(code), LSTATUS, RegCreateKeyExW,
        (HKEY key, LPCWSTR subkey, DWORD reserved, LPWSTR keyClass, DWORD options, REGSAM access,
         LPSECURITY_ATTRIBUTES security, PHKEY result, LPDWORD disposition),
        (key, subkey, reserved, keyClass, options, access, security, result, disposition))
FAILING("advapi32.dll", static_cast<LSTATUS>(code), LSTATUS, RegSetValueExW,
        (HKEY key, LPCWSTR name, DWORD reserved, DWORD type, const BYTE* data, DWORD size),
        (key, name, reserved, type, data, size))
FAILING("advapi32.dll", static_cast<LSTATUS>(code), LSTATUS, RegDeleteValueW,
        (HKEY key, LPCWSTR name), (key, name))
FAILING("advapi32.dll", static_cast<LSTATUS>(code), LSTATUS, RegQueryInfoKeyW,
        (HKEY key, LPWSTR keyClass, LPDWORD classSize, LPDWORD reserved, LPDWORD keys,
         LPDWORD longestKey, LPDWORD longestClass, LPDWORD values, LPDWORD longestValue,
         LPDWORD largestData, LPDWORD securitySize, PFILETIME written),
        (key, keyClass, classSize, reserved, keys, longestKey, longestClass, values, longestValue,
         largestData, securitySize, written))
FAILING("advapi32.dll", static_cast<LSTATUS>(code), LSTATUS, RegEnumKeyExW,
        (HKEY key, DWORD index, LPWSTR name, LPDWORD size, LPDWORD reserved, LPWSTR keyClass,
         LPDWORD classSize, PFILETIME written),
        (key, index, name, size, reserved, keyClass, classSize, written))
FAILING("advapi32.dll", static_cast<LSTATUS>(code), LSTATUS, RegEnumValueW,
        (HKEY key, DWORD index, LPWSTR name, LPDWORD size, LPDWORD reserved, LPDWORD type,
         LPBYTE data, LPDWORD dataSize),
        (key, index, name, size, reserved, type, data, dataSize))
#undef FAILING

// The header of these two does not import them: the functions themselves stand here.
extern "C" {

BOOL WINAPI GetFileVersionInfoW(LPCWSTR path, DWORD ignored, DWORD size, LPVOID block) {
    static const auto real =
        Real<BOOL(WINAPI*)(LPCWSTR, DWORD, DWORD, LPVOID)>("version.dll", "GetFileVersionInfoW");
    DWORD code = 0;
    return Refused("GetFileVersionInfoW", code) ? FALSE : real(path, ignored, size, block);
}

BOOL WINAPI VerQueryValueW(LPCVOID block, LPCWSTR part, LPVOID* value, PUINT size) {
    static const auto real =
        Real<BOOL(WINAPI*)(LPCVOID, LPCWSTR, LPVOID*, PUINT)>("version.dll", "VerQueryValueW");
    DWORD code = 0;
    return Refused("VerQueryValueW", code) ? FALSE : real(block, part, value, size);
}
}

// ---- Functions that tell what is settled ----

static DWORD WINAPI SettledTime() {
    static const auto real = Real<DWORD(WINAPI*)()>("winmm.dll", "timeGetTime");
    return settledClocks ? settledClocks->milliseconds : real();
}

static BOOL WINAPI SettledCounter(LARGE_INTEGER* counter) {
    static const auto real =
        Real<BOOL(WINAPI*)(LARGE_INTEGER*)>("kernel32.dll", "QueryPerformanceCounter");
    if (!settledClocks) return real(counter);
    counter->QuadPart = settledClocks->counter;
    return TRUE;
}

static BOOL WINAPI SettledFrequency(LARGE_INTEGER* frequency) {
    static const auto real =
        Real<BOOL(WINAPI*)(LARGE_INTEGER*)>("kernel32.dll", "QueryPerformanceFrequency");
    if (!settledClocks) return real(frequency);
    frequency->QuadPart = settledClocks->frequency;
    return TRUE;
}

static FILETIME Units(ULONGLONG units) {
    return {static_cast<DWORD>(units), static_cast<DWORD>(units >> 32)};
}

static BOOL WINAPI SettledProcessTimes(HANDLE process, FILETIME* creation, FILETIME* exit,
                                       FILETIME* kernel, FILETIME* user) {
    using Function = BOOL(WINAPI*)(HANDLE, FILETIME*, FILETIME*, FILETIME*, FILETIME*);
    static const auto real = Real<Function>("kernel32.dll", "GetProcessTimes");
    DWORD code = 0;
    if (Refused("GetProcessTimes", code)) return FALSE;
    if (real(process, creation, exit, kernel, user) == FALSE) return FALSE;
    if (settledClocks) {
        *kernel = Units(settledClocks->kernelTime);
        *user = Units(settledClocks->userTime);
    }
    return TRUE;
}

static __time64_t __cdecl SettledSeconds(__time64_t* result) {
    static const auto real = Real<__time64_t(__cdecl*)(__time64_t*)>("msvcrt.dll", "_time64");
    const __time64_t now = settledClocks ? settledClocks->seconds : real(nullptr);
    if (result != nullptr) *result = now;
    return now;
}

static BOOL WINAPI SettledVersion(OSVERSIONINFOW* version) {
    static const auto real = Real<BOOL(WINAPI*)(OSVERSIONINFOW*)>("kernel32.dll", "GetVersionExW");
    DWORD code = 0;
    if (Refused("GetVersionExW", code)) return FALSE;
    if (!settledVersion) return real(version);
    *version = *settledVersion;
    return TRUE;
}

static void WINAPI SettledSystem(SYSTEM_INFO* information) {
    static const auto real =
        Real<void(WINAPI*)(SYSTEM_INFO*)>("kernel32.dll", "GetNativeSystemInfo");
    real(information);
    if (settledVersion) information->wProcessorArchitecture = settledArchitecture;
}

static DWORD WINAPI SettledModuleFile(HMODULE module, LPWSTR buffer, DWORD size) {
    static const auto real =
        Real<DWORD(WINAPI*)(HMODULE, LPWSTR, DWORD)>("kernel32.dll", "GetModuleFileNameW");
    DWORD code = 0;
    if (Refused("GetModuleFileNameW", code)) return 0;
    if (settledModulePath == nullptr) return real(module, buffer, size);
    const std::size_t length = settledModulePath->copy(buffer, size - 1);
    buffer[length] = 0;
    return settledModulePath->size() < size ? static_cast<DWORD>(length) : size;
}

static LSTATUS WINAPI SettledValue(HKEY key, LPCWSTR name, LPDWORD reserved, LPDWORD type,
                                   LPBYTE data, LPDWORD size) {
    using Function = LSTATUS(WINAPI*)(HKEY, LPCWSTR, LPDWORD, LPDWORD, LPBYTE, LPDWORD);
    static const auto real = Real<Function>("advapi32.dll", "RegQueryValueExW");
    DWORD code = 0;
    if (Refused("RegQueryValueExW", code)) return static_cast<LSTATUS>(code);
    if (settledProcessorName == nullptr || name == nullptr || size == nullptr ||
        std::wstring(name) != L"ProcessorNameString")
        return real(key, name, reserved, type, data, size);
    const DWORD room = *size;
    *size = static_cast<DWORD>(2 * (settledProcessorName->size() + 1));
    if (type != nullptr) *type = REG_SZ;
    if (data == nullptr) return ERROR_SUCCESS;
    if (room < *size) return ERROR_MORE_DATA;
    std::memcpy(data, settledProcessorName->c_str(), *size);
    return ERROR_SUCCESS;
}

static HMODULE WINAPI SettledModule(LPCWSTR name) {
    static const auto real = Real<HMODULE(WINAPI*)(LPCWSTR)>("kernel32.dll", "GetModuleHandleW");
    const bool hidden =
        hidesGetProcessId && name != nullptr && std::wstring(name) == L"kernel32.dll";
    return hidden ? nullptr : real(name);
}

static HINSTANCE WINAPI SettledShell(HWND owner, LPCWSTR verb, LPCWSTR file, LPCWSTR parameters,
                                     LPCWSTR folder, INT show) {
    using Function = HINSTANCE(WINAPI*)(HWND, LPCWSTR, LPCWSTR, LPCWSTR, LPCWSTR, INT);
    static const auto real = Real<Function>("shell32.dll", "ShellExecuteW");
    if (!shellAnswer) return real(owner, verb, file, parameters, folder, show);
    ShellRecord().push_back(std::wstring(verb) + L' ' + file);
    return reinterpret_cast<HINSTANCE>(static_cast<INT_PTR>(*shellAnswer));
}

extern "C" {
decltype(&SettledTime) __imp_timeGetTime = SettledTime;
decltype(&SettledCounter) __imp_QueryPerformanceCounter = SettledCounter;
decltype(&SettledFrequency) __imp_QueryPerformanceFrequency = SettledFrequency;
decltype(&SettledProcessTimes) __imp_GetProcessTimes = SettledProcessTimes;
decltype(&SettledSeconds) __imp__time64 = SettledSeconds;
decltype(&SettledVersion) __imp_GetVersionExW = SettledVersion;
decltype(&SettledSystem) __imp_GetNativeSystemInfo = SettledSystem;
decltype(&SettledModuleFile) __imp_GetModuleFileNameW = SettledModuleFile;
decltype(&SettledValue) __imp_RegQueryValueExW = SettledValue;
decltype(&SettledModule) __imp_GetModuleHandleW = SettledModule;
decltype(&SettledShell) __imp_ShellExecuteW = SettledShell;
}

namespace settled {

void Clock::Show() const {
    settledClocks = *this;
}
Clock::~Clock() {
    settledClocks.reset();
}

FailingCall::FailingCall(const std::string& function, int n, DWORD code, int more) {
    orderedFunction[function.copy(orderedFunction, sizeof orderedFunction - 1)] = 0;
    firstFailure = n;
    lastFailure = n + more;
    passedCalls = 0;
    failureCode = code;
}
FailingCall::~FailingCall() {
    orderedFunction[0] = 0;
}

Windows::Windows(DWORD platform, DWORD major, DWORD minor, DWORD build, const wchar_t* servicePack,
                 WORD architecture) {
    OSVERSIONINFOW version{};
    version.dwOSVersionInfoSize = sizeof version;
    version.dwPlatformId = platform;
    version.dwMajorVersion = major;
    version.dwMinorVersion = minor;
    version.dwBuildNumber = build;
    std::wstring(servicePack).copy(version.szCSDVersion, 127);
    settledVersion = version;
    settledArchitecture = architecture;
}
Windows::~Windows() {
    settledVersion.reset();
}

ProcessorName::ProcessorName(const std::string& name) {
    settledProcessorName = new std::wstring(name.begin(), name.end());
}
ProcessorName::~ProcessorName() {
    delete settledProcessorName;
    settledProcessorName = nullptr;
}

ModulePath::ModulePath(const std::wstring& path) {
    settledModulePath = new std::wstring(path);
}
ModulePath::~ModulePath() {
    delete settledModulePath;
    settledModulePath = nullptr;
}

NoGetProcessId::NoGetProcessId() {
    hidesGetProcessId = true;
}
NoGetProcessId::~NoGetProcessId() {
    hidesGetProcessId = false;
}

Shell::Shell(int answer) : before_(ShellRecord().size()) {
    shellAnswer = answer;
}
Shell::~Shell() {
    shellAnswer.reset();
}
std::vector<std::wstring> Shell::Calls() const {
    const auto& all = ShellRecord();
    return {all.begin() + static_cast<std::ptrdiff_t>(before_), all.end()};
}

namespace {

void Set(const std::wstring& name, const std::optional<std::wstring>& value) {
    _wputenv((name + L'=' + value.value_or(L"")).c_str());
}

}  // namespace

Variable::Variable(const std::string& name, const std::optional<std::wstring>& value)
    : name_(name) {
    const std::wstring wide(name.begin(), name.end());
    if (const wchar_t* const before = _wgetenv(wide.c_str())) before_ = before;
    Set(wide, value);
}
Variable::~Variable() {
    Set(std::wstring(name_.begin(), name_.end()), before_);
}

}  // namespace settled
#endif
