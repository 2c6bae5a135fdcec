#include "host/editor/Lisp.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <optional>
#include <random>

#include "host/database/Ledger.h"
#include "host/editor/SelectionSets.h"
#include "host/editor/SessionState.h"
#include "host/editor/Words.h"
#include "tests/host/editor/Harness.h"

using namespace host;
using namespace host::editor;
using host::test::Harness;
using host::test::smallTown;

namespace {

std::wstring value(lisp::Interpreter& interpreter, const std::wstring& text) {
    return lisp::text(interpreter.evaluate(text), true);
}

std::wstring value(const std::wstring& text) {
    lisp::Interpreter interpreter;
    return value(interpreter, text);
}

// "sentence @line:column"
std::wstring failure(lisp::Interpreter& interpreter, const std::wstring& text) {
    try {
        interpreter.evaluate(text);
    } catch (const lisp::Error& error) {
        return error.sentence() + L" @" + std::to_wstring(error.where().line) + L":" +
               std::to_wstring(error.where().column);
    }
    return L"no failure";
}

std::wstring failure(const std::wstring& text) {
    lisp::Interpreter interpreter;
    return failure(interpreter, text);
}

// The steps that an expression takes, by how many more there may be before they are too many.
std::size_t steps(lisp::Interpreter& interpreter, const std::wstring& expression) {
    interpreter.define(L"use", {1, 1, [](lisp::Call& call) {
                                    call.spend(1000 * static_cast<std::size_t>(call.whole(0)));
                                    return lisp::Value();
                                }});
    std::size_t fit = 0;
    for (std::size_t tooMany = 100000; tooMany - fit > 1;) {
        const std::size_t used = (fit + tooMany) / 2;
        const std::wstring said =
            failure(interpreter, L"(use " + std::to_wstring(used) + L") " + expression);
        const bool fits = said == L"no failure";
        (fits ? fit : tooMany) = used;
        EXPECT_TRUE(fits || said.substr(0, 26) == L"stopped after 100000 steps") << toUtf8(said);
    }
    return 100000 - 2 - fit;
}

// A symbol that is a list of so many values that share their parts, in lists inside of each other.
std::wstring doubled(const std::wstring& symbol, int times, int nested = 0) {
    std::wstring all;
    const std::wstring begin = L"(setq " + symbol + L" (list " + symbol;
    const std::wstring twice = begin + L" " + symbol + L"))";
    const std::wstring once = begin + L"))";
    for (int i = 0; i < times; ++i) all += twice;
    for (int i = 0; i < nested; ++i) all += once;
    return all;
}

// LISP over the small town.
class LispDrawing : public testing::Test {
  protected:
    std::wstring value(const std::wstring& text) { return ::value(interpreter(), text); }
    std::wstring failure(const std::wstring& text) { return ::failure(interpreter(), text); }
    lisp::Interpreter& interpreter() { return interpreter_; }
    AcDbObjectId entity(const std::wstring& text) {
        const lisp::Value given = interpreter_.evaluate(text);
        const auto* id = std::get_if<AcDbObjectId>(&given);
        return id == nullptr ? AcDbObjectId() : *id;
    }
    LispDrawing() { lisp::defineDrawingFunctions(interpreter_); }

    Harness harness_{smallTown(), {}};
    lisp::Interpreter interpreter_;
};

}  // namespace

TEST(Lisp, ValuesStandForThemselves) {
    EXPECT_EQ(value(L"7"), L"7");
    EXPECT_EQ(value(L"-2147483648"), L"-2147483648");
    EXPECT_EQ(value(L"2147483648"), L"2147483648.0")
        << "what is too large for a whole number is a real";
    EXPECT_EQ(value(L"2.50"), L"2.5");
    EXPECT_EQ(value(L"1e3"), L"1000.0");
    EXPECT_EQ(value(L"\"k\\\"\\\\\\n\\t\\101\""), L"\"k\\\"\\\\\\n\\tA\"");
    EXPECT_EQ(value(L"nil"), L"nil");
    EXPECT_EQ(value(L"t"), L"T");
    EXPECT_EQ(value(L""), L"nil");
    EXPECT_EQ(value(L"unset"), L"nil");
}

TEST(Lisp, ListsPairsAndQuotes) {
    EXPECT_EQ(value(L"'(0 . \"TEXT\")"), L"(0 . \"TEXT\")");
    EXPECT_EQ(value(L"'(1 2 . 3)"), L"(1 2 . 3)");
    EXPECT_EQ(value(L"'(1 . (2 . (3 . nil)))"), L"(1 2 3)");
    EXPECT_EQ(value(L"'()"), L"nil");
    EXPECT_EQ(value(L"(quote (a 'b))"), L"(A (QUOTE B))");
    EXPECT_EQ(value(L"(list 1 (list) \"x\")"), L"(1 nil \"x\")");
    EXPECT_EQ(value(L"(cons 1 2)"), L"(1 . 2)");
    EXPECT_EQ(value(L"(cons 1 '(2 3))"), L"(1 2 3)");
    EXPECT_EQ(value(L"(car '(1 2))"), L"1");
    EXPECT_EQ(value(L"(cdr '(1 2))"), L"(2)");
    EXPECT_EQ(value(L"(car nil)"), L"nil");
    EXPECT_EQ(value(L"(cdr '(1 . 2))"), L"2");
}

TEST(Lisp, SymbolsIgnoreCaseAndKeepTheirValues) {
    lisp::Interpreter interpreter;
    EXPECT_EQ(value(interpreter, L"(setq Käytävä 1 b (list käytävä 2))"), L"(1 2)");
    EXPECT_EQ(value(interpreter, L"(list KÄYTÄVÄ B)"), L"(1 (1 2))");
    EXPECT_EQ(lisp::text(interpreter.variable(L"b"), true), L"(1 2)");
    interpreter.clear();
    EXPECT_EQ(value(interpreter, L"b"), L"nil");
}

TEST(Lisp, PauseIsABackslashUntilItIsSet) {
    lisp::Interpreter interpreter;
    EXPECT_EQ(value(interpreter, L"(list pause Pause)"), L"(\"\\\\\" \"\\\\\")");
    interpreter.evaluate(L"(setq pause 1)");
    EXPECT_EQ(value(interpreter, L"pause"), L"1");
    interpreter.clear();
    EXPECT_EQ(value(interpreter, L"pause"), L"\"\\\\\"");
}

TEST(Lisp, SeveralExpressionsGiveTheLastValue) {
    EXPECT_EQ(value(L"(setq a 1) ; set\n(list a a)"), L"(1 1)");
}

TEST(Lisp, CommentsArePassedOver) {
    EXPECT_EQ(value(L"(list 1 ; ) \n 2 ;| 3 ) \n |; 4)"), L"(1 2 4)");
}

TEST(Lisp, PrincPrintsTextsAsTheyAre) {
    std::wstring printed;
    lisp::Interpreter interpreter([&printed](const std::wstring& text) { printed += text; });
    EXPECT_EQ(value(interpreter, L"(princ \"a\\\"b\")"), L"\"a\\\"b\"");
    EXPECT_EQ(value(interpreter, L"(princ '(1 \"x\"))"), L"(1 \"x\")");
    EXPECT_EQ(value(interpreter, L"(princ)"), L"");
    EXPECT_EQ(printed, L"a\"b(1 x)");
}

TEST(Lisp, WhatCantBeReadSaysWhere) {
    EXPECT_EQ(failure(L"(list 1\n  (list 2)"),
              L"the list that begins here has no closing parenthesis @1:1");
    EXPECT_EQ(failure(L"1\n )"), L"this parenthesis closes nothing @2:2");
    EXPECT_EQ(failure(L"(list \"abc)"),
              L"the text that begins here has no closing quotation mark @1:7");
    EXPECT_EQ(failure(L"'"), L"there is nothing behind the quote mark @1:1");
    EXPECT_EQ(failure(L"(list . )"), L"a dot stands between two values @1:7");
    EXPECT_EQ(failure(L"( . 1)"), L"a dot stands between two values @1:3");
    EXPECT_EQ(failure(L"'(1 . 2 3)"), L"one value and the closing parenthesis follow a dot @1:5");
    EXPECT_EQ(failure(L"(list 1\n  \"ab\\q\")"), L"a text has no escape \"\\q\" @2:6");
    EXPECT_EQ(failure(L"\"\\q\""), L"a text has no escape \"\\q\" @1:2");
    EXPECT_EQ(failure(L"(list ;| open"), L"the comment that begins here has no end \"|;\" @1:7");
    EXPECT_EQ(failure(L"."), L"a dot stands between two values @1:1");
}

TEST(Lisp, WhatBeginsLikeANumberHasToBeOne) {
    for (const std::wstring word : {L"1,5", L"1e400", L"0x10", L"12abc", L"1.2.3", L"-7x", L"+.5e",
                                    L".5.", L"2F", L"1e", L"+-5", L"--5", L"-+.5"}) {
        EXPECT_EQ(failure(L"(list\n  " + word + L")"),
                  word + L" is no number; numbers are written like 7, -2.5 and 1e3 @2:3");
    }
    EXPECT_EQ(value(L"'(1+ 1- + - a1 -a .a ... 1. +7 -.5 1E-3)"),
              L"(1+ 1- + - A1 -A .A ... 1.0 7 -0.5 0.001)");
}

TEST(Lisp, NamesOfFunctionsThatLookLikeNumbersHaveNoValue) {
    EXPECT_EQ(failure(L"(list 1\n (list 1-))"), L"1- is no number, and has no value @2:2");
    EXPECT_EQ(failure(L"1+"), L"1+ is no number, and has no value @1:1");
    EXPECT_EQ(failure(L"(setq a 1+)"), L"1+ is no number, and has no value @1:1");
    EXPECT_EQ(failure(L"(setq 1+ 2)"), L"setq takes a symbol, not 1+ @1:1");
    EXPECT_EQ(failure(L"(1+ 2)"), L"there is no function 1+ @1:1");
}

TEST(Lisp, TextsHoldNoCharacterOfCode0) {
    EXPECT_EQ(failure(L"(list \"a\\000b\")"), L"a text can't hold the character 0 @1:9");
    EXPECT_EQ(failure(L"\"\\0\""), L"a text can't hold the character 0 @1:2");
    EXPECT_EQ(failure(std::wstring(L"\"a\0b\"", 5)), L"a text can't hold the character 0 @1:3");
    EXPECT_EQ(value(L"\"\\001\""), L"\"\x01\"");
}

TEST(Lisp, NothingIsEvaluatedOfATextThatCantBeRead) {
    lisp::Interpreter interpreter;
    EXPECT_NE(failure(interpreter, L"(setq a 1) (setq b"), L"no failure");
    EXPECT_EQ(value(interpreter, L"a"), L"nil");
}

TEST(Lisp, NothingIsEvaluatedOfATextThatCallsWhatIsNotThere) {
    lisp::Interpreter interpreter;
    EXPECT_EQ(failure(interpreter, L"(setq a 1)\n(list (strcat \"x\"))"),
              L"there is no function STRCAT @2:7");
    EXPECT_EQ(failure(interpreter, L"(setq a 1) (car)"), L"CAR takes 1 argument, not 0 @1:12");
    EXPECT_EQ(failure(interpreter, L"(setq a 1 2 3)"), L"setq takes a symbol, not 2 @1:1");
    EXPECT_EQ(value(interpreter, L"a"), L"nil");
    EXPECT_EQ(value(interpreter, L"(setq a '(strcat 1))"), L"(STRCAT 1)") << "quoted is no call";
}

TEST(Lisp, AnEvaluationStopsWhenItIsAskedTo) {
    lisp::Interpreter interpreter;
    int steps = 0;
    interpreter.stopWhen([&steps] { return ++steps == 3; });
    EXPECT_EQ(failure(interpreter, L"(setq a 1) (setq b 2)"), L"stopped, as it was asked to @1:12");
    EXPECT_EQ(value(interpreter, L"(list a b)"), L"(1 nil)");
}

TEST(Lisp, NamesAreThoseOfFunctionsAndValues) {
    lisp::Interpreter interpreter;
    interpreter.evaluate(L"(setq käytävä 1)");
    const std::vector<std::wstring> names = interpreter.names();
    for (const wchar_t* name : {L"QUOTE", L"SETQ", L"LIST", L"CONS", L"KÄYTÄVÄ"})
        EXPECT_EQ(std::count(names.begin(), names.end(), name), 1);
}

TEST(Lisp, WhatCantBeEvaluatedSaysWhere) {
    EXPECT_EQ(failure(L"(list\n (foo 1))"), L"there is no function FOO @2:2");
    EXPECT_EQ(failure(L"(command \"LINE\")"), L"there is no function COMMAND @1:1");
    EXPECT_EQ(failure(L"(1 2)"),
              L"a list begins with the name of a function, not with 1; put a quote mark before it "
              L"if it is meant as it "
              L"stands @1:1");
    EXPECT_EQ(failure(L"(list . 1)"),
              L"a dotted pair can't be called; put a quote mark before it @1:1");
    EXPECT_EQ(failure(L"(car)"), L"CAR takes 1 argument, not 0 @1:1");
    EXPECT_EQ(failure(L"(cons 1)"), L"CONS takes 2 arguments, not 1 @1:1");
    EXPECT_EQ(failure(L"(car 7)"), L"CAR takes a list, not 7 @1:1");
    EXPECT_EQ(failure(L"(quote)"), L"quote takes 1 argument, not 0 @1:1");
    EXPECT_EQ(failure(L"(setq a)"), L"setq takes symbols and values in pairs @1:1");
    EXPECT_EQ(failure(L"(setq 1 2)"), L"setq takes a symbol, not 1 @1:1");
    EXPECT_EQ(failure(L"(setq t 2)"), L"setq takes a symbol, not T @1:1");
}

TEST(Lisp, PositionsCountFromWhereTheExpressionStands) {
    lisp::Interpreter interpreter;
    try {
        interpreter.evaluate(L"(list\n(foo))", {7, 5});
        FAIL();
    } catch (const lisp::Error& error) {
        EXPECT_EQ(error.where().line, 8u);
        EXPECT_EQ(error.where().column, 1u);
    }
    try {
        interpreter.evaluate(L"(foo)", {7, 5});
        FAIL();
    } catch (const lisp::Error& error) {
        EXPECT_EQ(error.where().line, 7u);
        EXPECT_EQ(error.where().column, 5u);
    }
}

TEST(Lisp, DeepNestingIsRefused) {
    const std::wstring opening(300, L'(');
    EXPECT_TRUE(failure(opening).find(L"nested more than 200 deep") != std::wstring::npos);
    const std::wstring quotes(100000, L'\'');
    EXPECT_TRUE(failure(quotes + L"1").find(L"nested more than 200 deep") != std::wstring::npos);
    lisp::Interpreter interpreter;
    interpreter.evaluate(L"(setq a nil)");
    std::wstring stopped;
    for (int i = 0; i < 300 && stopped.empty(); ++i) {
        const std::wstring said = failure(interpreter, L"(setq a (list a))");
        if (said != L"no failure") stopped = said;
    }
    EXPECT_EQ(stopped, L"lists are nested more than 200 deep @1:9");
}

TEST(Lisp, ListsThatShareTheirPartsAreMeasuredAsTheyArePrinted) {
    lisp::Interpreter interpreter;
    interpreter.evaluate(L"(setq a (list 1))");
    for (int doubled = 0; doubled < 19; ++doubled) interpreter.evaluate(L"(setq a (list a a))");
    EXPECT_EQ(value(interpreter, L"a").size(), 3 * 524288u + 3 * 524287u)
        << "each (1), and around each two of them parentheses and a blank";
    EXPECT_EQ(failure(interpreter, L"(setq a (list a a))"),
              L"a list holds more than 1000000 values @1:9");
    EXPECT_EQ(failure(interpreter, L"(setq b (cons a a))"),
              L"a list holds more than 1000000 values @1:9");
}

TEST(Lisp, NamesAndSelectionSetsCountByTheirLength) {
    lisp::Interpreter interpreter;
    interpreter.evaluate(L"(setq a '(" + std::wstring(64 * 500, L'x') + L"))");
    EXPECT_EQ(failure(interpreter, doubled(L"a", 11)),
              L"a list holds more than 1000000 values @1:199");
    Harness harness(smallTown(), {});
    lisp::defineDrawingFunctions(interpreter);
    EXPECT_EQ(lisp::sizeOf(interpreter.evaluate(L"(ssget \"X\")")), 2u) << "eight members";
}

TEST(Lisp, WhatIsTooLongToShowEndsInDots) {
    lisp::Interpreter interpreter;
    const lisp::Value all = interpreter.evaluate(L"'(1 \"a\\n\" (b . c) . 2)");
    EXPECT_EQ(lisp::text(all, true, 21), L"(1 \"a\\n\" (B . C) . 2)");
    const std::wstring whole = lisp::text(all, true);
    for (std::size_t most = 0; most < whole.size(); ++most)
        EXPECT_EQ(lisp::text(all, true, most), whole.substr(0, most) + L"...");
    const lisp::Value plain = std::wstring(L"abc");
    EXPECT_EQ(lisp::text(plain, false, 3), L"abc");
    EXPECT_EQ(lisp::text(plain, false, 2), L"ab...");
    EXPECT_EQ(lisp::text(plain, true, 2), L"\"a...");
}

TEST(Lisp, MessagesHoldOnlyTheBeginningOfLongValues) {
    Harness harness(smallTown(), {});
    lisp::Interpreter interpreter;
    lisp::defineDrawingFunctions(interpreter);
    lisp::defineSessionFunctions(interpreter);
    interpreter.evaluate(L"(setq a \"" + std::wstring(60, L'x') + L"\" s \"" +
                         std::wstring(100000, L'x') + L"\")" + doubled(L"a", 18, 150));
    for (const std::wstring wrong : {L"(sslength a)",
                                     L"(handent a)",
                                     L"(handent s)",
                                     L"(ssname a 0)",
                                     L"(entget a)",
                                     L"(ssget \"X\" a)",
                                     L"(ssget \"X\" (list a))",
                                     L"(ssget \"X\" (list (cons 0 a)))",
                                     L"(ssget \"X\" (cons a 1))",
                                     L"(ssget \"W\" a a)",
                                     L"(ssget \"WP\" a)",
                                     L"(ssget \":$\" a)",
                                     L"(ssget s)",
                                     L"(ssget s a)",
                                     L"(ssget \"X\" nil a)",
                                     L"(ssget \"X\" (list (cons -4 s)))",
                                     L"(ssget \"X\" (list (cons -4 (list 1))))",
                                     L"(setvar \"PICKADD\" a)",
                                     L"(setvar s 1)",
                                     L"(setvar \"PICKADD\" s)",
                                     L"(car s)",
                                     L"(command a)",
                                     L"(command s)",
                                     L"(load s)",
                                     L"(load a)"}) {
        const std::wstring said = failure(interpreter, wrong);
        EXPECT_NE(said, L"no failure") << toUtf8(wrong);
        EXPECT_LT(said.size(), 250u) << toUtf8(wrong);
    }
    const std::wstring name(100000, L'n');
    for (const std::wstring& wrong :
         {L"(" + name + L")", L"(setq \"" + name + L"\" 1)", L"((" + name + L"))", L"1" + name}) {
        EXPECT_LT(failure(interpreter, wrong).size(), 250u);
    }
}

TEST(Lisp, AListHoldsAMillionValues) {
    lisp::Value million;
    for (int i = 0; i < 1000000; ++i) million = lisp::cons(i, std::move(million));
    EXPECT_EQ(lisp::members(million).size(), 1000000u);
    EXPECT_THROW(lisp::cons(0, million), lisp::Error);
    EXPECT_THROW(lisp::list({0, 0}, {}, std::get<lisp::PairPtr>(million)->cdr), lisp::Error);
    EXPECT_NO_THROW(lisp::list({0}, {}, std::get<lisp::PairPtr>(million)->cdr));
}

TEST(Lisp, TextsCountByTheirLength) {
    const std::vector<lisp::Value> hundred(100, std::wstring(64 * 9999 + 63, L'x'));
    const lisp::Value all = lisp::list(hundred);
    EXPECT_THROW(lisp::cons(1, all), lisp::Error);
    EXPECT_THROW(lisp::list(std::vector<lisp::Value>(100, std::wstring(64 * 10000, L'x'))),
                 lisp::Error);
}

TEST(Lisp, ARunawayIsStopped) {
    std::wstring many = L"(list";
    for (int i = 0; i < 100001; ++i) many += L" 1";
    EXPECT_EQ(failure(many + L")"), L"stopped after 100000 steps @1:1");
}

TEST(Lisp, PrintingCountsAsAStepForEachHundredCharacters) {
    std::size_t printed = 0;
    lisp::Interpreter interpreter([&](const std::wstring& text) { printed += text.size(); });
    interpreter.evaluate(L"(setq a \"" + std::wstring(99, L'x') + L"\" b \"" +
                         std::wstring(100000, L'x') + L"\")");
    EXPECT_EQ(steps(interpreter, L"(princ a)"), 2u);
    EXPECT_EQ(steps(interpreter, L"(princ b)"), 1002u);
    interpreter.evaluate(L"(setq c \"63 x" + std::wstring(59, L'x') + L"\")" +
                         doubled(L"c", 18, 180));
    printed = 0;
    EXPECT_EQ(failure(interpreter, L"(princ c)"), L"stopped after 100000 steps @1:1");
    EXPECT_EQ(printed, 0u);
}

TEST(Lisp, ACallIsStoppedBeforeItPrints) {
    std::wstring printed;
    lisp::Interpreter interpreter([&](const std::wstring& text) { printed += text; });
    int asked = 0;
    interpreter.stopWhen([&asked] { return ++asked == 3; });
    EXPECT_EQ(failure(interpreter, L"(princ 1)"), L"stopped, as it was asked to @1:1");
    EXPECT_EQ(printed, L"");
}

TEST(Lisp, AllValuesTogetherHaveSoMuchRoom) {
    const std::size_t before = lisp::Room::taken();
    const lisp::Room elsewhere(lisp::mostRoom - 20000);
    lisp::Interpreter interpreter;
    std::wstring list = L"'(";
    for (int i = 0; i < 9000; ++i) list += L"1 ";
    list += L")";
    EXPECT_EQ(failure(interpreter, L"(setq a " + list + L")"), L"no failure");
    EXPECT_EQ(failure(interpreter, L"(setq b " + list + L")"), L"no failure");
    const std::wstring full = failure(interpreter, L"(setq d 1)(setq c " + list + L")");
    EXPECT_EQ(full, L"all values together are more than 2000000 @1:20");
    EXPECT_EQ(value(interpreter, L"(list c d)"), L"(nil nil)");
    EXPECT_EQ(failure(interpreter, L"(setq a nil)(setq b nil)"), L"no failure");
    EXPECT_EQ(failure(interpreter, L"(setq c " + list + L")"), L"no failure")
        << "there is room again";
    interpreter.clear();
    EXPECT_EQ(lisp::Room::taken() - before, lisp::mostRoom - 20000 + 1) << "PAUSE is left";
}

TEST(Lisp, TextsAreSharedAndTakeRoomByTheirLength) {
    lisp::Interpreter interpreter;
    interpreter.evaluate(L"(setq a \"" + std::wstring(64 * 1000, L'x') + L"\")");
    const std::size_t before = lisp::Room::taken();
    for (int i = 0; i < 5000; ++i) interpreter.evaluate(L"(setq a" + std::to_wstring(i) + L" a)");
    EXPECT_EQ(lisp::Room::taken(), before);
    const lisp::Text kept(std::wstring(64 * 1000, L'x'));
    EXPECT_EQ(lisp::Room::taken(), before + 1001);
    EXPECT_NO_THROW(lisp::needRoom(lisp::mostRoom - before - 1001, {}));
    EXPECT_THROW(lisp::needRoom(lisp::mostRoom - before - 1000, {}), lisp::Error);
}

TEST(Lisp, StepsCountTogetherWithThoseOfAnExpressionInside) {
    lisp::Interpreter interpreter;
    int inner = 0;
    interpreter.define(L"inside", {0, 0, [&inner](lisp::Call& call) {
                                       ++inner;
                                       return call.interpreter.evaluate(L"(list 1 2 3 4)");
                                   }});
    std::wstring many = L"(list";
    for (int i = 0; i < 30000; ++i) many += L" (inside)";
    EXPECT_EQ(failure(interpreter, many + L")"), L"stopped after 100000 steps @1:1");
    EXPECT_EQ(inner, 16667) << "six steps each";
    EXPECT_EQ(value(interpreter, L"(inside)"), L"(1 2 3 4)") << "the next one starts afresh";
}

TEST(Lisp, ExpressionsInsideOfEachOtherAreTwentyAtMost) {
    lisp::Interpreter interpreter;
    int depth = 0;
    int most = 20;
    interpreter.define(L"down", {0, 0, [&](lisp::Call& call) {
                                     return ++depth == most ? lisp::Value(depth)
                                                            : call.interpreter.evaluate(L"(down)");
                                 }});
    EXPECT_EQ(value(interpreter, L"(down)"), L"20");
    depth = 0;
    most = 21;
    EXPECT_EQ(failure(interpreter, L"(down)"),
              L"expressions answer each other's prompts more than 20 deep @1:1");
    depth = 20;
    EXPECT_EQ(value(interpreter, L"(down)"), L"21") << "a failure leaves no depth behind";
}

TEST(Lisp, LongListsAreTakenDownWithoutRecursion) {
    std::wstring many = L"(setq a '(";
    for (int i = 0; i < 500000; ++i) many += L"1 ";
    lisp::Interpreter interpreter;
    interpreter.evaluate(many + L"))");
    interpreter.clear();
    EXPECT_EQ(value(interpreter, L"a"), L"nil");
}

TEST_F(LispDrawing, HandlesNameEntities) {
    EXPECT_EQ(test::handles({entity(L"(handent \"20\")")}), L"20");
    EXPECT_EQ(test::handles({entity(L"(handent \"0020\")")}), L"20");
    EXPECT_EQ(value(L"(handent \"99\")"), L"nil");
    EXPECT_EQ(failure(L"(handent \"2G\")"),
              L"\"2G\" is no handle: handles are hexadecimal, as in \"2F\" @1:1");
    EXPECT_EQ(failure(L"(handent 20)"), L"HANDENT takes a text as its first argument, not 20 @1:1");
    EXPECT_EQ(test::handles({entity(L"(entlast)")}), L"24");
}

TEST_F(LispDrawing, AFilterSelectsInTheWholeDrawing) {
    EXPECT_EQ(value(L"(sslength (ssget \"X\"))"), L"8");
    EXPECT_EQ(value(L"(sslength (ssget \"X\" '((0 . \"TEXT\"))))"), L"5");
    EXPECT_EQ(value(L"(sslength (ssget \"_x\" (list (cons 0 \"TEXT,circle\") (cons 8 \"~f*\"))))"),
              L"5");
    EXPECT_EQ(value(L"(ssget \"X\" '((8 . \"nosuch\")))"), L"nil");
    EXPECT_EQ(test::handles({entity(L"(ssname (ssget \"X\" '((0 . \"TEXT\"))) 1)")}), L"21");
    EXPECT_EQ(value(L"(ssname (ssget \"X\" '((0 . \"TEXT\"))) 5)"), L"nil");
}

TEST_F(LispDrawing, OtherWaysOfSelecting) {
    EXPECT_EQ(value(L"(sslength (ssget '(30 0)))"), L"1");
    EXPECT_EQ(value(L"(ssget '(30 30))"), L"nil");
    EXPECT_EQ(value(L"(sslength (ssget \"W\" '(-1 -1) '(101 60)))"), L"6");
    EXPECT_EQ(value(L"(sslength (ssget \"C\" '(45 -1) '(46 60) '((0 . \"LINE\"))))"), L"2");
    EXPECT_EQ(value(L"(sslength (ssget \"CP\" '((30 10) (70 10) (70 60))))"), L"2");
    EXPECT_EQ(value(L"(sslength (ssget \"F\" '((50 -5) (50 60))))"), L"3");
    EXPECT_EQ(value(L"(sslength (ssget \"L\"))"), L"1");
}

TEST_F(LispDrawing, EachWayOfSelectingTakesItsOwnArguments) {
    EXPECT_EQ(value(L"(sslength (ssget \"CP:S\" '((30 10) (70 10) (70 60))))"), L"2");
    EXPECT_EQ(value(L"(sslength (ssget \"._wp:L\" '((-9 -9) (109 -9) (109 99) (-9 99))))"), L"5");
    EXPECT_EQ(value(L"(sslength (ssget \"f:s\" '((50 -5 1) (50 60 1)) '((0 . \"LINE\"))))"), L"2");
    EXPECT_EQ(value(L"(sslength (ssget \"_W:L\" '(-1 -1) '(101 60)))"), L"5");
    EXPECT_EQ(value(L"(sslength (ssget \":S\" '(30 0)))"), L"1");
    EXPECT_EQ(value(L"(sslength (ssget \"A:L\"))"), L"6");
    EXPECT_EQ(value(L"(ssget \"I\")"), L"nil") << "nothing is ever selected beforehand";
    EXPECT_EQ(value(L"(ssget \"P\")"), L"nil");
    EXPECT_EQ(value(L"(ssget nil)"), L"nil") << "asks, and there is nobody to answer";
}

TEST_F(LispDrawing, ArgumentsOfAnotherWayOfSelectingAreRefused) {
    const wchar_t* const lists[] = {L"CP:S", L"WP", L"F:L", L"_cp", L".F", L"CP:$"};
    for (const std::wstring mode : lists) {
        EXPECT_EQ(failure(L"(ssget \"" + mode + L"\" (list 1.0 2.0000000000022213))"),
                  L"a list of points is needed, not (1.0 2.0000000000022213) @1:1");
        EXPECT_EQ(failure(L"(ssget \"" + mode + L"\" '((1 2) . 3))"),
                  L"a list of points is needed, not ((1 2) . 3) @1:1");
        EXPECT_EQ(failure(L"(ssget \"" + mode + L"\" nil)"),
                  L"a list of points is needed, not nil @1:1");
        EXPECT_EQ(failure(L"(ssget \"" + mode + L"\")"), L"SSGET lacks its second argument @1:1");
    }
    for (const std::wstring mode : {L"W", L"C:S", L"_c", L".W:$"}) {
        EXPECT_EQ(failure(L"(ssget \"" + mode + L"\" '((0 0) (1 1)))"),
                  L"ssget \"" + mode + L"\" takes two points, not ((0 0) (1 1)) @1:1");
        EXPECT_EQ(failure(L"(ssget \"" + mode + L"\" '(0 0) '((0 . \"TEXT\")))"),
                  L"ssget \"" + mode + L"\" takes two points, not ((0 . \"TEXT\")) @1:1");
        EXPECT_EQ(failure(L"(ssget \"" + mode + L"\" '(0 0))"),
                  L"SSGET lacks its third argument @1:1");
    }
    for (const std::wstring mode : {L"X", L"A:S", L"_L", L".P:L", L"I"}) {
        EXPECT_EQ(failure(L"(ssget \"" + mode + L"\" '(1 2))"),
                  L"a filter consists of pairs like (0 . \"TEXT\"), not 1 @1:1");
    }
    for (const std::wstring mode : {L":$", L"_:$S", L":L$"}) {
        EXPECT_EQ(failure(L"(ssget \"" + mode + L"\" '(1 2))"),
                  L"a list of two texts to ask with is needed, not (1 2) @1:1");
        EXPECT_EQ(failure(L"(ssget \"" + mode + L"\" '(\"a\"))"),
                  L"a list of two texts to ask with is needed, not (\"a\") @1:1");
        EXPECT_EQ(failure(L"(ssget \"" + mode + L"\")"), L"SSGET lacks its second argument @1:1");
    }
    for (const std::wstring mode : {L"NOSUCH", L"X:Q", L":E", L"XX", L"WC"}) {
        EXPECT_EQ(failure(L"(ssget \"" + mode + L"\" '(1 2) '(3 4))"),
                  L"ssget has no mode \"" + mode + L"\" @1:1");
    }
}

TEST_F(LispDrawing, AFilterThatCantBeIsAnError) {
    EXPECT_EQ(failure(L"(ssget \"X\" '((-4 . \"<OR\") (0 . \"TEXT\")))"),
              L"the group <OR of a filter has no end OR> @1:1");
    EXPECT_EQ(failure(L"(ssget \"X\" '((-4 . \"\") (0 . \"TEXT\")))"),
              L"an operator of a filter is empty @1:1");
    EXPECT_TRUE(harness_.output().errors.empty()) << "said once, by the expression";
}

TEST_F(LispDrawing, WrongFiltersAndArgumentsAreNamed) {
    EXPECT_EQ(failure(L"(ssget \"X\" '((0 . 7)))"), L"group 0 of a filter can't be 7 @1:1");
    EXPECT_EQ(failure(L"(ssget \"X\" '(0 . 7))"), L"a filter is a list of pairs, not (0 . 7) @1:1");
    EXPECT_EQ(failure(L"(ssget \"X\" '(7))"),
              L"a filter consists of pairs like (0 . \"TEXT\"), not 7 @1:1");
    EXPECT_EQ(failure(L"(ssget \"X\" '((62 . 100000)))"),
              L"group 62 of a filter can't be 100000 @1:1");
    EXPECT_EQ(failure(L"(ssget \"F\" '((1 2) 3))"),
              L"a list of points is needed, not ((1 2) 3) @1:1");
    EXPECT_EQ(failure(L"(ssget \"X\" '((0 . \"LINE\")) 3)"), L"ssget does not take 3 there @1:1");
    EXPECT_EQ(failure(L"(sslength 1)"),
              L"SSLENGTH takes a selection set as its first argument, not 1 @1:1");
    EXPECT_EQ(failure(L"(ssname (ssget \"X\") \"a\")"),
              L"SSNAME takes a whole number as its second argument, not \"a\" @1:1");
}

TEST_F(LispDrawing, SelectingCountsAsAStepForEachThousandTestsOfAnEntity) {
    EXPECT_EQ(steps(interpreter(), L"(ssget \"X\")"), 2u);
    std::wstring tests = L"(setq f '(";
    for (int i = 0; i < 5000; ++i) tests += L"(0 . \"NO\")";
    interpreter().evaluate(tests + L"))");
    EXPECT_EQ(steps(interpreter(), L"(ssget \"X\" f)"), 3u + 10u + 80u)
        << "10000 values in the filter for 8 entities";
}

TEST_F(LispDrawing, PolygonsCountByTheSquareOfTheirSides) {
    std::wstring points = L"(setq p '(";
    for (int i = 0; i < 1000; ++i) points += L"(" + std::to_wstring(i) + L" -5)";
    interpreter().evaluate(points + L"))");
    for (const std::wstring mode : {L"WP", L"CP", L"F"})
        EXPECT_EQ(steps(interpreter(), L"(ssget \"" + mode + L"\" p)"), 3u + 2u + 1000u);
    for (int i = 0; i < 9100; ++i) points += L"(" + std::to_wstring(i) + L" 5)";
    interpreter().evaluate(points + L"))");
    EXPECT_EQ(failure(L"(ssget \"WP\" p)"), L"stopped after 100000 steps @1:1");
}

TEST_F(LispDrawing, EntitiesCountAsAStepForEachHundredGroups) {
    EXPECT_EQ(steps(interpreter(), L"(entget (entlast))"), 2u);
    test::DrawingText drawing("AC1015");
    std::string line = "LWPOLYLINE|5 1A|8 0|90 1000|70 0";
    for (int i = 0; i < 1000; ++i) line += "|10 " + std::to_string(i) + ".0|20 0.0";
    drawing.entity(line);
    harness_.session().useDrawing(drawing.database());
    EXPECT_EQ(steps(interpreter(), L"(entget (entlast))"), 2u + 10u);
}

TEST_F(LispDrawing, TextsThatAreLookedAtCountByTheirLength) {
    interpreter().evaluate(L"(setq s \"" + std::wstring(5000, L'0') + L"\")");
    EXPECT_EQ(steps(interpreter(), L"(getvar s)"), 2u + 5u);
    interpreter().evaluate(L"(setvar \"USERS1\" s)");
    EXPECT_EQ(steps(interpreter(), L"(getvar \"USERS1\")"), 2u + 5u);
}

TEST_F(LispDrawing, ASearchThatIsStoppedStopsTheEvaluation) {
    int asked = 0;
    interpreter().stopWhen([&] {
        if (++asked == 3) harness_.session().interrupt();
        return asked == 5;  // what the search has found is not looked at
    });
    EXPECT_EQ(failure(L"(ssget \"X\")"), L"stopped, as it was asked to @1:1");
    EXPECT_EQ(database::Ledger::instance().count("selection set"), 0u);
}

TEST_F(LispDrawing, ASetIsGivenBackWithItsLastValue) {
    const std::size_t before = SelectionSets::instance().existing().size();
    const std::size_t room = lisp::Room::taken();
    interpreter().evaluate(L"(setq s (ssget \"X\") r s)");
    EXPECT_EQ(lisp::Room::taken(), room + 2) << "for eight members";
    EXPECT_EQ(database::Ledger::instance().count("selection set"), 0u)
        << "LISP holds it, no command has left it";
    EXPECT_EQ(SelectionSets::instance().existing().size(), before + 1);
    interpreter().evaluate(L"(setq s nil)");
    EXPECT_EQ(value(L"(sslength r)"), L"8");
    interpreter().evaluate(L"(setq r nil)");
    EXPECT_EQ(SelectionSets::instance().existing().size(), before);
    EXPECT_EQ(lisp::Room::taken(), room);
}

TEST_F(LispDrawing, ASetThatThereIsNoRoomForIsGivenBack) {
    const std::size_t before = SelectionSets::instance().existing().size();
    std::optional<lisp::Room> rest;
    interpreter().define(L"fill", {0, 0, [&rest](lisp::Call&) {
                                       rest.emplace(lisp::mostRoom - lisp::Room::taken());
                                       return lisp::Value();
                                   }});
    EXPECT_EQ(failure(L"(list (fill) (ssget \"X\"))"),
              L"all values together are more than 2000000 @1:14");
    EXPECT_EQ(SelectionSets::instance().existing().size(), before);
    EXPECT_EQ(database::Ledger::instance().count("selection set"), 0u);
}

TEST_F(LispDrawing, VariablesAreReadAndSet) {
    EXPECT_EQ(value(L"(getvar \"pickadd\")"), L"1");
    EXPECT_EQ(value(L"(getvar \"nosuch\")"), L"nil");
    EXPECT_EQ(value(L"(getvar \"VIEWCTR\")"), L"(50.0 25.0 0.0)");
    EXPECT_EQ(value(L"(getvar \"SCREENSIZE\")"), L"(1920.0 1080.0)");
    EXPECT_EQ(value(L"(setvar \"USERS1\" \"hei\")"), L"\"hei\"");
    EXPECT_EQ(value(L"(getvar \"USERS1\")"), L"\"hei\"");
    EXPECT_EQ(value(L"(setvar \"USERR1\" 2)"), L"2");
    EXPECT_EQ(value(L"(getvar \"USERR1\")"), L"2.0");
    EXPECT_EQ(failure(L"(setvar \"PICKADD\" 9)"), L"PICKADD can't be set to 9 @1:1");
    EXPECT_EQ(failure(L"(setvar \"PICKADD\" \"x\")"), L"PICKADD can't be set to \"x\" @1:1");
    EXPECT_EQ(failure(L"(setvar \"VIEWSIZE\" 2.0)"), L"VIEWSIZE can't be set to 2.0 @1:1");
    EXPECT_EQ(failure(L"(setvar \"NOSUCH\" 2)"), L"there is no system variable NOSUCH @1:1");
}

TEST_F(LispDrawing, WithoutADrawingThereIsNothingToName) {
    harness_.session().closeDrawing();
    EXPECT_EQ(failure(L"(handent \"20\")"), L"no drawing is open @1:1");
    EXPECT_EQ(failure(L"(entlast)"), L"no drawing is open @1:1");
    EXPECT_EQ(failure(L"(ssget \"X\")"), L"no drawing is open @1:1");
}

TEST_F(LispDrawing, EntgetGivesTheGroupsOfAnEntity) {
    EXPECT_EQ(
        value(L"(cdr (entget (handent \"10\")))"),
        L"((0 . \"LINE\") (5 . \"10\") (8 . \"street\") (10 0.0 0.0 0.0) (11 100.0 0.0 0.0))");
    EXPECT_EQ(entity(L"(cdr (car (entget (handent \"10\"))))"), harness_.entity(L"10"));
    EXPECT_EQ(value(L"(car (car (entget (handent \"10\"))))"), L"-1");
    EXPECT_EQ(failure(L"(entget \"10\")"),
              L"ENTGET takes an entity as its first argument, not \"10\" @1:1");
    EXPECT_EQ(failure(L"(entget (handent \"99\"))"),
              L"ENTGET takes an entity as its first argument, not nil @1:1");
}

TEST(LispEntities, EntgetHasAnglesInRadiansAndHandlesAsEntities) {
    test::DrawingText drawing("AC1015");
    drawing.entity("LINE|5 1A|8 0|10 0.0|20 0.0|30 0.0|11 1.0|21 0.0|31 0.0");
    drawing.entity(
        "TEXT|5 1B|330 1A|331 FFFF|100 AcDbEntity|8 0|62 3|100 AcDbText|10 1.0|20 2.0|40 2.5|1 Tie "
        "|50 "
        "180.0|160 5000000000|1001 APP|1000 x");
    Harness harness(drawing, {});
    lisp::Interpreter interpreter;
    lisp::defineDrawingFunctions(interpreter);
    interpreter.evaluate(L"(setq g (cdr (entget (handent \"1B\"))))");
    const std::wstring shown = value(interpreter, L"(cdr (cdr (cdr g)))");
    EXPECT_EQ(
        shown,
        L"((331 . \"FFFF\") (100 . \"AcDbEntity\") (8 . \"0\") (62 . 3) (100 . \"AcDbText\") (10 "
        L"1.0 2.0 0.0) (40 . 2.5) (1 . \"Tie \") (50 . 3.141592653589793) (160 . 5e+09))");
    EXPECT_EQ(value(interpreter, L"(entget (cdr (car (cdr (cdr g)))))"),
              value(interpreter, L"(entget (handent \"1A\"))"));
}

TEST(LispCommands, CommandRunsACommandWithItsAnswers) {
    Harness harness(smallTown(), {L"(command \"SELECT\" (handent \"10\") (ssget \"X\" '((0 . "
                                  L"\"CIRCLE\"))) '(30 50) \"W\" \"0,0\" '(60 5) \"\")"});
    const std::wstring shown = harness.run();
    EXPECT_EQ(test::handles(harness.result().prompts.at(0).entities), L"10 12 11 20");
    EXPECT_NE(shown.find(L"Command: SELECT\nSelect objects: <Entity name: "), std::wstring::npos);
    EXPECT_NE(shown.find(L"Select objects: (30 50)\n1 found, 3 total\nSelect objects: W\nSpecify "
                         L"first corner: 0,0\n"),
              std::wstring::npos);
    EXPECT_EQ(shown.substr(shown.size() - 4), L"\nnil");
}

TEST(LispCommands, WhatTheArgumentsLeaveOpenTheInputAnswers) {
    Harness harness(smallTown(), {L"(command \"SELECT\" \"ALL\")", L"(handent \"10\")", L"",
                                  L"(command \"SELECT\" \"\\\\\" \"\")", L"L"});
    harness.run();
    ASSERT_EQ(harness.results().size(), 2u);
    EXPECT_EQ(harness.results()[0].end, CommandResult::End::done);
    EXPECT_EQ(test::handles(harness.results()[1].prompts.at(0).entities), L"22");
}

TEST(LispCommands, PauseLeavesTheAnswerToTheInput) {
    Harness harness(smallTown(), {L"(command \"SELECT\" pause \"\")", L"L"});
    harness.run();
    EXPECT_EQ(test::handles(harness.result().prompts.at(0).entities), L"22");
    EXPECT_TRUE(harness.output().errors.empty());
}

TEST(LispCommands, AnExpressionThatAnswersAPauseIsNotAnsweredByTheArgumentsBehindIt) {
    Harness harness(smallTown(),
                    {L"(command \"SELECT\" \"\\\\\" \"ALL\" \"\")", L"(ssget)", L"10,2", L""});
    harness.run();
    ASSERT_EQ(harness.results().size(), 1u);
    EXPECT_EQ(harness.result().end, CommandResult::End::done);
    EXPECT_EQ(test::handles(harness.result().prompts.at(0).entities), L"20 10 11 12 21 24");
    EXPECT_EQ(harness.output().shown.find(L"Select objects: ALL\n"),
              harness.output().shown.rfind(L"Select objects: ALL\n"));
}

TEST(LispCommands, AnExpressionThatFailsAtAPauseLeavesTheArgumentsInPlace) {
    Harness harness(smallTown(), {L"(command \"SELECT\" \"\\\\\" \"L\" \"\")", L"(sslength 1)"},
                    Harness::By::person);
    harness.run();
    EXPECT_EQ(test::handles(harness.result().prompts.at(0).entities), L"22");
}

TEST(LispCommands, ArgumentsCountByTheirLength) {
    Harness harness(smallTown(), {});
    lisp::Interpreter& interpreter = harness.session().implementation().lisp;
    interpreter.evaluate(L"(setq s \"" + std::wstring(1000, L' ') + L"\")");
    EXPECT_EQ(steps(interpreter, L"(command s)"), 2u + 10u);
}

TEST(LispCommands, AParenthesisTooManyIsToldWithItsPlace) {
    Harness harness(smallTown(), {L"SELECT", L"(setq a 1", L"))", L""});
    harness.run();
    EXPECT_EQ(harness.output().errors.at(0),
              L"LISP: this parenthesis closes nothing (RUN.scr, line 3, column 2)");
    EXPECT_EQ(harness.output().errors.size(), 1u);
    EXPECT_EQ(harness.result().end, CommandResult::End::failed);
    EXPECT_EQ(lisp::text(harness.session().implementation().lisp.variable(L"a"), true), L"nil")
        << "nothing was done";
}

TEST(LispCommands, ALongValueIsShownInPart) {
    Harness harness(smallTown(), {L"(car (list a))", L"!a"});
    harness.session().implementation().lisp.evaluate(L"(setq a \"" + std::wstring(60, L'x') +
                                                     L"\")" + doubled(L"a", 12));
    const std::wstring shown = harness.run();
    EXPECT_EQ(shown.size(), std::wstring(L"Command: (car (list a))\n...\nCommand: !a\n...").size() +
                                2 * lisp::longestShown);
    EXPECT_EQ(shown.substr(shown.size() - 4), L"x...");
}

TEST(LispCommands, SeveralCommandsAndRepetition) {
    Harness harness(smallTown(),
                    {L"(command \"SELECT\" \"L\" \"\" \"_.select\" \"ALL\" \"\" \"\" \"L\" \"\")",
                     L"(command)", L"(command nil)"});
    harness.run();
    EXPECT_EQ(harness.results().size(), 3u);
}

TEST(LispCommands, CmdechoHidesWhatIsAskedAndAnswered) {
    Harness harness(smallTown(), {L"(setvar \"CMDECHO\" 0)", L"(command \"SELECT\" \"L\" \"\")"});
    EXPECT_EQ(harness.run(),
              L"Command: (setvar \"CMDECHO\" 0)\n0\nCommand: (command \"SELECT\" \"L\" \"\")\n1 "
              L"found\nRTNORM 22\nnil");
}

TEST(LispCommands, WhatGoesWrongEndsTheExpression) {
    const auto errorOf = [](const std::wstring& line) {
        Harness harness(smallTown(), {line});
        harness.run();
        return harness.output().errors.empty() ? std::wstring() : harness.output().errors.back();
    };
    EXPECT_EQ(errorOf(L"(command \"NOSUCH\")"),
              L"LISP: there is no command NOSUCH (RUN.scr, line 1, column 1)");
    EXPECT_EQ(errorOf(L"(command 7)"),
              L"LISP: command takes the name of a command, not 7 (RUN.scr, line 1, column 1)");
    EXPECT_EQ(errorOf(L"(list (command \"SELECT\" nil) (setvar \"EXPERT\" 1))"),
              L"LISP: SELECT did not finish (RUN.scr, line 1, column 7)");
    Harness harness(smallTown(), {L"SELECT", L"(command \"SELECT\" \"L\" \"\")"});
    harness.run();
    EXPECT_EQ(harness.output().errors.at(0),
              L"LISP: command can't be used inside of SELECT (RUN.scr, line 2, column 1)");
}

TEST(LispCommands, AnotherDrawingIsNotOpenedFromInside) {
    Harness harness(smallTown(), {L"(command \"REOPEN\")", L""});
    Session::HostCommand reopen;
    reopen.name = L"REOPEN";
    reopen.run = [](Session& session) { session.useDrawing(smallTown().database()); };
    harness.session().addHostCommand(reopen);
    AcDbDatabase* const before = harness.session().drawing();
    harness.run();
    EXPECT_EQ(harness.session().drawing(), before);
    EXPECT_EQ(harness.output().errors.at(0),
              L"another drawing can't be opened from inside of an expression");
}

// Files to load.
class LispLoad : public testing::Test {
  protected:
    LispLoad() {
        folder_ = std::filesystem::temp_directory_path() /
                  ("orlinth-lisp-" + std::to_string(std::random_device()()));
        std::filesystem::create_directory(folder_);
        lisp::defineSessionFunctions(interpreter_);
    }
    ~LispLoad() override {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }

    void file(const std::string& name, const std::string& text) const {
        std::ofstream(folder_ / name, std::ios::binary) << text;
    }
    // "(load "FOLDER/name" rest)"
    std::wstring load(const std::string& name, const std::wstring& rest = L"") const {
        return L"(load \"" + fromUtf8((folder_ / name).generic_u8string()) + L"\"" + rest + L")";
    }
    // What `failure` tells, without the folder.
    std::wstring failed(const std::wstring& text) {
        std::wstring said = failure(interpreter_, text);
        const std::wstring folder = fromUtf8((folder_ / "").generic_u8string());
        for (std::size_t at = 0; (at = said.find(folder)) != std::wstring::npos;)
            said.erase(at, folder.size());
        return said;
    }

    std::filesystem::path folder_;
    lisp::Interpreter interpreter_;
};

TEST_F(LispLoad, AFileIsEvaluatedAndGivesItsLastValue) {
    file("a.lsp", "; two\n(setq a 1)\n(list a\n \"\xC3\xA4\")\n");
    EXPECT_EQ(value(interpreter_, load("a.lsp")), L"(1 \"ä\")");
    EXPECT_EQ(value(interpreter_, load("a")), L"(1 \"ä\")") << ".lsp is added";
    file("empty.lsp", "");
    EXPECT_EQ(value(interpreter_, load("empty")), L"nil");
}

TEST_F(LispLoad, WhatIsWrongInAFileIsToldWithItsPlace) {
    file("a.lsp", "(setq b 2)\n (nosuch)");
    EXPECT_EQ(failed(load("a")), L"there is no function NOSUCH, in a.lsp, line 2, column 2 @1:1");
    EXPECT_EQ(value(interpreter_, L"b"), L"nil") << "nothing of the file was done";
    file("open.lsp", "(list");
    EXPECT_EQ(
        failed(L"(list " + load("open") + L")"),
        L"the list that begins here has no closing parenthesis, in open.lsp, line 1, column 1 "
        L"@1:7");
}

TEST_F(LispLoad, AFileThatIsNotThereIsNamedOrAnswersOtherwise) {
    EXPECT_EQ(failed(load("none")), L"none.lsp is not there: no file of that name was found @1:1");
    EXPECT_EQ(value(interpreter_, load("none", L" 7")), L"7");
    std::filesystem::create_directory(folder_ / "folder.lsp");
    EXPECT_EQ(failed(load("folder")), L"folder.lsp is no file that can be read @1:1");
    EXPECT_EQ(failed(L"(load 7)"), L"LOAD takes a text as its first argument, not 7 @1:1");
}

TEST_F(LispLoad, AFileThatIsTooLargeIsRefused) {
    file("large.lsp", "");
    std::filesystem::resize_file(folder_ / "large.lsp", (16U << 20U) + 1);
    EXPECT_EQ(failed(load("large")), L"large.lsp is too large: at most 16 MB can be loaded @1:1");
}

TEST_F(LispLoad, AFileThatLeadsToItselfIsStopped) {
    file("a.lsp", toUtf8(load("b.lsp")));
    file("b.lsp", toUtf8(load("a.lsp")));
    EXPECT_EQ(failed(load("a")),
              L"a.lsp has led to itself and would never end, in b.lsp, line 1, column 1, in a.lsp, "
              L"line 1, column 1 @1:1");
    EXPECT_EQ(failed(load("a")).substr(0, 7), L"a.lsp h") << "and may be tried again";
}

TEST_F(LispLoad, AFileCountsAsAStepForEachThousandCharacters) {
    file("note.lsp", "; " + std::string(49998, 'x'));
    EXPECT_EQ(steps(interpreter_, load("note")), 2u + 50u);
}

TEST_F(LispLoad, StepsOfAllFilesCountTogether) {
    std::string many;
    for (int i = 0; i < 60000; ++i) many += "1 ";
    file("many.lsp", many);
    EXPECT_EQ(value(interpreter_, load("many")), L"1");
    EXPECT_NE(failed(load("many") + load("many")).find(L"stopped after 100000 steps"),
              std::wstring::npos);
}
