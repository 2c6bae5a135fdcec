// The root of MFC: what every other header of it brings along.
#pragma once

#include <windows.h>

#include "afxstr.h"
