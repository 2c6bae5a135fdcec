// Who changes what is written here changes docs/summary.schema.json and docs/report.md with it, and
// counts `formatVersion` up when a reader of the old one would stumble.
#include "host/console/Summary.h"

#include "host/console/Csv.h"
#include "host/console/Files.h"
#include "host/console/Json.h"
#include "host/console/ReportParts.h"
#include "host/dxf/Files.h"

namespace host::console {

namespace {

constexpr std::size_t formatVersion = 1;

void tried(JsonWriter& json, const TaskResult& result) {
    json.key("exit").number(static_cast<std::size_t>(result.exit));
    json.key("sentence").text(sentenceOf(result));
    json.key("savedAs").textOrNull(result.savedAs);
    json.key("changedSince").boolean(result.changedSince);
    json.key("turned");
    result.session ? json.number(result.session->counts.turned) : json.null();
    json.key("unchanged");
    result.session ? json.number(result.session->counts.unchanged) : json.null();
    json.key("left");
    result.session ? json.number(result.session->counts.left) : json.null();
    json.key("leftByReason");
    if (result.session)
        writeReasons(json, result.session->left);
    else
        json.null();
    writeFindings(json, result.session ? result.session->findings : Findings());
}

void notTried(JsonWriter& json) {
    json.key("exit").null();
    json.key("sentence").text("not tried");
    json.key("savedAs").null();
    json.key("changedSince").boolean(false);
    for (const char* key : {"turned", "unchanged", "left", "leftByReason"}) json.key(key).null();
    writeFindings(json, {});
}

void heads(CsvWriter& csv) {
    for (const char* head :
         {"drawing", "exit", "sentence", "savedAs", "changedSince", "turned", "unchanged", "left"})
        csv.text(head);
    for (const Reason reason : allReasons) csv.text(keyOf(reason));
    csv.text("findingCount");
    csv.text("findings");
    csv.endRow();
}

void empties(CsvWriter& csv, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) csv.empty();
}

void tried(CsvWriter& csv, const TaskResult& result) {
    csv.number(static_cast<std::size_t>(result.exit));
    csv.text(sentenceOf(result));
    csv.text(result.savedAs);
    csv.boolean(result.changedSince);
    if (!result.session) return empties(csv, 3 + allReasons.size() + 2);
    csv.number(result.session->counts.turned);
    csv.number(result.session->counts.unchanged);
    csv.number(result.session->counts.left);
    for (const std::size_t count : result.session->left) csv.number(count);
    csv.number(result.session->findings.count());
    csv.text(result.session->findings.text());
}

}  // namespace

std::string jsonSummary(const Summary& summary) {
    JsonWriter json;
    json.beginObject();
    json.key("format").text("orlinth summary");
    json.key("formatVersion").number(formatVersion);
    json.key("program").text(programVersion());
    json.key("exit").number(static_cast<std::size_t>(summary.exit));
    json.key("dryRun").boolean(summary.tasks.front().dryRun);
    json.key("drawings").beginArray();
    for (std::size_t i = 0; i < summary.tasks.size(); ++i) {
        json.beginObject();
        json.key("drawing").textOrNull(shownName(summary.tasks[i].drawing));
        if (i < summary.results.size())
            tried(json, summary.results[i]);
        else
            notTried(json);
        json.endObject();
    }
    json.endArray();
    json.endObject();
    return json.take();
}

std::string csvSummary(const Summary& summary) {
    CsvWriter csv;
    heads(csv);
    for (std::size_t i = 0; i < summary.tasks.size(); ++i) {
        csv.text(shownName(summary.tasks[i].drawing));
        if (i < summary.results.size()) {
            tried(csv, summary.results[i]);
        } else {
            csv.empty();
            csv.text("not tried");
            empties(csv, 5 + allReasons.size() + 2);
        }
        csv.endRow();
    }
    return csv.take();
}

void writeSummary(const std::filesystem::path& file, const Summary& summary) {
    dxf::ReplacingFile target(file);
    target.write(hasEnding(file, ".json") ? jsonSummary(summary) : csvSummary(summary));
    target.commit();
}

}  // namespace host::console
