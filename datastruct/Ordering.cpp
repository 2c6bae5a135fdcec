#include "datastruct/Ordering.h"

#include "tam/TamExceptions.h"

namespace TamLib {

void RaiseOrderingNoMemory(std::int32_t line) {
    throw TamExpNoMem(L"", line, L"datastruct/Ordering");
}

}  // namespace TamLib
