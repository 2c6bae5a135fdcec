// The process, its modules, and functions looked up by name.
#pragma once

#include "windef.h"

using FARPROC = INT_PTR (*)();

// A handle that stands for the own process; it is not closed.
HANDLE GetCurrentProcess();
DWORD GetCurrentProcessId();
DWORD GetCurrentThreadId();
// The number of a process; 0 (last error 6) for anything but the own one.
DWORD GetProcessId(HANDLE process);

// The program itself for null; "kernel32.dll" and "ntdll.dll", which only GetProcAddress can be
// asked about. Null (last error 126) for any other name.
HMODULE GetModuleHandleW(LPCWSTR name);
// A function of one of the two: "GetProcessId" of kernel32.dll, "NtQueryInformationProcess" of
// ntdll.dll. Null (last error 127) for any other.
FARPROC GetProcAddress(HMODULE module, LPCSTR name);

// The file of a module, null for the program. Returns its length; a path that does not fit is cut
// to `size` - 1 characters and gives `size` (last error 122); 0 for what is no module.
DWORD GetModuleFileNameW(HMODULE module, LPWSTR buffer, DWORD size);

struct MEMORY_BASIC_INFORMATION {
    PVOID BaseAddress;
    PVOID AllocationBase;
    DWORD AllocationProtect;
    WORD PartitionId;
    SIZE_T RegionSize;
    DWORD State;
    DWORD Protect;
    DWORD Type;
};
// The page that an address of a module lies in, and where the module begins. Only these two are
// filled. 0 (last error 87) for an address of no module, otherwise the size of the record.
SIZE_T VirtualQuery(LPCVOID address, MEMORY_BASIC_INFORMATION* information, SIZE_T size);
