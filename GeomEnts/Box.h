// Box: an axis-aligned extent in single precision, the quick rejection test of geometric searches
// and the cell of the quad tree.
//
// Six 32-bit floats, 24 bytes, minimum and maximum of each axis side by side. Doubles are narrowed
// to the nearest float on entry, and questions about points compare narrowed values unless said
// otherwise: a point just outside in double precision may count as inside, which is accepted.
// Limits are inclusive. An empty box has every minimum at the largest float and every maximum at
// its negative, so that the first point added sets both. Nothing throws; a failed host read leaves
// the box as it is.
#pragma once

#include <type_traits>

#include "GeomEnts/Point3d.h"

namespace TamLib {

struct Box {
    float xMin = 3.4028235e38f;
    float xMax = -3.4028235e38f;
    float yMin = 3.4028235e38f;
    float yMax = -3.4028235e38f;
    float zMin = 3.4028235e38f;
    float zMax = -3.4028235e38f;

    // Empty.
    Box() = default;
    // The six values in field order; nothing is sorted.
    Box(float xLow, float xHigh, float yLow, float yHigh, float zLow, float zHigh);
    Box(double xLow, double xHigh, double yLow, double yHigh, double zLow, double zHigh);
    // Six values in field order.
    explicit Box(const double values[6]);
    // From two corners, not sorted.
    Box(const Point3d& low, const Point3d& high);
    // The box of the first `count` of the points given as further arguments.
    template <class... Points>
    Box(int count, const Point3d* first, const Points*... others) {
        const Point3d* const points[] = {first, others...};
        for (int i = 0; i < count; ++i) Add(*points[i]);
    }
    // The extents of an entity (`getGeomExtents`); empty when it has none.
    explicit Box(const AcDbEntity* entity);
    // The extents of the entity with that id, empty when it can't be opened or has none. Of the
    // minimum a coordinate is taken only when below 3.4028234663852886e38, of the maximum only when
    // above the negative of it. Intended: opened for read twice, the first status being ignored,
    // closed once.
    explicit Box(const AcDbObjectId& id);
    // Three minima x, y, z, then three maxima x, y, z.
    static Box FromCorners(const double corners[6]);

    // Makes the box empty.
    void Reset() { *this = Box(); }

    // Widen to hold what is given.
    void Add(const Point3d& point);
    void Add(const Box& other);
    void AddX(double x);
    void AddY(double y);
    void AddZ(double z);
    // Two points: x, y, z twice.
    void Add(const double corners[6]);
    // The extents of an entity, when it has some. The form with an id opens for read and closes; it
    // returns the host's status of opening, 0 when it opened.
    void Add(AcDbEntity* entity);
    int Add(const AcDbObjectId& id);
    // Intended: adds the six values by component; it is no union.
    Box& operator+=(const Box& other);
    // Subtracts `*margin` from each minimum and adds it to each maximum, in double, then narrowed.
    // At map coordinates a margin below half a float's step vanishes.
    void Grow(const double* margin);
    // Adds the narrowed vector to both limits of each axis, in float.
    void Translate(const Point3d& vector);

    bool Contains(const Point3d& point) const;
    // x and y only.
    bool Contains2d(const Point3d& point) const;
    // Whether the other box lies wholly inside; an empty `other` always does.
    bool Contains(const Box& other) const;
    bool Contains2d(const Box& other) const;
    // Whether the boxes meet, on x and y, and on all three axes.
    bool Overlaps2d(const Box& other) const;
    bool Overlaps(const Box& other) const;
    // Puts each coordinate into the limits, compared in double, so that a point inside
    // keeps its value.
    void Clamp(Point3d& point) const;

    // In float.
    float Width() const { return xMax - xMin; }
    float Depth() const { return yMax - yMin; }
    float Height() const { return zMax - zMin; }
    float Area() const { return Width() * Depth(); }
    float Volume() const { return Width() * Depth() * Height(); }

    // The three midpoints, in double.
    Point3d Centre() const;
    // Bit 0 of `index` selects xMax, bit 1 yMax, bit 2 zMax, each else the minimum.
    Point3d Corner(int index) const;
    // The plan corners, at the mean of zMin and zMax.
    Point3d UpperLeft() const;
    Point3d LowerRight() const;
    Point3d LowerLeft() const;
    Point3d UpperRight() const;

    // On each axis from min(max(a.min, b.min), a.max) to max(min(a.max, b.max), a.min). Boxes that
    // don't meet give a flat result at a limit of this box.
    void Intersection(const Box& other, Box& result) const;
    // The same for x and y; zMin and zMax both take this box's zMin.
    void Intersection2d(const Box& other, Box& result) const;

    // A point inside by the run-time's generator, 0 to 32767: min + rand * (max - min) / 32767.0 in
    // float, drawn in the order x, y, z.
    void RandomPoint(Point3d& point) const;

    // The ray from `origin` along `direction`. False when it misses the box or when all components
    // of the direction are below 1e-10 in absolute value; the direction is made a unit otherwise,
    // however short. An origin inside gives true and leaves `hit` as it is. Else `hit`, when given,
    // gets the point where the ray enters: on the plane, of those facing the origin, that lies
    // farthest along the ray (A. Woo, "Fast Ray-Box Intersection", Graphics Gems). 1e-9 is the
    // component below which a ray runs along a plane.
    bool RayHit(const Point3d& origin, const Point3d& direction, Point3d* hit) const;

    // "(%f,%f,%f)-(%f,%f,%f)", or `format` when not null, with xMin, yMin, zMin, xMax, yMax and,
    // intended, zMin again.
    StringBase<wchar_t> ToString(const wchar_t* format = nullptr) const;
    // "(%f,%f)-(%f,%f)", or `format` when not null, with xMin, yMin, xMax, yMax.
    StringBase<wchar_t> ToString2d(const wchar_t* format = nullptr) const;

    // --- Host output.

    // Draws the four plan edges on the screen, at z = 0.
    void Draw(int colour) const;
    // Adds the twelve edges to the drawing as `Line::ToDb` does; `ids`, when given, gets growth
    // 12 and room for at least 12, and the new ids are appended. Returns the first status that
    // is not 0.
    int ToDb(int colour, const wchar_t* layer, Array<AcDbObjectId>* ids,
             AcDbDatabase* database) const;
    // The same of the four plan edges at z = 0, with room for at least 4.
    int ToDb2d(int colour, const wchar_t* layer, Array<AcDbObjectId>* ids,
               AcDbDatabase* database) const;
};

static_assert(sizeof(Box) == 24, "the size of one point");
static_assert(std::is_trivially_copyable_v<Box>, "boxes are moved by block copies");

}  // namespace TamLib
