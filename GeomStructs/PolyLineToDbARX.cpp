// PolyLine written to the drawing.
#include <dbents.h>
#include <dbpl.h>

#include <cmath>
#include <memory>

#include "GeomEnts/DrawingOutput.h"
#include "GeomStructs/Point3dArrayARX.h"
#include "GeomStructs/PolyLine.h"

namespace TamLib {
namespace {

constexpr const wchar_t* kSource = L"GeomStructs/PolyLine";

// The line as it is written: shifted by its `offset`, if there is one.
PolyLine Shifted(const PolyLine& line) {
    PolyLine shifted(line);
    const Point3d& by = line.offset;
    if (std::fabs(by.x) < 1e-10 && std::fabs(by.y) < 1e-10 && std::fabs(by.z) < 1e-10)
        return shifted;
    for (Point3d& vertex : shifted) vertex += by;
    return shifted;
}

AcGePoint3d HostPoint(const Point3d& p) {
    return {p.x, p.y, p.z};
}

// The new entity, which the host's allocator may have refused.
template <class Entity>
std::unique_ptr<Entity> Allocated(Entity* entity) {
    // Intended: the text is the same for all kinds.
    if (entity == nullptr)
        throw TamExpAcad(L"Initialization of AcDb3dPolyLine failed", __LINE__, kSource);
    return std::unique_ptr<Entity>(entity);
}

std::unique_ptr<AcDbEntity> LightPolyline(const PolyLine& line) {
    std::unique_ptr<AcDbPolyline> polyline = Allocated(new AcDbPolyline);
    for (const Point3d& p : line)
        polyline->addVertexAt(polyline->numVerts(), AcGePoint2d(p.x, p.y), 0, -1.0, -1.0, 0);
    polyline->setClosed(line.IsClosed());
    return polyline;
}

template <class Polyline>
std::unique_ptr<AcDbEntity> ClosedLike(const PolyLine& line, std::unique_ptr<Polyline> polyline) {
    if (line.IsClosed()) polyline->makeClosed();
    return polyline;
}

std::unique_ptr<AcDbEntity> Entity(const PolyLine& line, int kind) {
    if (kind == 1) return LightPolyline(line);
    const std::unique_ptr<AcGePoint3dArray> points(line.ToAcGePoint3dArray());
    if (kind == 2)
        return ClosedLike(line, Allocated(new AcDb2dPolyline(*points, AcDb::k2dSimplePoly, 0, false,
                                                             0, 0, nullptr)));
    return ClosedLike(line, Allocated(new AcDb3dPolyline(AcDb::k3dSimplePoly, *points, false)));
}

}  // namespace

int PolyLine::ToDb(int colour, const wchar_t* layer, AcDbObjectId* id, AcDbDatabase* database,
                   int kind) const {
    if (count == 0) return 0;
    std::unique_ptr<AcDbEntity> entity = Entity(Shifted(*this), kind);
    SetColourAndLayer(*entity, colour, layer, database);
    return ARXAddToModelSpace(entity.release(), id, true, database);
}

int PolyLine::ToFace(int colour, const wchar_t* layer, AcDbObjectId* id,
                     AcDbDatabase* database) const {
    if (count != 3 && count != 4) return 3;
    const PolyLine corners = Shifted(*this);
    std::unique_ptr<AcDbEntity> face(new AcDbFace(HostPoint(corners[0]), HostPoint(corners[1]),
                                                  HostPoint(corners[2]), true, true, true, true));
    if (face == nullptr) throw TamExpNoMem(L"", __LINE__, kSource);
    SetColourAndLayer(*face, colour, layer, database);
    return ARXAddToModelSpace(face.release(), id, true, database);
}

}  // namespace TamLib
