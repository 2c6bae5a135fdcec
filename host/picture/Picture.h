// The picture of a drawing and of what a command did to it, as SVG.
//
// On a sheet of white paper (A4): the drawing north up in its layers' colours; the picked line
// emphasised; what was turned on a light ground, before (pale) and after (full); what was selected
// and left marked with a cross; a legend. docs/picture.md lists groups, classes and attributes. The
// same drawing and change give the same bytes, in every build.
#pragma once

#include <dbmain.h>

#include <string>

#include "host/picture/Change.h"

namespace host::picture {

struct Caption {
    std::wstring drawing;  // its name
    std::wstring command;  // what was run; empty for nothing
};

// The whole file. Entities that can't be seen (layer off or frozen, invisible), have no known look
// or coordinates that are no numbers are left out; the legend says how many lie outside of the
// picture or did not fit into it.
std::string draw(const AcDbDatabase& database, const Change& change, const Caption& caption);

}  // namespace host::picture
