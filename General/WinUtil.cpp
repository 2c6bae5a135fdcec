#include "General/WinUtil.h"

#include <algorithm>
#include <cstdarg>
#include <cstring>

#include "General/HeapBlock.h"
#include "tam/SystemMessage.h"
#include "tam/TamExceptions.h"

namespace TamLib {
namespace {

using Text = StringBase<wchar_t>;

constexpr const wchar_t* kSource = L"General/WinUtil";
constexpr std::int32_t kLineOfRead = 482;

constexpr REGSAM kAllAccess = 0xF003F;
constexpr REGSAM kReadAccess = 0x20019;
constexpr REGSAM kSetValue = 2;

struct RootKey {
    const wchar_t* name;
    HKEY handle;
};

// The name given for a handle stands before its short one.
const auto& RootKeys() {
    static const RootKey keys[] = {{L"HKEY_LOCAL_MACHINE", HKEY_LOCAL_MACHINE},
                                   {L"HKLM", HKEY_LOCAL_MACHINE},
                                   {L"HKEY_CURRENT_USER", HKEY_CURRENT_USER},
                                   {L"HKCU", HKEY_CURRENT_USER},
                                   {L"HKEY_USERS", HKEY_USERS},
                                   {L"HKEY_CURRENT_CONFIG", HKEY_CURRENT_CONFIG},
                                   {L"HKCC", HKEY_CURRENT_CONFIG},
                                   {L"HKEY_DYN_DATA", HKEY_DYN_DATA},
                                   {L"HKEY_CLASSES_ROOT", HKEY_CLASSES_ROOT}};
    return keys;
}

const wchar_t* OrEmpty(const wchar_t* text) {
    return text != nullptr ? text : L"";
}

// A text of the system's code page as a wide one; null is empty.
CString Widened(const char* text, int length = -1) {
    CString wide;
    if (text == nullptr || length == 0) return wide;
    const int size = MultiByteToWideChar(CP_ACP, 0, text, length, nullptr, 0);
    if (size <= 0) return wide;
    wchar_t* const buffer = wide.GetBuffer(size);
    MultiByteToWideChar(CP_ACP, 0, text, length, buffer, size);
    wide.ReleaseBuffer(length == -1 ? -1 : size);
    return wide;
}

// The length of a text in the registry's characters of 16 bits; one beyond them counts two.
std::size_t RegistryLength(const wchar_t* text) {
    std::size_t length = 0;
    for (; *text != 0; ++text) length += static_cast<std::uint32_t>(*text) >> 16 != 0 ? 2 : 1;
    return length;
}

// An open key, closed at the end.
class Key {
  public:
    Key() = default;
    ~Key() {
        if (handle_ != nullptr) RegCloseKey(handle_);
    }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;

    LSTATUS Open(HKEY root, const wchar_t* subkey, REGSAM access) {
        return Kept(RegOpenKeyExW(root, subkey, 0, access, &handle_));
    }
    LSTATUS OpenOrMake(HKEY root, const wchar_t* subkey) {
        const LSTATUS opened = Open(root, subkey, kAllAccess);
        return opened == 0 ? opened : Kept(RegCreateKeyW(root, subkey, &handle_));
    }
    // Opens a key below a root given by name; false for an unknown name, too.
    bool Open(const wchar_t* rootName, const wchar_t* subkey, REGSAM access) {
        HKEY root = nullptr;
        return RegistryRoot(rootName, root) && Open(root, OrEmpty(subkey), access) == 0;
    }
    bool OpenOrMake(const wchar_t* rootName, const wchar_t* subkey) {
        if (Open(rootName, subkey, kSetValue)) return true;
        HKEY root = nullptr;
        return RegistryRoot(rootName, root) &&
               Kept(RegCreateKeyExW(root, OrEmpty(subkey), 0, nullptr, REG_OPTION_NON_VOLATILE,
                                    kSetValue, nullptr, &handle_, nullptr)) == 0;
    }
    HKEY Handle() const { return handle_; }

  private:
    LSTATUS Kept(LSTATUS code) {
        if (code != 0) handle_ = nullptr;
        return code;
    }

    HKEY handle_ = nullptr;
};

// One run of RegistryAccess over an open key: what its messages name, and the value at hand.
class Access {
  public:
    Access(HKEY key, CString* errorText, const wchar_t* root, const CString& subkey)
        : key_(key), errorText_(errorText), root_(root), subkey_(subkey) {}

    bool Write(const CString& name, char specifier, va_list& arguments) const {
        LSTATUS code = 0;
        if (specifier == 'd') {
            const std::int32_t number = va_arg(arguments, std::int32_t);
            code = RegSetValueExW(key_, name, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number),
                                  sizeof number);
        } else if (specifier == 's') {
            const wchar_t* const text = OrEmpty(va_arg(arguments, const wchar_t*));
            // Intended: the length in characters is given as the number of bytes.
            const auto size = static_cast<DWORD>(RegistryLength(text));
            code = RegSetValueExW(key_, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text), size);
        } else {
            return RefuseSpecifier(specifier);
        }
        return code == 0 || RefuseValue(name, L"writing", code);
    }

    bool Read(const CString& name, char specifier, va_list& arguments) const {
        HeapBlock buffer;
        DWORD type = REG_NONE;
        DWORD size = 0;
        const LSTATUS code = Query(name, type, buffer, size);
        if (code != 0) return RefuseValue(name, L"reading", code);
        if (specifier == 'd') {
            if (type != REG_DWORD) return RefuseType(name);
            std::int32_t number = 0;
            std::memcpy(&number, buffer.As(), std::min<std::size_t>(size, sizeof number));
            auto* const target = va_arg(arguments, std::int32_t*);
            if (target != nullptr) *target = number;
            return true;
        }
        if (specifier == 's') {
            if (type != REG_SZ) return RefuseType(name);
            auto* const target = va_arg(arguments, CString*);
            // A text without its terminator ends with the data; one with it, there.
            const auto* const text = buffer.As<const wchar_t>();
            const wchar_t* const end = std::find(text, text + size / 2, L'\0');
            if (target != nullptr) *target = CString(text, static_cast<int>(end - text));
            return true;
        }
        return RefuseSpecifier(specifier);
    }

  private:
    // The value in a buffer that begins with 10 bytes and grows while there is more.
    LSTATUS Query(const CString& name, DWORD& type, HeapBlock& buffer, DWORD& size) const {
        constexpr auto kMore = static_cast<LSTATUS>(ERROR_MORE_DATA);
        LSTATUS code = kMore;
        for (size = 10; code == kMore;) {
            if (!buffer.Take((std::size_t{size} + 1) / 2 * sizeof(wchar_t)))
                return static_cast<LSTATUS>(ERROR_NOT_ENOUGH_MEMORY);
            code = RegQueryValueExW(key_, name, nullptr, &type, buffer.As<BYTE>(), &size);
        }
        return code;
    }

    bool RefuseSpecifier(char specifier) const {
        const auto character = static_cast<wchar_t>(static_cast<unsigned char>(specifier));
        if (errorText_ != nullptr) errorText_->Format(L"Unknown format specifier '%c'", character);
        return false;
    }

    bool RefuseType(const CString& name) const {
        if (errorText_ != nullptr) {
            errorText_->Format(
                L"Registry path '%s\\%s' , key '%s' has different type than expected", root_,
                subkey_.GetString(), name.GetString());
        }
        return false;
    }

    bool RefuseValue(const CString& name, const wchar_t* action, LSTATUS code) const {
        if (errorText_ != nullptr) {
            const SystemMessage reason(static_cast<DWORD>(code));
            errorText_->Format(L"Registry path '%s\\%s' , key '%s' %s failed - %s (%d)", root_,
                               subkey_.GetString(), name.GetString(), action, reason.Text(),
                               static_cast<int>(code));
        }
        return false;
    }

    HKEY key_;
    CString* errorText_;
    const wchar_t* root_;
    const CString& subkey_;
};

// Walks a format and hands each name with its specifier to `take` until that answers false.
template <class Function>
bool ForEachEntry(const char* format, Function take) {
    StringBase<char> name;
    for (const char* c = format; *c != 0; ++c) {
        if (*c == '=' || (*c == ' ' && name.count == 0)) continue;
        if (*c != '%') {
            name.Append(*c);
            continue;
        }
        ++c;
        const CString value = Widened(name.data, static_cast<int>(name.count));
        if (!take(value, *c)) return false;
        if (*c == 0) return true;
        name.count = 0;
    }
    return true;
}

// Appends the names that `read` gives for all indexes. `longest` is the length of the longest name.
template <class Function>
bool AppendNames(DWORD number, DWORD longest, Array<Text>& names, Function read) {
    const HeapBlock name((std::size_t{longest} + 1) * sizeof(wchar_t));
    auto* const characters = name.As<wchar_t>();
    if (characters == nullptr) return false;
    for (DWORD index = 0; index < number; ++index) {
        DWORD length = longest + 1;
        if (read(index, characters, &length) != 0) continue;
        names.Append(Text(CString(characters, static_cast<int>(length))));
    }
    return true;
}

// The value that lies in a block of `size` bytes, as text.
Text ValueText(DWORD type, const wchar_t* data, DWORD size) {
    Text text;
    if (type == REG_DWORD) {
        std::int32_t number = 0;
        std::memcpy(&number, data, std::min<std::size_t>(size, sizeof number));
        text.Format(L"%i", number);
    } else if (type == REG_QWORD) {
        std::int64_t number = 0;
        std::memcpy(&number, data, std::min<std::size_t>(size, sizeof number));
        text.Format(L"%I64i", number);
    } else {
        text = Text(data);
    }
    return text;
}

}  // namespace

bool RegistryRoot(const wchar_t* name, HKEY& handle) {
    for (const RootKey& key : RootKeys()) {
        if (std::wcscmp(key.name, OrEmpty(name)) != 0) continue;
        handle = key.handle;
        return true;
    }
    return false;
}

const wchar_t* RegistryRootName(HKEY handle) {
    for (const RootKey& key : RootKeys()) {
        if (key.handle == handle) return key.name;
    }
    return L"";
}

bool RegistryAccess(bool write, CString* errorText, HKEY rootKey, const char* subkey,
                    const char* format, ...) {
    const CString path = Widened(subkey);
    const wchar_t* const root = RegistryRootName(rootKey);
    Key key;
    const LSTATUS code =
        write ? key.OpenOrMake(rootKey, path) : key.Open(rootKey, path, kReadAccess);
    if (code != 0) {
        if (errorText != nullptr) {
            const SystemMessage reason(static_cast<DWORD>(code));
            errorText->Format(L"Failed to open registry key '%s\\%s': %s (Error code %d)", root,
                              path.GetString(), reason.Text(), static_cast<int>(code));
        }
        return false;
    }
    const Access access(key.Handle(), errorText, root, path);
    va_list arguments;
    va_start(arguments, format);
    const bool done =
        ForEachEntry(format != nullptr ? format : "", [&](const CString& name, char specifier) {
            return write ? access.Write(name, specifier, arguments)
                         : access.Read(name, specifier, arguments);
        });
    va_end(arguments);
    return done;
}

bool RegistryWriteString(const wchar_t* rootName, const wchar_t* subkey, const wchar_t* name,
                         const wchar_t* value) {
    Key key;
    if (!key.OpenOrMake(rootName, subkey)) return false;
    const wchar_t* const text = OrEmpty(value);
    const auto size = static_cast<DWORD>(2 * RegistryLength(text));
    return RegSetValueExW(key.Handle(), OrEmpty(name), 0, REG_SZ,
                          reinterpret_cast<const BYTE*>(text), size) == 0;
}

Text RegistryReadString(const wchar_t* rootName, const wchar_t* subkey, const wchar_t* name) {
    Key key;
    DWORD size = 0;
    if (!key.Open(rootName, subkey, kReadAccess)) return {};
    if (RegQueryValueExW(key.Handle(), OrEmpty(name), nullptr, nullptr, nullptr, &size) != 0)
        return {};
    // Room for as many characters as there are bytes. The block is cleared, since a text may have
    // been stored without a terminator.
    const DWORD last = size;
    const HeapBlock block((std::size_t{size} + 1) * sizeof(wchar_t));
    auto* const data = block.As<wchar_t>();
    if (data == nullptr) throw TamExpNoMem(L"", kLineOfRead, kSource);
    DWORD type = REG_NONE;
    if (RegQueryValueExW(key.Handle(), OrEmpty(name), nullptr, &type, reinterpret_cast<BYTE*>(data),
                         &size) != 0)
        return {};
    data[last] = 0;
    return ValueText(type, data, size);
}

bool RegistryDeleteValue(const wchar_t* rootName, const wchar_t* subkey, const wchar_t* name) {
    Key key;
    return key.Open(rootName, subkey, kSetValue) &&
           RegDeleteValueW(key.Handle(), OrEmpty(name)) == 0;
}

bool RegistryKeyNames(const wchar_t* rootName, const wchar_t* subkey, Array<Text>& names) {
    Key key;
    DWORD number = 0;
    DWORD longest = 0;
    if (!key.Open(rootName, subkey, kReadAccess) ||
        RegQueryInfoKeyW(key.Handle(), nullptr, nullptr, nullptr, &number, &longest, nullptr,
                         nullptr, nullptr, nullptr, nullptr, nullptr) != 0)
        return false;
    return AppendNames(number, longest, names, [&key](DWORD index, wchar_t* name, DWORD* length) {
        return RegEnumKeyExW(key.Handle(), index, name, length, nullptr, nullptr, nullptr, nullptr);
    });
}

bool RegistryValueNames(const wchar_t* rootName, const wchar_t* subkey, Array<Text>& names) {
    Key key;
    DWORD number = 0;
    DWORD longest = 0;
    if (!key.Open(rootName, subkey, kReadAccess) ||
        RegQueryInfoKeyW(key.Handle(), nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                         &number, &longest, nullptr, nullptr, nullptr) != 0)
        return false;
    return AppendNames(number, longest, names, [&key](DWORD index, wchar_t* name, DWORD* length) {
        return RegEnumValueW(key.Handle(), index, name, length, nullptr, nullptr, nullptr, nullptr);
    });
}

}  // namespace TamLib
