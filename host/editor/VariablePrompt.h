// Setting a system variable at the command line.
#pragma once

#include <string>
#include <string_view>

#include "host/editor/SessionState.h"

namespace host::editor {

// Asks "Enter new value for NAME <value>: " and sets it; an empty reply keeps the value, "." is the
// empty text. Throws CommandFailure for a variable that can only be read, for a value of another
// kind or out of range; Session::Cancelled when the prompt is cancelled.
void askVariable(Session::Implementation& state, std::wstring_view name);

// A value as it is shown and typed: "1", "2.5", "1.0,2.0,0.0", or the text itself.
std::wstring variableText(const VariableValue& value);

}  // namespace host::editor
