// Simple entities: what their fields say, in world coordinates.
#include <dbelipse.h>
#include <dbents.h>
#include <dbspline.h>

#include "host/database/Fault.h"
#include "host/database/ObjectFields.h"
#include "host/database/ObjectImp.h"
#include "host/database/Setting.h"

using namespace host::database;

ACRX_DXF_DEFINE_MEMBERS(AcDbLine, AcDbCurve, 0, 0, 0, LINE, ObjectDBX)
ACRX_DXF_DEFINE_MEMBERS(AcDbPoint, AcDbEntity, 0, 0, 0, POINT, ObjectDBX)
ACRX_DXF_DEFINE_MEMBERS(AcDbCircle, AcDbCurve, 0, 0, 0, CIRCLE, ObjectDBX)
ACRX_DXF_DEFINE_MEMBERS(AcDbArc, AcDbCurve, 0, 0, 0, ARC, ObjectDBX)
ACRX_DXF_DEFINE_MEMBERS(AcDbEllipse, AcDbCurve, 0, 0, 0, ELLIPSE, ObjectDBX)
ACRX_DXF_DEFINE_MEMBERS(AcDbSpline, AcDbCurve, 0, 0, 0, SPLINE, ObjectDBX)
ACRX_DXF_DEFINE_MEMBERS(AcDbFace, AcDbEntity, 0, 0, 0, 3DFACE, ObjectDBX)
ACRX_DXF_DEFINE_MEMBERS(AcDbTrace, AcDbEntity, 0, 0, 0, TRACE, ObjectDBX)
ACRX_DXF_DEFINE_MEMBERS(AcDbSolid, AcDbEntity, 0, 0, 0, SOLID, ObjectDBX)

namespace {

constexpr int kCorners = 4;

Acad::ErrorStatus cornerOf(const AcDbEntity& entity, Adesk::UInt16 corner, bool planar,
                           AcGePoint3d& point) {
    if (!entity.impl()->mayRead()) return Acad::eNotOpenForRead;
    if (corner >= kCorners) return Acad::eInvalidIndex;
    const auto& fields = fieldsOf<CornerFields>(entity);
    const AcGePoint3d& own = fields.corner(corner);
    point = planar ? inWorld(fields.normal, own) : own;
    return Acad::eOk;
}

Acad::ErrorStatus setCorner(AcDbEntity& entity, Adesk::UInt16 corner, const AcGePoint3d& point) {
    if (corner >= kCorners) return Acad::eInvalidIndex;
    if (!isFinite(point)) return Acad::eInvalidInput;
    return change<CornerFields>(entity, [&](CornerFields& fields) {
        AcGePoint3d* const corners[] = {&fields.corner1, &fields.corner2, &fields.corner3,
                                        &fields.corner4};
        *corners[corner] = point;
    });
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
AcDbLine::AcDbLine(const AcGePoint3d& start, const AcGePoint3d& end) : AcDbLine() {
    auto& fields = fieldsOf<LineFields>(*this);
    fields.start = start;
    fields.end = end;
}
Acad::ErrorStatus AcDbLine::setStartPoint(const AcGePoint3d& point) {
    HOST_CALL("AcDbLine::setStartPoint");
    return setPoint<&LineFields::start>(*this, point);
}
Acad::ErrorStatus AcDbLine::setEndPoint(const AcGePoint3d& point) {
    HOST_CALL("AcDbLine::setEndPoint");
    return setPoint<&LineFields::end>(*this, point);
}
Acad::ErrorStatus AcDbLine::setThickness(double thickness) {
    HOST_CALL("AcDbLine::setThickness");
    return setNumber<&LineFields::thickness>(*this, thickness);
}
Acad::ErrorStatus AcDbLine::setNormal(const AcGeVector3d& normal) {
    HOST_CALL("AcDbLine::setNormal");
    return turnPlane<LineFields>(*this, normal);
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
AcDbPoint::AcDbPoint(const AcGePoint3d& position) : AcDbPoint() {
    fieldsOf<PointFields>(*this).position = position;
}
Acad::ErrorStatus AcDbPoint::setPosition(const AcGePoint3d& position) {
    HOST_CALL("AcDbPoint::setPosition");
    return setPoint<&PointFields::position>(*this, position);
}
Acad::ErrorStatus AcDbPoint::setThickness(double thickness) {
    HOST_CALL("AcDbPoint::setThickness");
    return setNumber<&PointFields::thickness>(*this, thickness);
}
Acad::ErrorStatus AcDbPoint::setNormal(const AcGeVector3d& normal) {
    HOST_CALL("AcDbPoint::setNormal");
    return turnPlane<PointFields>(*this, normal);
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
AcDbCircle::AcDbCircle(const AcGePoint3d& center, const AcGeVector3d& normal, double radius)
    : AcDbCircle() {
    auto& fields = fieldsOf<CircleFields>(*this);
    fields.normal = normal.normal();
    fields.center = inPlane(fields.normal, center);
    fields.radius = radius;
}
Acad::ErrorStatus AcDbCircle::setCenter(const AcGePoint3d& center) {
    HOST_CALL("AcDbCircle::setCenter");
    return setPlanePoint<&CircleFields::center>(*this, center);
}
Acad::ErrorStatus AcDbCircle::setRadius(double radius) {
    HOST_CALL("AcDbCircle::setRadius");
    if (radius < 0.0) return Acad::eInvalidInput;
    return setNumber<&CircleFields::radius>(*this, radius);
}
Acad::ErrorStatus AcDbCircle::setThickness(double thickness) {
    HOST_CALL("AcDbCircle::setThickness");
    return setNumber<&CircleFields::thickness>(*this, thickness);
}
Acad::ErrorStatus AcDbCircle::setNormal(const AcGeVector3d& normal) {
    HOST_CALL("AcDbCircle::setNormal");
    return turnPlane<&CircleFields::center>(*this, normal);
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
AcDbArc::AcDbArc(const AcGePoint3d& center, double radius, double startAngle, double endAngle)
    : AcDbArc(center, AcGeVector3d::kZAxis, radius, startAngle, endAngle) {}
AcDbArc::AcDbArc(const AcGePoint3d& center, const AcGeVector3d& normal, double radius,
                 double startAngle, double endAngle)
    : AcDbArc() {
    auto& fields = fieldsOf<ArcFields>(*this);
    fields.normal = normal.normal();
    fields.center = inPlane(fields.normal, center);
    fields.radius = radius;
    fields.startAngle = startAngle;
    fields.endAngle = endAngle;
}
Acad::ErrorStatus AcDbArc::setStartAngle(double angle) {
    HOST_CALL("AcDbArc::setStartAngle");
    return setNumber<&ArcFields::startAngle>(*this, angle);
}
Acad::ErrorStatus AcDbArc::setEndAngle(double angle) {
    HOST_CALL("AcDbArc::setEndAngle");
    return setNumber<&ArcFields::endAngle>(*this, angle);
}
Acad::ErrorStatus AcDbArc::setCenter(const AcGePoint3d& center) {
    HOST_CALL("AcDbArc::setCenter");
    return setPlanePoint<&ArcFields::center>(*this, center);
}
Acad::ErrorStatus AcDbArc::setRadius(double radius) {
    HOST_CALL("AcDbArc::setRadius");
    if (radius < 0.0) return Acad::eInvalidInput;
    return setNumber<&ArcFields::radius>(*this, radius);
}
Acad::ErrorStatus AcDbArc::setThickness(double thickness) {
    HOST_CALL("AcDbArc::setThickness");
    return setNumber<&ArcFields::thickness>(*this, thickness);
}
Acad::ErrorStatus AcDbArc::setNormal(const AcGeVector3d& normal) {
    HOST_CALL("AcDbArc::setNormal");
    return turnPlane<&ArcFields::center>(*this, normal);
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
AcDbEllipse::AcDbEllipse(const AcGePoint3d& center, const AcGeVector3d& unitNormal,
                         const AcGeVector3d& majorAxis, double radiusRatio, double startAngle,
                         double endAngle)
    : AcDbEllipse() {
    auto& fields = fieldsOf<EllipseFields>(*this);
    fields.center = center;
    fields.normal = unitNormal.normal();
    fields.major = majorAxis;
    fields.ratio = radiusRatio;
    fields.start = startAngle;
    fields.end = endAngle;
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

AcDbFace::AcDbFace() {
    impl()->setFields(std::make_unique<CornerFields>());
}
AcDbFace::AcDbFace(const AcGePoint3d& point0, const AcGePoint3d& point1, const AcGePoint3d& point2,
                   const AcGePoint3d& point3, Adesk::Boolean edge0Visible,
                   Adesk::Boolean edge1Visible, Adesk::Boolean edge2Visible,
                   Adesk::Boolean edge3Visible)
    : AcDbFace() {
    auto& fields = fieldsOf<CornerFields>(*this);
    fields.corner1 = point0;
    fields.corner2 = point1;
    fields.corner3 = point2;
    fields.corner4 = point3;
    fields.hiddenEdges = (edge0Visible ? 0 : 1) | (edge1Visible ? 0 : 2) | (edge2Visible ? 0 : 4) |
                         (edge3Visible ? 0 : 8);
}
AcDbFace::AcDbFace(const AcGePoint3d& point0, const AcGePoint3d& point1, const AcGePoint3d& point2,
                   Adesk::Boolean edge0Visible, Adesk::Boolean edge1Visible,
                   Adesk::Boolean edge2Visible, Adesk::Boolean edge3Visible)
    : AcDbFace(point0, point1, point2, point2, edge0Visible, edge1Visible, edge2Visible,
               edge3Visible) {}
Acad::ErrorStatus AcDbFace::setVertexAt(Adesk::UInt16 corner, const AcGePoint3d& point) {
    HOST_CALL("AcDbFace::setVertexAt");
    return setCorner(*this, corner, point);
}
Acad::ErrorStatus AcDbFace::makeEdgeVisibleAt(Adesk::UInt16 edge) {
    HOST_CALL("AcDbFace::makeEdgeVisibleAt");
    if (edge >= kCorners) return Acad::eInvalidIndex;
    return change<CornerFields>(*this, [&](CornerFields& f) { f.hiddenEdges &= ~(1 << edge); });
}
Acad::ErrorStatus AcDbFace::makeEdgeInvisibleAt(Adesk::UInt16 edge) {
    HOST_CALL("AcDbFace::makeEdgeInvisibleAt");
    if (edge >= kCorners) return Acad::eInvalidIndex;
    return change<CornerFields>(*this, [&](CornerFields& f) { f.hiddenEdges |= 1 << edge; });
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
    fieldsOf<CornerFields>(*this).kind = CornerFields::Kind::trace;
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
    fieldsOf<CornerFields>(*this).kind = CornerFields::Kind::solid;
}
AcDbSolid::AcDbSolid(const AcGePoint3d& point0, const AcGePoint3d& point1,
                     const AcGePoint3d& point2, const AcGePoint3d& point3)
    : AcDbSolid() {
    auto& fields = fieldsOf<CornerFields>(*this);
    fields.corner1 = point0;
    fields.corner2 = point1;
    fields.corner3 = point2;
    fields.corner4 = point3;
}
AcDbSolid::AcDbSolid(const AcGePoint3d& point0, const AcGePoint3d& point1,
                     const AcGePoint3d& point2)
    : AcDbSolid(point0, point1, point2, point2) {}
Acad::ErrorStatus AcDbSolid::setPointAt(Adesk::UInt16 corner, const AcGePoint3d& point) {
    HOST_CALL("AcDbSolid::setPointAt");
    return setCorner(*this, corner, inPlane(fieldsOf<CornerFields>(*this).normal, point));
}
Acad::ErrorStatus AcDbSolid::setThickness(double thickness) {
    HOST_CALL("AcDbSolid::setThickness");
    return setNumber<&CornerFields::thickness>(*this, thickness);
}
Acad::ErrorStatus AcDbSolid::setNormal(const AcGeVector3d& normal) {
    HOST_CALL("AcDbSolid::setNormal");
    return turnPlane<&CornerFields::corner1, &CornerFields::corner2, &CornerFields::corner3,
                     &CornerFields::corner4>(*this, normal);
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
