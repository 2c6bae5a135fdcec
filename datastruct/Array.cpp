#include "datastruct/Array.h"

#include "tam/TamExceptions.h"

namespace TamLib {

void RaiseArrayRange(std::int32_t line) {
    throw TamExpRange(L"", line, L"datastruct/Array");
}

}  // namespace TamLib
