// Sorting a million doubles and points beside the usual alternatives. The arrays have the usual
// comparison of their type, which sorting inlines, or one of the program's own, which it calls as
// qsort does; std::sort is measured both with an inlined comparison and by function. Points are
// ordered as those of point arrays. Strings: bench/StringBench.cpp.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <random>
#include <vector>

#include "GeomEnts/Point3d.h"
#include "datastruct/Array.h"

namespace {

using TamLib::Array;
using TamLib::Point3d;

std::int32_t Compare(const double* a, const double* b) {
    return (*a > *b) - (*a < *b);
}

std::int32_t Compare(const Point3d* a, const Point3d* b) {
    return Point3d::CompareArray(a, b);
}

template <class T>
int CompareVoid(const void* a, const void* b) {
    return Compare(static_cast<const T*>(a), static_cast<const T*>(b));
}

bool Less(double a, double b) {
    return a < b;
}

bool Less(const Point3d& a, const Point3d& b) {
    if (std::fabs(a.x - b.x) >= 1e-6) return a.x < b.x;
    if (std::fabs(a.y - b.y) >= 1e-6) return a.y < b.y;
    return a.z - b.z <= -1e-6;
}

template <class T>
T Made(std::mt19937& random);

template <>
double Made(std::mt19937& random) {
    return std::uniform_real_distribution<double>(0, 1e6)(random);
}

// Points of a city plan on a lattice of a metre, so that x repeats and y decides.
template <>
Point3d Made(std::mt19937& random) {
    std::uniform_int_distribution<int> metre(0, 2999);
    return {25496000.0 + metre(random), 6672000.0 + metre(random), metre(random) * 0.1};
}

template <class T>
const std::vector<T>& Values(std::size_t n) {
    static std::vector<T> values;
    if (values.size() != n) {
        std::mt19937 random(2);
        values.clear();
        for (std::size_t i = 0; i < n; ++i) values.push_back(Made<T>(random));
    }
    return values;
}

template <class T>
Array<T> ArrayOf(const std::vector<T>& values) {
    Array<T> array(static_cast<std::uint32_t>(values.size()));
    array.bitwise = true;
    array.compare = TamLib::UsualComparison<T>::kFunction;
    for (const T& value : values) array.Append(value);
    return array;
}

template <class T, class Sort>
void OverArray(benchmark::State& state, Sort sort) {
    const std::vector<T>& values = Values<T>(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        state.PauseTiming();
        Array<T> array = ArrayOf(values);
        state.ResumeTiming();
        sort(array);
        benchmark::DoNotOptimize(array.data);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <class T, class Sort>
void OverVector(benchmark::State& state, Sort sort) {
    const std::vector<T>& values = Values<T>(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        state.PauseTiming();
        std::vector<T> vector = values;
        state.ResumeTiming();
        sort(vector);
        benchmark::DoNotOptimize(vector.data());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <class T>
void Sort_Array(benchmark::State& state) {
    OverArray<T>(state, [](Array<T>& array) { array.Sort(); });
}

template <class T>
void Sort_ArrayByOwnFunction(benchmark::State& state) {
    OverArray<T>(state, [](Array<T>& array) {
        array.compare = static_cast<std::int32_t (*)(const T*, const T*)>(&Compare);
        array.Sort();
    });
}

template <class T>
void Sort_ArrayThroughPointers(benchmark::State& state) {
    OverArray<T>(state, [](Array<T>& a) {
        TamLib::SortByPointers(a.data, static_cast<std::int32_t>(a.count) - 1, a.capacity,
                               a.compare);
    });
}

template <class T>
void Sort_Std(benchmark::State& state) {
    OverVector<T>(state, [](std::vector<T>& v) {
        std::sort(v.begin(), v.end(), [](const T& a, const T& b) { return Less(a, b); });
    });
}

template <class T>
void Sort_StdByFunction(benchmark::State& state) {
    bool (*less)(const T&, const T&) = [](const T& a, const T& b) { return Less(a, b); };
    benchmark::DoNotOptimize(less);
    OverVector<T>(state, [less](std::vector<T>& v) { std::sort(v.begin(), v.end(), less); });
}

template <class T>
void Sort_Qsort(benchmark::State& state) {
    OverVector<T>(state, [](std::vector<T>& v) {
        std::qsort(v.data(), v.size(), sizeof(T), &CompareVoid<T>);
    });
}

template <class T>
void SortUnique_Array(benchmark::State& state) {
    OverArray<T>(state, [](Array<T>& array) { array.SortUnique(); });
}

template <class T>
void SortUnique_ArrayByOwnFunction(benchmark::State& state) {
    OverArray<T>(state, [](Array<T>& array) {
        array.compare = static_cast<std::int32_t (*)(const T*, const T*)>(&Compare);
        array.SortUnique();
    });
}

template <class T>
void SortUnique_StdSortAndUnique(benchmark::State& state) {
    OverVector<T>(state, [](std::vector<T>& v) {
        std::sort(v.begin(), v.end(), [](const T& a, const T& b) { return Less(a, b); });
        v.erase(std::unique(v.begin(), v.end(),
                            [](const T& a, const T& b) { return Compare(&a, &b) == 0; }),
                v.end());
    });
}

template <class T>
void SortUnique_StdByFunction(benchmark::State& state) {
    bool (*less)(const T&, const T&) = [](const T& a, const T& b) { return Less(a, b); };
    benchmark::DoNotOptimize(less);
    OverVector<T>(state, [less](std::vector<T>& v) {
        std::sort(v.begin(), v.end(), less);
        v.erase(std::unique(v.begin(), v.end(),
                            [](const T& a, const T& b) { return Compare(&a, &b) == 0; }),
                v.end());
    });
}

#define SORT_BENCH(name)                                                           \
    BENCHMARK_TEMPLATE(name, double)->Arg(1000000)->Unit(benchmark::kMillisecond); \
    BENCHMARK_TEMPLATE(name, Point3d)->Arg(1000000)->Unit(benchmark::kMillisecond)

SORT_BENCH(Sort_Array);
SORT_BENCH(Sort_ArrayByOwnFunction);
SORT_BENCH(Sort_ArrayThroughPointers);
SORT_BENCH(Sort_Std);
SORT_BENCH(Sort_StdByFunction);
SORT_BENCH(Sort_Qsort);
SORT_BENCH(SortUnique_Array);
SORT_BENCH(SortUnique_ArrayByOwnFunction);
SORT_BENCH(SortUnique_StdSortAndUnique);
SORT_BENCH(SortUnique_StdByFunction);

}  // namespace

BENCHMARK_MAIN();
