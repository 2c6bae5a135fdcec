// Point arrays as the host's: what Point3dArray.h declares and can't define without
// the host's headers.
#pragma once

#include <gept3dar.h>

#include <memory>
#include <new>

#include "GeomStructs/Point3dArray.h"
#include "tam/TamExceptions.h"

namespace TamLib {

template <class T>
auto Point3dArrayBase<T>::ToAcGePoint3dArray() const {
    const auto length = static_cast<int>(this->count);
    std::unique_ptr<AcGePoint3dArray> points(new (std::nothrow) AcGePoint3dArray(length));
    if (points == nullptr || points->physicalLength() < length)
        throw TamExpAcad(L"Allocation of AcGePoint3dArray failed", __LINE__,
                         L"geomstructs/Point3dArray");
    for (const T& point : *this) points->append(AcGePoint3d(point.x, point.y, point.z));
    return points.release();
}

}  // namespace TamLib
