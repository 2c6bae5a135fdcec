// Arcs shown on the screen.
#include <gtest/gtest.h>

#include "GeomEnts/Arc.h"
#include "GeomStructs/PolyLine.h"
#include "host/editor/Scripted.h"

namespace TamLib {
namespace {

TEST(ArcDraw, DrawsItsPolylineOfATenthOfARadian) {
    const Arc arc(-1.0, Line({0, 0, 3}, {4, 0, 5}));
    const PolyLine line = arc.ToPolyLine(0.1, true);
    ASSERT_GT(line.count, 10u);
    host::editor::Scripted host;
    arc.Draw(4);
    ASSERT_EQ(line.count - 1, host.lines().size());
    for (std::uint32_t i = 0; i + 1 < line.count; ++i) {
        EXPECT_EQ(line.data[i].x, host.lines()[i].from.x);
        EXPECT_EQ(line.data[i].z, host.lines()[i].from.z);
        EXPECT_EQ(line.data[i + 1].y, host.lines()[i].to.y);
        EXPECT_EQ(4, host.lines()[i].colour);
        EXPECT_EQ(0, host.lines()[i].highlight);
    }
}

TEST(ArcDraw, StraightArcIsOneVector) {
    host::editor::Scripted host;
    Arc(0.0, Line({0, 0, 3}, {4, 0, 5})).Draw(4);
    ASSERT_EQ(1u, host.lines().size());
    EXPECT_EQ(5.0, host.lines()[0].to.z);
}

}  // namespace
}  // namespace TamLib
