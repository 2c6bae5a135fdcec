// The layers of a drawing, one after the other.
#pragma once

#include <dbmain.h>
#include <dbsymtb.h>

#include <memory>

namespace host::editor {

// Calls `visit(layer)` for each layer, open for read, in the order of the layer table.
template <class Visit>
void forEachLayer(AcDbDatabase& drawing, const Visit& visit) {
    AcDbLayerTable* table = nullptr;
    if (drawing.getSymbolTable(table, AcDb::kForRead) != Acad::eOk) return;
    AcDbSymbolTableIterator* made = nullptr;
    table->newIterator(made);
    const std::unique_ptr<AcDbSymbolTableIterator> at(made);
    table->close();
    for (; at != nullptr && !at->done(); at->step()) {
        AcDbSymbolTableRecord* record = nullptr;
        if (at->getRecord(record) != Acad::eOk) continue;
        if (const auto* layer = AcDbLayerTableRecord::cast(record)) visit(*layer);
        record->close();
    }
}

}  // namespace host::editor
