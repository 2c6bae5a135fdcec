// LineArray: a bag of loose segments, as surface intersections, triangle edges and exploded
// polylines give them. It can be tidied, split where the lines cross, and stored in a file.
//
// Lines are held by value. The array's own comparison is by bytes, those of the object's table
// pointer and of its unused bytes included, so that only copies of one line are sure to be equal to
// it; `Tidy` compares by coordinates. Exceptions are those of Array.
#pragma once

#include <cstdint>
#include <cstdio>

#include "GeomEnts/Line.h"
#include "datastruct/Array.h"

namespace TamLib {

struct Box;
class PolyArray;

class LineArray : public Array<Line> {
  public:
    // Room for 10 lines, growth 10.
    LineArray();
    // Room for `initialCapacity` lines; growth is the larger of it and 5.
    explicit LineArray(int initialCapacity);
    LineArray(const LineArray&) = default;
    LineArray(LineArray&&) noexcept = default;
    LineArray& operator=(const LineArray&) = default;
    ~LineArray() override = default;

    // The lines of drawing entities: an AcDbLine gives a line, every other entity the segments of
    // the polyline read from it. Room for 3n / 2 lines of n entities. Each entity is opened for
    // read and closed; one that can't be opened is passed over.
    explicit LineArray(const Array<AcDbObjectId>& selection);

    // Cleans up, in this order:
    //   `dropZero`  removes lines whose ends are equal: |dx| and |dy|, and without `planar` |dz|,
    //               below 0.0001
    //   `orient`    reverses lines whose end comes before the start by x, then y, then, without
    //               `planar`, z, exactly. Lines whose ends are equal as above stay.
    //   always      with at least two lines left sorts them by x1, x2, y1, y2, and without `planar`
    //               z1, z2, where coordinates closer than 0.0001 count as equal and hand over to
    //               the next, and drops all but one of equal lines. The sort is the merge sort of
    //               datastruct/MergeSort.h, `MergeMode::keepOne`, which says which one stays.
    // Intended: equality within a tolerance is not transitive, so that of lines in a row, each
    // equal to the next, some may stay.
    void Tidy(bool orient, bool planar, bool dropZero);

    // Cuts all lines where they cross in plan, after `Tidy(true, true, false)`. Lines crossing at a
    // point are cut there unless it lies within 1e-10 in x and y of an end, so that a line touched
    // at its own end is not cut. Ends within 0.0001 of another line cut that line where the spans
    // of y meet. Without `planar` lines are cut only where the heights of both differ by less than
    // 0.0001. A line's pieces: the first stands in its place, the others are appended in order
    // along the line; pieces between cuts closer than 1e-10 in x and y are left out. `crossings`,
    // when given, gets the cuts of each line that has some, as a polyline, in the order of the
    // tidied lines. Where lines meet is decided by `Line::Intersect3d`, the earlier line being
    // asked for the place and its height: so collinear lines are cut at one place only, and,
    // intended, an upright line at an end of the other straight below it.
    void SplitAtCrossings(bool planar, PolyArray* crossings);

    // --- File form, little-endian, packed: the number of lines (i32); a marker, "," or "+"; after
    // a "," a box of six f32 in the order xmax, xmin, ymax, ymin, zmax, zmin; the lines in the file
    // form of Line.

    // Writes at most `limit` lines, or all when it is negative; `withBox` writes the box of all
    // lines of the array, also of those not written. The number of lines written, or the index of
    // the first that could not be; -1 when what stands before the lines could not be written.
    int Save(std::FILE* file, int limit, bool withBox) const;
    // Reads at most `limit` lines, or all when it is negative, in place of those held. `box`, when
    // given, gets the box of the file, an empty one when there is none. The number of lines read,
    // which a short file makes smaller without an error. -1 when the count, the marker or the box
    // can't be read, -3 for any other marker; the lines are unchanged then. A count below 0 reads
    // none. Memory is taken for no more lines than the rest of the file can hold.
    int Load(std::FILE* file, int limit, Box* box);
    // The same on the file of that path, opened in mode "wb" or "rb" and closed; -1 when
    // it can't be.
    int SaveToFile(const wchar_t* path, int limit, bool withBox) const;
    int LoadFromFile(const wchar_t* path, int limit, Box* box);

    // Zero at first, copied with the array and used by nothing here.
    std::uint64_t unused1 = 0;
    std::uint64_t unused2 = 0;
    std::uint64_t unused3 = 0;
};

}  // namespace TamLib
