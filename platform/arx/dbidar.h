// Arrays of object ids.
#pragma once

#include <acarray.h>
#include <dbid.h>

using AcDbObjectIdArray = AcArray<AcDbObjectId>;
