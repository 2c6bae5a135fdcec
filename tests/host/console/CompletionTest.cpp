#include "host/console/Completion.h"

#include <gtest/gtest.h>

#include "host/console/Options.h"
#include "host/editor/Words.h"
#include "tests/host/console/ChildProcess.h"

namespace {

using namespace host::console;
using host::editor::Request;
using Words = std::vector<std::wstring>;

// The line behind completion, and the choices.
struct Completed {
    std::wstring line;
    Words choices;
};

Completed completed(std::wstring before, const Vocabulary& vocabulary) {
    const Completion completion = complete(before, vocabulary);
    EXPECT_LE(completion.replaced, before.size());
    before.resize(before.size() - completion.replaced);
    return {before + completion.text, completion.choices};
}

Vocabulary vocabulary(Words words, Request::Kind kind = Request::Kind::word) {
    Vocabulary all;
    all.kind = kind;
    all.words = std::move(words);
    all.symbols = [] { return Words{L"HANDENT", L"GETVAR", L"SETVAR", L"SETQ", L"Ä"}; };
    return all;
}

const Words commands{L"OPEN", L"QSAVE", L"SAVE", L"SAVEAS", L"ZEPTAlignEntities"};

std::wstring command(const std::wstring& before) {
    return completed(before, vocabulary(commands, Request::Kind::command)).line;
}

// A folder with files to complete; `at` is a name in it as it is typed.
class CompletionOfFiles : public testing::Test {
  protected:
    CompletionOfFiles() {
        for (const char* name :
             {"street.dxf", "streets.DXF", "run.scr", "my town.dxf", ".hidden.dxf", "lib.lsp"})
            console_test::write(folder_ / name, "x");
        std::filesystem::create_directory(folder_ / "string");
    }

    std::wstring at(const std::wstring& name) const {
        return host::editor::fromUtf8(utf8(folder_.path())) + L"/" + name;
    }

    Completed file(const std::wstring& before, Words types) const {
        Vocabulary all = vocabulary({});
        all.fileTypes = std::move(types);
        return completed(before, all);
    }

    console_test::Folder folder_;
};

}  // namespace

TEST(Completion, OneCandidateIsTakenAsItIsSpelled) {
    EXPECT_EQ(command(L"zept"), L"ZEPTAlignEntities");
    EXPECT_EQ(command(L"o"), L"OPEN");
    EXPECT_TRUE(completed(L"o", vocabulary(commands)).choices.empty());
}

TEST(Completion, SeveralAreCompletedAsFarAsTheyAgree) {
    const Completed several = completed(L"s", vocabulary(commands));
    EXPECT_EQ(several.line, L"SAVE");
    EXPECT_EQ(several.choices, (Words{L"SAVE", L"SAVEAS"}));
    EXPECT_EQ(completed(L"", vocabulary(commands)).choices.size(), 5u);
    EXPECT_TRUE(complete(L"SAVE", vocabulary(commands)).changesNothing(L"SAVE"));
    EXPECT_FALSE(complete(L"sa", vocabulary(commands)).changesNothing(L"sa"));
}

TEST(Completion, NothingFits) {
    EXPECT_EQ(command(L"x"), L"x");
    EXPECT_EQ(complete(L"x", vocabulary(commands)).replaced, 0u);
    EXPECT_EQ(command(L"\"s"), L"\"s") << "in quotes there is no command";
}

TEST(Completion, PrefixesOfCommandsStay) {
    EXPECT_EQ(command(L"_.qs"), L"_.QSAVE");
    EXPECT_EQ(command(L"'op"), L"'OPEN");
}

TEST(Completion, TheReplyBehindTheLastBlankIsCompleted) {
    EXPECT_EQ(completed(L"R w", vocabulary({L"Window", L"ALL"})).line, L"R Window");
    EXPECT_EQ(completed(L"\"a b\" w", vocabulary({L"Window"})).line, L"\"a b\" Window");
}

TEST(Completion, BehindAParenthesisAreNamesOfLisp) {
    EXPECT_EQ(command(L"(han"), L"(handent");
    EXPECT_EQ(command(L"(HAN"), L"(HANDENT");
    EXPECT_EQ(command(L"(setvar (ge"), L"(setvar (getvar");
    EXPECT_EQ(command(L"(list 'ha"), L"(list 'handent");
    EXPECT_EQ(completed(L"(se", vocabulary({})).choices, (Words{L"setq", L"setvar"}));
    EXPECT_EQ(command(L"(handent \"q"), L"(handent \"q") << "a text has no completion";
    EXPECT_EQ(command(L"(list \"a\\\"\" ge"), L"(list \"a\\\"\" getvar");
    EXPECT_EQ(completed(L"(list) o", vocabulary(commands)).line, L"(list) OPEN");
}

TEST(Completion, BehindAnExclamationMarkAreNamesOfLisp) {
    EXPECT_EQ(command(L"!ä"), L"!ä");
    EXPECT_EQ(command(L"!HAND"), L"!HANDENT");
}

TEST(Completion, APromptMayOfferTheBeginningOfAnExpression) {
    EXPECT_EQ(completed(L"", vocabulary({L"(handent \""})).line, L"(handent \"");
    EXPECT_EQ(completed(L"(h", vocabulary({L"(handent \""})).line, L"(handent \"");
}

TEST_F(CompletionOfFiles, OnlyThoseOfTheTypeAndFolders) {
    const Completed found = file(at(L"str"), {L".dxf"});
    EXPECT_EQ(found.line, at(L"str"));
    EXPECT_EQ(found.choices, (Words{at(L"street.dxf"), at(L"streets.DXF"), at(L"string/")}));
    EXPECT_EQ(file(at(L"r"), {L".scr"}).line, at(L"run.scr"));
    EXPECT_EQ(file(at(L"r"), {L".dxf"}).line, at(L"r"));
    EXPECT_EQ(file(at(L"stri"), {L".dxf"}).line, at(L"string/"));
    EXPECT_EQ(file(at(L""), {L""}).choices.size(), 6u) << "hidden ones have to be asked for";
    EXPECT_EQ(file(at(L".h"), {L""}).line, at(L".hidden.dxf"));
    EXPECT_EQ(file(at(L"nofolder/x"), {L""}).line, at(L"nofolder/x"));
}

TEST_F(CompletionOfFiles, NamesWithBlanksAreQuoted) {
    EXPECT_EQ(file(at(L"my"), {L".dxf"}).line, L"\"" + at(L"my town.dxf") + L"\"");
    EXPECT_EQ(file(L"\"" + at(L"my t"), {L".dxf"}).line, L"\"" + at(L"my town.dxf") + L"\"");
    EXPECT_EQ(file(L"\"" + at(L"stri"), {L".dxf"}).line, L"\"" + at(L"string/"));
}

TEST_F(CompletionOfFiles, BehindACommandInTheSameLine) {
    EXPECT_EQ(command(L"OPEN " + at(L"my")), L"OPEN \"" + at(L"my town.dxf") + L"\"");
}

TEST_F(CompletionOfFiles, InACallOfLoad) {
    EXPECT_EQ(command(L"(load \"" + at(L"l")), L"(load \"" + at(L"lib.lsp") + L"\"");
}
