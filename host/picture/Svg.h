// Texts and numbers as SVG holds them. Numbers are the same in every locale and build.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace host::picture {

// A text as it may stand between tags and inside double quotes, in UTF-8. Characters that XML
// forbids become U+FFFD.
std::string escaped(std::wstring_view text);

// With at most so many decimals and no zeros at the end: "12.5", "-3", "0".
std::string fixedText(double value, int decimals);

// With six digits that count.
std::string shortText(double value);

// name="value", after a blank; the value is escaped already.
void addAttribute(std::string& out, std::string_view name, std::string_view value);

}  // namespace host::picture
