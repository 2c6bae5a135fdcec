// The names of the Windows run-time library that the library uses and POSIX lacks.
//
// Printing has the Windows meaning of formats: in a wide format %s and %c take wide text and %S,
// %C, %hs, %hc narrow text (%ls, %lc, %ws always wide); in a narrow format %s and %c are narrow and
// %S, %C wide. %ld, %li, %lu and %lx take 32 bits, as `long` has there: callers pass std::int32_t.
// %I64d and %lld take 64 bits, %I32d 32, %Id the size of a pointer. %p is 16 hexadecimal digits in
// capitals. A null text prints as "(null)". Narrow and wide characters turn into each other by
// their number; a wide one above 255 becomes "?" in narrow text. %n is refused.
#pragma once

#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <cwchar>

#include "rtfiles.h"
#include "rttime.h"

#define _T(text) L##text
#define _TEXT(text) L##text
using TCHAR = wchar_t;

// Prints into `buffer`, which has room for `size` characters. Text shorter than `size`:
// terminated, its length. Text of exactly `size`: not terminated, `size`. Longer: the first `size`
// characters, not terminated, -1. A null buffer with `size` 0 only counts.
int _vsnwprintf(wchar_t* buffer, std::size_t size, const wchar_t* format, va_list arguments);
int _vsnprintf(char* buffer, std::size_t size, const char* format, va_list arguments);
int _snwprintf(wchar_t* buffer, std::size_t size, const wchar_t* format, ...);
int _snprintf(char* buffer, std::size_t size, const char* format, ...);
// The length that the printed text has, -1 if it cannot be printed.
int _vscwprintf(const wchar_t* format, va_list arguments);
int _vscprintf(const char* format, va_list arguments);

// Comparison that ignores the case of A to Z and of nothing else: negative, 0 or positive.
int _wcsicmp(const wchar_t* first, const wchar_t* second);
int _wcsnicmp(const wchar_t* first, const wchar_t* second, std::size_t count);
int _stricmp(const char* first, const char* second);
int _strnicmp(const char* first, const char* second, std::size_t count);

// The decimal number at the start of the text behind blanks, 0 if there is none. The decimal point
// is "." in every locale, an exponent begins with e or d; hexadecimal numbers, "inf" and "nan" are
// none. Infinite when it is too large.
double _wtof(const wchar_t* text);
int _wtoi(const wchar_t* text);
// A copy to be freed by `free`; null for null.
wchar_t* _wcsdup(const wchar_t* text);

// `fopen` for a wide path: "\" separates as "/" does, the name on disk is UTF-8. A path with
// characters that cannot be coded gives null and errno EILSEQ. The letter "t" of a mode has no
// effect.
std::FILE* _wfopen(const wchar_t* path, const wchar_t* mode);
