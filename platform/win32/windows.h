// The Windows interface over POSIX, for builds without a Windows. Only what the library calls is
// here, under the names, values and results that the interface has.
#pragma once

#include "winbase.h"
#include "windef.h"
#include "winnt.h"
#include "winuser.h"
