// Geometry written into a drawing: what the drawing gets, what is told, and what is left behind
// when a call into the host fails.
#include <dbents.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "GeomEnts/Arc.h"
#include "GeomEnts/Box.h"
#include "GeomEnts/Line.h"
#include "GeomEnts/circle.h"
#include "datastruct/Array.h"
#include "tam/TamExceptions.h"
#include "tests/GeomEnts/DrawnEntities.h"

namespace TamLib {
namespace {

using host::editor::Scripted;

class DrawingOutput : public ::testing::Test {
  protected:
    void SetUp() override { host_.variable(L"VIEWSIZE", 240.0); }

    Scripted host_;
    TestDrawing drawing_{};
    AcDbObjectId id_;
};

// --- ToDb of each class.

TEST_F(DrawingOutput, PointBecomesAPointEntity) {
    EXPECT_EQ(0, Point3d(1, 2, 3).ToDb(5, L"marks", &id_, nullptr));
    ASSERT_EQ(std::vector<AcDbObjectId>{id_}, Entities(drawing_));
    EXPECT_EQ((Look{L"AcDbPoint", L"marks", 5}), LookOf(id_));
    ExpectPoint({1, 2, 3}, ReadAs<AcDbPoint>(id_)->position());
}

TEST_F(DrawingOutput, LineBecomesALineEntity) {
    EXPECT_EQ(0, Line({1, 2, 3}, {4, 5, 6}).ToDb(256, L"edges", &id_, nullptr));
    ASSERT_EQ(std::vector<AcDbObjectId>{id_}, Entities(drawing_));
    EXPECT_EQ((Look{L"AcDbLine", L"edges", 256}), LookOf(id_));
    const ReadAs<AcDbLine> line(id_);
    ExpectPoint({1, 2, 3}, line->startPoint());
    ExpectPoint({4, 5, 6}, line->endPoint());
}

TEST_F(DrawingOutput, CircleBecomesACircleEntity) {
    EXPECT_EQ(0, Circle({1, 2, 3}, 2.5).ToDb(0, L"rings", &id_, nullptr));
    ASSERT_EQ(std::vector<AcDbObjectId>{id_}, Entities(drawing_));
    EXPECT_EQ((Look{L"AcDbCircle", L"rings", 0}), LookOf(id_));
    const ReadAs<AcDbCircle> circle(id_);
    ExpectPoint({1, 2, 3}, circle->center());
    EXPECT_EQ(2.5, circle->radius());
    EXPECT_EQ(1.0, circle->normal().z);
}

TEST_F(DrawingOutput, ArcBecomesACounterClockwiseArcEntity) {
    // Clockwise over the top of the circle of radius 5 about the origin, from (-3, 4) to (3, 4).
    const Arc arc(1.0, Line({-3, 4, 7}, {3, 4, 9}));
    EXPECT_EQ(0, arc.ToDb(1, L"bends", &id_, nullptr));
    EXPECT_EQ((Look{L"AcDbArc", L"bends", 1}), LookOf(id_));
    const ReadAs<AcDbArc> read(id_);
    EXPECT_NEAR(0.0, read->center().x, 1e-12);
    EXPECT_NEAR(0.0, read->center().y, 1e-12);
    EXPECT_EQ(7.0, read->center().z);
    EXPECT_NEAR(5.0, read->radius(), 1e-12);
    EXPECT_EQ(arc.EndAngle(), read->startAngle());
    EXPECT_EQ(arc.StartAngle(), read->endAngle());
    EXPECT_LT(read->startAngle(), read->endAngle());
    // The host's arc starts where this one ends.
    AcGePoint3d start;
    EXPECT_EQ(Acad::eOk, read->getStartPoint(start));
    EXPECT_NEAR(3.0, start.x, 1e-12);
}

TEST_F(DrawingOutput, ArcReadBackIsTheSameArcTheOtherWay) {
    for (const double height : {0.3, 2.0, 3.0, 5.0, 20.0}) {
        const Arc arc(height, Line({-3, 4, 7}, {3, 4, 7}));
        AcDbObjectId id;
        ASSERT_EQ(0, arc.ToDb(1, nullptr, &id, nullptr));
        const Arc back(id);
        EXPECT_NEAR(3.0, back.x1, 1e-9);
        EXPECT_NEAR(-3.0, back.x2, 1e-9);
        EXPECT_NEAR(-height, back.height, 1e-6);
    }
}

// --- Layer, colour, id, database.

TEST_F(DrawingOutput, MissingLayerIsMadeAndAnExistingOneTaken) {
    const Line line({1, 2, 3}, {4, 5, 6});
    EXPECT_EQ(0, line.ToDb(1, L"new", &id_, nullptr));
    EXPECT_EQ((std::vector<std::wstring>{L"0", L"LOCKED", L"new"}), Layers(drawing_.Database()));
    EXPECT_EQ(0, line.ToDb(1, L"NEW", &id_, nullptr));
    EXPECT_EQ(L"new", LookOf(id_).layer);
    EXPECT_EQ(3u, Layers(drawing_.Database()).size());
    EXPECT_EQ(0, line.ToDb(1, L"LOCKED", &id_, nullptr));
    EXPECT_EQ(L"LOCKED", LookOf(id_).layer);
}

TEST_F(DrawingOutput, WithoutALayerTheEntityIsOnTheCurrentOne) {
    EXPECT_EQ(0, Line({1, 2, 3}, {4, 5, 6}).ToDb(3, nullptr, nullptr, nullptr));
    ASSERT_EQ(1u, Entities(drawing_).size());
    EXPECT_EQ((Look{L"AcDbLine", L"0", 3}), LookOf(Entities(drawing_)[0]));
    EXPECT_EQ(2u, Layers(drawing_.Database()).size());
}

TEST_F(DrawingOutput, LayerNameThatTheHostRefusesLeavesTheCurrentLayer) {
    EXPECT_EQ(0, Line({1, 2, 3}, {4, 5, 6}).ToDb(3, L"bad|name", &id_, nullptr));
    EXPECT_EQ(L"0", LookOf(id_).layer);
    EXPECT_EQ(2u, Layers(drawing_.Database()).size());
}

TEST_F(DrawingOutput, ColourThatTheHostRefusesIsByLayer) {
    EXPECT_EQ(0, Line({1, 2, 3}, {4, 5, 6}).ToDb(257, nullptr, &id_, nullptr));
    EXPECT_EQ(256, LookOf(id_).colour);
}

TEST_F(DrawingOutput, AnotherDatabaseGetsEntityAndLayer) {
    AcDbDatabase other;
    const Line line({1, 2, 3}, {4, 5, 6});
    EXPECT_EQ(0, line.ToDb(3, L"far", &id_, &other));
    EXPECT_TRUE(Entities(drawing_).empty());
    EXPECT_EQ(2u, Layers(drawing_.Database()).size());
    EXPECT_EQ(std::vector<AcDbObjectId>{id_}, host::database::modelSpaceIds(other));
    EXPECT_EQ((Look{L"AcDbLine", L"far", 3}), LookOf(id_));
    // A layer of that name in the working database doesn't matter.
    EXPECT_EQ(0, line.ToDb(3, L"LOCKED", &id_, &other));
    EXPECT_EQ(L"LOCKED", LookOf(id_).layer);
    EXPECT_EQ(0, Point3d(1, 2, 3).LabelZ(3, L"far", &id_, &other));
    EXPECT_EQ((Look{L"AcDbText", L"far", 3}), LookOf(id_));
    EXPECT_EQ(3u, host::database::modelSpaceIds(other).size());
    EXPECT_TRUE(Entities(drawing_).empty());
}

TEST(DrawingOutputAlone, WithoutADatabaseNothingIsWritten) {
    AcDbObjectId id;
    EXPECT_EQ(Acad::eNoDatabase, Point3d(1, 2, 3).ToDb(1, L"x", &id, nullptr));
    EXPECT_EQ(Acad::eNoDatabase, Line({1, 2, 3}, {4, 5, 6}).ToDb(1, L"x", &id, nullptr));
    EXPECT_EQ(Acad::eNoDatabase, Circle({1, 2, 3}, 4).ToDb(1, L"x", &id, nullptr));
    EXPECT_EQ(Acad::eNoDatabase, Arc(1, Line({1, 2, 3}, {4, 5, 6})).ToDb(1, L"x", &id, nullptr));
    EXPECT_EQ(Acad::eNoDatabase, Point3d(1, 2, 3).LabelZ(1, L"x", &id, nullptr));
    EXPECT_TRUE(id.isNull());
}

TEST_F(DrawingOutput, NumbersThatTheHostRefusesAreNotWritten) {
    const double nan = std::nan("");
    EXPECT_NE(0, Line({nan, 2, 3}, {4, 5, 6}).ToDb(1, nullptr, &id_, nullptr));
    EXPECT_NE(0, Point3d(1, nan, 3).ToDb(1, nullptr, &id_, nullptr));
    EXPECT_TRUE(id_.isNull());
    EXPECT_TRUE(Entities(drawing_).empty());
}

// --- Memory refused.

template <class Action>
void ExpectRefusal(const wchar_t* message, const wchar_t* source, const char* allocation,
                   const Action& action) {
    const TestDrawing drawing{};
    host::fault::arm(allocation, 1, Acad::eOutOfMemory);
    try {
        action();
        ADD_FAILURE() << "nothing raised";
    } catch (const TamExpAcad& exception) {
        EXPECT_STREQ(message, exception.message);
        EXPECT_STREQ(source, exception.file);
    }
    EXPECT_TRUE(Entities(drawing).empty());
    EXPECT_EQ(2u, Layers(drawing.Database()).size());
}

TEST(DrawingOutputMemory, RefusedEntitiesAreRaised) {
    Scripted host;
    host.variable(L"VIEWSIZE", 240.0);
    const Line line({1, 2, 3}, {4, 5, 6});
    const char* const made = "AcDbObject::operator new";
    ExpectRefusal(L"Allocation of AcDbPoint failed", L"GeomEnts/Point3d", made,
                  [] { Point3d(1, 2, 3).ToDb(1, L"x", nullptr, nullptr); });
    ExpectRefusal(L"Allocation of AcDbLine failed", L"GeomEnts/Line", made,
                  [&] { line.ToDb(1, L"x", nullptr, nullptr); });
    ExpectRefusal(L"Allocation of AcDbCircle failed", L"GeomEnts/circle", made, [] {
        Circle({1, 2, 3}, 4).ToDb(1, L"x", nullptr, nullptr);
    });
    ExpectRefusal(L"Allocation of AcDbArc failed", L"GeomEnts/Arc", made,
                  [&] { Arc(1, line).ToDb(1, L"x", nullptr, nullptr); });
    ExpectRefusal(L"Allocation of AcDbText failed", L"ARX/GenARX", made,
                  [] { Point3d(1, 2, 3).LabelXYZ(1, L"x", nullptr, nullptr); });
}

TEST(DrawingOutputMemory, RefusedLayerIsRaisedAndTheEntityGivenBack) {
    const TestDrawing drawing{};
    // The line is the first object made, its layer the second.
    host::fault::arm("AcDbObject::operator new", 2, Acad::eOutOfMemory);
    try {
        Line({1, 2, 3}, {4, 5, 6}).ToDb(1, L"x", nullptr, nullptr);
        ADD_FAILURE() << "nothing raised";
    } catch (const TamExpAcad& exception) {
        EXPECT_STREQ(L"Allocation of layerTableRecord failed", exception.message);
        EXPECT_EQ(797, exception.line);
        EXPECT_STREQ(L"ARX/GenARX", exception.file);
    }
    EXPECT_TRUE(Entities(drawing).empty());
}

// --- Each call failing.

TEST(DrawingOutputFailure, OneEntityOrNoneAndNothingLeftOpen) {
    Scripted host;
    host.variable(L"VIEWSIZE", 240.0);
    const auto all = [](const auto& geometry) {
        return WriteWithEachCallFailing([&geometry](const TestDrawing&) {
            try {
                return geometry.ToDb(3, L"new", nullptr, nullptr);
            } catch (const TamExpAcad&) {
                return static_cast<int>(Acad::eOutOfDisk);
            }
        });
    };
    ExpectAllOrNothing(all(Point3d(1, 2, 3)));
    ExpectAllOrNothing(all(Line({1, 2, 3}, {4, 5, 6})));
    ExpectAllOrNothing(all(Circle({1, 2, 3}, 4)));
    ExpectAllOrNothing(all(Arc(1, Line({1, 2, 3}, {4, 5, 6}))));
}

// --- A marked point.

TEST_F(DrawingOutput, MarkedPointHasACircleOfTheSizeGiven) {
    Array<AcDbObjectId> ids;
    EXPECT_EQ(0, Point3d(1, 2, 3).ToDbMarked(5, L"marks", &ids, 1.5, nullptr));
    ASSERT_EQ(2u, ids.count);
    EXPECT_EQ((std::vector<AcDbObjectId>{ids[0], ids[1]}), Entities(drawing_));
    EXPECT_EQ((Look{L"AcDbPoint", L"marks", 5}), LookOf(ids[0]));
    EXPECT_EQ((Look{L"AcDbCircle", L"marks", 5}), LookOf(ids[1]));
    const ReadAs<AcDbCircle> circle(ids[1]);
    EXPECT_EQ(1.5, circle->radius());
    ExpectPoint({1, 2, 3}, circle->center());
}

TEST_F(DrawingOutput, NegativeMarkSizeIsA140thOfTheViewsHeight) {
    host_.variable(L"VIEWSIZE", 280.0);
    Array<AcDbObjectId> ids;
    EXPECT_EQ(0, Point3d(1, 2, 3).ToDbMarked(5, nullptr, &ids, -0.1, nullptr));
    EXPECT_EQ(2.0, ReadAs<AcDbCircle>(ids[1])->radius());
    EXPECT_EQ(0, Point3d(1, 2, 3).ToDbMarked(5, nullptr, nullptr, 0.0, nullptr));
    EXPECT_EQ(0.0, ReadAs<AcDbCircle>(Entities(drawing_).back())->radius());
}

TEST_F(DrawingOutput, MarkedPointWhosePointFailsStillGetsItsCircle) {
    Array<AcDbObjectId> ids;
    host::fault::arm("AcDbBlockTableRecord::appendAcDbEntity", 1, Acad::eOutOfDisk);
    EXPECT_EQ(Acad::eOutOfDisk, Point3d(1, 2, 3).ToDbMarked(5, nullptr, &ids, 1, nullptr));
    ASSERT_EQ(1u, ids.count);
    EXPECT_EQ(L"AcDbCircle", LookOf(ids[0]).className);
    host::fault::arm("AcDbBlockTableRecord::appendAcDbEntity", 2, Acad::eOutOfDisk);
    EXPECT_EQ(0, Point3d(1, 2, 3).ToDbMarked(5, nullptr, &ids, 1, nullptr));
    EXPECT_EQ(2u, ids.count);
    EXPECT_EQ(L"AcDbPoint", LookOf(ids[1]).className);
}

TEST_F(DrawingOutput, MarkedPointStandsWhenTheViewTellsNoSizeForItsCircle) {
    host_.variable(L"VIEWSIZE", std::wstring(L"240"));
    Array<AcDbObjectId> ids;
    EXPECT_THROW(Point3d(1, 2, 3).ToDbMarked(5, nullptr, &ids, -1, nullptr), TamExpInvalidArgs);
    ASSERT_EQ(1u, ids.count);
    EXPECT_EQ(std::vector<AcDbObjectId>{ids[0]}, Entities(drawing_));
    EXPECT_EQ(L"AcDbPoint", LookOf(ids[0]).className);
}

// --- Labels.

std::wstring TextOf(AcDbObjectId id) {
    return ReadAs<AcDbText>(id)->textStringConst();
}

TEST_F(DrawingOutput, LabelsTellTheCoordinatesInThreeDecimals) {
    const Point3d p(1.25, -2.0005, 3);
    EXPECT_EQ(0, p.LabelXYZ(5, L"texts", &id_, nullptr));
    EXPECT_EQ(L"1.250, -2.001, 3.000", TextOf(id_));
    EXPECT_EQ((Look{L"AcDbText", L"texts", 5}), LookOf(id_));
    {
        const ReadAs<AcDbText> text(id_);
        ExpectPoint(p, text->position());
        EXPECT_EQ(2.0, text->height());  // 240 / 120
        EXPECT_EQ(0.0, text->rotation());
        EXPECT_EQ(1.0, text->normal().z);
    }
    EXPECT_EQ(0, p.LabelZ(5, L"texts", &id_, nullptr));
    EXPECT_EQ(L"3.000", TextOf(id_));
    EXPECT_EQ(0, p.LabelXY(5, L"texts", &id_, nullptr));
    EXPECT_EQ(L"1.250, -2.001", TextOf(id_));
    EXPECT_EQ(0, p.LabelXY(5, nullptr, nullptr, nullptr));
    EXPECT_EQ(4u, Entities(drawing_).size());
}

TEST_F(DrawingOutput, LabelsAreCutAt39And19And29Characters) {
    const Point3d p(1234567890123.0, 2234567890123.0, 3234567890123456.0);
    const std::wstring all = L"1234567890123.000, 2234567890123.000, 3234567890123456.000";
    EXPECT_EQ(0, p.LabelXYZ(5, nullptr, &id_, nullptr));
    EXPECT_EQ(all.substr(0, 39), TextOf(id_));
    EXPECT_EQ(0, p.LabelXY(5, nullptr, &id_, nullptr));
    EXPECT_EQ(all.substr(0, 29), TextOf(id_));
    EXPECT_EQ(0, p.LabelZ(5, nullptr, &id_, nullptr));
    EXPECT_EQ(L"3234567890123456.00", TextOf(id_));
    // Just as long as there is room.
    EXPECT_EQ(0, Point3d(0, 0, 323456789012345.0).LabelZ(5, nullptr, &id_, nullptr));
    EXPECT_EQ(L"323456789012345.000", TextOf(id_));
}

TEST_F(DrawingOutput, LineLabelsBothEnds) {
    const Line line({1, 2, 3}, {4, 5, 6});
    Array<AcDbObjectId> ids;
    EXPECT_EQ(0, line.LabelEndsXYZ(5, L"texts", &ids, nullptr));
    EXPECT_EQ(0, line.LabelEndsZ(5, L"texts", &ids, nullptr));
    EXPECT_EQ(0, line.LabelEndsXY(5, L"texts", &ids, nullptr));
    ASSERT_EQ(6u, ids.count);
    EXPECT_EQ(L"1.000, 2.000, 3.000", TextOf(ids[0]));
    EXPECT_EQ(L"4.000, 5.000, 6.000", TextOf(ids[1]));
    EXPECT_EQ(L"3.000", TextOf(ids[2]));
    EXPECT_EQ(L"6.000", TextOf(ids[3]));
    EXPECT_EQ(L"1.000, 2.000", TextOf(ids[4]));
    EXPECT_EQ(L"4.000, 5.000", TextOf(ids[5]));
    ExpectPoint({4, 5, 6}, ReadAs<AcDbText>(ids[5])->position());
}

TEST_F(DrawingOutput, LineWhoseFirstLabelFailsTellsSoAndPlacesTheSecond) {
    Array<AcDbObjectId> ids;
    host::fault::arm("AcDbBlockTableRecord::appendAcDbEntity", 1, Acad::eOutOfDisk);
    EXPECT_EQ(Acad::eOutOfDisk, Line({1, 2, 3}, {4, 5, 6}).LabelEndsZ(5, L"texts", &ids, nullptr));
    ASSERT_EQ(1u, ids.count);
    EXPECT_EQ(L"6.000", TextOf(ids[0]));
}

TEST_F(DrawingOutput, CircleLabelsItsCentre) {
    const Circle circle({1, 2, 3}, 4);
    EXPECT_EQ(0, circle.LabelXYZ(5, L"texts", &id_, nullptr));
    EXPECT_EQ(L"1.000, 2.000, 3.000", TextOf(id_));
    EXPECT_EQ(0, circle.LabelZ(5, L"texts", &id_, nullptr));
    EXPECT_EQ(L"3.000", TextOf(id_));
    EXPECT_EQ(0, circle.LabelXY(5, L"texts", &id_, nullptr));
    EXPECT_EQ(L"1.000, 2.000", TextOf(id_));
}

TEST_F(DrawingOutput, LabelNeedsARealViewHeight) {
    host_.variable(L"VIEWSIZE", std::wstring(L"240"));
    EXPECT_THROW(Point3d().LabelZ(1, L"new", nullptr, nullptr), TamExpInvalidArgs);
    EXPECT_TRUE(Entities(drawing_).empty());
    EXPECT_EQ(2u, Layers(drawing_.Database()).size());
}

// --- Box.

std::vector<std::vector<double>> EndsOf(const std::vector<AcDbObjectId>& ids) {
    std::vector<std::vector<double>> ends;
    for (const AcDbObjectId id : ids) {
        const ReadAs<AcDbLine> line(id);
        const AcGePoint3d a = line->startPoint(), b = line->endPoint();
        ends.push_back({a.x, a.y, a.z, b.x, b.y, b.z});
    }
    return ends;
}

TEST_F(DrawingOutput, BoxBecomesItsTwelveEdges) {
    Array<AcDbObjectId> ids;
    EXPECT_EQ(0, Box(1.0, 4.0, 2.0, 5.0, 3.0, 6.0).ToDb(5, L"cage", &ids, nullptr));
    ASSERT_EQ(12u, ids.count);
    EXPECT_EQ(12u, ids.increment);
    EXPECT_EQ(12u, ids.capacity);
    EXPECT_EQ((Look{L"AcDbLine", L"cage", 5}), LookOf(ids[11]));
    const std::vector<std::vector<double>> expected{
        {1, 2, 3, 4, 2, 3}, {4, 2, 3, 4, 5, 3}, {4, 5, 3, 1, 5, 3}, {1, 5, 3, 1, 2, 3},
        {1, 2, 6, 4, 2, 6}, {4, 2, 6, 4, 5, 6}, {4, 5, 6, 1, 5, 6}, {1, 5, 6, 1, 2, 6},
        {1, 2, 3, 1, 2, 6}, {4, 2, 3, 4, 2, 6}, {4, 5, 3, 4, 5, 6}, {1, 5, 3, 1, 5, 6}};
    EXPECT_EQ(expected, EndsOf(Entities(drawing_)));
}

TEST_F(DrawingOutput, BoxKeepsARoomierArrayAndWhatItHolds) {
    Array<AcDbObjectId> ids(30);
    ids.Append(AcDbObjectId());
    EXPECT_EQ(0, Box(1.0, 4.0, 2.0, 5.0, 3.0, 6.0).ToDb(5, nullptr, &ids, nullptr));
    EXPECT_EQ(13u, ids.count);
    EXPECT_TRUE(ids[0].isNull());
    EXPECT_EQ(30u, ids.capacity);
    EXPECT_EQ(12u, ids.increment);
}

TEST_F(DrawingOutput, BoxInPlanBecomesFourEdgesAtHeightZero) {
    Array<AcDbObjectId> ids(2);
    const std::uint32_t increment = ids.increment;
    EXPECT_EQ(0, Box(1.0, 4.0, 2.0, 5.0, 3.0, 6.0).ToDb2d(5, L"cage", &ids, nullptr));
    ASSERT_EQ(4u, ids.count);
    EXPECT_EQ(4u, ids.capacity);
    EXPECT_EQ(increment, ids.increment);
    const std::vector<std::vector<double>> expected{
        {1, 2, 0, 4, 2, 0}, {4, 2, 0, 4, 5, 0}, {4, 5, 0, 1, 5, 0}, {1, 5, 0, 1, 2, 0}};
    EXPECT_EQ(expected, EndsOf(Entities(drawing_)));
    EXPECT_EQ(0, Box(1.0, 4.0, 2.0, 5.0, 3.0, 6.0).ToDb2d(5, L"cage", nullptr, nullptr));
    EXPECT_EQ(8u, Entities(drawing_).size());
}

TEST_F(DrawingOutput, BoxEdgeThatFailsIsToldAndLeftOut) {
    Array<AcDbObjectId> ids;
    host::fault::arm("AcDbBlockTableRecord::appendAcDbEntity", 5, Acad::eOutOfDisk);
    EXPECT_EQ(Acad::eOutOfDisk, Box(1.0, 4.0, 2.0, 5.0, 3.0, 6.0).ToDb(5, nullptr, &ids, nullptr));
    EXPECT_EQ(11u, ids.count);
    EXPECT_EQ(11u, Entities(drawing_).size());
}

}  // namespace
}  // namespace TamLib
