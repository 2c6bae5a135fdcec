#include "host/console/Wide.h"

#include "host/dxf/Utf8.h"

namespace host::console {

namespace utf8 = dxf::utf8;

std::string toUtf8(std::wstring_view text) {
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        auto character = static_cast<char32_t>(text[i]);
        const bool isPair = sizeof(wchar_t) == 2 && (character & 0xFC00) == 0xD800 &&
                            i + 1 < text.size() &&
                            (static_cast<char32_t>(text[i + 1]) & 0xFC00) == 0xDC00;
        if (isPair)
            character =
                0x10000 + ((character & 0x3FF) << 10) + (static_cast<char32_t>(text[++i]) & 0x3FF);
        utf8::append(bytes, character);
    }
    return bytes;
}

std::wstring toWide(std::string_view text) {
    std::wstring wide;
    while (!text.empty()) {
        const std::size_t length = utf8::sequenceLength(text);
        utf8::append(wide, length == 0 ? utf8::kReplacement : utf8::decodeOne(text, length));
        text.remove_prefix(length == 0 ? 1 : length);
    }
    return wide;
}

}  // namespace host::console
