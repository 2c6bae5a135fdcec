// The vertices of old-style polylines, one object each, in world coordinates.
#pragma once

#include <dbents.h>

#include "GeomEnts/EntityReading.h"

namespace TamLib {

inline double BulgeOf(const AcDb2dVertex& vertex) {
    return vertex.bulge();
}
inline double BulgeOf(const AcDb3dPolylineVertex&) {
    return 0.0;
}

// Calls `take(position, bulge)` for each vertex but spline control points (`controlType`). With an
// `elevation` that takes the place of z before the position is transformed. A vertex that can't be
// opened is passed over; each is closed before it is taken.
template <class Vertex, class Take>
void ForEachVertex(AcDbEntity* entity, AcDbObjectIterator* vertices, int controlType,
                   const double* elevation, const Take& take) {
    AcGeMatrix3d ecs;
    entity->getEcs(ecs);
    for (; vertices != nullptr && !vertices->done(); vertices->step(false, false)) {
        AcDbObject* object = nullptr;
        if (acdbOpenAcDbObject(object, vertices->objectId(), AcDb::kForRead) != Acad::eOk) continue;
        const auto* const vertex = Vertex::cast(object);
        if (vertex == nullptr) {
            object->close();
            continue;
        }
        AcGePoint3d position = vertex->position();
        const int type = vertex->vertexType();
        const double bulge = BulgeOf(*vertex);
        object->close();
        if (type == controlType) continue;
        if (elevation != nullptr) position.z = *elevation;
        take(ToPoint3d(position.transformBy(ecs)), bulge);
    }
}

}  // namespace TamLib
