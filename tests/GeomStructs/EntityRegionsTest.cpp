// Regions read as lines: what is replaced, what stays, picks, and regions whose body is unknown.
#include "GeomStructs/EntityRegions.h"

#include <acutmem.h>

#include <functional>

#include "GeomStructs/PolyLine.h"
#include "host/database/Fault.h"
#include "host/editor/Scripted.h"
#include "tests/GeomEnts/TestDrawing.h"
#include "tests/GeomStructs/RegionEntities.h"
#include "tests/host/support/LedgerListener.h"

namespace TamLib {
namespace {

using host::editor::Scripted;

const std::vector<Point3d> kTriangle{{0, 0, 0}, {4, 0, 0}, {0, 3, 0}, {0, 0, 0}};

AcDbObjectId DrawTriangle() {
    return Draw(MakePolygon({{0, 0}, {4, 0}, {0, 3}}));
}

void ExpectVertices(const std::vector<Point3d>& expected, const PolyLine& line) {
    ASSERT_EQ(expected.size(), line.count);
    for (std::uint32_t i = 0; i < line.count; ++i) ExpectPoint(expected[i], line.data[i]);
}

AcDbEntity* Open(AcDbObjectId id, AcDb::OpenMode mode) {
    AcDbEntity* entity = nullptr;
    EXPECT_EQ(Acad::eOk, acdbOpenAcDbEntity(entity, id, mode));
    return entity;
}

// A line with something of everything that a region replaces.
PolyLine Before() {
    PolyLine line;
    line.Append({9, 9, 9});
    line.offset = {1, 1, 1};
    line.hasBounds = 1;
    return line;
}

TEST(EntityRegions, OutlineReplacesVerticesBoxAndOffset) {
    const TestDrawing drawing{};
    AcDbEntity* const entity = Open(DrawTriangle(), AcDb::kForRead);
    PolyLine line = Before();
    line.FromEntity(entity, 0);
    ExpectVertices(kTriangle, line);
    ExpectPoint({0, 0, 0}, line.offset);
    EXPECT_FALSE(line.hasBounds);
    EXPECT_TRUE(line.IsClosed());
    EXPECT_TRUE(entity->isReadEnabled());
    entity->close();
}

TEST(EntityRegions, DisposalClosesOrErases) {
    const TestDrawing drawing{};
    const AcDbObjectId closed = DrawTriangle(), erased = DrawTriangle();
    PolyLine line;
    line.FromEntity(Open(closed, AcDb::kForRead), 1);
    EXPECT_FALSE(closed.isErased());
    line.FromEntity(Open(erased, AcDb::kForWrite), 2);
    EXPECT_TRUE(erased.isErased());
    ExpectVertices(kTriangle, line);
}

TEST(EntityRegions, ConstructorsAndFromCurveReadThemToo) {
    const TestDrawing drawing{};
    const AcDbObjectId id = DrawTriangle();
    ExpectVertices(kTriangle, PolyLine(id));
    ExpectVertices(kTriangle, PolyLine(id, 0.05, true));
    PolyLine line;
    line.FromCurve(Open(id, AcDb::kForRead), 1, 0.05, true);
    ExpectVertices(kTriangle, line);
}

TEST(EntityRegions, DiscGivesALineWithoutLength) {
    const TestDrawing drawing{};
    const PolyLine line(Draw(MakeDisc({1, 2, 3}, 5)));
    EXPECT_EQ(2u, line.count);
    EXPECT_TRUE(line.IsClosed());
    EXPECT_EQ(0.0, line.Length());
}

TEST(EntityRegions, UnknownBodyLeavesTheLineAndIsDisposedOfAllTheSame) {
    const TestDrawing drawing{"REGION|5 2F|8 0|70 1"};
    PolyLine line = Before();
    line.FromEntity(drawing.Open(0x2F, AcDb::kForWrite), 1);
    EXPECT_FALSE(drawing.IsErased(0x2F));
    line.FromEntity(drawing.Open(0x2F, AcDb::kForWrite), 2);
    ExpectVertices({{9, 9, 9}}, line);
    ExpectPoint({1, 1, 1}, line.offset);
    EXPECT_TRUE(drawing.IsErased(0x2F));
}

TEST(EntityRegions, PickReadsAndFlashesTheOutline) {
    const TestDrawing drawing{};
    Scripted host;
    const AcDbObjectId id = DrawTriangle();
    host.pick(id, {2, -1, 0});
    PolyLine line;
    Point3d point;
    int segment = -1;
    EXPECT_EQ(0, line.Select(&point, &segment, false, nullptr, nullptr, nullptr, nullptr, true));
    ExpectVertices(kTriangle, line);
    EXPECT_EQ(0, segment);
    EXPECT_EQ(3u, host.lines().size());
    host.pick(id, {2, -1, 0});
    EXPECT_EQ(0, line.Select(&point, &segment, true, nullptr, nullptr, nullptr, nullptr, true));
    EXPECT_TRUE(id.isErased());
}

TEST(EntityRegions, PickOfAnUnknownBodyIsMinusThree) {
    const TestDrawing drawing{"REGION|5 2F|8 0|70 1"};
    Scripted host;
    host.pick(drawing.Id(0x2F), {2, -1, 0});
    PolyLine line;
    EXPECT_EQ(-3, line.Select(nullptr, nullptr, true, nullptr, nullptr, nullptr, nullptr, true));
    EXPECT_FALSE(drawing.IsErased(0x2F));
    EXPECT_TRUE(host.lines().empty());
}

// Whatever the boundary reader refuses, the region is read whole or not at all, and it is consumed
// only when it is read.
void RefuseEachCallOfTheReader(const std::function<int(PolyLine&, AcDbObjectId)>& pick) {
    std::size_t refused = 0, whole = 0;
    for (std::size_t n = 1;; ++n) {
        const TestDrawing drawing{};
        const AcDbObjectId id = DrawTriangle();
        PolyLine line;
        host::fault::arm(n, Acad::eOutOfDisk);
        const int result = pick(line, id);
        const bool fired = host::fault::fired();
        const std::string name = fired ? host::fault::names().at(n - 1) : "";
        host::fault::disarm();
        if (!fired) break;
        if (name == "AcDbObject::close") host::database::Ledger::instance().forget();
        EXPECT_TRUE(host::database::Ledger::instance().leaks().empty()) << name;
        if (name.rfind("AcBr", 0) != 0) continue;
        ++refused;
        EXPECT_EQ(result == 0, id.isErased()) << name;
        if (result == 0) {
            ++whole;
            ExpectVertices(kTriangle, line);
        } else {
            EXPECT_EQ(-3, result) << name;
            EXPECT_EQ(0u, line.count) << name;
        }
    }
    // Path, level, body; faces, loops, edges; each edge; the next face, which isn't missed.
    EXPECT_EQ(3u + 3 + 3 * 7 + 1, refused);
    EXPECT_EQ(1u, whole);
}

TEST(EntityRegions, PickWithEachCallOfTheReaderRefusedIsMinusThreeOrWhole) {
    RefuseEachCallOfTheReader([](PolyLine& line, AcDbObjectId id) {
        Scripted host;
        host.pick(id, {2, -1, 0});
        return line.Select(nullptr, nullptr, true, nullptr, nullptr, nullptr, nullptr, true);
    });
}

TEST(EntityRegions, PickAtAPointWithEachCallOfTheReaderRefusedIsMinusThreeOrWhole) {
    RefuseEachCallOfTheReader([](PolyLine& line, AcDbObjectId id) {
        Scripted host;
        host.select({id});
        return line.SelectAtPoint({2, 0, 0}, nullptr, true, nullptr, nullptr, nullptr, true);
    });
}

}  // namespace
}  // namespace TamLib
