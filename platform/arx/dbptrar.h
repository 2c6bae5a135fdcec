// Arrays of pointers that the caller casts to what they are.
#pragma once

#include <acarray.h>

using AcDbVoidPtrArray = AcArray<void*>;
