#include "host/editor/Points.h"

#include <cmath>
#include <vector>

#include "host/editor/Words.h"

namespace host::editor {

namespace {

constexpr double degree = 0.017453292519943295;

// What lies beyond is a slip of the finger, and its squares would leave the range of a double.
constexpr double largest = 1e99;

AcGePoint3d polar(double distance, double degrees) {
    const double quarter = degrees / 90.0;
    if (quarter == std::floor(quarter)) {
        switch (static_cast<int>(std::fmod(quarter, 4.0) + 4.0) % 4) {
            case 0:
                return {distance, 0.0, 0.0};
            case 1:
                return {0.0, distance, 0.0};
            case 2:
                return {-distance, 0.0, 0.0};
            default:
                return {0.0, -distance, 0.0};
        }
    }
    return {distance * std::cos(degrees * degree), distance * std::sin(degrees * degree), 0.0};
}

std::optional<std::vector<double>> numbers(std::wstring_view text) {
    std::vector<double> values;
    for (const std::wstring& part : split(text, L',')) {
        const auto value = parseNumber(part);
        if (!value || std::fabs(*value) > largest) return std::nullopt;
        values.push_back(*value);
    }
    return values;
}

std::optional<AcGePoint3d> absolute(std::wstring_view text) {
    const std::size_t angle = text.find(L'<');
    if (angle == std::wstring_view::npos) {
        const auto values = numbers(text);
        if (!values || values->size() < 2 || values->size() > 3) return std::nullopt;
        return AcGePoint3d((*values)[0], (*values)[1], values->size() == 3 ? (*values)[2] : 0.0);
    }
    const auto distance = parseNumber(text.substr(0, angle));
    const auto values = numbers(text.substr(angle + 1));
    if (!distance || std::fabs(*distance) > largest || !values || values->size() > 2)
        return std::nullopt;
    AcGePoint3d point = polar(*distance, (*values)[0]);
    if (values->size() == 2) point.z = (*values)[1];
    return point;
}

}  // namespace

std::optional<AcGePoint3d> parsePoint(std::wstring_view text, const AcGePoint3d& last) {
    const bool relative = !text.empty() && text.front() == L'@';
    if (relative) text.remove_prefix(1);
    if (relative && text.empty()) return last;
    if (!text.empty() && text.front() == L'*') text.remove_prefix(1);
    const auto point = absolute(text);
    if (!point || !relative) return point;
    return last + point->asVector();
}

std::wstring pointText(const AcGePoint3d& point) {
    return numberText(point.x) + L"," + numberText(point.y) + L"," + numberText(point.z);
}

}  // namespace host::editor
