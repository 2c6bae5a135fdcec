// The inside test of PolyLine: what counts at vertices and edges, and how wide its bands are.
#include <gtest/gtest.h>

#include <cmath>

#include "GeomStructs/PolyLine.h"
#include "tests/GeomStructs/TextLines.h"

namespace TamLib {
namespace {

PolyLine Square() {
    return FromText("(0 0, 1 0, 1 1, 0 1)");
}

int Touching(const PolyLine& line, double x, double y) {
    return line.Inside({x, y, 0}, false, true);
}
int Counted(const PolyLine& line, double x, double y) {
    return line.Inside({x, y, 0}, false, false);
}

TEST(PolyLineInside, OfAnOpenLineIsOutside) {
    const PolyLine open = FromText("0 0, 1 0, 1 1, 0 1");
    EXPECT_EQ(0, Touching(open, 0.5, 0.5));
    EXPECT_EQ(0, Touching(open, 0, 0));
}

TEST(PolyLineInside, NeedsThreeVertices) {
    EXPECT_EQ(0, Touching(FromText("0 0, 0 0"), 0, 0));
    EXPECT_EQ(0, Touching(FromText("0 0"), 0, 0));
    EXPECT_EQ(0, Touching(PolyLine(), 0, 0));
    EXPECT_EQ(2, Touching(FromText("0 0, 1 1, 0 0"), 0.5, 0.5));
}

TEST(PolyLineInside, HeightPlaysNoPart) {
    EXPECT_EQ(1, Square().Inside({0.5, 0.5, 1e9}, false, true));
    EXPECT_EQ(2, Square().Inside({1, 0.5, -1e9}, false, true));
}

TEST(PolyLineInside, OnTheBoundaryIsTwoWithTouch) {
    for (const double v : {0.0, 0.25, 1.0}) {
        EXPECT_EQ(2, Touching(Square(), v, 0));
        EXPECT_EQ(2, Touching(Square(), v, 1));
        EXPECT_EQ(2, Touching(Square(), 0, v));
        EXPECT_EQ(2, Touching(Square(), 1, v));
    }
    EXPECT_EQ(1, Touching(Square(), 0.5, 0.5));
    EXPECT_EQ(0, Touching(Square(), 1.5, 0.5));
}

TEST(PolyLineInside, WithoutTouchTheLowerAndTheRightSideAreIn) {
    for (const bool reversed : {false, true}) {
        PolyLine square = Square();
        if (reversed) square.Reverse();
        EXPECT_EQ(1, Counted(square, 0.5, 0));
        EXPECT_EQ(1, Counted(square, 1, 0.5));
        EXPECT_EQ(0, Counted(square, 0.5, 1));
        EXPECT_EQ(0, Counted(square, 0, 0.5));
        EXPECT_EQ(1, Counted(square, 1, 0));
        EXPECT_EQ(0, Counted(square, 0, 0));
        EXPECT_EQ(0, Counted(square, 1, 1));
        EXPECT_EQ(0, Counted(square, 0, 1));
    }
}

TEST(PolyLineInside, LevelEdgesAtThePointsHeightCountNothing) {
    // A step down, a step up and a bump, all at y = 1.
    const PolyLine ring = FromText("(0 0, 9 0, 9 2, 6 2, 6 1, 4 1, 4 3, 2 3, 2 1, 0 1)");
    EXPECT_EQ(1, Counted(ring, 8, 1));
    EXPECT_EQ(1, Counted(ring, 3, 1));
    EXPECT_EQ(0, Counted(ring, -1, 1));
    EXPECT_EQ(0, Counted(ring, 10, 1));
}

TEST(PolyLineInside, VerticesAtThePointsHeightCountOnce) {
    const PolyLine diamond = FromText("(0 -1, 1 0, 0 1, -1 0)");
    EXPECT_EQ(1, Counted(diamond, 0, 0));
    EXPECT_EQ(0, Counted(diamond, -2, 0));
    EXPECT_EQ(0, Counted(diamond, 2, 0));
    EXPECT_EQ(0, Counted(diamond, -2, 1));   // beside the highest vertex
    EXPECT_EQ(0, Counted(diamond, -2, -1));  // beside the lowest one
}

TEST(PolyLineInside, WoundTwiceIsOutside) {
    const PolyLine twice = FromText("0 0, 4 0, 4 4, 0 4, 0 0, 4 0, 4 4, 0 4, 0 0");
    EXPECT_EQ(0, Counted(twice, 2, 2));
    const PolyLine star = FromText("(0 -3, 2 3, -3 -1, 3 -1, -2 3)");
    EXPECT_EQ(0, Counted(star, 0, 0));  // the middle of a pentagram is wound twice
    EXPECT_EQ(1, Counted(star, 0, -2));
}

TEST(PolyLineInside, TheSignMarginIsFiveTimesTenToTheMinusEight) {
    // On edges of length 1 the cross product is the distance.
    EXPECT_EQ(1, Counted(Square(), 1 + 4.9e-8, 0.5));
    EXPECT_EQ(0, Counted(Square(), 1 + 5.1e-8, 0.5));
    EXPECT_EQ(0, Counted(Square(), 4.9e-8, 0.5));  // the left side keeps out what is as near
    EXPECT_EQ(1, Counted(Square(), 5.1e-8, 0.5));
    const PolyLine zero = FromText("(0 0, 0 1, -1 1, -1 0)");  // its right side at x = 0
    EXPECT_EQ(0, Counted(zero, 5e-8, 0.5));
    EXPECT_EQ(1, Counted(zero, std::nextafter(5e-8, 0.0), 0.5));
}

TEST(PolyLineInside, TouchesWithinOneTenThousandth) {
    EXPECT_EQ(2, Touching(Square(), -0.0001, 0.5));
    EXPECT_EQ(0, Touching(Square(), std::nextafter(-0.0001, -1.0), 0.5));
    EXPECT_EQ(2, Touching(Square(), 0.00005, 0.5));
}

TEST(PolyLineInside, ALevelEdgeIsTouchedOnlyAtItsVeryHeight) {
    EXPECT_EQ(1, Touching(Square(), 0.5, 0.00005));
    EXPECT_EQ(0, Touching(Square(), 0.5, -0.00005));
    EXPECT_EQ(0, Touching(Square(), 0.5, 1.00005));
}

TEST(PolyLineInside, TheBandNarrowsOnLongEdges) {
    const PolyLine tall = FromText("(0 0, 1 0, 1 1000, 0 1000)");
    EXPECT_EQ(2, Touching(tall, -0.9e-5, 500));  // the cross product is 0.009
    EXPECT_EQ(0, Touching(tall, -1.1e-5, 500));  // 0.011
}

TEST(PolyLineInside, TheStoredBoxIsAskedOnlyWhenWanted) {
    PolyLine square = Square();
    square.minPoint = {0.5, 0.5, 0};
    square.maxPoint = {0.6, 0.6, 0};
    EXPECT_EQ(1, square.Inside({0.2, 0.2, 0}, true, false));  // there is none
    square.hasBounds = 1;
    EXPECT_EQ(0, square.Inside({0.2, 0.2, 0}, true, false));
    EXPECT_EQ(1, square.Inside({0.2, 0.2, 0}, false, false));
    for (const double x : {0.5, 0.6})  // inclusive
        for (const double y : {0.5, 0.6}) EXPECT_EQ(1, square.Inside({x, y, 0}, true, false));
    EXPECT_EQ(0, square.Inside({0.55, std::nextafter(0.6, 1.0), 0}, true, false));
    EXPECT_EQ(0, square.Inside({std::nextafter(0.5, 0.0), 0.55, 0}, true, false));
}

TEST(PolyLineInside, OfTheMiddleOfTwoPoints) {
    PolyLine square = Square();
    EXPECT_EQ(1, square.MidPointInside({0, 0, 0}, {1, 1, 50}));
    EXPECT_EQ(2, square.MidPointInside({0, 0, 0}, {1, 0, 50}));  // touches are told
    EXPECT_EQ(0, square.MidPointInside({0, 0, 0}, {-1, 1, 0}));
    square.hasBounds = 1;  // and the stored box is not asked
    EXPECT_EQ(1, square.MidPointInside({0, 0, 0}, {1, 1, 50}));
}

}  // namespace
}  // namespace TamLib
