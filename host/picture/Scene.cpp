#include "host/picture/Scene.h"

#include <dbents.h>

#include <algorithm>
#include <cmath>

#include "host/database/Drawing.h"
#include "host/editor/EntityFigure.h"
#include "host/picture/Lettering.h"
#include "host/picture/Look.h"

namespace host::picture {
namespace {

constexpr double largest = 1e99;

bool isText(AcDbObjectId entity) {
    const AcRxClass* type = entity.objectClass();
    return type != nullptr &&
           (type->isDerivedFrom(AcDbText::desc()) || type->isDerivedFrom(AcDbMText::desc()));
}

bool isHatch(const AcDbImpDatabase& database, AcDbObjectId entity) {
    const auto record = database.recordOf(AcDbImpDatabase::numberOf(entity));
    return record && database.document().type(*record) == "HATCH";
}

PlanBox boxAround(const std::vector<AcGePoint3d>& points) {
    PlanBox box;
    for (const AcGePoint3d& p : points)
        if (std::fabs(p.x) < largest && std::fabs(p.y) < largest) box.add({p.x, p.y});
    return box;
}

}  // namespace

PlanBox boxOf(AcDbImpDatabase& database, AcDbObjectId entity) {
    if (!isText(entity) && !isHatch(database, entity)) return editor::planBox(entity);
    const Piece piece = pieceOf(database, AcDbImpDatabase::numberOf(entity), 0.0);
    if (const auto* lettering = std::get_if<Lettering>(&piece.look))
        return boxAround(outlineOf(*lettering));
    const auto* path = std::get_if<Path>(&piece.look);
    return path == nullptr ? PlanBox() : boxAround(path->points());
}

Scene::Scene(AcDbImpDatabase& database, const Change& change) : database_(database) {
    lines_ = change.earlierLines;
    if (!change.line.isNull()) lines_.push_back(change.line);
    special_.insert(lines_.begin(), lines_.end());
    for (const Turned& turned : change.turned) special_.insert(turned.entity);
    for (const AcDbObjectId id : database::modelSpaceIds(database.self()))
        if (isSeen(id)) members_.push_back({id, boxOf(database, id)});
}

bool Scene::isInModelSpace(AcDbObjectId entity) const {
    return database_.blockOf(AcDbImpDatabase::numberOf(entity)) ==
           database_.structure().modelSpace();
}

// A block reference on a layer that is off shows what lies on others.
bool Scene::isSeen(AcDbObjectId entity) const {
    if (database::isVisible(entity)) return true;
    const AcRxClass* type = entity.objectClass();
    const bool isReference = type != nullptr && type->isDerivedFrom(AcDbBlockReference::desc());
    if (!isReference || entity.isErased()) return false;
    return database::layerState(entity).off && !database::layerState(entity).frozen;
}

PlanBox Scene::view() const {
    std::vector<PlanBox> content, turned;
    PlanBox lines;
    for (const Member& member : members_) {
        if (member.box.empty()) continue;
        content.push_back(member.box);
        if (!isSpecial(member.id)) continue;
        if (std::find(lines_.begin(), lines_.end(), member.id) == lines_.end()) {
            turned.push_back(member.box);
        } else {
            lines.add(member.box.min);
            lines.add(member.box.max);
        }
    }
    return chooseView(content, turned, lines);
}

}  // namespace host::picture
