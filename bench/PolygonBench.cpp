// Inside tests and noding beside GEOS and CGAL, on the same rings and points in the same run:
// 100000 points in rings of 1000 to 100000 vertices, two rings of 1000 to 10000 vertices noded.
// Rings: 0 a coast, whose neighbouring vertices lie near each other, 1 a comb, 2 a star of random
// radii, the worst case: each of its boxes reaches across the figure.
#include <CGAL/Arr_segment_traits_2.h>
#include <CGAL/Exact_predicates_exact_constructions_kernel.h>
#include <CGAL/Exact_predicates_inexact_constructions_kernel.h>
#include <CGAL/Polygon_2.h>
#include <CGAL/Surface_sweep_2_algorithms.h>
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <iterator>
#include <memory>
#include <vector>

#include "GeomStructs/SegmentIndex.h"
#include "tests/GeomStructs/Geos.h"
#include "tests/GeomStructs/PlainPolygon.h"
#include "tests/GeomStructs/RandomLines.h"

namespace {

using TamLib::Geos;
using TamLib::GeosPolygon;
using TamLib::Point3d;
using TamLib::PolyLine;
using TamLib::RandomLines;
using TamLib::SegmentIndex;

const Point3d kPlace(25496000, 6672000, 0);

enum Kind { coast, comb, star };

// Bays within bays: the radius is a sum of waves, each half as high and twice as many.
PolyLine Coast(int vertices) {
    PolyLine ring(vertices + 1);
    for (int i = 0; i < vertices; ++i) {
        const double angle = i * 6.283185307179586 / vertices;
        double radius = 700;
        for (int waves = 3; waves < vertices / 8; waves *= 2)
            radius += 600.0 / waves * std::sin(waves * angle + waves % 7);
        ring.Append(kPlace + Point3d(radius * std::cos(angle), radius * std::sin(angle), 0));
    }
    ring.Close();
    return ring;
}

PolyLine Ring(Kind kind, int vertices) {
    RandomLines random(20091117);
    if (kind == coast) return Coast(vertices);
    if (kind == star) return random.Star(vertices, kPlace, 1000);
    return random.Comb(vertices / 4, kPlace - Point3d(1000, 1000, 0), 8000.0 / vertices, 2000);
}

std::vector<Point3d> Points(int count) {
    RandomLines random(7);
    std::vector<Point3d> points;
    for (int i = 0; i < count; ++i)
        points.push_back(kPlace + Point3d(random.Real(-1000, 1000), random.Real(-1000, 1000), 0));
    return points;
}

// Counts the points inside; `inside` builds whatever it needs of the ring first.
template <class Prepare>
void InsideAll(benchmark::State& state, int points, const Prepare& prepare) {
    const PolyLine ring = Ring(static_cast<Kind>(state.range(0)), static_cast<int>(state.range(1)));
    const std::vector<Point3d> asked = Points(points);
    std::int64_t inside = 0;
    for (auto _ : state) {
        const auto isInside = prepare(ring);
        inside = 0;
        for (const Point3d& p : asked) inside += isInside(p) ? 1 : 0;
    }
    state.counters["inside"] = static_cast<double>(inside);
    state.SetItemsProcessed(state.iterations() * points);
}

constexpr int kPoints = 100000;
// What looks at every vertex is asked for fewer points; the rate is what compares.
constexpr int kFewPoints = 500;

void InsideIndexed(benchmark::State& state) {
    InsideAll(state, kPoints, [](const PolyLine& ring) {
        return [index = SegmentIndex(ring)](const Point3d& p) { return index.Inside(p, false); };
    });
}
void InsideGeosPrepared(benchmark::State& state) {
    const Geos geos;
    InsideAll(state, kPoints, [&](const PolyLine& ring) {
        return [polygon = std::make_shared<GeosPolygon>(geos, ring)](const Point3d& p) {
            return polygon->Contains(p);
        };
    });
}
void InsideScan(benchmark::State& state) {
    InsideAll(state, kFewPoints, [](const PolyLine& ring) {
        return [&ring](const Point3d& p) { return ring.Inside(p, false, false) == 1; };
    });
}
void InsideGeosScan(benchmark::State& state) {
    const Geos geos;
    InsideAll(state, kFewPoints, [&](const PolyLine& ring) {
        return [polygon = std::make_shared<GeosPolygon>(geos, ring)](const Point3d& p) {
            return polygon->ContainsUnprepared(p);
        };
    });
}
void InsideCgalScan(benchmark::State& state) {
    using Kernel = CGAL::Exact_predicates_inexact_constructions_kernel;
    InsideAll(state, kFewPoints, [](const PolyLine& ring) {
        std::vector<Kernel::Point_2> vertices;
        for (std::uint32_t i = 0; i + 1 < ring.count; ++i)
            vertices.emplace_back(ring.data[i].x, ring.data[i].y);
        return [vertices](const Point3d& p) {
            return CGAL::bounded_side_2(vertices.begin(), vertices.end(),
                                        Kernel::Point_2(p.x, p.y)) == CGAL::ON_BOUNDED_SIDE;
        };
    });
}

void Sizes(benchmark::internal::Benchmark* bench) {
    for (const int kind : {coast, comb, star})
        for (const int vertices : {1000, 10000, 100000}) bench->Args({kind, vertices});
    bench->ArgNames({"ring", "vertices"})->Unit(benchmark::kMillisecond);
}
BENCHMARK(InsideIndexed)->Apply(Sizes);
BENCHMARK(InsideGeosPrepared)->Apply(Sizes);
BENCHMARK(InsideScan)->Apply(Sizes);
BENCHMARK(InsideGeosScan)->Apply(Sizes);
BENCHMARK(InsideCgalScan)->Apply(Sizes);

// --- Noding: two wavy rings about one centre that cross all the time.

PolyLine Wavy(int vertices, double phase) {
    PolyLine ring(vertices + 1);
    for (int i = 0; i < vertices; ++i) {
        const double angle = i * 6.283185307179586 / vertices;
        const double height = 30000.0 / vertices;  // of the waves, in step with their width
        const double radius = 1000 + height * std::sin(angle * vertices / 10 + phase);
        ring.Append(kPlace + Point3d(radius * std::cos(angle), radius * std::sin(angle), 0));
    }
    ring.Close();
    return ring;
}

template <class Node>
void NodeBoth(benchmark::State& state, const Node& node) {
    const int vertices = static_cast<int>(state.range(0));
    const PolyLine a = Wavy(vertices, 0.3), b = Wavy(vertices, 2.4);
    std::size_t nodes = 0;
    for (auto _ : state) nodes = node(a, b);
    state.counters["nodes"] = static_cast<double>(nodes);
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void Noding(benchmark::State& state) {
    NodeBoth(state, [](const PolyLine& a, const PolyLine& b) {
        const std::size_t added = a.WithIntersections(b).count - a.count;
        return added + (b.WithIntersections(a).count - b.count);
    });
}
void NodingPlainly(benchmark::State& state) {
    NodeBoth(state, [](const PolyLine& a, const PolyLine& b) {
        const std::size_t added = NodedPlainly(a, b, nullptr, false, 0).count - a.count;
        return added + (NodedPlainly(b, a, nullptr, false, 0).count - b.count);
    });
}
void NodingGeos(benchmark::State& state) {
    const Geos geos;
    NodeBoth(state, [&](const PolyLine& a, const PolyLine& b) {
        const auto context = geos.Context();
        const auto line = [&](const PolyLine& ring) {
            GEOSCoordSequence* const vertices = GEOSCoordSeq_create_r(context, ring.count, 2);
            for (unsigned int i = 0; i < ring.count; ++i)
                GEOSCoordSeq_setXY_r(context, vertices, i, ring.data[i].x, ring.data[i].y);
            return GEOSGeom_createLineString_r(context, vertices);
        };
        GEOSGeometry* lines[] = {line(a), line(b)};
        GEOSGeometry* const both =
            GEOSGeom_createCollection_r(context, GEOS_MULTILINESTRING, lines, 2);
        GEOSGeometry* const noded = GEOSNode_r(context, both);
        const int pieces = GEOSGetNumGeometries_r(context, noded);
        GEOSGeom_destroy_r(context, noded);
        GEOSGeom_destroy_r(context, both);
        return static_cast<std::size_t>(pieces);
    });
}
void NodingCgal(benchmark::State& state) {
    using Traits = CGAL::Arr_segment_traits_2<CGAL::Exact_predicates_exact_constructions_kernel>;
    NodeBoth(state, [](const PolyLine& a, const PolyLine& b) {
        std::vector<Traits::Curve_2> segments;
        for (const PolyLine* ring : {&a, &b})
            for (std::uint32_t i = 0; i + 1 < ring->count; ++i)
                segments.emplace_back(Traits::Point_2(ring->data[i].x, ring->data[i].y),
                                      Traits::Point_2(ring->data[i + 1].x, ring->data[i + 1].y));
        std::vector<Traits::Point_2> points;
        CGAL::compute_intersection_points(segments.begin(), segments.end(),
                                          std::back_inserter(points));
        return points.size();
    });
}

void NodingSizes(benchmark::internal::Benchmark* bench) {
    bench->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
}
BENCHMARK(Noding)->Apply(NodingSizes);
BENCHMARK(Noding)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(NodingPlainly)->Apply(NodingSizes);
BENCHMARK(NodingGeos)->Apply(NodingSizes);
BENCHMARK(NodingCgal)->Apply(NodingSizes);

}  // namespace

BENCHMARK_MAIN();
