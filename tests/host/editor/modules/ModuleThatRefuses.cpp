// Registers a command, then answers the first message with a failure.
#include <aced.h>

#include "tests/host/editor/modules/Exports.h"

namespace {

void nothing() {}

}  // namespace

AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode, void*) {
    acedRegCmds->addCommand(L"REFUSING", L"REFUSED", L"REFUSED", 0, nothing);
    return AcRx::kRetError;
}

const wchar_t* acrxGetApiVersion() {
    return L"1";
}
