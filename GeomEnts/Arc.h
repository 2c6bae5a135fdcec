// Arc: a circular arc in plan, stored as a chord and a signed height over it.
//
// The inherited ends are the arc's ends, and what Line offers works on the chord. The height is the
// signed distance from the middle of the chord to the middle of the arc: positive, the arc runs
// clockwise from start to end and bulges to the left of the chord; negative, counter-clockwise and
// to the right; 0, a straight segment. Its absolute value is above the radius for an arc of more
// than a half circle. z runs from one end's to the other's along the arc. A host's bulge has the
// opposite sign: bulge = -height / (chord / 2).
//
// Centre, radius and angles are computed anew at each use, nothing is cached. Plan angles are
// radians, counter-clockwise from +x. A chord without length divides by zero: a full circle can't
// be expressed. A height is "flat" below 0.0001 in absolute value; other tolerances stand where
// they are used.
#pragma once

#include "GeomEnts/Line.h"

namespace TamLib {

template <class T>
class Point3dArrayBase;
class PolyLine;

class Arc : public Line {
  public:
    double height;

    // Chooses the constructor that takes the sine of an angle.
    struct SineForm {};

    // A straight arc on a line that is left unset.
    Arc() : height(0.0) {}
    // Constructors that are given a chord copy it with its `valid` mark.
    Arc(double arcHeight, const Line& chord);
    // About `centre`, in plan, from `start` to `end`; an end off the circle is accepted, the radius
    // is the start's. A centre within 0.01 (the root of 0.0001) of the chord by the cross product
    // counts as on it, a half circle. Throws `TamExpDivZero`, "Distance from start point to center
    // point was zero", with the start exactly on the centre in plan.
    Arc(const Point3d& centre, const Point3d& start, const Point3d& end, bool clockwise);
    Arc(const Point3d& centre, const Line& chord, bool clockwise);
    // Through a third point, in plan. Three points exactly on one line give height 0. A point right
    // of the chord, the cross product being at least 0.01 in absolute value, gives a negative
    // height, any other a positive one. Throws `TamExpDivZero` with an empty message when the
    // centre falls exactly on `through`.
    Arc(const Line& chord, const Point3d& through);
    // From a tangent angle: with a = `angle` in 0 to 2 pi, q the number of whole quarter turns in
    // a, r = chord / 2 / cos(pi / 2 - (a - q)), height = | |r| - sqrt(r^2 - (chord / 2)^2) |.
    // Intended: q is subtracted as it is, not as quarter turns.
    Arc(const Line& chord, double angle);
    // height = chord / 2 * sin(angle).
    Arc(const Line& chord, double angle, SineForm);

    // By `FromEntity`. The form with an id opens for read, intended: whether it opened is not
    // looked at beyond there being an entity, and it is closed a second time.
    explicit Arc(AcDbObjectId id);
    Arc(AcDbEntity* entity, int disposal);
    // Reads an entity of exactly the class AcDbArc: its ends in the host's direction, which is
    // counter-clockwise, and the height; or an AcDbLine: its ends and height 0. Any other class
    // leaves the arc unset. Then `disposal` 1 closes the entity, 2 erases and closes it, anything
    // else leaves it open, whatever its class. Null leaves the arc unset.
    void FromEntity(AcDbEntity* entity, int disposal);

    double Height() const { return height; }
    void SetHeight(double arcHeight) { height = arcHeight; }
    // `BulgeToHeight(bulge, 3D length of the chord)`. Intended: 3D here, in plan in `Bulge`.
    void SetBulge(double bulge);
    // -height / (plan chord / 2); 0.0 below a height of 1e-9.
    double Bulge() const;
    // The height of a bulge over a chord; 0.0 below a bulge of 0.0001. A bulge above 1.0, which is
    // an arc longer than a half circle, gives a height above the radius.
    static double BulgeToHeight(double bulge, double chord);

    // The angle about the centre, 0 to 2 pi: 4 |atan(2 height / chord)|.
    double SweepAngle() const;
    // pi / 2 - sweep / 2: negative for more than a half circle.
    double HalfAngle() const;
    // 1.7976931348623157e308 at a height of exactly 0.
    double Radius() const;
    // Along the arc, in plan; the plan chord when flat.
    double Length() const override;
    // Between arc and chord; 0.0 when flat. Intended: for more than a half circle the triangle
    // under the chord is taken by the distance radius - |height| as it stands.
    double SegmentArea() const;
    // The centre, at the height of the start. Below a height of 1e-9 the 3D middle of the chord.
    void Centre(Point3d& point) const;
    // Angles from the centre, 0 to 2 pi. Intended: turning clockwise leads from `StartAngle` to
    // `EndAngle`; with a height above 0 these belong to start and end, otherwise to end and start.
    double StartAngle() const;
    double EndAngle() const;

    // Whether a point lies on the side of the chord to which the arc bulges. By the cross product
    // of the chord with the vector to the point; below 0.01 in absolute value the point lies on the
    // chord, which is no side. A height of exactly 0 asks whether it lies on the chord.
    bool IsOnBulgeSide(const Point3d& point) const;
    // Whether a point lies between arc and chord, as far as its distance to the centre is not above
    // the radius; false when flat, and on the chord.
    bool InSegment(const Point3d& point) const;
    // The box of the chord, and, unless flat, of those of the circle's four extremes on the axes
    // that are on the bulge side.
    Box GetBox() const;

    // The point at a distance along the arc from the start, in plan; a distance not above 0 gives
    // the start, one beyond the length the end. z is the start's, except when flat: then the
    // distance runs along the 3D chord, or, with ends within 1e-10 on each axis, the result is end
    // minus start.
    void PointAtDistance(double d, Point3d& point) const;
    // At `Length() * fraction`.
    void PointAtFraction(double fraction, Point3d& point) const;
    // On which side of the arc, walked from start to end, a point lies: -1 left, 1 right, 0 on it,
    // that is within 0.0001 of the circle by the 3D distance to the centre, also where the circle
    // goes on beyond the arc. When flat, `Line::Side(point, touch)` of the chord.
    int Side(const Point3d& point, bool touch) const;
    // Whether the ray from the centre through a point meets the arc and not the rest of its circle;
    // true for the centre itself, false when flat. By `Line::Intersect` of the chord with the ray;
    // a half circle of positive height, within 0.0001, by `IsOnBulgeSide`. Intended: one of
    // negative height is asked by the ray like any arc, although that starts on the chord, so that
    // nearly all rays count as meeting it.
    bool InSweep(const Point3d& point) const;
    // The distance in plan; `along`, when given, gets the length along the arc from the start to
    // the foot. At the centre the radius and 0.0. Off the sweep the nearer end, with `along` 0.0 or
    // `Length()`, which it is too when both are as near. When flat, `LineDistance2d` with `along`
    // and distance limited to the chord. `along` is found by intersection with the ray; where that
    // does not meet the arc, as with a half circle of negative height (see `InSweep`), a line is
    // printed and `along` is 0.0.
    double Distance(const Point3d& point, double* along) const;

    // The points in which a segment or an arc meets this one in plan, at the height of the
    // centre; `points` is emptied first. By circles: see `Circle::Intersect` for order and
    // tangents. Points off the arc are those on the other side of the chord; points on the chord
    // stay. Flat arcs take part as their chords, which meet at most once; touches count as
    // crossings, see `Line::Intersect`.
    void Intersect(const Line& line, Point3dArrayBase<Point3d>& points) const;
    void Intersect(const Arc& other, Point3dArrayBase<Point3d>& points) const;

    // The arc as a polyline of growth 20 from start to end. `step` is the angle between points in
    // radians, with `stepIsAngle`, otherwise their distance along the arc; its sign is ignored.
    // Below a height of 1e-9 the two ends. The last interval is up to two steps long. Heights run
    // evenly by angle. Intended: where the angles pass 0 they are not unwound, so that the heights
    // then run beyond those of the ends. A step of 0, or no number, gives the two ends.
    PolyLine ToPolyLine(double step, bool stepIsAngle) const;

    // --- Host.

    // Adds an AcDbArc to the drawing, counter-clockwise as the host has it. For arguments,
    // layer and result see `Line::ToDb`. Throws `TamExpAcad`, "Allocation of AcDbArc
    // failed", without memory.
    int ToDb(int colour, const wchar_t* layer, AcDbObjectId* id, AcDbDatabase* database) const;
    // Draws `ToPolyLine(0.1, true)`.
    void Draw(int colour) const;

  private:
    void SetFromCentre(const Point3d& centre, bool clockwise);
    static Line RayThrough(const Point3d& point, const Point3d& centre, double radius);
    void AlongInSweep(const Point3d& point, const Point3d& centre, double radius,
                      double& along) const;
    double ChordDistance(const Point3d& point, double toStart, double toEnd, double* along) const;
};

static_assert(sizeof(Arc) == sizeof(Line) + sizeof(double), "a line and one double");

}  // namespace TamLib
