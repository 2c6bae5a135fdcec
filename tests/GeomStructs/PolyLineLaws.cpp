// What holds for all polylines and rings, over random input.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cmath>
#include <vector>

#include "GeomStructs/PolyLine.h"
#include "GeomStructs/SegmentIndex.h"
#include "tests/GeomStructs/PlainPolygon.h"

namespace TamLib {
namespace {

// On a grid, so that vertices, directions and heights coincide often; or in millimetres.
Point3d AnyPoint(bool onGrid) {
    const auto coordinate = [onGrid] {
        return onGrid ? *rc::gen::inRange(-5, 6) * 1.0 : *rc::gen::inRange(-50000, 50000) / 1000.0;
    };
    return {coordinate(), coordinate(), coordinate()};
}

PolyLine AnyLine(bool onGrid, int least) {
    const int count = *rc::gen::inRange(least, 14);
    PolyLine line;
    for (int i = 0; i < count; ++i) line.Append(AnyPoint(onGrid));
    return line;
}
PolyLine AnyRing(bool onGrid) {
    PolyLine ring = AnyLine(onGrid, 3);
    ring.Close();
    return ring;
}

RC_GTEST_PROP(PolyLineLaws, ReversingTwiceChangesNothing, (bool onGrid)) {
    const PolyLine line = AnyLine(onGrid, 0);
    PolyLine twice = line;
    twice.Reverse();
    twice.Reverse();
    RC_ASSERT(Difference(line, twice) == "");
}

RC_GTEST_PROP(PolyLineLaws, ReversingTurnsTheSenseAndKeepsArea, (bool onGrid)) {
    const PolyLine ring = AnyRing(onGrid);
    PolyLine back = ring;
    back.Reverse();
    RC_ASSERT(std::fabs(ring.Area() - back.Area()) <= 1e-9 * (1 + ring.Area()));
    if (ring.Area() > 1e-6) RC_ASSERT(ring.IsClockwise() != back.IsClockwise());
}

RC_GTEST_PROP(PolyLineLaws, ReversingDoesNotMoveTheInside, (bool onGrid)) {
    const PolyLine ring = AnyRing(onGrid);
    PolyLine back = ring;
    back.Reverse();
    const Point3d p = AnyPoint(onGrid);
    RC_PRE(ring.MinDistance2d(p) > 0.001);
    RC_ASSERT(ring.Inside(p, false, true) == back.Inside(p, false, true));
}

RC_GTEST_PROP(PolyLineLaws, TwoIsToldOnlyWithinTheToleranceOfTheBoundary, (bool onGrid)) {
    const PolyLine ring = AnyRing(onGrid);
    const Point3d p = AnyPoint(onGrid);
    const int code = ring.Inside(p, false, true);
    if (code == 2) RC_ASSERT(ring.MinDistance2d(p) <= 0.0001);
    if (ring.MinDistance2d(p) == 0.0) RC_ASSERT(code == 2);
    // Farther away the touch test changes nothing.
    if (ring.MinDistance2d(p) > 0.0001) RC_ASSERT(code == ring.Inside(p, false, false));
}

RC_GTEST_PROP(PolyLineLaws, VerticesOfARingLieOnIt, (bool onGrid)) {
    const PolyLine ring = AnyRing(onGrid);
    for (const Point3d& vertex : ring) RC_ASSERT(ring.Inside(vertex, false, true) == 2);
}

RC_GTEST_PROP(PolyLineLaws, TheWindingDoesNotDependOnTheFirstVertex, (bool onGrid)) {
    const PolyLine ring = AnyRing(onGrid);
    const int count = static_cast<int>(ring.count) - 1;
    const int first = *rc::gen::inRange(0, count);
    PolyLine other;
    for (int i = 0; i < count; ++i) other.Append(ring.VertexClosed(first + i));
    other.Close();
    RC_PRE(other.count == ring.count);  // all vertices but the last may be equal
    const Point3d p = AnyPoint(onGrid);
    RC_ASSERT(ring.Inside(p, false, true) == other.Inside(p, false, true));
}

RC_GTEST_PROP(PolyLineLaws, NodingKeepsEveryVertexInOrderAndTheLength, (bool onGrid)) {
    const PolyLine line = AnyLine(onGrid, 2), other = AnyLine(onGrid, 2);
    Array<int> added;
    const PolyLine noded = line.WithIntersections(other, &added);
    std::uint32_t vertex = 0;
    for (std::uint32_t i = 0; i < noded.count; ++i) {
        if (vertex < line.count && SameBits(noded.data[i], line.data[vertex])) ++vertex;
    }
    RC_ASSERT(vertex == line.count);
    RC_ASSERT(noded.count == line.count + added.count);
    for (const int i : added) RC_ASSERT(line.MinDistance2d(noded[i]) < 1e-3 || onGrid);
}

RC_GTEST_PROP(PolyLineLaws, CleaningTwiceIsCleaningOnce, (bool onGrid)) {
    PolyLine once = AnyLine(onGrid, 0);
    const double tolerance = *rc::gen::inRange(0, 4) * 1.0;
    once.RemoveNearDuplicates(tolerance);
    PolyLine twice = once;
    twice.RemoveNearDuplicates(tolerance);
    RC_ASSERT(Difference(once, twice) == "");
}

RC_GTEST_PROP(PolyLineLaws, ResampledPointsLieOnTheLine, (bool keepVertices)) {
    const PolyLine line = AnyLine(false, 2);
    const double step = *rc::gen::inRange(1, 2000) / 100.0;
    PolyLine points;
    line.Resample(&points, step, keepVertices);
    for (const Point3d& p : points) RC_ASSERT(line.MinDistance2d(p) < 1e-9);
    for (std::uint32_t i = 0; i + 1 < points.count; ++i)
        RC_ASSERT(Distance(points.data[i], points.data[i + 1]) < step + 1e-9);
    if (keepVertices) {
        RC_ASSERT(std::fabs(points.Length() - line.Length()) < 1e-9 * (1 + line.Length()));
        for (const Point3d& vertex : line) RC_ASSERT(FindPlainly(points, vertex) >= 0);
    }
}

RC_GTEST_PROP(PolyLineLaws, AppendingKeepsEveryVertexButAJoint, ()) {
    PolyLine line = AnyLine(true, 0);
    const PolyLine other = AnyLine(true, 0);
    const int mode = *rc::gen::inRange(0, 3);
    const std::uint32_t before = line.count;
    const bool joins =
        before > 0 && other.count > 0 &&
        ((mode > 0 && Equals(line[-1], other[0])) || (mode == 2 && Equals(line[-1], other[-1])));
    line.Append(other, mode);
    RC_ASSERT(line.count == before + other.count - (joins ? 1 : 0));
}

RC_GTEST_PROP(PolyLineLaws, TheCentroidOfAStarLiesInItsBoxAndMovesWithIt, ()) {
    PolyLine ring = AnyRing(false);
    RC_PRE(ring.Area() > 1.0);
    Point3d before, after;
    ring.GetCentroid(&before);
    const Point3d by = AnyPoint(false);
    ring += by;
    ring.GetCentroid(&after);
    RC_ASSERT(Distance2d(before + by, after) < 1e-6 * (1 + VectorLength(before)));
}

RC_GTEST_PROP(PolyLineLaws, AnInteriorPointLiesInsideOfSimpleRings, ()) {
    // Star-shaped about the origin, hence simple.
    const int corners = *rc::gen::inRange(3, 30);
    PolyLine ring;
    for (int i = 0; i < corners; ++i) {
        const double angle = i * 6.283185307179586 / corners;
        const double radius = *rc::gen::inRange(1000, 20000) / 1000.0;
        ring.Append({radius * std::cos(angle), radius * std::sin(angle), 0});
    }
    ring.Close();
    if (*rc::gen::arbitrary<bool>()) ring.Reverse();
    Point3d p;
    if (ring.InteriorPoint(&p)) RC_ASSERT(ring.Inside(p, false, true) == 1);
}

RC_GTEST_PROP(PolyLineLaws, RelationsMirrorEachOther, (bool onGrid)) {
    const PolyLine here = AnyRing(onGrid), there = AnyRing(onGrid);
    const int forth = here.Relation(there), back = there.Relation(here);
    RC_ASSERT((forth == 2) == (back == 2));
    if (forth == 1) RC_ASSERT(back == 4 || back == 3);
    if (forth == 5) RC_ASSERT(back == 4);
}

}  // namespace
}  // namespace TamLib
