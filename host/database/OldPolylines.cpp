// Polylines and meshes whose vertices are objects of their own.
#include <dbents.h>

#include <new>

#include "host/database/Fault.h"
#include "host/database/ObjectFields.h"
#include "host/database/ObjectImp.h"
#include "host/database/Setting.h"
#include "host/database/SubEntities.h"

using namespace host::database;

ACRX_NO_CONS_DEFINE_MEMBERS(AcDbVertex, AcDbEntity)
ACRX_DXF_DEFINE_MEMBERS(AcDb2dVertex, AcDbVertex, 0, 0, 0, VERTEX, ObjectDBX)
ACRX_DXF_DEFINE_MEMBERS(AcDb3dPolylineVertex, AcDbVertex, 0, 0, 0, VERTEX, ObjectDBX)
ACRX_DXF_DEFINE_MEMBERS(AcDbPolygonMeshVertex, AcDbVertex, 0, 0, 0, VERTEX, ObjectDBX)
ACRX_DXF_DEFINE_MEMBERS(AcDbPolyFaceMeshVertex, AcDbVertex, 0, 0, 0, VERTEX, ObjectDBX)
ACRX_DXF_DEFINE_MEMBERS(AcDbFaceRecord, AcDbVertex, 0, 0, 0, VERTEX, ObjectDBX)
ACRX_DXF_DEFINE_MEMBERS(AcDb2dPolyline, AcDbCurve, 0, 0, 0, POLYLINE, ObjectDBX)
ACRX_DXF_DEFINE_MEMBERS(AcDb3dPolyline, AcDbCurve, 0, 0, 0, POLYLINE, ObjectDBX)
ACRX_DXF_DEFINE_MEMBERS(AcDbPolygonMesh, AcDbEntity, 0, 0, 0, POLYLINE, ObjectDBX)
ACRX_DXF_DEFINE_MEMBERS(AcDbPolyFaceMesh, AcDbEntity, 0, 0, 0, POLYLINE, ObjectDBX)

namespace {

// Group 75 of a polyline that is splined quadratically; any other one is cubic.
constexpr int kQuadratic = 5;
constexpr int kCubic = 6;

Acad::ErrorStatus makeClosedOrOpen(AcDbCurve& polyline, bool closed) {
    return change<OldPolylineFields>(polyline, [&](OldPolylineFields& fields) {
        fields.flags = closed ? fields.flags | OldPolylineFields::kClosed
                              : fields.flags & ~OldPolylineFields::kClosed;
    });
}

// A mesh's part, and the mesh's count of its kind.
Acad::ErrorStatus appendCounted(AcDbPolyFaceMesh& mesh, AcDbObjectId& id, AcDbVertex* part,
                                int OldPolylineFields::*count) {
    const Acad::ErrorStatus status = appendSubEntity(mesh, id, part);
    if (status != Acad::eOk) return status;
    return change<OldPolylineFields>(mesh, [&](OldPolylineFields& fields) { ++(fields.*count); });
}

}  // namespace

AcDb2dVertex::AcDb2dVertex() {
    impl()->setFields(std::make_unique<VertexFields>());
}
AcDb2dVertex::AcDb2dVertex(const AcGePoint3d& position, double bulge, double startWidth,
                           double endWidth, double /*tangent*/, Adesk::Int32 /*vertexIdentifier*/)
    : AcDb2dVertex() {
    auto& fields = fieldsOf<VertexFields>(*this);
    fields.position = position;
    fields.bulge = bulge;
    fields.startWidth = startWidth;
    fields.endWidth = endWidth;
}
Acad::ErrorStatus AcDb2dVertex::setPosition(const AcGePoint3d& position) {
    HOST_CALL("AcDb2dVertex::setPosition");
    return setPoint<&VertexFields::position>(*this, position);
}
Acad::ErrorStatus AcDb2dVertex::setBulge(double bulge) {
    HOST_CALL("AcDb2dVertex::setBulge");
    return setNumber<&VertexFields::bulge>(*this, bulge);
}
Acad::ErrorStatus AcDb2dVertex::setStartWidth(double width) {
    HOST_CALL("AcDb2dVertex::setStartWidth");
    if (width < 0.0) return Acad::eInvalidInput;
    return setNumber<&VertexFields::startWidth>(*this, width);
}
Acad::ErrorStatus AcDb2dVertex::setEndWidth(double width) {
    HOST_CALL("AcDb2dVertex::setEndWidth");
    if (width < 0.0) return Acad::eInvalidInput;
    return setNumber<&VertexFields::endWidth>(*this, width);
}
AcDb::Vertex2dType AcDb2dVertex::vertexType() const {
    const int flags = fieldsOf<VertexFields>(*this).flags;
    if ((flags & VertexFields::kSplineControl) != 0) return AcDb::k2dSplineCtlVertex;
    if ((flags & VertexFields::kSplineFit) != 0) return AcDb::k2dSplineFitVertex;
    if ((flags & VertexFields::kCurveFit) != 0) return AcDb::k2dCurveFitVertex;
    return AcDb::k2dVertex;
}
AcGePoint3d AcDb2dVertex::position() const {
    return fieldsOf<VertexFields>(*this).position;
}
double AcDb2dVertex::bulge() const {
    return fieldsOf<VertexFields>(*this).bulge;
}
double AcDb2dVertex::startWidth() const {
    return fieldsOf<VertexFields>(*this).startWidth;
}
double AcDb2dVertex::endWidth() const {
    return fieldsOf<VertexFields>(*this).endWidth;
}

AcDb3dPolylineVertex::AcDb3dPolylineVertex() {
    impl()->setFields(std::make_unique<VertexFields>());
    fieldsOf<VertexFields>(*this).flags = VertexFields::kSpace;
}
AcDb3dPolylineVertex::AcDb3dPolylineVertex(const AcGePoint3d& position) : AcDb3dPolylineVertex() {
    fieldsOf<VertexFields>(*this).position = position;
}
Acad::ErrorStatus AcDb3dPolylineVertex::setPosition(const AcGePoint3d& position) {
    HOST_CALL("AcDb3dPolylineVertex::setPosition");
    return setPoint<&VertexFields::position>(*this, position);
}
AcDb::Vertex3dType AcDb3dPolylineVertex::vertexType() const {
    const int flags = fieldsOf<VertexFields>(*this).flags;
    if ((flags & VertexFields::kSplineControl) != 0) return AcDb::k3dControlVertex;
    return (flags & VertexFields::kSplineFit) != 0 ? AcDb::k3dFitVertex : AcDb::k3dSimpleVertex;
}
AcGePoint3d AcDb3dPolylineVertex::position() const {
    return fieldsOf<VertexFields>(*this).position;
}

AcDbPolygonMeshVertex::AcDbPolygonMeshVertex() {
    impl()->setFields(std::make_unique<VertexFields>());
}
AcGePoint3d AcDbPolygonMeshVertex::position() const {
    return fieldsOf<VertexFields>(*this).position;
}

AcDbPolyFaceMeshVertex::AcDbPolyFaceMeshVertex() {
    impl()->setFields(std::make_unique<VertexFields>());
    fieldsOf<VertexFields>(*this).flags = VertexFields::kMesh | VertexFields::kPolyface;
}
AcDbPolyFaceMeshVertex::AcDbPolyFaceMeshVertex(const AcGePoint3d& position)
    : AcDbPolyFaceMeshVertex() {
    fieldsOf<VertexFields>(*this).position = position;
}
Acad::ErrorStatus AcDbPolyFaceMeshVertex::setPosition(const AcGePoint3d& position) {
    HOST_CALL("AcDbPolyFaceMeshVertex::setPosition");
    return setPoint<&VertexFields::position>(*this, position);
}
AcGePoint3d AcDbPolyFaceMeshVertex::position() const {
    return fieldsOf<VertexFields>(*this).position;
}

AcDbFaceRecord::AcDbFaceRecord() {
    impl()->setFields(std::make_unique<VertexFields>());
    fieldsOf<VertexFields>(*this).flags = VertexFields::kPolyface;
}
AcDbFaceRecord::AcDbFaceRecord(Adesk::Int16 vertex0, Adesk::Int16 vertex1, Adesk::Int16 vertex2,
                               Adesk::Int16 vertex3)
    : AcDbFaceRecord() {
    auto& fields = fieldsOf<VertexFields>(*this);
    fields.corner1 = vertex0;
    fields.corner2 = vertex1;
    fields.corner3 = vertex2;
    fields.corner4 = vertex3;
}
Acad::ErrorStatus AcDbFaceRecord::setVertexAt(Adesk::UInt16 corner, Adesk::Int16 vertex) {
    HOST_CALL("AcDbFaceRecord::setVertexAt");
    if (corner >= 4) return Acad::eInvalidIndex;
    return change<VertexFields>(*this, [&](VertexFields& fields) {
        int* const corners[] = {&fields.corner1, &fields.corner2, &fields.corner3, &fields.corner4};
        *corners[corner] = vertex;
    });
}
Acad::ErrorStatus AcDbFaceRecord::getVertexAt(Adesk::UInt16 corner, Adesk::Int16& vertex) const {
    HOST_CALL("AcDbFaceRecord::getVertexAt");
    if (!impl()->mayRead()) return Acad::eNotOpenForRead;
    const auto& fields = fieldsOf<VertexFields>(*this);
    const int corners[] = {fields.corner1, fields.corner2, fields.corner3, fields.corner4};
    if (corner >= 4) return Acad::eInvalidIndex;
    vertex = static_cast<Adesk::Int16>(corners[corner]);
    return Acad::eOk;
}

namespace {

// A vertex of a polyline under construction. It is the host's own, so that no program's call fails
// in its place.
template <class Vertex, class... Arguments>
void addVertex(AcDbImpObject& polyline, const Arguments&... arguments) {
    const host::fault::Quiet quiet;
    auto* const vertex = new Vertex(arguments...);
    if (vertex == nullptr) throw std::bad_alloc();
    polyline.takePart(*vertex);
}

}  // namespace

AcDb2dPolyline::AcDb2dPolyline() {
    impl()->setFields(std::make_unique<OldPolylineFields>());
}
AcDb2dPolyline::AcDb2dPolyline(const AcGePoint3dArray& vertices, AcDb::Poly2dType type,
                               double elevation, Adesk::Boolean closed, double defaultStartWidth,
                               double defaultEndWidth, const AcGeDoubleArray* bulges)
    : AcDb2dPolyline() {
    auto& fields = fieldsOf<OldPolylineFields>(*this);
    fields.origin.z = elevation;
    fields.flags = closed ? OldPolylineFields::kClosed : 0;
    if (type == AcDb::k2dFitCurvePoly) fields.flags |= OldPolylineFields::kCurveFit;
    if (type == AcDb::k2dQuadSplinePoly || type == AcDb::k2dCubicSplinePoly) {
        fields.flags |= OldPolylineFields::kSplineFit;
        fields.smoothType = type == AcDb::k2dQuadSplinePoly ? kQuadratic : kCubic;
    }
    for (int i = 0; i < vertices.length(); ++i) {
        const bool bulged = bulges != nullptr && i < bulges->length();
        const AcGePoint3d position(vertices[i].x, vertices[i].y, elevation);
        addVertex<AcDb2dVertex>(*impl(), position, bulged ? (*bulges)[i] : 0.0, defaultStartWidth,
                                defaultEndWidth);
    }
}
Acad::ErrorStatus AcDb2dPolyline::setElevation(double elevation) {
    HOST_CALL("AcDb2dPolyline::setElevation");
    if (!std::isfinite(elevation)) return Acad::eInvalidInput;
    return change<OldPolylineFields>(
        *this, [&](OldPolylineFields& fields) { fields.origin.z = elevation; });
}
Acad::ErrorStatus AcDb2dPolyline::setThickness(double thickness) {
    HOST_CALL("AcDb2dPolyline::setThickness");
    return setNumber<&OldPolylineFields::thickness>(*this, thickness);
}
Acad::ErrorStatus AcDb2dPolyline::setNormal(const AcGeVector3d& normal) {
    HOST_CALL("AcDb2dPolyline::setNormal");
    return turnPlane<OldPolylineFields>(*this, normal);
}
Acad::ErrorStatus AcDb2dPolyline::makeClosed() {
    HOST_CALL("AcDb2dPolyline::makeClosed");
    return makeClosedOrOpen(*this, true);
}
Acad::ErrorStatus AcDb2dPolyline::makeOpen() {
    HOST_CALL("AcDb2dPolyline::makeOpen");
    return makeClosedOrOpen(*this, false);
}
Acad::ErrorStatus AcDb2dPolyline::appendVertex(AcDb2dVertex* vertex) {
    AcDbObjectId id;
    return appendVertex(id, vertex);
}
Acad::ErrorStatus AcDb2dPolyline::appendVertex(AcDbObjectId& id, AcDb2dVertex* vertex) {
    HOST_CALL("AcDb2dPolyline::appendVertex");
    return appendSubEntity(*this, id, vertex);
}
AcDb::Poly2dType AcDb2dPolyline::polyType() const {
    const auto& fields = fieldsOf<OldPolylineFields>(*this);
    if ((fields.flags & OldPolylineFields::kSplineFit) != 0) {
        return fields.smoothType == kQuadratic ? AcDb::k2dQuadSplinePoly : AcDb::k2dCubicSplinePoly;
    }
    return (fields.flags & OldPolylineFields::kCurveFit) != 0 ? AcDb::k2dFitCurvePoly
                                                              : AcDb::k2dSimplePoly;
}
double AcDb2dPolyline::elevation() const {
    return fieldsOf<OldPolylineFields>(*this).origin.z;
}
double AcDb2dPolyline::thickness() const {
    return fieldsOf<OldPolylineFields>(*this).thickness;
}
AcGeVector3d AcDb2dPolyline::normal() const {
    return fieldsOf<OldPolylineFields>(*this).normal;
}
AcDbObjectIterator* AcDb2dPolyline::vertexIterator() const {
    return newSubEntityIterator(*this, "AcDb2dPolyline::vertexIterator");
}

AcDb3dPolyline::AcDb3dPolyline() {
    impl()->setFields(std::make_unique<OldPolylineFields>());
    fieldsOf<OldPolylineFields>(*this).flags = OldPolylineFields::kSpace;
}
AcDb3dPolyline::AcDb3dPolyline(AcDb::Poly3dType type, const AcGePoint3dArray& vertices,
                               Adesk::Boolean closed)
    : AcDb3dPolyline() {
    auto& fields = fieldsOf<OldPolylineFields>(*this);
    if (closed) fields.flags |= OldPolylineFields::kClosed;
    if (type != AcDb::k3dSimplePoly) {
        fields.flags |= OldPolylineFields::kSplineFit;
        fields.smoothType = type == AcDb::k3dQuadSplinePoly ? kQuadratic : kCubic;
    }
    for (int i = 0; i < vertices.length(); ++i) {
        addVertex<AcDb3dPolylineVertex>(*impl(), vertices[i]);
    }
}
Acad::ErrorStatus AcDb3dPolyline::makeClosed() {
    HOST_CALL("AcDb3dPolyline::makeClosed");
    return makeClosedOrOpen(*this, true);
}
Acad::ErrorStatus AcDb3dPolyline::makeOpen() {
    HOST_CALL("AcDb3dPolyline::makeOpen");
    return makeClosedOrOpen(*this, false);
}
Acad::ErrorStatus AcDb3dPolyline::appendVertex(AcDb3dPolylineVertex* vertex) {
    AcDbObjectId id;
    return appendVertex(id, vertex);
}
Acad::ErrorStatus AcDb3dPolyline::appendVertex(AcDbObjectId& id, AcDb3dPolylineVertex* vertex) {
    HOST_CALL("AcDb3dPolyline::appendVertex");
    return appendSubEntity(*this, id, vertex);
}
AcDb::Poly3dType AcDb3dPolyline::polyType() const {
    const auto& fields = fieldsOf<OldPolylineFields>(*this);
    if ((fields.flags & OldPolylineFields::kSplineFit) == 0) return AcDb::k3dSimplePoly;
    return fields.smoothType == kQuadratic ? AcDb::k3dQuadSplinePoly : AcDb::k3dCubicSplinePoly;
}
AcDbObjectIterator* AcDb3dPolyline::vertexIterator() const {
    return newSubEntityIterator(*this, "AcDb3dPolyline::vertexIterator");
}

AcDbPolygonMesh::AcDbPolygonMesh() {
    impl()->setFields(std::make_unique<OldPolylineFields>());
    fieldsOf<OldPolylineFields>(*this).flags = OldPolylineFields::kPolygonMesh;
}
AcDb::PolyMeshType AcDbPolygonMesh::polyMeshType() const {
    return static_cast<AcDb::PolyMeshType>(fieldsOf<OldPolylineFields>(*this).smoothType);
}
Adesk::Int16 AcDbPolygonMesh::mSize() const {
    return static_cast<Adesk::Int16>(fieldsOf<OldPolylineFields>(*this).countM);
}
Adesk::Int16 AcDbPolygonMesh::nSize() const {
    return static_cast<Adesk::Int16>(fieldsOf<OldPolylineFields>(*this).countN);
}
bool AcDbPolygonMesh::isMClosed() const {
    return (fieldsOf<OldPolylineFields>(*this).flags & OldPolylineFields::kClosed) != 0;
}
bool AcDbPolygonMesh::isNClosed() const {
    return (fieldsOf<OldPolylineFields>(*this).flags & OldPolylineFields::kClosedInN) != 0;
}
AcDbObjectIterator* AcDbPolygonMesh::vertexIterator() const {
    return newSubEntityIterator(*this, "AcDbPolygonMesh::vertexIterator");
}

AcDbPolyFaceMesh::AcDbPolyFaceMesh() {
    impl()->setFields(std::make_unique<OldPolylineFields>());
    fieldsOf<OldPolylineFields>(*this).flags = OldPolylineFields::kPolyface;
}
Acad::ErrorStatus AcDbPolyFaceMesh::appendVertex(AcDbPolyFaceMeshVertex* vertex) {
    AcDbObjectId id;
    return appendVertex(id, vertex);
}
Acad::ErrorStatus AcDbPolyFaceMesh::appendVertex(AcDbObjectId& id, AcDbPolyFaceMeshVertex* vertex) {
    HOST_CALL("AcDbPolyFaceMesh::appendVertex");
    return appendCounted(*this, id, vertex, &OldPolylineFields::countM);
}
Acad::ErrorStatus AcDbPolyFaceMesh::appendFaceRecord(AcDbFaceRecord* face) {
    AcDbObjectId id;
    return appendFaceRecord(id, face);
}
Acad::ErrorStatus AcDbPolyFaceMesh::appendFaceRecord(AcDbObjectId& id, AcDbFaceRecord* face) {
    HOST_CALL("AcDbPolyFaceMesh::appendFaceRecord");
    return appendCounted(*this, id, face, &OldPolylineFields::countN);
}
Adesk::Int16 AcDbPolyFaceMesh::numVertices() const {
    return static_cast<Adesk::Int16>(fieldsOf<OldPolylineFields>(*this).countM);
}
Adesk::Int16 AcDbPolyFaceMesh::numFaces() const {
    return static_cast<Adesk::Int16>(fieldsOf<OldPolylineFields>(*this).countN);
}
AcDbObjectIterator* AcDbPolyFaceMesh::vertexIterator() const {
    return newSubEntityIterator(*this, "AcDbPolyFaceMesh::vertexIterator");
}
