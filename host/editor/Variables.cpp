#include "host/editor/Variables.h"

#include <acedads.h>
#include <dbsymtb.h>

#include <optional>

#include "host/database/Fault.h"
#include "host/database/Geometry.h"
#include "host/editor/Drawn.h"
#include "host/editor/EntityFigure.h"
#include "host/editor/ResultBuffers.h"
#include "host/editor/Scripted.h"
#include "host/editor/SessionState.h"
#include "host/editor/Words.h"

namespace host::editor {

namespace {

using State = Session::Implementation;

// Headless there is no screen; this is the usual shape of one.
constexpr double screenWidth = 1920.0;
constexpr double screenHeight = 1080.0;

// What a variable is worth without a session or a drawing.
const AcGePoint3d noCorner[] = {{1e20, 1e20, 1e20}, {-1e20, -1e20, -1e20}};

VariableValue workViewCenter() {
    State* state = currentState();
    return state == nullptr ? AcGePoint3d() : state->view().center;
}

VariableValue workViewSize() {
    State* state = currentState();
    return state == nullptr ? 1.0 : state->view().height;
}

// The box around everything that the plan shows, heights included.
std::optional<AcDbExtents> drawnExtents() {
    State* state = currentState();
    if (state == nullptr || state->drawing() == nullptr) return std::nullopt;
    std::optional<AcDbExtents> all;
    for (const AcDbObjectId id : Drawn(*state->drawing()).entities()) {
        if (planBox(id).empty()) continue;
        const AcDbExtents extents = *host::database::extentsOf(id);
        if (all)
            all->addExt(extents);
        else
            all = extents;
    }
    return all;
}

VariableValue workLeastCorner() {
    const auto extents = drawnExtents();
    return extents ? extents->minPoint() : noCorner[0];
}
VariableValue workMostCorner() {
    const auto extents = drawnExtents();
    return extents ? extents->maxPoint() : noCorner[1];
}

VariableValue workLastPoint() {
    State* state = currentState();
    return state == nullptr ? AcGePoint3d() : state->lastPoint;
}

VariableValue workCommandActive() {
    State* state = currentState();
    const bool running = state != nullptr && state->commandIsRunning();
    return static_cast<short>(running ? 1 : 0);
}

VariableValue workCommandNames() {
    State* state = currentState();
    return state == nullptr || !state->commandIsRunning() ? std::wstring() : state->commandName();
}

VariableValue workCurrentLayer() {
    State* state = currentState();
    if (state == nullptr || state->drawing() == nullptr) return std::wstring(L"0");
    AcDbLayerTableRecord* layer = nullptr;
    if (acdbOpenObject(layer, state->drawing()->clayer(), AcDb::kForRead) != Acad::eOk)
        return std::wstring(L"0");
    const ACHAR* name = nullptr;
    const std::wstring text = layer->getName(name) == Acad::eOk && name != nullptr ? name : L"0";
    layer->close();
    return text;
}

// False for a layer that the drawing does not have, and for a frozen one.
bool assignCurrentLayer(const VariableValue& value) {
    const State* state = currentState();
    if (state == nullptr || state->drawing() == nullptr) return false;
    AcDbLayerTable* layers = nullptr;
    if (state->drawing()->getSymbolTable(layers, AcDb::kForRead) != Acad::eOk) return false;
    AcDbLayerTableRecord* layer = nullptr;
    const std::wstring& name = std::get<std::wstring>(value);
    const bool found = layers->getAt(name.c_str(), layer, AcDb::kForRead) == Acad::eOk;
    layers->close();
    if (!found) return false;
    const bool usable = !layer->isFrozen();
    const AcDbObjectId id = layer->objectId();
    layer->close();
    return usable && state->drawing()->setClayer(id) == Acad::eOk;
}

std::filesystem::path drawingPath() {
    State* state = currentState();
    const ACHAR* name = nullptr;
    if (state == nullptr || state->drawing() == nullptr) return {};
    if (state->drawing()->getFilename(name) != Acad::eOk || name == nullptr) return {};
    return std::filesystem::path(name);
}

VariableValue workDrawingName() {
    return drawingPath().filename().wstring();
}

VariableValue workDrawingFolder() {
    const std::filesystem::path folder = drawingPath().parent_path();
    return folder.empty() ? std::wstring() : (folder / "").wstring();
}

bool inRange(double value, double least, double most) {
    return least <= value && value <= most;
}

}  // namespace

Variables::Variables() {
    const auto number = [this](const wchar_t* name, short value, double least, double most) {
        add(name, {value, false, least, most});
    };
    const auto fixed = [this](const wchar_t* name, VariableValue value) {
        add(name, {std::move(value), true});
    };
    const auto told = [this](const wchar_t* name, VariableValue (*work)()) {
        add(name, {{}, true, 0, 0, work});
    };

    // Selecting at a prompt always adds to what is selected, whatever PICKADD a script has set; a
    // miss opens a window only with PICKAUTO.
    number(L"PICKADD", 1, 0, 2);
    number(L"PICKAUTO", 0, 0, 1);
    fixed(L"PICKFIRST", short{0});
    number(L"HIGHLIGHT", 1, 0, 1);
    number(L"FILEDIA", 0, 0, 1);
    number(L"CMDDIA", 0, 0, 1);
    number(L"ATTDIA", 0, 0, 1);
    number(L"EXPERT", 0, 0, 5);
    number(L"CMDECHO", 1, 0, 1);
    number(L"SORTENTS", 127, 0, 127);
    number(L"OSMODE", 0, 0, 32767);
    number(L"ORTHOMODE", 0, 0, 1);
    number(L"CURSORSIZE", 5, 1, 100);
    number(L"PICKBOX", 3, 0, 50);
    number(L"APERTURE", 10, 1, 50);
    number(L"AUNITS", 0, 0, 4);
    number(L"AUPREC", 4, 0, 8);
    number(L"LUNITS", 2, 1, 5);
    number(L"LUPREC", 4, 0, 8);
    number(L"ERRNO", 0, 0, 32767);
    for (const wchar_t* name : {L"USERI1", L"USERI2", L"USERI3", L"USERI4", L"USERI5"}) {
        number(name, 0, -32768, 32767);
    }
    for (const wchar_t* name :
         {L"USERR1", L"USERR2", L"USERR3", L"USERR4", L"USERR5", L"ELEVATION"}) {
        add(name, {0.0});
    }
    for (const wchar_t* name : {L"USERS1", L"USERS2", L"USERS3", L"USERS4", L"USERS5"}) {
        add(name, {std::wstring()});
    }

    fixed(L"TILEMODE", short{1});
    fixed(L"CVPORT", short{2});
    fixed(L"VIEWDIR", AcGePoint3d(0.0, 0.0, 1.0));
    fixed(L"VIEWTWIST", 0.0);
    fixed(L"SCREENSIZE", PlanePoint{screenWidth, screenHeight});
    fixed(L"_VERNUM", std::wstring(L"1.0 (orlinth)"));
    fixed(L"PRODUCT", std::wstring(L"orlinth"));
    told(L"VIEWCTR", workViewCenter);
    told(L"VIEWSIZE", workViewSize);
    told(L"EXTMIN", workLeastCorner);
    told(L"EXTMAX", workMostCorner);
    told(L"LASTPOINT", workLastPoint);
    told(L"CMDACTIVE", workCommandActive);
    told(L"CMDNAMES", workCommandNames);
    add(L"CLAYER", {std::wstring(), false, 0, 0, workCurrentLayer, assignCurrentLayer});
    told(L"DWGNAME", workDrawingName);
    told(L"DWGPREFIX", workDrawingFolder);
}

const VariableValue* Variables::get(std::wstring_view name) {
    const auto found = entries_.find(upperCase(name));
    if (found == entries_.end()) return nullptr;
    if (found->second.work != nullptr) found->second.value = found->second.work();
    return &found->second.value;
}

bool Variables::set(std::wstring_view name, const VariableValue& value) {
    const auto found = entries_.find(upperCase(name));
    if (found == entries_.end() || found->second.readOnly) return false;
    Entry& entry = found->second;
    if (entry.assign != nullptr) return entry.value.index() == value.index() && entry.assign(value);
    if (std::holds_alternative<double>(entry.value)) {
        const auto* real = std::get_if<double>(&value);
        const auto* whole = std::get_if<short>(&value);
        if (real == nullptr && whole == nullptr) return false;
        const double number = real != nullptr ? *real : static_cast<double>(*whole);
        if (!inRange(number, entry.least, entry.most)) return false;
        entry.value = number;
        return true;
    }
    if (entry.value.index() != value.index()) return false;
    const auto* whole = std::get_if<short>(&value);
    if (whole != nullptr && !inRange(*whole, entry.least, entry.most)) return false;
    entry.value = value;
    return true;
}

bool Variables::isReadOnly(std::wstring_view name) const {
    const auto found = entries_.find(upperCase(name));
    return found != entries_.end() && found->second.readOnly;
}

std::vector<std::wstring> Variables::names() const {
    std::vector<std::wstring> all;
    for (const auto& entry : entries_) all.push_back(entry.first);
    return all;
}

const VariableValue* variableValue(std::wstring_view name) {
    const Scripted* scripted = Scripted::current();
    const VariableValue* value = scripted == nullptr ? nullptr : scripted->variable(name);
    if (value != nullptr) return value;
    State* state = currentState();
    return state == nullptr ? nullptr : state->variables.get(name);
}

}  // namespace host::editor

using namespace host::editor;

namespace {

bool fill(resbuf& result, const VariableValue& value) {
    if (const auto* number = std::get_if<short>(&value)) {
        result.restype = RTSHORT;
        result.resval.rint = *number;
    } else if (const auto* large = std::get_if<std::int32_t>(&value)) {
        result.restype = RTLONG;
        result.resval.rlong = *large;
    } else if (const auto* real = std::get_if<double>(&value)) {
        result.restype = RTREAL;
        result.resval.rreal = *real;
    } else if (const auto* point = std::get_if<AcGePoint3d>(&value)) {
        result.restype = RT3DPOINT;
        result.resval.rpoint[0] = point->x;
        result.resval.rpoint[1] = point->y;
        result.resval.rpoint[2] = point->z;
    } else if (const auto* plane = std::get_if<PlanePoint>(&value)) {
        result.restype = RTPOINT;
        result.resval.rpoint[0] = plane->x;
        result.resval.rpoint[1] = plane->y;
        result.resval.rpoint[2] = 0.0;
    } else {
        ACHAR* text = copyText(std::get<std::wstring>(value).c_str());
        if (text == nullptr) return false;
        result.restype = RTSTR;
        result.resval.rstring = text;
    }
    return true;
}

bool valueOf(const resbuf& given, VariableValue& value) {
    switch (given.restype) {
        case RTSHORT:
            value = given.resval.rint;
            return true;
        case RTLONG:
            value = given.resval.rlong;
            return true;
        case RTREAL:
        case RTANG:
            value = given.resval.rreal;
            return true;
        case RTPOINT:
            value = PlanePoint{given.resval.rpoint[0], given.resval.rpoint[1]};
            return true;
        case RT3DPOINT:
            value =
                AcGePoint3d(given.resval.rpoint[0], given.resval.rpoint[1], given.resval.rpoint[2]);
            return true;
        case RTSTR:
            if (given.resval.rstring == nullptr) return false;
            value = std::wstring(given.resval.rstring);
            return true;
        default:
            return false;
    }
}

}  // namespace

int acedGetVar(const ACHAR* name, resbuf* result) {
    HOST_CALL("acedGetVar");
    if (name == nullptr || result == nullptr) return RTERROR;
    const VariableValue* value = variableValue(name);
    return value != nullptr && fill(*result, *value) ? RTNORM : RTERROR;
}

int acedSetVar(const ACHAR* name, const resbuf* value) {
    HOST_CALL("acedSetVar");
    VariableValue wanted;
    if (name == nullptr || value == nullptr || !valueOf(*value, wanted)) return RTERROR;
    if (Scripted* scripted = Scripted::current()) {
        scripted->recordSetting({name, wanted});
        if (const VariableValue* given = scripted->variable(name)) {
            if (given->index() != wanted.index()) return RTERROR;
            scripted->variable(name, wanted);
            return RTNORM;
        }
    }
    Session::Implementation* state = currentState();
    return state != nullptr && state->variables.set(name, wanted) ? RTNORM : RTERROR;
}
