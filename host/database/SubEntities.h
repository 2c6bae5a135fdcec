// Walking the sub-entities of an entity.
#pragma once

#include <dbmain.h>

namespace host::database {

// An iterator over the VERTEX or ATTRIB records of `owner`, at the first one that isn't erased;
// owned by the caller. Null when `owner` isn't open or a failure of `function` was ordered.
AcDbObjectIterator* newSubEntityIterator(const AcDbEntity& owner, const char* function);

// Puts `part` behind the last sub-entity of `owner`, with the owner's layer, colour and linetype:
// into the owner's database, open for write, or into the owner itself while that is in none.
// eNullObjectPointer, eNotOpenForWrite, eAlreadyInDb, and what AcDbImpDatabase::adopt answers; the
// part remains the caller's then.
Acad::ErrorStatus appendSubEntity(AcDbEntity& owner, AcDbObjectId& id, AcDbEntity* part);

}  // namespace host::database
