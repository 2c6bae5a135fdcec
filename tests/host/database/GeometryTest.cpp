// What entities look like: boxes and drawn lines, for picking and selecting.
#include <dbents.h>
#include <gtest/gtest.h>

#include <cmath>

#include "host/database/Drawing.h"
#include "host/database/Geometry.h"
#include "tests/host/support/DrawingText.h"
#include "tests/host/support/LedgerListener.h"

using namespace host::database;
using host::test::DrawingText;

namespace {

void expectBox(const DrawingText& drawing, AcGePoint3d min, AcGePoint3d max,
               double tolerance = 1e-9) {
    const auto database = drawing.database();
    const auto box = extentsOf(idFromHandle(*database, L"2F"));
    ASSERT_TRUE(box.has_value());
    EXPECT_LE(box->minPoint().distanceTo(min), tolerance)
        << box->minPoint().x << " " << box->minPoint().y << " " << box->minPoint().z;
    EXPECT_LE(box->maxPoint().distanceTo(max), tolerance)
        << box->maxPoint().x << " " << box->maxPoint().y << " " << box->maxPoint().z;
    AcDbEntity* entity = nullptr;
    ASSERT_EQ(acdbOpenAcDbEntity(entity, idFromHandle(*database, L"2F"), AcDb::kForRead),
              Acad::eOk);
    AcDbExtents same;
    EXPECT_EQ(entity->getGeomExtents(same), Acad::eOk);
    EXPECT_EQ(same.minPoint(), box->minPoint());
    EXPECT_EQ(same.maxPoint(), box->maxPoint());
    EXPECT_EQ(entity->close(), Acad::eOk);
}

void expectBox(const std::string& record, AcGePoint3d min, AcGePoint3d max,
               double tolerance = 1e-9) {
    expectBox(DrawingText().entity(record), min, max, tolerance);
}

std::vector<Chain> chainsOf(const DrawingText& drawing, double error = 0.01) {
    const auto database = drawing.database();
    return drawnChains(idFromHandle(*database, L"2F"), error);
}

}  // namespace

TEST(Box, OfCurvesIsExact) {
    expectBox("LINE|5 2F|8 0|10 5|20 2|30 1|11 1|21 7|31 0", {1, 2, 0}, {5, 7, 1});
    expectBox("CIRCLE|5 2F|8 0|10 5|20 2|30 1|40 3", {2, -1, 1}, {8, 5, 1});
    expectBox("ARC|5 2F|8 0|10 0|20 0|40 2|50 45|51 135", {-std::sqrt(2.0), std::sqrt(2.0), 0},
              {std::sqrt(2.0), 2, 0});
    expectBox("ELLIPSE|5 2F|8 0|10 0|20 0|11 3|21 3|40 0.5",
              {-std::sqrt(11.25), -std::sqrt(11.25), 0}, {std::sqrt(11.25), std::sqrt(11.25), 0});
    expectBox("LWPOLYLINE|5 2F|8 0|70 0|38 4|10 0|20 0|42 1|10 4|20 0", {0, -2, 4}, {4, 0, 4});
    // x = 3t(1-t)^2 * 4 + ..., a loop whose turning points are inside the span
    expectBox(
        "SPLINE|5 2F|8 0|70 0|71 2|40 0|40 0|40 0|40 1|40 1|40 1|10 0|20 0|10 1|20 2|10 2|20 0",
        {0, 0, 0}, {2, 1, 0});
    expectBox("CIRCLE|5 2F|8 0|10 5|20 2|40 3|210 1|220 0|230 0", {0, 2, -1}, {0, 8, 5}, 1e-9);
}

TEST(Box, OfPointsFacesAndSolids) {
    expectBox("POINT|5 2F|8 0|10 5|20 2|30 1", {5, 2, 1}, {5, 2, 1});
    expectBox("3DFACE|5 2F|8 0|10 0|20 0|30 0|11 4|21 0|31 1|12 4|22 3|32 2|13 0|23 3|33 9",
              {0, 0, 0}, {4, 3, 9});
    expectBox("SOLID|5 2F|8 0|10 1|20 0|11 4|21 0|12 1|22 3|13 4|23 3|210 0|220 0|230 -1",
              {-4, 0, 0}, {-1, 3, 0});
}

TEST(Box, OfMeshes) {
    expectBox(DrawingText()
                  .entity("POLYLINE|5 2F|8 0|70 64|71 3|72 1")
                  .entity("VERTEX|8 0|10 0|20 0|30 0|70 192")
                  .entity("VERTEX|8 0|10 5|20 0|30 0|70 192")
                  .entity("VERTEX|8 0|10 0|20 6|30 7|70 192")
                  .entity("VERTEX|8 0|10 0|20 0|30 0|70 128|71 1|72 2|73 3")
                  .entity("SEQEND|8 0"),
              {0, 0, 0}, {5, 6, 7});
    expectBox(DrawingText()
                  .entity("POLYLINE|5 2F|8 0|70 16|71 2|72 2")
                  .entity("VERTEX|8 0|10 0|20 0|30 0|70 64")
                  .entity("VERTEX|8 0|10 5|20 0|30 0|70 64")
                  .entity("VERTEX|8 0|10 0|20 6|30 7|70 64")
                  .entity("VERTEX|8 0|10 5|20 6|30 -1|70 64")
                  .entity("SEQEND|8 0"),
              {0, 0, -1}, {5, 6, 7});
}

// Four letters of height 2 are 4 * 2 * 0.8 = 6.4 wide.
TEST(Box, OfATextFollowsItsJustification) {
    const std::string head = "TEXT|5 2F|8 0|10 10|20 20|40 2|1 abcd";
    expectBox(head, {10, 20, 0}, {16.4, 22, 0});
    expectBox(head + "|50 90", {8, 20, 0}, {10, 26.4, 0});
    expectBox(head + "|41 0.5", {10, 20, 0}, {13.2, 22, 0});
    expectBox(head + "|72 2|11 100|21 50", {93.6, 50, 0}, {100, 52, 0});
    expectBox(head + "|72 1|11 100|21 50|73 3", {96.8, 48, 0}, {103.2, 50, 0});
    expectBox(head + "|72 4|11 100|21 50", {96.8, 49, 0}, {103.2, 51, 0});
    expectBox(head + "|72 0|11 100|21 50|73 2", {100, 49, 0}, {106.4, 51, 0});
    expectBox(head + "|72 5|11 14|21 20", {10, 20, 0}, {14, 22, 0});
    expectBox(head + "|71 2", {3.6, 20, 0}, {10, 22, 0});
    expectBox(head + "|71 4", {10, 18, 0}, {16.4, 20, 0});
    expectBox(head + "|210 0|220 0|230 -1", {-16.4, 20, 0}, {-10, 22, 0});
}

TEST(Box, OfATextTurnsWithIt) {
    const auto database =
        DrawingText().entity("TEXT|5 2F|8 0|10 10|20 20|40 2|1 abcd|72 2|11 100|21 50").database();
    AcDbText* text = nullptr;
    ASSERT_EQ(acdbOpenObject(text, idFromHandle(*database, L"2F"), AcDb::kForWrite), Acad::eOk);
    EXPECT_EQ(text->setRotation(3.14159265358979323846), Acad::eOk);
    AcDbExtents box;
    EXPECT_EQ(text->getGeomExtents(box), Acad::eOk);
    EXPECT_TRUE(box.minPoint().isEqualTo({100, 48, 0}));
    EXPECT_TRUE(box.maxPoint().isEqualTo({106.4, 50, 0}));
    EXPECT_EQ(text->close(), Acad::eOk);
}

TEST(Box, OfAnMTextFollowsItsAttachment) {
    const std::string head = "MTEXT|5 2F|8 0|10 10|20 20|40 1|1 abcde";
    expectBox(head + "|71 1", {10, 19, 0}, {14, 20, 0});
    expectBox(head + "|71 9", {6, 20, 0}, {10, 21, 0});
    expectBox(head + "|71 5", {8, 19.5, 0}, {12, 20.5, 0});
    expectBox(head + "\\Pabc|71 1", {10, 17.4, 0}, {14, 20, 0});
    expectBox(head + "|71 1|41 2", {10, 17.4, 0}, {12, 20, 0});
    expectBox(head + "|71 7|11 0|21 1|31 0", {9, 20, 0}, {10, 24, 0});
}

TEST(Box, OfWhatHasNoKnownLookIsEmpty) {
    for (const char* record :
         {"HATCH|5 2F|8 0", "REGION|5 2F|8 0", "XLINE|5 2F|8 0|10 0|20 0|11 1|21 0",
          "INSERT|5 2F|8 0|2 NOWHERE|10 0|20 0", "LINE|5 2F|8 0|10 NaN"}) {
        const auto database = DrawingText().entity(record).database();
        EXPECT_FALSE(extentsOf(idFromHandle(*database, L"2F")).has_value()) << record;
        EXPECT_TRUE(drawnChains(idFromHandle(*database, L"2F"), 0.1).empty()) << record;
    }
    EXPECT_FALSE(extentsOf(AcDbObjectId()).has_value());
    EXPECT_TRUE(drawnChains(AcDbObjectId(), 0.1).empty());
}

TEST(Box, OfAReferenceGoesThroughNestedBlocks) {
    const DrawingText drawing =
        DrawingText()
            .block("INNER", {"LINE|8 0|10 0|20 0|11 2|21 0"}, "70 0|10 0|20 0")
            .block("OUTER", {"INSERT|8 0|2 INNER|10 10|20 0|50 90", "CIRCLE|8 0|10 0|20 0|40 1"},
                   "70 0|10 0|20 0")
            .entity("INSERT|5 2F|8 0|2 OUTER|10 100|20 200|41 2|42 2|43 2");
    expectBox(drawing, {98, 198, 0}, {120, 204, 0});
}

TEST(Box, OfAReferenceIsExactUnderRotation) {
    const DrawingText drawing = DrawingText()
                                    .block("TREE", {"CIRCLE|8 0|10 0|20 0|40 1"}, "70 0|10 0|20 0")
                                    .entity("INSERT|5 2F|8 0|2 TREE|10 0|20 0|50 45");
    expectBox(drawing, {-1, -1, 0}, {1, 1, 0});
}

TEST(Box, OfAReferenceInAMirroredPlane) {
    const DrawingText drawing =
        DrawingText()
            .block("ARM", {"LINE|8 0|10 0|20 0|11 2|21 1"}, "70 0|10 0|20 0")
            .entity("INSERT|5 2F|8 0|2 ARM|10 5|20 0|210 0|220 0|230 -1");
    expectBox(drawing, {-7, 0, 0}, {-5, 1, 0});
}

TEST(Box, OfAnArraySpansItsCells) {
    const DrawingText drawing =
        DrawingText()
            .block("ARM", {"LINE|8 0|10 0|20 0|11 1|21 1"}, "70 0|10 0|20 0")
            .entity("INSERT|5 2F|8 0|2 ARM|10 0|20 0|70 1000|71 2000|44 10|45 -5");
    expectBox(drawing, {0, -9995, 0}, {9991, 1, 0});
}

TEST(Box, OfAReferenceTakesAttributesInAndDefinitionsNot) {
    const DrawingText drawing =
        DrawingText()
            .block("T", {"LINE|8 0|10 0|20 0|11 1|21 1", "ATTDEF|8 0|10 500|20 500|40 1|1 a|2 A"},
                   "70 2|10 0|20 0")
            .entity("INSERT|5 2F|8 0|66 1|2 T|10 0|20 0")
            .entity("ATTRIB|8 0|10 50|20 50|40 1|1 a|2 A")
            .entity("SEQEND|8 0");
    expectBox(drawing, {0, 0, 0}, {50.8, 51, 0});
}

TEST(Box, OfADimensionIsThatOfItsBlock) {
    const DrawingText drawing =
        DrawingText()
            .block("*D1", {"LINE|8 0|10 3|20 4|11 5|21 6"}, "70 1|10 0|20 0")
            .entity("DIMENSION|5 2F|8 0|2 *D1|70 32|10 99|20 99");
    expectBox(drawing, {3, 4, 0}, {5, 6, 0});
}

TEST(Box, BlocksThatHoldThemselvesEnd) {
    const DrawingText drawing =
        DrawingText()
            .block("A", {"INSERT|8 0|2 B|10 1|20 0", "LINE|8 0|10 0|20 0|11 1|21 1"},
                   "70 0|10 0|20 0")
            .block("B",
                   {"INSERT|8 0|2 A|10 1|20 0", "INSERT|8 0|2 B|10 1|20 0", "POINT|8 0|10 0|20 0"},
                   "70 0|10 0|20 0")
            .entity("INSERT|5 2F|8 0|2 A|10 0|20 0");
    expectBox(drawing, {0, 0, 0}, {1, 1, 0});
    EXPECT_EQ(chainsOf(drawing).size(), 2U);
}

// Ten blocks, each of ten of the next: ten thousand million lines.
TEST(Box, OfBlocksInBlocksManyTimesOverEndsSoon) {
    DrawingText drawing;
    for (int level = 0; level < 10; ++level) {
        std::vector<std::string> entities;
        for (int i = 0; i < 10; ++i) {
            entities.push_back(level == 9 ? "LINE|8 0|10 0|20 0|11 1|21 1"
                                          : "INSERT|8 0|2 B" + std::to_string(level + 1) + "|10 " +
                                                std::to_string(i) + "|20 0");
        }
        drawing.block("B" + std::to_string(level), entities, "70 0|10 0|20 0");
    }
    drawing.entity("INSERT|5 2F|8 0|2 B0|10 0|20 0");
    expectBox(drawing, {0, 0, 0}, {82, 1, 0});
    const auto chains = chainsOf(drawing);
    ASSERT_EQ(chains.size(), 1U) << "the outline of the box";
    EXPECT_EQ(chains[0].size(), 5U);
    EXPECT_TRUE(chains[0][2].isEqualTo({82, 1, 0}));
}

TEST(Chains, OfEachClass) {
    EXPECT_EQ(chainsOf(DrawingText().entity("LINE|5 2F|8 0|10 0|20 0|11 1|21 1")).at(0).size(), 2U);
    EXPECT_EQ(chainsOf(DrawingText().entity("POINT|5 2F|8 0|10 0|20 0")).at(0).size(), 1U);
    EXPECT_EQ(chainsOf(DrawingText().entity("TEXT|5 2F|8 0|10 0|20 0|40 1|1 abc")).at(0).size(),
              5U);
    EXPECT_EQ(
        chainsOf(DrawingText().entity("LWPOLYLINE|5 2F|8 0|70 1|10 0|20 0|10 1|20 0|10 1|20 1"))
            .at(0)
            .size(),
        4U);
    const auto circle =
        chainsOf(DrawingText().entity("CIRCLE|5 2F|8 0|10 0|20 0|40 10"), 0.01).at(0);
    EXPECT_GT(circle.size(), 40U);
    EXPECT_TRUE(circle.front().isEqualTo(circle.back()));
    for (const AcGePoint3d& point : circle) EXPECT_NEAR(point.asVector().length(), 10.0, 1e-12);
    const auto solid =
        chainsOf(DrawingText().entity("SOLID|5 2F|8 0|10 0|20 0|11 4|21 0|12 0|22 3|13 4|23 3"))
            .at(0);
    EXPECT_EQ(solid, (Chain{{0, 0, 0}, {4, 0, 0}, {4, 3, 0}, {0, 3, 0}, {0, 0, 0}}));
    const auto face =
        chainsOf(DrawingText().entity("3DFACE|5 2F|8 0|10 0|20 0|11 4|21 0|12 4|22 3|13 0|23 3"))
            .at(0);
    EXPECT_EQ(face, solid);
    EXPECT_EQ(chainsOf(DrawingText().entity("LEADER|5 2F|8 0|10 0|20 0|10 1|20 1|10 2|20 1"))
                  .at(0)
                  .size(),
              3U);
}

TEST(Chains, OfMeshesAreTheirEdges) {
    const auto grid = chainsOf(DrawingText()
                                   .entity("POLYLINE|5 2F|8 0|70 17|71 2|72 3")
                                   .entity("VERTEX|8 0|10 0|20 0|70 64")
                                   .entity("VERTEX|8 0|10 1|20 0|70 64")
                                   .entity("VERTEX|8 0|10 2|20 0|70 64")
                                   .entity("VERTEX|8 0|10 0|20 1|70 64")
                                   .entity("VERTEX|8 0|10 1|20 1|70 64")
                                   .entity("VERTEX|8 0|10 2|20 1|70 64")
                                   .entity("SEQEND|8 0"));
    ASSERT_EQ(grid.size(), 5U);
    EXPECT_EQ(grid[0].size(), 3U);
    EXPECT_EQ(grid[2].size(), 3U) << "closed in M: two rows and back";
}

TEST(Chains, OfAnArrayAreThoseOfAllCells) {
    EXPECT_EQ(chainsOf(DrawingText()
                           .block("ARM", {"LINE|8 0|10 0|20 0|11 1|21 1"}, "70 0|10 0|20 0")
                           .entity("INSERT|5 2F|8 0|2 ARM|10 0|20 0|70 4|71 3|44 10|45 5"))
                  .size(),
              12U);
}

TEST(Chains, OfAnErasedEntityAreNone) {
    const auto database = DrawingText().entity("LINE|5 2F|8 0|10 0|20 0|11 1|21 1").database();
    AcDbEntity* line = nullptr;
    ASSERT_EQ(acdbOpenAcDbEntity(line, idFromHandle(*database, L"2F"), AcDb::kForWrite), Acad::eOk);
    EXPECT_EQ(line->erase(), Acad::eOk);
    EXPECT_EQ(line->close(), Acad::eOk);
    EXPECT_TRUE(drawnChains(idFromHandle(*database, L"2F"), 0.1).empty());
    EXPECT_FALSE(extentsOf(idFromHandle(*database, L"2F")).has_value());
}

TEST(Extents, GrowByPointsAndOtherBoxes) {
    AcDbExtents box;
    AcDbExtents other;
    box.addExt(other);
    EXPECT_GT(box.minPoint().x, box.maxPoint().x) << "still empty";
    box.addPoint({1, 2, 3});
    EXPECT_EQ(box.minPoint(), AcGePoint3d(1, 2, 3));
    other.addPoint({-1, 5, 3});
    box.addExt(other);
    EXPECT_EQ(box.minPoint(), AcGePoint3d(-1, 2, 3));
    EXPECT_EQ(box.maxPoint(), AcGePoint3d(1, 5, 3));
    EXPECT_EQ(box.set({0, 0, 0}, {1, 1, 1}), Acad::eOk);
    EXPECT_EQ(box.set({0, 2, 0}, {1, 1, 1}), Acad::eInvalidExtents);
    EXPECT_EQ(box.maxPoint(), AcGePoint3d(1, 1, 1));
}
