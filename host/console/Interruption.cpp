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
volatile std::sig_atomic_t objects = 0;
volatile std::sig_atomic_t patient = 0;  // of the objects, those that note every signal
std::array<Handler, watched.size()> earlier{};

void note(int number) {
    if (interrupted != 0 && patient == 0) {
        std::signal(number, SIG_DFL);
        std::raise(number);
        return;
    }
#ifdef _WIN32
    std::signal(number, note);  // each signal takes its handler away there
#endif
    interrupted = number;
}

}  // namespace

Interruption::Interruption(Second second) : second_(second) {
    if (second_ == Second::isNoted) patient = patient + 1;
    objects = objects + 1;
    if (objects > 1) return;
    interrupted = 0;
    for (std::size_t i = 0; i < watched.size(); ++i) {
        earlier[i] = std::signal(watched[i], note);
        if (earlier[i] == SIG_IGN) std::signal(watched[i], SIG_IGN);
    }
}

Interruption::~Interruption() {
    if (second_ == Second::isNoted) patient = patient - 1;
    objects = objects - 1;
    if (objects > 0) return;
    bool passOn = false;
    for (std::size_t i = 0; i < watched.size(); ++i) {
        if (earlier[i] != SIG_ERR) std::signal(watched[i], earlier[i]);
        const bool listened =
            earlier[i] != SIG_ERR && earlier[i] != SIG_DFL && earlier[i] != SIG_IGN;
        passOn = passOn || (listened && watched[i] == interrupted);
    }
    if (passOn && interrupted != SIGINT) std::raise(interrupted);
}

bool Interruption::happened() const {
    return interrupted != 0;
}

dxf::Progress Interruption::watching(dxf::Progress meter) const {
    return [meter = std::move(meter)](double fraction) {
        if (interrupted != 0 && fraction < 1) throw Happened();
        if (meter) meter(fraction);
    };
}

}  // namespace host::console
