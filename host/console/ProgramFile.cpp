#include "host/console/ProgramFile.h"

#ifdef _WIN32
#include <windows.h>

#include <string>
#endif

namespace host::console {

namespace {

std::filesystem::path programFile() {
#ifdef _WIN32
    std::wstring name(260, L'\0');
    for (;;) {
        const DWORD length =
            GetModuleFileNameW(nullptr, name.data(), static_cast<DWORD>(name.size()));
        if (length < name.size()) return name.substr(0, length);
        name.resize(name.size() * 2);
    }
#else
    return std::filesystem::read_symlink("/proc/self/exe");
#endif
}

}  // namespace

std::filesystem::path besideProgram(const std::string& name) {
    return programFile().parent_path() / name;
}

}  // namespace host::console
