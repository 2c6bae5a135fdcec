#include "host/picture/TextElement.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "host/picture/FontWidths.h"
#include "host/picture/Svg.h"

namespace host::picture {
namespace {

constexpr double pi = 3.14159265358979323846;

// All letters are set in this font size and brought to theirs by their transformation: renderers
// lay letters out badly in very small sizes and not at all in very large ones.
constexpr double fontSize = 10.0;

// Letters higher than this on paper, in millimetres, are no letters any more.
constexpr double highestLetters = 1000.0;

const char* anchorName(Lettering::Anchor anchor) {
    return anchor == Lettering::Anchor::middle ? "middle" : "end";
}

std::string decorations(const Run& run) {
    std::string names;
    const auto add = [&](bool has, const char* name) {
        if (has) names += (names.empty() ? "" : " ") + std::string(name);
    };
    add(run.underlined, "underline");
    add(run.overlined, "overline");
    add(run.struck, "line-through");
    return names;
}

// The letters of a line, in spans where some are written otherwise. With `x`, where the line begins
// in font units, each run is told where it begins.
std::string spans(const std::vector<Run>& runs, std::optional<double> x) {
    std::string out;
    const bool places = x && runs.size() > 1;
    for (const Run& run : runs) {
        const std::string names = decorations(run);
        const bool spanned = places || !names.empty();
        if (spanned) out += "<tspan";
        if (places) addAttribute(out, "x", shortText(*x));
        if (!names.empty()) addAttribute(out, "text-decoration", names);
        if (spanned) out += ">";
        out += escaped(run.text);
        if (spanned) out += "</tspan>";
        if (places) *x += widthOf(run.text) * fontSize;
    }
    return out;
}

// Where a line begins, in font units, to be justified.
double startOf(const Lettering::Line& line, Lettering::Anchor anchor) {
    const double width = widthOf(lettersOf(line.runs)) * fontSize;
    if (anchor == Lettering::Anchor::start) return 0.0;
    return anchor == Lettering::Anchor::middle ? -width / 2.0 : -width;
}

double length(const editor::PlanPoint& vector) {
    return std::sqrt(vector.x * vector.x + vector.y * vector.y);
}

// The map of letters, whose y runs downwards, to the plane: turned, slanted, stretched. No text
// when they are seen from the edge or are no letters at all.
struct LetterMap {
    std::string text;
    bool keepsShape = true;  // neither slanted nor stretched more one way than the other
};

LetterMap letterMap(const AcGeVector3d& right, const AcGeVector3d& up, double size) {
    const double scale = size / fontSize;
    const editor::PlanPoint a{right.x * scale, right.y * scale}, c{-up.x * scale, -up.y * scale};
    const double across = length(a);
    if (!(across > 0.0) || !std::isfinite(across)) return {};
    const double cosine = a.x / across, sine = a.y / across;
    const double along = cosine * c.x + sine * c.y;
    const double downwards = cosine * c.y - sine * c.x;
    if (downwards == 0.0 || !std::isfinite(along / downwards)) return {};
    LetterMap map;
    const std::string angle = shortText(std::atan2(sine, cosine) * 180.0 / pi);
    if (angle != "0") map.text += " rotate(" + angle + ")";
    // Rounding leaves a slant of no meaning.
    const double slant = std::atan(along / downwards) * 180.0 / pi;
    const bool slanted = std::fabs(slant) > 1e-6;
    if (slanted) map.text += " skewX(" + shortText(slant) + ")";
    map.text += " scale(" + shortText(across) + " " + shortText(downwards) + ")";
    map.keepsShape = !slanted && std::fabs(across - std::fabs(downwards)) <= across * 1e-6;
    return map;
}

}  // namespace

std::string textElement(const Sheet& sheet, const std::string& head, const Lettering& lettering,
                        const AcGeMatrix3d& matrix, const std::string& title) {
    const AcGePoint3d origin = matrix * lettering.origin;
    const AcGeVector3d right = matrix * lettering.right, up = matrix * lettering.up;
    const LetterMap map = letterMap(right, up, lettering.fontSize);
    const double size = lettering.fontSize * sheet.perUnit() * std::max(up.length(), 1.0);
    if (map.text.empty() || !(size < highestLetters) ||
        !sheet.reach().contains(editor::PlanPoint{origin.x, origin.y}))
        return {};
    std::string out = "<text" + head;
    addAttribute(out, "transform",
                 "translate(" + sheet.x(origin.x) + " " + sheet.y(origin.y) + ")" + map.text);
    // Some renderers justify stretched letters as if they were not: these are told where they
    // begin.
    if (map.keepsShape && lettering.anchor != Lettering::Anchor::start)
        addAttribute(out, "text-anchor", anchorName(lettering.anchor));
    const bool single = lettering.lines.size() == 1;
    if (!single) out += ">" + title;
    for (const Lettering::Line& line : lettering.lines) {
        const std::optional<double> start =
            map.keepsShape ? std::nullopt : std::optional(startOf(line, lettering.anchor));
        if (!single) out += "<tspan";
        if (start.value_or(0.0) != 0.0 || !single)
            addAttribute(out, "x", shortText(start.value_or(0.0)));
        if (line.rise != 0.0 || !single) addAttribute(out, "y", shortText(-line.rise * fontSize));
        out += single ? ">" + title : ">";
        out += spans(line.runs, start);
        if (!single) out += "</tspan>";
    }
    return out + "</text>";
}

}  // namespace host::picture
