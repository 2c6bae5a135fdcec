#include "host/editor/Drawn.h"

#include <dbelipse.h>
#include <dbents.h>
#include <dbmain.h>
#include <dbpl.h>
#include <dbspline.h>

#include <algorithm>
#include <initializer_list>

#include "host/database/Drawing.h"
#include "host/editor/EntityFigure.h"

namespace host::editor {

namespace {

using Ids = std::vector<AcDbObjectId>;

}  // namespace

Ids Drawn::entities() const {
    return database::modelSpaceIds(drawing_);
}

Ids Drawn::selectable(Ids& locked) const {
    locked.clear();
    Ids free;
    database::LayerStates layers;
    for (const AcDbObjectId id : entities()) {
        const database::LayerState& layer = layers.of(id);
        if (layer.locked && !layer.frozen) locked.push_back(id);
        if (!layer.locked && !layer.frozen) free.push_back(id);
    }
    return free;
}

Ids Drawn::visibleWhere(const PlanBox& reach,
                        const std::function<bool(const PlanFigure&)>& test) const {
    Ids found;
    for (const AcDbObjectId id : entities()) {
        if (stop_ && stop_()) break;
        const PlanBox box = planBox(id);
        if (box.empty() || !box.overlaps(reach) || !database::isVisible(id)) continue;
        if (test(planFigure(id))) found.push_back(id);
    }
    return found;
}

AcDbObjectId Drawn::topmostAt(const PlanPoint& point, double reach) const {
    const PlanBox square{{point.x - reach, point.y - reach}, {point.x + reach, point.y + reach}};
    const Ids all = entities();
    for (auto id = all.rbegin(); id != all.rend(); ++id) {
        const PlanBox box = planBox(*id);
        if (box.empty() || !box.overlaps(square) || !database::isVisible(*id)) continue;
        if (planFigure(*id).crosses(square)) return *id;
    }
    return {};
}

std::vector<Drawn::Near> Drawn::linesNear(const PlanPoint& point, std::size_t count) const {
    std::vector<Near> nearest;
    for (const AcDbObjectId id : entities()) {
        if (!isLine(id) || !database::isVisible(id)) continue;
        const PlanBox box = planBox(id);
        const auto tooFar = [&](double distance) {
            return nearest.size() == count && distance >= nearest.back().distance;
        };
        if (box.empty() || tooFar(box.distanceTo(point))) continue;
        const double distance = planFigure(id).distanceTo(point);
        if (tooFar(distance)) continue;
        const auto behind =
            std::upper_bound(nearest.begin(), nearest.end(), distance,
                             [](double value, const Near& line) { return value < line.distance; });
        nearest.insert(behind, {id, distance});
        if (nearest.size() > count) nearest.pop_back();
    }
    return nearest;
}

AcDbObjectId Drawn::last() const {
    const Ids all = entities();
    for (auto id = all.rbegin(); id != all.rend(); ++id) {
        if (database::isVisible(*id)) return *id;
    }
    return {};
}

PlanBox Drawn::extents() const {
    PlanBox all;
    for (const AcDbObjectId id : entities()) {
        const PlanBox box = planBox(id);
        if (box.empty()) continue;
        all.add(box.min);
        all.add(box.max);
    }
    return all;
}

bool isLine(AcDbObjectId entity) {
    const AcRxClass* const type = entity.objectClass();
    const std::initializer_list<const AcRxClass*> lines = {
        AcDbLine::desc(), AcDbPolyline::desc(), AcDb2dPolyline::desc(), AcDb3dPolyline::desc(),
        AcDbArc::desc(),  AcDbCircle::desc(),   AcDbEllipse::desc(),    AcDbSpline::desc()};
    return std::find(lines.begin(), lines.end(), type) != lines.end();
}

bool isLivingEntity(AcDbObjectId id) {
    const AcRxClass* type = id.objectClass();
    return type != nullptr && type->isDerivedFrom(AcDbEntity::desc()) && !id.isErased();
}

}  // namespace host::editor
