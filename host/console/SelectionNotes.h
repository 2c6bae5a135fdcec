// What people are told of a line or a selection that a drawing can't give: what it lacks, and what
// it has instead. Sentences without their full stop unless said otherwise, UTF-8.
#pragma once

#include <string>
#include <vector>

#include "host/console/Options.h"

class AcDbDatabase;

namespace host::console {

// The handles in the filters that no entity of model space has, as they were given.
std::vector<std::string> lackingHandles(const AcDbDatabase& drawing,
                                        const std::vector<Filter>& filters);

// The layers, and the classes of entities, that the filters name and the drawing lacks, with the
// nearest name there is: whole sentences. What has wild cards in it may fit nothing.
std::vector<std::string> lacking(const AcDbDatabase& drawing, const std::vector<Filter>& filters);

// Why nothing can be selected: handles that are not there, locked and frozen layers, filters that
// nothing passes, with what there is.
std::string whyNothing(const AcDbDatabase& drawing, const std::vector<Filter>& filters);

// Why a layer gives no single line: none on it, with the layers that have any, or several, with
// their handles.
std::string whyNoLine(const AcDbDatabase& drawing, const std::string& layer);

}  // namespace host::console
