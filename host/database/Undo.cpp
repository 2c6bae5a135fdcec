#include "host/database/Undo.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

#include "host/database/DatabaseImp.h"
#include "host/database/ObjectImp.h"

namespace host::database {

std::vector<UndoLog::Step>& UndoLog::level() {
    return open_.empty() ? done_ : open_.back().steps;
}

const std::vector<UndoLog::Step>& UndoLog::level() const {
    return open_.empty() ? done_ : open_.back().steps;
}

// Ends the group of changes that were made outside of any.
void UndoLog::closeLoose() {
    if (!done_.empty()) done_.back().closed = true;
}

std::uint64_t UndoLog::beginGroup(std::wstring name) {
    closeLoose();
    open_.emplace_back();
    open_.back().name = std::move(name);
    open_.back().serial = ++lastSerial_;
    return lastSerial_;
}

void UndoLog::endGroup() {
    if (open_.empty()) return;
    Step group = std::move(open_.back());
    open_.pop_back();
    level().push_back(std::move(group));
}

void UndoLog::rollback() {
    if (open_.empty()) return;
    Step group = std::move(open_.back());
    open_.pop_back();
    exchange(group, true);
    undone_.clear();
}

// Exchanges what the step holds with what the objects are now, so that the step can be taken back.
void UndoLog::exchange(Step& step, bool backwards) {
    if (step.fields == nullptr) {
        const std::size_t count = step.steps.size();
        for (std::size_t i = 0; i < count; ++i) {
            exchange(step.steps[backwards ? count - 1 - i : i], backwards);
        }
        return;
    }
    AcDbObject* object = database_.object(step.object);
    if (object == nullptr) return;
    AcDbImpObject& imp = *object->impl();
    database_.noteChange(*object);
    step.fields = imp.exchangeFields(std::move(step.fields));
    const bool erased = imp.isErased();
    imp.setErased(step.erased);
    step.erased = erased;
}

bool UndoLog::changesNothing(const Step& step) {
    return step.fields == nullptr &&
           std::all_of(step.steps.begin(), step.steps.end(), changesNothing);
}

std::optional<std::size_t> UndoLog::lastStep() const {
    const std::vector<Step>& steps = level();
    const auto last = std::find_if_not(steps.rbegin(), steps.rend(), changesNothing);
    // Inside a group single changes are no steps; only groups that ended in it are.
    if (last == steps.rend() || last->fields != nullptr) return std::nullopt;
    return static_cast<std::size_t>(steps.rend() - last) - 1;
}

bool UndoLog::undo() {
    const std::optional<std::size_t> last = lastStep();
    if (!last) return false;
    std::vector<Step>& steps = level();
    const auto at = steps.begin() + static_cast<std::ptrdiff_t>(*last);
    Step step = std::move(*at);
    steps.erase(at);
    exchange(step, true);
    step.closed = true;
    undone_.push_back(std::move(step));
    return true;
}

bool UndoLog::redo() {
    if (undone_.empty()) return false;
    Step step = std::move(undone_.back());
    undone_.pop_back();
    exchange(step, false);
    level().push_back(std::move(step));
    return true;
}

std::size_t UndoLog::undoSteps() const {
    const auto& steps = level();
    const auto change = std::find_if(steps.rbegin(), steps.rend(),
                                     [](const Step& step) { return step.fields != nullptr; });
    return static_cast<std::size_t>(std::count_if(
        steps.rbegin(), change, [](const Step& step) { return !changesNothing(step); }));
}

UndoLog::StepNote UndoLog::noteOf(const Step& step) const {
    std::vector<Former> changed;
    collect(step, changed);
    std::unordered_set<std::uint32_t> entities;
    for (const Former& former : changed) {
        const AcDbObject* const object = database_.object(former.object);
        if (object != nullptr && object->isKindOf(AcDbEntity::desc()))
            entities.insert(former.object);
    }
    return {step.name, entities.size()};
}

std::optional<UndoLog::StepNote> UndoLog::undoStep() const {
    const std::optional<std::size_t> last = lastStep();
    if (!last) return std::nullopt;
    return noteOf(level()[*last]);
}

std::optional<UndoLog::StepNote> UndoLog::redoStep() const {
    if (undone_.empty()) return std::nullopt;
    return noteOf(undone_.back());
}

// The group that a change belongs to: the innermost open one, or a loose one outside of any.
UndoLog::Step& UndoLog::currentGroup() {
    if (!open_.empty()) return open_.back();
    if (done_.empty() || done_.back().closed) {
        done_.emplace_back();
        done_.back().closed = false;
        done_.back().serial = ++lastSerial_;
    }
    return done_.back();
}

void UndoLog::aboutToChange(AcDbObject& object) {
    undone_.clear();
    Step& group = currentGroup();
    if (object.impl()->notedBy() == group.serial) return;
    object.impl()->setNotedBy(group.serial);
    Step step;
    step.object = AcDbImpDatabase::numberOf(object.objectId());
    step.fields = object.impl()->fields().clone();
    step.erased = object.impl()->isErased();
    group.steps.push_back(std::move(step));
}

const UndoLog::Step* UndoLog::findGroup(const std::vector<Step>& steps, std::uint64_t group) {
    for (const Step& step : steps) {
        if (step.fields != nullptr) continue;
        if (step.serial == group) return &step;
        if (const Step* inner = findGroup(step.steps, group)) return inner;
    }
    return nullptr;
}

const UndoLog::Step* UndoLog::findGroup(std::uint64_t group) const {
    const Step* ended = findGroup(done_, group);
    return ended != nullptr ? ended : findGroup(open_, group);
}

bool UndoLog::stands(std::uint64_t group) const {
    return findGroup(group) != nullptr;
}

void UndoLog::collect(const Step& group, std::vector<Former>& former) {
    for (const Step& step : group.steps) {
        if (step.fields != nullptr)
            former.push_back({step.object, step.fields.get(), step.erased});
        else
            collect(step, former);
    }
}

std::vector<UndoLog::Former> UndoLog::formerOf(std::uint64_t group) const {
    std::vector<Former> former;
    const Step* const found = findGroup(group);
    if (found == nullptr) return former;
    collect(*found, former);
    // A group inside another notes an object anew; what it was first counts.
    std::unordered_set<std::uint32_t> seen;
    former.erase(
        std::remove_if(former.begin(), former.end(),
                       [&](const Former& each) { return !seen.insert(each.object).second; }),
        former.end());
    return former;
}

std::uint64_t beginGroup(AcDbDatabase& database, std::wstring name) {
    return undoLog(database).beginGroup(std::move(name));
}

void endGroup(AcDbDatabase& database) {
    undoLog(database).endGroup();
}

void rollback(AcDbDatabase& database) {
    undoLog(database).rollback();
}

bool undo(AcDbDatabase& database) {
    return undoLog(database).undo();
}

bool redo(AcDbDatabase& database) {
    return undoLog(database).redo();
}

UndoLog& undoLog(AcDbDatabase& database) {
    return database.impl()->undoLog();
}

}  // namespace host::database
