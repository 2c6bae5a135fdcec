// Lines in no order and direction put together into the rings that bound regions.
#include <benchmark/benchmark.h>

#include <cmath>
#include <random>
#include <utility>
#include <vector>

#include "host/database/ChainJoin.h"

namespace {

using host::database::Corners;

// One ring of so many lines, in map coordinates.
std::vector<Corners> shuffledRing(int count) {
    std::mt19937 random(20091117);
    const auto corner = [count](int i) {
        const double angle = 6.283185307179586 * (i % count) / count;
        return AcGePoint3d(25496000 + 5000 * std::cos(angle), 6672000 + 5000 * std::sin(angle), 10);
    };
    std::vector<Corners> lines;
    for (int i = 0; i < count; ++i) {
        lines.push_back({corner(i), corner(i + 1)});
        if (random() % 2 == 0) std::swap(lines.back()[0], lines.back()[1]);
    }
    for (std::size_t i = lines.size(); i > 1; --i) std::swap(lines[i - 1], lines[random() % i]);
    return lines;
}

void JoinRing(benchmark::State& state) {
    const std::vector<Corners> lines = shuffledRing(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        std::vector<Corners> chains = lines;
        host::database::joinChains(chains);
        benchmark::DoNotOptimize(chains);
    }
    state.SetComplexityN(state.range(0));
}
BENCHMARK(JoinRing)->RangeMultiplier(4)->Range(1000, 64000)->Complexity();

}  // namespace

BENCHMARK_MAIN();
