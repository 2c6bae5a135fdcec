// The loops that curves make, and the bodies of the regions within them.
#include "host/database/RegionLoops.h"

#include <dbents.h>
#include <dbpl.h>
#include <dbregion.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "host/database/Bodies.h"
#include "tests/host/support/LedgerListener.h"

namespace host::database {
namespace {

std::string text(const std::vector<RegionLoop>& loops) {
    std::ostringstream result;
    for (const RegionLoop& loop : loops) {
        if (loop.corners.empty()) result << "disc " << loop.center.x << ' ' << loop.radius;
        for (const AcGePoint3d& p : loop.corners) result << p.x << ' ' << p.y << ' ' << p.z << ", ";
        result << "; ";
    }
    return result.str();
}

std::unique_ptr<AcDbLine> line(double x1, double y1, double x2, double y2) {
    return std::make_unique<AcDbLine>(AcGePoint3d(x1, y1, 0), AcGePoint3d(x2, y2, 0));
}
std::unique_ptr<AcDb3dPolyline> chain(const std::vector<AcGePoint3d>& points, bool closed) {
    AcGePoint3dArray vertices;
    for (const AcGePoint3d& p : points) vertices.append(p);
    return std::make_unique<AcDb3dPolyline>(AcDb::k3dSimplePoly, vertices, closed);
}

TEST(RegionLoops, OfCirclesAndClosedPolylines) {
    const AcDbCircle circle(AcGePoint3d(7, 0, 0), AcGeVector3d(0, 0, 1), 2);
    const AcDbCircle none(AcGePoint3d(7, 0, 0), AcGeVector3d(0, 0, 1), 0);
    EXPECT_EQ("disc 7 2; ", text(regionLoops({&circle, &none})));
    const auto square = chain({{0, 0, 5}, {1, 0, 5}, {1, 1, 5}, {0, 1, 5}}, true);
    EXPECT_EQ("0 0 5, 1 0 5, 1 1 5, 0 1 5, ; ", text(regionLoops({square.get()})));
    // The first vertex may be repeated.
    const auto repeated = chain({{0, 0, 5}, {1, 0, 5}, {1, 1, 5}, {0, 0, 5}}, true);
    EXPECT_EQ("0 0 5, 1 0 5, 1 1 5, ; ", text(regionLoops({repeated.get()})));
}

TEST(RegionLoops, OfLinesInAnyOrderAndDirection) {
    const auto a = line(0, 0, 4, 0), b = line(4, 3, 4, 0), c = line(4, 3, 0, 3),
               d = line(0, 0, 0, 3);
    std::vector<const AcDbCurve*> sides{a.get(), b.get(), c.get(), d.get()};
    std::sort(sides.begin(), sides.end());
    do {
        const auto loops = regionLoops(sides);
        ASSERT_EQ(1u, loops.size());
        EXPECT_EQ(4u, loops[0].corners.size());
    } while (std::next_permutation(sides.begin(), sides.end()));
    EXPECT_TRUE(regionLoops({a.get(), b.get(), c.get()}).empty());
    const auto rest = chain({{4, 0, 0}, {4, 3, 0}, {0, 3, 0}, {0, 0, 0}}, false);
    EXPECT_EQ(1u, regionLoops({a.get(), rest.get()}).size());
}

TEST(RegionLoops, OnlyInOnePlaneAndWithAnArea) {
    const auto bent = chain({{0, 0, 0}, {1, 0, 0}, {1, 1, 1}, {0, 1, 0}}, true);
    const auto flat = chain({{0, 0, 0}, {1, 0, 0}, {2, 0, 0}}, true);
    EXPECT_TRUE(regionLoops({bent.get(), flat.get()}).empty());
    const auto upright = chain({{0, 0, 0}, {1, 1, 0}, {1, 1, 1}, {0, 0, 1}}, true);
    const auto loops = regionLoops({upright.get()});
    ASSERT_EQ(1u, loops.size());
    EXPECT_NEAR(0.0, loops[0].normal.z, 1e-12);
}

TEST(RegionLoops, ArcsInAPolylineArePassedOver) {
    AcDbPolyline polyline;
    polyline.addVertexAt(0, AcGePoint2d(0, 0), 0.5);
    polyline.addVertexAt(1, AcGePoint2d(1, 0));
    polyline.addVertexAt(2, AcGePoint2d(1, 1));
    polyline.setClosed(true);
    EXPECT_TRUE(regionLoops({&polyline}).empty());
    polyline.setBulgeAt(0, 0.0);
    EXPECT_EQ(1u, regionLoops({&polyline}).size());
}

// --- Tolerances, near the origin and far from it.

// Where a figure's corner (0,0) stands.
const AcGeVector3d kPlaces[] = {{0, 0, 0}, {25496000, 6672000, 12}};

std::size_t countOf(const std::vector<std::vector<AcGePoint3d>>& chains, bool closed,
                    const AcGeVector3d& place) {
    std::vector<std::unique_ptr<AcDb3dPolyline>> owned;
    std::vector<const AcDbCurve*> curves;
    for (std::vector<AcGePoint3d> points : chains) {
        for (AcGePoint3d& point : points) point = point + place;
        owned.push_back(chain(points, closed));
        curves.push_back(owned.back().get());
    }
    return regionLoops(curves).size();
}

TEST(RegionLoops, EndsMeetWithinAMillionthOfTheSize) {
    for (const AcGeVector3d& place : kPlaces)
        for (const double size : {1000.0, 10000.0}) {
            const auto found = [&](double gap) {
                // Two chains, as large as the half of a square's diagonal and its side.
                return countOf({{{0, 0, 0}, {size, 0, 0}, {size, size, 0}},
                                {{size, size + gap * size, 0}, {0, size, 0}, {0, 0, 0}}},
                               false, place);
            };
            const double diagonal = 1.4142135623730951;
            EXPECT_EQ(1u, found(0.99e-6 * diagonal)) << size;
            EXPECT_EQ(0u, found(1.01e-6 * diagonal)) << size;
        }
}

TEST(RegionLoops, ARingWhoseEndsMeetLikewiseIsWhole) {
    for (const AcGeVector3d& place : kPlaces) {
        const auto found = [&](double gap) {
            return countOf({{{0, 0, 0}, {1000, 0, 0}, {0, 1000, 0}, {0, gap, 0}}}, false, place);
        };
        EXPECT_EQ(1u, found(0.99e-3));
        EXPECT_EQ(0u, found(1.01e-3));
    }
}

TEST(RegionLoops, TheAreaIsToBeAboveAMillionthOfTheSizeSquared) {
    for (const AcGeVector3d& place : kPlaces) {
        const auto found = [&](double height) {
            return countOf({{{0, 0, 0}, {1000, 0, 0}, {500, height, 0}}}, true, place);
        };
        EXPECT_EQ(0u, found(0.99e-3));
        EXPECT_EQ(1u, found(1.01e-3));
    }
}

TEST(RegionLoops, CornersLieWithinAMillionthOfTheSizeOfThePlane) {
    for (const AcGeVector3d& place : kPlaces) {
        const auto found = [&](double height) {
            // The plane halves the height of the corner; the size is the diagonal.
            return countOf({{{0, 0, 0}, {1000, 0, 0}, {1000, 1000, height}, {0, 1000, 0}}}, true,
                           place);
        };
        EXPECT_EQ(1u, found(2.0 * 1.40e-3));
        EXPECT_EQ(0u, found(2.0 * 1.43e-3));
    }
}

TEST(RegionLoops, CornersOffThePlaneAreMovedIntoItAndAllOthersKeepEveryDigit) {
    for (const AcGeVector3d& place : kPlaces) {
        const std::vector<AcGePoint3d> corners{
            {0.1, 0.2, 0.3}, {1000.1, 0.7, 0.3}, {1000.3, 1000.9, 0.3009}, {0.5, 1000.1, 0.3}};
        for (const double part : {1.0, 1e-3}) {
            std::vector<AcGePoint3d> ring = corners;
            ring[2].z = 0.3 + 0.0009 * part;
            for (AcGePoint3d& corner : ring) corner = corner + place;
            const auto polyline = chain(ring, true);
            const auto loops = regionLoops({polyline.get()});
            ASSERT_EQ(1u, loops.size());
            ASSERT_EQ(4u, loops[0].corners.size());
            bool moved = false;
            for (std::size_t i = 0; i < 4; ++i) {
                const AcGePoint3d& corner = loops[0].corners[i];
                EXPECT_LT(std::fabs((corner - ring[0]).dotProduct(loops[0].normal)), 1.001e-6);
                EXPECT_LT(corner.distanceTo(ring[i]), 0.0009);
                moved = moved || corner.distanceTo(ring[i]) > 0.0;
            }
            EXPECT_EQ(part == 1.0, moved);  // half of 9e-7 is near enough
        }
    }
}

TEST(RegionLoops, CornersNearerThanTheModellerTellsApartAreDropped) {
    for (const double off : {0.99e-6, 1.01e-6}) {
        const std::size_t more = off > 1e-6 ? 1 : 0;
        const auto corners = [](const std::vector<AcGePoint3d>& points) {
            const auto polyline = chain(points, true);
            const auto loops = regionLoops({polyline.get()});
            return loops.empty() ? 0 : loops[0].corners.size();
        };
        EXPECT_EQ(3 + more, corners({{0, 0, 0}, {off, 0, 0}, {4, 0, 0}, {0, 3, 0}}));
        EXPECT_EQ(3 + more, corners({{0, 0, 0}, {4, 0, 0}, {0, 3, 0}, {0, off, 0}}));
        EXPECT_EQ(3 + more, corners({{0, 0, 0}, {4, 0, 0}, {0, 3, 0}, {off, 3, 0}}));
        EXPECT_EQ(0 + 3 * more, corners({{0, 0, 0}, {off, 0, 0}, {0, 3e-4, 0}}));
    }
    // Each to the one that is kept before it, not to the one dropped.
    const auto polyline =
        chain({{0, 0, 0}, {0.6e-6, 0, 0}, {1.2e-6, 0, 0}, {4, 0, 0}, {0, 3, 0}}, true);
    EXPECT_EQ("0 0 0, 1.2e-06 0 0, 4 0 0, 0 3 0, ; ", text(regionLoops({polyline.get()})));
}

// A step straight up is nothing in the plane.
TEST(RegionLoops, CornersThatFallTogetherInThePlaneAreOne) {
    const auto polyline =
        chain({{0, 0, 0}, {1000, 0, 0}, {1000, 0, 0.0005}, {1000, 1000, 0}, {0, 1000, 0}}, true);
    const auto loops = regionLoops({polyline.get()});
    ASSERT_EQ(1u, loops.size());
    EXPECT_EQ(4u, loops[0].corners.size());
}

// --- Where more than two ends meet.

TEST(RegionLoops, ARingWithATailOrADoubledSideIsFoundInSomeOrdersOnly) {
    const auto a = line(0, 0, 4, 0), b = line(4, 0, 0, 3), c = line(0, 3, 0, 0);
    const auto tail = line(4, 0, 9, 0), again = line(4, 0, 0, 0);
    const auto foundWith = [&](const AcDbLine& more) {
        std::vector<const AcDbCurve*> lines{a.get(), b.get(), c.get(), &more};
        std::sort(lines.begin(), lines.end());
        std::size_t found = 0;
        do found += regionLoops(lines).size();
        while (std::next_permutation(lines.begin(), lines.end()));
        return found;
    };
    // Of the 24 orders.
    EXPECT_EQ(8u, foundWith(*tail));
    EXPECT_EQ(12u, foundWith(*again));
}

TEST(RegionText, OfATriangle) {
    RegionLoop loop;
    loop.corners = {{0, 0, 0}, {4, 0, 0}, {0, 3, 0}};
    const std::vector<std::string> expected{
        "400 0 1 0 ",
        "7 orlinth 4 4.00 24 Sat Jan  1 00:00:00 2000 ",
        "1 9.9999999999999995e-007 1e-010 ",
        "body $-1 $1 $-1 $-1 #",
        "lump $-1 $-1 $2 $0 #",
        "shell $-1 $-1 $-1 $3 $-1 $1 #",
        "face $-1 $-1 $4 $2 $-1 $5 forward double out #",
        "loop $-1 $-1 $6 $3 #",
        "plane-surface $-1 0 0 0 0 0 1 1 0 0 forward_v I I I I #",
        "coedge $-1 $7 $8 $-1 $9 forward $4 $-1 #",
        "coedge $-1 $8 $6 $-1 $10 forward $4 $-1 #",
        "coedge $-1 $6 $7 $-1 $11 forward $4 $-1 #",
        "edge $-1 $12 $13 $6 $15 forward #",
        "edge $-1 $13 $14 $7 $16 forward #",
        "edge $-1 $14 $12 $8 $17 forward #",
        "vertex $-1 $9 $18 #",
        "vertex $-1 $10 $19 #",
        "vertex $-1 $11 $20 #",
        "straight-curve $-1 0 0 0 1 0 0 I I #",
        "straight-curve $-1 4 0 0 -0.8 0.6 0 I I #",
        "straight-curve $-1 0 3 0 0 -1 0 I I #",
        "point $-1 0 0 0 #",
        "point $-1 4 0 0 #",
        "point $-1 0 3 0 #",
        "End-of-ACIS-data "};
    EXPECT_EQ(expected, bodyText(loop));
}

TEST(RegionText, OfADiscHasOneEdgeThatEndsWhereItBegins) {
    RegionLoop loop;
    loop.center = {1, 2, 3};
    loop.radius = 5;
    const std::vector<std::string> body = bodyText(loop);
    ASSERT_EQ(3u + 6u + 5u + 1u, body.size());
    EXPECT_EQ("coedge $-1 $6 $6 $-1 $7 forward $4 $-1 #", body[3 + 6]);
    EXPECT_EQ("edge $-1 $8 $8 $6 $9 forward #", body[3 + 7]);
    EXPECT_EQ(0u, body[3 + 9].rfind("ellipse-curve $-1 1 2 3 0 0 1 ", 0));
}

}  // namespace
}  // namespace host::database
