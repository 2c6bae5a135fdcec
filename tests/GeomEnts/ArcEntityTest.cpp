// Arc read from drawing entities: height and direction in every quadrant, disposal, what fails.
#include <dbents.h>
#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <string>

#include "GeomEnts/Arc.h"
#include "tests/GeomEnts/TestDrawing.h"

namespace TamLib {
namespace {

std::string ArcRecord(double radius, double fromDegrees, double toDegrees,
                      const std::string& more = "") {
    std::ostringstream record;
    record << "ARC|5 20|8 0|10 10|20 20|30 5|40 " << radius << "|50 " << fromDegrees << "|51 "
           << toDegrees << more;
    return record.str();
}

TEST(ArcEntity, RunsCounterClockwiseFromTheHostsStart) {
    const TestDrawing drawing{ArcRecord(5, 0, 90)};
    const Arc arc(drawing.Open(0x20), 1);
    EXPECT_NEAR(15.0, arc.x1, 1e-12);
    EXPECT_NEAR(20.0, arc.y1, 1e-12);
    EXPECT_NEAR(10.0, arc.x2, 1e-12);
    EXPECT_NEAR(25.0, arc.y2, 1e-12);
    EXPECT_EQ(5.0, arc.z1);
    EXPECT_EQ(1, arc.valid);
    // Counter-clockwise is a negative height.
    EXPECT_NEAR(-(5 - std::sqrt(12.5)), arc.height, 1e-12);
}

// Every start and sweep: the arc read bulges through the host's middle point.
TEST(ArcEntity, AgreesWithTheHostForEverySweepAndPlace) {
    for (int from = 0; from < 360; from += 15) {
        for (int sweep = 5; sweep < 360; sweep += 5) {
            SCOPED_TRACE(std::to_string(from) + " over " + std::to_string(sweep));
            const TestDrawing drawing{ArcRecord(50, from, (from + sweep) % 360)};
            const Arc arc(drawing.Open(0x20), 1);
            EXPECT_NEAR(50.0, arc.Radius(), 1e-6);
            EXPECT_NEAR(sweep * 3.141592653589793 / 180, arc.SweepAngle(), 1e-7);
            if (sweep == 180) continue;  // see below
            EXPECT_LT(arc.height, 0.0);
            const double middle = (from + sweep / 2.0) * 3.141592653589793 / 180;
            EXPECT_TRUE(
                arc.IsOnBulgeSide({10 + 50 * std::cos(middle), 20 + 50 * std::sin(middle), 5}));
        }
    }
}

TEST(ArcEntity, SeenFromBelowRunsClockwise) {
    const TestDrawing drawing{ArcRecord(5, 0, 90, "|210 0|220 0|230 -1"),
                              "ARC|5 21|8 0|10 10|20 20|30 5|40 5|50 0|51 270|210 0|220 0|230 -1"};
    const Arc arc(drawing.Open(0x20), 1);
    EXPECT_NEAR(5 - std::sqrt(12.5), arc.height, 1e-12);
    const Arc longer(drawing.Open(0x21), 1);
    EXPECT_NEAR(5 + std::sqrt(12.5), longer.height, 1e-12);
}

// Intended: which way a half circle runs is decided by the last bit of the direction to its centre,
// which lies on the chord.
TEST(ArcEntity, HalfCircleHasTheRadiusAsHeightEitherWay) {
    for (int from = 0; from < 360; from += 30) {
        const TestDrawing drawing{ArcRecord(5, from, (from + 180) % 360)};
        EXPECT_NEAR(5.0, std::fabs(Arc(drawing.Open(0x20), 1).height), 1e-6) << from;
    }
}

TEST(ArcEntity, LineGivesAStraightArc) {
    const TestDrawing drawing{"LINE|5 20|8 0|10 1|20 2|30 3|11 4|21 5|31 6"};
    const Arc arc(drawing.Open(0x20), 1);
    EXPECT_EQ(1.0, arc.x1);
    EXPECT_EQ(6.0, arc.z2);
    EXPECT_EQ(0.0, arc.height);
    EXPECT_EQ(1, arc.valid);
}

TEST(ArcEntity, DisposalFollowsForEveryClass) {
    const TestDrawing drawing{ArcRecord(5, 0, 90), "CIRCLE|5 21|8 0|10 1|20 2|30 3|40 2.5"};
    AcDbEntity* entity = drawing.Open(0x20);
    const Arc open(entity, 0);
    EXPECT_TRUE(entity->isReadEnabled());
    const Arc closed(entity, 1);
    EXPECT_FALSE(entity->isReadEnabled());
    const Arc erased(drawing.Open(0x20, AcDb::kForWrite), 2);
    EXPECT_EQ(open.height, erased.height);
    EXPECT_TRUE(drawing.IsErased(0x20));

    const Arc unset(drawing.Open(0x21, AcDb::kForWrite), 2);
    EXPECT_EQ(0.0, unset.height);
    EXPECT_TRUE(drawing.IsErased(0x21));
    EXPECT_EQ(0.0, Arc(static_cast<AcDbEntity*>(nullptr), 2).height);
}

TEST(ArcEntity, AsksForTheNameFirstAndIgnoresTheAnswer) {
    const TestDrawing drawing{ArcRecord(5, 0, 90)};
    AcDbEntity* const entity = drawing.Open(0x20);
    host::fault::arm("acdbGetAdsName", 1, Acad::eInvalidInput);
    const Arc arc(entity, 1);
    EXPECT_TRUE(host::fault::fired());
    EXPECT_EQ("acdbGetAdsName", host::fault::names().at(0));
    EXPECT_NE(0.0, arc.height);
}

TEST(ArcEntity, ByIdClosesTwiceAndDoesNotTestTheOpening) {
    const TestDrawing drawing{ArcRecord(5, 0, 90)};
    host::fault::disarm();
    const Arc arc(drawing.Id(0x20));
    std::size_t closes = 0;
    for (const std::string& name : host::fault::names()) closes += name == "AcDbObject::close";
    EXPECT_EQ(2u, closes);
    EXPECT_NE(0.0, arc.height);
    EXPECT_EQ(0.0, Arc(AcDbObjectId()).height);
}

TEST(ArcEntity, EndThatTheHostCannotTellLeavesTheArcUnset) {
    const TestDrawing drawing{ArcRecord(5, 0, 90)};
    for (const char* const call : {"AcDbCurve::getStartPoint", "AcDbCurve::getEndPoint"}) {
        AcDbEntity* const entity = drawing.Open(0x20);
        host::fault::arm(call, 1, Acad::eDegenerateGeometry);
        const Arc arc(entity, 1);
        EXPECT_TRUE(host::fault::fired()) << call;
        EXPECT_EQ(0.0, arc.height);
        EXPECT_FALSE(entity->isReadEnabled());
    }
}

}  // namespace
}  // namespace TamLib
