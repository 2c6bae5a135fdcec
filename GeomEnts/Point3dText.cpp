// The text forms of Point3d.
#include "GeomEnts/Point3d.h"
#include "datastruct/String.h"
#include "datastruct/StringPrint.h"

namespace TamLib {
namespace {

// Digits of the decimal system alone, not what a locale adds to them.
bool IsPlainNumber(const StringBase<wchar_t>& text) {
    for (std::uint32_t i = 0; i < text.count; ++i) {
        const wchar_t c = text.data[i];
        if (!((c >= L'0' && c <= L'9') || c == L'.' || c == L'-')) return false;
    }
    return true;
}

}  // namespace

Point3d::Point3d(const StringBase<wchar_t>& text) {
    Parse(text);
}

void Point3d::ToText(wchar_t* buffer, std::size_t size) const {
    if (size == 0) return;
    PrintLimited(buffer, size, L"(%2.7f, %2.7f, %2.7f)", x, y, z);
    buffer[size - 1] = L'\0';
}

StringBase<wchar_t> Point3d::ToString(const wchar_t* format) const {
    StringBase<wchar_t> text;
    text.Format(format != nullptr ? format : L"%f,%f,%f", x, y, z);
    return text;
}

StringBase<wchar_t> Point3d::ToString2d(const wchar_t* format) const {
    StringBase<wchar_t> text;
    text.Format(format != nullptr ? format : L"%f,%f", x, y);
    return text;
}

bool Point3d::Parse(const StringBase<wchar_t>& text) {
    Array<StringBase<wchar_t>> pieces(0);
    text.Split(pieces, L",", /*keepEmpty=*/true);
    double* const coordinates[] = {&x, &y, &z};
    for (std::uint32_t i = 0; i < pieces.count && i < 3; ++i)
        *coordinates[i] = pieces.data[i].ToDouble();
    if (pieces.count != 2 && pieces.count != 3) return false;
    for (std::uint32_t i = 0; i < pieces.count; ++i)
        if (!IsPlainNumber(pieces.data[i])) return false;
    return true;
}

}  // namespace TamLib
