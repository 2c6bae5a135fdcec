// How a picture shows at once what was done: where the picked line leads, what was really turned,
// and where it is when it is tiny.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "host/database/Turning.h"
#include "host/picture/Arrowheads.h"
#include "tests/host/picture/Pictured.h"

namespace {

using namespace picture_test;
using host::picture::Arrowhead;
using host::picture::arrowheadsOn;
using host::picture::Change;
using host::picture::Path;

constexpr double pi = 3.14159265358979323846;

bool contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

std::string notes(const Pictured& picture) {
    std::string all;
    for (const Element* note : picture.svg.ofClass("note"))
        all += (all.empty() ? "" : " ") + note->text;
    return all;
}

bool hasKey(const Pictured& picture, const std::string& words) {
    const auto keys = picture.svg.ofClass("key");
    return std::any_of(keys.begin(), keys.end(),
                       [&](const Element* key) { return key->text == words; });
}

const Element& pickedOf(const Pictured& picture) {
    return *picture.svg.onlyOfClass("model").ofClass("picked").front();
}

// A drawing 1000 units wide, on paper some 265 mm, with one line that is picked.
Pictured picking(const std::string& line, const std::string& text = "") {
    DrawingText drawing;
    drawing.entity("LINE|5 1|8 0|10 0.0|20 0.0|11 1000.0|21 0.0").entity(line);
    if (!text.empty()) drawing.entity(text);
    const auto database = drawing.database();
    Change change;
    change.line = idOf(*database, L"2F");
    if (!text.empty()) change.turned = {{idOf(*database, L"30"), 1.0}};
    return Pictured(*database, change);
}

// --- the direction of the picked line ----------------------------------------------------------

TEST(PickedLine, EndsWithAnArrowheadThatPointsAlongIt) {
    const Pictured picture = picking(
        "LWPOLYLINE|5 2F|8 0|90 3|70 0|10 900.0|20 100.0|10 700.0|20 "
        "100.0|10 700.0|20 500.0");
    const auto arrows = pickedOf(picture).ofClass("arrow");
    ASSERT_FALSE(arrows.empty());
    const auto corners = picture.points(*arrows[0]);  // tip, left, right
    ASSERT_EQ(corners.size(), 3U);
    EXPECT_NEAR(corners[0].first, 700, 0.1);
    EXPECT_NEAR(corners[0].second, 500, 0.1);
    EXPECT_LT(corners[1].first, 700 - 1.0);
    EXPECT_GT(corners[2].first, 700 + 1.0);
    EXPECT_NEAR(corners[1].second, corners[2].second, 0.1);
    EXPECT_NEAR((500 - corners[1].second) * picture.onPaper.a, 4.2, 0.1);
}

TEST(PickedLine, TurnedRoundPointsTheOtherWay) {
    const Pictured there = picking("LINE|5 2F|8 0|10 100.0|20 300.0|11 900.0|21 300.0");
    const Pictured back = picking("LINE|5 2F|8 0|10 900.0|20 300.0|11 100.0|21 300.0");
    const auto tip = [](const Pictured& picture) {
        return picture.points(*pickedOf(picture).ofClass("arrow").at(0));
    };
    EXPECT_NEAR(tip(there)[0].first, 900, 0.1);
    EXPECT_LT(tip(there)[1].first, 900);
    EXPECT_NEAR(tip(back)[0].first, 100, 0.1);
    EXPECT_GT(tip(back)[1].first, 100);
}

TEST(PickedLine, HasArrowheadsEverySixtyMillimetres) {
    const Pictured picture = picking("LINE|5 2F|8 0|10 0.0|20 300.0|11 1000.0|21 300.0");
    const auto arrows = pickedOf(picture).ofClass("arrow");
    const double length = 1000 * picture.onPaper.a;
    ASSERT_EQ(arrows.size(), static_cast<std::size_t>((length - 30) / 60) + 1);
    for (std::size_t i = 0; i < arrows.size(); ++i)
        EXPECT_NEAR((1000 - picture.points(*arrows[i])[0].first) * picture.onPaper.a,
                    60.0 * static_cast<double>(i), 0.1);
}

TEST(PickedLine, OfWidthsThatChangeHasItsArrowheadsOnItsMiddle) {
    const Pictured picture = picking(
        "LWPOLYLINE|5 2F|8 0|90 2|70 0|10 100.0|20 300.0|40 40.0|41 10.0|10 900.0|20 300.0");
    const auto tip = picture.points(*pickedOf(picture).ofClass("arrow").at(0))[0];
    EXPECT_NEAR(tip.first, 900, 0.1);
    EXPECT_NEAR(tip.second, 300, 0.1);
}

TEST(PickedLine, ThatRunsOutOfThePictureHasArrowheadsInIt) {
    // The far end is left aside: content lies in the first hundred units.
    DrawingText drawing;
    for (int i = 0; i < 30; ++i)
        drawing.entity("LINE|8 0|10 " + std::to_string(3 * i) + "|20 0.0|11 " +
                       std::to_string(3 * i) + "|21 60.0");
    drawing.entity("LINE|5 2F|8 0|10 0.0|20 30.0|11 1e7|21 30.0");
    const auto database = drawing.database();
    Change change;
    change.line = idOf(*database, L"2F");
    const Pictured picture(*database, change);
    EXPECT_LE(pickedOf(picture).ofClass("arrow").size(), 6U);
    EXPECT_GE(pickedOf(picture).ofClass("arrow").size(), 1U);
}

// Far from the line, so that the picture shows it small.
const char* const farLabel = "TEXT|5 30|8 0|10 950.0|20 350.0|40 10.0|1 Name";

TEST(PickedLine, BelowEightMillimetresIsFoundByItsRing) {
    const Pictured picture = picking("LINE|5 2F|8 0|10 300.0|20 300.0|11 306.0|21 308.0", farLabel);
    EXPECT_TRUE(pickedOf(picture).ofClass("arrow").empty());
    const auto rings = pickedOf(picture).ofClass("ring");
    ASSERT_EQ(rings.size(), 1U);
    EXPECT_NEAR(std::stod(rings[0]->get("cx")) + picture.x, 303, 0.1);
    EXPECT_NEAR(std::stod(rings[0]->get("cy")) + picture.y, 304, 0.1);
    EXPECT_NEAR(std::stod(rings[0]->get("r")), 5 + 2 / picture.onPaper.a, 0.1);
    const Pictured longer = picking("LINE|5 2F|8 0|10 300.0|20 300.0|11 334.0|21 300.0", farLabel);
    EXPECT_TRUE(pickedOf(longer).ofClass("ring").empty());
    EXPECT_EQ(pickedOf(longer).ofClass("arrow").size(), 1U);
}

TEST(PickedLine, ThatIsHiddenHasNoArrowheads) {
    EXPECT_TRUE(pickedOf(picking("LINE|5 2F|8 0|60 1|10 0.0|20 300.0|11 900.0|21 300.0"))
                    .ofClass("arrow")
                    .empty());
}

TEST(Arrowheads, FollowCurvesAndEachStretch) {
    Path path;
    path.moveTo({0, 0, 0});
    path.curveTo({0, 55.228, 0}, {44.772, 100, 0}, {100, 100, 0});
    path.moveTo({200, 0, 7});
    path.lineTo({200, 3, 7});
    path.moveTo({300, 0, 0});
    path.lineTo({300, -20, 0});
    const std::vector<Arrowhead> arrowheads = arrowheadsOn(path, {8, 4, 60});
    ASSERT_EQ(arrowheads.size(), 4U);
    EXPECT_EQ(arrowheads[0].tip.x, 100);
    EXPECT_EQ(arrowheads[0].tip.y, 100);
    EXPECT_NEAR(arrowheads[0].back.x, 96, 0.05);
    // 60 along the arc of radius 100 before its end, by its chords.
    EXPECT_NEAR(arrowheads[1].tip.x, 100 - 100 * std::sin(0.6), 0.5);
    EXPECT_NEAR(arrowheads[1].tip.y, 100 * std::cos(0.6), 0.5);
    EXPECT_EQ(arrowheads[3].back.y, -16);
}

TEST(Arrowheads, AreNoMoreThanFitHoweverLongTheLine) {
    Path path;
    path.moveTo({0, 0, 0});
    path.lineTo({1e9, 0, 0});
    EXPECT_LE(arrowheadsOn(path, {8, 4, 60}).size(), host::picture::mostArrowheads);
    Path dashes;
    for (int i = 0; i < 2000; ++i) {
        dashes.moveTo({0, i * 1.0, 0});
        dashes.lineTo({10, i * 1.0, 0});
    }
    EXPECT_EQ(arrowheadsOn(dashes, {8, 4, 60}).size(), host::picture::mostArrowheads);
    EXPECT_TRUE(arrowheadsOn({}, {8, 4, 60}).empty());
}

// --- what was turned to where it stood ---------------------------------------------------------

class Outlines : public testing::Test {
  protected:
    void SetUp() override {
        DrawingText drawing;
        drawing.block("SYMBOL", {"LINE|8 0|10 0.0|20 0.0|11 4.0|21 2.0"});
        drawing.entity("LINE|5 2F|8 0|10 0.0|20 0.0|11 100.0|21 60.0");
        drawing.entity("TEXT|5 30|8 0|10 20.0|20 30.0|40 2.0|1 Name|50 31.0");
        drawing.entity("INSERT|5 31|8 0|2 SYMBOL|10 60.0|20 30.0|50 90.0");
        database_ = drawing.database();
    }

    Pictured turned(double textFrom, double symbolFrom, bool stoodSo = false, double moved = 0.0) {
        Change change;
        change.line = idOf(*database_, L"2F");
        change.turned = {{idOf(*database_, L"30"), textFrom * pi / 180, stoodSo, moved},
                         {idOf(*database_, L"31"), symbolFrom * pi / 180, stoodSo, moved}};
        return Pictured(*database_, change);
    }

    static std::string classesOf(const Pictured& picture) {
        std::string all;
        for (const Element& ground : picture.svg.onlyOfClass("grounds").children)
            all += "[" + ground.get("class") + "]";
        return all;
    }

    std::unique_ptr<AcDbDatabase> database_;
};

TEST_F(Outlines, AreAllThatShowsWhatStoodSo) {
    const Pictured picture = turned(31, 90, true);
    EXPECT_EQ(classesOf(picture), "[ground unchanged][ground unchanged]");
    EXPECT_TRUE(hasKey(picture, "stood so already"));
    EXPECT_EQ(notes(picture), "");
    EXPECT_TRUE(contains(picture.svg.onlyOfClass("headline").text,
                         host::database::TurnCounts{2, 2, 0}.text()));
}

TEST_F(Outlines, AreForTurnsOfLessThanATwentiethOfADegree) {
    EXPECT_EQ(classesOf(turned(31.049, 89.951)), "[ground unchanged][ground unchanged]");
    EXPECT_EQ(classesOf(turned(31.051, 89.949)), "[ground][ground]");
    EXPECT_EQ(classesOf(turned(31 - 360, 90 + 720)), "[ground unchanged][ground unchanged]");
    EXPECT_EQ(classesOf(turned(31 + 180, 90 - 180)), "[ground][ground]");
}

TEST_F(Outlines, AreNotForWhatWasMovedVisibly) {
    const double unit = turned(0, 0).onPaper.a;
    EXPECT_EQ(classesOf(turned(31, 90, false, 0.049 / unit)),
              "[ground unchanged][ground unchanged]");
    EXPECT_EQ(classesOf(turned(31, 90, false, 0.051 / unit)), "[ground][ground]");
}

TEST_F(Outlines, AreToldApartFromTheSentenceWhereTheyAreMoreThanItCounts) {
    const Pictured picture = turned(31 - 360, 0);
    EXPECT_EQ(classesOf(picture), "[ground unchanged][ground]");
    EXPECT_TRUE(hasKey(picture, "looks as before"));
    EXPECT_EQ(notes(picture), "Outlined: 0 stood so already, 1 turned by less than can be seen.");
    EXPECT_FALSE(contains(picture.svg.onlyOfClass("headline").text, "already"));
    const Pictured visible = turned(0, 0);
    EXPECT_FALSE(hasKey(visible, "looks as before") || hasKey(visible, "stood so already"));
}

// --- what is tiny on paper ---------------------------------------------------------------------

const char* const longLine = "LINE|5 2F|8 0|10 0.0|20 300.0|11 1000.0|21 300.0";

TEST(Grounds, OfLabelsThatAreTinyAreRingsOfHalfAMillimetre) {
    const Pictured picture = picking(longLine, "TEXT|5 30|8 0|10 500.0|20 350.0|40 0.2|1 abc");
    const Element& ground = picture.svg.onlyOfClass("grounds").children.at(0);
    EXPECT_EQ(ground.name, "circle");
    EXPECT_TRUE(ground.hasClass("tiny"));
    EXPECT_EQ(ground.get("data-handle"), "30");
    EXPECT_NEAR(std::stod(ground.get("r")) * picture.onPaper.a, 0.25, 1e-3);
    EXPECT_NEAR(std::stod(ground.get("cx")) + picture.x, 500.2, 0.2);
    EXPECT_NEAR(std::stod(ground.get("cy")) + picture.y, 350.1, 0.1);
    const std::string told = notes(picture);
    EXPECT_TRUE(contains(told, "Labels are 0.05")) << told;
    EXPECT_TRUE(contains(told,
                         " mm high at this scale: zoom in, the SVG holds them. "
                         "1 turned entity is smaller than 0.5 mm here, in a ring."))
        << told;
}

TEST(Grounds, AreHardlyLargerThanTheLabel) {
    const Pictured picture = picking(longLine, "TEXT|5 30|8 0|10 500.0|20 350.0|40 4.0|1 abcdef");
    const auto corners = picture.points(picture.svg.onlyOfClass("grounds").children.at(0));
    ASSERT_GE(corners.size(), 4U);
    // From a third of the height below the baseline to a third above the letters.
    EXPECT_NEAR(corners[2].second - corners[1].second, 4.0 * 5 / 3, 0.05);
    EXPECT_NEAR(corners[0].first, 500, 0.05);
    EXPECT_EQ(notes(picture), "");
}

TEST(Grounds, OfSymbolsHaveAMarginThatIsBounded) {
    for (const double size : {0.6, 4.0}) {  // about, in millimetres on paper
        DrawingText drawing;
        const double units = size / 0.26;
        drawing.block("S", {"LINE|8 0|10 0.0|20 0.0|11 " + std::to_string(units) + "|21 " +
                            std::to_string(units)});
        drawing.entity(longLine).entity("INSERT|5 30|8 0|2 S|10 500.0|20 350.0");
        const auto database = drawing.database();
        Change change;
        change.line = idOf(*database, L"2F");
        change.turned = {{idOf(*database, L"30"), 1.0}};
        const Pictured picture(*database, change);
        const auto corners = picture.points(picture.svg.onlyOfClass("grounds").children.at(0));
        ASSERT_GE(corners.size(), 4U);
        const double shown = units * picture.onPaper.a;
        EXPECT_NEAR((corners[1].first - corners[0].first) * picture.onPaper.a,
                    shown + std::min(0.3 * shown, 0.8), 0.02)
            << size;
    }
}

}  // namespace
