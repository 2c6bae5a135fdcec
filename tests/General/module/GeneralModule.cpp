// A module with the library in it, which tells where it lies itself.
#include <cwchar>

#include "General/Paths.h"

#if defined(_WIN32)
#define EXPORTED extern "C" __declspec(dllexport)
#else
#define EXPORTED extern "C" __attribute__((visibility("default")))
#endif

// Copies the module's path, as the library finds it, into a buffer of 600 characters.
EXPORTED void TellPaths(wchar_t* module, wchar_t* program) {
    std::wcscpy(module, TamLib::ModulePath().Data());
    std::wcscpy(program, TamLib::ProgramPath().Data());
}
