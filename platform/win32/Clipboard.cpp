#include <cstdlib>

#include "Faults.h"
#include "windows.h"

namespace {

// Used by one thread, as the library's own use of it is.
bool isOpen = false;
HGLOBAL content = nullptr;

BOOL FailUnlessOpen() {
    if (isOpen) return TRUE;
    SetLastError(ERROR_CLIPBOARD_NOT_OPEN);
    return FALSE;
}

}  // namespace

HGLOBAL GlobalAlloc(UINT /*flags*/, SIZE_T bytes) {
    return posix::Refused("GlobalAlloc") ? nullptr : std::malloc(bytes == 0 ? 1 : bytes);
}

HGLOBAL GlobalFree(HGLOBAL memory) {
    std::free(memory);
    return nullptr;
}

LPVOID GlobalLock(HGLOBAL memory) {
    return posix::Refused("GlobalLock") ? nullptr : memory;
}

BOOL GlobalUnlock(HGLOBAL /*memory*/) {
    SetLastError(ERROR_SUCCESS);
    return FALSE;
}

BOOL OpenClipboard(HWND /*owner*/) {
    if (posix::Refused("OpenClipboard")) return FALSE;
    if (isOpen) {
        SetLastError(ERROR_ACCESS_DENIED);
        return FALSE;
    }
    isOpen = true;
    return TRUE;
}

BOOL CloseClipboard() {
    if (!FailUnlessOpen()) return FALSE;
    isOpen = false;
    return TRUE;
}

BOOL EmptyClipboard() {
    if (!FailUnlessOpen()) return FALSE;
    content = GlobalFree(content);
    return TRUE;
}

HANDLE SetClipboardData(UINT format, HANDLE memory) {
    if (posix::Refused("SetClipboardData") || !FailUnlessOpen()) return nullptr;
    if (format != CF_UNICODETEXT) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return nullptr;
    }
    if (content != memory) GlobalFree(content);
    content = memory;
    return memory;
}

HANDLE GetClipboardData(UINT format) {
    if (!FailUnlessOpen() || format != CF_UNICODETEXT) return nullptr;
    return content;
}
