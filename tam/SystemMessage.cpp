#include "tam/SystemMessage.h"

#include <windows.h>

namespace TamLib {

SystemMessage::SystemMessage(std::uint32_t code) {
    constexpr DWORD kFlags = 0x1300;    // allocate the buffer, system's table, ignore inserts
    constexpr DWORD kLanguage = 0x400;  // the process's own
    FormatMessageW(kFlags, nullptr, code, kLanguage, reinterpret_cast<LPWSTR>(&text_), 0, nullptr);
    if (text_ == nullptr) return;
    wchar_t* kept = text_;
    for (const wchar_t* c = text_; *c != 0; ++c) {
        if (*c != L'\r' && *c != L'\n') *kept++ = *c;
    }
    *kept = 0;
}

SystemMessage::~SystemMessage() {
    LocalFree(text_);
}

}  // namespace TamLib
