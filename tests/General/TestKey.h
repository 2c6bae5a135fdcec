// A key of the registry of a test's own, deleted with everything in it at the end. Natively the
// whole registry is a fresh one in a folder of the test's.
#pragma once

#include <cstring>
#include <string>
#include <vector>

#include <windows.h>

#include "tests/General/Settled.h"
#include "tests/General/TestFolder.h"

namespace test {

class Key {
  public:
    Key() : folder_(), configuration_("XDG_CONFIG_HOME", folder_.Wide()) {
        narrow_ = "Software\\TamLibTest" + std::to_string(GetCurrentProcessId());
        RegDeleteTreeW(HKEY_CURRENT_USER, Wide().c_str());
    }
    ~Key() { RegDeleteTreeW(HKEY_CURRENT_USER, Wide().c_str()); }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;

    const char* Narrow() const { return narrow_.c_str(); }
    std::wstring Wide() const { return std::wstring(narrow_.begin(), narrow_.end()); }

    // Stores a value past the library; `characters` of a text are wide, one for two bytes.
    void Put(const std::wstring& name, DWORD type, const void* data, DWORD size) const {
        HKEY key = nullptr;
        RegCreateKeyW(HKEY_CURRENT_USER, Wide().c_str(), &key);
        RegSetValueExW(key, name.c_str(), 0, type, static_cast<const BYTE*>(data), size);
        RegCloseKey(key);
    }
    void PutText(const std::wstring& name, DWORD type, const std::wstring& text) const {
        Put(name, type, text.c_str(), static_cast<DWORD>(2 * text.size()));
    }

    // The type and the number of bytes that a value has; {-1, 0} when there is none.
    std::pair<int, DWORD> Stored(const std::wstring& name) const {
        HKEY key = nullptr;
        DWORD type = 0;
        DWORD size = 0;
        if (RegOpenKeyExW(HKEY_CURRENT_USER, Wide().c_str(), 0, KEY_READ, &key) != 0)
            return {-1, 0};
        const LSTATUS code = RegQueryValueExW(key, name.c_str(), nullptr, &type, nullptr, &size);
        RegCloseKey(key);
        return code == 0 ? std::pair(static_cast<int>(type), size) : std::pair(-1, DWORD{0});
    }
    bool Exists() const {
        HKEY key = nullptr;
        const bool exists =
            RegOpenKeyExW(HKEY_CURRENT_USER, Wide().c_str(), 0, KEY_READ, &key) == 0;
        if (exists) RegCloseKey(key);
        return exists;
    }

  private:
    Folder folder_;
    settled::Variable configuration_;
    std::string narrow_;
};

}  // namespace test
