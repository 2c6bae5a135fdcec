// Hash<int,int> of up to a million keys and StringHash of a hundred thousand against
// std::unordered_map: insertion, lookup of present and of absent keys. Integer keys are like
// handles, random even numbers; absent ones are odd.
#include <benchmark/benchmark.h>

#include <random>
#include <string>
#include <unordered_map>
#include <vector>

#include "datastruct/Hash.h"
#include "datastruct/StringHash.h"

namespace {

using TamLib::Hash;
using TamLib::StringBase;
using TamLib::StringHash;

std::vector<int> IntKeys(std::size_t n, int odd) {
    std::mt19937 random(static_cast<unsigned>(11 + odd));
    std::vector<int> keys(n);
    for (int& key : keys) key = static_cast<int>(random() % (1u << 30)) * 2 + odd;
    return keys;
}

std::vector<std::wstring> NameKeys(std::size_t n, bool absent) {
    static const wchar_t* const streets[] = {L"Mannerheimintie", L"Aleksanterinkatu",
                                             L"Rantatie",        L"Koulukatu",
                                             L"Kirkkokatu",      L"M\u00E4kitie"};
    std::mt19937 random(12);
    std::vector<std::wstring> keys;
    for (std::size_t i = 0; i < n; ++i) {
        keys.push_back(std::wstring(streets[random() % 6]) + L" " + std::to_wstring(i) +
                       (absent ? L"x" : L""));
    }
    std::shuffle(keys.begin(), keys.end(), random);
    return keys;
}

std::vector<StringBase<wchar_t>> Strings(const std::vector<std::wstring>& keys) {
    std::vector<StringBase<wchar_t>> strings;
    for (const std::wstring& key : keys) strings.emplace_back(key.c_str());
    return strings;
}

template <class Map, class Key>
void Insert(benchmark::State& state, const std::vector<Key>& keys) {
    for (auto _ : state) {
        Map map;
        int i = 0;
        for (const Key& key : keys) map[key] += ++i;
        benchmark::DoNotOptimize(&map);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(keys.size()));
}

template <class Map, class Key>
Map Filled(const std::vector<Key>& keys) {
    Map map;
    int i = 0;
    for (const Key& key : keys) map[key] = ++i;
    return map;
}

template <class Map, class Key>
void LookupTam(benchmark::State& state, const std::vector<Key>& keys,
               const std::vector<Key>& asked) {
    const Map map = Filled<Map>(keys);
    for (auto _ : state) {
        std::int64_t sum = 0;
        int value = 0;
        for (const Key& key : asked) {
            if (map.Lookup(key, &value)) sum += value;
        }
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(asked.size()));
}

template <class Map, class Key>
void LookupStd(benchmark::State& state, const std::vector<Key>& keys,
               const std::vector<Key>& asked) {
    const Map map = Filled<Map>(keys);
    for (auto _ : state) {
        std::int64_t sum = 0;
        for (const Key& key : asked) {
            const auto found = map.find(key);
            if (found != map.end()) sum += found->second;
        }
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(asked.size()));
}

std::size_t Size(const benchmark::State& state) {
    return static_cast<std::size_t>(state.range(0));
}

using TamInts = Hash<int, int>;
using StdInts = std::unordered_map<int, int>;
using TamNames = StringHash<int>;
using StdNames = std::unordered_map<std::wstring, int>;

void IntInsert_Hash(benchmark::State& state) {
    Insert<TamInts>(state, IntKeys(Size(state), 0));
}
void IntInsert_Std(benchmark::State& state) {
    Insert<StdInts>(state, IntKeys(Size(state), 0));
}
void IntPresent_Hash(benchmark::State& state) {
    const auto keys = IntKeys(Size(state), 0);
    LookupTam<TamInts>(state, keys, keys);
}
void IntPresent_Std(benchmark::State& state) {
    const auto keys = IntKeys(Size(state), 0);
    LookupStd<StdInts>(state, keys, keys);
}
void IntAbsent_Hash(benchmark::State& state) {
    LookupTam<TamInts>(state, IntKeys(Size(state), 0), IntKeys(Size(state), 1));
}
void IntAbsent_Std(benchmark::State& state) {
    LookupStd<StdInts>(state, IntKeys(Size(state), 0), IntKeys(Size(state), 1));
}
void NameInsert_Hash(benchmark::State& state) {
    Insert<TamNames>(state, Strings(NameKeys(Size(state), false)));
}
void NameInsert_Std(benchmark::State& state) {
    Insert<StdNames>(state, NameKeys(Size(state), false));
}
void NamePresent_Hash(benchmark::State& state) {
    const auto keys = Strings(NameKeys(Size(state), false));
    LookupTam<TamNames>(state, keys, keys);
}
void NamePresent_Std(benchmark::State& state) {
    const auto keys = NameKeys(Size(state), false);
    LookupStd<StdNames>(state, keys, keys);
}
void NameAbsent_Hash(benchmark::State& state) {
    LookupTam<TamNames>(state, Strings(NameKeys(Size(state), false)),
                        Strings(NameKeys(Size(state), true)));
}
void NameAbsent_Std(benchmark::State& state) {
    LookupStd<StdNames>(state, NameKeys(Size(state), false), NameKeys(Size(state), true));
}

void IntSizes(benchmark::internal::Benchmark* bench) {
    bench->Arg(1000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);
}
void NameSizes(benchmark::internal::Benchmark* bench) {
    bench->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);
}

BENCHMARK(IntInsert_Hash)->Apply(IntSizes);
BENCHMARK(IntInsert_Std)->Apply(IntSizes);
BENCHMARK(IntPresent_Hash)->Apply(IntSizes);
BENCHMARK(IntPresent_Std)->Apply(IntSizes);
BENCHMARK(IntAbsent_Hash)->Apply(IntSizes);
BENCHMARK(IntAbsent_Std)->Apply(IntSizes);
BENCHMARK(NameInsert_Hash)->Apply(NameSizes);
BENCHMARK(NameInsert_Std)->Apply(NameSizes);
BENCHMARK(NamePresent_Hash)->Apply(NameSizes);
BENCHMARK(NamePresent_Std)->Apply(NameSizes);
BENCHMARK(NameAbsent_Hash)->Apply(NameSizes);
BENCHMARK(NameAbsent_Std)->Apply(NameSizes);

}  // namespace

BENCHMARK_MAIN();
