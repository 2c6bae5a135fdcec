// The edits of PolyLine: cleaning, appending, resampling, cutting out.
#include <cmath>

#include "GeomStructs/PolyLine.h"

namespace TamLib {
namespace {

// The points at step * k below the length of a line, k from `first` on, by the fraction of it; none
// on an infinite one, which would have no last.
void StepAlong(const Line& line, double step, int first, PolyLine& points) {
    const double length = line.Line::Length();
    if (std::isinf(length)) return;
    for (double k = first; k * step < length; k += 1.0)
        points.Append(line.PointAt(k * step / length));
}

// The points of `PolyLine::PointAtFraction(step * k / total)`. Its walk goes on from point to point
// instead of starting anew: the lengths asked for don't fall. None on an infinite line.
void StepAlong(const PolyLine& line, double step, PolyLine& points) {
    const double total = line.Length();
    if (std::isinf(total)) return;
    const int last = static_cast<int>(line.count) - 1;
    double sum = 0.0;
    int j = 0;
    for (double k = 0.0; k * step < total; k += 1.0) {
        const double target = total * (k * step / total);
        while (j < last && !(target < sum)) {
            sum += Distance(line.data[j], line.data[j + 1]);
            ++j;
        }
        const Line back(line.data[j], line.data[j - 1]);
        const double distance = sum - target, length = back.Line::Length();
        const double t = length >= 0.0001 ? distance / length : distance;
        points.Append(back.PointAt(t) + Point3d());
    }
}

bool IsEndNearer(const Point3d& joint, const Line& line) {
    return !(Distance(joint, line.End()) > Distance(joint, line.Start()));
}

}  // namespace

void PolyLine::RemoveNearDuplicates(double tolerance) {
    if (count == 0) return;
    Array<Point3d> kept;
    kept.bitwise = true;
    kept.Allocate(capacity);
    kept.data[kept.count++] = data[0];
    for (std::uint32_t i = 1; i < count; ++i) {
        const Point3d& last = kept.data[kept.count - 1];
        if (std::fabs(data[i].x - last.x) >= tolerance ||
            std::fabs(data[i].y - last.y) >= tolerance)
            kept.data[kept.count++] = data[i];
    }
    SwapBlocks(kept);
}

void PolyLine::Append(const Line& line, int joinMode) {
    const Point3d start = line.Start(), end = line.End();
    if (joinMode == 0 || count == 0) {
        Append(start);
        Append(end);
        return;
    }
    const Point3d joint = data[count - 1];
    if (Equals(joint, start)) {
        Append(end);
    } else if (joinMode == 2 && Equals(joint, end)) {
        Append(start);
    } else {
        const bool endFirst = IsEndNearer(joint, line);
        Append(endFirst ? end : start);
        Append(endFirst ? start : end);
    }
}

void PolyLine::AppendSegment(const Line& line, int joinMode) {
    const Point3d start = line.Start(), end = line.End();
    if (joinMode == 0 || count == 0) {
        Insert(0, start);
        Insert(0, end);
        return;
    }
    const Point3d joint = data[0];
    if (Equals(joint, start)) {
        Insert(0, end);
    } else if (joinMode == 2 && Equals(joint, end)) {
        Insert(0, start);
    } else {
        const bool endFirst = IsEndNearer(joint, line);
        Insert(0, endFirst ? end : start);
        Insert(0, endFirst ? start : end);
    }
}

void PolyLine::Append(const PolyLine& other, int joinMode) {
    if (&other == this) {
        Append(PolyLine(other), joinMode);
        return;
    }
    if (other.count == 0) return;
    const bool joins = joinMode == 1 || joinMode == 2;
    const bool reversed = joins && !DropLastIfEqual(other.data[0], true) && joinMode == 2 &&
                          DropLastIfEqual(other.data[other.count - 1], true);
    const std::uint32_t added = other.count;
    MakeRoom(count, added);
    for (std::uint32_t i = 0; i < added; ++i)
        data[count + i] = other.data[reversed ? added - 1 - i : i];
    count += added;
    sorted = false;
}

void PolyLine::Resample(PolyLine* result, double step, bool keepVertices) const {
    PolyLine points(20);
    const bool steps = step > 0.0;
    if (count > 0 && !keepVertices && steps) {
        StepAlong(*this, step, points);
    } else {
        for (std::uint32_t i = 0; i < count; ++i) {
            if (keepVertices || i == 0 || i + 1 == count) points.Append(data[i]);
            if (keepVertices && steps && i + 1 < count)
                StepAlong(Line(data[i], data[i + 1]), step, 1, points);
        }
    }
    *result = points;
}

void PolyLine::MakeSubLine(PolyLine* result, int from, int to) const {
    *result = PolyLine(Slice(from, to));
}

}  // namespace TamLib
