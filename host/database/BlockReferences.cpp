// Block references and arrays of them.
#include <dbents.h>
#include <dbsymtb.h>

#include <cmath>

#include "host/database/DatabaseImp.h"
#include "host/database/Fault.h"
#include "host/database/ObjectFields.h"
#include "host/database/ObjectImp.h"
#include "host/database/Setting.h"
#include "host/database/SubEntities.h"
#include "host/database/SymbolNames.h"

using namespace host::database;

ACRX_DXF_DEFINE_MEMBERS(AcDbBlockReference, AcDbEntity, 0, 0, 0, INSERT, ObjectDBX)
ACRX_DXF_DEFINE_MEMBERS(AcDbMInsertBlock, AcDbBlockReference, 0, 0, 0, INSERT, ObjectDBX)

AcDbBlockReference::AcDbBlockReference() {
    impl()->setFields(std::make_unique<InsertFields>());
}
AcDbBlockReference::AcDbBlockReference(const AcGePoint3d& position, AcDbObjectId block)
    : AcDbBlockReference() {
    auto& fields = fieldsOf<InsertFields>(*this);
    fields.position = position;
    static_cast<void>(nameOfSymbol(block, AcDbBlockTableRecord::desc(), fields.block));
}
Acad::ErrorStatus AcDbBlockReference::setBlockTableRecord(AcDbObjectId block) {
    HOST_CALL("AcDbBlockReference::setBlockTableRecord");
    std::wstring name;
    const Acad::ErrorStatus status = nameOfSymbol(block, AcDbBlockTableRecord::desc(), name);
    if (status != Acad::eOk) return status;
    return change<InsertFields>(*this, [&](InsertFields& fields) { fields.block = name; });
}
Acad::ErrorStatus AcDbBlockReference::setPosition(const AcGePoint3d& position) {
    HOST_CALL("AcDbBlockReference::setPosition");
    return setPlanePoint<&InsertFields::position>(*this, position);
}
Acad::ErrorStatus AcDbBlockReference::setScaleFactors(const AcGeScale3d& factors) {
    HOST_CALL("AcDbBlockReference::setScaleFactors");
    const auto usable = [](double factor) { return std::isfinite(factor) && factor != 0.0; };
    if (!usable(factors.sx) || !usable(factors.sy) || !usable(factors.sz)) {
        return Acad::eInvalidInput;
    }
    return change<InsertFields>(*this, [&](InsertFields& fields) { fields.scale = factors; });
}
Acad::ErrorStatus AcDbBlockReference::setNormal(const AcGeVector3d& normal) {
    HOST_CALL("AcDbBlockReference::setNormal");
    return turnPlane<&InsertFields::position>(*this, normal);
}
Acad::ErrorStatus AcDbBlockReference::appendAttribute(AcDbAttribute* attribute) {
    AcDbObjectId id;
    return appendAttribute(id, attribute);
}
Acad::ErrorStatus AcDbBlockReference::appendAttribute(AcDbObjectId& id, AcDbAttribute* attribute) {
    HOST_CALL("AcDbBlockReference::appendAttribute");
    if (impl()->database() == nullptr) return Acad::eNotInDatabase;
    return appendSubEntity(*this, id, attribute);
}
AcDbObjectId AcDbBlockReference::blockTableRecord() const {
    const AcDbImpDatabase* database = databaseFor(*this);
    if (database == nullptr) return {};
    const auto& name = fieldsOf<InsertFields>(*this).block;
    return database->idOf(database->find(Table::block, name));
}
AcGePoint3d AcDbBlockReference::position() const {
    const auto& fields = fieldsOf<InsertFields>(*this);
    return AcGeMatrix3d::planeToWorld(fields.normal) * fields.position;
}
AcGeScale3d AcDbBlockReference::scaleFactors() const {
    return fieldsOf<InsertFields>(*this).scale;
}
double AcDbBlockReference::rotation() const {
    return fieldsOf<InsertFields>(*this).rotation;
}
Acad::ErrorStatus AcDbBlockReference::setRotation(double rotation) {
    HOST_CALL("AcDbBlockReference::setRotation");
    if (!std::isfinite(rotation)) return Acad::eInvalidInput;
    const Acad::ErrorStatus status = impl()->beginChange();
    if (status == Acad::eOk) fieldsOf<InsertFields>(*this).rotation = rotation;
    return status;
}
AcGeVector3d AcDbBlockReference::normal() const {
    return fieldsOf<InsertFields>(*this).normal;
}
AcGeMatrix3d AcDbBlockReference::blockTransform() const {
    const auto& fields = fieldsOf<InsertFields>(*this);
    AcGePoint3d base;
    const AcDbImpDatabase* database = databaseFor(*this);
    if (database != nullptr) {
        if (const auto block = database->find(Table::block, fields.block)) {
            BlockFields read;
            base = static_cast<const BlockFields&>(database->fieldsAt(*block, read)).origin;
        }
    }
    return AcGeMatrix3d::planeToWorld(fields.normal) *
           AcGeMatrix3d::translation(fields.position.asVector()) *
           AcGeMatrix3d::rotation(fields.rotation, AcGeVector3d::kZAxis) *
           AcGeMatrix3d::scaling(fields.scale) * AcGeMatrix3d::translation(-base.asVector());
}
AcDbObjectIterator* AcDbBlockReference::attributeIterator() const {
    return newSubEntityIterator(*this, "AcDbBlockReference::attributeIterator");
}

AcDbMInsertBlock::AcDbMInsertBlock() = default;
Adesk::UInt16 AcDbMInsertBlock::columns() const {
    return static_cast<Adesk::UInt16>(fieldsOf<InsertFields>(*this).columns);
}
Adesk::UInt16 AcDbMInsertBlock::rows() const {
    return static_cast<Adesk::UInt16>(fieldsOf<InsertFields>(*this).rows);
}
double AcDbMInsertBlock::columnSpacing() const {
    return fieldsOf<InsertFields>(*this).columnSpacing;
}
double AcDbMInsertBlock::rowSpacing() const {
    return fieldsOf<InsertFields>(*this).rowSpacing;
}
