// Bodies of solids as text: the records of the ACIS format (SAT), version 4.00, and the way in
// which drawings encode them.
#pragma once

#include <gepnt3d.h>
#include <gevec3d.h>

#include <string>
#include <vector>

#include "host/database/RegionLoops.h"

namespace host::database {

// A cylinder from its base to base + axis, one line each: three of heading, the records, the end.
std::vector<std::string> cylinderText(const AcGePoint3d& base, const AcGeVector3d& axis,
                                      double radius);

// The plane figure within a loop, in the same form.
std::vector<std::string> regionText(const RegionLoop& loop);

// A line as it stands in a drawing: the sum of a character's and its image's codes is 159, blanks
// stay. An A becomes a caret, which a drawing writes with a blank behind it.
std::string encodedBody(const std::string& line);

}  // namespace host::database
