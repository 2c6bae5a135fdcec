// The Booleans against GEOS, and the laws they keep, on thousands of pairs of rings in general
// position: no vertex within 2 centimetres of the other ring, no two crossings as near.
#include <gtest/gtest.h>

#include <cmath>

#include "tests/GeomStructs/GeosShape.h"
#include "tests/GeomStructs/PlainBooleans.h"
#include "tests/GeomStructs/SeededLines.h"
#include "tests/GeomStructs/TextLines.h"

namespace TamLib {
namespace {

constexpr Boolean kAll[] = {Boolean::unite, Boolean::subtract, Boolean::intersect};

struct Pair {
    PolyLine here, there;

    bool IsGeneral(const Geos& geos) const {
        return IsClear(geos, here, there) && IsClear(geos, there, here);
    }

  private:
    static bool IsClear(const Geos& geos, const PolyLine& ring, const PolyLine& other) {
        const GeosPolygon polygon(geos, other);
        for (const Point3d& vertex : ring)
            if (polygon.DistanceToBoundary(vertex) < 0.02) return false;
        const PolyLine noded = ring.WithIntersections(other);
        for (std::uint32_t i = 0; i + 1 < noded.count; ++i) {
            const Line piece(noded.data[i], noded.data[i + 1]);
            if (polygon.DistanceToBoundary(piece.MidPoint()) < 0.001) return false;
            if (piece.Length2d() < 0.02 && piece.Length2d() > 0.0) return false;
        }
        return true;
    }
};

// Calls `check(pair, base)` for that many pairs, whose rings overlap for the most part.
template <class Check>
void ForPairs(unsigned seed, int pairs, const Point3d& base, const Check& check) {
    const Geos geos;
    SeededLines random(seed);
    int crossing = 0;
    for (int i = 0; i < pairs;) {
        const Point3d aside(random.Real(-60, 60), random.Real(-60, 60), 0);
        Pair pair{random.Ring(base, 100), random.Ring(base + aside, 100)};
        if (random.Chance(2)) pair.here = random.Roughened(pair.here);
        if (random.Chance(2)) pair.there.Reverse();
        Pair local = pair;
        const Point3d back(-base.x, -base.y, -base.z);
        local.here.Translate(back);
        local.there.Translate(back);
        if (!local.IsGeneral(geos)) continue;
        ++i;
        crossing += pair.here.Crosses(pair.there.GetSegment(0)) == 1 ? 1 : 0;
        check(pair, back, i);
    }
    EXPECT_GT(crossing, pairs / 20);
}

PolyArray Local(const PolyArray& rings, const Point3d& back) {
    PolyArray local(rings);
    for (PolyLine* ring : local) ring->Translate(back);
    return local;
}
PolyLine Local(const PolyLine& ring, const Point3d& back) {
    PolyLine local(ring);
    local.Translate(back);
    return local;
}

GeosShape OfGeos(const Geos& geos, Boolean operation, const PolyLine& here, const PolyLine& there) {
    const GeosShape a = GeosShape::Polygon(geos, here), b = GeosShape::Polygon(geos, there);
    if (operation == Boolean::unite) return a.Union(geos, b);
    if (operation == Boolean::subtract) return a.Difference(geos, b);
    return a.Intersection(geos, b);
}

const Point3d kPlaces[] = {{}, {25496000, 6672000, 12}};

TEST(PolyLineBooleansLaws, CoverWhatThoseOfGeosCover) {
    const Geos geos;
    for (const Point3d& base : kPlaces) {
        std::size_t rings = 0;
        ForPairs(131, 500, base, [&](const Pair& pair, const Point3d& back, int i) {
            const PolyLine here = Local(pair.here, back), there = Local(pair.there, back);
            for (const Boolean operation : kAll) {
                const PolyArray result = Combined(operation, pair.here, pair.there);
                for (const PolyLine* ring : result) ASSERT_TRUE(ring->IsClosed()) << i;
                const GeosShape ours = GeosShape::OddlyInside(geos, Local(result, back));
                const GeosShape theirs = OfGeos(geos, operation, here, there);
                ASSERT_EQ(theirs.Rings(), result.count) << i;
                ASSERT_LT(ours.SymDifference(geos, theirs).Area(), 1e-5) << i;
                rings += result.count;
            }
        });
        EXPECT_GT(rings, 3000u);
    }
}

// The same edges in either direction, ends within a millionth.
bool HaveSameEdges(const PolyArray& a, const PolyArray& b) {
    const LineArray edges = a.ToLines(), others = b.ToLines();
    if (edges.count != others.count) return false;
    const auto isNear = [](const Point3d& p, const Point3d& q) { return Distance2d(p, q) < 1e-6; };
    std::vector<bool> taken(others.count);
    for (const Line& edge : edges) {
        std::uint32_t k = 0;
        for (; k < others.count; ++k) {
            const Line& other = others.data[k];
            const bool same =
                (isNear(edge.Start(), other.Start()) && isNear(edge.End(), other.End())) ||
                (isNear(edge.Start(), other.End()) && isNear(edge.End(), other.Start()));
            if (same && !taken[k]) break;
        }
        if (k == others.count) return false;
        taken[k] = true;
    }
    return true;
}

TEST(PolyLineBooleansLaws, UnionAndIntersectionDoNotDependOnTheOrder) {
    for (const Point3d& base : kPlaces) {
        ForPairs(132, 400, base, [&](const Pair& pair, const Point3d& /*back*/, int i) {
            ASSERT_TRUE(HaveSameEdges(pair.here.Union(pair.there), pair.there.Union(pair.here)))
                << i;
            ASSERT_TRUE(HaveSameEdges(pair.here.Intersection(pair.there),
                                      pair.there.Intersection(pair.here)))
                << i;
        });
    }
}

TEST(PolyLineBooleansLaws, TurningAnOperandRoundChangesNoEdge) {
    ForPairs(133, 400, {}, [&](const Pair& pair, const Point3d& /*back*/, int i) {
        PolyLine turned(pair.there);
        turned.Reverse();
        for (const Boolean operation : kAll)
            ASSERT_TRUE(HaveSameEdges(Combined(operation, pair.here, pair.there),
                                      Combined(operation, pair.here, turned)))
                << i;
    });
}

TEST(PolyLineBooleansLaws, AreasBalance) {
    const Geos geos;
    for (const Point3d& base : kPlaces) {
        ForPairs(134, 400, base, [&](const Pair& pair, const Point3d& back, int i) {
            const auto area = [&](const PolyArray& rings) {
                return GeosShape::OddlyInside(geos, Local(rings, back)).Area();
            };
            const double here = Local(pair.here, back).Area();
            const double there = Local(pair.there, back).Area();
            const double both = area(pair.here.Intersection(pair.there));
            ASSERT_NEAR(here, area(pair.here.Difference(pair.there)) + both, 1e-4) << i;
            ASSERT_NEAR(there, area(pair.there.Difference(pair.here)) + both, 1e-4) << i;
            ASSERT_NEAR(here + there, area(pair.here.Union(pair.there)) + both, 1e-4) << i;
        });
    }
}

// Where results differ from those of GEOS on purpose.
TEST(PolyLineBooleansLaws, SharedEdgesAreNotDissolvedAsThoseOfGeosAre) {
    const Geos geos;
    const PolyLine square = FromText("(0 0, 0 10, 10 10, 10 0)");
    const PolyLine beside = FromText("(10 0, 20 0, 20 10, 10 10)");
    EXPECT_EQ(1u, OfGeos(geos, Boolean::unite, square, beside).Rings());
    EXPECT_EQ(200.0, OfGeos(geos, Boolean::unite, square, beside).Area());
    const PolyArray ours = square.Union(beside);
    ASSERT_EQ(1u, ours.count);
    EXPECT_FALSE(ours[0]->IsClosed());
    EXPECT_EQ(70.0, ours[0]->Length());  // all seven edges
    // GEOS takes a ring from itself without a rest.
    EXPECT_EQ(0u, OfGeos(geos, Boolean::subtract, square, square).Rings());
    EXPECT_EQ(1u, square.Difference(square).count);
}

}  // namespace
}  // namespace TamLib
