#include "PathNames.h"

#include <locale.h>
#include <wctype.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>

#include "winbase.h"

namespace posix {
namespace {

constexpr std::uint32_t kEscapedByte = 0xDC00u;  // plus the byte, 0x80 to 0xFF

bool AppendUtf8(std::string& text, std::uint32_t code) {
    const auto put = [&text](std::uint32_t byte) { text += static_cast<char>(byte); };
    if (code >= kEscapedByte + 0x80u && code <= kEscapedByte + 0xFFu) {
        put(code - kEscapedByte);
        return true;
    }
    if (code > 0x10FFFFu || (code >= 0xD800u && code <= 0xDFFFu)) return false;
    if (code < 0x80u) {
        put(code);
    } else if (code < 0x800u) {
        put(0xC0u | code >> 6);
        put(0x80u | (code & 0x3Fu));
    } else if (code < 0x10000u) {
        put(0xE0u | code >> 12);
        put(0x80u | (code >> 6 & 0x3Fu));
        put(0x80u | (code & 0x3Fu));
    } else {
        put(0xF0u | code >> 18);
        put(0x80u | (code >> 12 & 0x3Fu));
        put(0x80u | (code >> 6 & 0x3Fu));
        put(0x80u | (code & 0x3Fu));
    }
    return true;
}

// How many bytes the character at `at` has and its number; 0 when it is no UTF-8.
std::size_t ReadUtf8(const std::string& text, std::size_t at, std::uint32_t& code) {
    const auto byte = [&text](std::size_t i) -> std::uint32_t {
        return i < text.size() ? static_cast<unsigned char>(text[i]) : 0u;
    };
    const std::uint32_t first = byte(at);
    if (first < 0x80u) {
        code = first;
        return 1;
    }
    const std::size_t length = first >= 0xF0u ? 4 : first >= 0xE0u ? 3 : first >= 0xC0u ? 2 : 0;
    if (length == 0) return 0;
    code = first & (0x7Fu >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(at + i) & 0xC0u) != 0x80u) return 0;
        code = code << 6 | (byte(at + i) & 0x3Fu);
    }
    constexpr std::uint32_t kLeast[] = {0, 0, 0x80u, 0x800u, 0x10000u};
    const bool surrogate = code >= 0xD800u && code <= 0xDFFFu;
    return code < kLeast[length] || code > 0x10FFFFu || surrogate ? 0 : length;
}

locale_t UnicodeLocale() {
    static const locale_t unicode = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    return unicode;
}

}  // namespace

bool NativePath(const wchar_t* path, std::string& name) {
    name.clear();
    if (path == nullptr) return true;
    for (const wchar_t* c = path; *c != 0; ++c) {
        if (!AppendUtf8(name, *c == L'\\' ? std::uint32_t{'/'} : static_cast<std::uint32_t>(*c)))
            return false;
    }
    return true;
}

std::wstring WideName(const std::string& name) {
    std::wstring wide;
    for (std::size_t at = 0; at < name.size();) {
        std::uint32_t code = 0;
        std::size_t length = ReadUtf8(name, at, code);
        if (length == 0) {
            code = kEscapedByte + static_cast<unsigned char>(name[at]);
            length = 1;
        }
        wide += static_cast<wchar_t>(code);
        at += length;
    }
    return wide;
}

std::wstring WindowsPath(const std::string& name) {
    std::wstring path = WideName(name);
    std::replace(path.begin(), path.end(), L'/', L'\\');
    return path;
}

wchar_t FoldName(wchar_t c) {
    if (c >= 0 && c < 0x80) return c >= L'a' && c <= L'z' ? static_cast<wchar_t>(c - 0x20) : c;
    const locale_t unicode = UnicodeLocale();
    if (unicode == nullptr) return c;
    return static_cast<wchar_t>(towupper_l(static_cast<wint_t>(c), unicode));
}

std::wstring FoldName(std::wstring name) {
    for (wchar_t& c : name) c = FoldName(c);
    return name;
}

DWORD SystemError(int error) {
    switch (error) {
        case 0:
            return ERROR_SUCCESS;
        case ENOENT:
            return ERROR_FILE_NOT_FOUND;
        case ENOTDIR:
            return ERROR_PATH_NOT_FOUND;
        case EMFILE:
        case ENFILE:
            return ERROR_TOO_MANY_OPEN_FILES;
        case EACCES:
        case EPERM:
        case EISDIR:
        case EROFS:
            return ERROR_ACCESS_DENIED;
        case ENOMEM:
            return ERROR_NOT_ENOUGH_MEMORY;
        case EEXIST:
            return ERROR_ALREADY_EXISTS;
        case ENOSPC:
        case EDQUOT:
            return ERROR_DISK_FULL;
        case ENOTEMPTY:
            return ERROR_DIR_NOT_EMPTY;
        case EINVAL:
            return ERROR_INVALID_PARAMETER;
        case EILSEQ:
        case ELOOP:
            return ERROR_INVALID_NAME;
        case ENAMETOOLONG:
            return ERROR_FILENAME_EXCED_RANGE;
        default:
            return ERROR_GEN_FAILURE;
    }
}

}  // namespace posix
