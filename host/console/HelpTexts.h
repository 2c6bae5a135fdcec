// What --help says.
#pragma once

#include <string_view>

namespace host::console {

extern const std::string_view helpText;       // of `orlinth --help`
extern const std::string_view alignHelpText;  // of `orlinth align --help`

// The ways to call the program: the part of helpText before its options.
std::string_view callForms();

}  // namespace host::console
