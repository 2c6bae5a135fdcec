// What the texts of a drawing say, without the codes that stand in them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace host::picture {

// Letters that are written alike.
struct Run {
    std::wstring text;
    bool underlined = false;
    bool overlined = false;
    bool struck = false;
};

// Texts longer than this are cut off and end with an ellipsis; lines beyond the last are left out.
constexpr std::size_t longestText = 4000;
constexpr std::size_t mostLines = 500;

// A TEXT, ATTRIB or ATTDEF. %%d, %%p and %%c become degree, plus-minus and diameter signs, %%%
// a per cent sign, %%nnn the character with that decimal number from 1 to 255 (in Windows' Western
// code page; control characters are nothing, a tab is a blank); %%u, %%o and %%k begin and end
// lines under, over and through the letters. A caret and a letter stand for a control character, of
// which a tab becomes a blank and the others nothing; a caret and a blank for a caret. Anything
// else stays.
std::vector<Run> runsOf(std::wstring_view text);

// The letters of all runs.
std::wstring lettersOf(const std::vector<Run>& runs);

// The lines of an MTEXT: paragraphs end at \P and \N, \S fractions become "1/2", \~ a blank that
// holds words together, a backslash before a backslash or brace that character; %% and caret codes
// as above. Codes for fonts, heights, colours, tabs, lines under letters and the braces around them
// are left out. Lines wider than `width` (in parts of the font size; 0 or below: none is) are
// broken at blanks.
std::vector<std::wstring> linesOf(std::wstring_view contents, double width);

}  // namespace host::picture
