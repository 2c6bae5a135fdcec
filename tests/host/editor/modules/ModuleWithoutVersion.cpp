// Exports its entry point, but no version.
#include "tests/host/editor/modules/Exports.h"

AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode, void*) {
    return AcRx::kRetOK;
}
