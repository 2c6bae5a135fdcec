#include "host/editor/EntityGroups.h"

#include <dbents.h>

#include <optional>

#include "host/database/Drawing.h"
#include "host/editor/Words.h"

namespace host::editor {

namespace {

constexpr double degree = 0.017453292519943295;

// An embedded object repeats the codes of its owner.
constexpr int embeddedObject = 101;
constexpr int extendedData = 1000;

bool isPoint(int code) {
    return (code >= 10 && code <= 18) || (code >= 110 && code <= 112) || code == 210;
}

std::optional<GroupValue> standing(int code) {
    switch (code) {
        case 6:
            return GroupValue(std::wstring(L"BYLAYER"));
        case 7:
            return GroupValue(std::wstring(L"STANDARD"));
        case 8:
            return GroupValue(std::wstring(L"0"));
        case 62:
            return GroupValue(256LL);
        case 60:
        case 67:
            return GroupValue(0LL);
        case 410:
            return GroupValue(std::wstring(L"Model"));
        case 38:
        case 39:
        case 50:
            return GroupValue(0.0);
        case 210:
            return GroupValue(AcGePoint3d(0.0, 0.0, 1.0));
        default:
            return std::nullopt;
    }
}

// The turn of a text or block reference, which is what commands change.
std::optional<double> rotationOf(AcDbObjectId id) {
    AcDbEntity* entity = nullptr;
    if (acdbOpenAcDbEntity(entity, id, AcDb::kForRead) != Acad::eOk) return std::nullopt;
    std::optional<double> rotation;
    if (const auto* text = AcDbText::cast(entity)) rotation = text->rotation();
    if (const auto* reference = AcDbBlockReference::cast(entity)) rotation = reference->rotation();
    entity->close();
    return rotation;
}

std::optional<GroupValue> valueOf(const dxf::Document& document, const dxf::Group& group) {
    switch (group.type()) {
        case dxf::ValueType::real:
            if (const auto number = group.real()) {
                return GroupValue(group.code() >= 50 && group.code() <= 58 ? *number * degree
                                                                           : *number);
            }
            return std::nullopt;
        case dxf::ValueType::int16:
        case dxf::ValueType::int32:
        case dxf::ValueType::int64:
        case dxf::ValueType::boolean:
            if (const auto number = group.integer())
                return GroupValue(static_cast<long long>(*number));
            return std::nullopt;
        case dxf::ValueType::chunk:
            return std::nullopt;
        default:
            return GroupValue(std::wstring(trimmed(document.decode(group.bytes()))));
    }
}

}  // namespace

std::vector<GroupValue> EntityGroups::values(int code) const {
    if (code == 100) return classNames();
    if (code == 50) {
        if (const auto rotation = rotationOf(entity_)) return {GroupValue(*rotation)};
    }
    std::vector<GroupValue> found = stored(code);
    if (found.empty()) {
        if (const auto value = standing(code)) found.push_back(*value);
    }
    return found;
}

namespace {

GroupValue valueOf(const dxf::GroupEdit& group) {
    if (const auto* real = std::get_if<double>(&group.value)) {
        return GroupValue(group.code >= 50 && group.code <= 58 ? *real * degree : *real);
    }
    if (const auto* integer = std::get_if<std::int64_t>(&group.value)) {
        return GroupValue(static_cast<long long>(*integer));
    }
    return GroupValue(std::get<std::wstring>(group.value));
}

using Groups = std::vector<std::pair<int, GroupValue>>;

// Puts a group behind the others; a coordinate that belongs to the point before becomes part of it.
void append(Groups& groups, int code, GroupValue value) {
    auto* const point = groups.empty() ? nullptr : std::get_if<AcGePoint3d>(&groups.back().second);
    const int axis = point == nullptr ? 0 : (code - groups.back().first) / 10;
    const auto* real = std::get_if<double>(&value);
    if (real != nullptr && point != nullptr && (axis == 1 || axis == 2) &&
        code == groups.back().first + 10 * axis) {
        (axis == 1 ? point->y : point->z) = *real;
    } else if (real != nullptr && isPoint(code)) {
        groups.emplace_back(code, AcGePoint3d(*real, 0.0, 0.0));
    } else {
        groups.emplace_back(code, std::move(value));
    }
}

Groups joined(const std::vector<dxf::GroupEdit>& groups) {
    Groups all;
    for (const dxf::GroupEdit& group : groups) {
        if (group.code == embeddedObject || group.code >= extendedData) break;
        append(all, group.code, valueOf(group));
    }
    return all;
}

}  // namespace

std::vector<std::pair<int, GroupValue>> EntityGroups::all() const {
    const auto changed = database::changedGroups(entity_);
    const auto record = database::recordOf(entity_);
    if (!changed.empty()) return joined(changed);
    Groups all;
    if (!record) return all;
    const dxf::Document& document = database::document(*entity_.database());
    for (const dxf::Group& group : document.groups(*record)) {
        if (group.code() == embeddedObject || group.code() >= extendedData) break;
        const bool words = group.code() == 1 || group.code() == 3;  // blanks belong to them
        auto value = words ? std::optional<GroupValue>(document.decode(group.bytes()))
                           : valueOf(document, group);
        if (value) append(all, group.code(), std::move(*value));
    }
    return all;
}

std::vector<GroupValue> EntityGroups::stored(int code) const {
    const auto changed = database::changedGroups(entity_);
    std::vector<GroupValue> found;
    if (!changed.empty()) {
        for (auto& group : joined(changed))
            if (group.first == code) found.push_back(std::move(group.second));
        return found;
    }
    const auto record = database::recordOf(entity_);
    if (!record) return {};
    const dxf::Document& document = database::document(*entity_.database());
    AcGePoint3d point;
    bool inPoint = false;
    for (const dxf::Group& group : document.groups(*record)) {
        if (group.code() == embeddedObject || group.code() >= extendedData) break;
        if (isPoint(code) &&
            (group.code() == code || group.code() == code + 10 || group.code() == code + 20)) {
            const double number = group.real().value_or(0.0);
            if (group.code() == code) {
                if (inPoint) found.emplace_back(point);
                point = {number, 0.0, 0.0};
                inPoint = true;
            } else if (group.code() == code + 10) {
                point.y = number;
            } else {
                point.z = number;
            }
        } else if (group.code() == code) {
            if (const auto value = valueOf(document, group)) found.push_back(*value);
        }
    }
    if (inPoint) found.emplace_back(point);
    return found;
}

std::vector<GroupValue> EntityGroups::classNames() const {
    std::vector<GroupValue> names;
    for (const AcRxClass* type = entity_.objectClass(); type != nullptr; type = type->myParent()) {
        names.emplace_back(std::wstring(type->name()));
    }
    return names;
}

}  // namespace host::editor
