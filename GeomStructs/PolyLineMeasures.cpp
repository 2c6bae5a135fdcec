// The plan measures of PolyLine, and its moves and turns.
#include <algorithm>
#include <cmath>

#include "GeomStructs/PolyLine.h"

namespace TamLib {
namespace {

// Twice the signed area of the ring, positive counter-clockwise.
double DoubledArea(const Point3d* vertex, std::uint32_t count) {
    double sum = 0.0;
    for (std::uint32_t i = 0; i < count; ++i) {
        const Point3d& next = vertex[i + 1 < count ? i + 1 : 0];
        sum += next.y * vertex[i].x - vertex[i].y * next.x;
    }
    return sum;
}

bool IsSamePlace(const Point3d& a, const Point3d& b, double tolerance) {
    return std::fabs(a.x - b.x) < tolerance && std::fabs(a.y - b.y) < tolerance;
}

double Cross(const Point3d& from, const Point3d& to, const Point3d& point) {
    return (to.x - from.x) * (point.y - from.y) - (to.y - from.y) * (point.x - from.x);
}

struct Triangle {
    std::uint32_t previous, current, next;
};

// Whether a vertex other than the three lies strictly inside.
bool HoldsAnother(const PolyLine& ring, const Triangle& t) {
    const Point3d &a = ring.data[t.previous], &b = ring.data[t.current], &c = ring.data[t.next];
    for (std::uint32_t i = 0; i < ring.count; ++i) {
        const Point3d& p = ring.data[i];
        if (i == t.previous || i == t.current || i == t.next) continue;
        if (IsSamePlace(p, a, 1e-10) || IsSamePlace(p, b, 1e-10) || Equals(p, c)) continue;
        const double ab = Cross(a, b, p), bc = Cross(b, c, p), ca = Cross(c, a, p);
        if ((ab > 0.0 && bc > 0.0 && ca > 0.0) || (ab < 0.0 && bc < 0.0 && ca < 0.0)) return true;
    }
    return false;
}

int Remainder(int index, int size) {
    const int remainder = index % size;
    return remainder < 0 ? remainder + size : remainder;
}

}  // namespace

Box PolyLine::GetBox() const {
    Box box;
    for (const Point3d& vertex : *this) box.Add(vertex);
    return box;
}

double PolyLine::Area() const {
    return count < 3 ? 0.0 : std::fabs(DoubledArea(data, count) * 0.5);
}

bool PolyLine::IsClockwise() const {
    return count >= 2 && DoubledArea(data, count) < 0.0;
}

bool PolyLine::GetCentroid(Point3d* point) const {
    *point = {};
    if (count == 0) return false;
    double total = 0.0, x = 0.0, y = 0.0;
    for (std::uint32_t i = 1; i + 1 < count; ++i) {
        const Point3d &a = data[0], &b = data[i], &c = data[i + 1];
        const double area = Cross(a, b, c);
        total += area;
        x += (a.x + b.x + c.x) * area;
        y += (a.y + b.y + c.y) * area;
    }
    // Intended: not guarded against an area of 0.
    *point = {x / (3.0 * total), y / (3.0 * total), 0.0};
    return true;
}

bool PolyLine::InteriorPoint(Point3d* point) const {
    const int turn = IsClockwise() ? -1 : 1;
    Triangle t{count - 1, 0, 1};
    for (; count >= 3 && IsClosed() && t.next < count; ++t.next) {
        const Point3d &a = data[t.previous], &b = data[t.current], &c = data[t.next];
        if (IsSamePlace(b, c, 0.0001)) continue;
        if (Line(a, c).Side(b, /*touch=*/true) == turn && !HoldsAnother(*this, t)) {
            *point = (a + b + c) / 3.0;
            return true;
        }
        t.previous = t.current;
        t.current = t.next;
    }
    GetCentroid(point);
    return false;
}

Point3d PolyLine::MiddleVertex() const {
    const auto middle = static_cast<std::uint32_t>(std::ceil(count * 0.5));
    return middle < count ? data[middle] : Point3d();
}

bool PolyLine::IsFlat() const {
    return std::all_of(begin(), end(), [this](const Point3d& vertex) {
        return std::fabs(vertex.z - data[0].z) < 0.0001;
    });
}

Point3d PolyLine::VertexCyclic(int index) const {
    return count == 0 ? Point3d() : data[Remainder(index, static_cast<int>(count))];
}

Point3d PolyLine::VertexClosed(int index) const {
    if (!IsClosed()) return VertexCyclic(index);
    return data[Remainder(index, static_cast<int>(count) - 1)];
}

void PolyLine::Translate(const Point3d& vector) {
    const Point3d by = vector;  // it may be a vertex
    for (Point3d& vertex : *this) vertex += by;
    if (hasBounds == 0) return;
    maxPoint += by;
    minPoint += by;
}

PolyLine& PolyLine::operator+=(const Point3d& vector) {
    Translate(vector);
    return *this;
}

bool PolyLine::Move(double dx, double dy, double dz, bool setZ) {
    for (Point3d& vertex : *this) {
        vertex.x += dx;
        vertex.y += dy;
        vertex.z = setZ ? dz : vertex.z + dz;
    }
    return true;
}

void PolyLine::SetElevation(double z) {
    for (Point3d& vertex : *this) vertex.z = z;
    if (hasBounds == 0) return;
    maxPoint.z = z;
    minPoint.z = z;
}

void PolyLine::RotateAbout(const Point3d& centre, double azimuth, double elevation) {
    const Point3d about = centre;
    for (Point3d& vertex : *this) vertex.RotateAbout(about, azimuth, elevation);
}

void PolyLine::RotateAxis(const Point3d& axis, double angle) {
    const Point3d about = axis;
    for (Point3d& vertex : *this) vertex.RotateAxis(about, angle);
}

void PolyLine::RotateLine(const Line& line, double angle) {
    for (Point3d& vertex : *this) vertex.RotateLine(line, angle);
}

}  // namespace TamLib
