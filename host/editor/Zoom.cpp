#include "host/editor/Zoom.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "host/database/Drawing.h"
#include "host/editor/Drawn.h"
#include "host/editor/Keywords.h"
#include "host/editor/Points.h"
#include "host/editor/SessionState.h"
#include "host/editor/Words.h"

namespace host::editor {

namespace {

using State = Session::Implementation;
using View = State::View;

constexpr const wchar_t* optionNames = L"All Center Extents Previous Scale Window";
constexpr std::size_t mostEarlierViews = 10;

PlanPoint plan(const AcGePoint3d& point) {
    return {point.x, point.y};
}

// Width of the screen in heights.
double aspect(State& state) {
    const VariableValue* size = state.variables.get(L"SCREENSIZE");
    const auto* screen = size == nullptr ? nullptr : std::get_if<PlanePoint>(size);
    return screen == nullptr ? 1.0 : screen->x / screen->y;
}

View around(State& state, const PlanBox& box) {
    const double height = std::max(box.max.y - box.min.y, (box.max.x - box.min.x) / aspect(state));
    return {
        {box.min.x + (box.max.x - box.min.x) / 2.0, box.min.y + (box.max.y - box.min.y) / 2.0, 0.0},
        height > 0.0 ? height : state.view().height};
}

PlanBox drawnBox(const State& state) {
    return Drawn(*state.drawing()).extents();
}

// $LIMMIN to $LIMMAX; empty for a drawing that has none.
PlanBox limits(const State& state) {
    PlanBox box;
    const dxf::Document& document = database::document(*state.drawing());
    for (const char* name : {"$LIMMIN", "$LIMMAX"}) {
        const dxf::GroupRange groups = document.headerVariable(name);
        const auto x = groups.find(10);
        const auto y = groups.find(20);
        if (!x || !y || !x->real() || !y->real()) return {};
        box.add({*x->real(), *y->real()});
    }
    return box;
}

View everything(State& state, bool withLimits) {
    PlanBox box = drawnBox(state);
    const PlanBox inside = withLimits ? limits(state) : PlanBox();
    if (!inside.empty()) {
        box.add(inside.min);
        box.add(inside.max);
    }
    if (box.empty()) throw CommandFailure(L"nothing is drawn that could be shown");
    return around(state, box);
}

// "2" or "2x"; none for anything else, and for what is not above 0.
struct Scale {
    double factor = 1.0;
    bool ofCurrent = false;
};

std::optional<Scale> parseScale(std::wstring_view text) {
    const bool ofCurrent = !text.empty() && (text.back() == L'x' || text.back() == L'X');
    if (ofCurrent) text.remove_suffix(1);
    const auto factor = parseNumber(text);
    if (!factor || !(*factor > 0.0)) return std::nullopt;
    return Scale{*factor, ofCurrent};
}

AcGePoint3d askPoint(State& state, const wchar_t* prompt) {
    while (true) {
        const Answer answer = state.askOrCancel({Request::Kind::word, prompt, {}});
        if (const auto point = state.pointFrom(answer)) return *point;
        state.print(L"\nA point is needed, as in 3,4.");
    }
}

View window(State& state, const AcGePoint3d& first) {
    const AcGePoint3d second = askPoint(state, L"\nSpecify opposite corner: ");
    return around(state, PlanBox::around(plan(first), plan(second)));
}

View center(State& state) {
    const AcGePoint3d point = askPoint(state, L"\nSpecify center point: ");
    const double height = state.view().height;
    while (true) {
        const Answer answer =
            state.askOrCancel({Request::Kind::word,
                               L"\nEnter magnification or height <" + numberText(height) + L">: ",
                               {}});
        if (answer.isEmpty()) return {{point.x, point.y, 0.0}, height};
        if (const auto scale = parseScale(trimmed(answer.text))) {
            return {{point.x, point.y, 0.0},
                    scale->ofCurrent ? height / scale->factor : scale->factor};
        }
        state.print(L"\nA height above 0, or a magnification as in 2x, is needed.");
    }
}

View scaled(State& state, const Scale& scale) {
    const double whole = scale.ofCurrent ? state.view().height : everything(state, true).height;
    return {state.view().center, whole / scale.factor};
}

std::optional<View> askScale(State& state) {
    const Answer answer =
        state.askOrCancel({Request::Kind::word, L"\nEnter a scale factor (nX): ", {}});
    const auto scale = parseScale(trimmed(answer.text));
    if (scale) return scaled(state, *scale);
    state.print(L"\nA factor above 0 is needed, as in 2 or 2x.");
    return std::nullopt;
}

View previous(State& state) {
    if (state.earlierViews.empty()) throw CommandFailure(L"there is no view before this one");
    const View view = state.earlierViews.back();
    state.earlierViews.pop_back();
    return view;
}

// The view that a reply asks for; none when it is to be asked again.
std::optional<View> viewFor(State& state, const Answer& answer) {
    if (const auto point = state.pointFrom(answer)) return window(state, *point);
    const std::wstring_view word = trimmed(answer.text);
    if (const auto scale = parseScale(word)) return scaled(state, *scale);
    const std::wstring option = matchKeyword(word, optionNames).value_or(L"");
    if (option == L"All") return everything(state, true);
    if (option == L"Extents") return everything(state, false);
    if (option == L"Center") return center(state);
    if (option == L"Scale") return askScale(state);
    if (option == L"Window") return window(state, askPoint(state, L"\nSpecify first corner: "));
    state.print(L"\nA point, a factor above 0, or one of the options is needed.");
    return std::nullopt;
}

// Factors and corners may be numbers whose product or difference is none, or nothing.
bool canBeShown(const View& view) {
    return std::isfinite(view.height) && view.height > 0.0 && std::isfinite(1.0 / view.height) &&
           std::isfinite(view.center.x) && std::isfinite(view.center.y);
}

void show(State& state, const View& view) {
    state.setView(view);
    state.print(L"\nThe view is " + numberText(view.height) + L" high around " +
                numberText(view.center.x) + L"," + numberText(view.center.y) +
                L"; a pick reaches " + numberText(state.pickReach()) + L".");
}

}  // namespace

void zoom(Session& session) {
    State& state = session.implementation();
    if (state.drawing() == nullptr) throw CommandFailure(L"No drawing is open; OPEN opens one");
    while (true) {
        const Answer answer =
            state.askOrCancel({Request::Kind::word,
                               L"\nSpecify corner of window, enter a scale factor (nX), or\n"
                               L"[All/Center/Extents/Previous/Scale/Window]: ",
                               split(optionNames, L' ')});
        if (answer.isEmpty()) return;
        if (matchKeyword(trimmed(answer.text), optionNames) == L"Previous")
            return show(state, previous(state));
        const View before = state.view();
        const auto view = viewFor(state, answer);
        if (view && !canBeShown(*view)) {
            state.print(L"\nThere is no view of that size.");
        } else if (view) {
            state.earlierViews.push_back(before);
            if (state.earlierViews.size() > mostEarlierViews) state.earlierViews.pop_front();
            return show(state, *view);
        }
    }
}

}  // namespace host::editor
