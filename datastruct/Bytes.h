// Elements seen as bytes: the comparison, checksum and hash of containers that were given no
// other. All take bytes as unsigned and compute in wrapping 32-bit arithmetic, so that their
// results follow the element's size and byte order (wide characters have 2 bytes on Windows
// and 4 elsewhere).
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace TamLib {

// The size of an element, which may be a pointer on purpose.
template <class T>
inline constexpr std::size_t kElementBytes = sizeof(T);  // NOLINT(bugprone-sizeof-expression)

// -1, 0 or 1 as the first `length` bytes at `first` come before, equal or come after
// those at `second`.
inline std::int32_t CompareBytes(const void* first, const void* second, std::size_t length) {
    const int order = std::memcmp(first, second, length);
    return (order > 0) - (order < 0);
}

// The sum of byte[i] * (i + 1) * 7, i counting from 0; 0 for no bytes.
inline std::uint32_t ByteChecksum(const void* bytes, std::size_t length) {
    const auto* byte = static_cast<const unsigned char*>(bytes);
    std::uint32_t sum = 0;
    for (std::size_t i = 0; i < length; ++i)
        sum += byte[i] * static_cast<std::uint32_t>(i + 1) * 7u;
    return sum;
}

// Starts at 5381 and takes each byte b in order: h = h * 33 + b + (b >> 4).
inline std::uint32_t ByteHash(const void* bytes, std::size_t length) {
    const auto* byte = static_cast<const unsigned char*>(bytes);
    std::uint32_t h = 5381;
    for (std::size_t i = 0; i < length; ++i) h = h * 33u + byte[i] + (byte[i] >> 4);
    return h;
}

}  // namespace TamLib
