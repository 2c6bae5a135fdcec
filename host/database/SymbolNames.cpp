#include "host/database/SymbolNames.h"

#include <dbapserv.h>

#include <algorithm>

#include "host/database/DatabaseImp.h"
#include "host/database/ObjectFields.h"
#include "host/database/ObjectImp.h"

namespace host::database {

const AcDbImpDatabase* databaseFor(const AcDbObject& object) {
    if (const AcDbImpDatabase* own = object.impl()->database()) return own;
    const AcDbDatabase* working = acdbHostApplicationServices()->workingDatabase();
    return working == nullptr ? nullptr : working->impl();
}

Acad::ErrorStatus nameOfSymbol(AcDbObjectId id, const AcRxClass* wanted, std::wstring& name) {
    if (id.isNull()) return Acad::eNullObjectId;
    AcDbImpDatabase* database = AcDbImpDatabase::of(id);
    if (database == nullptr) return Acad::eNoDatabase;
    const AcDbObject* object = database->object(AcDbImpDatabase::numberOf(id));
    if (object == nullptr || !object->isKindOf(wanted)) return Acad::eNotThatKindOfClass;
    if (object->isErased()) return Acad::eWasErased;
    name = fieldsOf<SymbolFields>(*object).name;
    return Acad::eOk;
}

Acad::ErrorStatus findSymbol(const AcDbObject& object, Table table, const ACHAR* name,
                             std::wstring& found) {
    if (name == nullptr) return Acad::eInvalidInput;
    const AcDbImpDatabase* database = databaseFor(object);
    if (database == nullptr) return Acad::eNoDatabase;
    const auto number = database->find(table, name);
    if (!number) return Acad::eKeyNotFound;
    if (database->isErased(*number)) return Acad::eWasErased;
    found = database->symbolName(*number);
    return Acad::eOk;
}

bool isSymbolName(std::wstring_view name) {
    constexpr std::size_t kLongest = 255;
    if (name.empty() || name.size() > kLongest) return false;
    if (name.front() == L' ' || name.back() == L' ') return false;
    return std::none_of(name.begin(), name.end(), [](wchar_t c) {
        return static_cast<std::uint32_t>(c) < 0x20 ||
               std::wstring_view(L"<>/\\\":;?*|,=`").find(c) != std::wstring_view::npos;
    });
}

double sizeOfTextStyle(const AcDbImpDatabase* database, std::wstring_view style) {
    if (database == nullptr) return 0.0;
    const auto number = database->find(Table::textStyle, style);
    if (!number) return 0.0;
    TextStyleFields read;
    return static_cast<const TextStyleFields&>(database->fieldsAt(*number, read)).textSize;
}

}  // namespace host::database
