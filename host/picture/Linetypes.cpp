#include "host/picture/Linetypes.h"

#include <cmath>

namespace host::picture {
namespace {

constexpr int dashLength = 49;

// Longer patterns are drawn as far as this.
constexpr std::size_t mostLengths = 64;

}  // namespace

Linetypes::Linetypes(const AcDbImpDatabase& database) : database_(database) {
    const auto group = database.document().headerVariable("$LTSCALE").find(40);
    const auto value = group ? group->real() : std::nullopt;
    if (value && *value > 0.0) scale_ = *value;
}

const std::vector<double>& Linetypes::named(const std::wstring& name) {
    const auto known = known_.find(name);
    return known != known_.end() ? known->second : known_.emplace(name, read(name)).first->second;
}

// In the drawing gaps are below 0; several of a kind may follow one another.
std::vector<double> Linetypes::read(const std::wstring& name) const {
    std::vector<double> lengths;
    const auto number = database_.find(database::Table::linetype, name);
    const auto record = number ? database_.recordOf(*number) : std::nullopt;
    if (!record) return lengths;
    bool hasGap = false;
    for (const dxf::Group& group : database_.document().groups(*record)) {
        const auto value = group.code() == dashLength ? group.real() : std::nullopt;
        if (!value || lengths.size() == mostLengths) continue;
        const bool isGap = *value < 0.0;
        // What begins with a gap begins with a dash of no length.
        if (isGap && lengths.empty()) lengths.push_back(0.0);
        const bool gapIsNext = lengths.size() % 2 == 1;
        if (isGap != gapIsNext) {
            lengths.back() += std::fabs(*value) * scale_;
        } else {
            lengths.push_back(std::fabs(*value) * scale_);
        }
        hasGap = hasGap || isGap;
    }
    if (!hasGap) return {};
    if (lengths.size() % 2 == 1) lengths.push_back(0.0);
    return lengths;
}

}  // namespace host::picture
