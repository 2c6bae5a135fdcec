// The registry: one call that reads or writes several named values by a format, and calls for whole
// strings and for names.
//
// Root keys are given by name ("HKEY_CURRENT_USER") or as a handle. Texts are wide; only the format
// and the subkey of RegistryAccess are narrow, in the system's code page. Sizes are bytes of the
// registry, two for a character. A null text is the empty text.
//
// Failures are false or the empty text. Only RegistryAccess explains them, and only
// RegistryReadString raises: TamExpNoMem, line 482, L"General/WinUtil".
#pragma once

#include <windows.h>

#include "datastruct/String.h"

namespace TamLib {

// The handle of a root key: "HKEY_LOCAL_MACHINE" or "HKLM", "HKEY_CURRENT_USER" or "HKCU",
// "HKEY_USERS", "HKEY_CURRENT_CONFIG" or "HKCC", "HKEY_DYN_DATA", "HKEY_CLASSES_ROOT", in capitals.
// False for any other name, and `handle` is left alone.
bool RegistryRoot(const wchar_t* name, HKEY& handle);
// The long name of a root key, empty for any other handle.
const wchar_t* RegistryRootName(HKEY handle);

// Reads or writes values of one key as `format` says: "Width=%d Last Path=%s" is the value "Width"
// as a number and the value "Last Path" as a text. "=" is passed over anywhere, blanks before a
// name; a blank within a name belongs to it. Values are done one by one, and what was done before a
// failure stays done. True when all were done.
//
//            write takes             as                 read takes
// - %d       a 32-bit integer        REG_DWORD          a pointer to a 32-bit integer
// - %s       a `const wchar_t*`      REG_SZ             a pointer to a CString
//
// Intended: a text is written with its length in characters as the number of bytes, so that its
// first half arrives ("abcd" leaves "ab"); RegistryWriteString writes whole texts.
//
// A key that cannot be opened for writing is made. An empty format only opens or makes the key.
// `errorText` may be null; otherwise it gets the reason of a false result:
// - "Failed to open registry key '<root>\<subkey>': <system's text> (Error code <code>)"
// - "Registry path '<root>\<subkey>' , key '<value>' <reading or writing> failed - <text>
// (<code>)"
// - "Registry path '<root>\<subkey>' , key '<value>' has different type than expected"
// - "Unknown format specifier '<c>'", also for a "%" at the end; a read finds it only after the
//   value was found.
bool RegistryAccess(bool write, CString* errorText, HKEY rootKey, const char* subkey,
                    const char* format, ...);

// Writes a whole text, without a terminator; makes the key if need be.
bool RegistryWriteString(const wchar_t* rootName, const wchar_t* subkey, const wchar_t* name,
                         const wchar_t* value);

// The value as text: numbers of 32 and of 64 bits in decimal, any other type as the text that its
// bytes are, up to the first zero. Empty on any failure.
StringBase<wchar_t> RegistryReadString(const wchar_t* rootName, const wchar_t* subkey,
                                       const wchar_t* name);

// Whether the value was there and is deleted.
bool RegistryDeleteValue(const wchar_t* rootName, const wchar_t* subkey, const wchar_t* name);

// Appends the names of the keys (values) that stand directly under a key, in the system's order.
// False when the key cannot be read, and `names` is left alone; a name that cannot be read is
// passed over.
bool RegistryKeyNames(const wchar_t* rootName, const wchar_t* subkey,
                      Array<StringBase<wchar_t>>& names);
bool RegistryValueNames(const wchar_t* rootName, const wchar_t* subkey,
                        Array<StringBase<wchar_t>>& names);

}  // namespace TamLib
