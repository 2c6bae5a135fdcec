// PolyLine written to the drawing.
#include <dbents.h>
#include <dbpl.h>

#include <memory>

#include "GeomEnts/DrawingOutput.h"
#include "GeomStructs/Point3dArrayARX.h"
#include "GeomStructs/WrittenPolyLine.h"

namespace TamLib {
namespace {

constexpr const wchar_t* kSource = L"GeomStructs/PolyLine";

AcGePoint3d HostPoint(const Point3d& p) {
    return {p.x, p.y, p.z};
}

std::unique_ptr<AcDbEntity> LightPolyline(const PolyLine& line) {
    std::unique_ptr<AcDbPolyline> polyline = detail::Allocated(new AcDbPolyline, kSource);
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
        return ClosedLike(line, detail::Allocated(new AcDb2dPolyline(*points, AcDb::k2dSimplePoly,
                                                                     0, false, 0, 0, nullptr),
                                                  kSource));
    return ClosedLike(
        line, detail::Allocated(new AcDb3dPolyline(AcDb::k3dSimplePoly, *points, false), kSource));
}

}  // namespace

int PolyLine::ToDb(int colour, const wchar_t* layer, AcDbObjectId* id, AcDbDatabase* database,
                   int kind) const {
    if (count == 0) return 0;
    std::unique_ptr<AcDbEntity> entity = Entity(detail::Shifted(*this), kind);
    SetColourAndLayer(*entity, colour, layer, database);
    return ARXAddToModelSpace(entity.release(), id, true, database);
}

int PolyLine::ToFace(int colour, const wchar_t* layer, AcDbObjectId* id,
                     AcDbDatabase* database) const {
    if (count != 3 && count != 4) return 3;
    const PolyLine corners = detail::Shifted(*this);
    std::unique_ptr<AcDbEntity> face(new AcDbFace(HostPoint(corners[0]), HostPoint(corners[1]),
                                                  HostPoint(corners[2]), true, true, true, true));
    if (face == nullptr) throw TamExpNoMem(L"", __LINE__, kSource);
    SetColourAndLayer(*face, colour, layer, database);
    return ARXAddToModelSpace(face.release(), id, true, database);
}

}  // namespace TamLib
