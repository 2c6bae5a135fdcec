// The command from its pick to the turned drawing, through the loaded module in the embedded host.
#include <aced.h>
#include <afxwin.h>

#include <algorithm>
#include <cmath>
#include <ostream>

#include "BruteForce.h"
#include "CommandHost.h"

namespace {

using namespace app_test;

const std::vector<Vertex> bend{{0, 0}, {100, 0}, {140, 70}, {140, 170}, {60, 230}};

// A text and a symbol beside each segment of `bend`, with the handles A0 to A3 and B0 to B3.
const std::vector<Vertex> textPlaces{{20, 5}, {125, 30}, {150, 120}, {100, 210}};
const std::vector<Vertex> symbolPlaces{{60, -8}, {110, 30}, {130, 100}, {90, 195}};
const std::vector<std::string> texts{"A0", "A1", "A2", "A3"};
const std::vector<std::string> symbols{"B0", "B1", "B2", "B3"};

DrawingText Street() {
    DrawingText drawing;
    drawing.LightPolyline("2F", bend);
    for (std::size_t i = 0; i < 4; ++i) {
        drawing.Text(texts[i], textPlaces[i]);
        drawing.Insert(symbols[i], symbolPlaces[i]);
    }
    return drawing;
}

const std::vector<std::string> all{"A0", "B0", "A1", "B1", "A2", "B2", "A3", "B3"};

std::ptrdiff_t CountOf(const std::vector<std::string>& names, const std::string& name) {
    return std::count(names.begin(), names.end(), name);
}

// --- The reply.

struct ReplyCase {
    const char* name;
    std::optional<std::wstring> reply;
    bool flips;
    int passes;
};

std::ostream& operator<<(std::ostream& out, const ReplyCase& tested) {
    return out << tested.name;
}

class Reply : public CommandTest, public ::testing::WithParamInterface<ReplyCase> {};

TEST_P(Reply, DecidesOnSymbolsAloneAndOnTheSecondPass) {
    Open(Street());
    host::fault::disarm();  // the list of calls starts here
    Run("2F", all, GetParam().reply);
    const std::vector<std::string> calls = host::fault::names();
    EXPECT_EQ(CountOf(calls, "AcDbText::setRotation"), 4 * GetParam().passes);
    EXPECT_EQ(CountOf(calls, "AcDbBlockReference::setRotation"), 4 * GetParam().passes);
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(Rotation(texts[i]), TextRotation(bend, textPlaces[i])) << texts[i];
        EXPECT_EQ(Rotation(symbols[i]), SymbolRotation(bend, symbolPlaces[i], GetParam().flips))
            << symbols[i];
    }
}

INSTANTIATE_TEST_SUITE_P(
    Command, Reply,
    ::testing::Values(ReplyCase{"k", L"k", true, 2}, ReplyCase{"CapitalK", L"K", false, 2},
                      ReplyCase{"e", L"e", false, 2}, ReplyCase{"aK", L"aK", true, 2},
                      ReplyCase{"kx", L"kx", true, 2}, ReplyCase{"KK", L"KK", true, 2},
                      ReplyCase{"Kk", L"Kk", false, 2}, ReplyCase{"ek", L"ek", false, 2},
                      ReplyCase{"abK", L"abK", false, 2},
                      ReplyCase{"Kylla", L"kyll\u00E4", true, 2},
                      ReplyCase{"Long", std::wstring(131, L'x'), false, 2},
                      ReplyCase{"Empty", L"", false, 1},
                      ReplyCase{"Cancelled", std::nullopt, false, 1}),
    [](const auto& tested) { return tested.param.name; });

// --- Prompts and the order of things.

class Command : public CommandTest {};

TEST_F(Command, IsRegisteredAsAModalCommandOfItsGroup) {
    Open(Street());
    const AcEdCommand* const command =
        acedRegCmds->lookupCmd(L"ZEPTOrlinth", L"ZEPTAlignEntities", true);
    ASSERT_NE(command, nullptr);
    EXPECT_STREQ(command->groupName(), L"ZEPTOrlinth");
    EXPECT_STREQ(command->globalName(), L"ZEPTAlignEntities");
    EXPECT_STREQ(command->localName(), L"ZEPTAlignEntities");
    EXPECT_EQ(command->commandFlags(), ACRX_CMD_MODAL);
    EXPECT_EQ(command->UIContext(), nullptr);
}

TEST_F(Command, PromptsInFinnishInThisOrder) {
    Open(Street());
    Run("2F", all, L"e");
    const auto& prompts = scripted->prompts();
    ASSERT_EQ(prompts.size(), 3u);
    EXPECT_EQ(prompts[0].function, "acedEntSel");
    EXPECT_EQ(prompts[0].text, L"\nValitse suunnan m\u00E4\u00E4r\u00E4\u00E4v\u00E4 viiva : ");
    EXPECT_EQ(prompts[1].function, "acedSSGet");
    EXPECT_EQ(prompts[1].mode, L"");
    EXPECT_FALSE(prompts[1].hasPoint);
    EXPECT_FALSE(prompts[1].hasFilter);
    EXPECT_EQ(prompts[2].function, "acedGetString");
    EXPECT_EQ(prompts[2].text,
              L"\nK\u00E4\u00E4nnet\u00E4\u00E4nk\u00F6 symboleja 180 astetta k/<e> : ");
    EXPECT_EQ(prompts[2].withBlanks, 0);
    EXPECT_EQ(scripted->printed(), L"\nValitse suunnattavat kohteet : ");
}

TEST_F(Command, GivesTheFocusToTheHostsWindowBeforeThePick) {
    Open(Street());
    Run("2F", all, L"e");
    ASSERT_FALSE(scripted->prompts().empty());
    EXPECT_EQ(scripted->prompts()[0].focus, static_cast<void*>(acedGetAcadFrame()->GetSafeHwnd()));
}

TEST_F(Command, FlashesThePickedLineInColourSix) {
    Open(Street());
    Run("2F", all, L"e");
    ASSERT_EQ(scripted->lines().size(), bend.size() - 1);
    for (const auto& line : scripted->lines()) {
        EXPECT_EQ(line.colour, 6);
        EXPECT_EQ(line.highlight, 0);
    }
}

TEST_F(Command, TurnsOnceBeforeTheQuestionAndOnceAfterIt) {
    Open(Street());
    host::fault::disarm();
    Run("2F", all, L"k");
    const std::vector<std::string> calls = host::fault::names();
    const auto question = std::find(calls.begin(), calls.end(), "acedGetString");
    ASSERT_NE(question, calls.end());
    EXPECT_EQ(std::count(calls.begin(), question, "AcDbText::setRotation"), 4);
    EXPECT_EQ(std::count(question, calls.end(), "AcDbText::setRotation"), 4);
}

// Open for read, upgrade, turn, close: one close for each opening, and nothing open in between.
TEST_F(Command, OpensUpgradesTurnsAndClosesOneEntityAfterAnother) {
    Open(Street());
    host::fault::disarm();
    Run("2F", {"A0", "2F", "B0"}, L"");
    const std::vector<std::string> calls = host::fault::names();
    const auto freed = std::find(calls.begin(), calls.end(), "acedSSFree");
    ASSERT_NE(freed, calls.end());
    EXPECT_EQ(std::vector<std::string>(freed + 1, calls.end()),
              (std::vector<std::string>{
                  "acdbOpenAcDbEntity", "AcDbObject::upgradeOpen", "AcDbText::setRotation",
                  "AcDbObject::close", "acdbOpenAcDbEntity", "AcDbObject::close",
                  "acdbOpenAcDbEntity", "AcDbObject::upgradeOpen",
                  "AcDbBlockReference::setRotation", "AcDbObject::close", "acedGetString"}));
}

TEST_F(Command, IsOneUndoStepThatRestoresEveryByte) {
    Open(Street());
    EXPECT_EQ(Saved(), original);
    Run("2F", all, L"k");
    const std::string turned = Saved();
    EXPECT_NE(turned, original);
    EXPECT_EQ(session.undo(), 1);
    EXPECT_EQ(Saved(), original);
    EXPECT_EQ(session.redo(), 1);
    EXPECT_EQ(Saved(), turned);
}

TEST_F(Command, RunTwiceGivesTheSameRotations) {
    Open(Street());
    Run("2F", all, L"k");
    const std::string once = Saved();
    Run("2F", all, L"k");
    EXPECT_EQ(Saved(), once);
    Run("2F", all, L"e");
    EXPECT_EQ(Rotation("B1"), SymbolRotation(bend, symbolPlaces[1], false));
}

// --- Which point of a text counts.

class Justified : public CommandTest, public ::testing::WithParamInterface<std::tuple<int, int>> {};

TEST_P(Justified, TextIsMeasuredFromWhereItHangs) {
    const auto [horizontal, vertical] = GetParam();
    // The insertion point is near the first segment, the alignment point near the third.
    const Vertex insertion{20, 5}, alignment{150, 120};
    DrawingText drawing;
    drawing.LightPolyline("2F", bend);
    drawing.Text("A0", insertion, {horizontal, vertical}, alignment);
    Open(drawing);
    Run("2F", {"A0"}, L"e");
    const bool byInsertion =
        vertical == 0 && (horizontal == 0 || horizontal == 3 || horizontal == 5);
    ASSERT_NE(TextRotation(bend, insertion), TextRotation(bend, alignment));
    EXPECT_EQ(Rotation("A0"), TextRotation(bend, byInsertion ? insertion : alignment));
}

INSTANTIATE_TEST_SUITE_P(Text, Justified,
                         ::testing::Combine(::testing::Range(0, 6), ::testing::Range(0, 4)),
                         [](const auto& tested) {
                             return "Horizontal" + std::to_string(std::get<0>(tested.param)) +
                                    "Vertical" + std::to_string(std::get<1>(tested.param));
                         });

// --- Directions.

struct DirectionCase {
    const char* name;
    Vertex end;
    double text;
    double symbol;
};

std::ostream& operator<<(std::ostream& out, const DirectionCase& tested) {
    return out << tested.name;
}

class Direction : public CommandTest, public ::testing::WithParamInterface<DirectionCase> {};

TEST_P(Direction, OfALineAlongAnAxisGivesTheseExactRotations) {
    DrawingText drawing;
    drawing.Line("2F", {0, 0}, GetParam().end);
    drawing.Text("A0", {1, 1});
    drawing.Insert("B0", {1, 1});
    Open(drawing);
    Run("2F", {"A0", "B0"}, L"");
    EXPECT_EQ(Rotation("A0"), GetParam().text);
    EXPECT_EQ(Rotation("B0"), GetParam().symbol);
    Run("2F", {"A0", "B0"}, L"k");
    EXPECT_EQ(Rotation("A0"), GetParam().text);
    EXPECT_EQ(Rotation("B0"), GetParam().symbol + 3.14159);
}

INSTANTIATE_TEST_SUITE_P(
    Command, Direction,
    ::testing::Values(DirectionCase{"East", {100, 0}, 6.283182653589793, 3.141592653589793},
                      DirectionCase{"West", {-100, 0}, 0.0, 0.0},
                      // 4.712403... lies above the upper limit of 4.7124: not turned over.
                      DirectionCase{"North", {0, 100}, 4.712403673205103, -1.5707963267948966},
                      // 1.570796... lies below the lower limit of 1.5708.
                      DirectionCase{"South", {0, -100}, 1.5707963267948966, 1.5707963267948966}),
    [](const auto& tested) { return tested.param.name; });

// All around in half degrees, the upright rule included; rotations up to 7.854 come out unreduced.
TEST_F(Command, AllDirectionsAgreeWithThePlainCalculation) {
    DrawingText drawing;
    std::vector<std::vector<Vertex>> lines;
    for (int i = 0; i < 720; i += 5) {
        const double angle = i * 3.141592653589793 / 360.0;
        lines.push_back({{0, 0}, {1000 * std::cos(angle), 1000 * std::sin(angle)}});
        drawing.Line("C" + std::to_string(i), lines.back()[0], lines.back()[1]);
    }
    drawing.Text("A0", {3, 4});
    drawing.Insert("B0", {3, 4});
    Open(drawing);
    double largest = 0.0;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        Run("C" + std::to_string(i * 5), {"A0", "B0"}, L"k");
        ASSERT_EQ(Rotation("A0"), TextRotation(lines[i], {3, 4})) << i;
        ASSERT_EQ(Rotation("B0"), SymbolRotation(lines[i], {3, 4}, true)) << i;
        largest = std::max(largest, Rotation("A0"));
    }
    EXPECT_GT(largest, 7.8);
    EXPECT_LT(largest, 7.854);
}

// A line from the origin whose text angle, before the upright rule, is exactly this one.
std::vector<Vertex> LineOfTextAngle(double angle) {
    double reversed = angle > 3.2 ? angle - 6.2832 : angle;
    for (int i = 0; i < 8 && angle > 3.2 && reversed + 6.2832 != angle; ++i) {
        reversed = std::nextafter(reversed, reversed + 6.2832 < angle ? 0.0 : -2.0);
    }
    std::vector<Vertex> line{{0, 0}, {-1000 * std::cos(reversed), -1000 * std::sin(reversed)}};
    for (int i = 0; i < 1000 && PlainAngle(line, {}) != reversed; ++i) {
        const bool turnLeft = PlainAngle(line, {}) < reversed;
        line[1].x += (turnLeft == (reversed > 0) ? 1e-14 : -1e-14);
    }
    return line;
}

TEST_F(Command, TextsAreTurnedOverStrictlyBetweenTheLimitsAndNotAtThem) {
    struct Case {
        double angle;
        bool turned;
    };
    const std::vector<Case> cases{{std::nextafter(1.5708, 0.0), false},
                                  {1.5708, false},
                                  {std::nextafter(1.5708, 9.0), true},
                                  {std::nextafter(4.7124, 0.0), true},
                                  {4.7124, false},
                                  {std::nextafter(4.7124, 9.0), false}};
    DrawingText drawing;
    for (std::size_t i = 0; i < cases.size(); ++i) {
        const std::vector<Vertex> line = LineOfTextAngle(cases[i].angle);
        const double plain = PlainAngle(line, {});
        ASSERT_EQ(plain < 0.0 ? plain + 6.2832 : plain, cases[i].angle) << i;
        drawing.Line("C" + std::to_string(i), line[0], line[1]);
    }
    drawing.Text("A0", {0, 0});
    Open(drawing);
    for (std::size_t i = 0; i < cases.size(); ++i) {
        Run("C" + std::to_string(i), {"A0"}, L"");
        EXPECT_EQ(Rotation("A0"), cases[i].angle + (cases[i].turned ? 3.14159 : 0.0)) << i;
    }
}

TEST_F(Command, EntityAtTheCornerOf15And7FollowsTheSegmentBefore) {
    DrawingText drawing;
    drawing.LightPolyline("2F", {{0, 0}, {15, 0}, {15, 7}});
    drawing.Text("A0", {16, 5});
    drawing.Insert("B0", {16, 5});
    Open(drawing);
    Run("2F", {"A0", "B0"}, L"");
    EXPECT_EQ(Rotation("A0"), 6.283182653589793);
    EXPECT_EQ(Rotation("B0"), 3.141592653589793);
}

TEST_F(Command, APointOrALineWithoutLengthGivesJustBelowAFullTurn) {
    DrawingText drawing;
    drawing.PointEntity("2F", {5, 5});
    drawing.Line("3F", {5, 5}, {5, 5});
    drawing.Text("A0", {3, 4});
    drawing.Insert("B0", {3, 4});
    Open(drawing);
    for (const char* line : {"2F", "3F"}) {
        Run(line, {"A0", "B0"}, L"");
        EXPECT_EQ(Rotation("A0"), 6.283185307179585) << line;
        EXPECT_EQ(Rotation("B0"), 6.283185307179585) << line;
        Run(line, {"A0", "B0"}, L"k");
        EXPECT_EQ(Rotation("A0"), 6.283185307179585) << line;
        EXPECT_EQ(Rotation("B0"), 6.283185307179585 + 3.14159) << line;
    }
}

TEST_F(Command, SlopingAndVerticalSegmentsCountInSpace) {
    const std::vector<Vertex> ramp{{0, 0, 0}, {30, 0, 40}, {30, 0, 90}, {30, 60, 90}};
    DrawingText drawing;
    drawing.Polyline3d("E0", ramp);
    const std::vector<Vertex> places{{10, 2, 0}, {28, -3, 60}, {33, 30, 500}};
    for (std::size_t i = 0; i < places.size(); ++i) {
        drawing.Text(texts[i], places[i]);
        drawing.Insert(symbols[i], places[i]);
    }
    drawing.Polyline3d("F0", {{200, 0, 0}, {200, 0, 50}});  // straight up
    Open(drawing);
    Run("E0", {"A0", "B0", "A1", "B1", "A2", "B2"}, L"k");
    for (std::size_t i = 0; i < places.size(); ++i) {
        EXPECT_EQ(Rotation(texts[i]), TextRotation(ramp, places[i])) << i;
        EXPECT_EQ(Rotation(symbols[i]), SymbolRotation(ramp, places[i], true)) << i;
    }
    Run("F0", {"A0", "B0"}, L"");
    EXPECT_EQ(Rotation("A0"), 0.0);
    EXPECT_EQ(Rotation("B0"), 0.0);
}

TEST_F(Command, ClosedLightPolylineEndsWithItsClosingSegment) {
    DrawingText closed;
    closed.LightPolyline("2F", {{0, 0}, {80, 0}, {80, 80}, {0, 80}}, /*closed=*/true);
    closed.Text("A0", {-5, 40});
    Open(closed);
    Run("2F", {"A0"}, L"");
    EXPECT_EQ(Rotation("A0"), 1.5707963267948966);
}

TEST_F(Command, FarFromTheOriginTheSameBits) {
    std::vector<Vertex> moved;
    for (const Vertex& vertex : bend) moved.push_back({25496000 + vertex.x, 6672000 + vertex.y, 0});
    DrawingText drawing;
    drawing.LightPolyline("2F", moved);
    for (std::size_t i = 0; i < 4; ++i) {
        drawing.Text(texts[i], {25496000 + textPlaces[i].x, 6672000 + textPlaces[i].y});
        drawing.Insert(symbols[i], {25496000 + symbolPlaces[i].x, 6672000 + symbolPlaces[i].y});
    }
    Open(drawing);
    Run("2F", all, L"k");
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(Rotation(texts[i]),
                  TextRotation(moved, {25496000 + textPlaces[i].x, 6672000 + textPlaces[i].y}));
        EXPECT_EQ(Rotation(symbols[i]),
                  SymbolRotation(moved, {25496000 + symbolPlaces[i].x, 6672000 + symbolPlaces[i].y},
                                 true));
    }
}

// --- Entities in planes of their own: the point is taken in the world, the rotation set as it is.

// The world's place of a point in the plane with this normal (the arbitrary axis rule).
Vertex ToWorld(Vertex normal, Vertex own) {
    const double length =
        std::sqrt(normal.x * normal.x + normal.y * normal.y + normal.z * normal.z);
    const Vertex n{normal.x / length, normal.y / length, normal.z / length};
    const bool nearPole = std::fabs(n.x) < 1.0 / 64 && std::fabs(n.y) < 1.0 / 64;
    Vertex ax =
        nearPole ? Vertex{n.z, 0, -n.x} : Vertex{-n.y, n.x, 0};  // y axis or z axis, crossed with n
    const double axLength = std::sqrt(ax.x * ax.x + ax.y * ax.y + ax.z * ax.z);
    ax = {ax.x / axLength, ax.y / axLength, ax.z / axLength};
    const Vertex ay{n.y * ax.z - n.z * ax.y, n.z * ax.x - n.x * ax.z, n.x * ax.y - n.y * ax.x};
    return {own.x * ax.x + own.y * ay.x + own.z * n.x, own.x * ax.y + own.y * ay.y + own.z * n.y,
            own.x * ax.z + own.y * ay.z + own.z * n.z};
}

class Extruded : public CommandTest, public ::testing::WithParamInterface<Vertex> {};

TEST_P(Extruded, EntityIsMeasuredInTheWorld) {
    const Vertex normal = GetParam();
    const DrawingText::Groups extrusion{{210, DrawingText::Number(normal.x)},
                                        {220, DrawingText::Number(normal.y)},
                                        {230, DrawingText::Number(normal.z)}};
    DrawingText drawing;
    drawing.LightPolyline("2F", bend);
    const std::vector<Vertex> own{{-20, 5, 3}, {-150, 120, -2}, {130, 100, 0}};
    for (std::size_t i = 0; i < own.size(); ++i) {
        drawing.Text(texts[i], {}, {1, 2}, own[i], extrusion);
        drawing.Insert(symbols[i], own[i], extrusion);
    }
    Open(drawing);
    Run("2F", {"A0", "A1", "A2", "B0", "B1", "B2"}, L"k");
    for (std::size_t i = 0; i < own.size(); ++i) {
        const Vertex world = ToWorld(normal, own[i]);
        EXPECT_EQ(Rotation(texts[i]), TextRotation(bend, world)) << i;
        EXPECT_EQ(Rotation(symbols[i]), SymbolRotation(bend, world, true)) << i;
    }
}

INSTANTIATE_TEST_SUITE_P(Entity, Extruded,
                         ::testing::Values(Vertex{0, 0, -1}, Vertex{0, 0, 1}, Vertex{0.6, 0.0, 0.8},
                                           Vertex{1, 1, 1}, Vertex{-0.01, 0.005, 1}),
                         [](const auto& tested) {
                             return "Normal" + std::to_string(tested.index);
                         });

// --- What is left as it is.

TEST_F(Command, OtherClassesAndDerivedOnesStayAsTheyAre) {
    DrawingText drawing = Street();
    drawing.Insert("B8", {60, -8}, {{70, "2"}, {71, "2"}, {44, "5.0"}, {45, "5.0"}});
    drawing.Insert("B9", {60, -8}, {{70, "2"}, {44, "5.0"}});
    drawing.Insert("BA", {60, -8}, {{71, "3"}, {45, "5.0"}});
    drawing.AttributeDefinition("D0", {20, 5});
    drawing.MText("D1", {20, 5});
    drawing.Line("D2", {0, 0}, {1, 1});
    drawing.Circle("D3", {0, 0}, 5);
    Open(drawing);
    EXPECT_EQ(Run("2F", {"B8", "B9", "BA", "D0", "D1", "D2", "D3", "2F"}, L"k").end, End::done);
    EXPECT_EQ(Saved(), original);
}

TEST_F(Command, AReferenceWithOneRowAndOneColumnIsTurned) {
    DrawingText drawing = Street();
    drawing.Insert("B8", {60, -8}, {{70, "1"}, {71, "1"}});
    Open(drawing);
    Run("2F", {"B8"}, L"");
    EXPECT_EQ(Rotation("B8"), SymbolRotation(bend, {60, -8}, false));
}

TEST_F(Command, LockedLayersAreLeftAndFrozenOnesTurned) {
    DrawingText drawing = Street();
    drawing.Layer("LUKITTU", 4);
    drawing.Layer("JAASSA", 1);
    drawing.Text("A8", {125, 30}, {}, {}, {}, "LUKITTU");
    drawing.Insert("B8", {110, 30}, {}, "LUKITTU");
    drawing.Text("A9", {125, 30}, {}, {}, {}, "JAASSA");
    drawing.Insert("B9", {110, 30}, {}, "JAASSA");
    Open(drawing);
    Run("2F", {"A8", "B8", "A9", "B9", "A1"}, L"k");
    EXPECT_EQ(Rotation("A8"), 0.0);
    EXPECT_EQ(Rotation("B8"), 0.0);
    EXPECT_EQ(Rotation("A9"), TextRotation(bend, {125, 30}));
    EXPECT_EQ(Rotation("B9"), SymbolRotation(bend, {110, 30}, true));
    EXPECT_EQ(Rotation("A1"), TextRotation(bend, textPlaces[1]));
}

TEST_F(Command, AnEntitySelectedTwiceIsTurnedTwiceWithTheSameValue) {
    Open(Street());
    host::fault::disarm();
    Run("2F", {"A1", "B1", "A1", "B1"}, L"k");
    EXPECT_EQ(CountOf(host::fault::names(), "AcDbText::setRotation"), 4);
    EXPECT_EQ(Rotation("A1"), TextRotation(bend, textPlaces[1]));
    EXPECT_EQ(Rotation("B1"), SymbolRotation(bend, symbolPlaces[1], true));
}

TEST_F(Command, ASelectionOfLinesAloneAsksAndChangesNothing) {
    Open(Street());
    EXPECT_EQ(Run("2F", {"2F"}, L"k").end, End::done);
    EXPECT_EQ(scripted->prompts().size(), 3u);
    EXPECT_EQ(Saved(), original);
}

TEST_F(Command, ErasedEntitiesAreSkipped) {
    Open(Street());
    AcDbEntity* entity = nullptr;
    ASSERT_EQ(acdbOpenAcDbEntity(entity, Id("A1"), AcDb::kForWrite), Acad::eOk);
    EXPECT_EQ(entity->erase(), Acad::eOk);
    EXPECT_EQ(entity->close(), Acad::eOk);
    EXPECT_EQ(Run("2F", {"A1", "A2"}, L"e").end, End::done);
    EXPECT_EQ(Rotation("A2"), TextRotation(bend, textPlaces[2]));
    EXPECT_EQ(acdbOpenAcDbEntity(entity, Id("A1"), AcDb::kForRead), Acad::eWasErased);
}

TEST_F(Command, EntitiesOpenElsewhereAreSkippedAndNotClosed) {
    Open(Street());
    AcDbEntity* text = nullptr;
    AcDbEntity* symbol = nullptr;
    AcDbEntity* written = nullptr;
    ASSERT_EQ(acdbOpenAcDbEntity(text, Id("A0"), AcDb::kForRead), Acad::eOk);
    ASSERT_EQ(acdbOpenAcDbEntity(symbol, Id("B0"), AcDb::kForRead), Acad::eOk);
    ASSERT_EQ(acdbOpenAcDbEntity(written, Id("A1"), AcDb::kForWrite), Acad::eOk);
    scripted->pick(Id("2F"));
    scripted->select(Ids({"A0", "B0", "A1", "A2"}));
    scripted->type(L"k");
    session.runCommand(L"ZEPTAlignEntities");
    EXPECT_EQ(text->close(), Acad::eOk);
    EXPECT_EQ(symbol->close(), Acad::eOk);
    EXPECT_EQ(written->close(), Acad::eOk);
    EXPECT_EQ(Rotation("A0"), 0.0);
    EXPECT_EQ(Rotation("B0"), 0.0);
    EXPECT_EQ(Rotation("A1"), 0.0);
    EXPECT_EQ(Rotation("A2"), TextRotation(bend, textPlaces[2]));
}

// --- Ways to end early.

TEST_F(Command, EndsSilentlyWhenThePickIsCancelledOrMisses) {
    for (int code : {RTCAN, RTERROR, RTNONE, RTREJ}) {
        Open(Street());
        scripted->failPick(code);
        session.runCommand(L"ZEPTAlignEntities");
        EXPECT_EQ(scripted->prompts().size(), 1u) << "one pick, no retry, after " << code;
        EXPECT_EQ(scripted->printed(), L"");
        EXPECT_EQ(Saved(), original);
    }
}

TEST_F(Command, EndsSilentlyWhenThePickCannotBeReadAsALine) {
    DrawingText drawing = Street();
    drawing.MText("D3", {0, 0});
    Open(drawing);
    for (const char* handle : {"A0", "B0", "D3"}) {
        scripted->forget();
        scripted->pick(Id(handle));
        session.runCommand(L"ZEPTAlignEntities");
        EXPECT_EQ(scripted->prompts().size(), 1u) << handle;
        EXPECT_TRUE(scripted->lines().empty()) << "nothing flashes";
        EXPECT_EQ(scripted->printed(), L"");
    }
    scripted->forget();
    scripted->pickStaleName();
    session.runCommand(L"ZEPTAlignEntities");
    EXPECT_EQ(scripted->prompts().size(), 1u);
    EXPECT_EQ(Saved(), original);
}

TEST_F(Command, EndsSilentlyWhenNothingIsSelected) {
    for (int code : {RTCAN, RTERROR, RTNONE}) {
        Open(Street());
        scripted->pick(Id("2F"));
        scripted->failSelect(code);
        session.runCommand(L"ZEPTAlignEntities");
        EXPECT_EQ(scripted->prompts().size(), 2u) << code;
        EXPECT_EQ(scripted->printed(), L"\nValitse suunnattavat kohteet : ");
        EXPECT_EQ(Saved(), original);
    }
}

TEST_F(Command, EndsWithTheSetFreedWhenItsLengthIsRefused) {
    Open(Street());
    scripted->pick(Id("2F"));
    scripted->refuseLength();
    scripted->select(Ids(all));
    session.runCommand(L"ZEPTAlignEntities");
    EXPECT_EQ(scripted->prompts().size(), 2u);
    EXPECT_EQ(Saved(), original);
}

TEST_F(Command, AMemberWithoutANameIsLeftOutAndTheOthersTurned) {
    Open(Street());
    scripted->refuseMember(1);
    EXPECT_EQ(Run("2F", {"A0", "B0", "A1"}, L"k").end, End::done);
    EXPECT_EQ(Rotation("A0"), TextRotation(bend, textPlaces[0]));
    EXPECT_EQ(Rotation("B0"), 0.0);
    EXPECT_EQ(Rotation("A1"), TextRotation(bend, textPlaces[1]));
}

TEST_F(Command, AsksEvenWhenTheOnlyMemberHasNoName) {
    Open(Street());
    scripted->refuseMember(0);
    EXPECT_EQ(Run("2F", {"A0"}, L"k").end, End::done);
    EXPECT_EQ(scripted->prompts().size(), 3u);
    EXPECT_EQ(Saved(), original);
}

}  // namespace
