// Lines as pipes: the solid that the drawing gets, and what is told when there is none.
#include <dbsol3d.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "GeomEnts/Line.h"
#include "tam/TamExceptions.h"
#include "tests/GeomEnts/DrawnEntities.h"

namespace TamLib {
namespace {

TEST(Pipe, BecomesASolidOnItsLayerInNoColourOfItsOwnIntended) {
    const TestDrawing drawing{};
    AcDbObjectId id;
    EXPECT_EQ(0, Line({1, 2, 3}, {4, 6, 3}).ToPipe(0.5, 3, L"pipes", &id, nullptr));
    ASSERT_EQ(std::vector<AcDbObjectId>{id}, Entities(drawing));
    EXPECT_EQ((Look{L"AcDb3dSolid", L"pipes", 256}), LookOf(id));
    EXPECT_FALSE(ReadAs<AcDb3dSolid>(id)->isNull());
}

TEST(Pipe, GoesIntoTheDatabaseGiven) {
    const TestDrawing drawing{};
    const auto other = host::test::DrawingText("AC1015").layer("0").database();
    AcDbObjectId id;
    EXPECT_EQ(0, Line({1, 2, 3}, {1, 2, 9}).ToPipe(0.5, 3, nullptr, &id, other.get()));
    EXPECT_TRUE(Entities(drawing).empty());
    EXPECT_EQ(1u, host::database::modelSpaceIds(*other).size());
}

TEST(Pipe, GoesIntoEveryReleaseThatHasSolids) {
    for (const char* const release : {"AC1012", "AC1014", "AC1018", "AC1021", "AC1027", "AC1032"}) {
        const auto drawing = host::test::DrawingText(release).layer("0").database();
        EXPECT_EQ(0, Line({1, 2, 3}, {1, 2, 9}).ToPipe(0.5, 3, nullptr, nullptr, drawing.get()));
        EXPECT_EQ(1u, host::database::modelSpaceIds(*drawing).size()) << release;
    }
    const auto old = host::test::DrawingText("AC1009").layer("0").database();
    AcDbObjectId id;
    EXPECT_EQ(Acad::eInvalidDwgVersion,
              Line({1, 2, 3}, {1, 2, 9}).ToPipe(0.5, 3, nullptr, &id, old.get()));
    EXPECT_TRUE(id.isNull());
    EXPECT_TRUE(host::database::modelSpaceIds(*old).empty());
}

TEST(Pipe, CircleWithoutARegionGives150AndAddsNothing) {
    const TestDrawing drawing{};
    AcDbObjectId id;
    EXPECT_EQ(150, Line({1, 2, 3}, {4, 6, 3}).ToPipe(0.0, 3, L"pipes", &id, nullptr));
    EXPECT_EQ(150, Line({1, 2, 3}, {4, 6, 3}).ToPipe(-1.0, 3, L"pipes", &id, nullptr));
    host::fault::arm("AcDbRegion::createFromCurves", 1, Acad::eOutOfDisk);
    EXPECT_EQ(150, Line({1, 2, 3}, {4, 6, 3}).ToPipe(0.5, 3, L"pipes", &id, nullptr));
    EXPECT_TRUE(id.isNull());
    EXPECT_TRUE(Entities(drawing).empty());
    EXPECT_EQ(2u, Layers(drawing.Database()).size());  // no layer either
}

TEST(Pipe, StatusOfTheExtrusionIsTold) {
    const TestDrawing drawing{};
    host::fault::arm("AcDb3dSolid::extrudeAlongPath", 1, Acad::eGeneralModelingFailure + 3);
    EXPECT_EQ(153, Line({1, 2, 3}, {4, 6, 3}).ToPipe(0.5, 3, L"pipes", nullptr, nullptr));
    host::fault::disarm();
    // A line without length gives no direction to extrude in.
    EXPECT_NE(0, Line({1, 2, 3}, {1, 2, 3}).ToPipe(0.5, 3, L"pipes", nullptr, nullptr));
    EXPECT_TRUE(Entities(drawing).empty());
    EXPECT_EQ(2u, Layers(drawing.Database()).size());
}

TEST(Pipe, RefusedMemoryIsRaised) {
    const TestDrawing drawing{};
    const wchar_t* const messages[] = {L"Allocation of AcDbCircle failed",
                                       L"Allocation of AcDbLine failed",
                                       L"Allocation of AcDb3dSolid failed"};
    for (std::size_t n = 1; n <= 3; ++n) {
        host::fault::arm("AcDbObject::operator new", n, Acad::eOutOfMemory);
        try {
            Line({1, 2, 3}, {4, 6, 3}).ToPipe(0.5, 3, nullptr, nullptr, nullptr);
            ADD_FAILURE() << "nothing raised for " << n;
        } catch (const TamExpAcad& exception) {
            EXPECT_STREQ(messages[n - 1], exception.message);
            EXPECT_STREQ(L"GeomEnts/Line", exception.file);
        }
    }
    EXPECT_TRUE(Entities(drawing).empty());
}

TEST(Pipe, EachCallFailingAddsOneSolidOrNoneAndLeavesNothingOpen) {
    const auto outcomes = WriteWithEachCallFailing([](const TestDrawing&) {
        try {
            return Line({1, 2, 3}, {4, 6, 3}).ToPipe(0.5, 3, L"pipes", nullptr, nullptr);
        } catch (const TamExpAcad&) {
            return static_cast<int>(Acad::eOutOfDisk);
        }
    });
    EXPECT_GT(outcomes.size(), 5u);
    for (const FailedWrite& outcome : outcomes) {
        EXPECT_TRUE(outcome.leaks.empty()) << outcome.call;
        EXPECT_EQ(outcome.status == 0 ? 1u : 0u, outcome.entities) << outcome.call;
    }
}

}  // namespace
}  // namespace TamLib
