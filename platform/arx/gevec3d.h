// AcGeVector3d: a direction with length in space.
#pragma once

#include <gegbl.h>

#include <cmath>

class AcGeMatrix3d;

class AcGeVector3d {
  public:
    static const AcGeVector3d kIdentity;
    static const AcGeVector3d kXAxis;
    static const AcGeVector3d kYAxis;
    static const AcGeVector3d kZAxis;

    AcGeVector3d() = default;
    AcGeVector3d(double xx, double yy, double zz) : x(xx), y(yy), z(zz) {}

    AcGeVector3d& set(double xx, double yy, double zz) {
        x = xx;
        y = yy;
        z = zz;
        return *this;
    }
    double operator[](unsigned i) const { return i == 0 ? x : i == 1 ? y : z; }
    double& operator[](unsigned i) { return i == 0 ? x : i == 1 ? y : z; }

    AcGeVector3d operator+(const AcGeVector3d& v) const { return {x + v.x, y + v.y, z + v.z}; }
    AcGeVector3d operator-(const AcGeVector3d& v) const { return {x - v.x, y - v.y, z - v.z}; }
    AcGeVector3d operator-() const { return {-x, -y, -z}; }
    AcGeVector3d operator*(double scale) const { return {x * scale, y * scale, z * scale}; }
    AcGeVector3d operator/(double scale) const { return {x / scale, y / scale, z / scale}; }
    AcGeVector3d& operator+=(const AcGeVector3d& v) { return *this = *this + v; }
    AcGeVector3d& operator-=(const AcGeVector3d& v) { return *this = *this - v; }
    AcGeVector3d& operator*=(double scale) { return *this = *this * scale; }
    AcGeVector3d& operator/=(double scale) { return *this = *this / scale; }

    double dotProduct(const AcGeVector3d& v) const { return x * v.x + y * v.y + z * v.z; }
    AcGeVector3d crossProduct(const AcGeVector3d& v) const {
        return {y * v.z - z * v.y, z * v.x - x * v.z, x * v.y - y * v.x};
    }
    double lengthSqrd() const { return dotProduct(*this); }
    double length() const { return std::sqrt(lengthSqrd()); }
    bool isZeroLength(const AcGeTol& tol = AcGeContext::gTol) const {
        return length() <= tol.equalVector();
    }
    bool isUnitLength(const AcGeTol& tol = AcGeContext::gTol) const {
        return std::fabs(length() - 1.0) <= tol.equalVector();
    }
    // The unit vector; a vector of no length (by `tol`) stays as it is.
    AcGeVector3d normal(const AcGeTol& tol = AcGeContext::gTol) const {
        return isZeroLength(tol) ? *this : *this / length();
    }
    AcGeVector3d& normalize(const AcGeTol& tol = AcGeContext::gTol) { return *this = normal(tol); }

    // 0 to pi; 0 when one of the two has no length.
    double angleTo(const AcGeVector3d& v) const;
    // The x axis that the arbitrary axis rule gives to this vector as normal; a unit vector.
    AcGeVector3d perpVector() const;
    // Right-handed, radians, about `axis` through the origin.
    AcGeVector3d& rotateBy(double angle, const AcGeVector3d& axis);
    AcGeVector3d& transformBy(const AcGeMatrix3d& matrix);

    bool isParallelTo(const AcGeVector3d& v, const AcGeTol& tol = AcGeContext::gTol) const;
    bool isEqualTo(const AcGeVector3d& v, const AcGeTol& tol = AcGeContext::gTol) const {
        return (*this - v).length() <= tol.equalVector();
    }
    bool operator==(const AcGeVector3d& v) const { return isEqualTo(v); }
    bool operator!=(const AcGeVector3d& v) const { return !isEqualTo(v); }

    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

inline AcGeVector3d operator*(double scale, const AcGeVector3d& v) {
    return v * scale;
}
