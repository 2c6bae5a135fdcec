// Walking a folder and those below it.
#pragma once

#include <windows.h>

#include "datastruct/String.h"

namespace TamLib {

// The full paths of the files in `directory` whose names match `pattern` ("*" and "?" as the
// system has them), in the order that the system gives. With `withDirectories` matching folders
// are listed too. With `recurse` the folders below are walked as well, level by level: all finds
// of a folder come before those of the folders in it. A folder is walked whether or not it matches
// the pattern; "." and ".." are neither listed nor walked. A folder that is missing or cannot be
// read adds nothing.
//
// `newestTime` may be null; otherwise it gets the latest time of change of what is listed, and
// stays untouched when nothing is.
//
// The result has increment and capacity 10 at first. Raises only TamExpNoMem.
Array<StringBase<wchar_t>> ListFiles(const StringBase<wchar_t>& directory,
                                     const StringBase<wchar_t>& pattern, bool withDirectories,
                                     bool recurse, FILETIME* newestTime = nullptr);

}  // namespace TamLib
