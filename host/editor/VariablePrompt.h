// Setting a system variable at the command line.
#pragma once

#include <string>
#include <string_view>

#include "host/editor/Session.h"
#include "host/editor/Variables.h"

namespace host::editor {

// Asks "Enter new value for NAME <value>: " and sets it; an empty reply keeps the value, "." is the
// empty text. A variable that can only be read is shown. Throws CommandFailure for a value of
// another kind or out of range; Session::Cancelled when the prompt is cancelled.
void askVariable(Session& session, std::wstring_view name);

// SETVAR: asks for a name and sets that variable, or tells the value of one that can only be read.
// "?" asks for a pattern and lists the variables whose names match. Enter takes the last name
// again, the first time it does nothing. Throws as above.
void setVariables(Session& session);

// A value as it is shown and typed: "1", "2.5", "1.0,2.0,0.0", "1920.0,1080.0", or the text itself.
std::wstring variableText(const VariableValue& value);

}  // namespace host::editor
