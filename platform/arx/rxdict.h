// AcRxDictionary: objects of the running host by name. Names are kept as given and found ignoring
// case.
#pragma once

#include <rxobject.h>

class AcRxDictionary : public AcRxObject {
  public:
    static AcRxClass* desc();
    static AcRxDictionary* cast(const AcRxObject* object);
    AcRxClass* isA() const override;

    // The object under `key`, or null for a null or unknown key.
    virtual AcRxObject* at(const ACHAR* key) const = 0;
    // Puts `object` under `key` and returns what stood there before, or null. The dictionary owns
    // nothing.
    virtual AcRxObject* atPut(const ACHAR* key, AcRxObject* object) = 0;
    // Takes the entry away and returns its object, or null when there is none.
    virtual AcRxObject* remove(const ACHAR* key) = 0;
    virtual bool has(const ACHAR* key) const = 0;
    virtual Adesk::UInt32 numEntries() const = 0;
};

// The host's registry. Keys: "ClassDictionary" (AcRxClass by class name), "DynamicLinker",
// "ACAD_REGISTERED_COMMANDS".
AcRxDictionary* acrxSysRegistry();
