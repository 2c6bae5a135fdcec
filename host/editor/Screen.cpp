#include "host/editor/Screen.h"

#include <acdbads.h>
#include <aced.h>
#include <afxwin.h>

#include <cmath>
#include <cstdarg>
#include <memory>
#include <optional>
#include <string>

#include <tchar.h>

#include "host/database/Fault.h"
#include "host/editor/Scripted.h"
#include "host/editor/SessionState.h"

namespace host::editor {

namespace {

// What acutPrintf prints at most, terminator included.
constexpr std::size_t longestPrint = 65536;

// The text of a format, or false when it can't be printed or is longer than that.
bool formatted(const ACHAR* format, va_list arguments, std::wstring& text) {
    for (std::size_t room = 512; room <= longestPrint; room *= 4) {
        text.resize(room);
        va_list again;
        va_copy(again, arguments);
        const int length = _vsnwprintf(text.data(), room, format, again);
        va_end(again);
        if (length >= 0 && static_cast<std::size_t>(length) < room) {
            text.resize(static_cast<std::size_t>(length));
            return true;
        }
        if (room == longestPrint) break;
        if (room * 4 > longestPrint) room = longestPrint / 4;
    }
    return false;
}

bool isNumber(const double* point) {
    return std::isfinite(point[0]) && std::isfinite(point[1]) && std::isfinite(point[2]);
}

// A window that is never shown: focus calls need one that exists.
CMDIFrameWnd* makeFrame() {
    auto frame = std::make_unique<CMDIFrameWnd>();
    frame->CreateEx(0, L"STATIC", L"orlinth", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr);
    return frame.release();
}

// The place of the one meter; null without a session and without a Scripted.
std::optional<Meter>* standingMeter() {
    if (Session::Implementation* state = currentState()) return &state->meter;
    Scripted* scripted = Scripted::current();
    return scripted == nullptr ? nullptr : &scripted->standingMeter();
}

void tellMeter(const std::optional<Meter>& meter) {
    if (Scripted* scripted = Scripted::current()) scripted->recordMeter(meter);
    if (Session::Implementation* state = currentState())
        state->output().meter(meter ? &*meter : nullptr);
}

}  // namespace

ScreenRecord& screenRecord() {
    static ScreenRecord record;
    return record;
}

}  // namespace host::editor

using namespace host::editor;

int acutPrintf(const ACHAR* format, ...) {
    HOST_CALL("acutPrintf");
    if (format == nullptr) return RTERROR;
    std::wstring text;
    va_list arguments;
    va_start(arguments, format);
    const bool done = formatted(format, arguments, text);
    va_end(arguments);
    if (!done) return RTERROR;
    if (Scripted* scripted = Scripted::current()) scripted->recordPrint(text);
    if (Session::Implementation* state = currentState()) state->print(text);
    return RTNORM;
}

int acedAlert(const ACHAR* text) {
    HOST_CALL("acedAlert");
    if (text == nullptr) return RTERROR;
    if (Scripted* scripted = Scripted::current()) scripted->recordAlert(text);
    if (Session::Implementation* state = currentState())
        state->print(std::wstring(L"\n") + text + L"\n");
    return RTNORM;
}

int acedUsrBrk() {
    if (Scripted* scripted = Scripted::current()) return scripted->userBreak() ? 1 : 0;
    Session::Implementation* state = currentState();
    return state != nullptr && state->hearsStop() ? 1 : 0;
}

int acedGrDraw(const ads_point from, const ads_point to, int colour, int highlight) {
    HOST_CALL("acedGrDraw");
    if (from == nullptr || to == nullptr || colour < -1 || colour > 256) return RTERROR;
    if (!isNumber(from) || !isNumber(to)) return RTERROR;
    if (Scripted* scripted = Scripted::current()) {
        scripted->recordLine(
            {{from[0], from[1], from[2]}, {to[0], to[1], to[2]}, colour, highlight});
    }
    return RTNORM;
}

int acedRedraw(const ads_name entity, int mode) {
    HOST_CALL("acedRedraw");
    AcDbObjectId id;
    const bool all = entity == nullptr || ads_name_nil(entity);
    if (!all && acdbGetObjectId(id, entity) != Acad::eOk) return RTERROR;
    if (mode == 0 || mode < -4 || mode > 4) return RTERROR;
    if (Scripted* scripted = Scripted::current()) scripted->recordRedraw({id, mode});
    return RTNORM;
}

CMDIFrameWnd* acedGetAcadFrame() {
    ++screenRecord().frameRequests;
    static CMDIFrameWnd* frame = makeFrame();
    return frame;
}

void InitAcUiDLL() {
    ++screenRecord().dialogRequests;
}

int acedSetStatusBarProgressMeter(const ACHAR* label, int from, int to) {
    HOST_CALL("acedSetStatusBarProgressMeter");
    std::optional<Meter>* meter = standingMeter();
    if (label == nullptr || from >= to || meter == nullptr) return -1;
    *meter = Meter{label, from, to, from};
    tellMeter(*meter);
    return 0;
}

int acedSetStatusBarProgressMeterPos(int position) {
    HOST_CALL("acedSetStatusBarProgressMeterPos");
    std::optional<Meter>* meter = standingMeter();
    if (meter == nullptr || !*meter) return -1;
    (*meter)->position = position;
    tellMeter(*meter);
    return 0;
}

void acedRestoreStatusBar() {
    std::optional<Meter>* meter = standingMeter();
    if (meter == nullptr || !*meter) return;
    meter->reset();
    tellMeter(*meter);
}
