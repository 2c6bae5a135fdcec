// The plan tests of Line, per second, over pairs that meet and pairs that don't.
#include <benchmark/benchmark.h>

#include <random>
#include <vector>

#include "GeomEnts/Box.h"
#include "GeomEnts/Line.h"

namespace {

using TamLib::Box;
using TamLib::Line;
using TamLib::Point3d;

// Segments of a few metres scattered over `extent` metres of a map.
std::vector<Line> Lines(double extent) {
    std::mt19937 random(20091117);
    std::uniform_real_distribution<double> place(0, extent), reach(-10, 10);
    std::vector<Line> lines;
    for (int i = 0; i < 1024; ++i) {
        const Point3d start(25496000 + place(random), 6672000 + place(random), place(random));
        lines.emplace_back(start, start + Point3d(reach(random), reach(random), reach(random)));
    }
    return lines;
}

template <class Operation>
void ForPairs(benchmark::State& state, const Operation& operation) {
    const std::vector<Line> lines = Lines(static_cast<double>(state.range(0)));
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(operation(lines[i], lines[(i * 7 + 13) % lines.size()]));
        i = (i + 1) % lines.size();
    }
    state.SetItemsProcessed(state.iterations());
}

// Within 10 metres about every second pair meets, within 1000 hardly any.
void Extents(benchmark::internal::Benchmark* bench) {
    bench->Arg(10)->Arg(1000);
}

void Intersect(benchmark::State& state) {
    ForPairs(state, [](const Line& a, const Line& b) {
        Point3d p;
        return a.Intersect(b, p, false);
    });
}
BENCHMARK(Intersect)->Apply(Extents);

void IntersectWithTouches(benchmark::State& state) {
    ForPairs(state, [](const Line& a, const Line& b) {
        Point3d p;
        return a.Intersect(b, p, true);
    });
}
BENCHMARK(IntersectWithTouches)->Apply(Extents);

void Distance2d(benchmark::State& state) {
    ForPairs(state, [](const Line& a, const Line& b) {
        int side;
        double t;
        return a.Distance2d(b.Start(), &side, &t);
    });
}
BENCHMARK(Distance2d)->Apply(Extents);

void SegmentDistance(benchmark::State& state) {
    ForPairs(state,
             [](const Line& a, const Line& b) { return a.SegmentDistance(b, nullptr, nullptr); });
}
BENCHMARK(SegmentDistance)->Apply(Extents);

void ClipToBox(benchmark::State& state) {
    const double half = static_cast<double>(state.range(0)) / 2;
    const Box box(25496000.0, 25496000.0 + half, 6672000.0, 6672000.0 + half, 0.0, half);
    ForPairs(state, [&box](const Line& a, const Line&) {
        Line line = a;
        return line.ClipToBox(box);
    });
}
BENCHMARK(ClipToBox)->Apply(Extents);

void RayHit(benchmark::State& state) {
    ForPairs(state, [](const Line& a, const Line& b) {
        Point3d hit;
        return b.GetBox().RayHit(a.Start(), a.Direction(), &hit);
    });
}
BENCHMARK(RayHit)->Apply(Extents);

}  // namespace

BENCHMARK_MAIN();
