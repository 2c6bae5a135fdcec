#include <algorithm>
#include <deque>
#include <map>
#include <mutex>

#include "windows.h"

namespace {

struct Messages {
    std::mutex guard;
    std::map<DWORD, std::deque<MSG>> waiting;  // by thread
    std::map<HWND, WNDPROC> procedures;
};

Messages& TheMessages() {
    static auto* const messages = new Messages;
    return *messages;
}

void Post(DWORD thread, const MSG& message) {
    const std::lock_guard<std::mutex> lock(TheMessages().guard);
    TheMessages().waiting[thread].push_back(message);
}

}  // namespace

BOOL PostMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (window != nullptr && !IsWindow(window)) {
        SetLastError(ERROR_INVALID_WINDOW_HANDLE);
        return FALSE;
    }
    Post(GetCurrentThreadId(), {window, message, wParam, lParam, timeGetTime(), {}});
    return TRUE;
}

BOOL PostThreadMessageW(DWORD thread, UINT message, WPARAM wParam, LPARAM lParam) {
    Post(thread, {nullptr, message, wParam, lParam, timeGetTime(), {}});
    return TRUE;
}

BOOL PeekMessageW(MSG* message, HWND window, UINT first, UINT last, UINT remove) {
    const std::lock_guard<std::mutex> lock(TheMessages().guard);
    std::deque<MSG>& waiting = TheMessages().waiting[GetCurrentThreadId()];
    const auto wanted = [=](const MSG& candidate) {
        const bool inRange =
            (first == 0 && last == 0) || (candidate.message >= first && candidate.message <= last);
        return inRange && (window == nullptr || candidate.hwnd == window);
    };
    const auto found = std::find_if(waiting.begin(), waiting.end(), wanted);
    if (found == waiting.end()) return FALSE;
    *message = *found;
    if ((remove & PM_REMOVE) != 0) waiting.erase(found);
    return TRUE;
}

BOOL TranslateMessage(const MSG* /*message*/) {
    return FALSE;
}

LRESULT DispatchMessageW(const MSG* message) {
    WNDPROC procedure = nullptr;
    {
        const std::lock_guard<std::mutex> lock(TheMessages().guard);
        const auto found = TheMessages().procedures.find(message->hwnd);
        if (found != TheMessages().procedures.end() && IsWindow(message->hwnd))
            procedure = found->second;
    }
    if (procedure == nullptr) return 0;
    return procedure(message->hwnd, message->message, message->wParam, message->lParam);
}

LONG_PTR SetWindowLongPtrW(HWND window, int index, LONG_PTR value) {
    if (!IsWindow(window) || index != GWLP_WNDPROC) {
        SetLastError(IsWindow(window) ? ERROR_INVALID_PARAMETER : ERROR_INVALID_WINDOW_HANDLE);
        return 0;
    }
    const std::lock_guard<std::mutex> lock(TheMessages().guard);
    WNDPROC& procedure = TheMessages().procedures[window];
    const auto before = reinterpret_cast<LONG_PTR>(procedure);
    procedure = reinterpret_cast<WNDPROC>(value);
    return before;
}
