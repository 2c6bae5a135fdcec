// How the lines of entities are drawn: their width and their dashes.
#pragma once

#include <string>
#include <vector>

#include "host/picture/Sheet.h"

namespace host::picture {

// What an entity says of its lines.
struct Pen {
    // Weights that are taken over from elsewhere; the standard one is a quarter of a millimetre.
    static constexpr int byLayer = -1;
    static constexpr int byBlock = -2;
    static constexpr int standard = -3;

    std::wstring linetype = L"BYLAYER";
    double linetypeScale = 1.0;
    int weight = byLayer;  // hundredths of a millimetre, or one of the above
    double width = 0.0;    // of a wide polyline, in drawing units
};

// Lines of the standard weight, on paper, in millimetres.
constexpr double lineWidth = 0.18;

// How wide lines of a weight are on paper, in millimetres: in the proportion of the standard one,
// from a dot of a printer to two thirds of the picked line.
double widthOfWeight(int weight);

// A line on a sheet, in drawing units.
struct Stroke {
    double width = 0.0;
    bool isWide = false;         // as wide as a polyline says, not as a pen draws
    std::vector<double> dashes;  // dashes and gaps in turn; empty for a continuous line

    // The length that the dashes take before they begin anew.
    double period() const;
};

// `pattern`: the lengths of a line type, dashes and gaps in turn, dots of length 0. Patterns too
// fine to be seen, or longer than five metres on paper, are continuous; dots get a length that can
// be seen.
Stroke strokeOf(const Sheet& sheet, int weight, double width, const std::vector<double>& pattern,
                double patternScale);

// The attributes of an element that differ from those of a continuous line of standard weight.
void addStroke(std::string& out, const Sheet& sheet, const Stroke& stroke);

}  // namespace host::picture
