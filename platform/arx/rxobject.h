// AcRxObject: the root of everything that knows its class at run time.
#pragma once

#include <acadstrc.h>
#include <adesk.h>

class AcRxClass;

class AcRxObject {
  public:
    virtual ~AcRxObject() = default;

    // The descriptor of this very class; its address is the same in every module of the process.
    static AcRxClass* desc();
    // `object` itself, never null-checked further: every object is of this class.
    static AcRxObject* cast(const AcRxObject* object) { return const_cast<AcRxObject*>(object); }

    // The descriptor of the object's own class. Exact identity is `isA() == X::desc()`.
    virtual AcRxClass* isA() const;
    // True when the object's class is `aClass` or derives from it; false for null.
    bool isKindOf(const AcRxClass* aClass) const;

    AcRxObject(const AcRxObject&) = delete;
    AcRxObject& operator=(const AcRxObject&) = delete;

  protected:
    AcRxObject() = default;
};
