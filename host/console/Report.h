// The report of a session: what was turned and what was left, and why, as text for people, as JSON
// and as a table for machines. docs/report.md tells both, docs/report.schema.json is the schema of
// the JSON.
//
// The same account gives the same bytes, in every build and every locale.
#pragma once

#include <memory>
#include <string>

#include "host/console/Account.h"
#include "host/console/Options.h"
#include "host/console/Printer.h"
#include "host/dxf/Files.h"

namespace host::console {

// What became of the drawing.
struct Saved {
    std::string file;  // the one last written, with `dryRun` the one that would have been; or empty
    bool dryRun = false;  // nothing is written
    // The drawing was changed after that, so that not all that is told is in the file.
    bool changedSince = false;

    bool operator==(const Saved& other) const {
        return file == other.file && dryRun == other.dryRun && changedSince == other.changedSince;
    }
};

std::string textReport(const Record& record, const Saved& saved);
std::string jsonReport(const Record& record, const Saved& saved);
std::string csvReport(const Record& record);

// The report of `record` as a file, or on standard output where --report is "-". JSON when the name
// ends in ".json", a table when it ends in ".csv" (in any case), otherwise text.
class ReportFile {
  public:
    // All outlive this object.
    ReportFile(const Options& options, const Record& record, Printer& printer);

    // Has the report written but for its name, so that what comes next, the saving of the drawing,
    // happens only when the report can be had. Raises dxf::WriteError.
    void prepare(const Saved& saved);

    // Gives the report, the one that was prepared when it says the same. Raises dxf::WriteError;
    // what stood under the name still stands there then.
    void publish(const Saved& saved);

  private:
    std::string contents(const Saved& saved) const;

    const Options& options_;
    const Record& record_;
    Printer& printer_;
    Saved prepared_;
    std::unique_ptr<dxf::ReplacingFile> file_;
};

}  // namespace host::console
