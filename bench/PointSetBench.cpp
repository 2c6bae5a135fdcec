// Point sets and line arrays from a thousand to a million elements, beside GEOS on the same data.
#include <benchmark/benchmark.h>
#include <geos_c.h>

#include <cmath>
#include <memory>
#include <random>
#include <vector>

#include "GeomStructs/LineArray.h"
#include "GeomStructs/PointData.h"
#include "GeomStructs/PolyLine.h"

namespace {

using TamLib::Array;
using TamLib::Line;
using TamLib::LineArray;
using TamLib::Point3d;
using TamLib::PointData;
using TamLib::PolyLine;

// Each element has the same room, whatever their number: 12 metres each way.
double Extent(benchmark::State& state) {
    return 12 * std::sqrt(static_cast<double>(state.range(0)));
}

PointData Points(benchmark::State& state) {
    std::mt19937 random(20091117);
    std::uniform_real_distribution<double> place(0, Extent(state));
    PointData set(static_cast<int>(state.range(0)));
    for (std::int64_t i = 0; i < state.range(0); ++i) {
        const double x = 25496000 + place(random), y = 6672000 + place(random);
        set.Append(Point3d(x, y, 0));
    }
    return set;
}

// 10 metres long, about every second one crosses another.
LineArray Lines(benchmark::State& state) {
    std::mt19937 random(20091117);
    std::uniform_real_distribution<double> place(0, Extent(state)), turn(0, 6.283185307179586);
    LineArray lines(static_cast<int>(state.range(0)));
    for (std::int64_t i = 0; i < state.range(0); ++i) {
        const double x = 25496000 + place(random), y = 6672000 + place(random), a = turn(random);
        lines.Append(Line({x, y, 0}, {x + 10 * std::cos(a), y + 10 * std::sin(a), 0}));
    }
    return lines;
}

// --- GEOS.

struct Geos {
    Geos() { initGEOS(nullptr, nullptr); }
    ~Geos() { finishGEOS(); }
};

struct Destroy {
    void operator()(GEOSGeometry* geometry) const { GEOSGeom_destroy(geometry); }
};
using Geometry = std::unique_ptr<GEOSGeometry, Destroy>;

Geometry ToGeos(const PointData& set) {
    std::vector<GEOSGeometry*> points;
    for (const Point3d& p : set) points.push_back(GEOSGeom_createPointFromXY(p.x, p.y));
    return Geometry(GEOSGeom_createCollection(GEOS_MULTIPOINT, points.data(),
                                              static_cast<unsigned>(points.size())));
}

Geometry ToGeos(const LineArray& array) {
    std::vector<GEOSGeometry*> lines;
    for (const Line& line : array) {
        GEOSCoordSequence* const ends = GEOSCoordSeq_create(2, 2);
        GEOSCoordSeq_setXY(ends, 0, line.x1, line.y1);
        GEOSCoordSeq_setXY(ends, 1, line.x2, line.y2);
        lines.push_back(GEOSGeom_createLineString(ends));
    }
    return Geometry(GEOSGeom_createCollection(GEOS_MULTILINESTRING, lines.data(),
                                              static_cast<unsigned>(lines.size())));
}

void Sizes(benchmark::internal::Benchmark* bench) {
    bench->RangeMultiplier(10)->Range(1000, 1000000)->Unit(benchmark::kMillisecond);
}

// --- The smallest distance. Ours sorts a copy each time.

void MinDist(benchmark::State& state) {
    const PointData points = Points(state);
    for (auto _ : state) {
        PointData set(points);
        benchmark::DoNotOptimize(set.MinDist(nullptr, nullptr));
    }
}
BENCHMARK(MinDist)->Apply(Sizes);

void MinDistGeos(benchmark::State& state) {
    const Geos geos;
    const Geometry points = ToGeos(Points(state));
    for (auto _ : state) {
        double distance = 0;
        GEOSMinimumClearance(points.get(), &distance);
        benchmark::DoNotOptimize(distance);
    }
}
BENCHMARK(MinDistGeos)->Apply(Sizes);

// --- Neighbours of a place, in a set that is sorted or a tree that is built.

std::vector<Point3d> Places(benchmark::State& state) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> place(0, Extent(state));
    std::vector<Point3d> places;
    for (int i = 0; i < 256; ++i) {
        const double x = 25496000 + place(random), y = 6672000 + place(random);
        places.emplace_back(x, y, 0);
    }
    return places;
}

void Nearest(benchmark::State& state, int wanted) {
    PointData set = Points(state);
    set.Sort();
    const std::vector<Point3d> places = Places(state);
    Array<Point3d> points;
    Array<double> distances;
    std::size_t i = 0;
    for (auto _ : state) {
        set.NearestPoints(wanted, places[i++ % places.size()], points, distances);
        benchmark::DoNotOptimize(distances.data);
    }
    state.SetItemsProcessed(state.iterations());
}

void NearestPoint(benchmark::State& state) {
    Nearest(state, 1);
}
BENCHMARK(NearestPoint)->Apply(Sizes)->Unit(benchmark::kMicrosecond);

void NearestTenPoints(benchmark::State& state) {
    Nearest(state, 10);
}
BENCHMARK(NearestTenPoints)->Apply(Sizes)->Unit(benchmark::kMicrosecond);

void NearestPointGeos(benchmark::State& state) {
    const Geos geos;
    const Geometry points = ToGeos(Points(state));
    GEOSSTRtree* const tree = GEOSSTRtree_create(10);
    for (int i = 0; i < GEOSGetNumGeometries(points.get()); ++i) {
        auto* const point = const_cast<GEOSGeometry*>(GEOSGetGeometryN(points.get(), i));
        GEOSSTRtree_insert(tree, point, point);
    }
    std::vector<Geometry> places;
    for (const Point3d& p : Places(state))
        places.emplace_back(GEOSGeom_createPointFromXY(p.x, p.y));
    benchmark::DoNotOptimize(GEOSSTRtree_nearest(tree, places[0].get()));  // builds the tree
    std::size_t i = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(GEOSSTRtree_nearest(tree, places[i++ % places.size()].get()));
    state.SetItemsProcessed(state.iterations());
    GEOSSTRtree_destroy(tree);
}
BENCHMARK(NearestPointGeos)->Apply(Sizes)->Unit(benchmark::kMicrosecond);

// --- Hulls.

void ConvexHull(benchmark::State& state) {
    const PointData set = Points(state);
    for (auto _ : state) {
        PolyLine hull;
        set.ConvexHull(&hull, -1.0);
        benchmark::DoNotOptimize(hull.data);
    }
}
BENCHMARK(ConvexHull)->Apply(Sizes);

void ConvexHullGeos(benchmark::State& state) {
    const Geos geos;
    const Geometry points = ToGeos(Points(state));
    for (auto _ : state) benchmark::DoNotOptimize(Geometry(GEOSConvexHull(points.get())));
}
BENCHMARK(ConvexHullGeos)->Apply(Sizes);

// --- Splitting.

void SplitAtCrossings(benchmark::State& state) {
    const LineArray lines = Lines(state);
    std::uint32_t pieces = 0;
    for (auto _ : state) {
        LineArray split(lines);
        split.SplitAtCrossings(true, nullptr);
        pieces = split.count;
    }
    state.counters["pieces"] = pieces;
}
BENCHMARK(SplitAtCrossings)->Apply(Sizes);

void SplitAtCrossingsGeos(benchmark::State& state) {
    const Geos geos;
    const Geometry lines = ToGeos(Lines(state));
    int pieces = 0;
    for (auto _ : state) {
        const Geometry split(GEOSNode(lines.get()));
        pieces = split == nullptr ? 0 : GEOSGetNumGeometries(split.get());
    }
    state.counters["pieces"] = pieces;
}
BENCHMARK(SplitAtCrossingsGeos)->Apply(Sizes);

}  // namespace

BENCHMARK_MAIN();
