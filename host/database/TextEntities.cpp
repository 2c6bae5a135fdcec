// Texts, attributes and their definitions, and texts of several lines.
#include <dbents.h>
#include <dbsymtb.h>

#include <cmath>
#include <cwchar>

#include "host/database/DatabaseImp.h"
#include "host/database/Fault.h"
#include "host/database/ObjectFields.h"
#include "host/database/ObjectImp.h"
#include "host/database/Setting.h"
#include "host/database/SymbolNames.h"
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
    const AcDbImpDatabase* database = databaseFor(entity);
    if (database == nullptr) return {};
    return database->idOf(database->find(Table::textStyle, style));
}

// Whether a drawing can hold the text in one value.
bool isOneLine(const ACHAR* text) {
    return text != nullptr && std::wcspbrk(text, L"\r\n") == nullptr;
}

template <auto member>
Acad::ErrorStatus setText(AcDbObject& object, const ACHAR* text) {
    if (!isOneLine(text)) return Acad::eInvalidInput;
    using F = FieldsWith<member>;
    return change<F>(object, [&](F& fields) { fields.*member = text; });
}

template <auto member>
Acad::ErrorStatus setPositive(AcDbObject& object, double value) {
    return value > 0.0 ? setNumber<member>(object, value) : Acad::eInvalidInput;
}

template <auto member>
Acad::ErrorStatus setStyle(AcDbObject& object, AcDbObjectId style) {
    std::wstring name;
    const Acad::ErrorStatus status = nameOfSymbol(style, AcDbTextStyleTableRecord::desc(), name);
    if (status != Acad::eOk) return status;
    using F = FieldsWith<member>;
    return change<F>(object, [&](F& fields) { fields.*member = name; });
}

Acad::ErrorStatus setMirrored(AcDbText& text, int bit, bool mirrored) {
    return change<TextFields>(text, [&](TextFields& fields) {
        fields.mirrored = mirrored ? fields.mirrored | bit : fields.mirrored & ~bit;
    });
}

// Moves a text by a map that keeps angles: points, direction, height and plane. Of a map that
// doesn't, the height goes by the length of the text's upward direction.
void transformText(TextFields& fields, const AcGeMatrix3d& map) {
    const AcGeMatrix3d plane = AcGeMatrix3d::planeToWorld(fields.normal);
    const AcGeVector3d along =
        map * (plane * AcGeVector3d(std::cos(fields.rotation), std::sin(fields.rotation), 0.0));
    const AcGeVector3d up =
        map * (plane * AcGeVector3d(-std::sin(fields.rotation), std::cos(fields.rotation), 0.0));
    const AcGePoint3d position = map * (plane * fields.position);
    const AcGePoint3d alignment = map * (plane * fields.alignment);
    const AcGeVector3d across = along.crossProduct(up);
    if (!across.isZeroLength()) fields.normal = across.normal();
    const AcGeMatrix3d toPlane = AcGeMatrix3d::worldToPlane(fields.normal);
    const AcGeVector3d direction = toPlane * along;
    fields.rotation = std::atan2(direction.y, direction.x);
    fields.rotationOfPosition = fields.rotation;
    fields.height *= up.length();
    fields.position = toPlane * position;
    fields.alignment = toPlane * alignment;
}

// Line ends as the formatted text has them.
std::wstring withParagraphs(std::wstring_view contents) {
    std::wstring text;
    for (std::size_t i = 0; i < contents.size(); ++i) {
        const bool pair =
            contents[i] == L'\r' && i + 1 < contents.size() && contents[i + 1] == L'\n';
        if (pair) continue;
        if (contents[i] == L'\n' || contents[i] == L'\r') {
            text += L"\\P";
        } else {
            text += contents[i];
        }
    }
    return text;
}

}  // namespace

AcDbText::AcDbText() {
    impl()->setFields(std::make_unique<TextFields>());
}
AcDbText::AcDbText(const AcGePoint3d& position, const ACHAR* text, AcDbObjectId style,
                   double height, double rotation)
    : AcDbText() {
    auto& fields = fieldsOf<TextFields>(*this);
    fields.position = fields.alignment = position;
    if (isOneLine(text)) fields.text = text;
    fields.height = height;
    fields.rotation = fields.rotationOfPosition = rotation;
    static_cast<void>(nameOfSymbol(style, AcDbTextStyleTableRecord::desc(), fields.style));
    if (height == 0.0) fields.height = sizeOfTextStyle(databaseFor(*this), fields.style);
}
Acad::ErrorStatus AcDbText::setPosition(const AcGePoint3d& position) {
    HOST_CALL("AcDbText::setPosition");
    if (!isFinite(position)) return Acad::eInvalidInput;
    return change<TextFields>(*this, [&](TextFields& fields) {
        fields.position = inPlane(fields.normal, position);
        fields.rotationOfPosition = fields.rotation;
        if (!fields.hasAlignment) fields.alignment = fields.position;
    });
}
Acad::ErrorStatus AcDbText::setAlignmentPoint(const AcGePoint3d& point) {
    HOST_CALL("AcDbText::setAlignmentPoint");
    if (!isFinite(point)) return Acad::eInvalidInput;
    return change<TextFields>(*this, [&](TextFields& fields) {
        fields.position = fields.turnedPosition();
        fields.rotationOfPosition = fields.rotation;
        fields.alignment = inPlane(fields.normal, point);
        fields.hasAlignment = true;
    });
}
Acad::ErrorStatus AcDbText::setNormal(const AcGeVector3d& normal) {
    HOST_CALL("AcDbText::setNormal");
    return turnPlane<&TextFields::position, &TextFields::alignment>(*this, normal);
}
Acad::ErrorStatus AcDbText::setThickness(double thickness) {
    HOST_CALL("AcDbText::setThickness");
    return setNumber<&TextFields::thickness>(*this, thickness);
}
Acad::ErrorStatus AcDbText::setOblique(double angle) {
    HOST_CALL("AcDbText::setOblique");
    return setNumber<&TextFields::oblique>(*this, angle);
}
Acad::ErrorStatus AcDbText::setHeight(double height) {
    HOST_CALL("AcDbText::setHeight");
    return setPositive<&TextFields::height>(*this, height);
}
Acad::ErrorStatus AcDbText::setWidthFactor(double factor) {
    HOST_CALL("AcDbText::setWidthFactor");
    return setPositive<&TextFields::widthFactor>(*this, factor);
}
Acad::ErrorStatus AcDbText::setTextString(const ACHAR* text) {
    HOST_CALL("AcDbText::setTextString");
    return setText<&TextFields::text>(*this, text);
}
Acad::ErrorStatus AcDbText::setTextStyle(AcDbObjectId style) {
    HOST_CALL("AcDbText::setTextStyle");
    return setStyle<&TextFields::style>(*this, style);
}
Acad::ErrorStatus AcDbText::mirrorInX(bool mirrored) {
    HOST_CALL("AcDbText::mirrorInX");
    return setMirrored(*this, kBackwards, mirrored);
}
Acad::ErrorStatus AcDbText::mirrorInY(bool mirrored) {
    HOST_CALL("AcDbText::mirrorInY");
    return setMirrored(*this, kUpsideDown, mirrored);
}
Acad::ErrorStatus AcDbText::setHorizontalMode(AcDb::TextHorzMode mode) {
    HOST_CALL("AcDbText::setHorizontalMode");
    if (mode < AcDb::kTextLeft || mode > AcDb::kTextFit) return Acad::eInvalidInput;
    return change<TextFields>(*this, [&](TextFields& fields) { fields.horizontal = mode; });
}
Acad::ErrorStatus AcDbText::setVerticalMode(AcDb::TextVertMode mode) {
    HOST_CALL("AcDbText::setVerticalMode");
    if (mode < AcDb::kTextBase || mode > AcDb::kTextTop) return Acad::eInvalidInput;
    return change<TextFields>(*this, [&](TextFields& fields) { fields.vertical = mode; });
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
    fieldsOf<AttributeFields>(*this).isDefinition = true;
}
Acad::ErrorStatus AcDbAttributeDefinition::setTag(const ACHAR* tag) {
    HOST_CALL("AcDbAttributeDefinition::setTag");
    return setText<&AttributeFields::tag>(*this, tag);
}
Acad::ErrorStatus AcDbAttributeDefinition::setPrompt(const ACHAR* prompt) {
    HOST_CALL("AcDbAttributeDefinition::setPrompt");
    return setText<&AttributeFields::prompt>(*this, prompt);
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
Acad::ErrorStatus AcDbAttribute::setTag(const ACHAR* tag) {
    HOST_CALL("AcDbAttribute::setTag");
    return setText<&AttributeFields::tag>(*this, tag);
}
Acad::ErrorStatus AcDbAttribute::setAttributeFromBlock(const AcDbAttributeDefinition* definition,
                                                       const AcGeMatrix3d& blockTransform) {
    HOST_CALL("AcDbAttribute::setAttributeFromBlock");
    if (definition == nullptr) return Acad::eNullObjectPointer;
    if (!definition->impl()->mayRead()) return Acad::eNotOpenForRead;
    return change<AttributeFields>(*this, [&](AttributeFields& fields) {
        const std::wstring layer = fields.layer;
        const bool chosen = fields.layerChosen;
        const int paper = fields.paperSpace;
        fields = fieldsOf<AttributeFields>(*definition);
        fields.prompt.clear();
        fields.isDefinition = false;
        if (fields.layer == L"0") fields.layer = layer;
        fields.layerChosen = chosen || fields.layer != layer;
        fields.paperSpace = paper;
        fields.position = fields.turnedPosition();
        transformText(fields, blockTransform);
    });
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
Acad::ErrorStatus AcDbMText::setLocation(const AcGePoint3d& location) {
    HOST_CALL("AcDbMText::setLocation");
    return setPoint<&MTextFields::location>(*this, location);
}
Acad::ErrorStatus AcDbMText::setNormal(const AcGeVector3d& normal) {
    HOST_CALL("AcDbMText::setNormal");
    return turnPlane<MTextFields>(*this, normal);
}
Acad::ErrorStatus AcDbMText::setRotation(double rotation) {
    HOST_CALL("AcDbMText::setRotation");
    if (!std::isfinite(rotation)) return Acad::eInvalidInput;
    if (impl()->isFromDrawing() && fieldsOf<MTextFields>(*this).hasDirection) {
        return Acad::eNotImplementedYet;
    }
    return setNumber<&MTextFields::rotation>(*this, rotation);
}
Acad::ErrorStatus AcDbMText::setTextHeight(double height) {
    HOST_CALL("AcDbMText::setTextHeight");
    return setPositive<&MTextFields::height>(*this, height);
}
Acad::ErrorStatus AcDbMText::setWidth(double width) {
    HOST_CALL("AcDbMText::setWidth");
    return width >= 0.0 ? setNumber<&MTextFields::width>(*this, width) : Acad::eInvalidInput;
}
Acad::ErrorStatus AcDbMText::setContents(const ACHAR* contents) {
    HOST_CALL("AcDbMText::setContents");
    if (contents == nullptr) return Acad::eInvalidInput;
    if (impl()->isFromDrawing()) return Acad::eNotImplementedYet;
    return change<MTextFields>(
        *this, [&](MTextFields& fields) { fields.contents = withParagraphs(contents); });
}
Acad::ErrorStatus AcDbMText::setTextStyle(AcDbObjectId style) {
    HOST_CALL("AcDbMText::setTextStyle");
    return setStyle<&MTextFields::style>(*this, style);
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
