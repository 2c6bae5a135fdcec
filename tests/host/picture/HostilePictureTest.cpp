// Pictures of drawings that are wrong, huge, or meant to harm: bounded, well-formed, and said.
#include <gtest/gtest.h>

#include <cmath>

#include "host/picture/Artist.h"
#include "tests/host/picture/Pictured.h"

namespace {

using namespace picture_test;

DrawingText framed() {
    DrawingText drawing;
    drawing.entity("LINE|5 1|8 0|10 0.0|20 0.0|11 100.0|21 60.0");
    return drawing;
}

std::string note(const Pictured& picture) {
    const auto notes = picture.svg.ofClass("note");
    return notes.empty() ? std::string() : notes[0]->text;
}

TEST(HostilePicture, TextsAndNamesOfTheDrawingStayTexts) {
    DrawingText drawing = framed();
    drawing.layer("\"><script>&").block("<b>", {"TEXT|5 A1|8 0|10 0.0|20 0.0|40 1.0|1 </g>]]>"});
    drawing.entity(
        "TEXT|5 2F|8 \"><script>&|10 1.0|20 2.0|40 2.0|1 </text><script>alert(\"&amp;\")</script>");
    drawing.entity("INSERT|5 30|8 0|2 <b>|10 10.0|20 10.0");
    const auto database = drawing.database();
    host::picture::Change change;
    change.left = {{idOf(*database, L"2F"), L"<reason> & \"more\""}};
    const Pictured picture(*database, change, {L"<a & b>.dxf", L"C<D"});
    EXPECT_EQ(picture.svg.byId("h2F").allText(), "</text><script>alert(\"&amp;\")</script>");
    EXPECT_EQ(picture.svg.byId("h2F").get("data-layer"), "\"><script>&");
    EXPECT_EQ(picture.svg.byId("h30").allText(), "</g>]]>");
    EXPECT_EQ(picture.bytes.find("<script"), std::string::npos);
}

TEST(HostilePicture, ControlCharactersBecomeReplacementCharacters) {
    DrawingText drawing("AC1021");
    drawing.entity("LINE|5 1|8 0|10 0.0|20 0.0|11 100.0|21 60.0");
    drawing.entity("TEXT|5 2F|8 0|10 1.0|20 2.0|40 2.0|1 a\x01\\U+FFFFb");
    const Pictured picture(drawing);
    EXPECT_EQ(picture.svg.byId("h2F").allText(), "a\uFFFD\uFFFDb");
}

TEST(HostilePicture, NumbersThatAreNoneLeaveTheirEntityOut) {
    DrawingText drawing = framed();
    drawing.entity("LINE|5 30|8 0|10 NaN|20 0.0|11 1.0|21 1.0");
    drawing.entity("TEXT|5 31|8 0|10 1.0|20 1.0|40 1e308|1 huge");
    drawing.entity("TEXT|5 32|8 0|10 1.0|20 1.0|40 -2.0|1 below");
    drawing.entity("CIRCLE|5 33|8 0|10 1e200|20 1.0|40 1.0");
    drawing.entity("INSERT|5 34|8 0|2 NOWHERE|10 1.0|20 1.0");
    drawing.entity("TEXT|5 35|8 0|10 1.0|20 1.0|40 2.0|41 1e200|1 wide");
    drawing.block("FAR", {"LINE|5 A1|8 0|10 1e90|20 0.0|11 0.0|21 1e90"});
    drawing.entity("INSERT|5 36|8 0|2 FAR|10 1.0|20 1.0|41 1e30|42 1e30");
    const Pictured picture(drawing);
    EXPECT_EQ(picture.svg.ofClass("line").size(), 1U);
    EXPECT_EQ(picture.bytes.find("nan"), std::string::npos);
    EXPECT_EQ(picture.bytes.find("inf"), std::string::npos);
}

TEST(HostilePicture, FarOutliersDoNotShrinkTheRest) {
    DrawingText drawing;
    for (int i = 0; i < 40; ++i)
        drawing.entity("LINE|8 0|10 " + std::to_string(25496000 + i) + ".0|20 6672000.0|11 " +
                       std::to_string(25496010 + i) + ".0|21 6672030.0");
    drawing.entity("CIRCLE|5 2F|8 0|10 0.0|20 0.0|40 5.0");
    drawing.entity("CIRCLE|5 30|8 0|10 1e20|20 1e20|40 5.0");
    const Pictured picture(drawing);
    EXPECT_GT(picture.onPaper.a, 2.0);  // millimetres a unit
    EXPECT_EQ(note(picture), "2 entities lie outside of the picture.");
    EXPECT_EQ(picture.svg.ofClass("line").size(), 40U);
    EXPECT_TRUE(picture.svg.ofClass("circle").empty());
}

TEST(HostilePicture, LinesFarOutOfThePictureAreCut) {
    DrawingText drawing;
    for (int i = 0; i < 40; ++i)
        drawing.entity("LINE|8 0|10 " + std::to_string(i) + ".0|20 0.0|11 " + std::to_string(i) +
                       ".0|21 30.0");
    drawing.entity("LINE|5 2F|8 0|10 -1e15|20 -1e15|11 1e15|21 1e15");
    drawing.entity("CIRCLE|5 30|8 0|10 0.0|20 -1e9|40 1000000010.0");
    const Pictured picture(drawing);
    for (const auto& [px, py] : picture.points("h2F")) {
        EXPECT_LT(std::fabs(px), 5000);
        EXPECT_NEAR(px, py, 1e-2);
    }
    // What is left of the circle passes (0, 10) as it should.
    bool passes = false;
    for (const auto& [px, py] : picture.points("h30")) {
        EXPECT_LT(std::fabs(px), 1e5);
        passes = passes || (std::fabs(px) < 1e4 && std::fabs(py - 10) < 100);
    }
    EXPECT_TRUE(passes);
}

TEST(HostilePicture, BlockInsideOfItselfEnds) {
    DrawingText drawing = framed();
    drawing.block(
        "A", {"INSERT|5 A1|8 0|2 B|10 1.0|20 0.0", "LINE|5 A2|8 0|10 0.0|20 0.0|11 1.0|21 0.0"});
    drawing.block("B", {"INSERT|5 A3|8 0|2 A|10 1.0|20 0.0"});
    drawing.entity("INSERT|5 2F|8 0|2 A|10 20.0|20 20.0");
    const Pictured picture(drawing);
    EXPECT_EQ(picture.svg.byId("h2F").ofClass("line").size(), 1U);
}

TEST(HostilePicture, MillionInsertsInAnArrayAreShownAsTheirBox) {
    DrawingText drawing = framed();
    drawing.block("A", {"LINE|5 A1|8 0|10 0.0|20 0.0|11 0.5|21 0.5"});
    drawing.entity("INSERT|5 2F|8 0|2 A|10 10.0|20 5.0|70 1000|71 1000|44 0.05|45 0.05");
    const Pictured picture(drawing);
    const Element& box = picture.svg.byId("h2F");
    EXPECT_TRUE(box.hasClass("abridged"));
    const auto corners = picture.points(box);
    ASSERT_GE(corners.size(), 4U);
    EXPECT_NEAR(corners[0].first, 10, 0.01);
    EXPECT_NEAR(corners[2].first, 10 + 999 * 0.05 + 0.5, 0.01);
    EXPECT_EQ(note(picture), "1 block is shown as its box.");
    EXPECT_LT(picture.bytes.size(), 10000U);
}

// Thirty blocks, each holding ten of the next: more lines than can ever be drawn.
TEST(HostilePicture, BlocksThatMultiplyEachOtherAreBounded) {
    for (const bool empty : {false, true}) {
        DrawingText drawing = framed();
        for (int level = 0; level < 30; ++level) {
            std::vector<std::string> content;
            for (int i = 0; i < 10; ++i)
                content.push_back("INSERT|8 0|2 L" + std::to_string(level + 1) + "|10 " +
                                  std::to_string(i) + ".0|20 0.0");
            drawing.block("L" + std::to_string(level), content);
        }
        drawing.block("L30",
                      empty ? std::vector<std::string>()
                            : std::vector<std::string>{"LINE|8 0|10 0.0|20 0.0|11 1.0|21 1.0"});
        drawing.entity("INSERT|5 2F|8 0|2 L0|10 20.0|20 20.0");
        const Pictured picture(drawing);
        EXPECT_LT(picture.bytes.size(), 10000U);
    }
}

TEST(HostilePicture, BlocksWithinBlocksByTheThousandsDoNotExhaustTheStack) {
    constexpr int levels = 20000;
    DrawingText drawing = framed();
    for (int level = 0; level < levels; ++level)
        drawing.block("L" + std::to_string(level),
                      {"INSERT|8 0|2 L" + std::to_string(level + 1) + "|10 0.0|20 0.0"});
    drawing.block("L" + std::to_string(levels), {"LINE|8 0|10 0.0|20 0.0|11 1.0|21 1.0"});
    drawing.entity("INSERT|5 2F|8 0|2 L0|10 20.0|20 20.0");
    EXPECT_NO_THROW(Pictured{drawing});
}

TEST(HostilePicture, EndlessTextsAreCutOff) {
    DrawingText drawing = framed();
    drawing.entity("TEXT|5 2F|8 0|10 1.0|20 2.0|40 2.0|1 " + std::string(100000, 'x'));
    std::string paragraphs;
    for (int i = 0; i < 20000; ++i) paragraphs += "\\P";
    drawing.entity("MTEXT|5 30|8 0|10 1.0|20 2.0|40 2.0|41 0.0|71 1|1 a" + paragraphs + "b");
    const Pictured picture(drawing);
    EXPECT_LT(picture.bytes.size(), 100000U);
    EXPECT_LT(picture.svg.byId("h2F").allText().size(), 5000U);
}

TEST(HostilePicture, EmptyDrawingHasAnEmptyPicture) {
    const Pictured picture(DrawingText{});
    EXPECT_TRUE(picture.svg.onlyOfClass("drawing").children.empty());
    EXPECT_EQ(picture.svg.onlyOfClass("headline").text,
              "test.dxf \u2014 ZEPTALIGNENTITIES: nothing was turned");
}

TEST(HostilePicture, SinglePointHasSomePaperAround) {
    for (const char* place : {"10 0.0|20 0.0", "10 25496000.0|20 6672000.0", "10 1e15|20 -1e15"}) {
        DrawingText drawing;
        drawing.entity(std::string("POINT|5 2F|8 0|") + place);
        const Pictured picture(drawing);
        EXPECT_NO_THROW(picture.svg.byId("h2F"));
        EXPECT_EQ(picture.bytes.find("inf"), std::string::npos);
    }
}

TEST(HostilePicture, HandlesThatStandTwiceAreIdsOnce) {
    DrawingText drawing = framed();
    drawing.entity("LINE|5 1|8 0|10 0.0|20 0.0|11 50.0|21 60.0");
    const Pictured picture(drawing);
    EXPECT_NO_THROW(picture.svg.byId("h1"));
    EXPECT_EQ(picture.svg.ofClass("line").size(), 2U);
}

TEST(HostilePicture, ClassesWithoutAKnownLookAreTold) {
    DrawingText drawing = framed();
    drawing.entity("HATCH|5 2F|8 0|10 0.0|20 0.0").entity("3DSOLID|5 30|8 0");
    EXPECT_EQ(note(Pictured(drawing)), "Not drawn: 1 3DSOLID, 1 HATCH.");
}

}  // namespace
