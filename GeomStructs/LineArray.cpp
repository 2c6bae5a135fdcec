#include "GeomStructs/LineArray.h"

#include <algorithm>
#include <memory>

#include "GeomStructs/PolyArray.h"
#include "datastruct/LwArray.h"
#include "datastruct/MergeSort.h"

namespace TamLib {
namespace {

bool EqualEnds(const Line& line, bool planar) {
    if (planar)
        return Equals2d(line.Start(), line.End()) || (line.x1 == line.x2 && line.y1 == line.y2);
    return Equals(line.Start(), line.End()) ||
           (line.x1 == line.x2 && line.y1 == line.y2 && line.z1 == line.z2);
}

// Exactly, by x, then y, then, without `planar`, z; ends that are equal are in order.
bool EndComesFirst(const Line& line, bool planar) {
    if (EqualEnds(line, planar)) return false;
    if (line.x2 != line.x1) return line.x2 < line.x1;
    if (line.y2 != line.y1) return line.y2 < line.y1;
    return !planar && line.z2 < line.z1;
}

// Farther than 1e-10 from both ends, in x or in y.
bool Apart(const Point3d& a, const Point3d& b) {
    return std::fabs(a.x - b.x) >= 1e-10 || std::fabs(a.y - b.y) >= 1e-10;
}
bool ApartFromEnds(const Point3d& point, const Line& line) {
    return Apart(point, line.Start()) && Apart(point, line.End());
}

using Cuts = LwArray<Point3d, 8>;

// Keeps the cuts in the order of point arrays, which is the order along an oriented line.
void Insert(Cuts& cuts, const Point3d& point) {
    cuts.Add(point);
    Point3d* place = cuts.end() - 1;
    for (; place != cuts.begin() && Point3d::CompareArray(&point, place - 1) < 0; --place)
        *place = place[-1];
    *place = point;
}

// What the search for crossings looks at first; most lines are passed over by it.
struct Span {
    double x = 0.0, yLow = 0.0, yHigh = 0.0;
};

// Finds the cuts of tidied lines.
class Cutter {
  public:
    Cutter(const LineArray& lines, bool planar) : lines_(lines), planar_(planar) {
        cuts.Allocate(lines.count);
        spans_.Allocate(lines.count);
        for (std::uint32_t i = 0; i < lines.count; ++i) {
            const Line& line = lines.data[i];
            spans_.data[i] = {line.x1, std::min(line.y1, line.y2), std::max(line.y1, line.y2)};
        }
    }

    void Run() {
        for (std::uint32_t i = 0; i < lines_.count; ++i) {
            const Span span = spans_.data[i];
            const double endX = lines_.data[i].x2;
            for (std::uint32_t j = i + 1; j < lines_.count; ++j) {
                const Span& other = spans_.data[j];
                if (other.x > endX) break;
                if (other.yHigh < span.yLow || other.yLow > span.yHigh) continue;
                Cross(i, j);
            }
        }
    }

    Array<Cuts> cuts;         // of each line, along it
    std::uint32_t total = 0;  // of all lines

  private:
    void Cross(std::uint32_t i, std::uint32_t j) {
        const Line &here = lines_.data[i], &there = lines_.data[j];
        Point3d crossing;
        if (here.Intersect3d(there, crossing, 0, true) == 0) return;
        if (!planar_ && !SameHeight(here, there, crossing)) return;
        if (ApartFromEnds(crossing, here)) {
            Cut(i, crossing);
            // Lines on one another: where the later one starts, and where this one ends.
            if (!Apart(crossing, there.Start()) && there.PointOn(here.End(), 0.0001))
                Cut(j, here.End());
        }
        if (ApartFromEnds(crossing, there)) Cut(j, crossing);
    }

    // `crossing` has the height of `here`.
    static bool SameHeight(const Line& here, const Line& there, const Point3d& crossing) {
        Point3d onThere;
        here.Intersect3d(there, onThere, 1, true);
        return std::fabs(crossing.z - onThere.z) < 0.0001;
    }

    void Cut(std::uint32_t index, const Point3d& point) {
        Insert(cuts.data[index], point);
        ++total;
    }

    const LineArray& lines_;
    bool planar_;
    Array<Span> spans_;
};

void AppendCuts(const Cuts& cuts, PolyArray& crossings) {
    auto line = std::make_unique<PolyLine>(static_cast<int>(cuts.count));
    for (const Point3d& cut : cuts) line->Append(cut);
    crossings.Append(line.get());
    line.release();  // NOLINT(bugprone-unused-return-value): the array owns it now
}

// Puts the pieces of a line in its place and behind the last line.
void Replace(LineArray& lines, std::uint32_t index, const Cuts& cuts) {
    const Point3d end = lines.data[index].End();
    lines.data[index].SetEnd(cuts[0]);
    for (std::uint32_t k = 1; k < cuts.count; ++k)
        if (Apart(cuts[k], cuts[k - 1])) lines.Append(Line(cuts[k - 1], cuts[k]));
    lines.Append(Line(cuts[cuts.count - 1], end));
}

}  // namespace

LineArray::LineArray() : LineArray(10) {}

LineArray::LineArray(int initialCapacity)
    : Array<Line>(static_cast<std::uint32_t>(std::max(initialCapacity, 0))) {}

void LineArray::Tidy(bool orient, bool planar, bool dropZero) {
    if (dropZero) {
        for (std::uint32_t i = 0; i < count;) {
            if (EqualEnds(data[i], planar)) {
                this->Remove(static_cast<std::int32_t>(i), 1);
            } else {
                ++i;
            }
        }
    }
    if (orient) {
        for (Line& line : *this)
            if (EndComesFirst(line, planar)) line.Reverse();
    }
    if (count < 2) return;
    Order(data, count, capacity, MergeMode::keepOne,
          FunctionComparator<Line>(planar ? &Line::Compare2d : &Line::Compare));
    sorted = false;
}

void LineArray::SplitAtCrossings(bool planar, PolyArray* crossings) {
    Tidy(true, true, false);
    Cutter cutter(*this, planar);
    cutter.Run();
    if (cutter.total == 0) return;
    Resize(std::max(capacity, count + cutter.total));
    if (crossings != nullptr)
        crossings->Resize(std::max(crossings->capacity, crossings->count + cutter.total));
    const std::uint32_t lines = count;
    for (std::uint32_t i = 0; i < lines; ++i) {
        const Cuts& cuts = cutter.cuts.data[i];
        if (cuts.count == 0) continue;
        if (crossings != nullptr) AppendCuts(cuts, *crossings);
        Replace(*this, i, cuts);
    }
}

}  // namespace TamLib
