// A region as the picked line: as the ring of its outline turns, so does the region; each call of
// the boundary reader refused; regions of a drawing, whose bodies are unknown.
#include <dbpl.h>
#include <dbregion.h>
#include <dbsymtb.h>

#include <memory>

#include "BruteForce.h"
#include "CommandHost.h"

namespace {

using namespace app_test;

const std::vector<Vertex> ring{{0, 0}, {100, 0}, {140, 70}, {20, 90}};
const std::vector<Vertex> places{{20, 5}, {130, 30}, {80, 85}, {5, 40}, {60, 30}};
const std::vector<std::string> texts{"A0", "A1", "A2", "A3", "A4"};

DrawingText Texts(const Vertex& origin) {
    DrawingText drawing;
    for (std::size_t i = 0; i < texts.size(); ++i)
        drawing.Text(texts[i], {origin.x + places[i].x, origin.y + places[i].y});
    return drawing;
}

std::vector<Vertex> RingAt(const Vertex& origin) {
    std::vector<Vertex> moved;
    for (const Vertex& corner : ring) moved.push_back({origin.x + corner.x, origin.y + corner.y});
    return moved;
}

class RegionCommand : public CommandTest {
  protected:
    // In model space, made of a closed polyline.
    AcDbObjectId DrawRegion(const std::vector<Vertex>& corners) {
        AcDbPolyline polyline;
        for (const Vertex& corner : corners)
            polyline.addVertexAt(polyline.numVerts(), {corner.x, corner.y});
        polyline.setClosed(true);
        AcDbVoidPtrArray curves, regions;
        curves.append(&polyline);
        EXPECT_EQ(Acad::eOk, AcDbRegion::createFromCurves(curves, regions));
        auto* const region = static_cast<AcDbRegion*>(regions[0]);
        AcDbBlockTable* blocks = nullptr;
        AcDbBlockTableRecord* space = nullptr;
        EXPECT_EQ(Acad::eOk, session.drawing()->getSymbolTable(blocks, AcDb::kForRead));
        EXPECT_EQ(Acad::eOk, blocks->getAt(ACDB_MODEL_SPACE, space, AcDb::kForWrite));
        AcDbObjectId id;
        EXPECT_EQ(Acad::eOk, space->appendAcDbEntity(id, region));
        blocks->close();
        space->close();
        region->close();
        return id;
    }

    CommandResult RunOn(AcDbObjectId line) {
        scripted->pick(line);
        scripted->select(Ids(texts));
        scripted->type(L"");
        return session.runCommand(L"ZEPTAlignEntities");
    }

    std::vector<double> Rotations() const {
        std::vector<double> rotations;
        for (const std::string& text : texts) rotations.push_back(Rotation(text));
        return rotations;
    }
};

TEST_F(RegionCommand, TurnsAsTheClosedPolylineAlongItsOutlineDoes) {
    for (const Vertex& origin : {Vertex{0, 0}, Vertex{25496000, 6672000}}) {
        DrawingText drawing = Texts(origin);
        drawing.LightPolyline("2F", RingAt(origin), /*closed=*/true);
        Open(drawing);
        EXPECT_EQ(End::done, RunOn(Id("2F")).end);
        const std::vector<double> expected = Rotations();
        EXPECT_NE(std::vector<double>(texts.size(), 0.0), expected);
        Open(Texts(origin));
        EXPECT_EQ(End::done, RunOn(DrawRegion(RingAt(origin))).end);
        EXPECT_EQ(expected, Rotations());
        EXPECT_EQ(4u, scripted->lines().size());  // the flash
    }
}

TEST_F(RegionCommand, EachCallOfTheReaderRefusedTurnsNothingOrAllAsUsual) {
    Open(Texts({0, 0}));
    const std::vector<double> untouched = Rotations();
    const AcDbObjectId usual = DrawRegion(ring);
    host::fault::disarm();
    ASSERT_EQ(End::done, RunOn(usual).end);
    const std::vector<std::string> calls = host::fault::names();
    const std::vector<double> turned = Rotations();
    std::size_t ofTheReader = 0, whole = 0;
    for (std::size_t n = 1; n <= calls.size(); ++n) {
        if (calls[n - 1].rfind("AcBr", 0) != 0) continue;
        ++ofTheReader;
        SCOPED_TRACE("call " + std::to_string(n) + ": " + calls[n - 1]);
        Open(Texts({0, 0}));
        const AcDbObjectId region = DrawRegion(ring);
        const std::string before = Saved();
        host::fault::arm(n, Acad::eInvalidInput);
        const CommandResult result = RunOn(region);
        EXPECT_TRUE(host::fault::fired());
        host::fault::disarm();
        EXPECT_TRUE(result.leaks.empty());
        EXPECT_EQ(End::done, result.end);
        EXPECT_FALSE(region.isErased());
        if (Rotations() == turned) {
            ++whole;
            session.undo();
        }
        EXPECT_EQ(untouched, Rotations());
        EXPECT_EQ(before, Saved());
    }
    // Path, level, body; faces, loops, edges; each edge; the next face, which isn't missed.
    EXPECT_EQ(3u + 3 + 4 * 7 + 1, ofTheReader);
    EXPECT_EQ(1u, whole);
}

TEST_F(RegionCommand, OfADrawingTurnsNothing) {
    DrawingText drawing = Texts({0, 0});
    drawing.Region("2F");
    Open(drawing);
    const CommandResult result = RunOn(Id("2F"));
    EXPECT_EQ(End::done, result.end);
    EXPECT_EQ(Saved(), original);
}

}  // namespace
