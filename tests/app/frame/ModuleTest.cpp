#include "app/Module.h"

#include <afxdllx.h>
#include <gtest/gtest.h>

#include "SubstituteHost.h"
#include "app/ModuleState.h"
#include "app/OrlinthApp.h"
#include "platform/mfc/ExtensionRecord.h"
#include "tam/FrameWindow.h"
#include "tam/TamExceptions.h"

namespace {

using substitute::Journal;
using substitute::Packet;
using Calls = std::vector<std::string>;

// What the record of extension modules held when the static constructors of this program ran.
const Calls stepsAtStaticConstruction = extension_record::Steps();

TEST(RawStart, TheListsMoveAsideBeforeStaticConstructorsRun) {
    EXPECT_EQ(stepsAtStaticConstruction, Calls{"lists aside"});
}

class ModuleLife : public ::testing::Test {
  protected:
    void SetUp() override {
        substitute::Reset();
        extension_record::Forget();
    }
    void TearDown() override {
        extension_record::RefuseInit(false);
        DetachModule();
        moduleHandle = nullptr;
    }

    HINSTANCE instance = reinterpret_cast<HINSTANCE>(&place_);

  private:
    int place_ = 0;
};

TEST_F(ModuleLife, AttachKeepsTheHandleAndJoinsTheFramework) {
    EXPECT_TRUE(AttachModule(instance));
    EXPECT_EQ(moduleHandle, instance);
    EXPECT_EQ(extension_record::Steps(), (Calls{"AfxInitExtensionModule", "CDynLinkLibrary"}));
    EXPECT_EQ(Journal(), Calls{"InitAcUiDLL"});
    ASSERT_NE(AfxGetModuleState()->m_pLibraryList, nullptr);
    EXPECT_EQ(AfxGetModuleState()->m_pLibraryList->m_hModule, instance);
}

TEST_F(ModuleLife, ASecondAttachJoinsNoSecondTimeButStartsTheInterfaceLibrary) {
    AttachModule(instance);
    EXPECT_TRUE(AttachModule(instance));
    EXPECT_EQ(extension_record::Steps(), (Calls{"AfxInitExtensionModule", "CDynLinkLibrary"}));
    EXPECT_EQ(Journal(), (Calls{"InitAcUiDLL", "InitAcUiDLL"}));
}

TEST_F(ModuleLife, ARefusedExtensionModuleMakesNoLibraryAndStillAttaches) {
    extension_record::RefuseInit(true);
    EXPECT_TRUE(AttachModule(instance));
    EXPECT_EQ(moduleHandle, instance);
    EXPECT_EQ(extension_record::Steps(), Calls{"AfxInitExtensionModule"});
    EXPECT_EQ(Journal(), Calls{"InitAcUiDLL"});
    EXPECT_EQ(AfxGetModuleState()->m_pLibraryList, nullptr);
    extension_record::Forget();
    EXPECT_TRUE(DetachModule());
    EXPECT_EQ(extension_record::Steps(), Calls{});
}

TEST_F(ModuleLife, DetachTerminatesOnceWhatWasInitialised) {
    AttachModule(instance);
    extension_record::Forget();
    EXPECT_TRUE(DetachModule());
    EXPECT_EQ(extension_record::Steps(), Calls{"AfxTermExtensionModule"});
    EXPECT_EQ(AfxGetModuleState()->m_pLibraryList, nullptr);
    EXPECT_TRUE(DetachModule());
    EXPECT_EQ(extension_record::Steps(), Calls{"AfxTermExtensionModule"});
}

TEST_F(ModuleLife, AttachAfterDetachJoinsAgain) {
    AttachModule(instance);
    DetachModule();
    extension_record::Forget();
    EXPECT_TRUE(AttachModule(instance));
    EXPECT_EQ(extension_record::Steps(), (Calls{"AfxInitExtensionModule", "CDynLinkLibrary"}));
}

// The host's window is asked for once in the life of a module, here of this program: one case.
TEST_F(ModuleLife, TheHostWindowIsReadOnceAndItsObjectLookedUpAtEveryInit) {
    CMDIFrameWnd first;
    CMDIFrameWnd other;
    const HWND window = reinterpret_cast<HWND>(Packet(0x1234));
    first.m_hWnd = window;
    other.m_hWnd = reinterpret_cast<HWND>(Packet(0x5678));
    substitute::frame = &first;
    COrlinthApp app;
    EXPECT_EQ(app.Dispatch(AcRx::kInitAppMsg, Packet(1)), AcRx::kRetOK);
    EXPECT_EQ(Journal(),
              (Calls{"unlockApplication 1", "registerAppMDIAware 1", "acedGetAcadFrame"}));
    ASSERT_NE(TamLib::frameWindow, nullptr);
    EXPECT_EQ(TamLib::frameWindow->m_hWnd, window);
    EXPECT_EQ(TamLib::frameWindow, CWnd::FromHandle(window));

    // Reports of exceptions go to the command line from now on.
    Journal().clear();
    TamLib::TamExpUser(L"no line", 7, L"app/AlignCommand").Report();
    EXPECT_EQ(Journal(), Calls{"acutPrintf \nno line Error at line 7 in file app/AlignCommand.\n"});

    EXPECT_EQ(app.Dispatch(AcRx::kUnloadAppMsg, Packet(1)), AcRx::kRetOK);
    TamLib::frameWindow = nullptr;
    TamLib::reportFunction = nullptr;
    substitute::frame = &other;
    Journal().clear();
    COrlinthApp().Dispatch(AcRx::kInitAppMsg, Packet(2));
    EXPECT_EQ(Journal(), (Calls{"unlockApplication 2", "registerAppMDIAware 2"}));
    EXPECT_EQ(TamLib::frameWindow, CWnd::FromHandle(window));

    TamLib::frameWindow = nullptr;
    TamLib::reportFunction = nullptr;
    first.m_hWnd = nullptr;  // invented handles: nothing to destroy
    other.m_hWnd = nullptr;
}

TEST_F(ModuleLife, UnloadingTheModulesClassForwardsToTheBase) {
    ArxCommand command{L"G", L"A", L"A", 0, nullptr, nullptr, kNoResource};
    substitute::commands[0] = &command;
    COrlinthApp app;
    EXPECT_EQ(app.Dispatch(AcRx::kUnloadAppMsg, Packet(1)), AcRx::kRetOK);
    EXPECT_EQ(Journal(), Calls{"removeCmd G A"});
}

}  // namespace
