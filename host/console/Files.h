// Files that are read as a whole, and whether two names mean one file.
#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>

namespace host::console {

// what() says which file and why, as a whole sentence.
class UnreadableFile : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// The text of a script, decoded (editor::decodeScript). Throws UnreadableFile: it is not there,
// can't be read, is a folder, or holds bytes that no script has (a NUL in a file that is not
// UTF-16).
std::wstring readScript(const std::filesystem::path& path);

// True when both names lead to one file, also through links; a file that is not there yet is
// compared by name. An empty name is no file.
bool isSameFile(const std::filesystem::path& a, const std::filesystem::path& b);

// What keeps a new file of that name from being made, as the end of a sentence, when its folder is
// missing: "there is no folder out; make it first". Empty when the folder is there.
std::string missingFolder(const std::filesystem::path& file);

}  // namespace host::console
