// Which part of a drawing a picture shows, where it comes to lie, and how lines are cut to it.
#include "host/picture/Sheet.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "host/picture/Cut.h"
#include "tests/host/picture/SvgReader.h"

namespace {

using host::picture::chooseView;
using host::picture::Path;
using host::picture::PlanBox;
using host::picture::Sheet;

PlanBox box(double x1, double y1, double x2, double y2) {
    return {{x1, y1}, {x2, y2}};
}

TEST(View, HoldsAllContentWithAMarginOfThreePerCent) {
    const PlanBox view = chooseView({box(0, 0, 50, 20), box(50, 20, 100, 60)}, {}, {});
    EXPECT_DOUBLE_EQ(view.min.x, -3);
    EXPECT_DOUBLE_EQ(view.max.x, 103);
    EXPECT_DOUBLE_EQ(view.min.y, -3);
    EXPECT_DOUBLE_EQ(view.max.y, 63);
}

TEST(View, HoldsTheChangeAloneWhenItTakesLessThanAnEighthBothWays) {
    const std::vector<PlanBox> content{box(0, 0, 800, 800)};
    const PlanBox whole = chooseView(content, {box(0, 0, 100, 10)}, {});  // an eighth of the width
    EXPECT_DOUBLE_EQ(whole.max.x, 824);
    const PlanBox part = chooseView(content, {}, box(0, 0, 99, 10));
    EXPECT_DOUBLE_EQ(part.max.x, 99 + 99 * 0.15);
    EXPECT_DOUBLE_EQ(part.min.y, -99 * 0.15);
}

TEST(View, LeavesFarContentAsideAndKeepsTheLinesWhereverTheyAre) {
    std::vector<PlanBox> content;
    for (int i = 0; i < 100; ++i) content.push_back(box(i, i, i + 1, i + 1));
    content.push_back(box(1e6, 1e6, 1e6 + 1, 1e6 + 1));
    EXPECT_LT(chooseView(content, {}, {}).max.x, 110);
    const PlanBox away = box(1e6, 1e6, 1e6 + 1, 1e6 + 1);
    EXPECT_GT(chooseView(content, {}, away).max.x, 1e6);
}

TEST(View, LeavesAChangeAsideThatLiesFarFromAllOthers) {
    std::vector<PlanBox> content, turned;
    for (int i = 0; i < 30; ++i) turned.push_back(box(i, i, i + 1, i + 1));
    turned.push_back(box(1e6, 1e6, 1e6 + 1, 1e6 + 1));
    content = turned;
    EXPECT_LT(chooseView(content, turned, box(0, 0, 30, 30)).max.x, 40);
}

// A house on a lot that is ten times as large.
TEST(View, HoldsContentThatIsNotFarOff) {
    std::vector<PlanBox> content;
    for (int i = 0; i < 300; ++i) content.push_back(box(i % 20, i / 20, i % 20 + 1, i / 20 + 1));
    content.push_back(box(-90, -90, 110, 110));
    EXPECT_LT(chooseView(content, {}, {}).min.x, -90);
    EXPECT_GT(chooseView(content, {}, {}).max.y, 110);
    content.push_back(box(5000, 0, 5001, 1));
    EXPECT_LT(chooseView(content, {}, {}).max.x, 200);
}

TEST(View, IsEmptyWithoutContent) {
    EXPECT_TRUE(chooseView({}, {}, {}).empty());
}

TEST(View, ManyInOnePlaceDoNotHideTheOthers) {
    std::vector<PlanBox> content(100, box(5, 5, 5, 5));
    content.push_back(box(100, 100, 101, 101));
    EXPECT_GT(chooseView(content, {}, {}).max.x, 100);
}

TEST(Sheet, IsUprightForUprightViews) {
    EXPECT_GT(Sheet(box(0, 0, 100, 50)).width(), Sheet(box(0, 0, 100, 50)).height());
    EXPECT_LT(Sheet(box(0, 0, 50, 100)).width(), Sheet(box(0, 0, 50, 100)).height());
    EXPECT_EQ(Sheet(box(0, 0, 50, 100)).height(), 297);
}

TEST(Sheet, PutsTheMiddleOfTheViewIntoTheMiddleOfTheFrame) {
    for (const PlanBox& view : {box(25496000, 6672000, 25496334, 6672200), box(-1, -2, 3, 4),
                                box(1e9, 1e9, 1e9 + 5e6, 1e9 + 1), box(0, 0, 1e-6, 1e-6)}) {
        const Sheet sheet(view);
        const auto map = picture_test::parseTransform(sheet.transform());
        const double x = std::stod(sheet.x((view.min.x + view.max.x) / 2));
        const double y = std::stod(sheet.y((view.min.y + view.max.y) / 2));
        const auto [px, py] = map(x, y);
        EXPECT_NEAR(px, (sheet.frame().min.x + sheet.frame().max.x) / 2, 5e-3);
        EXPECT_NEAR(py, (sheet.frame().min.y + sheet.frame().max.y) / 2, 5e-3);
        EXPECT_TRUE(sheet.shown().contains(view.min));
        EXPECT_TRUE(sheet.shown().contains(view.max));
    }
}

TEST(Sheet, TakesARoundOrigin) {
    const Sheet sheet(box(25496000, 6672000, 25496334, 6672200));
    EXPECT_EQ(sheet.origin().x, 25496000);
    EXPECT_EQ(sheet.origin().y, 6671000);  // the frame reaches below 6 672 000
    EXPECT_EQ(sheet.x(25496000.125), "0.125");
    EXPECT_EQ(sheet.y(6672000.125), "1000.125");
}

// Against brute force: points of the line that lie inside have to be on what is left, and what is
// left has to be on the line and inside.
TEST(Cut, LineKeepsExactlyWhatIsInside) {
    const PlanBox frame = box(-10, -5, 10, 5);
    std::mt19937_64 random(42);
    std::uniform_real_distribution<double> any(-30, 30);
    int kept = 0;
    for (int i = 0; i < 2000; ++i) {
        const AcGePoint3d a(any(random), any(random), 0), b(any(random), any(random), 0);
        Path path;
        path.moveTo(a);
        path.lineTo(b);
        const Path rest = host::picture::cutTo(frame, path);
        double first = 2, last = -1;
        for (int k = 0; k <= 1000; ++k) {
            const double t = k / 1000.0;
            const double x = a.x + (b.x - a.x) * t, y = a.y + (b.y - a.y) * t;
            if (!frame.contains(host::picture::PlanPoint{x, y})) continue;
            first = std::min(first, t);
            last = std::max(last, t);
        }
        if (rest.empty()) {
            EXPECT_LE(last - first, 0.002);
            continue;
        }
        ++kept;
        ASSERT_EQ(rest.points().size(), 2U);
        const double length = a.distanceTo(b);
        if (last < first) continue;  // it only touches a corner
        EXPECT_NEAR(rest.points()[0].distanceTo(a) / length, first, 0.0011);
        EXPECT_NEAR(rest.points()[1].distanceTo(a) / length, last, 0.0011);
    }
    EXPECT_GT(kept, 200);
}

TEST(Cut, CurveKeepsItsCourseInsideTheFrame) {
    const PlanBox frame = box(-10, -10, 10, 10);
    Path path;
    path.moveTo({-1000, 0, 0});
    path.curveTo({-300, 2, 0}, {300, -2, 0}, {1000, 0, 0});
    const Path rest = host::picture::cutTo(frame, path);
    ASSERT_FALSE(rest.empty());
    for (const AcGePoint3d& point : rest.points()) EXPECT_LT(std::fabs(point.x), 40);
    // It begins left of the frame and ends right of it, so nothing of the inside is missing.
    EXPECT_LT(rest.points().front().x, -10);
    EXPECT_GT(rest.points().back().x, 10);
    EXPECT_EQ(rest.steps().front(), Path::Step::move);
    for (std::size_t i = 1; i < rest.steps().size(); ++i)
        EXPECT_EQ(rest.steps()[i], Path::Step::curve);
}

TEST(Cut, PolygonAroundTheFrameBecomesTheFrame) {
    Path path;
    path.add({{-100, -100, 0}, {100, -100, 0}, {100, 100, 0}, {-100, 100, 0}});
    const Path rest = host::picture::polygonCutTo(box(-1, -2, 3, 4), path);
    ASSERT_EQ(rest.points().size(), 4U);
    for (const AcGePoint3d& point : rest.points()) {
        EXPECT_TRUE(point.x == -1 || point.x == 3);
        EXPECT_TRUE(point.y == -2 || point.y == 4);
    }
    EXPECT_TRUE(host::picture::polygonCutTo(box(200, 200, 300, 300), path).empty());
}

}  // namespace
