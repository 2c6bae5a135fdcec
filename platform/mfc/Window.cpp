#include <afxwin.h>

#include <map>
#include <memory>

namespace {

struct HandleMaps {
    std::map<HWND, CWnd*> attached;
    std::map<HWND, std::unique_ptr<CWnd>> owned;
};

// Never destroyed: objects of windows may outlive every other static object.
HandleMaps& Maps() {
    static auto* const maps = new HandleMaps;
    return *maps;
}

}  // namespace

CWnd::~CWnd() {
    if (m_hWnd != nullptr && FromHandlePermanent(m_hWnd) == this) DestroyWindow();
}

CWnd* CWnd::FromHandlePermanent(HWND window) {
    const auto found = Maps().attached.find(window);
    return found == Maps().attached.end() ? nullptr : found->second;
}

CWnd* CWnd::FromHandle(HWND window) {
    if (window == nullptr) return nullptr;
    if (CWnd* attached = FromHandlePermanent(window)) return attached;
    std::unique_ptr<CWnd>& owned = Maps().owned[window];
    if (!owned) {
        owned = std::make_unique<CWnd>();
        owned->m_hWnd = window;
    }
    return owned.get();
}

BOOL CWnd::Attach(HWND window) {
    if (window == nullptr || m_hWnd != nullptr) return FALSE;
    m_hWnd = window;
    Maps().attached[window] = this;
    return TRUE;
}

HWND CWnd::Detach() {
    const HWND window = m_hWnd;
    if (window != nullptr) Maps().attached.erase(window);
    m_hWnd = nullptr;
    return window;
}

BOOL CWnd::CreateEx(DWORD extendedStyle, LPCWSTR className, LPCWSTR title, DWORD style, int x,
                    int y, int width, int height, HWND parent, HMENU menuOrId, LPVOID parameter) {
    return Attach(::CreateWindowExW(extendedStyle, className, title, style, x, y, width, height,
                                    parent, menuOrId, nullptr, parameter));
}

BOOL CWnd::DestroyWindow() {
    const HWND window = Detach();
    return window != nullptr ? ::DestroyWindow(window) : FALSE;
}

CWnd* CWnd::SetFocus() {
    return FromHandle(::SetFocus(m_hWnd));
}

CWnd* CWnd::GetFocus() {
    return FromHandle(::GetFocus());
}
