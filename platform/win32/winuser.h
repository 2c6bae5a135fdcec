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

/// Records the box and gives the answer that `Headless.h` has been told, IDOK if none.
int MessageBoxW(HWND owner, LPCWSTR text, LPCWSTR title, UINT type);
#define MessageBox MessageBoxW
#define MessageBoxEx MessageBoxExW
