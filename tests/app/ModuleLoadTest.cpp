// The module as a file: what it exports, how it comes and goes.
#include <aced.h>
#include <afxwin.h>

#ifndef _WIN32
#include <dlfcn.h>
#endif

#include "BruteForce.h"
#include "CommandHost.h"
#include "platform/mfc/ExtensionRecord.h"

namespace {

using namespace app_test;
using Steps = std::vector<std::string>;

DrawingText Small() {
    DrawingText drawing;
    drawing.Line("2F", {0, 0}, {10, 0});
    drawing.Text("A0", {5, 1});
    return drawing;
}

class ModuleFile : public CommandTest {
  protected:
    bool CommandIsThere() const {
        return acedRegCmds->lookupCmd(L"ZEPTOrlinth", L"ZEPTAlignEntities", true) != nullptr;
    }
};

TEST_F(ModuleFile, LoadJoinsTheFrameworkAndRegistersTheCommand) {
    EXPECT_FALSE(CommandIsThere());
    extension_record::Forget();
    session.loadModule(ModulePath());
    EXPECT_EQ(extension_record::Steps(),
              (Steps{"lists aside", "AfxInitExtensionModule", "CDynLinkLibrary"}));
    EXPECT_TRUE(CommandIsThere());
}

TEST_F(ModuleFile, UnloadRemovesTheCommandAndLeavesTheFramework) {
    session.loadModule(ModulePath());
    extension_record::Forget();
    session.unloadModule(ModulePath());
    EXPECT_FALSE(CommandIsThere());
    EXPECT_EQ(extension_record::Steps(), Steps{"AfxTermExtensionModule"});
    EXPECT_EQ(AfxGetModuleState()->m_pLibraryList, nullptr);
    EXPECT_EQ(session.runCommand(L"ZEPTAlignEntities").end, End::unknown);
}

TEST_F(ModuleFile, LoadedAgainItWorksAsBefore) {
    for (int round = 0; round < 3; ++round) {
        Open(Small());
        EXPECT_EQ(Run("2F", {"A0"}, L"k").end, End::done);
        EXPECT_EQ(Rotation("A0"), 6.283182653589793);
        EXPECT_EQ(scripted->prompts()[0].focus,
                  static_cast<void*>(acedGetAcadFrame()->GetSafeHwnd()));
        session.unloadModule(ModulePath());
        EXPECT_FALSE(CommandIsThere());
    }
}

TEST_F(ModuleFile, ADrawingOpenedLaterNeedsNothingNew) {
    session.loadModule(ModulePath());
    Open(Small());
    Run("2F", {"A0"}, L"");
    Open(Small());
    EXPECT_EQ(Rotation("A0"), 0.0);
    Run("2F", {"A0"}, L"");
    EXPECT_EQ(Rotation("A0"), 6.283182653589793);
}

#ifndef _WIN32
TEST_F(ModuleFile, ExportsItsTwoEntriesAndNothingOfTheLibrary) {
    void* const module = dlopen(ModulePath().c_str(), RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(module, nullptr) << dlerror();
    EXPECT_NE(dlsym(module, "acrxEntryPoint"), nullptr);
    EXPECT_NE(dlsym(module, "acrxGetApiVersion"), nullptr);
    EXPECT_EQ(dlsym(module, "DllMain"), nullptr);
    EXPECT_EQ(dlsym(module, "_ZN6TamLib11frameWindowE"), nullptr);
    dlclose(module);
}

// A module that stayed would keep its state, and the next load would not start it.
TEST_F(ModuleFile, UnloadTakesItOutOfTheProcess) {
    session.loadModule(ModulePath());
    session.unloadModule(ModulePath());
    EXPECT_EQ(dlopen(ModulePath().c_str(), RTLD_NOW | RTLD_NOLOAD), nullptr);
}
#endif

}  // namespace
