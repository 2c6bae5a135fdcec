// What LIST tells of curves but polylines.
#include <dbelipse.h>
#include <dbents.h>
#include <dbmline.h>
#include <dbspline.h>

#include <cmath>

#include "host/database/Drawing.h"
#include "host/editor/EntityDetails.h"

namespace host::editor {

namespace {

double angleInPlan(const AcGeVector3d& vector) {
    constexpr double turn = 6.283185307179586;
    const double angle = std::atan2(vector.y, vector.x);
    return angle < 0.0 ? angle + turn : angle;
}

AcGeVector3d fromOrigin(const AcGePoint3d& point) {
    return point - AcGePoint3d::kOrigin;
}

void describe(const AcDbLine& line, Details& details) {
    details.point(L"from point", line.startPoint());
    details.point(L"to point", line.endPoint());
    const AcGeVector3d along = line.endPoint() - line.startPoint();
    details.value(L"length", along.length());
    details.angle(L"angle in XY plane", angleInPlan(along));
    details.vector(L"delta", along);
    details.thickness(line.thickness());
}

void describe(const AcDbCircle& circle, Details& details) {
    details.point(L"center point", circle.center());
    details.value(L"radius", circle.radius());
    details.thickness(circle.thickness());
    details.normal(circle.normal());
    describeExtent(circle, details);
}

void describe(const AcDbArc& arc, Details& details) {
    details.point(L"center point", arc.center());
    details.value(L"radius", arc.radius());
    details.angle(L"start angle", arc.startAngle());
    details.angle(L"end angle", arc.endAngle());
    details.thickness(arc.thickness());
    details.normal(arc.normal());
    describeExtent(arc, details);
}

void describe(const AcDbEllipse& ellipse, Details& details) {
    details.point(L"center point", ellipse.center());
    details.vector(L"major axis", ellipse.majorAxis());
    details.vector(L"minor axis", ellipse.minorAxis());
    details.value(L"radius ratio", ellipse.radiusRatio());
    if (!ellipse.isClosed()) {
        details.angle(L"start angle", ellipse.startParam());
        details.angle(L"end angle", ellipse.endParam());
    }
    details.normal(ellipse.normal());
    describeExtent(ellipse, details);
}

void describeControls(const AcDbSpline& spline, const GroupReader& groups, Details& details) {
    const std::vector<double> weights = groups.reals(41);
    details.count(L"control points", spline.numControlPoints());
    for (int i = 0; i < spline.numControlPoints(); ++i) {
        AcGePoint3d point;
        if (spline.getControlPointAt(i, point) != Acad::eOk) continue;
        details.point(L"control point", point);
        const Details::Indented indented(details);
        const auto index = static_cast<std::size_t>(i);
        if (index < weights.size()) details.value(L"weight", weights[index]);
    }
    details.values(L"knots", groups.reals(40));
}

void describe(const AcDbSpline& spline, Details& details) {
    const GroupReader groups(spline);
    std::wstring kind = spline.isRational() ? L"rational" : L"non-rational";
    kind += spline.isPeriodic() ? L", periodic" : L", non-periodic";
    details.count(L"degree", spline.degree());
    details.line(kind);
    describeRun(spline, details);
    if (spline.numControlPoints() > 0) describeControls(spline, groups, details);
    if (spline.numFitPoints() == 0) return;
    details.count(L"fit points", spline.numFitPoints());
    for (int i = 0; i < spline.numFitPoints(); ++i) {
        AcGePoint3d point;
        if (spline.getFitPointAt(i, point) == Acad::eOk) details.point(L"fit point", point);
    }
    if (groups.has(12)) details.vector(L"start tangent", fromOrigin(groups.point(12)));
    if (groups.has(13)) details.vector(L"end tangent", fromOrigin(groups.point(13)));
}

// A ray, or a line without ends.
void describeEndless(const AcDbEntity& line, Details& details) {
    const GroupReader groups(line);
    const AcGeVector3d direction = fromOrigin(groups.point(11));
    details.point(L"base point", groups.point(10));
    details.vector(L"direction", direction);
    details.angle(L"angle in XY plane", angleInPlan(direction));
}

void describeLeader(const AcDbCurve& leader, Details& details) {
    const GroupReader groups(leader);
    details.line(groups.whole(71, 1) != 0 ? L"with an arrowhead" : L"without an arrowhead");
    details.line(groups.whole(72) != 0 ? L"spline" : L"straight segments");
    if (groups.has(3)) details.quoted(L"dimension style", groups.text(3));
    describeExtent(leader, details);
    for (const AcGePoint3d& point : groups.points(10)) details.point(L"at point", point);
}

void describe(const AcDbMline& line, Details& details) {
    const wchar_t* const justifications[] = {L"top", L"zero", L"bottom"};
    const GroupReader groups(line);
    details.quoted(L"style", groups.text(2));
    const int justification = line.justification();
    details.line(std::wstring(L"justification ") +
                 (justification >= 0 && justification <= 2 ? justifications[justification] : L"?"));
    details.value(L"scale", line.scale());
    details.normal(line.normal());
    details.line(line.closedMline() ? L"closed" : L"open");
    for (int i = 0; i < line.numVertices(); ++i) details.point(L"at point", line.vertexAt(i));
}

}  // namespace

bool describeCurve(const AcDbEntity& entity, Details& details) {
    const std::wstring record = database::recordName(entity.objectId());
    if (const auto* line = AcDbLine::cast(&entity))
        describe(*line, details);
    else if (const auto* circle = AcDbCircle::cast(&entity))
        describe(*circle, details);
    else if (const auto* arc = AcDbArc::cast(&entity))
        describe(*arc, details);
    else if (const auto* ellipse = AcDbEllipse::cast(&entity))
        describe(*ellipse, details);
    else if (const auto* spline = AcDbSpline::cast(&entity))
        describe(*spline, details);
    else if (const auto* multiple = AcDbMline::cast(&entity))
        describe(*multiple, details);
    else if (const auto* leader = record == L"LEADER" ? AcDbCurve::cast(&entity) : nullptr)
        describeLeader(*leader, details);
    else if (record == L"RAY" || record == L"XLINE")
        describeEndless(entity, details);
    else
        return false;
    return true;
}

}  // namespace host::editor
