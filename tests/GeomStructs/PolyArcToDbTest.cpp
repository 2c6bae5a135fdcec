// PolyArc written to the drawing as each kind of entity, read back, and by an independent reader.
#include <dbents.h>
#include <dbpl.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "GeomStructs/PolyArc.h"
#include "tam/TamExceptions.h"
#include "tests/GeomEnts/DrawnEntities.h"
#include "tests/GeomStructs/TextLines.h"
#include "tests/host/dxf/Drawings.h"

namespace TamLib {
namespace {

namespace fs = std::filesystem;

constexpr int kLight = 1, kPlane = 2, kSpace = 3;

PolyArc Bulged(const char* vertices, const std::vector<double>& bulges) {
    PolyArc line(FromText(vertices));
    for (std::size_t i = 0; i < bulges.size(); ++i) line.SetBulgeAt(static_cast<int>(i), bulges[i]);
    return line;
}
PolyArc Open() {
    return Bulged("0 0, 4 0, 4 3, 9 3", {0.5, 0.0, -1.75});
}
PolyArc Ring() {
    return Bulged("(0 0, 4 0, 4 3)", {0.0, -0.3, 0.7});
}

AcDbObjectId Written(const TestDrawing& drawing, const PolyArc& line, int kind) {
    AcDbObjectId id;
    EXPECT_EQ(0, line.ToDb(5, L"lines", &id, nullptr, kind));
    EXPECT_EQ(Entities(drawing).back(), id);
    return id;
}

void ExpectSame(const PolyArc& expected, const PolyArc& line, double tolerance) {
    ASSERT_EQ(expected.count, line.count);
    ASSERT_EQ(expected.count - 1, line.heights.count);
    for (std::uint32_t i = 0; i < line.count; ++i) {
        EXPECT_LT(Distance2d(expected.data[i], line.data[i]), tolerance) << i;
        if (i + 1 == line.count) continue;
        const int segment = static_cast<int>(i);
        EXPECT_NEAR(expected.HeightAt(segment), line.HeightAt(segment), tolerance) << i;
        EXPECT_NEAR(expected.BulgeAt(segment), line.BulgeAt(segment), tolerance) << i;
    }
}

bool IsClosedEntity(AcDbObjectId id) {
    AcDbEntity* entity = nullptr;
    EXPECT_EQ(Acad::eOk, acdbOpenAcDbEntity(entity, id, AcDb::kForRead));
    const bool closed = AcDbCurve::cast(entity)->isClosed();
    entity->close();
    return closed;
}

TEST(PolyArcToDb, IsOfTheKindAskedForOnItsLayerInItsColour) {
    const TestDrawing drawing{};
    EXPECT_EQ((Look{L"AcDbPolyline", L"lines", 5}), LookOf(Written(drawing, Open(), kLight)));
    EXPECT_EQ((Look{L"AcDb2dPolyline", L"lines", 5}), LookOf(Written(drawing, Open(), kPlane)));
    for (const int kind : {0, 3, -1, 77})
        EXPECT_EQ((Look{L"AcDb3dPolyline", L"lines", 5}), LookOf(Written(drawing, Open(), kind)));
    EXPECT_EQ(6u, Entities(drawing).size());
}

TEST(PolyArcToDb, ChordsBulgesAndHeightsAreReadBack) {
    const TestDrawing drawing{};
    for (const int kind : {kLight, kPlane}) {
        const AcDbObjectId open = Written(drawing, Open(), kind);
        ExpectSame(Open(), PolyArc(open), 1e-12);
        EXPECT_FALSE(IsClosedEntity(open));
    }
}

TEST(PolyArcToDb, AClosedOneIsClosedWithoutItsRepeatedVertex) {
    const TestDrawing drawing{};
    for (const int kind : {kLight, kPlane}) {
        const AcDbObjectId ring = Written(drawing, Ring(), kind);
        ExpectSame(Ring(), PolyArc(ring), 1e-12);
        EXPECT_TRUE(IsClosedEntity(ring));
    }
    const ReadAs<AcDbPolyline> light(Written(drawing, Ring(), kLight));
    EXPECT_EQ(3u, light->numVerts());
    double startWidth = 7, endWidth = 7;
    light->getWidthsAt(0, startWidth, endWidth);
    EXPECT_EQ(0.0, startWidth);
    double bulge = 0;
    light->getBulgeAt(2, bulge);
    EXPECT_NEAR(0.7, bulge, 1e-12);
}

TEST(PolyArcToDb, ACircleComesBack) {
    const TestDrawing drawing{"CIRCLE|5 2F|8 0|10 1|20 2|30 0|40 2.5"};
    const PolyArc circle(drawing.Id(0x2F));
    for (const int kind : {kLight, kPlane})
        ExpectSame(circle, PolyArc(Written(drawing, circle, kind)), 1e-12);
}

TEST(PolyArcToDb, LowArcsAreWrittenStraight) {
    const TestDrawing drawing{};
    PolyArc line = Open();
    line.SetHeightAt(0, 0.000099);
    const ReadAs<AcDbPolyline> light(Written(drawing, line, kLight));
    double bulge = 7;
    light->getBulgeAt(0, bulge);
    EXPECT_EQ(0.0, bulge);
}

TEST(PolyArcToDb, OtherKindsAreFlattenedBy0p1) {
    const TestDrawing drawing{};
    for (const PolyArc& line : {Open(), Ring()}) {
        const PolyLine flat = line.ToPolyLine(0.1, true);
        const AcDbObjectId id = Written(drawing, line, kSpace);
        EXPECT_EQ(line.IsClosed(), IsClosedEntity(id));
        EXPECT_EQ(ToText(flat), ToText(PolyLine(id)));
    }
}

TEST(PolyArcToDb, OffsetIsAddedUnlessItIsBelowItsLimit) {
    const TestDrawing drawing{};
    PolyArc line = Open();
    line.offset = {10, 20, 30};
    PolyArc shifted = Open();
    shifted += Point3d(10, 20, 0);
    for (const int kind : {kLight, kPlane})
        ExpectSame(shifted, PolyArc(Written(drawing, line, kind)), 1e-12);
    const PolyLine space(Written(drawing, line, kSpace));
    EXPECT_LT(Distance({10, 20, 30}, space.data[0]), 1e-12);
    for (const double off : {0.99e-10, 1e-10}) {
        line.offset = {off, 0, 0};
        const PolyArc read(Written(drawing, line, kLight));
        EXPECT_EQ(off < 1e-10 ? 0.0 : 1e-10, read.data[0].x);
    }
}

TEST(PolyArcToDb, WithoutVerticesNothingIsWritten) {
    const TestDrawing drawing{};
    for (const int kind : {kLight, kPlane, kSpace})
        EXPECT_EQ(0, PolyArc().ToDb(5, L"lines", nullptr, nullptr, kind));
    // One vertex has no flattening.
    const PolyArc one(FromText("7 8"));
    EXPECT_EQ(0, one.ToDb(5, L"lines", nullptr, nullptr, kSpace));
    EXPECT_TRUE(Entities(drawing).empty());
    EXPECT_EQ(2u, Layers(drawing.Database()).size());
    EXPECT_EQ("7 8", ToText(PolyArc(Written(drawing, one, kLight))));
    EXPECT_EQ("7 8", ToText(PolyArc(Written(drawing, one, kPlane))));
}

TEST(PolyArcToDb, WithEachCallFailingItIsWrittenOrNot) {
    for (const int kind : {kLight, kPlane, kSpace}) {
        for (const PolyArc& line : {Open(), Ring()}) {
            ExpectWrittenOrNot([&] { return line.ToDb(5, L"lines", nullptr, nullptr, kind); },
                               "kind " + std::to_string(kind));
        }
    }
}

TEST(PolyArcToDb, AnotherDatabaseGetsEntityAndLayer) {
    const TestDrawing other{};
    const TestDrawing working{};
    for (const int kind : {kLight, kPlane, kSpace})
        EXPECT_EQ(0, Open().ToDb(5, L"lines", nullptr, &other.Database(), kind));
    EXPECT_EQ(3u, Entities(other).size());
    for (const AcDbObjectId id : Entities(other)) EXPECT_EQ(L"lines", LookOf(id).layer);
    EXPECT_EQ(3u, Layers(other.Database()).size());
    EXPECT_TRUE(Entities(working).empty());
    EXPECT_EQ(2u, Layers(working.Database()).size());
}

TEST(PolyArcToDb, AVertexRefusedByAPlanePolylineRaisesAndNothingIsWritten) {
    const TestDrawing drawing{};
    for (const std::size_t n : {1u, 2u, 4u}) {
        host::fault::arm("AcDb2dPolyline::appendVertex", n, Acad::eInvalidInput);
        try {
            Open().ToDb(5, L"lines", nullptr, nullptr, kPlane);
            ADD_FAILURE() << n;
        } catch (const TamExpAcad& raised) {
            EXPECT_STREQ(L"Adding AcDbPolyLine to Acad DB failed", raised.message);
            EXPECT_STREQ(L"GeomStructs/PolyArc", raised.file);
        }
        host::fault::disarm();
    }
    EXPECT_TRUE(Entities(drawing).empty());
}

TEST(PolyArcToDb, AVertexRefusedByALightPolylineIsLeftOut) {
    const TestDrawing drawing{};
    host::fault::arm("AcDbPolyline::addVertexAt", 2, Acad::eInvalidInput);
    const AcDbObjectId id = Written(drawing, Open(), kLight);
    EXPECT_TRUE(host::fault::fired());
    host::fault::disarm();
    EXPECT_EQ("0 0, 4 3, 9 3", ToText(PolyLine(id)));
}

TEST(PolyArcToDb, WithoutMemoryItRaises) {
    const TestDrawing drawing{};
    for (const int kind : {kLight, kPlane, kSpace}) {
        for (const std::size_t n : {1u, kind == kPlane ? 3u : 1u}) {
            host::fault::arm("AcDbObject::operator new", n, 0);
            try {
                Open().ToDb(5, nullptr, nullptr, nullptr, kind);
                ADD_FAILURE() << kind;
            } catch (const TamExpAcad& raised) {
                EXPECT_STREQ(L"Initialization of AcDb3dPolyLine failed", raised.message);
                EXPECT_STREQ(kind == kSpace ? L"GeomStructs/PolyLine" : L"GeomStructs/PolyArc",
                             raised.file);
            }
            host::fault::disarm();
        }
    }
    EXPECT_TRUE(Entities(drawing).empty());
}

// --- From the drawing to the file.

class SavedPolyArcs : public ::testing::TestWithParam<const char*> {
  protected:
    SavedPolyArcs()
        : database_(
              host::database::readDrawing(fs::path(ORLINTH_TEST_DATA) / "releases" / GetParam())),
          before_(acdbHostApplicationServices()->workingDatabase()),
          saved_(folder_ / GetParam()) {
        acdbHostApplicationServices()->setWorkingDatabase(database_.get());
        for (PolyArc line : {Open(), Ring()}) {
            line += Point3d(25496000, 6672000, 0);
            for (const int kind : {kLight, kPlane, kSpace})
                EXPECT_EQ(0, line.ToDb(kind, L"lines", nullptr, nullptr, kind));
        }
        host::database::saveDrawing(*database_, saved_);
    }
    ~SavedPolyArcs() override { acdbHostApplicationServices()->setWorkingDatabase(before_); }

    std::unique_ptr<AcDbDatabase> database_;
    AcDbDatabase* before_;
    host::dxf::test::TemporaryFolder folder_;
    fs::path saved_;
};

TEST_P(SavedPolyArcs, AreReadBackAsTheyWere) {
    const auto again = host::database::readDrawing(saved_);
    const std::vector<AcDbObjectId> read = host::database::modelSpaceIds(*again);
    ASSERT_GE(read.size(), 6u);
    const std::size_t first = read.size() - 6;
    for (std::size_t ring = 0; ring < 2; ++ring) {
        PolyArc line = ring == 0 ? Open() : Ring();
        line += Point3d(25496000, 6672000, 0);
        ExpectSame(line, PolyArc(read[first + 3 * ring]), 1e-7);
        ExpectSame(line, PolyArc(read[first + 3 * ring + 1]), 1e-7);
        const PolyLine flat(read[first + 3 * ring + 2]);
        const PolyLine wanted = line.ToPolyLine(0.1, true);
        ASSERT_EQ(wanted.count, flat.count);
        for (std::uint32_t i = 0; i < flat.count; ++i)
            EXPECT_LT(Distance(wanted.data[i], flat.data[i]), 1e-7);
    }
}

#ifndef _WIN32

constexpr char kScript[] = R"(
import sys, ezdxf, math
from ezdxf import path
drawing = ezdxf.readfile(sys.argv[1])
entities = list(drawing.modelspace())[-6:]
x, y = 25496000.0, 6672000.0
def expect(fact, what):
    if not fact:
        sys.exit('wrong: ' + what)
runs = [([(0, 0, .5), (4, 0, 0), (4, 3, -1.75), (9, 3, 0)], False),
        ([(0, 0, 0), (4, 0, -.3), (4, 3, .7)], True)]
for n, e in enumerate(entities):
    points, closed = runs[n // 3]
    expect(e.dxf.layer == 'lines' and e.dxf.color == n % 3 + 1, str(e))
    got = [v[:2] for v in e.get_points('xy')] if e.dxftype() == 'LWPOLYLINE' else \
          [tuple(v.dxf.location)[:2] for v in e.vertices]
    expect(bool(e.closed if e.dxftype() == 'LWPOLYLINE' else e.is_closed) == closed, 'closed')
    if n % 3 == 2:
        # All on the curve of the one before.
        expect(e.is_3d_polyline, 'kind')
        curve = list(path.make_path(entities[n - 1]).flattening(1e-6))
        for px, py in got:
            off = min(math.dist((px, py), (q.x, q.y)) for q in curve)
            expect(off < 0.02, 'off the curve by %g' % off)
        continue
    bulges = [b[0] for b in e.get_points('b')] if e.dxftype() == 'LWPOLYLINE' else \
             [v.dxf.bulge for v in e.vertices]
    expect(len(got) == len(points) and len(bulges) == len(points), '%d vertices' % len(got))
    for (gx, gy), b, (wx, wy, wb) in zip(got, bulges, points):
        expect(abs(gx - x - wx) < 1e-7 and abs(gy - y - wy) < 1e-7, 'vertex')
        expect(abs(b - wb) < 1e-7, 'bulge %g' % b)
)";

TEST_P(SavedPolyArcs, AreFoundByAnIndependentReader) {
    const fs::path script = saved_.string() + ".py";
    std::ofstream(script) << kScript;
    const std::string command =
        "/usr/bin/python3 '" + script.string() + "' '" + saved_.string() + "' 2>&1";
    EXPECT_EQ(0, std::system(command.c_str()));
}

#endif

INSTANTIATE_TEST_SUITE_P(Releases, SavedPolyArcs,
                         ::testing::Values("r12.dxf", "r2000.dxf", "r2010_binary.dxf",
                                           "r2018.dxf"));

}  // namespace
}  // namespace TamLib
