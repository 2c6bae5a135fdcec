// AcDbPolyline: the light polyline, whose vertices are fields of its own.
#include <dbpl.h>

#include <algorithm>
#include <cmath>

#include "host/database/Fault.h"
#include "host/database/ObjectFields.h"
#include "host/database/ObjectImp.h"
#include "host/database/Setting.h"

using namespace host::database;

ACRX_DXF_DEFINE_MEMBERS(AcDbPolyline, AcDbCurve, 0, 0, 0, LWPOLYLINE, ObjectDBX)

namespace {

using Vertices = std::vector<PolylineFields::Vertex>;

bool isFinite(const PolylineFields::Vertex& v) {
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.bulge) &&
           std::isfinite(v.startWidth) && std::isfinite(v.endWidth);
}

template <class Change>
Acad::ErrorStatus changeVertices(AcDbPolyline& polyline, Change change) {
    if (polyline.impl()->isFromDrawing()) return Acad::eNotImplementedYet;
    return host::database::change<PolylineFields>(
        polyline, [&](PolylineFields& fields) { change(fields.vertices); });
}

}  // namespace

AcDbPolyline::AcDbPolyline() {
    impl()->setFields(std::make_unique<PolylineFields>());
}
AcDbPolyline::AcDbPolyline(unsigned int vertexCount) : AcDbPolyline() {
    fieldsOf<PolylineFields>(*this).vertices.reserve(vertexCount);
}
unsigned int AcDbPolyline::numVerts() const {
    return static_cast<unsigned int>(fieldsOf<PolylineFields>(*this).vertices.size());
}
Acad::ErrorStatus AcDbPolyline::getPointAt(unsigned int index, AcGePoint3d& point) const {
    HOST_CALL("AcDbPolyline::getPointAt");
    if (!impl()->mayRead()) return Acad::eNotOpenForRead;
    const auto& fields = fieldsOf<PolylineFields>(*this);
    if (index >= fields.vertices.size()) return Acad::eInvalidIndex;
    const auto& vertex = fields.vertices[index];
    point = inWorld(fields.normal, {vertex.x, vertex.y, fields.elevation});
    return Acad::eOk;
}
Acad::ErrorStatus AcDbPolyline::getPointAt(unsigned int index, AcGePoint2d& point) const {
    HOST_CALL("AcDbPolyline::getPointAt");
    if (!impl()->mayRead()) return Acad::eNotOpenForRead;
    const auto& vertices = fieldsOf<PolylineFields>(*this).vertices;
    if (index >= vertices.size()) return Acad::eInvalidIndex;
    point = AcGePoint2d(vertices[index].x, vertices[index].y);
    return Acad::eOk;
}
Acad::ErrorStatus AcDbPolyline::getBulgeAt(unsigned int index, double& bulge) const {
    HOST_CALL("AcDbPolyline::getBulgeAt");
    if (!impl()->mayRead()) return Acad::eNotOpenForRead;
    const auto& vertices = fieldsOf<PolylineFields>(*this).vertices;
    if (index >= vertices.size()) return Acad::eInvalidIndex;
    bulge = vertices[index].bulge;
    return Acad::eOk;
}
Adesk::Boolean AcDbPolyline::hasBulges() const {
    const auto& vertices = fieldsOf<PolylineFields>(*this).vertices;
    return std::any_of(vertices.begin(), vertices.end(),
                       [](const PolylineFields::Vertex& v) { return v.bulge != 0.0; });
}
double AcDbPolyline::elevation() const {
    return fieldsOf<PolylineFields>(*this).elevation;
}
double AcDbPolyline::thickness() const {
    return fieldsOf<PolylineFields>(*this).thickness;
}
AcGeVector3d AcDbPolyline::normal() const {
    return fieldsOf<PolylineFields>(*this).normal;
}
double AcDbPolyline::getConstantWidth() const {
    return fieldsOf<PolylineFields>(*this).constantWidth;
}

Acad::ErrorStatus AcDbPolyline::addVertexAt(unsigned int index, const AcGePoint2d& point,
                                            double bulge, double startWidth, double endWidth,
                                            Adesk::Int32 /*vertexIdentifier*/) {
    HOST_CALL("AcDbPolyline::addVertexAt");
    if (index > numVerts()) return Acad::eInvalidIndex;
    const PolylineFields::Vertex vertex{point.x, point.y, bulge, std::max(startWidth, 0.0),
                                        std::max(endWidth, 0.0)};
    if (!isFinite(vertex)) return Acad::eInvalidInput;
    return changeVertices(*this, [&](Vertices& vertices) {
        vertices.insert(vertices.begin() + static_cast<std::ptrdiff_t>(index), vertex);
    });
}
Acad::ErrorStatus AcDbPolyline::removeVertexAt(unsigned int index) {
    HOST_CALL("AcDbPolyline::removeVertexAt");
    if (index >= numVerts()) return Acad::eInvalidIndex;
    if (numVerts() <= 2) return Acad::eDegenerateGeometry;
    return changeVertices(*this, [&](Vertices& vertices) {
        vertices.erase(vertices.begin() + static_cast<std::ptrdiff_t>(index));
    });
}
Acad::ErrorStatus AcDbPolyline::setPointAt(unsigned int index, const AcGePoint2d& point) {
    HOST_CALL("AcDbPolyline::setPointAt");
    if (index >= numVerts()) return Acad::eInvalidIndex;
    if (!std::isfinite(point.x) || !std::isfinite(point.y)) return Acad::eInvalidInput;
    return changeVertices(*this, [&](Vertices& vertices) {
        vertices[index].x = point.x;
        vertices[index].y = point.y;
    });
}
Acad::ErrorStatus AcDbPolyline::setBulgeAt(unsigned int index, double bulge) {
    HOST_CALL("AcDbPolyline::setBulgeAt");
    if (index >= numVerts()) return Acad::eInvalidIndex;
    if (!std::isfinite(bulge)) return Acad::eInvalidInput;
    return changeVertices(*this, [&](Vertices& vertices) { vertices[index].bulge = bulge; });
}
Acad::ErrorStatus AcDbPolyline::getWidthsAt(unsigned int index, double& startWidth,
                                            double& endWidth) const {
    HOST_CALL("AcDbPolyline::getWidthsAt");
    if (!impl()->mayRead()) return Acad::eNotOpenForRead;
    const auto& vertices = fieldsOf<PolylineFields>(*this).vertices;
    if (index >= vertices.size()) return Acad::eInvalidIndex;
    startWidth = vertices[index].startWidth;
    endWidth = vertices[index].endWidth;
    return Acad::eOk;
}
Acad::ErrorStatus AcDbPolyline::setWidthsAt(unsigned int index, double startWidth,
                                            double endWidth) {
    HOST_CALL("AcDbPolyline::setWidthsAt");
    if (index >= numVerts()) return Acad::eInvalidIndex;
    const bool usable = std::isfinite(startWidth) && std::isfinite(endWidth) && startWidth >= 0.0 &&
                        endWidth >= 0.0;
    if (!usable) return Acad::eInvalidInput;
    return changeVertices(*this, [&](Vertices& vertices) {
        vertices[index].startWidth = startWidth;
        vertices[index].endWidth = endWidth;
    });
}
void AcDbPolyline::setClosed(Adesk::Boolean closed) {
    change<PolylineFields>(*this, [&](PolylineFields& fields) {
        fields.flags = closed ? fields.flags | PolylineFields::kClosed
                              : fields.flags & ~PolylineFields::kClosed;
    });
}
Acad::ErrorStatus AcDbPolyline::setElevation(double elevation) {
    HOST_CALL("AcDbPolyline::setElevation");
    return setNumber<&PolylineFields::elevation>(*this, elevation);
}
Acad::ErrorStatus AcDbPolyline::setThickness(double thickness) {
    HOST_CALL("AcDbPolyline::setThickness");
    return setNumber<&PolylineFields::thickness>(*this, thickness);
}
Acad::ErrorStatus AcDbPolyline::setNormal(const AcGeVector3d& normal) {
    HOST_CALL("AcDbPolyline::setNormal");
    return turnPlane<PolylineFields>(*this, normal);
}
Acad::ErrorStatus AcDbPolyline::setConstantWidth(double width) {
    HOST_CALL("AcDbPolyline::setConstantWidth");
    if (width < 0.0) return Acad::eInvalidInput;
    return setNumber<&PolylineFields::constantWidth>(*this, width);
}
