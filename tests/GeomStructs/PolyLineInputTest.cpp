// PolyLine picked vertex by vertex by a scripted user, and printed.
#include <adscodes.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "GeomStructs/PolyLine.h"
#include "host/database/Fault.h"
#include "host/editor/Scripted.h"
#include "tests/GeomStructs/TextLines.h"
#include "tests/host/support/LedgerListener.h"

namespace TamLib {
namespace {

using host::editor::Scripted;

class PolyLineGetFromUser : public ::testing::Test {
  protected:
    void SetUp() override { host_.variable(L"VIEWSIZE", 100.0); }
    void AnswerPoints() {
        host_.point({0, 0, 0});
        host_.point({4, 0, 1});
        host_.point({4, 3, 2});
        host_.failPoint(RTNONE);
    }
    std::string Prompts() const {
        std::string text;
        for (const Scripted::Prompt& prompt : host_.prompts()) {
            text += prompt.function + " " + std::string(prompt.text.begin(), prompt.text.end());
            if (prompt.hasPoint)
                text += "from " + std::to_string(static_cast<int>(prompt.point.x)) + " " +
                        std::to_string(static_cast<int>(prompt.point.y));
            text += ";";
        }
        return text;
    }

    Scripted host_;
    PolyLine line_;
};

TEST_F(PolyLineGetFromUser, AsksFromThenToWithTheLastPointAsBase) {
    AnswerPoints();
    line_.GetFromUser(true, false);
    EXPECT_EQ(
        "acedGetPoint \nFrom point: ;acedGetPoint \nTo point: from 0 0;"
        "acedGetPoint \nTo point: from 4 0;acedGetPoint \nTo point: from 4 3;",
        Prompts());
    EXPECT_EQ("0 0, 4 0 1, 4 3 2, 0 0", ToText(line_));
    EXPECT_TRUE(host_.unused().empty());
}

TEST_F(PolyLineGetFromUser, ShowsARubberLineThenTheWhole) {
    AnswerPoints();
    line_.GetFromUser(true, false);
    std::string drawn;
    for (const Scripted::Line& line : host_.lines()) {
        drawn += std::to_string(line.colour) + (line.highlight != 0 ? "h" : "") + ":" +
                 std::to_string(static_cast<int>(line.to.x)) + "," +
                 std::to_string(static_cast<int>(line.to.y)) + " ";
    }
    EXPECT_EQ("-1h:4,0 1:4,0 -1h:4,3 1:4,0 1:4,3 1:4,0 1:4,3 1:0,0 ", drawn);
}

TEST_F(PolyLineGetFromUser, ReplacesWhatWasThere) {
    line_ = FromText("9 9, 8 8");
    line_.offset = {1, 1, 1};
    line_.hasBounds = 1;
    AnswerPoints();
    line_.GetFromUser(true, false);
    EXPECT_EQ(4u, line_.count);
    EXPECT_EQ(0.0, line_.offset.x);
    EXPECT_EQ(0, line_.hasBounds);
}

TEST_F(PolyLineGetFromUser, OnlyAReplyBeginningWithNKeepsItOpen) {
    for (const wchar_t* const reply : {L"n", L"N", L"no", L"Nyt"}) {
        AnswerPoints();
        host_.type(reply);
        line_.GetFromUser(false, true);
        EXPECT_EQ("0 0, 4 0 1, 4 3 2", ToText(line_));
    }
    for (const wchar_t* const reply : {L"", L"y", L"Y", L"k", L" n", L"Yn"}) {
        AnswerPoints();
        host_.type(reply);
        line_.GetFromUser(false, true);
        EXPECT_EQ("0 0, 4 0 1, 4 3 2, 0 0", ToText(line_));
    }
    const Scripted::Prompt& question = host_.prompts().back();
    EXPECT_EQ("acedGetString", question.function);
    EXPECT_EQ(L"\nClose [<Y>,N]? ", question.text);
    EXPECT_EQ(0, question.withBlanks);
}

TEST_F(PolyLineGetFromUser, ARefusedReplyCloses) {
    AnswerPoints();
    host_.failType(RTCAN);
    line_.GetFromUser(false, true);
    EXPECT_EQ("0 0, 4 0 1, 4 3 2, 0 0", ToText(line_));
}

TEST_F(PolyLineGetFromUser, WithCloseNothingIsAskedAndWithNeitherItClosesToo) {
    for (const bool close : {true, false}) {
        AnswerPoints();
        line_.GetFromUser(close, close);
        EXPECT_EQ("0 0, 4 0 1, 4 3 2, 0 0", ToText(line_));
    }
    for (const Scripted::Prompt& prompt : host_.prompts())
        EXPECT_EQ("acedGetPoint", prompt.function);
}

TEST_F(PolyLineGetFromUser, TheOpenReplyShowsItOnceMore) {
    AnswerPoints();
    host_.type(L"n");
    line_.GetFromUser(false, true);
    EXPECT_EQ(2u + 1u + 2u + 2u, host_.lines().size());
}

TEST_F(PolyLineGetFromUser, NoFirstPointGivesNothingButStillAsks) {
    host_.failPoint(RTCAN, {7, 7, 7}, true);
    host_.type(L"y");
    line_.GetFromUser(false, true);
    EXPECT_EQ(0u, line_.count);
    EXPECT_EQ("acedGetPoint \nFrom point: ;acedGetString \nClose [<Y>,N]? ;", Prompts());
    host_.failPoint(RTCAN);
    line_.GetFromUser(true, false);
    EXPECT_EQ(0u, line_.count);
}

TEST_F(PolyLineGetFromUser, OnePointIsRepeated) {
    host_.point({5, 6, 7});
    host_.failPoint(RTNONE, {9, 9, 9}, true);  // written all the same
    line_.GetFromUser(true, false);
    EXPECT_EQ("5 6 7, 5 6 7", ToText(line_));
}

TEST_F(PolyLineGetFromUser, APointPickedTwiceIsTwoVertices) {
    host_.point({0, 0, 0});
    host_.point({4, 0, 0});
    host_.point({0, 0, 0});
    host_.failPoint(RTNONE);
    line_.GetFromUser(true, false);
    EXPECT_EQ("0 0, 4 0, 0 0, 0 0", ToText(line_));  // intended: appended even where closed
}

// With each call of the host refused in turn: the picked vertices up to there, closed.
TEST(PolyLineGetFromUserRefused, EveryRefusedCallEndsInALineOfWhatWasPicked) {
    std::size_t refusedPoints = 0;
    for (std::size_t n = 1;; ++n) {
        Scripted host;
        host.point({0, 0, 0});
        host.point({4, 0, 1});
        host.point({4, 3, 2});
        host.failPoint(RTNONE);
        host::fault::arm(n, RTERROR);
        PolyLine line;
        line.GetFromUser(true, false);
        const bool fired = host::fault::fired();
        const std::vector<std::string> names = host::fault::names();
        host::fault::disarm();
        if (!fired) break;
        if (names.at(n - 1) != "acedGetPoint") {
            EXPECT_EQ("0 0, 4 0 1, 4 3 2, 0 0", ToText(line)) << names.at(n - 1);
            continue;
        }
        const char* const upTo[] = {"", "0 0, 0 0", "0 0, 4 0 1, 0 0", "0 0, 4 0 1, 4 3 2, 0 0"};
        EXPECT_EQ(upTo[refusedPoints++], ToText(line));
    }
    EXPECT_EQ(4u, refusedPoints);
}

TEST(PolyLinePrint, TellsEveryVertexShifted) {
    Scripted host;
    host.variable(L"VIEWSIZE", 100.0);
    PolyLine line = FromText("0 0, 4 0 1.5");
    line.offset = {10, 20, 30};
    line.Print(3);
    EXPECT_EQ(
        L"PolyLine:\n    Point 0: (10.000000, 20.000000, 30.000000)\n"
        L"    Point 1: (14.000000, 20.000000, 31.500000)\nEnd of PolyLine.\n",
        host.printed());
    ASSERT_FALSE(host.lines().empty());
    EXPECT_EQ(3, host.lines()[0].colour);
    EXPECT_EQ(10.0, host.lines()[0].from.x);
    EXPECT_EQ(14.0, host.lines()[0].to.x);
    EXPECT_EQ(5u, host.lines().size());  // the segment, and two diagonals at each vertex
    host.forget();
    PolyLine().Print(3);
    EXPECT_EQ(L"PolyLine:\nEnd of PolyLine.\n", host.printed());
}

}  // namespace
}  // namespace TamLib
