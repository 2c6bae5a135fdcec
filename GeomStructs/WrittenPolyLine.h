// What polylines of straight segments and of arcs share when they are written to the drawing.
#pragma once

#include <cmath>
#include <memory>

#include "GeomStructs/PolyLine.h"
#include "tam/TamExceptions.h"

namespace TamLib::detail {

// The line as it is written: shifted by its `offset`, if there is one.
template <class Curve>
Curve Shifted(const Curve& line) {
    Curve shifted(line);
    const Point3d& by = line.offset;
    if (std::fabs(by.x) < 1e-10 && std::fabs(by.y) < 1e-10 && std::fabs(by.z) < 1e-10)
        return shifted;
    for (Point3d& vertex : shifted) vertex += by;
    return shifted;
}

// The new entity, which the host's allocator may have refused.
template <class Entity>
std::unique_ptr<Entity> Allocated(Entity* entity, const wchar_t* source) {
    // Intended: the text is the same for all kinds.
    if (entity == nullptr)
        throw TamExpAcad(L"Initialization of AcDb3dPolyLine failed", __LINE__, source);
    return std::unique_ptr<Entity>(entity);
}

}  // namespace TamLib::detail
