#include "tools/ask/keys.h"

#include <poll.h>
#include <unistd.h>

namespace ask {

namespace {

constexpr long kPause = 150;  // milliseconds; a held key repeats within 100

// Whether anything came.
bool drained() {
    bool any = false;
    pollfd input = {STDIN_FILENO, POLLIN, 0};
    char bytes[256];
    while (poll(&input, 1, 0) > 0 && (input.revents & POLLIN) != 0 &&
           read(STDIN_FILENO, bytes, sizeof bytes) > 0) {
        any = true;
    }
    return any;
}

}  // namespace

Keys::Keys() {
    there_ = isatty(STDIN_FILENO) != 0 && tcgetattr(STDIN_FILENO, &before_) == 0;
    if (there_) {
        termios asking = before_;
        asking.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO | ISIG);
        asking.c_cc[VMIN] = 1;
        asking.c_cc[VTIME] = 0;
        there_ = tcsetattr(STDIN_FILENO, TCSAFLUSH, &asking) == 0;
    }
}

Keys::~Keys() {
    if (there_) {
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &before_);
    }
}

bool Keys::pressed(long now) {
    if (!there_ || !drained()) {
        return false;
    }
    const bool fresh = now - last_ >= kPause;
    last_ = now;
    return fresh;
}

}  // namespace ask
