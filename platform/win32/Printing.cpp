// Printing with the Windows meaning of formats (the rules stand in tchar.h), for wide and narrow
// text by one formatter.
#include <locale.h>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "FormatConversion.h"
#include "tchar.h"

namespace {

// Takes characters, keeps those that fit and counts all.
template <class C>
class Sink {
  public:
    Sink(C* buffer, std::size_t size) : buffer_(buffer), size_(size) {}

    void Put(C c) {
        if (length_ < size_) buffer_[length_] = c;
        ++length_;
    }

    // Costs the room left, not `times`: a format may ask for any width.
    void Fill(C c, std::size_t times) {
        for (std::size_t i = 0; i < times && length_ + i < size_; ++i) buffer_[length_ + i] = c;
        length_ += times;
    }

    int Finish() {
        if (length_ < size_) buffer_[length_] = 0;
        const bool counting = buffer_ == nullptr && size_ == 0;
        if (length_ > INT_MAX || (length_ > size_ && !counting)) return -1;
        return static_cast<int>(length_);
    }

  private:
    C* buffer_;
    std::size_t size_;
    std::size_t length_ = 0;
};

using namespace posix::format;

// Characters of the other width turn into each other by number.
wchar_t ToCharacter(char c, wchar_t /*target*/) {
    return static_cast<unsigned char>(c);
}
wchar_t ToCharacter(wchar_t c, wchar_t /*target*/) {
    return c;
}
char ToCharacter(char c, char /*target*/) {
    return c;
}
char ToCharacter(wchar_t c, char /*target*/) {
    return c >= 0 && c <= 0xFF ? static_cast<char>(c) : '?';
}

// Puts `length` characters into a field of the conversion's width. `prefix` characters at the start
// (sign, 0x) stay before zeros that fill.
template <class C, class S>
void PutField(Sink<C>& sink, const S* text, std::size_t length, const Conversion& conversion,
              bool zeros, std::size_t prefix = 0) {
    const auto width = static_cast<std::size_t>(conversion.width);
    const std::size_t fill = width > length ? width - length : 0;
    std::size_t at = 0;
    if (!conversion.left) {
        if (!zeros) sink.Fill(C(' '), fill);
        for (; at < prefix; ++at) sink.Put(ToCharacter(text[at], C()));
        if (zeros) sink.Fill(C('0'), fill);
    }
    for (; at < length; ++at) sink.Put(ToCharacter(text[at], C()));
    if (conversion.left) sink.Fill(C(' '), fill);
}

// Text: no more characters are read than the precision allows.
template <class C, class S>
void PutText(Sink<C>& sink, const S* text, const Conversion& conversion) {
    static const S nullText[] = {'(', 'n', 'u', 'l', 'l', ')', 0};
    if (text == nullptr) text = nullText;
    const std::size_t limit =
        conversion.precision < 0 ? SIZE_MAX : static_cast<std::size_t>(conversion.precision);
    std::size_t length = 0;
    while (length < limit && text[length] != 0) ++length;
    PutField(sink, text, length, conversion, conversion.zero);
}

// Whether %s or %c (small letter) or %S, %C (capital) takes wide text.
template <class C>
bool TakesWide(const Conversion& conversion) {
    if (conversion.size == Size::shortInt) return false;
    if (conversion.size == Size::longInt || conversion.size == Size::wide) return true;
    const bool capital = conversion.kind == 'S' || conversion.kind == 'C';
    return (sizeof(C) > 1) != capital;
}

template <class C>
void PutCharacter(Sink<C>& sink, int code, const Conversion& conversion) {
    if (TakesWide<C>(conversion)) {
        const auto c = static_cast<wchar_t>(code);
        PutField(sink, &c, 1, conversion, conversion.zero);
    } else {
        const char c = static_cast<char>(code);
        PutField(sink, &c, 1, conversion, conversion.zero);
    }
}

std::int64_t SignedArgument(Size size, Arguments& arguments) {
    if (size == Size::int64) return arguments.Int64();
    const int number = arguments.Int();
    return size == Size::shortInt ? static_cast<short>(number) : number;
}

std::uint64_t UnsignedArgument(Size size, Arguments& arguments) {
    if (size == Size::int64) return static_cast<std::uint64_t>(arguments.Int64());
    const auto number = static_cast<unsigned>(arguments.Int());
    return size == Size::shortInt ? static_cast<unsigned short>(number) : number;
}

// The digits of a number, written from the end of `end` to the front.
char* WriteDigits(char* end, std::uint64_t number, unsigned base, bool capitals) {
    const char* const digits = capitals ? "0123456789ABCDEF" : "0123456789abcdef";
    for (; number != 0; number /= base) *--end = digits[number % base];
    return end;
}

// A number as sign or prefix, leading zeros of the precision, digits.
template <class C>
void PutDigits(Sink<C>& sink, const char* sign, std::uint64_t number, unsigned base,
               const Conversion& conversion) {
    char digits[32];
    char* const end = digits + sizeof digits;
    const char* const start = WriteDigits(end, number, base, conversion.kind == 'X');
    const auto length = static_cast<std::size_t>(end - start);
    // Without a precision 0 has one digit; with precision 0 it has none.
    const std::size_t wanted =
        conversion.precision < 0 ? 1 : static_cast<std::size_t>(conversion.precision);
    std::size_t zeros = wanted > length ? wanted - length : 0;
    if (base == 8 && conversion.alternate && zeros == 0 && (length == 0 || *start != '0'))
        zeros = 1;

    const std::size_t signLength = std::strlen(sign);
    const std::size_t body = signLength + zeros + length;
    const auto width = static_cast<std::size_t>(conversion.width);
    const std::size_t fill = width > body ? width - body : 0;
    const bool zeroFill = conversion.zero && !conversion.left && conversion.precision < 0;
    if (!conversion.left && !zeroFill) sink.Fill(C(' '), fill);
    for (std::size_t i = 0; i < signLength; ++i) sink.Put(static_cast<C>(sign[i]));
    if (zeroFill) sink.Fill(C('0'), fill);
    sink.Fill(C('0'), zeros);
    for (std::size_t i = 0; i < length; ++i) sink.Put(static_cast<C>(start[i]));
    if (conversion.left) sink.Fill(C(' '), fill);
}

template <class C>
void PutSigned(Sink<C>& sink, std::int64_t number, const Conversion& conversion) {
    const char* const sign = number < 0 ? "-" : conversion.plus ? "+" : conversion.blank ? " " : "";
    const auto bits = static_cast<std::uint64_t>(number);
    PutDigits(sink, sign, number < 0 ? 0 - bits : bits, 10, conversion);
}

template <class C>
void PutUnsigned(Sink<C>& sink, std::uint64_t number, const Conversion& conversion) {
    if (conversion.kind == 'o') {
        PutDigits(sink, "", number, 8, conversion);
    } else if (conversion.kind == 'u') {
        PutDigits(sink, "", number, 10, conversion);
    } else {
        const char* const prefix = !conversion.alternate || number == 0 ? ""
                                   : conversion.kind == 'X'             ? "0X"
                                                                        : "0x";
        PutDigits(sink, prefix, number, 16, conversion);
    }
}

// The decimal point is "." whatever locale the program has chosen.
class NeutralNumbers {
  public:
    NeutralNumbers() : before_(uselocale(Neutral())) {}
    ~NeutralNumbers() { uselocale(before_); }
    NeutralNumbers(const NeutralNumbers&) = delete;
    NeutralNumbers& operator=(const NeutralNumbers&) = delete;

  private:
    static locale_t Neutral() {
        static const locale_t neutral = newlocale(LC_ALL_MASK, "C", nullptr);
        return neutral;
    }
    locale_t before_;
};

template <class C>
void PutDouble(Sink<C>& sink, double number, const Conversion& conversion) {
    // The exact value of a double has at most 309 digits before and 1074 behind the point.
    constexpr int kMostDigits = 1100;
    const int precision = conversion.precision < 0             ? 6
                          : conversion.precision > kMostDigits ? kMostDigits
                                                               : conversion.precision;
    char format[8];
    char* at = format;
    *at++ = '%';
    if (conversion.plus) *at++ = '+';
    if (conversion.blank) *at++ = ' ';
    if (conversion.alternate) *at++ = '#';
    // Hexadecimal without a precision has as many digits as it takes.
    const bool given = conversion.precision >= 0 || (conversion.kind | 0x20) != 'a';
    if (given) {
        *at++ = '.';
        *at++ = '*';
    }
    *at++ = conversion.kind;
    *at = 0;

    char text[1500];
    const NeutralNumbers neutral;
    const int length = given ? std::snprintf(text, sizeof text, format, precision, number)
                             : std::snprintf(text, sizeof text, format, number);
    const bool finite = number - number == 0;
    std::size_t prefix = text[0] == '-' || text[0] == '+' || text[0] == ' ' ? 1 : 0;
    if ((conversion.kind | 0x20) == 'a') prefix += 2;
    PutField(sink, text, static_cast<std::size_t>(length), conversion,
             conversion.zero && !conversion.left && finite, prefix);
}

template <class C>
void PutPointer(Sink<C>& sink, const void* pointer, Conversion conversion) {
    conversion.kind = 'X';
    conversion.precision = static_cast<int>(2 * sizeof pointer);
    PutDigits(sink, "", reinterpret_cast<std::uintptr_t>(pointer), 16, conversion);
}

// Prints one conversion; false if it is refused.
template <class C>
bool PutConversion(Sink<C>& sink, const Conversion& conversion, Arguments& arguments) {
    switch (conversion.kind) {
        case 'd':
        case 'i':
            PutSigned(sink, SignedArgument(conversion.size, arguments), conversion);
            break;
        case 'u':
        case 'o':
        case 'x':
        case 'X':
            PutUnsigned(sink, UnsignedArgument(conversion.size, arguments), conversion);
            break;
        case 'e':
        case 'E':
        case 'f':
        case 'F':
        case 'g':
        case 'G':
        case 'a':
        case 'A':
            PutDouble(sink, arguments.Double(), conversion);
            break;
        case 'c':
        case 'C':
            PutCharacter(sink, arguments.Int(), conversion);
            break;
        case 's':
        case 'S':
            if (TakesWide<C>(conversion)) {
                PutText(sink, arguments.template Pointer<wchar_t>(), conversion);
            } else {
                PutText(sink, arguments.template Pointer<char>(), conversion);
            }
            break;
        case 'p':
            PutPointer(sink, arguments.template Pointer<void>(), conversion);
            break;
        default:
            return conversion.kind != 'n';
    }
    return true;
}

bool IsConversion(char kind) {
    return kind != 0 && std::strchr("diuoxXeEfFgGaAcCsSpn", kind);
}

template <class C>
int Print(C* buffer, std::size_t size, const C* format, va_list list) {
    Sink<C> sink(buffer, size);
    Arguments arguments(list);
    for (const C* at = format; *at != 0;) {
        if (*at != '%') {
            sink.Put(*at++);
            continue;
        }
        ++at;
        const Conversion conversion = ReadConversion(at, arguments);
        if (*at == 0) break;
        if (IsConversion(conversion.kind)) {
            if (!PutConversion(sink, conversion, arguments)) return -1;
        } else {
            sink.Put(*at);  // "%%", and what is no conversion stands for itself
        }
        ++at;
    }
    return sink.Finish();
}

}  // namespace

int _vsnwprintf(wchar_t* buffer, std::size_t size, const wchar_t* format, va_list arguments) {
    return Print(buffer, size, format, arguments);
}

int _vsnprintf(char* buffer, std::size_t size, const char* format, va_list arguments) {
    return Print(buffer, size, format, arguments);
}

int _snwprintf(wchar_t* buffer, std::size_t size, const wchar_t* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const int length = Print(buffer, size, format, arguments);
    va_end(arguments);
    return length;
}

int _snprintf(char* buffer, std::size_t size, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const int length = Print(buffer, size, format, arguments);
    va_end(arguments);
    return length;
}

int _vscwprintf(const wchar_t* format, va_list arguments) {
    return Print<wchar_t>(nullptr, 0, format, arguments);
}

int _vscprintf(const char* format, va_list arguments) {
    return Print<char>(nullptr, 0, format, arguments);
}
