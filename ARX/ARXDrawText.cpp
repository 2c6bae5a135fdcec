#include <aced.h>
#include <afxwin.h>

#include <cstdarg>

#include "ARX/ARXUtils.h"
#include "GeomEnts/DrawingOutput.h"
#include "datastruct/String.h"

namespace TamLib {
namespace {

constexpr std::uint32_t kInvertedBackground = 0xFFFFFFFFu;

std::uint32_t InvertedBackground() {
    AcColorSettings colours{};
    acedGetCurrentColors(&colours);
    return ~static_cast<std::uint32_t>(colours.dwGfxModelBkColor);
}

// The device context of a window while it lives.
class WindowContext {
  public:
    explicit WindowContext(HWND window) : window_(window), context_(::GetDC(window)) {}
    ~WindowContext() {
        if (context_ != nullptr) ::ReleaseDC(window_, context_);
    }
    WindowContext(const WindowContext&) = delete;
    WindowContext& operator=(const WindowContext&) = delete;
    HDC Get() const { return context_; }

  private:
    HWND window_;
    HDC context_;
};

// A font selected into a context while it lives: the given one, or one made for this.
class SelectedFont {
  public:
    SelectedFont(HDC context, HFONT given, double height) : context_(context) {
        if (given == nullptr) given = own_ = Make(height);
        before_ = ::SelectObject(context, given);
    }
    ~SelectedFont() {
        ::SelectObject(context_, before_);
        if (own_ != nullptr) ::DeleteObject(own_);
    }
    SelectedFont(const SelectedFont&) = delete;
    SelectedFont& operator=(const SelectedFont&) = delete;

  private:
    static HFONT Make(double height) {
        return ::CreateFontW(static_cast<int>(height), static_cast<int>(0.7 * height), 0, 0,
                             FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                             CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, DEFAULT_PITCH | FF_DONTCARE,
                             L"Lucida Console");
    }

    HDC context_;
    HFONT own_ = nullptr;
    HGDIOBJ before_ = nullptr;
};

}  // namespace

void ARXDrawText(const Point3d& point, std::uint32_t foreground, std::uint32_t background,
                 bool transparent, double height, HFONT font, const wchar_t* format, ...) {
    StringBase<wchar_t> text;
    va_list arguments;
    va_start(arguments, format);
    text.FormatV(format, arguments);
    va_end(arguments);
    CPoint pixel;
    if (!acedCoordFromWorldToPixel(acedGetWinNum(0, 0), &point.x, pixel)) return;
    CView* const view = acedGetAcadDwgView();
    if (view == nullptr) return;
    const WindowContext window(view->GetSafeHwnd());
    const HDC context = window.Get();
    if (context == nullptr) return;
    ::SetTextColor(
        context, foreground == kInvertedBackground ? InvertedBackground() & 0xFFFFFFu : foreground);
    ::SetBkColor(context, background == kInvertedBackground ? InvertedBackground() : background);
    ::SetBkMode(context, transparent ? TRANSPARENT : OPAQUE);
    const SelectedFont selected(context, font, height);
    ::TextOutW(context, pixel.x, pixel.y, text.Data(), static_cast<int>(text.count));
}

void ShowTextAt(const Point3d& point, const wchar_t* text) {
    constexpr double kPixels = 12.0;
    ARXDrawText(point, kInvertedBackground, kInvertedBackground, true, kPixels, nullptr, L"%s",
                text);
}

}  // namespace TamLib
