// AcGeVector2d: a direction with length in the plane.
#pragma once

#include <cmath>

class AcGeVector2d {
  public:
    AcGeVector2d() = default;
    AcGeVector2d(double xx, double yy) : x(xx), y(yy) {}

    AcGeVector2d operator+(const AcGeVector2d& v) const { return {x + v.x, y + v.y}; }
    AcGeVector2d operator-(const AcGeVector2d& v) const { return {x - v.x, y - v.y}; }
    AcGeVector2d operator*(double scale) const { return {x * scale, y * scale}; }
    AcGeVector2d operator-() const { return {-x, -y}; }

    double length() const { return std::sqrt(x * x + y * y); }
    // Counter-clockwise from +x, radians, -pi to pi; 0 for the zero vector.
    double angle() const { return std::atan2(y, x); }
    double dotProduct(const AcGeVector2d& v) const { return x * v.x + y * v.y; }

    double x = 0.0;
    double y = 0.0;
};
