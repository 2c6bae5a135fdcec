// An independent reader, ezdxf, reads and audits what we added: natively only, for it is a package
// of the distribution's own Python.
#ifndef _WIN32

#include <filesystem>

#include "tests/host/database/NewEntities.h"
#include "tests/host/database/PythonCheck.h"
#include "tests/host/support/LedgerListener.h"
#include "tests/host/support/Releases.h"

using namespace host;
namespace fs = std::filesystem;

namespace {

// The added entities are the last ones of the drawing that is told first; what the audit finds in
// the drawing before, told second, is the drawing's own.
constexpr char kScript[] = R"(
added = list(after.modelspace())[-8:]
line, point, circle, arc, text, polyline, space, face = added
def near(a, b):
    if any(abs(x - y) > 1e-9 for x, y in zip(a, b)): sys.exit('%s is not %s' % (a, b))
near(line.dxf.start, (25496000.125, 6672000.5, 3)); near(line.dxf.end, (1, 2, 3))
near(point.dxf.location, (1, 2, 3))
near(circle.dxf.center, (4, 5, 6)); near([circle.dxf.radius], [7])
near(arc.dxf.center, (1, 2, 0)); near([arc.dxf.start_angle, arc.dxf.end_angle], [90, 180])
if text.dxf.text != sys.argv[3]: sys.exit(text.dxf.text)
near(text.dxf.insert, (8, 9, 0)); near([text.dxf.height], [2.5])
if polyline.dxftype() == 'LWPOLYLINE':
    corners = [(x, y, b) for x, y, b in polyline.get_points('xyb')]
    if not polyline.closed: sys.exit('open')
else:
    corners = [(v.dxf.location.x, v.dxf.location.y, v.dxf.bulge) for v in polyline.vertices]
    if not polyline.is_closed: sys.exit('open')
for corner, wanted in zip(corners, [(0, 0, 0), (10, 0, 0.5), (10, 10, 0)]): near(corner, wanted)
for vertex, wanted in zip(space.vertices, [(1, 2, 3), (4, 5, 6)]): near(vertex.dxf.location, wanted)
near(face.dxf.vtx2, (1, 1, 2))
for entity in added:
    if entity.dxf.layer != 'UUSI': sys.exit('%s on %s' % (entity, entity.dxf.layer))
if after.layers.get('UUSI').color != 3: sys.exit('colour')
)";

class Ezdxf : public testing::TestWithParam<const char*> {};

void draw(AcDbDatabase& database, AcDbEntity* entity) {
    ASSERT_EQ(entity->setLayer(L"UUSI"), Acad::eOk);
    ASSERT_EQ(test::append(database, entity), Acad::eOk);
}

void drawAll(AcDbDatabase& database) {
    constexpr double kHalfPi = 1.5707963267948966;
    draw(database, new AcDbLine({25496000.125, 6672000.5, 3}, {1, 2, 3}));
    draw(database, new AcDbPoint({1, 2, 3}));
    draw(database, new AcDbCircle({4, 5, 6}, AcGeVector3d::kZAxis, 7));
    draw(database, new AcDbArc({1, 2, 0}, 3, kHalfPi, 2 * kHalfPi));
    draw(database, new AcDbText({8, 9, 0}, L"H\u00E4meentie", AcDbObjectId::kNull, 2.5, 1.0));
    auto* polyline = new AcDbPolyline;
    polyline->addVertexAt(0, {0, 0});
    polyline->addVertexAt(1, {10, 0}, 0.5);
    polyline->addVertexAt(2, {10, 10});
    polyline->setClosed(true);
    draw(database, polyline);
    AcGePoint3dArray points;
    points.append({1, 2, 3});
    points.append({4, 5, 6});
    draw(database, new AcDb3dPolyline(AcDb::k3dSimplePoly, points));
    draw(database, new AcDbFace({0, 0, 0}, {1, 0, 1}, {1, 1, 2}));
}

// ezdxf doesn't know the code page dos850 of two drawings and takes it for ANSI_1252.
std::string shownText(const std::string& drawing) {
    const bool dos = drawing.rfind("r12", 0) == 0 || drawing.rfind("r13", 0) == 0;
    return dos ? "H\u201Emeentie" : "H\u00E4meentie";
}

}  // namespace

TEST_P(Ezdxf, ReadsWhatWasAddedAndFindsNoFault) {
    const fs::path source = fs::path(ORLINTH_TEST_DATA) / "releases" / GetParam();
    const auto database = database::readDrawing(source);
    const test::Working working(*database);
    AcDbObjectId layer;
    ASSERT_EQ(test::addLayer(*database, L"UUSI", &layer), Acad::eOk);
    AcDbLayerTableRecord* record = nullptr;
    ASSERT_EQ(acdbOpenObject(record, layer, AcDb::kForWrite), Acad::eOk);
    record->setColorIndex(3);
    record->close();
    drawAll(*database);
    const test::Folder folder;
    database::saveDrawing(*database, folder / "drawn.dxf");
    const std::string arguments = "'" + (folder / "drawn.dxf").string() + "' '" + source.string() +
                                  "' '" + shownText(GetParam()) + "'";
    EXPECT_EQ(test::runPython(folder, test::kAudited, kScript, arguments), 0) << arguments;
}

INSTANTIATE_TEST_SUITE_P(Releases, Ezdxf, testing::ValuesIn(host::test::releasesFrom("r10.dxf")));

#endif
