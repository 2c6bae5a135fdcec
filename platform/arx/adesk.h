// The interface's basic types: fixed-size integers, its truth value and its character. ACHAR is the
// wide character of the build: 2 bytes under Windows, 4 natively.
#pragma once

#include <cstdint>

using ACHAR = wchar_t;

#define ACRX_T(text) L##text

class Adesk {
  public:
    using Int8 = std::int8_t;
    using Int16 = std::int16_t;
    using Int32 = std::int32_t;
    using Int64 = std::int64_t;
    using UInt8 = std::uint8_t;
    using UInt16 = std::uint16_t;
    using UInt32 = std::uint32_t;
    using UInt64 = std::uint64_t;
    using IntDbId = std::int64_t;
    using IntPtr = std::intptr_t;
    using GsMarker = std::intptr_t;
    using Boolean = bool;

    static constexpr Boolean kFalse = false;
    static constexpr Boolean kTrue = true;
};
