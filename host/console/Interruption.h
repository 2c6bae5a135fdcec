// Ctrl-C, and the requests of the system to end, while a drawing is being saved: the saving is
// given up, so that no half-written file stays behind. The same while a person's session opens a
// drawing. At all other times they end the program at once, as they do by default, or do what
// TerminalSignals.h tells; nothing is lost on disk then.
#pragma once

#include "host/dxf/Document.h"

namespace host::console {

class Interruption {
  public:
    // Thrown by what `watching` gives, once somebody has interrupted.
    class Happened {};

    enum class Second { isNoted, endsTheProgram };

    // From here on until the object is gone, SIGINT, SIGTERM and (not under Windows) SIGHUP are
    // noted. One that the caller of the program has told to be ignored stays ignored. Objects may
    // nest; what was noted holds for all of them. `second`: what the next signal does while no
    // other object wants it noted.
    explicit Interruption(Second second = Second::isNoted);
    // A request to end goes on to whoever listened to it before: a person's session gives up the
    // file and ends. Where nobody did, giving up is all.
    ~Interruption();
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;

    // True once somebody has interrupted.
    bool happened() const;

    // `meter`, which may be empty, with a look at what was noted before each call of it. What is
    // complete (1) is no longer interrupted.
    dxf::Progress watching(dxf::Progress meter) const;

  private:
    const Second second_;
};

}  // namespace host::console
