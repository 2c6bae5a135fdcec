// The drawing window: pixels and places, its window and colours.
#include <aced.h>
#include <afxwin.h>
#include <gtest/gtest.h>

#include "host/database/Fault.h"
#include "host/editor/Scripted.h"
#include "host/editor/Variables.h"

namespace host::editor {
namespace {

class DrawingWindow : public ::testing::Test {
  protected:
    void SetUp() override {
        host_.variable(L"VIEWSIZE", 540.0);
        host_.variable(L"viewctr", AcGePoint3d(100, 50, 7));
        host_.variable(L"SCREENSIZE", host::editor::PlanePoint{1920, 1080});
    }

    Scripted host_;
};

TEST_F(DrawingWindow, TheViewsHeightFillsTheScreenAndPixelsCountDownwards) {
    acedDwgPoint world;
    EXPECT_EQ(1, acedCoordFromPixelToWorld(2, CPoint(960, 540), world));
    EXPECT_EQ(100.0, world[0]);
    EXPECT_EQ(50.0, world[1]);
    EXPECT_EQ(0.0, world[2]);
    EXPECT_EQ(1, acedCoordFromPixelToWorld(2, CPoint(0, 0), world));
    EXPECT_EQ(100.0 - 480.0, world[0]);
    EXPECT_EQ(50.0 + 270.0, world[1]);
    EXPECT_EQ(1, acedCoordFromPixelToWorld(2, CPoint(1, 0), world));
    EXPECT_EQ(100.0 - 479.5, world[0]);
}

TEST_F(DrawingWindow, PlacesAreRoundedToTheirPixelAndBack) {
    for (const int x : {-5, 0, 1, 960, 1919, 4000}) {
        for (const int y : {-5, 0, 1, 540, 1079, 4000}) {
            acedDwgPoint world;
            ASSERT_EQ(1, acedCoordFromPixelToWorld(2, CPoint(x, y), world));
            world[0] += 0.2;
            world[1] -= 0.2;
            CPoint pixel;
            ASSERT_EQ(1, acedCoordFromWorldToPixel(2, world, pixel));
            EXPECT_EQ(x, pixel.x);
            EXPECT_EQ(y, pixel.y);
        }
    }
}

TEST_F(DrawingWindow, NoPixelForPlacesOutOfReachAndOtherViewports) {
    CPoint pixel(3, 4);
    const acedDwgPoint outOfReach = {1e300, 0, 0}, here = {100, 50, 0};
    EXPECT_EQ(0, acedCoordFromWorldToPixel(2, outOfReach, pixel));
    EXPECT_EQ(0, acedCoordFromWorldToPixel(3, here, pixel));
    EXPECT_EQ(0, acedCoordFromWorldToPixel(2, nullptr, pixel));
    EXPECT_EQ(3, pixel.x);
    EXPECT_EQ(4, pixel.y);
    acedDwgPoint world = {1, 2, 3};
    EXPECT_EQ(0, acedCoordFromPixelToWorld(1, CPoint(0, 0), world));
    EXPECT_EQ(0, acedCoordFromPixelToWorld(2, CPoint(0, 0), nullptr));
    EXPECT_EQ(1.0, world[0]);
    EXPECT_EQ(2, acedGetWinNum(0, 0));
}

TEST_F(DrawingWindow, CallsCanBeOrderedToFail) {
    acedDwgPoint world = {1, 2, 3};
    CPoint pixel(3, 4);
    AcColorSettings colours{5, 6};
    fault::arm("acedCoordFromPixelToWorld", 1, 0);
    EXPECT_EQ(0, acedCoordFromPixelToWorld(2, CPoint(0, 0), world));
    fault::arm("acedCoordFromWorldToPixel", 1, 0);
    EXPECT_EQ(0, acedCoordFromWorldToPixel(2, world, pixel));
    fault::arm("acedGetCurrentColors", 1, 0);
    EXPECT_FALSE(acedGetCurrentColors(&colours));
    EXPECT_EQ(5u, colours.dwGfxModelBkColor);
    fault::disarm();
    EXPECT_TRUE(acedGetCurrentColors(&colours));
    EXPECT_FALSE(acedGetCurrentColors(nullptr));
    EXPECT_NE(colours.dwGfxModelBkColor, colours.dwGfxLayoutBkColor);
}

TEST(DrawingWindowAlone, IsOneWindowThatExists) {
    CView* const view = acedGetAcadDwgView();
    ASSERT_NE(nullptr, view);
    EXPECT_EQ(view, acedGetAcadDwgView());
    EXPECT_TRUE(IsWindow(view->GetSafeHwnd()));
}

TEST(DrawingWindowAlone, WithoutASessionTheViewIsOneUnitHigh) {
    acedDwgPoint world;
    EXPECT_EQ(1, acedCoordFromPixelToWorld(2, CPoint(960, 0), world));
    EXPECT_EQ(0.0, world[0]);
    EXPECT_EQ(0.5, world[1]);
}

TEST(ScriptedVariables, TellAnyTypeAndStandInFrontOfTheSession) {
    Scripted host;
    resbuf value{};
    EXPECT_EQ(RTERROR, acedGetVar(L"VIEWSIZE", &value));  // no session
    host.variable(L"viewSize", 2.5);
    EXPECT_EQ(RTNORM, acedGetVar(L"VIEWSIZE", &value));
    EXPECT_EQ(RTREAL, value.restype);
    EXPECT_EQ(2.5, value.resval.rreal);
    host.variable(L"VIEWSIZE", short{3});
    EXPECT_EQ(RTNORM, acedGetVar(L"VIEWSIZE", &value));
    EXPECT_EQ(RTSHORT, value.restype);
    EXPECT_EQ(nullptr, host.variable(L"VIEW"));
    EXPECT_EQ(nullptr, variableValue(L"VIEWCTR"));
}

}  // namespace
}  // namespace host::editor
