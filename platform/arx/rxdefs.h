// Messages that the host sends to the entry point of a module, and the answers it takes.
#pragma once

#include <adesk.h>

namespace AcRx {

enum AppMsgCode {
    kNullMsg = 0,
    kInitAppMsg = 1,
    kUnloadAppMsg = 2,
    kLoadDwgMsg = 3,
    kUnloadDwgMsg = 4,
    kInvkSubrMsg = 5,
    kCfgMsg = 6,
    kEndMsg = 7,
    kQuitMsg = 8,
    kSaveMsg = 9,
    kDependencyMsg = 10,
    kNoDependencyMsg = 11,
    kOleUnloadAppMsg = 12,
    kPreQuitMsg = 13,
    kInitDialogMsg = 14,
    kEndDialogMsg = 15,
    kSuspendMsg = 16,
    kInitTabGroupMsg = 17,
    kEndTabGroupMsg = 18
};

enum AppRetCode { kRetOK = 0, kRetError = 3 };

enum Ordering { kLessThan = -1, kEqual = 0, kGreaterThan = 1, kNotOrderable = 3 };

}  // namespace AcRx
