#include "ModuleState.h"

HINSTANCE moduleHandle = nullptr;
