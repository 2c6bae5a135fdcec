// Between the wide text of commands and the UTF-8 of the program's borders.
#pragma once

#include <string>
#include <string_view>

namespace host::console {

// What is no character (a lone surrogate, a value above 10FFFF) becomes U+FFFD.
std::string toUtf8(std::wstring_view text);

// Bytes that are no UTF-8 become U+FFFD, one for each.
std::wstring toWide(std::string_view text);

}  // namespace host::console
