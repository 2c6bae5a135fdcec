#include "host/database/Turning.h"

#include <dbents.h>

#include <cmath>

#include "host/database/DatabaseImp.h"
#include "host/database/Drawing.h"
#include "host/database/ObjectFields.h"
#include "host/database/ObjectImp.h"
#include "host/database/Setting.h"

namespace host::database {
namespace {

constexpr int kRotation = 50;

// The angle as it stands in the drawing where that means the same, so that no digit of it is lost
// on the way to radians and back.
double degreesOf(AcDbObjectId entity, double radians) {
    if (const auto record = recordOf(entity)) {
        const auto group = document(*entity.database()).groups(*record).find(kRotation);
        const auto degrees = group ? group->real() : std::nullopt;
        if (degrees && toRadians(*degrees) == radians) return *degrees;
    }
    return toDegrees(radians);
}

Stance stanceOf(AcDbObjectId entity, const Fields& fields) {
    if (const auto* text = dynamic_cast<const TextFields*>(&fields))
        return {degreesOf(entity, text->rotation), text->turnedPosition()};
    const auto& insert = static_cast<const InsertFields&>(fields);
    return {degreesOf(entity, insert.rotation), insert.position};
}

bool canBeTurned(const AcDbObject& object) {
    return object.isA() == AcDbText::desc() || object.isA() == AcDbBlockReference::desc();
}

const AcDbImpObject* impOf(AcDbObjectId entity) {
    AcDbImpDatabase* const database = entity.isNull() ? nullptr : AcDbImpDatabase::of(entity);
    AcDbObject* const object =
        database == nullptr ? nullptr : database->object(AcDbImpDatabase::numberOf(entity));
    return object == nullptr ? nullptr : object->impl();
}

template <class F>
const F* fieldsAs(const AcDbImpObject* object) {
    return object == nullptr ? nullptr : dynamic_cast<const F*>(&object->fields());
}

bool standsAtInsertion(const TextFields& text) {
    const bool betweenPoints = text.horizontal == 3 || text.horizontal == 5;
    return text.vertical == 0 && (text.horizontal == 0 || betweenPoints);
}

}  // namespace

GroupChanges changesOf(const AcDbDatabase& database, std::uint64_t group) {
    AcDbImpDatabase& imp = *database.impl();
    GroupChanges changes;
    for (const UndoLog::Former& former : imp.undoLog().formerOf(group)) {
        const AcDbObjectId id = imp.idOf(former.object);
        const AcDbObject& object = *imp.object(former.object);
        const Fields& now = object.impl()->fields();
        const bool lived = !isNew(id) && !former.erased && !object.impl()->isErased();
        if (lived && canBeTurned(object) && sameApartFrom(kRotation, *former.fields, now))
            changes.turned.push_back({id, stanceOf(id, *former.fields), stanceOf(id, now)});
        else
            changes.others.push_back(id);
    }
    return changes;
}

bool stands(const AcDbDatabase& database, std::uint64_t group) {
    return database.impl()->undoLog().stands(group);
}

bool same(const Stance& a, const Stance& b) {
    return a.degrees == b.degrees && a.insertion.x == b.insertion.x &&
           a.insertion.y == b.insertion.y && a.insertion.z == b.insertion.z;
}

std::string TurnCounts::text() const {
    std::string text = std::to_string(turned) + " turned";
    if (unchanged != 0) text += " (" + std::to_string(unchanged) + " stood so already)";
    return text + ", " + std::to_string(left) + " left";
}

std::optional<AcGePoint3d> hangingPoint(AcDbObjectId entity) {
    const AcDbImpObject* const object = impOf(entity);
    AcGePoint3d point;
    if (const auto* text = fieldsAs<TextFields>(object))
        point = inWorld(text->normal,
                        standsAtInsertion(*text) ? text->turnedPosition() : text->alignment);
    else if (const auto* insert = fieldsAs<InsertFields>(object))
        point = inWorld(insert->normal, insert->position);
    else if (const auto* paragraph = fieldsAs<MTextFields>(object))
        point = paragraph->location;
    else
        return std::nullopt;
    const bool isPlace = std::isfinite(point.x) && std::isfinite(point.y) && std::isfinite(point.z);
    return isPlace ? std::optional(point) : std::nullopt;
}

std::wstring wording(AcDbObjectId entity) {
    const AcDbImpObject* const object = impOf(entity);
    if (const auto* attribute = fieldsAs<AttributeFields>(object)) return attribute->tag;
    if (const auto* text = fieldsAs<TextFields>(object)) return text->text;
    if (const auto* text = fieldsAs<MTextFields>(object)) return text->contents;
    if (const auto* insert = fieldsAs<InsertFields>(object)) return insert->block;
    return {};
}

}  // namespace host::database
