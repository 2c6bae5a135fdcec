// Line: a directed straight segment in 3D, the working unit of polylines,
// surfaces and intersections.
//
// Most tests work in plan, on x and y alone, and leave z to interpolation. A side is -1 left of the
// direction from start to end, 1 right of it, 0 on it, unless an operation says otherwise. Nothing
// here throws and nothing allocates: a line is a small value built on the stack for each segment.
// Degenerate lines are met where a comment says so and divide by zero elsewhere. Each tolerance
// belongs to its operation; "within t" means a difference strictly below t.
#pragma once

#include <cstdint>
#include <cstdio>

#include "GeomEnts/Point3d.h"

namespace TamLib {

struct Box;

class Line {
  public:
    // In this order: the plan routines read the four plan coordinates as a unit.
    std::uint8_t valid;  // 1 on every line built from points; chaining uses it as "still free"
    double x1, y1;       // plan start
    double x2, y2;       // plan end
    double z1, z2;       // heights of start and end

    // Leaves all fields unset.
    Line() {}  // NOLINT(modernize-use-equals-default): must not zero the fields in `Line()`
    // Sets `valid` only.
    explicit Line(bool isValid) : valid(isValid ? 1 : 0) {}
    // `valid` is 1. With `order` the ends are exchanged unless the end lies above the start by x,
    // then y, then z, exactly; so equal points and NaN are exchanged.
    Line(const Point3d& start, const Point3d& end, bool order = false);
    // `valid` is 1. With `order` the ends are exchanged when x1 is at least x2 and, in addition,
    // |x1 - x2| is at least 0.0001 or y2 is not above y1. Intended: another rule than the one
    // above.
    Line(double startX, double startY, double startZ, double endX, double endY, double endZ,
         bool order = false);
    // From `start` to `PolarPoint(start, length, azimuth, elevation)`. `valid` is 1.
    Line(const Point3d& start, double azimuth, double length, double elevation);

    // Both ends of an entity whose class is exactly AcDbLine; then `disposal` 1 closes it, 2 erases
    // and closes it, anything else leaves it open. Another class or null leaves the line unset and
    // the entity untouched, not closed either.
    Line(AcDbEntity* entity, int disposal);
    // The same of the entity with that id, opened for read and closed; unset when it can't be
    // opened. Intended: the entity is closed a second time, whose status is ignored.
    explicit Line(AcDbObjectId id);

    // The 3D length. The one virtual operation; there is no virtual destructor, lines are values.
    virtual double Length() const;

    // The length in plan.
    double Length2d() const;
    Point3d Start() const { return {x1, y1, z1}; }
    Point3d End() const { return {x2, y2, z2}; }
    void SetStart(const Point3d& point);
    void SetEnd(const Point3d& point);
    // End minus start in 3D, not made a unit.
    Point3d Direction() const { return {x2 - x1, y2 - y1, z2 - z1}; }
    // `Angle(start, end)`.
    double Azimuth() const;
    // `SlopeAngle(start, end)`.
    double Slope() const;
    Point3d MidPoint() const;
    // The middle in plan, with z = 0.
    Point3d MidPoint2d() const;
    // start + t * (end - start); t below 0 gives the start, t above 1.0 the end.
    Point3d PointAt(double t) const;
    // The point at height `z`. A level line (z1 equal to z2 exactly): 0, with `point` untouched,
    // when `z` differs, else 1 and the start. Otherwise `point` is at t = (z - z1) / (z2 - z1), on
    // the line extended when t lies outside 0 to 1: 2 when t is within 0.0001 of 0 or 1 (an end), 1
    // when 0 < t < 1, else 0.
    int PointAtZ(double z, Point3d& point) const;

    void Reverse();
    void Translate(const Point3d& vector);
    // Moves that end outward along the 3D direction; a negative `d` shortens. A line of length 0
    // divides by zero.
    void ExtendStart(double d);
    void ExtendEnd(double d);
    // `ExtendEnd(d)`, then `ExtendStart(d)`.
    void Extend(double d);
    // The operations of Point3d on both ends.
    void RotateAbout(const Point3d& centre, double azimuth, double elevation);
    void RotateAxis(const Point3d& axis, double angle);
    void RotateLine(const Line& line, double angle);

    // True when (y2 - y1)(x2 - px) is above (x2 - x1)(y2 - py): the line lies to the right of the
    // point, that is the point left of start to end. Intended.
    bool IsRightOf(const Point3d& point) const;
    // By the cross product c of the direction with the vector from the start to the point: with
    // `touch`, 0 when |c| is below 0.01 (the root of 0.0001); -1 when c is above 0, otherwise 1.
    // Without `touch` never 0.
    int Side(const Point3d& point, bool touch) const;
    // Whether the plan slopes differ by less than 2e-8. A vertical line divides by zero.
    bool IsParallel2d(const Line& other) const;
    // The box of both ends.
    Box GetBox() const;
    // The sum of `ByteChecksum` over `valid`, x1, x2, y1, y2, z1, z2.
    std::uint32_t Checksum() const;
    // The order of lines in sorted arrays: by x1, x2, y1, y2, z1, z2; a difference below 0.0001
    // counts as equal and hands over to the next. -1, 0 or 1.
    static int Compare(const Line* a, const Line* b);
    // The same in plan: by x1, x2, y1, y2.
    static int Compare2d(const Line* a, const Line* b);

    // --- Distance and projection.

    // The distance in plan from `point` to the segment; `side` and `parameter` may be null.
    // `parameter` is the position of the foot, 0 at the start and 1 at the end, not limited to
    // these; `side` is -1 with the point left of the direction, 1 right, 0 exactly on the line.
    // Below 0 the distance is to the start, above 1.0 to the end. A plan length below 1e-8 counts
    // as a point: parameter 0.0, side 1, the distance to the start.
    double Distance2d(const Point3d& point, int* side, double* parameter) const;
    // The distance in plan to the infinite line; `along`, when given, is the signed plan distance
    // from the start to the foot. A plan length below 0.0001 counts as a point: the distance to the
    // start, `along` 0.
    double LineDistance2d(const Point3d& point, double* along) const;
    // The start when `Length()` is below 0.0001; otherwise start + (end - start) / length * along,
    // with `along` of `LineDistance2d`. Intended: a plan value on a 3D direction, which puts the
    // foot on a sloped line a little short.
    void Project(Point3d& result, const Point3d& point) const;
    // The foot of the 3D perpendicular from `point`. 1 when it lies no farther than `Length()` from
    // both ends; otherwise the nearer end takes its place, 0. `distance`, when given, is the 3D
    // distance from the point to the foot.
    int ClosestPoint(const Point3d& point, Point3d& foot, double* distance) const;
    // The smallest 3D distance between two segments, and the points where it is taken when given.
    // The closest approach by clamped parameters (D. Eberly, "Robust Computation of Distance
    // Between Line Segments"; the form with numerators and denominators is D. Sunday's). 1e-7 is
    // the determinant below which lines count as parallel, and the numerator below which a
    // parameter is 0. Intended: an `other` without length is measured from this line's start; a
    // line without length is measured to all of `other`.
    double SegmentDistance(const Line& other, Point3d* pointHere, Point3d* pointThere) const;

    // --- Plan tests.

    // Whether the point lies on the segment. When `tolerance` is above the SQUARED plan length the
    // line counts as a point: |px - x1| and |py - y1| below `tolerance`. Otherwise, with s and t
    // the parameters across and along: beyond an end, false when the overshoot and s together,
    // squared as parameters, or the squared distance to that end, are above tolerance^2. Then
    // whether tolerance^2 is above the squared distance to the line. Intended: parameters and
    // lengths are mixed, so that only short overshoots pass.
    bool PointOn(const Point3d& point, double tolerance) const;
    bool PointOn(double x, double y, double tolerance) const;

    // Whether a ray going down (to smaller y) from `point` meets the line: 0 no, 1 yes, 2 a touch,
    // only with `touch`: the point lies on the line. `foot` starts as `point` and gets the y where
    // the line is met. Coordinates within 0.0001 count as the same; spans are inclusive, and a span
    // that both ends reach within 1e-10 counts too. A line whose ends are within 0.0001 in x is
    // vertical: it can only be touched.
    int IsBelow(const Point3d& point, Point3d& foot, bool touch) const;
    // The same, always reporting touches, with equality in place of the 0.0001 tests;
    // the 1e-10 stays.
    int IsBelowExact(const Point3d& point, Point3d& foot) const;
    // The same with every tolerance relative: for a coordinate v of the line it is
    // v * 2.220446049250313e-16 * 5.0 + 2.220446049250313e-16. Intended: v keeps its sign, so that
    // a tolerance below 0 lets nothing pass. Spans are strict.
    int IsBelowEpsilon(const Point3d& point, Point3d& foot) const;

    // The plan intersection of two segments: 0 none, 1 a crossing, 2 a touch, reported only with
    // `touch`; without it an end lying on the other segment counts as a crossing, save that the
    // upper end of a vertical line lying on the other segment gives 0. `result` gets x and y; its z
    // stays, and with 0 x and y may be anything.
    //   - A line whose ends are within 1e-8 in x is vertical. From its upper end a ray goes down
    //     (`IsBelow`); it meets the other line at y. A crossing when y lies above the lower end or
    //     within 1e-8 of it. With `touch`: a touch within 0.0001 of either end, or when the upper
    //     end lies on the other line. Intended: when the line asked is the vertical one, an end of
    //     the other line below its upper end, within 0.0001 of its x, is a touch as well, also one
    //     that lies below its lower end; and of two vertical lines only the upper end of the one
    //     asked counts, so that the roles are not alike.
    //   - With `touch`, each end within 0.0001 of the other segment is a touch at that end, tried
    //     ahead of any slope in the order other's start, other's end, start, end.
    //   - Slopes that differ by at least 1e-8 cross where the crossing lies in all
    //     four spans, inclusive.
    //   - Parallel lines meet when their x spans overlap and their intercepts differ by less than
    //     0.0001: at the larger of the two smaller x.
    int Intersect(const Line& other, Point3d& result, bool touch) const;
    // `Intersect`, then the height at `result`, interpolated by plan distance: of this line with
    // `zMode` 0, of `other` with 1, the mean with 2, 0.0 with any other. The height is computed for
    // a miss too.
    int Intersect3d(const Line& other, Point3d& result, int zMode, bool touch) const;

    // Cuts the line to `box` in 3D. True when it lies wholly OUTSIDE (its ends may have moved
    // then), false when it was cut or lies inside. The start is cut first, then the end.
    bool ClipToBox(const Box& box);
    // Whether the line meets the x and y limits of `box`, inclusive, compared in double.
    bool IntersectsBox2d(const Box& box) const;

    // --- File form: 48 bytes, six little-endian doubles in the order x1, y1, z1, x2, y2, z2, which
    // is not the order in memory. `valid` is not stored; reading sets it to 1. 1, or -1 when a
    // double can't be transferred; of a failed read the doubles before it are stored.

    int Write(std::FILE* file) const;
    int Read(std::FILE* file);
    // The same on a file of that path, opened in mode "wb" or "rb" and closed; -1 when it can't be.
    int Write(const wchar_t* path) const;
    int Read(const wchar_t* path);

    // --- Host output.

    // Adds an AcDbLine to the model space of `database`, null being the current one, in the colour
    // of that index and, when `layer` is given, on that layer, which is made if it doesn't exist.
    // `id`, when given, gets its id. Returns the host's status of adding, 0 when it was added.
    // Throws `TamExpAcad`, "Allocation of AcDbLine failed", without memory.
    int ToDb(int colour, const wchar_t* layer, AcDbObjectId* id, AcDbDatabase* database) const;
    // The same of a solid along the line: a circle of that radius about the start, across the
    // direction, extruded along it. Returns 150, and adds nothing, when the circle gives no region;
    // otherwise the status of the extrusion, and the solid is added when that is 0. Intended:
    // `colour` has no effect.
    int ToPipe(double radius, int colour, const wchar_t* layer, AcDbObjectId* id,
               AcDbDatabase* database) const;
    // Draws the line on the screen. With a `width` other than 0, copies of it shifted by k pixels
    // across, for k from -n to n with n = width / 2; a pixel is as wide as the first one of the
    // current window is in drawing units.
    void Draw(int colour, bool highlight = false, int width = 0) const;
    // Draws the line longer by `extension` at both ends with highlight, then this line over it.
    void DrawExtended(int colour, double extension) const;
    // For diagnosis: `Draw(colour)`, then "Line:  ", `Print` of the start, " - ", `Print` of the
    // end, ".\n".
    void Print(int colour) const;
    // The labels of Point3d at both ends; the ids are appended to `ids`, when given. Returns the
    // first status that is not 0.
    int LabelEndsXYZ(int colour, const wchar_t* layer, Array<AcDbObjectId>* ids,
                     AcDbDatabase* database) const;
    int LabelEndsZ(int colour, const wchar_t* layer, Array<AcDbObjectId>* ids,
                   AcDbDatabase* database) const;
    int LabelEndsXY(int colour, const wchar_t* layer, Array<AcDbObjectId>* ids,
                    AcDbDatabase* database) const;
};

static_assert(sizeof(Line) == 64, "arrays of lines and files rely on the layout");

}  // namespace TamLib
