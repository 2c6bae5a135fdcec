// The polygon Booleans beside GEOS and Clipper, on the same rings in the same run: pairs of rings
// of 100 to 10000 vertices. Pairs: 0 stars that cross at every other vertex, 1 street blocks that
// cross a few times. Input and output in each one's own form are part of the time.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <polyclipping/clipper.hpp>

#include "bench/PlanShapes.h"
#include "tests/GeomStructs/GeosShape.h"
#include "tests/GeomStructs/PlainBooleans.h"

namespace {

using namespace TamLib;
using namespace planshapes;

struct Pair {
    PolyLine here, there;
};

Pair Rings(const benchmark::State& state) {
    const int vertices = static_cast<int>(state.range(2));
    const double side = 60 + 0.05 * vertices;
    if (state.range(1) == 0) {
        const Point3d aside(0.3 * StarDepth(vertices, side), 0, 0);
        return {Star(vertices, kPlace, side, 31), Star(vertices, kPlace + aside, side, 32)};
    }
    const Point3d aside(side * 0.31, side * 0.23, 0);
    return {Block(vertices, kPlace, side, 0.3, 33), Block(vertices, kPlace + aside, side, 0.7, 34)};
}

Boolean Operation(const benchmark::State& state) {
    return static_cast<Boolean>(state.range(0));
}

void Tell(benchmark::State& state, std::size_t rings, double area) {
    state.counters["rings"] = static_cast<double>(rings);
    state.counters["area"] = area;
    state.SetItemsProcessed(state.iterations() * state.range(2));
}

void Plainly(benchmark::State& state) {
    const Pair rings = Rings(state);
    std::size_t count = 0;
    for (auto _ : state) count = CombinedPlainly(Operation(state), rings.here, rings.there).size();
    Tell(state, count, 0.0);
}

void OfGeos(benchmark::State& state) {
    const Pair rings = Rings(state);
    const Geos geos;
    GeosShape result = GeosShape::Nothing(geos);
    for (auto _ : state) {
        const GeosShape here = GeosShape::Polygon(geos, rings.here);
        const GeosShape there = GeosShape::Polygon(geos, rings.there);
        switch (Operation(state)) {
            case Boolean::unite:
                result = here.Union(geos, there);
                break;
            case Boolean::subtract:
                result = here.Difference(geos, there);
                break;
            default:
                result = here.Intersection(geos, there);
        }
    }
    Tell(state, result.Rings(), result.Area());
}

// Millimetres about the place.
ClipperLib::Path PathOf(const PolyLine& ring) {
    ClipperLib::Path path;
    for (std::uint32_t i = 0; i + 1 < ring.count; ++i)
        path.emplace_back(std::llround((ring.data[i].x - kPlace.x) * 1000),
                          std::llround((ring.data[i].y - kPlace.y) * 1000));
    return path;
}

double Area(const ClipperLib::Paths& paths) {
    double area = 0;
    for (const ClipperLib::Path& path : paths) area += ClipperLib::Area(path) * 1e-6;
    return area;
}

// What lies in an odd number of the rings.
double OddArea(const PolyArray& rings) {
    ClipperLib::Clipper clipper;
    for (const PolyLine* const ring : rings)
        if (ring->IsClosed()) clipper.AddPath(PathOf(*ring), ClipperLib::ptSubject, true);
    ClipperLib::Paths parts;
    clipper.Execute(ClipperLib::ctUnion, parts, ClipperLib::pftEvenOdd, ClipperLib::pftEvenOdd);
    return Area(parts);
}

void Ours(benchmark::State& state) {
    const Pair rings = Rings(state);
    PolyArray result;
    for (auto _ : state) {
        PolyArray made = Combined(Operation(state), rings.here, rings.there);
        result.SwapBlocks(made);
    }
    Tell(state, result.count, OddArea(result));
}

void OfClipper(benchmark::State& state) {
    constexpr ClipperLib::ClipType kTypes[] = {ClipperLib::ctUnion, ClipperLib::ctDifference,
                                               ClipperLib::ctIntersection};
    const Pair rings = Rings(state);
    ClipperLib::Paths result;
    for (auto _ : state) {
        ClipperLib::Clipper clipper;
        clipper.AddPath(PathOf(rings.here), ClipperLib::ptSubject, true);
        clipper.AddPath(PathOf(rings.there), ClipperLib::ptClip, true);
        clipper.Execute(kTypes[state.range(0)], result, ClipperLib::pftNonZero,
                        ClipperLib::pftNonZero);
    }
    Tell(state, result.size(), Area(result));
}

void Sizes(benchmark::internal::Benchmark* bench, int largest) {
    bench->ArgNames({"union_difference_intersection", "star_block", "vertices"});
    for (const int pair : {0, 1})
        for (const int operation : {0, 1, 2})
            for (int vertices = 100; vertices <= largest; vertices *= 10)
                bench->Args({operation, pair, vertices});
    bench->Unit(benchmark::kMillisecond);
}
void AllSizes(benchmark::internal::Benchmark* bench) {
    Sizes(bench, 10000);
}
void SmallSizes(benchmark::internal::Benchmark* bench) {
    Sizes(bench, 1000);
}
BENCHMARK(Ours)->Apply(AllSizes);
BENCHMARK(OfGeos)->Apply(AllSizes);
BENCHMARK(OfClipper)->Apply(AllSizes);
BENCHMARK(Plainly)->Apply(SmallSizes);

}  // namespace

BENCHMARK_MAIN();
