// Where PolyLine meets lines, arcs, circles and other polylines.
#include <gtest/gtest.h>

#include "GeomEnts/Arc.h"
#include "GeomEnts/circle.h"
#include "GeomStructs/PolyLine.h"
#include "tests/GeomStructs/TextLines.h"

namespace TamLib {
namespace {

Line Segment(const std::string& text) {
    return FromText(text).GetSegment(0);
}
std::string Indexes(const Array<int>& indexes) {
    std::string text;
    for (const int index : indexes) text += std::to_string(index) + ' ';
    return text;
}
// "points / segments" in segment order.
std::string Met(const PolyLine& line, const std::string& query, bool touchFirstEnd = false,
                int zMode = 0) {
    Array<int> segments;
    const PolyLine points = line.Intersections(Segment(query), &segments, touchFirstEnd, zMode);
    return ToText(points) + " / " + Indexes(segments);
}

PolyLine Zigzag() {
    return FromText("0 0, 4 4, 8 0, 12 4");
}

TEST(PolyLineCrosses, OneAsSoonAsASegmentIsCrossed) {
    EXPECT_EQ(1, Zigzag().Crosses(Segment("0 2, 12 2")));
    EXPECT_EQ(1, Zigzag().Crosses(Segment("4 4, 11 2")));  // touched before it is crossed
    EXPECT_EQ(2, Zigzag().Crosses(Segment("4 4, 4 9")));
    EXPECT_EQ(0, Zigzag().Crosses(Segment("0 9, 12 9")));
    EXPECT_EQ(0, PolyLine().Crosses(Segment("0 9, 12 9")));
    EXPECT_EQ(0, FromText("5 9").Crosses(Segment("0 9, 12 9")));
}

TEST(PolyLineCrosses, ALineWithinARingMeetsNothing) {
    EXPECT_EQ(0, FromText("(0 0, 9 0, 9 9, 0 9)").Crosses(Segment("2 2, 7 7")));
}

TEST(PolyLineCrosses, AnEndOnAnUprightSideCrossesIt) {
    EXPECT_EQ(1, FromText("(0 0, 9 0, 9 9, 0 9)").Crosses(Segment("9 5, 15 5")));
    EXPECT_EQ(2, FromText("(0 0, 9 0, 9 9, 0 9)").Crosses(Segment("5 9, 5.1 15")));
}

TEST(PolyLineCrosses, BeyondTheStoredBoxItLooksAtNothing) {
    PolyLine line = Zigzag();
    line.hasBounds = 1;
    line.minPoint = {0, 0, 0};
    line.maxPoint = {12, 1, 0};
    EXPECT_EQ(0, line.Crosses(Segment("0 2, 12 2")));
    EXPECT_EQ("", ToText(line.Intersections(Segment("0 2, 12 2"))));
    Point3d point;
    EXPECT_EQ(0, line.FirstIntersection(Segment("0 2, 12 2"), &point, true, nullptr));
    EXPECT_EQ(1, line.Crosses(Segment("0 2, 4 1")));  // one end is not beyond
    line.maxPoint.y = 2;
    EXPECT_EQ(1, line.Crosses(Segment("0 2, 12 2")));  // the limit itself is not beyond
}

TEST(PolyLineFirstIntersection, GivesTheFirstCrossing) {
    Point3d point;
    int index = 0;
    EXPECT_EQ(1, Zigzag().FirstIntersection(Segment("0 2, 12 2"), &point, true, &index));
    EXPECT_EQ(0, index);
    EXPECT_EQ(2.0, point.x);
    index = 1;
    EXPECT_EQ(1, Zigzag().FirstIntersection(Segment("0 2, 12 2"), &point, true, &index));
    EXPECT_EQ(1, index);
    EXPECT_EQ(6.0, point.x);
    index = -7;
    EXPECT_EQ(1, Zigzag().FirstIntersection(Segment("0 2, 12 2"), &point, true, &index));
    EXPECT_EQ(0, index);
    EXPECT_EQ(1, Zigzag().FirstIntersection(Segment("0 2, 12 2"), &point, true, nullptr));
}

TEST(PolyLineFirstIntersection, OfTouchesKeepsTheLast) {
    Point3d point;
    int index = 0;
    EXPECT_EQ(2, Zigzag().FirstIntersection(Segment("0 4, 12 4"), &point, true, &index));
    EXPECT_EQ(2, index);
    EXPECT_EQ(12.0, point.x);
    // A crossing behind a touch counts.
    index = 0;
    EXPECT_EQ(1, Zigzag().FirstIntersection(Segment("4 4, 11 2"), &point, true, &index));
    EXPECT_EQ(2, index);
}

TEST(PolyLineFirstIntersection, LeavesEverythingWithoutAny) {
    Point3d point(1, 2, 3);
    int index = 3;
    EXPECT_EQ(0, Zigzag().FirstIntersection(Segment("0 2, 12 2"), &point, true, &index));
    EXPECT_EQ(3, index);
    EXPECT_EQ(2.0, point.y);
}

TEST(PolyLineFirstIntersection, HeightIsThatOfTheLineAsked) {
    const PolyLine line = FromText("0 0 10, 10 0 20");
    const Line query = Segment("5 -5 100, 5.5 5 200");
    Point3d point;
    EXPECT_EQ(1, line.FirstIntersection(query, &point, /*lineFirst=*/true, nullptr));
    EXPECT_DOUBLE_EQ(150, point.z);
    EXPECT_EQ(1, line.FirstIntersection(query, &point, /*lineFirst=*/false, nullptr));
    EXPECT_DOUBLE_EQ(15.25, point.z);
}

TEST(PolyLineFirstIntersection, TheOrderDecidesWhetherAnUprightLineIsTouched) {
    const PolyLine upright = FromText("0 0, 0 10");
    Point3d point;
    EXPECT_EQ(1, upright.FirstIntersection(Segment("-5 5, 0 5"), &point, true, nullptr));
    EXPECT_EQ(2, upright.FirstIntersection(Segment("-5 5, 0 5"), &point, false, nullptr));
    // Intended: asked as an upright line, it is touched by an end that lies below it.
    EXPECT_EQ(0, upright.FirstIntersection(Segment("-5 -9, 0 -9"), &point, true, nullptr));
    EXPECT_EQ(2, upright.FirstIntersection(Segment("-5 -9, 0 -9"), &point, false, nullptr));
}

TEST(PolyLineIntersections, CrossingsInSegmentOrder) {
    EXPECT_EQ("2 2, 6 2, 10 2 / 0 1 2 ", Met(Zigzag(), "0 2, 12 2"));
    EXPECT_EQ("2 2, 6 2, 10 2 / 0 1 2 ", Met(Zigzag(), "12 2, 0 2"));
    EXPECT_EQ(" / ", Met(PolyLine(), "12 2, 0 2"));
    EXPECT_EQ(" / ", Met(FromText("6 2"), "12 2, 0 2"));
}

TEST(PolyLineIntersections, SegmentsAreAppended) {
    Array<int> segments;
    segments.Append(77);
    Zigzag().Intersections(Segment("0 2, 12 2"), &segments);
    EXPECT_EQ("77 0 1 2 ", Indexes(segments));
}

TEST(PolyLineIntersections, WithoutSegmentsTheyAreSortedAndUnique) {
    PolyLine line = FromText("8 0, 4 4, 0 0, 4 4, 8 0");
    const PolyLine points = line.Intersections(Segment("0 2, 12 2"));
    EXPECT_EQ("2 2, 6 2", ToText(points));
    EXPECT_TRUE(points.sorted);
    Array<int> segments;
    const PolyLine all = line.Intersections(Segment("0 2, 12 2"), &segments);
    EXPECT_EQ("6 2, 2 2, 2 2, 6 2", ToText(all));
    EXPECT_FALSE(all.sorted);
}

TEST(PolyLineIntersections, WithoutSegmentsPointsCloserThanAMillionthAreOne) {
    const PolyLine line = FromText("0 0, 1 9, 1.0000005 9, 0.0000005 0, 5 0");
    Array<int> segments;
    EXPECT_EQ(2u, line.Intersections(Segment("-1 3, 9 4"), &segments).count);
    EXPECT_EQ(1u, line.Intersections(Segment("-1 3, 9 4")).count);
}

TEST(PolyLineIntersections, ThroughAVertexCountsOnce) {
    const PolyLine line = FromText("0 0, 4 4, 8 8, 12 4");
    EXPECT_EQ("4 4 / 1 ", Met(line, "0 8, 6 2"));
    EXPECT_EQ(" / ", Met(line, "2 10, 14 6"));  // beside the apex
    EXPECT_EQ(" / ", Met(line, "4 8, 12 8"));   // touching it
    EXPECT_EQ("8 8, 8 8 / 1 2 ", Met(line, "4 8, 12 8", true));
    EXPECT_EQ("4 4 / 1 ", Met(FromText("0 0, 4 4, 9 5"), "0 8, 6 2"));  // of three vertices too
}

TEST(PolyLineIntersections, TheNeighboursDecideByACrossProductOfOneHundredth) {
    // The neighbours of (5, 0) lie 0.0009 and 0.0011 aside of a line of length 10.
    EXPECT_EQ(" / ", Met(FromText("4 0.0009, 5 0, 6 -3"), "0 0, 10 0"));
    EXPECT_EQ("5 0 / 1 ", Met(FromText("4 0.0011, 5 0, 6 -3"), "0 0, 10 0"));
}

TEST(PolyLineIntersections, ThroughVertexZeroOfARingCountsNothing) {
    const PolyLine diamond = FromText("(0 0, 5 5, 0 10, -5 5)");
    // Leaning a little, since an upright line is another matter.
    EXPECT_EQ("1 10 / 2 ", Met(FromText("(0 0, 5 5, 1 10, -5 5)"), "-0.5 -5, 1.5 15"));
    EXPECT_EQ(" / ", Met(diamond, "-0.5 -5, 0.2 2"));
}

TEST(PolyLineIntersections, AlongASegmentCountsNothing) {
    EXPECT_EQ(" / ", Met(FromText("0 0, 5 0, 5 5"), "0 0, 5 0"));
    EXPECT_EQ(" / ", Met(FromText("2 4, 3 0, 7 0, 8 -4"), "0 0, 10 0"));
}

TEST(PolyLineIntersections, EndingOnASegmentCountsOnlyWithTouchFirstEnd) {
    const PolyLine level = FromText("0 0, 10 0");
    EXPECT_EQ(" / ", Met(level, "5 0, 6 7"));
    EXPECT_EQ(" / ", Met(level, "6 7, 5 0"));
    EXPECT_EQ("5 0 / 0 ", Met(level, "6 7, 5 0", true));
    // Intended: on an upright one an end crosses.
    EXPECT_EQ("0 5 / 0 ", Met(FromText("0 0, 0 10"), "-7 5, 0 5"));
}

TEST(PolyLineIntersections, HeightsByMode) {
    const PolyLine line = FromText("0 0 10, 10 0 20");
    EXPECT_EQ("5 0 150 / 0 ", Met(line, "4 -5 100, 6 5 200", false, 0));
    EXPECT_EQ("5 0 15 / 0 ", Met(line, "4 -5 100, 6 5 200", false, 1));
    EXPECT_EQ("5 0 82.5 / 0 ", Met(line, "4 -5 100, 6 5 200", false, 2));
    EXPECT_EQ("5 0 / 0 ", Met(line, "4 -5 100, 6 5 200", false, 3));
}

TEST(PolyLineIntersections, OfACircle) {
    const PolyLine line = FromText("-5 0, 5 0, 5 9, 0 9, 0 -9");
    Array<int> segments;
    const PolyLine points = line.Intersections(Circle({0, 0, 7}, 3), &segments);
    EXPECT_EQ("0 0 3 3 ", Indexes(segments));
    ASSERT_EQ(4u, points.count);
    for (const Point3d& p : points) {
        EXPECT_NEAR(3, std::sqrt(p.x * p.x + p.y * p.y), 1e-12);
        EXPECT_EQ(7, p.z);
    }
    const PolyLine sorted = line.Intersections(Circle({0, 0, 7}, 3));
    EXPECT_TRUE(sorted.sorted);
    EXPECT_EQ(4u, sorted.count);
    EXPECT_EQ(-3, sorted.data[0].x);
    EXPECT_EQ(0u, PolyLine().Intersections(Circle({0, 0, 7}, 3)).count);
}

TEST(PolyLineIntersections, OfACircleTheTangentIsOnePointWhenSorted) {
    const PolyLine tangent = FromText("-5 3, 5 3");
    Array<int> segments;
    EXPECT_EQ(2u, tangent.Intersections(Circle({0, 0, 0}, 3), &segments).count);
    EXPECT_EQ("0 0 ", Indexes(segments));
    EXPECT_EQ(1u, tangent.Intersections(Circle({0, 0, 0}, 3)).count);
}

TEST(PolyLineIntersections, OfAnArc) {
    // A half circle above the x axis.
    const Arc arc(5.0, Line({-5, 0, 0}, {5, 0, 0}));
    const PolyLine line = FromText("-9 3, 9 3, 9 -3, -9 -3");
    Array<int> segments;
    const PolyLine points = line.Intersections(arc, &segments);
    EXPECT_EQ("0 0 ", Indexes(segments));
    ASSERT_EQ(2u, points.count);
    EXPECT_NEAR(4, std::fabs(points.data[0].x), 1e-12);
    EXPECT_NEAR(-4, line.Intersections(arc).data[0].x, 1e-12);
}

TEST(PolyLineIntersections, OfAPolylineAreJoined) {
    // The indexes are those of the other's segments.
    Array<int> segments;
    const PolyLine bar = FromText("0 1, 12 1, 12 3, 0 3");
    EXPECT_EQ("1 1, 7 1, 9 1, 3 3, 5 3, 11 3", ToText(bar.Intersections(Zigzag(), &segments)));
    EXPECT_EQ("0 1 2 0 1 2 ", Indexes(segments));
}

TEST(PolyLineNoding, AddsTheHitsBetweenTheEnds) {
    Array<int> vertices;
    const PolyLine line = FromText("0 2, 12 2, 12 3");
    EXPECT_EQ("0 2, 2 2, 6 2, 10 2, 12 2, 12 3",
              ToText(line.WithIntersections(Zigzag(), &vertices)));
    EXPECT_EQ("1 2 3 ", Indexes(vertices));
    PolyLine back = line;
    back.Reverse();
    EXPECT_EQ("12 3, 12 2, 10 2, 6 2, 2 2, 0 2", ToText(back.WithIntersections(Zigzag())));
}

TEST(PolyLineNoding, WithFewerThanTwoVerticesIsACopy) {
    PolyLine line = Zigzag();
    line.offset = {1, 2, 3};
    EXPECT_EQ(ToText(line), ToText(line.WithIntersections(FromText("4 4"))));
    EXPECT_EQ(2.0, line.WithIntersections(FromText("4 4")).offset.y);
    EXPECT_EQ(ToText(line), ToText(line.WithIntersections(PolyLine())));
    EXPECT_EQ("4 4", ToText(FromText("4 4").WithIntersections(line)));
}

TEST(PolyLineNoding, CapacityIsTheLargerOfTwentyAndTheOthersCount) {
    EXPECT_EQ(20u, Zigzag().WithIntersections(Zigzag()).increment);
    PolyLine other;
    for (int i = 0; i < 50; ++i) other.Append({i * 1.0, 9, 0});
    EXPECT_EQ(50u, Zigzag().WithIntersections(other).increment);
}

TEST(PolyLineNoding, HitsWithinTheToleranceOfAnEndAreNone) {
    const PolyLine line = FromText("0 0, 10 0");
    EXPECT_EQ("0 0, 10 0", ToText(line.WithIntersections(FromText("0.00009 -5, 0.00009 5"))));
    EXPECT_EQ(3u, line.WithIntersections(FromText("0.00011 -5, 0.00011 5")).count);
    // By all coordinates: at another height than the end it stays.
    EXPECT_EQ("0 0, 0 0 5, 10 0",
              ToText(line.WithIntersections(FromText("0 -5 5, 0 5 5"), nullptr, true, 1)));
}

TEST(PolyLineNoding, OfALineWithItself) {
    const PolyLine bow = FromText("(0 0, 10 10, 10 0, 0 10)");
    EXPECT_EQ("0 0, 5 5, 10 10, 10 0, 5 5, 0 10, 0 0", ToText(bow.WithIntersections(bow)));
    EXPECT_EQ(ToText(Zigzag()), ToText(Zigzag().WithIntersections(Zigzag())));
}

TEST(PolyLineNoding, TouchesAreNodesOnlyWithTouchFirstEnd) {
    const PolyLine level = FromText("0 0, 10 0"), ending = FromText("4 0, 5 5");
    EXPECT_EQ("0 0, 10 0", ToText(level.WithIntersections(ending)));
    EXPECT_EQ("0 0, 4 0, 10 0", ToText(level.WithIntersections(ending, nullptr, true)));
}

TEST(PolyLineNoding, HeightsByMode) {
    const PolyLine line = FromText("0 0 10, 10 0 20"), other = FromText("4 -5 100, 6 5 200");
    EXPECT_EQ("0 0 10, 5 0 15, 10 0 20", ToText(line.WithIntersections(other)));
    EXPECT_EQ("0 0 10, 5 0 150, 10 0 20", ToText(line.WithIntersections(other, nullptr, false, 1)));
}

}  // namespace
}  // namespace TamLib
