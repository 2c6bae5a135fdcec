#include "host/picture/FontWidths.h"

#include <iterator>

namespace host::picture {
namespace {

// Advance widths in thousandths of the font size: U+0020 to U+007E, then U+00A0 to U+00FF.
constexpr int latin[] = {
    318, 401, 460, 838, 636, 950, 780, 275, 390, 390, 500, 838, 318, 361,  318, 337, 636, 636, 636,
    636, 636, 636, 636, 636, 636, 636, 337, 337, 838, 838, 838, 531, 1000, 684, 686, 698, 770, 632,
    575, 775, 752, 295, 295, 656, 557, 863, 748, 787, 603, 787, 695, 635,  611, 732, 684, 989, 685,
    611, 685, 390, 337, 390, 838, 500, 500, 613, 635, 550, 635, 615, 352,  635, 634, 278, 278, 579,
    278, 974, 634, 612, 635, 635, 411, 521, 392, 634, 592, 818, 592, 592,  525, 636, 337, 636, 838};
static_assert(std::size(latin) == 0x7F - 0x20);
constexpr int latinSupplement[] = {
    318, 401, 636, 636, 636, 636, 337, 500, 500, 1000, 471, 612, 838, 361, 1000, 500,
    500, 838, 401, 401, 500, 636, 636, 318, 500, 401,  471, 612, 969, 969, 969,  531,
    684, 684, 684, 684, 684, 684, 974, 698, 632, 632,  632, 632, 295, 295, 295,  295,
    775, 748, 787, 787, 787, 787, 787, 838, 787, 732,  732, 732, 732, 611, 605,  630,
    613, 613, 613, 613, 613, 613, 982, 550, 615, 615,  615, 615, 278, 278, 278,  278,
    612, 634, 612, 612, 612, 612, 612, 838, 612, 634,  634, 634, 634, 592, 635,  592};
static_assert(std::size(latinSupplement) == 0x100 - 0xA0);

constexpr int wide = 1000;     // East Asian characters fill a square
constexpr int ordinary = 620;  // about what letters of other alphabets take

bool isSquare(wchar_t character) {
    return (character >= 0x1100 && character <= 0x115F) ||
           (character >= 0x2E80 && character <= 0xD7A3) ||
           (character >= 0xF900 && character <= 0xFAFF) ||
           (character >= 0xFF00 && character <= 0xFF60);
}

int thousandths(wchar_t character) {
    if (character < 0x20) return 0;
    if (character < 0x7F) return latin[character - 0x20];
    if (character < 0xA0) return 0;
    if (character < 0x100) return latinSupplement[character - 0xA0];
    return isSquare(character) ? wide : ordinary;
}

}  // namespace

double widthOf(std::wstring_view text) {
    long long sum = 0;
    for (const wchar_t character : text) sum += thousandths(character);
    return static_cast<double>(sum) / 1000.0;
}

}  // namespace host::picture
