// Box of what drawing entities show.
#include <dbmain.h>

#include "GeomEnts/Box.h"
#include "GeomEnts/EntityReading.h"

namespace TamLib {
namespace {

bool GetExtents(const AcDbEntity* entity, Point3d& low, Point3d& high) {
    AcDbExtents extents;
    if (entity == nullptr || entity->getGeomExtents(extents) != Acad::eOk) return false;
    low = ToPoint3d(extents.minPoint());
    high = ToPoint3d(extents.maxPoint());
    return true;
}

float Below(double minimum, float otherwise) {
    return minimum < 3.4028234663852886e38 ? static_cast<float>(minimum) : otherwise;
}

float Above(double maximum, float otherwise) {
    return maximum > -3.4028234663852886e38 ? static_cast<float>(maximum) : otherwise;
}

}  // namespace

Box::Box(const AcDbEntity* entity) {
    Point3d low, high;
    if (GetExtents(entity, low, high)) *this = Box(low, high);
}

Box::Box(const AcDbObjectId& id) {
    AcDbEntity* entity = nullptr;
    acdbOpenAcDbEntity(entity, id, AcDb::kForRead);
    // Intended: opened twice, closed once.
    if (acdbOpenAcDbEntity(entity, id, AcDb::kForRead) != Acad::eOk) return;
    Point3d low, high;
    if (GetExtents(entity, low, high))
        *this = Box(Below(low.x, xMin), Above(high.x, xMax), Below(low.y, yMin),
                    Above(high.y, yMax), Below(low.z, zMin), Above(high.z, zMax));
    entity->close();
}

void Box::Add(AcDbEntity* entity) {
    Point3d low, high;
    if (!GetExtents(entity, low, high)) return;
    Add(low);
    Add(high);
}

int Box::Add(const AcDbObjectId& id) {
    AcDbEntity* entity = nullptr;
    const Acad::ErrorStatus status = acdbOpenAcDbEntity(entity, id, AcDb::kForRead);
    if (status != Acad::eOk) return status;
    Add(entity);
    entity->close();
    return status;
}

}  // namespace TamLib
