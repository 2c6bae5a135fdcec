// The report as JSON. Who changes what is written here changes docs/report.schema.json and
// docs/report.md with it, and counts `formatVersion` up when a reader of the old one would stumble.
#include "host/console/Files.h"
#include "host/console/Json.h"
#include "host/console/Options.h"
#include "host/console/Report.h"
#include "host/console/ReportParts.h"

namespace host::console {

namespace {

using Layout = JsonWriter::Layout;

constexpr std::size_t formatVersion = 2;

const char* keyOf(editor::CommandResult::End end) {
    using End = editor::CommandResult::End;
    switch (end) {
        case End::done:
            return "done";
        case End::cancelled:
            return "cancelled";
        case End::inputEnded:
            return "inputEnded";
        case End::exceptionLeft:
            return "exception";
        case End::unknown:
        case End::failed:
            break;
    }
    return "failed";
}

void point(JsonWriter& json, const AcGePoint3d& point) {
    json.beginArray(Layout::row);
    json.number(point.x);
    json.number(point.y);
    json.number(point.z);
    json.endArray();
}

void note(JsonWriter& json, const EntityNote& entity) {
    json.key("handle").textOrNull(entity.handle);
    json.key("type").text(entity.type);
    json.key("class").text(entity.className);
    json.key("layer").text(entity.layer);
}

void line(JsonWriter& json, const PickedLine& line) {
    json.beginObject();
    note(json, line);
    json.key("pickedAt");
    line.point ? point(json, *line.point) : json.null();
    json.key("vertices").beginArray();
    for (const AcGePoint3d& vertex : line.vertices) point(json, vertex);
    json.endArray();
    json.endObject();
}

void turned(JsonWriter& json, const TurnedEntity& entity) {
    json.beginObject(Layout::row);
    note(json, entity);
    json.key("name").text(entity.wording);
    json.key("angleBefore").number(entity.before.degrees);
    json.key("angleAfter").number(entity.after.degrees);
    json.key("insertionBefore");
    point(json, entity.before.insertion);
    json.key("insertionAfter");
    point(json, entity.after.insertion);
    json.key("hangsAt");
    point(json, entity.hangsAt);
    json.key("segment");
    entity.segment ? json.number(static_cast<std::size_t>(*entity.segment)) : json.null();
    json.key("distance");
    entity.segment ? json.number(entity.distance) : json.null();
    json.endObject();
}

void left(JsonWriter& json, const LeftEntity& entity) {
    json.beginObject(Layout::row);
    note(json, entity);
    json.key("name").text(entity.wording);
    json.key("hangsAt");
    entity.hangsAt ? point(json, *entity.hangsAt) : json.null();
    json.key("reason").text(keyOf(entity.reason));
    json.key("detail").textOrNull(entity.detail);
    json.key("selected").boolean(entity.selected);
    json.endObject();
}

void run(JsonWriter& json, const CommandRun& run) {
    json.beginObject();
    json.key("command").text(run.command);
    json.key("where").textOrNull(run.where);
    json.key("end").text(keyOf(run.end));
    json.key("exception").textOrNull(run.exception);
    json.key("takenBack").boolean(run.takenBack);
    json.key("line");
    run.line ? line(json, *run.line) : json.null();
    json.key("reply");
    run.reply ? json.text(*run.reply) : json.null();
    json.key("selected").number(run.selected);
    json.key("otherChanges").number(run.otherChanges);
    json.key("turned").beginArray();
    for (const TurnedEntity& entity : run.turned) turned(json, entity);
    json.endArray();
    json.key("left").beginArray();
    for (const LeftEntity& entity : run.left) left(json, entity);
    json.endArray();
    json.endObject();
}

void totals(JsonWriter& json, const Record& record) {
    const Outcome outcome = record.outcome();
    const database::TurnCounts counts = outcome.counts();
    json.beginObject();
    json.key("selected").number(record.selected());
    json.key("turned").number(counts.turned);
    json.key("unchanged").number(counts.unchanged);
    json.key("left").number(counts.left);
    json.key("leftByReason");
    writeReasons(json, outcome.leftByReason());
    json.endObject();
}

}  // namespace

void writeReasons(JsonWriter& json, const ReasonCounts& counts) {
    json.beginObject(Layout::row);
    for (std::size_t i = 0; i < counts.size(); ++i)
        json.key(keyOf(allReasons[i])).number(counts[i]);
    json.endObject();
}

void writeFindings(JsonWriter& json, const Findings& findings) {
    json.key("findings").beginArray();
    for (const dxf::Finding& finding : findings.all) {
        const bool inLine = finding.where.unit == dxf::Position::Unit::line;
        const auto number = static_cast<std::size_t>(finding.where.number);
        json.beginObject(Layout::row);
        json.key("line");
        inLine ? json.number(number) : json.null();
        json.key("byte");
        inLine ? json.null() : json.number(number);
        json.key("message").text(finding.message);
        json.endObject();
    }
    json.endArray();
    json.key("omittedFindings").number(findings.omitted);
}

std::string jsonReport(const Record& record, const Saved& saved) {
    JsonWriter json;
    json.beginObject();
    json.key("format").text("orlinth report");
    json.key("formatVersion").number(formatVersion);
    json.key("program").text(programVersion());
    json.key("drawing").beginObject();
    json.key("file").text(shownText(record.drawing));
    json.key("release").textOrNull(record.release);
    json.key("version").textOrNull(record.version);
    writeFindings(json, record.findings);
    json.endObject();
    json.key("savedAs").textOrNull(saved.file);
    json.key("changedSince").boolean(saved.changedSince);
    json.key("dryRun").boolean(saved.dryRun);
    json.key("totals");
    totals(json, record);
    json.key("runs").beginArray();
    for (const CommandRun& each : record.runs) run(json, each);
    json.endArray();
    json.endObject();
    return json.take();
}

}  // namespace host::console
