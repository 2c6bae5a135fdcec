// A host that does nothing but write down what the application frame asks of it, and registration
// tables that a test fills. It takes the place of the embedded host in this program.
#pragma once

#include <aced.h>
#include <rxdlinkr.h>
#include <rxregsvc.h>

#include <map>
#include <string>
#include <vector>

#include "app/ArxAppFrame.h"
#include "app/Registration.h"

namespace substitute {

// Every call so far, in order, such as "unlockApplication 7" (the packet as a number).
std::vector<std::string>& Journal();
void Note(const std::string& call);

// A packet that the journal shows as `number`.
void* Packet(std::uintptr_t number);

struct AddedCommand {
    std::wstring group;
    std::wstring globalName;
    std::wstring localName;
    Adesk::Int32 flags;
    AcRxFunctionPtr function;
    AcEdUIContext* context;
    int fcode;
    void* resources;
    AcEdCommand** result;
};
// What came to addCommand, in order.
std::vector<AddedCommand>& AddedCommands();

// Status that addCommand and removeCmd give.
extern Acad::ErrorStatus commandStatus;

// What acedGetFunCode gives.
extern int functionCode;

// The window that acedGetAcadFrame gives, or null.
extern CMDIFrameWnd* frame;

// A class descriptor that deleteAcRxClass only writes down.
AcRxClass* MakeClass(const std::wstring& name, const std::wstring& parent);

// The tables of the module under test.
extern ArxCustomClassTable customClasses;
extern ArxCommandTable commands;
extern ArxAdsSymbolTable adsSymbols;

// Everything as at the start: empty journal and tables, packets and codes.
void Reset();

}  // namespace substitute
