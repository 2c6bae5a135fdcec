// A line as the axis of a solid.
#include <dbents.h>
#include <dbptrar.h>
#include <dbregion.h>
#include <dbsol3d.h>

#include <memory>
#include <vector>

#include "GeomEnts/DrawingOutput.h"
#include "GeomEnts/EntityReading.h"
#include "GeomEnts/Line.h"
#include "tam/TamExceptions.h"

namespace TamLib {
namespace {

// The regions that a closed curve bounds.
std::vector<std::unique_ptr<AcDbRegion>> RegionsOf(AcDbCurve& curve) {
    AcDbVoidPtrArray curves, made;
    curves.append(&curve);
    AcDbRegion::createFromCurves(curves, made);
    std::vector<std::unique_ptr<AcDbRegion>> regions;
    regions.reserve(static_cast<std::size_t>(made.length()));
    for (int i = 0; i < made.length(); ++i) regions.emplace_back(static_cast<AcDbRegion*>(made[i]));
    return regions;
}

}  // namespace

int Line::ToPipe(double radius, int /*colour*/, const wchar_t* layer, AcDbObjectId* id,
                 AcDbDatabase* database) const {
    const Point3d direction = Direction();
    const std::unique_ptr<AcDbCircle> circle(new AcDbCircle(
        ToAcGePoint3d(Start()), AcGeVector3d(direction.x, direction.y, direction.z), radius));
    if (circle == nullptr)
        throw TamExpAcad(L"Allocation of AcDbCircle failed", __LINE__, L"GeomEnts/Line");
    const std::unique_ptr<AcDbLine> path(
        new AcDbLine(ToAcGePoint3d(Start()), ToAcGePoint3d(End())));
    if (path == nullptr)
        throw TamExpAcad(L"Allocation of AcDbLine failed", __LINE__, L"GeomEnts/Line");
    const auto regions = RegionsOf(*circle);
    if (regions.empty()) return Acad::eGeneralModelingFailure;
    std::unique_ptr<AcDb3dSolid> solid(new AcDb3dSolid);
    if (solid == nullptr)
        throw TamExpAcad(L"Allocation of AcDb3dSolid failed", __LINE__, L"GeomEnts/Line");
    const int status = solid->extrudeAlongPath(regions.front().get(), path.get());
    if (status != Acad::eOk) return status;
    SetLayer(*solid, layer, database);  // intended: the colour has no effect
    return ARXAddToModelSpace(solid.release(), id, /*close=*/true, database);
}

}  // namespace TamLib
