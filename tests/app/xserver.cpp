#include "app/xserver.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

#include "app/clock.h"

namespace app {

namespace {

constexpr int kTries = 6;
const int kComeUpMs = 10000 * slowness();
const int kAnswerMs = 3000 * slowness();

// The display number that the server writes once it has one; empty when it does not.
std::string readNumber(int pipe) {
    std::string text;
    const long long end = nowMs() + kComeUpMs;
    while (text.empty() || text.back() != '\n') {
        pollfd waiting = {pipe, POLLIN, 0};
        const long long left = end - nowMs();
        char byte = 0;
        if (left <= 0 || poll(&waiting, 1, static_cast<int>(left)) <= 0 ||
            read(pipe, &byte, 1) != 1) {
            return "";
        }
        text += byte;
    }
    text.pop_back();
    return text;
}

// Greets the server on a connection of its own: an Xlib call would wait for ever for a server that
// hangs.
bool answers(const std::string& number) {
    constexpr unsigned char kGreeting[12] = {'l', 0, 11};  // little-endian, protocol 11.0
    const int connection = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    snprintf(address.sun_path, sizeof address.sun_path, "/tmp/.X11-unix/X%s", number.c_str());
    unsigned char reply = 0;
    pollfd waiting = {connection, POLLIN, 0};
    const bool accepted =
        connect(connection, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 &&
        write(connection, kGreeting, sizeof kGreeting) == sizeof kGreeting &&
        poll(&waiting, 1, kAnswerMs) == 1 && read(connection, &reply, 1) == 1 && reply == 1;
    close(connection);
    return accepted;
}

}  // namespace

int usualDepth(int otherwise) {
    const char* depth = getenv("VELMORA_DEPTH");
    return depth != nullptr ? atoi(depth) : otherwise;
}

XServer::XServer(Screen screen) {
    for (int each = 0; each < kTries; ++each) {
        if (tryStart(screen)) {
            return;
        }
        child_.stop(SIGKILL);
        sleepMs(200 * (each + 1));
    }
    throw std::runtime_error("no X server came up");
}

bool XServer::tryStart(Screen screen) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0 || fcntl(ends[1], F_SETFD, 0) != 0) {
        throw std::runtime_error("no pipe for the X server");
    }
    const std::string mode = std::to_string(screen.width) + "x" + std::to_string(screen.height) +
                             "x" + std::to_string(screen.depth);
    ChildSetup setup;
    setup.command = {"Xvfb",      "-displayfd", std::to_string(ends[1]),
                     "-screen",   "0",          mode,
                     "-nolisten", "tcp",        "-noreset"};
    if (!screen.sharedMemory) {
        setup.command.insert(setup.command.end(), {"-extension", "MIT-SHM"});
    }
    child_.start(setup);
    close(ends[1]);
    const std::string number = readNumber(ends[0]);
    close(ends[0]);
    if (number.empty() || !answers(number)) {
        return false;
    }
    display_ = ":" + number;
    return true;
}

}  // namespace app
