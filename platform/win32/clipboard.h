// The clipboard, kept by this process alone, and the memory that goes through it.
#pragma once

#include "windef.h"

#define CF_UNICODETEXT 13u
#define GMEM_MOVEABLE 0x2u

HGLOBAL GlobalAlloc(UINT flags, SIZE_T bytes);
HGLOBAL GlobalFree(HGLOBAL memory);
LPVOID GlobalLock(HGLOBAL memory);
BOOL GlobalUnlock(HGLOBAL memory);

// FALSE (last error 5) when it is open already.
BOOL OpenClipboard(HWND owner);
BOOL CloseClipboard();
BOOL EmptyClipboard();
// Hands the memory over: it belongs to the clipboard afterwards. Only CF_UNICODETEXT is known.
// Null when the clipboard is not open (last error 1418); the memory stays the caller's then.
HANDLE SetClipboardData(UINT format, HANDLE memory);
// What is there; it stays the clipboard's. Null when there is nothing.
HANDLE GetClipboardData(UINT format);
