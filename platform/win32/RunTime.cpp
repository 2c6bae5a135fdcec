// The run-time library's comparisons, numbers and files.
#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include <locale.h>

#include "tchar.h"

namespace {

// The "C" locale of the Windows run-time library knows the case of A to Z only.
template <class C>
C FoldCase(C c) {
    return c >= C('A') && c <= C('Z') ? static_cast<C>(c + ('a' - 'A')) : c;
}

// Characters compare by their number, narrow ones as unsigned.
template <class C>
std::uint32_t Number(C c) {
    return sizeof(C) == 1 ? static_cast<std::uint32_t>(static_cast<unsigned char>(c))
                          : static_cast<std::uint32_t>(c);
}

template <class C>
int CompareFolded(const C* first, const C* second, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint32_t a = Number(FoldCase(first[i]));
        const std::uint32_t b = Number(FoldCase(second[i]));
        if (a != b) return a < b ? -1 : 1;
        if (a == 0) return 0;
    }
    return 0;
}

locale_t NeutralLocale() {
    static const locale_t neutral = newlocale(LC_ALL_MASK, "C", nullptr);
    return neutral;
}

bool AppendUtf8(std::string& text, std::uint32_t code) {
    if (code > 0x10FFFFu || (code >= 0xD800u && code <= 0xDFFFu)) return false;
    const auto put = [&text](std::uint32_t byte) { text += static_cast<char>(byte); };
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

}  // namespace

int _wcsicmp(const wchar_t* first, const wchar_t* second) {
    return CompareFolded(first, second, SIZE_MAX);
}

int _wcsnicmp(const wchar_t* first, const wchar_t* second, std::size_t count) {
    return CompareFolded(first, second, count);
}

int _stricmp(const char* first, const char* second) {
    return CompareFolded(first, second, SIZE_MAX);
}

int _strnicmp(const char* first, const char* second, std::size_t count) {
    return CompareFolded(first, second, count);
}

double _wtof(const wchar_t* text) {
    return wcstod_l(text, nullptr, NeutralLocale());
}

int _wtoi(const wchar_t* text) {
    const long number = std::wcstol(text, nullptr, 10);
    return number < INT_MIN ? INT_MIN : number > INT_MAX ? INT_MAX : static_cast<int>(number);
}

wchar_t* _wcsdup(const wchar_t* text) {
    if (text == nullptr) return nullptr;
    const std::size_t size = std::wcslen(text) + 1;
    auto* const copy = static_cast<wchar_t*>(std::malloc(size * sizeof(wchar_t)));
    if (copy != nullptr) std::wmemcpy(copy, text, size);
    return copy;
}

std::FILE* _wfopen(const wchar_t* path, const wchar_t* mode) {
    std::string name;
    for (const wchar_t* c = path; *c != 0; ++c) {
        if (!AppendUtf8(name, *c == L'\\' ? std::uint32_t{'/'} : static_cast<std::uint32_t>(*c))) {
            errno = EILSEQ;
            return nullptr;
        }
    }
    std::string plainMode;
    for (const wchar_t* c = mode; *c != 0; ++c) {
        if (*c != L't' && *c > 0 && *c < 0x80) plainMode += static_cast<char>(*c);
    }
    return std::fopen(name.c_str(), plainMode.c_str());
}
