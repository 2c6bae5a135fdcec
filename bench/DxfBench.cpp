// Opening, saving and comparing drawings of 5 MB and 100 MB: a seeded city plan as programs write
// it today, and one of vertices alone, whose records are the shortest that occur. Bytes per second
// are of the file; "memory" is the largest amount in use while a drawing is open, in sizes of the
// file.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <string>

#include "host/dxf/Compare.h"
#include "host/dxf/Edit.h"

namespace {

namespace dxf = host::dxf;
namespace fs = std::filesystem;

class CityPlan {
  public:
    explicit CityPlan(std::size_t size) {
        text_ =
            "  0\r\nSECTION\r\n  2\r\nHEADER\r\n  9\r\n$ACADVER\r\n  1\r\nAC1024\r\n"
            "  0\r\nENDSEC\r\n  0\r\nSECTION\r\n  2\r\nENTITIES\r\n";
        while (text_.size() < size) {
            switch (random_() % 10) {
                case 0:
                case 1:
                case 2:
                case 3:
                    polyline();
                    break;
                case 4:
                case 5:
                case 6:
                    label();
                    break;
                case 7:
                case 8:
                    symbol();
                    break;
                default:
                    line();
                    break;
            }
        }
        text_ += "  0\r\nENDSEC\r\n  0\r\nEOF\r\n";
    }

    const std::string& text() const { return text_; }

  private:
    void group(int code, const std::string& value) {
        char head[8];
        std::snprintf(head, sizeof(head), "%3d\r\n", code);
        text_ += head;
        text_ += value;
        text_ += "\r\n";
    }

    void real(int code, double value) {
        char number[40];
        std::snprintf(number, sizeof(number), random_() % 3 == 0 ? "%.10f" : "%.3f", value);
        group(code, number);
    }

    void entity(const char* type, const char* layer, const char* subclass) {
        char handle[20];
        std::snprintf(handle, sizeof(handle), "%lX", ++handle_);
        group(0, type);
        group(5, handle);
        group(330, "1F");
        group(100, "AcDbEntity");
        group(8, layer);
        group(100, subclass);
    }

    double within(double least, double most) {
        return std::uniform_real_distribution<double>(least, most)(random_);
    }

    void point(int code) {
        real(code, 25496000.0 + within(0, 9000));
        real(code + 10, 6672000.0 + within(0, 9000));
    }

    void polyline() {
        entity("LWPOLYLINE", "KATU_REUNA", "AcDbPolyline");
        const auto count = static_cast<unsigned>(4 + random_() % 40);
        group(90, std::to_string(count));
        group(70, "0");
        for (unsigned at = 0; at < count; ++at) point(10);
    }

    void label() {
        entity("TEXT", "KADUNNIMI", "AcDbText");
        point(10);
        group(30, "0.0");
        group(40, "2.5");
        group(1, "H\u00E4meentie " + std::to_string(random_() % 200));
        if (random_() % 2 == 0) real(50, within(0, 360));
        group(100, "AcDbText");
        group(1001, "ZZ_KARTTA");
        group(1000, "mitattu 2009-11-17");
        group(1070, std::to_string(random_() % 100));
    }

    void symbol() {
        entity("INSERT", "PUU", "AcDbBlockReference");
        group(2, "PUU");
        point(10);
        real(30, within(0, 40));
        group(41, "0.5");
        group(42, "0.5");
        group(43, "0.5");
    }

    void line() {
        entity("LINE", "RAKENNUS", "AcDbLine");
        point(10);
        group(30, "0.0");
        point(11);
        group(31, "0.0");
    }

    std::mt19937 random_{20091117};
    unsigned long handle_ = 0x1000;
    std::string text_;
};

// R12 polylines without handles: records of some 70 bytes.
std::string vertices(std::size_t size) {
    std::mt19937 random(20091117);
    std::uniform_real_distribution<double> offset(0, 9000);
    std::string text = "  0\nSECTION\n  2\nENTITIES\n  0\nPOLYLINE\n  8\n0\n 66\n     1\n";
    while (text.size() < size) {
        char record[160];
        std::snprintf(record, sizeof(record),
                      "  0\nVERTEX\n  8\nKATU\n 10\n%.3f\n 20\n%.3f\n 30\n0.0\n",
                      25496000.0 + offset(random), 6672000.0 + offset(random));
        text += record;
    }
    return text + "  0\nSEQEND\n  0\nENDSEC\n  0\nEOF\n";
}

constexpr std::size_t kMega = 1000000;

// The drawing of `kind` and `size` as a file of the temporary folder, written when it is first
// asked for.
const fs::path& drawing(const std::string& kind, std::size_t size) {
    static std::map<std::string, fs::path> files;
    const std::string name = "orlinth-bench-" + kind + std::to_string(size) + ".dxf";
    fs::path& path = files[name];
    if (path.empty()) {
        path = fs::temp_directory_path() / name;
        std::ofstream file(path, std::ios::binary);
        file << (kind == "city" ? CityPlan(size).text() : vertices(size));
        std::atexit([] {
            std::error_code ignored;
            for (const auto& entry : files) fs::remove(entry.second, ignored);
        });
    }
    return path;
}

// A line of /proc/self/status in bytes; the peak counts from the last reset.
double memoryNow(const char* line) {
    std::ifstream status("/proc/self/status");
    std::string word;
    double kilobytes = 0;
    while (status >> word) {
        if (word == line) status >> kilobytes;
    }
    return kilobytes * 1024;
}

void resetPeak() {
    std::ofstream("/proc/self/clear_refs") << "5";
}

void open(benchmark::State& state, const std::string& kind) {
    const fs::path& path = drawing(kind, static_cast<std::size_t>(state.range(0)) * kMega);
    const auto size = static_cast<double>(fs::file_size(path));
    resetPeak();
    const double before = memoryNow("VmRSS:");
    dxf::Document::open(path);
    state.counters["memory"] = (memoryNow("VmHWM:") - before) / size;
    std::size_t records = 0;
    for (auto _ : state) records = dxf::Document::open(path)->size();
    state.counters["records"] = static_cast<double>(records);
    state.SetBytesProcessed(static_cast<std::int64_t>(size) * state.iterations());
}

void save(benchmark::State& state, const dxf::Changes& changes, const dxf::Document& document) {
    const fs::path target = fs::temp_directory_path() / "orlinth-bench-saved.dxf";
    for (auto _ : state) dxf::save(document, changes, target);
    fs::remove(target);
    state.SetBytesProcessed(static_cast<std::int64_t>(document.bytes().size()) *
                            state.iterations());
}

void SaveUnchanged(benchmark::State& state) {
    const auto document =
        dxf::Document::open(drawing("city", static_cast<std::size_t>(state.range(0)) * kMega));
    save(state, {}, *document);
}

// A rotation for every text of the drawing.
dxf::Changes turnTexts(const dxf::Document& document) {
    dxf::Changes changes;
    for (dxf::RecordIndex record = 0; record < document.size(); ++record) {
        if (document.type(record) != "TEXT") continue;
        std::size_t index = 0;
        for (const dxf::Group& group : document.groups(record)) {
            if (group.code() == 1) break;
            ++index;
        }
        changes[record] = {{dxf::GroupEdit::Kind::insertAfter, index, 50, 0.1 + record}};
    }
    return changes;
}

void SaveTurned(benchmark::State& state) {
    const auto document =
        dxf::Document::open(drawing("city", static_cast<std::size_t>(state.range(0)) * kMega));
    save(state, turnTexts(*document), *document);
}

void CompareTurned(benchmark::State& state) {
    const auto before =
        dxf::Document::open(drawing("city", static_cast<std::size_t>(state.range(0)) * kMega));
    const auto after = dxf::Document::fromBytes(dxf::apply(*before, turnTexts(*before)), "after");
    std::size_t found = 0;
    for (auto _ : state) found = dxf::compare(*before, *after).size();
    state.counters["differences"] = static_cast<double>(found);
    state.SetBytesProcessed(static_cast<std::int64_t>(before->bytes().size()) * state.iterations());
}

void WalkAllGroups(benchmark::State& state) {
    const auto document =
        dxf::Document::open(drawing("city", static_cast<std::size_t>(state.range(0)) * kMega));
    for (auto _ : state) {
        double sum = 0;
        for (dxf::RecordIndex record = 0; record < document->size(); ++record) {
            for (const dxf::Group& group : document->groups(record)) {
                sum += group.real().value_or(0.0);
            }
        }
        benchmark::DoNotOptimize(sum);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(document->bytes().size()) *
                            state.iterations());
}

void OpenCity(benchmark::State& state) {
    open(state, "city");
}
void OpenVertices(benchmark::State& state) {
    open(state, "vertices");
}

BENCHMARK(OpenCity)->Arg(5)->Arg(100)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(OpenVertices)->Arg(100)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(SaveUnchanged)->Arg(5)->Arg(100)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(SaveTurned)->Arg(5)->Arg(100)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(CompareTurned)->Arg(5)->Arg(100)->Unit(benchmark::kMillisecond);
BENCHMARK(WalkAllGroups)->Arg(100)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
