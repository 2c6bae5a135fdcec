// Ids, handles, and the objects of a database: opening, closing, erasing.
#include <acdbads.h>
#include <acutmem.h>
#include <dbents.h>
#include <dbmain.h>
#include <dbsymtb.h>

#include <algorithm>
#include <new>

#include "host/database/DatabaseImp.h"
#include "host/database/Fault.h"
#include "host/database/Geometry.h"
#include "host/database/Names.h"
#include "host/database/ObjectFields.h"
#include "host/database/ObjectImp.h"
#include "host/database/Setting.h"
#include "host/database/SymbolNames.h"
#include "host/database/Texts.h"

using host::database::EntityFields;
using host::database::fieldsOf;
using host::database::NoFields;
using host::database::OpaqueFields;
using host::database::Table;

ACRX_NO_CONS_DEFINE_MEMBERS(AcDbObject, AcRxObject)
ACRX_NO_CONS_DEFINE_MEMBERS(AcDbEntity, AcDbObject)
ACRX_NO_CONS_DEFINE_MEMBERS(AcDbObjectIterator, AcRxObject)

const AcDbObjectId AcDbObjectId::kNull;

bool AcDbObjectId::isValid() const {
    const AcDbImpDatabase* database = isNull() ? nullptr : AcDbImpDatabase::of(*this);
    return database != nullptr && database->isObject(AcDbImpDatabase::numberOf(*this));
}

bool AcDbObjectId::isErased() const {
    const AcDbImpDatabase* database = isNull() ? nullptr : AcDbImpDatabase::of(*this);
    return database != nullptr && database->isErased(AcDbImpDatabase::numberOf(*this));
}

AcRxClass* AcDbObjectId::objectClass() const {
    const AcDbImpDatabase* database = isNull() ? nullptr : AcDbImpDatabase::of(*this);
    return database == nullptr ? nullptr : database->classOf(AcDbImpDatabase::numberOf(*this));
}

AcDbDatabase* AcDbObjectId::database() const {
    const AcDbImpDatabase* database = isNull() ? nullptr : AcDbImpDatabase::of(*this);
    return database == nullptr ? nullptr : &database->self();
}

AcDbHandle AcDbObjectId::handle() const {
    const AcDbImpDatabase* database = isNull() ? nullptr : AcDbImpDatabase::of(*this);
    if (database == nullptr) return {};
    return AcDbHandle(database->handleOf(AcDbImpDatabase::numberOf(*this)));
}

AcDbHandle::AcDbHandle(const ACHAR* text) {
    if (text == nullptr) return;
    m_value = host::dxf::parseHandle(host::database::toUtf8(text)).value_or(0);
}

bool AcDbHandle::getIntoAsciiBuffer(ACHAR* buffer) const {
    if (buffer == nullptr) return false;
    std::wstring text = host::database::handleText(m_value);
    if (text.empty()) text = L"0";
    *std::copy(text.begin(), text.end(), buffer) = L'\0';
    return true;
}

AcDbObject::AcDbObject() : m_impl(new AcDbImpObject(*this)) {
    m_impl->setFields(std::make_unique<NoFields>());
}

AcDbObject::~AcDbObject() {
    delete m_impl;
}

void* AcDbObject::operator new(std::size_t size) noexcept {
    HOST_CALL("AcDbObject::operator new");
    return ::operator new(size, std::nothrow);
}

void AcDbObject::operator delete(void* memory) noexcept {
    ::operator delete(memory);
}

AcDbObjectId AcDbObject::objectId() const {
    return m_impl->id();
}

AcDbObjectId AcDbObject::ownerId() const {
    const AcDbImpDatabase* database = m_impl->database();
    if (database == nullptr) return {};
    return database->idOf(database->ownerOf(AcDbImpDatabase::numberOf(objectId())));
}

void AcDbObject::getAcDbHandle(AcDbHandle& handle) const {
    handle = objectId().handle();
}

AcDbDatabase* AcDbObject::database() const {
    return m_impl->database() == nullptr ? nullptr : &m_impl->database()->self();
}

Acad::ErrorStatus AcDbObject::close() {
    HOST_CALL("AcDbObject::close");
    return m_impl->close();
}

Acad::ErrorStatus AcDbObject::erase(bool erasing) {
    HOST_CALL("AcDbObject::erase");
    return m_impl->erase(erasing);
}

Acad::ErrorStatus AcDbObject::upgradeOpen() {
    HOST_CALL("AcDbObject::upgradeOpen");
    return m_impl->upgrade();
}

Acad::ErrorStatus AcDbObject::downgradeOpen() {
    HOST_CALL("AcDbObject::downgradeOpen");
    return m_impl->downgrade();
}

bool AcDbObject::isReadEnabled() const {
    return m_impl->mayRead();
}

bool AcDbObject::isWriteEnabled() const {
    return m_impl->mayWrite();
}

bool AcDbObject::isNotifyEnabled() const {
    return m_impl->isNotifying();
}

bool AcDbObject::isErased() const {
    return m_impl->isErased();
}

bool AcDbObject::isModified() const {
    return m_impl->isTouched();
}

AcDbEntity::AcDbEntity() {
    impl()->setFields(std::make_unique<OpaqueFields>());
}

ACHAR* AcDbEntity::layer() const {
    return host::database::newText(fieldsOf<EntityFields>(*this).layer, "AcDbEntity::layer");
}

AcDbObjectId AcDbEntity::layerId() const {
    const AcDbImpDatabase* database = host::database::databaseFor(*this);
    if (database == nullptr) return {};
    return database->idOf(database->find(Table::layer, fieldsOf<EntityFields>(*this).layer));
}

namespace {

// Changes an entity and, if wanted, its vertices or attributes with it.
template <class Change>
Acad::ErrorStatus changeWithParts(AcDbEntity& entity, bool parts, Change change) {
    const Acad::ErrorStatus status = host::database::change<EntityFields>(entity, change);
    if (status != Acad::eOk || !parts) return status;
    for (const auto& part : entity.impl()->parts()) change(fieldsOf<EntityFields>(*part));
    AcDbImpDatabase* database = entity.impl()->database();
    if (database == nullptr) return status;
    const auto owner = AcDbImpDatabase::numberOf(entity.objectId());
    for (const auto number : database->subEntitiesOf(owner)) {
        AcDbObject* part = database->object(number);
        if (part == nullptr || part->isErased()) continue;
        database->undoLog().aboutToChange(*part);
        database->noteChange(*part);
        change(fieldsOf<EntityFields>(*part));
    }
    return status;
}

Acad::ErrorStatus putOnLayer(AcDbEntity& entity, const std::wstring& layer, bool parts) {
    return changeWithParts(entity, parts, [&](EntityFields& fields) {
        fields.layer = layer;
        fields.layerChosen = true;
    });
}

}  // namespace

Acad::ErrorStatus AcDbEntity::setLayer(const ACHAR* name, bool doSubents) {
    HOST_CALL("AcDbEntity::setLayer");
    std::wstring layer;
    const Acad::ErrorStatus status = host::database::findSymbol(*this, Table::layer, name, layer);
    return status == Acad::eOk ? putOnLayer(*this, layer, doSubents) : status;
}

Acad::ErrorStatus AcDbEntity::setLayer(AcDbObjectId layer, bool doSubents) {
    HOST_CALL("AcDbEntity::setLayer");
    std::wstring name;
    const Acad::ErrorStatus status =
        host::database::nameOfSymbol(layer, AcDbLayerTableRecord::desc(), name);
    if (status != Acad::eOk) return status;
    const AcDbImpDatabase* own = impl()->database();
    if (own != nullptr && AcDbImpDatabase::of(layer) != own) return Acad::eWrongDatabase;
    return putOnLayer(*this, name, doSubents);
}

Acad::ErrorStatus AcDbEntity::setColorIndex(Adesk::UInt16 color, bool doSubents) {
    HOST_CALL("AcDbEntity::setColorIndex");
    constexpr Adesk::UInt16 kByLayer = 256;
    if (color > kByLayer) return Acad::eInvalidInput;
    return changeWithParts(*this, doSubents, [&](EntityFields& fields) { fields.color = color; });
}

Acad::ErrorStatus AcDbEntity::setLinetype(const ACHAR* name, bool doSubents) {
    HOST_CALL("AcDbEntity::setLinetype");
    if (name == nullptr) return Acad::eInvalidInput;
    std::wstring linetype = name;
    const bool borrowed = host::database::sameName(linetype, L"BYLAYER") ||
                          host::database::sameName(linetype, L"BYBLOCK");
    if (!borrowed) {
        const Acad::ErrorStatus status =
            host::database::findSymbol(*this, Table::linetype, name, linetype);
        if (status != Acad::eOk) return status;
    }
    return changeWithParts(*this, doSubents,
                           [&](EntityFields& fields) { fields.linetype = linetype; });
}

Acad::ErrorStatus AcDbEntity::setVisibility(AcDb::Visibility visibility, bool doSubents) {
    HOST_CALL("AcDbEntity::setVisibility");
    return changeWithParts(*this, doSubents,
                           [&](EntityFields& fields) { fields.invisible = visibility; });
}

Adesk::UInt16 AcDbEntity::colorIndex() const {
    return static_cast<Adesk::UInt16>(std::abs(fieldsOf<EntityFields>(*this).color));
}

ACHAR* AcDbEntity::linetype() const {
    return host::database::newText(fieldsOf<EntityFields>(*this).linetype, "AcDbEntity::linetype");
}

AcDb::Visibility AcDbEntity::visibility() const {
    return fieldsOf<EntityFields>(*this).invisible == 0 ? AcDb::kVisible : AcDb::kInvisible;
}

AcDbObjectId AcDbEntity::blockId() const {
    const AcDbImpDatabase* database = impl()->database();
    if (database == nullptr) return {};
    return database->idOf(database->blockOf(AcDbImpDatabase::numberOf(objectId())));
}

void AcDbEntity::getEcs(AcGeMatrix3d& matrix) const {
    matrix = AcGeMatrix3d::planeToWorld(host::database::planeNormal(*this));
}

Acad::ErrorStatus AcDbEntity::getGeomExtents(AcDbExtents& extents) const {
    HOST_CALL("AcDbEntity::getGeomExtents");
    if (!impl()->mayRead()) return Acad::eNotOpenForRead;
    const auto found = host::database::extentsOf(*this);
    if (!found) return Acad::eNullExtents;
    extents = *found;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbExtents::set(const AcGePoint3d& min, const AcGePoint3d& max) {
    HOST_CALL("AcDbExtents::set");
    if (!(min.x <= max.x && min.y <= max.y && min.z <= max.z)) return Acad::eInvalidExtents;
    m_min = min;
    m_max = max;
    return Acad::eOk;
}

void AcDbExtents::addPoint(const AcGePoint3d& point) {
    m_min.set(std::min(m_min.x, point.x), std::min(m_min.y, point.y), std::min(m_min.z, point.z));
    m_max.set(std::max(m_max.x, point.x), std::max(m_max.y, point.y), std::max(m_max.z, point.z));
}

void AcDbExtents::addExt(const AcDbExtents& other) {
    if (other.m_min.x > other.m_max.x) return;
    addPoint(other.m_min);
    addPoint(other.m_max);
}

namespace {

Acad::ErrorStatus openById(AcDbObject*& object, AcDbObjectId id, AcDb::OpenMode mode,
                           bool erasedToo) {
    object = nullptr;
    if (id.isNull()) return Acad::eNullObjectId;
    AcDbImpDatabase* database = AcDbImpDatabase::of(id);
    if (database == nullptr) return Acad::eNoDatabase;
    return database->open(object, AcDbImpDatabase::numberOf(id), mode, erasedToo);
}

}  // namespace

Acad::ErrorStatus acdbOpenAcDbObject(AcDbObject*& object, AcDbObjectId id, AcDb::OpenMode mode,
                                     bool openErasedObject) {
    object = nullptr;
    HOST_CALL("acdbOpenAcDbObject");
    return openById(object, id, mode, openErasedObject);
}

Acad::ErrorStatus acdbOpenObject(AcDbObject*& object, AcDbObjectId id, AcDb::OpenMode mode,
                                 bool openErasedObject) {
    object = nullptr;
    HOST_CALL("acdbOpenObject");
    return openById(object, id, mode, openErasedObject);
}

Acad::ErrorStatus acdbOpenAcDbEntity(AcDbEntity*& entity, AcDbObjectId id, AcDb::OpenMode mode,
                                     bool openErasedEntity) {
    entity = nullptr;
    HOST_CALL("acdbOpenAcDbEntity");
    AcRxClass* aClass = id.objectClass();
    if (aClass != nullptr && !aClass->isDerivedFrom(AcDbEntity::desc())) {
        return Acad::eNotThatKindOfClass;
    }
    AcDbObject* object = nullptr;
    const Acad::ErrorStatus status = openById(object, id, mode, openErasedEntity);
    if (status == Acad::eOk) entity = static_cast<AcDbEntity*>(object);
    return status;
}

Acad::ErrorStatus acdbGetObjectId(AcDbObjectId& id, const ads_name name) {
    id.setNull();
    HOST_CALL("acdbGetObjectId");
    const AcDbObjectId named(name[0]);
    if (name[1] != 0 || !named.isValid()) return Acad::eInvalidAdsName;
    id = named;
    return Acad::eOk;
}

Acad::ErrorStatus acdbGetAdsName(ads_name& name, AcDbObjectId id) {
    name[0] = name[1] = 0;
    HOST_CALL("acdbGetAdsName");
    if (id.isNull()) return Acad::eNullObjectId;
    if (id.database() == nullptr) return Acad::eNoDatabase;
    if (!id.isValid()) return Acad::eInvalidObjectId;
    name[0] = id.asOldId();
    return Acad::eOk;
}
