// Facts about the screen. A test can set them in `HeadlessSystem.h`.
#pragma once

#include "windef.h"

#define SM_CXSCREEN 0
#define SM_CYSCREEN 1

// Width and height of the screen; 0 for any other fact.
int GetSystemMetrics(int index);
