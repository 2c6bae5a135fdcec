// What left a command, in words: class, message, line and source name of the library's exceptions,
// and as much as can be known of any other.
#pragma once

#include <string>

namespace host::console {

// Describes the exception that is being handled; call it inside a catch block. UTF-8, one line or
// more:
//     TamLib::TamExpRange "the message" at line 120 in datastruct/Array
//     std::bad_alloc "std::bad_alloc"
// Exceptions thrown as pointers are described like the others; a TamExpWinSeException that was
// thrown as a pointer is freed. Line and source name are told only for the library's own
// exceptions.
std::string describeException();

}  // namespace host::console
