#include "host/editor/CommandStack.h"

#include <rxregsvc.h>

#include <algorithm>

#include "host/database/Fault.h"
#include "host/editor/Words.h"

ACRX_NO_CONS_DEFINE_MEMBERS(AcEdCommand, AcRxObject);
ACRX_NO_CONS_DEFINE_MEMBERS(AcEdCommandStack, AcRxObject);

namespace host::editor {

namespace {

bool empty(const ACHAR* text) {
    return text == nullptr || *text == L'\0';
}

// Modules look the stack up in the registry before anything else has asked for it.
const CommandStack& registered = CommandStack::instance();

}  // namespace

CommandStack::CommandStack() {
    acrxSysRegistry()->atPut(ACRX_COMMAND_DOCK, this);
}

CommandStack& CommandStack::instance() {
    static CommandStack stack;
    return stack;
}

CommandStack::Group* CommandStack::findGroup(std::wstring_view name) {
    const auto found = std::find_if(groups_.begin(), groups_.end(), [&](const Group& group) {
        return equalIgnoringCase(group.name, name);
    });
    return found == groups_.end() ? nullptr : &*found;
}

RegisteredCommand* CommandStack::findIn(const Group& group, std::wstring_view name, bool localToo) {
    for (const auto& command : group.commands) {
        if (equalIgnoringCase(command->global, name) ||
            (localToo && equalIgnoringCase(command->local, name))) {
            return command.get();
        }
    }
    return nullptr;
}

Acad::ErrorStatus CommandStack::addCommand(const ACHAR* groupName, const ACHAR* globalName,
                                           const ACHAR* localName, Adesk::Int32 flags,
                                           AcRxFunctionPtr function, AcEdUIContext* context,
                                           int fcode, void* resourceHandle, AcEdCommand** cmd) {
    HOST_CALL("AcEdCommandStack::addCommand");
    if (cmd != nullptr) *cmd = nullptr;
    if (empty(groupName) || empty(globalName) || localName == nullptr || function == nullptr) {
        return Acad::eInvalidInput;
    }
    Group* group = findGroup(groupName);
    if (group != nullptr && (findIn(*group, globalName, true) != nullptr ||
                             (!empty(localName) && findIn(*group, localName, true) != nullptr))) {
        return Acad::eDuplicateKey;
    }
    if (group == nullptr) group = &groups_.emplace_back(Group{groupName, {}});
    auto command = std::make_unique<RegisteredCommand>();
    command->group = groupName;
    command->global = globalName;
    command->local = localName;
    command->flags = flags;
    command->function = function;
    command->context = context;
    command->code = fcode;
    command->resourceHandle = resourceHandle;
    command->owner = owner_;
    if (cmd != nullptr) *cmd = command.get();
    group->commands.push_back(std::move(command));
    return Acad::eOk;
}

Acad::ErrorStatus CommandStack::removeCmd(const ACHAR* groupName, const ACHAR* globalName) {
    HOST_CALL("AcEdCommandStack::removeCmd");
    if (empty(groupName) || empty(globalName)) return Acad::eInvalidInput;
    Group* group = findGroup(groupName);
    if (group == nullptr) return Acad::eKeyNotFound;
    const RegisteredCommand* command = findIn(*group, globalName, false);
    if (command == nullptr) return Acad::eKeyNotFound;
    auto& commands = group->commands;
    commands.erase(std::find_if(commands.begin(), commands.end(),
                                [&](const auto& entry) { return entry.get() == command; }));
    if (commands.empty()) groups_.erase(groups_.begin() + (group - groups_.data()));
    return Acad::eOk;
}

Acad::ErrorStatus CommandStack::removeGroup(const ACHAR* groupName) {
    HOST_CALL("AcEdCommandStack::removeGroup");
    Group* group = groupName == nullptr ? nullptr : findGroup(groupName);
    if (group == nullptr) return Acad::eKeyNotFound;
    groups_.erase(groups_.begin() + (group - groups_.data()));
    return Acad::eOk;
}

AcEdCommand* CommandStack::lookupCmd(const ACHAR* name, bool globalLookup) const {
    if (empty(name)) return nullptr;
    for (auto group = groups_.rbegin(); group != groups_.rend(); ++group) {
        RegisteredCommand* command = findIn(*group, name, !globalLookup);
        if (command != nullptr) return command;
    }
    return nullptr;
}

AcEdCommand* CommandStack::lookupCmd(const ACHAR* groupName, const ACHAR* name,
                                     bool globalLookup) const {
    if (empty(groupName) || empty(name)) return nullptr;
    for (const Group& group : groups_) {
        if (equalIgnoringCase(group.name, groupName)) return findIn(group, name, !globalLookup);
    }
    return nullptr;
}

RegisteredCommand* CommandStack::find(std::wstring_view name) const {
    for (auto group = groups_.rbegin(); group != groups_.rend(); ++group) {
        RegisteredCommand* command = name.empty() ? nullptr : findIn(*group, name, true);
        if (command != nullptr) return command;
    }
    return nullptr;
}

std::vector<std::wstring> CommandStack::names() const {
    std::vector<std::wstring> all;
    for (const Group& group : groups_) {
        for (const auto& command : group.commands) {
            all.push_back(command->global);
            const bool another = !equalIgnoringCase(command->local, command->global);
            if (another && !command->local.empty()) all.push_back(command->local);
        }
    }
    return all;
}

std::vector<std::wstring> CommandStack::removeOwned(const void* owner) {
    std::vector<std::wstring> names;
    for (Group& group : groups_) {
        auto& commands = group.commands;
        const auto gone =
            std::stable_partition(commands.begin(), commands.end(),
                                  [&](const auto& command) { return command->owner != owner; });
        for (auto command = gone; command != commands.end(); ++command) {
            names.push_back((*command)->global);
        }
        commands.erase(gone, commands.end());
    }
    groups_.erase(std::remove_if(groups_.begin(), groups_.end(),
                                 [](const Group& group) { return group.commands.empty(); }),
                  groups_.end());
    return names;
}

}  // namespace host::editor

AcEdCommandStack* acedRegCmdsPtr() {
    return &host::editor::CommandStack::instance();
}
