// The records of the objects that were put into a database, as edits of its drawing.
#pragma once

#include "host/database/DatabaseImp.h"
#include "host/dxf/Edit.h"

namespace host::database {

// Adds them to `changes`: entities at the end of their block or of the ENTITIES section,
// sub-entities behind their owner's last one, bodies from R2013 on in their section (BodyData.h),
// symbols at the end of their table, whose count (group 70) is raised where it is below their
// number. A section or table that the drawing lacks is made. The style of multi-lines that a
// drawing doesn't list is written, with its dictionary, when one of them has it. $HANDSEED and
// $CLAYER are brought up to date where the header has them.
void addNewRecords(const AcDbImpDatabase& database, dxf::Changes& changes);

// The groups of a new object's own record.
std::vector<dxf::GroupEdit> groupsOfNew(const AcDbImpDatabase& database, ObjectNumber number);

}  // namespace host::database
