// Block references and arrays of them.
#include <dbents.h>

#include <cmath>

#include "host/database/DatabaseImp.h"
#include "host/database/Fault.h"
#include "host/database/ObjectFields.h"
#include "host/database/ObjectImp.h"
#include "host/database/SubEntities.h"

using namespace host::database;

ACRX_DXF_DEFINE_MEMBERS(AcDbBlockReference, AcDbEntity, 0, 0, 0, INSERT, ObjectDBX)
ACRX_DXF_DEFINE_MEMBERS(AcDbMInsertBlock, AcDbBlockReference, 0, 0, 0, INSERT, ObjectDBX)

AcDbBlockReference::AcDbBlockReference() {
    impl()->setFields(std::make_unique<InsertFields>());
}
AcDbObjectId AcDbBlockReference::blockTableRecord() const {
    const AcDbImpDatabase* database = impl()->database();
    if (database == nullptr) return {};
    const auto& name = fieldsOf<InsertFields>(*this).block;
    return database->idOf(database->structure().find(Table::block, name));
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
    const AcDbImpDatabase* database = impl()->database();
    if (database != nullptr) {
        if (const auto block = database->structure().find(Table::block, fields.block)) {
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
