// Point3d: a location or a vector in drawing units, with the comparisons, angles and turns that the
// whole library decides by.
//
// Angles are radians; a plan angle is counter-clockwise from +x. Operations are 3D unless their
// name or comment says plan. Nothing here fails or throws: whatever doubles come in are worked
// through, and a division by zero is not guarded unless said so.
//
// The record is three consecutive doubles, the layout of the host's points and vectors, so that
// arrays of it are block-copied and handed to the host unchanged.
#pragma once

#include <cmath>
#include <cstddef>
#include <type_traits>

#include "datastruct/Comparison.h"

class AcDbDatabase;
class AcDbEntity;
class AcDbObjectId;

namespace TamLib {

class Line;
template <class T>
class Array;
template <class T>
class StringBase;

struct Point3d {
    double x = 0.0;  // east, or the first coordinate
    double y = 0.0;  // north, or the second coordinate
    double z = 0.0;  // height

    Point3d() = default;
    Point3d(double px, double py, double pz) : x(px), y(py), z(pz) {}

    // The point written in `text`, (0, 0, 0) where `Parse` stores nothing. Whether it succeeded is
    // not reported.
    explicit Point3d(const StringBase<wchar_t>& text);

    // `position()` of an entity whose class is exactly AcDbPoint, otherwise (0, 0, 0). `disposal` 1
    // closes the entity, 2 erases and closes it, anything else leaves it open; this is done for
    // every class. Null gives (0, 0, 0).
    Point3d(AcDbEntity* entity, int disposal);
    // The same of the entity with that id, opened for read and closed; (0, 0, 0) when it
    // can't be opened.
    explicit Point3d(AcDbObjectId id);

    // --- The five comparisons, in the form that arrays take. Below 0: `a` is the smaller.

    // 0 when |dx|, |dy| and |dz| are all below 0.0001, the library's working tolerance for "the
    // same point"; otherwise the exact order by x, then y, then z, as -1 or 1. Not transitive: of
    // three points 0.00006 apart the outer two differ.
    static int Compare(const Point3d* a, const Point3d* b);
    // The same with 1e-9, for vertices of a surface.
    static int CompareFine(const Point3d* a, const Point3d* b);
    // The order of point arrays: by x unless |dx| is below 1e-6, then by y unless |dy| is below
    // 1e-6, then by z unless |dz| is below 1e-6, which gives 0. Unlike `Compare`, one coordinate
    // decides without the others being looked at.
    static int CompareArray(const Point3d* a, const Point3d* b) {
        if (!(std::fabs(a->x - b->x) < 1e-6)) return a->x > b->x ? 1 : -1;
        if (!(std::fabs(a->y - b->y) < 1e-6)) return a->y > b->y ? 1 : -1;
        if (!(std::fabs(a->z - b->z) < 1e-6)) return a->z > b->z ? 1 : -1;
        return 0;
    }
    // The exact order by x, then y, then z; equal coordinates give 0.
    static int CompareExact(const Point3d* a, const Point3d* b);
    // `Compare` of what two pointers point at, for sorting an array of pointers.
    static int ComparePointers(Point3d* const* a, Point3d* const* b);

    // --- Arithmetic by component.

    Point3d& operator+=(const Point3d& other) {
        x += other.x;
        y += other.y;
        z += other.z;
        return *this;
    }
    Point3d operator+(const Point3d& other) const {
        return {x + other.x, y + other.y, z + other.z};
    }
    Point3d operator-(const Point3d& other) const {
        return {x - other.x, y - other.y, z - other.z};
    }
    Point3d operator/(double divisor) const { return {x / divisor, y / divisor, z / divisor}; }

    // The vector divided by its length. A vector shorter than 0.0001 has no usable direction and is
    // returned as it is.
    Point3d Unit() const;

    // --- Turns in place.

    // The vector from `centre` is turned by `azimuth` in plan and lifted by `elevation`:
    //   x' = x cos(az) cos(el) - y sin(az) cos(el)
    //   y' = x sin(az) cos(el) + y cos(az) cos(el)
    //   z' = sqrt(x^2 + y^2) sin(el) + z cos(el), with the x and y of before.
    void RotateAbout(const Point3d& centre, double azimuth, double elevation);
    // Turned by `angle`, right-handed, about the line through the origin along `axis` (Rodrigues'
    // rotation formula). `axis` is divided by its length unguarded: a zero axis gives NaN.
    void RotateAxis(const Point3d& axis, double angle);
    // Turned by `angle` about the line through both ends of `line`.
    void RotateLine(const Line& line, double angle);

    // --- Text. The forms follow the run-time's `%f`.

    // "(%2.7f, %2.7f, %2.7f)" into `buffer`, which holds `size` characters; cut when longer, always
    // terminated when `size` is not 0.
    void ToText(wchar_t* buffer, std::size_t size) const;
    template <std::size_t N>
    void ToText(wchar_t (&buffer)[N]) const {
        ToText(buffer, N);
    }
    // "%f,%f,%f", or `format` when not null, printed with x, y, z.
    StringBase<wchar_t> ToString(const wchar_t* format = nullptr) const;
    // "%f,%f", or `format` when not null, printed with x and y.
    StringBase<wchar_t> ToString2d(const wchar_t* format = nullptr) const;

    // Reads "x,y" or "x,y,z". The pieces between commas, empty ones included, are converted and
    // stored first and judged afterwards: true only with two or three pieces that hold nothing but
    // digits, "." and "-". So a blank, a "+" or an exponent gives false with the coordinates
    // already stored; "1e3,2" stores x 1000. An empty piece counts as 0. A coordinate without a
    // piece stays.
    bool Parse(const StringBase<wchar_t>& text);

    // --- Host.

    // Asks for a point with `acedGetPoint`, from `base` when not null. The point is stored whatever
    // the result; after a prompt "\n" is printed. True when the host's result is RTNORM. `flags`
    // has no effect.
    bool GetPoint(const wchar_t* prompt, const Point3d* base, int flags = 0);

    // Adds an AcDbPoint to the model space of `database`, null being the current one, in the colour
    // of that index and, when `layer` is given, on that layer, which is made if it doesn't exist.
    // `id`, when given, gets its id. Returns the host's status of adding, 0 when it was added.
    // Throws `TamExpAcad`, "Allocation of AcDbPoint failed", without memory.
    int ToDb(int colour, const wchar_t* layer, AcDbObjectId* id, AcDbDatabase* database) const;
    // The same with a circle of radius `size` around it; a negative `size` stands for the height of
    // the current view / 140.0. Both ids are appended to `ids`, when given. Returns the status of
    // the point.
    int ToDbMarked(int colour, const wchar_t* layer, Array<AcDbObjectId>* ids, double size,
                   AcDbDatabase* database) const;
    // Adds an AcDbText at the point: "%.3lf, %.3lf, %.3lf" of x, y and z, "%.3lf" of z, "%.3lf,
    // %.3lf" of x and y, cut at 39, 19 and 29 characters. Its height is that of the current view /
    // 120.0. Arguments and result are those of `ToDb`.
    int LabelXYZ(int colour, const wchar_t* layer, AcDbObjectId* id, AcDbDatabase* database) const;
    int LabelZ(int colour, const wchar_t* layer, AcDbObjectId* id, AcDbDatabase* database) const;
    int LabelXY(int colour, const wchar_t* layer, AcDbObjectId* id, AcDbDatabase* database) const;

    // Draws a dot on the screen, a `Line` without length, and with `withCircle` a circle of radius
    // `size` around it; a negative `size` stands for the height of the current view / 170.0.
    void DrawMarker(int colour, bool withCircle, double size) const;
    // For diagnosis: prints "(%f, %f, %f)", shows the same text at the point until the next redraw,
    // and draws two diagonals of a cube of half-side 0.1 that cross at the point: from (-,-,-) to
    // (+,+,+) and from (-,+,-) to (+,-,+). The drawing stays as it is.
    void Print(int colour) const;
};

static_assert(sizeof(Point3d) == 24 && offsetof(Point3d, y) == 8 && offsetof(Point3d, z) == 16,
              "the layout of the host's points");
static_assert(std::is_trivially_copyable_v<Point3d> && std::is_standard_layout_v<Point3d>,
              "points are moved by block copies");

// The tolerant equality used throughout: `Compare` gives 0.
bool Equals(const Point3d& a, const Point3d& b);
// Equality in plan: |dx| and |dy| below 0.0001.
bool Equals2d(const Point3d& a, const Point3d& b);
// By squared 3D distance from `point`, without tolerance: 0 when equal, -1 when `a` is
// nearer, else 1.
int CompareDistance(const Point3d& point, const Point3d& a, const Point3d& b);
// Whether `b`, the second, is farther from `origin` than `a`.
bool IsFartherThan(const Point3d& a, const Point3d& b, const Point3d& origin);

inline double DotProduct(const Point3d& a, const Point3d& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
inline Point3d CrossProduct(const Point3d& a, const Point3d& b) {
    return {a.y * b.z - a.z * b.y, b.x * a.z - a.x * b.z, a.x * b.y - b.x * a.y};
}

// The root of the sum of squares, and no `hypot`, whose last bit differs: ties between candidates
// are decided by equality.
inline double VectorLength(const Point3d& v) {
    return std::sqrt(v.x * v.x + v.y * v.y + v.z * v.z);
}
inline double SquaredDistance(const Point3d& a, const Point3d& b) {
    const double dx = b.x - a.x, dy = b.y - a.y, dz = b.z - a.z;
    return dx * dx + dy * dy + dz * dz;
}
inline double Distance(const Point3d& a, const Point3d& b) {
    return std::sqrt(SquaredDistance(a, b));
}
inline double Distance2d(const Point3d& a, const Point3d& b) {
    const double dx = b.x - a.x, dy = b.y - a.y;
    return std::sqrt(dx * dx + dy * dy);
}

// Whether two vectors point the same way: both made unit vectors and compared by `Equals`. When the
// squared length of `a` (of `a` alone) is below 0.0001, the raw vectors are compared.
bool IsSameDirection(const Point3d& a, const Point3d& b);

double RadiansToDegrees(double angle);

// The plan angle from one point to another, as `atan2` gives it. Points that are `Equals` have no
// direction and give atan(1.0) * 7.999999999999999, which is 6.283185307179585: no `atan2` yields
// that, so callers can recognise it.
double Angle(const Point3d& from, const Point3d& to);
// The sweep from `a` to `b` about `centre`, counter-clockwise: the difference of the two `Angle`s,
// a negative one increased by 2 * 3.141592653589793.
double AngleAt(const Point3d& centre, const Point3d& a, const Point3d& b);
// atan2(rise, plan distance); the constant of `Angle` for points that are `Equals`.
double SlopeAngle(const Point3d& from, const Point3d& to);
// The absolute difference of two vectors' elevation angles, each atan2(z, plan length); the
// constant of `Angle` for vectors that are `Equals`.
double ElevationDifference(const Point3d& a, const Point3d& b);
// `centre` + radius * (cos(az) cos(el), sin(az) cos(el), sin(el)).
Point3d PolarPoint(const Point3d& centre, double radius, double azimuth, double elevation);

// Arrays of points are sorted by `CompareArray`.
template <>
struct UsualComparison<Point3d> {
    static constexpr bool kExists = true;
    static constexpr std::int32_t (*kFunction)(const Point3d*,
                                               const Point3d*) = &Point3d::CompareArray;
};

}  // namespace TamLib
