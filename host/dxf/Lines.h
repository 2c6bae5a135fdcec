// Lines of an ASCII drawing and values of a binary one, at the level of bytes.
#ifndef HOST_DXF_LINES_H
#define HOST_DXF_LINES_H

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "host/dxf/Codes.h"

namespace host::dxf {

// A line: its text runs to `end`, the next line begins at `next`.
struct LineSpan {
    const char* end;
    const char* next;
};

// The line that begins at `at`. It ends at a line feed, with returns before it, or at `fileEnd`;
// with `loneReturns` also at a return alone.
inline LineSpan lineAt(const char* at, const char* fileEnd, bool loneReturns) {
    if (at >= fileEnd) return {fileEnd, fileEnd};
    if (loneReturns) {
        const char* stop = at;
        while (stop < fileEnd && *stop != '\r' && *stop != '\n') ++stop;
        if (stop == fileEnd) return {stop, stop};
        const bool pair = *stop == '\r' && stop + 1 < fileEnd && stop[1] == '\n';
        return {stop, stop + (pair ? 2 : 1)};
    }
    const auto* feed =
        static_cast<const char*>(std::memchr(at, '\n', static_cast<std::size_t>(fileEnd - at)));
    const char* next = feed == nullptr ? fileEnd : feed + 1;
    const char* end = feed == nullptr ? fileEnd : feed;
    while (end > at && end[-1] == '\r') --end;
    return {end, next};
}

// A little-endian number of `T`'s size.
template <class T>
T loadNumber(const char* at) {
    static_assert(sizeof(T) <= 8);
    T number;
    std::memcpy(&number, at, sizeof(T));
    return number;
}

// The index of the lowest byte of `mask` that is not 0, where bytes are 0 or 80 and one is not 0.
inline std::size_t lowestByte(std::uint64_t mask) {
#if defined(__GNUC__)
    return static_cast<std::size_t>(__builtin_ctzll(mask)) / 8;
#else
    std::size_t index = 0;
    for (; (mask & 0x80) == 0; mask >>= 8) ++index;
    return index;
#endif
}

// Bytes behind a drawing's last that may be read, all of them 0. They let the scanner look at eight
// bytes at a time.
constexpr std::size_t kPadding = 16;

// A mask with 80 in each byte of `word` that is no decimal digit, 0 in the others.
constexpr std::uint64_t nonDigits(std::uint64_t word) {
    const std::uint64_t value = word ^ 0x3030303030303030ULL;
    return (((value & 0x7F7F7F7F7F7F7F7FULL) + 0x7676767676767676ULL) | value) &
           0x8080808080808080ULL;
}

// The first byte from `at` on that is no decimal digit; `at` is followed by padding.
inline const char* skipDigits(const char* at) {
    for (;; at += 8) {
        const std::uint64_t mask = nonDigits(loadNumber<std::uint64_t>(at));
        if (mask != 0) return at + lowestByte(mask);
    }
}

// No group code: the line needs a closer look.
constexpr int kUnusualCode = -1;

// The group code on a line of at most 4 digits with blanks before them and a plain line end, and
// `value`, where the next line begins; kUnusualCode for any other line, `value` as it was. `at` is
// followed by padding. All lines are handled alike, without branches on their length: a wrong guess
// of the processor costs more than the arithmetic.
inline int plainCode(const char* at, const char*& value) {
    const auto word = loadNumber<std::uint64_t>(at);
    const std::uint64_t feeds = word ^ 0x0A0A0A0A0A0A0A0AULL;
    const std::uint64_t found = (feeds - 0x0101010101010101ULL) & ~feeds & 0x8080808080808080ULL;
    if (found == 0) return kUnusualCode;
    const std::size_t feed = lowestByte(found);
    const std::size_t length = feed - (feed > 0 && at[feed - 1] == '\r' ? 1 : 0);
    if (length == 0 || length > 4) return kUnusualCode;
    // The characters, moved to the end of 4 bytes, blanks before them. Blanks may stand at the head
    // only, which is the low end, and not everywhere.
    const std::uint64_t text = (word << (64 - 8 * length)) >> 32 | 0x20202020ULL >> (8 * length);
    const std::uint64_t blanks = ((nonDigits(text) & 0x80808080ULL) >> 7) * 0xFF;
    const bool plain = ((text ^ 0x20202020ULL) & blanks) == 0 && (blanks & (blanks + 1)) == 0 &&
                       blanks != 0xFFFFFFFFULL;
    if (!plain) return kUnusualCode;
    const auto digit = [text](unsigned place) {
        return static_cast<int>((text >> (8 * place)) & 0x0F);
    };
    const int code = digit(0) * 1000 + digit(1) * 100 + digit(2) * 10 + digit(3);
    value = at + feed + 1;
    return code;
}

// Whether a byte above 7F is among `value`.
inline bool hasHighBytes(std::string_view value) {
    std::uint64_t seen = 0;
    std::size_t at = 0;
    for (; at + 8 <= value.size(); at += 8) seen |= loadNumber<std::uint64_t>(value.data() + at);
    seen &= 0x8080808080808080ULL;
    for (; at < value.size(); ++at) seen |= static_cast<unsigned char>(value[at]) & 0x80U;
    return seen != 0;
}

// Bytes that a binary value of `type` takes, where the type alone decides it; 0 for texts, handles
// and chunks.
constexpr std::size_t fixedSize(ValueType type) {
    switch (type) {
        case ValueType::real:
        case ValueType::int64:
            return 8;
        case ValueType::int32:
            return 4;
        case ValueType::int16:
            return 2;
        case ValueType::boolean:
            return 1;
        default:
            return 0;
    }
}

// The code that 1-byte-code files put before a code of two bytes.
constexpr int kWideCodeFollows = 255;

constexpr char kSentinel[] = "AutoCAD Binary DXF\r\n\x1a";  // with its closing NUL
constexpr std::size_t kSentinelSize = sizeof(kSentinel);

}  // namespace host::dxf

#endif
