// What LIST tells of points, texts and block references.
#include <acutmem.h>
#include <dbents.h>
#include <gescl3d.h>

#include <memory>

#include "host/editor/EntityDetails.h"
#include "host/editor/ResultBuffers.h"

namespace host::editor {

namespace {

// Takes a text over from the interface.
std::wstring taken(ACHAR* words) {
    std::wstring text = words == nullptr ? L"" : words;
    freeText(words);
    return text;
}

// Of ATTDEF and ATTRIB.
template <class Attribute>
void describeTag(const Attribute& attribute, Details& details) {
    details.quoted(L"tag", taken(attribute.tag()));
    if (attribute.isInvisible()) details.line(L"invisible");
    if (attribute.isConstant()) details.line(L"constant");
}

void describe(const AcDbText& text, Details& details) {
    if (const auto* definition = AcDbAttributeDefinition::cast(&text)) {
        describeTag(*definition, details);
        details.quoted(L"prompt", taken(definition->prompt()));
    } else if (const auto* attribute = AcDbAttribute::cast(&text)) {
        describeTag(*attribute, details);
    }
    const ACHAR* const words = text.textStringConst();
    details.quoted(L"text", words == nullptr ? L"" : words);
    details.quoted(L"style", nameOf(text.textStyle()));
    details.point(L"start point", text.position());
    const bool justified =
        text.horizontalMode() != AcDb::kTextLeft || text.verticalMode() != AcDb::kTextBase;
    if (justified) details.point(L"alignment point", text.alignmentPoint());
    details.value(L"height", text.height());
    details.angle(L"rotation angle", text.rotation());
    details.value(L"width factor", text.widthFactor());
    if (text.oblique() != 0.0) details.angle(L"obliquing angle", text.oblique());
    if (text.isMirroredInX()) details.line(L"backward");
    if (text.isMirroredInY()) details.line(L"upside down");
    details.thickness(text.thickness());
    details.normal(text.normal());
}

void describe(const AcDbMText& text, Details& details) {
    const wchar_t* const attachments[] = {L"top left",    L"top center",    L"top right",
                                          L"middle left", L"middle center", L"middle right",
                                          L"bottom left", L"bottom center", L"bottom right"};
    details.quoted(L"text", taken(text.contents()));
    details.quoted(L"style", nameOf(text.textStyle()));
    details.point(L"location", text.location());
    details.value(L"height", text.textHeight());
    if (text.width() != 0.0) details.value(L"width", text.width());
    details.angle(L"rotation angle", text.rotation());
    const int attachment = text.attachment();
    if (attachment >= 1 && attachment <= 9)
        details.line(std::wstring(L"attachment ") + attachments[attachment - 1]);
    details.normal(text.normal());
}

void describeAttributes(const AcDbBlockReference& reference, Details& details) {
    const std::unique_ptr<AcDbObjectIterator> at(reference.attributeIterator());
    for (; at != nullptr && !at->done(); at->step()) {
        AcDbObject* object = nullptr;
        if (acdbOpenAcDbObject(object, at->objectId(), AcDb::kForRead) != Acad::eOk) continue;
        if (const auto* attribute = AcDbAttribute::cast(object)) {
            const ACHAR* const words = attribute->textStringConst();
            details.line(L"attribute \"" + taken(attribute->tag()) + L"\" \"" +
                         (words == nullptr ? L"" : words) + L"\"");
        }
        object->close();
    }
}

void describe(const AcDbBlockReference& reference, Details& details) {
    details.quoted(L"block name", nameOf(reference.blockTableRecord()));
    details.point(L"at point", reference.position());
    const AcGeScale3d scale = reference.scaleFactors();
    details.value(L"X scale factor", scale.sx);
    details.value(L"Y scale factor", scale.sy);
    details.value(L"Z scale factor", scale.sz);
    details.angle(L"rotation angle", reference.rotation());
    details.normal(reference.normal());
    if (const auto* array = AcDbMInsertBlock::cast(&reference)) {
        details.count(L"columns", array->columns());
        details.count(L"rows", array->rows());
        details.value(L"column spacing", array->columnSpacing());
        details.value(L"row spacing", array->rowSpacing());
    }
    describeAttributes(reference, details);
}

void describe(const AcDbPoint& point, Details& details) {
    details.point(L"at point", point.position());
    details.thickness(point.thickness());
}

}  // namespace

bool describeText(const AcDbEntity& entity, Details& details) {
    if (const auto* text = AcDbText::cast(&entity))
        describe(*text, details);
    else if (const auto* paragraph = AcDbMText::cast(&entity))
        describe(*paragraph, details);
    else if (const auto* reference = AcDbBlockReference::cast(&entity))
        describe(*reference, details);
    else if (const auto* point = AcDbPoint::cast(&entity))
        describe(*point, details);
    else
        return false;
    return true;
}

}  // namespace host::editor
