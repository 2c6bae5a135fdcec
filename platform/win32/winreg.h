// The registry, kept in a file of the user's (see `HeadlessSystem.h`). Names ignore case and keep
// the case they were made with. Keys come ordered by name, values as they were made.
//
// Sizes of data are bytes of UTF-16, as the values are kept. Of the text types (REG_SZ,
// REG_EXPAND_SZ, REG_MULTI_SZ) a caller hands over and gets wide characters of this system, one for
// each two bytes: a buffer of n bytes is one of (n + 1) / 2 characters. All other types are plain
// bytes.
//
// A change is read by every process at once and is whole or not made: the file is replaced by a
// new one, under a lock. A file that cannot be understood is left alone, and every call answers
// 1009.
#pragma once

#include "windef.h"

using LSTATUS = LONG;
using REGSAM = DWORD;
using PHKEY = HKEY*;

#define HKEY_CLASSES_ROOT \
    (reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(static_cast<LONG>(0x80000000u))))
#define HKEY_CURRENT_USER \
    (reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(static_cast<LONG>(0x80000001u))))
#define HKEY_LOCAL_MACHINE \
    (reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(static_cast<LONG>(0x80000002u))))
#define HKEY_USERS (reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(static_cast<LONG>(0x80000003u))))
#define HKEY_CURRENT_CONFIG \
    (reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(static_cast<LONG>(0x80000005u))))
#define HKEY_DYN_DATA \
    (reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(static_cast<LONG>(0x80000006u))))

#define REG_NONE 0u
#define REG_SZ 1u
#define REG_EXPAND_SZ 2u
#define REG_BINARY 3u
#define REG_DWORD 4u
#define REG_MULTI_SZ 7u
#define REG_QWORD 11u

#define KEY_QUERY_VALUE 0x1u
#define KEY_SET_VALUE 0x2u
#define KEY_CREATE_SUB_KEY 0x4u
#define KEY_ENUMERATE_SUB_KEYS 0x8u
#define KEY_READ 0x20019u
#define KEY_ALL_ACCESS 0xF003Fu
#define REG_OPTION_NON_VOLATILE 0u

// Every function gives 0 or the code of the failure: 2 for what is not there, 5 for what the
// handle's access does not allow or cannot be written, 6 for no handle, 87 for a name that is too
// long (a key's 255 characters, a value's 16383).

// Opens a key below another; the key itself for a null or empty `subkey`. HKEY_DYN_DATA never
// opens.
LSTATUS RegOpenKeyExW(HKEY key, LPCWSTR subkey, DWORD options, REGSAM access, PHKEY result);
// Opens a key, making it and those on the way if need be. What the machine tells about itself
// (HKEY_LOCAL_MACHINE\HARDWARE) is refused.
LSTATUS RegCreateKeyExW(HKEY key, LPCWSTR subkey, DWORD reserved, LPWSTR keyClass, DWORD options,
                        REGSAM access, const struct SECURITY_ATTRIBUTES* security, PHKEY result,
                        LPDWORD disposition);
// The same with every access.
LSTATUS RegCreateKeyW(HKEY key, LPCWSTR subkey, PHKEY result);
LSTATUS RegCloseKey(HKEY key);

// Stores `size` bytes; a null name is the key's default value. A terminator that stands right
// behind the text is stored too.
LSTATUS RegSetValueExW(HKEY key, LPCWSTR name, DWORD reserved, DWORD type, const BYTE* data,
                       DWORD size);
// Type and data of a value. With too small a buffer 234, and `size` is the size it needs; with a
// null buffer 0.
LSTATUS RegQueryValueExW(HKEY key, LPCWSTR name, LPDWORD reserved, LPDWORD type, LPBYTE data,
                         LPDWORD size);
LSTATUS RegDeleteValueW(HKEY key, LPCWSTR name);
// Deletes a key below another with all that is in it.
LSTATUS RegDeleteTreeW(HKEY key, LPCWSTR subkey);

// Numbers of keys and values, the length of the longest name of each without terminator, and the
// size of the largest data. Any pointer may be null.
LSTATUS RegQueryInfoKeyW(HKEY key, LPWSTR keyClass, LPDWORD classSize, LPDWORD reserved,
                         LPDWORD keys, LPDWORD longestKey, LPDWORD longestClass, LPDWORD values,
                         LPDWORD longestValue, LPDWORD largestData, LPDWORD securitySize,
                         FILETIME* written);
// The name at an index. `size` is the room with a terminator, and then the length without; 234
// when it is too small, 259 behind the last.
LSTATUS RegEnumKeyExW(HKEY key, DWORD index, LPWSTR name, LPDWORD size, LPDWORD reserved,
                      LPWSTR keyClass, LPDWORD classSize, FILETIME* written);
// The same of a value; its data are not given here.
LSTATUS RegEnumValueW(HKEY key, DWORD index, LPWSTR name, LPDWORD size, LPDWORD reserved,
                      LPDWORD type, LPBYTE data, LPDWORD dataSize);
