#include "core/process.h"

#include <SDL.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace {

constexpr std::array<std::string_view, 4> kDriversWithoutPicture = {"aalib", "caca", "dummy",
                                                                    "offscreen"};

// A descriptor that is closed at the start would go to the next file that is opened, a clip or a
// save, and what is printed would go into that file.
void fillStandardDescriptors() {
    int file = 0;
    while (file >= 0 && file <= STDERR_FILENO) {
        file = open("/dev/null", O_RDWR);
    }
    if (file >= 0) {
        close(file);
    }
}

}  // namespace

void prepareProcess() {
    fillStandardDescriptors();
    // Each line is out at once, into a file or a journal too: the last one names the clip that is
    // being loaded. Whether anybody takes it does not matter.
    setvbuf(stdout, nullptr, _IOLBF, 0);
    signal(SIGPIPE, SIG_IGN);
}

// Where SDL finds no display it goes on to draw with letters, and libcaca, which does that, clears
// the terminal and takes its keys. Its null driver does nothing.
void keepTerminal() {
    setenv("CACA_DRIVER", "null", 1);
}

bool displayFound(int initResult) {
    std::array<char, 32> name = {};
    if (SDL_VideoDriverName(name.data(), static_cast<int>(name.size())) == nullptr) {
        return initResult == 0;
    }
    return std::ranges::find(kDriversWithoutPicture, std::string_view(name.data())) ==
           kDriversWithoutPicture.end();
}
