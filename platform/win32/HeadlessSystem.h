// What a test can see and settle of the system services: failing calls, clocks, versions, files'
// versions, clipboard, screen, shell and modules. Only tests and the embedded host include this; it
// has no counterpart on Windows. Everything holds for the whole process until it is settled anew.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "windows.h"

namespace headless {

// Orders the n-th call from now (from 1), and `more` calls behind it, of one Windows function to
// fail with `code`, which becomes the last error or the result. Each order replaces the one
// before. Functions that can be ordered name themselves in their source.
void FailCall(const std::string& function, int n, DWORD code, int more = 0);
// Takes the order back.
void FailNoCall();

// Clocks that stand where they are put; those without a value are the machine's.
struct Clocks {
    std::optional<DWORD> milliseconds;    // timeGetTime
    std::optional<LONGLONG> counter;      // QueryPerformanceCounter
    std::optional<LONGLONG> frequency;    // QueryPerformanceFrequency
    std::optional<ULONGLONG> userTime;    // GetProcessTimes, in units of 100 ns
    std::optional<ULONGLONG> kernelTime;  // GetProcessTimes, in units of 100 ns
    std::optional<std::int64_t> seconds;  // _time64, since 1970
};
void SetClocks(const Clocks& clocks);

// What GetVersionExW tells; without a value, Windows 6.1 build 7601 "Service Pack 1".
void SetWindowsVersion(const std::optional<OSVERSIONINFOW>& version);
// What GetNativeSystemInfo tells; PROCESSOR_ARCHITECTURE_AMD64 at the start.
void SetProcessorArchitecture(WORD architecture);
// Gives a file a version resource, or takes it away. Files have none here otherwise.
void SetFileVersion(const std::wstring& path, const std::optional<VS_FIXEDFILEINFO>& version);

// The path of every module from now on; without a value, the real ones.
void SetModulePath(const std::optional<std::wstring>& path);
// Hides a function from GetProcAddress, or shows it again.
void HideProcedure(const std::string& name, bool hide);

// The screen that GetSystemMetrics and GetDeviceCaps tell of; 1024 x 768 with 32 bits at the
// start.
void SetScreen(int width, int height, int bitsPerPixel);

// The files given to ShellExecuteW since the start, in order, as "<verb> <file>".
std::vector<std::wstring> ShellCalls();
// What ShellExecuteW gives from now on: above 32 for success; 42 at the start.
void AnswerShellCalls(int result);

// The name of the first processor in the registry; without a value, the machine's.
void SetProcessorName(const std::optional<std::string>& name);

// The file that the registry is kept in: orlinth/registry in the user's configuration folder
// (XDG_CONFIG_HOME, else .config in HOME). Empty when there is no such folder.
std::string RegistryFile();

}  // namespace headless
