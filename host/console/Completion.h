// What the Tab key makes of a line that is being typed. Nothing here knows of terminals.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "host/editor/Console.h"

namespace host::console {

// What may stand in a line.
struct Vocabulary {
    editor::Request::Kind kind = editor::Request::Kind::word;
    std::vector<std::wstring> words;      // commands, or the keywords of the prompt
    std::vector<std::wstring> fileTypes;  // endings of the files that the prompt takes, "" for any
    // Names of LISP in capitals, worked out when somebody asks for them.
    std::function<std::vector<std::wstring>()> symbols;
};

struct Completion {
    std::size_t replaced = 0;  // so many characters before the cursor give way
    std::wstring text;         // to this
    // What could stand there, when there are several that go on differently; sorted.
    std::vector<std::wstring> choices;

    bool changesNothing(std::wstring_view before) const;
};

// Completes what stands before the cursor. The reply that the cursor is in begins behind the last
// blank outside of quotes and parentheses; for free text (Request::Kind::text) at the start of the
// line. It is completed to the longest beginning that all candidates share, case ignored and
// spelled as they are; "_", "." and "'" in front stay as they are.
//   behind "(" and "!"      names of LISP, in small letters unless capitals were typed
//   behind (load "          files ending in .lsp
//   at a prompt for files   files and folders; a name with blanks is put into double quotes
//   behind a command        files and folders, for commands that take them in the same line
//   otherwise               the words
// Nothing fits: nothing is replaced.
Completion complete(std::wstring_view before, const Vocabulary& vocabulary);

}  // namespace host::console
