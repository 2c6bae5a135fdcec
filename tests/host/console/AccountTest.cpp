// What is told of a session's commands: the program's own account, kept while the module really
// runs, against the command's own computation and a plain search for the nearest segment.
#include "host/console/Account.h"

#include <dbents.h>
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "app/AlignPolyLine.h"
#include "host/database/Drawing.h"
#include "host/database/Fault.h"
#include "host/editor/Script.h"
#include "host/editor/Session.h"
#include "host/editor/Words.h"
#include "tests/host/support/DrawingText.h"
#include "tests/host/support/LedgerListener.h"

namespace {

using namespace host;
using console::Account;
using console::CommandRun;
using console::LeftEntity;
using console::Reason;
using console::TurnedEntity;
using test::DrawingText;

// A street of two legs, 0,0 - 100,0 - 100,80, a line of three points beside it, and around it
// whatever can be selected.
DrawingText town() {
    DrawingText drawing;
    drawing.layer("0").layer("street").layer("locked", 4).layer("frozen", 1);
    drawing.block("SIGN", {"LINE|8 0|10 0|20 0|11 1|21 0"});
    drawing.entity(
        "LWPOLYLINE|5 10|8 street|100 AcDbEntity|100 AcDbPolyline|90 3|70 0|10 0.0|"
        "20 0.0|10 100.0|20 0.0|10 100.0|20 80.0");
    drawing.entity("TEXT|5 20|8 street|10 10.0|20 2.0|30 0.0|40 2.0|1 Kauppakatu|50 15.0");
    drawing.entity(
        "TEXT|5 21|8 street|10 90.0|20 40.0|30 5.0|40 2.0|1 Torikatu|72 1|11 96.0|"
        "21 41.0|31 5.0|73 2");
    drawing.entity("INSERT|5 22|8 street|2 SIGN|10 50.0|20 -3.0|30 0.0");
    drawing.entity("INSERT|5 23|8 street|2 SIGN|10 60.0|20 -3.0|30 0.0|70 2|71 3|44 5.0|45 5.0");
    drawing.entity("ATTDEF|5 24|8 street|10 60.0|20 8.0|30 0.0|40 2.0|1 x|3 Number?|2 NUMBER|70 0");
    drawing.entity("MTEXT|5 25|8 street|10 20.0|20 9.0|30 0.0|40 2.0|71 1|1 Two\\Plines");
    drawing.entity("TEXT|5 26|8 locked|10 10.0|20 12.0|30 0.0|40 2.0|1 Kept");
    drawing.entity("LINE|5 27|8 locked|10 0.0|20 30.0|11 9.0|21 30.0");
    drawing.entity("TEXT|5 28|8 street|10 NaN|20 12.0|30 0.0|40 2.0|1 Nowhere");
    return drawing;
}

class SilentOutput : public editor::Output {
  public:
    void print(std::wstring_view) override {}
    void prompt(std::wstring_view) override {}
    void reply(const editor::Reply&) override {}
    void error(std::wstring_view) override {}
};

class AccountOf : public testing::Test {
  protected:
    // Runs the replies as a script over the drawing, with the command's module and the probe.
    void play(const DrawingText& drawing, const std::wstring& replies) {
        session_.reset();
        account_.forget();
        input_ = std::make_unique<editor::ScriptInput>(replies, L"run.scr");
        session_ = std::make_unique<editor::Session>(*input_, output_);
        session_->onCommandEnded([this](editor::CommandResult& result) {
            account_.hear(*session_, result);
            if (listener_) listener_();
        });
        session_->addHostCommand({L"U", {}, L"", false, [](editor::Session& s) { s.undo(); }});
        session_->addHostCommand({L"REDO", {}, L"", false, [](editor::Session& s) { s.redo(); }});
        session_->addHostCommand({L"INNER", {}, L"", false, [this](editor::Session& s) {
                                      s.runScript(inner_, L"inner.scr");
                                  }});
        const std::filesystem::path modules(ORLINTH_BIN_DIR);
        session_->loadModule(modules / "ZEPTOrlinth.arx");
        session_->loadModule(modules / "ConsoleProbe.arx");
        session_->useDrawing(drawing.database());
        session_->run();
    }

    console::Record record() const { return account_.record(*session_->drawing()); }

    // The only run, by value.
    CommandRun only() const {
        const console::Record all = record();
        EXPECT_EQ(all.runs.size(), 1U);
        return all.runs.empty() ? CommandRun() : all.runs.front();
    }

    Account account_;
    SilentOutput output_;
    std::unique_ptr<editor::Input> input_;
    std::function<void()> listener_;
    std::wstring inner_;  // what the command INNER runs as a script
    std::unique_ptr<editor::Session> session_;
};

const LeftEntity* findLeft(const CommandRun& run, const std::string& handle) {
    for (const LeftEntity& left : run.left)
        if (left.handle == handle) return &left;
    return nullptr;
}

const TurnedEntity* findTurned(const CommandRun& run, const std::string& handle) {
    for (const TurnedEntity& turned : run.turned)
        if (turned.handle == handle) return &turned;
    return nullptr;
}

constexpr const wchar_t* alignAll = L"ZEPTAlignEntities\n(handent \"10\")\nALL\n\nk\n";
constexpr const wchar_t* alignEverything = L"ZEPTAlignEntities\n50,0.1\n(ssget \"X\")\n\n\n";

TEST_F(AccountOf, names_the_drawing_and_its_release) {
    play(town(), alignAll);
    EXPECT_EQ(record().release, "R2000");
    EXPECT_EQ(record().version, "AC1015");
    EXPECT_EQ(record().drawing, database::document(*session_->drawing()).name());
    play(DrawingText(""), L"");
    EXPECT_EQ(record().release, "");
    EXPECT_EQ(record().version, "");
}

TEST_F(AccountOf, tells_the_command_the_script_line_and_the_reply) {
    play(town(), std::wstring(L"; first\n") + alignAll);
    EXPECT_EQ(only().command, "ZEPTAlignEntities");
    EXPECT_EQ(only().where, "run.scr, line 2");
    EXPECT_EQ(only().end, editor::CommandResult::End::done);
    EXPECT_EQ(only().reply, "k");
    play(town(), alignEverything);
    EXPECT_EQ(only().reply, "");
}

TEST_F(AccountOf, tells_the_line_by_name_without_a_point) {
    play(town(), alignAll);
    ASSERT_TRUE(only().line);
    const console::PickedLine line = *only().line;
    EXPECT_EQ(line.handle, "10");
    EXPECT_EQ(line.className, "AcDbPolyline");
    EXPECT_EQ(line.type, "LWPOLYLINE");
    EXPECT_EQ(line.layer, "street");
    EXPECT_FALSE(line.point);
    ASSERT_EQ(line.vertices.size(), 3U);
    EXPECT_EQ(line.vertices[2].y, 80.0);
}

TEST_F(AccountOf, tells_where_the_line_was_picked) {
    play(town(), alignEverything);
    ASSERT_TRUE(only().line && only().line->point);
    EXPECT_EQ(only().line->point->x, 50.0);
    EXPECT_EQ(only().line->point->y, 0.1);
}

TEST_F(AccountOf, tells_what_was_turned_in_the_order_of_the_selection) {
    play(town(), alignAll);
    const CommandRun run = only();
    ASSERT_EQ(run.turned.size(), 3U);
    const TurnedEntity& text = run.turned[0];
    EXPECT_EQ(text.handle, "20");
    EXPECT_EQ(text.className, "AcDbText");
    EXPECT_EQ(text.type, "TEXT");
    EXPECT_EQ(text.layer, "street");
    EXPECT_EQ(text.wording, "Kauppakatu");
    EXPECT_EQ(text.before.degrees, 15.0);
    EXPECT_EQ(text.segment, 0);
    EXPECT_EQ(text.distance, 2.0);
    EXPECT_EQ(run.turned[1].handle, "21");
    EXPECT_EQ(run.turned[1].segment, 1);
    EXPECT_EQ(run.turned[1].distance, 4.0);  // from the alignment point
    EXPECT_EQ(run.turned[2].wording, "SIGN");
    EXPECT_EQ(run.turned[2].type, "INSERT");
    EXPECT_EQ(run.otherChanges, 0U);
}

TEST_F(AccountOf, an_insertion_moves_about_its_alignment_point_only) {
    play(town(), alignAll);
    const CommandRun run = only();
    EXPECT_EQ(run.turned[0].before.insertion.x, run.turned[0].after.insertion.x);
    const TurnedEntity& centred = run.turned[1];
    EXPECT_EQ(centred.before.insertion.x, 90.0);
    // Down the street: a quarter turn of (-6, -1) about (96, 41).
    EXPECT_NEAR(centred.after.insertion.x, 95.0, 1e-3);
    EXPECT_NEAR(centred.after.insertion.y, 47.0, 1e-3);
    EXPECT_EQ(centred.after.insertion.z, 5.0);
    EXPECT_EQ(centred.hangsAt.x, 96.0);
}

TEST_F(AccountOf, gives_a_reason_for_each_entity_that_was_left) {
    play(town(), alignEverything);
    const CommandRun run = only();
    EXPECT_EQ(run.selected, 10U);
    EXPECT_EQ(run.turned.size() + run.left.size(), run.selected);
    const std::vector<std::pair<std::string, Reason>> reasons = {
        {"10", Reason::classNotTurned},      {"23", Reason::arrayInsert},
        {"24", Reason::attributeDefinition}, {"25", Reason::classNotTurned},
        {"26", Reason::lockedLayer},  // a line on a locked layer would be left on any other too
        {"27", Reason::classNotTurned},      {"28", Reason::notOpened}};
    ASSERT_EQ(run.left.size(), reasons.size());
    for (const auto& [handle, reason] : reasons) {
        const LeftEntity* const left = findLeft(run, handle);
        ASSERT_NE(left, nullptr) << handle;
        EXPECT_EQ(left->reason, reason) << handle;
        EXPECT_TRUE(left->selected);
    }
    EXPECT_EQ(findLeft(run, "24")->wording, "NUMBER");
    EXPECT_EQ(findLeft(run, "25")->className, "AcDbMText");
    EXPECT_EQ(findLeft(run, "25")->wording, "Two\\Plines");
    EXPECT_EQ(findLeft(run, "23")->wording, "SIGN");
    EXPECT_NE(findLeft(run, "28")->detail.find("NaN"), std::string::npos)
        << findLeft(run, "28")->detail;
}

TEST_F(AccountOf, a_sentence_tells_what_a_run_came_to) {
    play(town(), alignAll);
    const std::string sentence = sentenceOf(only());
    EXPECT_EQ(sentence, outcomeOf(only()).textWithReasons() + ".");
    EXPECT_EQ(sentence.find(std::to_string(only().turned.size()) + " turned"), 0U) << sentence;
}

TEST_F(AccountOf, a_sentence_names_the_classes_where_nothing_was_turned) {
    play(town(),
         L"ZEPTAlignEntities\n50,0.1\n(handent \"25\") (handent \"26\")\n"
         L"(handent \"10\") (handent \"24\")\n\n\n");
    EXPECT_EQ(sentenceOf(only()),
              "Nothing was turned; 4 left: 1 locked layer, 1 attribute definition, 2 class not "
              "turned (1 LWPOLYLINE, 1 MTEXT).");
}

TEST_F(AccountOf, tells_what_a_selection_left_out_on_locked_layers) {
    play(town(), alignAll);
    const CommandRun run = only();
    EXPECT_EQ(run.selected, 8U);
    for (const char* handle : {"26", "27"}) {
        const LeftEntity* const left = findLeft(run, handle);
        ASSERT_NE(left, nullptr) << handle;
        EXPECT_EQ(left->reason, Reason::lockedLayer);
        EXPECT_FALSE(left->selected);
    }
}

TEST_F(AccountOf, what_is_selected_all_the_same_was_not_left_out) {
    play(town(), L"ZEPTAlignEntities\n(handent \"10\")\nALL\n(handent \"26\")\nALL\n\n\n");
    const CommandRun run = only();
    EXPECT_EQ(run.selected, 9U);
    EXPECT_TRUE(findLeft(run, "26")->selected);
    EXPECT_FALSE(findLeft(run, "27")->selected);
    EXPECT_EQ(run.turned.size() + run.left.size(), 10U);
}

TEST_F(AccountOf, an_entity_that_does_not_open_was_left) {
    for (const char* call : {"acdbOpenAcDbEntity", "AcDbObject::upgradeOpen"}) {
        const bool opening = std::string(call) == "acdbOpenAcDbEntity";
        // Both passes: an entity that opens in one of them is turned.
        fault::arm(call, 1, static_cast<int>(Acad::eOutOfMemory));
        play(town(), L"ZEPTAlignEntities\n(handent \"10\")\n(handent \"20\")\n\n\n");
        ASSERT_TRUE(fault::fired());
        fault::disarm();
        const CommandRun run = only();
        ASSERT_EQ(run.left.size(), 1U) << opening;
        EXPECT_EQ(run.left[0].reason, Reason::notOpened);
        EXPECT_TRUE(run.turned.empty());
    }
}

TEST_F(AccountOf, an_erased_entity_was_left) {
    // The set is made, then one of its members erased before the command looks at it.
    listener_ = [this] {
        AcDbEntity* text = nullptr;
        const AcDbObjectId id = database::idFromHandle(*session_->drawing(), L"20");
        if (id.isErased() || acdbOpenAcDbEntity(text, id, AcDb::kForWrite) != Acad::eOk) return;
        text->erase();
        text->close();
    };
    play(town(), L"PROBETURN\n(handent \"21\")\n");
    editor::CommandResult result;
    result.name = L"ZEPTAlignEntities";
    editor::PromptRecord selection;
    selection.kind = editor::PromptRecord::Kind::selection;
    selection.code = 5100;
    selection.entities = {database::idFromHandle(*session_->drawing(), L"20")};
    result.prompts = {selection};
    account_.forget();
    account_.hear(*session_, result);
    ASSERT_EQ(only().left.size(), 1U);
    EXPECT_EQ(only().left[0].reason, Reason::erased);
    EXPECT_EQ(only().left[0].wording, "Kauppakatu");
}

TEST_F(AccountOf, a_class_derived_from_a_turned_one_is_not_turned) {
    play(town(), alignEverything);
    EXPECT_EQ(findTurned(only(), "23"), nullptr);
    EXPECT_EQ(findTurned(only(), "24"), nullptr);
}

TEST_F(AccountOf, each_run_tells_its_own_angles) {
    play(town(),
         std::wstring(alignAll) + L"ZEPTAlignEntities\n(handent \"27\")\n(handent \"22\")\n\n\n");
    const console::Record all = record();
    ASSERT_EQ(all.runs.size(), 2U);
    const TurnedEntity* const first = findTurned(all.runs[0], "22");
    ASSERT_EQ(all.runs[1].turned.size(), 1U);
    const TurnedEntity& second = all.runs[1].turned[0];
    EXPECT_EQ(first->before.degrees, 0.0);
    EXPECT_EQ(second.before.degrees, first->after.degrees);
    EXPECT_NE(second.after.degrees, first->after.degrees);
}

TEST_F(AccountOf, in_the_end_each_entity_counts_once) {
    play(town(),
         std::wstring(alignAll) +
             L"ZEPTAlignEntities\n(handent \"27\")\n(handent \"22\")\n(handent \"25\")\n\n\n");
    const console::Record all = record();
    EXPECT_EQ(all.selected(), 10U);
    const console::Outcome outcome = all.outcome();
    EXPECT_EQ(outcome.text(), "3 turned, 7 left");
    EXPECT_EQ(console::outcomeOf(all.runs[0]).text(), "3 turned, 7 left");
    EXPECT_EQ(console::outcomeOf(all.runs[1]).text(), "1 turned, 1 left");
    for (const console::Outcome::Turned& turned : outcome.turned) {
        const bool twice = turned.first->handle == "22";
        EXPECT_EQ(turned.first != turned.last, twice);
        EXPECT_EQ(turned.last->after.degrees,
                  findTurned(all.runs[twice ? 1 : 0], turned.first->handle)->after.degrees);
    }
}

TEST_F(AccountOf, what_was_undone_is_not_told_as_turned) {
    play(town(), std::wstring(alignAll) + L"U\n");
    EXPECT_TRUE(only().takenBack);
    EXPECT_TRUE(only().turned.empty());
    EXPECT_TRUE(only().left.empty());
    EXPECT_EQ(record().outcome().counts().turned, 0U);
    EXPECT_EQ(record().selected(), 0U);
    play(town(), std::wstring(alignAll) + L"U\nREDO\n");
    EXPECT_FALSE(only().takenBack);
    EXPECT_EQ(only().turned.size(), 3U);
}

TEST_F(AccountOf, a_whole_script_that_was_undone_is_not_told_as_turned) {
    inner_ = std::wstring(alignAll) + L"PROBETURN\n(handent \"21\")\n";
    play(town(), L"INNER\n");
    EXPECT_EQ(record().outcome().counts().turned, 3U);
    EXPECT_EQ(session_->undo(), 1);
    EXPECT_EQ(record().outcome().counts().turned, 0U);
    for (const CommandRun& run : record().runs) EXPECT_TRUE(run.takenBack);
    EXPECT_EQ(session_->redo(), 1);
    EXPECT_EQ(record().outcome().counts().turned, 3U);
}

TEST_F(AccountOf, an_exception_takes_everything_back) {
    play(town(), L"PROBETHROW\n(handent \"20\")\n");
    EXPECT_EQ(only().end, editor::CommandResult::End::exceptionLeft);
    EXPECT_TRUE(only().takenBack);
    EXPECT_TRUE(only().turned.empty());
    EXPECT_NE(only().exception, "");
}

TEST_F(AccountOf, a_cancelled_question_leaves_what_was_turned_and_no_reply) {
    play(town(), L"ZEPTAlignEntities\n(handent \"10\")\n(handent \"20\")\n\n");
    EXPECT_EQ(only().end, editor::CommandResult::End::inputEnded);
    EXPECT_FALSE(only().reply);
    EXPECT_EQ(only().turned.size(), 1U);
}

TEST_F(AccountOf, a_pick_without_a_line_tells_no_more) {
    play(town(), L"ZEPTAlignEntities\n(handent \"20\")\n");
    ASSERT_TRUE(only().line);
    EXPECT_EQ(only().line->handle, "20");
    EXPECT_TRUE(only().line->vertices.empty());
    EXPECT_EQ(only().selected, 0U);
    play(town(), L"ZEPTAlignEntities\n-900,-900\n");
    EXPECT_FALSE(only().line);
}

TEST_F(AccountOf, what_was_turned_to_where_it_stood_is_counted_as_unchanged) {
    play(town(), std::wstring(alignAll) + alignAll);
    const console::Record all = record();
    EXPECT_EQ(console::outcomeOf(all.runs[1]).text(), "3 turned (3 stood so already), 7 left");
    EXPECT_EQ(all.outcome().text(), "3 turned, 7 left");  // since the drawing was read
}

TEST_F(AccountOf, other_commands_are_told_too) {
    play(town(), L"PROBETURN\n(handent \"20\")\nPROBEERASE\n(handent \"21\")\n");
    const console::Record all = record();
    ASSERT_EQ(all.runs.size(), 2U);
    ASSERT_EQ(all.runs[0].turned.size(), 1U);
    EXPECT_EQ(all.runs[0].turned[0].after.degrees, 90.0);
    EXPECT_EQ(all.runs[0].otherChanges, 0U);
    EXPECT_TRUE(all.runs[1].turned.empty());
    EXPECT_EQ(all.runs[1].otherChanges, 1U);
}

TEST_F(AccountOf, a_run_that_selected_nothing_has_no_sentence) {
    play(town(), L"ZEPTAlignEntities\n-500,-500\n");
    EXPECT_EQ(sentenceOf(only()), "");
}

TEST_F(AccountOf, commands_of_the_host_are_no_runs) {
    play(town(), L"U\nNOSUCH\n");
    EXPECT_TRUE(record().runs.empty());
}

TEST_F(AccountOf, angles_are_the_digits_of_the_drawing_where_they_mean_the_same) {
    // Degrees that radians and back would not give again.
    double odd = 0.1;
    while ((odd * (3.14159265358979323846 / 180)) * (180 / 3.14159265358979323846) == odd)
        odd += 0.1;
    DrawingText drawing = town();
    drawing.entity("TEXT|5 30|8 street|10 1.0|20 2.0|30 0.0|40 2.0|1 Odd|50 " +
                   std::to_string(odd).substr(0, 20));
    play(drawing, L"ZEPTAlignEntities\n(handent \"10\")\n(handent \"30\")\n\n\n");
    EXPECT_EQ(only().turned.at(0).before.degrees, std::stod(std::to_string(odd)));
}

// --- the numbers, against the command's own ------------------------------------------------------

// The angle that the command gives an entity that hangs at `point`, in the drawing's degrees.
double commandsAngle(AlignPolyLine& line, const TurnedEntity& entity, bool flip) {
    double angle = 0.0;
    line.GetAngleAtPoint({entity.hangsAt.x, entity.hangsAt.y, entity.hangsAt.z}, angle);
    if (entity.type == "INSERT") return angle + (flip ? ALIGN_HALF_TURN : 0.0);
    if (0.0 > angle) angle += ALIGN_FULL_TURN;
    return angle +
           (angle > ALIGN_UPRIGHT_LOW && angle < ALIGN_UPRIGHT_HIGH ? ALIGN_HALF_TURN : 0.0);
}

double distanceToSegment(const AcGePoint3d& p, const AcGePoint3d& a, const AcGePoint3d& b) {
    const double dx = b.x - a.x;
    const double dy = b.y - a.y;
    const double square = dx * dx + dy * dy;
    double t = square == 0 ? 0 : ((p.x - a.x) * dx + (p.y - a.y) * dy) / square;
    t = std::min(1.0, std::max(0.0, t));
    return std::hypot(p.x - a.x - t * dx, p.y - a.y - t * dy);
}

// Everything told of the run follows from the line as it is told.
void expectTrue(const CommandRun& run, bool flip) {
    AlignPolyLine line;
    for (const AcGePoint3d& vertex : run.line->vertices)
        line.Append(TamLib::Point3d(vertex.x, vertex.y, vertex.z));
    for (const TurnedEntity& entity : run.turned) {
        AcDbEntity* open = nullptr;
        ASSERT_EQ(acdbOpenAcDbEntity(open, entity.id, AcDb::kForRead), Acad::eOk);
        const double rotation = AcDbText::cast(open) != nullptr
                                    ? AcDbText::cast(open)->rotation()
                                    : AcDbBlockReference::cast(open)->rotation();
        open->close();
        EXPECT_EQ(rotation, commandsAngle(line, entity, flip)) << entity.handle;
        ASSERT_TRUE(entity.segment);
        double least = std::numeric_limits<double>::infinity();
        for (std::size_t i = 1; i < run.line->vertices.size(); ++i)
            least = std::min(least, distanceToSegment(entity.hangsAt, run.line->vertices[i - 1],
                                                      run.line->vertices[i]));
        const auto segment = static_cast<std::size_t>(*entity.segment);
        ASSERT_LT(segment + 1, run.line->vertices.size());
        EXPECT_NEAR(entity.distance, least, 1e-9) << entity.handle;
        EXPECT_NEAR(distanceToSegment(entity.hangsAt, run.line->vertices[segment],
                                      run.line->vertices[segment + 1]),
                    least, 1e-9)
            << entity.handle;
    }
}

TEST_F(AccountOf, angle_segment_and_distance_are_those_of_the_command) {
    for (const bool flip : {false, true}) {
        play(town(), flip ? alignAll : alignEverything);
        EXPECT_EQ(only().turned.size(), 3U);
        expectTrue(only(), flip);
    }
}

// Labels strewn about a line far from the origin; entities with a normal of their own among them.
DrawingText strewn(const std::string& line, unsigned seed) {
    DrawingText drawing;
    drawing.layer("0");
    drawing.block("SIGN", {"LINE|8 0|10 0|20 0|11 1|21 0"});
    drawing.entity(line);
    for (int i = 0; i < 40; ++i) {
        seed = seed * 1664525U + 1013904223U;
        const std::string x = std::to_string(25496000.0 + (seed >> 8) % 200000 / 1000.0);
        seed = seed * 1664525U + 1013904223U;
        const std::string y = std::to_string(6672000.0 + (seed >> 8) % 200000 / 1000.0);
        const std::string place = "|8 0|10 " + x + "|20 " + y + "|30 0.0";
        const std::string handle = "|5 " + std::to_string(100 + i);
        if (i % 4 == 0) drawing.entity("INSERT" + handle + "|2 SIGN" + place);
        if (i % 4 == 1) drawing.entity("TEXT" + handle + place + "|40 1.0|1 left|50 33.3");
        if (i % 4 == 2)
            drawing.entity("TEXT" + handle + place + "|40 1.0|1 centred|72 1|11 " + x + "|21 " + y +
                           "|31 0.0|73 1");
        if (i % 4 == 3)
            drawing.entity("TEXT" + handle + "|8 0|10 -" + x + "|20 " + y +
                           "|30 0.0|40 1.0|1 below|210 0.0|220 0.0|230 -1.0");
    }
    return drawing;
}

TEST_F(AccountOf, numbers_are_those_of_the_command_along_every_kind_of_line) {
    const std::string lines[] = {
        "LINE|5 10|8 0|10 25496000.0|20 6672000.0|30 0.0|11 25496200.0|21 6672130.5|31 4.0",
        "LWPOLYLINE|5 10|8 0|90 5|70 1|10 25496010.0|20 6672000.0|10 25496190.0|20 6672010.0|"
        "10 25496150.0|20 6672190.0|10 25496100.0|20 6672120.0|10 25496020.0|20 6672180.0",
        "SPLINE|5 10|8 0|100 AcDbEntity|100 AcDbSpline|70 8|71 3|72 8|73 4|74 0|40 0.0|40 0.0|"
        "40 0.0|40 0.0|40 1.0|40 1.0|40 1.0|40 1.0|10 25496000.0|20 6672000.0|30 0.0|"
        "10 25496100.0|20 6672200.0|30 0.0|10 25496150.0|20 6671900.0|30 0.0|10 25496200.0|"
        "20 6672200.0|30 0.0",
        "ELLIPSE|5 10|8 0|100 AcDbEntity|100 AcDbEllipse|10 25496100.0|20 6672100.0|30 0.0|11 80.0|"
        "21 10.0|31 0.0|40 0.5|41 0.0|42 6.283185307179586"};
    for (const std::string& line : lines) {
        play(strewn(line, 20260704U), alignAll);
        SCOPED_TRACE(line.substr(0, 10));
        const CommandRun run = only();
        ASSERT_TRUE(run.line);
        EXPECT_EQ(run.turned.size(), 40U);
        expectTrue(run, true);
    }
}

}  // namespace
