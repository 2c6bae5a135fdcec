// AcGePoint3d: a place in space; three doubles x, y, z in this order.
#pragma once

#include <gegbl.h>
#include <gevec3d.h>

class AcGeMatrix3d;

class AcGePoint3d {
  public:
    static const AcGePoint3d kOrigin;

    AcGePoint3d() = default;
    AcGePoint3d(double xx, double yy, double zz) : x(xx), y(yy), z(zz) {}

    AcGePoint3d& set(double xx, double yy, double zz) {
        x = xx;
        y = yy;
        z = zz;
        return *this;
    }
    double operator[](unsigned i) const { return i == 0 ? x : i == 1 ? y : z; }
    double& operator[](unsigned i) { return i == 0 ? x : i == 1 ? y : z; }

    AcGePoint3d operator+(const AcGeVector3d& v) const { return {x + v.x, y + v.y, z + v.z}; }
    AcGePoint3d operator-(const AcGeVector3d& v) const { return {x - v.x, y - v.y, z - v.z}; }
    AcGeVector3d operator-(const AcGePoint3d& p) const { return {x - p.x, y - p.y, z - p.z}; }
    AcGePoint3d& operator+=(const AcGeVector3d& v) { return *this = *this + v; }
    AcGePoint3d& operator-=(const AcGeVector3d& v) { return *this = *this - v; }

    AcGeVector3d asVector() const { return {x, y, z}; }
    double distanceTo(const AcGePoint3d& p) const { return (*this - p).length(); }
    AcGePoint3d& transformBy(const AcGeMatrix3d& matrix);
    // Right-handed, radians, about the axis `axis` through `base`.
    AcGePoint3d& rotateBy(double angle, const AcGeVector3d& axis,
                          const AcGePoint3d& base = AcGePoint3d::kOrigin);

    bool isEqualTo(const AcGePoint3d& p, const AcGeTol& tol = AcGeContext::gTol) const {
        return distanceTo(p) <= tol.equalPoint();
    }
    bool operator==(const AcGePoint3d& p) const { return isEqualTo(p); }
    bool operator!=(const AcGePoint3d& p) const { return !isEqualTo(p); }

    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

static_assert(sizeof(AcGePoint3d) == 24, "point arrays are exchanged as three doubles a point");
