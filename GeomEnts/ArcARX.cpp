// Arc read from drawing entities.
#include <acdbads.h>
#include <dbents.h>

#include <algorithm>
#include <cmath>

#include "GeomEnts/Arc.h"
#include "GeomEnts/EntityReading.h"
#include "GeomEnts/Pi.h"

namespace TamLib {
namespace {

// The height of an arc that runs counter-clockwise about its axis, from its ends in the world.
double HeightOf(const AcDbArc& arc, const Line& chord) {
    const double radius = arc.radius(), half = chord.Line::Length() * 0.5;
    double height = std::fabs(radius - std::sqrt(std::max(0.0, radius * radius - half * half)));
    const double from = arc.startAngle(), to = arc.endAngle();
    const bool isLong = to > from ? to - from > kPi : from > to && from - to < kPi;
    if (isLong) height = std::fabs(height) - radius * 2.0;
    double turn = Angle(chord.Start(), ToPoint3d(arc.center())) - Angle(chord.Start(), chord.End());
    if (turn < 0.0) turn += kPi * 2.0;
    return turn < kPi ? -height : height;
}

void ReadArc(Arc& result, const AcDbArc& arc) {
    AcGePoint3d start, end;
    if (arc.getStartPoint(start) != Acad::eOk || arc.getEndPoint(end) != Acad::eOk) return;
    const Line chord(ToPoint3d(start), ToPoint3d(end));
    result = Arc(HeightOf(arc, chord), chord);
}

}  // namespace

Arc::Arc(AcDbEntity* entity, int disposal) : height(0.0) {
    FromEntity(entity, disposal);
}

Arc::Arc(AcDbObjectId id) : height(0.0) {
    AcDbEntity* entity = nullptr;
    acdbOpenAcDbEntity(entity, id, AcDb::kForRead);
    if (entity == nullptr) return;
    FromEntity(entity, 1);
    entity->close();  // intended: a second time, its status is ignored
}

void Arc::FromEntity(AcDbEntity* entity, int disposal) {
    if (entity == nullptr) return;
    ads_name name;
    acdbGetAdsName(name, entity->objectId());  // intended: asked for first, and not looked at
    if (entity->isA() == AcDbArc::desc()) {
        ReadArc(*this, *static_cast<AcDbArc*>(entity));
    } else if (entity->isA() == AcDbLine::desc()) {
        const auto* const line = static_cast<AcDbLine*>(entity);
        *this = Arc(0.0, Line(ToPoint3d(line->startPoint()), ToPoint3d(line->endPoint())));
    }
    DisposeOf(entity, disposal);
}

}  // namespace TamLib
