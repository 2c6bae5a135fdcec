// Stretch points of entities, and where two entities meet as seen from above.
#include <dbelipse.h>
#include <dbents.h>

#include <algorithm>
#include <cmath>

#include "host/database/Curve.h"
#include "host/database/Fault.h"
#include "host/database/Geometry.h"
#include "host/database/ObjectFields.h"
#include "host/database/ObjectImp.h"

using namespace host::database;

namespace {

// How near, as a part of the sizes, ends and lines count as touching: what arithmetic loses.
constexpr double kSlack = 1e-12;
// Chords of curves keep within this part of the curve's size.
constexpr double kChordError = 1e-6;

bool isFullTurn(const AcDbEntity& entity) {
    return entity.isKindOf(AcDbCircle::desc()) ||
           (entity.isKindOf(AcDbEllipse::desc()) && AcDbCurve::cast(&entity)->isClosed());
}

std::vector<AcGePoint3d> stretchPointsOf(const AcDbEntity& entity, const Curve& curve) {
    std::vector<double> params = curve.breaks();
    if (isFullTurn(entity)) {
        const double start = curve.startParam(), quarter = (curve.endParam() - start) / 4.0;
        params = {start, start + quarter, start + 2.0 * quarter, start + 3.0 * quarter};
    } else if (params.size() > 2 && AcDbCurve::cast(&entity)->isClosed()) {
        params.pop_back();
    }
    std::vector<AcGePoint3d> points;
    points.reserve(params.size());
    for (const double param : params) points.push_back(curve.pointAt(param));
    return points;
}

std::vector<AcGePoint3d> stretchPointsOf(const AcDbEntity& entity) {
    if (entity.impl()->fields().unreadable) return {};
    if (const Curve* curve = entity.impl()->curve()) return stretchPointsOf(entity, *curve);
    if (entity.isKindOf(AcDbPoint::desc()))
        return {static_cast<const AcDbPoint&>(entity).position()};
    if (entity.isKindOf(AcDbText::desc())) return {static_cast<const AcDbText&>(entity).position()};
    if (entity.isKindOf(AcDbMText::desc()))
        return {static_cast<const AcDbMText&>(entity).location()};
    if (entity.isKindOf(AcDbBlockReference::desc()))
        return {static_cast<const AcDbBlockReference&>(entity).position()};
    if (!entity.isKindOf(AcDbFace::desc()) && !entity.isKindOf(AcDbSolid::desc()) &&
        !entity.isKindOf(AcDbTrace::desc()))
        return {};
    const auto& fields = fieldsOf<CornerFields>(entity);
    const AcGeMatrix3d plane = AcGeMatrix3d::planeToWorld(planeNormal(entity));
    std::vector<AcGePoint3d> corners;
    for (const int corner : {0, 1, 2, 3}) corners.push_back(plane * fields.corner(corner));
    return corners;
}

// --- meeting ------------------------------------------------------------------------------------

double sizeOf(const AcDbEntity& entity) {
    const auto box = extentsOf(entity);
    if (!box) return 0.0;
    const AcGePoint3d low = box->minPoint(), high = box->maxPoint();
    return std::max(high.x - low.x, high.y - low.y);
}

std::vector<Chain> chainsOf(const AcDbEntity& entity) {
    const double error = std::max(sizeOf(entity) * kChordError, 1e-9);
    if (const Curve* curve = entity.impl()->curve()) return {flattened(*curve, error)};
    return entity.objectId().isNull() ? std::vector<Chain>()
                                      : drawnChains(entity.objectId(), error);
}

struct Segment {
    AcGePoint3d from, to;
    double xMin, xMax, yMin, yMax;
    double slack;  // a length

    Segment(const AcGePoint3d& start, const AcGePoint3d& end)
        : from(start),
          to(end),
          xMin(std::min(start.x, end.x)),
          xMax(std::max(start.x, end.x)),
          yMin(std::min(start.y, end.y)),
          yMax(std::max(start.y, end.y)),
          slack(kSlack * (std::max({std::fabs(xMin), std::fabs(xMax), std::fabs(yMin),
                                    std::fabs(yMax), 1.0}))) {}

    double length() const { return std::hypot(to.x - from.x, to.y - from.y); }
    AcGePoint3d at(double t) const {
        return {from.x + t * (to.x - from.x), from.y + t * (to.y - from.y),
                from.z + t * (to.z - from.z)};
    }
    // The parameter of the foot of a point.
    double paramOf(const AcGePoint3d& p) const {
        const double dx = to.x - from.x, dy = to.y - from.y, squared = dx * dx + dy * dy;
        if (squared == 0.0) return 0.0;
        return std::clamp(((p.x - from.x) * dx + (p.y - from.y) * dy) / squared, 0.0, 1.0);
    }
    bool holds(const AcGePoint3d& p, double within) const {
        const AcGePoint3d foot = at(paramOf(p));
        return std::hypot(foot.x - p.x, foot.y - p.y) <= within;
    }
    bool isApart(const Segment& other, double within) const {
        return other.xMin > xMax + within || other.xMax < xMin - within ||
               other.yMin > yMax + within || other.yMax < yMin - within;
    }
};

std::vector<Segment> segmentsOf(const AcDbEntity& entity) {
    std::vector<Segment> segments;
    for (const Chain& chain : chainsOf(entity)) {
        if (chain.size() == 1) segments.emplace_back(chain[0], chain[0]);
        for (std::size_t i = 0; i + 1 < chain.size(); ++i)
            segments.emplace_back(chain[i], chain[i + 1]);
    }
    return segments;
}

// Points that are not there yet, as seen from above.
class Meetings {
  public:
    explicit Meetings(AcGePoint3dArray& points) : points_(points), first_(points.length()) {}

    void add(const AcGePoint3d& p, double within) {
        for (int i = first_; i < points_.length(); ++i)
            if (std::hypot(points_[i].x - p.x, points_[i].y - p.y) <= within) return;
        points_.append(p);
    }

  private:
    AcGePoint3dArray& points_;
    int first_;
};

void meet(const Segment& a, const Segment& b, Meetings& meetings) {
    const double within = a.slack + b.slack;
    if (a.isApart(b, within)) return;
    bool touches = false;
    for (const AcGePoint3d& end : {b.from, b.to}) {
        if (!a.holds(end, within)) continue;
        meetings.add(a.at(a.paramOf(end)), 2.0 * within);
        touches = true;
    }
    for (const AcGePoint3d& end : {a.from, a.to}) {
        if (!b.holds(end, within)) continue;
        meetings.add(end, 2.0 * within);
        touches = true;
    }
    if (touches) return;
    const double ax = a.to.x - a.from.x, ay = a.to.y - a.from.y;
    const double bx = b.to.x - b.from.x, by = b.to.y - b.from.y, cross = ax * by - ay * bx;
    if (cross == 0.0) return;
    const double dx = b.from.x - a.from.x, dy = b.from.y - a.from.y;
    const double t = (dx * by - dy * bx) / cross, u = (dx * ay - dy * ax) / cross;
    if (t > 0.0 && t < 1.0 && u > 0.0 && u < 1.0) meetings.add(a.at(t), 2.0 * within);
}

}  // namespace

Acad::ErrorStatus AcDbEntity::getStretchPoints(AcGePoint3dArray& points) const {
    HOST_CALL("AcDbEntity::getStretchPoints");
    if (!impl()->mayRead()) return Acad::eNotOpenForRead;
    for (const AcGePoint3d& point : stretchPointsOf(*this)) points.append(point);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbEntity::intersectWith(const AcDbEntity* other, AcDb::Intersect kind,
                                            AcGePoint3dArray& points,
                                            Adesk::GsMarker /*thisMarker*/,
                                            Adesk::GsMarker /*otherMarker*/) const {
    HOST_CALL("AcDbEntity::intersectWith");
    if (other == nullptr) return Acad::eNullEntityPointer;
    if (!impl()->mayRead() || !other->impl()->mayRead()) return Acad::eNotOpenForRead;
    if (kind != AcDb::kOnBothOperands) return Acad::eNotImplementedYet;
    std::vector<Segment> theirs = segmentsOf(*other);
    const auto byLeft = [](const Segment& a, const Segment& b) { return a.xMin < b.xMin; };
    std::stable_sort(theirs.begin(), theirs.end(), byLeft);
    Meetings meetings(points);
    for (const Segment& mine : segmentsOf(*this)) {
        for (const Segment& their : theirs) {
            if (their.xMin > mine.xMax + mine.slack + their.slack) break;
            meet(mine, their, meetings);
        }
    }
    return Acad::eOk;
}
