// Messages that wait for a thread and the procedures of windows that take them.
#pragma once

#include "windef.h"

#define PM_NOREMOVE 0x0u
#define PM_REMOVE 0x1u
#define WM_QUIT 0x12u
#define WM_USER 0x400u
#define WM_APP 0x8000u
#define GWLP_WNDPROC (-4)

using WNDPROC = LRESULT (*)(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

struct MSG {
    HWND hwnd;
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
    DWORD time;
    POINT pt;
};

// Puts a message behind those that wait for the calling thread; for null, a message of no window.
BOOL PostMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
// The same for another thread by its number. A number that no thread has is not noticed.
BOOL PostThreadMessageW(DWORD thread, UINT message, WPARAM wParam, LPARAM lParam);
// The first message that waits for this thread, for `window` alone unless that is null, and with a
// number from `first` to `last` unless both are 0; PM_REMOVE takes it away. FALSE when none waits.
BOOL PeekMessageW(MSG* message, HWND window, UINT first, UINT last, UINT remove);
// Nothing to translate: FALSE.
BOOL TranslateMessage(const MSG* message);
// Calls the procedure of the message's window; 0 when it has none.
LRESULT DispatchMessageW(const MSG* message);
// Replaces the procedure of a window (GWLP_WNDPROC, the only index known); the one before, 0 when
// it had none.
LONG_PTR SetWindowLongPtrW(HWND window, int index, LONG_PTR value);
