#include "GeomStructs/PolyLine.h"

#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <limits>
#include <string>

#include "tests/support/Points.h"

namespace TamLib {
namespace {

PolyLine Make(std::initializer_list<Point3d> points) {
    PolyLine line;
    for (const Point3d& p : points) line.Append(p);
    return line;
}

// (0,0) - (10,0) - (10,5), both parts level.
PolyLine Corner() {
    return Make({{0, 0, 0}, {10, 0, 0}, {10, 5, 0}});
}
PolyLine Square() {
    PolyLine line = Make({{0, 0, 0}, {4, 0, 0}, {4, 4, 0}, {0, 4, 0}});
    line.Close();
    return line;
}

// --- Building.

TEST(PolyLine, StartsEmptyWithTenVertices) {
    const PolyLine line;
    EXPECT_EQ(0u, line.count);
    EXPECT_EQ(10u, line.capacity);
    EXPECT_EQ(10u, line.increment);
    EXPECT_EQ(0, line.hasBounds);
    ExpectPoint({0, 0, 0}, line.offset);
    EXPECT_TRUE(line.bitwise);
    const Point3d a(1, 2, 3), b(1.0000001, 1, 3);
    EXPECT_EQ(1, line.compare(&a, &b));  // the comparison of point arrays
}

TEST(PolyLine, CapacityZeroAllocatesNothingAndGrowsByFive) {
    PolyLine line(0);
    EXPECT_EQ(0u, line.capacity);
    EXPECT_EQ(5u, line.increment);
    EXPECT_EQ(nullptr, line.data);
    line.Append({1, 2, 3});
    EXPECT_EQ(5u, line.capacity);
    EXPECT_EQ(20u, PolyLine(20).increment);
    EXPECT_EQ(5u, PolyLine(3).increment);
    EXPECT_EQ(3u, PolyLine(3).capacity);
}

TEST(PolyLine, OfAnArrayTakesItsPointsAndSettings) {
    Array<Point3d> points(7);
    points.bitwise = true;
    points.Append({1, 2, 3});
    points.Append({4, 5, 6});
    const PolyLine line(points);
    ASSERT_EQ(2u, line.count);
    ExpectPoint({4, 5, 6}, line.data[1]);
    EXPECT_EQ(7u, line.increment);
    EXPECT_EQ(0, line.hasBounds);
}

TEST(PolyLine, OfABoxRunsFromTheUpperLeftAndCloses) {
    const PolyLine line(Box(1.0, 4.0, 2.0, 8.0, 3.0, 5.0));
    ASSERT_EQ(5u, line.count);
    ExpectPoint({1, 8, 4}, line.data[0]);
    ExpectPoint({4, 8, 4}, line.data[1]);
    ExpectPoint({4, 2, 4}, line.data[2]);
    ExpectPoint({1, 2, 4}, line.data[3]);
    ExpectPoint({1, 8, 4}, line.data[4]);
    // Without width and depth the four corners close it by themselves.
    EXPECT_EQ(4u, PolyLine(Box(1.0, 1.0, 2.0, 2.0, 3.0, 5.0)).count);
}

TEST(PolyLine, AssignmentCopiesVerticesBoxAndOffset) {
    PolyLine source = Corner();
    source.maxPoint = {10, 5, 0};
    source.minPoint = {0, 0, 0};
    source.hasBounds = 1;
    source.offset = {1, 2, 3};
    PolyLine target(20);
    target = source;
    ASSERT_EQ(3u, target.count);
    EXPECT_EQ(3u, target.capacity);
    EXPECT_EQ(source.increment, target.increment);
    ExpectPoint({10, 5, 0}, target.data[2]);
    ExpectPoint({10, 5, 0}, target.maxPoint);
    EXPECT_EQ(1, target.hasBounds);
    ExpectPoint({1, 2, 3}, target.offset);
    EXPECT_NE(source.data, target.data);
    const PolyLine copy(source);
    EXPECT_EQ(1, copy.hasBounds);
    ExpectPoint({10, 5, 0}, copy.data[2]);
}

TEST(PolyLine, AssigningAnEmptyOneTakesItsGrowth) {
    PolyLine line(20);
    line = PolyLine(0);
    EXPECT_EQ(0u, line.count);
    EXPECT_EQ(0u, line.capacity);
    EXPECT_EQ(5u, line.increment);
    EXPECT_EQ(nullptr, line.data);
}

TEST(PolyLine, ClearForgetsBoundsAndOffset) {
    PolyLine line = Corner();
    line.hasBounds = 1;
    line.offset = {1, 2, 3};
    Container<Point3d>& throughTheTable = line;
    EXPECT_EQ(0, throughTheTable.Clear());
    EXPECT_EQ(0u, line.count);
    EXPECT_EQ(0, line.hasBounds);
    ExpectPoint({0, 0, 0}, line.offset);
}

TEST(PolyLine, NegativeIndexesCountFromTheEnd) {
    const PolyLine line = Corner();
    ExpectPoint({10, 5, 0}, *line.At(-1));
    ExpectPoint({0, 0, 0}, *line.At(-3));
    ExpectPoint({10, 0, 0}, *line.At(1));
}

TEST(PolyLine, AppendingClearsTheSortedFlag) {
    PolyLine line = Corner();
    line.sorted = true;
    line.Append({0, 0, 0});
    EXPECT_FALSE(line.sorted);
    line.sorted = true;
    line.Close();  // closed already: nothing is appended
    EXPECT_TRUE(line.sorted);
}

// --- Closing.

TEST(PolyLine, IsClosedWhenTheLastVertexEqualsTheFirst) {
    EXPECT_TRUE(Square().IsClosed());
    EXPECT_FALSE(Corner().IsClosed());
    EXPECT_FALSE(PolyLine().IsClosed());
    EXPECT_FALSE(Make({{1, 1, 1}}).IsClosed());
    EXPECT_TRUE(Make({{1, 1, 1}, {1, 1, 1}}).IsClosed());
    const double below = 0.00009, above = 0.00011;
    EXPECT_TRUE(Make({{0, 0, 0}, {5, 5, 5}, {below, -below, below}}).IsClosed());
    EXPECT_FALSE(Make({{0, 0, 0}, {5, 5, 5}, {above, 0, 0}}).IsClosed());
    EXPECT_FALSE(Make({{0, 0, 0}, {5, 5, 5}, {0, 0, above}}).IsClosed());  // in 3D
    EXPECT_FALSE(Make({{0, 0, 0}, {5, 5, 5}, {0.0001, 0, 0}}).IsClosed());
    EXPECT_TRUE(Make({{25e6, 7e6, 0}, {5, 5, 5}, {25e6 + below, 7e6, 0}}).IsClosed());
    EXPECT_FALSE(Make({{25e6, 7e6, 0}, {5, 5, 5}, {25e6 + above, 7e6, 0}}).IsClosed());
}

TEST(PolyLine, CloseRepeatsTheFirstVertexOnce) {
    PolyLine line = Corner();
    line.Close();
    ASSERT_EQ(4u, line.count);
    ExpectPoint({0, 0, 0}, line.data[3]);
    line.Close();
    EXPECT_EQ(4u, line.count);
    PolyLine empty;
    empty.Close();
    EXPECT_EQ(0u, empty.count);
    PolyLine one = Make({{1, 2, 3}});
    one.Close();
    EXPECT_EQ(1u, one.count);
    PolyLine near = Make({{0, 0, 0}, {5, 5, 5}, {0.00009, 0, 0}});
    near.Close();
    EXPECT_EQ(3u, near.count);
}

TEST(PolyLine, CloseSurvivesTheGrowthOfItsOwnBuffer) {
    PolyLine line(0);
    for (int i = 0; i < 5; ++i) line.Append({i + 1.0, 2, 3});
    ASSERT_EQ(line.count, line.capacity);
    line.Close();
    ExpectPoint({1, 2, 3}, line.data[5]);
}

TEST(PolyLine, DropLastIfEqualRemovesOnlyWhenAsked) {
    PolyLine line = Corner();
    EXPECT_FALSE(PolyLine().DropLastIfEqual({0, 0, 0}, true));
    EXPECT_FALSE(line.DropLastIfEqual({10, 5.0002, 0}, true));
    EXPECT_EQ(3u, line.count);
    EXPECT_TRUE(line.DropLastIfEqual({10, 5.00005, 0}, false));
    EXPECT_EQ(3u, line.count);
    EXPECT_TRUE(line.DropLastIfEqual({10, 5.00005, 0}, true));
    EXPECT_EQ(2u, line.count);
}

// --- Segments.

void ExpectSegment(const Point3d& start, const Point3d& end, const Line& line) {
    EXPECT_EQ(1, line.valid);
    ExpectPoint(start, line.Start());
    ExpectPoint(end, line.End());
}

void ExpectNoSegment(const Line& line) {
    EXPECT_EQ(0, line.valid);
    ExpectPoint({0, 0, 0}, line.Start());
    ExpectPoint({0, 0, 0}, line.End());
}

TEST(PolyLine, SegmentsOfAnOpenLine) {
    const PolyLine line = Corner();
    ExpectSegment({0, 0, 0}, {10, 0, 0}, line.GetSegment(0));
    ExpectSegment({10, 0, 0}, {10, 5, 0}, line.GetSegment(1));
    for (const int index : {-1, 2, 3, 1000000}) ExpectNoSegment(line.GetSegment(index));
    ExpectNoSegment(PolyLine().GetSegment(0));
    ExpectNoSegment(PolyLine().GetSegment(-1));
    ExpectNoSegment(Make({{1, 2, 3}}).GetSegment(0));
}

TEST(PolyLine, SegmentsOfAClosedLineEndWithADegenerateOne) {
    const PolyLine line = Square();
    ExpectSegment({0, 4, 0}, {0, 0, 0}, line.GetSegment(3));
    ExpectSegment({0, 0, 0}, {0, 0, 0}, line.GetSegment(4));
    ExpectNoSegment(line.GetSegment(5));
    ExpectNoSegment(line.GetSegment(-1));
    // Not sorted: the direction stays that of the vertices.
    ExpectSegment({4, 4, 0}, {0, 4, 0}, line.GetSegment(2));
}

// --- The nearest segment.

TEST(PolyLineNearest, IsTheLowestOfEquallyNearOnes) {
    const PolyLine line = Corner();
    double distance = 0;
    EXPECT_EQ(0, line.NearestSegment({13, -4, 0}, &distance));  // the common vertex is nearest
    EXPECT_EQ(5.0, distance);
    EXPECT_EQ(0, line.NearestSegment({8, 2, 0}, &distance));  // 2 from both
    EXPECT_EQ(2.0, distance);
    EXPECT_EQ(1, line.NearestSegment({8.5, 2, 0}, &distance));
    EXPECT_EQ(1.5, distance);
    EXPECT_EQ(0, line.NearestSegment({5, 0, 0}));
}

TEST(PolyLineNearest, IsInPlan) {
    const PolyLine line = Make({{0, 0, 100}, {10, 0, 200}, {10, 5, 300}});
    double distance = 0;
    EXPECT_EQ(0, line.NearestSegment({5, 3, -500}, &distance));
    EXPECT_EQ(3.0, distance);
}

TEST(PolyLineNearest, BelowTwoVertices) {
    double distance = 77;
    int side = 5;
    EXPECT_EQ(0, PolyLine().NearestSegment({1, 2, 3}, &distance, &side));
    EXPECT_EQ(77.0, distance);
    EXPECT_EQ(0, side);
    side = 5;
    const PolyLine one = Make({{0, 0, 0}});
    EXPECT_EQ(0, one.NearestSegment({3, 0, 4}, &distance, &side));
    EXPECT_EQ(5.0, distance);  // in 3D
    EXPECT_EQ(0, side);
    EXPECT_EQ(0, one.NearestSegment({3, 0, 4}));
}

TEST(PolyLineNearest, OfAClosedLineStaysWithinTheStoredVertices) {
    const PolyLine line = Square();
    EXPECT_EQ(3, line.NearestSegment({-1, 2, 0}));
    EXPECT_EQ(0, line.NearestSegment({-1, -1, 0}));  // segments 0 and 3 share the corner
}

TEST(PolyLineNearest, SideBesideASegmentIsMinusOneOnTheLeft) {
    const PolyLine line = Corner();
    int side = 7;
    line.NearestSegment({5, 1, 0}, nullptr, &side);
    EXPECT_EQ(-1, side);
    line.NearestSegment({5, -1, 0}, nullptr, &side);
    EXPECT_EQ(1, side);
    line.NearestSegment({5, 0, 0}, nullptr, &side);
    EXPECT_EQ(0, side);
    EXPECT_EQ(-1, line.SideOf({5, 1, 0}));
    EXPECT_EQ(0, PolyLine().SideOf({5, 1, 0}));
}

TEST(PolyLineNearest, SideBeyondTheLastEndsComesFromThePoint) {
    const PolyLine line = Corner();
    EXPECT_EQ(-1, line.SideOf({-3, 1, 0}));  // before the first vertex: no neighbour
    EXPECT_EQ(1, line.SideOf({-3, -1, 0}));
    EXPECT_EQ(-1, line.SideOf({9, 8, 0}));  // behind the last vertex
    EXPECT_EQ(1, line.SideOf({11, 8, 0}));
}

TEST(PolyLineNearest, SideAtACornerComesFromTheNeighbourWithTheOppositeSign) {
    // Outside the corner, beyond the end of segment 0: the next vertex lies left of it, which gives
    // 1, whereas a point to the left gives -1.
    EXPECT_EQ(1, Corner().SideOf({12, -1, 0}));
    // The mirrored corner: the next vertex lies right.
    EXPECT_EQ(-1, Make({{0, 0, 0}, {10, 0, 0}, {10, -5, 0}}).SideOf({12, 1, 0}));
    // Before the start of segment 1, which wins when segment 0 is farther: a detached overlap.
    const PolyLine bent = Make({{0, 3, 0}, {0, 100, 0}, {0, 2, 0}, {10, 2, 0}});
    int side = 7;
    EXPECT_EQ(1, bent.NearestSegment({-1, 1, 0}, nullptr, &side));
    // Nearest to the vertex (0, 2): segment 1 ends there (parameter above 1), vertex 3 is to its
    // left.
    EXPECT_EQ(1, side);
}

TEST(PolyLineNearest, SideBeforeASegmentComesFromThePrecedingVertex) {
    // A segment wins with a parameter below 0 and a neighbour before it only by rounding or when
    // the segment before is without length but not closed: its distance is the same and it comes
    // first. So the vertex before is given a little offset.
    const PolyLine line = Make({{-5, 7, 0}, {0, 1e-9, 0}, {0, 0, 0}, {10, 0, 0}});
    int side = 7;
    // From below, (0, 0) is nearer than (0, 1e-9): segment 1 (length 1e-9: a point, side 1)
    // measures from its start, segment 2 from (0, 0) with a parameter below 0.
    EXPECT_EQ(2, line.NearestSegment({-1e-3, -1e-3, 0}, nullptr, &side));
    // The vertex before, (0, 1e-9), gives a cross product of 1e-8, below 0.01.
    EXPECT_EQ(0, side);
}

TEST(PolyLineNearest, NeighbourSideIsZeroStrictlyBelowAHundredth) {
    // Direction (1, 0): the cross product is the y of the neighbour.
    const auto sideWith = [](double y) {
        return Make({{0, 0, 0}, {1, 0, 0}, {2, y, 0}}).SideOf({1 + 1e-6, -5, 0});
    };
    EXPECT_EQ(0, sideWith(std::nextafter(0.01, 0)));
    EXPECT_EQ(1, sideWith(0.01));
    EXPECT_EQ(1, sideWith(0.5));
}

TEST(PolyLineNearest, OfTwoEqualVerticesWorksOnASegmentWithoutLength) {
    const PolyLine point = Make({{3, 4, 0}, {3, 4, 0}});
    double distance = 0;
    int side = 7;
    EXPECT_EQ(0, point.NearestSegment({0, 0, 9}, &distance, &side));
    EXPECT_EQ(5.0, distance);
    EXPECT_EQ(1, side);
}

TEST(PolyLineNearest, OfUnusableCoordinatesIsTheFirst) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    double distance = 0;
    int side = 7;
    EXPECT_EQ(0, Corner().NearestSegment({nan, 0, 0}, &distance, &side));
    EXPECT_EQ(std::numeric_limits<double>::max(), distance);
    EXPECT_EQ(0, side);
    // A vertex that is no number makes its two segments lose.
    const PolyLine broken = Make({{0, 0, 0}, {nan, 0, 0}, {5, 5, 0}, {9, 5, 0}});
    EXPECT_EQ(2, broken.NearestSegment({0, 1, 0}));
}

TEST(PolyLineNearest, MinDistanceIsInPlanAndMinusOneForNothing) {
    EXPECT_EQ(-1.0, PolyLine().MinDistance2d({1, 2, 3}));
    EXPECT_EQ(5.0, Make({{0, 0, 0}}).MinDistance2d({3, 4, 99}));
    EXPECT_EQ(2.0, Corner().MinDistance2d({5, -2, 99}));
}

// --- Lengths.

TEST(PolyLineLength, SumsTheSegments) {
    const PolyLine line = Make({{0, 0, 0}, {3, 4, 0}, {3, 4, 12}, {0, 0, 12}});
    EXPECT_EQ(22.0, line.Length());
    EXPECT_EQ(10.0, line.Length2d());
    EXPECT_EQ(34.0, line.PerimeterLength());
    EXPECT_EQ(0.0, PolyLine().Length());
    EXPECT_EQ(0.0, Make({{1, 2, 3}}).Length());
    EXPECT_EQ(0.0, PolyLine().Length2d());
    EXPECT_EQ(0.0, Make({{1, 2, 3}}).PerimeterLength());
    EXPECT_EQ(0.0, PolyLine().PerimeterLength());
    EXPECT_EQ(16.0, Square().Length());
    EXPECT_EQ(16.0, Square().PerimeterLength());
}

TEST(PolyLineLength, ToAVertexStopsAtTheEnds) {
    const PolyLine line = Corner();
    EXPECT_EQ(0.0, line.LengthToVertex(0));
    EXPECT_EQ(10.0, line.LengthToVertex(1));
    EXPECT_EQ(15.0, line.LengthToVertex(2));
    EXPECT_EQ(15.0, line.LengthToVertex(3));
    EXPECT_EQ(15.0, line.LengthToVertex(1000000));
    EXPECT_EQ(0.0, line.LengthToVertex(-1));
    EXPECT_EQ(0.0, PolyLine().LengthToVertex(5));
}

TEST(PolyLineLength, QueriesIgnoreTheOffset) {
    PolyLine line = Corner();
    line.offset = {1000, 1000, 1000};
    EXPECT_EQ(15.0, line.Length());
    EXPECT_EQ(0, line.NearestSegment({5, 0, 0}));
    EXPECT_EQ(0.0, line.MinDistance2d({5, 0, 0}));
    ExpectPoint({0, 0, 0}, line.GetSegment(0).Start());
}

// --- Points at a length.

TEST(PolyLinePoint, AtAFractionWithSegmentAndPosition) {
    const PolyLine line = Corner();
    Point3d p;
    int segment = -7;
    double position = -7;
    line.PointAtFraction(&p, 0.5, &segment, &position, 0);
    ExpectNear({7.5, 0, 0}, p, 1e-14);
    EXPECT_EQ(0, segment);
    EXPECT_NEAR(0.75, position, 1e-15);
    line.PointAtFraction(&p, 0.8, &segment, &position, 0);
    ExpectNear({10, 2, 0}, p, 1e-14);
    EXPECT_EQ(1, segment);
    EXPECT_NEAR(0.4, position, 1e-15);
    line.PointAtFraction(&p, 0.0, &segment, &position, 0);
    ExpectPoint({0, 0, 0}, p);
    EXPECT_EQ(0, segment);
    EXPECT_EQ(0.0, position);
    line.PointAtFraction(&p, 0.8);
    ExpectNear({10, 2, 0}, p, 1e-14);
}

TEST(PolyLinePoint, AtFractionOneLiesOnTheLastSegment) {
    Point3d p;
    int segment = -7;
    double position = -7;
    Corner().PointAtFraction(&p, 1.0, &segment, &position, 0);
    ExpectPoint({10, 5, 0}, p);
    EXPECT_EQ(1, segment);
    EXPECT_EQ(1.0, position);
}

TEST(PolyLinePoint, BeyondTheEndsIsTheEnd) {
    Point3d p;
    int segment = -7;
    double position = -7;
    Corner().PointAtFraction(&p, -0.1, &segment, &position, 0);
    ExpectPoint({0, 0, 0}, p);
    EXPECT_EQ(0, segment);
    EXPECT_EQ(0.0, position);
    Corner().PointAtFraction(&p, 1.1, &segment, &position, 0);
    ExpectPoint({10, 5, 0}, p);
    EXPECT_EQ(1, segment);
    EXPECT_EQ(1.0, position);
}

TEST(PolyLinePoint, BelowTwoVerticesLeavesSegmentAndPositionAlone) {
    Point3d p(9, 9, 9);
    int segment = -7;
    double position = -7;
    PolyLine().PointAtFraction(&p, 0.5, &segment, &position, 3);
    EXPECT_EQ(0.0, p.x);
    EXPECT_EQ(0.0, std::fabs(p.y));
    Make({{1, 2, 3}}).PointAtFraction(&p, 0.5, &segment, &position, 0);
    ExpectPoint({1, 2, 3}, p);
    EXPECT_EQ(-7, segment);
    EXPECT_EQ(-7.0, position);
}

TEST(PolyLinePoint, AtAVertexTheFollowingSegmentAnswers) {
    Point3d p;
    int segment = -7;
    double position = -7;
    // The sum at vertex 1 equals the target: the walk goes on.
    Make({{0, 0, 0}, {8, 0, 0}, {8, 8, 0}}).PointAtFraction(&p, 0.5, &segment, &position, 0);
    EXPECT_EQ(1, segment);
    EXPECT_EQ(0.0, position);
    ExpectPoint({8, 0, 0}, p);
}

TEST(PolyLinePoint, SideOffsetIsToTheRightOfTheWay) {
    const PolyLine line = Corner();
    Point3d p;
    line.PointAtFraction(&p, 0.5, nullptr, nullptr, 2);
    ExpectNear({7.5, -2, 0}, p, 1e-14);
    line.PointAtFraction(&p, 0.8, nullptr, nullptr, -2);
    ExpectNear({8, 2, 0}, p, 1e-14);
    line.PointAtFraction(&p, -1, nullptr, nullptr, 2);
    ExpectPoint({0, -2, 0}, p);
    line.PointAtFraction(&p, 2, nullptr, nullptr, 2);
    ExpectPoint({12, 5, 0}, p);
    // Below the tolerance it is nothing, at it it counts.
    line.PointAtFraction(&p, 0.8, nullptr, nullptr, std::nextafter(0.0001, 0));
    EXPECT_EQ(10.0, p.x);
    line.PointAtFraction(&p, 0.8, nullptr, nullptr, -0.0001);
    EXPECT_NEAR(10 - 0.0001, p.x, 1e-12);
    EXPECT_NE(10.0, p.x);
}

TEST(PolyLinePoint, SideOffsetUsesTheDirectionInSpace) {
    // Rising 3:4, the plan part of the unit direction is 0.6.
    Point3d p;
    Make({{0, 0, 0}, {3, 0, 4}}).PointAtFraction(&p, 0.0, nullptr, nullptr, 10);
    ExpectNear({0, -6, 0}, p, 1e-14);
}

TEST(PolyLinePoint, OnAShortSegmentTheWayBackIsTheParameter) {
    // The last segment is 0.00005 long. A target half way leaves 0.000025, used undivided as
    // parameter from the end backwards: nearly the end itself.
    const PolyLine line = Make({{0, 0, 0}, {0.00005, 0, 0}});
    Point3d p;
    int segment = -7;
    double position = -7;
    line.PointAtFraction(&p, 0.5, &segment, &position, 0);
    EXPECT_EQ(0, segment);
    EXPECT_NEAR(0.5, position, 1e-12);
    EXPECT_NEAR(0.00005 - 0.000025 * 0.00005, p.x, 1e-18);
}

TEST(PolyLinePoint, PositionOnASegmentWithoutLengthIsNoNumber) {
    Point3d p;
    int segment = -7;
    double position = 0;
    Make({{3, 4, 0}, {3, 4, 0}}).PointAtFraction(&p, 0.5, &segment, &position, 0);
    ExpectPoint({3, 4, 0}, p);
    EXPECT_EQ(0, segment);
    EXPECT_TRUE(std::isnan(position));
}

TEST(PolyLinePoint, AtALength) {
    const PolyLine line = Corner();
    Point3d p;
    int segment = -7;
    double position = -7;
    line.PointAtLength(&p, 12, &segment, &position, 0);
    ExpectNear({10, 2, 0}, p, 1e-14);
    EXPECT_EQ(1, segment);
    EXPECT_NEAR(0.4, position, 1e-15);
    line.PointAtLength(&p, 99);
    ExpectPoint({10, 5, 0}, p);
    line.PointAtLength(&p, -1);
    ExpectPoint({0, 0, 0}, p);
    // A total below 0.0001: the length is taken as the fraction.
    const PolyLine tiny = Make({{0, 0, 0}, {0.00005, 0, 0}});
    tiny.PointAtLength(&p, 2);
    EXPECT_EQ(0.00005, p.x);
    tiny.PointAtLength(&p, 0.5, &segment, &position, 0);
    EXPECT_NEAR(0.5, position, 1e-12);
}

// --- Directions.

TEST(PolyLineDirection, IsTheUnitVectorOfTheSegmentInSpace) {
    const PolyLine line = Make({{0, 0, 0}, {3, 0, 4}, {3, 7, 4}});
    Point3d d;
    line.DirectionAtLength(&d, 2);
    ExpectNear({0.6, 0, 0.8}, d, 1e-15);
    line.DirectionAtLength(&d, 7);
    ExpectPoint({0, 1, 0}, d);
    line.DirectionAtLength(&d, -5);
    ExpectNear({0.6, 0, 0.8}, d, 1e-15);
    line.DirectionAtLength(&d, 500);
    ExpectPoint({0, 1, 0}, d);
    line.NormalAtLength(&d, 2);
    ExpectNear({0, -0.6, 0}, d, 1e-15);
    line.NormalAtLength(&d, 7);
    ExpectPoint({1, 0, 0}, d);
}

TEST(PolyLineDirection, OfTooFewVerticesIsZero) {
    Point3d d(9, 9, 9);
    PolyLine().DirectionAtLength(&d, 0);
    ExpectPoint({0, 0, 0}, d);
    d = {9, 9, 9};
    Make({{1, 2, 3}}).DirectionAtLength(&d, 0);
    ExpectPoint({0, 0, 0}, d);
}

TEST(PolyLineDirection, OfAShortSegmentStaysAsItIs) {
    Point3d d;
    Make({{0, 0, 0}, {0.00005, 0, 0}}).DirectionAtLength(&d, 0);
    ExpectPoint({0.00005, 0, 0}, d);
    Make({{1, 1, 1}, {1, 1, 1}}).DirectionAtLength(&d, 0);
    ExpectPoint({0, 0, 0}, d);
}

TEST(PolyLineDirection, AtAVertexUsuallyTheFollowingSegmentAnswers) {
    const PolyLine line = Make({{0, 0, 0}, {8, 0, 0}, {8, 8, 0}});
    Point3d d;
    line.DirectionAtLength(&d, line.LengthToVertex(1));
    ExpectPoint({0, 1, 0}, d);
}

TEST(PolyLineDirection, RoundingBelowTheSumAtAVertexGivesThePrecedingSegment) {
    // 15 / 22 * 22 is one step below 15: the walk stops at the vertex, and segment 0 answers.
    const PolyLine line = Make({{0, 0, 0}, {15, 0, 0}, {15, 7, 0}});
    ASSERT_LT(22.0 * (15.0 / 22.0), 15.0);
    Point3d d;
    line.DirectionAtLength(&d, line.LengthToVertex(1));
    ExpectPoint({1, 0, 0}, d);
    int segment = -7;
    Point3d p;
    line.PointAtLength(&p, 15, &segment, nullptr, 0);
    EXPECT_EQ(0, segment);
}

TEST(PolyLineDirection, AtTheLastVertexTheLastSegmentAnswers) {
    const PolyLine line = Square();
    Point3d d;
    line.DirectionAtLength(&d, line.Length());
    ExpectPoint({0, -1, 0}, d);
}

}  // namespace
}  // namespace TamLib
