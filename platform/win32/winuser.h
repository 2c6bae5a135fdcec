// Windows and messages, headless: nothing is shown and nothing waits.
#pragma once

#include "windef.h"

#define IDOK 1
#define IDCANCEL 2
#define IDABORT 3
#define IDRETRY 4
#define IDIGNORE 5
#define IDYES 6
#define IDNO 7

#define MB_OK 0x0u
#define MB_OKCANCEL 0x1u
#define MB_YESNOCANCEL 0x3u
#define MB_YESNO 0x4u
#define MB_ICONSTOP 0x10u
#define MB_ICONQUESTION 0x20u
#define MB_ICONEXCLAMATION 0x30u
#define MB_ICONINFORMATION 0x40u

// Records the box and gives the answer that `Headless.h` has been told, IDOK if none.
int MessageBoxW(HWND owner, LPCWSTR text, LPCWSTR title, UINT type);
#define MessageBox MessageBoxW
#define MessageBoxEx MessageBoxExW

#define WS_OVERLAPPEDWINDOW 0x00CF0000u
#define WS_POPUP 0x80000000u
#define WS_CHILD 0x40000000u
#define WS_VISIBLE 0x10000000u

// Makes a window that is never shown. `className` has to be given: null
// or an empty name is refused (null, last error 1407). The other arguments are accepted.
HWND CreateWindowExW(DWORD extendedStyle, LPCWSTR className, LPCWSTR title, DWORD style, int x,
                     int y, int width, int height, HWND parent, HMENU menuOrId, HINSTANCE instance,
                     LPVOID parameter);
// FALSE (last error 1400) when it is no window. The focus goes with the window.
BOOL DestroyWindow(HWND window);
BOOL IsWindow(HWND window);

// Gives the focus to the window, or takes it away for null; the window that had it, null when none
// had or `window` is no window (last error 1400). Each call is recorded in `Headless.h`.
HWND SetFocus(HWND window);
HWND GetFocus();

// Copies the text of a string resource with a terminator, cut to `size` - 1 characters, and gives
// the number of characters copied; 0, with an empty text, when the module has no such resource.
// Modules have no resources here but those that `Headless.h` has been told.
int LoadStringW(HINSTANCE module, UINT id, LPWSTR buffer, int size);
