// Paths as SVG holds them.
#pragma once

#include <string>

#include "host/picture/Path.h"
#include "host/picture/Sheet.h"

namespace host::picture {

// What the sheet reaches of a path in drawing coordinates; empty when that is nothing. Of what is
// to be filled the area is cut.
Path visiblePart(const Sheet& sheet, const Path& path, bool filled);

// The value of the attribute d.
std::string pathData(const Sheet& sheet, const Path& path);

}  // namespace host::picture
