// A shared library that is loaded while the host runs.
#pragma once

#include <filesystem>
#include <string>

namespace host::editor {

class SharedLibrary {
  public:
    // Loads it. Throws ModuleError with the file and the system's reason.
    explicit SharedLibrary(const std::filesystem::path& path);
    ~SharedLibrary();
    SharedLibrary(const SharedLibrary&) = delete;
    SharedLibrary& operator=(const SharedLibrary&) = delete;

    // The address of an exported function, null when there is none of this name.
    void* function(const char* name) const;

  private:
    void* handle_;
};

}  // namespace host::editor
