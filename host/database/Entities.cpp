// Simple entities: what their fields say, in world coordinates.
#include <dbelipse.h>
#include <dbents.h>
#include <dbpl.h>
#include <dbregion.h>
#include <dbspline.h>

#include <algorithm>

#include "host/database/Fault.h"
#include "host/database/ObjectFields.h"
#include "host/database/ObjectImp.h"

using namespace host::database;

ACRX_DXF_DEFINE_MEMBERS(AcDbLine, AcDbCurve, 0, 0, 0, LINE, ObjectDBX)
ACRX_DXF_DEFINE_MEMBERS(AcDbPoint, AcDbEntity, 0, 0, 0, POINT, ObjectDBX)
ACRX_DXF_DEFINE_MEMBERS(AcDbCircle, AcDbCurve, 0, 0, 0, CIRCLE, ObjectDBX)
ACRX_DXF_DEFINE_MEMBERS(AcDbArc, AcDbCurve, 0, 0, 0, ARC, ObjectDBX)
ACRX_DXF_DEFINE_MEMBERS(AcDbEllipse, AcDbCurve, 0, 0, 0, ELLIPSE, ObjectDBX)
ACRX_DXF_DEFINE_MEMBERS(AcDbSpline, AcDbCurve, 0, 0, 0, SPLINE, ObjectDBX)
ACRX_DXF_DEFINE_MEMBERS(AcDbPolyline, AcDbCurve, 0, 0, 0, LWPOLYLINE, ObjectDBX)
ACRX_DXF_DEFINE_MEMBERS(AcDbRegion, AcDbEntity, 0, 0, 0, REGION, ObjectDBX)
ACRX_DXF_DEFINE_MEMBERS(AcDbFace, AcDbEntity, 0, 0, 0, 3DFACE, ObjectDBX)
ACRX_DXF_DEFINE_MEMBERS(AcDbTrace, AcDbEntity, 0, 0, 0, TRACE, ObjectDBX)
ACRX_DXF_DEFINE_MEMBERS(AcDbSolid, AcDbEntity, 0, 0, 0, SOLID, ObjectDBX)

namespace {

constexpr int kCorners = 4;

AcGePoint3d inWorld(const AcGeVector3d& normal, const AcGePoint3d& point) {
    return AcGeMatrix3d::planeToWorld(normal) * point;
}

Acad::ErrorStatus cornerOf(const AcDbEntity& entity, Adesk::UInt16 corner, bool inPlane,
                           AcGePoint3d& point) {
    if (!entity.impl()->mayRead()) return Acad::eNotOpenForRead;
    if (corner >= kCorners) return Acad::eInvalidIndex;
    const auto& fields = fieldsOf<CornerFields>(entity);
    const AcGePoint3d& own = fields.corner(corner);
    point = inPlane ? inWorld(fields.normal, own) : own;
    return Acad::eOk;
}

Acad::ErrorStatus pointOf(const AcDbEntity& entity, const std::vector<AcGePoint3d>& points,
                          int index, AcGePoint3d& point) {
    if (!entity.impl()->mayRead()) return Acad::eNotOpenForRead;
    if (index < 0 || static_cast<std::size_t>(index) >= points.size()) return Acad::eInvalidIndex;
    point = points[static_cast<std::size_t>(index)];
    return Acad::eOk;
}

}  // namespace

AcDbLine::AcDbLine() {
    impl()->setFields(std::make_unique<LineFields>());
}
AcGePoint3d AcDbLine::startPoint() const {
    return fieldsOf<LineFields>(*this).start;
}
AcGePoint3d AcDbLine::endPoint() const {
    return fieldsOf<LineFields>(*this).end;
}
double AcDbLine::thickness() const {
    return fieldsOf<LineFields>(*this).thickness;
}
AcGeVector3d AcDbLine::normal() const {
    return fieldsOf<LineFields>(*this).normal;
}

AcDbPoint::AcDbPoint() {
    impl()->setFields(std::make_unique<PointFields>());
}
AcGePoint3d AcDbPoint::position() const {
    return fieldsOf<PointFields>(*this).position;
}
double AcDbPoint::thickness() const {
    return fieldsOf<PointFields>(*this).thickness;
}
AcGeVector3d AcDbPoint::normal() const {
    return fieldsOf<PointFields>(*this).normal;
}

AcDbCircle::AcDbCircle() {
    impl()->setFields(std::make_unique<CircleFields>());
}
AcGePoint3d AcDbCircle::center() const {
    const auto& fields = fieldsOf<CircleFields>(*this);
    return inWorld(fields.normal, fields.center);
}
double AcDbCircle::radius() const {
    return fieldsOf<CircleFields>(*this).radius;
}
double AcDbCircle::thickness() const {
    return fieldsOf<CircleFields>(*this).thickness;
}
AcGeVector3d AcDbCircle::normal() const {
    return fieldsOf<CircleFields>(*this).normal;
}

AcDbArc::AcDbArc() {
    impl()->setFields(std::make_unique<ArcFields>());
}
AcGePoint3d AcDbArc::center() const {
    const auto& fields = fieldsOf<ArcFields>(*this);
    return inWorld(fields.normal, fields.center);
}
double AcDbArc::radius() const {
    return fieldsOf<ArcFields>(*this).radius;
}
double AcDbArc::startAngle() const {
    return fieldsOf<ArcFields>(*this).startAngle;
}
double AcDbArc::endAngle() const {
    return fieldsOf<ArcFields>(*this).endAngle;
}
double AcDbArc::thickness() const {
    return fieldsOf<ArcFields>(*this).thickness;
}
AcGeVector3d AcDbArc::normal() const {
    return fieldsOf<ArcFields>(*this).normal;
}

AcDbEllipse::AcDbEllipse() {
    impl()->setFields(std::make_unique<EllipseFields>());
}
AcGePoint3d AcDbEllipse::center() const {
    return fieldsOf<EllipseFields>(*this).center;
}
AcGeVector3d AcDbEllipse::normal() const {
    return fieldsOf<EllipseFields>(*this).normal;
}
AcGeVector3d AcDbEllipse::majorAxis() const {
    return fieldsOf<EllipseFields>(*this).major;
}
AcGeVector3d AcDbEllipse::minorAxis() const {
    return fieldsOf<EllipseFields>(*this).minor();
}
double AcDbEllipse::radiusRatio() const {
    return fieldsOf<EllipseFields>(*this).ratio;
}
double AcDbEllipse::startParam() const {
    return fieldsOf<EllipseFields>(*this).start;
}
double AcDbEllipse::endParam() const {
    return fieldsOf<EllipseFields>(*this).endAbove();
}

AcDbSpline::AcDbSpline() {
    impl()->setFields(std::make_unique<SplineFields>());
}
Adesk::Boolean AcDbSpline::isRational() const {
    return !fieldsOf<SplineFields>(*this).weights.empty();
}
int AcDbSpline::degree() const {
    return fieldsOf<SplineFields>(*this).degree;
}
int AcDbSpline::numControlPoints() const {
    return static_cast<int>(fieldsOf<SplineFields>(*this).controlPoints.size());
}
int AcDbSpline::numFitPoints() const {
    return static_cast<int>(fieldsOf<SplineFields>(*this).fitPoints.size());
}
Acad::ErrorStatus AcDbSpline::getControlPointAt(int index, AcGePoint3d& point) const {
    HOST_CALL("AcDbSpline::getControlPointAt");
    return pointOf(*this, fieldsOf<SplineFields>(*this).controlPoints, index, point);
}
Acad::ErrorStatus AcDbSpline::getFitPointAt(int index, AcGePoint3d& point) const {
    HOST_CALL("AcDbSpline::getFitPointAt");
    return pointOf(*this, fieldsOf<SplineFields>(*this).fitPoints, index, point);
}

AcDbPolyline::AcDbPolyline() {
    impl()->setFields(std::make_unique<PolylineFields>());
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

AcDbRegion::AcDbRegion() = default;

AcDbFace::AcDbFace() {
    impl()->setFields(std::make_unique<CornerFields>());
}
Acad::ErrorStatus AcDbFace::getVertexAt(Adesk::UInt16 corner, AcGePoint3d& point) const {
    HOST_CALL("AcDbFace::getVertexAt");
    return cornerOf(*this, corner, false, point);
}
Acad::ErrorStatus AcDbFace::isEdgeVisibleAt(Adesk::UInt16 edge, Adesk::Boolean& visible) const {
    HOST_CALL("AcDbFace::isEdgeVisibleAt");
    if (!impl()->mayRead()) return Acad::eNotOpenForRead;
    if (edge >= kCorners) return Acad::eInvalidIndex;
    visible = (fieldsOf<CornerFields>(*this).hiddenEdges & (1 << edge)) == 0;
    return Acad::eOk;
}

AcDbTrace::AcDbTrace() {
    impl()->setFields(std::make_unique<CornerFields>());
}
Acad::ErrorStatus AcDbTrace::getPointAt(Adesk::UInt16 corner, AcGePoint3d& point) const {
    HOST_CALL("AcDbTrace::getPointAt");
    return cornerOf(*this, corner, true, point);
}
double AcDbTrace::thickness() const {
    return fieldsOf<CornerFields>(*this).thickness;
}
AcGeVector3d AcDbTrace::normal() const {
    return fieldsOf<CornerFields>(*this).normal;
}

AcDbSolid::AcDbSolid() {
    impl()->setFields(std::make_unique<CornerFields>());
}
Acad::ErrorStatus AcDbSolid::getPointAt(Adesk::UInt16 corner, AcGePoint3d& point) const {
    HOST_CALL("AcDbSolid::getPointAt");
    return cornerOf(*this, corner, true, point);
}
double AcDbSolid::thickness() const {
    return fieldsOf<CornerFields>(*this).thickness;
}
AcGeVector3d AcDbSolid::normal() const {
    return fieldsOf<CornerFields>(*this).normal;
}
