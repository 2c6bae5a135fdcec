// Undoing: one group one step, exact to the byte of what would be saved.
#include <dbents.h>
#include <gtest/gtest.h>

#include <random>

#include "host/database/Drawing.h"
#include "host/database/Fields.h"
#include "host/database/Turning.h"
#include "host/database/Undo.h"
#include "tests/host/support/DrawingText.h"
#include "tests/host/support/LedgerListener.h"

using namespace host::database;
using host::test::DrawingText;
using host::test::savedBytes;

namespace {

class Undo : public testing::Test {
  protected:
    void SetUp() override {
        DrawingText text;
        for (int i = 0; i < kTexts; ++i) {
            text.entity("TEXT|5 " + std::to_string(100 + i) +
                        "|8 0|10 1|20 2|40 1|1 a|72 1|11 3|21 4");
        }
        text.entity("POLYLINE|5 200|8 0|70 0")
            .entity("VERTEX|5 201|8 0|10 0|20 0")
            .entity("VERTEX|5 202|8 0|10 1|20 0")
            .entity("SEQEND|5 203|8 0");
        database = text.database();
        original = bytes();
    }
    std::string bytes() const { return savedBytes(*database); }
    void turn(int text, double rotation) {
        AcDbText* entity = nullptr;
        ASSERT_EQ(acdbOpenObject(entity, idFromHandle(*database, std::to_wstring(100 + text)),
                                 AcDb::kForWrite),
                  Acad::eOk);
        EXPECT_EQ(entity->setRotation(rotation), Acad::eOk);
        EXPECT_EQ(entity->close(), Acad::eOk);
    }
    void erase(const wchar_t* handle) {
        AcDbEntity* entity = nullptr;
        ASSERT_EQ(acdbOpenAcDbEntity(entity, idFromHandle(*database, handle), AcDb::kForWrite),
                  Acad::eOk);
        EXPECT_EQ(entity->erase(), Acad::eOk);
        EXPECT_EQ(entity->close(), Acad::eOk);
    }
    void command(const std::vector<std::pair<int, double>>& turns) {
        beginGroup(*database, L"TURN");
        for (const auto& [text, rotation] : turns) turn(text, rotation);
        endGroup(*database);
    }

    static constexpr int kTexts = 10;
    std::unique_ptr<AcDbDatabase> database;
    std::string original;
};

}  // namespace

TEST_F(Undo, OneGroupIsOneStep) {
    command({{0, 1.0}, {1, 2.0}, {0, 3.0}});
    EXPECT_NE(bytes(), original);
    EXPECT_EQ(undoLog(*database).undoSteps(), 1U);
    EXPECT_TRUE(undo(*database));
    EXPECT_EQ(bytes(), original);
    EXPECT_FALSE(undo(*database));
    EXPECT_EQ(bytes(), original);
}

TEST_F(Undo, RedoDoesItAgain) {
    command({{0, 1.0}, {1, 2.0}});
    const std::string after = bytes();
    EXPECT_TRUE(undo(*database));
    EXPECT_TRUE(redo(*database));
    EXPECT_EQ(bytes(), after);
    EXPECT_FALSE(redo(*database));
    EXPECT_TRUE(undo(*database));
    EXPECT_EQ(bytes(), original);
}

TEST_F(Undo, StepsGoBackOneByOne) {
    std::vector<std::string> states = {original};
    for (int i = 0; i < 5; ++i) {
        command({{i, 0.1 * (i + 1)}, {0, 0.2 * (i + 1)}});
        states.push_back(bytes());
    }
    for (std::size_t i = 5; i-- > 0;) {
        EXPECT_TRUE(undo(*database));
        EXPECT_EQ(bytes(), states[i]);
    }
    for (std::size_t i = 1; i <= 5; ++i) {
        EXPECT_TRUE(redo(*database));
        EXPECT_EQ(bytes(), states[i]);
    }
}

TEST_F(Undo, FieldsAreWhatTheyWere) {
    command({{0, 1.0}});
    undo(*database);
    AcDbText* text = nullptr;
    ASSERT_EQ(acdbOpenObject(text, idFromHandle(*database, L"100")), Acad::eOk);
    EXPECT_EQ(text->rotation(), 0.0);
    EXPECT_EQ(text->position(), AcGePoint3d(1, 2, 0));
    EXPECT_EQ(text->close(), Acad::eOk);
}

TEST_F(Undo, NewChangeForgetsWhatCouldBeDoneAgain) {
    command({{0, 1.0}});
    undo(*database);
    command({{1, 1.0}});
    EXPECT_FALSE(redo(*database));
    undo(*database);
    EXPECT_EQ(bytes(), original);
}

TEST_F(Undo, RollbackTakesTheOpenGroupBackAndLeavesNoStep) {
    command({{0, 1.0}});
    const std::string before = bytes();
    beginGroup(*database, L"FAILS");
    turn(0, 2.0);
    turn(3, 2.0);
    erase(L"105");
    rollback(*database);
    EXPECT_EQ(bytes(), before);
    EXPECT_FALSE(redo(*database));
    EXPECT_EQ(undoLog(*database).undoSteps(), 1U);
    rollback(*database);
    EXPECT_EQ(bytes(), before) << "no group is open";
    undo(*database);
    EXPECT_EQ(bytes(), original);
}

TEST_F(Undo, RollbackReachesObjectsThatAreStillOpen) {
    beginGroup(*database, L"FAILS");
    AcDbText* entity = nullptr;
    ASSERT_EQ(acdbOpenObject(entity, idFromHandle(*database, L"100"), AcDb::kForWrite), Acad::eOk);
    EXPECT_EQ(entity->setRotation(1.0), Acad::eOk);
    rollback(*database);
    EXPECT_EQ(entity->rotation(), 0.0);
    EXPECT_EQ(closeLeftOpen(*database).size(), 1U);
    EXPECT_EQ(bytes(), original);
}

TEST_F(Undo, AGroupThatChangedNothingIsNoStep) {
    command({});
    command({{0, 1.0}});
    const std::string after = bytes();
    beginGroup(*database, L"SCRIPT");
    command({});
    command({});
    endGroup(*database);
    const std::uint64_t empty = beginGroup(*database, L"LOOKS");
    endGroup(*database);
    EXPECT_EQ(undoLog(*database).undoSteps(), 1U);
    EXPECT_TRUE(undo(*database));
    EXPECT_EQ(bytes(), original);
    EXPECT_FALSE(undo(*database));
    EXPECT_TRUE(undoLog(*database).stands(empty)) << "nothing of it has been taken back";
    command({});
    EXPECT_TRUE(redo(*database)) << "what changes nothing leaves what can be done again";
    EXPECT_EQ(bytes(), after);
}

TEST_F(Undo, InsideAGroupWhatChangedNothingIsPassedOverToo) {
    beginGroup(*database, L"SCRIPT");
    command({{0, 1.0}});
    command({});
    EXPECT_TRUE(undo(*database));
    EXPECT_EQ(bytes(), original);
    EXPECT_FALSE(undo(*database));
    endGroup(*database);
    EXPECT_EQ(undoLog(*database).undoSteps(), 0U);
}

TEST_F(Undo, StepsAreNamedAndTellHowManyEntitiesTheyChanged) {
    EXPECT_FALSE(undoLog(*database).undoStep());
    EXPECT_FALSE(undoLog(*database).redoStep());
    command({{0, 1.0}, {1, 1.0}, {0, 2.0}});
    EXPECT_EQ(undoLog(*database).undoStep().value().name, L"TURN");
    EXPECT_EQ(undoLog(*database).undoStep().value().entities, 2U);
    undo(*database);
    EXPECT_FALSE(undoLog(*database).undoStep());
    EXPECT_EQ(undoLog(*database).redoStep().value().name, L"TURN");
    EXPECT_EQ(undoLog(*database).redoStep().value().entities, 2U);
    turn(0, 1.0);
    EXPECT_EQ(undoLog(*database).undoStep().value().name, L"");
    EXPECT_EQ(undoLog(*database).undoStep().value().entities, 1U);
    beginGroup(*database, L"SCRIPT");
    command({{0, 3.0}});
    command({{0, 4.0}, {5, 1.0}});
    endGroup(*database);
    EXPECT_EQ(undoLog(*database).undoStep().value().name, L"SCRIPT");
    EXPECT_EQ(undoLog(*database).undoStep().value().entities, 2U);
}

TEST_F(Undo, ScriptAroundCommandsIsOneStepOnceItHasEnded) {
    beginGroup(*database, L"SCRIPT");
    command({{0, 1.0}});
    const std::string afterFirst = bytes();
    command({{0, 2.0}, {1, 1.0}});
    EXPECT_EQ(undoLog(*database).openGroups(), 1U);
    EXPECT_TRUE(undo(*database));
    EXPECT_EQ(bytes(), afterFirst) << "inside the script commands are the steps";
    command({{2, 1.0}});
    endGroup(*database);
    EXPECT_EQ(undoLog(*database).undoSteps(), 1U);
    const std::string afterScript = bytes();
    EXPECT_TRUE(undo(*database));
    EXPECT_EQ(bytes(), original);
    EXPECT_TRUE(redo(*database));
    EXPECT_EQ(bytes(), afterScript);
}

TEST_F(Undo, RollbackInsideAScriptTakesTheCommandBackAlone) {
    beginGroup(*database, L"SCRIPT");
    command({{0, 1.0}});
    const std::string before = bytes();
    beginGroup(*database, L"FAILS");
    turn(0, 2.0);
    rollback(*database);
    EXPECT_EQ(bytes(), before);
    endGroup(*database);
    undo(*database);
    EXPECT_EQ(bytes(), original);
}

TEST_F(Undo, ChangesOutsideOfGroupsAreOneStepUpToTheNextGroup) {
    turn(0, 1.0);
    turn(1, 1.0);
    const std::string loose = bytes();
    command({{0, 2.0}});
    turn(2, 1.0);
    EXPECT_EQ(undoLog(*database).undoSteps(), 3U);
    undo(*database);
    undo(*database);
    EXPECT_EQ(bytes(), loose);
    undo(*database);
    EXPECT_EQ(bytes(), original);
}

TEST_F(Undo, ErasingIsUndone) {
    beginGroup(*database, L"ERASE");
    erase(L"104");
    erase(L"200");
    endGroup(*database);
    EXPECT_EQ(modelSpaceIds(*database).size(), static_cast<std::size_t>(kTexts - 1));
    const std::string after = bytes();
    EXPECT_LT(after.size(), original.size());
    EXPECT_TRUE(undo(*database));
    EXPECT_EQ(bytes(), original);
    EXPECT_EQ(modelSpaceIds(*database).size(), static_cast<std::size_t>(kTexts + 1));
    EXPECT_FALSE(idFromHandle(*database, L"104").isErased());
    EXPECT_TRUE(redo(*database));
    EXPECT_EQ(bytes(), after);
}

TEST_F(Undo, EndOfNoGroupDoesNothing) {
    endGroup(*database);
    EXPECT_EQ(undoLog(*database).undoSteps(), 0U);
    EXPECT_FALSE(undo(*database));
    EXPECT_FALSE(redo(*database));
}

// Random commands, nested groups, undo, redo and rollback against a list of whole states.
TEST_F(Undo, AnySequenceAgreesWithKeptStates) {
    std::mt19937 random(7);
    std::vector<std::string> past = {original};
    std::vector<std::string> future;
    for (int step = 0; step < 600; ++step) {
        const auto kind = random() % 10;
        if (kind < 5) {
            const bool fails = kind == 0;
            beginGroup(*database, L"X");
            for (unsigned i = 0; i < random() % 4; ++i) {
                turn(static_cast<int>(random() % kTexts),
                     static_cast<double>(random() % 100) / 7.0);
            }
            if (random() % 3 == 0) {
                beginGroup(*database, L"INNER");
                turn(static_cast<int>(random() % kTexts),
                     static_cast<double>(random() % 100) / 7.0);
                endGroup(*database);
            }
            turn(0, static_cast<double>(step));
            if (fails) {
                rollback(*database);
                ASSERT_EQ(bytes(), past.back());
            } else {
                endGroup(*database);
                past.push_back(bytes());
            }
            future.clear();
        } else if (kind < 8) {
            ASSERT_EQ(undo(*database), past.size() > 1);
            if (past.size() > 1) {
                future.push_back(past.back());
                past.pop_back();
            }
            ASSERT_EQ(bytes(), past.back());
        } else {
            ASSERT_EQ(redo(*database), !future.empty());
            if (!future.empty()) {
                past.push_back(future.back());
                future.pop_back();
            }
            ASSERT_EQ(bytes(), past.back());
        }
    }
}

// --- what a group did ----------------------------------------------------------------------------

TEST_F(Undo, a_group_stands_until_it_or_what_holds_it_is_taken_back) {
    const auto outer = beginGroup(*database, L"SCRIPT");
    const auto inner = beginGroup(*database, L"TURN");
    turn(0, 1.0);
    EXPECT_TRUE(stands(*database, inner));  // while it is open
    endGroup(*database);
    EXPECT_TRUE(stands(*database, inner));
    endGroup(*database);
    EXPECT_TRUE(stands(*database, outer));
    EXPECT_NE(outer, inner);
    EXPECT_TRUE(undo(*database));
    EXPECT_FALSE(stands(*database, outer));
    EXPECT_FALSE(stands(*database, inner));
    EXPECT_TRUE(redo(*database));
    EXPECT_TRUE(stands(*database, inner));
    const auto given = beginGroup(*database, L"TURN");
    turn(0, 2.0);
    rollback(*database);
    EXPECT_FALSE(stands(*database, given));
    EXPECT_FALSE(stands(*database, 0));
}

TEST_F(Undo, a_group_tells_what_it_turned_from_its_first_state_to_the_last) {
    const auto outer = beginGroup(*database, L"OUTER");
    turn(0, 1.0);
    beginGroup(*database, L"INNER");
    turn(0, 2.0);
    turn(1, 3.0);
    endGroup(*database);
    turn(0, 0.5);
    erase(L"102");
    endGroup(*database);
    const GroupChanges changes = changesOf(*database, outer);
    ASSERT_EQ(changes.turned.size(), 2U);
    EXPECT_EQ(handleText(changes.turned[0].entity), L"100");
    EXPECT_EQ(changes.turned[0].before.degrees, 0.0);
    EXPECT_EQ(changes.turned[0].after.degrees, toDegrees(0.5));
    EXPECT_NE(changes.turned[0].after.insertion.x, 1.0);
    EXPECT_EQ(changes.turned[1].after.degrees, toDegrees(3.0));
    ASSERT_EQ(changes.others.size(), 1U);
    EXPECT_EQ(handleText(changes.others[0]), L"102");
    undo(*database);
    EXPECT_TRUE(changesOf(*database, outer).turned.empty());
    EXPECT_TRUE(changesOf(*database, outer).others.empty());
}

TEST_F(Undo, a_text_that_was_changed_otherwise_was_not_turned) {
    const auto group = beginGroup(*database, L"WRITE");
    turn(0, 1.0);
    AcDbText* text = nullptr;
    ASSERT_EQ(acdbOpenObject(text, idFromHandle(*database, L"100"), AcDb::kForWrite), Acad::eOk);
    EXPECT_EQ(text->setTextString(L"b"), Acad::eOk);
    text->close();
    endGroup(*database);
    EXPECT_TRUE(changesOf(*database, group).turned.empty());
    EXPECT_EQ(changesOf(*database, group).others.size(), 1U);
}

TEST_F(Undo, a_text_that_was_set_to_its_own_angle_was_turned) {
    const auto group = beginGroup(*database, L"TURN");
    turn(0, 0.0);
    endGroup(*database);
    ASSERT_EQ(changesOf(*database, group).turned.size(), 1U);
    EXPECT_EQ(changesOf(*database, group).turned[0].after.degrees, 0.0);
}
