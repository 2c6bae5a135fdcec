#include "host/console/TerminalSignals.h"

#include <csignal>

#include "host/editor/Session.h"

#ifndef _WIN32
#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#endif

namespace host::console {

namespace {

volatile std::sig_atomic_t cancelled = 0;
volatile std::sig_atomic_t resized = 0;
volatile std::sig_atomic_t continued = 0;

bool taken(volatile std::sig_atomic_t& noted) {
    const bool was = noted != 0;
    noted = 0;
    return was;
}

void askToStop() {
    cancelled = 1;
    if (editor::Session* session = editor::Session::current()) session->interrupt();
}

using Handler = void (*)(int);

}  // namespace

bool TerminalSignals::takeCancel() {
    return taken(cancelled);
}

bool TerminalSignals::takeResize() {
    return taken(resized);
}

bool TerminalSignals::takeContinue() {
    return taken(continued);
}

#ifdef _WIN32

namespace {

Handler interruptBefore = SIG_DFL;

void onInterrupt(int) {
    std::signal(SIGINT, onInterrupt);  // each one takes its handler away
    askToStop();
}

}  // namespace

TerminalSignals::TerminalSignals() {
    cancelled = 0;
    interruptBefore = std::signal(SIGINT, onInterrupt);
    if (interruptBefore == SIG_IGN) std::signal(SIGINT, SIG_IGN);
}

TerminalSignals::~TerminalSignals() {
    if (interruptBefore != SIG_ERR) std::signal(SIGINT, interruptBefore);
}

int TerminalSignals::descriptor() const {
    return -1;
}

void TerminalSignals::drain() {}

#else

namespace {

// A pipe, so that waiting for a key ends whenever the signal comes, between two instructions too.
int ends[2] = {-1, -1};
termios found{};
bool isTerminal = false;

void wake() {
    const int before = errno;
    const char byte = 0;
    if (write(ends[1], &byte, 1) < 0) {
    }  // it is full: whoever waits wakes up all the same
    errno = before;
}

void onInterrupt(int) {
    askToStop();
    wake();
}

void onResize(int) {
    resized = 1;
    wake();
}

void onContinue(int) {
    continued = 1;
    wake();
}

void onTerminate(int signal) {
    if (isTerminal) tcsetattr(STDIN_FILENO, TCSANOW, &found);
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

struct Watched {
    int signal;
    Handler handler;
    Handler before;
};
std::array<Watched, 7> watched{{{SIGINT, onInterrupt, SIG_DFL},
                                {SIGWINCH, onResize, SIG_DFL},
                                {SIGCONT, onContinue, SIG_DFL},
                                {SIGTERM, onTerminate, SIG_DFL},
                                {SIGHUP, onTerminate, SIG_DFL},
                                {SIGQUIT, onTerminate, SIG_DFL},
                                {SIGABRT, onTerminate, SIG_DFL}}};

}  // namespace

TerminalSignals::TerminalSignals() {
    cancelled = resized = continued = 0;
    if (pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) ends[0] = ends[1] = -1;
    isTerminal = tcgetattr(STDIN_FILENO, &found) == 0;
    for (Watched& each : watched) {
        each.before = std::signal(each.signal, each.handler);
        if (each.before == SIG_IGN) std::signal(each.signal, SIG_IGN);
    }
}

TerminalSignals::~TerminalSignals() {
    for (const Watched& each : watched)
        if (each.before != SIG_ERR) std::signal(each.signal, each.before);
    for (int& end : ends) {
        if (end >= 0) close(end);
        end = -1;
    }
}

int TerminalSignals::descriptor() const {
    return ends[0];
}

void TerminalSignals::drain() {
    char bytes[64];
    while (ends[0] >= 0 && read(ends[0], bytes, sizeof bytes) > 0) {
    }
}

#endif

}  // namespace host::console
