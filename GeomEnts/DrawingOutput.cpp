#include "GeomEnts/DrawingOutput.h"

#include <dbapserv.h>
#include <dbsymtb.h>

namespace TamLib {

void SetColourAndLayer(AcDbEntity& entity, int colour, const wchar_t* layer,
                       AcDbDatabase* database) {
    entity.setColorIndex(static_cast<Adesk::UInt16>(colour));
    SetLayer(entity, layer, database);
}

void SetLayer(AcDbEntity& entity, const wchar_t* layer, AcDbDatabase* database) {
    if (layer == nullptr) return;
    ARXAddLayer(layer, database);
    // By id: a name would be looked for in the working database.
    if (database == nullptr) database = acdbHostApplicationServices()->workingDatabase();
    AcDbLayerTable* table = nullptr;
    if (database == nullptr || database->getSymbolTable(table, AcDb::kForRead) != Acad::eOk) return;
    AcDbObjectId id;
    if (table->getAt(layer, id) == Acad::eOk) entity.setLayer(id);
    table->close();
}

}  // namespace TamLib
