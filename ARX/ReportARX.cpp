#include "ARX/ReportARX.h"

#include <adesk.h>

#include <acutads.h>

#include "tam/TamExceptions.h"

namespace TamLib {

void ReportToMessageArea() {
    // The text stands for itself; a message area has no room for a title.
    reportFunction = [](const wchar_t* text, const wchar_t* /*title*/) { acutPrintf(L"%s", text); };
}

}  // namespace TamLib
