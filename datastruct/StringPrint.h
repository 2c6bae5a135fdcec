// Bounded printing and copying of text: behind every message, and for whoever has a buffer of a
// fixed size. All sizes count characters; formats have the Windows meaning (%s of a wide format is
// wide text). Nothing here allocates, so that it can be used when memory is short.
#pragma once

#include <cstdarg>
#include <cstddef>

namespace TamLib {

// Prints into `buffer`, which has room for `size` characters. No argument may overlap the buffer.
//
// - Shorter than `size`: terminated; the length.
// - Exactly `size`: all characters and no terminator; `size`. Intended: string formatting grows
//   once more then. Who prints into a fixed buffer uses PrintWithin.
// - Longer: the first `size` - 1 characters, terminated; size * 13 / 10 + 3, an estimate of the
//   room to try next. With `size` 0 nothing is written and the result is 3 (0 for an empty text).
int PrintLimited(wchar_t* buffer, std::size_t size, const wchar_t* format, ...);
int PrintLimited(char* buffer, std::size_t size, const char* format, ...);
int PrintLimitedV(wchar_t* buffer, std::size_t size, const wchar_t* format, va_list arguments);
int PrintLimitedV(char* buffer, std::size_t size, const char* format, va_list arguments);

// Prints at most N - 1 characters into a buffer of N and always terminates it. Gives the buffer.
template <class T, std::size_t N>
const T* PrintWithin(T (&buffer)[N], const T* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    PrintLimitedV(buffer, N, format, arguments);
    va_end(arguments);
    buffer[N - 1] = 0;
    return buffer;
}

// Copies `source` into `target`, which has room for `size` characters, always terminated: a source
// of `size` characters or more loses what does not fit. With `size` 0 nothing is written. The
// result is the length of the source.
std::size_t CopyLimited(wchar_t* target, const wchar_t* source, std::size_t size);
std::size_t CopyLimited(char* target, const char* source, std::size_t size);

// CopyLimited behind the text that the target holds. `size` is the whole room of the target; a
// target without a terminator in that room stays as it is. The result is the length of the source.
std::size_t AppendLimited(wchar_t* target, const wchar_t* source, std::size_t size);
std::size_t AppendLimited(char* target, const char* source, std::size_t size);

}  // namespace TamLib
