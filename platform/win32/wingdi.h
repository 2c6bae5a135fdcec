// Writing texts into windows, headless: what is written is recorded in `Headless.h`.
#pragma once

#include "windef.h"

#define TRANSPARENT 1
#define OPAQUE 2

#define FW_NORMAL 400
#define DEFAULT_CHARSET 1
#define OUT_DEFAULT_PRECIS 0
#define CLIP_DEFAULT_PRECIS 0
#define DEFAULT_QUALITY 0
#define DEFAULT_PITCH 0
#define FF_DONTCARE 0

#define CLR_INVALID 0xFFFFFFFFu
#define RGB(r, g, b)                                                \
    (static_cast<COLORREF>((static_cast<DWORD>(r) & 0xFFu) |        \
                           ((static_cast<DWORD>(g) & 0xFFu) << 8) | \
                           ((static_cast<DWORD>(b) & 0xFFu) << 16)))

// A device context for a window, or for the screen with null; null when it is no window. Given
// back by ReleaseDC (1, or 0 when it is none).
HDC GetDC(HWND window);
int ReleaseDC(HWND window, HDC context);

// Each gives the setting of before; CLR_INVALID or 0 for no context.
COLORREF SetTextColor(HDC context, COLORREF colour);
COLORREF SetBkColor(HDC context, COLORREF colour);
int SetBkMode(HDC context, int mode);

// A font; only height, width and face are kept. Given back by DeleteObject.
HFONT CreateFontW(int height, int width, int escapement, int orientation, int weight, DWORD italic,
                  DWORD underline, DWORD strikeOut, DWORD charSet, DWORD outPrecision,
                  DWORD clipPrecision, DWORD quality, DWORD pitchAndFamily, LPCWSTR face);
// The object that was selected before, null when there was none or `object` is no font.
HGDIOBJ SelectObject(HDC context, HGDIOBJ object);
// FALSE when it is no font, or a context still has it selected.
BOOL DeleteObject(HGDIOBJ object);

#define BITSPIXEL 12
#define PLANES 14
// Bits of a pixel and colour planes of the screen, which a test can set in `HeadlessSystem.h`; 0
// for any other fact and for no context.
int GetDeviceCaps(HDC context, int index);

BOOL TextOutW(HDC context, int x, int y, LPCWSTR text, int length);
