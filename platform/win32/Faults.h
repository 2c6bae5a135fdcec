// Calls that fail on a test's order, for the sources of this folder.
#pragma once

#include "windef.h"

namespace posix {

// Whether this call of the function is ordered to fail (headless::FailCall). `code` is the order's
// then, and is also made the last error.
bool Refused(const char* function, DWORD* code = nullptr);

}  // namespace posix
