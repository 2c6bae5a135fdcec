// Parallels and bands beside GEOS and Clipper, on the same lines in the same run: streets and
// street blocks of 100 to 10000 vertices, 3 metres, mitres up to 25 distances. Ours are cleaned.
// Figures: 0 a street and its parallel on one side, 1 a street and its band, 2 a block outward, 3
// a block inward. Input and output in each one's own form are part of the time.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <polyclipping/clipper.hpp>

#include "bench/PlanShapes.h"
#include "tests/GeomStructs/GeosShape.h"

namespace {

using namespace TamLib;
using namespace planshapes;

constexpr double kDistance = 3.0, kMitreLimit = 25.0;

enum Figure { parallel, band, outward, inward };

Figure FigureOf(const benchmark::State& state) {
    return static_cast<Figure>(state.range(0));
}

PolyLine LineOf(const benchmark::State& state) {
    const int vertices = static_cast<int>(state.range(1));
    if (FigureOf(state) < outward) return Street(vertices, 41);
    return Block(vertices, kPlace, 2.0 * vertices + 50, 0.3, 42);
}

void Tell(benchmark::State& state, std::size_t parts, double measure) {
    state.counters["parts"] = static_cast<double>(parts);
    state.counters["measure"] = measure;  // length of parallels, otherwise area
    state.SetItemsProcessed(state.iterations() * state.range(1));
}

void Ours(benchmark::State& state) {
    const PolyLine line = LineOf(state);
    const Figure figure = FigureOf(state);
    PolyArray result;
    for (auto _ : state) {
        if (figure == band) {
            line.OffsetBand(&result, kDistance, kDistance, nullptr, true);
        } else {
            line.Offset(&result, figure == inward ? -kDistance : kDistance, true);
        }
    }
    double measure = 0;
    for (const PolyLine* part : result) {
        PolyLine here(*part);
        here.Translate({-kPlace.x, -kPlace.y, 0});
        measure += figure == parallel   ? here.Length2d()
                   : here.IsClockwise() ? -here.Area()
                                        : here.Area();
    }
    Tell(state, result.count, std::fabs(measure));
}

void Raw(benchmark::State& state) {
    const PolyLine line = LineOf(state);
    const Figure figure = FigureOf(state);
    PolyArray result;
    for (auto _ : state) {
        if (figure == band) {
            line.OffsetBand(&result, kDistance, kDistance, nullptr, false);
        } else {
            line.Offset(&result, figure == inward ? -kDistance : kDistance, false);
        }
    }
    Tell(state, result.count, 0);
}

void OfGeos(benchmark::State& state) {
    const PolyLine line = LineOf(state);
    const Figure figure = FigureOf(state);
    const Geos geos;
    GeosShape result = GeosShape::Nothing(geos);
    for (auto _ : state) {
        const GeosShape shape =
            figure < outward ? GeosShape::Line(geos, line) : GeosShape::Polygon(geos, line);
        result = figure == parallel
                     ? shape.Parallel(geos, -kDistance, kMitreLimit)
                     : shape.Buffer(geos, figure == inward ? -kDistance : kDistance, kMitreLimit);
    }
    if (figure == parallel) {
        Tell(state, static_cast<std::size_t>(GEOSGetNumGeometries_r(geos.Context(), result.Get())),
             result.Length());
    } else {
        Tell(state, result.Rings(), result.Area());
    }
}

// Has no parallel on one side.
void OfClipper(benchmark::State& state) {
    const PolyLine line = LineOf(state);
    const Figure figure = FigureOf(state);
    const bool isRing = figure >= outward;
    ClipperLib::Paths result;
    for (auto _ : state) {
        ClipperLib::Path path;
        for (std::uint32_t i = 0; i + (isRing ? 1 : 0) < line.count; ++i)
            path.emplace_back(std::llround((line.data[i].x - kPlace.x) * 1000),
                              std::llround((line.data[i].y - kPlace.y) * 1000));
        ClipperLib::ClipperOffset offset(kMitreLimit);
        offset.AddPath(path, ClipperLib::jtMiter,
                       isRing ? ClipperLib::etClosedPolygon : ClipperLib::etOpenButt);
        offset.Execute(result, (figure == inward ? -kDistance : kDistance) * 1000);
    }
    double area = 0;
    for (const ClipperLib::Path& path : result) area += ClipperLib::Area(path) * 1e-6;
    Tell(state, result.size(), area);
}

void Sizes(benchmark::internal::Benchmark* bench, int first) {
    bench->ArgNames({"line_band_out_in", "vertices"});
    for (int figure = first; figure <= inward; ++figure)
        for (int vertices = 100; vertices <= 10000; vertices *= 10) bench->Args({figure, vertices});
    bench->Unit(benchmark::kMillisecond);
}
void AllFigures(benchmark::internal::Benchmark* bench) {
    Sizes(bench, parallel);
}
void Areas(benchmark::internal::Benchmark* bench) {
    Sizes(bench, band);
}
BENCHMARK(Ours)->Apply(AllFigures);
BENCHMARK(Raw)->Apply(AllFigures);
BENCHMARK(OfGeos)->Apply(AllFigures);
BENCHMARK(OfClipper)->Apply(Areas);

}  // namespace

BENCHMARK_MAIN();
