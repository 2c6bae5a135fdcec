// What holds for all point sets and line arrays.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "GeomEnts/Box.h"
#include "GeomStructs/LineArray.h"
#include "GeomStructs/PointData.h"
#include "GeomStructs/PolyArray.h"

namespace TamLib {
namespace {

Point3d AnyPoint(bool onMap, int extent) {
    const auto coordinate = [extent] {
        return *rc::gen::inRange(-1000 * extent, 1000 * extent + 1) / 1000.0;
    };
    Point3d p(coordinate(), coordinate(), coordinate());
    if (onMap) p += Point3d(25e6, 7e6, 0);
    return p;
}

Point3d GridPoint(int extent) {
    const auto coordinate = [extent] { return *rc::gen::inRange(-extent, extent + 1) * 1.0; };
    return {coordinate(), coordinate(), coordinate()};
}

PointData AnySet(bool onMap) {
    const int n = *rc::gen::inRange(2, 40);
    const bool grid = *rc::gen::arbitrary<bool>();
    PointData set;
    for (int i = 0; i < n; ++i) set.Append(grid ? GridPoint(3) : AnyPoint(onMap, 50));
    return set;
}

RC_GTEST_PROP(PointSetLaws, SmallestDistanceIsThatOfAllPairs, (bool onMap)) {
    PointData set = AnySet(onMap);
    double smallest = 1e300;
    for (std::uint32_t i = 0; i < set.count; ++i)
        for (std::uint32_t j = i + 1; j < set.count; ++j)
            smallest = std::min(smallest, Distance(set.data[i], set.data[j]));
    int i = -1, j = -1;
    RC_ASSERT(set.MinDist(&i, &j) == smallest);
    RC_ASSERT(i < j);
    RC_ASSERT(Distance(set[i], set[j]) == smallest);
}

RC_GTEST_PROP(PointSetLaws, NeighboursAreTheNearestOfAll, (bool onMap)) {
    PointData set = AnySet(onMap);
    set.Sort();
    const Point3d from = AnyPoint(onMap, 60);
    const int n = *rc::gen::inRange(1, 45);
    Array<Point3d> points;
    Array<double> squares;
    set.NearestPoints(n, from, points, squares);
    std::vector<double> all, found(squares.begin(), squares.end());
    for (const Point3d& p : set) all.push_back(SquaredDistance(from, p));
    std::sort(all.begin(), all.end());
    std::sort(found.begin(), found.end());
    all.resize(std::min(all.size(), static_cast<std::size_t>(n)));
    RC_ASSERT(found == all);
}

RC_GTEST_PROP(PointSetLaws, HeightsLieBetweenThoseOfTheNeighbours, (bool onMap)) {
    PointData set = AnySet(onMap);
    set.Sort();
    const double height = set.InterpolateZ(AnyPoint(onMap, 60), 100);
    double low = 1e300, high = -1e300;
    for (const Point3d& p : set) {
        low = std::min(low, p.z);
        high = std::max(high, p.z);
    }
    RC_ASSERT(height >= low - 1e-9);
    RC_ASSERT(height <= high + 1e-9);
}

RC_GTEST_PROP(PointSetLaws, HullIsConvexAndItsOwnHull, (bool onMap)) {
    const PointData set = AnySet(onMap);
    PolyLine hull, again;
    set.ConvexHull(&hull, -1.0);
    RC_ASSERT(hull.count < 2 || hull.IsClosed());
    for (std::uint32_t i = 0; i + 2 < hull.count && hull.count > 3; ++i)
        RC_ASSERT(Line(hull.data[i], hull.data[i + 1]).IsRightOf(hull.data[i + 2]));
    PointData vertices;
    for (const Point3d& p : hull) vertices.Append(p);
    vertices.ConvexHull(&again, -1.0);
    RC_ASSERT(again.count == hull.count);
    for (std::uint32_t i = 0; i < hull.count; ++i) {
        RC_ASSERT(again.data[i].x == hull.data[i].x);
        RC_ASSERT(again.data[i].y == hull.data[i].y);
    }
}

RC_GTEST_PROP(PointSetLaws, TheDiameterIsNoSmallerThanAnyPlanDistance, ()) {
    const PointData set = AnySet(false);
    const double diameter = set.Diameter();
    for (const Point3d& p : set)
        for (const Point3d& q : set) RC_ASSERT(Distance2d(p, q) <= diameter + 0.0002);
}

LineArray AnyLines(bool grid, bool onMap) {
    const int n = *rc::gen::inRange(1, 25);
    LineArray lines;
    for (int i = 0; i < n; ++i) {
        lines.Append(grid ? Line(GridPoint(3), GridPoint(3))
                          : Line(AnyPoint(onMap, 50), AnyPoint(onMap, 50)));
    }
    return lines;
}

RC_GTEST_PROP(LineArrayLaws, TidyingTwiceIsTidyingOnce, (bool planar, bool grid)) {
    LineArray once = AnyLines(grid, false);
    once.Tidy(true, planar, true);
    LineArray twice(once);
    twice.Tidy(true, planar, true);
    RC_ASSERT(once.count == twice.count);
    for (std::uint32_t i = 0; i < once.count; ++i) {
        RC_ASSERT(Line::Compare(once.data + i, twice.data + i) == 0);
        if (i > 0) {
            const auto compare = planar ? &Line::Compare2d : &Line::Compare;
            RC_ASSERT(compare(once.data + i - 1, once.data + i) < 0);
        }
    }
}

RC_GTEST_PROP(LineArrayLaws, TidyingKeepsOneOfEachLine, ()) {
    const LineArray lines = AnyLines(true, false);
    LineArray tidy(lines);
    tidy.Tidy(true, true, true);
    for (const Line& line : lines) {
        if (Equals2d(line.Start(), line.End())) continue;
        int found = 0;
        for (const Line& kept : tidy) {
            found += (Equals2d(line.Start(), kept.Start()) && Equals2d(line.End(), kept.End())) ||
                     (Equals2d(line.Start(), kept.End()) && Equals2d(line.End(), kept.Start()));
        }
        RC_ASSERT(found == 1);
    }
}

RC_GTEST_PROP(LineArrayLaws, SplittingKeepsTheLengthAndLeavesNoCrossing, (bool onMap)) {
    LineArray lines = AnyLines(false, onMap);
    lines.Tidy(true, true, true);
    double before = 0, after = 0;
    for (const Line& line : lines) before += line.Length2d();
    const Box extent = [&] {
        Box box;
        for (const Line& line : lines) box.Add(line.GetBox());
        return box;
    }();
    PolyArray crossings;
    lines.SplitAtCrossings(true, &crossings);
    for (const Line& line : lines) {
        after += line.Length2d();
        RC_ASSERT(extent.Contains2d(line.Start()));
        RC_ASSERT(extent.Contains2d(line.End()));
    }
    RC_ASSERT(std::fabs(before - after) < 1e-3);
    std::uint32_t cuts = 0;
    for (const PolyLine* one : crossings) cuts += one->count;
    RC_ASSERT(crossings.count <= cuts);
    for (std::uint32_t i = 0; i < lines.count; ++i) {
        for (std::uint32_t j = i + 1; j < lines.count; ++j) {
            const Line &a = lines.data[i], &b = lines.data[j];
            Point3d c;
            if (a.Intersect(b, c, true) != 1) continue;
            const double nearest = std::min({Distance2d(c, a.Start()), Distance2d(c, a.End()),
                                             Distance2d(c, b.Start()), Distance2d(c, b.End())});
            RC_ASSERT(nearest < 0.001);
        }
    }
}

}  // namespace
}  // namespace TamLib
