// The symbol tables, their records, and walking them.
#include <dbents.h>
#include <dbsymtb.h>

#include <algorithm>
#include <cmath>

#include "host/database/DatabaseImp.h"
#include "host/database/Fault.h"
#include "host/database/Ledger.h"
#include "host/database/Names.h"
#include "host/database/ObjectFields.h"
#include "host/database/ObjectImp.h"
#include "host/database/Setting.h"
#include "host/database/SymbolNames.h"
#include "host/database/Texts.h"

using namespace host::database;

ACRX_NO_CONS_DEFINE_MEMBERS(AcDbSymbolTableRecord, AcDbObject)
ACRX_NO_CONS_DEFINE_MEMBERS(AcDbSymbolTable, AcDbObject)
ACRX_NO_CONS_DEFINE_MEMBERS(AcDbSymbolTableIterator, AcRxObject)
ACRX_NO_CONS_DEFINE_MEMBERS(AcDbBlockTableRecordIterator, AcRxObject)
ACRX_DXF_DEFINE_MEMBERS(AcDbLayerTableRecord, AcDbSymbolTableRecord, 0, 0, 0, LAYER, ObjectDBX)
ACRX_DXF_DEFINE_MEMBERS(AcDbLayerTable, AcDbSymbolTable, 0, 0, 0, TABLE, ObjectDBX)
ACRX_DXF_DEFINE_MEMBERS(AcDbLinetypeTableRecord, AcDbSymbolTableRecord, 0, 0, 0, LTYPE, ObjectDBX)
ACRX_DXF_DEFINE_MEMBERS(AcDbLinetypeTable, AcDbSymbolTable, 0, 0, 0, TABLE, ObjectDBX)
ACRX_DXF_DEFINE_MEMBERS(AcDbTextStyleTableRecord, AcDbSymbolTableRecord, 0, 0, 0, STYLE, ObjectDBX)
ACRX_DXF_DEFINE_MEMBERS(AcDbTextStyleTable, AcDbSymbolTable, 0, 0, 0, TABLE, ObjectDBX)
ACRX_DXF_DEFINE_MEMBERS(AcDbBlockTableRecord, AcDbSymbolTableRecord, 0, 0, 0, BLOCK_RECORD,
                        ObjectDBX)
ACRX_DXF_DEFINE_MEMBERS(AcDbBlockTable, AcDbSymbolTable, 0, 0, 0, TABLE, ObjectDBX)

namespace {

std::uint64_t keyOf(const void* iterator) {
    return reinterpret_cast<std::uintptr_t>(iterator);
}

// Which of the four tables this is; none for those that the host only keeps.
std::optional<Table> tableOf(const AcDbSymbolTable& table) {
    const AcDbImpDatabase* database = table.impl()->database();
    if (database == nullptr) return std::nullopt;
    const ObjectNumber number = AcDbImpDatabase::numberOf(table.objectId());
    for (int i = 0; i < kTables; ++i) {
        const auto which = static_cast<Table>(i);
        if (database->structure().tableObject(which) == number) return which;
    }
    return std::nullopt;
}

Acad::ErrorStatus handOver(const AcDbObject& record, const std::wstring& text, const char* function,
                           ACHAR*& copy) {
    copy = nullptr;
    HOST_CALL(function);
    if (!record.impl()->mayRead()) return Acad::eNotOpenForRead;
    const host::fault::Quiet quiet;
    return acutNewString(text.c_str(), copy);
}

Acad::ErrorStatus setFlag(AcDbLayerTableRecord& layer, int bit, bool set) {
    return change<LayerFields>(layer, [&](LayerFields& fields) {
        fields.flags = set ? fields.flags | bit : fields.flags & ~bit;
    });
}

}  // namespace

AcDbSymbolTableRecord::AcDbSymbolTableRecord() {
    impl()->setFields(std::make_unique<OtherSymbolFields>());
}
Acad::ErrorStatus AcDbSymbolTableRecord::getName(ACHAR*& name) const {
    return handOver(*this, fieldsOf<SymbolFields>(*this).name, "AcDbSymbolTableRecord::getName",
                    name);
}
Acad::ErrorStatus AcDbSymbolTableRecord::getName(const ACHAR*& name) const {
    name = nullptr;
    HOST_CALL("AcDbSymbolTableRecord::getName");
    if (!impl()->mayRead()) return Acad::eNotOpenForRead;
    name = fieldsOf<SymbolFields>(*this).name.c_str();
    return Acad::eOk;
}
Acad::ErrorStatus AcDbSymbolTableRecord::setName(const ACHAR* name) {
    HOST_CALL("AcDbSymbolTableRecord::setName");
    if (name == nullptr || !isSymbolName(name)) return Acad::eInvalidSymbolTableName;
    if (impl()->database() != nullptr) return Acad::eNotImplementedYet;
    return change<SymbolFields>(*this, [&](SymbolFields& fields) { fields.name = name; });
}
bool AcDbSymbolTableRecord::isDependent() const {
    return (fieldsOf<SymbolFields>(*this).flags & SymbolFields::kDependent) != 0;
}

AcDbSymbolTableIterator::AcDbSymbolTableIterator(const AcDbObjectIdArray& ids) : m_ids(ids) {
    Ledger::instance().opened("iterator", keyOf(this), [](std::uint64_t) {
        return std::string("of a symbol table, not deleted");
    });
}
AcDbSymbolTableIterator::~AcDbSymbolTableIterator() {
    Ledger::instance().closed("iterator", keyOf(this));
}
void AcDbSymbolTableIterator::start(bool atBeginning, bool skipDeleted) {
    m_at = atBeginning ? 0 : m_ids.length() - 1;
    if (skipDeleted) skipErased(atBeginning);
}
bool AcDbSymbolTableIterator::done() const {
    return m_at < 0 || m_at >= m_ids.length();
}
void AcDbSymbolTableIterator::step(bool forward, bool skipDeleted) {
    if (done()) return;
    m_at += forward ? 1 : -1;
    if (skipDeleted) skipErased(forward);
}
void AcDbSymbolTableIterator::skipErased(bool forward) {
    while (!done() && m_ids[m_at].isErased()) m_at += forward ? 1 : -1;
}
Acad::ErrorStatus AcDbSymbolTableIterator::getRecordId(AcDbObjectId& id) const {
    HOST_CALL("AcDbSymbolTableIterator::getRecordId");
    if (done()) return Acad::eIteratorDone;
    id = m_ids[m_at];
    return Acad::eOk;
}
Acad::ErrorStatus AcDbSymbolTableIterator::getRecord(AcDbSymbolTableRecord*& record,
                                                     AcDb::OpenMode mode,
                                                     bool openErasedRecord) const {
    record = nullptr;
    HOST_CALL("AcDbSymbolTableIterator::getRecord");
    if (done()) return Acad::eIteratorDone;
    return acdbOpenObject(record, m_ids[m_at], mode, openErasedRecord);
}
Acad::ErrorStatus AcDbSymbolTableIterator::seek(AcDbObjectId id) {
    HOST_CALL("AcDbSymbolTableIterator::seek");
    const int found = m_ids.find(id);
    if (found < 0) return Acad::eRecordNotInTable;
    m_at = found;
    return Acad::eOk;
}

AcDbSymbolTable::AcDbSymbolTable() = default;
Acad::ErrorStatus AcDbSymbolTable::getAt(const ACHAR* name, AcDbObjectId& id,
                                         bool getErasedRecord) const {
    HOST_CALL("AcDbSymbolTable::getAt");
    if (!impl()->mayRead()) return Acad::eNotOpenForRead;
    if (name == nullptr) return Acad::eInvalidInput;
    const auto table = tableOf(*this);
    if (!table) return Acad::eKeyNotFound;
    const AcDbImpDatabase& database = *impl()->database();
    const AcDbObjectId found = database.idOf(database.find(*table, name));
    if (found.isNull()) return Acad::eKeyNotFound;
    if (found.isErased() && !getErasedRecord) return Acad::eWasErased;
    id = found;
    return Acad::eOk;
}
Acad::ErrorStatus AcDbSymbolTable::getAt(const ACHAR* name, AcDbSymbolTableRecord*& record,
                                         AcDb::OpenMode mode, bool openErasedRecord) const {
    record = nullptr;
    HOST_CALL("AcDbSymbolTable::getAt");
    AcDbObjectId id;
    const Acad::ErrorStatus status = getAt(name, id, openErasedRecord);
    if (status != Acad::eOk) return status;
    return acdbOpenObject(record, id, mode, openErasedRecord);
}
bool AcDbSymbolTable::has(const ACHAR* name) const {
    const host::fault::Quiet quiet;
    AcDbObjectId id;
    return getAt(name, id) == Acad::eOk;
}
bool AcDbSymbolTable::has(AcDbObjectId id) const {
    const auto table = tableOf(*this);
    const AcDbImpDatabase* database = impl()->database();
    if (!table || id.isNull() || AcDbImpDatabase::of(id) != database || id.isErased()) return false;
    const Members records = database->records(*table);
    return records.find(AcDbImpDatabase::numberOf(id)) < records.size();
}
Acad::ErrorStatus AcDbSymbolTable::newIterator(AcDbSymbolTableIterator*& iterator, bool atBeginning,
                                               bool skipDeleted) const {
    iterator = nullptr;
    HOST_CALL("AcDbSymbolTable::newIterator");
    if (!impl()->mayRead()) return Acad::eNotOpenForRead;
    AcDbObjectIdArray ids;
    if (const auto table = tableOf(*this)) {
        const AcDbImpDatabase& database = *impl()->database();
        for (const ObjectNumber number : database.records(*table)) {
            ids.append(database.idOf(number));
        }
    }
    iterator = new AcDbSymbolTableIterator(ids);
    iterator->start(atBeginning, skipDeleted);
    return Acad::eOk;
}

namespace {

// The class of a table's records.
const AcRxClass* recordClass(Table table) {
    switch (table) {
        case Table::block:
            return AcDbBlockTableRecord::desc();
        case Table::layer:
            return AcDbLayerTableRecord::desc();
        case Table::linetype:
            return AcDbLinetypeTableRecord::desc();
        default:
            return AcDbTextStyleTableRecord::desc();
    }
}

}  // namespace

Acad::ErrorStatus AcDbSymbolTable::add(AcDbSymbolTableRecord* record) {
    AcDbObjectId id;
    return add(id, record);
}
Acad::ErrorStatus AcDbSymbolTable::add(AcDbObjectId& id, AcDbSymbolTableRecord* record) {
    HOST_CALL("AcDbSymbolTable::add");
    if (record == nullptr) return Acad::eNullObjectPointer;
    const auto table = tableOf(*this);
    if (!table || !impl()->mayWrite()) return Acad::eNotOpenForWrite;
    if (record->impl()->database() != nullptr) return Acad::eAlreadyInDb;
    if (!record->isKindOf(recordClass(*table))) return Acad::eNotThatKindOfClass;
    const std::wstring& name = fieldsOf<SymbolFields>(*record).name;
    if (name.empty()) return Acad::eInvalidSymbolTableName;
    AcDbImpDatabase& database = *impl()->database();
    const auto known = database.find(*table, name);
    if (known && !database.isErased(*known)) return Acad::eDuplicateRecordName;
    return database.adopt(*record, AcDbImpDatabase::numberOf(objectId()), id);
}

AcDbLayerTable::AcDbLayerTable() = default;
AcDbLinetypeTable::AcDbLinetypeTable() = default;
AcDbTextStyleTable::AcDbTextStyleTable() = default;
AcDbBlockTable::AcDbBlockTable() = default;

AcDbLayerTableRecord::AcDbLayerTableRecord() {
    impl()->setFields(std::make_unique<LayerFields>());
}
bool AcDbLayerTableRecord::isFrozen() const {
    return (fieldsOf<LayerFields>(*this).flags & LayerFields::kFrozen) != 0;
}
bool AcDbLayerTableRecord::isLocked() const {
    return (fieldsOf<LayerFields>(*this).flags & LayerFields::kLocked) != 0;
}
bool AcDbLayerTableRecord::isOff() const {
    return fieldsOf<LayerFields>(*this).color < 0;
}
bool AcDbLayerTableRecord::isPlottable() const {
    return fieldsOf<LayerFields>(*this).plottable != 0;
}
Adesk::UInt16 AcDbLayerTableRecord::colorIndex() const {
    return static_cast<Adesk::UInt16>(std::abs(fieldsOf<LayerFields>(*this).color));
}
Acad::ErrorStatus AcDbLayerTableRecord::setIsFrozen(bool frozen) {
    HOST_CALL("AcDbLayerTableRecord::setIsFrozen");
    return setFlag(*this, LayerFields::kFrozen, frozen);
}
void AcDbLayerTableRecord::setIsLocked(bool locked) {
    setFlag(*this, LayerFields::kLocked, locked);
}
void AcDbLayerTableRecord::setIsOff(bool off) {
    change<LayerFields>(*this, [&](LayerFields& fields) {
        fields.color = off ? -std::abs(fields.color) : std::abs(fields.color);
    });
}
Acad::ErrorStatus AcDbLayerTableRecord::setIsPlottable(bool plottable) {
    HOST_CALL("AcDbLayerTableRecord::setIsPlottable");
    return change<LayerFields>(*this,
                               [&](LayerFields& fields) { fields.plottable = plottable ? 1 : 0; });
}
Acad::ErrorStatus AcDbLayerTableRecord::setColorIndex(Adesk::UInt16 color) {
    HOST_CALL("AcDbLayerTableRecord::setColorIndex");
    constexpr Adesk::UInt16 kLast = 255;
    if (color < 1 || color > kLast) return Acad::eInvalidInput;
    return change<LayerFields>(*this, [&](LayerFields& fields) {
        fields.color = fields.color < 0 ? -static_cast<int>(color) : color;
    });
}
Acad::ErrorStatus AcDbLayerTableRecord::setLinetypeObjectId(AcDbObjectId linetype) {
    HOST_CALL("AcDbLayerTableRecord::setLinetypeObjectId");
    std::wstring name;
    const Acad::ErrorStatus status = nameOfSymbol(linetype, AcDbLinetypeTableRecord::desc(), name);
    if (status != Acad::eOk) return status;
    return change<LayerFields>(*this, [&](LayerFields& fields) { fields.linetype = name; });
}
AcDbObjectId AcDbLayerTableRecord::linetypeObjectId() const {
    const AcDbImpDatabase* database = databaseFor(*this);
    if (database == nullptr) return {};
    const auto& name = fieldsOf<LayerFields>(*this).linetype;
    return database->idOf(database->find(Table::linetype, name));
}

AcDbLinetypeTableRecord::AcDbLinetypeTableRecord() {
    impl()->setFields(std::make_unique<LinetypeFields>());
}
Acad::ErrorStatus AcDbLinetypeTableRecord::comments(ACHAR*& text) const {
    return handOver(*this, fieldsOf<LinetypeFields>(*this).comments,
                    "AcDbLinetypeTableRecord::comments", text);
}
double AcDbLinetypeTableRecord::patternLength() const {
    return fieldsOf<LinetypeFields>(*this).patternLength;
}
int AcDbLinetypeTableRecord::numDashes() const {
    return fieldsOf<LinetypeFields>(*this).dashes;
}

AcDbTextStyleTableRecord::AcDbTextStyleTableRecord() {
    impl()->setFields(std::make_unique<TextStyleFields>());
}
double AcDbTextStyleTableRecord::textSize() const {
    return fieldsOf<TextStyleFields>(*this).textSize;
}
double AcDbTextStyleTableRecord::xScale() const {
    return fieldsOf<TextStyleFields>(*this).xScale;
}
double AcDbTextStyleTableRecord::obliquingAngle() const {
    return fieldsOf<TextStyleFields>(*this).oblique;
}
Acad::ErrorStatus AcDbTextStyleTableRecord::setTextSize(double size) {
    HOST_CALL("AcDbTextStyleTableRecord::setTextSize");
    if (size < 0.0) return Acad::eInvalidInput;
    return setNumber<&TextStyleFields::textSize>(*this, size);
}
Acad::ErrorStatus AcDbTextStyleTableRecord::setXScale(double scale) {
    HOST_CALL("AcDbTextStyleTableRecord::setXScale");
    if (!(scale > 0.0)) return Acad::eInvalidInput;
    return setNumber<&TextStyleFields::xScale>(*this, scale);
}
Acad::ErrorStatus AcDbTextStyleTableRecord::setObliquingAngle(double angle) {
    HOST_CALL("AcDbTextStyleTableRecord::setObliquingAngle");
    return setNumber<&TextStyleFields::oblique>(*this, angle);
}
Acad::ErrorStatus AcDbTextStyleTableRecord::setFileName(const ACHAR* name) {
    HOST_CALL("AcDbTextStyleTableRecord::setFileName");
    if (name == nullptr) return Acad::eInvalidInput;
    return change<TextStyleFields>(*this, [&](TextStyleFields& fields) { fields.fileName = name; });
}
Acad::ErrorStatus AcDbTextStyleTableRecord::fileName(ACHAR*& name) const {
    return handOver(*this, fieldsOf<TextStyleFields>(*this).fileName,
                    "AcDbTextStyleTableRecord::fileName", name);
}

AcDbBlockTableRecordIterator::AcDbBlockTableRecordIterator(AcDbObjectId block) : m_block(block) {
    Ledger::instance().opened("iterator", keyOf(this),
                              [](std::uint64_t) { return std::string("of a block, not deleted"); });
}
AcDbBlockTableRecordIterator::~AcDbBlockTableRecordIterator() {
    Ledger::instance().closed("iterator", keyOf(this));
}
std::size_t AcDbBlockTableRecordIterator::size() const {
    const AcDbImpDatabase* database = AcDbImpDatabase::of(m_block);
    if (database == nullptr) return 0;
    return database->entitiesOf(AcDbImpDatabase::numberOf(m_block)).size();
}
AcDbObjectId AcDbBlockTableRecordIterator::idAt(std::size_t position) const {
    const AcDbImpDatabase* database = AcDbImpDatabase::of(m_block);
    return database->idOf(database->entitiesOf(AcDbImpDatabase::numberOf(m_block))[position]);
}
void AcDbBlockTableRecordIterator::start(bool atBeginning, bool skipDeleted) {
    // Before the first one the position wraps to the largest number, which is done too.
    m_at = atBeginning ? 0 : size() - 1;
    if (skipDeleted) skipErased(atBeginning);
}
bool AcDbBlockTableRecordIterator::done() const {
    return m_at >= size();
}
void AcDbBlockTableRecordIterator::step(bool forward, bool skipDeleted) {
    if (done()) return;
    m_at += forward ? 1 : static_cast<std::size_t>(-1);
    if (skipDeleted) skipErased(forward);
}
void AcDbBlockTableRecordIterator::skipErased(bool forward) {
    while (!done() && idAt(m_at).isErased()) m_at += forward ? 1 : static_cast<std::size_t>(-1);
}
Acad::ErrorStatus AcDbBlockTableRecordIterator::getEntityId(AcDbObjectId& id) const {
    HOST_CALL("AcDbBlockTableRecordIterator::getEntityId");
    if (done()) return Acad::eIteratorDone;
    id = idAt(m_at);
    return Acad::eOk;
}
Acad::ErrorStatus AcDbBlockTableRecordIterator::getEntity(AcDbEntity*& entity, AcDb::OpenMode mode,
                                                          bool openErasedEntity) const {
    entity = nullptr;
    HOST_CALL("AcDbBlockTableRecordIterator::getEntity");
    if (done()) return Acad::eIteratorDone;
    return acdbOpenAcDbEntity(entity, idAt(m_at), mode, openErasedEntity);
}
Acad::ErrorStatus AcDbBlockTableRecordIterator::seek(AcDbObjectId id) {
    HOST_CALL("AcDbBlockTableRecordIterator::seek");
    const AcDbImpDatabase* database = AcDbImpDatabase::of(m_block);
    if (id.isNull() || database == nullptr || AcDbImpDatabase::of(id) != database) {
        return Acad::eKeyNotFound;
    }
    const Members entities = database->entitiesOf(AcDbImpDatabase::numberOf(m_block));
    const std::size_t found = entities.find(AcDbImpDatabase::numberOf(id));
    if (found == entities.size()) return Acad::eKeyNotFound;
    m_at = found;
    return Acad::eOk;
}

AcDbBlockTableRecord::AcDbBlockTableRecord() {
    impl()->setFields(std::make_unique<BlockFields>());
}
Acad::ErrorStatus AcDbBlockTableRecord::newIterator(AcDbBlockTableRecordIterator*& iterator,
                                                    bool atBeginning, bool skipDeleted) const {
    iterator = nullptr;
    HOST_CALL("AcDbBlockTableRecord::newIterator");
    if (!impl()->mayRead()) return Acad::eNotOpenForRead;
    iterator = new AcDbBlockTableRecordIterator(objectId());
    iterator->start(atBeginning, skipDeleted);
    return Acad::eOk;
}
Acad::ErrorStatus AcDbBlockTableRecord::appendAcDbEntity(AcDbEntity* entity) {
    AcDbObjectId id;
    return appendAcDbEntity(id, entity);
}
Acad::ErrorStatus AcDbBlockTableRecord::appendAcDbEntity(AcDbObjectId& id, AcDbEntity* entity) {
    HOST_CALL("AcDbBlockTableRecord::appendAcDbEntity");
    if (entity == nullptr) return Acad::eNullObjectPointer;
    AcDbImpDatabase* database = impl()->database();
    if (database == nullptr || !impl()->mayWrite()) return Acad::eNotOpenForWrite;
    if (entity->impl()->database() != nullptr) return Acad::eAlreadyInDb;
    return database->adopt(*entity, AcDbImpDatabase::numberOf(objectId()), id);
}
bool AcDbBlockTableRecord::isAnonymous() const {
    return (fieldsOf<BlockFields>(*this).flags & BlockFields::kAnonymous) != 0;
}
bool AcDbBlockTableRecord::isFromExternalReference() const {
    return (fieldsOf<BlockFields>(*this).flags &
            (BlockFields::kExternal | BlockFields::kOverlay)) != 0;
}
bool AcDbBlockTableRecord::isFromOverlayReference() const {
    return (fieldsOf<BlockFields>(*this).flags & BlockFields::kOverlay) != 0;
}
bool AcDbBlockTableRecord::isLayout() const {
    const std::wstring name = folded(fieldsOf<BlockFields>(*this).name);
    return name == L"*model_space" || name.rfind(L"*paper_space", 0) == 0;
}
bool AcDbBlockTableRecord::hasAttributeDefinitions() const {
    const AcDbImpDatabase* database = impl()->database();
    if (database == nullptr) return false;
    // The drawing's own flag is not to be trusted: what the block holds tells.
    const Members entities = database->entitiesOf(AcDbImpDatabase::numberOf(objectId()));
    return std::any_of(entities.begin(), entities.end(), [&](ObjectNumber number) {
        return !database->isErased(number) &&
               database->classOf(number) == AcDbAttributeDefinition::desc();
    });
}
AcGePoint3d AcDbBlockTableRecord::origin() const {
    return fieldsOf<BlockFields>(*this).origin;
}
Acad::ErrorStatus AcDbBlockTableRecord::pathName(ACHAR*& path) const {
    return handOver(*this, fieldsOf<BlockFields>(*this).path, "AcDbBlockTableRecord::pathName",
                    path);
}
