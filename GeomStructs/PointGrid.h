// PointGrid: finds, among many points, those near a place, in the order of their indexes.
//
// A hash grid of square cells, in plan or in 3D. It is a filter and never the judge: all points
// within the reach of a place are asked about, and some others; the caller tests each one exactly.
// So results are those of a walk over all points. Points can be taken out, and are passed over then
// without being met again one by one.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>

#include "GeomEnts/Point3d.h"
#include "datastruct/Array.h"

namespace TamLib::detail {

class PointGrid {
  public:
    static constexpr std::uint32_t kNone = 0xFFFFFFFFu;

    // Over `points`, which have to outlive the grid unchanged. Every point q with |q.x - p.x| and
    // |q.y - p.y|, in `space` also |q.z - p.z|, below `reach` is near p. A reach that is not above
    // 0 finds nothing for sure. Array's errors.
    PointGrid(const Array<Point3d>& points, double reach, bool space)
        : points_(points),
          cell_(4.0 * reach),
          reach_(reach),
          space_(space),
          mask_(BucketsFor(points.count) - 1),
          starts_(mask_ + 2),
          indexes_(points.count),
          places_(points.count),
          next_(points.count + 1) {
        Fill();
    }

    void Remove(std::uint32_t index) { next_.data[places_.data[index]] = places_.data[index] + 1; }

    // The index of the first point, going round the indexes from `from` on, for which accept(index)
    // is true, of those near `p`; `kNone` when there is none.
    template <class Accept>
    std::uint32_t FirstFrom(const Point3d& p, std::uint32_t from, Accept accept) {
        std::uint32_t best = kNone;  // how far behind `from` the best one lies
        const Buckets buckets = Around(p);
        for (int i = 0; i < buckets.count; ++i) {
            const std::uint32_t begin = starts_.data[buckets.bucket[i]];
            const std::uint32_t end = starts_.data[buckets.bucket[i] + 1];
            const std::uint32_t* const first = indexes_.data;
            const auto split = static_cast<std::uint32_t>(
                std::lower_bound(first + begin, first + end, from) - first);
            if (!FirstIn(split, end, from, accept, best)) FirstIn(begin, split, from, accept, best);
        }
        return best == kNone ? kNone : (best + from) % points_.count;
    }

    // Calls visit(index) for the points near `p`, in no order.
    template <class Visit>
    void ForEach(const Point3d& p, Visit visit) {
        const Buckets buckets = Around(p);
        for (int i = 0; i < buckets.count; ++i) {
            const std::uint32_t end = starts_.data[buckets.bucket[i] + 1];
            for (std::uint32_t place = Left(starts_.data[buckets.bucket[i]]); place < end;
                 place = Left(place + 1))
                visit(indexes_.data[place]);
        }
    }

  private:
    struct Buckets {
        int count = 0;
        std::uint32_t bucket[27];
    };
    struct Axis {
        int count = 0;
        double cell[3];
    };

    static std::uint32_t BucketsFor(std::uint32_t points) {
        std::uint32_t buckets = 16;
        while (buckets < points && buckets < 0x10000000u) buckets *= 2;
        return buckets;
    }

    // Scans places [begin, end) for an accepted point that lies less than `best` behind `from`.
    // True when it ended the search of this bucket.
    template <class Accept>
    bool FirstIn(std::uint32_t begin, std::uint32_t end, std::uint32_t from, Accept& accept,
                 std::uint32_t& best) {
        for (std::uint32_t place = Left(begin); place < end; place = Left(place + 1)) {
            const std::uint32_t index = indexes_.data[place];
            const std::uint32_t behind =
                index >= from ? index - from : index + (points_.count - from);
            if (behind >= best) return true;
            if (!accept(index)) continue;
            best = behind;
            return true;
        }
        return false;
    }

    // The first place from `place` on whose point was not taken out. The way there is shortened for
    // later (path halving).
    std::uint32_t Left(std::uint32_t place) {
        std::uint32_t* const next = next_.data;
        while (next[place] != place) {
            next[place] = next[next[place]];
            place = next[place];
        }
        return place;
    }

    double CellOf(double coordinate) const { return std::floor(coordinate / cell_) + 0.0; }

    // The cells that hold all coordinates within the reach of `coordinate`. Rounding keeps the
    // order of the ends, so that the cell of such a coordinate lies from the lowest to the highest
    // one. These are neighbours or the same, since a cell is four times as wide as the reach, until
    // the cells are numbered so high (2^51) that their numbers round; but then the reach is below
    // the step from one coordinate to the next one, and only an equal one is within it.
    Axis Along(double coordinate) const {
        Axis axis;
        for (const double candidate :
             {CellOf(coordinate), CellOf(coordinate - reach_), CellOf(coordinate + reach_)}) {
            if (std::find(axis.cell, axis.cell + axis.count, candidate) == axis.cell + axis.count)
                axis.cell[axis.count++] = candidate;
        }
        return axis;
    }

    static std::uint64_t Mixed(std::uint64_t hash, double cell) {
        std::uint64_t bits = 0x7FF8000000000000u;  // all that is no number
        if (cell == cell) std::memcpy(&bits, &cell, sizeof bits);
        hash = (hash ^ bits) * 0x9E3779B97F4A7C15u;
        return hash ^ (hash >> 29);
    }
    std::uint32_t BucketOf(double x, double y, double z) const {
        std::uint64_t hash = Mixed(Mixed(0, x), y);
        if (space_) hash = Mixed(hash, z);
        return static_cast<std::uint32_t>(hash >> 16) & mask_;
    }
    std::uint32_t BucketOf(const Point3d& p) const {
        return BucketOf(CellOf(p.x), CellOf(p.y), space_ ? CellOf(p.z) : 0.0);
    }

    Buckets Around(const Point3d& p) const {
        Buckets buckets;
        const Axis xs = Along(p.x), ys = Along(p.y);
        Axis zs;
        zs.count = 1;
        zs.cell[0] = 0.0;
        if (space_) zs = Along(p.z);
        for (int i = 0; i < xs.count; ++i)
            for (int j = 0; j < ys.count; ++j)
                for (int k = 0; k < zs.count; ++k) {
                    const std::uint32_t bucket = BucketOf(xs.cell[i], ys.cell[j], zs.cell[k]);
                    std::uint32_t* const end = buckets.bucket + buckets.count;
                    if (std::find(buckets.bucket, end, bucket) != end) continue;
                    buckets.bucket[buckets.count++] = bucket;
                }
        return buckets;
    }

    // Counting sort by bucket; within one the indexes stay in order.
    void Fill() {
        Array<std::uint32_t> bucketOf(points_.count);
        for (std::uint32_t i = 0; i < points_.count; ++i) {
            bucketOf.data[i] = BucketOf(points_.data[i]);
            ++starts_.data[bucketOf.data[i] + 1];
        }
        for (std::uint32_t b = 0; b <= mask_; ++b) starts_.data[b + 1] += starts_.data[b];
        for (std::uint32_t i = points_.count; i-- > 0;) {
            // From behind: each bucket is filled from its end, which comes to be its start.
            const std::uint32_t place = --starts_.data[bucketOf.data[i] + 1];
            indexes_.data[place] = i;
            places_.data[i] = place;
        }
        for (std::uint32_t b = 0; b <= mask_; ++b) starts_.data[b] = starts_.data[b + 1];
        starts_.data[mask_ + 1] = points_.count;
        for (std::uint32_t place = 0; place <= points_.count; ++place) next_.data[place] = place;
    }

    const Array<Point3d>& points_;
    double cell_;
    double reach_;
    bool space_;
    std::uint32_t mask_;
    Array<std::uint32_t> starts_;   // of each bucket in `indexes_`, and the end of the last
    Array<std::uint32_t> indexes_;  // of the points, bucket after bucket
    Array<std::uint32_t> places_;   // of the points in `indexes_`
    Array<std::uint32_t> next_;     // a place whose point is left, at or behind each place
};

}  // namespace TamLib::detail
