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

// What a colour is drawn on: white, or the light ground below what was turned.
enum class Background : std::uint8_t { paper, ground };

// The colour as it can be read on its background. White becomes black, as the program that drawings
// come from draws index 7. Other light colours are darkened, their parts kept in proportion, until
// they contrast with the background by 2.5 on paper and 3 on the ground (ratios as the web's rules
// for accessible content reckon them).
Rgb legible(const Rgb& color, Background background);

// "#00ff7f"
std::string hexText(const Rgb& color);

}  // namespace host::picture
