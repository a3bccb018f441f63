#include "program.h"

#include <SDL.h>
#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>

#include "common/memory.h"
#include "common/messages.h"
#include "common/rgb565.h"
#include "common/video_drivers.h"
#include "core/all.h"
#include "core/globals.h"
#include "draw/lib.h"
#include "draw/painter.h"
#include "draw/ttf.h"
#include "mainloop.h"
#include "playlists/playlist.h"

namespace {

constexpr int kKeyRepeatDelayMs = 500;
constexpr int kKeyRepeatMs = 30;
// Deliberate: the program answers 1 on every path, a normal quit included.
// [quirk_exit_status_is_always_1]
constexpr int kExitStatus = 1;

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

// Before a file is opened and before a line is printed.
void prepareProcess() {
    fillStandardDescriptors();
    // Each line is out at once, into a file or a journal too: the last one names the clip that is
    // being loaded. Whether anybody takes it does not matter.
    setvbuf(stdout, nullptr, _IOLBF, 0);
    signal(SIGPIPE, SIG_IGN);
}

// With the answer of SDL_Init. False as well when SDL took a driver that nobody can look at.
bool displayFound(int initResult) {
    char name[32] = {};
    if (SDL_VideoDriverName(name, sizeof name) == nullptr) {
        return initResult == 0;
    }
    return showsPictures(name);
}

// False when there is no display to play on.
bool startSdl() {
    setenv(kLettersVariable, kNoLetters, 1);
    const int result = SDL_Init(SDL_INIT_VIDEO | SDL_INIT_JOYSTICK);
    if (!displayFound(result)) {
        return false;
    }
    SDL_WM_SetCaption("Velmora", "Velmora");
    SDL_EnableUNICODE(1);
    SDL_EnableKeyRepeat(kKeyRepeatDelayMs, kKeyRepeatMs);
    joy = SDL_JoystickOpen(0);
    _nbJoySticks = SDL_NumJoysticks();
    _textureUI = loadPicture("data/textureUI.png");
    return true;
}

void printResolutions() {
    printf(msg::kScreenResolutionFormat, all->screenW, all->screenH);
    if (all->screenW != kHdmiWidth || all->screenH != kHdmiHeight) {
        puts(msg::kUseHdmiSize);
        puts(msg::kOverscanAdvice);
    }
    printf(msg::kAppResolutionFormat, all->appW, all->appH);
}

SDL_Surface* openVideo() {
    return SDL_SetVideoMode(all->appW, all->appH, px::kDepth, 0);
}

// Null when all is well, else the message that says which step failed.
const char* openSurfaces() {
    screen[1] = openVideo();
    if (screen[1] == nullptr) {
        return msg::kNoWindowA;
    }
    screen[0] = SDL_ConvertSurface(screen[1], screen[1]->format, 0);
    if (screen[0] == nullptr) {
        return msg::kNoWindowB;
    }
    // Deliberate: the video surface is released and the same mode opened once more; what counts
    // from here on is the second surface. [quirk_video_mode_is_opened_twice]
    SDL_FreeSurface(screen[1]);
    screen[1] = openVideo();
    return screen[1] == nullptr ? msg::kNoWindowC : nullptr;
}

// Null when all is well, else the line that says why there is nothing to run.
const char* startUp() {
    allocateBuffers();
    if (!startSdl()) {
        return msg::kNoDisplay;
    }
    createFirstObjects();
    playlist->lireXML();
    playlist->scanFamilles();
    all->checkComposite();
    printResolutions();
    const char* failure = openSurfaces();
    if (failure != nullptr) {
        return failure;
    }
    x2 = 2;
    SDL_ShowCursor(1);
    createScreens();
    return _lib->scratch != nullptr ? nullptr : msg::kNoMemoryToStart;
}

}  // namespace

int runProgram() {
    prepareProcess();
    puts(msg::kStarting);
    maxDeck = 0;
    const char* failure = nullptr;
    if (!withinMemory([&] { failure = startUp(); })) {
        failure = msg::kNoMemoryToStart;
    }
    if (failure != nullptr) {
        puts(failure);
        SDL_Quit();
        return kExitStatus;
    }

    debugCount = 0;
    tempsPrecedent = 0;
    tempsActuel = 0;
    while (g_bMainLoop) {
        g_bMainLoop = mainLoop() != 0;
    }
    SDL_FreeSurface(screen[0]);
    SDL_Quit();
    return kExitStatus;
}
