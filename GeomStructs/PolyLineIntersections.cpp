// Where a PolyLine meets lines and other polylines.
#include <algorithm>
#include <optional>

#include "GeomStructs/IntersectionWalk.h"
#include "GeomStructs/SegmentIndex.h"

namespace TamLib {
namespace {

// Below this many pairs of segments an index costs more than it saves.
constexpr std::uint64_t kPairsWorthAnIndex = 256;

// `line.Intersections(...)` in place of what `points` holds.
void FindPoints(const PolyLine& line, const Line& query, Array<int>* segments, bool touchFirstEnd,
                int zMode, PolyLine& points) {
    points.count = 0;
    IntersectionWalk walk(query, line.data, touchFirstEnd, zMode, points, segments);
    if (!line.IsBeyondBounds(query)) {
        const SegmentReach reach(query);
        for (int i = 0; i + 1 < static_cast<int>(line.count); ++i)
            if (!reach.Misses(line.data + i)) walk.Look(i);
    }
    walk.Finish();
}

// The same for one segment after another, by an index when that pays.
class Noding {
  public:
    Noding(const PolyLine& line, std::uint32_t questions) : line_(line) {
        if (std::uint64_t{line.count} * questions >= kPairsWorthAnIndex) index_.emplace(line);
    }
    void Find(const Line& segment, Array<int>* segments, bool touchFirstEnd, int zMode,
              PolyLine& points) const {
        if (index_) {
            index_->Intersections(segment, segments, touchFirstEnd, zMode, points);
        } else {
            FindPoints(line_, segment, segments, touchFirstEnd, zMode, points);
        }
    }

  private:
    const PolyLine& line_;
    std::optional<SegmentIndex> index_;
};

}  // namespace

int PolyLine::Crosses(const Line& line) const {
    Point3d point;
    return FirstIntersection(line, &point, /*lineFirst=*/true, nullptr);
}

int PolyLine::FirstIntersection(const Line& line, Point3d* result, bool lineFirst,
                                int* index) const {
    if (IsBeyondBounds(line)) return 0;
    const SegmentReach reach(line, lineFirst);
    Point3d touch;
    int touched = -1;
    const int segments = static_cast<int>(count) - 1;
    for (int i = index != nullptr ? std::max(*index, 0) : 0; i < segments; ++i) {
        if (reach.Misses(data + i)) continue;
        const Line segment(data[i], data[i + 1]);
        Point3d point;
        const int code = lineFirst ? line.Intersect3d(segment, point, 0, true)
                                   : segment.Intersect3d(line, point, 0, true);
        if (code == 0) continue;
        touch = point;
        touched = i;
        if (code != 1) continue;
        *result = point;
        if (index != nullptr) *index = i;
        return 1;
    }
    if (touched < 0) return 0;
    *result = touch;
    if (index != nullptr) *index = touched;
    return 2;
}

PolyLine PolyLine::Intersections(const Line& line, Array<int>* segments, bool touchFirstEnd,
                                 int zMode) const {
    PolyLine points;
    FindPoints(*this, line, segments, touchFirstEnd, zMode, points);
    return points;
}

PolyLine PolyLine::Intersections(const PolyLine& line, Array<int>* segments) const {
    PolyLine all, points;
    const Noding noding(line, count);
    for (std::uint32_t i = 0; i + 1 < count; ++i) {
        noding.Find(Line(data[i], data[i + 1]), segments, false, 0, points);
        all.Append(points, 2);
    }
    return all;
}

PolyLine PolyLine::WithIntersections(const PolyLine& other, Array<int>* segments,
                                     bool touchFirstEnd, int zMode) const {
    if (count < 2 || other.count < 2) return *this;
    PolyLine noded(std::max(20, static_cast<int>(other.count))), points;
    const Noding noding(other, count);
    for (std::uint32_t i = 0; i + 1 < count; ++i) {
        const Point3d &start = data[i], &end = data[i + 1];
        noding.Find(Line(start, end), nullptr, touchFirstEnd, zMode, points);
        if (points.count > 1) points.SortByDistance(start);
        noded.Append(start);
        for (const Point3d& point : points) {
            if (Equals(point, start) || Equals(point, end)) continue;
            const int vertex = noded.Append(point);
            if (segments != nullptr) segments->Append(vertex);
        }
    }
    noded.Append(data[count - 1]);
    return noded;
}

PolyLine PolyLine::InsideParts(const PolyLine& polygon) const {
    PolyLine parts;
    const auto add = [&](const Point3d& vertex) {
        PolyLine one(1);
        one.Append(vertex);
        parts.Append(one, 2);
    };
    const auto isInside = [&](const Point3d& vertex) {
        return polygon.Inside(vertex, /*useBox=*/false, /*touch=*/true) != 0;
    };
    bool within = false;
    for (std::uint32_t i = 0; i + 1 < count; ++i) {
        const Point3d &start = data[i], &end = data[i + 1];
        if (!within && isInside(start)) add(start);
        PolyLine points = polygon.Intersections(Line(start, end));
        points.SortByDistance(start);
        parts.Append(points, 2);
        within = isInside(end);
        if (within) add(end);
    }
    return parts;
}

}  // namespace TamLib
