#include "host/picture/Picture.h"

#include <dbents.h>

#include <algorithm>
#include <unordered_map>

#include "host/database/Drawing.h"
#include "host/database/Names.h"
#include "host/picture/Artist.h"
#include "host/picture/Emphasis.h"
#include "host/picture/FontWidths.h"
#include "host/picture/Legend.h"
#include "host/picture/PathData.h"
#include "host/picture/Scene.h"
#include "host/picture/Svg.h"

namespace host::picture {
namespace {

// On paper, in millimetres.
constexpr double pickedWidth = 0.9;
constexpr double markSize = 2.2;  // of the crosses on what was left
constexpr double groundOutline = 0.15;
constexpr double leastReadable = 0.7;  // height of letters

// What is smaller than this, in millimetres on paper, is left out. A drawing that fills the picture
// is drawn again with less detail.
constexpr double details[] = {0.02, 0.06, 0.2};

// The drawing around the change takes so many steps, and what was turned about as many.
constexpr std::size_t mostSteps = 500'000;
constexpr std::size_t mostStepsOfChange = 400'000;
// Of these, each turned entity may take this at least.
constexpr std::size_t leastOfTurned = 24;
// So many turned entities are drawn before and after; further ones have their ground alone.
constexpr std::size_t mostTurned = 20'000;
constexpr std::size_t mostGrounds = 50'000;
// So many of those left have a cross or a title.
constexpr std::size_t mostMarks = 20'000;

constexpr const char* styles =
    ".paper{fill:#fff}.frame{fill:none;stroke:#9ca3af;stroke-width:.2}\n"
    ".model,.picked,.mark{fill:none;stroke-linecap:round;stroke-linejoin:round}\n"
    ".model path,.mark,path.picked{stroke:currentColor}\n"
    ".model text,.legend text{fill:currentColor;white-space:pre}\n"
    ".model .hatch{fill:currentColor;fill-opacity:.25;fill-rule:evenodd;stroke:none}\n"
    ".model .pattern{fill-opacity:.08;stroke:currentColor;stroke-opacity:.3}\n"
    ".ground{fill:#fde68a;stroke:none}.model .ground{stroke:none}\n"
    ".ground.tiny{fill-opacity:.5;stroke:#b45309}\n"
    ".ground.unchanged{fill:none;stroke:#b45309;stroke-opacity:.6}\n"
    ".arrow{fill:#ea580c}.model .arrow{stroke:none}.ring{fill:none;stroke:#ea580c}\n"
    ".before{fill-opacity:.4;stroke-opacity:.4}.picked{color:#ea580c}.mark{color:#dc2626}\n"
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

class Composition {
  public:
    Composition(AcDbImpDatabase& database, const Change& change, const Caption& caption)
        : database_(database),
          change_(change),
          caption_(caption),
          scene_(database, change),
          sheet_(scene_.view()),
          layers_(database),
          blocks_(database),
          artist_(database, sheet_, layers_, blocks_) {
        for (const Left& left : change.left) reasons_.emplace(left.entity, &left.reason);
    }

    std::string compose() {
        const std::string picked = pickedLines();
        const Changes changed = changes();
        const std::string crosses = marks();
        const std::string rest = drawing();
        countUnknown();
        return head() + opening("drawing", lineWidth) + rest + "</g>\n" +
               opening("grounds", groundOutline) + changed.grounds + "</g>\n" +
               opening("picked", pickedWidth) + picked + "</g>\n" + opening("before", lineWidth) +
               changed.before + "</g>\n" + opening("after", lineWidth) + changed.after + "</g>\n" +
               opening("marks", 2.0 * lineWidth) + crosses + "</g>\n</g></g>\n" +
               legend(sheet_, caption_, tally_) + "</svg>\n";
    }

  private:
    std::string head() const {
        const std::string width = shortText(sheet_.width()), height = shortText(sheet_.height());
        std::string out = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg";
        addAttribute(out, "xmlns", "http://www.w3.org/2000/svg");
        addAttribute(out, "width", width + "mm");
        addAttribute(out, "height", height + "mm");
        addAttribute(out, "viewBox", "0 0 " + width + " " + height);
        addAttribute(out, "font-family", fontFamily);
        out += ">\n<title>" + escaped(caption_.drawing) + "</title>\n<style>\n" + styles +
               "</style>\n";
        const PlanBox& frame = sheet_.frame();
        const std::string rectangle = " x=\"" + fixedText(frame.min.x, 3) + "\" y=\"" +
                                      fixedText(frame.min.y, 3) + "\" width=\"" +
                                      fixedText(frame.max.x - frame.min.x, 3) + "\" height=\"" +
                                      fixedText(frame.max.y - frame.min.y, 3) + "\"/>";
        out += "<clipPath id=\"frame\"><rect" + rectangle + "</clipPath>\n";
        out += "<rect class=\"paper\" width=\"" + width + "\" height=\"" + height + "\"/>\n";
        out += "<rect class=\"frame\"" + rectangle + "\n<g clip-path=\"url(#frame)\">\n";
        out += "<g class=\"model\" font-size=\"10\" xml:space=\"preserve\"";
        addAttribute(out, "data-origin-x", fixedText(sheet_.origin().x, 6));
        addAttribute(out, "data-origin-y", fixedText(sheet_.origin().y, 6));
        addAttribute(out, "transform", sheet_.transform());
        return out + ">\n";
    }

    std::string opening(const char* name, double width) const {
        return "<g class=\"" + std::string(name) + "\" stroke-width=\"" +
               shortText(sheet_.units(width)) + "\">\n";
    }

    Piece pieceOf(AcDbObjectId entity, std::optional<double> rotation = std::nullopt) {
        return picture::pieceOf(database_, numberOf(entity), sheet_.smallest(), rotation);
    }

    std::string pickedLines() {
        std::vector<AcDbObjectId> lines = change_.earlierLines;
        if (!change_.line.isNull()) lines.push_back(change_.line);
        tally_.lines = lines.size();
        artist_.setDetail(details[0]);
        std::string out;
        for (const AcDbObjectId line : lines) {
            Showing showing;
            showing.plain = true;
            showing.title = tally_.line = nameOf(line);
            if (scene_.isInModelSpace(line)) {
                artist_.draw(out, pieceOf(line), showing);
                if (database::isVisible(line))
                    out += directionMarks(sheet_, database_, line, boxOf(database_, line));
            } else {
                ++tally_.elsewhere;
            }
        }
        return out;
    }

    struct Changes {
        std::string grounds, before, after;
    };

    Changes changes() {
        Changes out;
        tally_.counts.turned = change_.turned.size();
        const std::size_t count = std::max<std::size_t>(change_.turned.size(), 1);
        artist_.setMostStepsOfOne(
            std::clamp(mostStepsOfChange / (2 * count), leastOfTurned, Artist::mostStepsOfOne));
        std::size_t shown = 0;
        for (const Turned& turned : change_.turned) {
            if (turned.stoodSo) ++tally_.counts.unchanged;
            if (!scene_.isInModelSpace(turned.entity)) {
                ++tally_.elsewhere;
                continue;
            }
            const PlanBox box = boxOf(database_, turned.entity);
            if (!box.empty() && !box.overlaps(sheet_.shown())) {
                ++tally_.turnedOutside;
            } else if (shown == mostGrounds) {
                ++tally_.turnedOmitted;
            } else if (showTurned(out, turned, box, shown < mostTurned)) {
                ++shown;
            }
        }
        artist_.setMostStepsOfOne(Artist::mostStepsOfOne);
        noteHeight();
        return out;
    }

    // Half of the turned texts are higher than what is told.
    void noteHeight() {
        if (heights_.empty()) return;
        const auto middle = heights_.begin() + static_cast<std::ptrdiff_t>(heights_.size() / 2);
        std::nth_element(heights_.begin(), middle, heights_.end());
        if (*middle < leastReadable) tally_.labelHeight = *middle;
    }

    // Whether something was shown.
    bool showTurned(Changes& out, const Turned& turned, const PlanBox& box, bool inFull) {
        const Piece now = pieceOf(turned.entity);
        Showing showing{"turned", "", false, Background::ground, {}};
        std::string after;
        const Artist::Drawn drawn = artist_.draw(after, now, showing);
        if (drawn == Artist::Drawn::nothing) return false;
        const Piece before = pieceOf(turned.entity, turned.formerRotation);
        if (const auto* lettering = std::get_if<Lettering>(&now.look))
            heights_.push_back(lettering->up.length() * lettering->fontSize * capHeight *
                               sheet_.perUnit());
        const bool isUnchanged = standsAsBefore(turned, before, now);
        if (hasRing(sheet_, box)) ++tally_.ringed;
        out.grounds += groundOf(sheet_, now, box, database_.handleOf(now.number), isUnchanged);
        if (!inFull) {
            ++tally_.groundsOnly;
            return true;
        }
        if (drawn == Artist::Drawn::box) ++tally_.abridged;
        out.after += after;
        showing.role = "";
        showing.idSuffix = "-before";
        artist_.draw(out.before, before, showing);
        return true;
    }

    // Whether nobody sees that it was turned; counts it then.
    bool standsAsBefore(const Turned& turned, const Piece& before, const Piece& now) {
        const bool isNearly = looksAsBefore(sheet_, before, now, turned.moved);
        if (!turned.stoodSo && !isNearly) return false;
        ++tally_.outlined;
        if (!turned.stoodSo) ++tally_.nearlySo;
        return true;
    }

    // Crosses on the texts and symbols that were left.
    std::string marks() {
        std::string out;
        std::size_t marked = 0;
        for (const Left& left : change_.left) {
            ++tally_.counts.left;
            ++tally_.reasons[left.reason];
            if (left.entity.isErased() || !isSymbolOrText(left.entity) ||
                !database::isVisible(left.entity) || !scene_.isInModelSpace(left.entity))
                continue;
            const PlanBox box = boxOf(database_, left.entity);
            if (box.empty() || !box.overlaps(sheet_.shown())) continue;
            if (marked == mostMarks) {
                ++tally_.unmarked;
                continue;
            }
            mark(out, left, box);
            ++marked;
        }
        tally_.hasMarks = marked > 0;
        return out;
    }

    void mark(std::string& out, const Left& left, const PlanBox& box) const {
        const double half = sheet_.units(markSize / 2.0);
        const double x = box.min.x / 2.0 + box.max.x / 2.0;
        const double y = box.min.y / 2.0 + box.max.y / 2.0;
        Path cross;
        cross.add({{x - half, y - half, 0.0}, {x + half, y + half, 0.0}});
        cross.add({{x - half, y + half, 0.0}, {x + half, y - half, 0.0}});
        out += "<path class=\"mark\"";
        addAttribute(out, "data-handle", escaped(database::handleText(left.entity)));
        addAttribute(out, "d", pathData(sheet_, cross));
        out +=
            "><title>" + escaped(nameOf(left.entity) + L": " + left.reason) + "</title></path>\n";
    }

    // All entities that are not shown elsewhere, in the drawing's order: with the most detail that
    // the picture has room for.
    std::string drawing() {
        const Tally before = tally_;
        std::string out;
        for (const double detail : details) {
            tally_ = before;
            tally_.detail = detail > details[0] ? detail : 0.0;
            out = drawing(detail);
            if (tally_.omitted == 0) break;
        }
        return out;
    }

    std::string drawing(double detail) {
        std::string beneath, out;
        artist_.setDetail(detail);
        artist_.resetSteps();
        for (const Scene::Member& member : scene_.members()) {
            if (scene_.isSpecial(member.id)) continue;
            const PlanBox& box = member.box;
            if (!box.empty() && !box.overlaps(sheet_.shown())) {
                ++tally_.outside;
            } else if (artist_.steps() >= mostSteps) {
                ++tally_.omitted;
            } else if (!isTiny(box, member.id, detail)) {
                if (!box.empty() && !sheet_.shown().contains(box)) ++tally_.cropped;
                drawOne(beneath, out, member.id);
            }
        }
        return beneath + out;
    }

    bool isTiny(const PlanBox& box, AcDbObjectId id, double detail) const {
        const double side = sheet_.units(detail);
        const bool tiny =
            !box.empty() && box.max.x - box.min.x < side && box.max.y - box.min.y < side;
        return tiny && id.objectClass() != AcDbPoint::desc();
    }

    void drawOne(std::string& beneath, std::string& out, AcDbObjectId id) {
        const Piece piece = pieceOf(id);
        if (!hasLook(piece)) ++tally_.unknown[database::recordName(id)];
        Showing showing;
        const auto reason = reasons_.find(id);
        if (reason != reasons_.end()) {
            showing.role = "left";
            if (reasons_.size() <= mostMarks) showing.title = nameOf(id) + L": " + *reason->second;
        }
        const auto drawn = artist_.draw(piece.beneath ? beneath : out, piece, showing);
        if (drawn == Artist::Drawn::box) ++tally_.abridged;
        if (drawn == Artist::Drawn::nothing && showsNothing(piece)) ++tally_.empty;
    }

    // A reference whose block is missing, empty or in another file.
    bool showsNothing(const Piece& piece) {
        const auto* reference = std::get_if<Reference>(&piece.look);
        return reference != nullptr && reference->attributes.empty() &&
               (!reference->hasBlock || blocks_.contentOf(reference->block).empty());
    }

    void countUnknown() {
        for (const auto& [name, count] : blocks_.unknown()) tally_.unknown[name] += count;
    }

    AcDbImpDatabase& database_;
    const Change& change_;
    const Caption& caption_;
    const Scene scene_;
    const Sheet sheet_;
    Layers layers_;
    Blocks blocks_;
    Artist artist_;
    Tally tally_;
    std::vector<double> heights_;  // of the letters of turned texts, on paper
    std::unordered_map<AcDbObjectId, const std::wstring*> reasons_;
};

}  // namespace

std::string draw(const AcDbDatabase& database, const Change& change, const Caption& caption) {
    return Composition(*database.impl(), change, caption).compose();
}

}  // namespace host::picture
