// LineArray read from drawing entities.
#include <gtest/gtest.h>

#include <vector>

#include "GeomStructs/LineArray.h"
#include "GeomStructs/PolyLine.h"
#include "host/database/Drawing.h"
#include "tam/TamExceptions.h"
#include "tests/GeomEnts/TestDrawing.h"

namespace TamLib {
namespace {

Array<AcDbObjectId> Select(const TestDrawing& drawing, std::initializer_list<int> handles) {
    Array<AcDbObjectId> ids;
    for (const int handle : handles) ids.Append(drawing.Id(static_cast<std::uint64_t>(handle)));
    return ids;
}

void ExpectLine(const Line& line, const Point3d& start, const Point3d& end) {
    EXPECT_EQ(1, line.valid);
    EXPECT_EQ(0.0, SquaredDistance(start, line.Start()));
    EXPECT_EQ(0.0, SquaredDistance(end, line.End()));
}

class LineArrayEntity : public ::testing::Test {
  protected:
    TestDrawing drawing_{"LINE|5 20|8 0|10 1|20 2|30 3|11 4|21 5|31 6",
                         "LWPOLYLINE|5 21|8 0|90 3|70 1|38 9|10 0|20 0|10 4|20 0|10 4|20 3",
                         "POINT|5 22|8 0|10 1|20 2|30 3", "CIRCLE|5 23|8 0|10 1|20 2|30 3|40 2.5",
                         "LINE|5 24|8 LOCKED|10 7|20 8|30 9|11 4|21 5|31 6"};
};

TEST_F(LineArrayEntity, LinesAndTheSegmentsOfEverythingElse) {
    const LineArray lines(Select(drawing_, {0x20, 0x21, 0x22, 0x24}));
    ASSERT_EQ(6u, lines.count);
    ExpectLine(lines[0], {1, 2, 3}, {4, 5, 6});
    ExpectLine(lines[1], {0, 0, 9}, {4, 0, 9});
    ExpectLine(lines[2], {4, 0, 9}, {4, 3, 9});
    ExpectLine(lines[3], {4, 3, 9}, {0, 0, 9});  // closed
    ExpectLine(lines[4], {1, 2, 3}, {1, 2, 3});  // a point is a line without length
    ExpectLine(lines[5], {7, 8, 9}, {4, 5, 6});  // reading from a locked layer is allowed
}

TEST_F(LineArrayEntity, RoomIsThreeHalvesOfTheSelection) {
    const LineArray eight(Select(drawing_, {0x20, 0x20, 0x20, 0x20, 0x20, 0x20, 0x20, 0x20}));
    EXPECT_EQ(8u, eight.count);
    EXPECT_EQ(12u, eight.capacity);
    EXPECT_EQ(12u, eight.increment);
    const LineArray one(Select(drawing_, {0x20}));
    EXPECT_EQ(1u, one.count);
    EXPECT_EQ(5u, one.increment);
    EXPECT_EQ(0u, LineArray(Array<AcDbObjectId>()).count);
}

TEST_F(LineArrayEntity, EntityWithoutVerticesGivesNothingAndIsClosed) {
    EXPECT_EQ(0u, LineArray(Select(drawing_, {0x23})).count);
}

TEST_F(LineArrayEntity, WhatCannotBeOpenedIsPassedOver) {
    AcDbEntity* const busy = drawing_.Open(0x20, AcDb::kForWrite);
    Array<AcDbObjectId> ids = Select(drawing_, {0x20, 0x22});
    ids.Append(AcDbObjectId());
    EXPECT_EQ(1u, LineArray(ids).count);
    busy->close();
}

TEST_F(LineArrayEntity, EachCallFailingLeavesNothingOpen) {
    for (std::size_t n = 1;; ++n) {
        const Array<AcDbObjectId> ids = Select(drawing_, {0x20, 0x21});
        host::fault::arm(n, Acad::eOutOfDisk);
        std::uint32_t count = 0;
        try {
            count = LineArray(ids).count;
        } catch (const TamExpAcad& exception) {
            EXPECT_STREQ(L"LightWeight PolyLine conversion to PolyLine failed!", exception.message);
        }
        const bool fired = host::fault::fired();
        const std::string call = fired ? host::fault::names().at(n - 1) : "";
        host::fault::disarm();
        if (!fired) {
            EXPECT_EQ(4u, count);
            break;
        }
        if (call == "AcDbObject::close") {
            host::database::closeLeftOpen(drawing_.Database());
        }
        EXPECT_EQ(0u, host::database::Ledger::instance().count("object")) << call;
        EXPECT_LT(n, 100u);
    }
}

}  // namespace
}  // namespace TamLib
