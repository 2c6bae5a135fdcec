// The host's command stack: what addCommand has registered, found by name.
#pragma once

#include <accmd.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace host::editor {

class RegisteredCommand : public AcEdCommand {
  public:
    const ACHAR* globalName() const override { return global.c_str(); }
    const ACHAR* localName() const override { return local.c_str(); }
    const ACHAR* groupName() const override { return group.c_str(); }
    Adesk::Int32 commandFlags() const override { return flags; }
    AcRxFunctionPtr functionAddr() const override { return function; }
    AcEdUIContext* UIContext() const override { return context; }

    std::wstring group, global, local;
    Adesk::Int32 flags = 0;
    AcRxFunctionPtr function = nullptr;
    AcEdUIContext* context = nullptr;
    int code = -1;
    void* resourceHandle = nullptr;
    // Who registered it: the module that a message was being sent to; null for anybody else.
    const void* owner = nullptr;
};

class CommandStack : public AcEdCommandStack {
  public:
    static CommandStack& instance();

    Acad::ErrorStatus addCommand(const ACHAR* groupName, const ACHAR* globalName,
                                 const ACHAR* localName, Adesk::Int32 flags,
                                 AcRxFunctionPtr function, AcEdUIContext* context, int fcode,
                                 void* resourceHandle, AcEdCommand** cmd) override;
    Acad::ErrorStatus removeCmd(const ACHAR* groupName, const ACHAR* globalName) override;
    Acad::ErrorStatus removeGroup(const ACHAR* groupName) override;
    AcEdCommand* lookupCmd(const ACHAR* name, bool globalLookup) const override;
    AcEdCommand* lookupCmd(const ACHAR* groupName, const ACHAR* name,
                           bool globalLookup) const override;

    // The command that a typed name means: global and local names count, the group added last wins.
    RegisteredCommand* find(std::wstring_view name) const;
    // All global and local names, in the order of registering.
    std::vector<std::wstring> names() const;

    // Commands registered from now on belong to `owner`.
    void setOwner(const void* owner) { owner_ = owner; }
    // Takes away what an owner has left behind, and gives the global names.
    std::vector<std::wstring> removeOwned(const void* owner);

  private:
    struct Group {
        std::wstring name;
        std::vector<std::unique_ptr<RegisteredCommand>> commands;
    };

    CommandStack();
    Group* findGroup(std::wstring_view name);
    static RegisteredCommand* findIn(const Group& group, std::wstring_view name, bool localToo);

    std::vector<Group> groups_;  // in the order of their first command
    const void* owner_ = nullptr;
};

}  // namespace host::editor
