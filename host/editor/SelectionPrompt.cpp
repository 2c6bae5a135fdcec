#include "host/editor/SelectionPrompt.h"

#include <adscodes.h>

#include <algorithm>
#include <iterator>
#include <utility>

#include "host/database/Drawing.h"
#include "host/editor/Keywords.h"
#include "host/editor/Points.h"
#include "host/editor/SelectionSets.h"
#include "host/editor/Words.h"

namespace host::editor {

namespace {

using State = Session::Implementation;

constexpr const wchar_t* optionNames =
    L"Window Last Crossing BOX ALL Fence WPolygon CPolygon Group Add Remove Multiple Previous Undo "
    L"AUto SIngle";

constexpr const wchar_t* expected =
    L"\nExpects a point or "
    L"Window/Last/Crossing/BOX/ALL/Fence/WPolygon/CPolygon/Group/Add/Remove/Multiple/"
    L"Previous/Undo/AUto/SIngle";

PlanPoint plan(const AcGePoint3d& point) {
    return {point.x, point.y};
}

PlanBox boxOf(const std::vector<PlanPoint>& points) {
    PlanBox box;
    for (const PlanPoint& point : points) box.add(point);
    return box;
}

std::wstring count(std::size_t number, const wchar_t* what) {
    return std::to_wstring(number) + what;
}

// Entities and sets in a value, lists of them included; false when there is anything else.
bool collect(const lisp::Value& value, std::vector<AcDbObjectId>& ids);

bool collectMembers(const lisp::Value& value, std::vector<AcDbObjectId>& ids) {
    lisp::Value dotted;
    const std::vector<lisp::Value> parts = lisp::members(value, &dotted);
    // (list entity point) is a pick, whose point says nothing here.
    return lisp::isNil(dotted) && !parts.empty() && !lisp::pointOf(parts.front()) &&
           std::all_of(parts.begin(), parts.end(), [&](const lisp::Value& part) {
               return lisp::pointOf(part).has_value() || collect(part, ids);
           });
}

bool collect(const lisp::Value& value, std::vector<AcDbObjectId>& ids) {
    if (const auto* id = std::get_if<AcDbObjectId>(&value)) {
        ids.push_back(*id);
        return true;
    }
    if (const auto* set = std::get_if<lisp::SetPtr>(&value)) {
        const SelectionSet* found = SelectionSets::instance().find((*set)->name());
        if (found != nullptr) ids.insert(ids.end(), found->members.begin(), found->members.end());
        return true;
    }
    return std::holds_alternative<lisp::PairPtr>(value) && collectMembers(value, ids);
}

std::vector<AcDbObjectId> livingOf(const std::vector<AcDbObjectId>& ids) {
    std::vector<AcDbObjectId> living;
    std::copy_if(ids.begin(), ids.end(), std::back_inserter(living), isLivingEntity);
    return living;
}

}  // namespace

SelectionPrompt::SelectionPrompt(State& state, AcDbDatabase& drawing, const Filter& filter,
                                 SelectionOptions options)
    : state_(state), drawn_(drawing), filter_(filter), options_(std::move(options)) {
    const VariableValue* pickAuto = state.variables.get(L"PICKAUTO");
    automatic_ = pickAuto != nullptr && *pickAuto != VariableValue(short{0});
}

int SelectionPrompt::run() {
    while (true) {
        const Answer answer = state_.askWord(removing_ ? options_.removePrompt : options_.addPrompt,
                                             split(optionNames, L' '));
        switch (take(answer)) {
            case Step::cancelled:
                return RTCAN;
            case Step::done:
                if (!members_.empty()) state_.previousSelection = members_;
                return members_.empty() ? RTERROR : RTNORM;
            default:
                break;
        }
    }
}

SelectionPrompt::Step SelectionPrompt::take(const Answer& answer) {
    if (answer.givesUp()) return Step::cancelled;
    if (answer.kind == Answer::Kind::failed) return Step::goOn;
    if (answer.kind == Answer::Kind::value) return takeValue(answer.value, answer.lockedOut);
    const std::wstring_view word = trimmed(answer.text);
    if (word.empty()) return Step::done;
    if (const auto point = parsePoint(word, state_.lastPoint)) return takePoint(*point);
    return takeOption(word);
}

SelectionPrompt::Step SelectionPrompt::takeOption(std::wstring_view word) {
    if (word == L"?") {
        state_.print(expected);
        return Step::goOn;
    }
    const std::wstring option = matchKeyword(word, optionNames).value_or(L"");
    if (option == L"ALL") return selectAll();
    if (option == L"Window") return rectangle(false, false);
    if (option == L"Crossing") return rectangle(true, false);
    if (option == L"BOX") return rectangle(false, true);
    if (option == L"WPolygon") return polygon(false);
    if (option == L"CPolygon") return polygon(true);
    if (option == L"Fence") return fence();
    if (option == L"Multiple") return multiple();
    if (option == L"Undo") return takeBack();
    if (option == L"Last") {
        const AcDbObjectId id = drawn_.last();
        return apply(id.isNull() ? Ids() : Ids{id});
    }
    if (option == L"Previous") {
        const Ids living = livingOf(state_.previousSelection);
        if (!living.empty()) return apply(living);
        state_.print(L"\nNo previous selection set.");
        return Step::goOn;
    }
    if (option == L"Group") {
        state_.print(L"\nGroups can't be selected by their names here.");
        return Step::goOn;
    }
    if (option == L"Add")
        removing_ = false;
    else if (option == L"Remove")
        removing_ = true;
    else if (option == L"AUto")
        automatic_ = true;
    else if (option == L"SIngle")
        options_.single = true;
    else
        return refuse();
    return Step::goOn;
}

SelectionPrompt::Step SelectionPrompt::refuse() {
    state_.print(L"\n*Invalid selection*");
    state_.print(expected);
    return Step::goOn;
}

SelectionPrompt::Ids SelectionPrompt::under(const AcGePoint3d& point) {
    const AcDbObjectId id = drawn_.topmostAt(plan(point), state_.pickReach());
    return id.isNull() ? Ids() : Ids{id};
}

SelectionPrompt::Step SelectionPrompt::takePoint(const AcGePoint3d& point) {
    state_.lastPoint = point;
    const Ids found = under(point);
    if (found.empty() && automatic_) return rectangleFrom(point, false, true);
    return apply(found);
}

SelectionPrompt::Step SelectionPrompt::takeValue(const lisp::Value& value, const Ids& lockedOut) {
    Ids ids;
    if (lisp::isNil(value)) {
        state_.print(L"\nThe expression gives nil: there is no such entity.");
        return Step::goOn;
    }
    if (const auto point = lisp::pointOf(value)) return takePoint(*point);
    if (!collect(value, ids)) return refuse();
    return apply(livingOf(ids), lockedOut);
}

SelectionPrompt::Step SelectionPrompt::selectAll() {
    Ids locked;
    const Ids all = drawn_.selectable(locked);
    return apply(all, std::move(locked));
}

std::optional<AcGePoint3d> SelectionPrompt::askPoint(std::wstring_view prompt, Step& ended) {
    ended = Step::goOn;
    while (true) {
        const Answer answer = state_.askWord(prompt);
        if (answer.givesUp()) {
            ended = Step::cancelled;
            return std::nullopt;
        }
        if (answer.isEmpty()) return std::nullopt;
        const auto point = state_.pointFrom(answer);
        if (point) {
            state_.lastPoint = *point;
            return point;
        }
        if (answer.kind != Answer::Kind::failed) state_.print(L"\nA point is needed, as in 3,4.");
    }
}

SelectionPrompt::Step SelectionPrompt::rectangle(bool crossing, bool byDirection) {
    Step ended = Step::goOn;
    const auto first = askPoint(L"\nSpecify first corner: ", ended);
    return first ? rectangleFrom(*first, crossing, byDirection) : ended;
}

SelectionPrompt::Step SelectionPrompt::rectangleFrom(const AcGePoint3d& first, bool crossing,
                                                     bool byDirection) {
    Step ended = Step::goOn;
    const auto second = askPoint(L"\nSpecify opposite corner: ", ended);
    if (!second) return ended;
    const PlanBox box = PlanBox::around(plan(first), plan(*second));
    const bool touching = byDirection ? second->x < first.x : crossing;
    return apply(drawn_.visibleWhere(box, [&](const PlanFigure& figure) {
        return touching ? figure.crosses(box) : figure.inside(box);
    }));
}

// Points until Enter; "U" takes the last one back. A closed line must not cross itself.
std::optional<std::vector<PlanPoint>> SelectionPrompt::askLine(std::wstring_view first, bool closed,
                                                               Step& ended) {
    std::vector<PlanPoint> points;
    while (true) {
        const wchar_t* next = closed ? L"\nSpecify endpoint of line or [Undo]: "
                                     : L"\nSpecify next fence point or [Undo]: ";
        const Answer answer = state_.askWord(points.empty() ? first : next, {L"Undo"});
        ended = answer.givesUp() ? Step::cancelled : Step::goOn;
        if (answer.givesUp()) return std::nullopt;
        if (answer.kind == Answer::Kind::failed) continue;
        if (answer.isEmpty()) break;
        const auto point = state_.pointFrom(answer);
        if (!point && matchKeyword(answer.text, L"Undo") && !points.empty()) {
            points.pop_back();
        } else if (!point) {
            state_.print(L"\nA point is needed, as in 3,4, or Undo.");
        } else if (closed && !staysSimple(points, plan(*point))) {
            state_.print(L"\nInvalid point: the polygon would cross itself.");
        } else {
            points.push_back(plan(*point));
            state_.lastPoint = *point;
        }
    }
    if (closed ? closesSimply(points) : points.size() >= 2) return points;
    state_.print(!closed             ? L"\nA fence needs two points."
                 : points.size() < 3 ? L"\nA polygon needs three points."
                                     : L"\nInvalid polygon: its last side would cross it.");
    return std::nullopt;
}

SelectionPrompt::Step SelectionPrompt::polygon(bool crossing) {
    Step ended = Step::goOn;
    const auto points = askLine(L"\nFirst polygon point: ", true, ended);
    if (!points) return ended;
    return apply(drawn_.visibleWhere(boxOf(*points), [&](const PlanFigure& figure) {
        return crossing ? figure.crosses(*points) : figure.inside(*points);
    }));
}

SelectionPrompt::Step SelectionPrompt::fence() {
    Step ended = Step::goOn;
    const auto points = askLine(L"\nSpecify first fence point: ", false, ended);
    if (!points) return ended;
    return apply(drawn_.visibleWhere(
        boxOf(*points), [&](const PlanFigure& figure) { return figure.touches(*points); }));
}

SelectionPrompt::Step SelectionPrompt::multiple() {
    Ids all;
    std::unordered_set<AcDbObjectId> seen;
    Step ended = Step::goOn;
    while (const auto point = askPoint(options_.addPrompt, ended)) {
        for (const AcDbObjectId id : under(*point)) {
            if (seen.insert(id).second) all.push_back(id);
        }
    }
    return ended == Step::cancelled ? ended : apply(all);
}

SelectionPrompt::Step SelectionPrompt::takeBack() {
    if (earlier_.empty()) {
        state_.print(L"\nNothing to undo.");
        return Step::goOn;
    }
    members_ = std::move(earlier_.back());
    earlier_.pop_back();
    known_ = {members_.begin(), members_.end()};
    state_.print(L"\n" + count(members_.size(), L" total"));
    return Step::goOn;
}

SelectionPrompt::Ids SelectionPrompt::filtered(const Ids& found, std::size_t& filteredOut,
                                               Ids& locked) const {
    Ids passing;
    for (const AcDbObjectId id : found) {
        if (!filter_.passes(id)) {
            ++filteredOut;
            continue;
        }
        if (options_.refuseLocked && database::layerState(id).locked)
            locked.push_back(id);
        else
            passing.push_back(id);
    }
    return passing;
}

std::wstring SelectionPrompt::add(const Ids& ids) {
    const bool wasEmpty = members_.empty();
    const std::size_t before = members_.size();
    for (const AcDbObjectId id : ids) {
        if (known_.insert(id).second) members_.push_back(id);
    }
    const std::size_t doubled = ids.size() - (members_.size() - before);
    std::wstring text = count(ids.size(), L" found");
    if (doubled != 0) text += L" (" + count(doubled, L" duplicate)");
    if (!wasEmpty) text += L", " + count(members_.size(), L" total");
    return text;
}

std::wstring SelectionPrompt::remove(const Ids& ids) {
    std::unordered_set<AcDbObjectId> gone;
    for (const AcDbObjectId id : ids) {
        if (known_.erase(id) != 0) gone.insert(id);
    }
    members_.erase(std::remove_if(members_.begin(), members_.end(),
                                  [&](AcDbObjectId id) { return gone.count(id) != 0; }),
                   members_.end());
    return count(ids.size(), L" found, ") + count(gone.size(), L" removed, ") +
           count(members_.size(), L" total");
}

std::vector<AcDbObjectId> SelectionPrompt::lockedOut() const {
    Ids left;
    std::unordered_set<AcDbObjectId> told(known_);
    std::copy_if(locked_.begin(), locked_.end(), std::back_inserter(left),
                 [&](AcDbObjectId id) { return told.insert(id).second; });
    return left;
}

SelectionPrompt::Step SelectionPrompt::apply(const Ids& found, Ids locked) {
    std::size_t filteredOut = 0;
    const Ids ids = filtered(found, filteredOut, locked);
    Ids before = members_;
    const std::wstring text = removing_ ? remove(ids) : add(ids);
    if (members_.size() != before.size()) earlier_.push_back(std::move(before));
    state_.print(L"\n" + text);
    if (filteredOut != 0)
        state_.print(L"\n" + count(filteredOut, filteredOut == 1 ? L" was" : L" were") +
                     L" filtered out.");
    if (!locked.empty())
        state_.print(L"\n" + count(locked.size(), locked.size() == 1 ? L" was" : L" were") +
                     L" on a locked layer.");
    if (!removing_) locked_.insert(locked_.end(), locked.begin(), locked.end());
    return options_.single && !ids.empty() ? Step::done : Step::goOn;
}

}  // namespace host::editor
