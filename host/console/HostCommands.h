// The commands of the program itself: files, leaving, undo, scripts, help.
#pragma once

#include <filesystem>
#include <functional>

#include "host/console/Account.h"
#include "host/console/Saver.h"
#include "host/console/Verdict.h"
#include "host/editor/Session.h"

namespace host::console {

// What the commands work on besides the session; all of it outlives the session.
struct Workplace {
    const Options& options;
    Printer& printer;
    Saver& saver;
    Verdict& verdict;
    Account& account;
    std::filesystem::path
        drawing;  // where the open drawing came from, or was last saved as; empty: no drawing
    bool discarded = false;  // QUIT was told to drop the changes
    bool person = false;     // somebody sits at a terminal: Ctrl-C cancels and does not end
};

// Opens `path` in place of the drawing that is open; tells a person what has been opened, and
// everybody what is odd in it. Throws dxf::ReadError, and UnreadableFile when
// a person interrupts; all is as it was then.
void openDrawing(editor::Session& session, Workplace& workplace, const std::filesystem::path& path);

// The commands that docs/using.md tells, with what each asks and says. `workplace` outlives the
// session.
void addHostCommands(editor::Session& session, Workplace& workplace);

}  // namespace host::console
