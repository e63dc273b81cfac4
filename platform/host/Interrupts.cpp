#include "host/Interrupts.h"

#include <csignal>

namespace qnl::host {

namespace {

/// What a signal handler may write.
volatile std::sig_atomic_t& Noted() {
    static volatile std::sig_atomic_t noted = 0;
    return noted;
}

extern "C" void NoteSignal(int signal) {
    Noted() = signal;
    std::signal(signal, SIG_DFL);
}

}  // namespace

void NoteInterrupts() {
    Noted() = 0;
    std::signal(SIGINT, NoteSignal);
    std::signal(SIGTERM, NoteSignal);
#ifdef SIGPIPE
    std::signal(SIGPIPE, SIG_IGN);
#endif
}

int NotedInterrupt() {
    return Noted();
}

void RaiseIfInterrupted() {
    if (NotedInterrupt() != 0) {
        throw Interrupted("interrupted");
    }
}

}  // namespace qnl::host
