#include "host/editor/Scripted.h"

#include <acdbads.h>
#include <acdocman.h>
#include <aced.h>
#include <afxwin.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "host/database/Drawing.h"
#include "host/database/Fault.h"
#include "host/editor/Screen.h"
#include "tests/host/editor/Harness.h"

using namespace host;
using namespace host::editor;

namespace {

// A drawing without a session.
class ScriptedTest : public testing::Test {
  protected:
    std::unique_ptr<AcDbDatabase> drawing_ = test::smallTown().database();
    AcDbObjectId line_ = database::idFromHandle(*drawing_, L"10");
    AcDbObjectId text_ = database::idFromHandle(*drawing_, L"20");
    Scripted scripted_;
    ads_name name_ = {1, 2};
    ads_point point_ = {-1, -1, -1};
};

}  // namespace

TEST_F(ScriptedTest, ThereIsOneAtATime) {
    EXPECT_THROW(Scripted(), std::logic_error);
}

TEST_F(ScriptedTest, PicksComeInTurnAndThenACancel) {
    scripted_.pick(line_, {1, 2, 3});
    scripted_.failPick(RTERROR, {4, 5, 6});
    EXPECT_EQ(acedEntSel(L"\nWhich: ", name_, point_), RTNORM);
    AcDbObjectId id;
    EXPECT_EQ(acdbGetObjectId(id, name_), Acad::eOk);
    EXPECT_EQ(id, line_);
    EXPECT_EQ(point_[2], 3.0);
    EXPECT_EQ(acedEntSel(nullptr, name_, point_), RTERROR);
    EXPECT_EQ(point_[0], 4.0) << "the point is written with a failing code too";
    EXPECT_TRUE(ads_name_nil(name_));
    EXPECT_EQ(acedEntSel(nullptr, name_, point_), RTCAN);
    ASSERT_EQ(scripted_.prompts().size(), 3u);
    EXPECT_EQ(scripted_.prompts()[0].function, "acedEntSel");
    EXPECT_EQ(scripted_.prompts()[0].text, L"\nWhich: ");
}

TEST_F(ScriptedTest, AStaleNameIsKnownToNoDatabase) {
    scripted_.pickStaleName({1, 2, 3});
    EXPECT_EQ(acedEntSel(nullptr, name_, point_), RTNORM);
    AcDbObjectId id;
    EXPECT_NE(acdbGetObjectId(id, name_), Acad::eOk);
}

TEST_F(ScriptedTest, SelectionsKeepOrderAndRepeats) {
    scripted_.select({text_, line_, text_});
    ads_name set;
    ASSERT_EQ(acedSSGet(nullptr, nullptr, nullptr, nullptr, set), RTNORM);
    Adesk::Int32 length = 0;
    EXPECT_EQ(acedSSLength(set, &length), RTNORM);
    EXPECT_EQ(length, 3);
    EXPECT_EQ(acedSSName(set, 2, name_), RTNORM);
    acedSSFree(set);
    scripted_.failSelect(RTERROR);
    EXPECT_EQ(acedSSGet(nullptr, nullptr, nullptr, nullptr, set), RTERROR);
    EXPECT_EQ(acedSSGet(nullptr, nullptr, nullptr, nullptr, set), RTCAN);
}

TEST_F(ScriptedTest, MembersAndLengthsCanBeRefused) {
    scripted_.refuseMember(1);
    scripted_.select({text_, line_});
    scripted_.refuseLength(RTCAN);
    scripted_.select({text_});
    scripted_.select({text_, line_});
    ads_name set;
    acedSSGet(nullptr, nullptr, nullptr, nullptr, set);
    EXPECT_EQ(acedSSName(set, 0, name_), RTNORM);
    EXPECT_EQ(acedSSName(set, 1, name_), RTERROR);
    acedSSFree(set);
    acedSSGet(nullptr, nullptr, nullptr, nullptr, set);
    Adesk::Int32 length = 5;
    EXPECT_EQ(acedSSLength(set, &length), RTCAN);
    EXPECT_EQ(length, 5);
    acedSSFree(set);
    acedSSGet(nullptr, nullptr, nullptr, nullptr, set);
    EXPECT_EQ(acedSSLength(set, &length), RTNORM);
    EXPECT_EQ(acedSSName(set, 1, name_), RTNORM) << "an order holds for one set";
    acedSSFree(set);
}

TEST_F(ScriptedTest, ArgumentsOfSelectionsAreKept) {
    const ads_point at = {7, 8, 9};
    ads_name set;
    acedSSGet(nullptr, at, nullptr, nullptr, set);
    const ACHAR* prompts[] = {L"Add", L"Remove"};
    resbuf* filter = acutBuildList(8, L"x", RTNONE);
    acedSSGet(L":$", prompts, nullptr, filter, set);
    acutRelRb(filter);
    ASSERT_EQ(scripted_.prompts().size(), 2u);
    EXPECT_TRUE(scripted_.prompts()[0].hasPoint);
    EXPECT_EQ(scripted_.prompts()[0].point.z, 9.0);
    EXPECT_EQ(scripted_.prompts()[1].mode, L":$");
    EXPECT_EQ(scripted_.prompts()[1].text, L"Add");
    EXPECT_TRUE(scripted_.prompts()[1].hasFilter);
}

TEST_F(ScriptedTest, TypedTextsAreCutAtTheRoomAndLeftAloneOnFailure) {
    ACHAR buffer[132] = L"before";
    scripted_.type(std::wstring(200, L'x'));
    EXPECT_EQ(acedGetString(0, L"?", buffer), RTNORM);
    EXPECT_EQ(std::wstring(buffer), std::wstring(131, L'x'));
    scripted_.type(L"k");
    EXPECT_EQ(acedGetString(1, L"?", buffer), RTNORM);
    EXPECT_STREQ(buffer, L"k");
    scripted_.failType(RTERROR);
    EXPECT_EQ(acedGetString(0, L"?", buffer), RTERROR);
    EXPECT_EQ(acedGetString(0, L"?", buffer), RTCAN);
    EXPECT_STREQ(buffer, L"k");
    EXPECT_EQ(scripted_.prompts()[0].withBlanks, 0);
    EXPECT_EQ(scripted_.prompts()[1].withBlanks, 1);
    ACHAR small[4];
    scripted_.type(L"four");
    EXPECT_EQ(acedGetString(0, L"?", small, 4), RTINPUTTRUNCATED);
    EXPECT_STREQ(small, L"fou");
    scripted_.type(L"fou");
    EXPECT_EQ(acedGetString(0, L"?", small, 4), RTNORM);
    EXPECT_EQ(acedGetString(0, L"?", small, 0), RTERROR);
    EXPECT_EQ(acedGetString(0, L"?", nullptr), RTERROR);
}

TEST_F(ScriptedTest, PointsWithAndWithoutFailure) {
    scripted_.point({1, 2, 3});
    scripted_.failPoint(RTNONE, {7, 7, 7}, true);
    scripted_.failPoint(RTCAN, {9, 9, 9});
    const ads_point base = {5, 6, 7};
    EXPECT_EQ(acedGetPoint(base, L"\nPoint: ", point_), RTNORM);
    EXPECT_EQ(point_[1], 2.0);
    EXPECT_EQ(acedGetPoint(nullptr, nullptr, point_), RTNONE);
    EXPECT_EQ(point_[1], 7.0);
    EXPECT_EQ(acedGetPoint(nullptr, nullptr, point_), RTCAN);
    EXPECT_EQ(point_[1], 7.0);
    EXPECT_TRUE(scripted_.prompts()[0].hasPoint);
    EXPECT_FALSE(scripted_.prompts()[1].hasPoint);
    EXPECT_EQ(acedGetPoint(nullptr, nullptr, nullptr), RTERROR);
}

TEST_F(ScriptedTest, KeywordsComeInTurnAndThenACancel) {
    scripted_.keyword(L"Left");
    scripted_.failKeyword(RTNONE);
    ACHAR word[132] = L"before";
    EXPECT_EQ(acedInitGet(RSG_NONULL | RSG_OTHER, L"Left Right"), RTNORM);
    EXPECT_EQ(acedInitGet(128, nullptr), RTNORM);
    EXPECT_EQ(acedGetKword(L"\nSide: ", word), RTNORM);
    EXPECT_STREQ(word, L"Left");
    ACHAR input[132] = L"";
    EXPECT_EQ(acedGetInput(input), RTNORM);
    EXPECT_STREQ(input, L"Left");
    EXPECT_EQ(acedGetKword(nullptr, word), RTNONE);
    EXPECT_EQ(acedGetKword(nullptr, word), RTCAN);
    EXPECT_STREQ(word, L"Left") << "left alone";
    EXPECT_EQ(acedGetKword(nullptr, nullptr), RTERROR);
    EXPECT_EQ(acedGetInput(nullptr), RTERROR);
    ASSERT_EQ(scripted_.initials().size(), 2u);
    EXPECT_EQ(scripted_.initials()[0].bits, 129);
    EXPECT_EQ(scripted_.initials()[0].keywords, L"Left Right");
    EXPECT_EQ(scripted_.initials()[1].bits, 128);
    EXPECT_EQ(scripted_.initials()[1].keywords, L"");
    ASSERT_EQ(scripted_.prompts().size(), 3u);
    EXPECT_EQ(scripted_.prompts()[0].function, "acedGetKword");
    EXPECT_EQ(scripted_.prompts()[0].text, L"\nSide: ");
    scripted_.forget();
    EXPECT_TRUE(scripted_.initials().empty());
}

TEST_F(ScriptedTest, SettingVariablesIsKeptAndChangesThoseOfTheTest) {
    resbuf value{};
    value.restype = RTSHORT;
    value.resval.rint = 7;
    EXPECT_EQ(acedSetVar(L"SORTENTS", &value), RTERROR) << "there is none";
    scripted_.variable(L"SORTENTS", short{0});
    scripted_.variable(L"CLAYER", std::wstring(L"0"));
    EXPECT_EQ(acedSetVar(L"sortents", &value), RTNORM);
    resbuf told{};
    EXPECT_EQ(acedGetVar(L"SORTENTS", &told), RTNORM);
    EXPECT_EQ(told.resval.rint, 7);
    EXPECT_EQ(acedSetVar(L"CLAYER", &value), RTERROR) << "of another type";
    ASSERT_EQ(scripted_.settings().size(), 3u);
    EXPECT_EQ(scripted_.settings()[1].name, L"sortents");
    EXPECT_EQ(scripted_.settings()[1].value, VariableValue(short{7}));
    scripted_.forget();
    EXPECT_TRUE(scripted_.settings().empty());
}

TEST_F(ScriptedTest, TheMeterIsKeptWithoutASession) {
    EXPECT_EQ(acedSetStatusBarProgressMeterPos(1), -1);
    EXPECT_EQ(acedSetStatusBarProgressMeter(L"Turning", 0, 100), 0);
    EXPECT_EQ(acedSetStatusBarProgressMeterPos(40), 0);
    acedRestoreStatusBar();
    acedRestoreStatusBar();
    ASSERT_EQ(scripted_.meters().size(), 3u);
    ASSERT_TRUE(scripted_.meters()[0] && scripted_.meters()[1]);
    EXPECT_EQ(scripted_.meters()[0]->label, L"Turning");
    EXPECT_EQ(scripted_.meters()[0]->to, 100);
    EXPECT_EQ(scripted_.meters()[0]->position, 0);
    EXPECT_EQ(scripted_.meters()[1]->position, 40);
    EXPECT_FALSE(scripted_.meters()[2]);
    scripted_.forget();
    EXPECT_TRUE(scripted_.meters().empty());
}

TEST(ScriptedInASession, PromptsDoNotReachTheSessionAndWhatIsSentIsKept) {
    test::Harness harness(test::smallTown(), {L"Left", L"1,1"});
    Scripted scripted;
    ACHAR word[132] = L"";
    EXPECT_EQ(acedGetKword(nullptr, word), RTCAN) << "no line is read";
    AcApDocument* document = acDocManager->curDocument();
    EXPECT_EQ(acDocManager->sendStringToExecute(document, L"NOTHING ", false, true, false),
              Acad::eOk);
    EXPECT_EQ(acDocManager->sendStringToExecute(document, L"ASK "), Acad::eOk);
    EXPECT_EQ(acDocManager->sendStringToExecute(nullptr, L"x"), Acad::eInvalidInput);
    ASSERT_EQ(scripted.sent().size(), 2u);
    EXPECT_EQ(scripted.sent()[0].text, L"NOTHING ");
    EXPECT_FALSE(scripted.sent()[0].activate);
    EXPECT_TRUE(scripted.sent()[0].wrapUp);
    EXPECT_FALSE(scripted.sent()[0].echo);
    EXPECT_TRUE(scripted.sent()[1].activate);
    EXPECT_FALSE(scripted.sent()[1].wrapUp);
    EXPECT_TRUE(scripted.sent()[1].echo);
    EXPECT_EQ(acDocManager->inputPending(document), 1) << "it is sent all the same";
}

TEST_F(ScriptedTest, ABreakComesFromTheOrderedCallOn) {
    EXPECT_EQ(acedUsrBrk(), 0);
    scripted_.breakAt(3);
    EXPECT_EQ(acedUsrBrk(), 0);
    EXPECT_EQ(acedUsrBrk(), 0);
    EXPECT_EQ(acedUsrBrk(), 1);
    EXPECT_EQ(acedUsrBrk(), 1);
    scripted_.breakAt(0);
    EXPECT_EQ(acedUsrBrk(), 0);
}

TEST_F(ScriptedTest, AnswersThatNobodyTookAreTold) {
    EXPECT_TRUE(scripted_.unused().empty());
    scripted_.pick(line_);
    scripted_.type(L"a");
    scripted_.type(L"b");
    scripted_.keyword(L"c");
    EXPECT_EQ(scripted_.unused(),
              (std::vector<std::string>{"acedEntSel 1", "acedGetString 2", "acedGetKword 1"}));
}

TEST_F(ScriptedTest, PrintsAreKeptWithTheMeaningOfWindowsFormats) {
    EXPECT_EQ(acutPrintf(L"\nfailed %s:%i %s\n", L"Käännä", 7, L"eOk"), RTNORM);
    EXPECT_EQ(acutPrintf(L"%.0lf%%", 12.0), RTNORM);
    EXPECT_EQ(acutPrintf(nullptr), RTERROR);
    EXPECT_EQ(scripted_.printed(), L"\nfailed Käännä:7 eOk\n12%");
    scripted_.forget();
    EXPECT_EQ(scripted_.printed(), L"");
}

TEST_F(ScriptedTest, LongPrintsAreWholeUpToTheirLimit) {
    const std::wstring most(65535, L'x');
    EXPECT_EQ(acutPrintf(L"%s", most.c_str()), RTNORM);
    EXPECT_EQ(scripted_.printed(), most);
    scripted_.forget();
    EXPECT_EQ(acutPrintf(L"%s", (most + L"x").c_str()), RTERROR);
    EXPECT_EQ(scripted_.printed(), L"");
    for (const std::size_t length : {0u, 1u, 511u, 512u, 513u, 2047u, 2048u, 2049u}) {
        scripted_.forget();
        const std::wstring text(length, L'y');
        EXPECT_EQ(acutPrintf(L"%s", text.c_str()), RTNORM);
        EXPECT_EQ(scripted_.printed(), text);
    }
}

TEST_F(ScriptedTest, LinesAreKeptInTheirOrder) {
    const ads_point from = {1, 2, 3};
    const ads_point to = {4, 5, 6};
    EXPECT_EQ(acedGrDraw(from, to, 6, 0), RTNORM);
    EXPECT_EQ(acedGrDraw(to, to, 2, 1), RTNORM);
    EXPECT_EQ(acedGrDraw(from, to, 257, 0), RTERROR);
    EXPECT_EQ(acedGrDraw(from, to, -2, 0), RTERROR);
    EXPECT_EQ(acedGrDraw(nullptr, to, 6, 0), RTERROR);
    const ads_point nowhere = {std::numeric_limits<double>::quiet_NaN(), 0, 0};
    EXPECT_EQ(acedGrDraw(nowhere, to, 6, 0), RTERROR);
    ASSERT_EQ(scripted_.lines().size(), 2u);
    EXPECT_EQ(scripted_.lines()[0].from.x, 1.0);
    EXPECT_EQ(scripted_.lines()[0].to.z, 6.0);
    EXPECT_EQ(scripted_.lines()[0].colour, 6);
    EXPECT_EQ(scripted_.lines()[1].highlight, 1);
}

TEST_F(ScriptedTest, RedrawsAndAlertsAreKept) {
    EXPECT_EQ(acedRedraw(nullptr, 1), RTNORM);
    ads_name name;
    acdbGetAdsName(name, line_);
    EXPECT_EQ(acedRedraw(name, 3), RTNORM);
    EXPECT_EQ(acedRedraw(name, 0), RTERROR);
    EXPECT_EQ(acedRedraw(name, 5), RTERROR);
    const ads_name stale = {-1, 0};
    EXPECT_EQ(acedRedraw(stale, 1), RTERROR);
    acedAlert(L"Look");
    ASSERT_EQ(scripted_.redraws().size(), 2u);
    EXPECT_TRUE(scripted_.redraws()[0].entity.isNull());
    EXPECT_EQ(scripted_.redraws()[1].entity, line_);
    EXPECT_EQ(scripted_.alerts(), std::vector<std::wstring>{L"Look"});
}

TEST_F(ScriptedTest, ThePromptsKnowWhoHadTheFocus) {
    CMDIFrameWnd* frame = acedGetAcadFrame();
    frame->SetFocus();
    acedEntSel(nullptr, name_, point_);
    EXPECT_EQ(scripted_.prompts().at(0).focus, static_cast<void*>(frame->m_hWnd));
    EXPECT_NE(frame->m_hWnd, nullptr);
}

TEST_F(ScriptedTest, EveryPromptFailsOnOrderWithoutTakingAnAnswer) {
    scripted_.pick(line_);
    scripted_.type(L"k");
    scripted_.point({7, 8, 9});
    scripted_.keyword(L"Left");
    scripted_.select({line_});
    ACHAR buffer[132] = L"";
    fault::arm("acedEntSel", 1, RTERROR);
    EXPECT_EQ(acedEntSel(nullptr, name_, point_), RTERROR);
    fault::arm("acedGetString", 1, RTERROR);
    EXPECT_EQ(acedGetString(0, nullptr, buffer), RTERROR);
    fault::arm("acutPrintf", 1, RTERROR);
    EXPECT_EQ(acutPrintf(L"x"), RTERROR);
    fault::arm("acedGrDraw", 1, RTERROR);
    EXPECT_EQ(acedGrDraw(point_, point_, 1, 0), RTERROR);
    fault::arm("acedGetPoint", 1, RTERROR);
    EXPECT_EQ(acedGetPoint(nullptr, nullptr, point_), RTERROR);
    EXPECT_EQ(point_[0], -1.0);
    fault::arm("acedGetKword", 1, RTERROR);
    EXPECT_EQ(acedGetKword(nullptr, buffer), RTERROR);
    EXPECT_STREQ(buffer, L"");
    fault::arm("acedInitGet", 1, RTERROR);
    EXPECT_EQ(acedInitGet(1, L"A"), RTERROR);
    ads_name set;
    fault::arm("acedSSGet", 1, RTERROR);
    EXPECT_EQ(acedSSGet(nullptr, nullptr, nullptr, nullptr, set), RTERROR);
    fault::arm("acedRedraw", 1, RTERROR);
    EXPECT_EQ(acedRedraw(nullptr, 1), RTERROR);
    fault::arm("acedAlert", 1, RTERROR);
    EXPECT_EQ(acedAlert(L"x"), RTERROR);
    fault::disarm();
    EXPECT_EQ(scripted_.unused().size(), 5u);
    EXPECT_TRUE(scripted_.prompts().empty());
    EXPECT_EQ(scripted_.printed(), L"");
    EXPECT_TRUE(scripted_.lines().empty());
    EXPECT_TRUE(scripted_.initials().empty());
    EXPECT_TRUE(scripted_.redraws().empty());
    EXPECT_TRUE(scripted_.alerts().empty());
}

TEST(Screen, RequestsForTheFrameAndTheDialogsAreCounted) {
    const ScreenRecord before = screenRecord();
    EXPECT_EQ(acedGetAcadFrame(), acedGetAcadFrame());
    InitAcUiDLL();
    EXPECT_EQ(screenRecord().frameRequests, before.frameRequests + 2);
    EXPECT_EQ(screenRecord().dialogRequests, before.dialogRequests + 1);
}

TEST(Screen, WithoutAScriptedOrASessionPrintsGoNowhere) {
    EXPECT_EQ(acutPrintf(L"x"), RTNORM);
    EXPECT_EQ(acedUsrBrk(), 0);
    ads_name name;
    ads_point point;
    EXPECT_EQ(acedEntSel(nullptr, name, point), RTERROR);
    EXPECT_EQ(acedGetPoint(nullptr, nullptr, point), RTERROR);
    ACHAR buffer[132];
    EXPECT_EQ(acedGetString(0, nullptr, buffer), RTERROR);
    EXPECT_EQ(acedGetKword(nullptr, buffer), RTERROR);
    EXPECT_EQ(acedInitGet(0, nullptr), RTERROR);
    EXPECT_EQ(acedGetInput(buffer), RTERROR);
    EXPECT_EQ(acedSetStatusBarProgressMeter(L"x", 0, 1), -1);
}
