// The words of the command line, told apart: options, their values, and names.
//
// The words are taken apart by CLI11, and its forms are accepted:
//   --name, --name VALUE, --name=VALUE, -n, -n VALUE, -nVALUE; -abVALUE for -a -b VALUE;
//   /name, /name VALUE, /name:VALUE, with a name or letter of ours; "--" ends the options.
// So the switches of the well-known console, /i, /s and /readonly, stand for ours; they and the
// options they stand for are read in any case. --flag=true is --flag.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace host::console {

struct OptionForm {
    const char* name;         // "--output"
    const char* letter = "";  // "-o"
    const char* slash = "";   // "/i": refused in the place of a file; makes case indifferent
    const char* needs = "";   // its value, as in "-o needs the name of a file"; "": takes none
    bool isFile = true;       // the value is a file, which does not begin with "-"
    bool mayRepeat = false;
    bool takesDash = false;      // "-" is a value
    const char* elsewhere = "";  // why it has no place here, behind its name; "": it has
};

struct GivenOption {
    std::string name;   // OptionForm::name
    std::string typed;  // the spelling that was typed, "-o" or "--output"; "-i" for "/i"
    std::string value;  // "true" of an option that takes none
};

struct Arguments {
    std::vector<GivenOption> options;
    std::vector<std::string> names;
    std::size_t namesBeforeDashes = 0;  // how many of them stand before "--"

    bool has(std::string_view option) const;
    // The value of an option that is given at most once; empty when it is not.
    std::string value(std::string_view option) const;
    std::vector<std::string> values(std::string_view option) const;
};

// Throws std::invalid_argument with a whole sentence, in the words that were typed: an unknown
// option (with the nearest one), one without its value or with one too many, one given twice, an
// option in the place of a file, an empty value or name, a name that begins with "-".
Arguments readArguments(const std::vector<std::string>& words,
                        const std::vector<OptionForm>& forms);

// Throws std::invalid_argument for the first option that has its place elsewhere.
void refuseMisplaced(const Arguments& given, const std::vector<OptionForm>& forms);

}  // namespace host::console
