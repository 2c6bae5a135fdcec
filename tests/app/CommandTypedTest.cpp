// The command with answers typed at its prompts, as a person or a script gives them.
#include "BruteForce.h"
#include "CommandHost.h"

namespace {

using namespace app_test;

const std::vector<Vertex> bend{{0, 0}, {100, 0}, {140, 70}};

class TypedCommand : public CommandTest {
  protected:
    void SetUp() override {
        DrawingText drawing;
        drawing.Layer("LUKITTU", 4);
        drawing.Layer("JAASSA", 1);
        drawing.LightPolyline("2F", bend);
        drawing.Text("A0", {20, 5});
        drawing.Insert("B0", {110, 30});
        drawing.Text("A8", {20, 5}, {}, {}, {}, "LUKITTU");
        drawing.Text("A9", {20, 5}, {}, {}, {}, "JAASSA");
        Open(drawing);
        scripted.reset();
        session.onCommandEnded([this](CommandResult& result) { results.push_back(result); });
    }

    void Type(const std::wstring& lines) {
        session.runScript(lines, L"test.scr");
        session.run();
    }

    std::vector<CommandResult> results;
};

TEST_F(TypedCommand, TurnsAllThatIsNeitherFrozenNorLocked) {
    Type(L"ZEPTAlignEntities\n(handent \"2F\")\nALL\n\nk\n");
    ASSERT_EQ(results.size(), 1u);
    EXPECT_EQ(results[0].end, End::done);
    EXPECT_EQ(results[0].name, L"ZEPTAlignEntities");
    EXPECT_EQ(Rotation("A0"), TextRotation(bend, {20, 5}));
    EXPECT_EQ(Rotation("B0"), SymbolRotation(bend, {110, 30}, true));
    EXPECT_EQ(Rotation("A8"), 0.0);
    EXPECT_EQ(Rotation("A9"), 0.0);
}

// A line break that begins a prompt shows only where a line has been begun.
TEST_F(TypedCommand, ShowsItsPromptsAmongTheHostsOwn) {
    Type(L"ZEPTAlignEntities\n(handent \"2F\")\nALL\n\nk\n");
    std::size_t from = 0;
    for (const wchar_t* prompt :
         {L"Valitse suunnan m\u00E4\u00E4r\u00E4\u00E4v\u00E4 viiva : ",
          L"Valitse suunnattavat kohteet : ", L"Select objects: ",
          L"K\u00E4\u00E4nnet\u00E4\u00E4nk\u00F6 symboleja 180 astetta k/<e> : "}) {
        const std::size_t at = output.words.find(prompt, from);
        ASSERT_NE(at, std::wstring::npos)
            << "missing or out of order in: " << ::testing::PrintToString(output.words);
        from = at + 1;
    }
}

TEST_F(TypedCommand, TakesAPointOnTheLineAndSingleEntities) {
    Type(L"zeptalignentities\n50,0\n(handent \"B0\")\n\n\n");
    ASSERT_EQ(results.size(), 1u);
    EXPECT_EQ(results[0].end, End::done);
    EXPECT_EQ(Rotation("B0"), SymbolRotation(bend, {110, 30}, false));
    EXPECT_EQ(Rotation("A0"), 0.0);
}

TEST_F(TypedCommand, ABlankEndsTheReply) {
    Type(L"ZEPTAlignEntities\n(handent \"2F\")\nALL\n\ne K\n");
    EXPECT_EQ(Rotation("B0"), SymbolRotation(bend, {110, 30}, false));
}

TEST_F(TypedCommand, AMissEndsItWithoutAnyChange) {
    Type(L"ZEPTAlignEntities\n500,500\n");
    ASSERT_EQ(results.size(), 1u);
    EXPECT_EQ(results[0].end, End::cancelled);
    EXPECT_EQ(Saved(), original);
}

TEST_F(TypedCommand, NothingSelectedEndsItWithoutAnyChange) {
    Type(L"ZEPTAlignEntities\n(handent \"2F\")\n\n");
    ASSERT_EQ(results.size(), 1u);
    EXPECT_EQ(results[0].end, End::cancelled);
    EXPECT_EQ(Saved(), original);
}

TEST_F(TypedCommand, InputThatEndsAtTheQuestionLeavesTheFirstPass) {
    Type(L"ZEPTAlignEntities\n(handent \"2F\")\nALL\n\n");
    ASSERT_EQ(results.size(), 1u);
    EXPECT_EQ(results[0].end, End::inputEnded);
    EXPECT_EQ(Rotation("B0"), SymbolRotation(bend, {110, 30}, false));
    EXPECT_EQ(Rotation("A0"), TextRotation(bend, {20, 5}));
}

TEST_F(TypedCommand, IsTakenBackToTheLastByte) {
    Type(L"ZEPTAlignEntities\n(handent \"2F\")\nALL\n\nk\n");
    EXPECT_NE(Saved(), original);
    EXPECT_EQ(session.undo(), 1);
    EXPECT_EQ(Saved(), original);
}

}  // namespace
