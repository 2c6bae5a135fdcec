// The classes of objects, by the records that hold them.
#pragma once

#include <dbmain.h>

#include <memory>

#include "host/database/Structure.h"
#include "host/dxf/Document.h"

namespace host::database {

// Enters the descriptors of all classes that the host knows into the class dictionary.
void enterHostClasses();

// A class of objects, and how one is made. `make` is null for records that are no objects.
struct ObjectClass {
    AcRxClass* descriptor = nullptr;
    std::unique_ptr<AcDbObject> (*make)(AcRxClass* descriptor) = nullptr;
};

// The class of the object that a record holds; nothing to make for records that are no objects. A
// type that the host doesn't know is named by the drawing's CLASSES section, then by the record's
// last subclass marker, and is a proxy otherwise.
ObjectClass classOfRecord(const dxf::Document& document, const Structure& structure,
                          dxf::RecordIndex record);

// The class of an object that the drawing lacks.
ObjectClass classOfImplied(const Structure::Implied& implied);

}  // namespace host::database
