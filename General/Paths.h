// Names and paths: where the program and this module lie, pieces of a path, relative paths.
//
// Paths are wide texts. Nothing here looks at the disk but ProgramPath and ModulePath, and nothing
// raises but a string's TamExpNoMem. A null text is the empty text.
#pragma once

#include "datastruct/String.h"

namespace TamLib {

// Whether the character ends a piece of a path: "/", "\" or, intended, the colon of a drive.
constexpr bool IsPathSeparator(wchar_t character) {
    return character == L'/' || character == L'\\' || character == L':';
}

// The file of the running program. Empty when the system does not give it, or when it does not fit
// into 512 characters with its terminator.
StringBase<wchar_t> ProgramPath();

// The file of the module that holds this code, which is the program's own file when the library is
// part of it. Empty when the system does not give it, or when it does not fit into 260 characters
// with its terminator.
StringBase<wchar_t> ModulePath();

// The pieces of a path, each as it stands: drive + directory + name + extension is the path again.
struct PathPieces {
    StringBase<wchar_t> drive;      // "c:", or empty
    StringBase<wchar_t> directory;  // up to the last separator, which it includes
    StringBase<wchar_t> name;       // with the "." before the extension, if there is one
    StringBase<wchar_t> extension;  // behind the last "." that follows the last separator
};
PathPieces SplitPath(const StringBase<wchar_t>& path);

// The path without its extension and then without one "." left at its end: "c:\a.b" gives "c:\a",
// "f." gives "f"; "c:\a.b\f" stays whole.
StringBase<wchar_t> RemoveExtension(const StringBase<wchar_t>& path);

// The way from the folder `base` to `path`: "c:\a\b\f" from "c:\a\c\d" is "..\..\b\f". Pieces
// compare ignoring case and come back joined with "\". The result is `path` itself with every "/"
// turned into "\" when not even the first pieces agree, or when more than `maxLevels` steps up
// would be needed (none is allowed when that is 0 or negative). Empty pieces vanish. A `path` that
// is `base` gives the empty text.
StringBase<wchar_t> MakeRelativePath(const StringBase<wchar_t>& path,
                                     const StringBase<wchar_t>& base, std::int32_t maxLevels);

}  // namespace TamLib
