// Geometry shown on the screen: every vector literally, and what is printed beside it.
#include <aced.h>
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "GeomEnts/Box.h"
#include "GeomEnts/Line.h"
#include "GeomEnts/circle.h"
#include "tam/TamExceptions.h"
#include "tests/GeomEnts/DrawnEntities.h"

#if !defined(_WIN32)
#include <Headless.h>
#endif

namespace TamLib {
namespace {

using host::editor::Scripted;

struct Vector {
    Point3d from, to;
    int colour;
    int highlight = 0;
};

void ExpectVectors(const std::vector<Vector>& expected, const Scripted& host) {
    ASSERT_EQ(expected.size(), host.lines().size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        SCOPED_TRACE(i);
        ExpectPoint(expected[i].from, host.lines()[i].from);
        ExpectPoint(expected[i].to, host.lines()[i].to);
        EXPECT_EQ(expected[i].colour, host.lines()[i].colour);
        EXPECT_EQ(expected[i].highlight, host.lines()[i].highlight);
    }
}

// A view of 540 units over 1080 pixels: half a unit to the pixel.
void ShowHalfUnitPixels(Scripted& host) {
    host.variable(L"VIEWSIZE", 540.0);
    host.variable(L"VIEWCTR", AcGePoint3d(100, 50, 0));
    host.variable(L"SCREENSIZE", host::editor::PlanePoint{1920, 1080});
}

// --- Line.

TEST(LineDraw, DrawsOneVectorWithoutWidth) {
    Scripted host;
    const Line line({1, 2, 3}, {4, 5, 6});
    line.Draw(3);
    line.Draw(256, true);
    line.Draw(-1, true, 0);
    ExpectVectors(
        {{{1, 2, 3}, {4, 5, 6}, 3}, {{1, 2, 3}, {4, 5, 6}, 256, 1}, {{1, 2, 3}, {4, 5, 6}, -1, 1}},
        host);
}

TEST(LineDraw, WidthGivesCopiesAPixelApartAcrossTheLine) {
    Scripted host;
    ShowHalfUnitPixels(host);
    Line({0, 0, 1}, {10, 0, 2}).Draw(5, true, 3);
    // To the right of the direction with k above 0: the normal is (dy, -dx).
    ExpectVectors({{{0, 0.5, 1}, {10, 0.5, 2}, 5, 1},
                   {{0, 0, 1}, {10, 0, 2}, 5, 1},
                   {{0, -0.5, 1}, {10, -0.5, 2}, 5, 1}},
                  host);
}

TEST(LineDraw, HalfTheWidthIsCutToAWholeNumber) {
    for (const auto& [width, copies] : std::vector<std::pair<int, std::size_t>>{
             {1, 1}, {2, 3}, {3, 3}, {4, 5}, {5, 5}, {-1, 1}, {-2, 0}, {-4, 0}}) {
        Scripted host;
        ShowHalfUnitPixels(host);
        Line({0, 0, 0}, {0, 10, 0}).Draw(1, false, width);
        EXPECT_EQ(copies, host.lines().size()) << width;
    }
}

TEST(LineDraw, ThePixelIsMeasuredFarFromTheOriginToo) {
    Scripted host;
    ShowHalfUnitPixels(host);
    host.variable(L"VIEWCTR", AcGePoint3d(25e6, 7e6, 0));
    Line({25e6, 7e6, 0}, {25e6 + 3, 7e6 + 4, 0}).Draw(1, false, 2);
    ASSERT_EQ(3u, host.lines().size());
    EXPECT_NEAR(25e6 + 0.8 * 0.5, host.lines()[2].from.x, 1e-8);
    EXPECT_NEAR(7e6 - 0.6 * 0.5, host.lines()[2].from.y, 1e-8);
}

TEST(LineDraw, CopiesOfAPointInPlanLieOnEachOther) {
    Scripted host;
    ShowHalfUnitPixels(host);
    Line({1, 2, 0}, {1, 2, 9}).Draw(1, false, 2);
    const Vector upright{{1, 2, 0}, {1, 2, 9}, 1};
    ExpectVectors({upright, upright, upright}, host);
}

TEST(LineDraw, AWindowThatTellsNoPlacesShiftsNothing) {
    Scripted host;
    host::fault::arm("acedCoordFromPixelToWorld", 2, 0);
    ShowHalfUnitPixels(host);
    host.variable(L"VIEWCTR", AcGePoint3d(480, 270, 0));  // the first pixel is at (0, 540)
    Line({0, 0, 0}, {10, 0, 0}).Draw(1, false, 2);
    const Vector level{{0, 0, 0}, {10, 0, 0}, 1};
    ExpectVectors({level, level, level}, host);
}

TEST(LineDraw, ExtendedDrawsTheLongerCopyFirstAndHighlighted) {
    Scripted host;
    const Line line({0, 0, 0}, {3, 4, 0});
    line.DrawExtended(2, 5);
    ExpectVectors({{{-3, -4, 0}, {6, 8, 0}, 2, 1}, {{0, 0, 0}, {3, 4, 0}, 2, 0}}, host);
    EXPECT_EQ(3.0, line.x2);
}

// --- Point3d.

TEST(PointMarker, IsALineWithoutLength) {
    Scripted host;
    Point3d(1, 2, 3).DrawMarker(4, false, 10);
    ExpectVectors({{{1, 2, 3}, {1, 2, 3}, 4}}, host);
}

TEST(PointMarker, CircleOfTheSizeGivenIsDrawnBehindTheDot) {
    Scripted host;
    Point3d(1, 2, 3).DrawMarker(4, true, 10);
    ASSERT_EQ(22u, host.lines().size());
    ExpectPoint({1, 2, 3}, host.lines()[0].to);
    ExpectPoint({11, 2, 3}, host.lines()[1].from);
    for (const Scripted::Line& line : host.lines()) EXPECT_EQ(4, line.colour);
}

TEST(PointMarker, NegativeSizeIsA170thOfTheViewsHeight) {
    const TestDrawing drawing{};
    Scripted host;
    host.variable(L"VIEWSIZE", 340.0);
    Point3d(1, 2, 3).DrawMarker(4, true, -1);
    ExpectPoint({3, 2, 3}, host.lines().at(1).from);
    host.forget();
    Point3d(1, 2, 3).DrawMarker(4, true, 0);  // not negative
    ExpectPoint({1, 2, 3}, host.lines().at(1).from);
}

TEST(PointPrint, WritesTheTextAndCrossesTwoDiagonalsOfACube) {
    const TestDrawing drawing{};
    Scripted host;
    host.variable(L"VIEWSIZE", 240.0);
    const Point3d p(1, 2, 3);
    p.Print(6);
    EXPECT_EQ(L"(1.000000, 2.000000, 3.000000)", host.printed());
    const double h = 0.1;
    ExpectVectors({{{1 - h, 2 - h, 3 - h}, {1 + h, 2 + h, 3 + h}, 6},
                   {{1 - h, 2 + h, 3 - h}, {1 + h, 2 - h, 3 + h}, 6}},
                  host);
    EXPECT_TRUE(Entities(drawing).empty());
}

#if !defined(_WIN32)

TEST(PointPrint, ShowsTheTextAtItsPixelAndLeavesTheDrawingAlone) {
    const TestDrawing drawing{};
    Scripted host;
    ShowHalfUnitPixels(host);
    headless::ForgetTexts();
    Point3d(110, 60, 5).Print(6);
    ASSERT_EQ(1u, headless::Texts().size());
    const headless::TextCall text = headless::Texts()[0];
    EXPECT_EQ(L"(110.000000, 60.000000, 5.000000)", text.text);
    EXPECT_EQ(980, text.x);
    EXPECT_EQ(520, text.y);
    EXPECT_EQ(12, text.fontHeight);
    EXPECT_EQ(TRANSPARENT, text.mode);
    EXPECT_TRUE(Entities(drawing).empty());
    EXPECT_EQ(0u, headless::OpenDrawingObjects());
}

#endif

TEST(PointPrint, WithoutADrawingOnlyTheTextIsMissing) {
    Scripted host;
    Point3d(1, 2, 3).Print(6);
    EXPECT_EQ(L"(1.000000, 2.000000, 3.000000)", host.printed());
    EXPECT_EQ(2u, host.lines().size());
}

TEST(LinePrint, DrawsAndTellsBothEnds) {
    Scripted host;
    Line({1, 2, 3}, {4, 5, 6}).Print(6);
    EXPECT_EQ(L"Line:  (1.000000, 2.000000, 3.000000) - (4.000000, 5.000000, 6.000000).\n",
              host.printed());
    ASSERT_EQ(5u, host.lines().size());
    ExpectPoint({1, 2, 3}, host.lines()[0].from);
    ExpectPoint({4, 5, 6}, host.lines()[0].to);
    EXPECT_EQ(0.9, host.lines()[1].from.x);
    EXPECT_EQ(3.9, host.lines()[3].from.x);
}

// --- Circle.

TEST(CircleDraw, Runs21RoundsTheFirstWithoutLengthIntended) {
    Scripted host;
    const Circle circle({10, 20, 30}, 2);
    circle.Draw(5);
    ASSERT_EQ(21u, host.lines().size());
    ExpectPoint({12, 20, 30}, host.lines()[0].from);
    ExpectPoint({12, 20, 30}, host.lines()[0].to);
    for (std::size_t i = 1; i < 21; ++i) {
        SCOPED_TRACE(i);
        const Scripted::Line& chord = host.lines()[i];
        const double angle = std::atan(1.0) * 8.0 / 20.0 * static_cast<double>(i);
        EXPECT_NEAR(10 + 2 * std::cos(angle), chord.from.x, 1e-12);
        EXPECT_NEAR(20 + 2 * std::sin(angle), chord.from.y, 1e-12);
        // Each chord runs back to where the one before began.
        EXPECT_EQ(host.lines()[i - 1].from.x, chord.to.x);
        EXPECT_EQ(host.lines()[i - 1].from.y, chord.to.y);
        EXPECT_EQ(30.0, chord.from.z);
        EXPECT_EQ(5, chord.colour);
        EXPECT_EQ(0, chord.highlight);
    }
    EXPECT_NEAR(12.0, host.lines()[20].from.x, 1e-12);
    EXPECT_NEAR(20.0, host.lines()[20].from.y, 1e-12);
}

// --- Box.

TEST(BoxDraw, DrawsTheFourPlanEdgesAtHeightZero) {
    Scripted host;
    Box(1.0, 4.0, 2.0, 5.0, 3.0, 6.0).Draw(7);
    ExpectVectors({{{1, 2, 0}, {4, 2, 0}, 7},
                   {{4, 2, 0}, {4, 5, 0}, 7},
                   {{4, 5, 0}, {1, 5, 0}, 7},
                   {{1, 5, 0}, {1, 2, 0}, 7}},
                  host);
}

// --- What the host refuses.

TEST(ScreenOutput, RefusedVectorsAreSilent) {
    Scripted host;
    Line({1, 2, 3}, {4, 5, 6}).Draw(257);  // no such colour
    Line({std::nan(""), 2, 3}, {4, 5, 6}).Draw(1);
    EXPECT_TRUE(host.lines().empty());
    host::fault::arm("acedGrDraw", 1, RTERROR);
    Line({1, 2, 3}, {4, 5, 6}).DrawExtended(1, 1);
    ExpectVectors({{{1, 2, 3}, {4, 5, 6}, 1}}, host);
    EXPECT_EQ(L"", host.printed());
}

TEST(ScreenOutput, NoRealViewHeightIsRaised) {
    const TestDrawing drawing{};
    Scripted host;
    host.variable(L"VIEWSIZE", short{7});
    EXPECT_THROW(Point3d().DrawMarker(1, true, -1), TamExpInvalidArgs);
    EXPECT_NO_THROW(Point3d().DrawMarker(1, true, 1));
    EXPECT_NO_THROW(Point3d().DrawMarker(1, false, -1));
}

}  // namespace
}  // namespace TamLib
