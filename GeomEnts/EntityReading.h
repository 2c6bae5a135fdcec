// What readings of drawing entities and writings into a drawing share.
#pragma once

#include "GeomEnts/Point3d.h"

class AcGePoint3d;

namespace TamLib {

Point3d ToPoint3d(const AcGePoint3d& point);
AcGePoint3d ToAcGePoint3d(const Point3d& point);

// What becomes of an entity that was read: `disposal` 1 closes it, 2 erases and closes it, anything
// else leaves it open. What the host answers is ignored.
void DisposeOf(AcDbEntity* entity, int disposal);

}  // namespace TamLib
