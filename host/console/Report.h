// The report of a session: what was turned and what was left, and why, as text for people and as
// JSON for machines. docs/report.md tells both, docs/report.schema.json is the schema of the JSON.
//
// The same account gives the same bytes, in every build and every locale.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "host/console/Account.h"
#include "host/console/Printer.h"
#include "host/dxf/Files.h"

namespace host::console {

// What became of the drawing.
struct Saved {
    std::string file;  // the one last written, with `dryRun` the one that would have been; or empty
    bool dryRun = false;  // nothing is written
};

std::string textReport(const Record& record, const Saved& saved);
std::string jsonReport(const Record& record, const Saved& saved);

// The report as a file, or on standard output where `target` is "-". JSON when the name ends in
// ".json" (in any case), otherwise text.
class ReportFile {
  public:
    // `printer` outlives this object.
    ReportFile(std::filesystem::path target, Printer& printer);

    // Has the report written but for its name, so that what comes next, the saving of the drawing,
    // happens only when the report can be had. Raises dxf::WriteError.
    void prepare(const Record& record, const Saved& saved);

    // Gives the report, the one that was prepared when it says the same. Raises dxf::WriteError;
    // what stood under the name still stands there then.
    void publish(const Record& record, const Saved& saved);

  private:
    std::string contents(const Record& record, const Saved& saved) const;

    const std::filesystem::path target_;
    Printer& printer_;
    std::string prepared_;
    std::unique_ptr<dxf::ReplacingFile> file_;
};

}  // namespace host::console
