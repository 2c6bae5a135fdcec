#include "host/dxf/DoubleByte.h"

#include <cstddef>

#include "host/dxf/Utf8.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <iconv.h>
#endif

namespace host::dxf {
namespace {

struct Range {
    unsigned first;
    unsigned last;
};

// Bytes that begin a character of two, by page.
struct Leads {
    int page;
    Range ranges[3];
};

constexpr Leads kLeads[] = {
    {932, {{0x81, 0x9F}, {0xE0, 0xFC}, {1, 0}}},
    {936, {{0x81, 0xFE}, {1, 0}, {1, 0}}},
    {949, {{0x81, 0xFE}, {1, 0}, {1, 0}}},
    {950, {{0x81, 0xFE}, {1, 0}, {1, 0}}},
    {1361, {{0x84, 0xD3}, {0xD8, 0xDE}, {0xE0, 0xF9}}},
};

}  // namespace

bool DoubleByteDecoder::isLead(unsigned char byte) const {
    for (const Leads& leads : kLeads) {
        if (leads.page != page_) continue;
        for (const Range& range : leads.ranges) {
            if (byte >= range.first && byte <= range.last) return true;
        }
    }
    return false;
}

std::u32string DoubleByteDecoder::decode(std::string_view bytes) const {
    std::u32string text;
    while (!bytes.empty()) {
        const auto byte = static_cast<unsigned char>(bytes.front());
        if (byte < 0x80) {
            text += byte;
            bytes.remove_prefix(1);
            continue;
        }
        const std::size_t length = isLead(byte) && bytes.size() > 1 ? 2 : 1;
        const char32_t character = convert(bytes.substr(0, length));
        text += character == 0 ? utf8::kReplacement : character;
        bytes.remove_prefix(character == 0 ? 1 : length);
    }
    return text;
}

#ifdef _WIN32

DoubleByteDecoder::DoubleByteDecoder(int page) : page_(page), converter_(0) {}

DoubleByteDecoder::~DoubleByteDecoder() = default;

char32_t DoubleByteDecoder::convert(std::string_view one) const {
    wchar_t wide[2];
    const int units = MultiByteToWideChar(static_cast<UINT>(page_), MB_ERR_INVALID_CHARS,
                                          one.data(), static_cast<int>(one.size()), wide, 2);
    return units == 1 ? wide[0] : 0;
}

#else

namespace {

iconv_t asConverter(std::intptr_t converter) {
    return reinterpret_cast<iconv_t>(converter);  // NOLINT(performance-no-int-to-ptr)
}

const char* converterName(int page) {
    switch (page) {
        case 932:
            return "CP932";
        case 936:
            return "CP936";
        case 949:
            return "CP949";
        case 950:
            return "CP950";
        default:
            return "JOHAB";
    }
}

}  // namespace

DoubleByteDecoder::DoubleByteDecoder(int page)
    : page_(page),
      converter_(reinterpret_cast<std::intptr_t>(iconv_open("UTF-8", converterName(page)))) {}

DoubleByteDecoder::~DoubleByteDecoder() {
    if (converter_ != -1) iconv_close(asConverter(converter_));
}

char32_t DoubleByteDecoder::convert(std::string_view one) const {
    if (converter_ == -1) return 0;
    char in[2] = {one.front(), one.back()};
    char out[8];
    char* from = in;
    char* to = out;
    std::size_t fromLeft = one.size();
    std::size_t toLeft = sizeof(out);
    const auto failed = static_cast<std::size_t>(-1);
    if (iconv(asConverter(converter_), &from, &fromLeft, &to, &toLeft) == failed) {
        iconv(asConverter(converter_), nullptr, nullptr, nullptr, nullptr);
        return 0;
    }
    const std::string_view bytes(out, static_cast<std::size_t>(to - out));
    const std::size_t length = utf8::sequenceLength(bytes);
    return length == 0 || length != bytes.size() ? 0 : utf8::decodeOne(bytes, length);
}

#endif

}  // namespace host::dxf
