// PolyArray: an owning array of polylines, what operations give that yield several. It links loose
// lines into polylines, closes gaps between polylines, and is stored in a file.
//
// The array owns what its elements point to: emptying and destroying it delete them, copies are
// deep. `Remove`, `Set`, `MakeUnique` and `SortUnique` work on the pointers alone: what they take
// out is the caller's; what `Insert` and `AddUnique` decline stays the caller's. No element is
// null. Ends are compared in plan unless said otherwise; angles are radians but for `CloseGaps`.
//
// Errors: those of Array; TamExpNoMem from L"GeomStructs/PolyArray" where a polyline can't be made.
// A failed operation leaves the array as it was, but for `Load`.
#pragma once

#include <cstdint>
#include <cstdio>

#include "GeomEnts/Box.h"
#include "GeomStructs/PolyLine.h"

namespace TamLib {

class LineArray;

class PolyArray : public Array<PolyLine*> {
  public:
    // Empty; growth is the larger of `initialCapacity` and 5.
    explicit PolyArray(int initialCapacity = 0);
    // New polylines of the same content; `box` is not copied.
    PolyArray(const PolyArray& other);
    // Takes settings, polylines and `box` over; `other` is left empty.
    PolyArray(PolyArray&& other) noexcept;
    PolyArray& operator=(const PolyArray& other);
    ~PolyArray() override;

    // Links loose lines into polylines where their ends meet. Works on a copy of `lines` after
    // `Tidy(false, true, false)`: sorted, with repeats in plan dropped (intended: with `use3d` too,
    // so that of lines one above the other one is left). A line whose ends are within 0.0001 in x
    // and y is left out, unless `use3d` is set and they differ by at least 0.0001 in z.
    //   - The first line not yet used starts a polyline, from its start to its end. Its end is
    //     extended as far as it goes, then its start, through ends closer than 1e-7; then both
    //     again through ends closer than `tol`. So a loose tolerance pulls no chain off a neighbour
    //     that joins it exactly. With `tol` below 1e-6 there is only the pass with `tol`.
    //   - "Closer": each of |dx|, |dy|, with `use3d` also |dz|, is strictly below the tolerance.
    //   - Of several lines that meet an end the one is taken that comes next, round the array,
    //     behind the line taken before it (at the beginning of each of the four runs behind the
    //     first one), with its start rather than its end.
    //   - A polyline is finished as soon as it `IsClosed`. Intended: that is a test in 3D, so that
    //     a ring in plan with a step in z stays open.
    // Every line is used once. Takes time in proportion to the lines, save for ends crowded within
    // `tol` of each other without meeting. Growth of the polylines is 20. TamExpNoMem lines: 470
    // for a closed polyline, 510 for an open one, 543 for the one that takes the last line.
    PolyArray(const LineArray& lines, bool use3d, double tol);

    // The entities of a selection as polylines, each opened for read, or for write with `mode` 2;
    // one that can't be opened is passed over. Of a block reference the content, by `explode`, is
    // added, block references in it likewise, as far as the host takes it apart: what it passes
    // over, such as old-style polylines, splines and ellipses, is not read, and nothing of a
    // reference whose `explode` fails. Any other entity is added when `PolyLine::IsAcceptedEntity`
    // takes it with `lineLike` and `curves`. With `curves` an entity is read by `FromCurve` with
    // the step `tol`, unless that is below 0.0001, otherwise by `FromEntity`. `mode` is what
    // becomes of each entity: 0 it stays open, 1 it is closed, 2 erased and closed. Intended: also
    // of one that gives no polyline, such as a text.
    PolyArray(const Array<AcDbObjectId>& selection, int mode, double tol, bool curves);

    // --- Virtual operations, in the places they have in the table of the array.

    // Deletes the polylines and `box`, and gives the block back; settings stay. Returns 0.
    std::int32_t Clear() override;
    // Takes a polyline over: it is deleted when there is no memory to hold it, or when the array is
    // `sorted` and `unique` and holds another one that equals it. Otherwise as `Array::Add`.
    std::int32_t Add(PolyLine* const& item) override;
    // Orders the polylines by `Compare`, which becomes `compare`; equal ones keep their order.
    void Sort() override;

    // The polylines' own order: by the first vertices as `Point3d::CompareArray` has them. One
    // without vertices comes first.
    static std::int32_t Compare(PolyLine* const* a, PolyLine* const* b);

    // The sum over the polylines, counted from i = 1, of i * 17 * its checksum, in wrapping
    // arithmetic of 32 bits.
    std::uint32_t Hash() const;
    // All segments of all polylines in order.
    LineArray ToLines() const;

    // The corners of the square around `point` with the half-side `size`, at its height: upper
    // left, upper right, lower right, lower left. Not closed.
    static PolyLine MakeSquare(const Point3d& point, double size);
    // A triangle that opens away from `from`, to extend a line that comes from there beyond `apex`:
    // the apex, then apex + length * (sin b, cos b) for b = t - halfAngle and t + halfAngle, where
    // t is the bearing, clockwise from north, from `from` to the apex, 0 for points that are equal.
    // All at the height of the apex. Not closed.
    static PolyLine MakeWedge(const Point3d& apex, const Point3d& from, double halfAngle,
                              double length);

    // Joins polylines whose ends come near each other. An end is near another when they are the
    // same within 0.0001 in plan, or else when, in plan and not on the border,
    //   - it lies in the square of the half-side `width` around the other, or in the wedge
    //     (`MakeWedge`) that goes on from there, or the other lies in its own wedge. Wedges have
    //     the half-angle `angle`, in DEGREES, and sides of length / cos(angle); a zero angle leaves
    //     the square alone,
    //   - it lies in `region`, when given, a closed polyline, and
    //   - the heights of both differ by less than `zTol`.
    // Neither is looked for farther than max(width, length / cos(angle)) + 0.03 off in x or y.
    // Polylines that are closed, or whose ends are exactly the same, or that have fewer than two
    // vertices, come first in the result, as they are. The others are taken in descending order of
    // `Compare`, each joined at its end, then at its start, to whatever has the nearest end, in 3D,
    // until neither finds one. It is the nearest pair of ends of both that is joined then, reversed
    // where needed; of equally near pairs the first of: this one's end and the other's start, end
    // and end, start and end, start and start. Vertices that are equal become one. Of a polyline
    // that does not touch, the end is looked at only when the start is not near, unless
    // `fromBothEnds` is set. With `closeOpen` the polyline's own other end is a candidate too; when
    // nothing else is nearer it is closed and finished. `compare` becomes `Compare`; the result is
    // not `sorted`. TamExpNoMem line 615.
    void CloseGaps(double angle, double length, double width, double zTol, const PolyLine* region,
                   bool closeOpen, bool fromBothEnds);

    // --- File form, little-endian, packed: the number of polylines (i32); a box as six f32 in the
    // order xmax, xmin, ymax, ymin, zmax, zmin; for each polyline the number of its vertices (i32)
    // and their x, y, z (f64).

    // Writes `box`, or without one the box of all vertices. The number of polylines written whole;
    // -1 when what stands before them could not be written.
    int Save(std::FILE* file) const;
    // Adds the polylines of a file to those held, up to the first that is not whole, which is left
    // out; `box` becomes that of the file. The number of polylines read; -1 when what stands before
    // them can't be read, and nothing has changed. Intended: the number of polylines in the file is
    // not looked at. A number of vertices below 0 ends the reading. Memory is taken for no more
    // vertices than the file holds; when it is refused, what was read whole stays.
    int Load(std::FILE* file);
    // The same on the file of that path, opened in mode "wb" or "rb" and closed; -1 when
    // it can't be.
    int SaveToFile(const wchar_t* path) const;
    int LoadFromFile(const wchar_t* path);

    // --- Host output. `layer` may be null, `database` null is the current one; `ids`, when given,
    // gets the ids of what was added, in order.

    // Adds each polyline to the model space by `PolyLine::ToDb` with that `kind`. Returns the first
    // status that is not 0, after all have been tried. The current layer stays what it was.
    int Draw(int colour, const wchar_t* layer, Array<AcDbObjectId>* ids, AcDbDatabase* database,
             int kind) const;
    // The same of closed copies.
    int DrawClosed(int colour, const wchar_t* layer, Array<AcDbObjectId>* ids,
                   AcDbDatabase* database, int kind) const;
    // The same of the vertices, each an AcDbPoint, shifted as `PolyLine::ToDb` shifts them.
    int DrawAsPoints(int colour, const wchar_t* layer, Array<AcDbObjectId>* ids,
                     AcDbDatabase* database) const;
    // Adds to the model space the regions that the host makes of the polylines as curves. With
    // `merge` regions are united as far as the host can: each in order takes in those behind it,
    // the last one first, and one left empty falls out. The polylines' own entities are removed
    // again, which the host can refuse. Returns the status of making the regions, and no region is
    // added when it is not 0; otherwise the first status that is not 0, of adding them, then of
    // opening and removing the polylines.
    int MakeRegions(int colour, const wchar_t* layer, bool merge, Array<AcDbObjectId>* ids,
                    AcDbDatabase* database) const;

    Box* box = nullptr;  // owned; null unless a file or the caller has given one
};

}  // namespace TamLib
