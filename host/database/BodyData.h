// Where drawings from R2013 on keep the bodies of their solids and regions: as binary data in the
// section ACDSDATA, tied to its entity by the handle.
#pragma once

#include <vector>

#include "host/database/RecordWriter.h"

namespace host::database {

// Adds a record for each of `bodies` at the end of the section, and what the section lacks of what
// describes them: schemas, each after the last one there, with the next numbers that are free. A
// missing section is made behind all others. Nothing is changed without bodies.
void addBodyData(const dxf::Document& document, const Manner& manner,
                 const std::vector<BodyData>& bodies, dxf::Changes& changes);

// The name of a body in its entity: a UUID of version 8, made of the bytes and the handle, so that
// saving twice writes the same.
std::wstring bodyName(const BodyData& body);

}  // namespace host::database
