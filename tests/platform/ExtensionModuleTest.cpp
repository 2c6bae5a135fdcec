#include <afxwin.h>
#include <gtest/gtest.h>

#include "platform/mfc/ExtensionRecord.h"

namespace {

using Steps = std::vector<std::string>;

class ExtensionModule : public ::testing::Test {
  protected:
    void SetUp() override { extension_record::Forget(); }
    void TearDown() override {
        AfxTermExtensionModule(module);
        extension_record::RefuseInit(false);
    }

    HMODULE handle = reinterpret_cast<HMODULE>(&module);
    AFX_EXTENSION_MODULE module{};
    AFX_MODULE_STATE& program = *AfxGetModuleState();
};

TEST_F(ExtensionModule, ClassesRegisteredAfterTheRawStartGoToTheModule) {
    CRuntimeClass before{"before", 1, nullptr};
    program.m_pClassList = &before;
    COleObjectFactory factoryBefore;
    program.m_pFactoryList = &factoryBefore;
    AfxMoveListsAside();
    EXPECT_EQ(program.m_pClassList, nullptr);
    EXPECT_EQ(program.m_pFactoryList, nullptr);
    CRuntimeClass own{"own", 1, nullptr};
    program.m_pClassList = &own;
    COleObjectFactory ownFactory;
    program.m_pFactoryList = &ownFactory;
    ASSERT_TRUE(AfxInitExtensionModule(module, handle));
    EXPECT_EQ(module.pFirstSharedClass, &own);
    EXPECT_EQ(module.pFirstSharedFactory, &ownFactory);
    EXPECT_EQ(program.m_pClassList, &before);
    EXPECT_EQ(program.m_pFactoryList, &factoryBefore);
    program.m_pClassList = nullptr;
    program.m_pFactoryList = nullptr;
}

TEST_F(ExtensionModule, InitKeepsTheHandleAndMarksTheState) {
    ASSERT_TRUE(AfxInitExtensionModule(module, handle));
    EXPECT_TRUE(module.bInitialized);
    EXPECT_EQ(module.hModule, handle);
    EXPECT_EQ(module.hResource, handle);
    EXPECT_FALSE(AfxInitExtensionModule(module, handle));
}

TEST_F(ExtensionModule, OrderedRefusalLeavesTheStateUninitialised) {
    extension_record::RefuseInit(true);
    EXPECT_FALSE(AfxInitExtensionModule(module, handle));
    EXPECT_FALSE(module.bInitialized);
}

TEST_F(ExtensionModule, TermDeletesTheModulesLibrariesAndNoOthers) {
    ASSERT_TRUE(AfxInitExtensionModule(module, handle));
    AFX_EXTENSION_MODULE other{};
    ASSERT_TRUE(AfxInitExtensionModule(other, reinterpret_cast<HMODULE>(&other)));
    auto* const kept = new CDynLinkLibrary(other);
    new CDynLinkLibrary(module);
    new CDynLinkLibrary(module);
    AfxTermExtensionModule(module);
    EXPECT_FALSE(module.bInitialized);
    EXPECT_EQ(program.m_pLibraryList, kept);
    EXPECT_EQ(kept->m_pNextDLL, nullptr);
    AfxTermExtensionModule(other);
    EXPECT_EQ(program.m_pLibraryList, nullptr);
}

TEST_F(ExtensionModule, StepsAreRecordedInOrder) {
    AfxMoveListsAside();
    AfxInitExtensionModule(module, handle);
    new CDynLinkLibrary(module);
    AfxTermExtensionModule(module);
    EXPECT_EQ(extension_record::Steps(), (Steps{"lists aside", "AfxInitExtensionModule",
                                                "CDynLinkLibrary", "AfxTermExtensionModule"}));
}

}  // namespace
