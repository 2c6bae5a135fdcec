// Strings against the standard ones: splitting a text of 10 MB at commas with quotes, replacing in
// it, comparing a million names without regard to case, ordering a hundred thousand names. Each
// workload runs once with StringBase and with what a careful person would write with
// std::basic_string, on the same text and in one process.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdlib>
#include <cwchar>
#include <random>
#include <string>
#include <vector>

#include "datastruct/String.h"
#include "tam/TextCase.h"

namespace {

using TamLib::Array;
using TamLib::StringBase;

std::string StreetName(std::mt19937_64& random) {
    static const char* const first[] = {"Kauppa", "Hameen", "Aleksanterin", "Mannerheimin",
                                        "Puisto", "Ranta",  "Asema"};
    static const char* const last[] = {"katu", "tie", "polku", "kuja", "raitti", "KATU", "Tie"};
    std::string name = first[random() % 7];
    name += last[random() % 7];
    name += ' ';
    name += std::to_string(random() % 2000);
    return name;
}

// Numbers and names parted by commas; a fifth of the fields is quoted, half of those with a comma
// inside.
const std::string& Fields() {
    static const std::string text = [] {
        std::mt19937_64 random(10);
        std::string made;
        while (made.size() < 10000000) {
            const auto kind = random() % 10;
            if (kind < 4) {
                made += std::to_string(random() % 10000000);
            } else if (kind < 8) {
                made += StreetName(random);
            } else {
                made +=
                    '"' + StreetName(random) + (kind == 8 ? "" : ", " + StreetName(random)) + '"';
            }
            made += ',';
        }
        return made + "end";
    }();
    return text;
}

template <class T>
std::basic_string<T> StdText(const std::string& narrow) {
    return std::basic_string<T>(narrow.begin(), narrow.end());
}

template <class T>
StringBase<T> LibraryText(const std::string& narrow) {
    return StringBase<T>(StdText<T>(narrow).c_str());
}

template <class T>
void SplitStd(benchmark::State& state) {
    const auto text = StdText<T>(Fields());
    for (auto _ : state) {
        std::vector<std::basic_string<T>> fields;
        std::basic_string<T> field;
        bool quoted = false;
        for (const T c : text) {
            if (c == T('"')) {
                quoted = !quoted;
            } else if (c == T(',') && !quoted) {
                fields.push_back(field);
                field.clear();
            } else {
                field.push_back(c);
            }
        }
        fields.push_back(field);
        benchmark::DoNotOptimize(fields.data());
        state.counters["fields"] = static_cast<double>(fields.size());
    }
}

template <class T>
void SplitLibrary(benchmark::State& state) {
    const auto text = LibraryText<T>(Fields());
    const T comma[] = {',', 0};
    for (auto _ : state) {
        Array<StringBase<T>> fields(static_cast<std::uint32_t>(state.range(0)));
        text.Split(fields, comma, /*keepEmpty=*/true, '"');
        benchmark::DoNotOptimize(fields.data);
        state.counters["fields"] = static_cast<double>(fields.count);
    }
}

template <class T>
void ReplaceStd(benchmark::State& state) {
    const auto text = StdText<T>(Fields());
    const auto old = StdText<T>("katu");
    const auto fresh = StdText<T>("street");
    for (auto _ : state) {
        std::basic_string<T> result;
        result.reserve(text.size());
        std::size_t at = 0;
        for (std::size_t hit = 0; (hit = text.find(old, at)) != text.npos; at = hit + old.size()) {
            result.append(text, at, hit - at);
            result += fresh;
        }
        result.append(text, at, text.npos);
        benchmark::DoNotOptimize(result.data());
    }
}

template <class T>
void ReplaceLibrary(benchmark::State& state) {
    const auto text = LibraryText<T>(Fields());
    const auto old = LibraryText<T>("katu");
    const auto fresh = LibraryText<T>("street");
    for (auto _ : state) {
        StringBase<T> result(text);
        result.Replace(old, fresh, state.range(0) == 0);
        benchmark::DoNotOptimize(result.data);
    }
}

const std::vector<std::wstring>& Names() {
    static const std::vector<std::wstring> names = [] {
        std::mt19937_64 random(8);
        std::vector<std::wstring> made;
        for (int i = 0; i < 1000000; ++i) {
            std::wstring name = StdText<wchar_t>(StreetName(random));
            if (random() % 4 == 0) {
                for (wchar_t& c : name) c = TamLib::UpperChar(c);
            }
            made.push_back(name);
        }
        return made;
    }();
    return names;
}

bool LessNoCase(const std::wstring& a, const std::wstring& b) {
    const std::size_t shorter = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < shorter; ++i) {
        const wchar_t x = TamLib::LowerChar(a[i]);
        const wchar_t y = TamLib::LowerChar(b[i]);
        if (x != y) return x < y;
    }
    return a.size() < b.size();
}

// Half of the pairs are equal but for case, the other half are two names.
std::size_t Partner(std::size_t i) {
    return i % 2 == 0 ? i : i * 7919 % Names().size();
}

void CompareStd(benchmark::State& state) {
    std::vector<std::wstring> upper = Names();
    for (auto& name : upper) {
        for (wchar_t& c : name) c = TamLib::UpperChar(c);
    }
    for (auto _ : state) {
        std::size_t equal = 0;
        for (std::size_t i = 0; i < upper.size(); ++i) {
            equal += ::wcscasecmp(upper[i].c_str(), Names()[Partner(i)].c_str()) == 0;
        }
        benchmark::DoNotOptimize(equal);
    }
}

void CompareLibrary(benchmark::State& state) {
    std::vector<StringBase<wchar_t>> names;
    std::vector<StringBase<wchar_t>> upper;
    for (const auto& name : Names()) {
        names.emplace_back(name.c_str());
        upper.push_back(names.back().ToUpper());
    }
    for (auto _ : state) {
        std::size_t equal = 0;
        for (std::size_t i = 0; i < upper.size(); ++i) {
            equal += upper[i].CompareNoCase(names[Partner(i)]) == 0;
        }
        benchmark::DoNotOptimize(equal);
    }
}

constexpr std::size_t sorted = 100000;

void SortStd(benchmark::State& state) {
    const std::vector<std::wstring> source(Names().begin(), Names().begin() + sorted);
    for (auto _ : state) {
        state.PauseTiming();
        std::vector<std::wstring> names(source);
        state.ResumeTiming();
        std::sort(names.begin(), names.end(), LessNoCase);
        benchmark::DoNotOptimize(names.data());
    }
}

// Pointers, since qsort moves bytes and standard strings may point into themselves.
void SortQsort(benchmark::State& state) {
    std::vector<const std::wstring*> source;
    for (std::size_t i = 0; i < sorted; ++i) source.push_back(&Names()[i]);
    const auto compare = [](const void* a, const void* b) -> int {
        const std::wstring& x = **static_cast<const std::wstring* const*>(a);
        const std::wstring& y = **static_cast<const std::wstring* const*>(b);
        return LessNoCase(x, y) ? -1 : LessNoCase(y, x);
    };
    for (auto _ : state) {
        state.PauseTiming();
        std::vector<const std::wstring*> names(source);
        state.ResumeTiming();
        std::qsort(names.data(), names.size(), sizeof names[0], compare);
        benchmark::DoNotOptimize(names.data());
    }
}

void SortLibrary(benchmark::State& state) {
    Array<StringBase<wchar_t>> source(sorted);
    for (std::size_t i = 0; i < sorted; ++i) source.Append(Names()[i].c_str());
    for (auto _ : state) {
        state.PauseTiming();
        Array<StringBase<wchar_t>> names(source);
        state.ResumeTiming();
        names.Sort();
        benchmark::DoNotOptimize(names.data);
        state.PauseTiming();
        names.Clear();
        state.ResumeTiming();
    }
}

BENCHMARK_TEMPLATE(SplitStd, char)->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(SplitLibrary, char)->Arg(0)->Arg(1000000)->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(SplitStd, wchar_t)->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(SplitLibrary, wchar_t)->Arg(0)->Arg(1000000)->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(ReplaceStd, char)->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(ReplaceLibrary, char)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(ReplaceStd, wchar_t)->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(ReplaceLibrary, wchar_t)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(CompareStd)->Unit(benchmark::kMillisecond);
BENCHMARK(CompareLibrary)->Unit(benchmark::kMillisecond);
BENCHMARK(SortStd)->Unit(benchmark::kMillisecond);
BENCHMARK(SortQsort)->Unit(benchmark::kMillisecond);
BENCHMARK(SortLibrary)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
