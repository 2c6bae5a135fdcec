// Parallels and bands against the buffers of GEOS.
#include <gtest/gtest.h>

#include <cmath>

#include "tests/GeomStructs/GeosShape.h"
#include "tests/GeomStructs/SeededLines.h"

namespace TamLib {
namespace {

constexpr double kMitreLimit = 25.0;

// A star whose corners are neither sharp nor near one another.
PolyLine MildStar(RandomLines& random, int corners, const Point3d& centre) {
    PolyLine ring(corners + 1);
    const double start = random.Real(0, 6);
    for (int i = 0; i < corners; ++i) {
        const double angle = start + i * 6.283185307179586 / corners;
        const double r = random.Real(60, 100);
        ring.Append(centre + Point3d(r * std::cos(angle), r * std::sin(angle), 0));
    }
    ring.Close();
    return ring;
}

// A line that bends by less than a right angle, eastward, with segments of 10 to 30.
PolyLine MildLine(RandomLines& random, int vertices, const Point3d& start) {
    PolyLine line(vertices);
    Point3d at = start;
    for (int i = 0; i < vertices; ++i) {
        line.Append(at);
        const double heading = random.Real(-0.7, 0.7), step = random.Real(10, 30);
        at += Point3d(step * std::cos(heading), step * std::sin(heading), 0);
    }
    return line;
}

PolyArray OffsetOf(const PolyLine& line, double distance, bool clean) {
    PolyArray result;
    line.Offset(&result, distance, clean);
    return result;
}

double LengthOf(const PolyArray& lines) {
    double length = 0;
    for (const PolyLine* line : lines) length += line->Length2d();
    return length;
}

// Each vertex lies on the boundary that GEOS gives, and the whole is as long.
void ExpectSameOutline(const PolyArray& ours, const GeosShape& outline, int i) {
    for (const PolyLine* line : ours)
        for (const Point3d& vertex : *line) ASSERT_LT(outline.DistanceTo(vertex), 1e-6) << i;
    ASSERT_NEAR(outline.Length(), LengthOf(ours), 1e-6) << i;
}

TEST(PolyLineOffsetLaws, OfRingsIsTheBoundaryOfTheBuffer) {
    const Geos geos;
    SeededLines random(141);
    for (int i = 0; i < 600; ++i) {
        PolyLine ring = MildStar(random, random.Whole(4, 14), {});
        if (random.Chance(2)) ring.Reverse();
        const double distance = random.Real(0.1, 3) * (random.Chance(2) ? 1 : -1);
        const GeosShape buffer = GeosShape::Polygon(geos, ring).Buffer(geos, distance, kMitreLimit);
        for (const bool clean : {false, true}) {
            const PolyArray ours = OffsetOf(ring, distance, clean);
            ASSERT_EQ(buffer.Rings(), ours.count) << i;
            ExpectSameOutline(ours, buffer.Boundary(geos), i);
        }
    }
}

TEST(PolyLineOffsetLaws, OfLinesIsTheParallelOfGeos) {
    const Geos geos;
    SeededLines random(142);
    for (int i = 0; i < 600; ++i) {
        const PolyLine line = MildLine(random, random.Whole(2, 15), {});
        const double distance = random.Real(0.1, 3) * (random.Chance(2) ? 1 : -1);
        // There positive is left.
        const GeosShape parallel =
            GeosShape::Line(geos, line).Parallel(geos, -distance, kMitreLimit);
        for (const bool clean : {false, true})
            ExpectSameOutline(OffsetOf(line, distance, clean), parallel, i);
    }
}

TEST(PolyLineOffsetLaws, ABandIsTheBufferWithFlatEnds) {
    const Geos geos;
    SeededLines random(143);
    for (int i = 0; i < 600; ++i) {
        const PolyLine line = MildLine(random, random.Whole(2, 15), {});
        const double width = random.Real(0.1, 3);
        const GeosShape buffer = GeosShape::Line(geos, line).Buffer(geos, width, kMitreLimit);
        for (const bool clean : {false, true}) {
            PolyArray ours, ribs;
            line.OffsetBand(&ours, width, -1, &ribs, clean);
            ASSERT_EQ(1u, ours.count);
            ExpectSameOutline(ours, buffer.Boundary(geos), i);
            ASSERT_EQ(line.count, ribs.count);
            for (std::uint32_t k = 0; k < line.count; ++k) {
                // Each rib goes through its vertex, from the left side to the right one.
                const Line rib = ribs[static_cast<int>(k)]->GetSegment(0);
                ASSERT_LT(Distance2d(rib.MidPoint(), line.data[k]), 1e-9);
                const Line segment = line.GetSegment(k + 1 < line.count ? static_cast<int>(k)
                                                                        : static_cast<int>(k) - 1);
                ASSERT_EQ(-1, segment.Side(rib.Start(), false));
                ASSERT_EQ(1, segment.Side(rib.End(), false));
            }
        }
    }
}

TEST(PolyLineOffsetLaws, ABandOfARingIsTheBufferOfItsBoundary) {
    const Geos geos;
    SeededLines random(144);
    for (int i = 0; i < 300; ++i) {
        PolyLine ring(30);
        const int corners = random.Whole(5, 12);
        for (int k = 0; k < corners; ++k) {
            const double angle = k * 6.283185307179586 / corners, r = random.Real(85, 100);
            ring.Append({r * std::cos(angle), r * std::sin(angle), 0});
        }
        ring.Close();
        if (random.Chance(2)) ring.Reverse();
        const double width = random.Real(0.1, 3);
        PolyArray ours;
        ring.OffsetBand(&ours, width, width, nullptr, false);
        ASSERT_EQ(2u, ours.count);
        const GeosShape polygon = GeosShape::Polygon(geos, ring);
        const GeosShape outer = polygon.Buffer(geos, width, kMitreLimit);
        const GeosShape inner = polygon.Buffer(geos, -width, kMitreLimit);
        const GeosShape both = outer.Difference(geos, inner);
        ExpectSameOutline(ours, both.Boundary(geos), i);
    }
}

// Inward by more than it is wide, a convex ring leaves nothing, as the buffer does.
TEST(PolyLineOffsetLaws, AUsedUpRingLeavesNothing) {
    const Geos geos;
    SeededLines random(145);
    int left = 0;
    for (int i = 0; i < 400; ++i) {
        PolyLine ring(9);
        const int corners = random.Whole(3, 8);
        for (int k = 0; k < corners; ++k) {
            const double angle = (k + random.Real(-0.2, 0.2)) * 6.283185307179586 / corners;
            ring.Append({50 * std::cos(angle), 50 * std::sin(angle), 0});
        }
        ring.Close();
        if (random.Chance(2)) ring.Reverse();
        for (const double distance : {-120.0, -5.0}) {
            const GeosShape buffer =
                GeosShape::Polygon(geos, ring).Buffer(geos, distance, kMitreLimit);
            const PolyArray ours = OffsetOf(ring, distance, true);
            ASSERT_EQ(buffer.Rings(), ours.count) << i << " " << corners;
            left += static_cast<int>(ours.count);
        }
    }
    EXPECT_EQ(400, left);
}

}  // namespace
}  // namespace TamLib
