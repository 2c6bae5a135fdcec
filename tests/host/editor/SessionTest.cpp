#include "host/editor/Session.h"

#include <acdocman.h>
#include <aced.h>
#include <dbapserv.h>
#include <dbents.h>
#include <gtest/gtest.h>

#include <new>

#include "host/database/Drawing.h"
#include "host/database/Fault.h"
#include "host/database/Ledger.h"
#include "host/editor/SessionState.h"
#include "host/editor/Words.h"
#include "tests/host/editor/Harness.h"
#include "tests/host/editor/TestCommands.h"

using namespace host;
using namespace host::editor;
using host::test::Harness;
using host::test::smallTown;
using End = CommandResult::End;

namespace {

double rotationOf(AcDbObjectId id) {
    AcDbText* text = nullptr;
    EXPECT_EQ(acdbOpenObject(text, id, AcDb::kForRead), Acad::eOk);
    const double rotation = text == nullptr ? -1.0 : text->rotation();
    if (text != nullptr) text->close();
    return rotation;
}

}  // namespace

TEST(Session, ThereIsOneAtATime) {
    Harness harness(smallTown(), {});
    EXPECT_EQ(Session::current(), &harness.session());
    test::RecordingOutput output;
    test::TypedInput input({});
    EXPECT_THROW(Session(input, output), std::logic_error);
    EXPECT_EQ(Session::current(), &harness.session());
}

TEST(Session, TheOpenDrawingIsTheWorkingDatabaseUntilItIsClosed) {
    Harness harness(smallTown(), {});
    EXPECT_EQ(acdbHostApplicationServices()->workingDatabase(), harness.session().drawing());
    harness.session().closeDrawing();
    EXPECT_EQ(acdbHostApplicationServices()->workingDatabase(), nullptr);
    EXPECT_EQ(harness.session().drawing(), nullptr);
}

TEST(Session, PrefixesAndCaseOfACommandDoNotCount) {
    Harness harness(smallTown(), {L"nothing", L"_Nothing", L"._NOTHING", L"'_.nothing"});
    harness.run();
    ASSERT_EQ(harness.results().size(), 4u);
    for (const CommandResult& result : harness.results()) {
        EXPECT_EQ(result.end, End::done);
        EXPECT_EQ(result.name, L"NOTHING");
    }
    EXPECT_EQ(harness.results()[1].where, L"RUN.scr, line 2");
}

TEST(Session, AnEmptyLineRepeatsTheLastCommand) {
    Harness harness(smallTown(), {L"", L"NOTHING", L"", L"", L"ASK", L"", L""});
    harness.run();
    ASSERT_EQ(harness.results().size(), 4u)
        << "there was nothing to repeat at first, and empty lines at the end of a script repeat "
           "nothing";
    EXPECT_FALSE(harness.results()[0].repeated);
    EXPECT_TRUE(harness.results()[1].repeated);
    EXPECT_TRUE(harness.results()[2].repeated);
    EXPECT_EQ(harness.results()[3].end, End::done) << "one of them was the answer";
}

TEST(Session, APersonsEmptyLineAlwaysRepeats) {
    Harness harness(smallTown(), {L"NOTHING", L"", L""}, Harness::By::person);
    harness.run();
    EXPECT_EQ(harness.results().size(), 3u);
}

TEST(Session, AnUnknownNameIsNotRepeatedAndStopsAScript) {
    Harness harness(smallTown(), {L"NOTHING", L"FOO", L"NOTHING"});
    EXPECT_EQ(harness.run(), L"Command: NOTHING\nCommand: FOO\n! no command FOO");
    ASSERT_EQ(harness.results().size(), 2u);
    EXPECT_EQ(harness.results()[1].end, End::unknown);
    EXPECT_EQ(harness.results()[1].name, L"FOO");
    EXPECT_TRUE(harness.results()[1].stopInput);
}

TEST(Session, APersonGoesOnAfterAnUnknownName) {
    Harness harness(smallTown(), {L"NOTHING", L"FOO", L""}, Harness::By::person);
    harness.run();
    ASSERT_EQ(harness.results().size(), 3u);
    EXPECT_EQ(harness.results()[2].name, L"NOTHING");
    EXPECT_EQ(harness.typed()->stops, 0);
}

TEST(Session, CancellingAtTheCommandPromptDoesNothing) {
    Harness harness(smallTown(), {L"^C", L"NOTHING"}, Harness::By::person);
    harness.run();
    EXPECT_EQ(harness.results().size(), 1u);
}

TEST(Session, ACancelledPromptIsToldAndTheAnswersBehindItAreNotTakenForCommands) {
    Harness harness(smallTown(), {L"PICK", L"7,7", L"NOTHING"});
    harness.run();
    EXPECT_EQ(harness.result().end, End::cancelled);
    ASSERT_EQ(harness.result().prompts.size(), 1u);
    EXPECT_EQ(harness.result().prompts[0].kind, PromptRecord::Kind::entity);
    EXPECT_EQ(harness.result().prompts[0].code, RTERROR);
    EXPECT_EQ(harness.result().prompts[0].reply, L"7,7");
}

TEST(Session, AListenerMayLetAScriptGoOn) {
    Harness harness(smallTown(), {L"PICK", L"7,7", L"NOTHING"});
    int heard = 0;
    harness.session().onCommandEnded([&heard](CommandResult& result) {
        ++heard;
        result.stopInput = false;
    });
    harness.run();
    EXPECT_EQ(heard, 2);
}

TEST(Session, TheEndOfTheInputInsideACommandIsToldApart) {
    Harness harness(smallTown(), {L"ASK"});
    EXPECT_EQ(harness.run(), L"Command: ASK\nText: \nRTCAN [untouched]");
    EXPECT_EQ(harness.result().end, End::inputEnded);
}

TEST(Session, NoPromptWaitsOnceTheInputHasEnded) {
    Harness harness(smallTown(), {L"PICK"});
    harness.run();
    ads_name name;
    ads_point point;
    EXPECT_EQ(acedEntSel(nullptr, name, point), RTCAN);
    ads_name set;
    EXPECT_EQ(acedSSGet(nullptr, nullptr, nullptr, nullptr, set), RTCAN);
    ACHAR text[132] = L"";
    EXPECT_EQ(acedGetString(0, nullptr, text), RTCAN);
    EXPECT_EQ(acedGetPoint(nullptr, nullptr, point), RTCAN);
}

TEST(Session, PromptsRecordWhatTheyGot) {
    Harness harness(smallTown(), {L"PICK", L"(handent \"10\")", L"SELECT",
                                  L"(ssget \"X\" '((8 . \"names\")))", L"", L"ASK", L"k"});
    harness.run();
    ASSERT_EQ(harness.results().size(), 3u);
    const PromptRecord& pick = harness.results()[0].prompts.at(0);
    EXPECT_EQ(pick.reply, L"(handent \"10\")");
    EXPECT_EQ(test::handles(pick.entities), L"10");
    const PromptRecord& selection = harness.results()[1].prompts.at(0);
    EXPECT_EQ(selection.kind, PromptRecord::Kind::selection);
    EXPECT_EQ(test::handles(selection.entities), L"20 21");
    EXPECT_EQ(harness.results()[2].prompts.at(0).reply, L"k");
}

TEST(Session, ACommandIsOneUndoStepThatRestoresTheDrawingExactly) {
    Harness harness(smallTown(), {L"TURN", L"ALL", L""});
    const std::string before = test::savedBytes(harness.drawing());
    harness.run();
    EXPECT_EQ(rotationOf(harness.entity(L"20")), 1.5);
    EXPECT_NE(test::savedBytes(harness.drawing()), before);
    EXPECT_EQ(harness.session().undo(), 1);
    EXPECT_EQ(test::savedBytes(harness.drawing()), before);
    EXPECT_EQ(harness.session().undo(), 0);
    EXPECT_EQ(harness.session().redo(), 1);
    EXPECT_EQ(rotationOf(harness.entity(L"21")), 1.5);
    EXPECT_EQ(harness.session().redo(), 0);
}

TEST(Session, AScriptIsOneStepAroundItsCommands) {
    Harness harness(smallTown(), {L"RUNIT"}, Harness::By::person);
    const std::string before = test::savedBytes(harness.drawing());
    Session::HostCommand command;
    command.name = L"RUNIT";
    command.run = [](Session& session) {
        session.runScript(L"TURN\n(handent \"20\")\n\nTURN\n(handent \"21\")\n\nSTEPBACK\n",
                          L"two.scr");
    };
    harness.session().addHostCommand(command);
    command.name = L"STEPBACK";
    command.run = [](Session& session) { EXPECT_EQ(session.undo(), 1); };
    harness.session().addHostCommand(command);
    harness.run();
    EXPECT_EQ(rotationOf(harness.entity(L"20")), 1.5) << "inside the script a step is a command";
    EXPECT_EQ(rotationOf(harness.entity(L"21")), 0.0);
    EXPECT_EQ(harness.session().undo(5), 1) << "outside it is the whole script";
    EXPECT_EQ(test::savedBytes(harness.drawing()), before);
}

TEST(Session, ASecondScriptStopsTheFirst) {
    Harness harness(smallTown(), {L"FIRST", L"NOTHING"}, Harness::By::person);
    Session::HostCommand first;
    first.name = L"FIRST";
    first.run = [](Session& session) {
        session.runScript(L"NOTHING\nSECOND\nFOO\n", L"first.scr");
    };
    harness.session().addHostCommand(first);
    Session::HostCommand second;
    second.name = L"SECOND";
    second.run = [](Session& session) { session.runScript(L"NOTHING\n", L"second.scr"); };
    harness.session().addHostCommand(second);
    harness.run();
    std::wstring order;
    for (const CommandResult& result : harness.results())
        order += result.name + L"@" + result.where + L" ";
    EXPECT_EQ(order,
              L"FIRST@ NOTHING@first.scr, line 1 SECOND@first.scr, line 2 NOTHING@second.scr, line "
              L"1 NOTHING@ ");
}

TEST(Session, APersonAnswersWhereAScriptEndsInsideAPrompt) {
    Harness harness(smallTown(), {L"FIRST", L"kyllä"}, Harness::By::person);
    Session::HostCommand first;
    first.name = L"FIRST";
    first.run = [](Session& session) { session.runScript(L"ASK\n", L"first.scr"); };
    harness.session().addHostCommand(first);
    EXPECT_EQ(harness.run(),
              L"Command: FIRST\nCommand: ASK\nText: kyllä\nRTNORM [kyllä]\nCommand: ");
}

TEST(Session, AnExceptionIsToldRolledBackAndTheSessionGoesOn) {
    Harness harness(smallTown(), {L"THROW", L"ALL", L"", L"NOTHING"});
    const std::string before = test::savedBytes(harness.drawing());
    harness.run();
    ASSERT_EQ(harness.results().size(), 2u);
    EXPECT_EQ(harness.results()[0].end, End::exceptionLeft);
    EXPECT_EQ(harness.results()[0].exception, L"broken");
    EXPECT_FALSE(harness.results()[0].stopInput);
    EXPECT_EQ(harness.results()[1].end, End::done);
    EXPECT_EQ(test::savedBytes(harness.drawing()), before);
    EXPECT_EQ(harness.session().undo(), 0) << "neither has changed anything";
}

TEST(Session, AnExceptionOfNoKnownClassIsToldToo) {
    Harness harness(smallTown(), {L"THROWINT", L"ALL", L""});
    harness.run();
    EXPECT_EQ(harness.result().exception, L"an exception of an unknown class");
}

TEST(Session, TheReporterPutsAnExceptionIntoWords) {
    Harness harness(smallTown(), {L"THROWINT", L"ALL", L""});
    harness.session().setExceptionReporter([]() -> std::wstring {
        try {
            throw;
        } catch (int number) {
            return L"number " + std::to_wstring(number);
        }
    });
    harness.run();
    EXPECT_EQ(harness.result().exception, L"number 42");
}

TEST(Session, ANestedFailureLeavesBothCommandsRolledBack) {
    Harness harness(smallTown(), {L"OUTER", L"(handent \"20\")", L"", L"(handent \"21\")", L""});
    const std::string before = test::savedBytes(harness.drawing());
    Session::HostCommand outer;
    outer.name = L"OUTER";
    outer.undoable = true;
    outer.run = [](Session& session) {
        EXPECT_EQ(session.runCommand(L"TURN").end, End::done);
        session.runCommand(L"THROW");
        ADD_FAILURE() << "the inner command's exception passes through";
    };
    harness.session().addHostCommand(outer);
    harness.run();
    EXPECT_EQ(harness.result().end, End::exceptionLeft);
    EXPECT_EQ(harness.result().name, L"OUTER");
    EXPECT_EQ(test::savedBytes(harness.drawing()), before);
    EXPECT_EQ(harness.session().undo(), 0);
}

TEST(Session, WhatACommandLeavesOpenIsToldAndGivenBack) {
    Harness harness(smallTown(), {L"LEAVE", L"NOTHING"});
    harness.run();
    ASSERT_EQ(harness.results().size(), 2u);
    const auto& leaks = harness.results()[0].leaks;
    ASSERT_EQ(leaks.size(), 3u);
    EXPECT_NE(leaks[0].find("object"), std::string::npos) << leaks[0];
    EXPECT_NE(leaks[1].find("result buffer"), std::string::npos) << leaks[1];
    EXPECT_NE(leaks[2].find("selection set"), std::string::npos) << leaks[2];
    EXPECT_TRUE(harness.results()[1].leaks.empty()) << "told once";
    AcDbEntity* entity = nullptr;
    EXPECT_EQ(acdbOpenAcDbEntity(entity, harness.entity(L"10"), AcDb::kForWrite), Acad::eOk);
    if (entity != nullptr) entity->close();
    EXPECT_EQ(database::Ledger::instance().count("selection set"), 0u);
    database::Ledger::instance().forget();  // the result buffer, which only its holder can free
}

TEST(Session, WhatWasOpenBeforeACommandStaysOpen) {
    Harness harness(smallTown(), {L"NOTHING"});
    AcDbEntity* reader = nullptr;
    ASSERT_EQ(acdbOpenAcDbEntity(reader, harness.entity(L"20"), AcDb::kForRead), Acad::eOk);
    harness.run();
    EXPECT_TRUE(harness.result().leaks.empty());
    EXPECT_TRUE(reader->isReadEnabled());
    reader->close();
}

TEST(Session, HostCommandsComeBeforeThoseOfModules) {
    Harness harness(smallTown(), {L"NOTHING"});
    bool ran = false;
    Session::HostCommand command;
    command.name = L"NOTHING";
    command.run = [&ran](Session&) { ran = true; };
    harness.session().addHostCommand(command);
    harness.run();
    EXPECT_TRUE(ran);
}

TEST(Session, ANameOfAHostCommandIsTakenOnce) {
    Harness harness(smallTown(), {});
    Session::HostCommand command;
    command.name = L"QUIT";
    command.aliases = {L"EXIT"};
    harness.session().addHostCommand(command);
    command.name = L"exit";
    command.aliases = {};
    EXPECT_THROW(harness.session().addHostCommand(command), std::logic_error);
}

TEST(Session, AHostCommandAsksFailsAndQuits) {
    Harness harness(smallTown(), {L"SAVE", L"\"my house\"", L"a b", L"NOTHING"});
    Session::HostCommand command;
    command.name = L"SAVE";
    command.run = [](Session& session) {
        EXPECT_EQ(session.askWord(L"\nName: "), L"my house");
        EXPECT_EQ(session.askText(L"\nNote: "), L"a b");
        session.quit();
        throw CommandFailure(L"the disk is full");
    };
    harness.session().addHostCommand(command);
    EXPECT_EQ(harness.run(), L"Command: SAVE\nName: my house\nNote: a b\n! the disk is full");
    EXPECT_EQ(harness.result().end, End::failed);
}

TEST(Session, AHostCommandThatIsCancelledJustEnds) {
    Harness harness(smallTown(), {L"SAVE", L"^C"}, Harness::By::person);
    Session::HostCommand command;
    command.name = L"SAVE";
    command.run = [](Session& session) {
        session.askWord(L"\nName: ");
        ADD_FAILURE() << "cancelled";
    };
    harness.session().addHostCommand(command);
    harness.run();
    EXPECT_EQ(harness.result().end, End::cancelled);
}

TEST(Session, CommandNamesAreSortedAndOnce) {
    Harness harness(smallTown(), {});
    Session::HostCommand command;
    command.name = L"ASK";
    harness.session().addHostCommand(command);
    const std::vector<std::wstring> names = harness.session().commandNames();
    EXPECT_TRUE(std::is_sorted(names.begin(), names.end()));
    EXPECT_EQ(std::count(names.begin(), names.end(), L"ASK"), 1);
    EXPECT_EQ(std::count(names.begin(), names.end(), L"TURN"), 1);
}

TEST(Session, PromptsTellAPersonsInputWhatTheyWant) {
    Harness harness(smallTown(), {L"ASKLONG", L"two words", L"KEY", L"left"}, Harness::By::person);
    harness.run();
    const auto& requests = harness.typed()->requests;
    ASSERT_GE(requests.size(), 4u);
    EXPECT_EQ(requests[0].kind, Request::Kind::command);
    EXPECT_FALSE(requests[0].completions.empty());
    EXPECT_EQ(requests[1].kind, Request::Kind::text);
    EXPECT_EQ(requests[1].prompt, L"\nText: ");
    EXPECT_EQ(requests[3].completions, (std::vector<std::wstring>{L"Left", L"Right"}));
}

TEST(Session, InterruptingAsksTheRunningCommandToStop) {
    Harness harness(smallTown(), {L"LOOP", L"NOTHING"});
    Session::HostCommand command;
    command.name = L"LOOP";
    command.run = [](Session& session) {
        EXPECT_EQ(acedUsrBrk(), 0);
        session.interrupt();
        EXPECT_EQ(acedUsrBrk(), 1);
    };
    harness.session().addHostCommand(command);
    command.name = L"NOTHING";
    command.run = [](Session&) { EXPECT_EQ(acedUsrBrk(), 0); };
    harness.session().addHostCommand(command);
    harness.run();
}

TEST(Session, WhatAStoppedCommandWasToldIsToldOnce) {
    Harness harness(smallTown(), {L"LOOP", L"LOOP"});
    Session::HostCommand command;
    command.name = L"LOOP";
    command.run = [](Session& session) {
        session.interrupt();
        EXPECT_EQ(acedUsrBrk(), 1);
        EXPECT_EQ(acedUsrBrk(), 1);
    };
    harness.session().addHostCommand(command);
    EXPECT_EQ(harness.run(), L"Command: LOOP\n*Cancel*\nCommand: LOOP\n*Cancel*");
}

TEST(Session, AnotherDrawingForgetsNamesOfTheOld) {
    Harness harness(smallTown(), {L"(setq e (handent \"10\"))", L"SELECT", L"ALL", L"", L"OPEN",
                                  L"PICK", L"!e", L""});
    Session::HostCommand command;
    command.name = L"OPEN";
    command.run = [](Session& session) { session.useDrawing(smallTown().database()); };
    harness.session().addHostCommand(command);
    harness.run();
    EXPECT_EQ(harness.results().back().end, End::cancelled) << "e is nil now";
}

TEST(Session, ExpressionsThatAskAndAreAnsweredByThemselvesComeToAnEnd) {
    Harness harness(smallTown(), std::vector<std::wstring>(5000, L"(ssget)"));
    harness.run();
    ASSERT_FALSE(harness.output().errors.empty());
    EXPECT_EQ(harness.output().errors.front(),
              L"LISP: expressions answer each other's prompts more than 20 deep (RUN.scr, line 21, "
              L"column 1)");
}

TEST(Session, AnExpressionThatFailsInsideACommandFailsItAndStopsTheScript) {
    const struct {
        std::vector<std::wstring> lines;
        int code;  // of its first prompt
    } cases[] = {
        {{L"SELECT", L"30,0", L"(foo)", L"", L"NOTHING"}, RTCAN},
        {{L"SELECT", L"W", L"(foo)", L"9,9", L"", L"NOTHING"}, RTCAN},
        {{L"SELECT", L"C", L"0,0", L"(foo)", L"", L"NOTHING"}, RTCAN},
        {{L"SELECT", L"F", L"0,0", L"(foo)", L"", L"", L"NOTHING"}, RTCAN},
        {{L"SELECT", L"M", L"30,0", L"(foo)", L"", L"", L"NOTHING"}, RTCAN},
        {{L"PICK", L"(foo)", L"NOTHING"}, RTERROR},
        {{L"POINT", L"(foo)", L"1,1", L"NOTHING"}, RTCAN},
        {{L"KEY", L"(foo)", L"Left", L"NOTHING"}, RTCAN},
        {{L"ASK", L"(foo)", L"NOTHING"}, RTERROR},
        {{L"ASK", L"(list 1"}, RTERROR},
        {{L"SELECT", L"(list 1"}, RTCAN},
    };
    for (const auto& each : cases) {
        Harness harness(smallTown(), each.lines);
        harness.run();
        ASSERT_EQ(harness.results().size(), 1u) << toUtf8(each.lines[1]);
        EXPECT_EQ(harness.result().end, End::failed) << toUtf8(each.lines[1]);
        EXPECT_TRUE(harness.result().expressionFailed);
        EXPECT_TRUE(harness.result().stopInput);
        ASSERT_EQ(harness.result().prompts.size(), 1u);
        EXPECT_EQ(harness.result().prompts.front().code, each.code) << toUtf8(each.lines[1]);
    }
}

TEST(Session, APersonAnswersAgainAfterAnExpressionThatFailed) {
    Harness harness(smallTown(),
                    {L"SELECT", L"(foo)", L"W", L"(foo)", L"-1,-1", L"(foo)", L"101,9", L"F",
                     L"(foo)", L"50,-5", L"50,5", L"", L"", L"POINT", L"(foo)", L"1,1", L"KEY",
                     L"(foo)", L"(car '(\"left\"))"},
                    Harness::By::person);
    harness.run();
    ASSERT_EQ(harness.results().size(), 3u);
    for (const CommandResult& result : harness.results()) {
        EXPECT_EQ(result.end, End::done) << toUtf8(result.name);
        EXPECT_FALSE(result.expressionFailed);
    }
    EXPECT_EQ(test::handles(harness.results()[0].prompts.at(0).entities), L"10 20");
    EXPECT_EQ(harness.output().errors.size(), 6u);
}

TEST(Session, WhatAnExpressionAsksIsNoPromptOfTheCommand) {
    Harness harness(smallTown(), {L"SELECT", L"(ssget)", L"", L"ALL", L"", L"NOTHING"});
    harness.run();
    ASSERT_EQ(harness.results().size(), 2u);
    EXPECT_EQ(harness.results()[0].end, End::done);
    ASSERT_EQ(harness.results()[0].prompts.size(), 1u);
    EXPECT_EQ(harness.results()[0].prompts[0].entities.size(), 6u);
}

TEST(Session, AnExpressionThatWasAnsweredWronglyFailsInAScript) {
    {
        Harness harness(smallTown(), {L"SELECT", L"(ssget)", L"(foo)", L"ALL", L"", L"NOTHING"});
        harness.run();
        EXPECT_EQ(harness.result().end, End::failed);
        EXPECT_EQ(harness.output().errors.size(), 1u) << "told once";
    }
    Harness person(smallTown(), {L"SELECT", L"(ssget)", L"(foo)", L"30,0", L"", L""},
                   Harness::By::person);
    person.run();
    EXPECT_EQ(person.result().end, End::done);
    EXPECT_EQ(test::handles(person.result().prompts.at(0).entities), L"10");
}

TEST(Session, RepliesInQuotesAreWords) {
    Harness harness(smallTown(), {L"(setq x \"value\")", L"ASK", L"!x", L"ASK", L"\"!x\"", L"ASK",
                                  L"\"(car x)\"", L"ASK", L"!"});
    harness.run();
    EXPECT_EQ(harness.output().errors.size(), 0u);
    const std::wstring& shown = harness.output().shown;
    EXPECT_NE(shown.find(L"RTNORM [value]"), std::wstring::npos);
    EXPECT_NE(shown.find(L"RTNORM [!x]"), std::wstring::npos);
    EXPECT_NE(shown.find(L"RTNORM [(car x)]"), std::wstring::npos);
    EXPECT_NE(shown.find(L"RTNORM [!]"), std::wstring::npos);
}

TEST(Session, OnlyTextsAndNumbersAreWordsForAHostCommand) {
    Harness harness(smallTown(),
                    {L"SAVE", L"\"a b\"", L"SAVE", L"(car '(7))", L"SAVE", L"(car '(2.5))", L"SAVE",
                     L"(car '(\"c d\"))", L"SAVE", L"!unset", L"SAVE", L"(handent \"10\")", L"SAVE",
                     L"(list 1 2)", L"SAVE", L"(car '(t))"},
                    Harness::By::person);
    std::wstring names;
    Session::HostCommand command;
    command.name = L"SAVE";
    command.run = [&names](Session& session) { names += session.askWord(L"\nName: ") + L"|"; };
    harness.session().addHostCommand(command);
    harness.run();
    EXPECT_EQ(names, L"a b|7|2.5|c d|");
    ASSERT_EQ(harness.output().errors.size(), 4u);
    EXPECT_EQ(harness.output().errors[0], L"!unset gives nil; a text or a number is needed");
    EXPECT_EQ(harness.output().errors[2], L"(list 1 2) gives (1 2); a text or a number is needed");
    EXPECT_EQ(harness.results().back().end, End::failed);
}

namespace {

// Lines that nobody sees and nobody corrects, as from a pipe.
class PipedInput : public test::TypedInput {
  public:
    using TypedInput::TypedInput;
    bool stopsWhenOutOfStep() const override { return true; }
};

// How often a pipe is stopped that runs a script of these lines.
int stopsOfAPipe(const std::wstring& script) {
    PipedInput input({L"FIRST"});
    test::RecordingOutput output;
    Session session(input, output);
    session.useDrawing(smallTown().database());
    test::registerTestCommands();
    Session::HostCommand first;
    first.name = L"FIRST";
    first.run = [&script](Session& running) { running.runScript(script, L"first.scr"); };
    session.addHostCommand(first);
    session.run();
    test::removeTestCommands();
    return input.stops;
}

}  // namespace

TEST(Session, AScriptThatFailsStopsWhatHasLedToIt) {
    EXPECT_EQ(stopsOfAPipe(L"NOTHING\n"), 0);
    EXPECT_EQ(stopsOfAPipe(L"FOO\n"), 1) << "with its last line";
    EXPECT_EQ(stopsOfAPipe(L"FOO\nNOTHING\n"), 1);
    EXPECT_EQ(stopsOfAPipe(L"PICK\n7,7\nNOTHING\n"), 1);
}

TEST(Session, AScriptIsStoppedByAnotherAlsoWhenItIsTheInput) {
    Harness harness(smallTown(), {L"FIRST", L"FOO"});
    Session::HostCommand first;
    first.name = L"FIRST";
    first.run = [](Session& session) { session.runScript(L"NOTHING\n", L"first.scr"); };
    harness.session().addHostCommand(first);
    harness.run();
    ASSERT_EQ(harness.results().size(), 2u);
    EXPECT_EQ(harness.results()[1].where, L"first.scr, line 1");
}

TEST(Session, ACommandThatFailsAfterStartingAScriptStopsIt) {
    Harness harness(smallTown(), {L"FIRST", L"NOTHING"});
    Session::HostCommand first;
    first.name = L"FIRST";
    first.run = [](Session& session) {
        session.runScript(L"NOTHING\n", L"first.scr");
        throw CommandFailure(L"no");
    };
    harness.session().addHostCommand(first);
    harness.run();
    EXPECT_EQ(harness.results().size(), 1u);
    EXPECT_TRUE(harness.result().stopInput);
}

TEST(Session, AnExpressionThatTheInputEndsInsideOfIsTold) {
    Harness harness(smallTown(), {L"(ssget)", L"30,0"});
    harness.run();
    EXPECT_EQ(harness.result().end, End::inputEnded);
    EXPECT_EQ(harness.result().name, L"LISP");
}

TEST(Session, ALackOfMemoryInsideAnExpressionIsSaidAndForgetsTheSymbols) {
    Harness harness(smallTown(),
                    {L"(setq a 1)", L"SELECT", L"(exhaust)", L"30,0", L"", L"!a", L"NOTHING"},
                    Harness::By::person);
    harness.session().implementation().lisp.define(
        L"exhaust", {0, 0, [](lisp::Call&) -> lisp::Value { throw std::bad_alloc(); }});
    const std::wstring shown = harness.run();
    EXPECT_EQ(
        harness.output().errors.at(0),
        L"LISP: there is not enough memory for (exhaust); all symbols have lost their values");
    EXPECT_EQ(harness.output().errors.size(), 1u);
    EXPECT_NE(shown.find(L"!a\nnil\n"), std::wstring::npos);
    EXPECT_EQ(harness.results().size(), 2u);
    EXPECT_EQ(harness.results().front().end, End::done);
}

TEST(Session, TheStatusBarsMeterGoesToTheOutput) {
    Harness harness(smallTown(), {});
    EXPECT_EQ(acedSetStatusBarProgressMeterPos(1), -1);
    EXPECT_EQ(acedSetStatusBarProgressMeter(nullptr, 0, 100), -1);
    EXPECT_EQ(acedSetStatusBarProgressMeter(L"Turning", 100, 100), -1);
    EXPECT_EQ(acedSetStatusBarProgressMeter(L"Turning", 0, 100), 0);
    EXPECT_EQ(acedSetStatusBarProgressMeterPos(40), 0);
    acedRestoreStatusBar();
    acedRestoreStatusBar();
    EXPECT_EQ(harness.output().meters,
              (std::vector<std::wstring>{L"Turning 0..100 0", L"Turning 0..100 40", L"gone"}));
}

TEST(Session, AnAlertIsSaidAndNeverWaits) {
    Harness harness(smallTown(), {});
    EXPECT_EQ(acedAlert(L"Look"), RTNORM);
    EXPECT_EQ(acedAlert(nullptr), RTERROR);
    EXPECT_EQ(harness.output().shown, L"Look\n");
}

TEST(Documents, TheOpenDrawingIsTheDocument) {
    EXPECT_EQ(acDocManager, nullptr) << "without a session";
    Harness harness(smallTown(), {L"PICK", L"(handent \"10\")"});
    AcApDocument* document = acDocManager->curDocument();
    ASSERT_NE(document, nullptr);
    EXPECT_EQ(document->database(), harness.session().drawing());
    EXPECT_TRUE(document->isQuiescent());
    EXPECT_EQ(acDocManager->document(harness.session().drawing()), document);
    EXPECT_EQ(acDocManager->document(nullptr), nullptr);
    harness.session().closeDrawing();
    EXPECT_EQ(acDocManager->curDocument(), nullptr);
    EXPECT_EQ(acDocManager->lockDocument(document), Acad::eInvalidInput);
}

TEST(Documents, LocksNest) {
    Harness harness(smallTown(), {});
    AcApDocument* document = acDocManager->curDocument();
    EXPECT_EQ(document->myLockMode(), AcAp::kNone);
    EXPECT_EQ(acDocManager->lockDocument(document), Acad::eOk);
    EXPECT_EQ(acDocManager->lockDocument(document), Acad::eOk);
    EXPECT_EQ(acDocManager->unlockDocument(document), Acad::eOk);
    EXPECT_EQ(document->myLockMode(), AcAp::kWrite);
    EXPECT_EQ(acDocManager->unlockDocument(document), Acad::eOk);
    EXPECT_EQ(acDocManager->unlockDocument(document), Acad::eInvalidInput);
    EXPECT_EQ(acDocManager->lockDocument(nullptr), Acad::eInvalidInput);
}

TEST(Documents, TheStrictestLockIsTold) {
    Harness harness(smallTown(), {});
    AcApDocument* document = acDocManager->curDocument();
    const AcAp::DocLockMode modes[] = {AcAp::kRead, AcAp::kAutoWrite, AcAp::kProtectedAutoWrite,
                                       AcAp::kWrite, AcAp::kXWrite};
    for (const AcAp::DocLockMode mode : modes) {
        EXPECT_EQ(acDocManager->lockDocument(document, mode), Acad::eOk);
        EXPECT_EQ(document->myLockMode(), mode);
    }
    EXPECT_EQ(acDocManager->lockDocument(document, AcAp::kRead), Acad::eOk);
    EXPECT_EQ(document->myLockMode(), AcAp::kXWrite);
    EXPECT_EQ(acDocManager->lockDocument(document, AcAp::kNone), Acad::eInvalidInput);
    EXPECT_EQ(acDocManager->lockDocument(document, AcAp::kNotLocked), Acad::eInvalidInput);
    EXPECT_EQ(acDocManager->unlockDocument(document), Acad::eOk) << "the last one";
    EXPECT_EQ(acDocManager->unlockDocument(document), Acad::eOk);
    EXPECT_EQ(document->myLockMode(), AcAp::kWrite);
    EXPECT_EQ(database::Ledger::instance().count("document lock"), 4u);
    harness.session().closeDrawing();
    EXPECT_EQ(database::Ledger::instance().count("document lock"), 0u);
    harness.session().useDrawing(smallTown().database());
    EXPECT_EQ(document->myLockMode(), AcAp::kNone);
    EXPECT_EQ(acDocManager->unlockDocument(document), Acad::eInvalidInput);
}

TEST(Documents, ALockThatACommandLeavesIsToldAndTakenBack) {
    Harness harness(smallTown(), {L"LOCK", L"NOTHING"});
    AcApDocument* document = acDocManager->curDocument();
    ASSERT_EQ(acDocManager->lockDocument(document, AcAp::kRead), Acad::eOk);
    Session::HostCommand command;
    command.name = L"LOCK";
    command.run = [document](Session&) {
        EXPECT_EQ(acDocManager->lockDocument(document), Acad::eOk);
        EXPECT_EQ(acDocManager->lockDocument(document), Acad::eOk);
    };
    harness.session().addHostCommand(command);
    harness.run();
    ASSERT_EQ(harness.results().size(), 2u);
    ASSERT_EQ(harness.results()[0].leaks.size(), 1u);
    EXPECT_EQ(harness.results()[0].leaks[0], "document lock: the open drawing, 3 times");
    EXPECT_TRUE(harness.results()[1].leaks.empty());
    EXPECT_EQ(document->myLockMode(), AcAp::kRead) << "the one from before stays";
    EXPECT_EQ(acDocManager->unlockDocument(document), Acad::eOk);
}

TEST(Documents, AnotherDrawingOpenedByACommandIsNotLocked) {
    Harness harness(smallTown(), {L"OPEN"});
    ASSERT_EQ(acDocManager->lockDocument(acDocManager->curDocument()), Acad::eOk);
    Session::HostCommand command;
    command.name = L"OPEN";
    command.run = [](Session& session) { session.useDrawing(smallTown().database()); };
    harness.session().addHostCommand(command);
    harness.run();
    EXPECT_EQ(acDocManager->curDocument()->myLockMode(), AcAp::kNone);
    EXPECT_TRUE(harness.result().leaks.empty());
}

TEST(Documents, TheirFileIsNamed) {
    Harness harness(smallTown(), {});
    AcApDocument* document = acDocManager->curDocument();
    EXPECT_STREQ(document->fileName(), L"test.dxf");
    EXPECT_EQ(acDocManager->inputPending(document), 0) << "nothing waits";
    EXPECT_EQ(acDocManager->inputPending(nullptr), 0);
    harness.session().useDrawing(std::make_unique<AcDbDatabase>());
    EXPECT_STREQ(acDocManager->curDocument()->fileName(), L"") << "a new one";
    harness.session().closeDrawing();
    EXPECT_STREQ(document->fileName(), L"");
    EXPECT_EQ(acDocManager->inputPending(document), 0);
}

TEST(Documents, EachFunctionFailsOnOrderAndDoesNothing) {
    Harness harness(smallTown(), {});
    AcApDocument* document = acDocManager->curDocument();
    fault::arm("AcApDocManager::lockDocument", 1, Acad::eOutOfMemory);
    EXPECT_EQ(acDocManager->lockDocument(document), Acad::eOutOfMemory);
    EXPECT_EQ(document->myLockMode(), AcAp::kNone);
    EXPECT_EQ(acDocManager->lockDocument(document), Acad::eOk);
    fault::arm("AcApDocManager::unlockDocument", 1, Acad::eOutOfMemory);
    EXPECT_EQ(acDocManager->unlockDocument(document), Acad::eOutOfMemory);
    EXPECT_EQ(document->myLockMode(), AcAp::kWrite);
    EXPECT_EQ(acDocManager->unlockDocument(document), Acad::eOk);
    fault::arm("AcApDocManager::sendStringToExecute", 1, Acad::eOutOfMemory);
    EXPECT_EQ(acDocManager->sendStringToExecute(document, L"NOTHING "), Acad::eOutOfMemory);
    fault::disarm();
    EXPECT_EQ(acDocManager->inputPending(document), 0);
}

TEST(Documents, AStringThatIsSentWithoutEchoIsNotShown) {
    for (const bool echo : {true, false}) {
        Harness harness(smallTown(), {L"SEND", L"NOTHING"});
        Session::HostCommand command;
        command.name = L"SEND";
        command.run = [echo](Session& session) {
            session.print(L"\nsent");
            acDocManager->sendStringToExecute(acDocManager->curDocument(), L"TELL ", true, false,
                                              echo);
        };
        harness.session().addHostCommand(command);
        command.name = L"TELL";
        command.run = [](Session& session) { session.print(L"\ntold"); };
        harness.session().addHostCommand(command);
        EXPECT_EQ(harness.run(), echo
                                     ? L"Command: SEND\nsent\nCommand: TELL\ntold\nCommand: NOTHING"
                                     : L"Command: SEND\nsent\ntold\nCommand: NOTHING");
    }
}

TEST(Documents, ASentStringIsReadWhenTheCommandHasEnded) {
    Harness harness(smallTown(), {L"SEND", L"NOTHING"});
    Session::HostCommand command;
    command.name = L"SEND";
    command.run = [](Session&) {
        AcApDocument* document = acDocManager->curDocument();
        EXPECT_FALSE(document->isQuiescent());
        EXPECT_EQ(acDocManager->sendStringToExecute(document, L"ASK hei "), Acad::eOk);
        EXPECT_EQ(acDocManager->inputPending(document), 1);
        EXPECT_EQ(acDocManager->sendStringToExecute(document, nullptr), Acad::eInvalidInput);
    };
    harness.session().addHostCommand(command);
    harness.run();
    ASSERT_EQ(harness.results().size(), 3u);
    EXPECT_EQ(harness.results()[1].name, L"ASK");
    EXPECT_EQ(harness.results()[1].prompts.at(0).reply, L"hei");
}
