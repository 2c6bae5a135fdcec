#include "GeomEnts/EntityReading.h"

#include <dbmain.h>

namespace TamLib {

Point3d ToPoint3d(const AcGePoint3d& point) {
    return {point.x, point.y, point.z};
}

AcGePoint3d ToAcGePoint3d(const Point3d& point) {
    return {point.x, point.y, point.z};
}

void DisposeOf(AcDbEntity* entity, int disposal) {
    if (disposal == 2) entity->erase(true);
    if (disposal == 1 || disposal == 2) entity->close();
}

}  // namespace TamLib
