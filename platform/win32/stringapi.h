// Text in the system's code page, which is Windows-1252.
#pragma once

#include "windef.h"

#define CP_ACP 0u

// Widens `length` bytes, or all up to and with the terminator for -1. Returns how many characters
// came of them, or with `size` 0 how many would. 0 when the buffer is too small (last error 122),
// for null, for an empty length and for any other code page (87).
int MultiByteToWideChar(UINT codePage, DWORD flags, LPCSTR text, int length, LPWSTR buffer,
                        int size);
