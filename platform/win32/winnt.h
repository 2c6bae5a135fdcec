// Structured exceptions as the system hands them to a translator or a filter. Nothing here raises
// one; who needs one fills the records by hand.
#pragma once

#include "windef.h"

#define EXCEPTION_MAXIMUM_PARAMETERS 15
#define EXCEPTION_ACCESS_VIOLATION (static_cast<DWORD>(0xC0000005u))
#define EXCEPTION_STACK_OVERFLOW (static_cast<DWORD>(0xC00000FDu))

// The state of the processor; never looked into.
struct CONTEXT;

struct EXCEPTION_RECORD {
    DWORD ExceptionCode;
    DWORD ExceptionFlags;
    EXCEPTION_RECORD* ExceptionRecord;
    PVOID ExceptionAddress;
    DWORD NumberParameters;
    ULONG_PTR ExceptionInformation[EXCEPTION_MAXIMUM_PARAMETERS];
};

struct _EXCEPTION_POINTERS {
    EXCEPTION_RECORD* ExceptionRecord;
    CONTEXT* ContextRecord;
};
using EXCEPTION_POINTERS = _EXCEPTION_POINTERS;
