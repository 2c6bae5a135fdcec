// Polylines of arcs made into points, beside the same points computed by hand: centre, radius and
// angles known, a sine and a cosine each.
#include <benchmark/benchmark.h>

#include <cmath>
#include <vector>

#include "GeomStructs/PolyArc.h"

namespace {

using namespace TamLib;

// A winding way in map coordinates: arcs of 20 to 60 metres, every third segment straight.
PolyArc Way(int segments) {
    PolyArc line(segments + 1);
    Point3d at(25496000, 6672000, 10);
    line.AddVertex(at, 0);
    for (int i = 0; i < segments; ++i) {
        const double direction = std::sin(i * 0.37) * 0.8;
        const double length = 20 + i * 7 % 40;
        at += Point3d(length * std::cos(direction), length * std::sin(direction), 0.1);
        line.AddVertex(at, 0);
        if (i % 3 != 0) line.SetBulgeAt(i, i % 2 == 0 ? 0.3 : -0.45);
    }
    return line;
}

void Count(benchmark::State& state, std::size_t points) {
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(points));
    state.counters["points"] = static_cast<double>(points);
    state.SetComplexityN(state.range(0));
}

void Flatten(benchmark::State& state) {
    const PolyArc line = Way(static_cast<int>(state.range(0)));
    std::size_t points = 0;
    for (auto _ : state) {
        const PolyLine flat = line.ToPolyLine(0.05, true);
        points = flat.count;
        benchmark::DoNotOptimize(flat.data);
    }
    Count(state, points);
}

struct KnownArc {
    Point3d centre, start;
    double radius, from, sweep;  // sweep 0 of a straight segment
};

std::vector<KnownArc> Known(const PolyArc& line) {
    std::vector<KnownArc> arcs;
    for (int i = 0; i + 1 < static_cast<int>(line.count); ++i) {
        const Arc arc = line.GetArc(i);
        KnownArc known{{}, arc.Start(), 0, 0, 0};
        if (arc.height != 0) {
            arc.Centre(known.centre);
            known.radius = arc.Radius();
            known.from = Angle(known.centre, known.start);
            known.sweep = arc.height > 0 ? -arc.SweepAngle() : arc.SweepAngle();
        }
        arcs.push_back(known);
    }
    return arcs;
}

void ByHand(benchmark::State& state) {
    const PolyArc line = Way(static_cast<int>(state.range(0)));
    const std::vector<KnownArc> arcs = Known(line);
    std::size_t points = 0;
    for (auto _ : state) {
        std::vector<Point3d> flat;
        for (const KnownArc& arc : arcs) {
            flat.push_back(arc.start);
            const double step = arc.sweep < 0 ? -0.05 : 0.05;
            for (double turn = step; std::fabs(turn) < std::fabs(arc.sweep) - 0.05; turn += step)
                flat.emplace_back(arc.centre.x + arc.radius * std::cos(arc.from + turn),
                                  arc.centre.y + arc.radius * std::sin(arc.from + turn),
                                  arc.start.z);
        }
        flat.push_back(line.data[line.count - 1]);
        points = flat.size();
        benchmark::DoNotOptimize(flat.data());
    }
    Count(state, points);
}

void Length(benchmark::State& state) {
    const PolyArc line = Way(static_cast<int>(state.range(0)));
    for (auto _ : state) benchmark::DoNotOptimize(line.Length());
    Count(state, line.count);
}

void Offset(benchmark::State& state) {
    const PolyArc line = Way(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        PolyArc result;
        line.Offset(&result, 1.5);
        benchmark::DoNotOptimize(result.data);
    }
    Count(state, line.count);
}

void Sizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);
}

BENCHMARK(Flatten)->Apply(Sizes)->Complexity();
BENCHMARK(ByHand)->Apply(Sizes);
BENCHMARK(Length)->Apply(Sizes);
BENCHMARK(Offset)->Apply(Sizes);

}  // namespace

BENCHMARK_MAIN();
