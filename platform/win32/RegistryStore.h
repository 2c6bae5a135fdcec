// The registry's content and its file.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "windef.h"

namespace posix {

struct RegistryValue {
    std::wstring name;
    DWORD type = 0;
    std::vector<BYTE> data;  // texts are UTF-16, the low byte first
};

struct RegistryKey {
    std::wstring name;
    std::vector<RegistryValue> values;
    std::map<std::wstring, RegistryKey> keys;  // by folded name
    bool ofMachine = false;                    // told by the machine, not kept in the file

    RegistryValue* Find(const std::wstring& valueName);
    RegistryKey& Make(const std::wstring& keyName);
};

// A path of keys from a root on, such as HKEY_CURRENT_USER, Software.
using RegistryPath = std::vector<std::wstring>;

// The key at the path, null when there is none.
RegistryKey* FindKey(RegistryKey& top, const RegistryPath& path);

// Shows the present content to `look`, whose result is given back; or the code of what kept it
// from being read.
DWORD LookIntoRegistry(const std::function<DWORD(RegistryKey& top)>& look);

// Lets `change` change the present content and keeps it when that gives 0. Changes of all
// processes come one after the other. The result is that of `change`, or the code of what kept the
// content from being read or written; the file is as it was then.
DWORD ChangeRegistry(const std::function<DWORD(RegistryKey& top)>& change);

}  // namespace posix
