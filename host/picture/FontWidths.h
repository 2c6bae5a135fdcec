// How wide texts come out in the font that pictures are set in.
//
// The widths are those of DejaVu Sans, which Bitstream Vera Sans and Verdana share but for a few
// letters; pictures name these fonts in this order. Sizes are parts of the font size (the em).
#pragma once

#include <string_view>

namespace host::picture {

constexpr const char* fontFamily = "'DejaVu Sans','Bitstream Vera Sans',Verdana,sans-serif";

// The height of capital letters: what drawings call the height of a text.
constexpr double capHeight = 0.729;

// The width of a text set in one line; estimated for characters beyond Latin-1.
double widthOf(std::wstring_view text);

}  // namespace host::picture
