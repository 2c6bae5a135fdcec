// PolyLine read from drawing entities: every class, vertices, closing, what becomes of the entity.
#include <dbents.h>
#include <dbpl.h>
#include <dbregion.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <sstream>
#include <string>
#include <vector>

#include "GeomStructs/PolyLine.h"
#include "tam/TamExceptions.h"
#include "tests/GeomEnts/TestDrawing.h"

namespace TamLib {
namespace {

const char* const kLine = "LINE|5 2F|8 0|10 1|20 2|30 3|11 4|21 5|31 6";

// The records of an old-style polyline; `vertices` are groups, each handle counted on from 30.
std::string OldPolyline(int handle, int flags, const std::string& groups,
                        std::initializer_list<const char*> vertices) {
    std::ostringstream records;
    records << std::hex << "POLYLINE|5 " << handle << "|8 0|66 1|70 " << std::dec << flags << "|"
            << groups << std::hex;
    for (const char* vertex : vertices) records << "\nVERTEX|5 " << ++handle << "|8 0|" << vertex;
    records << "\nSEQEND|8 0";
    return records.str();
}

void ExpectVertices(const std::vector<Point3d>& expected, const PolyLine& line) {
    ASSERT_EQ(expected.size(), line.count);
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_NEAR(expected[i].x, line.data[i].x, 1e-9) << i;
        EXPECT_NEAR(expected[i].y, line.data[i].y, 1e-9) << i;
        EXPECT_NEAR(expected[i].z, line.data[i].z, 1e-9) << i;
    }
}

PolyLine Read(const TestDrawing& drawing, std::uint64_t handle) {
    return PolyLine(drawing.Open(handle), 1);
}

TEST(PolyLineEntity, LineGivesItsEnds) {
    const TestDrawing drawing{kLine};
    ExpectVertices({{1, 2, 3}, {4, 5, 6}}, Read(drawing, 0x2F));
}

TEST(PolyLineEntity, PointGivesAClosedLineWithoutLength) {
    const TestDrawing drawing{"POINT|5 2F|8 0|10 1|20 2|30 3"};
    const PolyLine line = Read(drawing, 0x2F);
    ExpectVertices({{1, 2, 3}, {1, 2, 3}}, line);
    EXPECT_TRUE(line.IsClosed());
    EXPECT_EQ(0.0, line.Length());
    double distance = 0;
    EXPECT_EQ(0, line.NearestSegment({4, 6, 0}, &distance));
    EXPECT_EQ(5.0, distance);
}

TEST(PolyLineEntity, BlockReferenceGivesItsPositionTwice) {
    const TestDrawing drawing{"INSERT|5 2F|8 0|2 NONE|10 1|20 2|30 3"};
    ExpectVertices({{1, 2, 3}, {1, 2, 3}}, Read(drawing, 0x2F));
    EXPECT_FALSE(PolyLine().IsPolyEntity(nullptr));
}

TEST(PolyLineEntity, OpenLightPolylineOfNGivesNAndAClosedOneOneMore) {
    const TestDrawing drawing{"LWPOLYLINE|5 2F|8 0|90 3|70 0|38 7|10 0|20 0|10 10|20 0|10 10|20 5",
                              "LWPOLYLINE|5 30|8 0|90 3|70 1|38 7|10 0|20 0|10 10|20 0|10 10|20 5",
                              "LWPOLYLINE|5 31|8 0|90 3|70 1|38 7|10 0|20 0|10 10|20 0|10 0|20 0"};
    ExpectVertices({{0, 0, 7}, {10, 0, 7}, {10, 5, 7}}, Read(drawing, 0x2F));
    ExpectVertices({{0, 0, 7}, {10, 0, 7}, {10, 5, 7}, {0, 0, 7}}, Read(drawing, 0x30));
    // Closed, with the first vertex repeated already: nothing is added.
    ExpectVertices({{0, 0, 7}, {10, 0, 7}, {0, 0, 7}}, Read(drawing, 0x31));
}

TEST(PolyLineEntity, BulgesBecomeChords) {
    const TestDrawing drawing{"LWPOLYLINE|5 2F|8 0|90 3|70 0|10 0|20 0|42 1|10 10|20 0|10 10|20 5"};
    ExpectVertices({{0, 0, 0}, {10, 0, 0}, {10, 5, 0}}, Read(drawing, 0x2F));
}

TEST(PolyLineEntity, PlanePolylineTakesTheElevationBeforeItsPlane) {
    // Normal (0, 1, 0): the plane's x axis is -x of the world, its y axis the world's z.
    const TestDrawing drawing{OldPolyline(0x2F, 0, "10 0|20 0|30 5|210 0|220 1|230 0",
                                          {"10 1|20 2|30 99|70 0", "10 3|20 4|30 99|70 0"})};
    ExpectVertices({{-1, 5, 2}, {-3, 5, 4}}, Read(drawing, 0x2F));
}

TEST(PolyLineEntity, ClosedPlanePolylineRepeatsItsFirstVertex) {
    const TestDrawing drawing{
        OldPolyline(0x2F, 1, "10 0|20 0|30 5", {"10 0|20 0", "10 3|20 4", "10 6|20 0"})};
    ExpectVertices({{0, 0, 5}, {3, 4, 5}, {6, 0, 5}, {0, 0, 5}}, Read(drawing, 0x2F));
}

TEST(PolyLineEntity, ControlVerticesAreSkipped) {
    // Splined: flag 4; control vertices have the flag 16, curve vertices 8, those in space 32 more.
    const TestDrawing drawing{
        OldPolyline(0x20, 4, "10 0|20 0|30 0",
                    {"10 0|20 0|70 16", "10 1|20 1|70 8", "10 2|20 1|70 8"}),
        OldPolyline(0x30, 8 + 4, "10 0|20 0|30 0",
                    {"10 0|20 0|30 0|70 48", "10 1|20 1|30 4|70 40", "10 2|20 1|30 5|70 40"})};
    ExpectVertices({{1, 1, 0}, {2, 1, 0}}, Read(drawing, 0x20));
    ExpectVertices({{1, 1, 4}, {2, 1, 5}}, Read(drawing, 0x30));
}

// A closed polyline in space with the handle 2F.
std::string ClosedInSpace() {
    return OldPolyline(0x2F, 8 + 1, "10 0|20 0|30 0",
                       {"10 0|20 0|30 1|70 32", "10 3|20 4|30 2|70 32", "10 6|20 0|30 3|70 32"});
}

TEST(PolyLineEntity, SpacePolylineKeepsItsHeightsAndCloses) {
    const TestDrawing drawing{ClosedInSpace()};
    ExpectVertices({{0, 0, 1}, {3, 4, 2}, {6, 0, 3}, {0, 0, 1}}, Read(drawing, 0x2F));
}

TEST(PolyLineEntity, AppendsToTheVerticesThatAreThere) {
    const TestDrawing drawing{kLine};
    PolyLine line;
    line.Append({9, 9, 9});
    line.offset = {1, 1, 1};
    line.FromEntity(drawing.Open(0x2F), 1);
    ExpectVertices({{9, 9, 9}, {1, 2, 3}, {4, 5, 6}}, line);
    EXPECT_EQ(1.0, line.offset.x);
    line.FromEntity(nullptr, 1);
    EXPECT_EQ(3u, line.count);
}

TEST(PolyLineEntity, DisposalLeavesOpenClosesOrErases) {
    const TestDrawing drawing{kLine};
    AcDbEntity* const entity = drawing.Open(0x2F);
    PolyLine(entity, 0);
    EXPECT_TRUE(entity->isReadEnabled());
    PolyLine(entity, 1);
    EXPECT_FALSE(entity->isReadEnabled());
    EXPECT_FALSE(drawing.IsErased(0x2F));
    PolyLine(drawing.Open(0x2F, AcDb::kForWrite), 2);
    EXPECT_TRUE(drawing.IsErased(0x2F));
}

TEST(PolyLineEntity, WhatIsNotReadIsClosedAndNeverErased) {
    const TestDrawing drawing{"TEXT|5 2F|8 0|10 1|20 2|30 3|40 2.5|1 A",
                              "CIRCLE|5 30|8 0|10 1|20 2|30 3|40 2.5"};
    for (const std::uint64_t handle : {0x2Fu, 0x30u}) {
        PolyLine line(drawing.Open(handle, AcDb::kForWrite), 2);
        EXPECT_EQ(0u, line.count);
        EXPECT_FALSE(drawing.IsErased(handle));
        AcDbEntity* const entity = drawing.Open(handle);
        line.FromEntity(entity, 0);
        EXPECT_TRUE(entity->isReadEnabled());
        line.FromEntity(entity, 1);
        EXPECT_FALSE(entity->isReadEnabled());
    }
}

TEST(PolyLineEntity, ByIdOpensReadsAndClosesTwice) {
    const TestDrawing drawing{kLine};
    host::fault::disarm();
    const PolyLine line(drawing.Id(0x2F));
    const std::vector<std::string> calls = host::fault::names();
    EXPECT_EQ(2, std::count(calls.begin(), calls.end(), "AcDbObject::close"));
    ExpectVertices({{1, 2, 3}, {4, 5, 6}}, line);
    EXPECT_EQ(0u, PolyLine(AcDbObjectId()).count);
    host::fault::arm("acdbOpenAcDbObject", 1, Acad::eWasOpenForWrite);
    EXPECT_EQ(0u, PolyLine(drawing.Id(0x2F)).count);
}

TEST(PolyLineEntity, TheSecondCloseTakesAnotherReadersOpening) {
    const TestDrawing drawing{kLine};
    AcDbEntity* const reader = drawing.Open(0x2F);
    const PolyLine line(drawing.Id(0x2F));
    EXPECT_EQ(2u, line.count);
    EXPECT_FALSE(reader->isReadEnabled());  // intended: a status of close is not looked at
}

TEST(PolyLineEntity, AVertexThatCannotBeOpenedIsPassedOver) {
    const TestDrawing drawing{ClosedInSpace()};
    AcDbEntity* const entity = drawing.Open(0x2F);
    host::fault::arm("acdbOpenAcDbObject", 2, Acad::eWasOpenForWrite);
    ExpectVertices({{0, 0, 1}, {6, 0, 3}, {0, 0, 1}}, PolyLine(entity, 1));
}

TEST(PolyLineEntity, WithoutAnIteratorThereAreNoVertices) {
    const TestDrawing drawing{ClosedInSpace()};
    AcDbEntity* const entity = drawing.Open(0x2F);
    host::fault::arm("AcDb3dPolyline::vertexIterator", 1, 1);
    EXPECT_EQ(0u, PolyLine(entity, 1).count);
    EXPECT_TRUE(host::fault::fired());
}

TEST(PolyLineEntity, ARefusedVertexRaisesWithTheVerticesReadAndTheEntityOpen) {
    const TestDrawing drawing{"LWPOLYLINE|5 2F|8 0|90 3|70 1|10 0|20 0|10 10|20 0|10 10|20 5"};
    AcDbEntity* const entity = drawing.Open(0x2F, AcDb::kForWrite);
    PolyLine line;
    host::fault::arm("AcDbPolyline::getPointAt", 3, Acad::eInvalidIndex);
    try {
        line.FromEntity(entity, 2);
        ADD_FAILURE() << "nothing was raised";
    } catch (const TamExpAcad& e) {
        EXPECT_EQ(std::wstring(L"LightWeight PolyLine conversion to PolyLine failed!"), e.message);
        EXPECT_EQ(std::wstring(L"GeomStructs/PolyLine"), e.file);
    }
    ExpectVertices({{0, 0, 0}, {10, 0, 0}}, line);
    EXPECT_TRUE(entity->isWriteEnabled());
    EXPECT_FALSE(drawing.IsErased(0x2F));
    entity->close();
}

// --- Which entities are accepted.

struct Acceptance {
    const char* type;
    bool poly;  // IsPolyEntity
    bool pick;  // line-like and curves
    bool lineLike, curves, points;
};

TEST(PolyLineEntity, AcceptanceByExactClass) {
    const Acceptance table[] = {
        {"LINE", true, true, true, false, false},      {"POINT", true, true, true, false, true},
        {"LWPOLYLINE", true, true, true, true, true},  {"CIRCLE", false, true, false, true, false},
        {"ELLIPSE", false, true, false, true, false},  {"SPLINE", false, true, false, true, false},
        {"ARC", false, true, false, false, false},     {"REGION", true, true, true, true, true},
        {"INSERT", false, false, false, false, false}, {"TEXT", false, false, false, false, false},
        {"SOLID", false, false, false, false, false},
    };
    for (const Acceptance& row : table) {
        const TestDrawing drawing{row.type + std::string("|5 2F|8 0|10 1|20 2|30 3")};
        AcDbEntity* const entity = drawing.Open(0x2F);
        ASSERT_NE(nullptr, entity) << row.type;
        EXPECT_EQ(row.poly, PolyLine().IsPolyEntity(entity)) << row.type;
        EXPECT_EQ(row.pick, PolyLine::IsAcceptedEntity(entity, true, true, false)) << row.type;
        EXPECT_EQ(row.lineLike, PolyLine::IsAcceptedEntity(entity, true, false, false)) << row.type;
        EXPECT_EQ(row.curves, PolyLine::IsAcceptedEntity(entity, false, true, false)) << row.type;
        EXPECT_EQ(row.points, PolyLine::IsAcceptedEntity(entity, false, false, true)) << row.type;
        entity->close();
    }
    EXPECT_FALSE(PolyLine::IsAcceptedEntity(nullptr, true, true, true));
}

TEST(PolyLineEntity, OldPolylinesAreAcceptedAlways) {
    const TestDrawing drawing{OldPolyline(0x2F, 8, "10 0", {"10 0|20 0|30 1|70 32"}),
                              OldPolyline(0x40, 0, "10 0", {"10 0|20 0"})};
    for (const std::uint64_t handle : {0x2Fu, 0x40u}) {
        AcDbEntity* const entity = drawing.Open(handle);
        EXPECT_TRUE(PolyLine().IsPolyEntity(entity));
        EXPECT_TRUE(PolyLine::IsAcceptedEntity(entity, false, false, false));
        entity->close();
    }
}

}  // namespace
}  // namespace TamLib
