#include "host/console/Interruption.h"

#include <array>
#include <csignal>
#include <cstddef>
#include <utility>

namespace host::console {

namespace {

#ifdef SIGHUP
constexpr std::array<int, 3> watched{SIGINT, SIGTERM, SIGHUP};
#else
constexpr std::array<int, 2> watched{SIGINT, SIGTERM};
#endif

using Handler = void (*)(int);

volatile std::sig_atomic_t interrupted = 0;
std::array<Handler, watched.size()> earlier{};

void note(int signal) {
    interrupted = signal;
}

}  // namespace

Interruption::Interruption() {
    interrupted = 0;
    for (std::size_t i = 0; i < watched.size(); ++i) {
        earlier[i] = std::signal(watched[i], note);
        if (earlier[i] == SIG_IGN) std::signal(watched[i], SIG_IGN);
    }
}

Interruption::~Interruption() {
    bool passOn = false;
    for (std::size_t i = 0; i < watched.size(); ++i) {
        if (earlier[i] != SIG_ERR) std::signal(watched[i], earlier[i]);
        const bool listened =
            earlier[i] != SIG_ERR && earlier[i] != SIG_DFL && earlier[i] != SIG_IGN;
        passOn = passOn || (listened && watched[i] == interrupted);
    }
    if (passOn && interrupted != SIGINT) std::raise(interrupted);
}

dxf::Progress Interruption::watching(dxf::Progress meter) const {
    return [meter = std::move(meter)](double fraction) {
        if (interrupted != 0 && fraction < 1) throw Happened();
        if (meter) meter(fraction);
    };
}

}  // namespace host::console
