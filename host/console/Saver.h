// Writing the drawing: refused, pretended or done as the options say, and proved when they ask for
// it.
#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>

#include "host/console/Account.h"
#include "host/console/Options.h"
#include "host/console/Printer.h"
#include "host/database/Drawing.h"
#include "host/dxf/Edit.h"

namespace host::console {

// The drawing was not written; what() says which and why. Target and source are as they were.
class NotSaved : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

class Saver {
  public:
    // All outlive this object.
    Saver(const Options& options, Printer& printer, const Account& account)
        : options_(options), printer_(printer), account_(account) {}

    // Writes `drawing` to `target` and says so on standard output, with what it has come to. With
    // --dry-run it says what would be written. With
    // --verify the written file (with --dry-run: what would be written) is compared with the
    // drawing as it was read, and each difference is listed. Throws NotSaved; with --readonly
    // always.
    void save(AcDbDatabase& drawing, const std::filesystem::path& target);

    // What the drawing has come to since it was read: the commands' sentence (Outcome::text), or
    // without anything that they turned or left how many entities differ, "2 entities changed".
    std::string changes(const AcDbDatabase& drawing) const;

    // True when the drawing differs from what was last saved (with --dry-run: would have been), or
    // read.
    bool isModified(const AcDbDatabase& drawing) const;

    // Another drawing has been opened.
    void forget() {
        saved_.clear();
        target_.clear();
    }

    // The file that the open drawing was last written to, or would have been with --dry-run; empty
    // before.
    const std::filesystem::path& target() const { return target_; }

    // True once a drawing was written, or would have been with --dry-run.
    bool hasSaved() const { return hasSaved_; }

    // False once --verify has found a difference that no command made.
    bool proved() const { return proved_; }

    // Throws the NotSaved that saving there would meet before anything is written: --readonly, a
    // name of another format or of another result of this call, a missing folder, a folder or
    // device of that name.
    void demandTarget(const std::filesystem::path& target) const;

  private:
    void write(AcDbDatabase& drawing, const std::filesystem::path& target);
    void verify(const AcDbDatabase& drawing, const std::filesystem::path& target,
                const dxf::Changes& changes);

    const Options& options_;
    Printer& printer_;
    const Account& account_;
    dxf::Changes saved_;
    std::filesystem::path target_;
    bool hasSaved_ = false;
    bool proved_ = true;
};

}  // namespace host::console
