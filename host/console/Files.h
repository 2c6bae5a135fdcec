// Files that are read as a whole, and whether two names mean one file.
#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace host::console {

struct Options;

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

// True when the name ends so, in any case: ".json".
bool hasEnding(const std::filesystem::path& file, std::string_view ending);

// The name under which a drawing is written when `file` was given: ".dxf" is added to a name
// without an extension, unless a device or the like stands there.
std::filesystem::path drawingFile(const std::filesystem::path& file);

// Why no drawing is written under that name, as the end of a sentence: ".dwg" and its kin promise
// another format. Empty when it may be.
std::string otherFormat(const std::filesystem::path& file);

// The option by which a report, picture, summary or log is to be written to that file, or that
// names the script or module; null when there is none.
const char* claimant(const Options& options, const std::filesystem::path& file);

// What keeps a new file of that name from being made, as the end of a sentence, when its folder is
// missing: "there is no folder out; make it first". Empty when the folder is there.
std::string missingFolder(const std::filesystem::path& file);

// Sees to it that the folder of `file` is there; those of `makeable` are made, with those above
// them. Throws dxf::WriteError.
void provideFolder(const std::filesystem::path& file,
                   const std::vector<std::filesystem::path>& makeable);

// Throws the dxf::WriteError that writing `file` would meet before anything is written, as far as
// can be told without making anything.
void demandTarget(const std::filesystem::path& file,
                  const std::vector<std::filesystem::path>& makeable);

// A name as reports and messages tell it: UTF-8, where bytes that are none become \xNN and, with
// systems that have such names, a backslash that would read as one of them \x5C.
std::string shownName(const std::filesystem::path& file);
std::string shownText(std::string_view name);

}  // namespace host::console
