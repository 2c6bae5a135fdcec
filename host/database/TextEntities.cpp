// Texts, attributes and their definitions, and texts of several lines.
#include <dbents.h>

#include <cmath>

#include "host/database/DatabaseImp.h"
#include "host/database/Fault.h"
#include "host/database/ObjectFields.h"
#include "host/database/ObjectImp.h"
#include "host/database/Texts.h"

using namespace host::database;

ACRX_DXF_DEFINE_MEMBERS(AcDbText, AcDbEntity, 0, 0, 0, TEXT, ObjectDBX)
ACRX_DXF_DEFINE_MEMBERS(AcDbAttributeDefinition, AcDbText, 0, 0, 0, ATTDEF, ObjectDBX)
ACRX_DXF_DEFINE_MEMBERS(AcDbAttribute, AcDbText, 0, 0, 0, ATTRIB, ObjectDBX)
ACRX_DXF_DEFINE_MEMBERS(AcDbMText, AcDbEntity, 0, 0, 0, MTEXT, ObjectDBX)

namespace {

// Bits of group 71 of a text.
constexpr int kBackwards = 2;
constexpr int kUpsideDown = 4;

// Bits of group 70 of an attribute.
constexpr int kInvisible = 1;
constexpr int kConstant = 2;

AcDbObjectId styleOf(const AcDbEntity& entity, const std::wstring& style) {
    const AcDbImpDatabase* database = entity.impl()->database();
    if (database == nullptr) return {};
    return database->idOf(database->structure().find(Table::textStyle, style));
}

}  // namespace

AcDbText::AcDbText() {
    impl()->setFields(std::make_unique<TextFields>());
}
AcGePoint3d AcDbText::position() const {
    const auto& fields = fieldsOf<TextFields>(*this);
    return AcGeMatrix3d::planeToWorld(fields.normal) * fields.turnedPosition();
}
AcGePoint3d AcDbText::alignmentPoint() const {
    const auto& fields = fieldsOf<TextFields>(*this);
    return AcGeMatrix3d::planeToWorld(fields.normal) * fields.alignment;
}
AcGeVector3d AcDbText::normal() const {
    return fieldsOf<TextFields>(*this).normal;
}
double AcDbText::thickness() const {
    return fieldsOf<TextFields>(*this).thickness;
}
double AcDbText::oblique() const {
    return fieldsOf<TextFields>(*this).oblique;
}
double AcDbText::rotation() const {
    return fieldsOf<TextFields>(*this).rotation;
}
Acad::ErrorStatus AcDbText::setRotation(double rotation) {
    HOST_CALL("AcDbText::setRotation");
    if (!std::isfinite(rotation)) return Acad::eInvalidInput;
    const Acad::ErrorStatus status = impl()->beginChange();
    if (status == Acad::eOk) fieldsOf<TextFields>(*this).rotation = rotation;
    return status;
}
double AcDbText::height() const {
    return fieldsOf<TextFields>(*this).height;
}
double AcDbText::widthFactor() const {
    return fieldsOf<TextFields>(*this).widthFactor;
}
ACHAR* AcDbText::textString() const {
    return newText(fieldsOf<TextFields>(*this).text, "AcDbText::textString");
}
const ACHAR* AcDbText::textStringConst() const {
    return fieldsOf<TextFields>(*this).text.c_str();
}
AcDbObjectId AcDbText::textStyle() const {
    return styleOf(*this, fieldsOf<TextFields>(*this).style);
}
bool AcDbText::isMirroredInX() const {
    return (fieldsOf<TextFields>(*this).mirrored & kBackwards) != 0;
}
bool AcDbText::isMirroredInY() const {
    return (fieldsOf<TextFields>(*this).mirrored & kUpsideDown) != 0;
}
AcDb::TextHorzMode AcDbText::horizontalMode() const {
    return static_cast<AcDb::TextHorzMode>(fieldsOf<TextFields>(*this).horizontal);
}
AcDb::TextVertMode AcDbText::verticalMode() const {
    return static_cast<AcDb::TextVertMode>(fieldsOf<TextFields>(*this).vertical);
}

AcDbAttributeDefinition::AcDbAttributeDefinition() {
    impl()->setFields(std::make_unique<AttributeFields>());
}
ACHAR* AcDbAttributeDefinition::tag() const {
    return newText(fieldsOf<AttributeFields>(*this).tag, "AcDbAttributeDefinition::tag");
}
ACHAR* AcDbAttributeDefinition::prompt() const {
    return newText(fieldsOf<AttributeFields>(*this).prompt, "AcDbAttributeDefinition::prompt");
}
Adesk::Boolean AcDbAttributeDefinition::isInvisible() const {
    return (fieldsOf<AttributeFields>(*this).flags & kInvisible) != 0;
}
Adesk::Boolean AcDbAttributeDefinition::isConstant() const {
    return (fieldsOf<AttributeFields>(*this).flags & kConstant) != 0;
}

AcDbAttribute::AcDbAttribute() {
    impl()->setFields(std::make_unique<AttributeFields>());
}
ACHAR* AcDbAttribute::tag() const {
    return newText(fieldsOf<AttributeFields>(*this).tag, "AcDbAttribute::tag");
}
Adesk::Boolean AcDbAttribute::isInvisible() const {
    return (fieldsOf<AttributeFields>(*this).flags & kInvisible) != 0;
}
Adesk::Boolean AcDbAttribute::isConstant() const {
    return (fieldsOf<AttributeFields>(*this).flags & kConstant) != 0;
}

AcDbMText::AcDbMText() {
    impl()->setFields(std::make_unique<MTextFields>());
}
AcGePoint3d AcDbMText::location() const {
    return fieldsOf<MTextFields>(*this).location;
}
AcGeVector3d AcDbMText::normal() const {
    return fieldsOf<MTextFields>(*this).normal;
}
AcGeVector3d AcDbMText::direction() const {
    const auto& fields = fieldsOf<MTextFields>(*this);
    if (fields.hasDirection) return fields.direction.normal();
    return AcGeMatrix3d::planeToWorld(fields.normal) *
           AcGeVector3d(std::cos(fields.rotation), std::sin(fields.rotation), 0.0);
}
double AcDbMText::rotation() const {
    const auto& fields = fieldsOf<MTextFields>(*this);
    if (!fields.hasDirection) return fields.rotation;
    const AcGeVector3d inPlane = AcGeMatrix3d::worldToPlane(fields.normal) * fields.direction;
    return std::atan2(inPlane.y, inPlane.x);
}
double AcDbMText::textHeight() const {
    return fieldsOf<MTextFields>(*this).height;
}
double AcDbMText::width() const {
    return fieldsOf<MTextFields>(*this).width;
}
int AcDbMText::attachment() const {
    return fieldsOf<MTextFields>(*this).attachment;
}
ACHAR* AcDbMText::contents() const {
    return newText(fieldsOf<MTextFields>(*this).contents, "AcDbMText::contents");
}
AcDbObjectId AcDbMText::textStyle() const {
    return styleOf(*this, fieldsOf<MTextFields>(*this).style);
}
