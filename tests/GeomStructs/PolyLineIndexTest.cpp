// The filtered loops of PolyLine and SegmentIndex against the plain forms, bit for bit, on random,
// degenerate and far-away input.
#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "GeomStructs/SegmentIndex.h"
#include "tests/GeomStructs/PlainPolygon.h"
#include "tests/GeomStructs/RandomLines.h"
#include "tests/datastruct/ArrayFaults.h"

namespace TamLib {
namespace {

void ExpectSameInside(const PolyLine& line, const SegmentIndex& index, const Point3d& p,
                      const std::string& what) {
    for (const bool touch : {false, true}) {
        const int plain = InsidePlainly(line, p, false, touch);
        ASSERT_EQ(plain, line.Inside(p, false, touch)) << what;
        ASSERT_EQ(plain, index.Inside(p, touch)) << what;
    }
}

void ExpectSameCrossings(const PolyLine& line, const SegmentIndex& index, const Line& query,
                         const std::string& what) {
    ASSERT_EQ(CrossesPlainly(line, query), line.Crosses(query)) << what;
    ASSERT_EQ(CrossesPlainly(line, query), index.Crosses(query)) << what;
    for (const bool touchFirstEnd : {false, true}) {
        const int zMode = touchFirstEnd ? 1 : 2;
        Array<int> plainSegments, segments, indexed;
        const PolyLine plain =
            IntersectionsPlainly(line, query, &plainSegments, touchFirstEnd, zMode);
        const PolyLine points = line.Intersections(query, &segments, touchFirstEnd, zMode);
        ASSERT_EQ("", Difference(plain, points)) << what;
        ASSERT_EQ("", Difference(plainSegments, segments)) << what;
        ASSERT_EQ("", Difference(plain, index.Intersections(query, &indexed, touchFirstEnd, zMode)))
            << what;
        ASSERT_EQ("", Difference(plainSegments, indexed)) << what;
        const PolyLine sorted = IntersectionsPlainly(line, query, nullptr, touchFirstEnd, 0);
        ASSERT_EQ("", Difference(sorted, line.Intersections(query, nullptr, touchFirstEnd)))
            << what;
        ASSERT_EQ("", Difference(sorted, index.Intersections(query, nullptr, touchFirstEnd, 0)))
            << what;
    }
    for (const bool lineFirst : {false, true}) {
        int plainIndex = 1, found = 1;
        Point3d plainPoint, point;
        ASSERT_EQ(FirstPlainly(line, query, &plainPoint, lineFirst, &plainIndex),
                  line.FirstIntersection(query, &point, lineFirst, &found))
            << what;
        ASSERT_EQ(plainIndex, found) << what;
        ASSERT_TRUE(SameBits(plainPoint, point)) << what;
    }
}

void ExpectSameNoding(const PolyLine& line, const PolyLine& other, const std::string& what) {
    for (const bool touchFirstEnd : {false, true}) {
        Array<int> plainVertices, vertices;
        ASSERT_EQ("", Difference(NodedPlainly(line, other, &plainVertices, touchFirstEnd, 1),
                                 line.WithIntersections(other, &vertices, touchFirstEnd, 1)))
            << what;
        ASSERT_EQ("", Difference(plainVertices, vertices)) << what;
    }
    Array<int> plainSegments, segments;
    ASSERT_EQ("", Difference(AllIntersectionsPlainly(line, other, &plainSegments),
                             line.Intersections(other, &segments)))
        << what;
    ASSERT_EQ("", Difference(plainSegments, segments)) << what;
    ASSERT_EQ(RelationPlainly(line, other), line.Relation(other)) << what;
}

const Point3d kPlaces[] = {{}, {25e6, 7e6, 100}, {-3e5, 6.7e6, 0}, {1e12, -1e12, 0}};

PolyLine AnyLine(RandomLines& random, const Point3d& base, double size, int i) {
    switch (i % 4) {
        case 0:
            return random.Walk(random.Whole(2, 90), base, size * 0.2, true);
        case 1:
            return random.Walk(random.Whole(2, 90), base, size * 0.2, false);
        case 2:
            return random.Roughened(random.Ring(base, size));
        default:
            return random.Ring(base, size);
    }
}

TEST(SegmentIndex, AnswersAsThePlainLoopsDo) {
    RandomLines random(53);
    for (const Point3d& base : kPlaces) {
        for (int i = 0; i < 250; ++i) {
            const double size = std::pow(10.0, random.Whole(-4, 4));
            const PolyLine line = AnyLine(random, base, size, i);
            const SegmentIndex index(line);
            const std::string what = "base " + std::to_string(base.x) + " line " +
                                     std::to_string(i) + " size " + std::to_string(size);
            for (int k = 0; k < 60; ++k) {
                const Point3d p = random.PointAbout(line, size);
                ExpectSameInside(line, index, p, what);
                ASSERT_EQ(FindPlainly(line, p), index.FindVertex(p)) << what;
                if (k % 3 == 0)
                    ExpectSameCrossings(line, index, random.LineAbout(line, size), what);
            }
        }
    }
}

TEST(SegmentIndex, NodesAndRelatesAsThePlainLoopsDo) {
    RandomLines random(54);
    for (const Point3d& base : kPlaces) {
        for (int i = 0; i < 150; ++i) {
            const double size = std::pow(10.0, random.Whole(-3, 4));
            const PolyLine line = AnyLine(random, base, size, i);
            PolyLine other = AnyLine(random, base, size, random.Whole(0, 3));
            if (random.Chance(3)) other = random.Roughened(line);
            const std::string what =
                "base " + std::to_string(base.x) + " line " + std::to_string(i);
            ExpectSameNoding(line, other, what);
            ExpectSameNoding(line, line, what);
        }
    }
}

TEST(SegmentIndex, LargeRings) {
    RandomLines random(55);
    for (const Point3d& base : kPlaces) {
        const PolyLine ring = random.Star(5000, base, 1000);
        const SegmentIndex index(ring);
        for (int k = 0; k < 300; ++k) {
            ExpectSameInside(ring, index, random.PointAbout(ring, 1000), std::to_string(k));
            if (k % 10 == 0)
                ExpectSameCrossings(ring, index, random.LineAbout(ring, 1000), std::to_string(k));
        }
    }
}

// Nearly level segments far left of a point count within the dead band of 5e-8: a run of them must
// not be passed over.
TEST(SegmentIndex, TinyRisesLeftOfThePointCountInTheDeadBand) {
    RandomLines random(56);
    int counted = 0;
    for (int i = 0; i < 3000; ++i) {
        PolyLine ring(40);
        double y = 0;
        for (int k = 0; k < 30; ++k) {
            ring.Append({random.Real(0, 1), y, 0});
            y += random.Real(-1, 3) * std::pow(10.0, -random.Whole(8, 11));
        }
        ring.Append({random.Real(0, 1), 5, 0});
        ring.Close();
        const SegmentIndex index(ring);
        const Point3d p(random.Real(1, 30), ring[random.Whole(0, 29)].y, 0);
        ExpectSameInside(ring, index, p, std::to_string(i));
        counted += InsidePlainly(ring, p, false, false);
    }
    EXPECT_GT(counted, 100);
}

// Lines that `Line::Intersect` takes for parallel are compared by their heights at x = 0: far from
// there they meet although their boxes lie apart.
TEST(SegmentIndex, NearlyParallelLinesFarFromTheOrigin) {
    RandomLines random(57);
    int apart = 0;
    for (int i = 0; i < 4000; ++i) {
        const double x = std::pow(10.0, random.Whole(4, 9)), slope = random.Real(-2, 2);
        const double steep = slope * std::pow(10.0, random.Whole(0, 6));
        PolyLine line(20);
        for (int k = 0; k < 20; ++k)
            line.Append({x + k, steep * (x + k) + random.Real(-1, 1) * 1e-4, 0});
        const double other = steep + random.Real(-1, 1) * 1e-8;
        const double from = x + random.Real(-2, 20), to = from + random.Real(0, 3);
        const Line query({from, other * from, 0}, {to, other * to, 0});
        ExpectSameCrossings(line, SegmentIndex(line), query, std::to_string(i));
        const double gap = std::fabs(line.GetSegment(0).MidPoint2d().y - query.MidPoint2d().y);
        apart += CrossesPlainly(line, query) != 0 && gap > 0.01 ? 1 : 0;
    }
    EXPECT_GT(apart, 100);
}

TEST(SegmentIndex, NumbersAtTheLimitsOfDouble) {
    const double infinity = std::numeric_limits<double>::infinity();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double largest = std::numeric_limits<double>::max();
    const double values[] = {0.0,  -0.0,  1.0,   2.0,   -1.0,   1e-320,  1e-160,   1e-8,     1e-4,
                             1e99, -1e99, 1e101, 1e150, -1e155, largest, -largest, infinity, nan};
    RandomLines random(58);
    const auto value = [&] { return values[random.Whole(0, random.Chance(2) ? 9 : 17)]; };
    for (int i = 0; i < 4000; ++i) {
        PolyLine line(30);
        for (int k = random.Whole(2, 28); k > 0; --k) line.Append({value(), value(), 0});
        if (random.Chance(2)) line.Append(Point3d(line[0]));
        const SegmentIndex index(line);
        const Point3d p(value(), value(), 0);
        ExpectSameInside(line, index, p, std::to_string(i));
        ExpectSameCrossings(line, index, Line(p, {value(), value(), 0}), std::to_string(i));
    }
}

TEST(SegmentIndex, StoredBoxRejectsAsItStands) {
    RandomLines random(59);
    for (int i = 0; i < 300; ++i) {
        PolyLine line = random.Star(40, {}, 10);
        line.hasBounds = 1;
        line.minPoint = {random.Real(-10, 5), random.Real(-10, 5), 0};
        line.maxPoint = {random.Real(-5, 10), random.Real(-5, 10), 0};
        const SegmentIndex index(line);
        const Point3d p = random.PointAbout(line, 10);
        ASSERT_EQ(InsidePlainly(line, p, true, true), line.Inside(p, true, true));
        ExpectSameCrossings(line, index, random.LineAbout(line, 10), std::to_string(i));
        ExpectSameNoding(random.Star(20, {}, 10), line, std::to_string(i));
    }
}

TEST(SegmentIndex, OfShortLines) {
    for (int vertices = 0; vertices < 4; ++vertices) {
        PolyLine line;
        for (int i = 0; i < vertices; ++i) line.Append({i % 2 * 1.0, i / 2 * 1.0, 0});
        const SegmentIndex index(line);
        EXPECT_EQ(0, index.Inside({0.2, 0.2, 0}, true));
        EXPECT_EQ(vertices > 0 ? 0 : -1, index.FindVertex({0, 0, 0}));
        EXPECT_EQ(vertices > 1 ? 1 : 0, index.Crosses(Line({0.5, -1, 0}, {0.5, 1, 0})));
    }
}

TEST(SegmentIndex, RefusedMemoryIsToldAsThatOfAnArray) {
    RandomLines random(24);
    const PolyLine here = random.Star(90, {}, 100), there = random.Star(80, {10, 5, 0}, 100);
    {
        test::MemoryFaults faults;
        faults.Fail(test::Request::any, 1);
        const test::Raised raised = test::Catch([&] { const SegmentIndex index(here); });
        EXPECT_EQ("TamExpNoMem", raised.type);
        EXPECT_EQ(L"datastruct/Array", raised.file);
        EXPECT_EQ(0, test::MemoryFaults::Live());
        EXPECT_EQ("nothing", test::Catch([&] { const SegmentIndex index(here); }).type);
        EXPECT_EQ(0, test::MemoryFaults::Live());
    }
    const auto refuse = [](const auto& operation) {
        for (int n = 1;; ++n) {
            test::MemoryFaults faults;
            faults.Fail(test::Request::any, n);
            const test::Raised raised = test::Catch(operation);
            EXPECT_EQ(0, test::MemoryFaults::Live());
            if (test::MemoryFaults::Passed() < n) return n - 1;
            EXPECT_TRUE(raised.type == "TamExpNoMem" || raised.type == "nothing") << n;
        }
    };
    EXPECT_LT(1, refuse([&] { here.Relation(there); }));
    EXPECT_LT(1, refuse([&] { here.CrossesPolygon(there); }));
    EXPECT_LT(1, refuse([&] { here.Intersections(there); }));
    EXPECT_LT(1, refuse([&] { here.WithIntersections(there); }));
}

}  // namespace
}  // namespace TamLib
