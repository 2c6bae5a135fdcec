// What a test or a program can see and settle of the headless Windows interface. Only tests and the
// embedded host include this; it has no counterpart on Windows.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "windows.h"

namespace headless {

struct MessageBoxCall {
    HWND owner;
    std::wstring text;
    std::wstring title;
    UINT type;
};

// Every box since the start or the last `ForgetCalls`, in order.
std::vector<MessageBoxCall> MessageBoxes();
// The answer of all boxes from now on.
void AnswerMessageBoxes(int answer);

// All debug texts since the start or the last `ForgetCalls`, joined.
std::wstring DebugOutput();

// The windows that were given the focus since the start or the last `ForgetFocusCalls` or
// `ForgetCalls`, in order.
std::vector<HWND> FocusCalls();

void ForgetFocusCalls();

// A text written into a window, with the settings of its device context.
struct TextCall {
    HWND window;
    int x, y;
    std::wstring text;
    COLORREF foreground, background;
    int mode;                   // TRANSPARENT or OPAQUE
    int fontHeight, fontWidth;  // 0 while the system's font is selected
    std::wstring face;
};

// Every text since the start or the last `ForgetTexts`, in order.
std::vector<TextCall> Texts();
void ForgetTexts();

// Device contexts and fonts that have been given out and not given back.
std::size_t OpenDrawingObjects();

// Gives a module a string resource; an empty text takes it away.
void SetStringResource(HINSTANCE module, UINT id, const std::wstring& text);

// Empties the records and sets the answer back to IDOK.
void ForgetCalls();

// What GlobalMemoryStatus tells from now on; without a value, the machine's real state again.
void SetMemoryStatus(const std::optional<MEMORYSTATUS>& status);

}  // namespace headless
