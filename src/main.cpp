// Start-up in its fixed order, the loop, and the end. Nothing is released on the way out but the
// work surface: the process ends right after.
#include <SDL.h>
#include <SDL_ttf.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>

#include "common/limits.h"
#include "common/memory.h"
#include "common/messages.h"
#include "common/rgb565.h"
#include "core/all.h"
#include "core/display.h"
#include "core/filters.h"
#include "core/globals.h"
#include "core/process.h"
#include "draw/lib.h"
#include "draw/painter.h"
#include "draw/ttf.h"
#include "editor/editor.h"
#include "input/keys.h"
#include "mainloop.h"
#include "mixer/mix.h"
#include "moxel/moxel.h"
#include "options/options.h"
#include "playlists/playlist.h"
#include "ui/home.h"
#include "ui/intro.h"
#include "ui/overmenu.h"

namespace {

constexpr int kKeyRepeatDelayMs = 500;
constexpr int kKeyRepeatMs = 30;
// Deliberate: the program answers 1 on every path, a normal quit included.
// [quirk_exit_status_is_always_1]
constexpr int kExitStatus = 1;

// The snow effect draws from rand(): every run has its own snow.
struct RandomSeed {
    RandomSeed() { srand(static_cast<unsigned>(time(nullptr))); }
};
const RandomSeed randomSeed;

void allocateBuffers() {
    moxelTiles16 = new uint16_t[kLayers * kFramePixels]();
    moxelAlpha16 = reinterpret_cast<uint8_t*>(new uint16_t[kFramePixels]());
    finalTilesTracks = new uint16_t[kLayers * kFramePixels]();
    finalTilesMix = new uint16_t[kFramePixels]();
}

// False when there is no display to play on.
bool startSdl() {
    keepTerminal();
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

void createFirstObjects() {
    all = new c_all{};
    all->initAll();
    moxel = new c_moxel[kClipSlots];
    keys = new c_keys{};
    keys->initKeys();
    keys->initController();
    playlist = new c_playlist{};
    playlist->initPlaylist();
    playlist->lireXML();
    playlist->scanFamilles();
    editor = new Editor(*playlist);
    _filters = new c_filters{};
    _filters->initFilters();
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

// The preferences are read with the video mode open already.
void applySavedResolution() {
    if (all->appW != screen[1]->w || all->appH != screen[1]->h) {
        all->applyResolution(all->appW, all->appH);
        updateResolution();
    }
}

// These read the application resolution or the work surface.
void createScreens() {
    TTF_Init();
    ttf = new c_ttf{};
    ttf->loadFonts();
    _lib = new c_lib{};
    _lib->initLib();
    _options = new c_options{};
    _options->initOptions();
    applySavedResolution();
    mix = new c_mix{};
    mix->initMix();
    overMenu = new c_overMenu{};
    overMenu->initOverMenu();
    _intro = new c_intro{};
    _intro->initIntro();
    _home = new c_home{};
    _home->initHome();
}

// Null when all is well, else the line that says why there is nothing to run.
const char* startUp() {
    allocateBuffers();
    if (!startSdl()) {
        return msg::kNoDisplay;
    }
    createFirstObjects();
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

int main(int, char**) {
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
