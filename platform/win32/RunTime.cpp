// The run-time library's comparisons, numbers and files.
#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include <locale.h>

#include "FileHandles.h"
#include "PathNames.h"
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

bool IsBlank(wchar_t c) {
    return (c >= 9 && c <= 13) || c == 0x20 || c == 0xA0 || c == 0x1680 ||
           (c >= 0x2000 && c <= 0x200A) || c == 0x2028 || c == 0x2029 || c == 0x202F ||
           c == 0x205F || c == 0x3000;
}

// The decimal number at the start of a text, blanks before it passed over, in the form that
// `strtod` reads; empty if there is none.
class DecimalPrefix {
  public:
    explicit DecimalPrefix(const wchar_t* text) : at_(text) {
        while (IsBlank(*at_)) ++at_;
        TakeSign();
        int digits = TakeDigits();
        if (*at_ == L'.') {
            Take('.');
            digits += TakeDigits();
        }
        if (digits == 0) {
            prefix_.clear();
            return;
        }
        TakeExponent();
    }

    const char* Get() const { return prefix_.c_str(); }

  private:
    void Take(char c) {
        prefix_ += c;
        ++at_;
    }
    void TakeSign() {
        if (*at_ == L'+' || *at_ == L'-') Take(*at_ == L'-' ? '-' : '+');
    }
    int TakeDigits() {
        int digits = 0;
        for (; *at_ >= L'0' && *at_ <= L'9'; ++digits) Take(static_cast<char>(*at_));
        return digits;
    }
    // The exponent may begin with d as with e. Without digits it is none.
    void TakeExponent() {
        if (*at_ != L'e' && *at_ != L'E' && *at_ != L'd' && *at_ != L'D') return;
        const std::size_t mantissa = prefix_.size();
        Take('e');
        TakeSign();
        if (TakeDigits() == 0) prefix_.resize(mantissa);
    }

    const wchar_t* at_;
    std::string prefix_;
};

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
    return strtod_l(DecimalPrefix(text).Get(), nullptr, NeutralLocale());
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
    if (!posix::NativePath(path, name)) {
        errno = EILSEQ;
        return nullptr;
    }
    std::string plainMode;
    for (const wchar_t* c = mode; *c != 0; ++c) {
        if (*c != L't' && *c > 0 && *c < 0x80) plainMode += static_cast<char>(*c);
    }
    const DWORD access =
        (plainMode[0] == 'r' ? GENERIC_READ : GENERIC_WRITE) |
        (plainMode.find('+') != std::string::npos ? GENERIC_READ | GENERIC_WRITE : 0u);
    if (!posix::SharingAllows(name.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE)) {
        errno = EACCES;
        return nullptr;
    }
    return std::fopen(name.c_str(), plainMode.c_str());
}
