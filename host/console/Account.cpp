#include "host/console/Account.h"

#include <acdbads.h>
#include <adscodes.h>
#include <dbents.h>
#include <dbmain.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "GeomStructs/PolyLine.h"
#include "host/database/Drawing.h"
#include "host/database/Fault.h"
#include "host/editor/CommandStack.h"
#include "host/editor/Words.h"

namespace host::console {

namespace {

using editor::CommandResult;
using editor::PromptRecord;
using editor::toUtf8;

EntityNote noteOf(AcDbObjectId id) {
    EntityNote note;
    note.id = id;
    note.handle = toUtf8(database::handleText(id));
    note.className = toUtf8(database::className(id));
    note.type = toUtf8(database::recordName(id));
    note.layer = toUtf8(database::layerState(id).name);
    note.wording = toUtf8(database::wording(id));
    return note;
}

// The line as a pick reads it; without vertices when it can't be read as one.
TamLib::PolyLine read(AcDbObjectId id) {
    const fault::Quiet quiet;
    TamLib::PolyLine line(0);
    AcDbEntity* entity = nullptr;
    if (acdbOpenAcDbEntity(entity, id, AcDb::kForRead) != Acad::eOk) return line;
    constexpr double step = 0.05;  // the same as that of the pick
    constexpr int closing = 1;
    if (TamLib::PolyLine::IsAcceptedEntity(entity, true, true, false))
        line.FromCurve(entity, closing, step, true);
    else
        entity->close();
    return line;
}

const PromptRecord* last(const CommandResult& result, PromptRecord::Kind kind) {
    const auto found = std::find_if(
        result.prompts.rbegin(), result.prompts.rend(),
        [&](const PromptRecord& prompt) { return prompt.kind == kind && prompt.code == RTNORM; });
    return found == result.prompts.rend() ? nullptr : &*found;
}

bool isTurnedClass(const AcRxClass* type) {
    return type == AcDbText::desc() || type == AcDbBlockReference::desc();
}

LeftEntity leftOf(AcDbObjectId id) {
    LeftEntity left;
    static_cast<EntityNote&>(left) = noteOf(id);
    left.hangsAt = database::hangingPoint(id);
    const AcRxClass* const type = id.objectClass();
    if (id.isErased()) {
        left.reason = Reason::erased;
    } else if (type == AcDbMInsertBlock::desc()) {
        left.reason = Reason::arrayInsert;
    } else if (type == AcDbAttributeDefinition::desc()) {
        left.reason = Reason::attributeDefinition;
    } else if (!isTurnedClass(type)) {
        left.reason = Reason::classNotTurned;
    } else {
        left.detail = toUtf8(database::unreadableReason(id));
        const bool locked = left.detail.empty() && database::layerState(id).locked;
        left.reason = locked ? Reason::lockedLayer : Reason::notOpened;
    }
    return left;
}

// Turned entities and left ones of one run.
class Sorting {
  public:
    Sorting(CommandRun& run, const TamLib::PolyLine& line, database::GroupChanges changes)
        : run_(run), line_(line), changes_(std::move(changes)) {
        for (const database::Turned& turned : changes_.turned) turned_[turned.entity] = &turned;
        run_.otherChanges = changes_.others.size();
    }

    void sort(const PromptRecord& selection) {
        run_.selected = selection.entities.size();
        for (const AcDbObjectId id : selection.entities) take(id);
        for (const AcDbObjectId id : selection.lockedOut) {
            if (!told_.insert(id).second) continue;
            LeftEntity left = leftOf(id);
            left.reason = Reason::lockedLayer;
            left.detail.clear();
            left.selected = false;
            run_.left.push_back(std::move(left));
        }
    }

    // Those that were turned without having been selected.
    void sortTheRest() {
        for (const database::Turned& turned : changes_.turned)
            if (told_.insert(turned.entity).second) add(turned);
    }

  private:
    void take(AcDbObjectId id) {
        if (!told_.insert(id).second) return;
        const auto turned = turned_.find(id);
        if (turned != turned_.end()) return add(*turned->second);
        LeftEntity left = leftOf(id);
        const bool unexplained = left.reason == Reason::notOpened && left.detail.empty();
        if (unexplained && left.hangsAt && !givesAngle(*left.hangsAt))
            left.reason = Reason::noAngle;
        run_.left.push_back(std::move(left));
    }

    // False where the segment that an entity there would follow has a direction that is no number.
    bool givesAngle(const AcGePoint3d& place) const {
        if (line_.count < 2) return true;
        double distance = 0.0;
        const TamLib::Point3d point(place.x, place.y, place.z);
        const int segment = line_.NearestSegment(point, &distance, nullptr);
        if (segment < 0) return false;
        const TamLib::Point3d& begin = line_.data[segment];
        const TamLib::Point3d& end = line_.data[segment + 1];
        return std::isfinite(std::hypot(end.x - begin.x, end.y - begin.y));
    }

    void add(const database::Turned& turned) {
        TurnedEntity entity;
        static_cast<EntityNote&>(entity) = noteOf(turned.entity);
        entity.before = turned.before;
        entity.after = turned.after;
        entity.hangsAt = database::hangingPoint(turned.entity).value_or(AcGePoint3d());
        if (line_.count != 0) {
            const TamLib::Point3d point(entity.hangsAt.x, entity.hangsAt.y, entity.hangsAt.z);
            entity.segment = line_.NearestSegment(point, &entity.distance, nullptr);
        }
        run_.turned.push_back(std::move(entity));
    }

    CommandRun& run_;
    const TamLib::PolyLine& line_;
    const database::GroupChanges changes_;
    std::unordered_map<AcDbObjectId, const database::Turned*> turned_;
    std::unordered_set<AcDbObjectId> told_;
};

void takeLine(const PromptRecord& pick, const TamLib::PolyLine& read, CommandRun& run) {
    PickedLine line;
    static_cast<EntityNote&>(line) = noteOf(pick.entities.front());
    line.point = pick.point;
    for (std::uint32_t i = 0; i < read.count; ++i)
        line.vertices.emplace_back(read.data[i].x, read.data[i].y, read.data[i].z);
    run.line = std::move(line);
}

const char* nameOf(dxf::Release release) {
    using dxf::Release;
    switch (release) {
        case Release::R9:
            return "R9";
        case Release::R10:
            return "R10";
        case Release::R12:
            return "R12";
        case Release::R13:
            return "R13";
        case Release::R14:
            return "R14";
        case Release::R2000:
            return "R2000";
        case Release::R2004:
            return "R2004";
        case Release::R2007:
            return "R2007";
        case Release::R2010:
            return "R2010";
        case Release::R2013:
            return "R2013";
        case Release::R2018:
            return "R2018";
        case Release::unknown:
            break;
    }
    return "";
}

// Gathers what runs came to.
class Gathering {
  public:
    void add(const CommandRun& run) {
        if (run.takenBack) return;
        outcome_.otherChanges += run.otherChanges;
        for (const TurnedEntity& entity : run.turned) {
            const auto [known, fresh] = turned_.emplace(entity.id, outcome_.turned.size());
            if (fresh)
                outcome_.turned.push_back({&entity, &entity});
            else
                outcome_.turned[known->second].last = &entity;
        }
        for (const LeftEntity& entity : run.left) {
            const auto [known, fresh] = left_.emplace(entity.id, outcome_.left.size());
            if (fresh)
                outcome_.left.push_back(&entity);
            else
                outcome_.left[known->second] = &entity;
        }
    }

    Outcome take() {
        std::vector<const LeftEntity*>& left = outcome_.left;
        left.erase(std::remove_if(
                       left.begin(), left.end(),
                       [&](const LeftEntity* entity) { return turned_.count(entity->id) != 0; }),
                   left.end());
        return std::move(outcome_);
    }

  private:
    Outcome outcome_;
    std::unordered_map<AcDbObjectId, std::size_t> turned_, left_;  // their places in the outcome
};

}  // namespace

database::TurnCounts Outcome::counts() const {
    const auto unchanged = std::count_if(turned.begin(), turned.end(),
                                         [](const Turned& entity) { return entity.stoodSo(); });
    return {turned.size(), static_cast<std::size_t>(unchanged), left.size()};
}

ReasonCounts Outcome::leftByReason() const {
    ReasonCounts counts{};
    for (const LeftEntity* entity : left) ++counts[static_cast<std::size_t>(entity->reason)];
    return counts;
}

std::string Outcome::text() const {
    const std::string text = counts().text();
    return otherChanges == 0 ? text
                             : text + ", " + std::to_string(otherChanges) + " changed otherwise";
}

// The reason that most have, and that matters least, comes last.
std::string Outcome::textWithReasons() const {
    std::string all = text();
    const char* separator = ": ";
    const ReasonCounts counts = leftByReason();
    const auto add = [&](Reason reason) {
        if (const std::size_t count = counts[static_cast<std::size_t>(reason)]; count != 0)
            all += std::exchange(separator, ", ") + std::to_string(count) + " " + described(reason);
    };
    for (const Reason reason : allReasons)
        if (reason != Reason::classNotTurned) add(reason);
    add(Reason::classNotTurned);
    return all;
}

Outcome outcomeOf(const CommandRun& run) {
    Gathering gathering;
    gathering.add(run);
    return gathering.take();
}

namespace {

// "3 left: 1 locked layer, 2 class not turned (1 LINE, 1 MTEXT)", in the order of textWithReasons.
std::string leftInWords(const Outcome& outcome) {
    std::string text = std::to_string(outcome.left.size()) + " left";
    const ReasonCounts counts = outcome.leftByReason();
    const char* separator = ": ";
    const auto add = [&](Reason reason) {
        if (const std::size_t count = counts[static_cast<std::size_t>(reason)]; count != 0)
            text +=
                std::exchange(separator, ", ") + std::to_string(count) + " " + described(reason);
    };
    for (const Reason reason : allReasons)
        if (reason != Reason::classNotTurned) add(reason);
    add(Reason::classNotTurned);
    std::map<std::string, std::size_t> types;
    for (const LeftEntity* left : outcome.left)
        if (left->reason == Reason::classNotTurned) ++types[left->type];
    const char* between = " (";
    for (const auto& [type, many] : types)
        text += std::exchange(between, ", ") + std::to_string(many) + " " + type;
    return types.empty() ? text : text + ")";
}

}  // namespace

std::string sentenceOf(const CommandRun& run) {
    if (run.end == CommandResult::End::exceptionLeft) return {};
    const Outcome outcome = outcomeOf(run);
    if (!outcome.turned.empty()) return outcome.textWithReasons() + ".";
    if (outcome.left.empty()) return {};
    if (outcome.otherChanges != 0) return outcome.textWithReasons() + ".";
    return "Nothing was turned; " + leftInWords(outcome) + ".";
}

std::size_t Record::selected() const {
    std::size_t total = 0;
    for (const CommandRun& run : runs)
        if (!run.takenBack) total += run.selected;
    return total;
}

Outcome Record::outcome() const {
    Gathering gathering;
    for (const CommandRun& run : runs) gathering.add(run);
    return gathering.take();
}

const CommandRun* Account::hear(const editor::Session& session, const CommandResult& result) {
    const AcDbDatabase* const drawing = session.drawing();
    const bool ofModule = editor::CommandStack::instance().find(result.name) != nullptr;
    if (drawing == nullptr || !ofModule) return nullptr;
    CommandRun run;
    run.command = toUtf8(result.name);
    run.where = toUtf8(result.where);
    run.end = result.end;
    run.exception = toUtf8(result.exception);
    run.undoGroup = result.undoGroup;
    if (const PromptRecord* reply = last(result, PromptRecord::Kind::text))
        run.reply = toUtf8(reply->reply);
    TamLib::PolyLine line(0);
    if (const PromptRecord* pick = last(result, PromptRecord::Kind::entity)) {
        line = read(pick->entities.front());
        takeLine(*pick, line, run);
    }
    Sorting sorting(run, line, database::changesOf(*drawing, run.undoGroup));
    if (const PromptRecord* selection = last(result, PromptRecord::Kind::selection))
        sorting.sort(*selection);
    sorting.sortTheRest();
    return &runs_.emplace_back(std::move(run));
}

Record Account::record(const AcDbDatabase& drawing) const {
    const dxf::Document& document = database::document(drawing);
    Record record;
    record.drawing = document.name();
    record.release = nameOf(document.release());
    if (const auto version = document.headerVariable("$ACADVER").find(1))
        record.version = toUtf8(document.decode(version->bytes()));
    record.findings = findingsOf(document);
    record.runs = runs_;
    for (CommandRun& run : record.runs) {
        run.takenBack = run.undoGroup != 0 && !database::stands(drawing, run.undoGroup);
        if (!run.takenBack) continue;
        run.turned.clear();
        run.left.clear();
        run.otherChanges = 0;
    }
    return record;
}

std::string Findings::text() const {
    if (all.empty()) return {};
    const std::string first = all.front().where.text() + ": " + all.front().message;
    return count() == 1 ? first : first + ", and " + std::to_string(count() - 1) + " more";
}

Findings findingsOf(const dxf::Document& drawing) {
    return {drawing.findings(), drawing.omittedFindings()};
}

std::string described(Reason reason) {
    switch (reason) {
        case Reason::lockedLayer:
            return "locked layer";
        case Reason::classNotTurned:
            return "class not turned";
        case Reason::arrayInsert:
            return "array insert";
        case Reason::attributeDefinition:
            return "attribute definition";
        case Reason::notOpened:
            return "could not be opened";
        case Reason::noAngle:
            return "got no angle";
        case Reason::erased:
            break;
    }
    return "erased";
}

const char* keyOf(Reason reason) {
    switch (reason) {
        case Reason::lockedLayer:
            return "lockedLayer";
        case Reason::classNotTurned:
            return "classNotTurned";
        case Reason::arrayInsert:
            return "arrayInsert";
        case Reason::attributeDefinition:
            return "attributeDefinition";
        case Reason::notOpened:
            return "notOpened";
        case Reason::noAngle:
            return "noAngle";
        case Reason::erased:
            break;
    }
    return "erased";
}

}  // namespace host::console
