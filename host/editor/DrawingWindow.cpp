// The window that shows the drawing: pixels and places, its colours. Headless nothing is shown in
// it.
#include <aced.h>
#include <afxwin.h>

#include <cmath>
#include <limits>
#include <memory>
#include <variant>

#include "host/database/Fault.h"
#include "host/editor/Variables.h"

namespace host::editor {

namespace {

constexpr int modelViewport = 2;

template <class T>
T valueOr(const wchar_t* name, T otherwise) {
    const VariableValue* value = variableValue(name);
    const T* typed = value == nullptr ? nullptr : std::get_if<T>(value);
    return typed == nullptr ? otherwise : *typed;
}

// How the view lies on the screen.
struct Projection {
    AcGePoint3d center = valueOr(L"VIEWCTR", AcGePoint3d());
    PlanePoint screen = valueOr(L"SCREENSIZE", PlanePoint{1920.0, 1080.0});
    double unitsPerPixel = valueOr(L"VIEWSIZE", 1.0) / screen.y;
};

// False for what no pixel can be.
bool roundTo(double value, int& pixel) {
    const double rounded = std::floor(value + 0.5);
    if (!(rounded >= std::numeric_limits<int>::min() && rounded <= std::numeric_limits<int>::max()))
        return false;
    pixel = static_cast<int>(rounded);
    return true;
}

// A window that is never shown.
CView* makeView() {
    auto view = std::make_unique<CView>();
    view->CreateEx(0, L"STATIC", L"drawing", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr);
    return view.release();
}

}  // namespace

}  // namespace host::editor

using namespace host::editor;

int acedGetWinNum(int /*x*/, int /*y*/) {
    return modelViewport;
}

int acedCoordFromPixelToWorld(int viewport, CPoint pixel, acedDwgPoint world) {
    HOST_CALL("acedCoordFromPixelToWorld");
    if (viewport != modelViewport || world == nullptr) return 0;
    const Projection view;
    world[0] = view.center.x + (pixel.x - view.screen.x / 2.0) * view.unitsPerPixel;
    world[1] = view.center.y - (pixel.y - view.screen.y / 2.0) * view.unitsPerPixel;
    world[2] = 0.0;
    return 1;
}

int acedCoordFromWorldToPixel(int viewport, const acedDwgPoint world, CPoint& pixel) {
    HOST_CALL("acedCoordFromWorldToPixel");
    if (viewport != modelViewport || world == nullptr) return 0;
    const Projection view;
    int x = 0, y = 0;
    if (!roundTo((world[0] - view.center.x) / view.unitsPerPixel + view.screen.x / 2.0, x) ||
        !roundTo((view.center.y - world[1]) / view.unitsPerPixel + view.screen.y / 2.0, y))
        return 0;
    pixel = CPoint(x, y);
    return 1;
}

CView* acedGetAcadDwgView() {
    static CView* view = makeView();
    return view;
}

bool acedGetCurrentColors(AcColorSettings* settings) {
    HOST_CALL("acedGetCurrentColors");
    if (settings == nullptr) return false;
    settings->dwGfxModelBkColor = 0x00282018;  // a dark blue grey, as drawing windows have
    settings->dwGfxLayoutBkColor = 0x00FFFFFF;
    return true;
}
