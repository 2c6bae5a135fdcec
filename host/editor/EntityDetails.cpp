#include "host/editor/EntityDetails.h"

#include <dbcurve.h>
#include <dbents.h>
#include <dbsymtb.h>

#include "host/database/Area.h"
#include "host/database/Drawing.h"

namespace host::editor {

namespace {

// Of an entity that the host has no class for.
void describeKept(const AcDbEntity& entity, Details& details) {
    const AcDbObjectId owner = entity.ownerId();
    details.line(L"class " + database::className(entity.objectId()));
    details.line(L"owner " + database::handleText(owner) + L" \"" + nameOf(owner) + L"\"");
    details.line(L"kept as it stands in the drawing");
}

}  // namespace

void describe(const AcDbEntity& entity, Details& details) {
    const bool known = describeText(entity, details) || describePolyline(entity, details) ||
                       describeCurve(entity, details) || describeSurface(entity, details) ||
                       describeNote(entity, details);
    if (!known) describeKept(entity, details);
}

void describeExtent(const AcDbCurve& curve, Details& details) {
    double end = 0.0;
    double length = 0.0;
    if (curve.getEndParam(end) == Acad::eOk && curve.getDistAtParam(end, length) == Acad::eOk)
        details.value(L"length", length);
    if (const auto area = database::enclosedArea(curve)) details.value(L"area", *area);
}

void describeRun(const AcDbCurve& curve, Details& details) {
    details.line(curve.isClosed() ? L"closed" : L"open");
    describeExtent(curve, details);
}

std::wstring nameOf(AcDbObjectId symbol) {
    AcDbSymbolTableRecord* record = nullptr;
    if (acdbOpenObject(record, symbol, AcDb::kForRead) != Acad::eOk) return L"?";
    const ACHAR* name = nullptr;
    std::wstring text = record->getName(name) == Acad::eOk && name != nullptr ? name : L"?";
    record->close();
    return text;
}

GroupReader::GroupReader(const AcDbEntity& entity)
    : groups_(EntityGroups(entity.objectId()).all()) {}

const GroupValue* GroupReader::find(int code) const {
    for (const auto& group : groups_)
        if (group.first == code) return &group.second;
    return nullptr;
}

double GroupReader::real(int code, double otherwise) const {
    const GroupValue* const value = find(code);
    const auto* real = value == nullptr ? nullptr : std::get_if<double>(value);
    return real == nullptr ? otherwise : *real;
}

long long GroupReader::whole(int code, long long otherwise) const {
    const GroupValue* const value = find(code);
    const auto* whole = value == nullptr ? nullptr : std::get_if<long long>(value);
    return whole == nullptr ? otherwise : *whole;
}

std::wstring GroupReader::text(int code) const {
    const GroupValue* const value = find(code);
    const auto* text = value == nullptr ? nullptr : std::get_if<std::wstring>(value);
    return text == nullptr ? std::wstring() : *text;
}

AcGePoint3d GroupReader::point(int code) const {
    const GroupValue* const value = find(code);
    const auto* point = value == nullptr ? nullptr : std::get_if<AcGePoint3d>(value);
    return point == nullptr ? AcGePoint3d() : *point;
}

std::vector<double> GroupReader::reals(int code) const {
    std::vector<double> all;
    for (const auto& group : groups_) {
        const auto* real = std::get_if<double>(&group.second);
        if (group.first == code && real != nullptr) all.push_back(*real);
    }
    return all;
}

std::vector<AcGePoint3d> GroupReader::points(int code) const {
    std::vector<AcGePoint3d> all;
    for (const auto& group : groups_) {
        const auto* point = std::get_if<AcGePoint3d>(&group.second);
        if (group.first == code && point != nullptr) all.push_back(*point);
    }
    return all;
}

}  // namespace host::editor
