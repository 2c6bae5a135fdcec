// Polylines and meshes whose vertices are objects of their own.
#include <dbents.h>

#include "host/database/Fault.h"
#include "host/database/ObjectFields.h"
#include "host/database/ObjectImp.h"
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

}  // namespace

AcDb2dVertex::AcDb2dVertex() {
    impl()->setFields(std::make_unique<VertexFields>());
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
}
AcGePoint3d AcDbPolyFaceMeshVertex::position() const {
    return fieldsOf<VertexFields>(*this).position;
}

AcDbFaceRecord::AcDbFaceRecord() {
    impl()->setFields(std::make_unique<VertexFields>());
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

AcDb2dPolyline::AcDb2dPolyline() {
    impl()->setFields(std::make_unique<OldPolylineFields>());
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
Adesk::Int16 AcDbPolyFaceMesh::numVertices() const {
    return static_cast<Adesk::Int16>(fieldsOf<OldPolylineFields>(*this).countM);
}
Adesk::Int16 AcDbPolyFaceMesh::numFaces() const {
    return static_cast<Adesk::Int16>(fieldsOf<OldPolylineFields>(*this).countN);
}
AcDbObjectIterator* AcDbPolyFaceMesh::vertexIterator() const {
    return newSubEntityIterator(*this, "AcDbPolyFaceMesh::vertexIterator");
}
