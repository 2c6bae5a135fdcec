// What the commands of a session come to: the exit code, and in words what a command itself was
// silent about.
#pragma once

#include <functional>
#include <string>

#include "host/console/Options.h"
#include "host/editor/Session.h"

namespace host::console {

class Verdict {
  public:
    // `person`: somebody sits at a terminal, sees what goes wrong and tries again. Then the last
    // command that a module offers decides; otherwise the first that went wrong does. `options`
    // outlives this object; what is said speaks of what was typed there.
    Verdict(const Options& options, bool person) : options_(options), person_(person) {}

    // Takes note of a command that has ended, says on standard error what it did not say itself,
    // and stops a script whose next answers would be taken for others.
    void hear(editor::Session& session, editor::CommandResult& result);

    // A failure that a command of the host met and that has a code of its own, such as a drawing
    // that can't be written.
    void fail(Exit code);

    Exit exit() const { return exit_; }
    bool endedWell() const { return exit_ == Exit::done; }

  private:
    void judge(Exit code, bool decidesForPerson);
    std::wstring reason(const editor::Session& session, const editor::PromptRecord& prompt) const;

    const Options& options_;
    const bool person_;
    Exit exit_ = Exit::done;
    Exit pending_ = Exit::done;  // of the host's command that is running
};

}  // namespace host::console
