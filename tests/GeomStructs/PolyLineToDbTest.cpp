// PolyLine written to the drawing as each kind of entity, read back, and by an independent reader.
#include <dbents.h>
#include <dbpl.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "GeomStructs/PolyLine.h"
#include "tam/TamExceptions.h"
#include "tests/GeomEnts/DrawnEntities.h"
#include "tests/GeomStructs/TextLines.h"

namespace TamLib {
namespace {

namespace fs = std::filesystem;

constexpr int kLight = 1, kPlane = 2, kSpace = 3;

const char* const kOpen = "0 0 1, 4 0 2, 4 3 3";
const char* const kRing = "(0 0 1, 4 0 1, 4 3 1)";

AcDbObjectId Written(const TestDrawing& drawing, const PolyLine& line, int kind) {
    AcDbObjectId id;
    EXPECT_EQ(0, line.ToDb(5, L"lines", &id, nullptr, kind));
    const std::vector<AcDbObjectId> entities = Entities(drawing);
    EXPECT_EQ(entities.back(), id);
    return id;
}
std::string ReadBack(AcDbObjectId id) {
    return ToText(PolyLine(id));
}

TEST(PolyLineToDb, IsOfTheKindAskedForOnItsLayerInItsColour) {
    const TestDrawing drawing{};
    const PolyLine line = FromText(kOpen);
    EXPECT_EQ((Look{L"AcDbPolyline", L"lines", 5}), LookOf(Written(drawing, line, kLight)));
    EXPECT_EQ((Look{L"AcDb2dPolyline", L"lines", 5}), LookOf(Written(drawing, line, kPlane)));
    for (const int kind : {0, 3, -1, 77})
        EXPECT_EQ((Look{L"AcDb3dPolyline", L"lines", 5}), LookOf(Written(drawing, line, kind)));
    EXPECT_EQ(6u, Entities(drawing).size());
    const std::vector<std::wstring> layers{L"0", L"LOCKED", L"lines"};
    EXPECT_EQ(layers, Layers(drawing.Database()));
}

TEST(PolyLineToDb, KeepsLayerAndDatabaseOfTheDrawingWithoutAny) {
    const TestDrawing drawing{};
    AcDbObjectId id;
    EXPECT_EQ(0, FromText(kOpen).ToDb(256, nullptr, &id, &drawing.Database()));
    EXPECT_EQ((Look{L"AcDb3dPolyline", L"0", 256}), LookOf(id));
    EXPECT_EQ(0, FromText(kOpen).ToDb(256, nullptr, nullptr, nullptr));
    EXPECT_EQ(2u, Entities(drawing).size());
}

TEST(PolyLineToDb, VerticesAreReadBack) {
    const TestDrawing drawing{};
    const PolyLine line = FromText(kOpen);
    EXPECT_EQ("0 0, 4 0, 4 3", ReadBack(Written(drawing, line, kLight)));
    EXPECT_EQ("0 0, 4 0, 4 3", ReadBack(Written(drawing, line, kPlane)));
    EXPECT_EQ(kOpen, ReadBack(Written(drawing, line, kSpace)));
    for (const int kind : {kLight, kPlane, kSpace}) {
        AcDbEntity* entity = nullptr;
        ASSERT_EQ(Acad::eOk,
                  acdbOpenAcDbEntity(entity, Written(drawing, line, kind), AcDb::kForRead));
        EXPECT_FALSE(AcDbCurve::cast(entity)->isClosed());
        entity->close();
    }
}

TEST(PolyLineToDb, AClosedOneIsClosedAndKeepsItsRepeatedVertex) {
    const TestDrawing drawing{};
    const PolyLine ring = FromText(kRing);
    const ReadAs<AcDbPolyline> light(Written(drawing, ring, kLight));
    EXPECT_EQ(4u, light->numVerts());
    EXPECT_TRUE(light->isClosed());
    for (const int kind : {kPlane, kSpace}) {
        const AcDbObjectId id = Written(drawing, ring, kind);
        EXPECT_EQ(kind == kPlane ? "0 0, 4 0, 4 3, 0 0" : "0 0 1, 4 0 1, 4 3 1, 0 0 1",
                  ReadBack(id));
        AcDbEntity* entity = nullptr;
        ASSERT_EQ(Acad::eOk, acdbOpenAcDbEntity(entity, id, AcDb::kForRead));
        EXPECT_TRUE(AcDbCurve::cast(entity)->isClosed());
        entity->close();
    }
}

TEST(PolyLineToDb, OneVertexIsWrittenAndClosedByNoneOfTheKinds) {
    const TestDrawing drawing{};
    const ReadAs<AcDbPolyline> light(Written(drawing, FromText("7 8"), kLight));
    EXPECT_EQ(1u, light->numVerts());
    EXPECT_FALSE(light->isClosed());
}

TEST(PolyLineToDb, WithoutVerticesNothingIsWrittenAndNoLayerMade) {
    const TestDrawing drawing{};
    AcDbObjectId id;
    for (const int kind : {kLight, kPlane, kSpace})
        EXPECT_EQ(0, PolyLine().ToDb(5, L"lines", &id, nullptr, kind));
    EXPECT_TRUE(id.isNull());
    EXPECT_TRUE(Entities(drawing).empty());
    EXPECT_EQ(2u, Layers(drawing.Database()).size());
}

TEST(PolyLineToDb, OffsetIsAddedUnlessItIsBelowItsLimit) {
    const TestDrawing drawing{};
    PolyLine line = FromText(kOpen);
    line.offset = {10, 20, 30};
    EXPECT_EQ("10 20 31, 14 20 32, 14 23 33", ReadBack(Written(drawing, line, kSpace)));
    EXPECT_EQ("10 20, 14 20, 14 23", ReadBack(Written(drawing, line, kLight)));
    EXPECT_EQ("10 20, 14 20, 14 23", ReadBack(Written(drawing, line, kPlane)));
    EXPECT_EQ(kOpen, ToText(line));  // itself it stays
    for (const double off : {0.99e-10, 1e-10}) {
        line.offset = {0, 0, off};
        const PolyLine read(Written(drawing, line, kSpace));
        EXPECT_EQ(off < 1e-10 ? 1.0 : 1.0 + 1e-10, read[0].z);
    }
}

TEST(PolyLineToDb, WithEachCallFailingItIsWrittenOrNot) {
    for (const int kind : {kLight, kPlane, kSpace}) {
        for (const char* const text : {kOpen, kRing}) {
            ExpectWrittenOrNot(
                [&] { return FromText(text).ToDb(5, L"lines", nullptr, nullptr, kind); },
                "kind " + std::to_string(kind));
        }
    }
}

TEST(PolyLineToDb, WithoutMemoryItRaises) {
    const TestDrawing drawing{};
    for (const int kind : {kLight, kPlane, kSpace}) {
        host::fault::arm("AcDbObject::operator new", 1, 0);
        try {
            FromText(kOpen).ToDb(5, nullptr, nullptr, nullptr, kind);
            ADD_FAILURE() << kind;
        } catch (const TamExpAcad& raised) {
            EXPECT_STREQ(L"Initialization of AcDb3dPolyLine failed", raised.message);
            EXPECT_STREQ(L"GeomStructs/PolyLine", raised.file);
        }
        host::fault::disarm();
    }
    host::fault::arm("AcDbObject::operator new", 1, 0);
    EXPECT_THROW(FromText(kOpen).ToFace(5, nullptr, nullptr, nullptr), TamExpNoMem);
    host::fault::disarm();
    EXPECT_TRUE(Entities(drawing).empty());
}

TEST(PolyLineToFace, TakesTheFirstThreeVertices) {
    const TestDrawing drawing{};
    for (const char* const text : {"0 0 1, 4 0 2, 4 3 3", "0 0 1, 4 0 2, 4 3 3, 9 9 9"}) {
        AcDbObjectId id;
        PolyLine line = FromText(text);
        line.offset = {10, 0, 0};
        EXPECT_EQ(0, line.ToFace(3, L"faces", &id, nullptr));
        EXPECT_EQ((Look{L"AcDbFace", L"faces", 3}), LookOf(id));
        const ReadAs<AcDbFace> face(id);
        AcGePoint3d corner;
        std::string corners;
        for (Adesk::UInt16 i = 0; i < 4; ++i) {
            Adesk::Boolean visible = false;
            EXPECT_EQ(Acad::eOk, face->isEdgeVisibleAt(i, visible));
            EXPECT_TRUE(visible);
            EXPECT_EQ(Acad::eOk, face->getVertexAt(i, corner));
            PolyLine one;
            one.Append(ToPoint3d(corner));
            corners += ToText(one) + ";";
        }
        EXPECT_EQ("10 0 1;14 0 2;14 3 3;14 3 3;", corners);
    }
}

TEST(PolyLineToFace, OtherCountsAreThree) {
    const TestDrawing drawing{};
    for (const char* const text : {"", "0 0", "0 0, 1 0", "(0 0, 1 0, 1 1, 0 1)"})
        EXPECT_EQ(3, FromText(text).ToFace(3, L"faces", nullptr, nullptr)) << text;
    EXPECT_TRUE(Entities(drawing).empty());
    EXPECT_EQ(2u, Layers(drawing.Database()).size());
}

TEST(PolyLineToRegion, MakesOneOfEachLoopOfCurves) {
    const TestDrawing drawing{
        "LINE|5 2F|8 0|10 0|20 0|11 4|21 0", "LINE|5 30|8 0|10 4|20 3|11 4|21 0",
        "LINE|5 31|8 0|10 4|20 3|11 0|21 0", "CIRCLE|5 32|8 0|10 9|20 0|40 2",
        "TEXT|5 33|8 0|10 0|20 0|40 1|1 A",  "POINT|5 34|8 0|10 0|20 0"};
    Array<AcDbObjectId> curves, regions;
    for (const std::uint64_t handle : {0x2F, 0x30, 0x31, 0x32, 0x33, 0x34})
        curves.Append(drawing.Id(handle));
    curves.Append(AcDbObjectId());
    EXPECT_EQ(0, PolyLine::ToRegion(curves, 3, L"regions", &regions, nullptr));
    ASSERT_EQ(2u, regions.count);
    for (const AcDbObjectId& region : regions)
        EXPECT_EQ((Look{L"AcDbRegion", L"regions", 3}), LookOf(region));
    EXPECT_EQ(0, PolyLine::ToRegion(curves, 3, nullptr, nullptr, nullptr));
    EXPECT_EQ(6u + 4u, Entities(drawing).size());
}

TEST(PolyLineToRegion, OfAWrittenPolyline) {
    const TestDrawing drawing{};
    Array<AcDbObjectId> curves, regions;
    curves.Append(Written(drawing, FromText(kRing), kLight));
    curves.Append(Written(drawing, FromText("(0 0, 9 0, 9 9)"), kSpace));
    EXPECT_EQ(0, PolyLine::ToRegion(curves, 3, L"regions", &regions, nullptr));
    EXPECT_EQ(2u, regions.count);
}

TEST(PolyLineToRegion, WithoutALoopTheHostsStatusIsToldAndNothingWritten) {
    const TestDrawing drawing{"LINE|5 2F|8 0|10 0|20 0|11 4|21 0"};
    Array<AcDbObjectId> curves, regions;
    EXPECT_EQ(Acad::eInvalidInput, PolyLine::ToRegion(curves, 3, L"regions", &regions, nullptr));
    curves.Append(drawing.Id(0x2F));
    EXPECT_EQ(Acad::eInvalidInput, PolyLine::ToRegion(curves, 3, L"regions", &regions, nullptr));
    EXPECT_EQ(0u, regions.count);
    EXPECT_EQ(1u, Entities(drawing).size());
    EXPECT_EQ(2u, Layers(drawing.Database()).size());
}

TEST(PolyLineToRegion, WithEachCallFailingTheStatusSaysWhetherItIsThere) {
    const auto outcomes = WriteWithEachCallFailing([](const TestDrawing& drawing) {
        AcDbObjectId circle;
        {
            const host::fault::Quiet quiet;
            PolyLine ring = FromText(kRing);
            EXPECT_EQ(0, ring.ToDb(5, nullptr, &circle, &drawing.Database(), kLight));
        }
        Array<AcDbObjectId> curves;
        curves.Append(circle);
        try {
            return PolyLine::ToRegion(curves, 3, L"regions", nullptr, nullptr);
        } catch (const TamExpAcad&) {
            return static_cast<int>(Acad::eOutOfDisk);
        }
    });
    for (const FailedWrite& outcome : outcomes) {
        EXPECT_TRUE(outcome.leaks.empty()) << outcome.call << ": " << outcome.leaks.front();
        EXPECT_EQ(outcome.status == Acad::eOk ? 2u : 1u, outcome.entities) << outcome.call;
    }
}

TEST(PolyLineLabels, StandAtEveryVertexShifted) {
    const TestDrawing drawing{};
    host::editor::Scripted host;
    host.variable(L"VIEWSIZE", 240.0);
    PolyLine line = FromText("1 2 3, 4 5 6");
    line.offset = {0.5, 0, 0};
    Array<AcDbObjectId> ids;
    EXPECT_EQ(0, line.LabelXYZ(5, L"labels", &ids, nullptr));
    EXPECT_EQ(0, line.LabelZ(5, L"labels", &ids, nullptr));
    EXPECT_EQ(0, line.LabelXY(5, nullptr, nullptr, nullptr));
    EXPECT_EQ(0, PolyLine().LabelXY(5, nullptr, &ids, nullptr));
    EXPECT_EQ(4u, ids.count);
    const std::wstring texts[] = {
        L"1.500, 2.000, 3.000", L"4.500, 5.000, 6.000", L"3.000", L"6.000",
        L"1.500, 2.000",        L"4.500, 5.000"};
    const std::vector<AcDbObjectId> entities = Entities(drawing);
    ASSERT_EQ(6u, entities.size());
    for (int i = 0; i < 6; ++i) {
        const ReadAs<AcDbText> text(entities[static_cast<std::size_t>(i)]);
        EXPECT_EQ(texts[i], std::wstring(text->textStringConst()));
        EXPECT_EQ(i % 2 == 0 ? 1.5 : 4.5, text->position().x);
        EXPECT_EQ(2.0, text->height());
    }
}

// --- From the drawing to the file.

class SavedPolyLines : public ::testing::TestWithParam<const char*> {
  protected:
    SavedPolyLines()
        : database_(
              host::database::readDrawing(fs::path(ORLINTH_TEST_DATA) / "releases" / GetParam())),
          before_(acdbHostApplicationServices()->workingDatabase()),
          saved_(fs::temp_directory_path() / ("orlinth_polylines_" + std::string(GetParam()))) {
        acdbHostApplicationServices()->setWorkingDatabase(database_.get());
        const Point3d place(25000000.125, 7000000.5, 12.25);
        for (const char* const text : {kOpen, kRing}) {
            PolyLine line = FromText(text);
            line += place;
            for (const int kind : {kLight, kPlane, kSpace})
                EXPECT_EQ(0, line.ToDb(kind, L"lines", nullptr, nullptr, kind));
            if (line.count != 3) continue;
            EXPECT_EQ(0, line.ToFace(4, L"lines", nullptr, nullptr));
        }
        host::database::saveDrawing(*database_, saved_);
    }
    ~SavedPolyLines() override {
        acdbHostApplicationServices()->setWorkingDatabase(before_);
        std::error_code ignored;
        fs::remove(saved_, ignored);
    }

    std::unique_ptr<AcDbDatabase> database_;
    AcDbDatabase* before_;
    fs::path saved_;
};

TEST_P(SavedPolyLines, AreReadBackAsTheyWere) {
    const auto again = host::database::readDrawing(saved_);
    const std::vector<AcDbObjectId> written = host::database::modelSpaceIds(*database_);
    const std::vector<AcDbObjectId> read = host::database::modelSpaceIds(*again);
    ASSERT_EQ(written.size(), read.size());
    for (std::size_t i = written.size() - 7; i < written.size(); ++i) {
        EXPECT_EQ(ToText(PolyLine(written[i])), ToText(PolyLine(read[i]))) << i;
        EXPECT_EQ(LookOf(written[i]).layer, LookOf(read[i]).layer);
    }
}

#ifndef _WIN32

constexpr char kScript[] = R"(
import sys, ezdxf
drawing = ezdxf.readfile(sys.argv[1])
entities = list(drawing.modelspace())[-7:]
place = (25000000.125, 7000000.5, 12.25)
def expect(fact, what):
    if not fact:
        sys.exit('wrong: ' + what)
def near(a, b):
    return all(abs(x - y) < 1e-6 for x, y in zip(a, b))
def vertices(e):
    if e.dxftype() == 'LWPOLYLINE':
        return [(x, y) for x, y in e.get_points('xy')]
    return [tuple(v.dxf.location) for v in e.vertices]
open_, ring = [(0, 0, 1), (4, 0, 2), (4, 3, 3)], [(0, 0, 1), (4, 0, 1), (4, 3, 1), (0, 0, 1)]
kinds = {1: ('LWPOLYLINE', 'POLYLINE'), 2: ('POLYLINE',), 3: ('POLYLINE',)}
lines = [(1, open_), (2, open_), (3, open_), None, (1, ring), (2, ring), (3, ring)]
for e, line in zip(entities, lines):
    expect(e.dxf.layer == 'lines', e.dxf.layer)
    if line is None:
        expect(e.dxftype() == '3DFACE' and not any(e.is_invisible_edge(i) for i in range(4)), str(e))
        wanted = [tuple(a + b for a, b in zip(place, p)) for p in open_ + open_[2:]]
        for i, p in enumerate(wanted):
            expect(near(e.dxf.get('vtx%d' % i), p), 'corner %d' % i)
        continue
    kind, points = line
    expect(e.dxftype() in kinds[kind] and e.dxf.color == kind, str(e))
    if e.dxftype() == 'POLYLINE':
        expect(e.is_3d_polyline == (kind == 3), 'kind')
    got = vertices(e)
    expect(len(got) == len(points), '%s vertices' % len(got))
    for v, p in zip(got, points):
        expect(near(v[:2], (place[0] + p[0], place[1] + p[1])), str(v))
        if kind == 3:
            expect(abs(v[2] - place[2] - p[2]) < 1e-6, str(v))
    closed = e.closed if e.dxftype() == 'LWPOLYLINE' else e.is_closed
    expect(bool(closed) == (points is ring), 'closed')
)";

TEST_P(SavedPolyLines, AreFoundByAnIndependentReader) {
    const fs::path script = saved_.string() + ".py";
    std::ofstream(script) << kScript;
    const std::string command =
        "/usr/bin/python3 '" + script.string() + "' '" + saved_.string() + "' 2>&1";
    EXPECT_EQ(0, std::system(command.c_str()));
    fs::remove(script);
}

#endif

INSTANTIATE_TEST_SUITE_P(Releases, SavedPolyLines,
                         ::testing::Values("r12.dxf", "r13.dxf", "r2000.dxf", "r2000_binary.dxf",
                                           "r2010_binary.dxf", "r2018.dxf"));

}  // namespace
}  // namespace TamLib
