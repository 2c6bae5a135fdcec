#include "host/picture/Picture.h"

#include <dbents.h>

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

#include "host/database/Drawing.h"
#include "host/editor/EntityFigure.h"
#include "host/picture/Artist.h"
#include "host/picture/FontWidths.h"
#include "host/picture/Legend.h"
#include "host/picture/Lettering.h"
#include "host/picture/Svg.h"

namespace host::picture {
namespace {

using Ids = std::vector<AcDbObjectId>;

// On paper, in millimetres.
constexpr double lineWidth = 0.18;
constexpr double pickedWidth = 0.9;
constexpr double markSize = 1.6;     // of the crosses on what was left
constexpr double leastGround = 0.8;  // half the side of the ground below what was turned
constexpr double least = 0.02;       // what is smaller can't be seen

constexpr const char* styles =
    ".paper{fill:#fff}.frame{fill:none;stroke:#9ca3af;stroke-width:.2}\n"
    ".model,.picked,.mark{fill:none;stroke-linecap:round;stroke-linejoin:round}\n"
    ".model path,.mark,path.picked{stroke:currentColor}\n"
    ".model text,.legend text{fill:currentColor;white-space:pre}\n"
    ".model .solid{fill:currentColor}\n"
    ".ground{fill:#fde68a;stroke:none}.model .ground{stroke:none}\n"
    ".before{opacity:.35}.picked{color:#ea580c}.mark{color:#dc2626}\n"
    ".legend{color:#1f2937}.headline{font-weight:bold}.note{fill:#4b5563}\n";

AcDbImpDatabase::Number numberOf(AcDbObjectId id) {
    return AcDbImpDatabase::numberOf(id);
}

// "LWPOLYLINE 2F"
std::wstring nameOf(AcDbObjectId id) {
    return database::recordName(id) + L" " + database::handleText(id);
}

bool isSymbolOrText(AcDbObjectId id) {
    const AcRxClass* type = id.objectClass();
    return type != nullptr &&
           (type->isDerivedFrom(AcDbText::desc()) || type->isDerivedFrom(AcDbMText::desc()) ||
            type->isDerivedFrom(AcDbBlockReference::desc()));
}

// Whether the class of an entity has a look that is drawn, if not by these very numbers.
bool hasLook(const Piece& piece) {
    return *piece.kind != '\0';
}

// The corners of a box that reaches `half` from its middle at least.
std::vector<AcGePoint3d> squareAround(const PlanBox& box, double half) {
    const double x = box.min.x / 2.0 + box.max.x / 2.0;
    const double y = box.min.y / 2.0 + box.max.y / 2.0;
    const double across = std::max(half, (box.max.x - box.min.x) / 2.0);
    const double upwards = std::max(half, (box.max.y - box.min.y) / 2.0);
    return {{x - across, y - upwards, 0.0},
            {x + across, y - upwards, 0.0},
            {x + across, y + upwards, 0.0},
            {x - across, y + upwards, 0.0}};
}

class Composition {
  public:
    Composition(AcDbImpDatabase& database, const Change& change, const Caption& caption)
        : database_(database), change_(change), caption_(caption), layers_(database) {
        for (const Turned& turned : change.turned) special_.insert(turned.entity);
        for (const Left& left : change.left) reasons_.emplace(left.entity, &left.reason);
        if (!change.line.isNull()) special_.insert(change.line);
    }

    std::string compose() {
        const PlanBox view = lookAround();
        const Sheet sheet(view);
        Artist artist(database_, sheet, layers_);
        const std::string picked = pickedLine(sheet, artist);
        const std::string changed = changes(sheet, artist);
        const std::string rest = drawing(sheet, artist);
        tally_.abridged = artist.abridged();
        return head(sheet) + opening(sheet, "drawing", lineWidth) + rest + "</g>\n" + picked +
               changed + "</g></g>\n" + legend(sheet, caption_, tally_) + "</svg>\n";
    }

  private:
    // The boxes of all that can be seen, kept for drawing; gives the part to be shown.
    PlanBox lookAround() {
        entities_ = database::modelSpaceIds(database_.self());
        boxes_.reserve(entities_.size());
        std::vector<PlanBox> seen;
        PlanBox focus;
        for (const AcDbObjectId id : entities_) {
            const bool visible = database::isVisible(id);
            boxes_.push_back(visible ? editor::planBox(id) : PlanBox());
            visible_.push_back(visible);
            const PlanBox& box = boxes_.back();
            if (box.empty()) continue;
            seen.push_back(box);
            if (special_.count(id) == 0) continue;
            focus.add(box.min);
            focus.add(box.max);
        }
        return chooseView(seen, focus);
    }

    std::string head(const Sheet& sheet) const {
        const std::string width = shortText(sheet.width()), height = shortText(sheet.height());
        std::string out = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg";
        addAttribute(out, "xmlns", "http://www.w3.org/2000/svg");
        addAttribute(out, "width", width + "mm");
        addAttribute(out, "height", height + "mm");
        addAttribute(out, "viewBox", "0 0 " + width + " " + height);
        addAttribute(out, "font-family", fontFamily);
        out += ">\n<title>" + escaped(caption_.drawing) + "</title>\n<style>\n" + styles +
               "</style>\n";
        const PlanBox& frame = sheet.frame();
        const std::string rectangle = " x=\"" + fixedText(frame.min.x, 3) + "\" y=\"" +
                                      fixedText(frame.min.y, 3) + "\" width=\"" +
                                      fixedText(frame.max.x - frame.min.x, 3) + "\" height=\"" +
                                      fixedText(frame.max.y - frame.min.y, 3) + "\"/>";
        out += "<clipPath id=\"frame\"><rect" + rectangle + "</clipPath>\n";
        out += "<rect class=\"paper\" width=\"" + width + "\" height=\"" + height + "\"/>\n";
        out += "<rect class=\"frame\"" + rectangle + "\n<g clip-path=\"url(#frame)\">\n";
        out += "<g class=\"model\" font-size=\"10\" xml:space=\"preserve\"";
        addAttribute(out, "data-origin-x", fixedText(sheet.origin().x, 6));
        addAttribute(out, "data-origin-y", fixedText(sheet.origin().y, 6));
        addAttribute(out, "transform", sheet.transform());
        return out + ">\n";
    }

    static std::string opening(const Sheet& sheet, const char* name, double width) {
        return "<g class=\"" + std::string(name) + "\" stroke-width=\"" +
               shortText(sheet.units(width)) + "\">\n";
    }

    std::string pickedLine(const Sheet& sheet, Artist& artist) {
        if (change_.line.isNull()) return {};
        tally_.line = nameOf(change_.line);
        tally_.hasLine = true;
        Showing showing;
        showing.colored = false;
        showing.title = tally_.line;
        std::string out;
        artist.draw(out, pieceOf(database_, numberOf(change_.line), sheet.smallest()), showing);
        return opening(sheet, "picked", pickedWidth) + out + "</g>\n";
    }

    std::string changes(const Sheet& sheet, Artist& artist) {
        std::string grounds, before, after;
        for (const Turned& turned : change_.turned) {
            const auto number = numberOf(turned.entity);
            const Piece now = pieceOf(database_, number, sheet.smallest());
            ++tally_.counts.turned;
            if (turned.stoodSo) ++tally_.counts.unchanged;
            if (!artist.draw(after, now, {"turned", "", true, {}})) continue;
            artist.draw(before, pieceOf(database_, number, sheet.smallest(), turned.formerRotation),
                        {"", "-before", true, {}});
            ground(grounds, sheet, artist, now, editor::planBox(turned.entity));
        }
        const std::string crosses = marks(sheet);
        return "<g class=\"grounds\">\n" + grounds + "</g>\n" +
               opening(sheet, "before", lineWidth) + before + "</g>\n" +
               opening(sheet, "after", lineWidth) + after + "</g>\n" + crosses;
    }

    // The box of a text as it lies, of anything else along the axes; a little square at least.
    static void ground(std::string& out, const Sheet& sheet, const Artist& artist,
                       const Piece& piece, const PlanBox& box) {
        if (box.empty()) return;
        const double half = sheet.units(leastGround);
        const bool isSmall =
            box.max.x - box.min.x < 2.0 * half && box.max.y - box.min.y < 2.0 * half;
        const auto* lettering = std::get_if<Lettering>(&piece.look);
        Path path;
        path.add(lettering != nullptr && !isSmall ? outlineOf(*lettering)
                                                  : squareAround(box, half));
        path.close();
        const std::string data = artist.pathData(path, true);
        if (!data.empty()) out += "<path class=\"ground\" d=\"" + data + "\"/>\n";
    }

    // Crosses on the texts and symbols that were left.
    std::string marks(const Sheet& sheet) {
        std::string out;
        for (const Left& left : change_.left) {
            ++tally_.counts.left;
            ++tally_.reasons[left.reason];
            if (left.entity.isErased() || !isSymbolOrText(left.entity) ||
                !database::isVisible(left.entity))
                continue;
            const PlanBox box = editor::planBox(left.entity);
            if (box.empty() || !box.overlaps(sheet.shown())) continue;
            const double half = sheet.units(markSize / 2.0);
            const double x = box.min.x / 2.0 + box.max.x / 2.0;
            const double y = box.min.y / 2.0 + box.max.y / 2.0;
            out += "<path class=\"mark\"";
            addAttribute(out, "data-handle", escaped(database::handleText(left.entity)));
            addAttribute(out, "d",
                         "M" + sheet.x(x - half) + " " + sheet.y(y - half) + "L" +
                             sheet.x(x + half) + " " + sheet.y(y + half) + "M" + sheet.x(x - half) +
                             " " + sheet.y(y + half) + "L" + sheet.x(x + half) + " " +
                             sheet.y(y - half));
            out += "><title>" + escaped(nameOf(left.entity) + L": " + left.reason) +
                   "</title></path>\n";
        }
        tally_.hasMarks = !out.empty();
        return opening(sheet, "marks", 2.0 * lineWidth) + out + "</g>\n";
    }

    // All entities that are not shown elsewhere, in the drawing's order.
    std::string drawing(const Sheet& sheet, Artist& artist) {
        std::string out;
        for (std::size_t i = 0; i < entities_.size(); ++i) {
            const AcDbObjectId id = entities_[i];
            if (!visible_[i] || special_.count(id) != 0) continue;
            const PlanBox& box = boxes_[i];
            if (!box.empty() && !box.overlaps(sheet.shown())) {
                ++tally_.outside;
            } else if (artist.isFull()) {
                ++tally_.omitted;
            } else if (!isTiny(sheet, box, id)) {
                drawOne(out, sheet, artist, id);
            }
        }
        return out;
    }

    static bool isTiny(const Sheet& sheet, const PlanBox& box, AcDbObjectId id) {
        const double side = sheet.units(least);
        const bool tiny =
            !box.empty() && box.max.x - box.min.x < side && box.max.y - box.min.y < side;
        return tiny && id.objectClass() != AcDbPoint::desc();
    }

    void drawOne(std::string& out, const Sheet& sheet, Artist& artist, AcDbObjectId id) {
        const Piece piece = pieceOf(database_, numberOf(id), sheet.smallest());
        if (!hasLook(piece)) ++tally_.unknown[database::recordName(id)];
        Showing showing;
        const auto reason = reasons_.find(id);
        if (reason != reasons_.end()) {
            showing.role = "left";
            showing.title = nameOf(id) + L": " + *reason->second;
        }
        artist.draw(out, piece, showing);
    }

    AcDbImpDatabase& database_;
    const Change& change_;
    const Caption& caption_;
    Layers layers_;
    Tally tally_;
    Ids entities_;
    std::vector<PlanBox> boxes_;
    std::vector<bool> visible_;
    std::unordered_set<AcDbObjectId> special_;  // shown by themselves
    std::unordered_map<AcDbObjectId, const std::wstring*> reasons_;
};

}  // namespace

std::string draw(const AcDbDatabase& database, const Change& change, const Caption& caption) {
    return Composition(*database.impl(), change, caption).compose();
}

}  // namespace host::picture
