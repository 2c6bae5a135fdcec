// An independent reader, ezdxf, audits drawings with new multi-lines and computes their joints
// itself: natively only, for it is a package of the distribution's own Python.
#ifndef _WIN32

#include <dbmline.h>

#include <filesystem>
#include <random>

#include "tests/host/database/NewEntities.h"
#include "tests/host/database/PythonCheck.h"
#include "tests/host/support/LedgerListener.h"
#include "tests/host/support/Releases.h"

using namespace host;
namespace fs = std::filesystem;

namespace {

constexpr int kDrawn = 24;

// Arguments: the drawing, the drawing before, the number of multi-lines at its end.
constexpr char kScript[] = R"(
count = int(sys.argv[3])
added = list(after.modelspace())[-count:]
def near(a, b, what):
    if abs(a - b) > 1e-8 * max(1, abs(b)): sys.exit('%s: %s is not %s' % (what, a, b))
for number, mline in enumerate(added):
    if mline.dxftype() != 'MLINE': sys.exit(mline.dxftype())
    style = mline.style
    if style is None or style.dxf.name.upper() != 'STANDARD': sys.exit('style %s' % style)
    if mline.dxf.style_handle != style.dxf.handle: sys.exit('handle of the style')
    if mline.dxf.count != len(mline.vertices): sys.exit('number of vertices')
    if mline.dxf.style_element_count != len(style.elements): sys.exit('number of lines')
    if mline.is_closed != (number % 2 == 1) or mline.dxf.justification != number % 3:
        sys.exit('flags')
    stored = [(v.location, v.line_direction, v.miter_direction, v.line_params) for v in mline.vertices]
    mline.update_geometry()
    if len(stored) != len(mline.vertices): sys.exit('vertices fall together')
    for (place, along, miter, params), v in zip(stored, mline.vertices):
        for a, b in zip(place.xyz + along.xyz + miter.xyz,
                        v.location.xyz + v.line_direction.xyz + v.miter_direction.xyz):
            near(a, b, 'vertex of %d' % number)
        for line, wanted in zip(params, v.line_params):
            if len(line) != len(wanted): sys.exit('parameters')
            for a, b in zip(line, wanted): near(a, b, 'parameter of %d' % number)
)";

void drawAll(AcDbDatabase& database) {
    std::mt19937 random(20);
    const auto real = [&](double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random);
    };
    for (int i = 0; i < kDrawn; ++i) {
        auto* mline = new AcDbMline;
        mline->setNormal(i % 4 == 3 ? AcGeVector3d(real(-1, 1), real(-1, 1), 1)
                                    : AcGeVector3d::kZAxis);
        mline->setScale(real(0.1, 4));
        const AcGePoint3d base = i % 5 == 4 ? AcGePoint3d(25496000, 6672000, 10) : AcGePoint3d();
        const int vertices = 2 + static_cast<int>(random() % 7) + i % 2;
        for (int k = 0; k < vertices; ++k) {
            mline->appendSeg({base.x + real(-9, 9), base.y + real(-9, 9), base.z + real(-9, 9)});
        }
        mline->setClosedMline(i % 2 == 1);
        mline->setJustification(static_cast<Mline::MlineJustification>(i % 3));
        ASSERT_EQ(test::append(database, mline), Acad::eOk);
    }
}

class MlinesEzdxf : public testing::TestWithParam<const char*> {};

}  // namespace

TEST_P(MlinesEzdxf, FindsTheSameJointsAndNoFault) {
    const fs::path source = fs::path(ORLINTH_TEST_DATA) / "releases" / GetParam();
    const auto database = database::readDrawing(source);
    const test::Working working(*database);
    drawAll(*database);
    const test::Folder folder;
    database::saveDrawing(*database, folder / "drawn.dxf");
    const std::string arguments = "'" + (folder / "drawn.dxf").string() + "' '" + source.string() +
                                  "' " + std::to_string(kDrawn);
    EXPECT_EQ(test::runPython(folder, test::kAudited, kScript, arguments), 0) << arguments;
}

INSTANTIATE_TEST_SUITE_P(Releases, MlinesEzdxf,
                         testing::ValuesIn(host::test::releasesFrom("r13.dxf")));

#endif
