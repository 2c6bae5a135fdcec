// The picture that --picture asks for: of the drawing as it stands, and of what the commands did.
#pragma once

#include <dbmain.h>

#include <stdexcept>

#include "host/console/Account.h"
#include "host/console/Options.h"
#include "host/console/Printer.h"
#include "host/picture/Change.h"

namespace host::console {

// The picture was not written; what() says which and why, as a whole sentence. What stood there is
// as it was.
class NotPictured : public std::runtime_error {
  public:
    NotPictured(Exit code, const std::string& sentence)
        : std::runtime_error(sentence), code_(code) {}
    Exit code() const { return code_; }

  private:
    Exit code_;
};

// What the runs that stand came to (Record::outcome): each entity turned by any of them with the
// rotation it had before the first that did, what was left and turned by none, and the line of the
// last one that had one, with those of the others.
picture::Change changeOf(const Record& record);

// Throws NotPictured (Exit::usage) when --picture asks for a format that this build can't write.
// Called before anything is done, so that nothing is done in vain.
void demandPicture(const Options& options);

// Writes the picture and says so. `drawing` is named as `name` in it. Throws NotPictured
// (Exit::unwritable).
void writePicture(const AcDbDatabase& drawing, const std::filesystem::path& name,
                  const Record& record, const Options& options, Printer& printer);

}  // namespace host::console
