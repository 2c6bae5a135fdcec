// The areas of hatches: below everything else, pale, bounded as the drawing says.
#include <gtest/gtest.h>

#include <cmath>

#include "tests/host/picture/Pictured.h"

namespace {

using namespace picture_test;

DrawingText framed(const std::string& hatch) {
    DrawingText drawing;
    drawing.entity("LINE|5 1|8 0|10 0.0|20 0.0|11 100.0|21 60.0");
    drawing.entity("HATCH|5 2F|100 AcDbEntity|8 0|62 3|100 AcDbHatch|" + hatch);
    return drawing;
}

const std::string head = "10 0.0|20 0.0|30 0.0|210 0.0|220 0.0|230 1.0|2 SOLID|70 1|71 0|";
const std::string tail = "|97 0|75 0|76 1|98 1|10 70.0|20 50.0";
const std::string square =
    "92 7|72 0|73 1|93 4|10 10.0|20 10.0|10 30.0|20 10.0|10 30.0|20 30.0|10 10.0|20 30.0";

double areaOf(const std::vector<Point>& ring) {
    double twice = 0;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const Point& a = ring[i];
        const Point& b = ring[(i + 1) % ring.size()];
        twice += a.first * b.second - b.first * a.second;
    }
    return std::fabs(twice) / 2;
}

TEST(Hatch, OfAPolylineIsItsArea) {
    const Pictured picture(framed(head + "91 1|" + square + tail));
    const Element& hatch = picture.svg.byId("h2F");
    EXPECT_TRUE(hatch.hasClass("hatch"));
    EXPECT_FALSE(hatch.hasClass("pattern"));
    EXPECT_EQ(hatch.get("data-handle"), "2F");
    EXPECT_NEAR(areaOf(picture.points(hatch)), 400, 0.1);
    EXPECT_TRUE(picture.svg.ofClass("note").empty());
}

TEST(Hatch, LiesBelowWhatStandsBeforeItInTheDrawing) {
    const Pictured picture(framed(head + "91 1|" + square + tail));
    const Element& drawing = picture.svg.onlyOfClass("drawing");
    ASSERT_EQ(drawing.children.size(), 2U);
    EXPECT_TRUE(drawing.children[0].hasClass("hatch"));
    EXPECT_TRUE(drawing.children[1].hasClass("line"));
}

TEST(Hatch, WithAPatternSaysSo) {
    const std::string lines = "10 0.0|20 0.0|30 0.0|2 ANSI31|70 0|71 0|";
    const Pictured picture(framed(lines + "91 1|" + square +
                                  "|97 0|75 0|76 1|52 0.0|41 1.0|77 0|78 1|53 45.0|43 0.0|44 0.0"
                                  "|45 -0.1|46 0.1|79 0|98 1|10 70.0|20 50.0"));
    EXPECT_TRUE(picture.svg.byId("h2F").hasClass("pattern"));
    EXPECT_NEAR(areaOf(picture.points("h2F")), 400, 0.1);
}

TEST(Hatch, OfArcsEllipsesAndSplinesFollowsThem) {
    // A half circle and its diameter, one edge given backwards.
    const std::string half =
        "91 1|92 1|93 2|72 2|10 50.0|20 30.0|40 10.0|50 0.0|51 180.0|73 1"
        "|72 1|10 60.0|20 30.0|11 40.0|21 30.0";
    Pictured picture(framed(head + half + tail));
    EXPECT_NEAR(areaOf(picture.points("h2F")), std::acos(-1.0) * 50, 0.3);
    // Clockwise: angles count the other way round, this is the lower half.
    picture =
        Pictured(framed(head + "91 1|92 1|93 2|72 2|10 50.0|20 30.0|40 10.0|50 0.0|51 180.0|73 0" +
                        "|72 1|10 40.0|20 30.0|11 60.0|21 30.0" + tail));
    for (const auto& [x, y] : picture.points("h2F")) EXPECT_LE(y, 30.01);
    EXPECT_NEAR(areaOf(picture.points("h2F")), std::acos(-1.0) * 50, 0.3);
    picture = Pictured(framed(
        head + "91 1|92 1|93 1|72 3|10 50.0|20 30.0|11 20.0|21 0.0|40 0.5|50 0.0|51 360.0|73 1" +
        tail));
    EXPECT_NEAR(areaOf(picture.points("h2F")), std::acos(-1.0) * 200, 0.5);
    // A straight spline and two lines.
    picture = Pictured(framed(
        head +
        "91 1|92 1|93 3|72 4|94 1|73 0|74 0|95 4|96 2|40 0.0|40 0.0|40 1.0|40 1.0|10 10.0|20 10.0"
        "|10 30.0|20 10.0|97 0|72 1|10 30.0|20 10.0|11 30.0|21 20.0|72 1|10 30.0|20 20.0|11 10.0"
        "|21 10.0" +
        tail));
    EXPECT_NEAR(areaOf(picture.points("h2F")), 100, 0.1);
}

TEST(Hatch, WithBulgesAndHolesKeepsBoth) {
    const std::string circle = "92 2|72 1|73 1|93 2|10 15.0|20 20.0|42 1.0|10 25.0|20 20.0|42 1.0";
    const Pictured picture(framed(head + "91 2|" + square + "|97 0|" + circle + tail));
    std::size_t rings = 0;
    for (const PathPart& part : parsePath(picture.svg.byId("h2F").get("d")))
        rings += part.letter == 'M' ? 1 : 0;
    EXPECT_EQ(rings, 2U);
    EXPECT_NE(picture.bytes.find("fill-rule:evenodd"), std::string::npos);
}

TEST(Hatch, InItsPlaneAndHigherUpIsSeenFromAbove) {
    std::string behind = head;
    behind.replace(behind.find("230 1.0"), 7, "230 -1.0");
    const Pictured picture(framed(behind + "91 1|" + square + tail));
    for (const auto& [x, y] : picture.points("h2F")) {
        EXPECT_LE(x, -9.99);
        EXPECT_GE(y, 9.99);
    }
}

TEST(Hatch, CountsForThePartThatIsShown) {
    DrawingText drawing;
    drawing.entity("HATCH|5 2F|100 AcDbEntity|8 0|100 AcDbHatch|" + head + "91 1|" + square + tail);
    const Pictured picture(drawing);
    const auto high = picture.onPaper(30 - picture.x, 30 - picture.y);
    EXPECT_GT(high.first, 100);
    EXPECT_LT(high.first, 290);
}

TEST(Hatch, InABlockLiesBelowTheOthersOfIt) {
    DrawingText drawing;
    drawing.block(
        "B", {"LINE|5 A1|8 0|10 0.0|20 0.0|11 40.0|21 40.0",
              "HATCH|5 A2|100 AcDbEntity|8 0|100 AcDbHatch|" + head + "91 1|" + square + tail});
    drawing.entity("INSERT|5 30|8 0|2 B|10 5.0|20 5.0");
    const Pictured picture(drawing);
    const Element& reference = picture.svg.byId("h30");
    ASSERT_EQ(reference.children.size(), 2U);
    EXPECT_TRUE(reference.children[0].hasClass("hatch"));
}

TEST(Hatch, FarLargerThanTheSheetIsCutRingByRing) {
    const std::string huge =
        "91 2|92 7|72 0|73 1|93 4|10 -1e12|20 -1e12|10 1e12|20 -1e12|10 1e12|20 1e12|10 -1e12"
        "|20 1e12|97 0|" +
        square;
    DrawingText drawing;
    for (int i = 0; i < 40; ++i)
        drawing.entity("LINE|8 0|10 " + std::to_string(i) + ".0|20 0.0|11 " + std::to_string(i) +
                       ".0|21 30.0");
    drawing.entity("HATCH|5 2F|100 AcDbEntity|8 0|100 AcDbHatch|" + head + huge + tail);
    const Pictured picture(drawing);
    std::vector<std::vector<Point>> rings;
    for (const PathPart& part : parsePath(picture.svg.byId("h2F").get("d"))) {
        if (part.letter == 'M') rings.emplace_back();
        if (part.letter != 'Z') rings.back().push_back(picture.world(part.points[0]));
    }
    ASSERT_EQ(rings.size(), 2U);
    EXPECT_NEAR(areaOf(rings[1]), 400, 0.1);
    for (const auto& [x, y] : rings[0]) EXPECT_LT(std::fabs(x) + std::fabs(y), 10000);
}

TEST(Hatch, WithoutARingIsReported) {
    for (const char* groups : {"91 0|75 0", "91 1|92 7|72 0|73 1|93 1|10 1.0|20 1.0|75 0",
                               "91 1|92 1|93 1|72 9|10 1.0|20 1.0|75 0",
                               "91 1|92 1|93 1|72 2|10 1.0|20 1.0|40 1e300|50 1e300|51 2.0|75 0",
                               "91 1|92 1|93 1|72 3|10 1.0|20 1.0|11 0.0|21 0.0|40 0.0|75 0"}) {
        const Pictured picture(framed(head + groups));
        EXPECT_EQ(picture.svg.onlyOfClass("note").text, "Not drawn: 1 HATCH.") << groups;
    }
}

}  // namespace
