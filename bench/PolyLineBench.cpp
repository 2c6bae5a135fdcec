// The queries of PolyLine that the alignment asks for each entity, over 10, 1000 and 100000
// vertices. The plain forms of the tests run beside them.
#include <benchmark/benchmark.h>

#include <cmath>
#include <random>
#include <vector>

#include "tests/GeomStructs/PlainPolyLine.h"

namespace {

using TamLib::Point3d;
using TamLib::PolyLine;

// A street: steps of 5 to 20 metres that turn a little, in map coordinates.
PolyLine Street(int vertices) {
    std::mt19937 random(20091117);
    std::uniform_real_distribution<double> step(5, 20), turn(-0.3, 0.3);
    PolyLine line(vertices);
    Point3d at(25496000, 6672000, 10);
    double angle = 0;
    for (int i = 0; i < vertices; ++i) {
        line.Append(at);
        angle += turn(random);
        const double length = step(random);
        at += Point3d(length * std::cos(angle), length * std::sin(angle), 0.01 * length);
    }
    return line;
}

// House numbers: points up to 20 metres beside the line.
std::vector<Point3d> Beside(const PolyLine& line) {
    std::mt19937 random(7);
    std::uniform_int_distribution<int> vertex(0, static_cast<int>(line.count) - 1);
    std::uniform_real_distribution<double> off(-20, 20);
    std::vector<Point3d> points(256);
    for (Point3d& p : points) p = line[vertex(random)] + Point3d(off(random), off(random), 0);
    return points;
}

void Sizes(benchmark::internal::Benchmark* bench) {
    bench->Arg(10)->Arg(1000)->Arg(100000);
}

template <class Query>
void Run(benchmark::State& state, const Query& query) {
    const PolyLine line = Street(static_cast<int>(state.range(0)));
    const std::vector<Point3d> points = Beside(line);
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(query(line, points[i]));
        i = (i + 1) % points.size();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void NearestSegment(benchmark::State& state) {
    Run(state, [](const PolyLine& line, const Point3d& p) {
        double distance;
        return line.NearestSegment(p, &distance) + distance;
    });
}
BENCHMARK(NearestSegment)->Apply(Sizes);

void NearestSegmentPlain(benchmark::State& state) {
    Run(state, [](const PolyLine& line, const Point3d& p) {
        const TamLib::PlainNearest nearest = TamLib::NearestPlainly(line, p);
        return nearest.index + nearest.distance;
    });
}
BENCHMARK(NearestSegmentPlain)->Apply(Sizes);

int Middle(const PolyLine& line) {
    return static_cast<int>(line.count) / 2;
}

void LengthToVertex(benchmark::State& state) {
    Run(state, [](const PolyLine& line, const Point3d&) {
        return line.LengthToVertex(static_cast<int>(line.count));
    });
}
BENCHMARK(LengthToVertex)->Apply(Sizes);

void LengthToVertexPlain(benchmark::State& state) {
    Run(state, [](const PolyLine& line, const Point3d&) {
        return TamLib::LengthPlainly(line, static_cast<int>(line.count));
    });
}
BENCHMARK(LengthToVertexPlain)->Apply(Sizes);

void DirectionAtLength(benchmark::State& state) {
    const PolyLine line = Street(static_cast<int>(state.range(0)));
    const double length = line.LengthToVertex(Middle(line));
    for (auto _ : state) {
        Point3d direction;
        line.DirectionAtLength(&direction, length);
        benchmark::DoNotOptimize(direction);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(DirectionAtLength)->Apply(Sizes);

void DirectionAtLengthPlain(benchmark::State& state) {
    const PolyLine line = Street(static_cast<int>(state.range(0)));
    const double length = line.LengthToVertex(Middle(line));
    for (auto _ : state) benchmark::DoNotOptimize(TamLib::DirectionPlainly(line, length));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(DirectionAtLengthPlain)->Apply(Sizes);

}  // namespace

BENCHMARK_MAIN();
