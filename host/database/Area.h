// The areas of plane figures.
#pragma once

#include <dbmain.h>

#include <optional>

namespace host::database {

// The area within a closed curve that lies in a plane, to a millionth of its extent, and of a
// region that was made of curves, in the plane that it lies in. What is run around the other way
// counts against the rest, as with a curve that crosses itself. None for everything else, and for
// what encloses nothing.
//
// By Green's theorem, with five points of Gauss and Legendre on each of sixteen parts of a span
// that is no straight line: exact for polynomials, within 1e-12 of the area for arcs of a turn.
std::optional<double> enclosedArea(const AcDbEntity& entity);

}  // namespace host::database
