// acedSSGet: selection sets by prompt, by place and by filter.
#include <acedads.h>
#include <windows.h>

#include <string>
#include <string_view>
#include <vector>

#include "host/database/Drawing.h"
#include "host/database/Fault.h"
#include "host/editor/Drawn.h"
#include "host/editor/Filter.h"
#include "host/editor/Scripted.h"
#include "host/editor/SelectionMode.h"
#include "host/editor/SelectionPrompt.h"
#include "host/editor/SelectionSets.h"
#include "host/editor/Words.h"

using namespace host::editor;

namespace {

using State = Session::Implementation;
using Ids = std::vector<AcDbObjectId>;
using Mode = SelectionMode;

std::wstring_view orEmpty(const ACHAR* text) {
    return text == nullptr ? std::wstring_view() : text;
}

PlanPoint planOf(const void* point) {
    const auto* numbers = static_cast<const double*>(point);
    return {numbers[0], numbers[1]};
}

// The points of a chain; empty when there is anything else in it.
std::vector<PlanPoint> pointsOf(const void* chain) {
    std::vector<PlanPoint> points;
    for (const auto* at = static_cast<const resbuf*>(chain); at != nullptr; at = at->rbnext) {
        if (at->restype != RTPOINT && at->restype != RT3DPOINT) return {};
        points.push_back({at->resval.rpoint[0], at->resval.rpoint[1]});
    }
    return points;
}

PlanBox boxOf(const std::vector<PlanPoint>& points) {
    PlanBox box;
    for (const PlanPoint& point : points) box.add(point);
    return box;
}

// Whether a chain of corners is a polygon that does not cross itself. No, when it is to stop.
bool isPolygon(const State& state, const std::vector<PlanPoint>& points) {
    std::vector<PlanPoint> line;
    for (const PlanPoint& point : points) {
        if (state.interrupted || !staysSimple(line, point)) return false;
        line.push_back(point);
    }
    return closesSimply(line);
}

Ids byRectangle(const Drawn& drawn, const void* first, const void* second, bool crossing) {
    if (first == nullptr || second == nullptr) return {};
    const PlanBox box = PlanBox::around(planOf(first), planOf(second));
    return drawn.visibleWhere(box, [&](const PlanFigure& figure) {
        return crossing ? figure.crosses(box) : figure.inside(box);
    });
}

Ids byPolygon(const State& state, const Drawn& drawn, const void* chain, bool crossing) {
    const std::vector<PlanPoint> points = pointsOf(chain);
    if (!isPolygon(state, points)) return {};
    return drawn.visibleWhere(boxOf(points), [&](const PlanFigure& figure) {
        return crossing ? figure.crosses(points) : figure.inside(points);
    });
}

Ids byFence(const Drawn& drawn, const void* chain) {
    const std::vector<PlanPoint> points = pointsOf(chain);
    if (points.size() < 2) return {};
    return drawn.visibleWhere(boxOf(points),
                              [&](const PlanFigure& figure) { return figure.touches(points); });
}

Ids orNone(AcDbObjectId id) {
    return id.isNull() ? Ids() : Ids{id};
}

// What a method finds without asking anybody, in part when it is to stop; none for "I", as nothing
// is ever selected beforehand.
Ids find(State& state, const Mode& mode, const void* first, const void* second) {
    const Drawn drawn(*state.drawing(), [&state] { return state.interrupted.load(); });
    if (mode.method.empty()) return orNone(drawn.topmostAt(planOf(first), state.pickReach()));
    if (mode.method == L"X") return drawn.entities();
    if (mode.method == L"W") return byRectangle(drawn, first, second, false);
    if (mode.method == L"C") return byRectangle(drawn, first, second, true);
    if (mode.method == L"WP") return byPolygon(state, drawn, first, false);
    if (mode.method == L"CP") return byPolygon(state, drawn, first, true);
    if (mode.method == L"F") return byFence(drawn, first);
    if (mode.method == L"P") return state.previousSelection;
    if (mode.method == L"L") return orNone(drawn.last());
    Ids locked;
    return mode.method == L"A" ? drawn.selectable(locked) : Ids();
}

Ids passing(const State& state, const Ids& found, const Filter& filter, bool refuseLocked) {
    Ids ids;
    for (const AcDbObjectId id : found) {
        if (state.interrupted) break;
        if (id.isErased() || !filter.passes(id)) continue;
        if (!refuseLocked || !host::database::layerState(id).locked) ids.push_back(id);
    }
    return ids;
}

int ask(State& state, const Mode& mode, const void* prompts, const Filter& filter, Ids& ids) {
    SelectionOptions options;
    options.single = mode.single;
    options.refuseLocked = mode.refuseLocked;
    if (mode.prompts) {
        const auto* texts = static_cast<const ACHAR* const*>(prompts);
        if (texts == nullptr || texts[0] == nullptr || texts[1] == nullptr) return RTERROR;
        options.addPrompt = texts[0];
        options.removePrompt = texts[1];
    }
    SelectionPrompt dialogue(state, *state.drawing(), filter, options);
    const int code = dialogue.run();
    ids = dialogue.members();
    PromptRecord record;
    record.kind = PromptRecord::Kind::selection;
    record.code = code;
    record.entities = ids;
    record.lockedOut = dialogue.lockedOut();
    state.record(record);
    return code;
}

int scriptedSelect(Scripted& scripted, const ACHAR* mode, const void* point, const resbuf* filter,
                   ads_name set) {
    Scripted::Prompt record;
    record.function = "acedSSGet";
    record.mode = mode == nullptr ? L"" : mode;
    record.focus = GetFocus();
    record.hasFilter = filter != nullptr;
    if (mode == nullptr && point != nullptr) {
        record.hasPoint = true;
        const auto* numbers = static_cast<const double*>(point);
        record.point = {numbers[0], numbers[1], numbers[2]};
    }
    if (record.mode == L":$" && point != nullptr)
        record.text = static_cast<const ACHAR* const*>(point)[0];
    scripted.record(record);
    Scripted::SelectAnswer answer = scripted.nextSelect();
    if (answer.code != RTNORM) return answer.code;
    SelectionSet& made = SelectionSets::instance().make(std::move(answer.entities), set);
    made.refusedMembers = std::move(answer.refusedMembers);
    made.lengthCode = answer.lengthCode;
    return RTNORM;
}

}  // namespace

int acedSSGet(const ACHAR* mode, const void* point1, const void* point2, const resbuf* filter,
              ads_name set) {
    HOST_CALL("acedSSGet");
    if (set == nullptr) return RTERROR;
    ads_name_clear(set);
    if (Scripted* scripted = Scripted::current())
        return scriptedSelect(*scripted, mode, point1, filter, set);
    State* state = currentState();
    const Mode parsed = parseSelectionMode(orEmpty(mode));
    if (state == nullptr || parsed.takes == Mode::Takes::unknown) return RTERROR;
    if (state->drawing() == nullptr) return state->refusePrompt(PromptRecord::Kind::selection);
    Filter tests;
    std::wstring problem;
    if (!tests.read(filter, problem)) {
        state->error(problem);
        return RTERROR;
    }
    Ids ids;
    if (parsed.method.empty() && (parsed.prompts || point1 == nullptr)) {
        const int code = ask(*state, parsed, point1, tests, ids);
        if (code != RTNORM) return code;
    } else {
        ids = passing(*state, find(*state, parsed, point1, point2), tests, parsed.refuseLocked);
        if (state->interrupted) return RTCAN;
    }
    if (ids.empty()) return RTERROR;
    SelectionSets::instance().make(std::move(ids), set);
    return RTNORM;
}
