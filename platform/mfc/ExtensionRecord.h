// What a test can see and settle of the start and end of extension modules. Only tests include
// this; it has no counterpart in the framework.
#pragma once

#include <string>
#include <vector>

namespace extension_record {

// What modules did since the last `Forget`, in order: "lists aside", "AfxInitExtensionModule",
// "CDynLinkLibrary", "AfxTermExtensionModule".
const std::vector<std::string>& Steps();
void Forget();

// Orders AfxInitExtensionModule to give FALSE, or not to any longer.
void RefuseInit(bool refuse);

}  // namespace extension_record
