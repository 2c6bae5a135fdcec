// Points, lines, circles and boxes read from drawing entities, and a point asked from the user.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "GeomEnts/Box.h"
#include "GeomEnts/Line.h"
#include "GeomEnts/circle.h"
#include "host/editor/Scripted.h"
#include "tests/GeomEnts/TestDrawing.h"
#include "tests/support/Points.h"

namespace TamLib {
namespace {

using host::editor::Scripted;

class EntityReading : public ::testing::Test {
  protected:
    std::size_t Closes() const {
        std::size_t closes = 0;
        for (const std::string& name : host::fault::names()) closes += name == "AcDbObject::close";
        return closes;
    }

    TestDrawing drawing_{"POINT|5 20|8 0|10 1|20 2|30 3",
                         "LINE|5 21|8 0|10 1|20 2|30 3|11 4|21 5|31 6",
                         "CIRCLE|5 22|8 0|10 1|20 2|30 3|40 2.5",
                         "TEXT|5 23|8 0|10 1|20 2|30 3|40 2.5|1 A", "REGION|5 24|8 0|70 1"};
};

TEST_F(EntityReading, PointOfAPointEntity) {
    ExpectPoint({1, 2, 3}, Point3d(drawing_.Open(0x20), 1));
    ExpectPoint({1, 2, 3}, Point3d(drawing_.Id(0x20)));
    EXPECT_FALSE(drawing_.IsErased(0x20));
    Point3d(drawing_.Open(0x20, AcDb::kForWrite), 2);
    EXPECT_TRUE(drawing_.IsErased(0x20));
}

TEST_F(EntityReading, PointOfAnotherClassIsTheOriginAndIsDisposedOfAllTheSame) {
    AcDbEntity* const line = drawing_.Open(0x21);
    ExpectPoint({0, 0, 0}, Point3d(line, 0));
    EXPECT_TRUE(line->isReadEnabled());
    ExpectPoint({0, 0, 0}, Point3d(line, 1));
    EXPECT_FALSE(line->isReadEnabled());
    Point3d(drawing_.Open(0x21, AcDb::kForWrite), 2);
    EXPECT_TRUE(drawing_.IsErased(0x21));
    ExpectPoint({0, 0, 0}, Point3d(static_cast<AcDbEntity*>(nullptr), 2));
    ExpectPoint({0, 0, 0}, Point3d(AcDbObjectId()));
}

TEST_F(EntityReading, LineOfALineEntity) {
    const Line line(drawing_.Open(0x21), 1);
    ExpectPoint({1, 2, 3}, line.Start());
    ExpectPoint({4, 5, 6}, line.End());
    EXPECT_EQ(1, line.valid);
    const Line erasing(drawing_.Open(0x21, AcDb::kForWrite), 2);
    EXPECT_EQ(4.0, erasing.x2);
    EXPECT_TRUE(drawing_.IsErased(0x21));
}

TEST_F(EntityReading, LineOfAnotherClassLeavesTheEntityOpen) {
    AcDbEntity* const circle = drawing_.Open(0x22, AcDb::kForWrite);
    const Line line(circle, 2);
    EXPECT_TRUE(circle->isWriteEnabled());
    EXPECT_FALSE(drawing_.IsErased(0x22));
    circle->close();
}

TEST_F(EntityReading, LineByIdClosesTwice) {
    host::fault::disarm();
    const Line line(drawing_.Id(0x21));
    EXPECT_EQ(4.0, line.x2);
    EXPECT_EQ(2u, Closes());
    // Of another class the second close is the only one.
    host::fault::disarm();
    const Line none(drawing_.Id(0x22));
    EXPECT_EQ(1u, Closes());
    // What can't be opened is not closed.
    host::fault::disarm();
    const Line unopened{AcDbObjectId()};
    EXPECT_EQ(0u, Closes());
}

TEST_F(EntityReading, CircleOfACircleEntity) {
    const Circle circle(drawing_.Open(0x22), 1);
    ExpectPoint({1, 2, 3}, circle.centre);
    EXPECT_EQ(2.5, circle.radius);
    host::fault::disarm();
    EXPECT_EQ(2.5, Circle(drawing_.Id(0x22)).radius);
    EXPECT_EQ(2u, Closes());
}

TEST_F(EntityReading, CircleOfAnotherClassIsNothingAndLeavesTheEntityOpen) {
    AcDbEntity* const line = drawing_.Open(0x21);
    const Circle circle(line, 1);
    ExpectPoint({0, 0, 0}, circle.centre);
    EXPECT_EQ(0.0, circle.radius);
    EXPECT_TRUE(line->isReadEnabled());
    line->close();
    EXPECT_EQ(0.0, Circle(static_cast<AcDbEntity*>(nullptr), 1).radius);
    EXPECT_EQ(0.0, Circle(AcDbObjectId()).radius);
}

TEST_F(EntityReading, BoxOfAnEntityIsItsExtents) {
    AcDbEntity* const line = drawing_.Open(0x21);
    const Box box(line);
    line->close();
    EXPECT_EQ(1.0f, box.xMin);
    EXPECT_EQ(4.0f, box.xMax);
    EXPECT_EQ(2.0f, box.yMin);
    EXPECT_EQ(6.0f, box.zMax);
    // Without extents it is empty.
    AcDbEntity* const region = drawing_.Open(0x24);
    const Box none(region);
    region->close();
    EXPECT_GT(none.xMin, none.xMax);
}

TEST_F(EntityReading, BoxByIdOpensTwiceAndClosesOnce) {
    const Box box(drawing_.Id(0x21));
    EXPECT_EQ(4.0f, box.xMax);
    EXPECT_EQ(1u, host::database::Ledger::instance().count("object"));  // intended
    AcDbEntity* const entity = drawing_.Open(0x21);
    entity->close();
    entity->close();
    // When the second opening is refused the box stays empty, and the first one stays open.
    host::fault::arm("acdbOpenAcDbEntity", 2, Acad::eWasOpenForWrite);
    const Box none(drawing_.Id(0x22));
    EXPECT_GT(none.xMin, none.xMax);
    AcDbEntity* const again = drawing_.Open(0x22);
    again->close();
    again->close();
    const Box unknown{AcDbObjectId()};
    EXPECT_GT(unknown.xMin, unknown.xMax);
}

TEST_F(EntityReading, BoxGrowsByEntities) {
    Box box;
    AcDbEntity* const line = drawing_.Open(0x21);
    box.Add(line);
    line->close();
    EXPECT_EQ(4.0f, box.xMax);
    EXPECT_EQ(0, box.Add(drawing_.Id(0x22)));
    EXPECT_EQ(-1.5f, box.xMin);
    const Box before = box;
    EXPECT_EQ(static_cast<int>(Acad::eNullObjectId), box.Add(AcDbObjectId()));
    host::fault::arm("AcDbEntity::getGeomExtents", 1, Acad::eNullExtents);
    EXPECT_EQ(0, box.Add(drawing_.Id(0x20)));  // opened, but without extents
    EXPECT_EQ(before.xMin, box.xMin);
    EXPECT_EQ(before.zMax, box.zMax);
}

// --- GetPoint.

TEST(GetPoint, StoresThePointAndEndsThePromptsLine) {
    Scripted host;
    host.point({1, 2, 3});
    Point3d p;
    EXPECT_TRUE(p.GetPoint(L"\nPiste : ", nullptr));
    ExpectPoint({1, 2, 3}, p);
    ASSERT_EQ(1u, host.prompts().size());
    EXPECT_EQ("acedGetPoint", host.prompts()[0].function);
    EXPECT_EQ(L"\nPiste : ", host.prompts()[0].text);
    EXPECT_FALSE(host.prompts()[0].hasPoint);
    EXPECT_EQ(L"\n", host.printed());
}

TEST(GetPoint, StartsAtTheBaseEvenWhenThatIsItself) {
    Scripted host;
    host.point({1, 2, 3});
    Point3d p(7, 8, 9);
    EXPECT_TRUE(p.GetPoint(nullptr, &p, 128));
    ExpectPoint({1, 2, 3}, p);
    EXPECT_TRUE(host.prompts()[0].hasPoint);
    EXPECT_EQ(8.0, host.prompts()[0].point.y);
    EXPECT_EQ(L"", host.printed());  // no prompt, no line end
}

TEST(GetPoint, StoresThePointWhateverTheResult) {
    Scripted host;
    host.failPoint(RTCAN, {4, 5, 6}, true);
    Point3d p(7, 8, 9);
    EXPECT_FALSE(p.GetPoint(L"? ", nullptr));
    ExpectPoint({4, 5, 6}, p);
    host.failPoint(RTNONE);
    EXPECT_FALSE(p.GetPoint(L"? ", nullptr));
    EXPECT_EQ(L"\n\n", host.printed());
}

}  // namespace
}  // namespace TamLib
