// Line types, weights and widths of lines against what stands in the drawing.
#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "host/picture/Pen.h"
#include "tests/host/picture/Pictured.h"

namespace {

using namespace picture_test;
using host::picture::lineWidth;

// A unit is about 2.7 mm on paper.
DrawingText framed() {
    DrawingText drawing;
    drawing.table("LTYPE",
                  {"LTYPE|2 DASHED|70 0|3 |72 65|73 2|40 3.0|49 2.0|74 0|49 -1.0|74 0",
                   "LTYPE|2 DOTTED|70 0|3 |72 65|73 4|40 5.0|49 3.0|49 -1.0|49 0.0|49 -1.0",
                   "LTYPE|2 GAPFIRST|70 0|3 |72 65|73 3|40 5.0|49 -1.0|49 -1.0|49 2.0|49 1.0",
                   "LTYPE|2 TEXTED|70 0|3 |72 65|73 2|40 6.0|49 4.0|49 -2.0|74 2|75 0|340 0|46 "
                   "0.1|50 0.0|44 -0.1|45 -0.05|9 GAS",
                   "LTYPE|2 FINE|70 0|3 |72 65|73 2|40 0.1|49 0.05|49 -0.05",
                   "LTYPE|2 SOLID|70 0|3 |72 65|73 0|40 0.0"});
    drawing.table("LAYER",
                  {"LAYER|2 0|70 0|62 7|6 CONTINUOUS", "LAYER|2 dashed|70 0|62 7|6 DASHED|370 70"});
    drawing.entity("LINE|5 1|8 0|10 0.0|20 0.0|11 100.0|21 60.0");
    return drawing;
}

std::string line(const std::string& groups) {
    return "LINE|5 2F|8 0|" + groups + "|10 10.0|20 0.0|11 90.0|21 0.0";
}

std::vector<double> dashes(const Element& element) {
    std::istringstream text(element.get("stroke-dasharray"));
    std::vector<double> result;
    for (double value = 0; text >> value;) result.push_back(value);
    return result;
}

std::vector<double> dashesOf(const std::string& groups) {
    return dashes(Pictured(framed().entity(line(groups))).svg.byId("h2F"));
}

// In millimetres on paper.
double widthOf(const Pictured& picture, const Element& element) {
    const std::string own = element.get("stroke-width");
    return own.empty() ? lineWidth : std::stod(own) * picture.onPaper.a;
}

using Lengths = std::vector<double>;

TEST(LineType, OfTheEntityIsADashArrayWithFlatEnds) {
    const Pictured picture(framed().entity(line("6 Dashed")));
    EXPECT_EQ(dashes(picture.svg.byId("h2F")), (Lengths{2, 1}));
    EXPECT_EQ(picture.svg.byId("h2F").get("stroke-linecap"), "butt");
    EXPECT_FALSE(picture.svg.byId("h1").has("stroke-dasharray"));
}

TEST(LineType, IsScaledByTheDrawingAndTheEntity) {
    EXPECT_EQ(dashesOf("6 DASHED|48 2.5"), (Lengths{5, 2.5}));
    DrawingText drawing = framed().variable("$LTSCALE|40 2.0").entity(line("6 DASHED|48 2.5"));
    EXPECT_EQ(dashes(Pictured(drawing).svg.byId("h2F")), (Lengths{10, 5}));
    EXPECT_EQ(dashesOf("6 DASHED|48 0.0"), (Lengths{2, 1}));
}

TEST(LineType, DotsHaveALengthThatIsSeenAndTakeItFromTheirGap) {
    const Pictured picture(framed().entity(line("6 DOTTED")));
    const Lengths lengths = dashes(picture.svg.byId("h2F"));
    ASSERT_EQ(lengths.size(), 4U);
    EXPECT_NEAR(lengths[2] * picture.onPaper.a, 0.2, 1e-3);
    EXPECT_NEAR(lengths[2] + lengths[3], 1.0, 1e-4);
    EXPECT_EQ(lengths[0], 3);
}

TEST(LineType, GapsInFrontAndSeveralOfAKindAreJoined) {
    const Lengths lengths = dashesOf("6 GAPFIRST");
    ASSERT_EQ(lengths.size(), 4U);
    EXPECT_LT(lengths[0], 0.1);  // the dash of no length that the gap follows
    EXPECT_NEAR(lengths[0] + lengths[1], 2, 1e-4);
    EXPECT_EQ(lengths[2], 3);
    EXPECT_EQ(lengths[3], 0);
}

TEST(LineType, TextsBetweenDashesAreGaps) {
    EXPECT_EQ(dashesOf("6 TEXTED"), (Lengths{4, 2}));
}

TEST(LineType, TooFineUnknownAndContinuousOnesAreContinuous) {
    for (const char* name : {"FINE", "SOLID", "CONTINUOUS", "NOWHERE", "BYBLOCK"})
        EXPECT_TRUE(dashesOf(std::string("6 ") + name).empty()) << name;
}

// Renderers calculate with limited numbers.
TEST(LineType, AndWidthOutOfAllProportionAreBounded) {
    EXPECT_TRUE(dashesOf("6 DASHED|48 1e6").empty());
    EXPECT_TRUE(dashesOf("6 DASHED|48 1e308").empty());
    const Pictured picture(
        framed().entity("LWPOLYLINE|5 2F|8 0|90 2|70 0|43 1e90|10 10.0|20 10.0|10 30.0|20 10.0"));
    EXPECT_NEAR(widthOf(picture, picture.svg.byId("h2F")), 5000, 1);
}

TEST(LineType, ComesFromTheLayerOrTheBlockReferenceAndGrowsWithIt) {
    DrawingText drawing = framed();
    drawing.block("B", {"LINE|5 A1|8 0|6 BYBLOCK|10 0.0|20 0.0|11 20.0|21 0.0",
                        "LINE|5 A2|8 0|10 0.0|20 5.0|11 20.0|21 5.0",
                        "LINE|5 A3|8 0|6 CONTINUOUS|10 0.0|20 9.0|11 20.0|21 9.0"});
    drawing.entity("LINE|5 2F|8 dashed|10 0.0|20 30.0|11 50.0|21 30.0");
    drawing.entity("INSERT|5 30|8 dashed|6 DOTTED|2 B|10 5.0|20 5.0|41 2.0|42 2.0");
    const Pictured picture(drawing);
    EXPECT_EQ(dashes(picture.svg.byId("h2F")), (Lengths{2, 1}));
    const Element& reference = picture.svg.byId("h30");
    ASSERT_EQ(reference.children.size(), 3U);
    EXPECT_EQ(dashes(reference.children[0]).at(0), 6);
    EXPECT_EQ(dashes(reference.children[1]), (Lengths{4, 2}));
    EXPECT_TRUE(dashes(reference.children[2]).empty());
}

TEST(LineType, OfSolidsAndPointsIsNone) {
    DrawingText drawing = framed();
    drawing.entity("POINT|5 2F|8 dashed|10 10.0|20 20.0");
    drawing.entity("SOLID|5 30|8 dashed|10 10.0|20 10.0|11 20.0|21 10.0|12 10.0|22 20.0");
    const Pictured picture(drawing);
    EXPECT_FALSE(picture.svg.byId("h2F").has("stroke-dasharray"));
    EXPECT_FALSE(picture.svg.byId("h30").has("stroke-dasharray"));
}

// The picked line is emphasised as a whole.
TEST(LineType, OfThePickedLineIsNotShown) {
    const auto database = framed().entity(line("6 DASHED|370 200")).database();
    host::picture::Change change;
    change.line = idOf(*database, L"2F");
    const Pictured picture(*database, change);
    EXPECT_FALSE(picture.svg.byId("h2F").has("stroke-dasharray"));
    EXPECT_FALSE(picture.svg.byId("h2F").has("stroke-width"));
}

// Renderers draw each dash by itself.
TEST(LineType, MoreDashesThanARendererBearsAreDrawnContinuous) {
    DrawingText drawing = framed();
    for (int i = 0; i < 6000; ++i)
        drawing.entity("LINE|8 0|6 DASHED|10 0.0|20 " + std::to_string(i % 60) + ".0|11 100.0|21 " +
                       std::to_string(i % 59) + ".0");
    const Pictured picture(drawing);
    std::size_t dashed = 0, continuous = 0;
    for (const Element* element : picture.svg.ofClass("line"))
        ++(element->has("stroke-dasharray") ? dashed : continuous);
    EXPECT_EQ(dashed + continuous, 6001U);
    // 33 to 39 dashes each.
    EXPECT_GT(dashed, 5000U);
    EXPECT_LT(dashed, 6000U);
    for (int i = 0; i < 6000; ++i)
        drawing.entity("LINE|8 0|6 DASHED|10 0.0|20 1.0|11 100.0|21 2.0");
    std::size_t more = 0;
    const Pictured full(drawing);
    for (const Element* element : full.svg.ofClass("line"))
        more += element->has("stroke-dasharray") ? 1 : 0;
    EXPECT_LT(more, 6100U);
}

TEST(Weight, IsInProportionToTheStandardOneFromADotToTwoThirdsOfThePickedLine) {
    const auto width = [](const std::string& groups) {
        const Pictured picture(framed().entity(line(groups)));
        return widthOf(picture, picture.svg.byId("h2F"));
    };
    EXPECT_NEAR(width("62 7"), 0.18, 1e-4);
    EXPECT_NEAR(width("370 -3"), 0.18, 1e-4);
    EXPECT_NEAR(width("370 25"), 0.18, 1e-4);
    EXPECT_NEAR(width("370 50"), 0.36, 1e-4);
    EXPECT_NEAR(width("370 0"), 0.13, 1e-4);
    EXPECT_NEAR(width("370 211"), 0.6, 1e-4);
    EXPECT_NEAR(width("370 2147483647"), 0.6, 1e-4);
}

TEST(Weight, ComesFromTheLayerOrTheBlockReference) {
    DrawingText drawing = framed();
    drawing.block("B", {"LINE|5 A1|8 0|370 -2|10 0.0|20 0.0|11 20.0|21 0.0",
                        "LINE|5 A2|8 0|370 -1|10 0.0|20 5.0|11 20.0|21 5.0"});
    drawing.entity("LINE|5 2F|8 dashed|10 0.0|20 30.0|11 50.0|21 30.0");
    drawing.entity("INSERT|5 30|8 dashed|370 50|2 B|10 5.0|20 5.0");
    const Pictured picture(drawing);
    EXPECT_NEAR(widthOf(picture, picture.svg.byId("h2F")), 0.7 / 0.25 * 0.18, 1e-4);
    EXPECT_NEAR(widthOf(picture, picture.svg.byId("h30").children.at(0)), 0.36, 1e-4);
    EXPECT_NEAR(widthOf(picture, picture.svg.byId("h30").children.at(1)), 0.504, 1e-4);
}

TEST(Width, OfALightPolylineIsThatOfItsLine) {
    const std::string vertices = "10 10.0|20 10.0|10 30.0|20 10.0";
    const auto shown = [&](const std::string& groups) {
        const Pictured picture(framed().entity("LWPOLYLINE|5 2F|8 0|90 2|70 0|" + groups));
        const Element& element = picture.svg.byId("h2F");
        EXPECT_FALSE(element.has("fill"));
        EXPECT_EQ(element.get("stroke-linecap"), "butt");
        return element.get("stroke-width");
    };
    EXPECT_EQ(shown("43 2.5|" + vertices), "2.5");
    EXPECT_EQ(shown("10 10.0|20 10.0|40 3.0|41 3.0|10 30.0|20 10.0"), "3");
    // The widths at the vertices go before the constant one.
    EXPECT_EQ(shown("43 2.5|10 10.0|20 10.0|40 3.0|41 3.0|10 30.0|20 10.0"), "3");
}

TEST(Width, OfAnOldPolylineIsItsOwnWhereVerticesTellNone) {
    const std::string rest = "|10 0.0|20 0.0|30 0.0";
    DrawingText drawing = framed();
    drawing.entity("POLYLINE|5 2F|8 0|66 1|70 0|40 2.0|41 2.0" + rest);
    drawing.entity("VERTEX|5 30|8 0|10 10.0|20 10.0");
    drawing.entity("VERTEX|5 31|8 0|10 30.0|20 10.0");
    drawing.entity("SEQEND|5 32|8 0");
    drawing.entity("POLYLINE|5 33|8 0|66 1|70 0|40 2.0|41 2.0" + rest);
    drawing.entity("VERTEX|5 34|8 0|10 10.0|20 20.0|40 4.0|41 4.0");
    drawing.entity("VERTEX|5 35|8 0|10 30.0|20 20.0");
    drawing.entity("SEQEND|5 36|8 0");
    const Pictured picture(drawing);
    EXPECT_EQ(picture.svg.byId("h2F").get("stroke-width"), "2");
    EXPECT_EQ(picture.svg.byId("h33").get("stroke-width"), "4");
}

TEST(Width, BelowThatOfTheLineOnPaperMakesNoDifference) {
    const Pictured picture(
        framed().entity("LWPOLYLINE|5 2F|8 0|90 2|70 0|43 0.01|10 10.0|20 10.0|10 30.0|20 10.0"));
    EXPECT_FALSE(picture.svg.byId("h2F").has("stroke-width"));
}

TEST(Width, ThatChangesIsAnAreaOnBothSidesOfTheLine) {
    const Pictured picture(
        framed().entity("LWPOLYLINE|5 2F|8 0|90 3|70 0|10 10.0|20 10.0|40 4.0|41 0.0"
                        "|10 30.0|20 10.0|40 2.0|41 2.0|10 30.0|20 40.0"));
    const Element& area = picture.svg.byId("h2F");
    EXPECT_EQ(area.get("fill"), "currentColor");
    const auto points = picture.points(area);
    ASSERT_EQ(points.size(), 7U);
    const Point wanted[] = {{10, 12}, {30, 10}, {10, 8}, {29, 10}, {29, 40}, {31, 40}, {31, 10}};
    for (std::size_t i = 0; i < 7; ++i) {
        EXPECT_NEAR(points[i].first, wanted[i].first, 2e-3) << i;
        EXPECT_NEAR(points[i].second, wanted[i].second, 2e-3) << i;
    }
}

TEST(Width, ThatChangesAlongAnArcFollowsIt) {
    const Pictured picture(framed().entity(
        "LWPOLYLINE|5 2F|8 0|90 2|70 0|10 30.0|20 10.0|42 1.0|40 2.0|41 6.0|10 50.0|20 10.0"));
    double least = 1e9, most = 0;
    for (const auto& [x, y] : picture.points("h2F")) {
        least = std::min(least, std::hypot(x - 40, y - 10));
        most = std::max(most, std::hypot(x - 40, y - 10));
    }
    EXPECT_NEAR(least, 7, 0.01);
    EXPECT_NEAR(most, 13, 0.01);
}

TEST(Width, GrowsWithTheBlockReferenceAndStaysInMirroredPlanes) {
    DrawingText drawing = framed();
    drawing.block("B", {"LWPOLYLINE|5 A1|8 0|90 2|70 0|43 1.0|10 0.0|20 0.0|10 5.0|20 0.0"});
    drawing.entity("INSERT|5 30|8 0|2 B|10 5.0|20 5.0|41 -3.0|42 3.0");
    EXPECT_EQ(Pictured(drawing).svg.byId("h30").children.at(0).get("stroke-width"), "3");
}

TEST(Width, ThatIsNoNumberOrBelowNothingIsNone) {
    for (const char* width : {"-3.0", "1e400"}) {
        DrawingText drawing = framed();
        drawing.entity("POLYLINE|5 2F|8 0|66 1|70 0|40 " + std::string(width) + "|41 0.0");
        drawing.entity("VERTEX|5 30|8 0|10 10.0|20 10.0");
        drawing.entity("VERTEX|5 31|8 0|10 30.0|20 10.0");
        drawing.entity("SEQEND|5 32|8 0");
        EXPECT_FALSE(Pictured(drawing).svg.byId("h2F").has("stroke-width")) << width;
    }
}

TEST(Mline, ShowsItsLinesWhereTheirJointsAre) {
    DrawingText drawing = framed();
    drawing.entity(
        "MLINE|5 2F|8 0|2 STANDARD|40 2.0|70 0|71 1|72 3|73 2|10 10.0|20 10.0|30 0.0"
        "|11 10.0|21 10.0|31 0.0|12 1.0|22 0.0|32 0.0|13 0.0|23 1.0|33 0.0"
        "|74 2|41 0.0|41 0.0|75 0|74 2|41 -2.0|41 0.0|75 0"
        "|11 30.0|21 10.0|31 0.0|12 0.0|22 1.0|32 0.0|13 -0.70710678|23 0.70710678|33 0.0"
        "|74 2|41 0.0|41 0.0|75 0|74 2|41 -2.8284271|41 0.0|75 0"
        "|11 30.0|21 40.0|31 0.0|12 0.0|22 1.0|32 0.0|13 -1.0|23 0.0|33 0.0"
        "|74 2|41 0.0|41 0.0|75 0|74 2|41 -2.0|41 0.0|75 0");
    const Pictured picture(drawing);
    EXPECT_TRUE(picture.svg.byId("h2F").hasClass("mline"));
    const auto points = picture.points("h2F");
    const Point wanted[] = {{10, 10}, {30, 10}, {30, 40}, {10, 8}, {32, 8}, {32, 40}};
    ASSERT_EQ(points.size(), 6U);
    for (std::size_t i = 0; i < 6; ++i) {
        EXPECT_NEAR(points[i].first, wanted[i].first, 2e-3) << i;
        EXPECT_NEAR(points[i].second, wanted[i].second, 2e-3) << i;
    }
}

// They count for the part that is shown.
TEST(Mline, WithoutJointsIsTheLineThroughItsVerticesAndClosesWhereItSaysSo) {
    DrawingText drawing;
    drawing.entity(
        "MLINE|5 2F|8 0|2 STANDARD|40 2.0|71 3|10 0.0|20 0.0|11 0.0|21 0.0|11 200.0"
        "|21 0.0|11 200.0|21 90.0");
    const Pictured picture(drawing);
    EXPECT_EQ(parsePath(picture.svg.byId("h2F").get("d")).back().letter, 'Z');
    const auto corner = picture.onPaper(200 - picture.x, 90 - picture.y);
    EXPECT_GT(corner.first, 200);
    EXPECT_LT(corner.first, 297 - 8);
}

}  // namespace
