// Text in the system's code page, which is Windows-1252.
#include <cstring>

#include "windows.h"

namespace {

// The characters of 0x80 to 0x9F; those that the code page leaves out stand for themselves.
constexpr wchar_t kUpperControls[32] = {
    0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x8D,   0x017D, 0x8F,   0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};

}  // namespace

int MultiByteToWideChar(UINT codePage, DWORD /*flags*/, LPCSTR text, int length, LPWSTR buffer,
                        int size) {
    if (codePage != CP_ACP || text == nullptr || length == 0 || length < -1 || size < 0) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return 0;
    }
    const int count = length == -1 ? static_cast<int>(std::strlen(text)) + 1 : length;
    if (size == 0) return count;
    if (count > size) {
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
        return 0;
    }
    for (int i = 0; i < count; ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        buffer[i] = byte >= 0x80 && byte < 0xA0 ? kUpperControls[byte - 0x80] : wchar_t{byte};
    }
    return count;
}
