// Areas, centroids, inside tests and crossings agree with GEOS on thousands of stars, combs and
// spirals, with repeated and collinear vertices, near the origin and in map coordinates.
#include <gtest/gtest.h>

#include <cmath>

#include "GeomStructs/SegmentIndex.h"
#include "tests/GeomStructs/Geos.h"
#include "tests/GeomStructs/RandomLines.h"

namespace TamLib {
namespace {

// Coordinates rounded to whole numbers, on which areas and sides are exact.
PolyLine Rounded(const PolyLine& ring) {
    PolyLine whole(static_cast<int>(ring.count));
    for (const Point3d& p : ring) whole.Append({std::round(p.x), std::round(p.y), 0});
    return whole;
}

TEST(PolyLineGeosLaws, AreasOfWholeNumbersAreEqual) {
    const Geos geos;
    RandomLines random(71);
    for (int i = 0; i < 2000; ++i) {
        const PolyLine ring = Rounded(random.Roughened(random.Ring({}, 1000)));
        const GeosPolygon polygon(geos, ring);
        ASSERT_EQ(polygon.Area(), ring.Area()) << i;
    }
}

TEST(PolyLineGeosLaws, AreasAndCentroidsAgree) {
    const Geos geos;
    RandomLines random(72);
    for (const Point3d& base : {Point3d(), Point3d(25e6, 7e6, 0)}) {
        // The area is summed from products of the coordinates as they are.
        const double rounding = 1e-15 * (1 + base.x * base.y);
        for (int i = 0; i < 1500; ++i) {
            PolyLine ring = random.Roughened(random.Ring(base, 1000));
            if (random.Chance(2)) ring.Reverse();
            const GeosPolygon polygon(geos, ring);
            const double area = polygon.Area();
            ASSERT_NEAR(area, ring.Area(), 1e-9 * area + rounding * ring.count) << i;
            ASSERT_EQ(polygon.IsCounterClockwise(), !ring.IsClockwise()) << i;
            Point3d centroid;
            ASSERT_TRUE(ring.GetCentroid(&centroid));
            ASSERT_LT(Distance2d(polygon.Centroid(), centroid), 1e-6) << i;
        }
    }
}

TEST(PolyLineGeosLaws, SidesAgreeAwayFromTheBoundary) {
    const Geos geos;
    RandomLines random(73);
    int inside = 0, outside = 0;
    for (const Point3d& base : {Point3d(), Point3d(25e6, 7e6, 0)}) {
        for (int i = 0; i < 600; ++i) {
            const PolyLine ring = random.Roughened(random.Ring(base, 1000));
            const GeosPolygon polygon(geos, ring);
            const SegmentIndex index(ring);
            for (int k = 0; k < 40; ++k) {
                const Point3d p = random.PointAbout(ring, 1000);
                if (polygon.DistanceToBoundary(p) < 0.001) continue;
                const int expected = polygon.Contains(p) ? 1 : 0;
                ASSERT_EQ(expected, ring.Inside(p, false, true)) << i;
                ASSERT_EQ(expected, index.Inside(p, true)) << i;
                ++(expected == 1 ? inside : outside);
            }
        }
    }
    EXPECT_GT(inside, 2000);
    EXPECT_GT(outside, 2000);
}

TEST(PolyLineGeosLaws, OnWholeNumbersSidesAndTouchesAreExact) {
    const Geos geos;
    RandomLines random(74);
    int on = 0;
    for (int i = 0; i < 1500; ++i) {
        const PolyLine ring = Rounded(random.Roughened(random.Ring({}, 20)));
        const GeosPolygon polygon(geos, ring);
        for (int k = 0; k < 30; ++k) {
            const Point3d p(random.Whole(-20, 30), random.Whole(-20, 30), 0);
            const bool touches = polygon.DistanceToBoundary(p) == 0.0;
            const int expected = touches ? 2 : polygon.Contains(p) ? 1 : 0;
            ASSERT_EQ(expected, ring.Inside(p, false, true)) << i << " " << p.x << " " << p.y;
            on += touches ? 1 : 0;
        }
    }
    EXPECT_GT(on, 2000);
}

// A simple ring with corners on a grid of whole numbers.
PolyLine OnGrid(const Geos& geos, RandomLines& random, const Point3d& base) {
    for (;;) {
        PolyLine ring;
        const int corners = random.Whole(3, 7);
        for (int i = 0; i < corners; ++i)
            ring.Append(base + Point3d(random.Whole(0, 5), random.Whole(0, 5), 0));
        ring.Close();
        if (ring.count > 3 && GeosPolygon(geos, ring).IsSimple()) return ring;
    }
}

// On a grid rings share corners, sides and parts of sides all the time.
TEST(PolyLineGeosLaws, CrossingsAndTouchesOnAGridAreExact) {
    const Geos geos;
    RandomLines random(76);
    int told[3] = {};
    for (const Point3d& base : {Point3d(), Point3d(25e6, 7e6, 0)}) {
        for (int i = 0; i < 6000; ++i) {
            PolyLine here = OnGrid(geos, random, base);
            const PolyLine there =
                OnGrid(geos, random, base + Point3d(random.Whole(0, 3), random.Whole(-2, 2), 0));
            if (random.Chance(2)) here.Reverse();
            const int expected = GeosPolygon(geos, here).Crosses(GeosPolygon(geos, there));
            ASSERT_EQ(expected, here.CrossesPolygon(there)) << i;
            ASSERT_EQ(expected, there.CrossesPolygon(here)) << i;
            ++told[expected];
        }
    }
    for (const int times : told) EXPECT_GT(times, 1000);
}

// Beside the boundary: a touch is told only within 0.0001, and always where the told bands of the
// cross product (0.01) and of the distance hold.
TEST(PolyLineGeosLaws, TouchesLieWithinTheBand) {
    const Geos geos;
    RandomLines random(75);
    int touched = 0, beside = 0;
    for (int i = 0; i < 1000; ++i) {
        const PolyLine ring = random.Star(random.Whole(3, 40), {}, 100);
        const GeosPolygon polygon(geos, ring);
        for (int k = 0; k < 30; ++k) {
            const Line side = ring.GetSegment(random.Whole(0, static_cast<int>(ring.count) - 2));
            const double off = random.Real(-3e-4, 3e-4);
            const Point3d across = Point3d(-side.Direction().y, side.Direction().x, 0).Unit();
            const Point3d at = side.PointAt(random.Real(0.01, 0.99));
            const Point3d p = at + Point3d(across.x * off, across.y * off, 0);
            const double distance = polygon.DistanceToBoundary(p);
            const int code = ring.Inside(p, false, true);
            if (code == 2) {
                ASSERT_LE(distance, 0.0001 + 1e-12) << i;
                ++touched;
            } else {
                ASSERT_EQ(polygon.Contains(p) ? 1 : 0, code) << i;
                ++beside;
            }
            const double band = std::min(0.0001, 0.01 / side.Length2d());
            const bool inSpan =
                (side.y1 < p.y && p.y < side.y2) || (side.y2 < p.y && p.y < side.y1);
            if (inSpan && std::fabs(off) < band * 0.999) {
                ASSERT_EQ(2, code) << i;
            }
        }
    }
    EXPECT_GT(touched, 5000);
    EXPECT_GT(beside, 5000);
}

}  // namespace
}  // namespace TamLib
