// AcGePoint2d: a place in the plane.
#pragma once

#include <gevec2d.h>

class AcGePoint2d {
  public:
    AcGePoint2d() = default;
    AcGePoint2d(double xx, double yy) : x(xx), y(yy) {}

    AcGePoint2d operator+(const AcGeVector2d& v) const { return {x + v.x, y + v.y}; }
    AcGePoint2d operator-(const AcGeVector2d& v) const { return {x - v.x, y - v.y}; }
    AcGeVector2d operator-(const AcGePoint2d& p) const { return {x - p.x, y - p.y}; }

    double distanceTo(const AcGePoint2d& p) const { return (*this - p).length(); }

    double x = 0.0;
    double y = 0.0;
};
