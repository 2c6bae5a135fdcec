#include "host/editor/Details.h"

#include <algorithm>
#include <cwchar>

#include "host/editor/Words.h"

namespace host::editor {

namespace {

constexpr double degreesInRadian = 57.29577951308232;
constexpr std::size_t numbersToALine = 8;

// What rounds to zero has no sign.
std::wstring fixed(double value, int digits) {
    wchar_t text[400];
    const int length = std::swprintf(text, 400, L"%.*f", digits, value);
    if (length < 0) return numberText(value);
    std::wstring result(text);
    if (result.find_first_not_of(L"-0.") == std::wstring::npos && result.front() == L'-')
        result.erase(0, 1);
    return result;
}

}  // namespace

std::wstring Details::length(double value) const {
    return fixed(value, lengthDigits_);
}

void Details::line(std::wstring_view text) {
    lines_.push_back(L"\n" + std::wstring(static_cast<std::size_t>(4 * depth_), L' ') +
                     std::wstring(text));
}

void Details::point(std::wstring_view what, const AcGePoint3d& point) {
    line(std::wstring(what) + L", X=" + length(point.x) + L"  Y=" + length(point.y) + L"  Z=" +
         length(point.z));
}

void Details::vector(std::wstring_view what, const AcGeVector3d& vector) {
    point(what, {vector.x, vector.y, vector.z});
}

void Details::value(std::wstring_view what, double number) {
    line(std::wstring(what) + L" " + length(number));
}

void Details::count(std::wstring_view what, long long number) {
    line(std::wstring(what) + L" " + std::to_wstring(number));
}

void Details::angle(std::wstring_view what, double radians) {
    line(std::wstring(what) + L" " + fixed(radians * degreesInRadian, angleDigits_));
}

void Details::quoted(std::wstring_view what, std::wstring_view words) {
    line(std::wstring(what) + L" \"" + std::wstring(words) + L"\"");
}

void Details::values(std::wstring_view what, const std::vector<double>& numbers) {
    for (std::size_t i = 0; i < numbers.size(); i += numbersToALine) {
        std::wstring text(what);
        for (std::size_t k = i; k < std::min(i + numbersToALine, numbers.size()); ++k)
            text += L" " + length(numbers[k]);
        line(text);
    }
}

void Details::thickness(double thickness) {
    if (thickness != 0.0) value(L"thickness", thickness);
}

void Details::normal(const AcGeVector3d& normal) {
    if (normal.x != 0.0 || normal.y != 0.0 || normal.z != 1.0)
        vector(L"extrusion direction", normal);
}

}  // namespace host::editor
