// PolyArc without a host: its segments, edits, measures and flattening.
#include "GeomStructs/PolyArc.h"

#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <string>
#include <vector>

#include "GeomEnts/Box.h"
#include "GeomEnts/circle.h"
#include "tests/GeomStructs/TextLines.h"
#include "tests/support/Points.h"

namespace TamLib {
namespace {

struct Segment {
    Point3d to;
    double height;
};

PolyArc ArcLine(const Point3d& from, std::initializer_list<Segment> segments) {
    PolyArc line;
    line.AddVertex(from, 0.0);
    for (const Segment& segment : segments) line.AddVertex(segment.to, segment.height);
    return line;
}

// A half circle to the left about (5, 0), then straight up.
PolyArc Hook() {
    return ArcLine({0, 0, 0}, {{{10, 0, 0}, 5.0}, {{10, 5, 0}, 0.0}});
}

std::vector<double> Heights(const PolyArc& line) {
    return {line.heights.begin(), line.heights.end()};
}

// --- Construction.

TEST(PolyArc, StartsEmptyWithRoomForTwentyVerticesAndHeightsGrowByTen) {
    const PolyArc line;
    EXPECT_EQ(0u, line.count);
    EXPECT_EQ(20u, line.capacity);
    EXPECT_EQ(20u, line.increment);
    EXPECT_EQ(0u, line.heights.count);
    EXPECT_EQ(10u, line.heights.increment);
    EXPECT_EQ(7u, PolyArc(7).capacity);
    EXPECT_EQ(10u, PolyArc(7).heights.increment);
    EXPECT_EQ(0u, PolyArc(0).capacity);
}

TEST(PolyArc, OfAPolylineIsStraight) {
    PolyLine chords = FromText("0 0, 4 0 2, 4 3");
    chords.offset = {1, 2, 3};
    const PolyArc line(chords);
    EXPECT_EQ("0 0, 4 0 2, 4 3", ToText(line));
    EXPECT_EQ((std::vector<double>{0, 0}), Heights(line));
    EXPECT_EQ(2.0, line.offset.y);
    EXPECT_FALSE(line.HasArcs());
    EXPECT_EQ(0u, PolyArc(FromText("1 2")).heights.count);
    EXPECT_EQ(0u, PolyArc(PolyLine()).heights.count);
}

TEST(PolyArc, OfAnotherOneAsAPolylineLosesItsArcs) {
    const PolyArc hook = Hook();
    const PolyLine& chords = hook;
    EXPECT_FALSE(PolyArc(chords).HasArcs());
}

TEST(PolyArc, CopiesAndAssignsVerticesAndHeights) {
    PolyArc hook = Hook();
    const PolyArc copy(hook);
    hook.SetHeightAt(0, -1.0);
    hook.data[0].x = 77;
    EXPECT_EQ("0 0, 10 0, 10 5", ToText(copy));
    EXPECT_EQ((std::vector<double>{5, 0}), Heights(copy));
    PolyArc assigned;
    assigned.AddVertex({9, 9, 9}, 0);
    assigned = copy;
    EXPECT_EQ("0 0, 10 0, 10 5", ToText(assigned));
    EXPECT_EQ((std::vector<double>{5, 0}), Heights(assigned));
    const PolyArc moved(std::move(assigned));
    EXPECT_EQ((std::vector<double>{5, 0}), Heights(moved));
}

TEST(PolyArc, AddVertexKeepsNoHeightOfTheFirst) {
    PolyArc line;
    line.AddVertex({0, 0, 0}, 3.0);
    EXPECT_EQ(0u, line.heights.count);
    line.AddVertex({4, 0, 0}, 2.0);
    EXPECT_EQ((std::vector<double>{2}), Heights(line));
    EXPECT_EQ(2.0, line.HeightAt(0));
}

// --- Bulges.

TEST(PolyArc, BulgesAreThoseOfTheHostWithTheOtherSign) {
    PolyArc line = Hook();
    EXPECT_EQ(-1.0, line.BulgeAt(0));
    EXPECT_EQ(0.0, line.BulgeAt(1));
    line.SetBulgeAt(0, 1.0);
    EXPECT_NEAR(-5.0, line.HeightAt(0), 1e-12);
    for (const double bulge : {-7.5, -1.0, -0.2, 0.001, 0.3, 1.0, 2.5}) {
        line.SetBulgeAt(0, bulge);
        EXPECT_NEAR(bulge, line.BulgeAt(0), 1e-12);
        EXPECT_EQ(bulge > 0, line.HeightAt(0) < 0);
    }
    line.SetBulgeAt(0, 0.00009999);
    EXPECT_EQ(0.0, line.HeightAt(0));
}

TEST(PolyArc, BulgeAtIsZeroBelowAHeightOf0p0001) {
    PolyArc line = Hook();
    for (const double sign : {1.0, -1.0}) {
        line.SetHeightAt(0, sign * std::nextafter(0.0001, 0.0));
        EXPECT_EQ(0.0, line.BulgeAt(0));
        EXPECT_FALSE(line.HasArcs());
        line.SetHeightAt(0, sign * 0.0001);
        EXPECT_NEAR(-sign * 0.00002, line.BulgeAt(0), 1e-18);
        EXPECT_TRUE(line.HasArcs());
    }
}

TEST(PolyArc, SetBulgeTakesTheChordInSpaceAndBulgeAtThatInPlan) {
    PolyArc line = ArcLine({0, 0, 0}, {{{3, 0, 4}, 0.0}});
    line.SetBulgeAt(0, 0.5);
    EXPECT_NEAR(-0.5 * 5 / 2, line.HeightAt(0), 1e-12);
    EXPECT_NEAR(0.5 * 5 / 3, line.BulgeAt(0), 1e-12);
}

// --- Edits.

TEST(PolyArc, ReversalNegatesAndReversesTheHeights) {
    PolyArc line = Hook();
    PolyLine& base = line;
    base.Reverse();
    EXPECT_EQ("10 5, 10 0, 0 0", ToText(line));
    ASSERT_EQ(2u, line.heights.count);
    EXPECT_EQ(0.0, line.HeightAt(0));
    EXPECT_EQ(-5.0, line.HeightAt(1));
}

TEST(PolyArc, ReversalMakesHeightsOnePerSegment) {
    PolyArc tooMany = Hook();
    tooMany.heights.Append(7.0);
    tooMany.heights.Append(8.0);
    tooMany.Reverse();
    EXPECT_EQ((std::vector<double>{0, -5}), Heights(tooMany));
    PolyArc tooFew = Hook();
    tooFew.Append({0, 5, 0});
    tooFew.Reverse();
    EXPECT_EQ((std::vector<double>{0, 0, -5}), Heights(tooFew));
}

TEST(PolyArc, ReversalBelowTwoVerticesChangesNothing) {
    PolyArc one = ArcLine({1, 2, 3}, {});
    one.heights.Append(7.0);
    one.Reverse();
    EXPECT_EQ((std::vector<double>{7}), Heights(one));
    PolyArc none;
    none.heights.Append(7.0);
    none.Reverse();
    EXPECT_EQ((std::vector<double>{7}), Heights(none));
}

TEST(PolyArc, CloseAppendsTheFirstVertexAndOneHeightTooMany) {
    PolyArc line = Hook();
    PolyLine& base = line;
    base.Close();
    EXPECT_EQ("0 0, 10 0, 10 5, 0 0", ToText(line));
    EXPECT_EQ((std::vector<double>{5, 0, 0, 0}), Heights(line));
    base.Close();  // closed already: the height alone
    EXPECT_EQ(4u, line.count);
    EXPECT_EQ(5u, line.heights.count);
    PolyArc one = ArcLine({1, 2, 3}, {});
    one.Close();
    EXPECT_EQ(1u, one.count);
    EXPECT_EQ(1u, one.heights.count);
    PolyArc none;
    none.Close();
    EXPECT_EQ(0u, none.count);
    EXPECT_EQ(0u, none.heights.count);
}

TEST(PolyArc, CloseTellsTheEndsApartFrom0p0001On) {
    PolyArc closed = ArcLine({0, 0, 0}, {{{5, 0, 0}, 0}, {{0.00009, 0, 0}, 0}});
    closed.Close();
    EXPECT_EQ(3u, closed.count);
    PolyArc open = ArcLine({0, 0, 0}, {{{5, 0, 0}, 0}, {{0.00011, 0, 0}, 0}});
    open.Close();
    EXPECT_EQ(4u, open.count);
}

TEST(PolyArc, DropLastIfEqualWithNoMatchAppendsAHeightAndIsFalse) {
    PolyArc line = Hook();
    PolyLine& base = line;
    EXPECT_FALSE(base.DropLastIfEqual({1, 1, 1}, true));
    EXPECT_EQ(3u, line.count);
    EXPECT_EQ(3u, line.heights.count);
    EXPECT_FALSE(base.DropLastIfEqual({1, 1, 1}, false));
    EXPECT_EQ(4u, line.heights.count);
}

TEST(PolyArc, DropLastIfEqualWithAMatchAppendsAHeightOnlyWhenTheVertexStays) {
    PolyArc line = Hook();
    EXPECT_TRUE(line.DropLastIfEqual({10, 5.00009, 0}, false));
    EXPECT_EQ(3u, line.count);
    EXPECT_EQ((std::vector<double>{5, 0, 0}), Heights(line));
    EXPECT_TRUE(line.DropLastIfEqual({10, 5, 0}, true));
    EXPECT_EQ(2u, line.count);
    EXPECT_EQ(3u, line.heights.count);
    PolyArc none;
    EXPECT_FALSE(none.DropLastIfEqual({0, 0, 0}, true));
    EXPECT_FALSE(none.DropLastIfEqual({0, 0, 0}, false));
    EXPECT_EQ(0u, none.heights.count);
}

TEST(PolyArc, JoiningARunKeepsAHeightPerSegment) {
    PolyArc line = Hook();
    // A run that begins where this one ends: the shared vertex is dropped, its heights follow.
    line.Append(FromText("10 5, 0 5"), 1);
    line.heights.Append(0.0);
    EXPECT_EQ(line.count - 1, line.heights.count);
    // One that begins elsewhere: the height of the segment between is there.
    line.Append(FromText("0 9, 0 12"), 1);
    line.heights.Append(0.0);
    EXPECT_EQ(line.count - 1, line.heights.count);
}

TEST(PolyArc, ClearLeavesTheHeightsAndHeightsThatAreMissingAreStraight) {
    PolyArc line = Hook();
    line.Clear();
    EXPECT_EQ(0u, line.count);
    EXPECT_EQ(2u, line.heights.count);
    PolyArc longer = Hook();
    longer.Append({0, 5, 0});
    EXPECT_EQ(0.0, longer.GetArc(2).height);
    EXPECT_NEAR(5 * kPi + 15, longer.Length(), 1e-12);
}

TEST(PolyArc, NearDuplicatesGoWithTheHeightBeforeThem) {
    const double close = 0.99e-7;
    PolyArc line = ArcLine({0, 0, 0}, {{{0, close, 9}, 1.0},
                                       {{10, 0, 0}, 5.0},
                                       {{10 + close, close, 0}, 2.0},
                                       {{10, 1e-7, 0}, 3.0},
                                       {{10, 5, 0}, -1.0}});
    line.RemoveNearDuplicates(1e-7);
    EXPECT_EQ("0 0, 10 0, 10 1e-07, 10 5", ToText(line));
    EXPECT_EQ((std::vector<double>{5, 3, -1}), Heights(line));
    PolyArc aside = ArcLine({0, 0, 0}, {{{1e-7, 0, 0}, 0.0}, {{10, 0, 0}, 0.0}});
    aside.RemoveNearDuplicates(1e-7);
    EXPECT_EQ(3u, aside.count);
    PolyArc none;
    none.RemoveNearDuplicates(1e-7);
    EXPECT_EQ(0u, none.count);
}

// --- Measures.

TEST(PolyArc, LengthsRunAlongTheArcsInPlan) {
    const PolyArc line = Hook();
    EXPECT_NEAR(5 * kPi + 5, line.Length(), 1e-12);
    EXPECT_EQ(0.0, line.LengthToVertex(-1));
    EXPECT_EQ(0.0, line.LengthToVertex(0));
    EXPECT_NEAR(5 * kPi, line.LengthToVertex(1), 1e-12);
    EXPECT_EQ(line.Length(), line.LengthToVertex(2));
    EXPECT_EQ(line.Length(), line.LengthToVertex(99));
    EXPECT_EQ(0.0, PolyArc().Length());
    EXPECT_EQ(0.0, ArcLine({1, 2, 3}, {}).Length());
    // Intended: of a straight segment that slopes, the length in plan.
    EXPECT_EQ(3.0, ArcLine({0, 0, 0}, {{{3, 0, 4}, 0.0}}).Length());
    EXPECT_EQ(5.0, PolyLine(ArcLine({0, 0, 0}, {{{3, 0, 4}, 0.0}})).Length());
}

// A square of 10 whose right side bulges by a half circle of radius 5; `sign` 1 to the left of the
// way.
PolyArc BulgedSquare(double sign, bool clockwise) {
    PolyArc ring = ArcLine(
        {0, 0, 0}, {{{10, 0, 0}, 0}, {{10, 10, 0}, sign * 5}, {{0, 10, 0}, 0}, {{0, 0, 0}, 0}});
    if (clockwise) ring.Reverse();
    return ring;
}

TEST(PolyArc, AreaCountsWhatBulgesOutAndTakesOffWhatBulgesIn) {
    const double half = 25 * kPi / 2;
    // Right of a counter-clockwise way is outside.
    EXPECT_NEAR(100 + half, BulgedSquare(-1, false).Area(), 1e-9);
    EXPECT_NEAR(100 - half, BulgedSquare(1, false).Area(), 1e-9);
    // The same curves walked the other way.
    EXPECT_NEAR(100 + half, BulgedSquare(-1, true).Area(), 1e-9);
    EXPECT_NEAR(100 - half, BulgedSquare(1, true).Area(), 1e-9);
}

TEST(PolyArc, AreaOfACircleOfTwoArcsIsNegativeSinceItsVerticesHaveNoSense) {
    const PolyArc circle = ArcLine({5, 0, 0}, {{{-5, 0, 0}, 5}, {{5, 0, 0}, 5}});
    EXPECT_NEAR(-25 * kPi, circle.Area(), 1e-9);
}

TEST(PolyArc, DistanceIsThatToTheCurve) {
    const PolyArc line = Hook();
    EXPECT_NEAR(2.0, line.MinDistance2d({5, 7, 99}), 1e-12);
    EXPECT_NEAR(2.0, line.MinDistance2d({5, 3, 0}), 1e-12);
    EXPECT_NEAR(3.0, line.MinDistance2d({13, 2, 0}), 1e-12);
    EXPECT_EQ(0.0, PolyArc().MinDistance2d({5, 3, 0}));  // intended: a polyline says -1.0
    EXPECT_EQ(5.0, ArcLine({0, 0, 9}, {}).MinDistance2d({3, 4, 0}));
}

TEST(PolyArc, NearestSegmentIsByTheCurveAndTellsItsSide) {
    const PolyArc line = Hook();
    double distance = 0;
    int side = 7;
    EXPECT_EQ(0, line.NearestSegment({8, 3, 0}, &distance, &side));
    EXPECT_NEAR(5 - std::sqrt(18.0), distance, 1e-12);
    EXPECT_EQ(1, side);  // within the half circle: right of the clockwise way
    EXPECT_EQ(0, line.NearestSegment({5, 8, 0}, &distance, &side));
    EXPECT_EQ(-1, side);
    EXPECT_EQ(0, line.NearestSegment({5, 5.00009, 0}, &distance, &side));
    EXPECT_EQ(0, side);
    EXPECT_EQ(1, line.NearestSegment({13, 2, 0}, &distance, &side));
    EXPECT_EQ(1, side);
    // Of equally near ones the first.
    EXPECT_EQ(0, line.NearestSegment({11, -1, 0}));
    // A straight segment of 5 is touched from 0.002 on, where the cross product is 0.01.
    for (const double x : {10.0, 10.0019, 9.9981}) {
        EXPECT_EQ(1, line.NearestSegment({x, 4, 0}, &distance, &side));
        EXPECT_EQ(0, side) << x;
    }
    for (const double x : {10.0021, 9.9979}) {
        EXPECT_EQ(1, line.NearestSegment({x, 4, 0}, &distance, &side));
        EXPECT_EQ(x > 10 ? 1 : -1, side) << x;
    }
}

TEST(PolyArc, NearestSegmentBelowTwoVerticesIsAsOfAPolyline) {
    double distance = 7;
    int side = 7;
    EXPECT_EQ(0, PolyArc().NearestSegment({1, 1, 1}, &distance, &side));
    EXPECT_EQ(7.0, distance);
    EXPECT_EQ(0, side);
    EXPECT_EQ(0, ArcLine({1, 2, 3}, {}).NearestSegment({1, 2, 8}, &distance, &side));
    EXPECT_EQ(5.0, distance);  // in 3D
}

TEST(PolyArc, BoxHoldsTheArcs) {
    const Box box = Hook().GetBox();
    EXPECT_EQ(0.0f, box.xMin);
    EXPECT_EQ(10.0f, box.xMax);
    EXPECT_EQ(0.0f, box.yMin);
    EXPECT_EQ(5.0f, box.yMax);
    EXPECT_EQ(10.0f, BulgedSquare(1, false).GetBox().xMax);
    EXPECT_EQ(15.0f, BulgedSquare(-1, false).GetBox().xMax);
    // Intended: a single vertex has no segment.
    EXPECT_EQ(Box().xMin, ArcLine({1, 2, 3}, {}).GetBox().xMin);
    EXPECT_EQ(Box().xMin, PolyArc().GetBox().xMin);
}

// --- Points at a length.

TEST(PolyArc, PointsAtALengthLieOnTheCurve) {
    const PolyArc line = Hook();
    Point3d point;
    int segment = 7;
    double part = 7;
    line.PointAtLength(&point, 2.5 * kPi, &segment, &part);
    EXPECT_LT(Distance({5, 5, 0}, point), 1e-12);
    EXPECT_EQ(0, segment);
    EXPECT_NEAR(0.5, part, 1e-12);
    line.PointAtLength(&point, 5 * kPi + 2, &segment, &part);
    EXPECT_LT(Distance({10, 2, 0}, point), 1e-12);
    EXPECT_EQ(1, segment);
    EXPECT_NEAR(0.4, part, 1e-12);
    line.PointAtFraction(&point, 1.0, &segment, &part);
    EXPECT_LT(Distance({10, 5, 0}, point), 1e-12);
    EXPECT_EQ(1, segment);
    EXPECT_EQ(1.0, part);
}

TEST(PolyArc, PointsBeyondTheEndsAreTheEnds) {
    const PolyArc line = Hook();
    Point3d point;
    int segment = 7;
    double part = 7;
    line.PointAtFraction(&point, -0.1, &segment, &part);
    EXPECT_EQ("0 0", ToText(ArcLine(point, {})));
    EXPECT_EQ(0, segment);
    EXPECT_EQ(0.0, part);
    line.PointAtFraction(&point, 1.1, &segment, &part);
    EXPECT_EQ("10 5", ToText(ArcLine(point, {})));
    EXPECT_EQ(1, segment);
    EXPECT_EQ(1.0, part);
}

TEST(PolyArc, PointsOfLessThanTwoVerticesLeaveTheSegmentAlone) {
    Point3d point(9, 9, 9);
    int segment = 7;
    double part = 7;
    PolyArc().PointAtFraction(&point, 0.5, &segment, &part, 1.0);
    EXPECT_EQ(0.0, Distance({0, 0, 0}, point));
    ArcLine({1, 2, 3}, {}).PointAtFraction(&point, 0.5, &segment, &part, 1.0);
    EXPECT_EQ(0.0, Distance({1, 2, 3}, point));
    EXPECT_EQ(7, segment);
    EXPECT_EQ(7.0, part);
    ArcLine({1, 2, 3}, {}).DirectionAtLength(&point, 1.0);
    EXPECT_EQ(0.0, Distance({0, 0, 0}, point));
}

TEST(PolyArc, OnAnArcThatSlopesPointsKeepTheHeightOfItsStart) {
    const PolyArc line = ArcLine({0, 0, 2}, {{{10, 0, 8}, 5.0}});
    Point3d point;
    line.PointAtFraction(&point, 0.5);
    EXPECT_NEAR(2.0, point.z, 1e-12);
    line.PointAtFraction(&point, 1.1);
    EXPECT_EQ(8.0, point.z);
}

TEST(PolyArc, AShortLineIsMeasuredByItsLengthAsAFraction) {
    const PolyArc line = ArcLine({0, 0, 0}, {{{0.00005, 0, 0}, 0.0}});
    Point3d point;
    double part = 0;
    line.PointAtLength(&point, 0.5, nullptr, &part);
    EXPECT_NEAR(0.5, part, 1e-12);
}

TEST(PolyArc, DirectionsAreTangentsAlongTheWayWhateverTheSense) {
    Point3d direction;
    for (const double sign : {1.0, -1.0}) {
        const PolyArc line = ArcLine({0, 0, 0}, {{{10, 0, 0}, sign * 5.0}, {{10, 5, 5}, 0.0}});
        line.DirectionAtLength(&direction, 0.0);
        EXPECT_LT(Distance({0, sign, 0}, direction), 1e-9);
        line.DirectionAtLength(&direction, 2.5 * kPi);
        EXPECT_LT(Distance({1, 0, 0}, direction), 1e-9);
        line.DirectionAtLength(&direction, 1.25 * kPi);
        EXPECT_LT(Distance({std::sqrt(0.5), sign * std::sqrt(0.5), 0}, direction), 1e-9);
        // Straight ones in space.
        line.DirectionAtLength(&direction, 5 * kPi + 2);
        EXPECT_LT(Distance({0, std::sqrt(0.5), std::sqrt(0.5)}, direction), 1e-12);
    }
}

TEST(PolyArc, SideOffsetsGoToTheRightOfTheWay) {
    const PolyArc line = Hook();
    Point3d point;
    line.PointAtLength(&point, 2.5 * kPi, nullptr, nullptr, 2.0);
    EXPECT_LT(Distance({5, 3, 0}, point), 1e-9);
    line.PointAtLength(&point, 2.5 * kPi, nullptr, nullptr, -2.0);
    EXPECT_LT(Distance({5, 7, 0}, point), 1e-9);
    line.PointAtLength(&point, 2.5 * kPi, nullptr, nullptr, std::nextafter(0.0001, 0.0));
    EXPECT_NEAR(5.0, point.y, 1e-13);
    line.PointAtLength(&point, 2.5 * kPi, nullptr, nullptr, 0.0001);
    EXPECT_NEAR(4.9999, point.y, 1e-13);
    line.PointAtFraction(&point, -1.0, nullptr, nullptr, 2.0);
    EXPECT_LT(Distance({2, 0, 0}, point), 1e-9);
    line.PointAtFraction(&point, 2.0, nullptr, nullptr, 2.0);
    EXPECT_LT(Distance({12, 5, 0}, point), 1e-9);
}

TEST(PolyArc, OnASlopingStraightSegmentTheSideIsShortenedAsTheDirectionIs) {
    const PolyArc line = ArcLine({0, 0, 0}, {{{3, 4, 12}, 0.0}});
    Point3d point;
    line.PointAtFraction(&point, 0.5, nullptr, nullptr, 2.0);
    // 2.5 of the way of 5 in plan, along a direction of (3, 4, 12) / 13.
    EXPECT_LT(Distance({(7.5 + 8) / 13, (10 - 6.0) / 13, 30.0 / 13}, point), 1e-12);
}

TEST(PolyArc, OnASlopingArcTheDirectionIsLevelAlsoBeyondItsEnd) {
    const PolyArc line = ArcLine({0, 0, 0}, {{{10, 0, 4}, 5.0}});
    Point3d direction;
    for (const double beyond : {0.0, 1.0}) {  // beyond it the point lies at the end's height
        line.DirectionAtLength(&direction, line.Length() + beyond);
        EXPECT_EQ(0.0, direction.z);
        EXPECT_LT(Distance({0, -1, 0}, direction), 1e-9);
    }
}

TEST(PolyArc, BeforeAFirstSegmentWithoutLengthPointsAreTheStart) {
    const PolyArc line = ArcLine({0, 0, 0}, {{{0, 0, 0}, 0.0}, {{10, 0, 0}, 0.0}});
    Point3d point;
    int segment = 7;
    double part = 7;
    line.PointAtFraction(&point, -0.5, &segment, &part);
    EXPECT_EQ(0, segment);
    EXPECT_EQ(0.0, part);
    EXPECT_EQ(0.0, Distance({0, 0, 0}, point));
}

TEST(PolyArc, WhatIsOnlyInheritedTakesTheChords) {
    const PolyArc line = Hook();
    EXPECT_EQ(15.0, line.Length2d());
    Point3d normal;
    line.NormalAtLength(&normal, 1.0);
    EXPECT_EQ(0.0, Distance({0, -1, 0}, normal));
}

// --- Meetings.

TEST(PolyArc, MeetsLinesOnItsArcs) {
    const PolyArc line = Hook();
    Array<int> segments;
    const Line level({-3, 4, 0}, {20, 4, 0});
    EXPECT_EQ("8 4, 2 4, 10 4", ToText(line.Intersections(level, &segments)));
    EXPECT_EQ((std::vector<int>{0, 0, 1}), std::vector<int>(segments.begin(), segments.end()));
    EXPECT_EQ("2 4, 8 4, 10 4", ToText(line.Intersections(level)));  // sorted
    EXPECT_EQ(0u, line.Intersections(Line({-3, 9, 0}, {20, 9, 0})).count);
}

TEST(PolyArc, MeetsArcs) {
    const PolyArc line = Hook();
    // The half circle over (5, 5) ... (15, 5), radius 5, about (10, 5).
    const Arc arc(5.0, Line({5, 5, 0}, {15, 5, 0}));
    Array<int> segments;
    const PolyLine points = line.Intersections(arc, &segments);
    // The circles meet in (5, 5) and (10, 0); the first lies on both arcs.
    ASSERT_EQ(1u, points.count);
    EXPECT_LT(Distance2d({5, 5, 0}, points.data[0]), 1e-9);
    EXPECT_EQ(0, segments[0]);
    EXPECT_EQ(0u, line.Intersections(Arc(1.0, Line({50, 50, 0}, {52, 50, 0}))).count);
}

// --- Flattening.

TEST(PolyArc, StraightSegmentsFlattenToTheirVertices) {
    const char* const text = "0 0 1, 4 0 2, 4 3 3, 0 0 1";
    const PolyLine flat = PolyArc(FromText(text)).ToPolyLine(0.1, true);
    EXPECT_EQ(text, ToText(flat));
    EXPECT_EQ(20u, flat.increment);
    EXPECT_EQ(0u, PolyArc().ToPolyLine(0.1, true).count);
    EXPECT_EQ(0u, ArcLine({1, 2, 3}, {}).ToPolyLine(0.1, true).count);
}

TEST(PolyArc, ArcsFlattenWithinTheStepAndShareTheirVertices) {
    const PolyArc line = ArcLine({0, 0, 0}, {{{10, 0, 0}, 5.0}, {{20, 0, 0}, -5.0}});
    for (const bool byAngle : {true, false}) {
        const PolyLine flat = line.ToPolyLine(byAngle ? 0.1 : 0.5, byAngle);
        EXPECT_LT(Distance2d({20, 0, 0}, flat.data[flat.count - 1]), 1e-12);
        int shared = 0;
        for (std::uint32_t i = 0; i < flat.count; ++i) {
            const Point3d& p = flat.data[i];
            const bool second = p.x > 10;
            EXPECT_NEAR(5.0, Distance2d(p, {second ? 15.0 : 5.0, 0, 0}), 1e-12);
            EXPECT_TRUE(second ? p.y < 1e-12 : p.y > -1e-12);
            shared += Equals(p, {10, 0, 0}) ? 1 : 0;
            if (i == 0) continue;
            EXPECT_GT(p.x, flat.data[i - 1].x);
            EXPECT_LT(Distance2d(p, flat.data[i - 1]), 1.0);
        }
        EXPECT_EQ(1, shared);
    }
}

TEST(PolyArc, HeightsOfVerticesAreInterpolatedAlongTheArc) {
    const PolyLine flat = ArcLine({0, 0, 2}, {{{10, 0, 8}, 5.0}}).ToPolyLine(0.1, true);
    for (std::uint32_t i = 1; i < flat.count; ++i) {
        EXPECT_GT(flat.data[i].z, flat.data[i - 1].z);
    }
    EXPECT_NEAR(2.0, flat.data[0].z, 1e-12);
    EXPECT_NEAR(8.0, flat.data[flat.count - 1].z, 1e-12);
}

TEST(PolyArc, AThousandArcsFlattenAsOneByOne) {
    PolyArc line;
    line.AddVertex({25496000, 6672000, 0}, 0);
    for (int i = 1; i <= 1000; ++i)
        line.AddVertex({25496000 + i * 7.0, 6672000 + i % 3 * 2.0, i * 0.1}, (i % 5 - 2) * 0.8);
    const PolyLine flat = line.ToPolyLine(0.05, true);
    PolyLine plain(20);
    for (int i = 0; i < 1000; ++i) plain.Append(line.GetArc(i).ToPolyLine(0.05, true), 1);
    ASSERT_EQ(plain.count, flat.count);
    EXPECT_EQ(plain.sorted, flat.sorted);
    for (std::uint32_t i = 0; i < flat.count; ++i) {
        EXPECT_EQ(plain.data[i].x, flat.data[i].x);
        EXPECT_EQ(plain.data[i].y, flat.data[i].y);
        EXPECT_EQ(plain.data[i].z, flat.data[i].z);
    }
}

}  // namespace
}  // namespace TamLib
