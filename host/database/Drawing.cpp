#include "host/database/Drawing.h"

#include <dbents.h>

#include <utility>

#include "host/database/DatabaseImp.h"
#include "host/database/Ledger.h"
#include "host/database/Names.h"
#include "host/database/NewRecords.h"
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
    const bool mayEnd = document.type(record) == "POLYLINE" || document.type(record) == "INSERT";
    const bool ends = mayEnd && range.end < document.size() && document.type(range.end) == "SEQEND";
    if (ends) ++range.end;
    for (auto gone = record; gone < range.end; ++gone) {
        changes[gone] = {{dxf::GroupEdit::Kind::removeRecord, 0, 0, {}}};
    }
}

}  // namespace

namespace {

dxf::GroupEdit::Value valueOf(const dxf::Document& document, const dxf::Group& group) {
    if (const auto real = group.real()) return *real;
    if (const auto integer = group.integer()) return *integer;
    return document.decode(group.bytes());
}

// The groups of a record with edits of it put in.
std::vector<dxf::GroupEdit> withEdits(const dxf::Document& document, dxf::RecordIndex record,
                                      const std::vector<dxf::GroupEdit>& edits) {
    std::vector<dxf::GroupEdit> groups;
    std::size_t index = 0;
    for (const dxf::Group& group : document.groups(record)) {
        groups.push_back(
            {dxf::GroupEdit::Kind::replace, index, group.code(), valueOf(document, group)});
        const std::size_t own = groups.size() - 1;
        for (const dxf::GroupEdit& edit : edits) {
            if (edit.index != index) continue;
            if (edit.kind == dxf::GroupEdit::Kind::replace) {
                groups[own].value = edit.value;
            } else {
                groups.push_back(edit);
            }
        }
        ++index;
    }
    return groups;
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
    addNewRecords(imp, changes);
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
    const auto number = database.impl()->findHandle(handle);
    if (!number || !database.impl()->isObject(*number)) return {};
    return database.impl()->idOf(*number);
}

bool isNew(AcDbObjectId id) {
    return !id.isNull() && AcDbImpDatabase::numberOf(id) >= AcDbImpDatabase::kFirstNew;
}

std::wstring handleText(AcDbObjectId id) {
    return handleText(static_cast<std::uint64_t>(id.handle()));
}

std::wstring className(AcDbObjectId id) {
    const AcRxClass* aClass = id.objectClass();
    return aClass == nullptr ? std::wstring() : aClass->name();
}

std::wstring recordName(AcDbObjectId id) {
    if (!id.isValid()) return {};
    if (const auto record = recordOf(id)) return fromUtf8(document(*id.database()).type(*record));
    return isNew(id) ? id.objectClass()->dxfName() : std::wstring();
}

std::vector<dxf::GroupEdit> changedGroups(AcDbObjectId id) {
    const Place place = placeOf(id);
    if (place.database == nullptr) return {};
    const AcDbImpDatabase& database = *place.database;
    if (isNew(id)) return groupsOfNew(database, place.number);
    const AcDbObject* object = database.madeObject(place.number);
    const auto record = database.recordOf(place.number);
    if (!record || object == nullptr || !object->impl()->isTouched()) return {};
    const auto edits = editsFor(database.document(), *record, object->impl()->fields());
    if (edits.empty()) return {};
    return withEdits(database.document(), *record, edits);
}

std::vector<AcDbObjectId> modelSpaceIds(const AcDbDatabase& database) {
    return blockIds(database.impl()->idOf(database.impl()->structure().modelSpace()));
}

std::vector<AcDbObjectId> blockIds(AcDbObjectId block) {
    std::vector<AcDbObjectId> ids;
    const Place place = placeOf(block);
    if (place.database == nullptr) return ids;
    const Members entities = place.database->entitiesOf(place.number);
    ids.reserve(entities.size());
    for (const ObjectNumber number : entities) {
        if (!place.database->isErased(number)) ids.push_back(place.database->idOf(number));
    }
    return ids;
}

namespace {

// The name of an entity's layer, without making the entity; none for what is no entity.
std::optional<std::wstring> layerName(const Place& place) {
    if (place.database == nullptr) return std::nullopt;
    const AcDbImpDatabase& database = *place.database;
    const AcRxClass* aClass = database.classOf(place.number);
    if (aClass == nullptr || !aClass->isDerivedFrom(AcDbEntity::desc())) return std::nullopt;
    if (const AcDbObject* made = database.madeObject(place.number)) {
        return fieldsOf<EntityFields>(*made).layer;
    }
    const auto record = database.recordOf(place.number);
    const auto group =
        record ? ownGroup(database.document(), *record, EntityFields::kLayerCode) : std::nullopt;
    return group ? database.document().decode(group->bytes()) : EntityFields::kDefaultLayer;
}

LayerState stateOf(const AcDbImpDatabase& database, std::wstring name) {
    LayerState state;
    state.name = std::move(name);
    const auto layer = database.find(Table::layer, state.name);
    if (!layer) return state;
    LayerFields read;
    const auto& found = static_cast<const LayerFields&>(database.fieldsAt(*layer, read));
    state.frozen = (found.flags & LayerFields::kFrozen) != 0;
    state.locked = (found.flags & LayerFields::kLocked) != 0;
    state.off = found.color < 0;
    state.color = std::abs(found.color);
    return state;
}

}  // namespace

LayerState layerState(AcDbObjectId entity) {
    const Place place = placeOf(entity);
    auto name = layerName(place);
    return name ? stateOf(*place.database, std::move(*name)) : LayerState();
}

const LayerState& LayerStates::of(AcDbObjectId entity) {
    static const LayerState none;
    const Place place = placeOf(entity);
    const auto name = layerName(place);
    if (!name) return none;
    const auto known = byName_.find(*name);
    if (known != byName_.end()) return known->second;
    return byName_.emplace(*name, stateOf(*place.database, *name)).first->second;
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
