// Group codes of DXF and the kind of value that follows each, by the ranges of the format.
#ifndef HOST_DXF_CODES_H
#define HOST_DXF_CODES_H

#include <cstdint>

namespace host::dxf {

// How a value is to be understood. In an ASCII file every value is one line of text whatever its
// type; in a binary file the type decides how many bytes it takes:
//   text, handle  bytes up to a NUL         int16    2 bytes
//   real          8 bytes, IEEE double      int32    4 bytes
//   chunk         1 byte length, then data  int64    8 bytes
//   boolean       1 byte
// Numbers are little-endian.
enum class ValueType : std::uint8_t { text, handle, real, int16, int32, int64, boolean, chunk };

// Whether the format defines `code`: 0-79, 90-102, 105, 110-149, 160-179, 210-239, 270-481,
// 999-1071. A binary file with another code can't be read on, for the length of its value is
// unknown.
bool isKnownCode(int code);

// The type of the value that follows `code`; text for codes that are not known.
ValueType valueType(int code);

}  // namespace host::dxf

#endif
