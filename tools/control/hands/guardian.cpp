#include "tools/control/hands/guardian.h"

#include <X11/Xlib.h>
#include <X11/extensions/XTest.h>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <bitset>
#include <cerrno>
#include <csignal>

namespace control {

namespace {

using Codes = std::bitset<256>;

void letGo(const Codes& down) {
    Display* display = XOpenDisplay(nullptr);
    if (display == nullptr) {
        return;
    }
    for (size_t code = 0; code < down.size(); ++code) {
        if (down[code] && code == kButtonCode) {
            XTestFakeButtonEvent(display, Button1, False, CurrentTime);
        } else if (down[code]) {
            XTestFakeKeyEvent(display, static_cast<unsigned>(code), False, CurrentTime);
        }
    }
    XCloseDisplay(display);
}

// What is down when the other end is closed, by its owner or by its end.
Codes listenUntilClosed(int line) {
    Codes down;
    std::array<uint8_t, 2> change{};
    while (true) {
        const ssize_t got = read(line, change.data(), change.size());
        if (got == static_cast<ssize_t>(change.size())) {
            down[change[0]] = change[1] != 0;
        } else if (got >= 0 || errno != EINTR) {
            return down;
        }
    }
}

// The terminal's signals are for the bridge, whose end is heard; and files that it has open are not
// kept open here.
[[noreturn]] void guard(int line) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE}) {
        std::signal(signal, SIG_IGN);
    }
    setsid();  // who kills the bridge's whole group leaves the guardian
    constexpr int kFirst = 3;
    const int kept = dup2(line, kFirst);
    close_range(kFirst + 1, ~0U, 0);
    const int nowhere = open("/dev/null", O_RDWR);
    for (int file = 0; file < kFirst; ++file) {
        dup2(nowhere, file);
    }
    const Codes down = listenUntilClosed(kept);
    if (down.any()) {
        letGo(down);
    }
    _exit(0);
}

}  // namespace

Guardian::Guardian() {
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0) {
        return;
    }
    child_ = fork();
    if (child_ == 0) {
        close(ends[1]);
        guard(ends[0]);
    }
    close(ends[0]);
    line_ = ends[1];
}

Guardian::~Guardian() {
    close(line_);
    while (child_ > 0 && waitpid(child_, nullptr, 0) < 0 && errno == EINTR) {
    }
}

void Guardian::note(uint8_t code, bool down) {
    const std::array<uint8_t, 2> change = {code, static_cast<uint8_t>(down ? 1 : 0)};
    // A guardian that has died guards nothing, and must not end the bridge by SIGPIPE; one that is
    // stopped must not stop it.
    send(line_, change.data(), change.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
}

}  // namespace control
