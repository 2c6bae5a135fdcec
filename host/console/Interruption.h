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

    // From here on until the object is gone, SIGINT, SIGTERM and (not under Windows) SIGHUP are
    // noted. One that the caller of the program has told to be ignored stays ignored. One object at
    // a time.
    Interruption();
    // A request to end goes on to whoever listened to it before: a person's session gives up the
    // file and ends. Where nobody did, giving up is all.
    ~Interruption();
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;

    // `meter`, which may be empty, with a look at what was noted before each call of it. What is
    // complete (1) is no longer interrupted.
    dxf::Progress watching(dxf::Progress meter) const;
};

}  // namespace host::console
