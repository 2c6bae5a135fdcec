// The screen, and what would be shown by other programs.
#include "HeadlessSystem.h"

namespace {

// Belong to the main thread, as windows do.
int screenWidth = 1024;
int screenHeight = 768;
int screenBits = 32;

std::vector<std::wstring>& Shown() {
    static auto* const calls = new std::vector<std::wstring>;
    return *calls;
}
int shellAnswer = 42;

}  // namespace

int GetSystemMetrics(int index) {
    return index == SM_CXSCREEN ? screenWidth : index == SM_CYSCREEN ? screenHeight : 0;
}

int GetDeviceCaps(HDC context, int index) {
    if (context == nullptr) return 0;
    return index == BITSPIXEL ? screenBits : index == PLANES ? 1 : 0;
}

HINSTANCE ShellExecuteW(HWND /*owner*/, LPCWSTR verb, LPCWSTR file, LPCWSTR /*parameters*/,
                        LPCWSTR /*folder*/, int /*show*/) {
    Shown().push_back(std::wstring(verb) + L' ' + file);
    return reinterpret_cast<HINSTANCE>(static_cast<INT_PTR>(shellAnswer));
}

void headless::SetScreen(int width, int height, int bitsPerPixel) {
    screenWidth = width;
    screenHeight = height;
    screenBits = bitsPerPixel;
}

std::vector<std::wstring> headless::ShellCalls() {
    return Shown();
}

void headless::AnswerShellCalls(int result) {
    shellAnswer = result;
}
