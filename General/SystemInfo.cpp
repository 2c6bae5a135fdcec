#include "General/SystemInfo.h"

#include <cstring>
#include <iterator>

#include <tchar.h>

#include "General/HeapBlock.h"
#include "General/WinUtil.h"
#include "tam/SystemMessage.h"

namespace TamLib {
namespace {

using Text = StringBase<wchar_t>;

CString ProcessorFact(const wchar_t* name) {
    return RegistryReadString(L"HKEY_LOCAL_MACHINE",
                              L"HARDWARE\\DESCRIPTION\\SYSTEM\\CentralProcessor\\0", name)
        .ToCString();
}

// A row of the names of systems: texts take the version, the build, the width where there is one,
// and the service pack.
struct SystemName {
    DWORD platform;
    bool (*matches)(DWORD major, DWORD minor);
    const wchar_t* format;
};

bool Any(DWORD /*major*/, DWORD /*minor*/) {
    return true;
}

constexpr DWORD kPlatformWin32s = 0;
constexpr DWORD kPlatform9x = 1;
constexpr DWORD kPlatformNt = 2;

// The first row that matches holds. Intended: no brackets round the build of an unknown 9x.
constexpr SystemName kSystemNames[] = {
    {kPlatformWin32s, Any, L"Microsoft\u00AE Windows 3.1(TM) %i.%i (build %i) %s"},
    {kPlatform9x, [](DWORD, DWORD minor) { return minor == 0; },
     L"Microsoft\u00AE Windows 95(TM) %i.%i (build %i) %s"},
    {kPlatform9x, [](DWORD, DWORD minor) { return minor == 10; },
     L"Microsoft\u00AE Windows 98(TM) %i.%i (build %i) %s"},
    {kPlatform9x, [](DWORD, DWORD minor) { return minor == 90; },
     L"Microsoft\u00AE Windows Me(TM) %i.%i (build %i) %s"},
    {kPlatform9x, Any, L"Microsoft\u00AE Windows 9X(unknown) %i.%i build %i %s"},
    {kPlatformNt, [](DWORD major, DWORD) { return major < 5; },
     L"Microsoft\u00AE Windows NT %i.%i (build %i%s) %s"},
    {kPlatformNt, [](DWORD major, DWORD minor) { return major == 5 && minor == 0; },
     L"Microsoft\u00AE Windows 2000 %i.%i (build %i%s) %s"},
    {kPlatformNt, [](DWORD major, DWORD) { return major == 5; },
     L"Microsoft\u00AE Windows XP %i.%i (build %i%s) %s"},
    {kPlatformNt, [](DWORD major, DWORD minor) { return major == 6 && minor == 0; },
     L"Microsoft\u00AE Windows Vista %i.%i (build %i%s) %s"},
    {kPlatformNt, [](DWORD major, DWORD minor) { return major == 6 && minor == 1; },
     L"Microsoft\u00AE Windows 7 ver %i.%i (build %i%s) %s"},
    {kPlatformNt, Any, L"Microsoft\u00AE Windows ver %i.%i (build %i%s) %s"},
};

const wchar_t* PlatformWord(DWORD platform) {
    constexpr const wchar_t* kWords[] = {L"win32s", L"win9x", L"nt"};
    return platform < std::size(kWords) ? kWords[platform] : L"unknown";
}

const wchar_t* WidthText() {
    SYSTEM_INFO system{};
    GetNativeSystemInfo(&system);
    switch (system.wProcessorArchitecture) {
        case PROCESSOR_ARCHITECTURE_AMD64:
        case PROCESSOR_ARCHITECTURE_IA64:
        case PROCESSOR_ARCHITECTURE_ARM64:
            return L" 64-bit";
        default:
            return L"";
    }
}

bool AskVersion(OSVERSIONINFOW& system) {
    system.dwOSVersionInfoSize = sizeof system;
#if defined(_MSC_VER)
#pragma warning(suppress : 4996)  // the text is made from what this call gives
#endif
    return GetVersionExW(&system) != FALSE;
}

Text NameOfSystem(const OSVERSIONINFOW& system, const OsVersion& version) {
    Text text;
    for (const SystemName& row : kSystemNames) {
        if (row.platform != system.dwPlatformId ||
            !row.matches(system.dwMajorVersion, system.dwMinorVersion))
            continue;
        if (row.platform == kPlatformNt) {
            text.Format(row.format, version.major, version.minor, version.build, WidthText(),
                        system.szCSDVersion);
        } else {
            text.Format(row.format, version.major, version.minor, version.build,
                        system.szCSDVersion);
        }
        return text;
    }
    text.Format(L"Windows (unknown platform %i) %i.%i build %i %s",
                static_cast<std::int32_t>(system.dwPlatformId), version.major, version.minor,
                version.build, system.szCSDVersion);
    return text;
}

// Fills in the fixed part of a file's version resource; false when there is none.
bool FixedVersion(const wchar_t* path, VS_FIXEDFILEINFO& version) {
    if (path == nullptr) return false;
    DWORD ignored = 0;
    const DWORD size = GetFileVersionInfoSizeW(path, &ignored);
    if (size == 0) return false;
    const HeapBlock block(size);
    void* fixed = nullptr;
    UINT length = 0;
    if (block.As() == nullptr || GetFileVersionInfoW(path, 0, size, block.As()) == FALSE ||
        VerQueryValueW(block.As(), L"\\", &fixed, &length) == FALSE || length < sizeof version)
        return false;
    std::memcpy(&version, fixed, sizeof version);
    return true;
}

Text VersionText(DWORD upper, DWORD lower) {
    Text text;
    text.Format(L"%i.%i.%i.%i", static_cast<std::int32_t>(upper >> 16),
                static_cast<std::int32_t>(upper & 0xFFFF), static_cast<std::int32_t>(lower >> 16),
                static_cast<std::int32_t>(lower & 0xFFFF));
    return text;
}

// The clipboard, open for as long as this lives.
class OpenedClipboard {
  public:
    OpenedClipboard() : open_(OpenClipboard(nullptr) != FALSE) {}
    ~OpenedClipboard() {
        if (open_) CloseClipboard();
    }
    OpenedClipboard(const OpenedClipboard&) = delete;
    OpenedClipboard& operator=(const OpenedClipboard&) = delete;

    bool IsOpen() const { return open_; }

  private:
    bool open_;
};

// The text in memory as the clipboard takes it; null when there is no memory.
HGLOBAL SharedCopy(const wchar_t* text) {
    const std::size_t bytes = (std::wcslen(text) + 1) * sizeof(wchar_t);
    const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, bytes);
    if (memory == nullptr) return nullptr;
    void* const target = GlobalLock(memory);
    if (target == nullptr) {
        GlobalFree(memory);
        return nullptr;
    }
    std::memcpy(target, text, bytes);
    GlobalUnlock(memory);
    return memory;
}

// A function of a system module by its name, null when it has none.
template <class Function>
Function* SystemFunction(const wchar_t* module, const char* name) {
    const HMODULE handle = GetModuleHandleW(module);
    if (handle == nullptr) return nullptr;
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(handle, name)));
}

// What ntdll reports about a process for class 0.
struct ProcessBasicInformation {
    void* before[4];
    ULONG_PTR uniqueProcessId;
    void* behind;
};

DWORD ProcessIdByQuery(HANDLE process) {
    using QueryFunction = LONG WINAPI(HANDLE, int, void*, ULONG, ULONG*);
    auto* const query = SystemFunction<QueryFunction>(L"ntdll.dll", "NtQueryInformationProcess");
    ProcessBasicInformation basic{};
    if (query == nullptr || query(process, 0, &basic, sizeof basic, nullptr) < 0) return 0;
    return static_cast<DWORD>(basic.uniqueProcessId);
}

}  // namespace

void ProcessorInfo(CString& identifier, CString& name, CString& speed) {
    name = ProcessorFact(L"ProcessorNameString");
    const wchar_t* text = name.GetString();
    while (*text == L' ') ++text;
    name = CString(text);
    speed = ProcessorFact(L"~MHz");
    identifier = ProcessorFact(L"Identifier");
}

Text SystemErrorText(DWORD code) {
    const SystemMessage text(code);
    return Text(text.Text());
}

Text OsName(OsVersion* version) {
    OSVERSIONINFOW system{};
    OsVersion unasked;
    OsVersion& found = version != nullptr ? *version : unasked;
    found = OsVersion();
    if (!AskVersion(system)) return Text(L"<unable to retrieve OS information>");
    found.major = static_cast<std::int32_t>(system.dwMajorVersion);
    found.minor = static_cast<std::int32_t>(system.dwMinorVersion);
    found.build = static_cast<std::int32_t>(system.dwBuildNumber);
    found.platform = PlatformWord(system.dwPlatformId);
    return NameOfSystem(system, found);
}

Text FileVersion(const wchar_t* path) {
    VS_FIXEDFILEINFO version{};
    if (!FixedVersion(path, version)) return {};
    return VersionText(version.dwFileVersionMS, version.dwFileVersionLS);
}

Text ModuleVersion(const wchar_t* path) {
    VS_FIXEDFILEINFO version{};
    if (!FixedVersion(path, version)) return {};
    return VersionText(version.dwProductVersionMS, version.dwProductVersionLS);
}

bool CopyToClipboard(const wchar_t* text) {
    const OpenedClipboard clipboard;
    if (!clipboard.IsOpen() || EmptyClipboard() == FALSE) return false;
    const HGLOBAL memory = SharedCopy(text != nullptr ? text : L"");
    if (memory == nullptr) return false;
    if (SetClipboardData(CF_UNICODETEXT, memory) != nullptr) return true;
    GlobalFree(memory);
    return false;
}

wchar_t* PasteFromClipboard() {
    const OpenedClipboard clipboard;
    if (!clipboard.IsOpen()) return nullptr;
    const HANDLE memory = GetClipboardData(CF_UNICODETEXT);
    if (memory == nullptr) return nullptr;
    const auto* const text = static_cast<const wchar_t*>(GlobalLock(memory));
    if (text == nullptr) return nullptr;
    wchar_t* const copy = _wcsdup(text);
    GlobalUnlock(memory);
    return copy;
}

void PumpMessages() {
    MSG message{};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

SIZE ScreenSize() {
    return {GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
}

int ScreenColorDepth() {
    const HDC screen = GetDC(nullptr);
    if (screen == nullptr) return 0;
    const int depth = GetDeviceCaps(screen, BITSPIXEL) * GetDeviceCaps(screen, PLANES);
    ReleaseDC(nullptr, screen);
    return depth;
}

DWORD ProcessId(HANDLE process) {
    using IdFunction = DWORD WINAPI(HANDLE);
    auto* const id = SystemFunction<IdFunction>(L"kernel32.dll", "GetProcessId");
    return id != nullptr ? id(process) : ProcessIdByQuery(process);
}

bool ShellOpen(const wchar_t* path) {
    const HINSTANCE answer = ShellExecuteW(nullptr, L"open", path != nullptr ? path : L"", nullptr,
                                           nullptr, SW_SHOWNORMAL);
    return reinterpret_cast<INT_PTR>(answer) > 32;
}

}  // namespace TamLib
