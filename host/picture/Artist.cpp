#include "host/picture/Artist.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "host/database/Names.h"
#include "host/editor/EntityFigure.h"
#include "host/picture/Cut.h"
#include "host/picture/FontWidths.h"
#include "host/picture/Svg.h"

namespace host::picture {
namespace {

using database::ObjectNumber;

constexpr double pi = 3.14159265358979323846;

// Points are dots of this width on paper, in millimetres.
constexpr double dotWidth = 0.6;

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

bool Artist::draw(std::string& out, const Piece& piece, const Showing& showing) {
    stepsOfOne_ = 0;
    const std::size_t before = out.size();
    Surroundings around;
    around.colored = showing.colored;
    const bool drawn = element(out, piece, AcGeMatrix3d::kIdentity, around, &showing);
    if (stepsOfOne_ <= mostStepsOfOne) {
        if (drawn) out += '\n';
        return drawn;
    }
    out.resize(before);
    inside_.clear();
    ++abridged_;
    return outline(out, piece, showing);
}

bool Artist::spend(std::size_t steps) {
    steps_ += steps;
    stepsOfOne_ += steps;
    return stepsOfOne_ <= mostStepsOfOne;
}

// What lies on layer 0 of a block is on the layer of the reference.
const Layer& Artist::layerOf(const Piece& piece, const Surroundings& around) {
    if (around.layer != nullptr && piece.layer == L"0") return *around.layer;
    return layers_.named(piece.layer);
}

Rgb Artist::colorOf(const Ink& ink, const Layer& layer, const Surroundings& around) {
    if (ink.rule == Ink::Rule::block) return around.block;
    return onWhite(ink.rule == Ink::Rule::own ? ink.color : layer.color);
}

bool Artist::isSeen(const Piece& piece, const Surroundings& around) {
    return !piece.invisible && layerOf(piece, around).visible;
}

bool Artist::element(std::string& out, const Piece& piece, const AcGeMatrix3d& matrix,
                     const Surroundings& around, const Showing* showing) {
    if (!spend(1) || !isSeen(piece, around)) return false;
    const Layer& layer = layerOf(piece, around);
    const Rgb color = colorOf(piece.ink, layer, around);
    std::string head;
    attributes(head, piece, layer, color, around, showing);
    const std::string title = showing == nullptr || showing->title.empty()
                                  ? std::string()
                                  : "<title>" + escaped(showing->title) + "</title>";
    if (std::holds_alternative<Path>(piece.look)) return path(out, head, piece, matrix, title);
    if (const auto* lettering = std::get_if<Lettering>(&piece.look))
        return text(out, head, *lettering, matrix, title);
    if (const auto* reference = std::get_if<Reference>(&piece.look)) {
        const Surroundings inside{&layer, color, color, around.colored};
        return group(out, head, *reference, matrix, inside, title);
    }
    return false;
}

void Artist::attributes(std::string& out, const Piece& piece, const Layer& layer, const Rgb& color,
                        const Surroundings& around, const Showing* showing) const {
    const std::uint64_t handle = database_.handleOf(piece.number);
    const std::string name = database::toUtf8(database::handleText(handle));
    const bool first = database_.findHandle(handle) == piece.number;
    if (showing != nullptr && handle != 0 && first)
        addAttribute(out, "id", "h" + name + showing->idSuffix);
    std::string classes = piece.kind;
    if (showing != nullptr && *showing->role != '\0') classes += std::string(" ") + showing->role;
    addAttribute(out, "class", classes);
    if (handle != 0) addAttribute(out, "data-handle", name);
    if (&layer != around.layer) addAttribute(out, "data-layer", escaped(layer.name));
    const bool takenOver = around.layer != nullptr && color == around.shown;
    if (around.colored && !takenOver) addAttribute(out, "color", hexText(color));
}

std::string Artist::pathData(const Path& given, bool filled) const {
    const bool within = isWithin(given, sheet_.reach());
    const Path path = within   ? given
                      : filled ? polygonCutTo(sheet_.reach(), given)
                               : cutTo(sheet_.reach(), given);
    std::string data;
    std::size_t next = 0;
    const auto point = [&] {
        const AcGePoint3d& p = path.points()[next++];
        return sheet_.x(p.x) + " " + sheet_.y(p.y);
    };
    for (const Path::Step step : path.steps()) {
        switch (step) {
            case Path::Step::move:
                data += "M" + point();
                break;
            case Path::Step::line:
                data += "L" + point();
                break;
            case Path::Step::curve:
                data += "C" + point();
                data += " " + point();
                data += " " + point();
                break;
            case Path::Step::close:
                data += "Z";
                break;
        }
    }
    return data;
}

bool Artist::path(std::string& out, const std::string& head, const Piece& piece,
                  const AcGeMatrix3d& matrix, const std::string& title) {
    const auto& path = std::get<Path>(piece.look);
    if (!spend(path.steps().size())) return false;
    const std::string data = pathData(path.mapped(matrix), piece.filled);
    if (data.empty()) return false;
    out += "<path" + head;
    if (piece.kind == std::string_view("point"))
        addAttribute(out, "stroke-width", shortText(sheet_.units(dotWidth)));
    addAttribute(out, "d", data);
    out += title.empty() ? "/>" : ">" + title + "</path>";
    return true;
}

bool Artist::text(std::string& out, const std::string& head, const Lettering& lettering,
                  const AcGeMatrix3d& matrix, const std::string& title) {
    const AcGePoint3d origin = matrix * lettering.origin;
    const AcGeVector3d right = matrix * lettering.right, up = matrix * lettering.up;
    const LetterMap map = letterMap(right, up, lettering.fontSize);
    const double size = lettering.fontSize * sheet_.perUnit() * std::max(up.length(), 1.0);
    if (map.text.empty() || !(size < highestLetters) ||
        !sheet_.reach().contains(editor::PlanPoint{origin.x, origin.y}))
        return false;
    out += "<text" + head;
    addAttribute(out, "transform",
                 "translate(" + sheet_.x(origin.x) + " " + sheet_.y(origin.y) + ")" + map.text);
    // Some renderers justify stretched letters as if they were not: these are told where they
    // begin.
    if (map.keepsShape && lettering.anchor != Lettering::Anchor::start)
        addAttribute(out, "text-anchor", anchorName(lettering.anchor));
    const bool single = lettering.lines.size() == 1;
    if (!single) out += ">" + title;
    for (const Lettering::Line& line : lettering.lines) {
        if (!spend(1)) break;
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
    out += "</text>";
    return true;
}

bool Artist::group(std::string& out, const std::string& head, const Reference& reference,
                   const AcGeMatrix3d& matrix, const Surroundings& inside,
                   const std::string& title) {
    const std::size_t before = out.size();
    out += "<g" + head + ">" + title;
    bool drawn = cells(out, reference, matrix, inside);
    for (const Piece& attribute : reference.attributes)
        drawn = element(out, attribute, matrix, inside, nullptr) || drawn;
    out += "</g>";
    if (!drawn) out.resize(before);
    return drawn;
}

bool Artist::cells(std::string& out, const Reference& reference, const AcGeMatrix3d& matrix,
                   const Surroundings& inside) {
    bool drawn = false;
    for (int row = 0; row < reference.rows; ++row) {
        for (int column = 0; column < reference.columns; ++column) {
            if (!spend(1)) return drawn;
            const AcGeVector3d shift = reference.columnStep * column + reference.rowStep * row;
            const AcGeMatrix3d place = matrix * AcGeMatrix3d::translation(shift) * reference.place;
            drawn = block(out, reference.block, place, inside) || drawn;
        }
    }
    return drawn;
}

// A block inside of itself is left out.
bool Artist::block(std::string& out, ObjectNumber number, const AcGeMatrix3d& matrix,
                   const Surroundings& inside) {
    if (inside_.size() >= deepest ||
        std::find(inside_.begin(), inside_.end(), number) != inside_.end())
        return false;
    auto known = contents_.find(number);
    if (known == contents_.end())
        known = contents_.emplace(number, contentOf(database_, number)).first;
    inside_.push_back(number);
    bool drawn = false;
    for (const Piece& piece : known->second) {
        if (stepsOfOne_ > mostStepsOfOne) break;
        drawn = element(out, piece, matrix, inside, nullptr) || drawn;
    }
    inside_.pop_back();
    return drawn;
}

bool Artist::outline(std::string& out, const Piece& piece, const Showing& showing) {
    const editor::PlanBox box = editor::planBox(database_.idOf(piece.number));
    if (box.empty()) return false;
    Piece shown = piece;
    Path frame;
    frame.add({{box.min.x, box.min.y, 0.0},
               {box.max.x, box.min.y, 0.0},
               {box.max.x, box.max.y, 0.0},
               {box.min.x, box.max.y, 0.0},
               {box.min.x, box.min.y, 0.0}});
    shown.look = std::move(frame);
    Showing abridged = showing;
    abridged.role = "abridged";
    stepsOfOne_ = 0;
    Surroundings around;
    around.colored = showing.colored;
    const bool drawn = element(out, shown, AcGeMatrix3d::kIdentity, around, &abridged);
    if (drawn) out += '\n';
    return drawn;
}

}  // namespace host::picture
