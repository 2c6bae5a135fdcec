#include <afxwin.h>

#include "ExtensionRecord.h"

namespace {

struct Record {
    std::vector<std::string> steps;
    bool refuse = false;
};

// Never destroyed: modules end after every other static object.
Record& TheRecord() {
    static auto* const record = new Record;
    return *record;
}

void Note(const char* step) {
    TheRecord().steps.emplace_back(step);
}

}  // namespace

AFX_MODULE_STATE* AfxGetModuleState() {
    static AFX_MODULE_STATE state;
    return &state;
}

void AfxMoveListsAside() {
    Note("lists aside");
    AFX_MODULE_STATE& program = *AfxGetModuleState();
    program.m_pClassInit = program.m_pClassList;
    program.m_pFactoryInit = program.m_pFactoryList;
    program.m_pClassList = nullptr;
    program.m_pFactoryList = nullptr;
}

BOOL AfxInitExtensionModule(AFX_EXTENSION_MODULE& state, HMODULE module) {
    Note("AfxInitExtensionModule");
    if (state.bInitialized || TheRecord().refuse) return FALSE;
    AFX_MODULE_STATE& program = *AfxGetModuleState();
    state.bInitialized = TRUE;
    state.hModule = module;
    state.hResource = module;
    state.pFirstSharedClass = program.m_pClassList;
    state.pFirstSharedFactory = program.m_pFactoryList;
    program.m_pClassList = program.m_pClassInit;
    program.m_pFactoryList = program.m_pFactoryInit;
    program.m_pClassInit = nullptr;
    program.m_pFactoryInit = nullptr;
    return TRUE;
}

void AfxTermExtensionModule(AFX_EXTENSION_MODULE& state, BOOL /*all*/) {
    Note("AfxTermExtensionModule");
    if (!state.bInitialized) return;
    CDynLinkLibrary* next = nullptr;
    for (CDynLinkLibrary* library = AfxGetModuleState()->m_pLibraryList; library != nullptr;
         library = next) {
        next = library->m_pNextDLL;
        if (library->m_hModule == state.hModule) delete library;
    }
    state.bInitialized = FALSE;
}

CDynLinkLibrary::CDynLinkLibrary(AFX_EXTENSION_MODULE& state, BOOL system)
    : m_hModule(state.hModule),
      m_hResource(state.hResource),
      m_pFirstClass(state.pFirstSharedClass),
      m_pFirstFactory(state.pFirstSharedFactory),
      m_bSystem(system),
      m_pNextDLL(AfxGetModuleState()->m_pLibraryList) {
    Note("CDynLinkLibrary");
    AfxGetModuleState()->m_pLibraryList = this;
}

CDynLinkLibrary::~CDynLinkLibrary() {
    CDynLinkLibrary** link = &AfxGetModuleState()->m_pLibraryList;
    while (*link != nullptr && *link != this) link = &(*link)->m_pNextDLL;
    if (*link == this) *link = m_pNextDLL;
}

namespace extension_record {

const std::vector<std::string>& Steps() {
    return TheRecord().steps;
}

void Forget() {
    TheRecord().steps.clear();
}

void RefuseInit(bool refuse) {
    TheRecord().refuse = refuse;
}

}  // namespace extension_record
