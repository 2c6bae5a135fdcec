// Facts about the machine and small services of the system: processor, versions,
// clipboard, screen, processes. Failures are false, 0, null or an empty text; nothing is
// raised but a string's TamExpNoMem.
#pragma once

#include <windows.h>

#include "datastruct/String.h"

namespace TamLib {

// What the registry holds about the first processor: "Identifier", "ProcessorNameString" without
// the blanks in front, and "~MHz". What it lacks is empty.
void ProcessorInfo(CString& identifier, CString& name, CString& speed);

// The system's text of an error code on one line; empty for an unknown code.
StringBase<wchar_t> SystemErrorText(DWORD code);

// What OsName gives besides its text.
struct OsVersion {
    std::int32_t major = 0;
    std::int32_t minor = 0;
    std::int32_t build = 0;
    const wchar_t* platform = L"unknown";  // "win32s", "win9x", "nt" or "unknown"
};

// The system's name, such as "Microsoft® Windows 7 ver 6.1 (build 7601 64-bit) Service Pack 1".
// "<unable to retrieve OS information>" when it does not give one; the version holds zeros and
// "unknown" then. `version` may be null.
StringBase<wchar_t> OsName(OsVersion* version = nullptr);

// "1.2.3.4": the version of a file itself, or of the product that a module comes with, from the
// file's version resource; empty without one.
StringBase<wchar_t> FileVersion(const wchar_t* path);
StringBase<wchar_t> ModuleVersion(const wchar_t* path);

// Makes the text the content of the clipboard; null is the empty text. When false the clipboard may
// have been emptied.
bool CopyToClipboard(const wchar_t* text);
// The text on the clipboard in a block that the caller frees with `free`; null when there is none.
wchar_t* PasteFromClipboard();

// Hands all messages that wait for this thread to their windows, until none waits.
void PumpMessages();

// Width and height of the screen in pixels.
SIZE ScreenSize();
// Bits of a pixel of the screen; 0 when there is none.
int ScreenColorDepth();

// The number of the process that a handle stands for; 0 when the system does not give it.
DWORD ProcessId(HANDLE process);

// Opens a file with the program that the user has for it. Whether that was started.
bool ShellOpen(const wchar_t* path);

}  // namespace TamLib
