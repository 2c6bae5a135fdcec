// The start and the end of the module in a process.
#pragma once

#include <windows.h>

// Keeps the handle; unless done before, makes the module known to the framework; then starts the
// host's user interface library, in any case. Always TRUE.
BOOL AttachModule(HINSTANCE instance);

// Takes the module out of the framework if it is known there. Always TRUE.
BOOL DetachModule();
