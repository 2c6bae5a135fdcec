#include "host/database/RunTimeClasses.h"

#include <acutmem.h>
#include <rxclass.h>
#include <rxdict.h>
#include <rxnames.h>

#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <map>
#include <utility>

#include "host/database/Fault.h"
#include "host/database/HostClasses.h"
#include "host/database/Names.h"

namespace {

using host::database::folded;

class NamedObjects : public AcRxDictionary {
  public:
    AcRxObject* at(const ACHAR* key) const override {
        if (key == nullptr) return nullptr;
        const auto found = objects_.find(folded(key));
        return found == objects_.end() ? nullptr : found->second;
    }
    AcRxObject* atPut(const ACHAR* key, AcRxObject* object) override {
        if (key == nullptr) return nullptr;
        AcRxObject*& place = objects_[folded(key)];
        return std::exchange(place, object);
    }
    AcRxObject* remove(const ACHAR* key) override {
        if (key == nullptr) return nullptr;
        const auto found = objects_.find(folded(key));
        if (found == objects_.end()) return nullptr;
        AcRxObject* object = found->second;
        objects_.erase(found);
        return object;
    }
    bool has(const ACHAR* key) const override { return at(key) != nullptr; }
    Adesk::UInt32 numEntries() const override {
        return static_cast<Adesk::UInt32>(objects_.size());
    }
    const std::map<std::wstring, AcRxObject*>& entries() const { return objects_; }

  private:
    std::map<std::wstring, AcRxObject*> objects_;
};

// Made on first use and never destroyed: descriptors are asked for until the process ends.
NamedObjects& classDictionary() {
    static auto* const dictionary = new NamedObjects;
    return *dictionary;
}

NamedObjects& registry() {
    static auto* const dictionary = [] {
        auto* made = new NamedObjects;
        made->atPut(ACRX_CLASS_DICTIONARY, &classDictionary());
        return made;
    }();
    return *dictionary;
}

AcRxClass* classNamed(const ACHAR* name) {
    return static_cast<AcRxClass*>(classDictionary().at(name));
}

std::vector<std::wstring>& hierarchyRecord() {
    static std::vector<std::wstring> record;
    return record;
}

ACHAR* copied(const ACHAR* text) {
    ACHAR* copy = nullptr;
    const host::fault::Quiet quiet;
    acutNewString(text, copy);
    return copy;
}

// The host's own classes are entered when it is loaded; what comes later is a module's.
bool hostClassesEntered = false;

bool isHostClass(const AcRxClass* aClass) {
    static auto* const hostClasses = [] {
        auto* all = new std::map<const AcRxObject*, bool>;
        for (const auto& [name, object] : classDictionary().entries()) (*all)[object] = true;
        return all;
    }();
    return hostClasses->count(aClass) != 0;
}

[[maybe_unused]] const bool entered = [] {
    AcRxObject::desc();
    AcRxClass::desc();
    AcRxDictionary::desc();
    host::database::enterHostClasses();
    isHostClass(nullptr);
    return hostClassesEntered = true;
}();

}  // namespace

namespace host::database {

const std::vector<std::wstring>& classHierarchyRecord() {
    return hierarchyRecord();
}

void clearClassHierarchyRecord() {
    hierarchyRecord().clear();
}

}  // namespace host::database

AcRxClass* AcRxObject::desc() {
    static AcRxClass* const descriptor = newAcRxClass(ACRX_T("AcRxObject"), nullptr);
    return descriptor;
}

AcRxClass* AcRxObject::isA() const {
    return desc();
}

bool AcRxObject::isKindOf(const AcRxClass* aClass) const {
    return isA()->isDerivedFrom(aClass);
}

AcRxClass::AcRxClass(const ACHAR* name, const ACHAR* parentName, AcRxObject* (*make)(),
                     const ACHAR* dxfName, const ACHAR* appName)
    : m_name(copied(name)),
      m_parentName(copied(parentName)),
      m_dxfName(copied(dxfName)),
      m_appName(copied(appName)),
      m_make(make),
      m_parent(parentName == nullptr ? nullptr : classNamed(parentName)) {}

AcRxClass::~AcRxClass() {
    for (ACHAR** text : {&m_name, &m_parentName, &m_dxfName, &m_appName}) acutDelString(*text);
}

AcRxClass* AcRxClass::desc() {
    static AcRxClass* const descriptor = newAcRxClass(ACRX_T("AcRxClass"), ACRX_T("AcRxObject"));
    return descriptor;
}

AcRxClass* AcRxClass::cast(const AcRxObject* object) {
    if (object == nullptr || !object->isKindOf(desc())) return nullptr;
    return const_cast<AcRxClass*>(static_cast<const AcRxClass*>(object));
}

AcRxClass* AcRxClass::isA() const {
    return desc();
}

bool AcRxClass::isDerivedFrom(const AcRxClass* other) const {
    if (other == nullptr) return false;
    for (const AcRxClass* aClass = this; aClass != nullptr; aClass = aClass->m_parent) {
        if (aClass == other) return true;
    }
    return false;
}

AcRxObject* AcRxClass::create() const {
    HOST_CALL("AcRxClass::create");
    return m_make == nullptr ? nullptr : m_make();
}

AcRxClass* newAcRxClass(const ACHAR* name, const ACHAR* parentName, int /*proxyFlags*/,
                        AcRxObject* (*make)(), const ACHAR* dxfName, const ACHAR* appName) {
    if (name == nullptr) return nullptr;
    if (AcRxClass* known = classNamed(name)) return known;
    auto* made = new AcRxClass(name, parentName, make, dxfName, appName);
    classDictionary().atPut(name, made);
    return made;
}

void acrxBuildClassHierarchy() {
    hierarchyRecord().emplace_back(L"build");
    for (const auto& [name, object] : classDictionary().entries()) {
        auto* aClass = static_cast<AcRxClass*>(object);
        if (aClass->m_parent == nullptr && aClass->m_parentName != nullptr) {
            aClass->m_parent = classNamed(aClass->m_parentName);
        }
    }
}

void deleteAcRxClass(AcRxClass* classObj) {
    if (classObj == nullptr) return;
    hierarchyRecord().push_back(std::wstring(L"delete ") + classObj->m_name);
    if (hostClassesEntered && isHostClass(classObj)) return;
    for (const auto& [name, object] : classDictionary().entries()) {
        if (static_cast<AcRxClass*>(object)->m_parent == classObj) return;
    }
    classDictionary().remove(classObj->m_name);
    delete classObj;
}

AcRxClass* AcRxDictionary::desc() {
    static AcRxClass* const descriptor =
        newAcRxClass(ACRX_T("AcRxDictionary"), ACRX_T("AcRxObject"));
    return descriptor;
}

AcRxDictionary* AcRxDictionary::cast(const AcRxObject* object) {
    if (object == nullptr || !object->isKindOf(desc())) return nullptr;
    return const_cast<AcRxDictionary*>(static_cast<const AcRxDictionary*>(object));
}

AcRxClass* AcRxDictionary::isA() const {
    return desc();
}

AcRxDictionary* acrxSysRegistry() {
    return &registry();
}

Acad::ErrorStatus acutNewString(const ACHAR* source, ACHAR*& target) {
    target = nullptr;
    HOST_CALL("acutNewString");
    if (source == nullptr) return Acad::eOk;
    const std::size_t size = std::wcslen(source) + 1;
    target = static_cast<ACHAR*>(std::malloc(size * sizeof(ACHAR)));
    if (target == nullptr) return Acad::eOutOfMemory;
    std::memcpy(target, source, size * sizeof(ACHAR));
    return Acad::eOk;
}

void acutDelString(ACHAR*& text) {
    std::free(text);
    text = nullptr;
}
