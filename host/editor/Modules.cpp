#include "host/editor/Modules.h"

#include <acutads.h>
#include <dbapserv.h>
#include <rxregsvc.h>

#include <algorithm>

#include "host/database/Fault.h"
#include "host/editor/CommandStack.h"
#include "host/editor/Session.h"
#include "host/editor/SharedLibrary.h"
#include "host/editor/Words.h"

ACRX_NO_CONS_DEFINE_MEMBERS(AcRxDynamicLinker, AcRxObject);

namespace host::editor {

namespace {

using EntryPoint = AcRx::AppRetCode (*)(AcRx::AppMsgCode, void*);

const Modules& registered = Modules::instance();

// Libraries that have to stay: an exception that came out of one lives in its memory.
void keepForGood(std::unique_ptr<SharedLibrary> library) {
    static auto* kept = new std::vector<std::unique_ptr<SharedLibrary>>;
    kept->push_back(std::move(library));
}

bool drawingIsOpen() {
    return acdbHostApplicationServices()->workingDatabase() != nullptr;
}

}  // namespace

// Its address is the packet.
struct Modules::Module {
    explicit Module(const std::filesystem::path& file)
        : path(file), library(std::make_unique<SharedLibrary>(file)) {}

    std::filesystem::path path;
    std::unique_ptr<SharedLibrary> library;
    EntryPoint entry = nullptr;
    bool unlocked = false;
    bool mdiAware = false;
};

Modules::Modules() : functionCode(RTERROR) {
    acrxSysRegistry()->atPut(ACRX_DYNAMIC_LINKER, this);
}

// What is still loaded goes with the process: its own statics may be gone already.
Modules::~Modules() {
    for (auto& module : modules_) keepForGood(std::move(module->library));
}

Modules& Modules::instance() {
    static Modules modules;
    return modules;
}

Modules::Module* Modules::find(const std::filesystem::path& path) const {
    const auto same = [&](const auto& module) {
        std::error_code error;
        return module->path == path || std::filesystem::equivalent(module->path, path, error);
    };
    const auto found = std::find_if(modules_.begin(), modules_.end(), same);
    return found == modules_.end() ? nullptr : found->get();
}

Modules::Module* Modules::known(const void* appId) const {
    const auto found = std::find_if(modules_.begin(), modules_.end(),
                                    [&](const auto& module) { return module.get() == appId; });
    return found == modules_.end() ? nullptr : found->get();
}

AcRx::AppRetCode Modules::send(Module& module, AcRx::AppMsgCode message) {
    struct Messaging {
        explicit Messaging(const void*& place, const void* packet) : at(place), before(place) {
            at = packet;
            CommandStack::instance().setOwner(packet);
        }
        ~Messaging() {
            at = before;
            CommandStack::instance().setOwner(before);
        }
        const void*& at;
        const void* before;
    };
    const Messaging messaging(messaged_, &module);
    const fault::Outside outside;
    return module.entry(message, &module);
}

void Modules::send(AcRx::AppMsgCode message) {
    for (std::size_t i = 0; i < modules_.size(); ++i) send(*modules_[i], message);
}

void Modules::initialise(Module& module) {
    const std::string name = module.path.u8string();
    for (const char* needed : {"acrxEntryPoint", "acrxGetApiVersion"}) {
        if (module.library->function(needed) == nullptr) {
            throw ModuleError("'" + name + "' is no module of this host: it does not export " +
                              needed);
        }
    }
    module.entry = reinterpret_cast<EntryPoint>(module.library->function("acrxEntryPoint"));
    const int answer = send(module, AcRx::kInitAppMsg);
    if (answer != AcRx::kRetOK) {
        throw ModuleError("the module '" + name + "' refused to start: it answered " +
                          std::to_string(answer));
    }
    if (drawingIsOpen()) send(module, AcRx::kLoadDwgMsg);
}

// Its functions can't be called any longer once it is gone.
void Modules::forgetRegistrations(Module& module) {
    const auto owned = [&](const auto& entry) { return entry.owner == &module; };
    lispFunctions.erase(std::remove_if(lispFunctions.begin(), lispFunctions.end(), owned),
                        lispFunctions.end());
    registeredFunctions.erase(
        std::remove_if(registeredFunctions.begin(), registeredFunctions.end(), owned),
        registeredFunctions.end());
    CommandStack::instance().removeOwned(&module);
}

void Modules::load(const std::filesystem::path& path) {
    if (find(path) != nullptr) return;
    Module& module = *modules_.emplace_back(std::make_unique<Module>(path));
    try {
        initialise(module);
    } catch (const ModuleError&) {
        remove(module);
        throw;
    } catch (...) {
        keepForGood(std::move(module.library));
        remove(module);
        throw;
    }
}

void Modules::remove(Module& module) {
    forgetRegistrations(module);
    modules_.erase(std::find_if(modules_.begin(), modules_.end(),
                                [&](const auto& entry) { return entry.get() == &module; }));
}

void Modules::unload(const std::filesystem::path& path, bool force) {
    Module* module = find(path);
    if (module == nullptr) throw ModuleError("the module '" + path.u8string() + "' is not loaded");
    if (!module->unlocked && !force) {
        throw ModuleError("the module '" + path.u8string() + "' is locked and can't be unloaded");
    }
    try {
        if (drawingIsOpen()) send(*module, AcRx::kUnloadDwgMsg);
        send(*module, AcRx::kUnloadAppMsg);
    } catch (...) {
        keepForGood(std::move(module->library));
        remove(*module);
        throw;
    }
    remove(*module);
}

void Modules::unloadAll(const std::function<void()>& failed) {
    while (!modules_.empty()) {
        try {
            unload(modules_.back()->path, true);
        } catch (...) {
            failed();
        }
    }
}

std::vector<std::filesystem::path> Modules::paths() const {
    std::vector<std::filesystem::path> all;
    for (const auto& module : modules_) all.push_back(module->path);
    return all;
}

bool Modules::loadModule(const ACHAR* fileName, bool printit, bool) {
    const fault::Call call("AcRxDynamicLinker::loadModule");
    if (call.refused() || fileName == nullptr) return false;
    try {
        load(std::filesystem::path(fileName));
    } catch (const ModuleError& error) {
        if (printit) acutPrintf(L"\n%s\n", fromUtf8(error.what()).c_str());
        return false;
    }
    return true;
}

bool Modules::unloadModule(const ACHAR* fileName, bool) {
    const fault::Call call("AcRxDynamicLinker::unloadModule");
    if (call.refused() || fileName == nullptr) return false;
    try {
        unload(std::filesystem::path(fileName));
    } catch (const ModuleError&) {
        return false;
    }
    return true;
}

bool Modules::unlockApplication(void* appId) const {
    Module* module = known(appId);
    if (module != nullptr) module->unlocked = true;
    return module != nullptr;
}

bool Modules::lockApplication(void* appId) const {
    Module* module = known(appId);
    if (module != nullptr) module->unlocked = false;
    return module != nullptr;
}

bool Modules::isApplicationLocked(const ACHAR* name) const {
    const Module* module = name == nullptr ? nullptr : find(std::filesystem::path(name));
    return module != nullptr && !module->unlocked;
}

bool Modules::registerAppMDIAware(void* appId) const {
    Module* module = known(appId);
    if (module != nullptr) module->mdiAware = true;
    return module != nullptr;
}

bool Modules::registerAppNotMDIAware(void* appId) const {
    Module* module = known(appId);
    if (module != nullptr) module->mdiAware = false;
    return module != nullptr;
}

bool Modules::isAppMDIAware(const ACHAR* name) const {
    const Module* module = name == nullptr ? nullptr : find(std::filesystem::path(name));
    return module != nullptr && module->mdiAware;
}

}  // namespace host::editor

using host::editor::Modules;

AcRxDynamicLinker* acrxDynamicLinkerPtr() {
    return &Modules::instance();
}
