#include <accmd.h>
#include <acedads.h>

#include <array>

#include "ArxAppFrame.h"
#include "Registration.h"
#include "RegistryLookup.h"

namespace {

constexpr int kNameSize = 132;                       // room for a name from the resources
constexpr std::int32_t kNoResourceHandle = 1 << 21;  // flag: the command gets no resource handle

AcEdCommandStack& CommandStack() {
    return *FromRegistry<AcEdCommandStack>(L"ACAD_REGISTERED_COMMANDS");
}

// A name from the table or, when it has none, from the resources; empty when those
// have none either.
class EntryName {
  public:
    EntryName(const ACHAR* name, HINSTANCE instance, unsigned resource) : name_(name) {
        if (name_ != nullptr) return;
        LoadStringW(instance, resource, buffer_.data(), kNameSize);
        name_ = buffer_.data();
    }
    EntryName(const EntryName&) = delete;
    EntryName& operator=(const EntryName&) = delete;

    const ACHAR* Text() const { return name_; }

  private:
    std::array<ACHAR, kNameSize> buffer_{};
    const ACHAR* name_;
};

// Calls visit(entry, number) for each LISP function; nulls do not advance the number.
template <class Visit>
void ForEachSymbol(Visit visit) {
    short number = 0;
    for (const ArxAdsSymbol* entry : ArxAdsSymbols()) {
        if (entry != nullptr) visit(*entry, number++);
    }
}

}  // namespace

AcRx::AppRetCode AcRxArxApp::OnInitApp(void* packet) {
    const AcRx::AppRetCode result = AcRxDbxApp::OnInitApp(packet);
    for (const ArxCommand* command : ArxCommands()) {
        if (command == nullptr) continue;
        const EntryName local(command->localName, moduleInstance, command->localNameResource);
        const HINSTANCE resources =
            (command->flags & kNoResourceHandle) != 0 ? nullptr : moduleInstance;
        CommandStack().addCommand(command->groupName, command->globalName, local.Text(),
                                  command->flags, command->function, command->context, -1,
                                  resources, nullptr);
    }
    return result;
}

AcRx::AppRetCode AcRxArxApp::OnUnloadApp(void* packet) {
    const AcRx::AppRetCode result = AcRxDbxApp::OnUnloadApp(packet);
    for (const ArxCommand* command : ArxCommands()) {
        if (command != nullptr) {
            CommandStack().removeCmd(command->groupName, command->globalName);
        }
    }
    return result;
}

AcRx::AppRetCode AcRxArxApp::OnLoadDwg(void* /*packet*/) {
    ForEachSymbol([this](const ArxAdsSymbol& entry, short number) {
        const EntryName name(entry.name, moduleInstance, entry.nameResource);
        acedDefun(name.Text(), number);
        if (entry.registerFunction == 1) acedRegFunc(entry.function, number);
    });
    return AcRx::kRetOK;
}

AcRx::AppRetCode AcRxArxApp::OnUnloadDwg(void* /*packet*/) {
    ForEachSymbol([this](const ArxAdsSymbol& entry, short number) {
        const EntryName name(entry.name, moduleInstance, entry.nameResource);
        acedUndef(name.Text(), number);
    });
    return AcRx::kRetOK;
}

AcRx::AppRetCode AcRxArxApp::OnInvokeSubroutine(void* /*packet*/) {
    const int code = acedGetFunCode();
    ForEachSymbol([code](const ArxAdsSymbol& entry, short number) {
        if (number == code) entry.function();
    });
    return AcRx::kRetOK;
}
