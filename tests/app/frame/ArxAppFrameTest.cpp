#include "app/ArxAppFrame.h"

#include <gtest/gtest.h>

#include "SubstituteHost.h"
#include "app/ModuleState.h"
#ifndef _WIN32
#include "platform/win32/Headless.h"
#endif

namespace {

using substitute::Journal;
using substitute::Note;
using substitute::Packet;
using Calls = std::vector<std::string>;

class PlainApp : public AcRxArxApp {
  public:
    void RegisterServerComponents() override { Note("RegisterServerComponents"); }
};

class Frame : public ::testing::Test {
  protected:
    void SetUp() override {
        substitute::Reset();
        moduleHandle = reinterpret_cast<HINSTANCE>(&theModule_);
    }
    void TearDown() override { moduleHandle = nullptr; }

    // The handler's answer as the host sees it.
    int Send(AcRx::AppMsgCode message, std::uintptr_t packet = 7) {
        return app.Dispatch(static_cast<std::uint32_t>(message), Packet(packet));
    }

    PlainApp app;

  private:
    int theModule_ = 0;
};

// --- Dispatch and table order.

// Every operation of the table writes its number down.
class NumberedApp : public AcRxArxApp {
  public:
    AcRx::AppRetCode OnInitApp(void* packet) override { return Mark(1, packet); }
    AcRx::AppRetCode OnUnloadApp(void* packet) override { return Mark(2, packet); }
    AcRx::AppRetCode OnLoadDwg(void* packet) override { return Mark(3, packet); }
    AcRx::AppRetCode OnUnloadDwg(void* packet) override { return Mark(4, packet); }
    AcRx::AppRetCode OnInvokeSubroutine(void* packet) override { return Mark(5, packet); }
    AcRx::AppRetCode OnConfigure(void* packet) override { return Mark(6, packet); }
    AcRx::AppRetCode OnEnd(void* packet) override { return Mark(7, packet); }
    AcRx::AppRetCode OnQuit(void* packet) override { return Mark(8, packet); }
    AcRx::AppRetCode OnSave(void* packet) override { return Mark(9, packet); }
    AcRx::AppRetCode OnDependency(void* packet) override { return Mark(10, packet); }
    AcRx::AppRetCode OnNoDependency(void* packet) override { return Mark(11, packet); }
    AcRx::AppRetCode OnOleUnloadApp(void* packet) override { return Mark(12, packet); }
    AcRx::AppRetCode OnPreQuit(void* packet) override { return Mark(13, packet); }
    AcRx::AppRetCode OnInitDialog(void* packet) override { return Mark(14, packet); }
    AcRx::AppRetCode OnEndDialog(void* packet) override { return Mark(15, packet); }
    AcRx::AppRetCode OnNull(void* packet) override { return Mark(16, packet); }
    void RegisterServerComponents() override { operation = 17; }

    int operation = 0;
    void* lastPacket = nullptr;

  private:
    AcRx::AppRetCode Mark(int number, void* given) {
        operation = number;
        lastPacket = given;
        return AcRx::kRetError;  // to see that the handler's own answer comes back
    }
};

TEST(ArxAppDispatch, MessagesOneToFifteenGoToTheirOwnOperation) {
    NumberedApp app;
    for (std::uint32_t message = 1; message <= 15; ++message) {
        EXPECT_EQ(app.Dispatch(message, Packet(message)), AcRx::kRetError);
        EXPECT_EQ(app.operation, static_cast<int>(message));
        EXPECT_EQ(app.lastPacket, Packet(message));
    }
}

TEST(ArxAppDispatch, MessageZeroGoesToOperationSixteen) {
    NumberedApp app;
    EXPECT_EQ(app.Dispatch(0, Packet(5)), AcRx::kRetError);
    EXPECT_EQ(app.operation, 16);
    EXPECT_EQ(app.lastPacket, Packet(5));
}

TEST(ArxAppDispatch, MessagesAboveFifteenAndNegativeOnesCallNothing) {
    NumberedApp app;
    for (std::uint32_t message : {16u, 17u, 18u, 100u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
        EXPECT_EQ(app.Dispatch(message, nullptr), AcRx::kRetOK);
        EXPECT_EQ(app.operation, 0) << message;
    }
}

// Slot 1 of the table is the handler of kInitAppMsg: no destructor stands before it.
TEST(ArxAppDispatch, TheVirtualTableHoldsTheSeventeenOperationsInOrder) {
    using Slot = int (*)(AcRxDbxApp*, void*);
    NumberedApp app;
    AcRxDbxApp* const base = &app;
    const Slot* const table = *reinterpret_cast<const Slot* const*>(base);
    for (int number = 1; number <= 16; ++number) {
        app.operation = 0;
        EXPECT_EQ(table[number - 1](base, nullptr), AcRx::kRetError);
        EXPECT_EQ(app.operation, number);
    }
    using Plain = void (*)(AcRxDbxApp*);
    reinterpret_cast<Plain>(reinterpret_cast<void*>(table[16]))(base);
    EXPECT_EQ(app.operation, 17);
}

TEST_F(Frame, EveryHandlerAnswersOk) {
    for (std::uint32_t message = 0; message <= 15; ++message) {
        EXPECT_EQ(app.Dispatch(message, Packet(1)), AcRx::kRetOK) << message;
    }
    EXPECT_EQ(AcRx::kRetOK, 0);
}

TEST_F(Frame, HandlersSixToSixteenDoNothing) {
    for (std::uint32_t message : {0u, 6u, 7u, 8u, 9u, 10u, 11u, 12u, 13u, 14u, 15u}) {
        app.Dispatch(message, Packet(1));
    }
    EXPECT_EQ(Journal(), Calls{});
}

// --- kInitAppMsg.

TEST_F(Frame, TheFlagsAreSetAndTheInstanceIsEmptyAtFirst) {
    EXPECT_TRUE(app.unlockApp);
    EXPECT_TRUE(app.mdiAware);
    EXPECT_EQ(app.moduleInstance, nullptr);
}

TEST_F(Frame, InitKeepsTheModuleHandle) {
    Send(AcRx::kInitAppMsg);
    EXPECT_EQ(app.moduleInstance, moduleHandle);
    EXPECT_NE(app.moduleInstance, nullptr);
}

TEST_F(Frame, InitUnlocksThenDeclaresThenRegistersServers) {
    Send(AcRx::kInitAppMsg, 7);
    EXPECT_EQ(Journal(),
              (Calls{"unlockApplication 7", "registerAppMDIAware 7", "RegisterServerComponents"}));
}

TEST_F(Frame, InitAsksOnlyForWhatTheFlagsSay) {
    app.unlockApp = false;
    Send(AcRx::kInitAppMsg, 3);
    EXPECT_EQ(Journal(), (Calls{"registerAppMDIAware 3", "RegisterServerComponents"}));
    Journal().clear();
    app.unlockApp = true;
    app.mdiAware = false;
    Send(AcRx::kInitAppMsg, 3);
    EXPECT_EQ(Journal(), (Calls{"unlockApplication 3", "RegisterServerComponents"}));
}

void InitFirst() {
    Note("init first");
}
void InitSecond() {
    Note("init second");
}
void InitThird() {
    Note("init third");
}

AcRxClass* First() {
    static AcRxClass* const made = substitute::MakeClass(L"First", L"AcRxObject");
    return made;
}
AcRxClass* Second() {
    static AcRxClass* const made = (First(), substitute::MakeClass(L"Second", L"First"));
    return made;
}
AcRxClass* Third() {
    static AcRxClass* const made = (Second(), substitute::MakeClass(L"Third", L"Second"));
    return made;
}

TEST_F(Frame, InitInitialisesCustomClassesPastNullsAndBuildsTheHierarchyOnce) {
    ArxCustomClass first{First, InitFirst, false};
    ArxCustomClass second{Second, InitSecond, false};
    substitute::customClasses[1] = &first;
    substitute::customClasses[32] = &second;
    Send(AcRx::kInitAppMsg);
    EXPECT_TRUE(first.registered);
    EXPECT_TRUE(second.registered);
    EXPECT_EQ(Journal(),
              (Calls{"unlockApplication 7", "registerAppMDIAware 7", "RegisterServerComponents",
                     "init first", "init second", "acrxBuildClassHierarchy"}));
}

void RunNothing() {}

TEST_F(Frame, InitAddsCommandsAfterTheBaseWithMinusOneTheResourceHandleAndNull) {
    ArxCustomClass first{First, InitFirst, false};
    substitute::customClasses[0] = &first;
    AcEdUIContext* const context = reinterpret_cast<AcEdUIContext*>(Packet(99));
    const ArxCommand command{L"GROUP", L"GLOBAL", L"LOCAL", 5, RunNothing, context, kNoResource};
    substitute::commands[66] = &command;
    EXPECT_EQ(Send(AcRx::kInitAppMsg), AcRx::kRetOK);
    EXPECT_EQ(Journal().back(), "addCommand GLOBAL");
    EXPECT_EQ(Journal()[Journal().size() - 2], "acrxBuildClassHierarchy");
    ASSERT_EQ(substitute::AddedCommands().size(), 1u);
    const substitute::AddedCommand& added = substitute::AddedCommands()[0];
    EXPECT_EQ(added.group, L"GROUP");
    EXPECT_EQ(added.globalName, L"GLOBAL");
    EXPECT_EQ(added.localName, L"LOCAL");
    EXPECT_EQ(added.flags, 5);
    EXPECT_EQ(added.function, &RunNothing);
    EXPECT_EQ(added.context, context);
    EXPECT_EQ(added.fcode, -1);
    EXPECT_EQ(added.resources, moduleHandle);
    EXPECT_EQ(added.result, nullptr);
}

TEST_F(Frame, NullCommandSlotsArePassedOver) {
    const ArxCommand command{L"G", L"A", L"A", 0, RunNothing, nullptr, kNoResource};
    const ArxCommand other{L"G", L"B", L"B", 0, RunNothing, nullptr, kNoResource};
    substitute::commands[3] = &command;
    substitute::commands[10] = &other;
    Send(AcRx::kInitAppMsg);
    ASSERT_EQ(substitute::AddedCommands().size(), 2u);
    EXPECT_EQ(substitute::AddedCommands()[0].globalName, L"A");
    EXPECT_EQ(substitute::AddedCommands()[1].globalName, L"B");
}

TEST_F(Frame, BitTwentyOneOfTheFlagsAloneTakesTheResourceHandleAway) {
    const ArxCommand with{L"G", L"A", L"A", 1 << 21, RunNothing, nullptr, kNoResource};
    const ArxCommand all{L"G", L"B", L"B", ~(1 << 21), RunNothing, nullptr, kNoResource};
    substitute::commands[0] = &with;
    substitute::commands[1] = &all;
    Send(AcRx::kInitAppMsg);
    ASSERT_EQ(substitute::AddedCommands().size(), 2u);
    EXPECT_EQ(substitute::AddedCommands()[0].flags, 0x200000);
    EXPECT_EQ(substitute::AddedCommands()[0].resources, nullptr);
    EXPECT_EQ(substitute::AddedCommands()[1].resources, moduleHandle);
}

TEST_F(Frame, ARefusedCommandChangesNothingInTheAnswer) {
    const ArxCommand command{L"G", L"A", L"A", 0, RunNothing, nullptr, kNoResource};
    substitute::commands[0] = &command;
    substitute::commandStatus = Acad::eInvalidInput;
    EXPECT_EQ(Send(AcRx::kInitAppMsg), AcRx::kRetOK);
    EXPECT_EQ(Send(AcRx::kUnloadAppMsg), AcRx::kRetOK);
}

TEST_F(Frame, ALocalNameThatTheResourcesDoNotHaveIsEmpty) {
    moduleHandle = nullptr;  // a program without string resources
    const ArxCommand command{L"G", L"A", nullptr, 0, RunNothing, nullptr, 17};
    substitute::commands[0] = &command;
    Send(AcRx::kInitAppMsg);
    ASSERT_EQ(substitute::AddedCommands().size(), 1u);
    EXPECT_EQ(substitute::AddedCommands()[0].localName, L"");
}

#ifndef _WIN32  // a Windows program cannot be given string resources while it runs
TEST_F(Frame, AMissingLocalNameComesFromTheResourcesCutAt131Characters) {
    const ArxCommand command{L"G", L"A", nullptr, 0, RunNothing, nullptr, 17};
    const ArxCommand longer{L"G", L"B", nullptr, 0, RunNothing, nullptr, 18};
    const ArxCommand named{L"G", L"C", L"NAMED", 0, RunNothing, nullptr, 17};
    substitute::commands = {&command, &longer, &named};
    headless::SetStringResource(moduleHandle, 17, L"PAIKALLINEN");
    headless::SetStringResource(moduleHandle, 18, std::wstring(200, L'x'));
    Send(AcRx::kInitAppMsg);
    headless::SetStringResource(moduleHandle, 17, L"");
    headless::SetStringResource(moduleHandle, 18, L"");
    ASSERT_EQ(substitute::AddedCommands().size(), 3u);
    EXPECT_EQ(substitute::AddedCommands()[0].localName, L"PAIKALLINEN");
    EXPECT_EQ(substitute::AddedCommands()[1].localName, std::wstring(131, L'x'));
    EXPECT_EQ(substitute::AddedCommands()[2].localName, L"NAMED");
}

TEST_F(Frame, AMissingFunctionNameComesFromTheResources) {
    const ArxAdsSymbol symbol{nullptr, nullptr, 0, 21};
    substitute::adsSymbols[0] = &symbol;
    Send(AcRx::kInitAppMsg);
    headless::SetStringResource(moduleHandle, 21, L"fun");
    Journal().clear();
    Send(AcRx::kLoadDwgMsg);
    Send(AcRx::kUnloadDwgMsg);
    headless::SetStringResource(moduleHandle, 21, L"");
    EXPECT_EQ(Journal(), (Calls{"acedDefun fun 0", "acedUndef fun 0"}));
}
#endif

// --- kUnloadAppMsg.

TEST_F(Frame, UnloadRemovesClassesBeforeCommands) {
    ArxCustomClass first{First, InitFirst, true};
    substitute::customClasses[0] = &first;
    const ArxCommand command{L"GROUP", L"A", L"LOCAL", 0, RunNothing, nullptr, kNoResource};
    const ArxCommand other{L"GROUP", L"B", L"LOCAL", 0, RunNothing, nullptr, kNoResource};
    substitute::commands[5] = &command;
    substitute::commands[7] = &other;
    EXPECT_EQ(Send(AcRx::kUnloadAppMsg), AcRx::kRetOK);
    EXPECT_EQ(Journal(),
              (Calls{"deleteAcRxClass First", "removeCmd GROUP A", "removeCmd GROUP B"}));
}

TEST_F(Frame, UnloadDeletesDerivedClassesFirstDepthFirst) {
    ArxCustomClass first{First, InitFirst, true};
    ArxCustomClass second{Second, InitSecond, true};
    ArxCustomClass third{Third, InitThird, true};
    substitute::customClasses = {&first, nullptr, &second, &third};
    Send(AcRx::kUnloadAppMsg);
    EXPECT_EQ(Journal(),
              (Calls{"deleteAcRxClass Third", "deleteAcRxClass Second", "deleteAcRxClass First"}));
    EXPECT_FALSE(first.registered || second.registered || third.registered);
}

TEST_F(Frame, UnloadDeletesSiblingsInTheOrderOfTheTable) {
    static AcRxClass* const left = (First(), substitute::MakeClass(L"Left", L"First"));
    static AcRxClass* const right = (First(), substitute::MakeClass(L"Right", L"First"));
    ArxCustomClass first{First, InitFirst, true};
    ArxCustomClass rightEntry{[] { return right; }, InitSecond, true};
    ArxCustomClass leftEntry{[] { return left; }, InitThird, true};
    substitute::customClasses = {&rightEntry, &first, &leftEntry};
    Send(AcRx::kUnloadAppMsg);
    EXPECT_EQ(Journal(),
              (Calls{"deleteAcRxClass Right", "deleteAcRxClass Left", "deleteAcRxClass First"}));
}

TEST_F(Frame, UnloadLeavesClassesThatWereNeverRegistered) {
    ArxCustomClass first{First, InitFirst, true};
    ArxCustomClass second{Second, InitSecond, false};
    substitute::customClasses = {&second, &first};
    Send(AcRx::kUnloadAppMsg);
    EXPECT_EQ(Journal(), (Calls{"deleteAcRxClass First"}));
    Journal().clear();
    Send(AcRx::kUnloadAppMsg);
    EXPECT_EQ(Journal(), Calls{});
}

TEST_F(Frame, AnUnregisteredClassInBetweenHidesThoseDerivedFromIt) {
    ArxCustomClass first{First, InitFirst, true};
    ArxCustomClass second{Second, InitSecond, false};
    ArxCustomClass third{Third, InitThird, true};
    substitute::customClasses = {&first, &second, &third};
    Send(AcRx::kUnloadAppMsg);
    EXPECT_EQ(Journal(), (Calls{"deleteAcRxClass First", "deleteAcRxClass Third"}));
}

TEST_F(Frame, LoadingAgainRegistersAnew) {
    ArxCustomClass first{First, InitFirst, false};
    substitute::customClasses[0] = &first;
    const ArxCommand command{L"G", L"A", L"A", 0, RunNothing, nullptr, kNoResource};
    substitute::commands[0] = &command;
    const Calls load{"unlockApplication 7", "registerAppMDIAware 7",   "RegisterServerComponents",
                     "init first",          "acrxBuildClassHierarchy", "addCommand A"};
    Send(AcRx::kInitAppMsg);
    EXPECT_EQ(Journal(), load);
    Send(AcRx::kUnloadAppMsg);
    EXPECT_FALSE(first.registered);
    Journal().clear();
    Send(AcRx::kInitAppMsg);
    EXPECT_EQ(Journal(), load);
    EXPECT_TRUE(first.registered);
}

// --- Functions for LISP.

int called = 0;
int CallOne() {
    return called = 1;
}
int CallTwo() {
    called = 2;
    return -5001;
}

class LispFunctions : public Frame {
  protected:
    void SetUp() override {
        Frame::SetUp();
        called = 0;
        // Nulls stand before, between and behind the two.
        substitute::adsSymbols[2] = &one_;
        substitute::adsSymbols[32] = &two_;
    }

  private:
    const ArxAdsSymbol one_{L"one", CallOne, 0, kNoResource};
    const ArxAdsSymbol two_{L"two", CallTwo, 1, kNoResource};
};

TEST_F(LispFunctions, LoadDefinesEachAndRegistersThoseWithFlagOne) {
    Send(AcRx::kLoadDwgMsg);
    EXPECT_EQ(Journal(), (Calls{"acedDefun one 0", "acedDefun two 1", "acedRegFunc 1"}));
}

TEST_F(LispFunctions, AFlagOtherThanOneDoesNotRegister) {
    const ArxAdsSymbol odd{L"odd", CallOne, 2, kNoResource};
    const ArxAdsSymbol negative{L"negative", CallOne, -1, kNoResource};
    substitute::adsSymbols = {&odd, &negative};
    Send(AcRx::kLoadDwgMsg);
    EXPECT_EQ(Journal(), (Calls{"acedDefun odd 0", "acedDefun negative 1"}));
}

TEST_F(LispFunctions, UnloadTakesThemAwayUnderTheSameNumbers) {
    Send(AcRx::kUnloadDwgMsg);
    EXPECT_EQ(Journal(), (Calls{"acedUndef one 0", "acedUndef two 1"}));
}

TEST_F(LispFunctions, InvokeCallsTheFunctionOfTheCodeAndAnswersOkWhateverItReturns) {
    substitute::functionCode = 1;
    EXPECT_EQ(Send(AcRx::kInvkSubrMsg), AcRx::kRetOK);
    EXPECT_EQ(called, 2);
    substitute::functionCode = 0;
    EXPECT_EQ(Send(AcRx::kInvkSubrMsg), AcRx::kRetOK);
    EXPECT_EQ(called, 1);
    EXPECT_EQ(Journal(), (Calls{"acedGetFunCode", "acedGetFunCode"}));
}

TEST_F(LispFunctions, InvokeWithAnUnknownCodeCallsNothing) {
    for (int code : {-1, 2, 32, -5001}) {
        substitute::functionCode = code;
        EXPECT_EQ(Send(AcRx::kInvkSubrMsg), AcRx::kRetOK);
        EXPECT_EQ(called, 0);
    }
}

}  // namespace
