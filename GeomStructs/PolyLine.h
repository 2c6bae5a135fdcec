// PolyLine: an ordered run of vertices with straight segments between them. Every polygon,
// boundary, alignment and section is one.
//
// A polyline is closed when its last vertex equals its first within 0.0001 in each coordinate;
// there is no flag, a closed figure repeats its first vertex. It is a plain value without a link to
// whatever it was read from. Queries ignore `offset`, which only output adds, and the stored box,
// which nothing here keeps up to date; they never fail: each states what it gives for an index out
// of range and for too short a polyline. "In plan" means on x and y; everything else is 3D. A query
// is a linear scan of the vertices; for many to one line see GeomStructs/SegmentIndex.h.
//
// The tests against other figures work in plan. Only they look at the stored box: with `hasBounds`
// set, `Inside` with `useBox`, `Crosses`, `FirstIntersection` and `Intersections` of a line answer
// "none" at once for what lies beyond it in plan, without asking whether the box is up to date.
//
// Below, in this order: virtual operations (reading an entity, drawing), segments, lengths, points
// at a length, measures, moves and turns, edits, tests against points and figures, chaining,
// polygon Booleans, offsets, drawing, writing to the drawing.
#pragma once

#include "GeomEnts/Box.h"
#include "GeomEnts/Line.h"
#include "GeomStructs/Point3dArray.h"

class AcGeVector3d;

namespace TamLib {

class Arc;
class Circle;
class LineArray;
class PolyArray;

class PolyLine : public Point3dArrayBase<Point3d> {
  public:
    // Empty. Growth is the larger of `initialCapacity` and 5; 0 allocates nothing.
    explicit PolyLine(int initialCapacity = 10);
    // The points of an array, with its settings and growth, as `Array` assignment copies them.
    explicit PolyLine(const Array<Point3d>& points);
    // The plan corners of a box: upper left, upper right, lower right, lower left, at the mean
    // of its z limits, then `Close()`: five vertices, or four equal ones of a box without
    // width and depth.
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

    // Chained from pieces; see "Chaining" below. Both change what they are given.
    explicit PolyLine(PolyArray& pieces);
    explicit PolyLine(LineArray& lines);

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
    //   AcDbRegion                      the first outer outline, arcs as chords, in place of all
    //                                   that was here, box and offset too; nothing when the host
    //                                   gives none (EntityRegions.h)
    //   any other, a derived region     nothing
    // A closed entity's first vertex is appended again unless the last equals it.
    // `disposal` says what becomes of the entity then: 0 it stays open, 1 it is closed, 2 erased
    // and closed. Intended: an entity of any other class is closed with 1 or 2, but never erased; a
    // region is erased with 2 even when the host gives no outline of it. Throws `TamExpAcad` with
    // "LightWeight PolyLine conversion to PolyLine failed!" when an AcDbPolyline refuses a vertex;
    // the vertices read so far stay and the entity stays open.
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
    // `Line::Distance2d`. `distance` and `side` may be null. `distance` gets the plan distance.
    // `side` is that of the segment, -1 with the point left, 1 right, 0 on the line, unless the
    // foot lies beyond an end at which a neighbour joins on: then it says on which side of this
    // segment the neighbour's far vertex lies, by the cross product c of the direction with the
    // vector from the start to it: 0 when |c| is below 0.01 (the root of 0.0001), 1 when c is above
    // 0, else -1. Intended: the two rules have opposite signs. Below two vertices the result and
    // `side` are 0; with one, `distance` gets the 3D distance to it.
    int NearestSegment(const Point3d& point, double* distance = nullptr, int* side = nullptr) const;
    // The `side` of `NearestSegment`.
    int SideOf(const Point3d& point) const;
    // The distance in plan to the nearest segment; to the vertex when there is but one;
    // -1.0 when empty.
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

    // --- Measures, in plan. Vertices are taken as a ring, the first following the last, so that a
    // repeated first vertex changes nothing.

    // The extent of the vertices; empty without any.
    Box GetBox() const;
    // |s| / 2 with s the sum of y(i+1) x(i) - y(i) x(i+1); 0.0 below three vertices. The products
    // are those of the coordinates as they are: far from the origin digits are lost.
    double Area() const;
    // Whether that s is below 0; false below two vertices.
    bool IsClockwise() const;
    // The centre of gravity of the area, at z 0, by a fan of triangles about vertex 0. True with at
    // least one vertex; intended: where the area is 0 (one vertex, two, or all on a line) the
    // result is NaN and true. Without vertices (0, 0, 0) and false.
    bool GetCentroid(Point3d* point) const;
    // A point well inside a closed polygon: the middle of the first triangle of neighbouring
    // vertices, in 3D, that turns as the ring does and holds no other vertex. The turn counts when
    // its cross product is at least 0.01 (the root of 0.0001) in absolute value. Vertices within
    // 0.0001 of each other in plan count as one corner; one within 1e-10 of the first two corners
    // in plan, or equal to the third, does not count as held. False, with the point of
    // `GetCentroid`, when there is no such triangle, below three vertices or when open.
    bool InteriorPoint(Point3d* point) const;
    // The vertex with the index ceil(count / 2): of three and of four vertices that with the index
    // 2. (0, 0, 0) below two vertices, where there is none.
    Point3d MiddleVertex() const;
    // Whether all heights are within 0.0001 of that of vertex 0; true without vertices.
    bool IsFlat() const;
    // Vertex `index` of the ring; any whole number. (0, 0, 0) without vertices.
    Point3d VertexCyclic(int index) const;
    // The same; the ring of a closed polyline does not hold its repeated last vertex.
    Point3d VertexClosed(int index) const;

    // --- Moves and turns.

    // Adds `vector` to each vertex, and with `hasBounds` to the stored box.
    void Translate(const Point3d& vector);
    PolyLine& operator+=(const Point3d& vector);
    // Adds dx and dy; z becomes dz with `setZ`, otherwise dz is added. Returns true. Intended: the
    // stored box stays as it is.
    bool Move(double dx, double dy, double dz, bool setZ);
    // All z become `z`, with `hasBounds` those of the stored box too.
    void SetElevation(double z);
    // The operations of Point3d on each vertex.
    void RotateAbout(const Point3d& centre, double azimuth, double elevation);
    void RotateAxis(const Point3d& axis, double angle);
    void RotateLine(const Line& line, double angle);

    // --- Edits.

    // Keeps vertex 0 and each vertex that differs from the last one kept by at least `tolerance` in
    // x or in y; z plays no part. 1e-07 is what the library cleans with. The capacity stays.
    void RemoveNearDuplicates(double tolerance);

    using Array<Point3d>::Append;
    // Adds both ends of a line behind the last vertex, or one when the other is there already:
    //   `joinMode` 0, or no vertex   start, then end
    //   the last vertex equals the start    the end alone
    //   `joinMode` 2, it equals the end     the start alone
    //   otherwise   the end nearer to the last vertex in 3D first; of equally near ones the end
    void Append(const Line& line, int joinMode = 0);
    // The same at the front, where vertex 0 is the joint. Intended: with `joinMode` 0 the line's
    // end comes to stand before its start.
    void AppendSegment(const Line& line, int joinMode);
    // Adds the vertices of another polyline behind the last. With `joinMode` 1 or 2 the last vertex
    // goes first when it equals the other's first; with 2 also when it equals the other's last, and
    // the other is added in reverse then.
    void Append(const PolyLine& other, int joinMode = 0);

    // Points along the line every `step` from the start, in place of what `result` held, with
    // growth 20: at step * k for k = 0, 1, ... as long as that is below `Length()`. So the end is
    // no part of it, unless rounding leaves a multiple just below. With `keepVertices` each segment
    // is stepped along by itself, from its start, and all vertices are part of it. A `step` not
    // above 0 gives the first and the last vertex, or all with `keepVertices`. Along what is
    // infinitely long, or of no number, no step is made.
    void Resample(PolyLine* result, double step, bool keepVertices) const;
    // The segments 0 to count - 2, with a capacity of at least count.
    LineArray Segments() const;
    // The vertices `from` to `to`, both included, as a polyline with the settings of this one, in
    // place of what `result` held. Negative indexes count from the end; a `to` before `from` goes
    // on round the end of the vertices.
    void MakeSubLine(PolyLine* result, int from, int to) const;

    // --- Tests against points and figures, in plan.

    // Whether a point lies in the ring: 0 outside, 1 inside, 2 on the boundary, the last only with
    // `touch`. 0 unless there are three vertices and the polyline is closed; with `useBox` and
    // `hasBounds`, 0 outside the stored box.
    // The winding number by the sign of the cross product c of each segment with the vector to the
    // point; inside when it is odd (D. Sunday, "Inclusion of a Point in a Polygon"). A segment
    // counts when exactly one of its ends is above the point, and c says left of a rising one (c +
    // 5e-8 above 0) or right of a falling one (c - 5e-8 below 0). So of an axis-parallel square the
    // lower and the right side belong to it, the upper and the left one don't.
    // With `touch`, a segment whose span of y, ends included but for the upper end of one going
    // down, holds the point is touched when |c| is below 0.01 (the root of 0.0001) and the point
    // within 0.0001 of it. Intended: a point just off a level segment does not touch it, and on
    // segments longer than 100 the band narrows to 0.01 / length.
    int Inside(const Point3d& point, bool useBox, bool touch) const;
    // `Inside` of the 3D middle of two points, with `touch` and without the stored box.
    int MidPointInside(const Point3d& a, const Point3d& b) const;

    // Whether a line meets a segment by `Line::Intersect` with touches, the line being asked: 1
    // when one is crossed, the first such ends the search; otherwise 2 when one is touched, else 0.
    // A line within a ring that meets none gives 0.
    int Crosses(const Line& line) const;
    // The same from segment `*index` on (a negative one, or null, means 0). Of a crossing `result`
    // gets the first point, of touches the last, with `index` the segment; with 0 both stay. The
    // height is that of `line`, which is asked, when `lineFirst` is set; otherwise the segment is
    // asked, and the height is its own.
    int FirstIntersection(const Line& line, Point3d* result, bool lineFirst, int* index) const;
    // The points in which a line meets the polyline, by `Line::Intersect3d(segment, ..., zMode,
    // true)`. Crossings always; a touch only when `touchFirstEnd` is set, or when the segment
    // before was touched too and the far vertices of both lie on different sides of the line, by
    // more than 0.01 in the cross product: so a line through a vertex is met once, one that touches
    // a vertex, or ends on a segment, or runs along one, is not. Intended: a line through vertex 0
    // of a ring is not met there. With `segments` the points stand in segment order and the index
    // of each one's segment is appended to it; without, they are sorted and made unique as point
    // arrays are.
    PolyLine Intersections(const Line& line, Array<int>* segments = nullptr,
                           bool touchFirstEnd = false, int zMode = 0) const;
    // The same for arcs and circles by their own `Intersect` with each segment; all points count.
    PolyLine Intersections(const Arc& arc, Array<int>* segments = nullptr) const;
    PolyLine Intersections(const Circle& circle, Array<int>* segments = nullptr) const;
    // For each segment of this polyline `line.Intersections(segment, segments)`, joined by
    // `Append(..., 2)`; the indexes are those of segments of `line`.
    PolyLine Intersections(const PolyLine& line, Array<int>* segments = nullptr) const;
    // This polyline with the points in which it meets `other` as further vertices: of each segment
    // `other.Intersections(segment, null, touchFirstEnd, zMode)` by distance from its start, those
    // that equal neither of its ends. `segments` is appended the index, in the result, of each
    // vertex that came in so. With fewer than two vertices here or there, a copy. `other` may be
    // this polyline.
    PolyLine WithIntersections(const PolyLine& other, Array<int>* segments = nullptr,
                               bool touchFirstEnd = false, int zMode = 0) const;

    // Whether two polylines cross or only touch: 0 apart, 1 crossing, 2 touching. Both are put on
    // one height and given each other's vertices, touches included, and cleaned with 1e-07.
    // Intended: not by `WithIntersections`, in which an upright segment is touched by what lies
    // below it and a stretch that both share may lack vertices: what lies apart would touch, and
    // what runs along would cross. Then each vertex that both have is a touch, and a crossing when
    // the ways through it interleave, or when those of a stretch they share leave it to different
    // sides at its two ends. No crossing is reported at the first and last vertex of an open
    // polyline. A single vertex touches when it lies on the other's boundary.
    int CrossesPolygon(const PolyLine& other) const;
    // How this polyline lies to a closed polygon:
    //   0  apart, or one of them is not closed or too short to decide
    //   1  wholly inside `polygon`
    //   2  the vertices of both lie on the other
    //   3  they cross
    //   4  `polygon` lies inside this one, touching or not; also what touches without lying inside
    //   5  inside `polygon`, touching it
    // By where the vertices of each lie in the other (all of `polygon` outside an open one), then
    // by `Crosses` and the middles of the segments here. Intended: a corner of one on an upright
    // side of the other counts as a crossing, since `Line::Intersect` says so.
    int Relation(const PolyLine& polygon) const;
    // How a box lies to the ring, in plan: 0 apart, 1 wholly inside, 2 partly; a corner of it on
    // the boundary counts as inside. A vertex in the box, its border included, gives 2.
    int BoxRelation(const Box& box) const;
    // Whether a segment meets the box in plan, border included.
    bool BoxTouches(const Box& box) const;
    // The stretches that lie in `polygon`, its boundary included, as one polyline: where one ends
    // and the next begins stands a segment that was none.
    PolyLine InsideParts(const PolyLine& polygon) const;

    // --- Chaining. The constructor from `pieces` starts with the last piece and joins on, until
    // none is left, the piece with an end nearest in 3D to an end of the chain. Of equal distances
    // the one found first counts: pieces from the last to the first, each tried as the chain's end
    // to the piece's first vertex, its end to the last, its start to the first, its start to the
    // last. A piece that joins the other way round is reversed in place. Joined at the end, a last
    // vertex that equals the piece's first is dropped; at the start nothing is. Then near
    // duplicates (1e-7) go. Where the ends come closer than 1e-7 in 3D, vertex 0 is appended again
    // (intended: also to a chain that ends with a copy of it). Intended: the pieces' stored boxes
    // are spoiled, `maxPoint.x` is -1.0 in each afterwards. Pieces without vertices are passed
    // over. Growth is the larger of 1.3 * pieces and 5.
    //
    // The constructor from `lines` starts with the last line, which it takes out of the array, and
    // joins on in the same way those whose `valid` is not 0, clearing it. A gap, a squared distance
    // of at least 9.999999999999998e-15, gives both ends of a line as vertices, the nearer one
    // first, otherwise the far one alone. Nothing is dropped. It closes as above.
    //
    // Both are quadratic. Distances that are no numbers count as the largest: of such pieces the
    // last free one is taken, at the chain's end.

    // This polyline and `other` as one. Where ends are equal (`Equals`), tried in this order, the
    // second one goes without the vertex they share:
    //   first and first   this reversed, then other
    //   last and first    this, then other
    //   last and last     this, then other reversed
    //   first and last    other, then this
    // Otherwise this, then all of other. With one of them empty a copy of the other one. Settings,
    // box and offset are those of the one that comes first.
    PolyLine Join(const PolyLine& other) const;

    // Leaves out vertices that deviate little, walking with the vertex kept last, the one behind it
    // (`mid`) and a pair of neighbours ahead. Returns the new count. Of a pair the first one is
    // kept when one of these is above its limit:
    //   - `deviation`: how far the second one lies aside of the line from the kept one through
    //     `mid`, in plan, measured from `mid`,
    //   - `deviation`: the same of the first one in the profile of height over plan length,
    //   - pi / 2: the difference of the plan directions behind and ahead, taken as it is (intended:
    //     unwrapped, so that directions about -x count as a turn),
    //   - `maxLength`, unless that is 0.0 or below: the 3D distance from the kept one to `mid`
    //     (intended: not to the pair).
    // First and last vertex stay; near duplicates (1e-7) go first. Below three vertices nothing
    // happens. Box and offset are cleared.
    int Simplify(double deviation, double maxLength);

    // Takes the line apart where it comes back to a vertex within 0.0001 in plan; the last vertex
    // does not count as coming back. From the first vertex on, each stretch up to the next place
    // that equals the vertex is cut out, closed by it, and taken apart likewise. Returns the
    // stretches, those within a stretch before it, and what remains, with the box and offset of
    // this line, last. This line is left with the remainder. TamExpNoMem from
    // L"GeomStructs/PolyLine" without memory; this line is unchanged then.
    PolyArray SplitLoops();
    // `SplitLoops` of this line with vertices where it crosses itself, those of
    // `WithIntersections(*this, null, false, 0)`. The loops are appended to `result`.
    void SplitSelfCrossings(PolyArray& result) const;
    // Keeps the vertices of the first of the loops of `SplitSelfCrossings`.
    void RemoveLoops();
    // Cuts this line where it crosses or is touched by `cutter` between its vertices, and appends
    // the parts to `result` in their order along the line. Of a closed line the first part
    // continues the last one and stands there, last. Without a cut the whole line is the one part.
    // Intended: a vertex of this line that lies on `cutter` already is no cut.
    void SplitAt(PolyArray& result, const PolyLine& cutter) const;

    // --- Polygon Booleans, in plan. This polyline is the first operand. Neither one changes.
    //
    // By classification of edges: each ring is given vertices where the other one, as it was, meets
    // it, by `WithIntersections(..., null, false, 0)`; each piece between two vertices is kept by
    // where its middle, in 3D, lies in the other ring, by `Inside` with `touch` and without the
    // stored box:
    //                    pieces of this one    pieces of `other`
    //     Union          outside, on           outside, on
    //     Difference     outside, on           inside
    //     Intersection   inside, on            inside, on
    // Pieces kept, those of this ring first, are lines built with `order`. Of those that coincide
    // one is left, by `Tidy(false, true, false)` of LineArray, and `PolyArray(lines, false, 0.001)`
    // links the rest into the result. An empty result means that nothing is left.
    // Intended, since that is all that is done:
    //   - a hole is a ring like any other: nesting and turning sense are not reported,
    //   - an edge that both share is kept once and not cancelled. Squares side by side unite to one
    //     open polyline that runs along all seven edges; two equal rings give that ring, for
    //     `Difference` too,
    //   - what does not link into a ring stays as an open polyline: no slivers are filtered out,
    //   - where the other ring's vertex 0 lies on an edge, that edge is not divided (see
    //     `Intersections`), and chains stay open there. So they may where a vertex lies within
    //     0.001 of the other ring, since pieces shorter than that get lost in the linking,
    //   - shared pieces within rounding of upright may come to be built the one upwards, the other
    //     downwards; both stay then.
    // Heights are those of the edge that is divided. Time grows with n log n for outlines (see
    // GeomStructs/SegmentIndex.h). TamExpNoMem of Array and of PolyArray.

    // What lies in this polygon or in `other`. With `other` not closed a copy of this polyline, or
    // nothing when it has no vertices; otherwise, when this one is not closed, a copy of `other`.
    PolyArray Union(const PolyLine& other) const;
    // What lies in this polygon and not in `other`. With one of them not closed a copy of this
    // polyline, or nothing when it has no vertices.
    PolyArray Difference(const PolyLine& other) const;
    // What lies in both. Nothing with one of them not closed.
    PolyArray Intersection(const PolyLine& other) const;

    // --- Offsets, in plan; heights stay, and all that is made has this `offset`. `result` is
    // emptied first, `ribs`, never the same array, added to; a failed operation leaves both as they
    // were. Near duplicates (1e-7) of this polyline are passed over. Intended: vertices farther
    // apart, but `Equals`, have no direction between them, and the constant of `Angle` takes its
    // place, so that corners there point anywhere. TamExpNoMem of Array, PolyArray, `SplitLoops`.

    // The parallel at `distance`: to the right of the way with a positive one, to the left with a
    // negative one; of a closed polyline outward or inward, whatever its turning sense. Each vertex
    // moves along the bisector of its corner as far as keeps the distance from both segments, but
    // no farther than 25 distances, so that spikes are cut off; the ends of an open line move
    // across it. A closed result repeats its first vertex. With |distance| below 0.0001 the result
    // is a copy as it stands. With `clean` `SplitSelfCrossings` takes the parallel apart. Of
    // several loops those that are closed and turn the wrong way are left out: the other way than a
    // closed polyline does; of an open one counter-clockwise at a positive distance, clockwise at a
    // negative one. Intended: loops part in plan, but are closed in 3D: one that ends at another
    // height stays. A single loop is the result, unless it comes of a closed polyline and turns the
    // wrong way, or each of its sides runs against the one it came from: then it is the inverted
    // inside of a polygon that the distance has used up, and nothing is left.
    void Offset(PolyArray* result, double distance, bool clean) const;

    // The outline of the band from `left` to `right` of the way, as closed polygons: of an open
    // line one ring, the left side and back along the right one; of a closed line two, the left
    // side, then the right one backwards. A negative `right` means as wide as `left`; the sign of
    // `left` is without effect, as are the `flags`. Without vertices nothing.
    // At each corner both sides move along the bisector as far as keeps their width, but not
    // farther than the larger of the width and the shorter segment at the corner. Where that is at
    // most 1.7 widths on both sides, at the ends of an open line and at hairpins below 0.2 degrees
    // the two points are one pair, and `ribs`, when given, gets a polyline from the left to the
    // right one. Other corners get a bevel: two points on the outer side, at the width across each
    // segment, and on the inner side the one on the bisector; no rib.
    // Intended: the pair is placed by the mean of both directions as `Angle` gives them, and
    // exchanged, lengths included, when the left point comes to lie right. So at such corners, and
    // at both ends of an open line, each side has the width of the other.
    // Small loops are cut out of each ring then: from each segment on the last one is looked for
    // that crosses it, by `Line::Intersect` without touches; the crossing, at the height of the
    // first of them, takes the place of the vertices between. The last segment does not count for
    // the first one, and a ring of 6 vertices or fewer is not cut any more.
    // With `clean` each ring is taken apart by `SplitSelfCrossings`; kept are the loops that turn
    // as its last one does, and those whose `Relation` to the ring is not 0. Intended: that keeps
    // nearly all of the others too, since their vertices lie on the ring they are cut from.
    void OffsetBand(PolyArray* result, double left, double right, PolyArray* ribs, bool clean,
                    int flags = 0) const;

    // --- Drawing.

    // Whether an entity may be picked as a line, by exact class: AcDb3dPolyline, AcDb2dPolyline,
    // AcDbPolyline and AcDbRegion always; AcDbLine and AcDbPoint with `lineLike`; AcDbSpline,
    // AcDbCircle and AcDbEllipse with `curves`, AcDbArc with both; AcDbPoint with `points`. False
    // for null.
    static bool IsAcceptedEntity(AcDbEntity* entity, bool lineLike, bool curves, bool points);

    // Fills with points along any curve. Splines, ellipses and fitted or splined 2D polylines are
    // sampled along their length, from the start, every `step`; with `adaptive` the step is an
    // angle in radians that the direction may turn from point to point. The end point follows, and
    // for a closed curve the first vertex again. What holds arcs (`PolyArc::HasArcs`: circle, arc,
    // bulged polyline) is flattened by `PolyArc::ToPolyLine(step, adaptive)`: `step` is the angle
    // of a chord in radians with `adaptive`, otherwise a length of arc. Intended: that takes the
    // place of the vertices that were there. Everything else is read by `FromEntity`, whose
    // `disposal` it is and whose errors it has.
    void FromCurve(AcDbEntity* entity, int disposal, double step, bool adaptive);

    // Lets the user pick a line, once. This object is emptied first, and the focus given to the
    // host's window. `prompt` is a format with one text, the empty one; null stands for "Select
    // polyline: ". `consume` opens the entity for write and erases it after reading.
    // `sampleCurves` reads with `FromCurve(0.05, adaptive)`, otherwise with `FromEntity`. All out
    // arguments may be null.
    //    0   read and shown in colour 6, or 2 when its own is 6
    //   -1   cancelled (RTCAN)
    //   -2   any other answer than an entity
    //   -3   the pick can't be read as a line: no id, not to be opened, of a class not accepted, or
    //        a region that gives no vertices, because the host doesn't know its outline or fails
    //        to read it; it is closed and unchanged, with `consume` too
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

    // Lets the user pick the vertices, in place of those there: "\nFrom point: ", then "\nTo point:
    // " from the last point, until an answer is no point. Each segment is shown highlighted, then
    // the polyline in colour 1. Then the first vertex is appended again; with `askClose` and
    // without `close` "\nClose [<Y>,N]? " is asked before, and a reply beginning with n or N leaves
    // it open. Intended: with neither flag it is closed too.
    void GetFromUser(bool close, bool askClose);
    // For diagnosis: `Draw(colour)`, then "PolyLine:\n", "    Point %i: " with `Print` of each
    // vertex and "\n", and "End of PolyLine.\n". Indexes from 0, vertices shifted by `offset`.
    void Print(std::int32_t colour) const;
    // The labels of Point3d at all vertices, shifted by `offset`; the ids are appended to `ids`,
    // when given. Returns the first status that is not 0.
    int LabelXYZ(int colour, const wchar_t* layer, Array<AcDbObjectId>* ids,
                 AcDbDatabase* database) const;
    int LabelZ(int colour, const wchar_t* layer, Array<AcDbObjectId>* ids,
               AcDbDatabase* database) const;
    int LabelXY(int colour, const wchar_t* layer, Array<AcDbObjectId>* ids,
                AcDbDatabase* database) const;

    // --- Writing to the drawing. Vertices are shifted by `offset` unless it is below 1e-10 on all
    // axes. Colour, layer, id, database and result are those of `Line::ToDb`.

    // `kind` 1 an AcDbPolyline, 2 an AcDb2dPolyline, anything else an AcDb3dPolyline; closed when
    // this is. Intended: a closed entity has the repeated last vertex too. Without vertices 0, and
    // nothing is written. Throws `TamExpAcad`, "Initialization of AcDb3dPolyLine failed" (so for
    // the 2D form too), without memory.
    int ToDb(int colour, const wchar_t* layer, AcDbObjectId* id, AcDbDatabase* database,
             int kind = 0) const;
    // An AcDbFace of the first three vertices, with all edges visible. 3 unless there are three or
    // four vertices. Throws `TamExpNoMem` without memory.
    int ToFace(int colour, const wchar_t* layer, AcDbObjectId* id, AcDbDatabase* database) const;
    // An AcDbMline of the style "STANDARD", whose offsets are multiplied by `scale`, in the plane
    // through the first vertex across `normal`. `justification` says what runs through the
    // vertices: 0 the line farthest to the left, 1 the middle, 2 the one farthest to the right.
    // When this is closed it is too, without the repeated last vertex. Without vertices 0, and
    // nothing is written; `eKeyNotFound` where the host gives no such style, `eInvalidInput` below
    // two vertices. Throws `TamExpNoMem` without memory.
    int ToMline(int colour, double scale, int justification, const wchar_t* layer, AcDbObjectId* id,
                AcDbDatabase* database, const AcGeVector3d& normal) const;
    // AcDbRegions of the closed loops that the curves with these ids make; `regions`, when given,
    // is appended their ids. Each curve is opened for read and closed; one that can't be opened is
    // passed over. Returns the first status that is not 0.
    static int ToRegion(const Array<AcDbObjectId>& ids, int colour, const wchar_t* layer,
                        Array<AcDbObjectId>* regions, AcDbDatabase* database);

    // Whether the stored box, when there is one, shows that a line does not meet the polyline in
    // plan: both ends lie beyond the same limit.
    bool IsBeyondBounds(const Line& line) const;

  private:
    int SegmentAtFraction(double fraction, double total) const;
    Point3d DirectionAt(double length, double total) const;
    Point3d SideVector(double length, double total, double sideOffset) const;
};

}  // namespace TamLib
