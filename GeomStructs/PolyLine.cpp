#include "GeomStructs/PolyLine.h"

#include <algorithm>
#include <limits>

#include "GeomEnts/PlanDistance.h"
#include "GeomStructs/LengthWalk.h"

namespace TamLib {
namespace {

double SegmentLength(const Point3d* from) {
    return Distance(from[0], from[1]);
}

// `sum` plus the 3D lengths of `segments` segments from `vertex` on, one after the other. Four
// lengths are taken at once, since they don't wait for each other as the sums do.
double AddLengths(double sum, const Point3d* vertex, int segments) {
    int i = 0;
    for (; i + 4 <= segments; i += 4, vertex += 4) {
        const double first = SegmentLength(vertex), second = SegmentLength(vertex + 1);
        const double third = SegmentLength(vertex + 2), fourth = SegmentLength(vertex + 3);
        sum += first;
        sum += second;
        sum += third;
        sum += fourth;
    }
    for (; i < segments; ++i, ++vertex) sum += SegmentLength(vertex);
    return sum;
}

// Walks along `count` vertices up to the length `target`.
detail::LengthStop Walk(const Point3d* vertex, int count, double target) {
    return detail::WalkTo(count, target, [vertex](int i) { return SegmentLength(vertex + i); });
}

// On which side of the segment from `from` to `to` a vertex that continues it lies. Intended:
// 1 is left.
int NeighbourSide(const Point3d& from, const Point3d& to, const Point3d& vertex) {
    const double c = (to.x - from.x) * (vertex.y - from.y) - (to.y - from.y) * (vertex.x - from.x);
    if (std::sqrt(0.0001) > std::fabs(c)) return 0;
    return c > 0.0 ? 1 : -1;
}

struct Nearest {
    int index = 0;
    double distance = std::numeric_limits<double>::max();
    double parameter = 0.0;
    int side = 0;
    bool found = false;
};

// How far the span of two coordinates is from 0; negative when 0 lies inside.
double Gap(double from, double to) {
    return std::max(std::min(from, to), -std::max(from, to));
}

// The square of the smallest plan distance of `count` vertices, at least one.
double NearestVertex(const Point3d* vertex, int count, double px, double py) {
    const auto squared = [=](const Point3d& v) {
        const double dx = v.x - px, dy = v.y - py;
        return dx * dx + dy * dy;
    };
    double even = squared(vertex[0]), odd = even;
    for (int i = 1; i + 1 < count; i += 2) {
        odd = std::min(odd, squared(vertex[i]));
        even = std::min(even, squared(vertex[i + 1]));
    }
    return std::min({even, odd, squared(vertex[count - 1])});
}

// The first of the segments with the smallest `PlanDistance`, if that is at most `bound`. Most
// segments are passed over by a comparison of their box with the best distance so far and with the
// bound: the gap to the box is a lower bound of the distance in exact arithmetic, and PlanDistance
// is wrong by less than 1e-14 of the coordinate differences (the rounding of its products, some 20
// units of 1.1e-16) and by less than 1e-150 where squares underflow. So what is passed over is
// farther than either, and the result is that of the plain loop to the bit.
Nearest NearestWithin(const Point3d* vertex, int segments, double px, double py, double bound) {
    Nearest best;
    const auto isFarther = [&](const Point3d* from) {
        const double fromX = from[0].x - px, fromY = from[0].y - py;
        const double gap = std::max(Gap(fromX, from[1].x - px), Gap(fromY, from[1].y - py));
        return gap > bound + (1e-14 * (std::fabs(fromX) + std::fabs(fromY)) + 1e-150);
    };
    const auto look = [&](int i) {
        const Point3d* const from = vertex + i;
        const PlanFoot foot = PlanDistance(from[0].x, from[0].y, from[1].x, from[1].y, px, py);
        if (!(foot.distance < best.distance)) return;
        best = {i, foot.distance, foot.parameter, foot.side, true};
        bound = std::min(bound, foot.distance);
    };
    int i = 0;
    for (; i + 4 <= segments; i += 4) {
        const Point3d* const from = vertex + i;
        const bool f0 = isFarther(from), f1 = isFarther(from + 1);
        const bool f2 = isFarther(from + 2), f3 = isFarther(from + 3);
        if (f0 & f1 & f2 & f3) continue;
        if (!f0) look(i);
        if (!f1) look(i + 1);
        if (!f2) look(i + 2);
        if (!f3) look(i + 3);
    }
    for (; i < segments; ++i)
        if (!isFarther(vertex + i)) look(i);
    return best;
}

// The first of the segments with the smallest `PlanDistance`. No segment can be much farther than
// the nearest vertex, and looking for that is cheap. Where the bound does not hold after all, for
// coordinates that are no numbers, the search is made without it.
Nearest NearestInPlan(const Point3d* vertex, int segments, double px, double py) {
    const double bound = std::sqrt(NearestVertex(vertex, segments + 1, px, py)) * 1.000001 + 1e-6;
    const Nearest nearest = NearestWithin(vertex, segments, px, py, bound);
    if (nearest.distance <= bound) return nearest;
    return NearestWithin(vertex, segments, px, py, std::numeric_limits<double>::max());
}

}  // namespace

PolyLine::PolyLine(int initialCapacity) : Point3dArrayBase<Point3d>(initialCapacity) {}

PolyLine::PolyLine(const Array<Point3d>& points) : Point3dArrayBase<Point3d>(0) {
    Array<Point3d>::operator=(points);
}

PolyLine::PolyLine(const Box& box) : PolyLine(10) {
    Append(box.UpperLeft());
    Append(box.UpperRight());
    Append(box.LowerRight());
    Append(box.LowerLeft());
    PolyLine::Close();
}

PolyLine::~PolyLine() = default;

void PolyLine::Close() {
    if (count > 0 && !Equals(data[count - 1], data[0])) Append(Point3d(data[0]));
}

bool PolyLine::DropLastIfEqual(const Point3d& point, bool remove) {
    if (count == 0 || !Equals(data[count - 1], point)) return false;
    if (remove) Remove(-1, 1);
    return true;
}

bool PolyLine::IsClosed() const {
    return count >= 2 && Equals(data[count - 1], data[0]);
}

Line PolyLine::GetSegment(int index) const {
    const int vertices = static_cast<int>(count);
    const int segments = IsClosed() ? vertices : vertices - 1;
    if (index >= 0 && index < segments) return {data[index], data[(index + 1) % vertices]};
    Line none(false);
    none.SetStart({});
    none.SetEnd({});
    return none;
}

int PolyLine::NearestSegment(const Point3d& point, double* distance, int* side) const {
    if (side != nullptr) *side = 0;
    if (count < 2) {
        if (count == 1 && distance != nullptr) *distance = Distance(point, data[0]);
        return 0;
    }
    const int segments = static_cast<int>(count) - 1;
    const Nearest nearest = NearestInPlan(data, segments, point.x, point.y);
    if (side != nullptr && nearest.found) {
        const Point3d* const vertex = data + nearest.index;
        if (nearest.parameter < 0.0 && nearest.index > 0) {
            *side = NeighbourSide(vertex[0], vertex[1], vertex[-1]);
        } else if (nearest.parameter > 1.0 && nearest.index + 1 < segments) {
            *side = NeighbourSide(vertex[0], vertex[1], vertex[2]);
        } else {
            *side = nearest.side;
        }
    }
    if (distance != nullptr) *distance = nearest.distance;
    return nearest.index;
}

int PolyLine::SideOf(const Point3d& point) const {
    int side = 0;
    NearestSegment(point, nullptr, &side);
    return side;
}

double PolyLine::MinDistance2d(const Point3d& point) const {
    if (count == 0) return -1.0;
    if (count == 1) return Distance2d(point, data[0]);
    return NearestInPlan(data, static_cast<int>(count) - 1, point.x, point.y).distance;
}

double PolyLine::Length() const {
    return LengthToVertex(static_cast<int>(count) - 1);
}

double PolyLine::Length2d() const {
    double sum = 0.0;
    for (std::uint32_t i = 1; i < count; ++i) sum += Distance2d(data[i - 1], data[i]);
    return sum;
}

double PolyLine::PerimeterLength() const {
    return count < 2 ? 0.0 : Length() + Distance(data[count - 1], data[0]);
}

double PolyLine::LengthToVertex(int index) const {
    return AddLengths(0.0, data, std::min(index, static_cast<int>(count) - 1));
}

// --- Points at a length.

// `total` is `Length()`, handed down since every step of the chain asks for it.

int PolyLine::SegmentAtFraction(double fraction, double total) const {
    const int vertices = static_cast<int>(count);
    if (vertices < 2 || fraction < 0.0) return 0;
    if (fraction > 1.0) return vertices - 2;
    return Walk(data, vertices, total * fraction).vertex - 1;
}

Point3d PolyLine::DirectionAt(double length, double total) const {
    return GetSegment(SegmentAtFraction(detail::RelativeLength(length, total), total))
        .Direction()
        .Unit();
}

Point3d PolyLine::SideVector(double length, double total, double sideOffset) const {
    if (std::fabs(sideOffset) < 0.0001) return {};
    const Point3d direction = DirectionAt(length, total);
    return {direction.y * sideOffset, -direction.x * sideOffset, 0.0 * sideOffset};
}

void PolyLine::PointAtFraction(Point3d* result, double fraction, int* segment,
                               double* segmentFraction, double sideOffset) const {
    const int vertices = static_cast<int>(count);
    const double total = Length();
    const auto place = [=](int index, double position) {
        if (segment != nullptr) *segment = index;
        if (segmentFraction != nullptr) *segmentFraction = position;
    };
    if (vertices < 2 || fraction < 0.0) {
        const Point3d offsetVector = SideVector(0.0, total, sideOffset);
        if (vertices >= 2) place(0, 0.0);
        *result = vertices == 0 ? offsetVector : data[0] + offsetVector;
        return;
    }
    if (fraction > 1.0) {
        place(vertices - 2, 1.0);
        *result = data[vertices - 1] + SideVector(total, total, sideOffset);
        return;
    }
    const double target = total * fraction;
    const detail::LengthStop stop = Walk(data, vertices, target);
    const Line back(data[stop.vertex], data[stop.vertex - 1]);
    const double distance = stop.sum - target, length = back.Length();
    place(stop.vertex - 1, 1.0 - distance / length);
    // Intended: on a segment too short to divide by, the distance itself is the parameter.
    const double t = length >= 0.0001 ? distance / length : distance;
    *result = back.PointAt(t) + SideVector(target, total, sideOffset);
}

void PolyLine::PointAtLength(Point3d* result, double length, int* segment, double* segmentFraction,
                             double sideOffset) const {
    PointAtFraction(result, detail::RelativeLength(length, Length()), segment, segmentFraction,
                    sideOffset);
}

void PolyLine::DirectionAtLength(Point3d* result, double length) const {
    *result = DirectionAt(length, Length());
}

void PolyLine::NormalAtLength(Point3d* result, double length) const {
    Point3d direction;
    DirectionAtLength(&direction, length);
    *result = {direction.y, -direction.x, 0.0};
}

}  // namespace TamLib
