// Texts as elements of SVG.
#pragma once

#include <string>

#include "host/picture/Look.h"
#include "host/picture/Sheet.h"

namespace host::picture {

// The element, with `head` as its first attributes and `title` as its first child; empty for
// letters that are seen from the edge, too large, or out of the sheet's reach.
std::string textElement(const Sheet& sheet, const std::string& head, const Lettering& lettering,
                        const AcGeMatrix3d& matrix, const std::string& title);

}  // namespace host::picture
