// Names between the two systems, for the sources of this folder: Windows paths in wide text against
// names on disk in UTF-8, and error numbers of POSIX against codes of Windows.
#pragma once

#include <string>

#include "windef.h"

namespace posix {

// The name on disk of a path; "\" separates as "/" does. U+DC80 to U+DCFF stand for single bytes
// that are no UTF-8. False when a character cannot be coded. Null is the empty path.
bool NativePath(const wchar_t* path, std::string& name);

// The wide text of a name on disk; bytes that are no UTF-8 become U+DC80 to U+DCFF.
std::wstring WideName(const std::string& name);

// WideName with "\" for "/", as the system gives whole paths out.
std::wstring WindowsPath(const std::string& name);

// The capital of a letter for comparing names as the file system and the registry do.
wchar_t FoldName(wchar_t c);
std::wstring FoldName(std::wstring name);

// The code of Windows for an `errno`.
DWORD SystemError(int error);

}  // namespace posix
