#include <aced.h>
#include <gtest/gtest.h>

#include "host/database/Fault.h"
#include "host/editor/CommandStack.h"

using host::editor::CommandStack;
namespace fault = host::fault;

namespace {

void nothing() {}

class CommandStackTest : public testing::Test {
  protected:
    ~CommandStackTest() override {
        for (const wchar_t* group : {L"STREETS", L"OTHER"}) stack.removeGroup(group);
    }
    AcEdCommandStack& stack = *acedRegCmds;
};

}  // namespace

TEST_F(CommandStackTest, ModulesFindItInTheRegistry) {
    AcRxObject* found = acrxSysRegistry()->at(L"ACAD_REGISTERED_COMMANDS");
    ASSERT_NE(found, nullptr);
    EXPECT_TRUE(found->isA()->isDerivedFrom(AcEdCommandStack::desc()));
    EXPECT_EQ(AcEdCommandStack::cast(found), &stack);
}

TEST_F(CommandStackTest, NineArgumentsAreKept) {
    AcEdCommand* command = nullptr;
    auto* context = reinterpret_cast<AcEdUIContext*>(&stack);
    EXPECT_EQ(stack.addCommand(L"STREETS", L"TURN", L"KÄÄNNÄ", ACRX_CMD_TRANSPARENT, nothing,
                               context, -1, &stack, &command),
              Acad::eOk);
    ASSERT_NE(command, nullptr);
    EXPECT_STREQ(command->groupName(), L"STREETS");
    EXPECT_STREQ(command->globalName(), L"TURN");
    EXPECT_STREQ(command->localName(), L"KÄÄNNÄ");
    EXPECT_EQ(command->commandFlags(), ACRX_CMD_TRANSPARENT);
    EXPECT_EQ(command->functionAddr(), &nothing);
    EXPECT_EQ(command->UIContext(), context);
}

TEST_F(CommandStackTest, NamesAreFoundIgnoringCase) {
    stack.addCommand(L"STREETS", L"TURN", L"KÄÄNNÄ", 0, nothing);
    EXPECT_NE(stack.lookupCmd(L"turn"), nullptr);
    EXPECT_NE(stack.lookupCmd(L"käännä"), nullptr);
    EXPECT_NE(stack.lookupCmd(L"streets", L"Turn"), nullptr);
    EXPECT_EQ(stack.lookupCmd(L"käännä", true), nullptr) << "only global names were asked for";
    EXPECT_EQ(stack.lookupCmd(L"OTHER", L"TURN"), nullptr);
    EXPECT_EQ(stack.lookupCmd(L"TUR"), nullptr);
    EXPECT_EQ(stack.lookupCmd(static_cast<const ACHAR*>(nullptr)), nullptr);
}

TEST_F(CommandStackTest, ANameIsTakenOncePerGroup) {
    EXPECT_EQ(stack.addCommand(L"STREETS", L"TURN", L"KÄÄNNÄ", 0, nothing), Acad::eOk);
    EXPECT_EQ(stack.addCommand(L"streets", L"turn", L"other", 0, nothing), Acad::eDuplicateKey);
    EXPECT_EQ(stack.addCommand(L"STREETS", L"OTHER", L"käännä", 0, nothing), Acad::eDuplicateKey);
    EXPECT_EQ(stack.addCommand(L"OTHER", L"TURN", L"TURN", 0, nothing), Acad::eOk);
    EXPECT_STREQ(stack.lookupCmd(L"TURN")->groupName(), L"OTHER")
        << "the group added last is asked first";
}

TEST_F(CommandStackTest, BadArgumentsAreRefused) {
    EXPECT_EQ(stack.addCommand(nullptr, L"A", L"A", 0, nothing), Acad::eInvalidInput);
    EXPECT_EQ(stack.addCommand(L"", L"A", L"A", 0, nothing), Acad::eInvalidInput);
    EXPECT_EQ(stack.addCommand(L"STREETS", nullptr, L"A", 0, nothing), Acad::eInvalidInput);
    EXPECT_EQ(stack.addCommand(L"STREETS", L"A", nullptr, 0, nothing), Acad::eInvalidInput);
    EXPECT_EQ(stack.addCommand(L"STREETS", L"A", L"A", 0, nullptr), Acad::eInvalidInput);
}

TEST_F(CommandStackTest, AnEmptyLocalNameIsNoName) {
    EXPECT_EQ(stack.addCommand(L"STREETS", L"A", L"", 0, nothing), Acad::eOk);
    EXPECT_EQ(stack.addCommand(L"STREETS", L"B", L"", 0, nothing), Acad::eOk);
    EXPECT_EQ(stack.lookupCmd(L""), nullptr);
}

TEST_F(CommandStackTest, RemovedOnesAreGone) {
    stack.addCommand(L"STREETS", L"TURN", L"KÄÄNNÄ", 0, nothing);
    EXPECT_EQ(stack.removeCmd(L"STREETS", L"KÄÄNNÄ"), Acad::eKeyNotFound)
        << "by the global name only";
    EXPECT_EQ(stack.removeCmd(L"streets", L"turn"), Acad::eOk);
    EXPECT_EQ(stack.lookupCmd(L"TURN"), nullptr);
    EXPECT_EQ(stack.removeCmd(L"STREETS", L"TURN"), Acad::eKeyNotFound);
    EXPECT_EQ(stack.removeGroup(L"STREETS"), Acad::eKeyNotFound)
        << "a group goes with its last command";
    EXPECT_EQ(stack.removeCmd(nullptr, L"TURN"), Acad::eInvalidInput);
}

TEST_F(CommandStackTest, FailsOnOrder) {
    fault::arm("AcEdCommandStack::addCommand", 1, Acad::eOutOfMemory);
    EXPECT_EQ(stack.addCommand(L"STREETS", L"A", L"A", 0, nothing), Acad::eOutOfMemory);
    EXPECT_EQ(stack.lookupCmd(L"A"), nullptr);
}

TEST_F(CommandStackTest, WhatAnOwnerLeavesBehindIsTakenAway) {
    const int owner = 0;
    stack.addCommand(L"STREETS", L"KEPT", L"KEPT", 0, nothing);
    CommandStack::instance().setOwner(&owner);
    stack.addCommand(L"STREETS", L"LEFT", L"LEFT", 0, nothing);
    stack.addCommand(L"OTHER", L"LEFT2", L"LEFT2", 0, nothing);
    CommandStack::instance().setOwner(nullptr);
    EXPECT_EQ(CommandStack::instance().removeOwned(&owner),
              (std::vector<std::wstring>{L"LEFT", L"LEFT2"}));
    EXPECT_NE(stack.lookupCmd(L"KEPT"), nullptr);
    EXPECT_EQ(stack.lookupCmd(L"LEFT"), nullptr);
}
