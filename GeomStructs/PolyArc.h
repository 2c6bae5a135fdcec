// PolyArc: a polyline whose segments may be circular arcs in plan.
//
// Segment i runs from vertex i to vertex i + 1; `heights[i]` is the height of its arc over that
// chord, as Arc has it: positive bulges to the left and runs clockwise, negative to the right and
// counter-clockwise, 0.0 is straight. A host's bulge has the opposite sign. No arcs are stored:
// `GetArc` makes one of two vertices and a height whenever it is asked. Arcs are plan arcs; what z
// does along one stands in GeomEnts/Arc.h. A height below 0.0001 in absolute value is straight,
// wherever nothing else is said.
//
// There is to be one height per segment, count - 1, which `AddVertex`, `FromEntity` and the
// reversal see to. Nothing tests it: a segment without a height counts as straight, heights beyond
// the last segment are not looked at. Intended: `Close` leaves one height too many, `Clear` leaves
// them all, and what PolyLine appends, inserts or removes moves no heights. What PolyLine offers
// and is not named here takes the segments as chords. Where `FromCurve` puts a flattened curve in
// place of what was there, all segments are straight.
#pragma once

#include "GeomEnts/Arc.h"
#include "GeomStructs/PolyLine.h"

namespace TamLib {

class PolyArc : public PolyLine {
  public:
    Array<double> heights{10};

    // Empty.
    explicit PolyArc(int initialCapacity = 20);
    // The vertices, box and offset of a polyline, all segments straight.
    explicit PolyArc(const PolyLine& line);
    // By `FromEntity`. The form with an id opens for read, stays empty when it can't, and closes.
    PolyArc(AcDbEntity* entity, int disposal);
    explicit PolyArc(AcDbObjectId id);

    PolyArc(const PolyArc&) = default;
    PolyArc(PolyArc&&) noexcept = default;
    PolyArc& operator=(const PolyArc&) = default;
    ~PolyArc() override;

    // --- Virtual operations, in the places of those of PolyLine.

    // The same curve walked the other way: vertices and heights in reverse order, each height
    // negated, and of them exactly count - 1. Below two vertices nothing changes.
    void Reverse() override;
    // Appends a straight segment to the first vertex unless the last one equals it, and a height
    // 0.0 more either way, intended. Nothing when empty.
    void Close() override;
    // Appends what a drawing entity shows to what is there, joined by a straight segment. By class,
    // tried in this order; the first two must be exactly of that class, the others may be derived:
    //   AcDb3dPolyline  as in PolyLine
    //   AcDb2dPolyline  as in PolyLine, each segment with the bulge of the vertex that it starts at
    //   AcDbPolyline    the same
    //   AcDbLine        both ends
    //   AcDbArc         both ends in the host's direction, with the height that `Arc` reads; of one
    //                   whose ends the host can't give, nothing
    //   AcDbCircle      two half circles, clockwise from the point at angle 0; through the opposite
    //                   one back to it
    //   any other       nothing
    // Intended: `Arc` and `Circle` read by exact class, so that of a derived arc there is nothing,
    // of a derived circle one without radius at the origin.
    // Of a closed AcDb3dPolyline the first vertex is appended again unless the last equals it; of a
    // closed one of the two others always, with the bulge of the last vertex. A bulge below 0.0001
    // is straight; the height is that over the 3D length of the chord. Intended: a bulge counts as
    // seen from above, also of a polyline that is seen from below. Each height is set at its
    // segment, whether there were heights too many or too few.
    // `disposal` as in PolyLine; intended: 2 erases the entity whatever its class. Throws
    // `TamExpAcad` with "LightWeight PolyLine conversion to PolyLine failed!" when an AcDbPolyline
    // refuses a vertex; what was read so far stays and the entity stays open.
    // Intended: `Select` with `consume` erases what it accepts, also splines and ellipses that it
    // did not sample, of which nothing is read.
    void FromEntity(AcDbEntity* entity, std::int32_t disposal) override;
    // `IsArcEntity(entity, true)`.
    bool IsPolyEntity(AcDbEntity* entity) const override;
    // Straight segments by `Line::Draw`, arcs by `Arc::Draw`, shifted by `offset`.
    void Draw(std::int32_t colour) const override;
    // As in PolyLine; a height 0.0 is appended too, unless there is no vertex or one was removed:
    // the height of the segment to a vertex that follows. So joining a run keeps one per segment.
    bool DropLastIfEqual(const Point3d& point, bool remove) override;

    // --- Which entities hold arcs.

    // Whether an entity is exactly an AcDb3dPolyline, AcDb2dPolyline, AcDbPolyline, AcDbSpline,
    // AcDbCircle or AcDbEllipse, or with `lineLike` an AcDbLine or AcDbArc; false for null.
    // Intended: also of splines and ellipses, of which `FromEntity` reads nothing.
    static bool IsArcEntity(AcDbEntity* entity, bool lineLike);
    // Whether one of them is made of arcs in part or whole: a circle or ellipse; an AcDbPolyline
    // with bulges; an arc, or an AcDb2dPolyline read as a PolyArc, with a height of at least
    // 0.0001. The entity stays open.
    static bool HasArcs(AcDbEntity* entity);

    // --- Segments.

    // Appends a vertex, and past the first one the height of the segment that ends there.
    void AddVertex(const Point3d& point, double height);
    // The segment from vertex `index`, 0 to count - 2, to the next.
    Arc GetArc(int index) const;
    // Plain access to `heights`; a wrong index is the caller's fault.
    double HeightAt(int index) const { return heights[index]; }
    void SetHeightAt(int index, double height) { heights[index] = height; }
    // `Arc::Bulge` of the segment; 0.0 of a straight one.
    double BulgeAt(int index) const;
    // The height is that of a bulge over the 3D length of the chord. Intended: 3D here, in plan in
    // `BulgeAt`. The height must be there.
    void SetBulgeAt(int index, double bulge);
    // Whether some height is at least 0.0001 in absolute value.
    bool HasArcs() const;

    // --- Measures.

    // The sum of `Arc::Length` of the segments, in their order: in plan, intended, also of straight
    // ones. 0.0 below two vertices.
    double Length() const;
    // The same up to vertex `index`: 0.0 for a negative index, `Length` beyond the last.
    double LengthToVertex(int index) const;
    // `PolyLine::Area` of the vertices, and of each arc the area between it and its chord: added
    // where the arc bulges out of the ring that the vertices make, taken off where it bulges in.
    // Intended: out and in go by the turning sense of the vertices alone; those of a circle have
    // none, and its area is negative.
    double Area() const;
    // The smallest `Arc::Distance`, in plan; to the vertex when there is but one. Intended: 0.0
    // when empty.
    double MinDistance2d(const Point3d& point) const;
    // The index of the segment nearest to `point` by `Arc::Distance`, the lowest of equally near
    // ones. `distance` and `side` may be null; `side` gets `Arc::Side`: -1 left, 1 right, 0 on it.
    // Below two vertices as in PolyLine.
    int NearestSegment(const Point3d& point, double* distance = nullptr, int* side = nullptr) const;
    // The union of the boxes of the segments; empty below two vertices.
    Box GetBox() const;

    // --- Points at a length. The walks of PolyLine with lengths along the arcs; a point on a
    // segment is `Arc::PointAtDistance` from its start.

    void PointAtFraction(Point3d* result, double fraction, int* segment = nullptr,
                         double* segmentFraction = nullptr, double sideOffset = 0.0) const;
    void PointAtLength(Point3d* result, double length, int* segment = nullptr,
                       double* segmentFraction = nullptr, double sideOffset = 0.0) const;
    // On an arc the tangent in plan, a unit vector, along the way; on a straight segment as in
    // PolyLine, in 3D.
    void DirectionAtLength(Point3d* result, double length) const;

    // --- Meetings, in plan, by `Arc::Intersect` of each segment with the figure. With `segments`
    // the points stand in segment order and the index of each one's segment is appended to it;
    // without, they are sorted and made unique as point arrays are.

    PolyLine Intersections(const Line& line, Array<int>* segments = nullptr) const;
    PolyLine Intersections(const Arc& arc, Array<int>* segments = nullptr) const;

    // --- New lines.

    // The curve as a polyline of growth 20: `Arc::ToPolyLine(step, stepIsAngle)` of each segment,
    // turned round where its first point is nearer to the segment's end in 3D, joined without
    // doubling shared vertices. Straight segments give their vertices, and so does an arc whose
    // chord is too short for a radius. Empty below two vertices.
    PolyLine ToPolyLine(double step, bool stepIsAngle) const;

    // As in PolyLine; with each vertex goes the height of the segment before it.
    void RemoveNearDuplicates(double tolerance);

    // The parallel curve at `distance`, its arcs kept, in place of what `result` held; `result` may
    // be this. Positive is right of the way for an open line, outward for a closed one, whose sense
    // is that of its vertices. A distance below 0.0001 in absolute value gives a copy. Near
    // duplicates (1e-7) go first.
    // Straight segments are shifted, arcs get another radius about the same centre; an arc whose
    // radius would be 0 or less is left out. Neighbours are cut where they meet, at the point
    // nearest to the old vertex (for which straight ones are made longer by 3.0 at both ends), or
    // joined by a straight segment where they don't. Heights stay those of the old vertices.
    void Offset(PolyArc* result, double distance) const;

    // --- Writing to the drawing. Shifted by `offset` unless it is below 1e-10 on all axes. Colour,
    // layer, id, database and result are those of `Line::ToDb`.

    // `kind` 1 an AcDbPolyline, 2 an AcDb2dPolyline, both with bulges, at elevation 0, and, when
    // this is closed, closed without the repeated last vertex; anything else an AcDb3dPolyline of
    // `ToPolyLine(0.1, true)`, as PolyLine writes it. Without vertices 0, and nothing is written.
    // Throws `TamExpAcad`: "Initialization of AcDb3dPolyLine failed" without memory (so for the
    // other kinds too), "Adding AcDbPolyLine to Acad DB failed" when an AcDb2dPolyline refuses a
    // vertex; nothing is written then. Their `file` is the writer of the entity: that of PolyLine
    // for an AcDb3dPolyline.
    int ToDb(int colour, const wchar_t* layer, AcDbObjectId* id, AcDbDatabase* database,
             int kind = 0) const;

  private:
    // A place on the way: a segment, the part of it passed, and the length of that.
    struct Place {
        int segment;
        double fraction;
        double distance;
    };
    Place Locate(double fraction, double total) const;
    Point3d SideVector(double length, double sideOffset) const;
};

}  // namespace TamLib
