// Where reports of exceptions go: the host's message area.
#pragma once

namespace TamLib {

// From now on TamExpBase::Report() prints its text on the host's command line.
void ReportToMessageArea();

}  // namespace TamLib
