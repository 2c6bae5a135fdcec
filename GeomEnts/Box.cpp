#include "GeomEnts/Box.h"

#include <algorithm>

#include "datastruct/Random.h"

namespace TamLib {
namespace {

float Narrow(double value) {
    return static_cast<float>(value);
}

void Widen(float& low, float& high, float lower, float upper) {
    if (lower < low) low = lower;
    if (upper > high) high = upper;
}

bool Inside(float v, float low, float high) {
    return low <= v && v <= high;
}

double Middle(float low, float high) {
    return (static_cast<double>(low) + static_cast<double>(high)) * 0.5;
}

double Limited(double v, double low, double high) {
    if (v < low) return low;
    return v > high ? high : v;
}

// One axis of an intersection, held within `low` and `high` of this box.
void Cut(float low, float high, float otherLow, float otherHigh, float& resultLow,
         float& resultHigh) {
    resultLow = std::min(std::max(low, otherLow), high);
    resultHigh = std::max(std::min(high, otherHigh), low);
}

float RandomWithin(float low, float high) {
    return low + static_cast<float>(Random()) * (high - low) / 32767.0f;
}

}  // namespace

Box::Box(float xLow, float xHigh, float yLow, float yHigh, float zLow, float zHigh)
    : xMin(xLow), xMax(xHigh), yMin(yLow), yMax(yHigh), zMin(zLow), zMax(zHigh) {}

Box::Box(double xLow, double xHigh, double yLow, double yHigh, double zLow, double zHigh)
    : Box(Narrow(xLow), Narrow(xHigh), Narrow(yLow), Narrow(yHigh), Narrow(zLow), Narrow(zHigh)) {}

Box::Box(const double values[6])
    : Box(values[0], values[1], values[2], values[3], values[4], values[5]) {}

Box::Box(const Point3d& low, const Point3d& high)
    : Box(low.x, high.x, low.y, high.y, low.z, high.z) {}

Box Box::FromCorners(const double corners[6]) {
    return {corners[0], corners[3], corners[1], corners[4], corners[2], corners[5]};
}

void Box::Add(const Point3d& point) {
    AddX(point.x);
    AddY(point.y);
    AddZ(point.z);
}

void Box::Add(const Box& other) {
    Widen(xMin, xMax, other.xMin, other.xMax);
    Widen(yMin, yMax, other.yMin, other.yMax);
    Widen(zMin, zMax, other.zMin, other.zMax);
}

void Box::AddX(double x) {
    Widen(xMin, xMax, Narrow(x), Narrow(x));
}
void Box::AddY(double y) {
    Widen(yMin, yMax, Narrow(y), Narrow(y));
}
void Box::AddZ(double z) {
    Widen(zMin, zMax, Narrow(z), Narrow(z));
}

void Box::Add(const double corners[6]) {
    Add(Point3d(corners[0], corners[1], corners[2]));
    Add(Point3d(corners[3], corners[4], corners[5]));
}

Box& Box::operator+=(const Box& other) {
    xMin += other.xMin;
    xMax += other.xMax;
    yMin += other.yMin;
    yMax += other.yMax;
    zMin += other.zMin;
    zMax += other.zMax;
    return *this;
}

void Box::Grow(const double* margin) {
    xMin = Narrow(xMin - *margin);
    xMax = Narrow(xMax + *margin);
    yMin = Narrow(yMin - *margin);
    yMax = Narrow(yMax + *margin);
    zMin = Narrow(zMin - *margin);
    zMax = Narrow(zMax + *margin);
}

void Box::Translate(const Point3d& vector) {
    xMin += Narrow(vector.x);
    xMax += Narrow(vector.x);
    yMin += Narrow(vector.y);
    yMax += Narrow(vector.y);
    zMin += Narrow(vector.z);
    zMax += Narrow(vector.z);
}

bool Box::Contains(const Point3d& point) const {
    return Contains2d(point) && Inside(Narrow(point.z), zMin, zMax);
}

bool Box::Contains2d(const Point3d& point) const {
    return Inside(Narrow(point.x), xMin, xMax) && Inside(Narrow(point.y), yMin, yMax);
}

bool Box::Contains(const Box& other) const {
    return Contains2d(other) && zMin <= other.zMin && other.zMax <= zMax;
}

bool Box::Contains2d(const Box& other) const {
    return xMin <= other.xMin && other.xMax <= xMax && yMin <= other.yMin && other.yMax <= yMax;
}

bool Box::Overlaps2d(const Box& other) const {
    return other.yMax >= yMin && yMax >= other.yMin && other.xMax >= xMin && xMax >= other.xMin;
}

bool Box::Overlaps(const Box& other) const {
    return Overlaps2d(other) && other.zMax >= zMin && zMax >= other.zMin;
}

void Box::Clamp(Point3d& point) const {
    point = {Limited(point.x, xMin, xMax), Limited(point.y, yMin, yMax),
             Limited(point.z, zMin, zMax)};
}

Point3d Box::Centre() const {
    return {Middle(xMin, xMax), Middle(yMin, yMax), Middle(zMin, zMax)};
}

Point3d Box::Corner(int index) const {
    return {(index & 1) != 0 ? xMax : xMin, (index & 2) != 0 ? yMax : yMin,
            (index & 4) != 0 ? zMax : zMin};
}

Point3d Box::UpperLeft() const {
    return {xMin, yMax, Middle(zMin, zMax)};
}
Point3d Box::LowerRight() const {
    return {xMax, yMin, Middle(zMin, zMax)};
}
Point3d Box::LowerLeft() const {
    return {xMin, yMin, Middle(zMin, zMax)};
}
Point3d Box::UpperRight() const {
    return {xMax, yMax, Middle(zMin, zMax)};
}

void Box::Intersection(const Box& other, Box& result) const {
    Box cut;
    Cut(xMin, xMax, other.xMin, other.xMax, cut.xMin, cut.xMax);
    Cut(yMin, yMax, other.yMin, other.yMax, cut.yMin, cut.yMax);
    Cut(zMin, zMax, other.zMin, other.zMax, cut.zMin, cut.zMax);
    result = cut;
}

void Box::Intersection2d(const Box& other, Box& result) const {
    Box cut;
    Cut(xMin, xMax, other.xMin, other.xMax, cut.xMin, cut.xMax);
    Cut(yMin, yMax, other.yMin, other.yMax, cut.yMin, cut.yMax);
    cut.zMin = zMin;
    cut.zMax = zMin;
    result = cut;
}

void Box::RandomPoint(Point3d& point) const {
    point.x = RandomWithin(xMin, xMax);
    point.y = RandomWithin(yMin, yMax);
    point.z = RandomWithin(zMin, zMax);
}

bool Box::RayHit(const Point3d& origin, const Point3d& direction, Point3d* hit) const {
    if (std::fabs(direction.x) < 1e-10 && std::fabs(direction.y) < 1e-10 &&
        std::fabs(direction.z) < 1e-10)
        return false;
    const Point3d unit = direction / VectorLength(direction);
    const double from[3] = {origin.x, origin.y, origin.z}, along[3] = {unit.x, unit.y, unit.z};
    const float low[3] = {xMin, yMin, zMin}, high[3] = {xMax, yMax, zMax};
    double plane[3] = {}, distance[3] = {-1.0, -1.0, -1.0};
    bool inside = true;
    for (int axis = 0; axis < 3; ++axis) {
        const bool below = from[axis] < low[axis];
        if (!below && !(from[axis] > high[axis])) continue;
        inside = false;
        plane[axis] = below ? low[axis] : high[axis];
        if (std::fabs(along[axis]) > 1e-9)
            distance[axis] = (plane[axis] - from[axis]) / along[axis];
    }
    if (inside) return true;
    int chosen = distance[1] > distance[0] ? 1 : 0;
    if (distance[2] > distance[chosen]) chosen = 2;
    if (distance[chosen] < 0.0) return false;
    double point[3];
    for (int axis = 0; axis < 3; ++axis) {
        point[axis] = axis == chosen ? plane[axis] : from[axis] + distance[chosen] * along[axis];
        if (axis != chosen && !(point[axis] >= low[axis] && point[axis] <= high[axis]))
            return false;
    }
    if (hit != nullptr) *hit = {point[0], point[1], point[2]};
    return true;
}

}  // namespace TamLib
