// Loose segments linked into polylines, against GEOS's line merge of the same segments; gaps
// closed; a line taken apart into loops. The segments are those of contour lines in map
// coordinates, in no order and in either direction.
#include <benchmark/benchmark.h>
#include <geos_c.h>

#include <memory>
#include <vector>

#include "tests/GeomStructs/PlainChaining.h"
#include "tests/GeomStructs/PlainLinking.h"

namespace {

using namespace TamLib;

// Winding lines of about 500 segments of 2 to 5 metres, every other one a ring, side by side.
std::vector<Points> Contours(int segments) {
    Numbers numbers(20091117);
    std::vector<Points> contours;
    for (int left = segments; left > 0;) {
        const int n = std::min(left, 300 + numbers.Below(400));
        const double column = static_cast<double>(contours.size() % 40) * 4000;
        const double row = static_cast<double>(contours.size() / 40) * 4000;
        const bool isRing = contours.size() % 2 == 1 && n > 2;
        Points points;
        double radius = 400;
        for (int i = 0; i <= n; ++i) {
            radius += numbers.Between(-2, 2);
            const double angle = i * (isRing ? 6.283185307179586 : 5.0) / n;
            points.emplace_back(25496000 + column + radius * std::cos(angle),
                                6672000 + row + radius * std::sin(angle), 10);
        }
        if (isRing) points.back() = points.front();
        contours.push_back(points);
        left -= n;
    }
    return contours;
}

std::vector<Line> LooseSegments(int segments) {
    std::vector<Line> lines;
    for (const Points& points : Contours(segments))
        for (std::size_t i = 1; i < points.size(); ++i)
            lines.emplace_back(points[i - 1], points[i]);
    Numbers numbers(7);
    numbers.Shuffle(lines);
    for (Line& line : lines)
        if (numbers.OneIn(2)) line.Reverse();
    return lines;
}

void CheckCount(benchmark::State& state, std::size_t count) {
    const std::size_t expected = Contours(static_cast<int>(state.range(0))).size();
    if (count != expected) state.SkipWithError("another number of polylines");
    state.SetItemsProcessed(state.iterations() * state.range(0));
    state.SetComplexityN(state.range(0));
}

void Link(benchmark::State& state) {
    const LineArray lines = MakeLines(LooseSegments(static_cast<int>(state.range(0))));
    std::size_t count = 0;
    for (auto _ : state) count = PolyArray(lines, false, 0.001).count;
    CheckCount(state, count);
}
BENCHMARK(Link)
    ->RangeMultiplier(10)
    ->Range(1000, 1000000)
    ->Unit(benchmark::kMillisecond)
    ->Complexity();

void LinkPlainly(benchmark::State& state) {
    const LineArray lines = MakeLines(LooseSegments(static_cast<int>(state.range(0))));
    std::size_t count = 0;
    for (auto _ : state) count = PlainLinking(lines, false, 0.001).result.size();
    CheckCount(state, count);
}
BENCHMARK(LinkPlainly)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

void GeosLineMerge(benchmark::State& state) {
    GEOSContextHandle_t geos = GEOS_init_r();
    std::vector<GEOSGeometry*> segments;
    for (const Line& line : LooseSegments(static_cast<int>(state.range(0)))) {
        GEOSCoordSequence* const ends = GEOSCoordSeq_create_r(geos, 2, 3);
        GEOSCoordSeq_setXYZ_r(geos, ends, 0, line.x1, line.y1, line.z1);
        GEOSCoordSeq_setXYZ_r(geos, ends, 1, line.x2, line.y2, line.z2);
        segments.push_back(GEOSGeom_createLineString_r(geos, ends));
    }
    GEOSGeometry* const all = GEOSGeom_createCollection_r(
        geos, GEOS_MULTILINESTRING, segments.data(), static_cast<unsigned>(segments.size()));
    std::size_t count = 0;
    for (auto _ : state) {
        GEOSGeometry* const merged = GEOSLineMerge_r(geos, all);
        count = static_cast<std::size_t>(GEOSGetNumGeometries_r(geos, merged));
        GEOSGeom_destroy_r(geos, merged);
    }
    CheckCount(state, count);
    GEOSGeom_destroy_r(geos, all);
    GEOS_finish_r(geos);
}
BENCHMARK(GeosLineMerge)
    ->RangeMultiplier(10)
    ->Range(1000, 1000000)
    ->Unit(benchmark::kMillisecond)
    ->Complexity();

// The contours cut every 20 segments, with half a metre missing at each cut.
std::vector<Points> Fragments(int segments) {
    std::vector<Points> fragments;
    for (const Points& points : Contours(segments)) {
        Points fragment;
        for (std::size_t i = 0; i < points.size(); ++i) {
            fragment.push_back(points[i]);
            if (i % 20 != 10 || i + 1 == points.size()) continue;
            const Line cut(points[i], points[i + 1]);
            fragment.push_back(cut.PointAt(0.5 - 0.25 / cut.Length()));
            fragments.push_back(fragment);
            fragment = {cut.PointAt(0.5 + 0.25 / cut.Length())};
        }
        fragments.push_back(fragment);
    }
    return fragments;
}

void CloseGaps(benchmark::State& state) {
    const PolyArray fragments = MakeArray(Fragments(static_cast<int>(state.range(0))));
    for (auto _ : state) {
        state.PauseTiming();
        auto array = std::make_unique<PolyArray>(fragments);
        state.ResumeTiming();
        array->CloseGaps(15, 1, 0.3, 0.5, nullptr, true, false);
        benchmark::DoNotOptimize(array->count);
        state.PauseTiming();
        array.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * fragments.count);
    state.SetComplexityN(fragments.count);
}
BENCHMARK(CloseGaps)
    ->RangeMultiplier(10)
    ->Range(1000, 1000000)
    ->Unit(benchmark::kMillisecond)
    ->Complexity();

void CloseGapsPlainly(benchmark::State& state) {
    const std::vector<Points> fragments = Fragments(static_cast<int>(state.range(0)));
    const GapSettings settings{15, 1, 0.3, 0.5, nullptr, true, false};
    for (auto _ : state) benchmark::DoNotOptimize(PlainGaps(fragments, settings).result.size());
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(fragments.size()));
}
BENCHMARK(CloseGapsPlainly)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

// A walk over a grid of streets that comes back to where it was time and again.
Points Wandering(int vertices) {
    Numbers numbers(5);
    Points points;
    Point3d at(25496000, 6672000, 0);
    for (int i = 0; i < vertices; ++i) {
        points.push_back(at);
        (numbers.OneIn(2) ? at.x : at.y) += numbers.OneIn(2) ? 1 : -1;
    }
    return points;
}

void SplitLoops(benchmark::State& state) {
    const PolyLine line = MakeLine(Wandering(static_cast<int>(state.range(0))));
    for (auto _ : state) {
        PolyLine taken(line);
        benchmark::DoNotOptimize(taken.SplitLoops().count);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
    state.SetComplexityN(state.range(0));
}
BENCHMARK(SplitLoops)
    ->RangeMultiplier(10)
    ->Range(1000, 1000000)
    ->Unit(benchmark::kMillisecond)
    ->Complexity();

void SplitLoopsPlainly(benchmark::State& state) {
    const Points points = Wandering(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        Points taken = points;
        std::vector<Points> loops;
        TamLib::SplitLoopsPlainly(taken, loops);
        benchmark::DoNotOptimize(loops.size());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(SplitLoopsPlainly)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
