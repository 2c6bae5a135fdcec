// Windows without a screen, and what belongs to a loaded module: its handle and its texts.
#include <dlfcn.h>

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "Headless.h"

namespace {

// Windows belong to the main thread, as the library's own use of them does; there is no lock.
struct Desktop {
    std::set<HWND> windows;
    HWND focus = nullptr;
    std::uintptr_t lastHandle = 0x10000;
    std::vector<HWND> focusCalls;
    std::map<std::pair<HINSTANCE, UINT>, std::wstring> strings;
};

// Never destroyed: modules and windows end after every other static object.
Desktop& TheDesktop() {
    static auto* const desktop = new Desktop;
    return *desktop;
}

}  // namespace

HWND CreateWindowExW(DWORD /*extendedStyle*/, LPCWSTR className, LPCWSTR /*title*/, DWORD /*style*/,
                     int /*x*/, int /*y*/, int /*width*/, int /*height*/, HWND /*parent*/,
                     HMENU /*menuOrId*/, HINSTANCE /*instance*/, LPVOID /*parameter*/) {
    if (className == nullptr || *className == L'\0') {
        SetLastError(ERROR_CANNOT_FIND_WND_CLASS);
        return nullptr;
    }
    Desktop& desktop = TheDesktop();
    desktop.lastHandle += 2;  // a handle is not used again
    const HWND window = reinterpret_cast<HWND>(desktop.lastHandle);
    desktop.windows.insert(window);
    return window;
}

BOOL DestroyWindow(HWND window) {
    Desktop& desktop = TheDesktop();
    if (desktop.windows.erase(window) == 0) {
        SetLastError(ERROR_INVALID_WINDOW_HANDLE);
        return FALSE;
    }
    if (desktop.focus == window) desktop.focus = nullptr;
    return TRUE;
}

BOOL IsWindow(HWND window) {
    return TheDesktop().windows.count(window) != 0 ? TRUE : FALSE;
}

HWND SetFocus(HWND window) {
    Desktop& desktop = TheDesktop();
    desktop.focusCalls.push_back(window);
    if (window != nullptr && !IsWindow(window)) {
        SetLastError(ERROR_INVALID_WINDOW_HANDLE);
        return nullptr;
    }
    return std::exchange(desktop.focus, window);
}

HWND GetFocus() {
    return TheDesktop().focus;
}

int LoadStringW(HINSTANCE module, UINT id, LPWSTR buffer, int size) {
    if (size <= 0) return 0;
    const auto& strings = TheDesktop().strings;
    const auto found = strings.find({module, id});
    std::size_t length = 0;
    if (found != strings.end()) {
        length = std::min(found->second.size(), static_cast<std::size_t>(size) - 1);
        std::copy_n(found->second.c_str(), length, buffer);
    }
    buffer[length] = L'\0';
    return static_cast<int>(length);
}

BOOL GetModuleHandleExW(DWORD flags, LPCWSTR addressOrName, HMODULE* module) {
    *module = nullptr;
    constexpr DWORD kKnown =
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    if (flags != kKnown) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    Dl_info info{};
    if (dladdr(addressOrName, &info) == 0) {
        SetLastError(ERROR_MOD_NOT_FOUND);
        return FALSE;
    }
    *module = reinterpret_cast<HMODULE>(info.dli_fbase);
    return TRUE;
}

namespace headless {

std::vector<HWND> FocusCalls() {
    return TheDesktop().focusCalls;
}

void ForgetFocusCalls() {
    TheDesktop().focusCalls.clear();
}

void SetStringResource(HINSTANCE module, UINT id, const std::wstring& text) {
    if (text.empty()) {
        TheDesktop().strings.erase({module, id});
    } else {
        TheDesktop().strings[{module, id}] = text;
    }
}

}  // namespace headless
