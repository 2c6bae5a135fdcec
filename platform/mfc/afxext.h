// The framework's extensions, extension modules among them.
#pragma once

#include <afxwin.h>
