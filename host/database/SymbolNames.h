// Names of layers, linetypes, text styles and blocks that entities are given.
#pragma once

#include <dbmain.h>

#include <string>
#include <string_view>

#include "host/database/Structure.h"

namespace host::database {

// The database that an entity's names are looked for in: its own, or the working one while it is in
// none. Null when there is none.
const AcDbImpDatabase* databaseFor(const AcDbObject& object);

// The name of a table's record of class `wanted`. eNullObjectId, eNoDatabase, eNotThatKindOfClass,
// eWasErased; `name` is untouched then.
Acad::ErrorStatus nameOfSymbol(AcDbObjectId id, const AcRxClass* wanted, std::wstring& name);

// The table's own spelling of `name`, for `object`. eInvalidInput for null, eNoDatabase,
// eKeyNotFound, eWasErased.
Acad::ErrorStatus findSymbol(const AcDbObject& object, Table table, const ACHAR* name,
                             std::wstring& found);

// Whether symbols may have the name: what AcDbSymbolTableRecord::setName refuses.
bool isSymbolName(std::wstring_view name);

// The fixed size of a text style; 0 when it has none, or there is no such style.
double sizeOfTextStyle(const AcDbImpDatabase* database, std::wstring_view style);

}  // namespace host::database
