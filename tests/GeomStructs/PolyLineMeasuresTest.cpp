// The plan measures of PolyLine, and its moves and turns.
#include <gtest/gtest.h>

#include <cmath>

#include "GeomStructs/PolyLine.h"
#include "tests/GeomStructs/TextLines.h"

namespace TamLib {
namespace {

std::string Text(const Point3d& p) {
    PolyLine one;
    one.Append(p);
    return ToText(one);
}

TEST(PolyLineArea, ClosingVertexStoredOrNot) {
    EXPECT_EQ(12.0, FromText("(0 0, 4 0, 4 3, 0 3)").Area());
    EXPECT_EQ(12.0, FromText("0 0, 4 0, 4 3, 0 3").Area());
    EXPECT_EQ(12.0, FromText("(0 3, 4 3, 4 0, 0 0)").Area());
    EXPECT_EQ(6.0, FromText("0 0, 4 0, 4 3").Area());
}

TEST(PolyLineArea, BelowThreeVerticesIsZero) {
    EXPECT_EQ(0.0, PolyLine().Area());
    EXPECT_EQ(0.0, FromText("1 1").Area());
    EXPECT_EQ(0.0, FromText("1 1, 9 5").Area());
}

TEST(PolyLineArea, HeightsPlayNoPart) {
    EXPECT_EQ(12.0, FromText("0 0 9, 4 0 -7, 4 3 1e6, 0 3").Area());
}

TEST(PolyLineArea, LosesDigitsFarFromTheOrigin) {
    PolyLine triangle = FromText("(0 0, 0.7 0.1, 0.3 0.9)");
    EXPECT_DOUBLE_EQ(0.3, triangle.Area());
    triangle += Point3d(25e6, 7e6, 0);
    EXPECT_NEAR(0.3, triangle.Area(), 0.2);
    EXPECT_GT(std::fabs(triangle.Area() - 0.3), 1e-6);  // intended: coordinates as they are
}

TEST(PolyLineIsClockwise, BySign) {
    EXPECT_FALSE(FromText("(0 0, 4 0, 4 3)").IsClockwise());
    EXPECT_TRUE(FromText("(0 0, 4 3, 4 0)").IsClockwise());
    EXPECT_TRUE(FromText("0 0, 4 3, 4 0").IsClockwise());
    EXPECT_FALSE(FromText("0 0, 4 3").IsClockwise());
    EXPECT_FALSE(FromText("4 3").IsClockwise());
    EXPECT_FALSE(PolyLine().IsClockwise());
}

TEST(PolyLineCentroid, OfSquareAndTriangle) {
    Point3d p(9, 9, 9);
    EXPECT_TRUE(FromText("(0 0 5, 4 0 5, 4 4 5, 0 4 5)").GetCentroid(&p));
    EXPECT_EQ("2 2", Text(p));
    EXPECT_TRUE(FromText("0 0, 3 0, 0 3").GetCentroid(&p));
    EXPECT_EQ("1 1", Text(p));
    EXPECT_TRUE(FromText("0 0, 0 3, 3 0").GetCentroid(&p));
    EXPECT_EQ("1 1", Text(p));
}

TEST(PolyLineCentroid, OfAnLByItsParts) {
    Point3d p;
    EXPECT_TRUE(FromText("(0 0, 2 0, 2 1, 1 1, 1 2, 0 2)").GetCentroid(&p));
    EXPECT_DOUBLE_EQ(2.5 / 3, p.x);
    EXPECT_DOUBLE_EQ(2.5 / 3, p.y);
}

TEST(PolyLineCentroid, WithoutVerticesIsFalseAndTheOrigin) {
    Point3d p(9, 9, 9);
    EXPECT_FALSE(PolyLine().GetCentroid(&p));
    EXPECT_EQ("0 0", Text(p));
}

TEST(PolyLineCentroid, WithoutAreaIsTrueAndNoNumber) {
    for (const char* text : {"1 2", "1 2, 3 4", "0 0, 1 1, 2 2", "(0 0, 1 0)"}) {
        Point3d p;
        EXPECT_TRUE(FromText(text).GetCentroid(&p)) << text;
        EXPECT_TRUE(std::isnan(p.x) && std::isnan(p.y)) << text;
        EXPECT_EQ(0, p.z);
    }
}

TEST(PolyLineInteriorPoint, IsTheMiddleOfTheFirstEar) {
    Point3d p;
    EXPECT_TRUE(FromText("(0 0 3, 6 0 6, 6 6 9, 0 6 0)").InteriorPoint(&p));
    EXPECT_EQ("4 2 6", Text(p));  // the corner at (0, 0) has no neighbour before it yet
    EXPECT_TRUE(FromText("(0 6, 6 6, 6 0, 0 0)").InteriorPoint(&p));
    EXPECT_EQ("4 4", Text(p));
}

TEST(PolyLineInteriorPoint, PassesReflexCornersAndTrianglesThatHoldAnother) {
    Point3d p;
    // The corner (9, 0) is an ear but for (6, 1); the next one, (9, 9), is one.
    EXPECT_TRUE(FromText("(0 0, 9 0, 9 9, 6 1)").InteriorPoint(&p));
    EXPECT_EQ("8 3.33333333333333", Text(p));
    // (2, 1) turns the other way.
    EXPECT_TRUE(FromText("(0 0, 2 1, 4 0, 2 6)").InteriorPoint(&p));
    EXPECT_EQ(1, FromText("(0 0, 2 1, 4 0, 2 6)").Inside(p, false, true));
}

TEST(PolyLineInteriorPoint, AVertexEqualToTheThirdIsNotHeld) {
    Point3d p;
    EXPECT_TRUE(FromText("(0 0, 6 0, 6 6, 5.99997 5.99996, 0 6)").InteriorPoint(&p));
    EXPECT_EQ("4 2", Text(p));
    // At another height it is another vertex, and the triangle holds it.
    EXPECT_TRUE(FromText("(0 0, 6 0, 6 6, 5.99997 5.99996 1, 0 6)").InteriorPoint(&p));
    EXPECT_EQ("2 4", Text(p));
}

TEST(PolyLineInteriorPoint, RepeatedVerticesAreOneCorner) {
    Point3d p;
    EXPECT_TRUE(FromText("(0 0, 0.00005 0.00005, 6 0, 6 0, 6 6, 0 6)").InteriorPoint(&p));
    EXPECT_EQ("4 2", Text(p));
}

TEST(PolyLineInteriorPoint, ATurnBelowOneHundredthIsNone) {
    Point3d p;
    // Corners of this needle have cross products of 0.009 and 0.011.
    EXPECT_FALSE(FromText("(0 0, 9 0, 9 0.001)").InteriorPoint(&p));
    EXPECT_TRUE(FromText("(0 0, 11 0, 11 0.001)").InteriorPoint(&p));
}

TEST(PolyLineInteriorPoint, FailureGivesTheCentroid) {
    Point3d p;
    EXPECT_FALSE(FromText("0 0, 4 0, 4 4, 0 4").InteriorPoint(&p));
    EXPECT_EQ("2 2", Text(p));
    EXPECT_FALSE(FromText("0 0, 0 0").InteriorPoint(&p));
    EXPECT_TRUE(std::isnan(p.x));
    EXPECT_FALSE(PolyLine().InteriorPoint(&p));
    EXPECT_EQ("0 0", Text(p));
}

TEST(PolyLineVertices, MiddleIsTheCeilingOfHalfTheCount) {
    EXPECT_EQ("3 3", Text(FromText("1 1, 2 2, 3 3").MiddleVertex()));
    EXPECT_EQ("3 3", Text(FromText("1 1, 2 2, 3 3, 4 4").MiddleVertex()));
    EXPECT_EQ("4 4", Text(FromText("1 1, 2 2, 3 3, 4 4, 5 5").MiddleVertex()));
    EXPECT_EQ("2 2", Text(FromText("1 1, 2 2").MiddleVertex()));
    EXPECT_EQ("0 0", Text(FromText("1 1").MiddleVertex()));
    EXPECT_EQ("0 0", Text(PolyLine().MiddleVertex()));
}

TEST(PolyLineVertices, Cyclic) {
    const PolyLine line = FromText("0 0, 1 1, 2 2");
    EXPECT_EQ("0 0", Text(line.VertexCyclic(0)));
    EXPECT_EQ("0 0", Text(line.VertexCyclic(3)));
    EXPECT_EQ("2 2", Text(line.VertexCyclic(-1)));
    EXPECT_EQ("1 1", Text(line.VertexCyclic(-5)));
    EXPECT_EQ("0 0", Text(PolyLine().VertexCyclic(7)));
}

TEST(PolyLineVertices, ClosedSkipsTheRepeatedOne) {
    const PolyLine ring = FromText("(0 0, 1 1, 2 0)");
    EXPECT_EQ("0 0", Text(ring.VertexClosed(0)));
    EXPECT_EQ("0 0", Text(ring.VertexClosed(3)));
    EXPECT_EQ("1 1", Text(ring.VertexClosed(4)));
    EXPECT_EQ("2 0", Text(ring.VertexClosed(-1)));
    EXPECT_EQ("0 0", Text(ring.VertexCyclic(-1)));
    const PolyLine open = FromText("0 0, 1 1, 2 0");
    EXPECT_EQ("2 0", Text(open.VertexClosed(-1)));
    EXPECT_EQ("0 0", Text(open.VertexClosed(3)));
    EXPECT_EQ("5 5", Text(FromText("5 5, 5 5").VertexClosed(77)));
    EXPECT_EQ("5 5", Text(FromText("5 5").VertexClosed(77)));
}

TEST(PolyLineIsFlat, WithinOneTenThousandthOfVertexZero) {
    EXPECT_TRUE(PolyLine().IsFlat());
    EXPECT_TRUE(FromText("0 0 5, 1 0 5.00009, 2 0 4.99991").IsFlat());
    EXPECT_FALSE(FromText("0 0 0, 1 0 0.0001").IsFlat());
    EXPECT_FALSE(FromText("0 0 5, 1 0 6, 2 0 5").IsFlat());
}

PolyLine WithBox() {
    PolyLine line = FromText("0 0 0, 1 2 3");
    line.hasBounds = 1;
    line.maxPoint = {1, 2, 3};
    return line;
}

TEST(PolyLineMoves, TranslateMovesTheBox) {
    PolyLine line = WithBox();
    line.Translate({10, 20, 30});
    EXPECT_EQ("10 20 30, 11 22 33", ToText(line));
    EXPECT_EQ("11 22 33", Text(line.maxPoint));
    EXPECT_EQ("10 20 30", Text(line.minPoint));
    (line += Point3d(-10, -20, -30)) += Point3d(1, 0, 0);
    EXPECT_EQ("1 0, 2 2 3", ToText(line));
    EXPECT_EQ("1 0", Text(line.minPoint));
    line.hasBounds = 0;
    line.Translate({1, 0, 0});
    EXPECT_EQ("1 0", Text(line.minPoint));
}

TEST(PolyLineMoves, TranslateByAVertexOfItsOwn) {
    PolyLine line = FromText("1 2 3, 4 5 6");
    line.Translate(line.data[0]);
    EXPECT_EQ("2 4 6, 5 7 9", ToText(line));
}

TEST(PolyLineMoves, MoveLeavesTheBox) {
    PolyLine line = WithBox();
    EXPECT_TRUE(line.Move(10, 20, 30, false));
    EXPECT_EQ("10 20 30, 11 22 33", ToText(line));
    EXPECT_TRUE(line.Move(0, 0, 7, true));
    EXPECT_EQ("10 20 7, 11 22 7", ToText(line));
    EXPECT_EQ("1 2 3", Text(line.maxPoint));
    EXPECT_TRUE(PolyLine().Move(1, 1, 1, true));
}

TEST(PolyLineMoves, SetElevationSetsTheBoxesHeights) {
    PolyLine line = WithBox();
    line.SetElevation(5);
    EXPECT_EQ("0 0 5, 1 2 5", ToText(line));
    EXPECT_EQ("1 2 5", Text(line.maxPoint));
    EXPECT_EQ("0 0 5", Text(line.minPoint));
    line.hasBounds = 0;
    line.SetElevation(6);
    EXPECT_EQ("1 2 5", Text(line.maxPoint));
}

TEST(PolyLineTurns, AreThoseOfThePoints) {
    const PolyLine line = FromText("1 2 3, 4 5 6, -7 8 9");
    const Point3d centre(1, -1, 2), axis(1, 2, 3);
    const Line about(centre, axis);
    PolyLine a = line, b = line, c = line;
    a.RotateAbout(centre, 0.7, 0.3);
    b.RotateAxis(axis, 0.7);
    c.RotateLine(about, 0.7);
    for (int i = 0; i < 3; ++i) {
        Point3d p = line[i], q = line[i], r = line[i];
        p.RotateAbout(centre, 0.7, 0.3);
        q.RotateAxis(axis, 0.7);
        r.RotateLine(about, 0.7);
        EXPECT_EQ(Text(p), Text(a[i]));
        EXPECT_EQ(Text(q), Text(b[i]));
        EXPECT_EQ(Text(r), Text(c[i]));
    }
}

TEST(PolyLineTurns, AboutAVertexOfItsOwn) {
    PolyLine line = FromText("1 1, 2 1");
    line.RotateAbout(line.data[0], std::atan(1.0) * 2, 0);
    EXPECT_NEAR(1, line[1].x, 1e-12);
    EXPECT_NEAR(2, line[1].y, 1e-12);
}

TEST(PolyLineGetBox, HoldsAllVerticesAndNothingElse) {
    PolyLine line = FromText("1 2 3, -4 5 6");
    line.offset = {100, 100, 100};
    const Box box = line.GetBox();
    EXPECT_EQ(-4.0f, box.xMin);
    EXPECT_EQ(5.0f, box.yMax);
    EXPECT_EQ(6.0f, box.zMax);
    EXPECT_LT(PolyLine().GetBox().xMax, PolyLine().GetBox().xMin);
}

}  // namespace
}  // namespace TamLib
