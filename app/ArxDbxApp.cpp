#include <rxdlinkr.h>
#include <rxregsvc.h>

#include "ArxAppFrame.h"
#include "ModuleState.h"
#include "Registration.h"
#include "RegistryLookup.h"

AcRx::AppRetCode AcRxDbxApp::OnInitApp(void* packet) {
    moduleInstance = moduleHandle;
    if (unlockApp) FromRegistry<AcRxDynamicLinker>(L"DynamicLinker")->unlockApplication(packet);
    if (mdiAware) FromRegistry<AcRxDynamicLinker>(L"DynamicLinker")->registerAppMDIAware(packet);
    RegisterServerComponents();
    int count = 0;
    for (ArxCustomClass* entry : ArxCustomClasses()) {
        if (entry == nullptr) continue;
        entry->initialise();
        entry->registered = true;
        ++count;
    }
    if (count > 0) acrxBuildClassHierarchy();
    return AcRx::kRetOK;
}

AcRx::AppRetCode AcRxDbxApp::OnUnloadApp(void* /*packet*/) {
    for (ArxCustomClass* entry : ArxCustomClasses()) {
        if (entry != nullptr && entry->registered) RemoveClass(*entry);
    }
    return AcRx::kRetOK;
}

void AcRxDbxApp::RemoveClass(ArxCustomClass& entry) {
    for (ArxCustomClass* other : ArxCustomClasses()) {
        if (other == nullptr || other == &entry || !other->registered) continue;
        if (other->descriptor()->myParent() == entry.descriptor()) RemoveClass(*other);
    }
    deleteAcRxClass(entry.descriptor());
    entry.registered = false;
}

AcRx::AppRetCode AcRxDbxApp::OnLoadDwg(void* /*packet*/) {
    return AcRx::kRetOK;
}

AcRx::AppRetCode AcRxDbxApp::OnUnloadDwg(void* /*packet*/) {
    return AcRx::kRetOK;
}

AcRx::AppRetCode AcRxDbxApp::OnInvokeSubroutine(void* /*packet*/) {
    return AcRx::kRetOK;
}

AcRx::AppRetCode AcRxDbxApp::OnConfigure(void* /*packet*/) {
    return AcRx::kRetOK;
}

AcRx::AppRetCode AcRxDbxApp::OnEnd(void* /*packet*/) {
    return AcRx::kRetOK;
}

AcRx::AppRetCode AcRxDbxApp::OnQuit(void* /*packet*/) {
    return AcRx::kRetOK;
}

AcRx::AppRetCode AcRxDbxApp::OnSave(void* /*packet*/) {
    return AcRx::kRetOK;
}

AcRx::AppRetCode AcRxDbxApp::OnDependency(void* /*packet*/) {
    return AcRx::kRetOK;
}

AcRx::AppRetCode AcRxDbxApp::OnNoDependency(void* /*packet*/) {
    return AcRx::kRetOK;
}

AcRx::AppRetCode AcRxDbxApp::OnOleUnloadApp(void* /*packet*/) {
    return AcRx::kRetOK;
}

AcRx::AppRetCode AcRxDbxApp::OnPreQuit(void* /*packet*/) {
    return AcRx::kRetOK;
}

AcRx::AppRetCode AcRxDbxApp::OnInitDialog(void* /*packet*/) {
    return AcRx::kRetOK;
}

AcRx::AppRetCode AcRxDbxApp::OnEndDialog(void* /*packet*/) {
    return AcRx::kRetOK;
}

AcRx::AppRetCode AcRxDbxApp::OnNull(void* /*packet*/) {
    return AcRx::kRetOK;
}

AcRx::AppRetCode AcRxDbxApp::Dispatch(std::uint32_t message, void* packet) {
    using Handler = AcRx::AppRetCode (AcRxDbxApp::*)(void*);
    static constexpr Handler kHandlers[] = {
        &AcRxDbxApp::OnNull,         &AcRxDbxApp::OnInitApp,    &AcRxDbxApp::OnUnloadApp,
        &AcRxDbxApp::OnLoadDwg,      &AcRxDbxApp::OnUnloadDwg,  &AcRxDbxApp::OnInvokeSubroutine,
        &AcRxDbxApp::OnConfigure,    &AcRxDbxApp::OnEnd,        &AcRxDbxApp::OnQuit,
        &AcRxDbxApp::OnSave,         &AcRxDbxApp::OnDependency, &AcRxDbxApp::OnNoDependency,
        &AcRxDbxApp::OnOleUnloadApp, &AcRxDbxApp::OnPreQuit,    &AcRxDbxApp::OnInitDialog,
        &AcRxDbxApp::OnEndDialog};
    static_assert(std::size(kHandlers) == 16, "messages 0 to 15");
    if (message >= std::size(kHandlers)) return AcRx::kRetOK;
    return (this->*kHandlers[message])(packet);
}
