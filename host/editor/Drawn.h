// The entities of the drawing's current space, as selecting sees them. Nothing is opened, so that
// entities that a module holds open can be selected all the same.
#pragma once

#include <dbid.h>

#include <cstddef>
#include <functional>
#include <utility>
#include <vector>

#include "host/editor/PlanFigure.h"

class AcDbDatabase;

namespace host::editor {

class Drawn {
  public:
    // `stop` is asked for each entity by a search that looks at figures; true ends it with what was
    // found so far.
    explicit Drawn(const AcDbDatabase& drawing, std::function<bool()> stop = {})
        : drawing_(drawing), stop_(std::move(stop)) {}

    // All entities in the drawing's order, erased ones left out.
    std::vector<AcDbObjectId> entities() const;

    // All that are on no frozen and no locked layer; `locked` gets those on a locked layer that
    // isn't frozen.
    std::vector<AcDbObjectId> selectable(std::vector<AcDbObjectId>& locked) const;

    // Visible entities that pass a test of their figure, in the drawing's order. Entities whose
    // boxes lie apart from `reach` are passed over at once.
    std::vector<AcDbObjectId> visibleWhere(
        const PlanBox& reach, const std::function<bool(const PlanFigure&)>& test) const;

    // The entity drawn last of those that reach into a square around the point; null when there is
    // none. `reach` is half of its side.
    AcDbObjectId topmostAt(const PlanPoint& point, double reach) const;

    // The visible lines (isLine) nearest to a point in plan, the nearest first, at most `count`;
    // the first drawn of those equally far.
    struct Near {
        AcDbObjectId entity;
        double distance = 0.0;
    };
    std::vector<Near> linesNear(const PlanPoint& point, std::size_t count) const;

    // The visible entity made last; null when there is none.
    AcDbObjectId last() const;

    // The box of everything in the space.
    PlanBox extents() const;

  private:
    const AcDbDatabase& drawing_;
    std::function<bool()> stop_;
};

// Whether the entity is a line, polyline, arc, circle, ellipse or spline: what texts can be turned
// along. Points and regions, which the command reads as lines as well, are none.
bool isLine(AcDbObjectId entity);

// Whether the id names an entity that is not erased.
bool isLivingEntity(AcDbObjectId id);

}  // namespace host::editor
