// The report as a table: a row for each entity that a run turned or left. Who changes the columns
// changes docs/report.md with it.
#include "host/console/Csv.h"
#include "host/console/Report.h"

namespace host::console {

namespace {

void heads(CsvWriter& csv) {
    for (const char* head :
         {"run",      "command",     "outcome",    "handle",   "type",    "class",  "layer",
          "name",     "angleBefore", "angleAfter", "xBefore",  "yBefore", "xAfter", "yAfter",
          "hangsAtX", "hangsAtY",    "segment",    "distance", "reason",  "detail", "selected"})
        csv.text(head);
    csv.endRow();
}

void begin(CsvWriter& csv, std::size_t number, const CommandRun& run, const char* outcome,
           const EntityNote& entity) {
    csv.number(number);
    csv.text(run.command);
    csv.text(outcome);
    csv.text(entity.handle);
    csv.text(entity.type);
    csv.text(entity.className);
    csv.text(entity.layer);
    csv.text(entity.wording);
}

void empties(CsvWriter& csv, int count) {
    for (int i = 0; i < count; ++i) csv.empty();
}

void turned(CsvWriter& csv, const TurnedEntity& entity) {
    csv.number(entity.before.degrees);
    csv.number(entity.after.degrees);
    csv.number(entity.before.insertion.x);
    csv.number(entity.before.insertion.y);
    csv.number(entity.after.insertion.x);
    csv.number(entity.after.insertion.y);
    csv.number(entity.hangsAt.x);
    csv.number(entity.hangsAt.y);
    if (entity.segment) {
        csv.number(static_cast<std::size_t>(*entity.segment));
        csv.number(entity.distance);
    } else {
        empties(csv, 2);
    }
    empties(csv, 3);
    csv.endRow();
}

void left(CsvWriter& csv, const LeftEntity& entity) {
    empties(csv, 6);
    if (entity.hangsAt) {
        csv.number(entity.hangsAt->x);
        csv.number(entity.hangsAt->y);
    } else {
        empties(csv, 2);
    }
    empties(csv, 2);
    csv.text(described(entity.reason));
    csv.text(entity.detail);
    csv.boolean(entity.selected);
    csv.endRow();
}

}  // namespace

std::string csvReport(const Record& record) {
    CsvWriter csv;
    heads(csv);
    std::size_t number = 0;
    for (const CommandRun& run : record.runs) {
        ++number;
        for (const TurnedEntity& entity : run.turned) {
            begin(csv, number, run, "turned", entity);
            turned(csv, entity);
        }
        for (const LeftEntity& entity : run.left) {
            begin(csv, number, run, "left", entity);
            left(csv, entity);
        }
    }
    return csv.take();
}

}  // namespace host::console
