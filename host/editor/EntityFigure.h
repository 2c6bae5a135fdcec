// Entities as plan figures.
#pragma once

#include <dbid.h>

#include "host/editor/PlanFigure.h"

namespace host::editor {

// The box of an entity in plan; empty for one without known geometry or with coordinates beyond
// 1e99.
PlanBox planBox(AcDbObjectId entity);

// What an entity looks like in plan: its drawn lines, curves within 1/5000 of the entity's extent.
// Texts and solids are filled. Empty where the box is.
PlanFigure planFigure(AcDbObjectId entity);

}  // namespace host::editor
