// An independent reader, ezdxf, reads the solids and regions that we write, in every release that
// has them, finds no fault, and loads their bodies: natively only, for it is a package of the
// distribution's own Python.
#ifndef _WIN32

#include <dbents.h>
#include <dbregion.h>
#include <dbsol3d.h>

#include <filesystem>

#include "tests/host/database/NewEntities.h"
#include "tests/host/database/NewRegions.h"
#include "tests/host/database/PythonCheck.h"
#include "tests/host/support/LedgerListener.h"
#include "tests/host/support/Releases.h"

using namespace host;
namespace fs = std::filesystem;

namespace {

// The last three entities of the first drawing are ours. ezdxf has no cylinders: their
// numbers are taken from the records as it cuts them.
constexpr char kScript[] = R"(
import math
from ezdxf.acis import api, sat, sab
drawing = after
binary = drawing.dxfversion >= 'AC1027'
def near(a, b):
    if len(a) != len(b) or any(abs(x - y) > 1e-6 for x, y in zip(a, b)):
        sys.exit('%s is not %s' % (a, b))
def body_of(entity):
    if bool(entity.acis_data) is False: sys.exit('no data of %s' % entity)
    if isinstance(entity.acis_data, bytes) != binary: sys.exit('the other form')
    bodies = api.load(entity.acis_data)
    if len(bodies) != 1: sys.exit('%s bodies' % len(bodies))
    return bodies[0]
def raw_records(entity, name):
    if binary:
        found = [e for e in sab.parse_sab(entity.acis_data).entities if e.name == name]
        return [[v for t in e.data for v in (t.value if isinstance(t.value, tuple) else [t.value])
                 if isinstance(v, float)] for e in found]
    def is_number(word):
        try: float(word)
        except (TypeError, ValueError): return False
        return True
    found = [e for e in sat.parse_sat(entity.acis_data).entities if e.name == name]
    return [[float(w) for w in e.data if is_number(w)] for e in found]
def shell_of(entity):
    lumps = body_of(entity).lumps()
    if len(lumps) != 1: sys.exit('lumps')
    shells = lumps[0].shells()
    if len(shells) != 1: sys.exit('shells')
    return shells[0]

pipe, disc, ring = list(drawing.modelspace())[-3:]
near([['3DSOLID', 'REGION', 'REGION'] == [e.dxftype() for e in (pipe, disc, ring)]], [True])

faces = shell_of(pipe).faces()
near([len(face.loops()) for face in faces], [2, 1, 1])
near([face.sense for face in faces], [False, True, False])
near([face.double_sided for face in faces], [False] * 3)
planes = [face.surface for face in faces[1:]]
cone = raw_records(pipe, 'cone-surface')[0]
radius = math.sqrt(sum(v * v for v in cone[6:9]))
height = (planes[1].origin - planes[0].origin).dot(planes[0].normal)
near(planes[0].origin, (25496000, 6672000, 3)); near([radius, height], [2, 5])
near([math.pi * radius * radius * height], [62.83185307179586])
near(cone[9:], [1, 0, 1, 2])
circles = raw_records(pipe, 'ellipse-curve')
near([len(circles)], [2])
for circle, plane in zip(circles, planes): near(circle[:3], plane.origin); near(circle[9:], [1])
edges = set()
for face in faces:
    for loop in face.loops():
        if loop.face is not face: sys.exit('face of a loop')
        for coedge in loop.coedges():
            edges.add(coedge.edge)
            partners = coedge.partner_coedges()
            if [p.edge for p in partners] != [coedge.edge]: sys.exit('partners')
            if partners[0].sense == coedge.sense: sys.exit('senses')
near([len(edges)], [2])
for edge in edges:
    if edge.start_vertex is not edge.end_vertex: sys.exit('a circle has one vertex')
    if binary: near([edge.start_param, edge.end_param], [0, 2 * math.pi])

face, = shell_of(disc).faces()
near([face.double_sided, face.containment], [True, False])
near([len(face.loops()), len(face.loops()[0].coedges())], [1, 1])
near(raw_records(disc, 'ellipse-curve')[0][:3], (1, 2, 0))

face, = shell_of(ring).faces()
corners = []
for coedge in face.loops()[0].coedges():
    edge = coedge.edge
    near(edge.curve.origin, edge.start_vertex.point.location)
    if binary: near(edge.curve.evaluate(edge.end_param), edge.end_vertex.point.location)
    corners.append(edge.start_vertex.point.location)
near([len(corners)], [3])
for corner, wanted in zip(corners, [(0, 0, 0), (4, 0, 0), (0, 3, 0)]): near(corner, wanted)
near(face.surface.normal, (0, 0, 1))
mesh, = api.mesh_from_body(body_of(ring))
near([len(mesh.faces)], [1])
)";

class SolidsInEzdxf : public testing::TestWithParam<const char*> {};

void drawAll(AcDbDatabase& database) {
    AcDbCircle end({25496000, 6672000, 3}, AcGeVector3d::kZAxis, 2);
    const AcDbLine path({25496000, 6672000, 3}, {25496000, 6672000, 8});
    auto* pipe = new AcDb3dSolid;
    ASSERT_EQ(pipe->extrudeAlongPath(test::regionOf(end).get(), &path), Acad::eOk);
    ASSERT_EQ(test::append(database, pipe), Acad::eOk);
    AcDbCircle circle({1, 2, 0}, AcGeVector3d::kZAxis, 7);
    ASSERT_EQ(test::append(database, test::regionOf(circle).release()), Acad::eOk);
    ASSERT_EQ(test::append(database, test::triangle().release()), Acad::eOk);
}

}  // namespace

TEST_P(SolidsInEzdxf, AreReadWithTheirBodiesAndNoFaultIsFound) {
    const fs::path source = fs::path(ORLINTH_TEST_DATA) / "releases" / GetParam();
    const auto database = database::readDrawing(source);
    const test::Working working(*database);
    drawAll(*database);
    const test::Folder folder;
    database::saveDrawing(*database, folder / "drawn.dxf");
    const std::string drawings =
        "'" + (folder / "drawn.dxf").string() + "' '" + source.string() + "'";
    EXPECT_EQ(test::runPython(folder, test::kAudited, kScript, drawings), 0) << drawings;
}

INSTANTIATE_TEST_SUITE_P(Releases, SolidsInEzdxf,
                         testing::ValuesIn(host::test::releasesFrom("r13.dxf")));

#endif
