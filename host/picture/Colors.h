// Colours of drawings as red, green and blue, for white paper.
#pragma once

#include <cstdint>
#include <string>

namespace host::picture {

struct Rgb {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
};

bool operator==(const Rgb& a, const Rgb& b);

// The colour of an index from 1 to 255; white for any other.
Rgb indexedColor(int index);

// A true colour as group 420 holds it: 0xRRGGBB, higher bits without meaning.
Rgb trueColor(std::int64_t value);

// The colour as it is drawn on white: white itself would not be seen and becomes black, as the
// program that drawings come from draws index 7; all others stay.
Rgb onWhite(const Rgb& color);

// "#00ff7f"
std::string hexText(const Rgb& color);

}  // namespace host::picture
