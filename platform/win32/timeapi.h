// Clocks of the machine and of the process. A test can set them in `HeadlessSystem.h`.
#pragma once

#include "windef.h"

// Milliseconds of a clock that wraps every 2^32 of them.
DWORD timeGetTime();
// A fine clock, in ticks of the frequency; always TRUE.
BOOL QueryPerformanceCounter(LARGE_INTEGER* counter);
BOOL QueryPerformanceFrequency(LARGE_INTEGER* frequency);
// Start and end of the process (0 here) and the time that all its threads have used, in units of
// 100 ns. Only the own process is known; FALSE (last error 6) for another handle.
BOOL GetProcessTimes(HANDLE process, FILETIME* creation, FILETIME* exit, FILETIME* kernel,
                     FILETIME* user);
