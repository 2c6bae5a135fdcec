#include "datastruct/StringPrint.h"

#include <cstdio>
#include <cwchar>

#include <tchar.h>

namespace TamLib {
namespace {

int PrintBounded(wchar_t* buffer, std::size_t size, const wchar_t* format, va_list arguments) {
    return _vsnwprintf(buffer, size, format, arguments);
}

int PrintBounded(char* buffer, std::size_t size, const char* format, va_list arguments) {
    return _vsnprintf(buffer, size, format, arguments);
}

template <class T>
int PrintOrEstimate(T* buffer, std::size_t size, const T* format, va_list arguments) {
    // With no room some run-times take a null buffer for a question about the length.
    T none = 0;
    const int length = PrintBounded(size == 0 ? &none : buffer, size, format, arguments);
    if (length >= 0) return length;
    if (size != 0) buffer[size - 1] = 0;
    return static_cast<int>(size * 13 / 10 + 3);
}

template <class T>
std::size_t Length(const T* text) {
    std::size_t length = 0;
    while (text[length] != 0) ++length;
    return length;
}

template <class T>
std::size_t Copy(T* target, const T* source, std::size_t size) {
    const std::size_t length = Length(source);
    if (size == 0) return length;
    const std::size_t copied = length < size ? length : size - 1;
    for (std::size_t i = 0; i < copied; ++i) target[i] = source[i];
    target[copied] = 0;
    return length;
}

template <class T>
std::size_t Append(T* target, const T* source, std::size_t size) {
    std::size_t used = 0;
    while (used < size && target[used] != 0) ++used;
    return Copy(target + used, source, size - used);
}

}  // namespace

int PrintLimitedV(wchar_t* buffer, std::size_t size, const wchar_t* format, va_list arguments) {
    return PrintOrEstimate(buffer, size, format, arguments);
}

int PrintLimitedV(char* buffer, std::size_t size, const char* format, va_list arguments) {
    return PrintOrEstimate(buffer, size, format, arguments);
}

int PrintLimited(wchar_t* buffer, std::size_t size, const wchar_t* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const int result = PrintLimitedV(buffer, size, format, arguments);
    va_end(arguments);
    return result;
}

int PrintLimited(char* buffer, std::size_t size, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const int result = PrintLimitedV(buffer, size, format, arguments);
    va_end(arguments);
    return result;
}

std::size_t CopyLimited(wchar_t* target, const wchar_t* source, std::size_t size) {
    return Copy(target, source, size);
}

std::size_t CopyLimited(char* target, const char* source, std::size_t size) {
    return Copy(target, source, size);
}

std::size_t AppendLimited(wchar_t* target, const wchar_t* source, std::size_t size) {
    return Append(target, source, size);
}

std::size_t AppendLimited(char* target, const char* source, std::size_t size) {
    return Append(target, source, size);
}

}  // namespace TamLib
