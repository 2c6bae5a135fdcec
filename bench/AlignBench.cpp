// The command's own work: the angle of many points along one line, and the whole command in the
// embedded host.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

#include "app/AlignPolyLine.h"
#include "host/database/Drawing.h"
#include "host/dxf/Document.h"
#include "host/editor/Scripted.h"
#include "tests/app/DrawingText.h"

namespace {

constexpr std::uint32_t seed = 20091117;

// A winding line of `vertices` vertices, 10 apart along x, in map coordinates.
void FillLine(TamLib::PolyLine& line, int vertices) {
    for (int i = 0; i < vertices; ++i) {
        line.Append({25496000.0 + 10.0 * i, 6672000.0 + 20.0 * std::sin(0.1 * i), 0.0});
    }
}

std::vector<TamLib::Point3d> PointsAlong(int vertices, int count) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> along(0.0, 10.0 * (vertices - 1));
    std::uniform_real_distribution<double> across(-40.0, 40.0);
    std::vector<TamLib::Point3d> points;
    for (int i = 0; i < count; ++i) {
        points.emplace_back(25496000.0 + along(random), 6672000.0 + across(random), 0.0);
    }
    return points;
}

// GetAngleAtPoint for each of `texts` points: one scan for the nearest segment, one walk for the
// length to it and one for the direction. The scan limits it, by a root and two divisions for every
// segment that are not pipelined with the next one's comparison: about 11 ns a segment and text
// with the walks, 11 ms for 1000 texts on 1000 vertices; the atan2 of each text does not show.
void AngleAtPoint(benchmark::State& state) {
    const int vertices = static_cast<int>(state.range(0));
    const int texts = static_cast<int>(state.range(1));
    AlignPolyLine line;
    FillLine(line, vertices);
    const std::vector<TamLib::Point3d> points = PointsAlong(vertices, texts);
    for (auto _ : state) {
        double sum = 0.0;
        for (const TamLib::Point3d& point : points) {
            double angle = 0.0;
            line.GetAngleAtPoint(point, angle);
            sum += angle;
        }
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * texts);
    state.counters["segments/s"] =
        benchmark::Counter(static_cast<double>(state.iterations()) * texts * (vertices - 1),
                           benchmark::Counter::kIsRate);
}
BENCHMARK(AngleAtPoint)
    ->Args({10, 1000})
    ->Args({1000, 1000})
    ->Args({100000, 100})
    ->Unit(benchmark::kMillisecond);

// The whole command over texts of a drawing: pick, selection, one pass, and the question left
// empty. What opening, upgrading, turning and closing each text costs is the difference to
// AngleAtPoint.
void WholeCommand(benchmark::State& state) {
    const int vertices = static_cast<int>(state.range(0));
    const int texts = static_cast<int>(state.range(1));
    TamLib::PolyLine line;
    FillLine(line, vertices);
    std::vector<app_test::Vertex> corners;
    for (const TamLib::Point3d& vertex : line) corners.push_back({vertex.x, vertex.y, vertex.z});
    app_test::DrawingText text;
    text.LightPolyline("2F", corners);
    int number = 0x1000;
    for (const TamLib::Point3d& point : PointsAlong(vertices, texts)) {
        text.Text(std::to_string(number++), {point.x, point.y, point.z});
    }
    const auto drawing =
        host::database::drawingOf(host::dxf::Document::fromBytes(text.Bytes(), "bench"));
    const std::vector<AcDbObjectId> all = host::database::modelSpaceIds(*drawing);
    const std::vector<AcDbObjectId> selected(all.begin() + 1, all.end());
    host::editor::Scripted scripted;
    for (auto _ : state) {
        scripted.pick(all.front());
        scripted.select(selected);
        scripted.type(L"");
        if (!AlignPolyLine().Run()) state.SkipWithError("the command ended early");
        scripted.forget();
    }
    state.SetItemsProcessed(state.iterations() * texts);
}
BENCHMARK(WholeCommand)->Args({10, 1000})->Args({1000, 1000})->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
