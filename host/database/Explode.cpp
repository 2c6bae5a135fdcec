// Block references taken apart into entities of their own.
#include <dbents.h>
#include <dbpl.h>
#include <dbptrar.h>

#include <cmath>
#include <memory>

#include "host/database/Drawing.h"
#include "host/database/Fault.h"

using namespace host::database;

namespace {

constexpr int deepestBlock = 64;  // a broken drawing may hold a block within itself

using Part = std::unique_ptr<AcDbEntity>;

Part movedLine(const AcDbLine& line, const AcGeMatrix3d& move) {
    return std::make_unique<AcDbLine>(move * line.startPoint(), move * line.endPoint());
}

Part movedPoint(const AcDbPoint& point, const AcGeMatrix3d& move) {
    return std::make_unique<AcDbPoint>(move * point.position());
}

// Whether arcs of a plane with these axes stay arcs.
bool keepsCircles(const AcGeVector3d& x, const AcGeVector3d& y) {
    const double size = x.length();
    return std::fabs(size - y.length()) <= 1e-9 * size &&
           std::fabs(x.dotProduct(y)) <= 1e-9 * size * size;
}

Part movedPolyline(const AcDbPolyline& polyline, const AcGeMatrix3d& move) {
    const AcGeMatrix3d plane = move * AcGeMatrix3d::planeToWorld(polyline.normal());
    const AcGeVector3d x = plane * AcGeVector3d::kXAxis, y = plane * AcGeVector3d::kYAxis;
    if (polyline.hasBulges() && !keepsCircles(x, y)) return nullptr;
    const AcGeVector3d normal = x.crossProduct(y);
    if (normal.isZeroLength()) return nullptr;
    const AcGeMatrix3d toPlane = AcGeMatrix3d::worldToPlane(normal) * move;
    auto moved = std::make_unique<AcDbPolyline>(polyline.numVerts());
    moved->setNormal(normal.normal());
    for (unsigned i = 0; i < polyline.numVerts(); ++i) {
        AcGePoint3d vertex;
        double bulge = 0.0;
        polyline.getPointAt(i, vertex);
        polyline.getBulgeAt(i, bulge);
        vertex = toPlane * vertex;
        if (i == 0) moved->setElevation(vertex.z);
        moved->addVertexAt(i, AcGePoint2d(vertex.x, vertex.y), bulge);
    }
    moved->setClosed(polyline.isClosed());
    return moved;
}

Part moved(const AcDbEntity& entity, const AcGeMatrix3d& move) {
    if (const auto* line = AcDbLine::cast(&entity)) return movedLine(*line, move);
    if (const auto* point = AcDbPoint::cast(&entity)) return movedPoint(*point, move);
    if (const auto* polyline = AcDbPolyline::cast(&entity)) return movedPolyline(*polyline, move);
    return nullptr;
}

void appendContent(const AcDbBlockReference& reference, const AcGeMatrix3d& move,
                   AcDbVoidPtrArray& entities, int depth) {
    if (depth == deepestBlock) return;
    const AcGeMatrix3d inside = move * reference.blockTransform();
    for (const AcDbObjectId id : blockIds(reference.blockTableRecord())) {
        AcDbEntity* entity = nullptr;
        if (acdbOpenAcDbEntity(entity, id, AcDb::kForRead) != Acad::eOk) continue;
        if (const auto* nested = AcDbBlockReference::cast(entity)) {
            appendContent(*nested, inside, entities, depth + 1);
        } else if (Part part = moved(*entity, inside)) {
            part->setLayer(entity->layerId());
            part->setColorIndex(entity->colorIndex());
            entities.append(part.release());
        }
        entity->close();
    }
}

}  // namespace

Acad::ErrorStatus AcDbEntity::explode(AcDbVoidPtrArray& entities) const {
    HOST_CALL("AcDbEntity::explode");
    static_cast<void>(entities);
    return Acad::eNotApplicable;
}

Acad::ErrorStatus AcDbBlockReference::explode(AcDbVoidPtrArray& entities) const {
    HOST_CALL("AcDbBlockReference::explode");
    appendContent(*this, AcGeMatrix3d::kIdentity, entities, 0);
    return Acad::eOk;
}
