// Point3d read from drawing entities and asked from the user.
#include <acedads.h>
#include <acutads.h>
#include <dbents.h>

#include "GeomEnts/EntityReading.h"
#include "GeomEnts/Point3d.h"

namespace TamLib {

Point3d::Point3d(AcDbEntity* entity, int disposal) {
    if (entity == nullptr) return;
    if (entity->isA() == AcDbPoint::desc())
        *this = ToPoint3d(static_cast<AcDbPoint*>(entity)->position());
    DisposeOf(entity, disposal);
}

Point3d::Point3d(AcDbObjectId id) {
    AcDbEntity* entity = nullptr;
    if (acdbOpenAcDbEntity(entity, id, AcDb::kForRead) == Acad::eOk) *this = Point3d(entity, 1);
}

bool Point3d::GetPoint(const wchar_t* prompt, const Point3d* base, int /*flags*/) {
    Point3d from;
    if (base != nullptr) from = *base;
    const int result = acedGetPoint(base != nullptr ? &from.x : nullptr, prompt, &x);
    if (prompt != nullptr) acutPrintf(L"\n");
    return result == RTNORM;
}

}  // namespace TamLib
