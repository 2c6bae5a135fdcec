// The system calls that do not need a window.
#pragma once

#include "windef.h"

#define ERROR_SUCCESS 0u
#define ERROR_FILE_NOT_FOUND 2u
#define ERROR_PATH_NOT_FOUND 3u
#define ERROR_TOO_MANY_OPEN_FILES 4u
#define ERROR_ACCESS_DENIED 5u
#define ERROR_INVALID_HANDLE 6u
#define ERROR_NOT_ENOUGH_MEMORY 8u
#define ERROR_INVALID_DATA 13u
#define ERROR_OUTOFMEMORY 14u
#define ERROR_NO_MORE_FILES 18u
#define ERROR_GEN_FAILURE 31u
#define ERROR_SHARING_VIOLATION 32u
#define ERROR_FILE_EXISTS 80u
#define ERROR_INVALID_PARAMETER 87u
#define ERROR_DISK_FULL 112u
#define ERROR_INSUFFICIENT_BUFFER 122u
#define ERROR_INVALID_NAME 123u
#define ERROR_MOD_NOT_FOUND 126u
#define ERROR_PROC_NOT_FOUND 127u
#define ERROR_DIR_NOT_EMPTY 145u
#define ERROR_ALREADY_EXISTS 183u
#define ERROR_FILENAME_EXCED_RANGE 206u
#define ERROR_MORE_DATA 234u
#define ERROR_NO_MORE_ITEMS 259u
#define ERROR_MR_MID_NOT_FOUND 317u
#define ERROR_BADDB 1009u
#define ERROR_KEY_DELETED 1018u
#define ERROR_INVALID_WINDOW_HANDLE 1400u
#define ERROR_CANNOT_FIND_WND_CLASS 1407u
#define ERROR_CLIPBOARD_NOT_OPEN 1418u
#define ERROR_RESOURCE_TYPE_NOT_FOUND 1813u

// The last error of the calling thread; 0 at its start.
DWORD GetLastError();
void SetLastError(DWORD code);

#define FORMAT_MESSAGE_ALLOCATE_BUFFER 0x100u
#define FORMAT_MESSAGE_IGNORE_INSERTS 0x200u
#define FORMAT_MESSAGE_FROM_SYSTEM 0x1000u

// The English text of an error of the system, ended by "\r\n". With the flag for allocating,
// `buffer` is the address of a pointer that takes a block to be freed by LocalFree. Only the
// system's table (FORMAT_MESSAGE_FROM_SYSTEM) is known. Returns the number of characters; 0 when
// the code is unknown (last error 317) or the buffer is too small (122), and a pointer to be
// filled is null then.
DWORD FormatMessageW(DWORD flags, LPCVOID source, DWORD code, DWORD language, LPWSTR buffer,
                     DWORD size, void* arguments);

#define LMEM_FIXED 0x0u
#define LMEM_MOVEABLE 0x2u
#define LMEM_ZEROINIT 0x40u

// A block of memory; zeroed when LMEM_ZEROINIT is set. Null when there is none.
HLOCAL LocalAlloc(UINT flags, SIZE_T bytes);
// Frees the block and gives null; null is allowed.
HLOCAL LocalFree(HLOCAL block);
LPVOID LocalLock(HLOCAL block);
BOOL LocalUnlock(HLOCAL block);

struct MEMORYSTATUS {
    DWORD dwLength;
    DWORD dwMemoryLoad;  // percent in use
    SIZE_T dwTotalPhys;  // this and the following in bytes
    SIZE_T dwAvailPhys;
    SIZE_T dwTotalPageFile;
    SIZE_T dwAvailPageFile;
    SIZE_T dwTotalVirtual;
    SIZE_T dwAvailVirtual;
};

// The memory of the machine and of this process, from /proc; figures that cannot be read are 0.
void GlobalMemoryStatus(MEMORYSTATUS* status);

// Text for a debugger. It goes to the record of `Headless.h`.
void OutputDebugStringW(LPCWSTR text);

#define DLL_PROCESS_DETACH 0u
#define DLL_PROCESS_ATTACH 1u
#define DLL_THREAD_ATTACH 2u
#define DLL_THREAD_DETACH 3u

#define GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT 0x2u
#define GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS 0x4u

// The module that an address lies in: its place in memory. Only the form with both flags is known;
// any other, and an address of no module, gives FALSE (last error 87 or 126) and null.
BOOL GetModuleHandleExW(DWORD flags, LPCWSTR addressOrName, HMODULE* module);
