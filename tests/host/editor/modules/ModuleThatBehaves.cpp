// A module as it should be: says each message on the command line, unlocks itself, and offers
//   MODTHROW   turns the first text, then throws a TamExpAcad
//   MODFAIL    throws a TamExpNoMem
//   MODSTAYS   is forgotten at unloading
// and the LISP function "modfunction" with the code 7.
#include <aced.h>
#include <dbapserv.h>
#include <dbents.h>
#include <dbsymtb.h>
#include <rxdlinkr.h>

#include "tam/TamExceptions.h"
#include "tests/host/editor/modules/Exports.h"

namespace {

constexpr const wchar_t* group = L"MODULE";

AcDbText* firstText() {
    AcDbBlockTable* table = nullptr;
    AcDbBlockTableRecord* space = nullptr;
    AcDbBlockTableRecordIterator* iterator = nullptr;
    AcDbText* text = nullptr;
    acdbHostApplicationServices()->workingDatabase()->getSymbolTable(table, AcDb::kForRead);
    table->getAt(ACDB_MODEL_SPACE, space, AcDb::kForRead);
    table->close();
    space->newIterator(iterator);
    for (; text == nullptr && !iterator->done(); iterator->step()) {
        AcDbEntity* entity = nullptr;
        if (iterator->getEntity(entity, AcDb::kForWrite) != Acad::eOk) continue;
        text = AcDbText::cast(entity);
        if (text == nullptr) entity->close();
    }
    delete iterator;
    space->close();
    return text;
}

void throwAcad() {
    AcDbText* text = firstText();
    text->setRotation(1.25);
    text->close();
    throw TamLib::TamExpAcad(L"the host refused", 42, L"tests/Module");
}

void throwNoMem() {
    throw TamLib::TamExpNoMem(L"nothing left", 43, L"tests/Module");
}

void nothing() {}

int lispFunction() {
    return RTNORM;
}

void initialise(void* packet) {
    acrxDynamicLinker->unlockApplication(packet);
    acrxDynamicLinker->registerAppMDIAware(packet);
    acedRegCmds->addCommand(group, L"MODTHROW", L"MODTHROW", ACRX_CMD_MODAL, throwAcad);
    acedRegCmds->addCommand(group, L"MODFAIL", L"MODFAIL", ACRX_CMD_MODAL, throwNoMem);
    acedRegCmds->addCommand(group, L"MODSTAYS", L"MODSTAYS", ACRX_CMD_MODAL, nothing);
}

}  // namespace

AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode message, void* packet) {
    acutPrintf(L"[%i]", static_cast<int>(message));
    switch (message) {
        case AcRx::kInitAppMsg:
            initialise(packet);
            break;
        case AcRx::kLoadDwgMsg:
            acedDefun(L"modfunction", 7);
            acedRegFunc(lispFunction, 7);
            break;
        case AcRx::kUnloadDwgMsg:
            acedUndef(L"MODFUNCTION", 7);
            break;
        case AcRx::kUnloadAppMsg:
            acedRegCmds->removeCmd(group, L"MODTHROW");
            acedRegCmds->removeCmd(group, L"MODFAIL");
            break;
        default:
            break;
    }
    return AcRx::kRetOK;
}

const wchar_t* acrxGetApiVersion() {
    return L"1";
}
