// Growth by fixed steps against std::vector: appending integers and points with an increment of 5,
// 10 and 1000, inserting at the front, and the binary search.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>
#include <vector>

#include "datastruct/Array.h"

namespace {

using TamLib::Array;

struct Point {
    double x, y, z;
};

template <class T>
void Append_Array(benchmark::State& state) {
    const auto n = static_cast<std::uint32_t>(state.range(0));
    for (auto _ : state) {
        Array<T> array;
        array.bitwise = true;
        array.increment = static_cast<std::uint32_t>(state.range(1));
        for (std::uint32_t i = 0; i < n; ++i) array.Append(T());
        benchmark::DoNotOptimize(array.data);
    }
    state.SetItemsProcessed(state.iterations() * n);
}

template <class T>
void Append_ArrayOfTheRightCapacity(benchmark::State& state) {
    const auto n = static_cast<std::uint32_t>(state.range(0));
    for (auto _ : state) {
        Array<T> array(n);
        for (std::uint32_t i = 0; i < n; ++i) array.Append(T());
        benchmark::DoNotOptimize(array.data);
    }
    state.SetItemsProcessed(state.iterations() * n);
}

template <class T>
void Append_Vector(benchmark::State& state) {
    const auto n = static_cast<std::uint32_t>(state.range(0));
    for (auto _ : state) {
        std::vector<T> vector;
        for (std::uint32_t i = 0; i < n; ++i) {
            vector.push_back(T());
            benchmark::DoNotOptimize(vector.data());
        }
    }
    state.SetItemsProcessed(state.iterations() * n);
}

void Steps(benchmark::internal::Benchmark* bench) {
    for (const int n : {1000, 100000, 1000000}) {
        for (const int increment : {5, 10, 1000}) bench->Args({n, increment});
    }
}

void Sizes(benchmark::internal::Benchmark* bench) {
    for (const int n : {1000, 100000, 1000000}) bench->Arg(n);
}

BENCHMARK_TEMPLATE(Append_Array, int)->Apply(Steps);
BENCHMARK_TEMPLATE(Append_ArrayOfTheRightCapacity, int)->Apply(Sizes);
BENCHMARK_TEMPLATE(Append_Vector, int)->Apply(Sizes);
BENCHMARK_TEMPLATE(Append_Array, Point)->Apply(Steps);
BENCHMARK_TEMPLATE(Append_ArrayOfTheRightCapacity, Point)->Apply(Sizes);
BENCHMARK_TEMPLATE(Append_Vector, Point)->Apply(Sizes);

void InsertAtTheFront_Array(benchmark::State& state) {
    for (auto _ : state) {
        Array<Point> array;
        array.bitwise = true;
        for (int i = 0; i < state.range(0); ++i) array.Insert(0, {});
        benchmark::DoNotOptimize(array.data);
    }
}

void InsertAtTheFront_Vector(benchmark::State& state) {
    for (auto _ : state) {
        std::vector<Point> vector;
        for (int i = 0; i < state.range(0); ++i) vector.insert(vector.begin(), Point());
        benchmark::DoNotOptimize(vector.data());
    }
}

BENCHMARK(InsertAtTheFront_Array)->Arg(1000)->Arg(10000);
BENCHMARK(InsertAtTheFront_Vector)->Arg(1000)->Arg(10000);

std::int32_t CompareInts(const int* a, const int* b) {
    return (*a > *b) - (*a < *b);
}

void Find_SortedArray(benchmark::State& state) {
    Array<int> array(static_cast<std::uint32_t>(state.range(0)));
    array.compare = CompareInts;
    for (int i = 0; i < state.range(0); ++i) array.Append(i * 2);
    array.Sort();
    std::mt19937 random(3);
    for (auto _ : state) {
        const int item = static_cast<int>(random() % static_cast<unsigned>(state.range(0) * 2));
        benchmark::DoNotOptimize(array.Find(item));
    }
}

void Find_LowerBound(benchmark::State& state) {
    std::vector<int> vector;
    for (int i = 0; i < state.range(0); ++i) vector.push_back(i * 2);
    std::mt19937 random(3);
    for (auto _ : state) {
        const int item = static_cast<int>(random() % static_cast<unsigned>(state.range(0) * 2));
        const auto at = std::lower_bound(vector.begin(), vector.end(), item);
        benchmark::DoNotOptimize(at != vector.end() && *at == item);
    }
}

BENCHMARK(Find_SortedArray)->Apply(Sizes);
BENCHMARK(Find_LowerBound)->Apply(Sizes);

}  // namespace

BENCHMARK_MAIN();
