// Where the running program stands.
#pragma once

#include <filesystem>
#include <string>

namespace host::console {

// The path of `name` in the folder of the running program, however it was called.
std::filesystem::path besideProgram(const std::string& name);

}  // namespace host::console
