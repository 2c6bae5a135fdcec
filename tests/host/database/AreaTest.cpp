#include "host/database/Area.h"

#include <dbelipse.h>
#include <dbents.h>
#include <dbpl.h>
#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace {

using host::database::enclosedArea;

constexpr double pi = 3.14159265358979323846;
constexpr double east = 25496000.0;
constexpr double north = 6672000.0;

TEST(EnclosedArea, OfCirclesAndEllipses) {
    const AcDbCircle circle({east, north, 5.0}, AcGeVector3d(0.6, 0.0, 0.8), 3.0);
    EXPECT_NEAR(enclosedArea(circle).value(), 9.0 * pi, 1e-6);
    const AcDbEllipse ellipse({1.0, 2.0, 3.0}, AcGeVector3d::kZAxis, {4.0, 0.0, 0.0}, 0.25);
    EXPECT_NEAR(enclosedArea(ellipse).value(), 4.0 * pi, 1e-12);
}

TEST(EnclosedArea, NeedsAClosedCurveInAPlane) {
    EXPECT_FALSE(enclosedArea(AcDbLine({0, 0, 0}, {1, 0, 0})));
    EXPECT_FALSE(enclosedArea(AcDbArc({0, 0, 0}, 1.0, 0.0, 6.0)));
    EXPECT_FALSE(enclosedArea(AcDbPoint({0, 0, 0})));
    EXPECT_FALSE(enclosedArea(AcDbCircle({0, 0, 0}, AcGeVector3d::kZAxis, 0.0)));
    AcDbPolyline straight;
    straight.addVertexAt(0, {0.0, 0.0});
    straight.addVertexAt(1, {5.0, 0.0});
    straight.setClosed(true);
    EXPECT_FALSE(enclosedArea(straight));
}

TEST(EnclosedArea, WhatIsRunAroundTheOtherWayCountsAgainstTheRest) {
    AcDbPolyline bow;
    unsigned int index = 0;
    for (const AcGePoint2d point :
         {AcGePoint2d(0, 0), AcGePoint2d(4, 4), AcGePoint2d(4, 0), AcGePoint2d(0, 2)})
        bow.addVertexAt(index++, point);
    bow.setClosed(true);
    EXPECT_NEAR(enclosedArea(bow).value(), 4.0, 1e-12);
}

// The area under each segment is that of its chord and of what lies between chord and arc: the
// sector less the triangle.
double plainArea(const AcDbPolyline& line) {
    double area = 0.0;
    for (unsigned int i = 0; i < line.numVerts(); ++i) {
        AcGePoint2d a, b;
        double bulge = 0.0;
        line.getPointAt(i, a);
        line.getPointAt((i + 1) % line.numVerts(), b);
        line.getBulgeAt(i, bulge);
        area += ((a.x - east) * (b.y - north) - (b.x - east) * (a.y - north)) / 2.0;
        if (bulge == 0.0) continue;
        const double chord = std::sqrt((b.x - a.x) * (b.x - a.x) + (b.y - a.y) * (b.y - a.y));
        const double radius = chord * (1.0 + bulge * bulge) / (4.0 * bulge);
        const double angle = 4.0 * std::atan(bulge);
        area += std::fabs(radius) * radius * (std::fabs(angle) - std::sin(std::fabs(angle))) / 2.0;
    }
    return std::fabs(area);
}

TEST(EnclosedArea, OfBulgedPolylinesIsThatOfTheirChordsAndArcs) {
    std::mt19937 random(20260411);
    std::uniform_real_distribution<double> place(-50.0, 50.0);
    std::uniform_real_distribution<double> bend(-1.5, 1.5);
    int compared = 0;
    for (int round = 0; round < 500; ++round) {
        AcDbPolyline line;
        const unsigned int count = 3 + static_cast<unsigned int>(round % 6);
        for (unsigned int i = 0; i < count; ++i)
            line.addVertexAt(i, {east + place(random), north + place(random)},
                             i % 2 == 0 ? bend(random) : 0.0);
        line.setClosed(true);
        const double plain = plainArea(line);
        if (plain < 1.0) continue;
        ++compared;
        ASSERT_NEAR(enclosedArea(line).value(), plain, 1e-5) << round;
    }
    EXPECT_GT(compared, 400);
}

}  // namespace
