// Texts that are handed over to whoever asks, who frees them.
#pragma once

#include <acutmem.h>

#include <string>

namespace host::database {

// A copy of `text`, or null when a failure of `function` was ordered (Fault.h).
ACHAR* newText(const std::wstring& text, const char* function);

}  // namespace host::database
