// Line read from drawing entities.
#include <dbents.h>

#include "GeomEnts/EntityReading.h"
#include "GeomEnts/Line.h"

namespace TamLib {

Line::Line(AcDbEntity* entity, int disposal) {
    if (entity == nullptr || entity->isA() != AcDbLine::desc()) return;
    const auto* const line = static_cast<AcDbLine*>(entity);
    *this = Line(ToPoint3d(line->startPoint()), ToPoint3d(line->endPoint()));
    DisposeOf(entity, disposal);
}

Line::Line(AcDbObjectId id) {
    AcDbEntity* entity = nullptr;
    if (acdbOpenAcDbEntity(entity, id, AcDb::kForRead) != Acad::eOk) return;
    *this = Line(entity, 1);
    entity->close();  // intended: a second time, its status is ignored
}

}  // namespace TamLib
