#include "General/SystemInfo.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <regex>

#ifndef _WIN32
#include "HeadlessSystem.h"
#endif
#include "General/Paths.h"
#include "General/WinUtil.h"
#include "tests/General/Settled.h"
#include "tests/General/TestFolder.h"
#include "tests/General/TestKey.h"
#include "tests/datastruct/ArrayFaults.h"

using namespace TamLib;
using test::Std;

namespace {

const wchar_t* const none = nullptr;

TEST(ProcessorInfo, GivesIdentifierNameAndSpeedInThisOrder) {
    const wchar_t* const key = L"HARDWARE\\DESCRIPTION\\SYSTEM\\CentralProcessor\\0";
    const auto value = [key](const wchar_t* name) {
        return Std(RegistryReadString(L"HKLM", key, name));
    };
    CString identifier(L"before");
    CString name(L"before");
    CString speed(L"before");
    ProcessorInfo(identifier, name, speed);
    EXPECT_EQ(identifier.GetString(), value(L"Identifier"));
    EXPECT_EQ(speed.GetString(), value(L"~MHz"));
    const std::wstring whole = value(L"ProcessorNameString");
    EXPECT_EQ(name.GetString(),
              whole.substr(std::min(whole.find_first_not_of(L' '), whole.size())));
    EXPECT_FALSE(name.IsEmpty());
    EXPECT_EQ(std::wstring(speed).find_first_not_of(L"0123456789"), std::wstring::npos);
}

TEST(ProcessorInfo, OnlyTheBlanksInFrontOfTheNameGo) {
    const char* const names[] = {"   A processor  of 2 words  ", "plain", "  ", ""};
    const wchar_t* const told[] = {L"A processor  of 2 words  ", L"plain", L"", L""};
    for (int i = 0; i < 4; ++i) {
        const settled::ProcessorName processor(names[i]);
        CString identifier;
        CString name;
        CString speed;
        ProcessorInfo(identifier, name, speed);
        EXPECT_EQ(name, told[i]);
    }
}

TEST(ProcessorInfo, WhatIsNotToldIsEmpty) {
    const settled::FailingCall failing("RegOpenKeyExW", 1, ERROR_ACCESS_DENIED, 2);
    CString identifier(L"before");
    CString name(L"before");
    CString speed(L"before");
    ProcessorInfo(identifier, name, speed);
    EXPECT_EQ(identifier, L"");
    EXPECT_EQ(name, L"");
    EXPECT_EQ(speed, L"");
}

TEST(SystemErrorText, IsOnOneLine) {
    for (const DWORD code : {0u, 2u, 5u, 234u}) {
        const std::wstring text = Std(SystemErrorText(code));
        EXPECT_FALSE(text.empty());
        EXPECT_EQ(text.find_first_of(L"\r\n"), std::wstring::npos);
    }
    EXPECT_NE(Std(SystemErrorText(2)), Std(SystemErrorText(5)));
    EXPECT_EQ(SystemErrorText(0x2FFFFFFF).count, 0u);
}

TEST(OsName, EveryRowOfTheTable) {
    const struct {
        DWORD platform, major, minor;
        const wchar_t *text, *word;
    } rows[] = {
        {0, 3, 1, L"Microsoft\u00AE Windows 3.1(TM) 3.1 (build 42) SP x", L"win32s"},
        {0, 9, 9, L"Microsoft\u00AE Windows 3.1(TM) 9.9 (build 42) SP x", L"win32s"},
        {1, 4, 0, L"Microsoft\u00AE Windows 95(TM) 4.0 (build 42) SP x", L"win9x"},
        {1, 4, 10, L"Microsoft\u00AE Windows 98(TM) 4.10 (build 42) SP x", L"win9x"},
        {1, 4, 90, L"Microsoft\u00AE Windows Me(TM) 4.90 (build 42) SP x", L"win9x"},
        {1, 4, 1, L"Microsoft\u00AE Windows 9X(unknown) 4.1 build 42 SP x", L"win9x"},
        {1, 5, 91, L"Microsoft\u00AE Windows 9X(unknown) 5.91 build 42 SP x", L"win9x"},
        {2, 3, 51, L"Microsoft\u00AE Windows NT 3.51 (build 42) SP x", L"nt"},
        {2, 4, 0, L"Microsoft\u00AE Windows NT 4.0 (build 42) SP x", L"nt"},
        {2, 5, 0, L"Microsoft\u00AE Windows 2000 5.0 (build 42) SP x", L"nt"},
        {2, 5, 1, L"Microsoft\u00AE Windows XP 5.1 (build 42) SP x", L"nt"},
        {2, 5, 2, L"Microsoft\u00AE Windows XP 5.2 (build 42) SP x", L"nt"},
        {2, 6, 0, L"Microsoft\u00AE Windows Vista 6.0 (build 42) SP x", L"nt"},
        {2, 6, 1, L"Microsoft\u00AE Windows 7 ver 6.1 (build 42) SP x", L"nt"},
        {2, 6, 2, L"Microsoft\u00AE Windows ver 6.2 (build 42) SP x", L"nt"},
        {2, 10, 0, L"Microsoft\u00AE Windows ver 10.0 (build 42) SP x", L"nt"},
        {2, 10, 1, L"Microsoft\u00AE Windows ver 10.1 (build 42) SP x", L"nt"},
        {3, 1, 2, L"Windows (unknown platform 3) 1.2 build 42 SP x", L"unknown"},
        {77, 6, 1, L"Windows (unknown platform 77) 6.1 build 42 SP x", L"unknown"},
    };
    for (const auto& row : rows) {
        const settled::Windows system(row.platform, row.major, row.minor, 42, L"SP x",
                                      PROCESSOR_ARCHITECTURE_INTEL);
        OsVersion version;
        EXPECT_EQ(Std(OsName(&version)), row.text);
        EXPECT_EQ(std::wstring(version.platform), row.word);
        EXPECT_EQ(version.major, static_cast<std::int32_t>(row.major));
        EXPECT_EQ(version.minor, static_cast<std::int32_t>(row.minor));
        EXPECT_EQ(version.build, 42);
        EXPECT_EQ(Std(OsName()), row.text);
    }
}

TEST(OsName, TheNtTextsTellA64BitSystemAndTheOthersDoNot) {
    for (const int architecture : {PROCESSOR_ARCHITECTURE_AMD64, PROCESSOR_ARCHITECTURE_IA64,
                                   PROCESSOR_ARCHITECTURE_ARM64}) {
        const settled::Windows system(2, 6, 1, 7601, L"Service Pack 1",
                                      static_cast<WORD>(architecture));
        EXPECT_EQ(Std(OsName()),
                  L"Microsoft\u00AE Windows 7 ver 6.1 (build 7601 64-bit) Service Pack 1");
    }
    const settled::Windows system(1, 4, 10, 1998, L"", PROCESSOR_ARCHITECTURE_AMD64);
    EXPECT_EQ(Std(OsName()), L"Microsoft\u00AE Windows 98(TM) 4.10 (build 1998) ");
}

TEST(OsName, ASystemThatDoesNotTellIsUnknown) {
    const settled::FailingCall failing("GetVersionExW", 1, ERROR_ACCESS_DENIED, 1);
    OsVersion version;
    version.major = 9;
    EXPECT_EQ(Std(OsName(&version)), L"<unable to retrieve OS information>");
    EXPECT_EQ(std::wstring(version.platform), L"unknown");
    EXPECT_EQ(version.major, 0);
    EXPECT_EQ(Std(OsName()), L"<unable to retrieve OS information>");
}

TEST(OsName, TheRunningSystemIsOfTheNtKind) {
    OsVersion version;
    EXPECT_TRUE(std::regex_match(
        Std(OsName(&version)),
        std::wregex(L"Microsoft\u00AE Windows .*\\d+\\.\\d+ \\(build \\d+( 64-bit)?\\) .*")));
    EXPECT_EQ(std::wstring(version.platform), L"nt");
    EXPECT_GE(version.major, 5);
}

// A file that has a version resource: natively told to the headless system.
class VersionedFile {
  public:
#ifdef _WIN32
    static std::wstring Path() {
        return L"kernel32.dll";
    }
    static std::wstring Pattern() {
        return L"\\d+\\.\\d+\\.\\d+\\.\\d+";
    }
#else
    VersionedFile() {
        VS_FIXEDFILEINFO version{};
        version.dwFileVersionMS = 0x0001FFFF;
        version.dwFileVersionLS = 0x00030004;
        version.dwProductVersionMS = 0x00050006;
        version.dwProductVersionLS = 0x00070008;
        headless::SetFileVersion(Path(), version);
    }
    ~VersionedFile() {
        headless::SetFileVersion(Path(), std::nullopt);
    }
    VersionedFile(const VersionedFile&) = delete;
    VersionedFile& operator=(const VersionedFile&) = delete;
    static std::wstring Path() {
        return L"some.dll";
    }
#endif
};

TEST(FileVersion, HasFourNumbers) {
    [[maybe_unused]] const VersionedFile file{};
    const std::wstring own = Std(FileVersion(VersionedFile::Path().c_str()));
    const std::wstring product = Std(ModuleVersion(VersionedFile::Path().c_str()));
#ifdef _WIN32
    EXPECT_TRUE(std::regex_match(own, std::wregex(VersionedFile::Pattern())));
    EXPECT_TRUE(std::regex_match(product, std::wregex(VersionedFile::Pattern())));
#else
    EXPECT_EQ(own, L"1.65535.3.4");
    EXPECT_EQ(product, L"5.6.7.8");
#endif
}

TEST(FileVersion, IsEmptyWithoutAResourceAndOnEveryFailure) {
    const test::Folder folder;
    test::WriteBytes(folder / "plain", "no resource");
    for (const auto& path : {folder.Wide(L"plain"), folder.Wide(L"none"), std::wstring()}) {
        EXPECT_EQ(FileVersion(path.c_str()).count, 0u);
        EXPECT_EQ(ModuleVersion(path.c_str()).count, 0u);
    }
    EXPECT_EQ(FileVersion(none).count, 0u);
    EXPECT_EQ(ModuleVersion(none).count, 0u);
    [[maybe_unused]] const VersionedFile file{};
    const auto version = [] { return FileVersion(VersionedFile::Path().c_str()).count; };
    for (const char* call : {"GetFileVersionInfoW", "VerQueryValueW"}) {
        const settled::FailingCall failing(call);
        EXPECT_EQ(version(), 0u);
    }
    test::MemoryFaults memory;
    memory.Fail(test::Request::allocate, 1);
    EXPECT_EQ(version(), 0u);
    EXPECT_GT(version(), 0u);
}

std::optional<std::wstring> Pasted() {
    const std::unique_ptr<wchar_t, decltype(&std::free)> text(PasteFromClipboard(), std::free);
    return text ? std::optional<std::wstring>(text.get()) : std::nullopt;
}

TEST(Clipboard, GivesBackWhatWasCopied) {
    for (const std::wstring& text :
         {std::wstring(L"text"), std::wstring(), std::wstring(L"\u00E4\u00F6 \u20AC\r\nline"),
          std::wstring(100000, L'x')}) {
        EXPECT_TRUE(CopyToClipboard(text.c_str()));
        EXPECT_EQ(Pasted(), text);
        EXPECT_EQ(Pasted(), text);  // it stays there
    }
    EXPECT_TRUE(CopyToClipboard(none));
    EXPECT_EQ(Pasted(), L"");
}

TEST(Clipboard, AFailureIsToldAndLeavesTheClipboardClosed) {
    for (const char* call : {"OpenClipboard", "GlobalAlloc", "GlobalLock", "SetClipboardData"}) {
        {
            const settled::FailingCall failing(call);
            EXPECT_FALSE(CopyToClipboard(L"x")) << call;
        }
        EXPECT_TRUE(CopyToClipboard(L"again")) << call;
    }
    for (const char* call : {"OpenClipboard", "GlobalLock"}) {
        {
            const settled::FailingCall failing(call);
            EXPECT_EQ(Pasted(), std::nullopt) << call;
        }
        EXPECT_EQ(Pasted(), L"again") << call;
    }
}

TEST(Clipboard, AnEmptyClipboardGivesNull) {
    ASSERT_TRUE(OpenClipboard(nullptr));
    EmptyClipboard();
    CloseClipboard();
    EXPECT_EQ(Pasted(), std::nullopt);
}

std::vector<UINT> taken;

LRESULT CALLBACK Take(HWND window, UINT message, WPARAM first, LPARAM second) {
    if (message < WM_APP) return 0;
    taken.push_back(message);
    if (message == WM_APP + 1) PostMessageW(window, WM_APP + 9, first, second);
    return 0;
}

TEST(PumpMessages, HandsOutAllThatWaitAndWhatComesMeanwhile) {
    const HWND window = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr,
                                        nullptr, nullptr);
    ASSERT_NE(window, nullptr);
    SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Take));
    taken.clear();
    PumpMessages();  // what the window's making has left
    taken.clear();
    for (const UINT message : {0u, 1u, 2u}) PostMessageW(window, WM_APP + message, 0, 0);
    PostThreadMessageW(GetCurrentThreadId(), WM_APP + 5, 0, 0);  // of no window: nobody takes it
    PumpMessages();
    EXPECT_EQ(taken, (std::vector<UINT>{WM_APP, WM_APP + 1, WM_APP + 2, WM_APP + 9}));
    MSG message{};
    EXPECT_FALSE(PeekMessageW(&message, nullptr, WM_APP, 0xBFFF, PM_NOREMOVE));
    DestroyWindow(window);
    PumpMessages();
}

TEST(Screen, HasASizeAndADepth) {
    const SIZE size = ScreenSize();
    EXPECT_EQ(size.cx, GetSystemMetrics(SM_CXSCREEN));
    EXPECT_EQ(size.cy, GetSystemMetrics(SM_CYSCREEN));
    EXPECT_GT(size.cx, 0);
    EXPECT_GT(size.cy, 0);
    EXPECT_GT(ScreenColorDepth(), 0);
    const settled::FailingCall failing("GetDC");
    EXPECT_EQ(ScreenColorDepth(), 0);
}

#ifndef _WIN32
TEST(Screen, NativelyAnyScreenCanBeSettled) {
    headless::SetScreen(640, 480, 8);
    EXPECT_EQ(ScreenSize().cx, 640);
    EXPECT_EQ(ScreenSize().cy, 480);
    EXPECT_EQ(ScreenColorDepth(), 8);
    headless::SetScreen(1024, 768, 32);
}
#endif

TEST(ProcessId, IsFoundByEitherFunction) {
    EXPECT_EQ(ProcessId(GetCurrentProcess()), GetCurrentProcessId());
    const settled::NoGetProcessId older;
    EXPECT_EQ(ProcessId(GetCurrentProcess()), GetCurrentProcessId());
}

TEST(ProcessId, IsZeroForWhatIsNoProcess) {
    const HANDLE noProcess = reinterpret_cast<HANDLE>(static_cast<ULONG_PTR>(0x76543210));
    EXPECT_EQ(ProcessId(noProcess), 0u);
    const settled::NoGetProcessId older;
    EXPECT_EQ(ProcessId(noProcess), 0u);
}

TEST(ShellOpen, OpensAndTellsWhetherItWasStarted) {
    for (const int answer : {33, 42, 32, 2, 0}) {
        const settled::Shell shell(answer);
        EXPECT_EQ(ShellOpen(L"c:\\some file.txt"), answer > 32);
        EXPECT_EQ(shell.Calls(), std::vector<std::wstring>{L"open c:\\some file.txt"});
    }
    const settled::Shell shell(2);
    EXPECT_FALSE(ShellOpen(none));
    EXPECT_EQ(shell.Calls(), std::vector<std::wstring>{L"open "});
}

}  // namespace
