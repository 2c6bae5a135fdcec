// AcRxClass: the descriptor of a class at run time, and the making, linking and deleting of
// descriptors.
#pragma once

#include <rxobject.h>

using AppNameChangeFuncPtr = void (*)(const AcRxClass* classObj, ACHAR*& newAppName, int saveVer);

class AcRxClass : public AcRxObject {
  public:
    static AcRxClass* desc();
    static AcRxClass* cast(const AcRxObject* object);
    AcRxClass* isA() const override;

    // "AcDbText"; the text belongs to the descriptor.
    const ACHAR* name() const { return m_name; }
    // The record name in a drawing ("TEXT"), or null for a class that drawings don't hold.
    const ACHAR* dxfName() const { return m_dxfName; }
    // The application that the class came with, or null.
    const ACHAR* appName() const { return m_appName; }

    // The class that this one derives from directly; null for the root. A descriptor made by name
    // only knows its parent after acrxBuildClassHierarchy.
    AcRxClass* myParent() const { return m_parent; }
    // True for the class itself and for every class above it; false for null.
    bool isDerivedFrom(const AcRxClass* other) const;

    // A new object of the class, owned by the caller; null for a class without objects of its own.
    AcRxObject* create() const;

  private:
    friend AcRxClass* newAcRxClass(const ACHAR* name, const ACHAR* parentName, int proxyFlags,
                                   AcRxObject* (*make)(), const ACHAR* dxfName,
                                   const ACHAR* appName);
    friend void acrxBuildClassHierarchy();
    friend void deleteAcRxClass(AcRxClass* classObj);

    AcRxClass(const ACHAR* name, const ACHAR* parentName, AcRxObject* (*make)(),
              const ACHAR* dxfName, const ACHAR* appName);
    ~AcRxClass() override;

    ACHAR* m_name;
    ACHAR* m_parentName;
    ACHAR* m_dxfName;
    ACHAR* m_appName;
    AcRxObject* (*m_make)();
    AcRxClass* m_parent;
};

// A descriptor under `name`, entered into "ClassDictionary"; a name that is already there gives the
// descriptor that is there. All texts are copied; `make`, `dxfName` and `appName` may be null. The
// parent is found by its name, at once when it is known and otherwise by acrxBuildClassHierarchy.
AcRxClass* newAcRxClass(const ACHAR* name, const ACHAR* parentName, int proxyFlags = 0,
                        AcRxObject* (*make)() = nullptr, const ACHAR* dxfName = nullptr,
                        const ACHAR* appName = nullptr);

// Links every descriptor to its parent. Called after a module's classes are initialised.
void acrxBuildClassHierarchy();

// Takes the descriptor out of "ClassDictionary" and frees it. Null, a class of the host's own, or a
// class from which another still derives is left alone.
void deleteAcRxClass(AcRxClass* classObj);
