// Formats of printing as Windows writes them, read conversion by conversion, for Printing.cpp. What
// a conversion prints is said in tchar.h.
#pragma once

#include <climits>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace posix::format {

// The argument list, in a class so that it can be handed on.
class Arguments {
  public:
    explicit Arguments(va_list list) { va_copy(list_, list); }
    ~Arguments() { va_end(list_); }
    Arguments(const Arguments&) = delete;
    Arguments& operator=(const Arguments&) = delete;

    int Int() { return va_arg(list_, int); }
    std::int64_t Int64() { return va_arg(list_, std::int64_t); }
    double Double() { return va_arg(list_, double); }
    template <class T>
    const T* Pointer() {
        return va_arg(list_, const T*);
    }

  private:
    va_list list_;
};

enum class Size { none, shortInt, longInt, int64, wide };

// One conversion: %[flags][width][.precision][size]kind.
struct Conversion {
    bool left = false;
    bool plus = false;
    bool blank = false;
    bool alternate = false;
    bool zero = false;
    int width = 0;
    int precision = -1;  // -1: none
    Size size = Size::none;
    char kind = 0;
};

template <class C>
bool ReadFlag(C c, Conversion& conversion) {
    switch (c) {
        case '-':
            conversion.left = true;
            return true;
        case '+':
            conversion.plus = true;
            return true;
        case ' ':
            conversion.blank = true;
            return true;
        case '#':
            conversion.alternate = true;
            return true;
        case '0':
            conversion.zero = true;
            return true;
        default:
            return false;
    }
}

// A number in digits, or that of the next argument for "*"; too many digits give INT_MAX.
template <class C>
int ReadNumber(const C*& at, Arguments& arguments) {
    if (*at == '*') {
        ++at;
        return arguments.Int();
    }
    int number = 0;
    for (; *at >= '0' && *at <= '9'; ++at) {
        const int digit = static_cast<int>(*at - '0');
        number = number > (INT_MAX - digit) / 10 ? INT_MAX : number * 10 + digit;
    }
    return number;
}

// Whether `word` stands at the place, which is passed over then.
template <class C>
bool Take(const C*& at, const char* word) {
    const std::size_t length = std::strlen(word);
    for (std::size_t i = 0; i < length; ++i) {
        if (at[i] != static_cast<C>(word[i])) return false;
    }
    at += length;
    return true;
}

template <class C>
Size ReadSize(const C*& at) {
    if (Take(at, "I64") || Take(at, "ll")) return Size::int64;
    if (Take(at, "I32")) return Size::longInt;
    // "I" alone is the size of a pointer.
    if (Take(at, "I") || Take(at, "j") || Take(at, "z") || Take(at, "t")) return Size::int64;
    if (Take(at, "h")) return Size::shortInt;
    if (Take(at, "l")) return Size::longInt;
    if (Take(at, "w")) return Size::wide;
    if (Take(at, "L")) return Size::none;  // a long double is a double there
    return Size::none;
}

// Reads what stands behind "%" up to the kind, at which `at` is left; the kind of a character that
// is not ASCII is 0. A negative width from the arguments is a width to the left, a negative
// precision none.
template <class C>
Conversion ReadConversion(const C*& at, Arguments& arguments) {
    Conversion conversion;
    while (ReadFlag(*at, conversion)) ++at;
    conversion.width = ReadNumber(at, arguments);
    if (conversion.width < 0) {
        conversion.left = true;
        conversion.width = conversion.width == INT_MIN ? INT_MAX : -conversion.width;
    }
    if (*at == '.') {
        ++at;
        const int precision = ReadNumber(at, arguments);
        conversion.precision = precision < 0 ? -1 : precision;
    }
    conversion.size = ReadSize(at);
    const bool plain = *at > 0 && *at < 0x80;
    conversion.kind = plain ? static_cast<char>(*at) : 0;
    return conversion;
}

}  // namespace posix::format
