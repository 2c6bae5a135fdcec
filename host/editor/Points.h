// Points as people type them.
#pragma once

#include <gepnt3d.h>

#include <optional>
#include <string>
#include <string_view>

namespace host::editor {

// Reads a point:
//   x,y  x,y,z          coordinates; z is 0 when it is left out
//   d<a  d<a,z          distance and angle (degrees, counter-clockwise from +x) from the origin
//   @dx,dy  @dx,dy,dz   from `last`
//   @d<a  @d<a,dz       from `last`
//   @                   `last` itself
// A "*" in front, which asks for world coordinates, changes nothing, because the host works in
// them. Multiples of 90 degrees give coordinates without the rounding of a sine. Numbers have a
// decimal point and stay below 1e99. Anything else gives none.
std::optional<AcGePoint3d> parsePoint(std::wstring_view text, const AcGePoint3d& last);

// "3.5,4.0,0.0": a form that parsePoint reads back to the same point.
std::wstring pointText(const AcGePoint3d& point);

}  // namespace host::editor
