// From arrays of polylines to the file: polylines, points, multi-lines and regions stand in the
// saved drawing, are read back by the host and found by an independent reader.
#include <dbents.h>
#include <dbmline.h>
#include <dbregion.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "GeomStructs/PolyArray.h"
#include "tests/GeomEnts/DrawnEntities.h"
#include "tests/GeomStructs/PolyArrayShapes.h"
#include "tests/GeomStructs/TextLines.h"

namespace TamLib {
namespace {

namespace fs = std::filesystem;

const Point3d kPlace(25000000.125, 7000000.5, 12.25);

struct Release {
    const char* file;
    bool hasMlines;
    bool hasRegions;
};
void PrintTo(const Release& release, std::ostream* out) {
    *out << release.file;
}

class SavedShapes : public ::testing::TestWithParam<Release> {
  protected:
    SavedShapes()
        : database_(host::database::readDrawing(fs::path(ORLINTH_TEST_DATA) / "releases" /
                                                GetParam().file)),
          before_(acdbHostApplicationServices()->workingDatabase()),
          saved_(fs::temp_directory_path() / ("orlinth_shapes_" + std::string(GetParam().file))) {
        acdbHostApplicationServices()->setWorkingDatabase(database_.get());
        there_ = host::database::modelSpaceIds(*database_).size();
        Write();
        host::database::saveDrawing(*database_, saved_);
    }
    ~SavedShapes() override {
        acdbHostApplicationServices()->setWorkingDatabase(before_);
        std::error_code ignored;
        fs::remove(saved_, ignored);
    }

    void Write() {
        const Points square = {{0, 0, 5}, {4, 0, 5}, {4, 4, 5}, {0, 4, 5}, {0, 0, 5}};
        PolyArray array = MakeArray({square, {{0, 0, 5}, {4, 0, 5}, {4, 3, 5}}});
        for (PolyLine* const line : array) line->offset = kPlace;
        Array<AcDbObjectId> drawn;
        EXPECT_EQ(0, array.Draw(3, L"shapes", &drawn, nullptr, 3));
        EXPECT_EQ(0, array.DrawClosed(1, L"shapes", nullptr, nullptr, 1));
        EXPECT_EQ(0, array.DrawAsPoints(2, L"shapes", nullptr, nullptr));
        for (int i = 0; GetParam().hasMlines && i < 2; ++i)
            EXPECT_EQ(
                0, array[i]->ToMline(4, 0.5, i, L"shapes", nullptr, nullptr, AcGeVector3d::kZAxis));
        if (!GetParam().hasRegions) return;
        EXPECT_EQ(0, array.MakeRegions(5, L"shapes", true, nullptr, nullptr));
        EXPECT_EQ(0, PolyLine::ToRegion(drawn, 5, L"shapes", nullptr, nullptr));
    }

    std::unique_ptr<AcDbDatabase> database_;
    AcDbDatabase* before_;
    fs::path saved_;
    std::size_t there_ = 0;
};

TEST_P(SavedShapes, AreReadBackAsTheyWere) {
    const auto again = host::database::readDrawing(saved_);
    const std::vector<AcDbObjectId> written = host::database::modelSpaceIds(*database_);
    const std::vector<AcDbObjectId> read = host::database::modelSpaceIds(*again);
    ASSERT_EQ(written.size(), read.size());
    for (std::size_t i = there_; i < written.size(); ++i) {
        const std::wstring name = host::database::className(written[i]);
        EXPECT_EQ(LookOf(written[i]).layer, LookOf(read[i]).layer);
        // The body of a region in a file is opaque: only one made in the session has an outline.
        const bool isRegion = name == L"AcDbRegion";
        EXPECT_EQ(isRegion ? 5u : PolyLine(written[i]).count, PolyLine(written[i]).count);
        EXPECT_EQ(isRegion ? ToText(PolyLine()) : ToText(PolyLine(written[i])),
                  ToText(PolyLine(read[i])))
            << i;
        if (name != L"AcDbPolyline") {
            EXPECT_EQ(name, host::database::className(read[i]));
        }
        if (name != L"AcDbMline") continue;
        const ReadAs<AcDbMline> before(written[i]), after(read[i]);
        ASSERT_EQ(before->numVertices(), after->numVertices());
        EXPECT_EQ(before->closedMline(), after->closedMline());
        for (int k = 0; k < after->numVertices(); ++k)
            EXPECT_TRUE(before->vertexAt(k).isEqualTo(after->vertexAt(k)));
    }
}

#ifndef _WIN32

// Arguments: the drawing, the number of multi-lines and of regions.
constexpr char kScript[] = R"(
import sys, ezdxf
drawing = ezdxf.readfile(sys.argv[1])
mlines, regions = int(sys.argv[2]), int(sys.argv[3])
count = 2 + 2 + 8 + mlines + regions
entities = list(drawing.modelspace())[-count:]
place = (25000000.125, 7000000.5, 12.25)
square = [(0, 0, 5), (4, 0, 5), (4, 4, 5), (0, 4, 5), (0, 0, 5)]
open_ = [(0, 0, 5), (4, 0, 5), (4, 3, 5)]
def expect(fact, what):
    if not fact: sys.exit('wrong: ' + what)
def same(got, points, axes):
    expect(len(got) == len(points), '%s vertices' % len(got))
    for v, p in zip(got, points):
        for k in range(axes):
            expect(abs(v[k] - place[k] - p[k]) < 1e-6, '%s of %s' % (v, p))
def vertices(e):
    if e.dxftype() == 'LWPOLYLINE': return [(x, y) for x, y in e.get_points('xy')]
    return [tuple(v.dxf.location) for v in e.vertices]
for e in entities: expect(e.dxf.layer == 'shapes', str(e))
for e, points in zip(entities, (square, open_)):
    expect(e.dxftype() == 'POLYLINE' and e.is_3d_polyline and e.is_closed == (points is square), str(e))
    same(vertices(e), points, 3)
for e, points in zip(entities[2:], (square, open_ + open_[:1])):
    expect(e.closed if e.dxftype() == 'LWPOLYLINE' else e.is_closed, str(e))
    same(vertices(e), points, 2)
for e, point in zip(entities[4:], square + open_):
    expect(e.dxftype() == 'POINT', str(e))
    same([e.dxf.location], [point], 3)
for i, e in enumerate(entities[12:12 + mlines]):
    expect(e.dxftype() == 'MLINE' and e.dxf.justification == i and e.dxf.scale_factor == 0.5, str(e))
    expect(e.is_closed == (i == 0) and e.style.dxf.name.upper() == 'STANDARD', 'multi-line')
    same([v.location for v in e.vertices], (square[:4], open_)[i], 3)
for e in entities[12 + mlines:]:
    expect(e.dxftype() == 'REGION' and e.dxf.color == 5, str(e))
    corners = set()
    for line in e.acis_data:
        words = line.split()
        if words and words[0] == 'point': corners.add(tuple(round(float(w), 6) for w in words[-4:-1]))
    expect(corners == {tuple(round(a + b, 6) for a, b in zip(place, p)) for p in square}, str(corners))
)";

TEST_P(SavedShapes, AreFoundByAnIndependentReader) {
    const fs::path script = saved_.string() + ".py";
    std::ofstream(script) << kScript;
    const std::string command = "/usr/bin/python3 '" + script.string() + "' '" + saved_.string() +
                                "' " + (GetParam().hasMlines ? "2 " : "0 ") +
                                (GetParam().hasRegions ? "2" : "0") + " 2>&1";
    EXPECT_EQ(0, std::system(command.c_str()));
    fs::remove(script);
}

#endif

INSTANTIATE_TEST_SUITE_P(
    Releases, SavedShapes,
    ::testing::Values(Release{"r12.dxf", false, false}, Release{"r13.dxf", true, true},
                      Release{"r14_binary.dxf", true, true}, Release{"r2000.dxf", true, true},
                      Release{"r2004_binary.dxf", true, true}, Release{"r2010.dxf", true, true},
                      Release{"r2018_binary.dxf", true, false}));

}  // namespace
}  // namespace TamLib
