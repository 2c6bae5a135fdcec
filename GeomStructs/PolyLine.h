// PolyLine: an ordered run of vertices with straight segments between them. Every polygon,
// boundary, alignment and section is one.
//
// A polyline is closed when its last vertex equals its first within 0.0001 in each coordinate;
// there is no flag, a closed figure repeats its first vertex. It is a plain value without a link to
// whatever it was read from. Queries ignore `offset`, which only output adds, and the stored box,
// which nothing here keeps up to date; they never fail: an index out of range or a polyline too
// short gives the value told. "In plan" means on x and y; everything else is 3D. All queries are
// linear scans of the vertices.
#pragma once

#include "GeomEnts/Box.h"
#include "GeomEnts/Line.h"
#include "GeomStructs/Point3dArray.h"

namespace TamLib {

class PolyLine : public Point3dArrayBase<Point3d> {
  public:
    // Empty. Growth is the larger of `initialCapacity` and 5; 0 allocates nothing.
    explicit PolyLine(int initialCapacity = 10);
    // The points of an array, with its settings and growth, as `Array` assignment copies them.
    explicit PolyLine(const Array<Point3d>& points);
    // The plan corners of a box: upper left, upper right, lower right, lower left, at the mean of
    // its z limits, then `Close()`: five vertices, or four equal ones of a box without width and
    // depth.
    explicit PolyLine(const Box& box);

    // Read from a drawing entity by `FromEntity(entity, disposal)`. The form with an id opens for
    // read and stays empty when it can't; intended: it closes the entity a second time after
    // `FromEntity` has, and ignores that status.
    explicit PolyLine(AcDbObjectId id);
    PolyLine(AcDbEntity* entity, int disposal);
    // The same with curves sampled: by `FromCurve` when `step` is at least 0.0001, otherwise (0,
    // smaller or negative) by `FromEntity`.
    PolyLine(AcDbObjectId id, double step, bool adaptive);
    PolyLine(AcDbEntity* entity, int disposal, double step, bool adaptive);

    PolyLine(const PolyLine&) = default;
    PolyLine(PolyLine&&) noexcept = default;
    PolyLine& operator=(const PolyLine&) = default;
    ~PolyLine() override;

    // --- Virtual operations, in this order behind those of the array.

    // Appends a copy of the first vertex unless the last one equals it. Nothing when empty.
    virtual void Close();
    // Appends the vertices of a drawing entity to those already there. By class, tried in this
    // order; the first two and the region must be exactly of that class, the others may be derived:
    //   AcDb3dPolyline, AcDb2dPolyline  the vertices in world coordinates, but for spline control
    //                                   points (type 1); of the 2D form z is the polyline's
    //                                   elevation before the transformation. A vertex that can't
    //                                   be opened is passed over.
    //   AcDbPolyline                    the vertices; arcs become their chords
    //   AcDbLine                        both ends
    //   AcDbPoint, AcDbBlockReference   the position twice: a polyline without length
    //   AcDbRegion                      nothing: outlines are not read yet
    //   any other                       nothing
    // A closed entity's first vertex is appended again unless the last equals it.
    // `disposal` says what becomes of the entity then: 0 it stays open, 1 it is closed, 2 erased
    // and closed. Intended: an entity that nothing is read of is closed with 1 or 2, but never
    // erased. Throws `TamExpAcad` with "LightWeight PolyLine conversion to PolyLine failed!" when
    // an AcDbPolyline refuses a vertex; the vertices read so far stay and the entity stays open.
    virtual void FromEntity(AcDbEntity* entity, std::int32_t disposal);
    // Whether an entity is exactly an AcDb3dPolyline, AcDb2dPolyline, AcDbPolyline, AcDbRegion,
    // AcDbLine or AcDbPoint; false for null.
    virtual bool IsPolyEntity(AcDbEntity* entity) const;
    // Draws each segment on the screen with `acedGrDraw`, vertices shifted by `offset`; a single
    // vertex as a dot. `colour` -1 gives the segments the colours 1 to 9 in turn.
    virtual void Draw(std::int32_t colour) const;
    // Whether there is a last vertex and it equals `point`; with `remove` it goes then.
    virtual bool DropLastIfEqual(const Point3d& point, bool remove);

    // --- Segments.

    // True with at least two vertices of which the last equals the first.
    bool IsClosed() const;
    // The segment from vertex `index` to the next. Of a closed polyline the index count - 1 gives
    // the segment without length from the last vertex to the first. Any other index out of range
    // gives a line with all coordinates 0 that is not `valid`.
    Line GetSegment(int index) const;
    // The index of the segment nearest to `point` in plan, the lowest of equally near ones, by
    // `Line::Distance2d`. `distance` and `side` may be null.
    // `distance` gets the plan distance. `side` is that of the segment, -1 with the point left, 1
    // right, 0 on the line, unless the foot lies beyond an end at which a neighbour joins on: then
    // it tells on which side of this segment the neighbour's far vertex lies, by the cross product
    // c of the direction with the vector from the start to it: 0 when |c| is below 0.01 (the root
    // of 0.0001), 1 when c is above 0, else -1. Intended: the two rules have opposite signs. Below
    // two vertices the result and `side` are 0; with one, `distance` gets the 3D distance to it.
    int NearestSegment(const Point3d& point, double* distance = nullptr, int* side = nullptr) const;
    // The `side` of `NearestSegment`.
    int SideOf(const Point3d& point) const;
    // The distance in plan to the nearest segment; to the vertex when there is but one; -1.0 when
    // empty.
    double MinDistance2d(const Point3d& point) const;

    // --- Lengths. Sums run in segment order, so that equal beginnings have equal sums.

    // The sum of the 3D lengths of the segments; 0 below two vertices.
    double Length() const;
    // The same in plan.
    double Length2d() const;
    // `Length` with the edge from the last vertex back to the first.
    double PerimeterLength() const;
    // The length from vertex 0 to vertex `index`: 0 for a negative index, `Length` beyond the last.
    double LengthToVertex(int index) const;

    // --- Points at a length.

    // The point at `fraction` of the total length, moved sideways by `sideOffset`, positive to the
    // right of the way (below 0.0001 in absolute value it counts as 0). `segment` gets the index of
    // the segment, `segmentFraction` the position on it, each when given:
    //   no vertex            the sideways move alone; segment and segmentFraction stay
    //   one vertex           that vertex; segment and segmentFraction stay
    //   fraction below 0     the first vertex; segment 0 at 0.0
    //   fraction above 1.0   the last vertex; the last segment at 1.0
    //   else                 target = length * fraction. The walk stops at the first vertex whose
    //                        sum is above target, or at the last one; the segment is the one that
    //                        ends there, and the point is placed from its end backwards.
    // On a segment shorter than 0.0001 the way back is used undivided as parameter, intended;
    // `segmentFraction` is divided all the same and is NaN on a segment without length.
    void PointAtFraction(Point3d* result, double fraction, int* segment = nullptr,
                         double* segmentFraction = nullptr, double sideOffset = 0.0) const;
    // The same with a length in drawing units: the fraction is length / total, or `length` itself
    // when the total is below 0.0001.
    void PointAtLength(Point3d* result, double length, int* segment = nullptr,
                       double* segmentFraction = nullptr, double sideOffset = 0.0) const;
    // The direction, in 3D and as a unit vector, of the segment at that length; a segment shorter
    // than 0.0001 gives its vector as it is, fewer than two vertices (0, 0, 0). Intended: the
    // length becomes a fraction and a length again. Where that rounds to just below the sum at a
    // vertex, the segment before that vertex answers.
    void DirectionAtLength(Point3d* result, double length) const;
    // That direction (dx, dy, dz) turned to the right in plan: (dy, -dx, 0).
    void NormalAtLength(Point3d* result, double length) const;

    // --- Drawing.

    // Whether an entity may be picked as a line, by exact class: AcDb3dPolyline, AcDb2dPolyline,
    // AcDbPolyline and AcDbRegion always; AcDbLine and AcDbPoint with `lineLike`; AcDbSpline,
    // AcDbCircle and AcDbEllipse with `curves`, AcDbArc with both; AcDbPoint with `points`. False
    // for null.
    static bool IsAcceptedEntity(AcDbEntity* entity, bool lineLike, bool curves, bool points);

    // Fills with points along any curve. Splines, ellipses and fitted or splined 2D polylines are
    // sampled along their length, from the start, every `step`; with `adaptive` the step is an
    // angle in radians that the direction may turn from point to point. The end point follows, and
    // for a closed curve the first vertex again. Everything else is read by `FromEntity`, save what
    // holds arcs (circle, arc, bulged polyline): arcs are not read yet, nothing is appended, and
    // `disposal` 1 or 2 closes the entity without erasing it. For the rest `disposal` is that of
    // `FromEntity`.
    void FromCurve(AcDbEntity* entity, int disposal, double step, bool adaptive);

    // Lets the user pick a line, once. This object is emptied first, and the focus given to the
    // host's window. `prompt` is a format with one text, the empty one; null stands for "Select
    // polyline: ". `consume` opens the entity for write and erases it after reading. `sampleCurves`
    // reads with `FromCurve(0.05, adaptive)`, otherwise with `FromEntity`. All out arguments may be
    // null.
    //    0   read and shown in colour 6, or 2 when its own is 6
    //   -1   cancelled (RTCAN)
    //   -2   any other answer than an entity
    //   -3   the pick can't be read as a line: no id, not to be opened, of a class not accepted, or
    //        not read yet (see `IsUnread`); it is closed and unchanged
    // `pickPoint` gets the point of the pick whatever the answer; `id` is stored before opening,
    // `layer` (a text that the caller frees) and `colour` when accepted, and `segment`, the segment
    // nearest to the pick, at the end.
    int Select(Point3d* pickPoint, int* segment, bool consume, const wchar_t** layer, int* colour,
               AcDbObjectId* id, const wchar_t* prompt, bool sampleCurves);
    // The same for what lies at `point`, without a prompt: the first entity there that is accepted,
    // opened for write always, curves sampled with 0.1. `id` is stored last. 0; -1 when nothing
    // lies there; -3 when nothing there can be read as a line.
    int SelectAtPoint(const Point3d& point, int* segment, bool consume, const wchar_t** layer,
                      int* colour, AcDbObjectId* id, bool sampleCurves);

  private:
    double Relative(double length, double total) const;
    int SegmentAtFraction(double fraction, double total) const;
    Point3d DirectionAt(double length, double total) const;
    Point3d SideVector(double length, double total, double sideOffset) const;
};

}  // namespace TamLib
