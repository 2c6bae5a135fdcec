#include "GeomStructs/SegmentIndex.h"

#include <algorithm>
#include <limits>

#include "GeomStructs/IntersectionWalk.h"

namespace TamLib {
namespace {

constexpr double kInfinite = std::numeric_limits<double>::infinity();
constexpr PlanBox kEverywhere{-kInfinite, kInfinite, -kInfinite, kInfinite};

void Widen(PlanBox& box, const PlanBox& other) {
    box.xMin = std::min(box.xMin, other.xMin);
    box.xMax = std::max(box.xMax, other.xMax);
    box.yMin = std::min(box.yMin, other.yMin);
    box.yMax = std::max(box.yMax, other.yMax);
}

// What a run of segments to the left of a point, and away from it, adds is 0 if the cross product
// of each segment is surely farther from 0 than the 5e-8 of `WindingCount`. In exact arithmetic it
// is the rise of the segment times the way to it; rounding makes less than 1e-13 of the distances.
// Both margins cover what counts as a touch.
bool IsLeftOf(const PlanBox& box, double leastRise, const WindingCount& count) {
    const double gap = count.px - box.xMax;
    const double rounding = 1e-13 * (count.px - box.xMin + box.yMax - box.yMin);
    return gap > 2e-4 + rounding && leastRise * (gap - rounding) > 1e-7;
}

// To the right each segment counts: its cross product has the sign it should have.
bool IsRightOf(const PlanBox& box, const WindingCount& count) {
    const double rounding = 1e-13 * (box.xMax - count.px + box.yMax - box.yMin);
    return box.xMin - count.px > 2e-4 + rounding;
}

}  // namespace

SegmentIndex::SegmentIndex(const PolyLine& line)
    : line_(line),
      vertices_(line.data),
      segments_(std::max(static_cast<int>(line.count) - 1, 0)),
      closed_(line.count >= 3 && line.IsClosed()),
      extent_(kEverywhere) {
    if (segments_ > 0 && std::all_of(line.begin(), line.end(), IsTame)) Build();
}

void SegmentIndex::Build() {
    const auto segments = static_cast<std::size_t>(segments_);
    std::size_t length = segments;
    do {
        length = (length + kFan - 1) / kFan;
        begins_[levels_ + 1] = begins_[levels_] + length;
        ++levels_;
    } while (length > kFan);
    runs_.Resize(static_cast<std::uint32_t>(begins_[levels_]));
    runs_.count = runs_.capacity;
    for (std::size_t i = 0; i < segments; ++i) {
        const PlanBox box = BoxOf(vertices_[i], vertices_[i + 1]);
        const double rise = box.yMax - box.yMin;
        Run& run = runs_.data[i / kFan];
        if (i % kFan == 0) run = {box, std::numeric_limits<double>::max()};
        Widen(run.box, box);
        if (rise > 0.0) run.leastRise = std::min(run.leastRise, rise);
    }
    for (std::size_t level = 1; level < levels_; ++level) {
        for (std::size_t i = 0; i < RunsOf(level - 1); ++i) {
            const Run& below = RunAt(level - 1, i);
            Run& run = runs_.data[begins_[level] + i / kFan];
            if (i % kFan == 0) run = below;
            Widen(run.box, below.box);
            run.leastRise = std::min(run.leastRise, below.leastRise);
        }
    }
    extent_ = RunAt(levels_ - 1, 0).box;
    for (std::size_t run = 1; run < RunsOf(levels_ - 1); ++run)
        Widen(extent_, RunAt(levels_ - 1, run).box);
}

// The segments of one run at that level, the lowest being 0.
std::size_t SegmentIndex::RunLength(std::size_t level) const {
    std::size_t length = kFan;
    for (; level > 0; --level) length *= kFan;
    return length;
}

bool SegmentIndex::AddInside(std::size_t level, std::size_t run, WindingCount& count) const {
    const PlanBox& box = RunAt(level, run).box;
    if (!(box.yMin <= count.py && count.py <= box.yMax)) return false;
    if (IsLeftOf(box, RunAt(level, run).leastRise, count)) return false;
    if (IsRightOf(box, count)) {
        // The rising ones less the falling ones, which only the two ends decide.
        const std::size_t length = RunLength(level), first = run * length;
        const std::size_t last = std::min(first + length, static_cast<std::size_t>(segments_));
        count.winding += (vertices_[last].y > count.py ? 1 : 0);
        count.winding -= (vertices_[first].y > count.py ? 1 : 0);
        return false;
    }
    const std::size_t first = run * kFan;
    const std::size_t below = level == 0 ? static_cast<std::size_t>(segments_) : RunsOf(level - 1);
    const std::size_t end = std::min(first + kFan, below);
    for (std::size_t i = first; i < end; ++i)
        if (level == 0 ? count.Add(vertices_ + i) : AddInside(level - 1, i, count)) return true;
    return false;
}

int SegmentIndex::Inside(const Point3d& point, bool touch) const {
    if (!closed_) return 0;
    if (levels_ == 0 || !IsTame(point)) return line_.Inside(point, false, touch);
    WindingCount count{point.x, point.y, touch};
    const std::size_t top = levels_ - 1;
    for (std::size_t run = 0; run < RunsOf(top); ++run)
        if (AddInside(top, run, count)) return 2;
    return count.winding & 1;
}

int SegmentIndex::MidPointInside(const Point3d& a, const Point3d& b) const {
    return Inside(Line(a, b).MidPoint(), true);
}

int SegmentIndex::Crosses(const Line& line) const {
    if (line_.IsBeyondBounds(line)) return 0;
    int code = 0;
    ForEachNear(line, [&](int i) {
        Point3d point;
        const int here = line.Intersect(Line(vertices_[i], vertices_[i + 1]), point, true);
        if (here != 0) code = here;
        return here == 1;
    });
    return code;
}

PolyLine SegmentIndex::Intersections(const Line& line, Array<int>* segments, bool touchFirstEnd,
                                     int zMode) const {
    PolyLine points;
    Intersections(line, segments, touchFirstEnd, zMode, points);
    return points;
}

void SegmentIndex::Intersections(const Line& line, Array<int>* segments, bool touchFirstEnd,
                                 int zMode, PolyLine& points) const {
    points.count = 0;
    IntersectionWalk walk(line, vertices_, touchFirstEnd, zMode, points, segments);
    if (!line_.IsBeyondBounds(line)) {
        ForEachNear(line, [&](int i) {
            walk.Look(i);
            return false;
        });
    }
    walk.Finish();
}

int SegmentIndex::FindVertex(const Point3d& point) const {
    const int vertices = static_cast<int>(line_.count);
    const auto beside = [&](const PlanBox& box) {
        return box.xMin - point.x > 2e-4 || point.x - box.xMax > 2e-4 ||
               box.yMin - point.y > 2e-4 || point.y - box.yMax > 2e-4;
    };
    int found = -1;
    Search(beside, [&](int i) {
        if (Equals(vertices_[i], point)) found = i;
        return found >= 0;
    });
    const bool lastLeft = found < 0 && vertices > 0 && Equals(vertices_[vertices - 1], point);
    return lastLeft ? vertices - 1 : found;
}

}  // namespace TamLib
