#include "host/console/Proof.h"

#include <algorithm>
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

bool makesRecords(const dxf::Changes& changes) {
    return std::any_of(changes.begin(), changes.end(), [](const auto& change) {
        return std::any_of(change.second.begin(), change.second.end(),
                           [](const dxf::GroupEdit& edit) {
                               return edit.kind == dxf::GroupEdit::Kind::insertBefore;
                           });
    });
}

// New records, and what the drawing has to tell because of them: the next free handle, the counts
// of tables, that a block reference has attributes.
bool isMaking(const dxf::Difference& difference, const dxf::Document& before) {
    using Kind = dxf::Difference::Kind;
    if (difference.kind == Kind::recordInserted) return true;
    if (difference.kind != Kind::changed && difference.kind != Kind::inserted) return false;
    if (!difference.before) return false;
    const dxf::Section section = before.section(*difference.before);
    return (section == dxf::Section::header && difference.code == 5) ||
           (section == dxf::Section::tables && difference.type == "TABLE") ||
           (difference.type == "INSERT" && difference.code == 66);
}

std::string counted(std::size_t count, const char* one, const char* many) {
    return std::to_string(count) + (count == 1 ? one : many);
}

// "3 groups differ in 2 entities"; "2 groups differ in 1 record, 1 record is new"
std::string summary(const std::vector<dxf::Difference>& differences) {
    std::set<dxf::RecordIndex> entities;
    std::size_t made = 0;
    for (const dxf::Difference& difference : differences) {
        if (difference.kind == dxf::Difference::Kind::recordInserted) ++made;
        if (difference.before) entities.insert(*difference.before);
    }
    const std::size_t groups = differences.size() - made;
    std::string text;
    if (groups != 0)
        text = counted(groups, " group differs in ", " groups differ in ") +
               (made == 0 ? counted(entities.size(), " entity", " entities")
                          : counted(entities.size(), " record", " records"));
    if (made != 0)
        text += (text.empty() ? "" : ", ") + counted(made, " record is new", " records are new");
    return text;
}

}  // namespace

Proof prove(const dxf::Document& before, const dxf::Document& after, const dxf::Changes& changes) {
    const std::vector<dxf::Difference> differences = dxf::compare(before, after);
    const bool makes = makesRecords(changes);
    Proof proof;
    for (const dxf::Difference& difference : differences) {
        const bool meant = isTurning(difference, before) || (makes && isMaking(difference, before));
        const bool own = meant && dxf::isExpected(difference, before, after, changes);
        const std::string line = (own ? "  " : "! ") + difference.text() + "\n";
        proof.text += line;
        if (own) continue;
        proof.strange += line;
        ++proof.strangers;
    }
    if (differences.empty()) {
        proof.text = "Verified: the files are identical.\n";
        return proof;
    }
    std::string sum = "Verified: " + summary(differences) + ", ";
    if (proof.strangers == 0)
        sum += makes ? "all as the commands turned and made them.\n"
                     : "all as the commands turned them.\n";
    else
        sum += std::to_string(proof.strangers) + " not by the commands.\n";
    proof.text += sum;
    if (proof.strangers != 0) proof.strange += sum;
    return proof;
}

}  // namespace host::console
