// Exports its version, but no entry point.
#include "tests/host/editor/modules/Exports.h"

const wchar_t* acrxGetApiVersion() {
    return L"1";
}
