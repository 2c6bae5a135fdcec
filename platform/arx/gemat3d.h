// AcGeMatrix3d: an affine map of space, applied to column vectors: point' = M * point.
#pragma once

#include <gepnt3d.h>
#include <gescl3d.h>
#include <gevec3d.h>

class AcGeMatrix3d {
  public:
    static const AcGeMatrix3d kIdentity;

    // The identity.
    AcGeMatrix3d() { setToIdentity(); }

    double operator()(unsigned row, unsigned column) const { return entry[row][column]; }
    double& operator()(unsigned row, unsigned column) { return entry[row][column]; }

    AcGeMatrix3d& setToIdentity();
    // `*this` after `other`: first `other` is applied, then this.
    AcGeMatrix3d operator*(const AcGeMatrix3d& other) const;
    AcGePoint3d operator*(const AcGePoint3d& point) const;
    AcGeVector3d operator*(const AcGeVector3d& vector) const;
    AcGeMatrix3d& preMultBy(const AcGeMatrix3d& left) { return *this = left * *this; }
    AcGeMatrix3d& postMultBy(const AcGeMatrix3d& right) { return *this = *this * right; }

    // Of the upper left three by three block.
    double det() const;
    bool isSingular(const AcGeTol& tol = AcGeContext::gTol) const;
    // The inverse; a singular matrix stays as it is.
    AcGeMatrix3d inverse() const;
    AcGeMatrix3d& invert() { return *this = inverse(); }

    AcGeMatrix3d& setCoordSystem(const AcGePoint3d& origin, const AcGeVector3d& xAxis,
                                 const AcGeVector3d& yAxis, const AcGeVector3d& zAxis);
    void getCoordSystem(AcGePoint3d& origin, AcGeVector3d& xAxis, AcGeVector3d& yAxis,
                        AcGeVector3d& zAxis) const;

    static AcGeMatrix3d translation(const AcGeVector3d& vector);
    // Right-handed, radians, about `axis` through `center`.
    static AcGeMatrix3d rotation(double angle, const AcGeVector3d& axis,
                                 const AcGePoint3d& center = AcGePoint3d::kOrigin);
    static AcGeMatrix3d scaling(double factor, const AcGePoint3d& center = AcGePoint3d::kOrigin);
    static AcGeMatrix3d scaling(const AcGeScale3d& factors);
    // From the coordinate system of a plane with this normal to the world's, by the arbitrary axis
    // rule: with N the unit normal, the x axis is Y x N when |N.x| and |N.y| are both below 1/64
    // and Z x N otherwise, the y axis N x X. A normal of no length stands for +z.
    static AcGeMatrix3d planeToWorld(const AcGeVector3d& normal);
    static AcGeMatrix3d worldToPlane(const AcGeVector3d& normal);

    bool isEqualTo(const AcGeMatrix3d& other, const AcGeTol& tol = AcGeContext::gTol) const;
    bool operator==(const AcGeMatrix3d& other) const { return isEqualTo(other); }
    bool operator!=(const AcGeMatrix3d& other) const { return !isEqualTo(other); }

    double entry[4][4];
};
