// acedSSGet without a prompt, selection sets, and filters.
#include <acdbads.h>
#include <acedads.h>
#include <dbents.h>
#include <gtest/gtest.h>

#include "host/database/Drawing.h"
#include "host/database/Fault.h"
#include "host/database/Ledger.h"
#include "host/editor/Filter.h"
#include "host/editor/SelectionSets.h"
#include "host/editor/Words.h"
#include "tests/host/editor/Harness.h"

using namespace host;
using namespace host::editor;
using host::test::DrawingText;
using host::test::Harness;
using host::test::smallTown;

namespace {

// A chain that is freed at the end of its scope.
class Chain {
  public:
    explicit Chain(resbuf* first) : first_(first) {}
    ~Chain() { acutRelRb(first_); }
    Chain(const Chain&) = delete;
    Chain& operator=(const Chain&) = delete;
    operator const resbuf*() const { return first_; }

  private:
    resbuf* first_;
};

// The handles that acedSSGet finds, or its code.
std::wstring found(const ACHAR* mode, const void* first, const void* second, const resbuf* filter) {
    ads_name set;
    const int code = acedSSGet(mode, first, second, filter, set);
    if (code != RTNORM) {
        EXPECT_TRUE(ads_name_nil(set));
        return std::to_wstring(code);
    }
    const SelectionSet* made = SelectionSets::instance().find(set);
    const std::wstring all = test::handles(made->members);
    acedSSFree(set);
    return all;
}

std::wstring filtered(const resbuf* filter) {
    return found(L"X", nullptr, nullptr, filter);
}

const std::wstring error = std::to_wstring(RTERROR);

class Selecting : public testing::Test {
  protected:
    Harness harness_{smallTown(), {}};
};

// Entities with what filters ask for.
DrawingText manyKinds() {
    DrawingText drawing("AC1015");
    drawing.layer("Roads").layer("käytävä");
    drawing.block("SIGN", {"LINE|5 90|8 0|10 0.0|20 0.0|11 1.0|21 0.0"});
    drawing.entity("TEXT|5 A1|8 Roads|62 1|10 1.0|20 2.0|30 0.0|40 2.5|1 Kauppakatu|50 90.0");
    drawing.entity("TEXT|5 A2|8 roads|10 5.0|20 2.0|30 0.0|40 3.5|1 Torikatu|7 ROMANS");
    drawing.entity("INSERT|5 B1|8 Roads|2 SIGN|10 10.0|20 20.0|30 0.0");
    drawing.entity("CIRCLE|5 C1|8 0|6 DASHED|10 0.0|20 0.0|30 0.0|40 2.5|210 0.0|220 0.0|230 -1.0");
    drawing.entity("LINE|5 D1|10 0.0|20 0.0|30 0.0|11 1.0|21 1.0|31 0.0");
    return drawing;
}

class Filtering : public testing::Test {
  protected:
    Harness harness_{manyKinds(), {}};
};

}  // namespace

TEST_F(Selecting, AWishToStopEndsASearch) {
    ads_point low = {-1, -1, 0};
    ads_point high = {101, 60, 0};
    const Chain triangle(acutBuildList(RT3DPOINT, low, RT3DPOINT, high, RTNONE));
    harness_.session().interrupt();
    EXPECT_EQ(filtered(nullptr), std::to_wstring(RTCAN));
    EXPECT_EQ(found(L"C", low, high, nullptr), std::to_wstring(RTCAN));
    EXPECT_EQ(found(L"CP", triangle, nullptr, nullptr), std::to_wstring(RTCAN));
    EXPECT_EQ(database::Ledger::instance().count("selection set"), 0u);
}

TEST_F(Selecting, ByPoint) {
    const ads_point onLine = {30.0, 0.0, 0.0};
    EXPECT_EQ(found(nullptr, onLine, nullptr, nullptr), L"10");
    const ads_point nowhere = {30.0, 30.0, 0.0};
    EXPECT_EQ(found(nullptr, nowhere, nullptr, nullptr), error);
}

TEST_F(Selecting, TheReachOfAPickIsAHundredthOfTheViewsHeight) {
    const ads_point just = {30.0, 1.0, 0.0};
    const ads_point beyond = {30.0, 1.0000001, 0.0};
    EXPECT_EQ(found(nullptr, just, nullptr, nullptr), L"10");
    EXPECT_EQ(found(nullptr, beyond, nullptr, nullptr), error);
}

TEST_F(Selecting, ATextIsPickedAnywhereInItsBox) {
    const ads_point inside = {12.0, 53.0, 0.0};
    EXPECT_EQ(found(nullptr, inside, nullptr, nullptr), L"21");
}

TEST_F(Selecting, EverythingIncludesFrozenLockedAndOff) {
    EXPECT_EQ(found(L"X", nullptr, nullptr, nullptr), L"10 11 12 20 21 22 23 24");
    EXPECT_EQ(found(L"_x", nullptr, nullptr, nullptr), L"10 11 12 20 21 22 23 24");
    EXPECT_EQ(found(L"A", nullptr, nullptr, nullptr), L"10 11 12 20 21 24");
    EXPECT_EQ(found(L"X:L", nullptr, nullptr, nullptr), L"10 11 12 20 21 23 24");
    EXPECT_EQ(found(L"._X", nullptr, nullptr, nullptr), L"10 11 12 20 21 22 23 24");
}

TEST_F(Selecting, ByWindowAndCrossing) {
    const ads_point low = {45.0, -1.0, 0.0};
    const ads_point high = {46.0, 60.0, 0.0};
    EXPECT_EQ(found(L"C", low, high, nullptr), L"10 11 12");
    EXPECT_EQ(found(L"C", high, low, nullptr), L"10 11 12") << "corners in any order";
    EXPECT_EQ(found(L"W", low, high, nullptr), error);
    const ads_point around[] = {{39.0, 14.0, 0.0}, {61.0, 36.0, 0.0}};
    EXPECT_EQ(found(L"W", around[0], around[1], nullptr), L"12");
    EXPECT_EQ(found(L"W", nullptr, nullptr, nullptr), error);
}

TEST_F(Selecting, ByPolygonWithAPointChain) {
    const ads_point corners[] = {{30, 10, 0}, {70, 10, 0}, {70, 60, 0}};
    const Chain chain(
        acutBuildList(RTPOINT, corners[0], RT3DPOINT, corners[1], RTPOINT, corners[2], RTNONE));
    EXPECT_EQ(found(L"CP", chain, nullptr, nullptr), L"11 12");
    EXPECT_EQ(found(L"WP", chain, nullptr, nullptr), error);
    EXPECT_EQ(found(L"F", chain, nullptr, nullptr), L"11");
    const Chain layers(acutBuildList(8, L"str*", RTNONE));
    EXPECT_EQ(found(L"CP", chain, nullptr, layers), L"11 12");
    const Chain others(acutBuildList(8, L"names", RTNONE));
    EXPECT_EQ(found(L"CP", chain, nullptr, others), error);
}

TEST_F(Selecting, BadChainsOfPointsFindNothing) {
    const ads_point corners[] = {{0, 0, 0}, {10, 10, 0}, {10, 0, 0}, {0, 10, 0}};
    const Chain crossed(acutBuildList(RTPOINT, corners[0], RTPOINT, corners[1], RTPOINT, corners[2],
                                      RTPOINT, corners[3], RTNONE));
    EXPECT_EQ(found(L"CP", crossed, nullptr, nullptr), error);
    EXPECT_NE(found(L"F", crossed, nullptr, nullptr), error) << "a fence may cross itself";
    const Chain mixed(acutBuildList(RTPOINT, corners[0], RTSHORT, 1, RTNONE));
    EXPECT_EQ(found(L"F", mixed, nullptr, nullptr), error);
    EXPECT_EQ(found(L"CP", nullptr, nullptr, nullptr), error);
}

TEST_F(Selecting, UnknownMethodsAndFlagsAreRefused) {
    EXPECT_EQ(found(L"I", nullptr, nullptr, nullptr), error);
    EXPECT_EQ(found(L"NOSUCH", nullptr, nullptr, nullptr), error);
    EXPECT_EQ(found(L"X:Q", nullptr, nullptr, nullptr), error);
    EXPECT_EQ(found(L"P", nullptr, nullptr, nullptr), error) << "there is no previous set yet";
}

TEST_F(Selecting, LastAndPrevious) {
    EXPECT_EQ(found(L"L", nullptr, nullptr, nullptr), L"22")
        << "what is frozen or off is not visible";
}

TEST_F(Selecting, ErasedEntitiesAreNotFound) {
    AcDbEntity* entity = nullptr;
    ASSERT_EQ(acdbOpenAcDbEntity(entity, harness_.entity(L"10"), AcDb::kForWrite), Acad::eOk);
    entity->erase();
    entity->close();
    EXPECT_EQ(found(L"X", nullptr, nullptr, nullptr), L"11 12 20 21 22 23 24");
    const ads_point onLine = {30.0, 0.0, 0.0};
    EXPECT_EQ(found(nullptr, onLine, nullptr, nullptr), error);
}

TEST_F(Selecting, EntitiesThatAModuleHoldsOpenCanBeSelected) {
    AcDbEntity* entity = nullptr;
    ASSERT_EQ(acdbOpenAcDbEntity(entity, harness_.entity(L"10"), AcDb::kForWrite), Acad::eOk);
    const ads_point onLine = {30.0, 0.0, 0.0};
    EXPECT_EQ(found(nullptr, onLine, nullptr, nullptr), L"10");
    entity->close();
}

TEST(SelectingPrompts, OwnPromptsAreShown) {
    Harness harness(smallTown(), {L"30,0", L"r", L"30,0", L"a", L"30,50", L""},
                    Harness::By::person);
    const ACHAR* prompts[] = {L"\nAdd: ", L"\nTake: "};
    EXPECT_EQ(found(L":$", prompts, nullptr, nullptr), L"11");
    EXPECT_EQ(harness.output().shown,
              L"Add: 30,0\n1 found\nAdd: r\nTake: 30,0\n1 found, 1 removed, 0 total\nTake: a\nAdd: "
              L"30,50\n1 found\nAdd: \n");
    const ACHAR* half[] = {L"\nAdd: ", nullptr};
    EXPECT_EQ(found(L":$", half, nullptr, nullptr), error);
    EXPECT_EQ(found(L":$", nullptr, nullptr, nullptr), error);
}

TEST(SelectingPrompts, AFilterAppliesToWhatIsPicked) {
    Harness harness(smallTown(), {L"ALL", L""}, Harness::By::person);
    const Chain texts(acutBuildList(RTDXF0, L"TEXT", RTNONE));
    EXPECT_EQ(found(nullptr, nullptr, nullptr, texts), L"20 21 24");
    EXPECT_NE(
        harness.output().shown.find(L"3 found\n3 were filtered out.\n1 was on a locked layer."),
        std::wstring::npos)
        << toUtf8(harness.output().shown);
}

TEST(SelectingPrompts, LockedLayersCanBeRefused) {
    Harness harness(smallTown(), {L"(handent \"22\")", L"30,0", L""}, Harness::By::person);
    EXPECT_EQ(found(L":L", nullptr, nullptr, nullptr), L"10");
    EXPECT_NE(harness.output().shown.find(L"0 found\n1 was on a locked layer."),
              std::wstring::npos);
}

TEST(SelectingPrompts, ASingleSelectionEndsThePrompt) {
    Harness harness(smallTown(), {L"99,99", L"30,0"}, Harness::By::person);
    EXPECT_EQ(found(L":S", nullptr, nullptr, nullptr), L"10");
}

TEST(SelectingPrompts, WithoutADrawingThereIsNothingToSelect) {
    EXPECT_EQ(found(nullptr, nullptr, nullptr, nullptr), error) << "no session";
    Harness harness(smallTown(), {L"ALL"}, Harness::By::person);
    harness.session().closeDrawing();
    EXPECT_EQ(found(nullptr, nullptr, nullptr, nullptr), error);
    EXPECT_EQ(found(L"X", nullptr, nullptr, nullptr), error);
}

TEST(SelectingPrompts, WhatWasErasedSinceIsNoPreviousSelection) {
    Harness harness(smallTown(), {L"SELECT", L"30,0 30,50", L"", L"ERASE", L"SELECT", L"P", L""});
    Session::HostCommand command;
    command.name = L"ERASE";
    command.run = [&harness](Session&) {
        AcDbEntity* entity = nullptr;
        ASSERT_EQ(acdbOpenAcDbEntity(entity, harness.entity(L"10"), AcDb::kForWrite), Acad::eOk);
        entity->erase();
        entity->close();
    };
    harness.session().addHostCommand(command);
    harness.run();
    EXPECT_EQ(test::handles(harness.results().back().prompts.at(0).entities), L"11");
    EXPECT_EQ(found(L"P", nullptr, nullptr, nullptr), L"11");
}

namespace {

// A program that answers every prompt with the same entities, then Enter.
class ReadyInput : public Input {
  public:
    std::vector<AcDbObjectId> entities;

    Reply next(const Request&) override {
        Reply reply;
        reply.kind = given_ ? Reply::Kind::text : Reply::Kind::entities;
        if (!given_) reply.entities = entities;
        given_ = true;
        return reply;
    }
    void stop() override {}
    bool stopsWhenOutOfStep() const override { return true; }
    bool pending() const override { return true; }

  private:
    bool given_ = false;
};

}  // namespace

TEST(SelectingPrompts, AProgramMayAnswerWithEntities) {
    ReadyInput input;
    test::RecordingOutput output;
    Session session(input, output);
    session.useDrawing(smallTown().database());
    input.entities = {database::idFromHandle(*session.drawing(), L"20"),
                      database::idFromHandle(*session.drawing(), L"10")};
    EXPECT_EQ(found(nullptr, nullptr, nullptr, nullptr), L"20 10");
}

TEST_F(Filtering, ByTypeLayerNameAndText) {
    EXPECT_EQ(filtered(Chain(acutBuildList(RTDXF0, L"text", RTNONE))), L"A1 A2");
    EXPECT_EQ(filtered(Chain(acutBuildList(RTDXF0, L"TEXT,INSERT", 8, L"ROADS", RTNONE))),
              L"A1 A2 B1");
    EXPECT_EQ(filtered(Chain(acutBuildList(2, L"s*", RTNONE))), L"B1");
    EXPECT_EQ(filtered(Chain(acutBuildList(1, L"*katu", RTNONE))), L"A1 A2");
    EXPECT_EQ(filtered(Chain(acutBuildList(8, L"0", RTNONE))), L"C1 D1")
        << "without a layer it is 0";
    EXPECT_EQ(filtered(Chain(acutBuildList(5, L"a1", RTNONE))), L"A1");
    EXPECT_EQ(filtered(Chain(acutBuildList(6, L"dashed", RTNONE))), L"C1");
    EXPECT_EQ(filtered(Chain(acutBuildList(6, L"bylayer", RTNONE))), L"A1 A2 B1 D1");
    EXPECT_EQ(filtered(Chain(acutBuildList(7, L"romans", RTNONE))), L"A2");
    EXPECT_EQ(filtered(Chain(acutBuildList(100, L"AcDbCurve", RTNONE))), L"C1 D1");
}

TEST_F(Filtering, ByNumbersAndPoints) {
    EXPECT_EQ(filtered(Chain(acutBuildList(62, 1, RTNONE))), L"A1");
    EXPECT_EQ(filtered(Chain(acutBuildList(62, 256, RTNONE))), L"A2 B1 C1 D1");
    EXPECT_EQ(filtered(Chain(acutBuildList(40, 2.5, RTNONE))), L"A1 C1");
    const ads_point at = {10.0, 20.0, 0.0};
    EXPECT_EQ(filtered(Chain(acutBuildList(10, at, RTNONE))), L"B1");
    const ads_point below = {0.0, 0.0, -1.0};
    EXPECT_EQ(filtered(Chain(acutBuildList(210, below, RTNONE))), L"C1");
    EXPECT_EQ(filtered(Chain(acutBuildList(67, 0, RTNONE))), L"A1 A2 B1 C1 D1");
    EXPECT_EQ(filtered(Chain(acutBuildList(410, L"model", RTNONE))), L"A1 A2 B1 C1 D1");
    EXPECT_EQ(filtered(Chain(acutBuildList(50, 1.5707963267948966, RTNONE))), L"A1") << "radians";
}

TEST_F(Filtering, ARotationIsTheOneThatACommandHasSet) {
    AcDbText* text = nullptr;
    ASSERT_EQ(acdbOpenObject(text, harness_.entity(L"A2"), AcDb::kForWrite), Acad::eOk);
    text->setRotation(1.25);
    text->close();
    EXPECT_EQ(filtered(Chain(acutBuildList(50, 1.25, RTNONE))), L"A2");
}

TEST_F(Filtering, RelationsAndGroups) {
    EXPECT_EQ(filtered(Chain(acutBuildList(-4, L">=", 40, 2.5, -4, L"<", 40, 3.0, RTNONE))),
              L"A1 C1");
    EXPECT_EQ(filtered(Chain(acutBuildList(-4, L"!=", 62, 256, RTNONE))), L"A1");
    const ads_point corner = {5.0, 2.0, 0.0};
    EXPECT_EQ(filtered(Chain(acutBuildList(-4, L">,>,*", 10, corner, RTNONE))), L"B1");
    EXPECT_EQ(filtered(Chain(acutBuildList(-4, L"&", 62, 256, RTNONE))), L"A2 B1 C1 D1");
    EXPECT_EQ(filtered(Chain(acutBuildList(-4, L"<OR", RTDXF0, L"CIRCLE", -4, L"<AND", RTDXF0,
                                           L"TEXT", 62, 1, -4, L"AND>", -4, L"OR>", RTNONE))),
              L"A1 C1");
    EXPECT_EQ(filtered(Chain(acutBuildList(-4, L"<not", RTDXF0, L"TEXT", -4, L"not>", RTNONE))),
              L"B1 C1 D1");
    EXPECT_EQ(
        filtered(Chain(acutBuildList(-4, L"<XOR", RTDXF0, L"TEXT", 62, 1, -4, L"XOR>", RTNONE))),
        L"A2");
}

TEST_F(Filtering, GroupsAreNestedTwoHundredDeepAtMost) {
    const auto nested = [](int depth) {
        resbuf* chain = acutBuildList(RTDXF0, L"TEXT", RTNONE);
        resbuf* last = chain;
        for (int i = 0; i < depth; ++i) {
            resbuf* begin = acutBuildList(-4, L"<NOT", RTNONE);
            begin->rbnext = chain;
            chain = begin;
            last = last->rbnext = acutBuildList(-4, L"NOT>", RTNONE);
        }
        return chain;
    };
    EXPECT_EQ(filtered(Chain(nested(199))), L"B1 C1 D1");
    EXPECT_EQ(filtered(Chain(nested(200))), L"A1 A2");
    EXPECT_TRUE(harness_.output().errors.empty());
    EXPECT_EQ(filtered(Chain(nested(201))), error);
    EXPECT_EQ(filtered(Chain(nested(20000))), error);
    const std::wstring sentence = L"the groups of a filter are nested more than 200 deep";
    EXPECT_EQ(harness_.output().errors, (std::vector<std::wstring>{sentence, sentence}));
}

TEST_F(Filtering, WhatAFilterCantBeIsSaid) {
    const ads_name name = {1, 0};
    const auto problem = [](resbuf* chain) {
        const Chain kept(chain);
        Filter filter;
        std::wstring sentence;
        return filter.read(kept, sentence) ? std::wstring(L"fine") : sentence;
    };
    EXPECT_EQ(problem(acutBuildList(-4, L"<OR", RTDXF0, L"TEXT", RTNONE)),
              L"the group <OR of a filter has no end OR>");
    EXPECT_EQ(problem(acutBuildList(-4, L"<OR", -4, L"AND>", RTNONE)),
              L"the group <OR of a filter has no end OR>");
    EXPECT_EQ(problem(acutBuildList(-4, L"AND>", RTNONE)),
              L"a filter ends a group that it has not begun: AND>");
    EXPECT_EQ(problem(acutBuildList(-4, L"<NOT", RTDXF0, L"A", RTDXF0, L"B", -4, L"NOT>", RTNONE)),
              L"the group <NOT of a filter has 2 parts");
    EXPECT_EQ(problem(acutBuildList(-4, L"=>", 62, 1, RTNONE)), L"a filter has no operator =>");
    EXPECT_EQ(problem(acutBuildList(-4, L"", 62, 1, RTNONE)), L"an operator of a filter is empty");
    EXPECT_EQ(problem(acutBuildList(-4, L">", RTNONE)), L"the operator > of a filter has no value");
    EXPECT_EQ(problem(acutBuildList(-4, L"<NOR", RTNONE)), L"a filter has no operator <NOR");
    EXPECT_EQ(problem(acutBuildList(-1, name, RTNONE)), L"a filter can't test group -1");
    EXPECT_EQ(problem(nullptr), L"fine");
    EXPECT_EQ(filtered(Chain(acutBuildList(-4, L"AND>", RTNONE))), error);
    EXPECT_EQ(harness_.output().errors.size(), 1u);
}

TEST_F(Selecting, ASetIsNoEntityAndAnEntityNoSet) {
    ads_name entity;
    ASSERT_EQ(acdbGetAdsName(entity, harness_.entity(L"10")), Acad::eOk);
    Adesk::Int32 length = -7;
    EXPECT_EQ(acedSSLength(entity, &length), RTERROR);
    EXPECT_EQ(length, -7);
    EXPECT_EQ(acedSSFree(entity), RTERROR);
    ads_name name;
    EXPECT_EQ(acedSSName(entity, 0, name), RTERROR);
    ads_name set;
    ASSERT_EQ(acedSSAdd(entity, nullptr, set), RTNORM);
    AcDbObjectId id = harness_.entity(L"10");
    EXPECT_NE(acdbGetObjectId(id, set), Acad::eOk);
    EXPECT_EQ(acedSSLength(set, nullptr), RTERROR);
    EXPECT_EQ(acedSSFree(set), RTNORM);
    EXPECT_EQ(acedSSFree(set), RTERROR) << "harmless a second time";
    EXPECT_EQ(acedSSLength(set, &length), RTERROR);
    const ads_name none = {0, 0};
    EXPECT_EQ(acedSSLength(none, &length), RTERROR);
}

TEST_F(Selecting, MembersAreAddedOnceRemovedAndAsked) {
    ads_name first;
    ads_name second;
    acdbGetAdsName(first, harness_.entity(L"10"));
    acdbGetAdsName(second, harness_.entity(L"11"));
    ads_name set;
    ASSERT_EQ(acedSSAdd(nullptr, nullptr, set), RTNORM);
    EXPECT_EQ(acedSSAdd(second, set, set), RTNORM);
    EXPECT_EQ(acedSSAdd(first, set, set), RTNORM);
    EXPECT_EQ(acedSSAdd(first, set, set), RTNORM);
    Adesk::Int32 length = 0;
    EXPECT_EQ(acedSSLength(set, &length), RTNORM);
    EXPECT_EQ(length, 2);
    ads_name name;
    EXPECT_EQ(acedSSName(set, 0, name), RTNORM);
    EXPECT_TRUE(ads_name_equal(name, second));
    EXPECT_EQ(acedSSName(set, 2, name), RTERROR);
    EXPECT_EQ(acedSSName(set, -1, name), RTERROR);
    EXPECT_EQ(acedSSMemb(first, set), RTNORM);
    EXPECT_EQ(acedSSDel(first, set), RTNORM);
    EXPECT_EQ(acedSSDel(first, set), RTERROR);
    EXPECT_EQ(acedSSMemb(first, set), RTERROR);
    EXPECT_EQ(acedSSAdd(nullptr, set, set), RTERROR);
    EXPECT_EQ(acedSSAdd(set, nullptr, name), RTERROR) << "a set is no entity";
    acedSSFree(set);
}

TEST_F(Selecting, SetsStandInTheLedgerUntilTheyAreFreed) {
    ads_name set;
    ASSERT_EQ(acedSSGet(L"X", nullptr, nullptr, nullptr, set), RTNORM);
    const auto leaks = database::Ledger::instance().leaks();
    ASSERT_EQ(leaks.size(), 1u);
    EXPECT_NE(leaks[0].find("8 members"), std::string::npos) << leaks[0];
    fault::arm("acedSSFree", 1, RTERROR);
    EXPECT_EQ(acedSSFree(set), RTERROR) << "freed all the same";
    fault::disarm();
    EXPECT_EQ(database::Ledger::instance().count("selection set"), 0u);
}

TEST_F(Selecting, EachFunctionFailsOnOrderAndLeavesNothing) {
    ads_name set;
    for (const char* function : {"acedSSGet", "acedSSLength", "acedSSName", "acedSSAdd"}) {
        fault::arm(function, 1, RTERROR);
        Adesk::Int32 length = 0;
        ads_name name;
        const int get = acedSSGet(L"X", nullptr, nullptr, nullptr, set);
        const int codes[] = {get, acedSSLength(set, &length), acedSSName(set, 0, name),
                             acedSSAdd(name, set, set)};
        EXPECT_TRUE(fault::fired()) << function;
        EXPECT_NE(std::count(std::begin(codes), std::end(codes), RTERROR), 0) << function;
        fault::disarm();
        acedSSFree(set);
    }
    EXPECT_EQ(database::Ledger::instance().count("selection set"), 0u);
}
