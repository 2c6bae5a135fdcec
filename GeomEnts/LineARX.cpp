// Line read from drawing entities.
#include <dbents.h>

#include "GeomEnts/EntityReading.h"
#include "GeomEnts/Line.h"

namespace TamLib {
namespace {

// Both ends of an AcDbLine, which is then disposed of; another class is left alone.
void ReadEnds(Line& line, AcDbEntity* entity, int disposal) {
    if (entity == nullptr || entity->isA() != AcDbLine::desc()) return;
    line.valid = 1;
    line.SetStart(ToPoint3d(static_cast<AcDbLine*>(entity)->startPoint()));
    line.SetEnd(ToPoint3d(static_cast<AcDbLine*>(entity)->endPoint()));
    DisposeOf(entity, disposal);
}

}  // namespace

Line::Line(AcDbEntity* entity, int disposal) {
    ReadEnds(*this, entity, disposal);
}

Line::Line(AcDbObjectId id) {
    AcDbEntity* entity = nullptr;
    if (acdbOpenAcDbEntity(entity, id, AcDb::kForRead) != Acad::eOk) return;
    ReadEnds(*this, entity, 1);
    entity->close();  // intended: a second time, its status is ignored
}

}  // namespace TamLib
