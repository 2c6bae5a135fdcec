#include "host/console/Proof.h"

#include <cstdint>
#include <set>
#include <vector>

#include "host/dxf/Compare.h"

namespace host::console {

namespace {

std::int64_t integerOf(const dxf::GroupRange& groups, int code) {
    const auto group = groups.find(code);
    return group ? group->integer().value_or(0) : 0;
}

// Aligned and fitted texts lie between two points, which turning leaves alone.
bool standsByGroup11(const dxf::Document& drawing, dxf::RecordIndex text) {
    constexpr std::int64_t aligned = 3;
    constexpr std::int64_t fitted = 5;
    const dxf::GroupRange groups = drawing.groups(text);
    const std::int64_t horizontal = integerOf(groups, 72);
    const std::int64_t vertical = integerOf(groups, 73);
    return (horizontal != 0 || vertical != 0) &&
           !(vertical == 0 && (horizontal == aligned || horizontal == fitted));
}

bool isTurning(const dxf::Difference& difference, const dxf::Document& before) {
    using Kind = dxf::Difference::Kind;
    if (difference.kind != Kind::changed && difference.kind != Kind::inserted) return false;
    const bool isText = difference.type == "TEXT";
    if (difference.code == 50) return isText || difference.type == "INSERT";
    const bool isPosition =
        difference.kind == Kind::changed && (difference.code == 10 || difference.code == 20);
    return isPosition && isText && difference.before && standsByGroup11(before, *difference.before);
}

std::string counted(std::size_t count, const char* one, const char* many) {
    return std::to_string(count) + (count == 1 ? one : many);
}

}  // namespace

Proof prove(const dxf::Document& before, const dxf::Document& after, const dxf::Changes& changes) {
    const std::vector<dxf::Difference> differences = dxf::compare(before, after);
    Proof proof;
    std::set<dxf::RecordIndex> entities;
    for (const dxf::Difference& difference : differences) {
        const bool own =
            isTurning(difference, before) && dxf::isExpected(difference, before, after, changes);
        proof.text += (own ? "  " : "! ") + difference.text() + "\n";
        if (!own) ++proof.strangers;
        if (difference.before) entities.insert(*difference.before);
    }
    if (differences.empty()) {
        proof.text = "Verified: the files are identical.\n";
        return proof;
    }
    proof.text +=
        "Verified: " + counted(differences.size(), " group differs in ", " groups differ in ") +
        counted(entities.size(), " entity, ", " entities, ");
    if (proof.strangers == 0)
        proof.text += "all as the commands turned them.\n";
    else
        proof.text += std::to_string(proof.strangers) + " not by the commands.\n";
    return proof;
}

}  // namespace host::console
