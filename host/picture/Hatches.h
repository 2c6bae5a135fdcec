// The areas that hatches fill.
#pragma once

#include <optional>

#include "host/dxf/Document.h"
#include "host/picture/Path.h"

namespace host::picture {

struct HatchArea {
    Path boundary;  // closed rings in world coordinates, curves in chords
    bool isSolid = false;
};

// The area of a HATCH by its record; nothing when it has no ring of three points.
std::optional<HatchArea> areaOfHatch(const dxf::Document& document, dxf::RecordIndex record);

}  // namespace host::picture
