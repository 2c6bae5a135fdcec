// Paths without the vertices that nobody sees.
#pragma once

#include "host/picture/Path.h"

namespace host::picture {

// The path with fewer straight pieces, in plan: what is left out of it lies within twice the
// tolerance of what is left. Ends of lines stay, curves stay but for those whose handles keep
// within the tolerance, which become straight pieces.
Path thinned(const Path& path, double tolerance);

}  // namespace host::picture
