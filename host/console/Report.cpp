#include "host/console/Report.h"

#include <utility>

#include "host/console/Files.h"

namespace host::console {

ReportFile::ReportFile(const Options& options, const Record& record, Printer& printer)
    : options_(options), record_(record), printer_(printer) {}

void ReportFile::prepare(const Saved& saved) {
    if (options_.report == "-") return;
    provideFolder(options_.report, options_.folders);
    auto file = std::make_unique<dxf::ReplacingFile>(options_.report);
    file->write(contents(saved));
    file_ = std::move(file);
    prepared_ = saved;
}

void ReportFile::publish(const Saved& saved) {
    if (options_.report == "-") return printer_.result(textReport(record_, saved));
    if (file_ == nullptr || !(prepared_ == saved)) {
        file_.reset();
        prepare(saved);
    }
    const std::unique_ptr<dxf::ReplacingFile> file = std::move(file_);
    file->commit();
}

std::string ReportFile::contents(const Saved& saved) const {
    if (hasEnding(options_.report, ".json")) return jsonReport(record_, saved);
    if (hasEnding(options_.report, ".csv")) return csvReport(record_);
    return textReport(record_, saved);
}

}  // namespace host::console
