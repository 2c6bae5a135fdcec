// Lengths along splines in map coordinates, where the digits before the point leave few behind it.
#include <dbspline.h>
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "host/database/Drawing.h"
#include "tests/host/support/DrawingText.h"

namespace {

// The length of a spline of five control points, the first of them at (x, y).
double lengthAt(double x, double y) {
    std::string record = "SPLINE|5 1A|8 0|70 8|71 3|72 9|73 5|74 0";
    for (const char* knot : {"0", "0", "0", "0", "1", "2", "2", "2", "2"})
        record += std::string("|40 ") + knot;
    const double points[][2] = {{0, 0}, {22, -41}, {-2, -77}, {26, -119}, {60, -127}};
    for (const auto& point : points) {
        record += "|10 " + std::to_string(x + point[0]) + "|20 " + std::to_string(y + point[1]) +
                  "|30 0.0";
    }
    const auto database =
        host::test::DrawingText().layer("0").entity(record).object("DICTIONARY|5 C").database();
    AcDbEntity* entity = nullptr;
    EXPECT_EQ(
        acdbOpenAcDbEntity(entity, host::database::idFromHandle(*database, L"1A"), AcDb::kForRead),
        Acad::eOk);
    double end = 0.0;
    double length = 0.0;
    EXPECT_EQ(AcDbSpline::cast(entity)->getEndParam(end), Acad::eOk);
    EXPECT_EQ(AcDbSpline::cast(entity)->getDistAtParam(end, length), Acad::eOk);
    EXPECT_EQ(entity->close(), Acad::eOk);
    return length;
}

TEST(SplineFarFromOrigin, HasTheLengthThatItHasAtTheOrigin) {
    const double length = lengthAt(0, 0);
    EXPECT_GT(length, 127.0);
    EXPECT_NEAR(lengthAt(25496270, 6672169), length, 1e-9);
    EXPECT_NEAR(lengthAt(-3e9, 4e9), length, 1e-9);
}

}  // namespace
