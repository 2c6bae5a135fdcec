#include "host/picture/Artist.h"

#include <algorithm>
#include <cmath>

#include "host/database/Names.h"
#include "host/picture/Cut.h"
#include "host/picture/PathData.h"
#include "host/picture/Svg.h"
#include "host/picture/TextElement.h"
#include "host/picture/Thinning.h"

namespace host::picture {
namespace {

using database::ObjectNumber;

// Points are dots of these widths on paper, in millimetres; the smaller one where so much is drawn
// that details are left out.
constexpr double dotWidth = 0.5;
constexpr double smallDotWidth = 0.25;
constexpr double leastDetailOfSmallDots = 0.05;

// Of this many vertices that are thinned out one is counted.
constexpr std::size_t thinnedToAStep = 100;

// By how much a map enlarges lengths in plan, on the whole.
double scaleOf(const AcGeMatrix3d& matrix) {
    const AcGeVector3d x = matrix * AcGeVector3d::kXAxis, y = matrix * AcGeVector3d::kYAxis;
    return std::sqrt(std::fabs(x.x * y.y - x.y * y.x));
}

// Of its points, as far as the handles of curves lead.
double lengthOf(const Path& path) {
    double length = 0.0;
    std::size_t next = 0;
    for (const Path::Step step : path.steps()) {
        const std::size_t count = step == Path::Step::curve ? 3 : step == Path::Step::close ? 0 : 1;
        for (std::size_t i = 0; i < count; ++i, ++next)
            if (step != Path::Step::move)
                length += path.points()[next].distanceTo(path.points()[next - 1]);
    }
    return length;
}

}  // namespace

Artist::Drawn Artist::draw(std::string& out, const Piece& piece, const Showing& showing) {
    isLimited_ = std::holds_alternative<Reference>(piece.look);
    const auto most = static_cast<double>(mostOfOne_);
    if (isLimited_ && blocks_.stepsOf(piece) > most) return outline(out, piece, showing);
    const std::size_t before = out.size(), stepsBefore = steps_;
    stepsOfOne_ = 0;
    Surroundings around;
    around.plain = showing.plain;
    around.ground = showing.ground;
    const bool drawn = element(out, piece, AcGeMatrix3d::kIdentity, around, &showing);
    if (!isLimited_ || stepsOfOne_ <= mostOfOne_) {
        if (drawn) out += '\n';
        return drawn ? Drawn::whole : Drawn::nothing;
    }
    // Deeper than it looked.
    out.resize(before);
    steps_ = stepsBefore;
    inside_.clear();
    return outline(out, piece, showing);
}

bool Artist::spend(std::size_t steps) {
    steps_ += steps;
    stepsOfOne_ += steps;
    return !isLimited_ || stepsOfOne_ <= mostOfOne_;
}

// What lies on layer 0 of a block is on the layer of the reference.
const Layer& Artist::layerOf(const Piece& piece, const Surroundings& around) {
    if (around.layer != nullptr && piece.layer == L"0") return *around.layer;
    return layers_.named(piece.layer);
}

Rgb Artist::colorOf(const Ink& ink, const Layer& layer, const Surroundings& around) {
    if (ink.rule == Ink::Rule::block) return around.block;
    return legible(ink.rule == Ink::Rule::own ? ink.color : layer.color, around.ground);
}

// A layer that is off hides what lies on it, one that is frozen hides what references on it show
// of other layers too.
bool Artist::isSeen(const Piece& piece, const Surroundings& around) {
    const Layer& layer = layerOf(piece, around);
    const bool isReference = std::holds_alternative<Reference>(piece.look);
    return !piece.invisible && !layer.isFrozen && (isReference || !layer.isOff);
}

std::wstring Artist::linetypeOf(const Piece& piece, const Layer& layer,
                                const Surroundings& around) {
    const std::wstring& own = piece.pen.linetype;
    if (database::sameName(own, L"BYBLOCK")) return around.linetype;
    return database::sameName(own, L"BYLAYER") || own.empty() ? layer.linetype : own;
}

int Artist::weightOf(const Piece& piece, const Layer& layer, const Surroundings& around) {
    const int own = piece.pen.weight;
    return own == Pen::byBlock ? around.weight : own == Pen::byLayer ? layer.weight : own;
}

Stroke Artist::strokeOf(const Piece& piece, const AcGeMatrix3d& matrix,
                        const Surroundings& around) {
    const Layer& layer = layerOf(piece, around);
    const double scale = scaleOf(matrix);
    static const std::vector<double> continuous;
    return picture::strokeOf(
        sheet_, weightOf(piece, layer, around), piece.pen.width * scale,
        piece.filled ? continuous : linetypes_.named(linetypeOf(piece, layer, around)),
        piece.pen.linetypeScale * scale);
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
    if (std::holds_alternative<Path>(piece.look))
        return path(out, head, piece, matrix, around, title);
    if (const auto* lettering = std::get_if<Lettering>(&piece.look)) {
        if (!spend(static_cast<std::size_t>(blocks_.stepsOf(piece)))) return false;
        const std::string text = textElement(sheet_, head, *lettering, matrix, title);
        out += text;
        return !text.empty();
    }
    if (const auto* reference = std::get_if<Reference>(&piece.look)) {
        const Surroundings inside{&layer,
                                  color,
                                  color,
                                  linetypeOf(piece, layer, around),
                                  weightOf(piece, layer, around),
                                  around.plain,
                                  around.ground};
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
    if (!around.plain && !takenOver) addAttribute(out, "color", hexText(color));
}

bool Artist::path(std::string& out, const std::string& head, const Piece& piece,
                  const AcGeMatrix3d& matrix, const Surroundings& around,
                  const std::string& title) {
    const Path given = std::get<Path>(piece.look).mapped(matrix);
    const bool isDot = piece.kind == std::string_view("point");
    Path drawn = visiblePart(sheet_, given, piece.filled);
    if (!isDot) drawn = thinned(drawn, sheet_.units(detail_ / 2.0));
    if (!spend(drawn.steps().size() + given.steps().size() / thinnedToAStep)) return false;
    if (drawn.empty()) return false;
    Stroke stroke = strokeOf(piece, matrix, around);
    spendDashes(stroke, drawn);
    const std::string data = pathData(sheet_, drawn);
    if (data.empty()) return false;
    out += "<path" + head;
    if (isDot)
        addAttribute(
            out, "stroke-width",
            shortText(sheet_.units(detail_ > leastDetailOfSmallDots ? smallDotWidth : dotWidth)));
    else if (!around.plain && !piece.beneath)
        addStroke(out, sheet_, stroke);
    if (piece.filled && !piece.beneath) addAttribute(out, "fill", "currentColor");
    addAttribute(out, "d", data);
    out += title.empty() ? "/>" : ">" + title + "</path>";
    return true;
}

// Dashes are drawn where the sheet shows them only, and no more than a renderer can bear.
void Artist::spendDashes(Stroke& stroke, Path& path) {
    if (stroke.dashes.empty()) return;
    Path shown = isWithin(path, sheet_.shown()) ? path : cutTo(sheet_.shown(), path);
    const double dashes =
        lengthOf(shown) / stroke.period() * static_cast<double>(stroke.dashes.size()) / 2.0;
    if (dashes_ + dashes > mostDashes) {
        stroke.dashes.clear();
    } else {
        dashes_ += dashes;
        path = std::move(shown);
    }
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
    if (!reference.hasBlock) return false;
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
    if (inside_.size() >= Blocks::deepest ||
        std::find(inside_.begin(), inside_.end(), number) != inside_.end())
        return false;
    inside_.push_back(number);
    bool drawn = false;
    for (const Piece& piece : blocks_.contentOf(number)) {
        if (stepsOfOne_ > mostOfOne_) break;
        drawn = element(out, piece, matrix, inside, nullptr) || drawn;
    }
    inside_.pop_back();
    return drawn;
}

Artist::Drawn Artist::outline(std::string& out, const Piece& piece, const Showing& showing) {
    const auto corners = blocks_.cornersOf(std::get<Reference>(piece.look));
    if (corners.empty()) return Drawn::nothing;
    Piece shown = piece;
    Path frame;
    frame.addRing(corners);
    shown.look = std::move(frame);
    shown.pen = {};
    isLimited_ = false;
    Surroundings around;
    around.plain = showing.plain;
    around.ground = showing.ground;
    const std::string role =
        *showing.role == '\0' ? std::string("abridged") : "abridged " + std::string(showing.role);
    Showing abridged = showing;
    abridged.role = role.c_str();
    if (!element(out, shown, AcGeMatrix3d::kIdentity, around, &abridged)) return Drawn::nothing;
    out += '\n';
    return Drawn::box;
}

}  // namespace host::picture
