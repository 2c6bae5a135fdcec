// What a picture does with more than it has room for, and with what it can't show as it is:
// bounded, reported, and the change shown whatever it costs the rest.
#include <gtest/gtest.h>

#include <cmath>

#include "host/picture/FontWidths.h"
#include "tests/host/picture/Pictured.h"

namespace {

using namespace picture_test;
using host::picture::Change;

std::string number(double value) {
    return std::to_string(value);
}

// A line, the handle 2F, that the others are turned along.
DrawingText street() {
    DrawingText drawing;
    drawing.entity("LINE|5 2F|8 0|10 0.0|20 0.0|11 100.0|21 60.0");
    return drawing;
}

Pictured turnedAll(const DrawingText& drawing, const wchar_t* type) {
    const auto database = drawing.database();
    Change change;
    change.line = idOf(*database, L"2F");
    for (const AcDbObjectId id : host::database::modelSpaceIds(*database))
        if (host::database::recordName(id) == type) change.turned.push_back({id, 0.5});
    return Pictured(*database, change);
}

std::string notes(const Pictured& picture) {
    std::string all;
    for (const Element* note : picture.svg.ofClass("note"))
        all += (all.empty() ? "" : " ") + note->text;
    return all;
}

bool contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

TEST(Limits, ReferencesThatAreTooLargeTogetherAreTurnedBoxes) {
    DrawingText drawing = street();
    std::vector<std::string> lines;
    for (int i = 0; i < 5000; ++i)
        lines.push_back("LINE|8 0|10 0.0|20 " + number(i / 5000.0) + "|11 4.0|21 0.0");
    drawing.block("HEAVY", lines);
    for (int i = 0; i < 400; ++i)
        drawing.entity("INSERT|8 0|5 " + std::to_string(1000 + i) + "|2 HEAVY|10 " +
                       number(i * 0.2) + "|20 30.0|50 30.0");
    const Pictured picture = turnedAll(drawing, L"INSERT");
    EXPECT_LT(picture.bytes.size(), 300000U);
    EXPECT_EQ(notes(picture), "400 blocks are shown as boxes.");
    const Element& after = picture.svg.onlyOfClass("model").onlyOfClass("after").byId("h1000");
    EXPECT_TRUE(after.hasClass("abridged"));
    EXPECT_TRUE(after.hasClass("turned"));
    const auto corners = picture.points(after);
    ASSERT_GE(corners.size(), 4U);
    const double c = std::cos(std::acos(-1.0) / 6), s = 0.5;
    EXPECT_NEAR(corners[0].first, 0, 0.01);
    EXPECT_NEAR(corners[1].first, 4 * c, 0.01);
    EXPECT_NEAR(corners[1].second, 30 + 4 * s, 0.01);
    EXPECT_EQ(picture.svg.onlyOfClass("model").onlyOfClass("before").ofClass("abridged").size(),
              400U);
}

TEST(Limits, FewReferencesOfTheSameBlockAreDrawnWhole) {
    DrawingText drawing = street();
    std::vector<std::string> lines;
    for (int i = 0; i < 5000; ++i)
        lines.push_back("LINE|8 0|10 0.0|20 " + number(i / 500.0) + "|11 4.0|21 0.0");
    drawing.block("HEAVY", lines);
    drawing.entity("INSERT|8 0|5 1000|2 HEAVY|10 20.0|20 30.0|50 30.0");
    const Pictured picture = turnedAll(drawing, L"INSERT");
    EXPECT_EQ(picture.svg.onlyOfClass("model").onlyOfClass("after").ofClass("line").size(), 5000U);
}

TEST(Limits, TurnedTextsBeyondWhatCanBeReadHaveTheirGround) {
    constexpr int count = 20100;
    DrawingText drawing = street();
    for (int i = 0; i < count; ++i)
        drawing.entity("TEXT|8 0|10 " + number(i % 150) + "|20 " + number(i / 150) + "|40 0.3|1 a");
    const Pictured picture = turnedAll(drawing, L"TEXT");
    EXPECT_EQ(picture.svg.onlyOfClass("grounds").children.size(), std::size_t{count});
    EXPECT_EQ(picture.svg.onlyOfClass("model").onlyOfClass("after").children.size(), 20000U);
    EXPECT_EQ(picture.svg.onlyOfClass("model").onlyOfClass("before").children.size(), 20000U);
    EXPECT_EQ(notes(picture),
              "100 turned entities are shown by their grounds alone. Labels are 0.36 mm high at "
              "this scale: zoom in, the SVG holds them.");
    EXPECT_TRUE(contains(picture.svg.onlyOfClass("headline").text, "20100 turned"));
}

TEST(Limits, ReferencesShownAsBoxesLeaveRoomForTheOthers) {
    DrawingText drawing = street();
    drawing.block("A", {"LINE|8 0|10 0.0|20 0.0|11 0.05|21 0.05"});
    for (int i = 0; i < 5; ++i)
        drawing.entity("INSERT|8 0|2 A|10 " + number(20 * i) +
                       "|20 5.0|70 400|71 400|44 0.02|45 0.02");
    for (int i = 0; i < 50; ++i)
        drawing.entity("CIRCLE|8 0|10 " + number(2 * i) + "|20 40.0|40 1.0");
    const Pictured picture(drawing);
    EXPECT_EQ(picture.svg.ofClass("circle").size(), 50U);
    EXPECT_EQ(picture.svg.ofClass("abridged").size(), 5U);
    EXPECT_EQ(notes(picture), "5 blocks are shown as boxes.");
}

// The columns and rows that a record gives may be any whole number.
TEST(Limits, AsManyRowsAsANumberCanTellDoNotKeepThePictureFromEnding) {
    for (const char* block : {"A", "NOWHERE", "EMPTY"}) {
        DrawingText drawing = street();
        drawing.block("A", {"LINE|8 0|10 0.0|20 0.0|11 0.05|21 0.05"}).block("EMPTY", {});
        drawing.entity("INSERT|5 30|8 0|2 " + std::string(block) +
                       "|10 10.0|20 5.0|70 2147483647|71 2147483647|44 1e-8|45 1e-8");
        drawing.entity("INSERT|5 31|8 0|2 " + std::string(block) +
                       "|10 10.0|20 5.0|70 1|71 2147483647|44 1e-8|45 1e-8");
        EXPECT_NO_THROW(Pictured(drawing).svg.byId("h2F")) << block;
    }
}

TEST(Limits, PickedLineOfVeryManyVerticesIsThatLine) {
    std::string record = "LWPOLYLINE|5 2F|8 0|90 210000|70 0";
    for (int i = 0; i < 210000; ++i)
        record += "|10 " + number(i * 0.001) + "|20 " + number(20 * std::sin(i * 0.0001));
    DrawingText drawing;
    drawing.entity(record).entity("TEXT|5 30|8 0|10 50.0|20 5.0|40 2.0|1 Name");
    const Pictured picture = turnedAll(drawing, L"TEXT");
    const Element& line = picture.svg.byId("h2F");
    EXPECT_FALSE(line.hasClass("abridged"));
    const auto points = picture.points(line);
    EXPECT_GT(points.size(), 20U);
    EXPECT_LT(points.size(), 5000U);
    for (const auto& [x, y] : points) EXPECT_NEAR(y, 20 * std::sin(x * 0.1), 1e-2);
    EXPECT_EQ(notes(picture), "");
    EXPECT_FALSE(Pictured(drawing).svg.byId("h2F").hasClass("abridged"));
}

// Zigzags of 0.1 mm: they take 600 000 pieces with all detail.
TEST(Limits, DrawingThatWouldFillThePictureIsDrawnWithLessDetail) {
    DrawingText drawing = street();
    for (int row = 0; row < 60; ++row) {
        std::string record = "LWPOLYLINE|8 0|90 10000|70 0";
        for (int i = 0; i < 10000; ++i)
            record += "|10 " + number(i * 0.01) + "|20 " + number(row + (i % 2) * 0.03);
        drawing.entity(record);
    }
    const Pictured picture(drawing);
    EXPECT_EQ(notes(picture), "Details below 0.2 mm are left out.");
    EXPECT_EQ(picture.svg.ofClass("lwpolyline").size(), 60U);
    EXPECT_LT(picture.bytes.size(), 1'000'000U);
}

TEST(Limits, CrossesAreAsManyAsCanBeSeen) {
    DrawingText drawing = street();
    for (int i = 0; i < 20010; ++i)
        drawing.entity("TEXT|8 0|10 " + number(i % 150) + "|20 " + number(i / 150) + "|40 0.3|1 a");
    const auto database = drawing.database();
    Change change;
    change.line = idOf(*database, L"2F");
    for (const AcDbObjectId id : host::database::modelSpaceIds(*database))
        if (id != change.line) change.left.push_back({id, L"locked layer"});
    const Pictured picture(*database, change);
    EXPECT_EQ(picture.svg.onlyOfClass("marks").children.size(), 20000U);
    EXPECT_TRUE(contains(notes(picture), "10 entities that were left have no crosses."));
}

TEST(Reported, TurnedTextFarAwayFromAllOthersIsReported) {
    DrawingText drawing;
    drawing.entity("LINE|5 2F|8 0|10 25496000.0|20 6672000.0|11 25496100.0|21 6672030.0");
    for (int i = 0; i < 30; ++i)
        drawing.entity("TEXT|8 0|10 " + number(25496000 + 3 * i) + "|20 6672010.0|40 2.0|1 Name");
    drawing.entity("TEXT|8 0|10 0.0|20 0.0|40 2.0|1 stray");
    const Pictured picture = turnedAll(drawing, L"TEXT");
    EXPECT_GT(picture.onPaper.a, 1.0);  // millimetres a unit
    EXPECT_EQ(picture.svg.onlyOfClass("model").onlyOfClass("after").children.size(), 30U);
    EXPECT_EQ(notes(picture), "1 turned entity lies outside of the picture.");
}

TEST(Reported, WhatReachesOutOfThePictureIsReported) {
    DrawingText drawing;
    drawing.entity("LINE|5 2F|8 0|10 0.0|20 0.0|11 10.0|21 5.0");
    drawing.entity("TEXT|5 30|8 0|10 2.0|20 2.0|40 1.0|1 Name");
    drawing.entity("LINE|8 0|10 -500.0|20 -500.0|11 500.0|21 500.0");
    drawing.entity("CIRCLE|8 0|10 900.0|20 0.0|40 5.0");
    EXPECT_EQ(notes(turnedAll(drawing, L"TEXT")),
              "1 entity lies outside of the picture. 1 entity reaches out of it.");
}

TEST(Reported, LettersKeepWithinTheFrameHoweverWideTheyAre) {
    const std::pair<const char*, std::wstring> texts[] = {
        {"WWWWMMMMWWWW", L"WWWWMMMMWWWW"},
        {"%%uLLLLLL%%u%%d", L"LLLLLL\u00B0"},
        {"\\U+6771\\U+4EAC\\U+90FD\\U+6771", L"\u6771\u4EAC\u90FD\u6771"}};
    for (const auto& [letters, plain] : texts) {
        DrawingText drawing;
        drawing.entity(std::string("TEXT|5 2F|8 0|10 0.0|20 0.0|40 2.5|1 ") + letters);
        const Pictured picture(drawing);
        const double width = host::picture::widthOf(plain) * 2.5 / host::picture::capHeight;
        const auto at = picture.letters("h2F").at;
        const double left = picture.onPaper(at.first - picture.x, 0).first;
        const double right = picture.onPaper(at.first + width - picture.x, 0).first;
        EXPECT_GT(left, 8) << letters;
        EXPECT_LT(right, 297 - 8) << letters;
        EXPECT_GT(right - left, 0.9 * (297 - 16)) << letters;  // and fill it
    }
}

TEST(Reported, CrossesStandOnTheMiddleOfTheirLetters) {
    DrawingText drawing = street();
    drawing.entity("TEXT|5 30|8 0|10 20.0|20 30.0|40 4.0|1 WWWWWWWW");
    const auto database = drawing.database();
    Change change;
    change.line = idOf(*database, L"2F");
    change.left = {{idOf(*database, L"30"), L"locked layer"}};
    const Pictured picture(*database, change);
    const auto cross = picture.points(picture.svg.onlyOfClass("marks").children.at(0));
    const double middle = (cross.at(0).first + cross.at(1).first) / 2;
    EXPECT_NEAR(middle, 20 + 8 * 0.989 * 4 / 0.729 / 2, 0.5);
}

TEST(Reported, ReferenceOnALayerThatIsOffShowsWhatLiesOnOthers) {
    DrawingText drawing;
    drawing.layer("0").layer("off", 0, -1).layer("frozen", 1).layer("on", 0, 3);
    drawing.block("B", {"LINE|5 A1|8 on|10 0.0|20 0.0|11 10.0|21 0.0",
                        "LINE|5 A2|8 0|10 0.0|20 5.0|11 10.0|21 5.0",
                        "LINE|5 A3|8 off|10 0.0|20 9.0|11 10.0|21 9.0"});
    drawing.entity("INSERT|5 30|8 off|2 B|10 5.0|20 5.0");
    drawing.entity("INSERT|5 31|8 frozen|2 B|10 5.0|20 25.0");
    const Pictured picture(drawing);
    ASSERT_EQ(picture.svg.byId("h30").children.size(), 1U);
    EXPECT_EQ(picture.svg.byId("h30").children[0].get("data-handle"), "A1");
    EXPECT_EQ(picture.svg.ofClass("insert").size(), 1U);
}

TEST(Reported, ReferencesToBlocksThatAreMissingEmptyOrElsewhereAreReported) {
    DrawingText drawing = street();
    drawing.block("XREF", {}, "70 4|10 0.0|20 0.0|30 0.0|1 other.dwg").block("EMPTY", {});
    for (const char* block : {"XREF", "EMPTY", "NOWHERE"})
        drawing.entity(std::string("INSERT|8 0|10 1.0|20 1.0|2 ") + block);
    EXPECT_EQ(notes(Pictured(drawing)), "3 block references have nothing to show.");
}

TEST(Reported, ClassesWithoutALookInBlocksAreReportedToo) {
    DrawingText drawing = street();
    drawing.block("B", {"IMAGE|5 A1|8 0|10 0.0|20 0.0"});
    drawing.entity("INSERT|8 0|10 1.0|20 1.0|2 B").entity("IMAGE|5 40|8 0|10 0.0|20 0.0");
    EXPECT_EQ(notes(Pictured(drawing)), "Not drawn: 2 IMAGE.");
}

TEST(Reported, LineAndTextsOfPaperSpaceAreNotDrawnOverModelSpace) {
    DrawingText drawing = street();
    drawing.entity("LINE|5 40|67 1|8 0|10 0.0|20 0.0|11 100.0|21 0.0");
    drawing.entity("TEXT|5 41|67 1|8 0|10 0.0|20 0.0|40 2.0|1 Sheet");
    const auto database = drawing.database();
    Change change;
    change.line = idOf(*database, L"40");
    change.turned = {{idOf(*database, L"41"), 0.0}};
    const Pictured picture(*database, change);
    EXPECT_TRUE(picture.svg.onlyOfClass("model").onlyOfClass("after").children.empty());
    EXPECT_FALSE(contains(picture.bytes, "id=\"h40\""));
    EXPECT_EQ(notes(picture),
              "2 changed or picked entities are not in model space, and not shown.");
}

TEST(Reported, LinesOfSeveralRunsAreAllEmphasised) {
    DrawingText drawing = street();
    drawing.entity("LINE|5 30|8 0|10 0.0|20 60.0|11 100.0|21 0.0");
    drawing.entity("TEXT|5 31|8 0|10 50.0|20 50.0|40 2.0|1 Name");
    const auto database = drawing.database();
    Change change;
    change.line = idOf(*database, L"30");
    change.earlierLines = {idOf(*database, L"2F")};
    change.turned = {{idOf(*database, L"31"), 0.0}};
    const Pictured picture(*database, change);
    const Element& picked = *picture.svg.onlyOfClass("model").ofClass("picked").front();
    EXPECT_EQ(picked.ofClass("line").size(), 2U);
    EXPECT_TRUE(contains(picture.svg.onlyOfClass("headline").text, "along 2 lines: 1 turned"));
}

// Letters are measured by the widths of the bold font, which are at most 1.18 times the others'.
TEST(Reported, HeadlineKeepsItsResultHoweverLongTheName) {
    for (const auto& [width, height] : {std::pair(100, 60), {60, 100}}) {
        DrawingText drawing;
        drawing.entity("LINE|5 2F|8 0|10 0.0|20 0.0|11 " + number(width) + "|21 " + number(height));
        drawing.entity("TEXT|5 30|8 0|10 2.0|20 2.0|40 1.0|1 Name");
        const auto database = drawing.database();
        Change change;
        change.line = idOf(*database, L"2F");
        change.turned = {{idOf(*database, L"30"), 0.0}};
        const Pictured picture(*database, change,
                               {std::wstring(200, L'W') + L".dxf", L"ZEPTALIGNENTITIES"});
        const std::string text = picture.svg.onlyOfClass("headline").text;
        EXPECT_TRUE(contains(text, "1 turned")) << text;
        EXPECT_TRUE(contains(text, "W\u2026W")) << text;
        EXPECT_TRUE(contains(text, ".dxf")) << text;
    }
}

TEST(Reported, NotesThatAreLongTakeThreeLinesTheGravestFirst) {
    DrawingText drawing = street();
    drawing.entity("INSERT|5 40|8 0|10 1.0|20 1.0|2 NOWHERE");
    for (int i = 0; i < 60; ++i)
        drawing.entity("THING" + std::to_string(i) + "|8 0|5 " + std::to_string(5000 + i));
    const Pictured picture(drawing);
    const auto lines = picture.svg.ofClass("note");
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(lines[0]->text.rfind("1 block reference has nothing to show. Not drawn: ", 0), 0U);
    EXPECT_TRUE(contains(lines[2]->text, "\u2026"));
    EXPECT_LT(std::stod(lines[2]->get("y")), 210 - 5);
}

TEST(Reported, GroundsCarryTheHandleOfWhatStandsOnThem) {
    DrawingText drawing = street();
    drawing.entity("TEXT|5 30|8 0|10 50.0|20 50.0|40 2.0|1 Name");
    const Pictured picture = turnedAll(drawing, L"TEXT");
    EXPECT_EQ(picture.svg.onlyOfClass("grounds").children.at(0).get("data-handle"), "30");
    // The picked line passes above the grounds, below the letters.
    const auto at = [&](const char* group) {
        return picture.bytes.find(std::string("<g class=\"") + group);
    };
    EXPECT_LT(at("drawing"), at("grounds"));
    EXPECT_LT(at("grounds"), at("picked"));
    EXPECT_LT(at("picked"), at("before"));
    EXPECT_LT(at("before"), at("after"));
}

TEST(Reported, ConstantAttributeDefinitionIsAllThatABlockShows) {
    DrawingText drawing;
    drawing.block("B", {"ATTDEF|5 A1|8 0|10 0.0|20 0.0|40 5.0|1 fixed|2 TAG|3 prompt|70 2"});
    drawing.entity("INSERT|5 30|8 0|10 1000.0|20 1000.0|2 B");
    const Pictured picture(drawing);
    EXPECT_EQ(picture.svg.byId("h30").allText(), "fixed");
    const auto text = picture.letters(*picture.svg.ofClass("attdef").at(0));
    const auto at = picture.onPaper(text.at.first - picture.x, text.at.second - picture.y);
    EXPECT_GT(at.first, 8);
    EXPECT_LT(at.first, 289);
}

}  // namespace
