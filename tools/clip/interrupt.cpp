#include "tools/clip/interrupt.h"

#include <csignal>

#include "tools/clip/errors.h"

namespace maker {

namespace {

volatile std::sig_atomic_t stopAsked = 0;

void askStop(int) {
    stopAsked = 1;
}

}  // namespace

void catchInterrupts() {
    struct sigaction action {};
    action.sa_handler = askStop;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGPIPE}) {
        sigaction(signal, &action, nullptr);
    }
    // A file that grows too large is then an error of the call that writes it.
    std::signal(SIGXFSZ, SIG_IGN);
}

bool interrupted() {
    return stopAsked != 0;
}

void stopIfInterrupted() {
    if (interrupted()) {
        throw Interrupted();
    }
}

}  // namespace maker
