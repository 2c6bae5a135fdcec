// Runs of characters, for the sources of StringBase: comparison and search in both widths.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <type_traits>

#include "tam/TextCase.h"

namespace TamLib {
namespace detail {

// The character as an unsigned number.
template <class T>
constexpr std::uint32_t CharNumber(T c) {
    if constexpr (sizeof(T) == 1) {
        return static_cast<unsigned char>(c);
    } else {
        return static_cast<std::uint32_t>(c);
    }
}

// The order of characters by number: wide ones without, narrow ones with a sign.
template <class T>
std::int32_t CompareCharacters(const T* first, const T* second) {
    if constexpr (sizeof(T) == 1) {
        const auto a = static_cast<signed char>(*first);
        const auto b = static_cast<signed char>(*second);
        return (a > b) - (a < b);
    } else {
        const std::uint32_t a = CharNumber(*first);
        const std::uint32_t b = CharNumber(*second);
        return (a > b) - (a < b);
    }
}

// The order of the first `n` characters as unsigned numbers; a zero in both at the same
// place ends it.
template <class T>
std::int32_t CompareRuns(const T* first, const T* second, std::size_t n) {
    for (std::size_t i = 0; i < n; ++i) {
        if (first[i] != second[i]) return CharNumber(first[i]) < CharNumber(second[i]) ? -1 : 1;
        if (first[i] == 0) return 0;
    }
    return 0;
}

// CompareRuns of the small letters.
template <class T>
std::int32_t CompareRunsNoCase(const T* first, const T* second, std::size_t n) {
    for (std::size_t i = 0; i < n; ++i) {
        if (first[i] != second[i]) {
            const std::uint32_t a = CharNumber(LowerChar(first[i]));
            const std::uint32_t b = CharNumber(LowerChar(second[i]));
            if (a != b) return a < b ? -1 : 1;
        }
        if (first[i] == 0) return 0;
    }
    return 0;
}

// Whether the character stands in the set, a text that may be null.
template <class T>
bool StandsIn(T c, const T* set) {
    if (set == nullptr) return false;
    for (; *set != 0; ++set) {
        if (*set == c) return true;
    }
    return false;
}

template <class T>
constexpr bool IsDigit(T c) {
    return c >= T('0') && c <= T('9');
}

// A run of characters to be searched, or searched for.
template <class T>
struct Run {
    const T* characters;
    std::size_t count;
};

template <class T>
bool IsQuote(T c, std::int32_t quote) {
    return static_cast<std::int32_t>(CharNumber(c) & 0xFFu) == quote;
}

template <class T>
bool SameCharacter(T a, T b, bool caseSensitive) {
    return a == b || (!caseSensitive && LowerChar(a) == LowerChar(b));
}

constexpr std::size_t kNotFound = static_cast<std::size_t>(-1);

template <class T>
std::size_t FindPlain(const Run<T>& text, const Run<T>& needle, std::size_t start) {
    using Traits = std::char_traits<T>;
    const T* at = text.characters + start;
    const T* const end = text.characters + text.count - needle.count + 1;
    while (at < end) {
        at = Traits::find(at, static_cast<std::size_t>(end - at), needle.characters[0]);
        if (at == nullptr) return kNotFound;
        if (Traits::compare(at, needle.characters, needle.count) == 0) {
            return static_cast<std::size_t>(at - text.characters);
        }
        ++at;
    }
    return kNotFound;
}

// Whether the needle stands at the index, with no quote character behind its first.
template <class T>
bool StandsAt(const Run<T>& text, const Run<T>& needle, std::size_t at, std::int32_t quote,
              bool caseSensitive) {
    for (std::size_t j = 0; j < needle.count; ++j) {
        const T c = text.characters[at + j];
        if (!SameCharacter(c, needle.characters[j], caseSensitive)) return false;
        if (j > 0 && IsQuote(c, quote)) return false;
    }
    return true;
}

// One character outside quotes, the usual separator.
template <class T>
std::size_t FindOutsideQuotes(const Run<T>& text, T wanted, std::size_t start, std::int32_t quote) {
    const T* at = text.characters + start;
    const T* const end = text.characters + text.count;
    for (;;) {
        while (at != end && *at != wanted && !IsQuote(*at, quote)) ++at;
        if (at == end) return kNotFound;
        if (!IsQuote(*at, quote)) break;
        do {
            if (++at == end) return kNotFound;
        } while (!IsQuote(*at, quote));
        if (*at == wanted) break;  // the quote that ends a quotation may itself be wanted
        ++at;
    }
    return static_cast<std::size_t>(at - text.characters);
}

// The index of the first occurrence at or after `start` that lies outside quotes, kNotFound if
// there is none. Reading starts outside quotes. An empty needle does not occur.
template <class T>
std::size_t FindRun(const Run<T>& text, const Run<T>& needle, std::size_t start, std::int32_t quote,
                    bool caseSensitive) {
    if (needle.count == 0 || needle.count > text.count || start > text.count - needle.count) {
        return kNotFound;
    }
    if (quote < 0 && caseSensitive) return FindPlain(text, needle, start);
    if (needle.count == 1 && caseSensitive) {
        return FindOutsideQuotes(text, needle.characters[0], start, quote);
    }
    bool inQuote = false;
    for (std::size_t at = start; at + needle.count <= text.count; ++at) {
        if (IsQuote(text.characters[at], quote)) inQuote = !inQuote;
        if (!inQuote && StandsAt(text, needle, at, quote, caseSensitive)) return at;
    }
    return kNotFound;
}

}  // namespace detail
}  // namespace TamLib
