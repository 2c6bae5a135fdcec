// UTF-8 as drawings since R2007 hold it: strict reading, and writing.
#ifndef HOST_DXF_UTF8_H
#define HOST_DXF_UTF8_H

#include <cstddef>
#include <string>
#include <string_view>

namespace host::dxf::utf8 {

constexpr char32_t kReplacement = 0xFFFD;

// The length of the character at the head of `bytes` (1 to 4), or 0 when none stands there:
// overlong forms, surrogates, values above 10FFFF, cut sequences, no bytes at all.
std::size_t sequenceLength(std::string_view bytes);

// Whether `bytes` are UTF-8 from end to end.
bool isValid(std::string_view bytes);

// The character at the head of `bytes`, which is `length` bytes long.
char32_t decodeOne(std::string_view bytes, std::size_t length);

// Appends `character` to `bytes`; surrogates and values above 10FFFF become U+FFFD.
void append(std::string& bytes, char32_t character);

// Appends `character` to `text` as the platform holds wide text: one unit of 4 bytes, or one or two
// of 2 bytes.
void append(std::wstring& text, char32_t character);

}  // namespace host::dxf::utf8

#endif
