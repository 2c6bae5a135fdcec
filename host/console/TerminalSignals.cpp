#include "host/console/TerminalSignals.h"

#include <csignal>

#include "host/editor/Session.h"

#ifndef _WIN32
#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#endif

namespace host::console {

namespace {

volatile std::sig_atomic_t cancelled = 0;
volatile std::sig_atomic_t resized = 0;

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
Handler interruptBefore = SIG_DFL;

}  // namespace

bool TerminalSignals::takeCancel() {
    return taken(cancelled);
}

bool TerminalSignals::takeResize() {
    return taken(resized);
}

#ifdef _WIN32

namespace {

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
Handler resizeBefore = SIG_DFL;
Handler terminateBefore = SIG_DFL;

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

void onTerminate(int signal) {
    if (isTerminal) tcsetattr(STDIN_FILENO, TCSANOW, &found);
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

}  // namespace

TerminalSignals::TerminalSignals() {
    cancelled = 0;
    resized = 0;
    if (pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) ends[0] = ends[1] = -1;
    isTerminal = tcgetattr(STDIN_FILENO, &found) == 0;
    interruptBefore = std::signal(SIGINT, onInterrupt);
    if (interruptBefore == SIG_IGN) std::signal(SIGINT, SIG_IGN);
    resizeBefore = std::signal(SIGWINCH, onResize);
    terminateBefore = std::signal(SIGTERM, onTerminate);
    if (terminateBefore == SIG_IGN) std::signal(SIGTERM, SIG_IGN);
}

TerminalSignals::~TerminalSignals() {
    if (interruptBefore != SIG_ERR) std::signal(SIGINT, interruptBefore);
    if (resizeBefore != SIG_ERR) std::signal(SIGWINCH, resizeBefore);
    if (terminateBefore != SIG_ERR) std::signal(SIGTERM, terminateBefore);
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
