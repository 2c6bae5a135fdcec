// What was probably meant by a name that there is not: for messages that end "did you mean ...?".
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace host::editor {

// The one of `names` that `typed` may stand for, case ignored; empty when none is near. In turn:
//   the only name that begins with it, when it has at least 3 characters;
//   the name with the fewest slips of typing between (a character missing, too many, another one,
//   two neighbours exchanged), the first of several alike: at most 1 slip up to 4 characters, 2 up
//   to 8, otherwise 3;
//   the only name that it is a part of, when it has at least 4 characters.
// A text of more than 64 characters is near to nothing.
std::wstring nearest(std::wstring_view typed, const std::vector<std::wstring>& names);

// "; did you mean QSAVE?", or nothing when none is near.
std::wstring didYouMean(std::wstring_view typed, const std::vector<std::wstring>& names);

// How many slips lie between two texts, case heeded: insertions, deletions, replacements and
// exchanges of neighbours that nothing else touches (optimal string alignment).
std::size_t slips(std::wstring_view a, std::wstring_view b);

}  // namespace host::editor
