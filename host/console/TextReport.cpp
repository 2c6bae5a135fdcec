// The report as text for people: a heading, for each command a table of what it turned and one of
// what it left, and the totals. Angles are degrees from 0 to 360.
#include <charconv>
#include <cmath>
#include <vector>

#include "host/console/Report.h"
#include "host/console/Table.h"

namespace host::console {

namespace {

std::string fixed(double value) {
    constexpr int decimals = 3;
    char digits[400];
    const auto result =
        std::to_chars(digits, digits + sizeof digits, value, std::chars_format::fixed, decimals);
    const std::string text(digits, result.ptr);
    return text == "-0.000" ? "0.000" : text;
}

std::string wholeTurn(double degrees) {
    double angle = std::fmod(degrees, 360.0);
    if (angle < 0) angle += 360.0;
    const std::string text = fixed(angle);
    return text == "360.000" ? "0.000" : text;
}

std::string moved(const TurnedEntity& entity) {
    const double distance = entity.before.insertion.distanceTo(entity.after.insertion);
    return distance == 0 ? "-" : fixed(distance);
}

std::string counted(std::size_t count, const char* what) {
    return std::to_string(count) + " " + what;
}

std::string nameOf(const EntityNote& entity) {
    return tame(entity.type) + " " + (entity.handle.empty() ? "without a handle" : entity.handle);
}

std::string tableOf(const std::vector<TurnedEntity>& turned) {
    constexpr auto l = Table::Side::left;
    constexpr auto r = Table::Side::right;
    Table table({"handle", "type", "layer", "was", "is", "segment", "distance", "moved", "name"},
                {l, l, l, r, r, r, r, r, l});
    for (const TurnedEntity& entity : turned)
        table.add({entity.handle, tame(entity.type), tame(entity.layer),
                   wholeTurn(entity.before.degrees), wholeTurn(entity.after.degrees),
                   entity.segment ? std::to_string(*entity.segment) : "-",
                   entity.segment ? fixed(entity.distance) : "-", moved(entity),
                   tame(entity.wording)});
    return table.text();
}

std::string reasonOf(const LeftEntity& entity) {
    std::string reason = described(entity.reason);
    if (entity.reason == Reason::classNotTurned) reason += ": " + tame(entity.className);
    if (!entity.detail.empty()) reason += ": " + tame(entity.detail);
    return entity.selected ? reason : reason + ", not selected";
}

std::string tableOf(const std::vector<LeftEntity>& left) {
    constexpr auto l = Table::Side::left;
    Table table({"handle", "type", "layer", "reason", "name"}, {l, l, l, l, l});
    for (const LeftEntity& entity : left)
        table.add({entity.handle, tame(entity.type), tame(entity.layer), reasonOf(entity),
                   tame(entity.wording)});
    return table.text();
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
    std::string text = "Report of " + tame(record.drawing);
    if (!record.version.empty())
        text += ", " + (record.release.empty() ? "" : record.release + ", ") + tame(record.version);
    text += "\n";
    if (saved.file.empty())
        text += saved.dryRun ? "A dry run: nothing is written.\n" : "Not saved.\n";
    else
        text += (saved.dryRun ? "A dry run; it would be saved as " : "Saved as ") +
                tame(saved.file) + "\n";
    if (record.runs.empty()) text += "\nNo command was run.\n";
    for (const CommandRun& run : record.runs) text += textOf(run);
    return text + "\nTotal: " + record.outcome().textWithReasons() + "\n";
}

}  // namespace host::console
