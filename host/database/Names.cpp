#include "host/database/Names.h"

#include "host/dxf/Utf8.h"

namespace host::database {
namespace {

bool within(std::uint32_t c, std::uint32_t first, std::uint32_t last) {
    return c >= first && c <= last;
}

// Latin Extended-A holds its letters in pairs: the capital is even in some stretches, odd in
// others.
std::uint32_t foldedPair(std::uint32_t c) {
    const bool evenCapital =
        within(c, 0x100, 0x12F) || within(c, 0x132, 0x137) || within(c, 0x14A, 0x177);
    const bool oddCapital = within(c, 0x139, 0x148) || within(c, 0x179, 0x17E);
    if (evenCapital) return c | 1U;
    if (oddCapital) return c + (c & 1U);
    return c;
}

std::uint32_t foldedLetter(std::uint32_t c) {
    if (within(c, L'A', L'Z')) return c + 0x20;
    if (c < 0x80) return c;
    if (within(c, 0xC0, 0xDE) && c != 0xD7) return c + 0x20;
    if (c == 0x178) return 0xFF;
    if (within(c, 0x100, 0x17F)) return foldedPair(c);
    if (within(c, 0x391, 0x3AB) && c != 0x3A2) return c + 0x20;
    if (c == 0x386) return 0x3AC;
    if (within(c, 0x388, 0x38A)) return c + 0x25;
    if (c == 0x3C2) return 0x3C3;  // the final sigma
    if (within(c, 0x410, 0x42F)) return c + 0x20;
    if (within(c, 0x400, 0x40F)) return c + 0x50;
    if (within(c, 0x460, 0x481) || within(c, 0x48A, 0x4BF)) return c | 1U;
    return c;
}

wchar_t foldedUnit(wchar_t unit) {
    return static_cast<wchar_t>(foldedLetter(static_cast<std::uint32_t>(unit)));
}

}  // namespace

std::wstring folded(std::wstring_view text) {
    std::wstring result(text);
    for (wchar_t& unit : result) unit = foldedUnit(unit);
    return result;
}

bool sameName(std::wstring_view a, std::wstring_view b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (foldedUnit(a[i]) != foldedUnit(b[i])) return false;
    }
    return true;
}

std::wstring handleText(std::uint64_t handle) {
    std::wstring text;
    for (; handle != 0; handle >>= 4) text.insert(text.begin(), L"0123456789ABCDEF"[handle & 15]);
    return text;
}

std::string toUtf8(std::wstring_view text) {
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        auto c = static_cast<char32_t>(text[i]);
        const bool pair = within(c, 0xD800, 0xDBFF) && i + 1 < text.size() &&
                          within(static_cast<std::uint32_t>(text[i + 1]), 0xDC00, 0xDFFF);
        if (pair) c = 0x10000 + ((c - 0xD800) << 10) + (static_cast<char32_t>(text[++i]) - 0xDC00);
        dxf::utf8::append(bytes, c);
    }
    return bytes;
}

std::wstring fromUtf8(std::string_view bytes) {
    std::wstring text;
    while (!bytes.empty()) {
        const std::size_t length = dxf::utf8::sequenceLength(bytes);
        if (length == 0) {
            dxf::utf8::append(text, dxf::utf8::kReplacement);
            bytes.remove_prefix(1);
            continue;
        }
        dxf::utf8::append(text, dxf::utf8::decodeOne(bytes, length));
        bytes.remove_prefix(length);
    }
    return text;
}

std::wstring wideText(const std::filesystem::path& path) {
    return fromUtf8(path.u8string());
}

}  // namespace host::database
