// The run-time library's calls on files and the environment. Comes with <tchar.h>. Paths are wide;
// "\" separates as "/" does. Failures are -1 with `errno`.
#pragma once

#include <sys/stat.h>

// What is known of a file; `st_size`, `st_mtime` and the others bear the names they have there.
struct _stat64 : stat {};

int _wstat64(const wchar_t* path, struct _stat64* status);
// The structure and the function bear one name there, too.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wshadow"
// The same for a path in Windows-1252.
int _stat64(const char* path, struct _stat64* status);
#pragma GCC diagnostic pop

int _wmkdir(const wchar_t* path);
// Deletes an empty folder.
int _wrmdir(const wchar_t* path);
// Deletes a file; a folder is refused.
int _wunlink(const wchar_t* path);

// The value of an environment variable, null without one. It stays valid for as long as the
// process.
wchar_t* _wgetenv(const wchar_t* name);
