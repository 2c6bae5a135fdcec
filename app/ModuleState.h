// What lives for as long as the module does. The host's main window, the third of its kind, stands
// in tam/FrameWindow.h, because the library uses it too.
#pragma once

#include <windows.h>

// The module's own handle, stored when the process attaches to it.
extern HINSTANCE moduleHandle;
