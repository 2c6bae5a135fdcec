// Printing into strings: Format, the numeric constructors and Substitute.
#include <algorithm>

#include <tchar.h>

#include "datastruct/String.h"
#include "datastruct/StringCharacters.h"
#include "datastruct/StringPrint.h"

namespace TamLib {
namespace {

int PrintedLength(const wchar_t* format, va_list arguments) {
    return _vscwprintf(format, arguments);
}

int PrintedLength(const char* format, va_list arguments) {
    return _vscprintf(format, arguments);
}

template <class T>
bool CanBePrinted(const T* format, va_list arguments) {
    va_list own;
    va_copy(own, arguments);
    const int length = PrintedLength(format, own);
    va_end(own);
    return length >= 0;
}

template <class T>
std::uint32_t LengthOf(const T* text) {
    std::uint32_t length = 0;
    while (text[length] != 0) ++length;
    return length;
}

// The format literals of both widths.
template <class T>
struct Formats;
template <>
struct Formats<char> {
    static constexpr const char* kFixed = "%f";
    static constexpr const char* kInteger = "%li";
    static constexpr const char* kPlace = "%8.8f";
    static constexpr const char* kConversions = "eEfFgGaA";
    static constexpr const char* kFlags = "-+ #0";
};
template <>
struct Formats<wchar_t> {
    static constexpr const wchar_t* kFixed = L"%f";
    static constexpr const wchar_t* kInteger = L"%li";
    static constexpr const wchar_t* kPlace = L"%8.8f";
    static constexpr const wchar_t* kConversions = L"eEfFgGaA";
    static constexpr const wchar_t* kFlags = L"-+ #0";
};

// Passes one conversion of a double at the "%"; null if it is another.
template <class T>
const T* BehindDouble(const T* at) {
    ++at;
    while (*at != 0 && detail::StandsIn(*at, Formats<T>::kFlags)) ++at;
    while (detail::IsDigit(*at)) ++at;
    if (*at == T('.')) {
        ++at;
        while (detail::IsDigit(*at)) ++at;
    }
    if (*at == T('l') || *at == T('L')) ++at;
    return *at != 0 && detail::StandsIn(*at, Formats<T>::kConversions) ? at + 1 : nullptr;
}

// Whether the format prints exactly one double and nothing else that needs an argument.
template <class T>
bool PrintsOneDouble(const T* format) {
    int doubles = 0;
    for (const T* at = format; *at != 0;) {
        if (*at != T('%')) {
            ++at;
        } else if (at[1] == T('%')) {
            at += 2;
        } else {
            at = BehindDouble(at);
            if (at == nullptr) return false;
            ++doubles;
        }
    }
    return doubles == 1;
}

// The value as the format of a place prints it.
template <class T>
StringBase<T> PrintedPlace(const StringBase<T>& format, double value) {
    const T* const given = format.Data();
    T text[1000];
    return StringBase<T>(
        PrintWithin(text, PrintsOneDouble(given) ? given : Formats<T>::kPlace, value));
}

}  // namespace

template <class T>
StringBase<T>::StringBase(double value) : StringBase(Room{10}) {
    Format(Formats<T>::kFixed, value);
}

template <class T>
StringBase<T>::StringBase(std::int32_t value) : StringBase(Room{10}) {
    increment = 20;
    this->Resize(20);
    count = static_cast<std::uint32_t>(PrintLimited(data, 20, Formats<T>::kInteger, value));
}

template <class T>
std::int32_t StringBase<T>::Format(const T* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const std::int32_t length = FormatV(format, arguments);
    va_end(arguments);
    return length;
}

template <class T>
std::int32_t StringBase<T>::FormatV(const T* format, va_list arguments) {
    constexpr int kMostRounds = 100;
    std::uint64_t estimate = std::uint64_t{3} * LengthOf(format) * 4 / 10 + 10;
    std::uint64_t target = 0;
    for (int round = 0; round < kMostRounds; ++round) {
        target = estimate >= capacity ? estimate + 1 : (target + 1) * 13 / 10;
        if (target > capacity) {
            this->Resize(static_cast<std::uint32_t>(std::min<std::uint64_t>(target, UINT32_MAX)));
        }
        va_list own;
        va_copy(own, arguments);
        const auto printed = static_cast<std::uint32_t>(PrintLimitedV(data, capacity, format, own));
        va_end(own);
        if (printed < capacity) {
            count = printed;
            return static_cast<std::int32_t>(printed);
        }
        estimate = printed;
        // More room does not help a text that cannot be printed at all.
        if (round == 0 && !CanBePrinted(format, arguments)) break;
    }
    data[capacity - 1] = 0;
    count = static_cast<std::uint32_t>(std::min<std::uint64_t>(estimate, capacity));
    return static_cast<std::int32_t>(count);
}

template <class T>
std::int32_t StringBase<T>::Substitute(const StringBase& marker, T terminator, double value) {
    const StringBase end(terminator);
    std::int32_t filled = 0;
    std::uint32_t position = 0;
    for (;;) {
        const std::int32_t found = Find(marker, -1, static_cast<std::int32_t>(position));
        if (found < 0) return filled;
        const auto at = static_cast<std::uint32_t>(found);
        const std::uint32_t behind = at + marker.count;
        if (behind >= count) return filled;
        const T next = data[behind];
        if (next != terminator && next != T('%')) {
            position = behind;
            continue;
        }
        ++filled;
        StringBase format(Formats<T>::kPlace);
        std::uint32_t consumed = next == terminator ? 1 : 0;
        const std::int32_t ended = Find(end, -1, static_cast<std::int32_t>(behind));
        if (next == T('%') && ended >= 0) {
            consumed = static_cast<std::uint32_t>(ended) - behind + 1;
            format.Take(data + behind, consumed - 1);
        }
        const StringBase printed = PrintedPlace(format, value);
        const std::uint32_t rest = behind + consumed;
        StringBase rebuilt = Left(at) + printed;
        if (rest < count) {
            rebuilt.Append(
                Sub(static_cast<std::int32_t>(rest), static_cast<std::int32_t>(count) - 1));
        }
        Take(rebuilt.data, rebuilt.count);
        position = at + printed.count;
    }
}

#define INSTANTIATE(T)                                               \
    template StringBase<T>::StringBase(double);                      \
    template StringBase<T>::StringBase(std::int32_t);                \
    template std::int32_t StringBase<T>::Format(const T*, ...);      \
    template std::int32_t StringBase<T>::FormatV(const T*, va_list); \
    template std::int32_t StringBase<T>::Substitute(const StringBase<T>&, T, double)
INSTANTIATE(char);
INSTANTIATE(wchar_t);
#undef INSTANTIATE

}  // namespace TamLib
