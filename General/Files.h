// Ordinary work on files: sizes, times, copies, temporary names.
//
// Paths are wide texts ended by a terminator; null is the empty text, which names no file. Failures
// are results and nothing is raised but a string's TamExpNoMem. Times are seconds since 1970 (UTC).
#pragma once

#include <cstdint>

#include "datastruct/String.h"

namespace TamLib {

// The size of a file in bytes; -1 when it cannot be found out, or does not fit into 31 bits. The
// narrow path is in the system's code page.
std::int32_t FileSize(const char* path);
std::int32_t FileSize(const wchar_t* path);
// The size whatever it is; -1 when it cannot be found out.
std::int64_t FileSize64(const wchar_t* path);

// What CompareFileTimes gives when a file cannot be looked at: -1 with its low byte cleared.
constexpr std::int32_t kFileTimesUnknown = -256;

// 1 when the first file was changed later than the second, 0 otherwise (intended: also when
// earlier). The times of change go to the pointers that are not null. When one of the files cannot
// be looked at: kFileTimesUnknown, and both times are left alone.
std::int32_t CompareFileTimes(const wchar_t* first, const wchar_t* second,
                              std::int64_t* firstTime = nullptr,
                              std::int64_t* secondTime = nullptr);

// 1 when both names lead to one file, 0 when not; -1 when one of them cannot be opened for reading
// while others read (a folder cannot), -2 when the system does not say which file it is.
std::int32_t IsSameFile(const wchar_t* first, const wchar_t* second);

// Seconds since the file was changed, negative for a time to come but -1 also when it cannot be
// found out.
std::int64_t FileAgeSeconds(const wchar_t* path);

// What CopyFileBytes failed at; the rest of its code is what the run-time said.
constexpr std::int32_t kCopyOpenSource = 0x400;   // or `errno`
constexpr std::int32_t kCopyOpenTarget = 0x800;   // or `errno`
constexpr std::int32_t kCopyRead = 0x1000;        // or the value of `ferror`
constexpr std::int32_t kCopyWrite = 0x2000;       // or the value of `ferror`
constexpr std::int32_t kCopyOntoItself = 0x4000;  // alone; the file is left as it is

// Copies the bytes of a file over another, which is made or emptied. 0, or the failing stage above
// or-ed with the run-time's code; a target begun stays as far as it came. `copied`, which may be
// null, counts the bytes written. Intended: writing is repeated until all is out, and only an error
// of the source ends it, so that a full disk keeps it waiting.
std::int32_t CopyFileBytes(const wchar_t* source, const wchar_t* target,
                           std::int64_t* copied = nullptr);

// A name in the folder of the environment variable TEMP: "\<prefix>.<12 hexadecimal digits>" (a
// number from 0 to 32767 in each four) behind its value. Empty without the variable. Nothing is
// made and nothing tests whether there is such a file. Intended: the digits follow from the time in
// seconds, so that two calls within a second give the same name, and the call starts the library's
// random numbers anew.
StringBase<wchar_t> TempFileName(const StringBase<wchar_t>& prefix);

// Makes a folder of a TempFileName and gives its name; empty when there is no such name or the
// folder cannot be made, be it that there is one.
StringBase<wchar_t> MakeTempDirectory(const StringBase<wchar_t>& prefix);

// Deletes the files of a folder and then the folder; whether the folder went. Intended: what lies
// in it is not descended into, so that a folder that holds another stays, without its files. An
// empty path gives false.
bool DeleteDirectory(const wchar_t* path);

}  // namespace TamLib
