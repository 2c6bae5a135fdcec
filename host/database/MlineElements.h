// What a multi-line takes from its style.
#pragma once

class AcDbImpDatabase;

namespace host::database {

struct MlineFields;

// Gives a multi-line the lines that its style has in the database; those it has stay without one.
void takeElements(MlineFields& mline, const AcDbImpDatabase& database);

}  // namespace host::database
