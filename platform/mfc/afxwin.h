// Windows as objects: a CWnd stands for one window of the system. A thin layer over the Win32
// names, the same in every build; under those names stand real windows or, headless, recorded ones.
#pragma once

#include <windows.h>

#include "afx.h"
#include "afxdll_.h"
#include "atltypes.h"

// One window. An object is attached to at most one window, and a window to at most one object.
class CWnd : public CObject {
  public:
    HWND m_hWnd = nullptr;  // null while not attached

    CWnd() = default;
    // Destroys the window if the object is still attached to one.
    ~CWnd() override;

    // The object of a window; null for a null handle. A window that no object is attached to gets
    // one that the framework owns. Such an object stays for as long as the process, so that what
    // was once given out remains valid, and the same handle gives the same object again.
    static CWnd* FromHandle(HWND window);
    // The object that somebody attached to the window; null when there is none.
    static CWnd* FromHandlePermanent(HWND window);

    // The window; null while not attached.
    HWND GetSafeHwnd() const { return m_hWnd; }

    // Attaches the object to an existing window. FALSE for a null handle or an object that is
    // attached already.
    BOOL Attach(HWND window);
    // Releases the window without destroying it; null when there was none.
    HWND Detach();

    // Makes a window of a registered class and attaches the object to it. FALSE when the system
    // refuses.
    BOOL CreateEx(DWORD extendedStyle, LPCWSTR className, LPCWSTR title, DWORD style, int x, int y,
                  int width, int height, HWND parent, HMENU menuOrId, LPVOID parameter = nullptr);
    // Destroys the window and releases it; FALSE when there is none.
    BOOL DestroyWindow();

    // Gives the keyboard focus to the window; the object of the window that had it, or null.
    CWnd* SetFocus();
    // The object of the window that has the focus of this thread; null when none has.
    static CWnd* GetFocus();
};

// A window with a frame.
class CFrameWnd : public CWnd {};

// The main window of a program with several documents.
class CMDIFrameWnd : public CFrameWnd {};

// A window that shows a document.
class CView : public CWnd {};
