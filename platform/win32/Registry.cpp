// The registry's calls: handles, access, and texts between UTF-16 and wide characters.
#include <algorithm>
#include <cstring>
#include <mutex>

#include "Faults.h"
#include "PathNames.h"
#include "RegistryStore.h"
#include "windows.h"

namespace {

using posix::RegistryKey;
using posix::RegistryPath;
using posix::RegistryValue;

constexpr std::size_t kLongestKeyName = 255;
constexpr std::size_t kLongestValueName = 16383;
constexpr REGSAM kMaximumAllowed = 0x2000000;

struct OpenKey {
    RegistryPath path;
    REGSAM access = 0;
};

struct OpenKeys {
    std::mutex guard;
    std::map<ULONG_PTR, OpenKey> keys;
    ULONG_PTR last = 0x100;
};

OpenKeys& TheKeys() {
    static auto* const keys = new OpenKeys;
    return *keys;
}

// The name of a root that is always open, null for any other handle.
const wchar_t* RootName(HKEY key) {
    if (key == HKEY_CLASSES_ROOT) return L"HKEY_CLASSES_ROOT";
    if (key == HKEY_CURRENT_USER) return L"HKEY_CURRENT_USER";
    if (key == HKEY_LOCAL_MACHINE) return L"HKEY_LOCAL_MACHINE";
    if (key == HKEY_USERS) return L"HKEY_USERS";
    if (key == HKEY_CURRENT_CONFIG) return L"HKEY_CURRENT_CONFIG";
    return nullptr;
}

// Finds what a handle stands for; the code of a failure.
DWORD Lookup(HKEY key, REGSAM wanted, OpenKey& found) {
    if (key == HKEY_DYN_DATA) return ERROR_FILE_NOT_FOUND;
    if (const wchar_t* const root = RootName(key)) {
        found = {{root}, KEY_ALL_ACCESS};
        return ERROR_SUCCESS;
    }
    OpenKeys& open = TheKeys();
    const std::lock_guard<std::mutex> lock(open.guard);
    const auto entry = open.keys.find(reinterpret_cast<ULONG_PTR>(key));
    if (entry == open.keys.end()) return ERROR_INVALID_HANDLE;
    found = entry->second;
    return (found.access & wanted) == wanted ? ERROR_SUCCESS : ERROR_ACCESS_DENIED;
}

HKEY Open(const RegistryPath& path, REGSAM access) {
    OpenKeys& open = TheKeys();
    const std::lock_guard<std::mutex> lock(open.guard);
    open.last += 4;  // a handle is not used again
    open.keys[open.last] = {path, (access & kMaximumAllowed) != 0 ? KEY_ALL_ACCESS : access};
    return reinterpret_cast<HKEY>(open.last);
}

// The path of a key below another; 87 for a name that is too long.
DWORD Below(RegistryPath& path, LPCWSTR subkey) {
    const std::wstring names = subkey != nullptr ? subkey : L"";
    for (std::size_t at = 0; at < names.size();) {
        const std::size_t end = std::min(names.find(L'\\', at), names.size());
        if (end - at > kLongestKeyName) return ERROR_INVALID_PARAMETER;
        if (end != at) path.push_back(names.substr(at, end - at));
        at = end + 1;
    }
    return ERROR_SUCCESS;
}

// Roots are there without having been made.
RegistryKey* KeyAt(RegistryKey& top, const RegistryPath& path) {
    top.Make(path.front());
    return FindKey(top, path);
}

bool OfMachine(RegistryKey& top, const RegistryPath& path) {
    RegistryKey* key = &top;
    for (const std::wstring& piece : path) {
        const auto found = key->keys.find(posix::FoldName(piece));
        if (found == key->keys.end()) return false;
        key = &found->second;
        if (key->ofMachine) return true;
    }
    return false;
}

// ---- Texts ----

bool IsText(DWORD type) {
    return type == REG_SZ || type == REG_EXPAND_SZ || type == REG_MULTI_SZ;
}

void AppendUnit(std::vector<BYTE>& bytes, std::uint32_t unit) {
    bytes.push_back(static_cast<BYTE>(unit));
    bytes.push_back(static_cast<BYTE>(unit >> 8));
}

// The first `size` bytes of a text as UTF-16, with the terminator that may stand right behind it.
std::vector<BYTE> TextBytes(const wchar_t* text, std::size_t size) {
    std::vector<BYTE> bytes;
    const wchar_t* next = text;
    const auto append = [&bytes](wchar_t c) {
        const auto code = static_cast<std::uint32_t>(c);  // NOLINT(bugprone-signed-char-misuse)
        if (code > 0xFFFFu) AppendUnit(bytes, 0xD7C0u + (code >> 10));
        AppendUnit(bytes, code > 0xFFFFu ? 0xDC00u | (code & 0x3FFu) : code);
    };
    while (bytes.size() < size / 2 * 2) append(*next++);
    const bool terminated =
        size >= 2 && bytes.size() == size / 2 * 2 && next[-1] != 0 && *next == 0;
    if (terminated) size += 2;
    while (bytes.size() < size) append(*next++);
    bytes.resize(size);
    return bytes;
}

// Fills (bytes + 1) / 2 wide characters; pairs become one character and zeros fill up.
void FillText(const std::vector<BYTE>& bytes, wchar_t* text) {
    const std::size_t room = (bytes.size() + 1) / 2;
    const auto unit = [&bytes](std::size_t i) -> std::uint32_t {
        const std::uint32_t high = 2 * i + 1 < bytes.size() ? bytes[2 * i + 1] : 0u;
        return 2 * i < bytes.size() ? bytes[2 * i] | high << 8 : 0u;
    };
    std::size_t filled = 0;
    for (std::size_t i = 0; i < room; ++i) {
        std::uint32_t code = unit(i);
        const std::uint32_t next = unit(i + 1);
        if ((code & 0xFC00u) == 0xD800u && (next & 0xFC00u) == 0xDC00u) {
            code = 0x10000u + ((code & 0x3FFu) << 10) + (next & 0x3FFu);
            ++i;
        }
        text[filled++] = static_cast<wchar_t>(code);
    }
    std::fill(text + filled, text + room, L'\0');
}

// Hands a value's data out as the caller's buffer allows.
DWORD GiveData(const RegistryValue& value, LPDWORD type, LPBYTE data, LPDWORD size) {
    if (type != nullptr) *type = value.type;
    if (size == nullptr) return data == nullptr ? ERROR_SUCCESS : ERROR_INVALID_PARAMETER;
    const DWORD room = *size;
    *size = static_cast<DWORD>(value.data.size());
    if (data == nullptr) return ERROR_SUCCESS;
    if (room < value.data.size()) return ERROR_MORE_DATA;
    if (IsText(value.type)) {
        FillText(value.data, reinterpret_cast<wchar_t*>(data));
    } else if (!value.data.empty()) {
        std::memcpy(data, value.data.data(), value.data.size());
    }
    return ERROR_SUCCESS;
}

// Hands a name out; `size` is the room with a terminator, then the length.
DWORD GiveName(const std::wstring& text, LPWSTR name, LPDWORD size) {
    if (*size < text.size() + 1) return ERROR_MORE_DATA;
    std::wmemcpy(name, text.c_str(), text.size() + 1);
    *size = static_cast<DWORD>(text.size());
    return ERROR_SUCCESS;
}

// Looks at an open key.
template <class Function>
LSTATUS Look(HKEY handle, REGSAM wanted, Function function) {
    OpenKey open;
    DWORD code = Lookup(handle, wanted, open);
    if (code == ERROR_SUCCESS) {
        code = posix::LookIntoRegistry([&](RegistryKey& top) -> DWORD {
            RegistryKey* const key = KeyAt(top, open.path);
            return key != nullptr ? function(*key) : ERROR_KEY_DELETED;
        });
    }
    return static_cast<LSTATUS>(code);
}

// Changes an open key.
template <class Function>
LSTATUS Change(HKEY handle, REGSAM wanted, Function function) {
    OpenKey open;
    DWORD code = Lookup(handle, wanted, open);
    if (code == ERROR_SUCCESS) {
        code = posix::ChangeRegistry([&](RegistryKey& top) -> DWORD {
            if (OfMachine(top, open.path)) return ERROR_ACCESS_DENIED;
            RegistryKey* const key = KeyAt(top, open.path);
            return key != nullptr ? function(*key) : ERROR_KEY_DELETED;
        });
    }
    return static_cast<LSTATUS>(code);
}

// The code that a test has ordered, 0 for none.
LSTATUS Ordered(const char* function) {
    DWORD code = ERROR_SUCCESS;
    return posix::Refused(function, &code) ? static_cast<LSTATUS>(code) : 0;
}

std::wstring NameOrDefault(LPCWSTR name) {
    return name != nullptr ? name : L"";
}

template <class Number>
void Tell(LPDWORD target, Number number) {
    if (target != nullptr) *target = static_cast<DWORD>(number);
}

DWORD OpenBelow(HKEY key, LPCWSTR subkey, REGSAM access, PHKEY result) {
    OpenKey open;
    DWORD code = Lookup(key, 0, open);
    if (code == ERROR_SUCCESS) code = Below(open.path, subkey);
    if (code == ERROR_SUCCESS) {
        code = posix::LookIntoRegistry([&open, access](RegistryKey& top) -> DWORD {
            if (KeyAt(top, open.path) == nullptr) return ERROR_FILE_NOT_FOUND;
            const bool writes = (access & (KEY_SET_VALUE | KEY_CREATE_SUB_KEY)) != 0;
            return writes && OfMachine(top, open.path) ? ERROR_ACCESS_DENIED : ERROR_SUCCESS;
        });
    }
    if (code == ERROR_SUCCESS) *result = Open(open.path, access);
    return code;
}

DWORD MakeBelow(HKEY key, LPCWSTR subkey, REGSAM access, PHKEY result) {
    OpenKey open;
    DWORD code = Lookup(key, KEY_CREATE_SUB_KEY, open);
    if (code == ERROR_SUCCESS) code = Below(open.path, subkey);
    if (code == ERROR_SUCCESS) {
        code = posix::ChangeRegistry([&open](RegistryKey& top) -> DWORD {
            if (OfMachine(top, open.path)) return ERROR_ACCESS_DENIED;
            RegistryKey* made = &top;
            for (const std::wstring& piece : open.path) made = &made->Make(piece);
            return ERROR_SUCCESS;
        });
    }
    if (code == ERROR_SUCCESS) *result = Open(open.path, access);
    return code;
}

}  // namespace

LSTATUS RegOpenKeyExW(HKEY key, LPCWSTR subkey, DWORD /*options*/, REGSAM access, PHKEY result) {
    if (const LSTATUS ordered = Ordered("RegOpenKeyExW")) return ordered;
    return static_cast<LSTATUS>(OpenBelow(key, subkey, access, result));
}

LSTATUS RegCreateKeyExW(HKEY key, LPCWSTR subkey, DWORD /*reserved*/, LPWSTR /*keyClass*/,
                        DWORD /*options*/, REGSAM access, const SECURITY_ATTRIBUTES* /*security*/,
                        PHKEY result, LPDWORD disposition) {
    if (const LSTATUS ordered = Ordered("RegCreateKeyExW")) return ordered;
    constexpr DWORD kCreatedNew = 1;
    constexpr DWORD kOpenedExisting = 2;
    const bool existed = OpenBelow(key, subkey, access, result) == ERROR_SUCCESS;
    Tell(disposition, existed ? kOpenedExisting : kCreatedNew);
    return existed ? 0 : static_cast<LSTATUS>(MakeBelow(key, subkey, access, result));
}

LSTATUS RegCreateKeyW(HKEY key, LPCWSTR subkey, PHKEY result) {
    if (const LSTATUS ordered = Ordered("RegCreateKeyW")) return ordered;
    if (OpenBelow(key, subkey, kMaximumAllowed, result) == ERROR_SUCCESS) return 0;
    return static_cast<LSTATUS>(MakeBelow(key, subkey, kMaximumAllowed, result));
}

LSTATUS RegCloseKey(HKEY key) {
    if (RootName(key) != nullptr) return 0;
    OpenKeys& open = TheKeys();
    const std::lock_guard<std::mutex> lock(open.guard);
    return open.keys.erase(reinterpret_cast<ULONG_PTR>(key)) != 0
               ? 0
               : static_cast<LSTATUS>(ERROR_INVALID_HANDLE);
}

LSTATUS RegSetValueExW(HKEY key, LPCWSTR name, DWORD /*reserved*/, DWORD type, const BYTE* data,
                       DWORD size) {
    if (const LSTATUS ordered = Ordered("RegSetValueExW")) return ordered;
    RegistryValue value{NameOrDefault(name), type, {}};
    if (value.name.size() > kLongestValueName) return ERROR_INVALID_PARAMETER;
    if (size != 0) {
        value.data = IsText(type) ? TextBytes(reinterpret_cast<const wchar_t*>(data), size)
                                  : std::vector<BYTE>(data, data + size);
    }
    return Change(key, KEY_SET_VALUE, [&value](RegistryKey& found) -> DWORD {
        if (RegistryValue* const before = found.Find(value.name)) {
            before->type = value.type;
            before->data = value.data;
        } else {
            found.values.push_back(value);
        }
        return ERROR_SUCCESS;
    });
}

LSTATUS RegQueryValueExW(HKEY key, LPCWSTR name, LPDWORD /*reserved*/, LPDWORD type, LPBYTE data,
                         LPDWORD size) {
    if (const LSTATUS ordered = Ordered("RegQueryValueExW")) return ordered;
    return Look(key, KEY_QUERY_VALUE, [=](RegistryKey& found) -> DWORD {
        const RegistryValue* const value = found.Find(NameOrDefault(name));
        return value != nullptr ? GiveData(*value, type, data, size) : ERROR_FILE_NOT_FOUND;
    });
}

LSTATUS RegDeleteValueW(HKEY key, LPCWSTR name) {
    if (const LSTATUS ordered = Ordered("RegDeleteValueW")) return ordered;
    return Change(key, KEY_SET_VALUE, [name](RegistryKey& found) -> DWORD {
        const RegistryValue* const value = found.Find(NameOrDefault(name));
        if (value == nullptr) return ERROR_FILE_NOT_FOUND;
        found.values.erase(found.values.begin() + (value - found.values.data()));
        return ERROR_SUCCESS;
    });
}

LSTATUS RegDeleteTreeW(HKEY key, LPCWSTR subkey) {
    RegistryPath below;
    const DWORD code = Below(below, subkey);
    if (code != ERROR_SUCCESS) return static_cast<LSTATUS>(code);
    return Change(key, KEY_CREATE_SUB_KEY, [&below](RegistryKey& found) -> DWORD {
        if (below.empty()) {
            found.keys.clear();
            found.values.clear();
            return ERROR_SUCCESS;
        }
        const std::wstring last = posix::FoldName(below.back());
        below.pop_back();
        RegistryKey* const parent = FindKey(found, below);
        return parent != nullptr && parent->keys.erase(last) != 0 ? ERROR_SUCCESS
                                                                  : ERROR_FILE_NOT_FOUND;
    });
}

LSTATUS RegQueryInfoKeyW(HKEY key, LPWSTR /*keyClass*/, LPDWORD /*classSize*/, LPDWORD /*reserved*/,
                         LPDWORD keys, LPDWORD longestKey, LPDWORD longestClass, LPDWORD values,
                         LPDWORD longestValue, LPDWORD largestData, LPDWORD securitySize,
                         FILETIME* written) {
    if (const LSTATUS ordered = Ordered("RegQueryInfoKeyW")) return ordered;
    return Look(key, KEY_QUERY_VALUE, [=](RegistryKey& found) -> DWORD {
        std::size_t keyLength = 0;
        std::size_t valueLength = 0;
        std::size_t dataSize = 0;
        for (const auto& [folded, below] : found.keys)
            keyLength = std::max(keyLength, below.name.size());
        for (const RegistryValue& value : found.values) {
            valueLength = std::max(valueLength, value.name.size());
            dataSize = std::max(dataSize, value.data.size());
        }
        Tell(keys, found.keys.size());
        Tell(longestKey, keyLength);
        Tell(longestClass, 0);
        Tell(values, found.values.size());
        Tell(longestValue, valueLength);
        Tell(largestData, dataSize);
        Tell(securitySize, 0);
        if (written != nullptr) *written = {};
        return ERROR_SUCCESS;
    });
}

LSTATUS RegEnumKeyExW(HKEY key, DWORD index, LPWSTR name, LPDWORD size, LPDWORD /*reserved*/,
                      LPWSTR /*keyClass*/, LPDWORD /*classSize*/, FILETIME* /*written*/) {
    if (const LSTATUS ordered = Ordered("RegEnumKeyExW")) return ordered;
    return Look(key, KEY_ENUMERATE_SUB_KEYS, [=](RegistryKey& found) -> DWORD {
        if (index >= found.keys.size()) return ERROR_NO_MORE_ITEMS;
        return GiveName(std::next(found.keys.begin(), index)->second.name, name, size);
    });
}

LSTATUS RegEnumValueW(HKEY key, DWORD index, LPWSTR name, LPDWORD size, LPDWORD /*reserved*/,
                      LPDWORD type, LPBYTE /*data*/, LPDWORD /*dataSize*/) {
    if (const LSTATUS ordered = Ordered("RegEnumValueW")) return ordered;
    return Look(key, KEY_QUERY_VALUE, [=](RegistryKey& found) -> DWORD {
        if (index >= found.values.size()) return ERROR_NO_MORE_ITEMS;
        Tell(type, found.values[index].type);
        return GiveName(found.values[index].name, name, size);
    });
}
