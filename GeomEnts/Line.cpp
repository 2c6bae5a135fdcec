#include "GeomEnts/Line.h"

#include <algorithm>
#include <initializer_list>

#include "GeomEnts/Box.h"
#include "GeomEnts/PlanDistance.h"
#include "GeomEnts/Plane.h"
#include "datastruct/Bytes.h"

namespace TamLib {
namespace {

// The end lies above the start by x, then y, then z. Written so that NaN is not above.
bool EndIsAbove(const Point3d& start, const Point3d& end) {
    if (end.x > start.x) return true;
    if (!(end.x == start.x)) return false;
    if (end.y > start.y) return true;
    if (!(end.y == start.y)) return false;
    return end.z > start.z;
}

int CompareCoordinate(double a, double b) {
    if (std::fabs(a - b) < 0.0001) return 0;
    return a < b ? -1 : 1;
}

Point3d Scaled(const Point3d& v, double factor) {
    return {v.x * factor, v.y * factor, v.z * factor};
}

}  // namespace

Line::Line(const Point3d& start, const Point3d& end, bool order)
    : valid(1), x1(start.x), y1(start.y), x2(end.x), y2(end.y), z1(start.z), z2(end.z) {
    if (order && !EndIsAbove(start, end)) Reverse();
}

Line::Line(double startX, double startY, double startZ, double endX, double endY, double endZ,
           bool order)
    : valid(1), x1(startX), y1(startY), x2(endX), y2(endY), z1(startZ), z2(endZ) {
    if (order && x1 >= x2 && (std::fabs(x1 - x2) >= 0.0001 || !(y2 > y1))) Reverse();
}

Line::Line(const Point3d& start, double azimuth, double length, double elevation)
    : Line(start, PolarPoint(start, length, azimuth, elevation)) {}

double Line::Length() const {
    return VectorLength(Direction());
}

double Line::Length2d() const {
    const double dx = x2 - x1, dy = y2 - y1;
    return std::sqrt(dx * dx + dy * dy);
}

void Line::SetStart(const Point3d& point) {
    x1 = point.x;
    y1 = point.y;
    z1 = point.z;
}

void Line::SetEnd(const Point3d& point) {
    x2 = point.x;
    y2 = point.y;
    z2 = point.z;
}

double Line::Azimuth() const {
    return Angle(Start(), End());
}

double Line::Slope() const {
    return SlopeAngle(Start(), End());
}

Point3d Line::MidPoint() const {
    return {(x1 + x2) * 0.5, (y1 + y2) * 0.5, (z1 + z2) * 0.5};
}

Point3d Line::MidPoint2d() const {
    return {(x1 + x2) * 0.5, (y1 + y2) * 0.5, 0.0};
}

Point3d Line::PointAt(double t) const {
    if (t < 0.0) return Start();
    if (t > 1.0) return End();
    return {x1 + t * (x2 - x1), y1 + t * (y2 - y1), z1 + t * (z2 - z1)};
}

int Line::PointAtZ(double z, Point3d& point) const {
    if (z1 == z2) {
        if (z != z1) return 0;
        point = Start();
        return 1;
    }
    const double t = (z - z1) / (z2 - z1);
    point = {x1 + t * (x2 - x1), y1 + t * (y2 - y1), z};
    if (std::fabs(t) < 0.0001 || std::fabs(t - 1.0) < 0.0001) return 2;
    return 0.0 < t && t < 1.0 ? 1 : 0;
}

void Line::Reverse() {
    std::swap(x1, x2);
    std::swap(y1, y2);
    std::swap(z1, z2);
}

void Line::Translate(const Point3d& vector) {
    SetStart(Start() + vector);
    SetEnd(End() + vector);
}

void Line::ExtendStart(double d) {
    SetStart(Start() - Scaled(Direction() / Line::Length(), d));
}

void Line::ExtendEnd(double d) {
    SetEnd(End() + Scaled(Direction() / Line::Length(), d));
}

void Line::Extend(double d) {
    ExtendEnd(d);
    ExtendStart(d);
}

void Line::RotateAbout(const Point3d& centre, double azimuth, double elevation) {
    Point3d start = Start(), end = End();
    start.RotateAbout(centre, azimuth, elevation);
    end.RotateAbout(centre, azimuth, elevation);
    SetStart(start);
    SetEnd(end);
}

void Line::RotateAxis(const Point3d& axis, double angle) {
    Point3d start = Start(), end = End();
    start.RotateAxis(axis, angle);
    end.RotateAxis(axis, angle);
    SetStart(start);
    SetEnd(end);
}

void Line::RotateLine(const Line& line, double angle) {
    Point3d start = Start(), end = End();
    start.RotateLine(line, angle);
    end.RotateLine(line, angle);
    SetStart(start);
    SetEnd(end);
}

bool Line::IsRightOf(const Point3d& point) const {
    return (y2 - y1) * (x2 - point.x) > (x2 - x1) * (y2 - point.y);
}

int Line::Side(const Point3d& point, bool touch) const {
    const double c = (x2 - x1) * (point.y - y1) - (y2 - y1) * (point.x - x1);
    if (touch && std::fabs(c) < std::sqrt(0.0001)) return 0;
    return c > 0.0 ? -1 : 1;
}

bool Line::IsParallel2d(const Line& other) const {
    const double here = (y2 - y1) / (x2 - x1);
    const double there = (other.y2 - other.y1) / (other.x2 - other.x1);
    return std::fabs(here - there) < 2e-8;
}

Box Line::GetBox() const {
    Box box;
    box.Add(Start());
    box.Add(End());
    return box;
}

std::uint32_t Line::Checksum() const {
    std::uint32_t sum = ByteChecksum(&valid, sizeof valid);
    for (const double* coordinate : {&x1, &x2, &y1, &y2, &z1, &z2})
        sum += ByteChecksum(coordinate, sizeof *coordinate);
    return sum;
}

int Line::Compare2d(const Line* a, const Line* b) {
    int order = CompareCoordinate(a->x1, b->x1);
    if (order == 0) order = CompareCoordinate(a->x2, b->x2);
    if (order == 0) order = CompareCoordinate(a->y1, b->y1);
    if (order == 0) order = CompareCoordinate(a->y2, b->y2);
    return order;
}

int Line::Compare(const Line* a, const Line* b) {
    int order = Compare2d(a, b);
    if (order == 0) order = CompareCoordinate(a->z1, b->z1);
    if (order == 0) order = CompareCoordinate(a->z2, b->z2);
    return order;
}

double Line::Distance2d(const Point3d& point, int* side, double* parameter) const {
    const PlanFoot foot = PlanDistance(x1, y1, x2, y2, point.x, point.y);
    if (parameter != nullptr) *parameter = foot.parameter;
    if (side != nullptr) *side = foot.side;
    return foot.distance;
}

double Line::LineDistance2d(const Point3d& point, double* along) const {
    const double length = Length2d();
    if (length < 0.0001) {
        if (along != nullptr) *along = 0.0;
        return TamLib::Distance2d(point, Start());
    }
    const double dx = x2 - x1, dy = y2 - y1, squared = length * length;
    const double s = (dx * (y1 - point.y) - dy * (x1 - point.x)) / squared;
    const double t = ((y1 - y2) * (y1 - point.y) - (x1 - point.x) * dx) / squared;
    if (along != nullptr) *along = t * length;
    return std::fabs(s * length);
}

void Line::Project(Point3d& result, const Point3d& point) const {
    const double length = Length();
    if (length < 0.0001) {
        result = Start();
        return;
    }
    double along = 0.0;
    LineDistance2d(point, &along);
    result = Start() + Scaled(Direction() / length, along);
}

int Line::ClosestPoint(const Point3d& point, Point3d& foot, double* distance) const {
    const double length = Length();
    Plane(Direction(), point).Project(Start(), foot);
    int inside = 1;
    // Written so that the NaN of a line without length is not inside.
    if (!(Distance(foot, Start()) <= length && Distance(foot, End()) <= length)) {
        inside = 0;
        foot = Distance(point, End()) < Distance(point, Start()) ? End() : Start();
    }
    if (distance != nullptr) *distance = Distance(point, foot);
    return inside;
}

double Line::SegmentDistance(const Line& other, Point3d* pointHere, Point3d* pointThere) const {
    const Point3d u = Direction(), v = other.Direction(), w = Start() - other.Start();
    const double a = DotProduct(u, u), b = DotProduct(u, v), c = DotProduct(v, v);
    const double d = DotProduct(u, w), e = DotProduct(v, w), determinant = a * c - b * b;
    double sN = 0.0, sD = 1.0, tN = e, tD = c;
    if (!(determinant < 1e-7)) {
        sN = b * e - c * d;
        sD = determinant;
        tN = a * e - b * d;
        tD = determinant;
        if (sN < 0.0) {
            sN = 0.0;
            tN = e;
            tD = c;
        } else if (sN > sD) {
            sN = sD;
            tN = e + b;
            tD = c;
        }
    }
    if (tN < 0.0 || tN > tD) {
        const bool beforeStart = tN < 0.0;
        tN = beforeStart ? 0.0 : tD;
        sN = beforeStart ? -d : b - d;
        if (sN < 0.0) {
            sN = 0.0;
        } else if (sN > a) {
            sN = sD;
        } else {
            sD = a;
        }
    }
    const double s = std::fabs(sN) < 1e-7 ? 0.0 : sN / sD;
    const double t = std::fabs(tN) < 1e-7 ? 0.0 : tN / tD;
    const Point3d here = Start() + Scaled(u, s), there = other.Start() + Scaled(v, t);
    if (pointHere != nullptr) *pointHere = here;
    if (pointThere != nullptr) *pointThere = there;
    return Distance(here, there);
}

}  // namespace TamLib
