// The members that give a class its run-time identity: declared in the class by
// ACRX_DECLARE_MEMBERS, defined in one source by one of the *_DEFINE_MEMBERS.
#pragma once

#include <rxclass.h>

#define ACRX_DECLARE_MEMBERS(CLASS_NAME)                                             \
    AcRxClass* isA() const override;                                                 \
    static AcRxClass* gpDesc;                                                        \
    static AcRxClass* desc();                                                        \
    static CLASS_NAME* cast(const AcRxObject* inPtr) {                               \
        return inPtr == nullptr || !inPtr->isKindOf(desc())                          \
                   ? nullptr                                                         \
                   : const_cast<CLASS_NAME*>(static_cast<const CLASS_NAME*>(inPtr)); \
    }                                                                                \
    static void rxInit()

#define ACRX_DEFINE_MEMBERS_OF(CLASS_NAME, PARENT_CLASS, MAKE, DXF_NAME, APP)                      \
    AcRxClass* CLASS_NAME::gpDesc = nullptr;                                                       \
    void CLASS_NAME::rxInit() {                                                                    \
        if (gpDesc != nullptr) return;                                                             \
        PARENT_CLASS::desc();                                                                      \
        gpDesc = newAcRxClass(ACRX_T(#CLASS_NAME), ACRX_T(#PARENT_CLASS), 0, MAKE, DXF_NAME, APP); \
    }                                                                                              \
    AcRxClass* CLASS_NAME::desc() {                                                                \
        if (gpDesc == nullptr) rxInit();                                                           \
        return gpDesc;                                                                             \
    }                                                                                              \
    AcRxClass* CLASS_NAME::isA() const {                                                           \
        return CLASS_NAME::desc();                                                                 \
    }

// A class without objects of its own.
#define ACRX_NO_CONS_DEFINE_MEMBERS(CLASS_NAME, PARENT_CLASS) \
    ACRX_DEFINE_MEMBERS_OF(CLASS_NAME, PARENT_CLASS, nullptr, nullptr, nullptr)

// A class whose objects drawings don't hold.
#define ACRX_CONS_DEFINE_MEMBERS(CLASS_NAME, PARENT_CLASS, VERNO)                          \
    ACRX_DEFINE_MEMBERS_OF(                                                                \
        CLASS_NAME, PARENT_CLASS, []() -> AcRxObject* { return new CLASS_NAME; }, nullptr, \
        nullptr)

// A class that drawings hold under DXF_NAME (an identifier, not a text).
#define ACRX_DXF_DEFINE_MEMBERS(CLASS_NAME, PARENT_CLASS, DWG_VERSION, MAINTENANCE_VERSION, \
                                PROXY_FLAGS, DXF_NAME, APP)                                 \
    ACRX_DEFINE_MEMBERS_OF(                                                                 \
        CLASS_NAME, PARENT_CLASS, []() -> AcRxObject* { return new CLASS_NAME; },           \
        ACRX_T(#DXF_NAME), ACRX_T(#APP))
