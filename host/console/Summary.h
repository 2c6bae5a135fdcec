// The summary of a call that --summary asks for: a record for each drawing. docs/report.md tells
// it, docs/summary.schema.json is the schema of its JSON.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "host/console/Bulk.h"
#include "host/console/Options.h"

namespace host::console {

// What the call came to: `results` in the order of `tasks`, fewer when the rest was not tried.
struct Summary {
    const std::vector<Options>& tasks;
    const std::vector<TaskResult>& results;
    Exit exit;  // of the whole call
};

std::string jsonSummary(const Summary& summary);
std::string csvSummary(const Summary& summary);

// JSON or CSV by the ending of the name. Raises dxf::WriteError; what stood there is as it was.
void writeSummary(const std::filesystem::path& file, const Summary& summary);

}  // namespace host::console
