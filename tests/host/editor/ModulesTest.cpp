#include "host/editor/Modules.h"

#include <aced.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "host/database/Fault.h"
#include "host/editor/CommandStack.h"
#include "tests/host/editor/Harness.h"

using namespace host;
using namespace host::editor;
using host::test::Harness;
using host::test::smallTown;
namespace fs = std::filesystem;

namespace {

fs::path module(const char* name) {
    return fs::path(ORLINTH_BIN_DIR) / (std::string(name) + ".arx");
}

// The sentence of the ModuleError that loading gives; empty when there is none.
std::string refusal(Session& session, const fs::path& path) {
    try {
        session.loadModule(path);
    } catch (const ModuleError& error) {
        return error.what();
    }
    return "";
}

bool contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

}  // namespace

TEST(Modules, TheLinkerStandsInTheRegistry) {
    AcRxObject* found = acrxSysRegistry()->at(L"DynamicLinker");
    ASSERT_NE(found, nullptr);
    EXPECT_TRUE(found->isA()->isDerivedFrom(AcRxDynamicLinker::desc()));
    EXPECT_EQ(AcRxDynamicLinker::cast(found), acrxDynamicLinker);
}

TEST(Modules, MessagesComeInTheirOrder) {
    Harness harness(smallTown(), {});
    harness.session().loadModule(module("ModuleThatBehaves"));
    harness.session().useDrawing(smallTown().database());
    harness.session().unloadModule(module("ModuleThatBehaves"));
    EXPECT_EQ(harness.output().shown, L"[1][3][4][3][4][2]");
    EXPECT_TRUE(harness.session().modules().empty());
}

TEST(Modules, WithoutADrawingNoDrawingMessageIsSent) {
    Harness harness(smallTown(), {});
    harness.session().closeDrawing();
    harness.session().loadModule(module("ModuleThatBehaves"));
    harness.session().unloadModule(module("ModuleThatBehaves"));
    EXPECT_EQ(harness.output().shown, L"[1][2]");
}

TEST(Modules, TheEndOfTheSessionUnloads) {
    test::RecordingOutput output;
    test::TypedInput input({});
    {
        Session session(input, output);
        session.useDrawing(smallTown().database());
        session.loadModule(module("ModuleThatBehaves"));
    }
    EXPECT_EQ(output.shown, L"[1][3][4][2]");
    EXPECT_EQ(acedRegCmds->lookupCmd(L"MODTHROW"), nullptr);
}

TEST(Modules, LoadingTwiceIsLoadingOnce) {
    Harness harness(smallTown(), {});
    harness.session().loadModule(module("ModuleThatBehaves"));
    harness.session().loadModule(fs::path(ORLINTH_BIN_DIR) / "." / "ModuleThatBehaves.arx");
    EXPECT_EQ(harness.output().shown, L"[1][3]");
    EXPECT_EQ(harness.session().modules().size(), 1u);
}

TEST(Modules, LoadedAgainAfterUnloadingItsCommandsAreThereAgain) {
    Harness harness(smallTown(), {});
    harness.session().loadModule(module("ModuleThatBehaves"));
    EXPECT_NE(acedRegCmds->lookupCmd(L"MODTHROW"), nullptr);
    harness.session().unloadModule(module("ModuleThatBehaves"));
    EXPECT_EQ(acedRegCmds->lookupCmd(L"MODTHROW"), nullptr);
    EXPECT_EQ(acedRegCmds->lookupCmd(L"MODSTAYS"), nullptr)
        << "what it forgot can't be called any longer";
    harness.session().loadModule(module("ModuleThatBehaves"));
    EXPECT_NE(acedRegCmds->lookupCmd(L"MODTHROW"), nullptr);
}

TEST(Modules, UnlockingAndSeveralDrawingsAreRecorded) {
    Harness harness(smallTown(), {});
    const fs::path path = module("ModuleThatBehaves");
    harness.session().loadModule(path);
    EXPECT_FALSE(acrxDynamicLinker->isApplicationLocked(path.wstring().c_str()));
    EXPECT_TRUE(acrxDynamicLinker->isAppMDIAware(path.wstring().c_str()));
    EXPECT_FALSE(acrxDynamicLinker->isAppMDIAware(L"other"));
    int nobody = 0;
    EXPECT_FALSE(acrxDynamicLinker->unlockApplication(&nobody));
    EXPECT_FALSE(acrxDynamicLinker->registerAppMDIAware(nullptr));
}

TEST(Modules, ALockedModuleIsNotUnloadedButByTheEnd) {
    test::RecordingOutput output;
    test::TypedInput input({});
    {
        Session session(input, output);
        session.loadModule(module("ModuleThatBehaves"));
        Modules& modules = Modules::instance();
        // The packet is told to the module alone; its commands' owner is the same.
        acrxDynamicLinker->lockApplication(
            const_cast<void*>(CommandStack::instance().find(L"MODTHROW")->owner));
        EXPECT_THROW(session.unloadModule(module("ModuleThatBehaves")), ModuleError);
        EXPECT_FALSE(modules.unloadModule(module("ModuleThatBehaves").wstring().c_str(), false));
        EXPECT_EQ(session.modules().size(), 1u);
    }
    EXPECT_EQ(output.shown, L"[1][2]");
}

TEST(Modules, LispFunctionsAreRecordedAndTakenBack) {
    Harness harness(smallTown(), {});
    harness.session().loadModule(module("ModuleThatBehaves"));
    Modules& modules = Modules::instance();
    ASSERT_EQ(modules.lispFunctions.size(), 1u);
    EXPECT_EQ(modules.lispFunctions[0].name, L"modfunction");
    EXPECT_EQ(modules.lispFunctions[0].code, 7);
    ASSERT_EQ(modules.registeredFunctions.size(), 1u);
    EXPECT_EQ(modules.registeredFunctions[0].function(), RTNORM);
    harness.session().closeDrawing();
    EXPECT_TRUE(modules.lispFunctions.empty());
    harness.session().unloadModule(module("ModuleThatBehaves"));
    EXPECT_TRUE(modules.registeredFunctions.empty());
}

TEST(Modules, TheCodeOfACalledFunctionCanBeSet) {
    EXPECT_EQ(acedGetFunCode(), RTERROR);
    Modules::instance().functionCode = 7;
    EXPECT_EQ(acedGetFunCode(), 7);
    Modules::instance().functionCode = RTERROR;
    EXPECT_EQ(acedDefun(nullptr, 1), RTERROR);
    EXPECT_EQ(acedUndef(L"nosuch", 1), RTERROR);
}

TEST(Modules, WhatIsMissingIsNamed) {
    Harness harness(smallTown(), {});
    EXPECT_TRUE(contains(refusal(harness.session(), module("ModuleWithoutEntry")),
                         "does not export acrxEntryPoint"));
    EXPECT_TRUE(contains(refusal(harness.session(), module("ModuleWithoutVersion")),
                         "does not export acrxGetApiVersion"));
    EXPECT_TRUE(contains(refusal(harness.session(), module("NoSuchModule")), "does not exist"));
    EXPECT_TRUE(contains(refusal(harness.session(), ORLINTH_BIN_DIR), "is a folder"));
    EXPECT_TRUE(harness.session().modules().empty());
}

TEST(Modules, AFileThatIsNoModuleIsRefusedWithTheSystemsReason) {
    Harness harness(smallTown(), {});
    const fs::path path = fs::temp_directory_path() / "orlinth-no-module.arx";
    std::ofstream(path) << "This is a text and no module.\n";
    const std::string sentence = refusal(harness.session(), path);
    fs::remove(path);
    EXPECT_TRUE(contains(sentence, "orlinth-no-module.arx")) << sentence;
    EXPECT_TRUE(contains(sentence, "can't be loaded as a module: ")) << sentence;
}

TEST(Modules, ARefusedStartLeavesNothingLoaded) {
    Harness harness(smallTown(), {});
    EXPECT_TRUE(contains(refusal(harness.session(), module("ModuleThatRefuses")),
                         "refused to start: it answered 3"));
    EXPECT_EQ(acedRegCmds->lookupCmd(L"REFUSED"), nullptr);
    EXPECT_TRUE(harness.session().modules().empty());
}

TEST(Modules, AnExceptionAtTheStartIsTold) {
    Harness harness(smallTown(), {});
    EXPECT_TRUE(contains(refusal(harness.session(), module("ModuleThatThrows")),
                         "could not start: not today"));
    EXPECT_TRUE(harness.session().modules().empty());
}

TEST(Modules, TheLinkersOwnLoadingSaysWhyItFailed) {
    Harness harness(smallTown(), {});
    EXPECT_FALSE(acrxDynamicLinker->loadModule(L"nosuch.arx", true));
    EXPECT_EQ(harness.output().shown, L"the module 'nosuch.arx' does not exist\n");
    EXPECT_FALSE(acrxDynamicLinker->loadModule(L"nosuch.arx", false));
    EXPECT_FALSE(acrxDynamicLinker->loadModule(nullptr, false));
    EXPECT_TRUE(
        acrxDynamicLinker->loadModule(module("ModuleThatBehaves").wstring().c_str(), false));
    EXPECT_FALSE(acrxDynamicLinker->unloadModule(L"nosuch.arx"));
    EXPECT_TRUE(acrxDynamicLinker->unloadModule(module("ModuleThatBehaves").wstring().c_str()));
    fault::arm("AcRxDynamicLinker::loadModule", 1, 1);
    EXPECT_FALSE(
        acrxDynamicLinker->loadModule(module("ModuleThatBehaves").wstring().c_str(), false));
}

TEST(Modules, AnExceptionOutOfAModulesCommandIsCaughtAndItsChangesAreTakenBack) {
    Harness harness(smallTown(), {L"MODTHROW", L"MODFAIL", L"NOTHING"});
    harness.session().loadModule(module("ModuleThatBehaves"));
    const std::string before = test::savedBytes(harness.drawing());
    harness.run();
    ASSERT_EQ(harness.results().size(), 3u);
    EXPECT_EQ(harness.results()[0].end, CommandResult::End::exceptionLeft);
    EXPECT_EQ(harness.results()[1].end, CommandResult::End::exceptionLeft);
    EXPECT_EQ(harness.results()[2].end, CommandResult::End::done);
    EXPECT_EQ(test::savedBytes(harness.drawing()), before);
}
