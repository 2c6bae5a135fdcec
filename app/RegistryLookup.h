// Finding the host's services by name.
#pragma once

#include <rxclass.h>
#include <rxdict.h>

// The object under `key` of the host's registry if it is a `Service` or derives from it, else null.
// Intended: a missing key is not tested for; a host without its own services cannot load a module.
template <class Service>
Service* FromRegistry(const ACHAR* key) {
    AcRxObject* const object = acrxSysRegistry()->at(key);
    return object->isA()->isDerivedFrom(Service::desc()) ? static_cast<Service*>(object) : nullptr;
}
