// Walking the sub-entities of an entity.
#pragma once

#include <dbmain.h>

namespace host::database {

// An iterator over the VERTEX or ATTRIB records of `owner`, at the first one that isn't erased;
// owned by the caller. Null when `owner` isn't open or a failure of `function` was ordered.
AcDbObjectIterator* newSubEntityIterator(const AcDbEntity& owner, const char* function);

}  // namespace host::database
