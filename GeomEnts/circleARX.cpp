// Circle read from drawing entities.
#include <dbents.h>

#include "GeomEnts/EntityReading.h"
#include "GeomEnts/circle.h"

namespace TamLib {

Circle::Circle(AcDbEntity* entity, int disposal) : radius(0.0) {
    if (entity == nullptr || entity->isA() != AcDbCircle::desc()) return;
    const auto* const circle = static_cast<AcDbCircle*>(entity);
    radius = circle->radius();
    centre = ToPoint3d(circle->center());
    DisposeOf(entity, disposal);
}

Circle::Circle(const AcDbObjectId& id) : radius(0.0) {
    AcDbEntity* entity = nullptr;
    acdbOpenAcDbEntity(entity, id, AcDb::kForRead);
    if (entity == nullptr) return;
    *this = Circle(entity, 1);
    entity->close();  // intended: a second time, its status is ignored
}

}  // namespace TamLib
