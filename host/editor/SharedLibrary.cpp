#include "host/editor/SharedLibrary.h"

#include "host/editor/Session.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace host::editor {

namespace {

#ifdef _WIN32

std::string reason() {
    const DWORD code = GetLastError();
    char text[512] = "";
    const DWORD flags = FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
    DWORD length = FormatMessageA(flags, nullptr, code, 0, text, sizeof(text), nullptr);
    while (length > 0 &&
           (text[length - 1] == '\n' || text[length - 1] == '\r' || text[length - 1] == '.')) {
        --length;
    }
    return length == 0 ? "error " + std::to_string(code) : std::string(text, length);
}

void* open(const std::filesystem::path& path) {
    return LoadLibraryExW(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
}

#else

std::string reason() {
    const char* text = dlerror();
    return text == nullptr ? "unknown reason" : text;
}

void* open(const std::filesystem::path& path) {
    return dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
}

#endif

}  // namespace

SharedLibrary::SharedLibrary(const std::filesystem::path& path) : handle_(nullptr) {
    const std::string name = path.u8string();
    std::error_code error;
    if (!std::filesystem::exists(path, error)) {
        throw ModuleError("the module '" + name + "' does not exist");
    }
    if (std::filesystem::is_directory(path, error)) {
        throw ModuleError("the module '" + name + "' is a folder");
    }
    handle_ = open(std::filesystem::absolute(path, error));
    if (handle_ == nullptr)
        throw ModuleError("'" + name + "' can't be loaded as a module: " + reason());
}

SharedLibrary::~SharedLibrary() {
#ifdef _WIN32
    FreeLibrary(static_cast<HMODULE>(handle_));
#else
    dlclose(handle_);
#endif
}

void* SharedLibrary::function(const char* name) const {
#ifdef _WIN32
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(handle_), name));
#else
    return dlsym(handle_, name);
#endif
}

}  // namespace host::editor
