// The parallel curve of a PolyArc: sense, corners, arcs that vanish.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "GeomStructs/PolyArc.h"
#include "tests/GeomStructs/TextLines.h"

namespace TamLib {
namespace {

PolyArc Offset(const PolyArc& line, double distance) {
    PolyArc result;
    result.AddVertex({9, 9, 9}, 0);
    line.Offset(&result, distance);
    return result;
}
PolyArc Straight(const char* text) {
    return PolyArc(FromText(text));
}
// The vertices, rounded to a millionth.
std::string Rounded(const PolyArc& line) {
    PolyLine rounded;
    for (const Point3d& p : line)
        rounded.Append({std::round(p.x * 1e6) / 1e6 + 0.0, std::round(p.y * 1e6) / 1e6 + 0.0, p.z});
    return ToText(rounded);
}
PolyArc HalfCircle(double height) {
    PolyArc line;
    line.AddVertex({0, 0, 0}, 0);
    line.AddVertex({10, 0, 0}, height);
    return line;
}
PolyArc FilletedCorner() {
    PolyArc line;
    line.AddVertex({0, 0, 0}, 0);
    line.AddVertex({10, 0, 0}, 0);
    line.AddVertex({15, 5, 0}, 0);
    line.SetBulgeAt(1, std::tan(3.141592653589793 / 8));  // a quarter turn to the left
    line.AddVertex({15, 20, 0}, 0);
    return line;
}

TEST(PolyArcOffset, VerticesNearerThan1e07GoFirst) {
    EXPECT_EQ(2u, Offset(Straight("0 0, 0.000000099 0, 10 0"), 1).count);
    EXPECT_EQ(3u, Offset(Straight("0 0, 0.000000101 0, 10 0"), 1).count);
}

TEST(PolyArcOffset, ArcsBelowAHeightOf0p0001BecomeStraight) {
    const PolyArc straight = Offset(HalfCircle(0.000099), 1), flat = Offset(HalfCircle(0.0001), 1);
    EXPECT_EQ(0.0, straight.HeightAt(0));
    EXPECT_NEAR(0.0001, flat.HeightAt(0), 1e-8);
    EXPECT_NE(0.0, flat.HeightAt(0));
}

TEST(PolyArcOffset, AnArcTooSmallForTheDigitsOfItsPlaceLosesIt) {
    const double distance = 5 - 1e-10;
    EXPECT_EQ(2u, Offset(HalfCircle(5), distance).count);
    PolyArc far = HalfCircle(5);
    far += Point3d(25496000, 6672000, 0);
    EXPECT_EQ(0u, Offset(far, distance).count);
}

TEST(PolyArcOffset, PositiveIsRightOfAnOpenWay) {
    EXPECT_EQ("0 -1, 10 -1", Rounded(Offset(Straight("0 0, 10 0"), 1)));
    EXPECT_EQ("0 1, 10 1", Rounded(Offset(Straight("0 0, 10 0"), -1)));
}

TEST(PolyArcOffset, PositiveIsOutwardOfAClosedOneOfEitherSense) {
    const PolyArc ring = Straight("(0 0, 10 0, 10 10, 0 10)");
    EXPECT_EQ("-1 -1, 11 -1, 11 11, -1 11, -1 -1", Rounded(Offset(ring, 1)));
    EXPECT_EQ("1 1, 9 1, 9 9, 1 9, 1 1", Rounded(Offset(ring, -1)));
    const PolyArc clockwise = Straight("(0 0, 0 10, 10 10, 10 0)");
    EXPECT_EQ("-1 -1, -1 11, 11 11, 11 -1, -1 -1", Rounded(Offset(clockwise, 1)));
    EXPECT_EQ("1 1, 1 9, 9 9, 9 1, 1 1", Rounded(Offset(clockwise, -1)));
}

TEST(PolyArcOffset, TheLastVertexOfAClosedOneIsTheFirstToTheBit) {
    const PolyArc result = Offset(Straight("(0.1 0.2, 10.7 0.3, 9.9 10.1)"), 0.7);
    const Point3d &first = result.data[0], &last = result.data[result.count - 1];
    EXPECT_EQ(first.x, last.x);
    EXPECT_EQ(first.y, last.y);
}

TEST(PolyArcOffset, BelowADistanceOf0p0001ItIsACopyThatIsNotCleaned) {
    PolyArc line = Straight("0 0, 0 0.00000001, 10 0");
    line.SetHeightAt(1, 2.0);
    for (const double distance : {0.0, 0.000099999, -0.000099999}) {
        const PolyArc copy = Offset(line, distance);
        EXPECT_EQ(ToText(line), ToText(copy));
        EXPECT_EQ(2.0, copy.HeightAt(1));
    }
    EXPECT_EQ(2u, Offset(line, 0.0001).count);  // cleaned
}

TEST(PolyArcOffset, AnArcKeepsItsCentreAndGetsAnotherRadius) {
    // Clockwise: its right is inside.
    const PolyArc smaller = Offset(HalfCircle(5), 2);
    EXPECT_EQ("2 0, 8 0", Rounded(smaller));
    EXPECT_NEAR(3.0, smaller.HeightAt(0), 1e-12);
    const PolyArc larger = Offset(HalfCircle(-5), 2);
    EXPECT_EQ("-2 0, 12 0", Rounded(larger));
    EXPECT_NEAR(-7.0, larger.HeightAt(0), 1e-12);
}

TEST(PolyArcOffset, AnArcWithoutARadiusLeftLosesItsPlace) {
    EXPECT_EQ(0u, Offset(HalfCircle(5), 5).count);
    EXPECT_EQ(0u, Offset(HalfCircle(5), 7).count);
    EXPECT_EQ(2u, Offset(HalfCircle(5), 4.999).count);
    // Its neighbours meet in its place.
    EXPECT_EQ("0 6, 9 6, 9 20", Rounded(Offset(FilletedCorner(), -6)));
}

TEST(PolyArcOffset, TangentPiecesStayTangent) {
    const PolyArc outside = Offset(FilletedCorner(), 1);
    EXPECT_EQ("0 -1, 10 -1, 16 5, 16 20", Rounded(outside));
    EXPECT_NEAR(std::tan(3.141592653589793 / 8), outside.BulgeAt(1), 1e-9);
    EXPECT_EQ(0.0, outside.HeightAt(0));
    EXPECT_EQ("0 1, 10 1, 14 5, 14 20", Rounded(Offset(FilletedCorner(), -1)));
}

TEST(PolyArcOffset, ALineAndAnArcAreCutWhereTheyMeetNearestToTheCorner) {
    // Up to a half circle over (10, 0) ... (20, 0), clockwise about (15, 0).
    PolyArc line;
    line.AddVertex({0, 0, 0}, 0);
    line.AddVertex({10, 0, 0}, 0);
    line.AddVertex({20, 0, 0}, 5);
    // To the left by 1: y = 1 and the circle of radius 6.
    const PolyArc left = Offset(line, -1);
    const double x = 15 - std::sqrt(35.0);
    ASSERT_EQ(3u, left.count);
    EXPECT_LT(Distance({x, 1, 0}, left.data[1]), 1e-9);
    EXPECT_LT(Distance({21, 0, 0}, left.data[2]), 1e-9);
    Point3d centre;
    left.GetArc(1).Centre(centre);
    EXPECT_LT(Distance2d({15, 0, 0}, centre), 1e-9);
    EXPECT_NEAR(6.0, left.GetArc(1).Radius(), 1e-9);
}

TEST(PolyArcOffset, TwoArcsAreCutWhereTheyMeet) {
    // Two half circles side by side; both grow to the left and meet over the vertex between them.
    PolyArc line = HalfCircle(5);
    line.AddVertex({20, 0, 0}, 5);
    const PolyArc left = Offset(line, -1);
    ASSERT_EQ(3u, left.count);
    EXPECT_LT(Distance({10, std::sqrt(11.0), 0}, left.data[1]), 1e-9);
    for (int i = 0; i < 2; ++i) {
        EXPECT_NEAR(6.0, left.GetArc(i).Radius(), 1e-9);
        Point3d centre;
        left.GetArc(i).Centre(centre);
        EXPECT_LT(Distance2d({i == 0 ? 5.0 : 15.0, 0, 0}, centre), 1e-9);
    }
    // They shrink apart to the right: a straight joint.
    EXPECT_EQ("1 0, 9 0, 11 0, 19 0", Rounded(Offset(line, 1)));
    EXPECT_EQ(0.0, Offset(line, 1).HeightAt(1));
}

TEST(PolyArcOffset, ArcsOfWhichOneCircleHoldsTheOtherGetAStraightJoint) {
    // Circles of 5 and 3 that cross become circles of 6 and 2 that don't.
    PolyArc line = HalfCircle(-5);
    const Point3d centre(8, std::sqrt(5.0), 0), end(5, std::sqrt(5.0), 0);
    line.AddVertex(end, Arc(centre, {10, 0, 0}, end, /*clockwise=*/true).height);
    const PolyArc inside = Offset(line, 1);
    ASSERT_EQ(4u, inside.count);
    EXPECT_NEAR(6.0, inside.GetArc(0).Radius(), 1e-9);
    EXPECT_EQ(0.0, inside.HeightAt(1));
    EXPECT_NEAR(2.0, inside.GetArc(2).Radius(), 1e-9);
    // Back along the same circle: circles of one centre.
    PolyArc back = HalfCircle(5);
    back.AddVertex({0, 0, 0}, -5);
    EXPECT_EQ("1 0, 9 0, 11 0, -1 0, 1 0", Rounded(Offset(back, 1)));
}

TEST(PolyArcOffset, StraightPiecesReachThreeUnitsBeyondTheirEnds) {
    // An outer right angle needs an extension by the distance.
    const char* const corner = "0 0, 100 0, 100 100";
    EXPECT_EQ("0 -3, 103 -3, 103 100", Rounded(Offset(Straight(corner), 3)));
    EXPECT_EQ("0 -3.1, 100 -3.1, 103.1 0, 103.1 100", Rounded(Offset(Straight(corner), 3.1)));
    // An inner one needs none.
    EXPECT_EQ("0 40, 60 40, 60 100", Rounded(Offset(Straight(corner), -40)));
}

TEST(PolyArcOffset, AStraightJointAtTheClosingCornerClosesTheRing) {
    const PolyArc ring = Offset(Straight("(0 0, 100 0, 100 100, 0 100)"), 4);
    EXPECT_EQ("0 -4, 100 -4, 104 0, 104 100, 100 104, 0 104, -4 100, -4 0, 0 -4", Rounded(ring));
}

TEST(PolyArcOffset, StraightOnThereIsOneVertex) {
    EXPECT_EQ("0 -1, 5 -1, 10 -1", Rounded(Offset(Straight("0 0, 5 0, 10 0"), 1)));
}

TEST(PolyArcOffset, ACircleOfTwoArcsCountsAsCounterClockwise) {
    PolyArc circle;
    circle.AddVertex({5, 0, 0}, 0);
    circle.AddVertex({-5, 0, 0}, 5);
    circle.AddVertex({5, 0, 0}, 5);
    // Intended: its vertices have no sense, so that positive is right of the way, which is inside.
    EXPECT_EQ("4 0, -4 0, 4 0", Rounded(Offset(circle, 1)));
    EXPECT_EQ("6 0, -6 0, 6 0", Rounded(Offset(circle, -1)));
    EXPECT_EQ(0u, Offset(circle, 5).count);
}

TEST(PolyArcOffset, ABulgedRingGrowsAndShrinks) {
    PolyArc ring = Straight("(0 0, 10 0, 10 10, 0 10)");
    ring.SetHeightAt(1, -5);
    const PolyArc larger = Offset(ring, 1);
    EXPECT_EQ("-1 -1, 10 -1, 10 11, -1 11, -1 -1", Rounded(larger));
    EXPECT_NEAR(-6.0, larger.HeightAt(1), 1e-9);
    EXPECT_NEAR(11 * 12 + 18 * 3.141592653589793, larger.Area(), 1e-6);
}

TEST(PolyArcOffset, KeepsHeightsAndShiftAndMayBeGivenItself) {
    PolyArc line = Straight("0 0 1, 10 0 2, 10 10 3");
    line.offset = {7, 8, 9};
    line.Offset(&line, 1);
    EXPECT_EQ("0 -1 1, 11 -1 2, 11 10 3", Rounded(line));
    EXPECT_EQ(8.0, line.offset.y);
    EXPECT_EQ(line.count - 1, line.heights.count);
}

TEST(PolyArcOffset, OfLessThanTwoVerticesIsEmpty) {
    EXPECT_EQ(0u, Offset(PolyArc(), 1).count);
    EXPECT_EQ(0u, Offset(Straight("1 2"), 1).count);
}

TEST(PolyArcOffset, FarAwayItIsTheSame) {
    const Point3d place(25496000, 6672000, 0);
    PolyArc line = FilletedCorner();
    line += place;
    PolyArc result = Offset(line, 1);
    result += Point3d() - place;
    const PolyArc near = Offset(FilletedCorner(), 1);
    ASSERT_EQ(near.count, result.count);
    for (std::uint32_t i = 0; i < near.count; ++i)
        EXPECT_LT(Distance(near.data[i], result.data[i]), 1e-6);
    EXPECT_NEAR(near.HeightAt(1), result.HeightAt(1), 1e-6);
}

// Of arcs as flat as they may be the digits of far coordinates shift the centre by metres.
TEST(PolyArcOffset, FarAwayFlatArcsAreCutWhereTheyMeetToo) {
    const Point3d place(25496000, 6672000, 0);
    PolyArc withStraight = Straight("0 0, 100 0, 180 60"),
            withArc = Straight("0 0, 500 0, 900 300");
    withStraight.SetHeightAt(0, 0.0001);
    withArc.SetHeightAt(0, 0.0001);
    withArc.SetHeightAt(1, 0.0002);
    for (PolyArc line : {withStraight, withArc}) {
        const PolyArc near = Offset(line, -1);
        EXPECT_EQ(3u, near.count);
        line += place;
        PolyArc far = Offset(line, -1);
        far += Point3d() - place;
        ASSERT_EQ(near.count, far.count);
        for (std::uint32_t i = 0; i < near.count; ++i)
            EXPECT_LT(Distance(near.data[i], far.data[i]), 1e-5) << i;
    }
}

// Intended: "nearest to the old vertex" is the only choice; the piece is not asked which of its
// ends a point is at.
TEST(PolyArcOffset, OfTwoMeetingsTheOneNearestToTheOldVertexCuts) {
    // The straight piece, y = 0.2, crosses more than a half circle twice, at 9.29 and 11.70.
    PolyArc line = Straight("0 0, 10 0, 11 0");
    line.SetHeightAt(1, 3);
    const PolyArc left = Offset(line, -0.2);
    ASSERT_EQ(3u, left.count);
    EXPECT_NEAR(9.29584054212077, left.data[1].x, 1e-12);
    EXPECT_NEAR(0.2, left.data[1].y, 1e-12);
}

}  // namespace
}  // namespace TamLib
