#include "host/database/Drawing.h"

#include <dbents.h>

#include <utility>

#include "host/database/DatabaseImp.h"
#include "host/database/Ledger.h"
#include "host/database/Names.h"
#include "host/database/ObjectFields.h"
#include "host/database/ObjectImp.h"

namespace host::database {
namespace {

// The database and number of an id; null for one that names nothing.
struct Place {
    AcDbImpDatabase* database = nullptr;
    ObjectNumber number = 0;
};

Place placeOf(AcDbObjectId id) {
    AcDbImpDatabase* database = id.isNull() ? nullptr : AcDbImpDatabase::of(id);
    if (database == nullptr) return {};
    return {database, AcDbImpDatabase::numberOf(id)};
}

// The fields of an entity; null for what is none.
const EntityFields* entityFields(AcDbObjectId id) {
    const Place place = placeOf(id);
    AcDbObject* object = place.database == nullptr ? nullptr : place.database->object(place.number);
    if (object == nullptr || !object->isKindOf(AcDbEntity::desc())) return nullptr;
    return &fieldsOf<EntityFields>(*object);
}

}  // namespace

std::unique_ptr<AcDbDatabase> drawingOf(std::shared_ptr<const dxf::Document> document) {
    std::wstring name = fromUtf8(document->name());
    std::unique_ptr<AcDbDatabase> database = AcDbImpDatabase::make(std::move(document));
    database->impl()->fileName = std::move(name);
    return database;
}

std::unique_ptr<AcDbDatabase> readDrawing(const std::filesystem::path& path,
                                          const dxf::Progress& progress) {
    return drawingOf(dxf::Document::open(path, progress));
}

const dxf::Document& document(const AcDbDatabase& database) {
    return database.impl()->document();
}

namespace {

// An erased entity goes with its sub-entities and the SEQEND behind them.
void eraseRecords(const AcDbImpDatabase& database, dxf::RecordIndex record, dxf::Changes& changes) {
    const auto& document = database.document();
    Structure::Range range = database.structure().subEntities(record);
    const bool ends = range.end > range.begin && range.end < document.size() &&
                      document.type(range.end) == "SEQEND";
    if (ends) ++range.end;
    for (auto gone = record; gone < range.end; ++gone) {
        changes[gone] = {{dxf::GroupEdit::Kind::removeRecord, 0, 0, {}}};
    }
}

}  // namespace

dxf::Changes pendingChanges(const AcDbDatabase& database) {
    const AcDbImpDatabase& imp = *database.impl();
    dxf::Changes changes;
    for (const ObjectNumber number : imp.touched()) {
        const auto record = imp.recordOf(number);
        const AcDbObject* object = imp.madeObject(number);
        if (!record || object == nullptr || changes.count(*record) != 0) continue;
        if (object->impl()->isErased()) {
            eraseRecords(imp, *record, changes);
            continue;
        }
        auto edits = editsFor(imp.document(), *record, object->impl()->fields());
        if (!edits.empty()) changes.emplace(*record, std::move(edits));
    }
    return changes;
}

void saveDrawing(const AcDbDatabase& database, const std::filesystem::path& path,
                 const dxf::Progress& progress) {
    dxf::save(document(database), pendingChanges(database), path, progress);
}

AcDbObjectId idOf(const AcDbDatabase& database, dxf::RecordIndex record) {
    return database.impl()->isObject(record) ? database.impl()->idOf(record) : AcDbObjectId();
}

std::optional<dxf::RecordIndex> recordOf(AcDbObjectId id) {
    const Place place = placeOf(id);
    return place.database == nullptr ? std::nullopt : place.database->recordOf(place.number);
}

AcDbObjectId idFromHandle(const AcDbDatabase& database, std::wstring_view handle) {
    const auto value = dxf::parseHandle(toUtf8(handle));
    return value ? idFromHandle(database, *value) : AcDbObjectId();
}

AcDbObjectId idFromHandle(const AcDbDatabase& database, std::uint64_t handle) {
    const auto record = handle == 0 ? std::nullopt : document(database).find(handle);
    return record ? idOf(database, *record) : AcDbObjectId();
}

std::wstring handleText(AcDbObjectId id) {
    return handleText(static_cast<std::uint64_t>(id.handle()));
}

std::wstring className(AcDbObjectId id) {
    const AcRxClass* aClass = id.objectClass();
    return aClass == nullptr ? std::wstring() : aClass->name();
}

std::wstring recordName(AcDbObjectId id) {
    const auto record = recordOf(id);
    if (!record || !id.isValid()) return {};
    return fromUtf8(document(*id.database()).type(*record));
}

std::vector<AcDbObjectId> modelSpaceIds(const AcDbDatabase& database) {
    return blockIds(database.impl()->idOf(database.impl()->structure().modelSpace()));
}

std::vector<AcDbObjectId> blockIds(AcDbObjectId block) {
    std::vector<AcDbObjectId> ids;
    const Place place = placeOf(block);
    if (place.database == nullptr) return ids;
    const auto& entities = place.database->structure().entities(place.number);
    ids.reserve(entities.size());
    for (const ObjectNumber number : entities) {
        if (!place.database->isErased(number)) ids.push_back(place.database->idOf(number));
    }
    return ids;
}

LayerState layerState(AcDbObjectId entity) {
    LayerState state;
    const EntityFields* fields = entityFields(entity);
    if (fields == nullptr) return state;
    state.name = fields->layer;
    const AcDbImpDatabase& database = *placeOf(entity).database;
    const auto layer = database.structure().find(Table::layer, state.name);
    if (!layer) return state;
    LayerFields read;
    const auto& found = static_cast<const LayerFields&>(database.fieldsAt(*layer, read));
    state.frozen = (found.flags & LayerFields::kFrozen) != 0;
    state.locked = (found.flags & LayerFields::kLocked) != 0;
    state.off = found.color < 0;
    state.color = std::abs(found.color);
    return state;
}

bool isVisible(AcDbObjectId entity) {
    const EntityFields* fields = entityFields(entity);
    if (fields == nullptr || fields->invisible != 0 || entity.isErased()) return false;
    const LayerState layer = layerState(entity);
    return !layer.frozen && !layer.off;
}

std::wstring unreadableReason(AcDbObjectId id) {
    const EntityFields* fields = entityFields(id);
    const auto record = recordOf(id);
    if (fields == nullptr || !fields->unreadable || !record) return {};
    return describe(document(*id.database()), *record, *fields->unreadable);
}

std::vector<std::string> closeLeftOpen(AcDbDatabase& database) {
    std::vector<std::string> told;
    for (AcDbObject* object : database.impl()->openObjects()) {
        std::wstring text = object->isA()->name();
        const std::wstring handle = handleText(object->objectId());
        if (!handle.empty()) text += L" " + handle;
        told.push_back(toUtf8(text) + " open for " + object->impl()->modeText());
        object->impl()->closeAll();
    }
    return told;
}

}  // namespace host::database
