#include "tools/base/errors.h"

#include <unistd.h>

#include <csignal>

namespace maker {

namespace {

volatile std::sig_atomic_t stopAsked = 0;

// A signal that comes between a look at the flag and a read that waits does not end that read, so
// another one follows every second until the program has ended.
void askStop(int) {
    stopAsked = 1;
    alarm(1);
}

}  // namespace

void catchInterrupts() {
    struct sigaction action {};
    action.sa_handler = askStop;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGPIPE, SIGALRM}) {
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
