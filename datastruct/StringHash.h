// The map from strings: Hash with a hash over the characters, and keys that are equal when their
// characters are. Case distinguishes keys unless the keys' own `compare` says otherwise.
#pragma once

#include <cstdint>
#include <cstring>

#include "datastruct/Hash.h"
#include "datastruct/String.h"
#include "datastruct/StringCharacters.h"

namespace TamLib {

// Starts at 0 and takes each character c, as an unsigned number, at position i from 0:
// h = h + ((c + i) | (h << 16)), in wrapping 32-bit arithmetic.
template <class T>
std::uint32_t HashString(const StringBase<T>* text) {
    std::uint32_t h = 0;
    for (std::uint32_t i = 0; i < text->count; ++i) {
        h += (detail::CharNumber(text->data[i]) + i) | (h << 16);
    }
    return h;
}

// Two strings are one key when they have as many characters and each compares equal, by the
// `compare` of the first when it is `bitwise` as strings are and has one, else by itself.
template <class T>
struct HashKeys<StringBase<T>> {
    static bool Equal(const StringBase<T>& first, const StringBase<T>& second) {
        if (first.count != second.count) return false;
        const bool byNumber = !first.bitwise || first.compare == nullptr ||
                              first.compare == &detail::CompareCharacters<T>;
        if (byNumber) {
            // Keys of one chain mostly differ in their last character.
            const std::uint32_t n = first.count;
            return n == 0 || (first.data[n - 1] == second.data[n - 1] &&
                              std::memcmp(first.data, second.data, n * sizeof(T)) == 0);
        }
        for (std::uint32_t i = 0; i < first.count; ++i) {
            if (first.compare(first.data + i, second.data + i) != 0) return false;
        }
        return true;
    }
};

template <class T, class V>
class StringHashBase : public Hash<StringBase<T>, V> {
  public:
    explicit StringHashBase(std::uint32_t bucketCount = 1, std::uint32_t chainLimit = 10)
        : Hash<StringBase<T>, V>(bucketCount, chainLimit, &HashString<T>) {}
};

template <class V>
class StringHash : public StringHashBase<wchar_t, V> {
  public:
    using StringHashBase<wchar_t, V>::StringHashBase;
};

}  // namespace TamLib
