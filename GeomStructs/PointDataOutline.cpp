// The outline of PointData, which is not convex: a walk along the boundary.
#include <algorithm>

#include "GeomEnts/Pi.h"
#include "GeomStructs/PointData.h"
#include "GeomStructs/PolyLine.h"
#include "tam/Progress.h"

namespace TamLib {
namespace {

constexpr int kLimitOfRuns = 10;     // walks from points that earlier ones left outside
constexpr int kLimitOfVisits = 200;  // of a walk at one point, should it not come round
constexpr int kStepsPerPoll = 3000;  // between looks at the progress dialog

struct Candidate {
    double turn = 0.0;
    std::uint32_t index = 0;
};

class Walk {
  public:
    // `points` are sorted.
    Walk(const PointData& points, double distance, int& steps)
        : points_(points), distance_(distance), steps_(steps) {
        visits_.Allocate(points.count);
        std::fill_n(visits_.data, points.count, static_cast<unsigned char>(0));
    }

    // From the rightmost of the points that matter. False when the user cancelled.
    bool From(std::uint32_t start, PolyLine& outline) {
        outline = PolyLine(1000);
        current_ = start;
        outline.Append(points_.data[start]);
        // The sweep for the next point begins to the right, where none of them lies.
        double behind = 0.0;
        do {
            ++visits_.data[current_];
            if (++steps_ % kStepsPerPoll == 0 && ProgressCancelled()) {
                outline.Close();
                return false;
            }
            if (!Advance(outline, behind)) break;
            // From a hair beyond the way back, so that this comes last.
            behind = Angle(outline.data[outline.count - 2], outline.data[outline.count - 1]) +
                     std::atan(1.0) * 4.00000001;
        } while (!Equals(outline.data[outline.count - 1], outline.data[0]));
        outline.Close();
        return true;
    }

  private:
    // Goes on to the first point within reach, counter-clockwise from the direction `behind`, that
    // is reached without crossing the outline.
    bool Advance(PolyLine& outline, double behind) {
        FindCandidates(outline, behind);
        const Point3d from = points_.data[current_];
        for (const Candidate& candidate : candidates_) {
            const Point3d& to = points_.data[candidate.index];
            if (outline.Crosses(Line(from, to)) == 1) continue;
            outline.Append(to);
            current_ = candidate.index;
            return true;
        }
        return false;
    }

    // The points within reach of the current one, by their turn from `behind`.
    void FindCandidates(const PolyLine& outline, double behind) {
        candidates_.count = 0;
        const Point3d from = points_.data[current_];
        const Point3d before = outline.data[outline.count > 1 ? outline.count - 2 : 0];
        const auto add = [&](std::uint32_t i) {
            const Point3d& to = points_.data[i];
            const double gap = Distance2d(from, to);
            if (gap > distance_ || gap < 0.001 || visits_.data[i] >= kLimitOfVisits) return;
            // Beside the point that the walk came from only that point itself.
            if (Distance2d(before, to) < 0.001 && !Equals(before, to)) return;
            candidates_.Append({Turn(behind, from, to), i});
        };
        // The order by x is one within 1e-6.
        const auto inReach = [&](std::uint32_t i) {
            return std::fabs(points_.data[i].x - from.x) <= distance_ + 1e-6;
        };
        for (std::uint32_t i = current_; i-- > 0 && inReach(i);) add(i);
        for (std::uint32_t i = current_ + 1; i < points_.count && inReach(i); ++i) add(i);
        std::sort(candidates_.begin(), candidates_.end(),
                  [](const Candidate& a, const Candidate& b) {
                      return a.turn != b.turn ? a.turn < b.turn : a.index < b.index;
                  });
    }

    // Counter-clockwise, above 0 and up to a full turn.
    static double Turn(double behind, const Point3d& from, const Point3d& to) {
        const double full = kPi * 2.0;
        const double turn = std::fmod(Angle(from, to) - behind, full);
        return turn > 0.0 ? turn : turn + full;
    }

    const PointData& points_;
    double distance_;
    int& steps_;
    Array<unsigned char> visits_;
    Array<Candidate> candidates_;
    std::uint32_t current_ = 0;
};

// The point with the largest x of those that are marked, the first of equal ones; -1 for none.
int Rightmost(const PointData& points, const Array<bool>& marked) {
    double largest = -1.79e+308;
    int found = -1;
    for (std::uint32_t i = 0; i < points.count; ++i) {
        if (!marked.data[i] || !(points.data[i].x > largest)) continue;
        largest = points.data[i].x;
        found = static_cast<int>(i);
    }
    return found;
}

// Takes back the marks of the points that an outline encloses or passes nearer than the 0.001 by
// which the walk distinguishes points, and gives how many points it leaves outside.
int Outside(const PointData& points, const PolyLine& outline, Array<bool>& marked) {
    int outside = 0;
    for (std::uint32_t i = 0; i < points.count; ++i) {
        const Point3d& point = points.data[i];
        if (outline.Inside(point, false, true) != 0 || outline.MinDistance2d(point) < 0.001) {
            marked.data[i] = false;
        } else {
            ++outside;
        }
    }
    return outside;
}

}  // namespace

void PointData::Outline(PolyLine* result, double distance) const {
    if (distance < 0.0) {
        ConvexHull(result, -1.0);
        return;
    }
    PointData points(50000);
    for (const Point3d& point : *this) points.Append(point);
    points.SortUnique();
    result->Clear();
    Array<bool> left;
    left.Allocate(points.count);
    std::fill_n(left.data, points.count, true);
    int fewest = -1, steps = 0;
    for (int run = 0; run < kLimitOfRuns; ++run) {
        const int start = Rightmost(points, left);
        if (start < 0) return;
        PolyLine outline;
        const bool whole =
            Walk(points, distance, steps).From(static_cast<std::uint32_t>(start), outline);
        const int outside = Outside(points, outline, left);
        left.data[start] = false;
        if (fewest < 0 || outside < fewest) {
            fewest = outside;
            *result = outline;
        }
        if (!whole || outside == 0) return;
    }
}

}  // namespace TamLib
