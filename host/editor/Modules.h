// Loaded modules: the host's dynamic linker, and the functions that modules offer to LISP.
//
// A module is a shared library with the exports acrxEntryPoint and acrxGetApiVersion. Messages go
// to the first with a packet that stands for the module.
#pragma once

#include <rxdefs.h>
#include <rxdlinkr.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace host::editor {

// A function offered to LISP.
struct LispFunction {
    std::wstring name;
    short code = 0;
    const void* owner = nullptr;  // the module's packet, null outside of a message
};
struct RegisteredFunction {
    int (*function)() = nullptr;
    int code = 0;
    const void* owner = nullptr;
};

class Modules : public AcRxDynamicLinker {
  public:
    static Modules& instance();

    // Loads and initialises. Throws ModuleError (Session.h); nothing stays loaded then.
    void load(const std::filesystem::path& path);
    // Throws ModuleError when it is not loaded or, unless `force`, locked.
    void unload(const std::filesystem::path& path, bool force = false);
    // In reverse order of loading, locked or not. `failed` is called inside the catch block of an
    // exception that leaves a module's entry point; the others are unloaded all the same.
    void unloadAll(const std::function<void()>& failed);
    std::vector<std::filesystem::path> paths() const;
    // To all modules in the order of loading.
    void send(AcRx::AppMsgCode message);

    bool loadModule(const ACHAR* fileName, bool printit, bool asCmd) override;
    bool unloadModule(const ACHAR* fileName, bool asCmd) override;
    bool unlockApplication(void* appId) const override;
    bool lockApplication(void* appId) const override;
    bool isApplicationLocked(const ACHAR* name) const override;
    bool registerAppMDIAware(void* appId) const override;
    bool registerAppNotMDIAware(void* appId) const override;
    bool isAppMDIAware(const ACHAR* name) const override;

    // What acedDefun and acedRegFunc have registered, in this order.
    std::vector<LispFunction> lispFunctions;
    std::vector<RegisteredFunction> registeredFunctions;
    // The code that acedGetFunCode answers; RTERROR outside of a call.
    int functionCode;
    // The module that a message is being sent to; null outside.
    const void* messaged() const { return messaged_; }

  private:
    struct Module;

    Modules();
    ~Modules() override;
    Module* find(const std::filesystem::path& path) const;
    Module* known(const void* appId) const;
    AcRx::AppRetCode send(Module& module, AcRx::AppMsgCode message);
    void initialise(Module& module);
    void forgetRegistrations(Module& module);
    void remove(Module& module);

    std::vector<std::unique_ptr<Module>> modules_;
    const void* messaged_ = nullptr;
};

}  // namespace host::editor
