// The Windows interface over POSIX, for builds without a Windows. Only what the library calls is
// here, under the names, values and results that the interface has.
#pragma once

#include "clipboard.h"
#include "fileapi.h"
#include "processapi.h"
#include "shellapi.h"
#include "stringapi.h"
#include "timeapi.h"
#include "winbase.h"
#include "windef.h"
#include "wingdi.h"
#include "winmessages.h"
#include "winnt.h"
#include "winreg.h"
#include "winscreen.h"
#include "winuser.h"
#include "winver.h"
