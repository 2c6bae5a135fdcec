// What the sources of this folder share about files.
#pragma once

#include <sys/stat.h>

#include "fileapi.h"

namespace posix {

// A time of the system in units of 100 ns since 1601.
FILETIME WindowsTime(const timespec& time);
FILETIME WindowsTime(ULONGLONG units);

// The attributes, times and size that a file has.
template <class Data>
void FillFileData(const struct stat& status, Data& data) {
    const bool folder = S_ISDIR(status.st_mode);
    data.dwFileAttributes = folder ? FILE_ATTRIBUTE_DIRECTORY : FILE_ATTRIBUTE_NORMAL;
    data.ftCreationTime = WindowsTime(status.st_ctim);
    data.ftLastAccessTime = WindowsTime(status.st_atim);
    data.ftLastWriteTime = WindowsTime(status.st_mtim);
    const auto size = static_cast<ULONGLONG>(folder ? 0 : status.st_size);
    data.nFileSizeHigh = static_cast<DWORD>(size >> 32);
    data.nFileSizeLow = static_cast<DWORD>(size);
}

// Whether the open handles allow the file at the path to be opened for this access and share.
bool SharingAllows(const char* path, DWORD access, DWORD share);

}  // namespace posix
