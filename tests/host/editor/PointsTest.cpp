#include "host/editor/Points.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "host/editor/Words.h"

using namespace host::editor;

namespace {

void expectPoint(const wchar_t* text, double x, double y, double z, const AcGePoint3d& last = {}) {
    const auto point = parsePoint(text, last);
    ASSERT_TRUE(point) << toUtf8(text);
    EXPECT_EQ(point->x, x) << toUtf8(text);
    EXPECT_EQ(point->y, y) << toUtf8(text);
    EXPECT_EQ(point->z, z) << toUtf8(text);
}

}  // namespace

TEST(Points, CoordinatesWithAndWithoutZ) {
    expectPoint(L"3,4", 3, 4, 0);
    expectPoint(L"25496062.25,6672008.5,-1.5", 25496062.25, 6672008.5, -1.5);
    expectPoint(L"*3,4", 3, 4, 0);
    expectPoint(L"+1,-.5", 1, -0.5, 0);
}

TEST(Points, RelativeCoordinatesCountFromTheLastPoint) {
    const AcGePoint3d last(10, 20, 30);
    expectPoint(L"@1,2", 11, 22, 30, last);
    expectPoint(L"@1,2,3", 11, 22, 33, last);
    expectPoint(L"@", 10, 20, 30, last);
    expectPoint(L"@5<90", 10, 25, 30, last);
    expectPoint(L"@*1,2", 11, 22, 30, last);
}

TEST(Points, QuartersOfATurnHaveNoRounding) {
    expectPoint(L"5<0", 5, 0, 0);
    expectPoint(L"5<90", 0, 5, 0);
    expectPoint(L"5<180", -5, 0, 0);
    expectPoint(L"5<-90", 0, -5, 0);
    expectPoint(L"5<450", 0, 5, 0);
    expectPoint(L"5<90,7", 0, 5, 7);
}

TEST(Points, AnglesAreDegreesCounterClockwise) {
    const auto point = parsePoint(L"2<30", {});
    ASSERT_TRUE(point);
    EXPECT_NEAR(point->x, std::sqrt(3.0), 1e-15);
    EXPECT_NEAR(point->y, 1.0, 1e-15);
}

TEST(Points, AnythingElseIsNone) {
    for (const wchar_t* text :
         {L"", L"3", L"3,", L",3", L"1,2,3,4", L"a,b", L"1;2", L"@@1,2", L"5<", L"<5", L"5<1<2",
          L"5<1,2,3", L"#1,2", L"1, 2", L"nan,1", L"1e100,0", L"0,-1e100", L"1e100<0", L"ALL"}) {
        EXPECT_FALSE(parsePoint(text, {})) << toUtf8(text);
    }
    expectPoint(L"1e99,-1e99,1e99", 1e99, -1e99, 1e99);
    expectPoint(L"1e99<90", 0, 1e99, 0);
    for (const wchar_t* text : {L"1.0000000000000002e99,0", L"0,-1.0000000000000002e99",
                                L"1.0000000000000002e99<0", L"@*", L"**1,2", L"*@1,2"})
        EXPECT_FALSE(parsePoint(text, {})) << toUtf8(text);
}

TEST(Points, TheTextOfAPointReadsBackToTheSamePoint) {
    std::mt19937_64 random(20091117);
    std::uniform_real_distribution<double> value(-3e7, 3e7);
    for (int i = 0; i < 1000; ++i) {
        const AcGePoint3d point(value(random), value(random), value(random));
        const auto read = parsePoint(pointText(point), {});
        ASSERT_TRUE(read);
        ASSERT_EQ(read->x, point.x);
        ASSERT_EQ(read->y, point.y);
        ASSERT_EQ(read->z, point.z);
    }
}
