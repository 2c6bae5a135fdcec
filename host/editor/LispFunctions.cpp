// Functions that modules offer to LISP: registered and answered, called by nobody yet.
#include <acedads.h>

#include <algorithm>

#include "host/database/Fault.h"
#include "host/editor/Modules.h"
#include "host/editor/Words.h"

using host::editor::equalIgnoringCase;
using host::editor::Modules;

int acedDefun(const ACHAR* name, short code) {
    HOST_CALL("acedDefun");
    if (name == nullptr || *name == L'\0') return RTERROR;
    Modules& modules = Modules::instance();
    modules.lispFunctions.push_back({name, code, modules.messaged()});
    return RTNORM;
}

int acedUndef(const ACHAR* name, short code) {
    HOST_CALL("acedUndef");
    if (name == nullptr) return RTERROR;
    auto& functions = Modules::instance().lispFunctions;
    const auto found = std::find_if(functions.begin(), functions.end(), [&](const auto& entry) {
        return entry.code == code && equalIgnoringCase(entry.name, name);
    });
    if (found == functions.end()) return RTERROR;
    functions.erase(found);
    return RTNORM;
}

int acedRegFunc(int (*function)(), int code) {
    HOST_CALL("acedRegFunc");
    Modules& modules = Modules::instance();
    modules.registeredFunctions.push_back({function, code, modules.messaged()});
    return RTNORM;
}

int acedGetFunCode() {
    HOST_CALL("acedGetFunCode");
    return Modules::instance().functionCode;
}
