// Opening files with the programs that belong to them.
#pragma once

#include "windef.h"

#define SW_SHOWNORMAL 1

// Starts nothing: the call is recorded in `HeadlessSystem.h`, and the answer is the one that was
// settled there, above 32 for success.
HINSTANCE ShellExecuteW(HWND owner, LPCWSTR verb, LPCWSTR file, LPCWSTR parameters, LPCWSTR folder,
                        int show);
