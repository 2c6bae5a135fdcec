// Functions over the host's drawing database and its drawing window.
#pragma once

#include <windows.h>

#include <cstdint>

#include "GeomEnts/Point3d.h"

namespace TamLib {

// Writes a text into the host's drawing window at a place of the drawing; the drawing itself stays
// as it is, and the next redraw takes the text away. `format` is printed with the arguments behind
// it. Colours are 0x00BBGGRR; 0xFFFFFFFF (-1) stands for the window's background colour inverted,
// which of the foreground is masked to 24 bits and, intended, of the background is not. With
// `transparent` the background colour is not painted. Without a `font` a font "Lucida Console" is
// made, `height` pixels high and 0.7 * `height` wide, both cut to integers; a given font stays the
// caller's. Nothing is written where the place has no pixel or the host no window.
void ARXDrawText(const Point3d& point, std::uint32_t foreground, std::uint32_t background,
                 bool transparent, double height, HFONT font, const wchar_t* format, ...);

}  // namespace TamLib
