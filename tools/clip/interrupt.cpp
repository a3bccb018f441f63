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
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        sigaction(signal, &action, nullptr);
    }
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
