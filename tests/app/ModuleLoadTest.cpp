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

// The file as the system's loader has it.
class Library {
  public:
#ifdef _WIN32
    Library() : handle_(LoadLibraryW(ModulePath().c_str())) {
        EXPECT_NE(handle_, nullptr);
    }
    ~Library() {
        FreeLibrary(handle_);
    }
    void* Find(const char* name) const {
        return reinterpret_cast<void*>(GetProcAddress(handle_, name));
    }
    static bool IsLoaded() {
        return GetModuleHandleW(L"ZEPTOrlinth.arx") != nullptr;
    }
#else
    Library() : handle_(dlopen(ModulePath().c_str(), RTLD_NOW | RTLD_LOCAL)) {
        EXPECT_NE(handle_, nullptr) << dlerror();
    }
    ~Library() {
        dlclose(handle_);
    }
    void* Find(const char* name) const {
        return dlsym(handle_, name);
    }
    static bool IsLoaded() {
        void* const loaded = dlopen(ModulePath().c_str(), RTLD_NOW | RTLD_NOLOAD);
        if (loaded != nullptr) dlclose(loaded);
        return loaded != nullptr;
    }
#endif
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;

  private:
#ifdef _WIN32
    HMODULE handle_;
#else
    void* handle_;
#endif
};

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

TEST_F(ModuleFile, ExportsItsTwoEntriesAndNothingOfTheLibrary) {
    const Library module;
    EXPECT_NE(module.Find("acrxEntryPoint"), nullptr);
    EXPECT_NE(module.Find("acrxGetApiVersion"), nullptr);
    EXPECT_EQ(module.Find("DllMain"), nullptr);
    EXPECT_EQ(module.Find("_ZN6TamLib11frameWindowE"), nullptr);
}

// A module that stayed would keep its state, and the next load would not start it.
TEST_F(ModuleFile, UnloadTakesItOutOfTheProcess) {
    session.loadModule(ModulePath());
    EXPECT_TRUE(Library::IsLoaded());
    session.unloadModule(ModulePath());
    EXPECT_FALSE(Library::IsLoaded());
}

}  // namespace
