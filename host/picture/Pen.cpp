#include "host/picture/Pen.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "host/picture/Svg.h"

namespace host::picture {
namespace {

// On paper, in millimetres.
constexpr double thinnest = 0.13;      // a dot at 200 dots per inch
constexpr double widest = 0.6;         // the picked line is wider
constexpr double dotLength = 0.2;      // of a line type's dots
constexpr double finestPattern = 0.6;  // below this a pattern is a smear
constexpr double largest = 5000.0;     // renderers calculate with limited numbers

constexpr double standardWeight = 25.0;

std::vector<double> dashesOf(const Sheet& sheet, std::vector<double> lengths, double scale) {
    for (double& length : lengths) length *= scale;
    const double period = std::accumulate(lengths.begin(), lengths.end(), 0.0);
    if (!(period >= sheet.units(finestPattern)) || !(period <= sheet.units(largest))) return {};
    const double dot = sheet.units(dotLength);
    for (std::size_t i = 0; i + 1 < lengths.size(); i += 2) {
        if (lengths[i] >= dot) continue;
        lengths[i + 1] = std::max(lengths[i + 1] - (dot - lengths[i]), dot);
        lengths[i] = dot;
    }
    return lengths;
}

}  // namespace

double widthOfWeight(int weight) {
    if (weight < 0) return lineWidth;
    return std::clamp(weight / standardWeight * lineWidth, thinnest, widest);
}

double Stroke::period() const {
    return std::accumulate(dashes.begin(), dashes.end(), 0.0);
}

Stroke strokeOf(const Sheet& sheet, int weight, double width, const std::vector<double>& pattern,
                double patternScale) {
    Stroke stroke;
    stroke.width = sheet.units(widthOfWeight(weight));
    stroke.isWide = width > stroke.width;
    if (stroke.isWide) stroke.width = std::min(width, sheet.units(largest));
    stroke.dashes = dashesOf(sheet, pattern, patternScale);
    return stroke;
}

void addStroke(std::string& out, const Sheet& sheet, const Stroke& stroke) {
    if (stroke.width != sheet.units(lineWidth))
        addAttribute(out, "stroke-width", shortText(stroke.width));
    if (!stroke.dashes.empty()) {
        std::string lengths;
        for (const double length : stroke.dashes)
            lengths += (lengths.empty() ? "" : " ") + shortText(length);
        addAttribute(out, "stroke-dasharray", lengths);
    }
    // Round ends would fill gaps, and make wide lines longer than they are.
    if (stroke.isWide || !stroke.dashes.empty()) addAttribute(out, "stroke-linecap", "butt");
    if (stroke.isWide) addAttribute(out, "stroke-linejoin", "miter");
}

}  // namespace host::picture
