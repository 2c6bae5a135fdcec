#include "host/editor/Listing.h"

#include <acdbads.h>
#include <acedads.h>
#include <acutads.h>
#include <dbsymtb.h>

#include <algorithm>

#include "host/database/Drawing.h"
#include "host/editor/Details.h"
#include "host/editor/EntityDetails.h"
#include "host/editor/Layers.h"
#include "host/editor/SelectionSets.h"
#include "host/editor/SessionState.h"
#include "host/editor/Words.h"

namespace host::editor {

namespace {

using State = Session::Implementation;

State& stateWithDrawing(Session& session) {
    State& state = session.implementation();
    if (state.drawing() == nullptr) throw CommandFailure(L"No drawing is open; OPEN opens one");
    return state;
}

// --- entities ----------------------------------------------------------------------------------

int digits(State& state, const wchar_t* variable) {
    const VariableValue* value = state.variables.get(variable);
    const auto* number = value == nullptr ? nullptr : std::get_if<short>(value);
    return number == nullptr ? 4 : *number;
}

std::wstring heading(AcDbObjectId id) {
    const std::wstring record = database::recordName(id);
    return (record.empty() ? database::className(id) : record) + L" " + database::handleText(id) +
           L", layer \"" + database::layerState(id).name + L"\"";
}

// Asked for before each line: a long listing can be stopped.
void printUnlessStopped(State& state, const std::wstring& line) {
    if (state.hearsStop()) throw Session::Cancelled();
    state.print(line);
}

void listEntity(State& state, AcDbObjectId id) {
    printUnlessStopped(state, L"\n" + heading(id));
    const std::wstring unreadable = database::unreadableReason(id);
    if (!unreadable.empty()) return state.print(L"\n    can't be read: " + unreadable);
    AcDbEntity* entity = nullptr;
    if (acdbOpenAcDbEntity(entity, id, AcDb::kForRead) != Acad::eOk) return;
    Details details(digits(state, L"LUPREC"), digits(state, L"AUPREC"));
    describe(*entity, details);
    entity->close();
    for (const std::wstring& line : details.lines()) printUnlessStopped(state, line);
}

// --- layers ------------------------------------------------------------------------------------

struct Row {
    std::wstring name, state, color, linetype;
};

Row rowOf(const AcDbLayerTableRecord& layer) {
    const ACHAR* name = nullptr;
    Row row;
    if (layer.getName(name) == Acad::eOk && name != nullptr) row.name = name;
    row.state = layer.isOff() ? L"off" : L"on";
    if (layer.isFrozen()) row.state += L", frozen";
    if (layer.isLocked()) row.state += L", locked";
    row.color = std::to_wstring(layer.colorIndex());
    row.linetype = nameOf(layer.linetypeObjectId());
    return row;
}

std::vector<Row> layersLike(const State& state, const std::wstring& pattern) {
    std::vector<Row> rows;
    forEachLayer(*state.drawing(),
                 [&](const AcDbLayerTableRecord& layer) { rows.push_back(rowOf(layer)); });
    rows.erase(std::remove_if(rows.begin(), rows.end(),
                              [&](const Row& row) {
                                  return !acutWcMatchEx(row.name.c_str(), pattern.c_str(), true);
                              }),
               rows.end());
    std::sort(rows.begin(), rows.end(),
              [](const Row& a, const Row& b) { return upperCase(a.name) < upperCase(b.name); });
    return rows;
}

std::wstring table(std::vector<Row> rows) {
    rows.insert(rows.begin(), {L"Layer name", L"State", L"Color", L"Linetype"});
    const auto widest = [&](std::wstring Row::*part) {
        std::size_t width = 0;
        for (const Row& row : rows) width = std::max(width, (row.*part).size());
        return width + 2;
    };
    const std::size_t name = widest(&Row::name);
    const std::size_t state = widest(&Row::state);
    const std::size_t color = widest(&Row::color);
    std::wstring text;
    for (const Row& row : rows) {
        const auto cell = [](const std::wstring& words, std::size_t width) {
            return words + std::wstring(width - words.size(), L' ');
        };
        text += L"\n" + cell(row.name, name) + cell(row.state, state) + cell(row.color, color) +
                row.linetype;
    }
    return text;
}

}  // namespace

void listEntities(Session& session) {
    State& state = stateWithDrawing(session);
    ads_name set;
    const int code = acedSSGet(nullptr, nullptr, nullptr, nullptr, set);
    if (code == RTCAN) throw Session::Cancelled();
    if (code != RTNORM) throw CommandFailure(L"nothing was selected, so there is nothing to list");
    const std::vector<AcDbObjectId> members = SelectionSets::instance().find(set)->members;
    acedSSFree(set);
    for (const AcDbObjectId id : members) listEntity(state, id);
}

void listLayers(Session& session) {
    State& state = stateWithDrawing(session);
    state.print(L"\nCurrent layer: \"" + nameOf(state.drawing()->clayer()) + L"\"");
    while (true) {
        const std::wstring option = session.askWord(L"\nEnter an option [?]: ", {L"?"});
        if (option.empty()) return;
        if (option != L"?") {
            state.print(L"\n? lists layers; nothing else can be done with them here.");
            continue;
        }
        const std::wstring given = session.askWord(L"\nEnter layer name(s) to list <*>: ");
        const std::vector<Row> rows = layersLike(state, given.empty() ? L"*" : given);
        state.print(rows.empty() ? L"\nNo layer is called " + given + L"." : table(rows));
    }
}

}  // namespace host::editor
