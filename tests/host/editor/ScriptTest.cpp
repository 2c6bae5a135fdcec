#include "host/editor/Script.h"

#include <gtest/gtest.h>

#include "host/editor/Words.h"

using namespace host::editor;

namespace {

// The replies of a script, each in brackets, expressions in braces; `text` asks for free text
// throughout.
std::wstring replies(const std::wstring& script, Request::Kind kind = Request::Kind::word) {
    ScriptInput input(script, L"RUN.scr");
    std::wstring all;
    for (Reply reply = input.next({kind, {}, {}}); reply.kind != Reply::Kind::end;
         reply = input.next({kind, {}, {}})) {
        const bool lisp = reply.kind == Reply::Kind::lisp;
        all += (lisp ? L"{" : L"[") + reply.text + (lisp ? L"}" : L"]");
    }
    return all;
}

}  // namespace

TEST(Script, BlanksAndLineEndsAreEnter) {
    EXPECT_EQ(replies(L"LINE 0,0 1,1\n\n"), L"[LINE][0,0][1,1][]");
    EXPECT_EQ(replies(L"A  B\n"), L"[A][][B]");
    EXPECT_EQ(replies(L"A\tB\n"), L"[A][B]");
}

TEST(Script, ABlankBeforeTheLineEndIsOneEnterMore) {
    EXPECT_EQ(replies(L"ALL \nk\n"), L"[ALL][][k]");
}

TEST(Script, ALastLineWithoutItsEndCounts) {
    EXPECT_EQ(replies(L"ALL\nk"), L"[ALL][k]");
    EXPECT_EQ(replies(L"ALL\n\n"), L"[ALL][]");
    EXPECT_EQ(replies(L"ASK hei "), L"[ASK][hei]");
    EXPECT_EQ(replies(L""), L"");
}

TEST(Script, ReturnsBeforeLineEndsAreNoReply) {
    EXPECT_EQ(replies(L"ALL\r\n\r\nk\r\n"), L"[ALL][][k]");
}

TEST(Script, ALineThatBeginsWithASemicolonIsAComment) {
    EXPECT_EQ(replies(L"; what it does\nALL\n;\n; end"), L"[ALL]");
    EXPECT_EQ(replies(L"A ;b\n"), L"[A][;b]");
    EXPECT_EQ(replies(L" ;b\n"), L"[][;b]");
}

TEST(Script, QuotesKeepBlanksAndGo) {
    EXPECT_EQ(replies(L"OPEN \"my house.dxf\" x\n"), L"[OPEN][my house.dxf][x]");
    EXPECT_EQ(replies(L"\"a b\"c d\n"), L"[a bc][d]");
    EXPECT_EQ(replies(L"\"open end\n"), L"[open end]");
    EXPECT_EQ(replies(L"\"\"\n"), L"[]");
    EXPECT_EQ(replies(L"a\"b c\"\n"), L"[a\"b][c\"]");
}

TEST(Script, FreeTextIsTheRestOfTheLineAsItStands) {
    EXPECT_EQ(replies(L"Vanha tie 7  \n(note) \"x\"\n", Request::Kind::text),
              L"[Vanha tie 7  ][(note) \"x\"]");
    ScriptInput input(L"TEXT 1,2 two words\n", L"s");
    EXPECT_EQ(input.next({}).text, L"TEXT");
    EXPECT_EQ(input.next({}).text, L"1,2");
    EXPECT_EQ(input.next({Request::Kind::text, {}, {}}).text, L"two words");
}

TEST(Script, ParenthesesTooManyBelongToTheExpressionBeforeThem) {
    EXPECT_EQ(replies(L"(a)) b\n"), L"{(a))}[b]");
    EXPECT_EQ(replies(L"((a)\n)))\nb\n"), L"{((a)\n)))}[b]");
    EXPECT_EQ(replies(L"(a) )b\n"), L"{(a)}[)b]");
    EXPECT_EQ(replies(L"(a))"), L"{(a))}");
}

TEST(Script, ABlankAtTheEndOfFreeTextIsKeptWithoutALineEndToo) {
    EXPECT_EQ(replies(L"Vanha tie 7 ", Request::Kind::text), L"[Vanha tie 7 ]");
    EXPECT_EQ(replies(L"Vanha tie 7 \n", Request::Kind::text), L"[Vanha tie 7 ]");
    EXPECT_EQ(replies(L" ", Request::Kind::text), L"[ ]");
    EXPECT_EQ(replies(L"ASK hei  "), L"[ASK][hei][]");
    EXPECT_EQ(replies(L"\"a b\" "), L"[a b]");
    EXPECT_EQ(replies(L"(a) "), L"{(a)}");
    EXPECT_EQ(replies(L" "), L"[]");
    EXPECT_EQ(replies(L"A\t"), L"[A]");
}

TEST(Script, ALineThatBeginsWithASemicolonIsAlsoForFreeTextAComment) {
    EXPECT_EQ(replies(L"; one\nVanha tie\n;two\n ; three\n", Request::Kind::text),
              L"[Vanha tie][ ; three]");
}

TEST(Script, ReturnsInsideAnExpressionAreNoPartOfIt) {
    EXPECT_EQ(replies(L"(setq a\r\n  1)\r\nk\r\n"), L"{(setq a\n  1)}[k]");
    EXPECT_EQ(replies(L"(a \"two\r\nlines\")\r\n"), L"{(a \"two\nlines\")}");
}

TEST(Script, AnExpressionRunsUntilItBalances) {
    EXPECT_EQ(replies(L"(handent \"2F\")\nALL\n"), L"{(handent \"2F\")}[ALL]");
    EXPECT_EQ(replies(L"(setq a\n  (list 1 2)\n)\nk\n"), L"{(setq a\n  (list 1 2)\n)}[k]");
    EXPECT_EQ(replies(L"(a) (b)(c)\n"), L"{(a)}{(b)}{(c)}");
    EXPECT_EQ(replies(L"(a)k\n"), L"{(a)}[k]");
    EXPECT_EQ(replies(L"(a) \n"), L"{(a)}[]");
}

TEST(Script, ParenthesesInTextsAndCommentsDoNotCount) {
    EXPECT_EQ(replies(L"(princ \") \\\" )\")\nk\n"), L"{(princ \") \\\" )\")}[k]");
    EXPECT_EQ(replies(L"(a ; )\n)\nk\n"), L"{(a ; )\n)}[k]");
    EXPECT_EQ(replies(L"(a ;| ) \n ) |; )\nk\n"), L"{(a ;| ) \n ) |; )}[k]");
    EXPECT_EQ(replies(L"(a \"two\nlines)\" )\nk\n"), L"{(a \"two\nlines)\" )}[k]");
}

TEST(Script, AnExpressionWithoutItsEndIsGivenAsItStands) {
    EXPECT_EQ(replies(L"(a (b)\nk\n"), L"{(a (b)\nk}");
}

TEST(Script, RepliesTellWhereTheyStand) {
    ScriptInput input(L"; one\nA B\n(x\n)\nC", L"RUN.scr");
    EXPECT_EQ(input.next({}).where, L"RUN.scr, line 2");
    const Reply second = input.next({});
    EXPECT_EQ(second.where, L"RUN.scr, line 2");
    EXPECT_EQ(second.column, 3u);
    EXPECT_EQ(input.next({}).where, L"RUN.scr, line 3");
    EXPECT_EQ(input.next({}).where, L"RUN.scr, line 5");
}

TEST(Script, StoppingDropsTheRestAndNothingIsPendingThen) {
    ScriptInput input(L"A B\nC\n", L"s");
    input.next({});
    EXPECT_TRUE(input.pending());
    input.stop();
    EXPECT_FALSE(input.pending());
    EXPECT_EQ(input.next({}).kind, Reply::Kind::end);
    EXPECT_EQ(input.next({}).kind, Reply::Kind::end);
}

TEST(Script, ACancelledContinuationCancelsTheExpression) {
    int lines = 0;
    ReplyReader reader([&lines](const Request*, bool continuing) -> ReplyReader::Line {
        EXPECT_EQ(continuing, lines == 1);
        return lines++ == 0 ? ReplyReader::Line{ReplyReader::Line::Kind::text, L"(a"}
                            : ReplyReader::Line{ReplyReader::Line::Kind::cancel, {}};
    });
    EXPECT_EQ(reader.next({}).kind, Reply::Kind::cancel);
    EXPECT_FALSE(reader.pending());
}

TEST(Script, EncodingsAreToldApart) {
    const std::wstring text = L"käännä";
    EXPECT_EQ(decodeScript(toUtf8(text)), text);
    EXPECT_EQ(decodeScript("\xEF\xBB\xBF" + toUtf8(text)), text);
    EXPECT_EQ(decodeScript("k\xE4\xE4nn\xE4"), text);
    EXPECT_EQ(decodeScript(std::string("\xFF\xFEk\0\xE4\0", 6)), L"kä");
    EXPECT_EQ(decodeScript(std::string("\xFE\xFF\0k\0\xE4", 6)), L"kä");
    EXPECT_EQ(decodeScript("\x80"), L"€");
    EXPECT_EQ(replies(decodeScript("\xEF\xBB\xBF; a comment\nALL\n")), L"[ALL]")
        << "the mark is no part of the first line";
    EXPECT_EQ(replies(decodeScript(std::string("\xFF\xFE;\0\n\0A\0\n\0", 10))), L"[A]");
    EXPECT_EQ(decodeScript(""), L"");
    const std::wstring beyond = decodeScript("\xF0\x9F\x8C\xB2");
    EXPECT_EQ(decodeScript(std::string("\xFF\xFE\x3C\xD8\x32\xDF", 6)), beyond) << "two halves";
    EXPECT_EQ(decodeScript(std::string("\xFE\xFF\xD8\x3C\xDF\x32k", 7)), beyond)
        << "a byte too many is left out";
    const std::wstring half = decodeScript(std::string("\xFF\xFE\x3C\xD8k\0", 6));
    ASSERT_EQ(half.size(), 2u) << "half a character stands for itself";
    EXPECT_EQ(half[1], L'k');
    EXPECT_EQ(decodeScript(std::string("\xFF\xFE\x3C\xD8", 4)).size(), 1u);
    EXPECT_EQ(decodeScript(std::string("\xFF\xFE\x32\xDFk\0", 6)).size(), 2u);
    EXPECT_EQ(decodeScript(std::string("\xFF\xFEk", 3)), L"");
    // Not an escape of drawings: a folder may be called so.
    EXPECT_EQ(decodeScript("C:\\U+00E4"), L"C:\\U+00E4");
}

// What a script asks of the command line once `read` replies have been taken: the replies at the
// prompt for commands, each in brackets.
namespace {

std::wstring commandsAfter(int read, const std::wstring& script,
                           ScriptInput::Of of = ScriptInput::Of::file) {
    ScriptInput input(script, L"RUN.scr", of);
    for (int i = 0; i < read; ++i) input.next({});
    std::wstring all;
    while (true) {
        input.commandComes();
        const bool pending = input.pending();
        const Reply reply = input.next({Request::Kind::command, {}, {}});
        EXPECT_EQ(pending, reply.kind != Reply::Kind::end);
        if (reply.kind == Reply::Kind::end) return all;
        all += L"[" + reply.text + L"]";
    }
}

}  // namespace

TEST(Script, EmptyLinesAtItsEndAreNoCommands) {
    EXPECT_EQ(commandsAfter(0, L"A\n\n"), L"[A]");
    EXPECT_EQ(commandsAfter(0, L"A\r\n\r\n \t\n; done\n\n"), L"[A]");
    EXPECT_EQ(commandsAfter(0, L"A\n\nB\n\n\n"), L"[A][][B]") << "only those at the end";
    EXPECT_EQ(commandsAfter(0, L"A\n\n ;no comment\n"), L"[A][][][;no][comment]");
    EXPECT_EQ(commandsAfter(0, L"A \n"), L"[A]") << "a blank before the last line's end as well";
    EXPECT_EQ(commandsAfter(0, L"\n\n"), L"");
    EXPECT_EQ(commandsAfter(0, L""), L"");
}

TEST(Script, EmptyLinesAtItsEndAreAnswersWhereSomethingIsAsked) {
    EXPECT_EQ(replies(L"A\n\n\n"), L"[A][][]");
    EXPECT_EQ(commandsAfter(2, L"A\n\n\nB\n"), L"[][B]");
    EXPECT_EQ(commandsAfter(2, L"A\n\n\n"), L"");
}

TEST(Script, WhatIsSentToTheCommandLineIsMeantAsItStands) {
    EXPECT_EQ(commandsAfter(0, L"A\n\n", ScriptInput::Of::sentText), L"[A][]");
    EXPECT_EQ(commandsAfter(0, L"\n", ScriptInput::Of::sentText), L"[]");
}

TEST(Script, ARepliesRestIsWhatStandsBehindItInItsLine) {
    ScriptInput input(L"OPEN a b.dxf\nNEXT\n(list 1) x\n", L"RUN.scr");
    EXPECT_EQ(input.next({}).rest, L"a b.dxf");
    EXPECT_EQ(input.next({}).rest, L"b.dxf");
    EXPECT_EQ(input.next({}).rest, L"");
    EXPECT_EQ(input.next({}).rest, L"");
    EXPECT_EQ(input.next({}).rest, L"x");
}
