// Ids, handles, and the objects of a database: opening, closing, erasing.
#include <acdbads.h>
#include <acutmem.h>
#include <dbents.h>
#include <dbmain.h>

#include <algorithm>

#include "host/database/DatabaseImp.h"
#include "host/database/Fault.h"
#include "host/database/Geometry.h"
#include "host/database/Names.h"
#include "host/database/ObjectFields.h"
#include "host/database/ObjectImp.h"
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
    const auto record = database->recordOf(AcDbImpDatabase::numberOf(*this));
    if (!record || *record >= database->document().size()) return {};
    return AcDbHandle(database->document().handle(*record).value_or(0));
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
    const AcDbImpDatabase* database = impl()->database();
    if (database == nullptr) return {};
    const auto& layer = fieldsOf<EntityFields>(*this).layer;
    return database->idOf(database->structure().find(Table::layer, layer));
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
