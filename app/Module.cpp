#include "Module.h"

#include <aced.h>
#include <afxext.h>

#include "ModuleState.h"

namespace {

AFX_EXTENSION_MODULE extensionModule{};

}  // namespace

BOOL AttachModule(HINSTANCE instance) {
    moduleHandle = instance;
    if (!extensionModule.bInitialized && AfxInitExtensionModule(extensionModule, instance)) {
        new CDynLinkLibrary(extensionModule);  // belongs to the framework from here on
    }
    InitAcUiDLL();
    return TRUE;
}

BOOL DetachModule() {
    if (extensionModule.bInitialized) {
        AfxTermExtensionModule(extensionModule);
        extensionModule.bInitialized = FALSE;
    }
    return TRUE;
}
