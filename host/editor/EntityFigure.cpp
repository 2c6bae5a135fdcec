#include "host/editor/EntityFigure.h"

#include <dbents.h>

#include <algorithm>
#include <cmath>

#include "host/database/Geometry.h"

namespace host::editor {

namespace {

constexpr double largest = 1e99;
constexpr double chordsPerExtent = 5000.0;

bool isFilled(AcDbObjectId entity) {
    const AcRxClass* type = entity.objectClass();
    return type != nullptr &&
           (type->isDerivedFrom(AcDbText::desc()) || type->isDerivedFrom(AcDbMText::desc()) ||
            type->isDerivedFrom(AcDbSolid::desc()) || type->isDerivedFrom(AcDbTrace::desc()));
}

bool isSane(const AcGePoint3d& p) {
    return std::fabs(p.x) < largest && std::fabs(p.y) < largest;
}

PlanPath closedIfFilled(PlanPath path) {
    if (path.filled && path.points.size() > 2) {
        const PlanPoint first = path.points.front();
        const PlanPoint last = path.points.back();
        if (first.x != last.x || first.y != last.y) path.points.push_back(first);
    }
    return path;
}

}  // namespace

PlanBox planBox(AcDbObjectId entity) {
    const auto extents = database::extentsOf(entity);
    if (!extents || !isSane(extents->minPoint()) || !isSane(extents->maxPoint())) return {};
    return {{extents->minPoint().x, extents->minPoint().y},
            {extents->maxPoint().x, extents->maxPoint().y}};
}

PlanFigure planFigure(AcDbObjectId entity) {
    PlanFigure figure;
    const PlanBox box = planBox(entity);
    if (box.empty()) return figure;
    const double chordError =
        std::max(box.max.x - box.min.x, box.max.y - box.min.y) / chordsPerExtent;
    const bool filled = isFilled(entity);
    for (const database::Chain& chain : database::drawnChains(entity, chordError)) {
        PlanPath path;
        path.filled = filled;
        for (const AcGePoint3d& point : chain) path.points.push_back({point.x, point.y});
        figure.add(closedIfFilled(std::move(path)));
    }
    return figure;
}

}  // namespace host::editor
