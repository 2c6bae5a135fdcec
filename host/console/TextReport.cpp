// The report as text for people: a heading, for each command a table of what it turned and one of
// the labels it left, how many of all else it left, and the totals. Angles are degrees from 0 to
// 360.
#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <iterator>
#include <map>
#include <string_view>
#include <utility>
#include <vector>

#include "host/console/Files.h"
#include "host/console/Report.h"
#include "host/console/Table.h"

namespace host::console {

namespace {

constexpr int usualDecimals = 3;
constexpr int mostDecimals = 15;

std::string fixed(double value, int decimals = usualDecimals) {
    constexpr double farthest = 1e15;  // whose digits mean nothing any more
    char digits[64];
    const auto result = std::abs(value) < farthest
                            ? std::to_chars(digits, digits + sizeof digits, value,
                                            std::chars_format::fixed, decimals)
                            : std::to_chars(digits, digits + sizeof digits, value,
                                            std::chars_format::scientific, decimals);
    const std::string text(digits, result.ptr);
    const bool isZero = text.find_first_not_of("-0.") == std::string::npos;
    return isZero && text.front() == '-' ? text.substr(1) : text;
}

std::string wholeTurn(double degrees, int decimals) {
    double angle = std::fmod(degrees, 360.0);
    if (angle < 0) angle += 360.0;
    const std::string text = fixed(angle, decimals);
    return text == fixed(360.0, decimals) ? fixed(0.0, decimals) : text;
}

// Both angles with as many decimals as it takes to tell them apart; as they stand in the drawing
// when whole turns lie between them.
std::pair<std::string, std::string> angles(const TurnedEntity& entity) {
    const double before = entity.before.degrees;
    const double after = entity.after.degrees;
    for (int decimals = usualDecimals; decimals <= mostDecimals; ++decimals) {
        std::pair<std::string, std::string> texts{wholeTurn(before, decimals),
                                                  wholeTurn(after, decimals)};
        if (texts.first != texts.second || before == after) return texts;
    }
    return {fixed(before), fixed(after)};
}

std::string moved(const TurnedEntity& entity) {
    const double distance = entity.before.insertion.distanceTo(entity.after.insertion);
    if (distance == 0) return "-";
    int decimals = usualDecimals;
    while (decimals < mostDecimals && fixed(distance, decimals) == fixed(0.0, decimals)) ++decimals;
    return fixed(distance, decimals);
}

std::string counted(std::size_t count, const char* what) {
    return std::to_string(count) + " " + what;
}

std::string nameOf(const EntityNote& entity) {
    return tame(entity.type) + " " + (entity.handle.empty() ? "without a handle" : entity.handle);
}

std::string placeOf(const std::optional<AcGePoint3d>& point) {
    return point ? fixed(point->x) + "," + fixed(point->y) : "-";
}

// Where handles are missing, places tell the entities apart.
template <class Entity>
bool hasHandles(const std::vector<Entity>& entities) {
    return std::none_of(entities.begin(), entities.end(),
                        [](const EntityNote& entity) { return entity.handle.empty(); });
}

std::string tableOf(const std::vector<TurnedEntity>& turned) {
    constexpr auto l = Table::Side::left;
    constexpr auto r = Table::Side::right;
    const bool handles = hasHandles(turned);
    Table table({handles ? "handle" : "handle or place", "type", "layer", "was", "is", "segment",
                 "distance", "moved", "name"},
                {l, l, l, r, r, r, r, r, l});
    for (const TurnedEntity& entity : turned) {
        const auto [was, is] = angles(entity);
        table.add(
            {entity.handle.empty() ? placeOf(entity.hangsAt) : entity.handle, tame(entity.type),
             tame(entity.layer), was, is, entity.segment ? std::to_string(*entity.segment) : "-",
             entity.segment ? fixed(entity.distance) : "-", moved(entity), tame(entity.wording)});
    }
    return table.text();
}

std::string reasonOf(const LeftEntity& entity) {
    std::string reason = described(entity.reason);
    if (entity.reason == Reason::classNotTurned) reason += ": " + tame(entity.className);
    if (!entity.detail.empty()) reason += ": " + tame(entity.detail);
    return entity.selected ? reason : reason + ", not selected";
}

bool endsWith(std::string_view text, std::string_view end) {
    return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

// Entities that carry a text or a symbol: somebody may miss them among what was turned.
bool isLabel(const EntityNote& entity) {
    constexpr std::array<std::string_view, 11> labels = {
        "TEXT",        "MTEXT",     "INSERT", "ATTDEF",         "ATTRIB",    "SHAPE",
        "MULTILEADER", "TOLERANCE", "RTEXT",  "ARCALIGNEDTEXT", "ACAD_TABLE"};
    return endsWith(entity.type, "DIMENSION") ||
           std::find(labels.begin(), labels.end(), entity.type) != labels.end();
}

// What is told in a row of its own. Lines and the like are no labels; that they were left needs no
// explanation each.
bool standsAlone(const LeftEntity& entity) {
    const bool explained = entity.reason == Reason::classNotTurned || !entity.selected;
    return isLabel(entity) || !explained;
}

// "  624 LINE, 124 LWPOLYLINE: class not turned", a line for each reason.
std::string crowds(const std::vector<LeftEntity>& left) {
    std::map<std::string, std::map<std::string, std::size_t>> counts;
    for (const LeftEntity& entity : left) {
        if (standsAlone(entity)) continue;
        const std::string reason = described(entity.reason);
        ++counts[entity.selected ? reason : reason + ", not selected"][tame(entity.type)];
    }
    std::string text;
    for (const auto& [reason, types] : counts) {
        const char* separator = "  ";
        for (const auto& [type, count] : types)
            text += std::exchange(separator, ", ") + counted(count, type.c_str());
        text += ": " + reason + "\n";
    }
    return text;
}

std::string tableOf(const std::vector<LeftEntity>& left) {
    constexpr auto l = Table::Side::left;
    std::vector<LeftEntity> alone;
    std::copy_if(left.begin(), left.end(), std::back_inserter(alone), standsAlone);
    if (alone.empty()) return crowds(left);
    const bool handles = hasHandles(alone);
    Table table({handles ? "handle" : "handle or place", "type", "layer", "reason", "name"},
                {l, l, l, l, l});
    for (const LeftEntity& entity : alone)
        table.add({entity.handle.empty() ? placeOf(entity.hangsAt) : entity.handle,
                   tame(entity.type), tame(entity.layer), reasonOf(entity), tame(entity.wording)});
    return table.text() + crowds(left);
}

std::string lineOf(const PickedLine& line) {
    std::string text = "  along " + nameOf(line) + " on layer " + tame(line.layer);
    if (line.point) text += ", picked at " + fixed(line.point->x) + "," + fixed(line.point->y);
    return text + (line.vertices.empty() ? ", which can't be read as a line\n" : "\n");
}

std::string endOf(const CommandRun& run) {
    using End = editor::CommandResult::End;
    std::string text;
    if (run.end == End::exceptionLeft) text += "  stopped by " + tame(run.exception) + "\n";
    if (run.end == End::cancelled) text += "  did not finish\n";
    if (run.end == End::inputEnded) text += "  did not finish: the answers ended inside it\n";
    if (run.takenBack) text += "  taken back: nothing of it is in the drawing\n";
    return text;
}

// The first findings; a drawing may have a thousand.
std::string findingsOf(const Findings& findings) {
    constexpr std::size_t most = 10;
    std::string text;
    for (std::size_t i = 0; i < std::min(most, findings.all.size()); ++i)
        text += "  " + findings.all[i].where.text() + ": " + tame(findings.all[i].message) + "\n";
    if (findings.count() > most) text += "  and " + counted(findings.count() - most, "more\n");
    return text.empty() ? text : "Odd in it, and kept as it stands:\n" + text;
}

std::string savedText(const Saved& saved) {
    if (saved.file.empty()) return saved.dryRun ? "A dry run: nothing is written." : "Not saved.";
    return (saved.dryRun ? "A dry run; it would be saved as " : "Saved as ") + tame(saved.file) +
           (saved.changedSince ? ", and changed since; that is not saved." : "");
}

std::string textOf(const CommandRun& run) {
    std::string text = "\n" + run.command;
    if (!run.where.empty()) text += " (" + tame(run.where) + ")";
    text += "\n";
    if (run.line) text += lineOf(*run.line);
    if (run.reply) text += "  reply \"" + tame(*run.reply) + "\"\n";
    text += endOf(run);
    if (run.takenBack) return text;
    text += "  " + counted(run.turned.size(), "turned") + " of " +
            counted(run.selected, "selected") + "\n";
    if (!run.turned.empty()) text += tableOf(run.turned);
    if (!run.left.empty())
        text += "  " + counted(run.left.size(), "left") + "\n" + tableOf(run.left);
    if (run.otherChanges != 0)
        text += "  " + counted(run.otherChanges, "changed otherwise, made or erased") + "\n";
    return text;
}

}  // namespace

std::string textReport(const Record& record, const Saved& saved) {
    std::string text = "Report of " + tame(shownText(record.drawing));
    if (!record.version.empty())
        text += ", " + (record.release.empty() ? "" : record.release + ", ") + tame(record.version);
    text += "\n" + savedText(saved) + "\n" + findingsOf(record.findings);
    if (record.runs.empty()) text += "\nNo command was run.\n";
    for (const CommandRun& run : record.runs) text += textOf(run);
    return text + "\nTotal: " + record.outcome().textWithReasons() + "\n";
}

}  // namespace host::console
