// AcRxDynamicLinker: loads and unloads modules while the host runs.
#pragma once

#include <rxboiler.h>
#include <rxobject.h>

class AcRxDynamicLinker : public AcRxObject {
  public:
    ACRX_DECLARE_MEMBERS(AcRxDynamicLinker);

    // Loads the module in `fileName`, or does nothing when it is loaded already, and sends it
    // kInitAppMsg, then kLoadDwgMsg when a drawing is open. `printit` and `asCmd` only say who
    // asks. False when the file is no module, lacks one of the two exports, or answers kInitAppMsg
    // with anything but kRetOK; nothing stays loaded then, and the reason is printed with
    // `printit`.
    virtual bool loadModule(const ACHAR* fileName, bool printit, bool asCmd = false) = 0;

    // Sends kUnloadDwgMsg and kUnloadAppMsg and takes the module out of the process. False for a
    // module that is not loaded or has not been unlocked.
    virtual bool unloadModule(const ACHAR* fileName, bool asCmd = false) = 0;

    // Lets the module be unloaded, or not. `appId` is the packet that came with kInitAppMsg; false
    // for any other.
    virtual bool unlockApplication(void* appId) const = 0;
    virtual bool lockApplication(void* appId) const = 0;
    virtual bool isApplicationLocked(const ACHAR* name) const = 0;

    // Declares that the module works with several open drawings. False for an unknown packet.
    virtual bool registerAppMDIAware(void* appId) const = 0;
    virtual bool registerAppNotMDIAware(void* appId) const = 0;
    virtual bool isAppMDIAware(const ACHAR* name) const = 0;
};

// The linker; also in acrxSysRegistry() under ACRX_DYNAMIC_LINKER.
AcRxDynamicLinker* acrxDynamicLinkerPtr();
#define acrxDynamicLinker acrxDynamicLinkerPtr()
