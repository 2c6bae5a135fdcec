#include "SubstituteHost.h"

#include <acutads.h>
#include <afxwin.h>

#include <cstdarg>

namespace substitute {

Acad::ErrorStatus commandStatus = Acad::eOk;
int functionCode = 0;
CMDIFrameWnd* frame = nullptr;
ArxCustomClassTable customClasses{};
ArxCommandTable commands{};
ArxAdsSymbolTable adsSymbols{};

std::vector<std::string>& Journal() {
    static std::vector<std::string> journal;
    return journal;
}

void Note(const std::string& call) {
    Journal().push_back(call);
}

void* Packet(std::uintptr_t number) {
    return reinterpret_cast<void*>(number);
}

std::vector<AddedCommand>& AddedCommands() {
    static std::vector<AddedCommand> added;
    return added;
}

AcRxClass* MakeClass(const std::wstring& name, const std::wstring& parent) {
    AcRxObject::desc();
    return newAcRxClass(name.c_str(), parent.c_str());
}

void Reset() {
    Journal().clear();
    AddedCommands().clear();
    commandStatus = Acad::eOk;
    functionCode = 0;
    frame = nullptr;
    customClasses = {};
    commands = {};
    adsSymbols = {};
}

namespace {

std::string Narrow(const ACHAR* text) {
    if (text == nullptr) return "(null)";
    std::string narrow;
    for (; *text != L'\0'; ++text) narrow += static_cast<char>(*text);
    return narrow;
}

std::string Number(const void* pointer) {
    return std::to_string(reinterpret_cast<std::uintptr_t>(pointer));
}

class Linker : public AcRxDynamicLinker {
  public:
    bool loadModule(const ACHAR*, bool, bool) override { return false; }
    bool unloadModule(const ACHAR*, bool) override { return false; }
    bool unlockApplication(void* packet) const override {
        Note("unlockApplication " + Number(packet));
        return false;
    }
    bool lockApplication(void*) const override { return false; }
    bool isApplicationLocked(const ACHAR*) const override { return false; }
    bool registerAppMDIAware(void* packet) const override {
        Note("registerAppMDIAware " + Number(packet));
        return false;
    }
    bool registerAppNotMDIAware(void*) const override { return false; }
    bool isAppMDIAware(const ACHAR*) const override { return false; }
};

class CommandStack : public AcEdCommandStack {
  public:
    Acad::ErrorStatus addCommand(const ACHAR* group, const ACHAR* globalName,
                                 const ACHAR* localName, Adesk::Int32 flags,
                                 AcRxFunctionPtr function, AcEdUIContext* context, int fcode,
                                 void* resources, AcEdCommand** result) override {
        Note("addCommand " + Narrow(globalName));
        AddedCommands().push_back(
            {group, globalName, localName, flags, function, context, fcode, resources, result});
        return commandStatus;
    }
    Acad::ErrorStatus removeCmd(const ACHAR* group, const ACHAR* globalName) override {
        Note("removeCmd " + Narrow(group) + " " + Narrow(globalName));
        return commandStatus;
    }
    Acad::ErrorStatus removeGroup(const ACHAR*) override { return commandStatus; }
    AcEdCommand* lookupCmd(const ACHAR*, bool) const override { return nullptr; }
    AcEdCommand* lookupCmd(const ACHAR*, const ACHAR*, bool) const override { return nullptr; }
};

class Registry : public AcRxDictionary {
  public:
    AcRxObject* at(const ACHAR* key) const override {
        static Linker linker;
        static CommandStack stack;
        if (std::wstring(key) == L"DynamicLinker") return &linker;
        if (std::wstring(key) == L"ACAD_REGISTERED_COMMANDS") return &stack;
        return nullptr;
    }
    AcRxObject* atPut(const ACHAR*, AcRxObject*) override { return nullptr; }
    AcRxObject* remove(const ACHAR*) override { return nullptr; }
    bool has(const ACHAR*) const override { return false; }
    Adesk::UInt32 numEntries() const override { return 2; }
};

// The descriptors that the program makes; they live until it ends.
std::vector<AcRxClass*>& Classes() {
    static auto* const classes = new std::vector<AcRxClass*>;
    return *classes;
}

}  // namespace
}  // namespace substitute

using substitute::Note;

AcRxDictionary* acrxSysRegistry() {
    static substitute::Registry registry;
    return &registry;
}

// The run-time classes: descriptors by name, each with its parent from the start.

AcRxClass* newAcRxClass(const ACHAR* name, const ACHAR* parentName, int /*proxyFlags*/,
                        AcRxObject* (*make)(), const ACHAR* dxfName, const ACHAR* appName) {
    auto* const made = new AcRxClass(name, parentName, make, dxfName, appName);
    substitute::Classes().push_back(made);
    return made;
}

AcRxClass::AcRxClass(const ACHAR* name, const ACHAR* parentName, AcRxObject* (*make)(),
                     const ACHAR* /*dxfName*/, const ACHAR* /*appName*/)
    : m_name(new ACHAR[std::wstring(name).size() + 1]),
      m_parentName(nullptr),
      m_dxfName(nullptr),
      m_appName(nullptr),
      m_make(make),
      m_parent(nullptr) {
    std::wstring(name).copy(m_name, std::wstring(name).size());
    m_name[std::wstring(name).size()] = L'\0';
    for (AcRxClass* known : substitute::Classes()) {
        if (parentName != nullptr && std::wstring(known->name()) == parentName) m_parent = known;
    }
}

AcRxClass::~AcRxClass() {
    delete[] m_name;
}

AcRxClass* AcRxClass::desc() {
    static AcRxClass* const descriptor = newAcRxClass(L"AcRxClass", nullptr);
    return descriptor;
}

AcRxClass* AcRxClass::isA() const {
    return desc();
}

bool AcRxClass::isDerivedFrom(const AcRxClass* other) const {
    for (const AcRxClass* current = this; current != nullptr; current = current->m_parent) {
        if (current == other) return true;
    }
    return false;
}

AcRxClass* AcRxObject::desc() {
    static AcRxClass* const descriptor = newAcRxClass(L"AcRxObject", nullptr);
    return descriptor;
}

AcRxClass* AcRxObject::isA() const {
    return desc();
}

bool AcRxObject::isKindOf(const AcRxClass* aClass) const {
    return isA()->isDerivedFrom(aClass);
}

AcRxClass* AcRxDictionary::desc() {
    static AcRxClass* const descriptor = newAcRxClass(L"AcRxDictionary", L"AcRxObject");
    return descriptor;
}

AcRxClass* AcRxDictionary::isA() const {
    return desc();
}

ACRX_NO_CONS_DEFINE_MEMBERS(AcRxDynamicLinker, AcRxObject)
ACRX_NO_CONS_DEFINE_MEMBERS(AcEdCommandStack, AcRxObject)

void acrxBuildClassHierarchy() {
    Note("acrxBuildClassHierarchy");
}

void deleteAcRxClass(AcRxClass* classObj) {
    Note("deleteAcRxClass " + substitute::Narrow(classObj->name()));
}

// Functions for LISP.

int acedDefun(const ACHAR* name, short code) {
    Note("acedDefun " + substitute::Narrow(name) + " " + std::to_string(code));
    return RTERROR;
}

int acedUndef(const ACHAR* name, short code) {
    Note("acedUndef " + substitute::Narrow(name) + " " + std::to_string(code));
    return RTERROR;
}

int acedRegFunc(int (*function)(), int code) {
    Note("acedRegFunc " + std::to_string(code));
    return function != nullptr ? RTERROR : RTNORM;
}

int acedGetFunCode() {
    Note("acedGetFunCode");
    return substitute::functionCode;
}

// The command line.

int acutPrintf(const ACHAR* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    Note("acutPrintf " + substitute::Narrow(va_arg(arguments, const ACHAR*)));
    va_end(arguments);
    return RTNORM;
}

// The window and the interface library.

CMDIFrameWnd* acedGetAcadFrame() {
    Note("acedGetAcadFrame");
    return substitute::frame;
}

void InitAcUiDLL() {
    Note("InitAcUiDLL");
}

const ArxCustomClassTable& ArxCustomClasses() {
    return substitute::customClasses;
}

const ArxCommandTable& ArxCommands() {
    return substitute::commands;
}

const ArxAdsSymbolTable& ArxAdsSymbols() {
    return substitute::adsSymbols;
}
