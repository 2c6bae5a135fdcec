#include "host/console/Report.h"

#include <utility>

#include "host/console/Files.h"
#include "host/console/Options.h"
#include "host/editor/Words.h"

namespace host::console {

ReportFile::ReportFile(std::filesystem::path target, Printer& printer)
    : target_(std::move(target)), printer_(printer) {}

void ReportFile::prepare(const Record& record, const Saved& saved) {
    if (target_ == "-") return;
    if (std::string missing = missingFolder(target_); !missing.empty())
        throw dxf::WriteError(utf8(target_), std::move(missing));
    prepared_ = contents(record, saved);
    file_ = std::make_unique<dxf::ReplacingFile>(target_);
    file_->write(prepared_);
}

void ReportFile::publish(const Record& record, const Saved& saved) {
    if (target_ == "-") return printer_.print(textReport(record, saved));
    if (file_ == nullptr || prepared_ != contents(record, saved)) {
        file_.reset();
        prepare(record, saved);
    }
    const std::unique_ptr<dxf::ReplacingFile> file = std::move(file_);
    file->commit();
}

std::string ReportFile::contents(const Record& record, const Saved& saved) const {
    const std::wstring extension = editor::fromUtf8(utf8(target_.extension()));
    return editor::equalIgnoringCase(extension, L".json") ? jsonReport(record, saved)
                                                          : textReport(record, saved);
}

}  // namespace host::console
