#include "GeomStructs/EntityArcs.h"

#include <dbelipse.h>
#include <dbents.h>
#include <dbpl.h>
#include <dbregion.h>
#include <dbspline.h>

#include <cmath>
#include <memory>

namespace TamLib {
namespace {

// The rise of an arc over its chord, which the bulge gives by half the chord.
bool Rises(const AcGePoint3d& from, const AcGePoint3d& to, double bulge) {
    return std::fabs(bulge) >= 0.0001 && std::fabs(bulge) * from.distanceTo(to) * 0.5 >= 0.0001;
}

bool HasArcs(const AcDb2dPolyline& polyline) {
    const std::unique_ptr<AcDbObjectIterator> vertices(polyline.vertexIterator());
    AcGePoint3d first, last;
    double bulge = 0.0;
    bool arcs = false, any = false;
    for (; vertices != nullptr && !vertices->done(); vertices->step(false, false)) {
        AcDbObject* object = nullptr;
        if (acdbOpenAcDbObject(object, vertices->objectId(), AcDb::kForRead) != Acad::eOk) continue;
        const auto* const vertex = AcDb2dVertex::cast(object);
        if (vertex != nullptr && vertex->vertexType() != AcDb::k2dSplineCtlVertex) {
            const AcGePoint3d position = vertex->position();
            if (!any) first = position;
            arcs = arcs || (any && Rises(last, position, bulge));
            any = true;
            last = position;
            bulge = vertex->bulge();
        }
        object->close();
    }
    return arcs || (any && polyline.isClosed() && Rises(last, first, bulge));
}

}  // namespace

bool HasArcs(AcDbEntity* entity) {
    if (entity == nullptr) return false;
    const AcRxClass* const type = entity->isA();
    if (type == AcDbCircle::desc() || type == AcDbEllipse::desc() || type == AcDbArc::desc())
        return true;
    if (type == AcDbPolyline::desc()) return static_cast<AcDbPolyline*>(entity)->hasBulges();
    return type == AcDb2dPolyline::desc() && HasArcs(*static_cast<AcDb2dPolyline*>(entity));
}

bool IsUnread(AcDbEntity* entity, bool sampleCurves) {
    if (entity->isA() == AcDbRegion::desc()) return true;
    return sampleCurves && !IsSampledCurve(entity) && HasArcs(entity);
}

bool IsSampledCurve(AcDbEntity* entity) {
    const auto* const polyline = AcDb2dPolyline::cast(entity);
    if (polyline != nullptr) return polyline->polyType() != AcDb::k2dSimplePoly;
    return AcDbSpline::cast(entity) != nullptr || AcDbEllipse::cast(entity) != nullptr;
}

}  // namespace TamLib
