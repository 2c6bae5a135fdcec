// From geometry to the file: what ToDb has written stands in the saved drawing of every release,
// nothing else of the file has changed, and an independent reader finds it.
#include <dbents.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "GeomEnts/Arc.h"
#include "GeomEnts/Box.h"
#include "GeomEnts/Line.h"
#include "GeomEnts/circle.h"
#include "datastruct/Array.h"
#include "host/dxf/Compare.h"
#include "tests/GeomEnts/DrawnEntities.h"

namespace TamLib {
namespace {

namespace fs = std::filesystem;
using host::editor::Scripted;

class SavedOutput : public ::testing::TestWithParam<const char*> {
  protected:
    SavedOutput()
        : database_(
              host::database::readDrawing(fs::path(ORLINTH_TEST_DATA) / "releases" / GetParam())),
          before_(acdbHostApplicationServices()->workingDatabase()),
          saved_(fs::temp_directory_path() / ("orlinth_output_" + std::string(GetParam()))) {
        acdbHostApplicationServices()->setWorkingDatabase(database_.get());
        host_.variable(L"VIEWSIZE", 240.0);
    }
    ~SavedOutput() override {
        acdbHostApplicationServices()->setWorkingDatabase(before_);
        std::error_code ignored;
        fs::remove(saved_, ignored);
    }

    // Everything that geometry writes; far from the origin, with numbers of many digits.
    void Write() {
        const Point3d p(25000000.123456789, 7000000.987654321, 12.3456789);
        const Line line(p, p + Point3d(1.0 / 3.0, -2.0 / 3.0, 0.1));
        const auto note = [this](int status, AcDbObjectId id) {
            EXPECT_EQ(0, status);
            ids_.push_back(id);
        };
        AcDbObjectId id;
        int status = p.ToDb(1, L"a12345", &id, nullptr);
        note(status, id);
        status = line.ToDb(2, L"uusi taso \u00E4", &id, nullptr);
        note(status, id);
        status = Circle(p, 2.0 / 3.0).ToDb(256, nullptr, &id, nullptr);
        note(status, id);
        status = Arc(-0.2, line).ToDb(0, L"A12345", &id, nullptr);
        note(status, id);
        status = p.LabelXYZ(5, L"A12345", &id, nullptr);
        note(status, id);
        Array<AcDbObjectId> edges;
        EXPECT_EQ(0, Box(1.0, 4.0, 2.0, 5.0, 3.0, 6.0).ToDb(3, L"cage", &edges, nullptr));
        ids_.insert(ids_.end(), edges.begin(), edges.end());
    }

    Scripted host_;
    std::unique_ptr<AcDbDatabase> database_;
    AcDbDatabase* before_;
    fs::path saved_;
    std::vector<AcDbObjectId> ids_;
};

TEST_P(SavedOutput, IsReadBackAsItWasWrittenBehindWhatWasThere) {
    const std::size_t there = host::database::modelSpaceIds(*database_).size();
    Write();
    host::database::saveDrawing(*database_, saved_);
    const auto again = host::database::readDrawing(saved_);
    const std::vector<AcDbObjectId> all = host::database::modelSpaceIds(*again);
    ASSERT_EQ(there + ids_.size(), all.size());
    for (std::size_t i = 0; i < ids_.size(); ++i) {
        EXPECT_EQ(LookOf(ids_[i]), LookOf(all[there + i])) << i;
        EXPECT_EQ(host::database::handleText(ids_[i]), host::database::handleText(all[there + i]));
    }
    const ReadAs<AcDbLine> line(all[there + 1]), written(ids_[1]);
    EXPECT_NEAR(written->startPoint().x, line->startPoint().x, 1e-8);
    EXPECT_NEAR(written->endPoint().z, line->endPoint().z, 1e-8);
    const ReadAs<AcDbArc> arc(all[there + 3]), writtenArc(ids_[3]);
    EXPECT_NEAR(writtenArc->radius(), arc->radius(), 1e-8);
    EXPECT_NEAR(writtenArc->startAngle(), arc->startAngle(), 1e-8);
    const ReadAs<AcDbText> text(all[there + 4]);
    EXPECT_STREQ(L"25000000.123, 7000000.988, 12.346", text->textStringConst());
    EXPECT_NEAR(2.0, text->height(), 1e-12);
    EXPECT_EQ(Layers(*database_), Layers(*again));
}

TEST_P(SavedOutput, NothingElseOfTheFileChanges) {
    using Kind = host::dxf::Difference::Kind;
    Write();
    host::database::saveDrawing(*database_, saved_);
    const auto again = host::database::readDrawing(saved_);
    std::size_t inserted = 0;
    for (const host::dxf::Difference& difference : host::dxf::compare(
             host::database::document(*database_), host::database::document(*again))) {
        if (difference.kind == Kind::recordInserted) {
            ++inserted;
            continue;
        }
        // The next free handle, and the number of layers.
        const bool seed = difference.code == 5 && difference.type == "SECTION";
        const bool layers = difference.code == 70 && difference.type == "TABLE";
        EXPECT_TRUE(difference.kind == Kind::changed && (seed || layers)) << difference.text();
    }
    EXPECT_GE(inserted, ids_.size() + 3);  // and the layers
}

#ifndef _WIN32

constexpr char kScript[] = R"(
import sys, ezdxf
drawing = ezdxf.readfile(sys.argv[1])
entities = list(drawing.modelspace())[-int(sys.argv[2]):]
def near(a, b):
    return all(abs(x - y) < 1e-6 for x, y in zip(a, b))
def expect(fact, what):
    if not fact:
        sys.exit('wrong: ' + what)
types = [e.dxftype() for e in entities]
expect(types == ['POINT', 'LINE', 'CIRCLE', 'ARC', 'TEXT'] + ['LINE'] * 12, str(types))
p = (25000000.123456789, 7000000.987654321, 12.3456789)
end = (p[0] + 1 / 3, p[1] - 2 / 3, p[2] + 0.1)
point, line, circle, arc, text = entities[:5]
expect(near(point.dxf.location, p), str(point.dxf.location))
expect(near(line.dxf.start, p) and near(line.dxf.end, end), str(line.dxf.end))
expect(near(circle.dxf.center, p) and abs(circle.dxf.radius - 2 / 3) < 1e-9, 'circle')
expect(near(arc.start_point.vec2, p[:2]) and near(arc.end_point.vec2, end[:2]), 'arc')
expect(text.dxf.text == '25000000.123, 7000000.988, 12.346', text.dxf.text)
expect([e.dxf.get('color', 256) for e in entities[:5]] == [1, 2, 256, 0, 5], 'colours')
expect(point.dxf.layer == 'A12345' and entities[-1].dxf.layer == 'cage', 'layers')
name = line.dxf.layer
if drawing.header.get('$DWGCODEPAGE') == 'dos850':  # which the reader takes for 1252
    name = name.encode('cp1252').decode('cp850')
expect(name == 'uusi taso \u00e4', name)
for e in entities:
    expect(e.dxf.layer in drawing.layers, e.dxf.layer)
expect(drawing.layers.get('cage').dxf.linetype.upper() == 'CONTINUOUS', 'linetype')
)";

TEST_P(SavedOutput, IsFoundByAnIndependentReader) {
    Write();
    host::database::saveDrawing(*database_, saved_);
    const fs::path script = saved_.string() + ".py";
    std::ofstream(script) << kScript;
    const std::string command = "/usr/bin/python3 '" + script.string() + "' '" + saved_.string() +
                                "' " + std::to_string(ids_.size()) + " 2>&1";
    EXPECT_EQ(0, std::system(command.c_str()));
    fs::remove(script);
}

#endif

INSTANTIATE_TEST_SUITE_P(Releases, SavedOutput,
                         ::testing::Values("r10.dxf", "r12.dxf", "r12_binary.dxf", "r13.dxf",
                                           "r14_binary.dxf", "r2000.dxf", "r2000_binary.dxf",
                                           "r2004.dxf", "r2007.dxf", "r2010_binary.dxf",
                                           "r2013.dxf", "r2018.dxf", "r2018_binary.dxf"));

}  // namespace
}  // namespace TamLib
