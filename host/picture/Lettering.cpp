#include "host/picture/Lettering.h"

#include <dbents.h>

#include <algorithm>
#include <cmath>

#include "host/picture/FontWidths.h"

namespace host::picture {
namespace {

using Anchor = Lettering::Anchor;

// Below the baseline letters reach a third of the height.
constexpr double descentPerHeight = 1.0 / 3.0;
constexpr double lineStepPerHeight = 5.0 / 3.0;
// A slant is a tangent; at a right angle it has none.
constexpr double steepestSlant = 1.5;

bool isHeight(double height) {
    return height > 0.0 && std::isfinite(height);
}

Anchor anchorOf(int horizontal) {
    if (horizontal == AcDb::kTextCenter || horizontal == AcDb::kTextMid) return Anchor::middle;
    return horizontal == AcDb::kTextRight ? Anchor::end : Anchor::start;
}

// How far the baseline lies above the point that the text hangs on, in heights.
double riseOf(int horizontal, int vertical) {
    if (horizontal == AcDb::kTextMid || vertical == AcDb::kTextVertMid) return -0.5;
    if (vertical == AcDb::kTextTop) return -1.0;
    return vertical == AcDb::kTextBottom ? descentPerHeight : 0.0;
}

// A text as it hangs in its plane.
struct Hanging {
    AcGePoint3d origin;
    double angle = 0.0;
    double height = 0.0;
    double widthFactor = 1.0;
};

constexpr int backwards = 2;
constexpr int upsideDown = 4;
constexpr double halfTurn = 3.14159265358979323846;

// Between its two points: aligned letters keep their shape, fitted ones their height. Backward ones
// are turned by half, so that they still run from the first point to the second.
void stretch(Hanging& hanging, const database::TextFields& text, const std::wstring& letters) {
    const double dx = text.alignment.x - hanging.origin.x;
    const double dy = text.alignment.y - hanging.origin.y;
    const double distance = std::sqrt(dx * dx + dy * dy);
    const double natural =
        widthOf(letters) * hanging.height / capHeight * std::fabs(hanging.widthFactor);
    if (!(distance > 0.0) || !(natural > 0.0)) return;
    hanging.angle = std::atan2(dy, dx) + ((text.mirrored & backwards) != 0 ? halfTurn : 0.0);
    double& stretched = text.horizontal == AcDb::kTextAlign ? hanging.height : hanging.widthFactor;
    stretched *= distance / natural;
}

Hanging hangingOf(const database::TextFields& text, const std::wstring& letters) {
    Hanging hanging{text.turnedPosition(), text.rotation, text.height,
                    text.widthFactor == 0.0 ? 1.0 : text.widthFactor};
    if (!text.hasAlignment) return hanging;
    if (text.horizontal == AcDb::kTextAlign || text.horizontal == AcDb::kTextFit)
        stretch(hanging, text, letters);
    else if (text.horizontal != AcDb::kTextLeft || text.vertical != AcDb::kTextBase)
        hanging.origin = text.alignment;
    return hanging;
}

}  // namespace

std::optional<Lettering> letteringOf(const database::TextFields& text,
                                     const std::wstring& letters) {
    std::vector<Run> runs = runsOf(letters);
    const Hanging hanging = hangingOf(text, lettersOf(runs));
    if (runs.empty() || !isHeight(hanging.height)) return std::nullopt;

    const AcGeMatrix3d plane = AcGeMatrix3d::planeToWorld(text.normal);
    const double c = std::cos(hanging.angle);
    const double s = std::sin(hanging.angle);
    const double across = (text.mirrored & backwards) != 0 ? -1.0 : 1.0;
    const double upwards = (text.mirrored & upsideDown) != 0 ? -1.0 : 1.0;
    const double slant = std::fabs(text.oblique) < steepestSlant ? std::tan(text.oblique) : 0.0;
    const AcGeVector3d along = plane * AcGeVector3d(c, s, 0.0) * across;
    Lettering lettering;
    lettering.origin = plane * hanging.origin;
    lettering.right = along * hanging.widthFactor;
    lettering.up = plane * AcGeVector3d(-s, c, 0.0) * upwards + along * slant;
    lettering.fontSize = hanging.height / capHeight;
    lettering.anchor = anchorOf(text.horizontal);
    lettering.lines.push_back(
        {std::move(runs), riseOf(text.horizontal, text.vertical) * capHeight});
    return lettering;
}

std::optional<Lettering> letteringOf(const database::MTextFields& text, double rotation) {
    if (!isHeight(text.height)) return std::nullopt;
    Lettering lettering;
    lettering.fontSize = text.height / capHeight;
    const std::vector<std::wstring> lines = linesOf(text.contents, text.width / lettering.fontSize);
    const AcGeMatrix3d plane = AcGeMatrix3d::planeToWorld(text.normal);
    lettering.origin = text.location;
    lettering.right = plane * AcGeVector3d(std::cos(rotation), std::sin(rotation), 0.0);
    lettering.up = plane * AcGeVector3d(-std::sin(rotation), std::cos(rotation), 0.0);
    const int place = text.attachment >= 1 && text.attachment <= 9 ? text.attachment - 1 : 0;
    const int row = place / 3;
    constexpr Anchor columns[] = {Anchor::start, Anchor::middle, Anchor::end};
    lettering.anchor = columns[place % 3];
    const double height = 1.0 + static_cast<double>(lines.size() - 1) * lineStepPerHeight;
    double rise = height * row / 2.0 - 1.0;
    for (const std::wstring& line : lines) {
        if (!line.empty()) lettering.lines.push_back({{Run{line}}, rise * capHeight});
        rise -= lineStepPerHeight;
    }
    if (lettering.lines.empty()) return std::nullopt;
    return lettering;
}

std::vector<AcGePoint3d> outlineOf(const Lettering& lettering) {
    double width = 0.0;
    for (const Lettering::Line& line : lettering.lines)
        width = std::max(width, widthOf(lettersOf(line.runs)));
    const double left = lettering.anchor == Anchor::start    ? 0.0
                        : lettering.anchor == Anchor::middle ? -width / 2.0
                                                             : -width;
    const double bottom = lettering.lines.back().rise - descentPerHeight * capHeight;
    const double top = lettering.lines.front().rise + capHeight * (1.0 + descentPerHeight);
    const auto corner = [&](double x, double y) {
        return lettering.origin + lettering.right * (x * lettering.fontSize) +
               lettering.up * (y * lettering.fontSize);
    };
    return {corner(left, bottom), corner(left + width, bottom), corner(left + width, top),
            corner(left, top)};
}

}  // namespace host::picture
