// The geometry of pictures: what stands in the SVG against what stands in the drawing.
#include "host/picture/Picture.h"

#include <dbents.h>
#include <gtest/gtest.h>

#include <cmath>

#include "tests/host/picture/Pictured.h"
#include "tests/host/support/LedgerListener.h"

namespace {

using namespace picture_test;
using host::picture::Change;

constexpr double pi = 3.14159265358979323846;
constexpr double east = 25496000, north = 6672000;

void expectNear(const Point& a, double px, double py, double tolerance = 2e-3) {
    EXPECT_NEAR(a.first, px, tolerance);
    EXPECT_NEAR(a.second, py, tolerance);
}

// A drawing of a known extent, so that a unit is about 2.7 mm on paper, with one more record.
DrawingText framed(const std::string& record) {
    DrawingText drawing;
    drawing.layer("0").layer("roads", 0, 1);
    drawing.entity("LINE|5 1|8 0|10 0.0|20 0.0|11 100.0|21 60.0").entity(record);
    return drawing;
}

TEST(Picture, LineEndsAtItsPointsFarFromTheOrigin) {
    DrawingText drawing;
    drawing.entity("LINE|5 2F|8 0|10 25496010.125|20 6672020.25|11 25496110.5|21 6672080.75");
    const Pictured picture(drawing);
    const auto points = picture.points("h2F");
    ASSERT_EQ(points.size(), 2U);
    expectNear(points[0], 25496010.125, 6672020.25);
    expectNear(points[1], 25496110.5, 6672080.75);
    EXPECT_EQ(picture.x, east);
    EXPECT_EQ(picture.y, north);
}

TEST(Picture, IsNorthUpAndFillsItsFrame) {
    DrawingText drawing;
    drawing.entity("LINE|5 2F|8 0|10 0.0|20 0.0|11 100.0|21 60.0");
    const Pictured picture(drawing);
    const auto low = picture.onPaper(0 - picture.x, 0 - picture.y);
    const auto high = picture.onPaper(100 - picture.x, 60 - picture.y);
    EXPECT_LT(low.first, high.first);
    EXPECT_GT(low.second, high.second);  // paper counts downwards
    EXPECT_GE(low.first, 8);
    EXPECT_LE(high.first, 297 - 8);
    EXPECT_GE(high.second, 8);
    EXPECT_LE(low.second, 210 - 8);
    EXPECT_GT(high.first - low.first, 200);
    EXPECT_EQ(picture.onPaper.a, -picture.onPaper.d);
    EXPECT_EQ(picture.onPaper.b, 0);
}

TEST(Picture, PolylineGoesThroughItsVerticesAndBulgesAlongItsArcs) {
    const Pictured picture(framed(
        "LWPOLYLINE|5 2F|8 0|90 3|70 1|10 10.0|20 10.0|42 1.0|10 30.0|20 10.0|10 30.0|20 40.0"));
    const auto parts = parsePath(picture.svg.byId("h2F").get("d"));
    ASSERT_GE(parts.size(), 5U);
    // A half circle below the first segment, about (20, 10).
    std::size_t curves = 0;
    for (const PathPart& part : parts) {
        if (part.letter != 'C') continue;
        ++curves;
        const auto [px, py] = picture.world(part.points.back());
        EXPECT_NEAR(std::hypot(px - 20, py - 10), 10, 5e-3);
        EXPECT_LE(py, 10 + 1e-6);
    }
    EXPECT_GE(curves, 2U);
    const auto points = picture.points("h2F");
    expectNear(points.front(), 10, 10);
    expectNear(points[curves], 30, 10);
    expectNear(points[curves + 1], 30, 40);
    EXPECT_EQ(parts.back().letter, 'Z');
}

TEST(Picture, CircleAndArcKeepTheirRadiusInTheirPlane) {
    DrawingText drawing = framed("CIRCLE|5 2F|8 0|10 50.0|20 30.0|40 20.0");
    // Seen from behind: x runs to the left.
    drawing.entity("ARC|5 30|8 0|10 -50.0|20 30.0|40 10.0|50 0.0|51 90.0|210 0.0|220 0.0|230 -1.0");
    const Pictured picture(drawing);
    for (const auto& [px, py] : picture.points("h2F"))
        EXPECT_NEAR(std::hypot(px - 50, py - 30), 20, 5e-3);
    const auto arc = picture.points("h30");
    expectNear(arc.front(), 40, 30);
    expectNear(arc.back(), 50, 40);
}

TEST(Picture, TextStandsAtItsPointTurnedByItsRotation) {
    const Pictured picture(framed("TEXT|5 2F|8 0|10 20.0|20 30.0|40 2.5|1 Name|50 33.0|41 0.8"));
    const auto text = picture.letters("h2F");
    expectNear(text.at, 20, 30);
    expectNear(text.right, 2.5 * 0.8 * std::cos(33 * pi / 180), 2.5 * 0.8 * std::sin(33 * pi / 180),
               1e-4);
    expectNear(text.up, -2.5 * std::sin(33 * pi / 180), 2.5 * std::cos(33 * pi / 180), 1e-4);
    EXPECT_EQ(text.y, 0);
    EXPECT_EQ(picture.svg.byId("h2F").allText(), "Name");
    EXPECT_TRUE(picture.svg.byId("h2F").hasClass("text"));
}

struct Justified {
    int horizontal, vertical;
    double across, rise;  // in widths of the text, and in heights
};

class Justification : public testing::TestWithParam<Justified> {};

TEST_P(Justification, HangsOnTheAlignmentPoint) {
    const auto& [horizontal, vertical, across, rise] = GetParam();
    // Stretched letters, whose beginning is told.
    const Pictured picture(framed("TEXT|5 2F|8 0|10 1.0|20 1.0|40 2.0|41 2.0|1 Name|72 " +
                                  std::to_string(horizontal) + "|11 40.0|21 30.0|73 " +
                                  std::to_string(vertical)));
    const auto text = picture.letters("h2F");
    expectNear(text.at, 40, 30);
    EXPECT_EQ(text.anchor, "");
    const double width = 0.748 + 0.613 + 0.974 + 0.615;  // N, a, m, e in DejaVu Sans
    EXPECT_NEAR(text.x, -across * width, 1e-4);
    EXPECT_NEAR(-text.y, rise * 0.729, 1e-4);
}

INSTANTIATE_TEST_SUITE_P(All, Justification,
                         testing::Values(Justified{1, 0, 0.5, 0}, Justified{2, 0, 1, 0},
                                         Justified{4, 0, 0.5, -0.5}, Justified{0, 1, 0, 1.0 / 3},
                                         Justified{0, 2, 0, -0.5}, Justified{0, 3, 0, -1},
                                         Justified{1, 2, 0.5, -0.5}, Justified{2, 3, 1, -1}));

TEST(Picture, LettersThatKeepTheirShapeAreJustifiedByTheRenderer) {
    for (const auto& [group, anchor] : {std::pair("1", "middle"), {"2", "end"}}) {
        const Pictured picture(
            framed(std::string("TEXT|5 2F|8 0|40 2.0|1 Name|72 ") + group + "|11 40.0|21 30.0"));
        EXPECT_EQ(picture.letters("h2F").anchor, anchor);
        EXPECT_EQ(picture.letters("h2F").x, 0);
    }
}

TEST(Picture, FittedTextKeepsItsHeightAndAlignedTextItsShape) {
    DrawingText drawing =
        framed("TEXT|5 2F|8 0|10 10.0|20 10.0|40 2.0|1 Name|72 5|11 50.0|21 40.0");
    drawing.entity("TEXT|5 30|8 0|10 10.0|20 10.0|40 2.0|1 Name|72 3|11 50.0|21 40.0");
    const Pictured picture(drawing);
    const double width = (0.748 + 0.613 + 0.974 + 0.615) / 0.729;  // in heights
    const auto fitted = picture.letters("h2F");
    expectNear(fitted.at, 10, 10);
    EXPECT_NEAR(std::hypot(fitted.right.first, fitted.right.second) * width, 50, 1e-3);
    EXPECT_NEAR(std::hypot(fitted.up.first, fitted.up.second), 2, 1e-4);
    const auto aligned = picture.letters("h30");
    EXPECT_NEAR(std::hypot(aligned.right.first, aligned.right.second) * width, 50, 1e-3);
    EXPECT_NEAR(std::hypot(aligned.up.first, aligned.up.second) * width, 50, 1e-3);
    EXPECT_NEAR(std::atan2(aligned.right.second, aligned.right.first), std::atan2(30, 40), 1e-6);
}

TEST(Picture, MirroredSlantedAndExtrudedTextsLieAsTheirGroupsSay) {
    DrawingText drawing = framed("TEXT|5 2F|8 0|10 20.0|20 30.0|40 2.0|1 Name|71 2");
    drawing.entity("TEXT|5 30|8 0|10 20.0|20 40.0|40 2.0|1 Name|71 4");
    drawing.entity("TEXT|5 31|8 0|10 20.0|20 50.0|40 2.0|1 Name|51 15.0");
    drawing.entity("TEXT|5 32|8 0|10 -20.0|20 20.0|40 2.0|1 Name|50 30.0|210 0.0|220 0.0|230 -1.0");
    const Pictured picture(drawing);
    expectNear(picture.letters("h2F").right, -2, 0, 1e-4);
    expectNear(picture.letters("h2F").up, 0, 2, 1e-4);
    expectNear(picture.letters("h30").right, 2, 0, 1e-4);
    expectNear(picture.letters("h30").up, 0, -2, 1e-4);
    expectNear(picture.letters("h31").right, 2, 0, 1e-4);
    expectNear(picture.letters("h31").up, 2 * std::tan(15 * pi / 180), 2, 1e-4);
    const auto behind = picture.letters("h32");
    expectNear(behind.at, 20, 20);
    expectNear(behind.right, -2 * std::cos(pi / 6), 2 * std::sin(pi / 6), 1e-4);
    expectNear(behind.up, 2 * std::sin(pi / 6), 2 * std::cos(pi / 6), 1e-4);
}

// As the program that drawings come from turns them: its records say 194 degrees for 14.
TEST(Picture, BackwardTextBetweenTwoPointsStaysBetweenThem) {
    const Pictured picture(
        framed("TEXT|5 2F|8 0|10 20.0|20 30.0|40 2.0|1 Name|71 2|72 5|11 60.0|21 30.0"));
    const auto text = picture.letters("h2F");
    expectNear(text.at, 20, 30);
    EXPECT_GT(text.right.first, 0);
    EXPECT_LT(text.up.second, 0);
}

TEST(Picture, MTextStandsInLinesByItsAttachment) {
    const Pictured picture(
        framed("MTEXT|5 2F|8 0|10 40.0|20 30.0|40 3.0|41 0.0|71 5|1 {\\fArial;one}\\Ptwo \\S1/2;"
               "|11 0.0|21 1.0"));
    const Element& text = picture.svg.byId("h2F");
    const auto letters = picture.letters(text);
    expectNear(letters.at, 40, 30);
    expectNear(letters.right, 0, 3, 1e-4);
    EXPECT_EQ(letters.anchor, "middle");
    const auto lines = text.all([](const Element& element) { return element.name == "tspan"; });
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0]->text, "one");
    EXPECT_EQ(lines[1]->text, "two 1/2");
    // The middle of all: 1 + 5/3 heights.
    const double first = std::stod(lines[0]->get("y")) / 10 / 0.729;
    const double second = std::stod(lines[1]->get("y")) / 10 / 0.729;
    EXPECT_NEAR(second - first, 5.0 / 3, 1e-4);
    EXPECT_NEAR(first - 1 + second, 0, 1e-4);
}

TEST(Picture, ColorsComeFromTheEntityTheLayerOrTheBlockReference) {
    DrawingText drawing("AC1018");
    drawing.layer("0").layer("roads", 0, 1).layer("pipes", 0, 4);
    drawing.block("SYMBOL", {"LINE|5 A1|8 0|10 0.0|20 0.0|11 1.0|21 0.0",
                             "LINE|5 A2|8 0|62 0|10 0.0|20 0.0|11 0.0|21 1.0",
                             "LINE|5 A3|8 pipes|10 0.0|20 0.0|11 1.0|21 1.0"});
    drawing.entity("LINE|5 2F|8 roads|10 0.0|20 0.0|11 100.0|21 60.0");
    drawing.entity("LINE|5 30|8 roads|62 3|10 0.0|20 0.0|11 100.0|21 50.0");
    drawing.entity("LINE|5 31|8 roads|62 7|10 0.0|20 0.0|11 100.0|21 40.0");
    drawing.entity(
        "LINE|5 32|100 AcDbEntity|8 roads|62 3|420 1193046|100 AcDbLine|10 0.0|20 0.0"
        "|11 100.0|21 30.0");
    drawing.entity("INSERT|5 33|8 roads|62 30|2 SYMBOL|10 50.0|20 20.0");
    const Pictured picture(drawing);
    EXPECT_EQ(picture.svg.byId("h2F").get("color"), "#ff0000");
    EXPECT_EQ(picture.svg.byId("h2F").get("data-layer"), "roads");
    EXPECT_EQ(picture.svg.byId("h30").get("color"), "#00b700");  // darkened to be read
    EXPECT_EQ(picture.svg.byId("h31").get("color"), "#000000");
    EXPECT_EQ(picture.svg.byId("h32").get("color"), "#123456");
    const Element& symbol = picture.svg.byId("h33");
    EXPECT_EQ(symbol.get("color"), "#f87b00");
    ASSERT_EQ(symbol.children.size(), 3U);
    EXPECT_EQ(symbol.children[0].get("color"), "#ff0000");  // layer 0 is that of the reference
    EXPECT_FALSE(symbol.children[1].has("color"));          // by block: the group's own
    EXPECT_EQ(symbol.children[2].get("color"), "#00aeae");
    EXPECT_EQ(symbol.children[2].get("data-layer"), "pipes");
    EXPECT_EQ(symbol.children[2].get("data-handle"), "A3");
}

TEST(Picture, WhatIsOffFrozenOrInvisibleIsNotDrawn) {
    DrawingText drawing;
    drawing.layer("off", 0, -1).layer("frozen", 1).layer("locked", 4);
    for (const auto& [handle, groups] :
         {std::pair("30", "8 off"), {"31", "8 frozen"}, {"32", "8 0|60 1"}, {"33", "8 locked"}})
        drawing.entity(std::string("LINE|5 ") + handle + "|" + groups +
                       "|10 0.0|20 0.0|11 100.0|21 60.0");
    const Pictured picture(drawing);
    EXPECT_EQ(picture.svg.ofClass("line").size(), 1U);
    EXPECT_NO_THROW(picture.svg.byId("h33"));
}

TEST(Picture, BlockReferencesPlaceScaleTurnRepeatAndNest) {
    DrawingText drawing =
        framed("INSERT|5 2F|8 0|66 1|2 OUTER|10 20.0|20 10.0|41 2.0|42 3.0|50 90.0|70 2|44 10.0");
    drawing.entity("ATTRIB|5 41|8 0|10 70.0|20 30.0|40 2.0|1 value|2 TAG|70 0");
    drawing.entity("ATTRIB|5 42|8 0|10 70.0|20 40.0|40 2.0|1 hidden|2 TAG|70 1");
    drawing.entity("SEQEND|5 43|8 0");
    drawing.block("INNER", {"LINE|5 A1|8 0|10 0.0|20 0.0|11 1.0|21 0.0"});
    drawing.block("OUTER",
                  {"INSERT|5 A2|8 0|2 INNER|10 1.0|20 0.0",
                   "ATTDEF|5 A3|8 0|10 0.0|20 0.0|40 1.0|1 default|2 TAG|3 prompt|70 0"},
                  "70 0|10 1.0|20 0.0|30 0.0");
    const Pictured picture(drawing);
    const Element& reference = picture.svg.byId("h2F");
    const auto lines = reference.ofClass("line");
    ASSERT_EQ(lines.size(), 2U);
    // (2, 0) of the block, one from its origin, twice as long, turned by a right angle.
    expectNear(picture.points(*lines[0])[0], 20, 10);
    expectNear(picture.points(*lines[0])[1], 20, 12);
    // The second column lies along the turned x axis.
    expectNear(picture.points(*lines[1])[0], 20, 20);
    const auto texts = reference.all([](const Element& e) { return e.name == "text"; });
    ASSERT_EQ(texts.size(), 1U);
    EXPECT_EQ(texts[0]->text, "value");
    expectNear(picture.letters(*texts[0]).at, 70, 30);
    EXPECT_TRUE(texts[0]->hasClass("attrib"));
}

TEST(Picture, SolidsAreFilledFacesKeepTheirHiddenEdgesToThemselves) {
    DrawingText drawing =
        framed("SOLID|5 2F|8 0|10 10.0|20 10.0|11 20.0|21 10.0|12 10.0|22 20.0|13 20.0|23 20.0");
    drawing.entity(
        "3DFACE|5 30|8 0|10 40.0|20 10.0|11 50.0|21 10.0|12 50.0|22 20.0|13 40.0|23 20.0"
        "|70 2");
    const Pictured picture(drawing);
    const auto solid = picture.points("h2F");
    ASSERT_EQ(solid.size(), 5U);  // round the four corners and back
    expectNear(solid[2], 20, 20);
    expectNear(solid[3], 10, 20);
    const auto parts = parsePath(picture.svg.byId("h30").get("d"));
    std::size_t strokes = 0;
    for (const PathPart& part : parts) strokes += part.letter == 'L' ? 1 : 0;
    EXPECT_EQ(strokes, 3U);
    EXPECT_TRUE(picture.svg.byId("h30").hasClass("face"));
}

TEST(Picture, PointIsADot) {
    const Pictured picture(framed("POINT|5 2F|8 0|10 10.0|20 20.0"));
    expectNear(picture.points("h2F").front(), 10, 20);
    EXPECT_TRUE(picture.svg.byId("h2F").has("stroke-width"));
}

TEST(Picture, AttributeDefinitionShowsItsTag) {
    const Pictured picture(
        framed("ATTDEF|5 2F|8 0|10 10.0|20 20.0|40 2.0|1 default|2 NUMBER|3 prompt|70 0"));
    EXPECT_EQ(picture.svg.byId("h2F").allText(), "NUMBER");
}

TEST(Picture, UnderlinedLettersStandInASpanOfTheirOwn) {
    const Pictured picture(framed("TEXT|5 2F|8 0|10 20.0|20 30.0|40 2.0|1 a %%ub%%u 45%%d"));
    const Element& text = picture.svg.byId("h2F");
    EXPECT_EQ(text.children.size(), 1U);
    EXPECT_EQ(text.children[0].get("text-decoration"), "underline");
    EXPECT_EQ(text.children[0].text, "b");
    EXPECT_EQ(text.text, "a  45\u00B0");
}

TEST(Picture, SameDrawingGivesTheSameBytes) {
    const DrawingText drawing = framed("CIRCLE|5 2F|8 0|10 50.0|20 30.0|40 20.0");
    EXPECT_EQ(Pictured(drawing).bytes, Pictured(drawing).bytes);
}

// --- the change --------------------------------------------------------------------------------

class ChangePicture : public testing::Test {
  protected:
    void SetUp() override {
        DrawingText drawing;
        drawing.layer("0").layer("held", 4, 3);
        drawing.block("SYMBOL", {"LINE|5 A1|8 0|10 0.0|20 0.0|11 4.0|21 0.0"});
        drawing.entity("LWPOLYLINE|5 2F|8 0|90 2|70 0|10 0.0|20 0.0|10 100.0|20 60.0");
        drawing.entity("TEXT|5 30|8 0|10 20.0|20 30.0|40 2.0|1 Name|50 31.0");
        drawing.entity("INSERT|5 31|8 0|2 SYMBOL|10 60.0|20 30.0|50 90.0");
        drawing.entity("TEXT|5 32|8 held|10 30.0|20 50.0|40 2.0|1 Held");
        drawing.entity("CIRCLE|5 33|8 0|10 50.0|20 10.0|40 5.0");
        database_ = drawing.database();
        change_.line = idOf(*database_, L"2F");
        change_.turned = {{idOf(*database_, L"30"), 0.0}, {idOf(*database_, L"31"), pi}};
        change_.left = {{idOf(*database_, L"32"), L"locked layer"},
                        {idOf(*database_, L"33"), L"class not turned"}};
    }
    Pictured picture() const { return Pictured(*database_, change_); }

    std::unique_ptr<AcDbDatabase> database_;
    Change change_;
};

TEST_F(ChangePicture, ShowsTurnedEntitiesBeforeAndAfter) {
    const Pictured shown = picture();
    const Element& after = shown.svg.onlyOfClass("model").onlyOfClass("after");
    const Element& before = shown.svg.onlyOfClass("model").onlyOfClass("before");
    const auto now = shown.letters(after.byId("h30"));
    const auto once = shown.letters(before.byId("h30-before"));
    expectNear(now.at, 20, 30);
    expectNear(once.at, 20, 30);
    EXPECT_NEAR(std::atan2(now.right.second, now.right.first), 31 * pi / 180, 1e-6);
    EXPECT_NEAR(std::atan2(once.right.second, once.right.first), 0, 1e-6);
    expectNear(shown.points(*after.byId("h31").ofClass("line")[0])[1], 60, 34);
    expectNear(shown.points(*before.byId("h31-before").ofClass("line")[0])[1], 56, 30);
    EXPECT_EQ(shown.svg.onlyOfClass("grounds").children.size(), 2U);
    EXPECT_EQ(shown.svg.onlyOfClass("drawing").ofClass("text").size(), 1U);
}

TEST_F(ChangePicture, EmphasisesThePickedLine) {
    const Pictured shown = picture();
    const Element& picked = *shown.svg.onlyOfClass("model").ofClass("picked").front();
    const auto points = shown.points(picked.byId("h2F"));
    expectNear(points.front(), 0, 0);
    expectNear(points.back(), 100, 60);
    EXPECT_FALSE(picked.byId("h2F").has("color"));  // the group's colour is the emphasis
    EXPECT_GT(std::stod(picked.get("stroke-width")),
              3 * std::stod(shown.svg.onlyOfClass("drawing").get("stroke-width")));
    EXPECT_TRUE(shown.svg.onlyOfClass("drawing").ofClass("lwpolyline").empty());
}

TEST_F(ChangePicture, MarksTextsAndSymbolsThatWereLeftAndTellsWhy) {
    const Pictured shown = picture();
    const Element& marks = shown.svg.onlyOfClass("marks");
    ASSERT_EQ(marks.children.size(), 1U);
    EXPECT_EQ(marks.children[0].get("data-handle"), "32");
    EXPECT_EQ(marks.children[0].children.at(0).text, "TEXT 32: locked layer");
    // The circle is none; its element says why it was left.
    EXPECT_TRUE(shown.svg.byId("h33").hasClass("left"));
    EXPECT_EQ(shown.svg.byId("h33").children.at(0).text, "CIRCLE 33: class not turned");
}

TEST_F(ChangePicture, LegendSaysWhatWasDone) {
    const Pictured shown = picture();
    EXPECT_EQ(shown.svg.onlyOfClass("headline").text,
              "test.dxf \u2014 ZEPTALIGNENTITIES along LWPOLYLINE 2F: 2 turned, 2 left");
    EXPECT_EQ(shown.svg.onlyOfClass("note").text, "Left: 1 class not turned, 1 locked layer.");
    EXPECT_EQ(shown.svg.ofClass("key").size(), 4U);
}

TEST_F(ChangePicture, LegendOfNothingSaysSo) {
    const Pictured shown(*database_, {}, {L"test.dxf", L"ZEPTALIGNENTITIES"});
    EXPECT_EQ(shown.svg.onlyOfClass("headline").text,
              "test.dxf \u2014 ZEPTALIGNENTITIES: nothing was turned");
    EXPECT_TRUE(shown.svg.ofClass("key").empty());
    const Pictured bare(*database_, {}, {L"test.dxf", L""});
    EXPECT_EQ(bare.svg.onlyOfClass("headline").text, "test.dxf");
}

TEST_F(ChangePicture, EntitiesThatWereErasedSinceAreLeftOut) {
    AcDbEntity* entity = nullptr;
    ASSERT_EQ(acdbOpenObject(entity, idOf(*database_, L"30"), AcDb::kForWrite), Acad::eOk);
    entity->erase();
    entity->close();
    const Pictured shown = picture();
    EXPECT_EQ(shown.bytes.find("id=\"h30\""), std::string::npos);
}

}  // namespace
