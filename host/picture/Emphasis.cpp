#include "host/picture/Emphasis.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "host/database/DatabaseImp.h"
#include "host/database/Names.h"
#include "host/database/ObjectImp.h"
#include "host/picture/Arrowheads.h"
#include "host/picture/Cut.h"
#include "host/picture/Lettering.h"
#include "host/picture/PathData.h"
#include "host/picture/Svg.h"

namespace host::picture {
namespace {

// On paper, in millimetres.

// What was turned lies on a ground somewhat larger than it, by this of its size, but not by more
// than so much at each side. Less than the least, it has a ring of that width instead.
constexpr double groundMargin = 0.3;
constexpr double mostMargin = 0.4;
constexpr double leastGround = 0.5;
// What was turned by less, and moved by less, looks as it did.
constexpr double leastMove = 0.05;
constexpr double leastTurn = 0.05 * 3.14159265358979323846 / 180.0;

// Arrowheads of the picked line: none on stretches below the first, every so far; and the ring
// around a line that is smaller than it.
constexpr ArrowRule arrows{8.0, 4.2, 60.0};
constexpr double arrowWidth = 3.4;
constexpr double leastPicked = 8.0;
constexpr double ringMargin = 2.0;
constexpr double ringWidth = 0.6;

PlanPoint middleOf(const PlanBox& box) {
    return {box.min.x / 2.0 + box.max.x / 2.0, box.min.y / 2.0 + box.max.y / 2.0};
}

double largerSide(const PlanBox& box) {
    return std::max(box.max.x - box.min.x, box.max.y - box.min.y);
}

// The corners of a box with its margin, at most `most` at each side, `least` wide and high at
// least.
std::vector<AcGePoint3d> squareAround(const PlanBox& box, double least, double most) {
    const auto half = [&](double side) {
        return std::max(least, side + std::min(side * groundMargin, 2.0 * most)) / 2.0;
    };
    const auto [x, y] = middleOf(box);
    const double across = half(box.max.x - box.min.x), upwards = half(box.max.y - box.min.y);
    return {{x - across, y - upwards, 0.0},
            {x + across, y - upwards, 0.0},
            {x + across, y + upwards, 0.0},
            {x - across, y + upwards, 0.0}};
}

// Where a text or a symbol points.
AcGeVector3d directionOf(const Piece& piece) {
    if (const auto* lettering = std::get_if<Lettering>(&piece.look)) return lettering->right;
    if (const auto* reference = std::get_if<Reference>(&piece.look))
        return reference->place * AcGeVector3d::kXAxis;
    return {};
}

// Radians, from 0 to half a turn.
double angleBetween(const AcGeVector3d& a, const AcGeVector3d& b) {
    return std::atan2(a.crossProduct(b).length(), a.dotProduct(b));
}

// Around the middle of a box; `width` of its line on paper, 0 for that of the group around.
std::string circle(const Sheet& sheet, const char* classes, std::uint64_t handle,
                   const PlanBox& box, double radius, double width) {
    const PlanPoint at = middleOf(box);
    std::string out = "<circle";
    addAttribute(out, "class", classes);
    if (handle != 0)
        addAttribute(out, "data-handle", database::toUtf8(database::handleText(handle)));
    if (width > 0.0) addAttribute(out, "stroke-width", shortText(sheet.units(width)));
    addAttribute(out, "cx", sheet.x(at.x));
    addAttribute(out, "cy", sheet.y(at.y));
    addAttribute(out, "r", shortText(radius));
    return out + "/>\n";
}

std::string arrow(const Sheet& sheet, const Arrowhead& arrowhead) {
    const auto& [tip, back] = arrowhead;
    const double part = arrowWidth / arrows.length / 2.0;
    const double x = (back.y - tip.y) * part, y = (tip.x - back.x) * part;
    Path triangle;
    triangle.addRing(
        {{tip.x, tip.y, 0.0}, {back.x + x, back.y + y, 0.0}, {back.x - x, back.y - y, 0.0}});
    return "<path class=\"arrow\" d=\"" + pathData(sheet, triangle) + "\"/>\n";
}

std::vector<Arrowhead> arrowheadsOf(const Sheet& sheet, AcDbImpDatabase& database,
                                    AcDbObjectId line) {
    const AcDbObject* object = database.object(AcDbImpDatabase::numberOf(line));
    const database::Curve* curve = object == nullptr ? nullptr : object->impl()->curve();
    if (curve == nullptr) return {};
    Path path;
    path.add(*curve, sheet.smallest());
    if (!isWithin(path, sheet.shown())) path = cutTo(sheet.shown(), path);
    return arrowheadsOn(
        path, {sheet.units(arrows.least), sheet.units(arrows.length), sheet.units(arrows.step)});
}

}  // namespace

bool looksAsBefore(const Sheet& sheet, const Piece& before, const Piece& now, double moved) {
    return angleBetween(directionOf(before), directionOf(now)) < leastTurn &&
           moved < sheet.units(leastMove);
}

bool hasRing(const Sheet& sheet, const PlanBox& box) {
    return !box.empty() && largerSide(box) < sheet.units(leastGround);
}

std::string groundOf(const Sheet& sheet, const Piece& piece, const PlanBox& box,
                     std::uint64_t handle, bool isUnchanged) {
    if (box.empty()) return {};
    const double least = sheet.units(leastGround);
    if (hasRing(sheet, box))
        return circle(sheet, isUnchanged ? "ground tiny unchanged" : "ground tiny", handle, box,
                      least / 2.0, 0.0);
    const auto* lettering = std::get_if<Lettering>(&piece.look);
    Path path;
    path.addRing(lettering != nullptr ? outlineOf(*lettering)
                                      : squareAround(box, least, sheet.units(mostMargin)));
    const std::string data = pathData(sheet, visiblePart(sheet, path, true));
    if (data.empty()) return {};
    std::string out = isUnchanged ? "<path class=\"ground unchanged\"" : "<path class=\"ground\"";
    if (handle != 0)
        addAttribute(out, "data-handle", database::toUtf8(database::handleText(handle)));
    addAttribute(out, "d", data);
    return out + "/>\n";
}

std::string directionMarks(const Sheet& sheet, AcDbImpDatabase& database, AcDbObjectId line,
                           const PlanBox& box) {
    std::string out;
    if (box.empty()) return out;
    if (largerSide(box) < sheet.units(leastPicked)) {
        const double radius = std::hypot(box.max.x - box.min.x, box.max.y - box.min.y) / 2.0;
        out += circle(sheet, "ring", 0, box, radius + sheet.units(ringMargin), ringWidth);
    }
    for (const Arrowhead& arrowhead : arrowheadsOf(sheet, database, line))
        out += arrow(sheet, arrowhead);
    return out;
}

}  // namespace host::picture
