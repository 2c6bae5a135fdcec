#include "GeomStructs/PointData.h"

#include <algorithm>

#include "GeomStructs/PolyLine.h"
#include "tam/TamExceptions.h"

namespace TamLib {
namespace {

// The nearest points found so far and the squares of their distances, in step.
class Nearest {
  public:
    Nearest(std::uint32_t wanted, const Point3d& from, Array<Point3d>& points,
            Array<double>& distances)
        : wanted_(wanted), from_(from), points_(points), distances_(distances) {
        points_.Resize(wanted);
        distances_.Resize(wanted);
    }

    bool Full() const { return points_.count == wanted_; }

    // Keeps a candidate if it belongs here. False when it is so far away in x that all beyond it
    // are too.
    bool Offer(const Point3d& candidate) {
        if (Full()) {
            const double dx = candidate.x - from_.x;
            if (dx * dx > distances_[worst_]) return false;
        }
        const double squared = SquaredDistance(from_, candidate);
        if (!Full()) {
            points_.Append(candidate);
            distances_.Append(squared);
            if (Full()) FindWorst();
        } else if (squared < distances_[worst_]) {
            points_[worst_] = candidate;
            distances_[worst_] = squared;
            FindWorst();
        }
        return true;
    }

  private:
    void FindWorst() {
        worst_ = static_cast<int>(std::max_element(distances_.begin(), distances_.end()) -
                                  distances_.begin());
    }

    std::uint32_t wanted_;
    const Point3d& from_;
    Array<Point3d>& points_;
    Array<double>& distances_;
    int worst_ = 0;
};

}  // namespace

PointData::PointData(int initialCapacity) : Point3dArrayBase<Point3d>(initialCapacity) {}

PointData::~PointData() = default;

double PointData::MinDist(int* i, int* j) {
    this->Sort();
    if (count < 2)
        throw TamExpInternal(L"Amount of Points too small in PointData::MinDist()\n", __LINE__,
                             L"GeomStructs/PointData");
    double best = Distance(data[0], data[1]), bestSquared = SquaredDistance(data[0], data[1]);
    std::uint32_t first = 0, second = 1;
    for (std::uint32_t a = 0; a < count; ++a) {
        const Point3d& from = data[a];
        for (std::uint32_t b = a + 1; b < count && data[b].x - from.x < best; ++b) {
            // A square that is not smaller has no smaller root.
            const double squared = SquaredDistance(from, data[b]);
            if (!(squared < bestSquared)) continue;
            const double distance = std::sqrt(squared);
            if (!(distance < best)) continue;
            best = distance;
            bestSquared = squared;
            first = a;
            second = b;
        }
    }
    if (i != nullptr) *i = static_cast<int>(first);
    if (j != nullptr) *j = static_cast<int>(second);
    return best;
}

void PointData::NearestPoints(int wanted, const Point3d& point, Array<Point3d>& points,
                              Array<double>& distances) const {
    points.Clear();
    distances.Clear();
    const int n = static_cast<int>(count);
    if (std::min(wanted, n) <= 0) return;
    const int position = BinarySearch(point, true);
    Nearest nearest(static_cast<std::uint32_t>(std::min(wanted, n)), point, points, distances);
    int after = position;
    while (after < n && nearest.Offer(data[after])) ++after;
    int before = position - 1;
    while (before >= 0 && nearest.Offer(data[before])) --before;
}

double PointData::InterpolateZ(const Point3d& point, int wanted) const {
    Array<Point3d> points;
    Array<double> distances;
    NearestPoints(wanted, point, points, distances);
    double heights = 0.0, weights = 0.0;
    for (std::uint32_t i = 0; i < points.count; ++i) {
        const double squared = distances.data[i];
        if (squared < 0.0001) return points.data[i].z;
        heights += points.data[i].z / squared;
        weights += 1.0 / squared;
    }
    return points.count == 0 ? 0.0 : heights / weights;
}

void PointData::Profile(const Point3d& start, const Point3d& end, int steps, PolyLine* result,
                        int wanted) const {
    const Point3d step((end.x - start.x) / steps, (end.y - start.y) / steps, 0.0);
    const Point3d beyond(end.x + step.x, end.y + step.y, start.z);
    result->Clear();
    result->Append(start);
    // The number of points bounds the walk where the steps don't add up to the end.
    Point3d place = start;
    for (int i = 0; i <= steps && Distance(place, beyond) > 0.001; ++i) {
        result->Append(Point3d(place.x, place.y, InterpolateZ(place, wanted)));
        place += step;
    }
}

}  // namespace TamLib
