// Texts of a drawing as lines of letters in their place.
#pragma once

#include <optional>
#include <vector>

#include "host/database/ObjectFields.h"
#include "host/picture/Look.h"

namespace host::picture {

// A TEXT, ATTRIB or ATTDEF that says `letters`: justified by its groups 72 and 73 (74), aligned
// and fitted ones stretched to span their two points, slanted, mirrored, in the plane of its
// normal. Nothing without letters, and for heights that are not above 0.
std::optional<Lettering> letteringOf(const database::TextFields& text, const std::wstring& letters);

// An MTEXT, whose first line hangs, or last one stands, at its point by its attachment; `rotation`
// in its plane, radians. Lines follow one another at 5/3 of the height.
std::optional<Lettering> letteringOf(const database::MTextFields& text, double rotation);

// The corners of the box around the letters, from where the first one begins, in the plane that the
// lettering lies in.
std::vector<AcGePoint3d> outlineOf(const Lettering& lettering);

}  // namespace host::picture
