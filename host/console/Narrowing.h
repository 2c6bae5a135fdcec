// The entities that the --select options of `orlinth align` leave.
#pragma once

#include <dbid.h>

#include <string>
#include <vector>

#include "host/console/Options.h"

class AcDbDatabase;

namespace host::console {

// True when nothing is narrowed: no filter, or only "all".
bool selectsAll(const std::vector<Filter>& filters);

// The filters in words, as they are given on the command line: "layer=KATU*, type=TEXT".
std::string described(const std::vector<Filter>& filters);

struct Narrowed {
    std::vector<AcDbObjectId> entities;
    std::vector<AcDbObjectId> lockedOut;  // would be among them on a layer that isn't locked
};

// The entities of model space that ALL would select and every filter lets pass, in the drawing's
// order. Layers and types match without regard to case, with the wild cards of the host's own
// filters. What is not visible passes no window.
Narrowed narrowed(const AcDbDatabase& drawing, const std::vector<Filter>& filters);

}  // namespace host::console
