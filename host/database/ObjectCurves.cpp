// The curves that entities are, and what AcDbCurve answers from them.
#include <dbcurve.h>
#include <dbents.h>

#include <cmath>

#include "host/database/Curve.h"
#include "host/database/DatabaseImp.h"
#include "host/database/Fault.h"
#include "host/database/ObjectFields.h"
#include "host/database/ObjectImp.h"

using host::database::Curve;

ACRX_NO_CONS_DEFINE_MEMBERS(AcDbCurve, AcDbEntity)

namespace host::database {
namespace {

constexpr double kTurn = 6.283185307179586;

// A full turn is one to within this: drawings round its end.
constexpr double kTurnSlack = 1e-9;

// `end` moved by whole turns to lie above `start`, by one turn at most.
double above(double start, double end) {
    if (end > start && end < start + kTurn - kTurnSlack) return end;
    double sweep = std::fmod(end - start, kTurn);
    if (sweep < 0.0) sweep += kTurn;
    const bool full = sweep < kTurnSlack || sweep > kTurn - kTurnSlack;
    return start + (full ? kTurn : sweep);
}

std::shared_ptr<const Curve> circularCurve(const AcGePoint3d& center, const AcGeVector3d& normal,
                                           double radius, double start, double end) {
    if (!(radius > 0.0)) return nullptr;
    const AcGeMatrix3d plane = AcGeMatrix3d::planeToWorld(normal);
    return ellipseCurve(plane * center, plane * AcGeVector3d(radius, 0.0, 0.0),
                        plane * AcGeVector3d(0.0, radius, 0.0), start, end, true);
}

// Fields of the vertices of a POLYLINE that are drawn.
std::vector<VertexFields> drawnVertices(const AcDbImpObject& polyline) {
    std::vector<VertexFields> result;
    const auto take = [&result](const VertexFields& fields) {
        const bool drawn = (fields.flags & VertexFields::kSplineControl) == 0;
        if (drawn && !fields.unreadable) result.push_back(fields);
    };
    for (const auto& part : polyline.parts()) take(fieldsOf<VertexFields>(*part));
    const AcDbImpDatabase* database = polyline.database();
    if (database == nullptr) return result;
    for (const auto vertex : database->subEntitiesOf(AcDbImpDatabase::numberOf(polyline.id()))) {
        if (database->isErased(vertex)) continue;
        VertexFields read;
        take(static_cast<const VertexFields&>(database->fieldsAt(vertex, read)));
    }
    return result;
}

}  // namespace

std::shared_ptr<const Curve> LeaderFields::makeCurve(const AcDbImpObject& /*object*/) const {
    std::vector<PlaneVertex> corners;
    for (const AcGePoint3d& vertex : vertices) corners.push_back({vertex, 0.0});
    return polylineCurve(AcGeMatrix3d::kIdentity, std::move(corners), false);
}

std::shared_ptr<const Curve> LineFields::makeCurve(const AcDbImpObject& /*object*/) const {
    return lineCurve(start, end);
}

std::shared_ptr<const Curve> CircleFields::makeCurve(const AcDbImpObject& /*object*/) const {
    return circularCurve(center, normal, radius, 0.0, kTurn);
}

double ArcFields::endAbove() const {
    return above(startAngle, endAngle);
}

std::shared_ptr<const Curve> ArcFields::makeCurve(const AcDbImpObject& /*object*/) const {
    return circularCurve(center, normal, radius, startAngle, endAbove());
}

AcGeVector3d EllipseFields::minor() const {
    return normal.normal().crossProduct(major) * ratio;
}

double EllipseFields::endAbove() const {
    return above(start, end);
}

std::shared_ptr<const Curve> EllipseFields::makeCurve(const AcDbImpObject& /*object*/) const {
    if (!(major.length() > 0.0) || !(ratio > 0.0) || !(normal.length() > 0.0)) return nullptr;
    return ellipseCurve(center, major, minor(), start, endAbove(), false);
}

std::shared_ptr<const Curve> SplineFields::makeCurve(const AcDbImpObject& /*object*/) const {
    if (!controlPoints.empty()) return nurbsCurve({degree, knots, controlPoints, weights});
    const auto given = [](bool has, const AcGeVector3d& tangent) {
        return has && !tangent.isZeroLength() ? std::optional(tangent) : std::nullopt;
    };
    return interpolatedCurve(fitPoints, (flags & kClosed) != 0,
                             given(hasStartTangent, startTangent),
                             given(hasEndTangent, endTangent));
}

std::shared_ptr<const Curve> PolylineFields::makeCurve(const AcDbImpObject& /*object*/) const {
    std::vector<PlaneVertex> corners;
    corners.reserve(vertices.size());
    for (const Vertex& v : vertices) corners.push_back({{v.x, v.y, elevation}, v.bulge});
    return polylineCurve(AcGeMatrix3d::planeToWorld(normal), std::move(corners),
                         (flags & kClosed) != 0);
}

std::shared_ptr<const Curve> OldPolylineFields::makeCurve(const AcDbImpObject& object) const {
    if ((flags & (kPolygonMesh | kPolyface)) != 0) return nullptr;
    const bool inSpace = (flags & kSpace) != 0;
    std::vector<PlaneVertex> corners;
    for (const VertexFields& vertex : drawnVertices(object)) {
        AcGePoint3d point = vertex.position;
        if (!inSpace) point.z = origin.z;
        corners.push_back({point, inSpace ? 0.0 : vertex.bulge});
    }
    const AcGeMatrix3d plane = inSpace ? AcGeMatrix3d() : AcGeMatrix3d::planeToWorld(normal);
    return polylineCurve(plane, std::move(corners), (flags & kClosed) != 0);
}

bool CircleFields::isClosed(const AcDbImpObject& /*object*/) const {
    return true;
}

bool EllipseFields::isClosed(const AcDbImpObject& /*object*/) const {
    return endAbove() - start >= kTurn;
}

bool SplineFields::isClosed(const AcDbImpObject& object) const {
    if ((flags & kClosed) != 0) return true;
    const Curve* curve = object.curve();
    return curve != nullptr &&
           curve->pointAt(curve->startParam()).isEqualTo(curve->pointAt(curve->endParam()));
}

bool SplineFields::isPeriodic(const AcDbImpObject& /*object*/) const {
    return (flags & kPeriodic) != 0;
}

bool PolylineFields::isClosed(const AcDbImpObject& /*object*/) const {
    return (flags & kClosed) != 0;
}

bool OldPolylineFields::isClosed(const AcDbImpObject& /*object*/) const {
    return (flags & kClosed) != 0;
}

}  // namespace host::database

namespace {

// A distance may lie beyond the end by this part of the length and still count as the end: what
// sums of distances lose to rounding.
constexpr double kDistanceSlack = 1e-12;

Acad::ErrorStatus curveOf(const AcDbCurve& entity, const Curve*& curve) {
    curve = nullptr;
    if (!entity.impl()->mayRead()) return Acad::eNotOpenForRead;
    curve = entity.impl()->curve();
    return curve == nullptr ? Acad::eDegenerateGeometry : Acad::eOk;
}

bool hasParam(const Curve& curve, double parameter) {
    return parameter >= curve.startParam() && parameter <= curve.endParam();
}

}  // namespace

AcDbCurve::AcDbCurve() = default;

Adesk::Boolean AcDbCurve::isClosed() const {
    return impl()->mayRead() && impl()->fields().isClosed(*impl());
}

Adesk::Boolean AcDbCurve::isPeriodic() const {
    return impl()->mayRead() && impl()->fields().isPeriodic(*impl());
}

Acad::ErrorStatus AcDbCurve::getStartParam(double& parameter) const {
    HOST_CALL("AcDbCurve::getStartParam");
    const Curve* curve = nullptr;
    const Acad::ErrorStatus status = curveOf(*this, curve);
    if (status == Acad::eOk) parameter = curve->startParam();
    return status;
}

Acad::ErrorStatus AcDbCurve::getEndParam(double& parameter) const {
    HOST_CALL("AcDbCurve::getEndParam");
    const Curve* curve = nullptr;
    const Acad::ErrorStatus status = curveOf(*this, curve);
    if (status == Acad::eOk) parameter = curve->endParam();
    return status;
}

Acad::ErrorStatus AcDbCurve::getStartPoint(AcGePoint3d& point) const {
    HOST_CALL("AcDbCurve::getStartPoint");
    const Curve* curve = nullptr;
    const Acad::ErrorStatus status = curveOf(*this, curve);
    if (status == Acad::eOk) point = curve->pointAt(curve->startParam());
    return status;
}

Acad::ErrorStatus AcDbCurve::getEndPoint(AcGePoint3d& point) const {
    HOST_CALL("AcDbCurve::getEndPoint");
    const Curve* curve = nullptr;
    const Acad::ErrorStatus status = curveOf(*this, curve);
    if (status == Acad::eOk) point = curve->pointAt(curve->endParam());
    return status;
}

Acad::ErrorStatus AcDbCurve::getPointAtParam(double parameter, AcGePoint3d& point) const {
    HOST_CALL("AcDbCurve::getPointAtParam");
    const Curve* curve = nullptr;
    const Acad::ErrorStatus status = curveOf(*this, curve);
    if (status != Acad::eOk) return status;
    if (!hasParam(*curve, parameter)) return Acad::eInvalidInput;
    point = curve->pointAt(parameter);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbCurve::getDistAtParam(double parameter, double& distance) const {
    HOST_CALL("AcDbCurve::getDistAtParam");
    const Curve* curve = nullptr;
    const Acad::ErrorStatus status = curveOf(*this, curve);
    if (status != Acad::eOk) return status;
    if (!hasParam(*curve, parameter)) return Acad::eInvalidInput;
    distance = curve->lengthTo(parameter);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbCurve::getParamAtDist(double distance, double& parameter) const {
    HOST_CALL("AcDbCurve::getParamAtDist");
    const Curve* curve = nullptr;
    const Acad::ErrorStatus status = curveOf(*this, curve);
    if (status != Acad::eOk) return status;
    const double length = curve->length();
    if (!(distance >= 0.0 && distance <= length + length * kDistanceSlack)) {
        return Acad::eInvalidInput;
    }
    parameter = curve->paramAtLength(distance);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbCurve::getPointAtDist(double distance, AcGePoint3d& point) const {
    HOST_CALL("AcDbCurve::getPointAtDist");
    double parameter = 0.0;
    const Acad::ErrorStatus status = getParamAtDist(distance, parameter);
    if (status == Acad::eOk) point = impl()->curve()->pointAt(parameter);
    return status;
}

Acad::ErrorStatus AcDbCurve::getFirstDeriv(double parameter, AcGeVector3d& derivative) const {
    HOST_CALL("AcDbCurve::getFirstDeriv");
    const Curve* curve = nullptr;
    const Acad::ErrorStatus status = curveOf(*this, curve);
    if (status != Acad::eOk) return status;
    if (!hasParam(*curve, parameter)) return Acad::eInvalidInput;
    derivative = curve->derivativeAt(parameter);
    return Acad::eOk;
}
