// The program orlinth from its arguments to its exit code.
#pragma once

#include <string>
#include <vector>

namespace host::console {

// Does what the arguments (UTF-8, without the program's name) ask and gives the exit code, which
// Exit lists. Nothing is thrown.
int runProgram(const std::vector<std::string>& arguments);

}  // namespace host::console
