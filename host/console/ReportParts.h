// Parts that the JSON of a report and that of a summary share.
#pragma once

#include "host/console/Account.h"
#include "host/console/Json.h"

namespace host::console {

// An object with a member for each reason.
void writeReasons(JsonWriter& json, const ReasonCounts& counts);

// The members "findings" and "omittedFindings" of the object that is open.
void writeFindings(JsonWriter& json, const Findings& findings);

}  // namespace host::console
