// What the stand-in records about classes made at run time, for tests.
#pragma once

#include <string>
#include <vector>

namespace host::database {

// Calls of acrxBuildClassHierarchy ("build") and of deleteAcRxClass ("delete CLASSNAME") in their
// order, since the last clearing.
const std::vector<std::wstring>& classHierarchyRecord();
void clearClassHierarchyRecord();

}  // namespace host::database
