// Device contexts and fonts without a screen: texts are kept as they were written.
#include <algorithm>
#include <map>
#include <utility>

#include "Faults.h"
#include "Headless.h"

namespace {

struct Font {
    int height, width;
    std::wstring face;
};

struct Context {
    HWND window;
    COLORREF foreground = RGB(0, 0, 0);
    COLORREF background = RGB(255, 255, 255);
    int mode = OPAQUE;
    HGDIOBJ font = nullptr;
};

struct Drawing {
    std::map<HDC, Context> contexts;
    std::map<HGDIOBJ, Font> fonts;
    std::uintptr_t lastHandle = 0x20000;
    std::vector<headless::TextCall> texts;
};

Drawing& TheDrawing() {
    static auto* const drawing = new Drawing;
    return *drawing;
}

template <class Handle>
Handle NextHandle() {
    return reinterpret_cast<Handle>(TheDrawing().lastHandle += 2);
}

Context* Find(HDC context) {
    const auto found = TheDrawing().contexts.find(context);
    return found == TheDrawing().contexts.end() ? nullptr : &found->second;
}

}  // namespace

HDC GetDC(HWND window) {
    if (posix::Refused("GetDC")) return nullptr;
    if (window != nullptr && !IsWindow(window)) {
        SetLastError(ERROR_INVALID_WINDOW_HANDLE);
        return nullptr;
    }
    const auto context = NextHandle<HDC>();
    TheDrawing().contexts[context].window = window;
    return context;
}

int ReleaseDC(HWND window, HDC context) {
    const Context* const found = Find(context);
    if (found == nullptr || found->window != window) return 0;
    TheDrawing().contexts.erase(context);
    return 1;
}

COLORREF SetTextColor(HDC context, COLORREF colour) {
    Context* const found = Find(context);
    return found == nullptr ? CLR_INVALID : std::exchange(found->foreground, colour);
}

COLORREF SetBkColor(HDC context, COLORREF colour) {
    Context* const found = Find(context);
    return found == nullptr ? CLR_INVALID : std::exchange(found->background, colour);
}

int SetBkMode(HDC context, int mode) {
    Context* const found = Find(context);
    return found == nullptr ? 0 : std::exchange(found->mode, mode);
}

HFONT CreateFontW(int height, int width, int /*escapement*/, int /*orientation*/, int /*weight*/,
                  DWORD /*italic*/, DWORD /*underline*/, DWORD /*strikeOut*/, DWORD /*charSet*/,
                  DWORD /*outPrecision*/, DWORD /*clipPrecision*/, DWORD /*quality*/,
                  DWORD /*pitchAndFamily*/, LPCWSTR face) {
    const auto font = NextHandle<HFONT>();
    TheDrawing().fonts[font] = {height, width, face != nullptr ? face : L""};
    return font;
}

HGDIOBJ SelectObject(HDC context, HGDIOBJ object) {
    Context* const found = Find(context);
    if (found == nullptr) return nullptr;
    if (object != nullptr && TheDrawing().fonts.count(object) == 0) return nullptr;
    return std::exchange(found->font, object);
}

BOOL DeleteObject(HGDIOBJ object) {
    Drawing& drawing = TheDrawing();
    const bool selected =
        std::any_of(drawing.contexts.begin(), drawing.contexts.end(),
                    [object](const auto& entry) { return entry.second.font == object; });
    return !selected && drawing.fonts.erase(object) != 0 ? TRUE : FALSE;
}

BOOL TextOutW(HDC context, int x, int y, LPCWSTR text, int length) {
    const Context* const found = Find(context);
    if (found == nullptr || text == nullptr || length < 0) return FALSE;
    Font font{};
    if (found->font != nullptr) font = TheDrawing().fonts[found->font];
    TheDrawing().texts.push_back(
        {found->window, x, y, std::wstring(text, static_cast<std::size_t>(length)),
         found->foreground, found->background, found->mode, font.height, font.width, font.face});
    return TRUE;
}

namespace headless {

std::vector<TextCall> Texts() {
    return TheDrawing().texts;
}

void ForgetTexts() {
    TheDrawing().texts.clear();
}

std::size_t OpenDrawingObjects() {
    return TheDrawing().contexts.size() + TheDrawing().fonts.size();
}

}  // namespace headless
