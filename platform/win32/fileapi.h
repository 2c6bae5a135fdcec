// Files by handle, and searching for files. Paths are wide; "\" separates as "/" does. Whole paths
// that come back have "\" alone.
#pragma once

#include "windef.h"

#define GENERIC_READ 0x80000000u
#define GENERIC_WRITE 0x40000000u
#define FILE_SHARE_READ 0x1u
#define FILE_SHARE_WRITE 0x2u
#define FILE_SHARE_DELETE 0x4u
#define OPEN_EXISTING 3u

#define FILE_ATTRIBUTE_READONLY 0x1u
#define FILE_ATTRIBUTE_DIRECTORY 0x10u
#define FILE_ATTRIBUTE_NORMAL 0x80u
#define FILE_ATTRIBUTE_REPARSE_POINT 0x400u

struct SECURITY_ATTRIBUTES;

// Opens an existing file (only OPEN_EXISTING is known) for GENERIC_READ, GENERIC_WRITE or both.
// INVALID_HANDLE_VALUE with the last error: 2 or 3 for what is not there, 5 for a folder or a file
// that may not be opened, 32 when another handle of this process that is open does not share what
// this one wants, or the other way round. Handles of other processes are not looked at.
HANDLE CreateFileW(LPCWSTR path, DWORD access, DWORD share, SECURITY_ATTRIBUTES* security,
                   DWORD disposition, DWORD flags, HANDLE pattern);
// FALSE (last error 6) when it is no open handle.
BOOL CloseHandle(HANDLE handle);

struct BY_HANDLE_FILE_INFORMATION {
    DWORD dwFileAttributes;
    FILETIME ftCreationTime;
    FILETIME ftLastAccessTime;
    FILETIME ftLastWriteTime;
    DWORD dwVolumeSerialNumber;
    DWORD nFileSizeHigh;
    DWORD nFileSizeLow;
    DWORD nNumberOfLinks;
    DWORD nFileIndexHigh;
    DWORD nFileIndexLow;
};
// Two names of one file give the same volume and index, different files different ones.
BOOL GetFileInformationByHandle(HANDLE file, BY_HANDLE_FILE_INFORMATION* information);

struct WIN32_FIND_DATAW {
    DWORD dwFileAttributes;
    FILETIME ftCreationTime;
    FILETIME ftLastAccessTime;
    FILETIME ftLastWriteTime;
    DWORD nFileSizeHigh;
    DWORD nFileSizeLow;
    DWORD dwReserved0;
    DWORD dwReserved1;
    WCHAR cFileName[MAX_PATH];
    WCHAR cAlternateFileName[14];
};
// Searches a folder for names that match the last piece of `path`: "*" is any run, "?" one
// character, or none at the end of a name; case is ignored; a pattern that ends in ".*" also takes
// names without a dot. The finds come ordered by name ignoring case, "." and ".." first. The
// folder itself is named as the file system has it, case included. INVALID_HANDLE_VALUE with the
// last error: 2 when nothing matches, 3 when there is no such folder, 5 when it may not be read.
HANDLE FindFirstFileW(LPCWSTR path, WIN32_FIND_DATAW* data);
// The next find; FALSE (last error 18) behind the last one.
BOOL FindNextFileW(HANDLE search, WIN32_FIND_DATAW* data);
BOOL FindClose(HANDLE search);

// The whole path of a name, without "." and "..". Returns its length, or the size it needs with a
// terminator when that is above `size`; 0 for an empty name. `namePart` may be null.
DWORD GetFullPathNameW(LPCWSTR name, DWORD size, LPWSTR buffer, LPWSTR* namePart);

// -1, 0 or 1.
LONG CompareFileTime(const FILETIME* first, const FILETIME* second);
