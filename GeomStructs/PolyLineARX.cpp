// PolyLine read from drawing entities and shown on the screen.
#include <acedads.h>
#include <dbelipse.h>
#include <dbpl.h>
#include <dbregion.h>
#include <dbspline.h>

#include <cmath>
#include <memory>

#include "GeomStructs/EntityRegions.h"
#include "GeomStructs/OldVerticesARX.h"
#include "GeomStructs/PolyLine.h"
#include "tam/TamExceptions.h"

namespace TamLib {
namespace {

// Splines and ellipses are sampled with a step that counts.
bool IsStep(double step) {
    return std::fabs(step) >= 0.0001 && !(step < 0.0);
}

void AppendVertices(PolyLine& line, const AcDbPolyline& polyline) {
    for (unsigned int i = 0; i < polyline.numVerts(); ++i) {
        AcGePoint3d point;
        if (polyline.getPointAt(i, point) != Acad::eOk)
            throw TamExpAcad(L"LightWeight PolyLine conversion to PolyLine failed!", __LINE__,
                             L"GeomStructs/PolyLine");
        line.Append(ToPoint3d(point));
    }
}

void AppendTwice(PolyLine& line, const AcGePoint3d& position) {
    line.Append(ToPoint3d(position));
    line.Append(ToPoint3d(position));
}

AcDbEntity* OpenForRead(AcDbObjectId id) {
    AcDbObject* object = nullptr;
    if (acdbOpenAcDbObject(object, id, AcDb::kForRead) != Acad::eOk) return nullptr;
    AcDbEntity* const entity = AcDbEntity::cast(object);
    if (entity == nullptr) object->close();
    return entity;
}

}  // namespace

PolyLine::PolyLine(AcDbEntity* entity, int disposal) : PolyLine(10) {
    PolyLine::FromEntity(entity, disposal);
}

PolyLine::PolyLine(AcDbObjectId id) : PolyLine(10) {
    AcDbEntity* const entity = OpenForRead(id);
    if (entity == nullptr) return;
    PolyLine::FromEntity(entity, 1);
    entity->close();  // intended: a second time, its status is ignored
}

PolyLine::PolyLine(AcDbEntity* entity, int disposal, double step, bool adaptive) : PolyLine(10) {
    if (IsStep(step)) {
        FromCurve(entity, disposal, step, adaptive);
    } else {
        PolyLine::FromEntity(entity, disposal);
    }
}

PolyLine::PolyLine(AcDbObjectId id, double step, bool adaptive) : PolyLine(10) {
    AcDbEntity* const entity = OpenForRead(id);
    if (entity == nullptr) return;
    if (IsStep(step)) {
        FromCurve(entity, 1, step, adaptive);
    } else {
        PolyLine::FromEntity(entity, 1);
    }
}

bool PolyLine::IsPolyEntity(AcDbEntity* entity) const {
    return IsAcceptedEntity(entity, /*lineLike=*/true, /*curves=*/false, /*points=*/false);
}

bool PolyLine::IsAcceptedEntity(AcDbEntity* entity, bool lineLike, bool curves, bool points) {
    if (entity == nullptr) return false;
    const AcRxClass* const type = entity->isA();
    if (type == AcDb3dPolyline::desc() || type == AcDb2dPolyline::desc() ||
        type == AcDbPolyline::desc() || type == AcDbRegion::desc())
        return true;
    if (type == AcDbLine::desc()) return lineLike;
    if (type == AcDbPoint::desc()) return lineLike || points;
    if (type == AcDbArc::desc()) return curves && lineLike;
    return curves && (type == AcDbSpline::desc() || type == AcDbCircle::desc() ||
                      type == AcDbEllipse::desc());
}

void PolyLine::FromEntity(AcDbEntity* entity, std::int32_t disposal) {
    if (entity == nullptr) return;
    const AcRxClass* const type = entity->isA();
    std::unique_ptr<AcDbObjectIterator> vertices;  // outlives the disposal
    const auto append = [this](const Point3d& position, double /*bulge*/) { Append(position); };
    bool closed = false;
    if (type == AcDb3dPolyline::desc()) {
        const auto* const polyline = static_cast<AcDb3dPolyline*>(entity);
        vertices.reset(polyline->vertexIterator());
        ForEachVertex<AcDb3dPolylineVertex>(entity, vertices.get(), AcDb::k3dControlVertex, nullptr,
                                            append);
        closed = polyline->isClosed();
    } else if (type == AcDb2dPolyline::desc()) {
        const auto* const polyline = static_cast<AcDb2dPolyline*>(entity);
        const double elevation = polyline->elevation();
        vertices.reset(polyline->vertexIterator());
        ForEachVertex<AcDb2dVertex>(entity, vertices.get(), AcDb::k2dSplineCtlVertex, &elevation,
                                    append);
        closed = polyline->isClosed();
    } else if (type->isDerivedFrom(AcDbPolyline::desc())) {
        const auto* const polyline = static_cast<AcDbPolyline*>(entity);
        AppendVertices(*this, *polyline);
        closed = polyline->isClosed();
    } else if (type->isDerivedFrom(AcDbLine::desc())) {
        Append(ToPoint3d(static_cast<AcDbLine*>(entity)->startPoint()));
        Append(ToPoint3d(static_cast<AcDbLine*>(entity)->endPoint()));
    } else if (type->isDerivedFrom(AcDbPoint::desc())) {
        AppendTwice(*this, static_cast<AcDbPoint*>(entity)->position());
    } else if (type->isDerivedFrom(AcDbBlockReference::desc())) {
        AppendTwice(*this, static_cast<AcDbBlockReference*>(entity)->position());
    } else if (type == AcDbRegion::desc()) {
        ReadRegion(entity, *this);  // the outline repeats its first vertex itself
    } else {
        DisposeOf(entity, disposal == 2 ? 1 : disposal);  // intended: what isn't read isn't erased
        return;
    }
    if (closed) PolyLine::Close();
    DisposeOf(entity, disposal);
}

void PolyLine::Draw(std::int32_t colour) const {
    const auto shifted = [this](std::uint32_t vertex) { return data[vertex] + offset; };
    if (count == 1) {
        const Point3d dot = shifted(0);
        acedGrDraw(&dot.x, &dot.x, colour, 0);
    }
    for (std::uint32_t i = 0; i + 1 < count; ++i) {
        const Point3d from = shifted(i), to = shifted(i + 1);
        acedGrDraw(&from.x, &to.x, colour == -1 ? static_cast<int>(i % 9) + 1 : colour, 0);
    }
}

}  // namespace TamLib
