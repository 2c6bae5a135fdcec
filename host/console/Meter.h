// Progress of long reads and writes: a line that is drawn over itself, on a terminal only.
#pragma once

#include <string>

#include "host/dxf/Document.h"

namespace host::console {

// A progress function that shows `label` with the percentage on standard error while the work goes
// on, and takes the line away when it is done. Empty when standard error is no terminal. Work that
// is over within a quarter of a second shows nothing.
dxf::Progress progressMeter(std::string label);

}  // namespace host::console
