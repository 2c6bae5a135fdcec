// Throws while it is initialised.
#include <stdexcept>

#include "tests/host/editor/modules/Exports.h"

AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode, void*) {
    throw std::runtime_error("not today");
}

const wchar_t* acrxGetApiVersion() {
    return L"1";
}
