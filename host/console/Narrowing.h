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

// The entities of model space that every filter lets pass, however their layers stand, in the
// drawing's order. Layers and types match without regard to case, with the wild cards of the host's
// own filters. What is not visible passes no window.
std::vector<AcDbObjectId> passing(const AcDbDatabase& drawing, const std::vector<Filter>& filters);

struct Narrowed {
    std::vector<AcDbObjectId> entities;
    std::vector<AcDbObjectId> lockedOut;  // would be among them on a layer that isn't locked
};

// Of those that pass the ones that ALL would select.
Narrowed narrowed(const AcDbDatabase& drawing, const std::vector<Filter>& filters);

// The lines (editor::isLine) in model space on the layer of this name, case ignored, however it
// stands.
std::vector<AcDbObjectId> linesOn(const AcDbDatabase& drawing, const std::string& layer);

}  // namespace host::console
