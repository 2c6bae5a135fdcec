// SegmentIndex: many questions to one polyline, each answered as PolyLine would, to the bit, in
// time that grows with the logarithm of the vertices and with what lies near.
//
// A tree of plan boxes over runs of neighbouring segments: eight segments make a run, eight runs
// the next one, and so on. It fits figures whose neighbouring segments lie near each other, as they
// do in outlines and contour lines; a scribble is answered correctly, but slowly. Building takes
// linear time. The polyline is not copied: it has to outlive the index and must not change
// meanwhile. Coordinates beyond 1e100, or none, make every answer a scan. TamExpNoMem of Array.
#pragma once

#include <algorithm>
#include <cstddef>

#include "GeomStructs/PolyLine.h"
#include "GeomStructs/SegmentReach.h"
#include "GeomStructs/WindingCount.h"

namespace TamLib {

class SegmentIndex {
  public:
    explicit SegmentIndex(const PolyLine& line);

    // `PolyLine::Inside(point, false, touch)`.
    int Inside(const Point3d& point, bool touch) const;
    // `PolyLine::MidPointInside`.
    int MidPointInside(const Point3d& a, const Point3d& b) const;
    // `PolyLine::Crosses`.
    int Crosses(const Line& line) const;
    // `PolyLine::Intersections` of a line; the second form puts them in place of
    // what `points` holds.
    PolyLine Intersections(const Line& line, Array<int>* segments, bool touchFirstEnd,
                           int zMode) const;
    void Intersections(const Line& line, Array<int>* segments, bool touchFirstEnd, int zMode,
                       PolyLine& points) const;
    // The lowest index of a vertex that is `Equals` to `point`, -1 without one.
    int FindVertex(const Point3d& point) const;

    // Calls `visit(i)` for the segments that a line may meet, in ascending order, until that gives
    // true. For those left out `line.Intersect(segment)` gives 0.
    template <class Visit>
    void ForEachNear(const Line& line, const Visit& visit) const {
        const PlanBox reach = SegmentReach(line).Within(extent_);
        const auto misses = [&](const PlanBox& box) { return AreApart(box, reach); };
        const auto look = [&](int i) {
            return !misses(BoxOf(vertices_[i], vertices_[i + 1])) && visit(i);
        };
        Search(misses, look);
    }

  private:
    struct Run {
        PlanBox box;
        double leastRise;  // the smallest difference of y of its segments that isn't 0
    };

    static constexpr std::size_t kFan = 8;
    static constexpr std::size_t kMostLevels = 10;  // enough for 2^31 segments

    const Run& RunAt(std::size_t level, std::size_t run) const {
        return runs_.data[begins_[level] + run];
    }
    std::size_t RunsOf(std::size_t level) const { return begins_[level + 1] - begins_[level]; }
    std::size_t RunLength(std::size_t level) const;
    void Build();
    bool AddInside(std::size_t level, std::size_t run, WindingCount& count) const;

    // Calls `look(i)` for the segments of runs whose box `misses` does not rule out, until
    // it gives true.
    template <class Misses, class Look>
    void Search(const Misses& misses, const Look& look) const {
        if (levels_ == 0) {
            for (int i = 0; i < segments_ && !look(i);) ++i;
            return;
        }
        const std::size_t top = levels_ - 1;
        for (std::size_t run = 0; run < RunsOf(top); ++run)
            if (SearchRun(top, run, misses, look)) return;
    }
    template <class Misses, class Look>
    bool SearchRun(std::size_t level, std::size_t run, const Misses& misses,
                   const Look& look) const {
        if (misses(RunAt(level, run).box)) return false;
        const std::size_t first = run * kFan;
        if (level == 0) {
            const std::size_t end = std::min(first + kFan, static_cast<std::size_t>(segments_));
            for (std::size_t i = first; i < end; ++i)
                if (look(static_cast<int>(i))) return true;
            return false;
        }
        const std::size_t end = std::min(first + kFan, RunsOf(level - 1));
        for (std::size_t i = first; i < end; ++i)
            if (SearchRun(level - 1, i, misses, look)) return true;
        return false;
    }

    const PolyLine& line_;
    const Point3d* vertices_;
    int segments_;  // count - 1, or 0
    bool closed_;
    PlanBox extent_;          // without limits when every answer is a scan
    std::size_t levels_ = 0;  // none when every answer is a scan
    std::size_t begins_[kMostLevels + 1] = {};
    Array<Run> runs_;  // level after level, the runs of eight first
};

}  // namespace TamLib
