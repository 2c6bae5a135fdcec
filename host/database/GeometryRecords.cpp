// Points, vectors and matrices of the interface.
#include <gegbl.h>
#include <gemat3d.h>
#include <gepnt3d.h>
#include <gevec3d.h>

#include <algorithm>
#include <cmath>

AcGeTol AcGeContext::gTol;

const AcGeVector3d AcGeVector3d::kIdentity(0.0, 0.0, 0.0);
const AcGeVector3d AcGeVector3d::kXAxis(1.0, 0.0, 0.0);
const AcGeVector3d AcGeVector3d::kYAxis(0.0, 1.0, 0.0);
const AcGeVector3d AcGeVector3d::kZAxis(0.0, 0.0, 1.0);
const AcGePoint3d AcGePoint3d::kOrigin(0.0, 0.0, 0.0);
const AcGeMatrix3d AcGeMatrix3d::kIdentity;

double AcGeVector3d::angleTo(const AcGeVector3d& v) const {
    if (isZeroLength() || v.isZeroLength()) return 0.0;
    return std::atan2(crossProduct(v).length(), dotProduct(v));
}

AcGeVector3d AcGeVector3d::perpVector() const {
    // The limit within which a normal counts as close to the world's z axis.
    constexpr double kNearZ = 1.0 / 64.0;
    const AcGeVector3d unit = normal();
    const bool nearZ = std::fabs(unit.x) < kNearZ && std::fabs(unit.y) < kNearZ;
    return (nearZ ? kYAxis : kZAxis).crossProduct(unit).normal();
}

AcGeVector3d& AcGeVector3d::rotateBy(double angle, const AcGeVector3d& axis) {
    return transformBy(AcGeMatrix3d::rotation(angle, axis));
}

AcGeVector3d& AcGeVector3d::transformBy(const AcGeMatrix3d& matrix) {
    return *this = matrix * *this;
}

bool AcGeVector3d::isParallelTo(const AcGeVector3d& v, const AcGeTol& tol) const {
    return normal(tol).crossProduct(v.normal(tol)).length() <= tol.equalVector();
}

AcGePoint3d& AcGePoint3d::transformBy(const AcGeMatrix3d& matrix) {
    return *this = matrix * *this;
}

AcGePoint3d& AcGePoint3d::rotateBy(double angle, const AcGeVector3d& axis,
                                   const AcGePoint3d& base) {
    return transformBy(AcGeMatrix3d::rotation(angle, axis, base));
}

AcGeMatrix3d& AcGeMatrix3d::setToIdentity() {
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) entry[row][column] = row == column ? 1.0 : 0.0;
    }
    return *this;
}

AcGeMatrix3d AcGeMatrix3d::operator*(const AcGeMatrix3d& other) const {
    AcGeMatrix3d product;
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            double sum = 0.0;
            for (int k = 0; k < 4; ++k) sum += entry[row][k] * other.entry[k][column];
            product.entry[row][column] = sum;
        }
    }
    return product;
}

AcGePoint3d AcGeMatrix3d::operator*(const AcGePoint3d& p) const {
    const auto along = [&](int row) {
        const double* e = entry[row];
        return e[0] * p.x + e[1] * p.y + e[2] * p.z + e[3];
    };
    return {along(0), along(1), along(2)};
}

AcGeVector3d AcGeMatrix3d::operator*(const AcGeVector3d& v) const {
    const auto along = [&](int row) {
        const double* e = entry[row];
        return e[0] * v.x + e[1] * v.y + e[2] * v.z;
    };
    return {along(0), along(1), along(2)};
}

double AcGeMatrix3d::det() const {
    const auto& e = entry;
    return e[0][0] * (e[1][1] * e[2][2] - e[1][2] * e[2][1]) -
           e[0][1] * (e[1][0] * e[2][2] - e[1][2] * e[2][0]) +
           e[0][2] * (e[1][0] * e[2][1] - e[1][1] * e[2][0]);
}

bool AcGeMatrix3d::isSingular(const AcGeTol& tol) const {
    const double volume = std::fabs(det());
    // Compared with the product of the columns' lengths, so that small scales don't count as
    // singular.
    double product = 1.0;
    for (int column = 0; column < 3; ++column) {
        product *= AcGeVector3d(entry[0][column], entry[1][column], entry[2][column]).length();
    }
    return !(volume > tol.equalVector() * product);
}

AcGeMatrix3d AcGeMatrix3d::inverse() const {
    if (isSingular()) return *this;
    const double scale = 1.0 / det();
    AcGeMatrix3d result;
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column) {
            const int a = (column + 1) % 3;
            const int b = (column + 2) % 3;
            const int c = (row + 1) % 3;
            const int d = (row + 2) % 3;
            result.entry[row][column] =
                (entry[a][c] * entry[b][d] - entry[a][d] * entry[b][c]) * scale;
        }
    }
    const AcGeVector3d shift = result * AcGeVector3d(entry[0][3], entry[1][3], entry[2][3]);
    for (unsigned row = 0; row < 3; ++row) result.entry[row][3] = -shift[row];
    return result;
}

AcGeMatrix3d& AcGeMatrix3d::setCoordSystem(const AcGePoint3d& origin, const AcGeVector3d& xAxis,
                                           const AcGeVector3d& yAxis, const AcGeVector3d& zAxis) {
    setToIdentity();
    for (unsigned row = 0; row < 3; ++row) {
        entry[row][0] = xAxis[row];
        entry[row][1] = yAxis[row];
        entry[row][2] = zAxis[row];
        entry[row][3] = origin[row];
    }
    return *this;
}

void AcGeMatrix3d::getCoordSystem(AcGePoint3d& origin, AcGeVector3d& xAxis, AcGeVector3d& yAxis,
                                  AcGeVector3d& zAxis) const {
    for (unsigned row = 0; row < 3; ++row) {
        xAxis[row] = entry[row][0];
        yAxis[row] = entry[row][1];
        zAxis[row] = entry[row][2];
        origin[row] = entry[row][3];
    }
}

AcGeMatrix3d AcGeMatrix3d::translation(const AcGeVector3d& vector) {
    AcGeMatrix3d result;
    for (unsigned row = 0; row < 3; ++row) result.entry[row][3] = vector[row];
    return result;
}

// Rodrigues' formula.
AcGeMatrix3d AcGeMatrix3d::rotation(double angle, const AcGeVector3d& axis,
                                    const AcGePoint3d& center) {
    const AcGeVector3d u = axis.normal();
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    AcGeMatrix3d turn;
    turn.setCoordSystem(
        AcGePoint3d::kOrigin,
        {c + u.x * u.x * (1 - c), u.y * u.x * (1 - c) + u.z * s, u.z * u.x * (1 - c) - u.y * s},
        {u.x * u.y * (1 - c) - u.z * s, c + u.y * u.y * (1 - c), u.z * u.y * (1 - c) + u.x * s},
        {u.x * u.z * (1 - c) + u.y * s, u.y * u.z * (1 - c) - u.x * s, c + u.z * u.z * (1 - c)});
    return translation(center.asVector()) * turn * translation(-center.asVector());
}

AcGeMatrix3d AcGeMatrix3d::scaling(double factor, const AcGePoint3d& center) {
    return translation(center.asVector()) * scaling(AcGeScale3d(factor)) *
           translation(-center.asVector());
}

AcGeMatrix3d AcGeMatrix3d::scaling(const AcGeScale3d& factors) {
    AcGeMatrix3d result;
    result.entry[0][0] = factors.sx;
    result.entry[1][1] = factors.sy;
    result.entry[2][2] = factors.sz;
    return result;
}

AcGeMatrix3d AcGeMatrix3d::planeToWorld(const AcGeVector3d& normal) {
    AcGeMatrix3d result;
    if (normal.isZeroLength()) return result;
    const AcGeVector3d z = normal.normal();
    const AcGeVector3d x = z.perpVector();
    return result.setCoordSystem(AcGePoint3d::kOrigin, x, z.crossProduct(x).normal(), z);
}

AcGeMatrix3d AcGeMatrix3d::worldToPlane(const AcGeVector3d& normal) {
    AcGeMatrix3d result = planeToWorld(normal);
    // The inverse of a rotation is its transpose.
    for (int row = 0; row < 3; ++row) {
        for (int column = row + 1; column < 3; ++column) {
            std::swap(result.entry[row][column], result.entry[column][row]);
        }
    }
    return result;
}

bool AcGeMatrix3d::isEqualTo(const AcGeMatrix3d& other, const AcGeTol& tol) const {
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            if (std::fabs(entry[row][column] - other.entry[row][column]) > tol.equalVector()) {
                return false;
            }
        }
    }
    return true;
}
