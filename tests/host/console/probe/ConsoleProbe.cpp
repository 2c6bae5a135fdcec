// A module for the tests of the program. Each command asks for one entity and then goes wrong in
// its own way:
//   PROBETHROW    turns it and throws an exception of the library
//   PROBEPOINTER  turns it and throws a structured exception as a pointer
//   PROBESTD      throws an exception of the standard library
//   PROBENUMBER   throws a number
//   PROBEOPEN     turns it and leaves it open
//   PROBEERASE    erases it, which is no turning
//   PROBETURN     turns it by a quarter, as it should
//   PROBEMAKE     turns it by a quarter and makes two lines, one of them on a layer of its own
// Two ask for nothing:
//   PROBEMETER    shows a meter at its half for as long as it takes one to appear
//   PROBEWORK     works until somebody asks it to stop, but at most a minute
// One works like that and then asks for an entity all the same: PROBEWORKASK.
#include <accmd.h>
#include <acdbads.h>
#include <aced.h>
#include <acedads.h>
#include <acutads.h>
#include <adscodes.h>
#include <dbents.h>
#include <rxdefs.h>
#include <rxdlinkr.h>

#include <chrono>
#include <stdexcept>

#include "GeomEnts/Line.h"
#include "tam/TamExceptions.h"

#if defined(_WIN32)
#define ARX_EXPORT extern "C" __declspec(dllexport)
#else
#define ARX_EXPORT extern "C" __attribute__((visibility("default")))
#endif

namespace {

constexpr const wchar_t* group = L"CONSOLEPROBE";

// Asks for an entity and opens it for writing; null when there is none.
AcDbEntity* askEntity() {
    ads_name name;
    ads_point point;
    AcDbObjectId id;
    AcDbEntity* entity = nullptr;
    if (acedEntSel(L"\nEntity: ", name, point) != RTNORM || acdbGetObjectId(id, name) != Acad::eOk)
        return nullptr;
    acdbOpenAcDbEntity(entity, id, AcDb::kForWrite);
    return entity;
}

AcDbEntity* askAndTurn() {
    AcDbEntity* const entity = askEntity();
    if (AcDbText* const text = AcDbText::cast(entity)) text->setRotation(1.5707963267948966);
    return entity;
}

void close(AcDbEntity* entity) {
    if (entity != nullptr) entity->close();
}

void turnAndThrow() {
    close(askAndTurn());
    throw TamLib::TamExpAcad(L"käännös epäonnistui", 77, L"probe/ConsoleProbe");
}

void turnAndThrowPointer() {
    close(askAndTurn());
    throw new TamLib::TamExpWinSeException(0xC0000005U, nullptr);
}

void throwStandard() {
    throw std::runtime_error("out of paper");
}

void throwNumber() {
    throw 42;
}

void leaveOpen() {
    askAndTurn();
}

void erase() {
    AcDbEntity* const entity = askEntity();
    if (entity != nullptr) entity->erase();
    close(entity);
}

void turn() {
    close(askAndTurn());
}

using Clock = std::chrono::steady_clock;

void showMeter() {
    const auto end = Clock::now() + std::chrono::milliseconds(500);
    acedSetStatusBarProgressMeter(L"Measuring", 10, 30);
    while (Clock::now() < end) acedSetStatusBarProgressMeterPos(20);
    acedRestoreStatusBar();
    acutPrintf(L"\nmeasured");
}

void work() {
    const auto end = Clock::now() + std::chrono::minutes(1);
    acutPrintf(L"\nworking\n");
    while (acedUsrBrk() == 0 && Clock::now() < end) {
    }
    acutPrintf(L"\n%s", acedUsrBrk() == 0 ? L"done" : L"stopped");
}

void workAndAsk() {
    work();
    close(askEntity());
}

void make() {
    turn();
    const TamLib::Line line(TamLib::Point3d(0, 0, 0), TamLib::Point3d(10, 5, 0));
    line.ToDb(256, nullptr, nullptr, nullptr);
    line.ToDb(1, L"PROBE", nullptr, nullptr);
}

void addCommands(void* packet) {
    acrxDynamicLinker->unlockApplication(packet);
    const auto add = [](const wchar_t* name, AcRxFunctionPtr function) {
        acedRegCmds->addCommand(group, name, name, ACRX_CMD_MODAL, function);
    };
    add(L"PROBETHROW", turnAndThrow);
    add(L"PROBEPOINTER", turnAndThrowPointer);
    add(L"PROBESTD", throwStandard);
    add(L"PROBENUMBER", throwNumber);
    add(L"PROBEOPEN", leaveOpen);
    add(L"PROBEERASE", erase);
    add(L"PROBETURN", turn);
    add(L"PROBEMETER", showMeter);
    add(L"PROBEMAKE", make);
    add(L"PROBEWORK", work);
    add(L"PROBEWORKASK", workAndAsk);
}

}  // namespace

ARX_EXPORT AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode message, void* packet) {
    if (message == AcRx::kInitAppMsg) addCommands(packet);
    if (message == AcRx::kUnloadAppMsg) acedRegCmds->removeGroup(group);
    return AcRx::kRetOK;
}

ARX_EXPORT int acrxGetApiVersion() {
    return 19;
}
