#include "mainloop.h"

#include <SDL.h>
#include <SDL_ttf.h>

#include <cstdio>

#include "common/memory.h"
#include "common/messages.h"
#include "core/all.h"
#include "core/display.h"
#include "core/filters.h"
#include "core/globals.h"
#include "core/pacing.h"
#include "core/present.h"
#include "draw/lib.h"
#include "draw/painter.h"
#include "draw/ttf.h"
#include "editor/editor.h"
#include "input/keys.h"
#include "layout/colours.h"
#include "mixer/mix.h"
#include "moxel/moxel.h"
#include "options/options.h"
#include "playlists/playlist.h"
#include "ui/home.h"
#include "ui/intro.h"
#include "ui/overmenu.h"

namespace {

constexpr int kFpsX = 20;
constexpr int kFpsY = 20;
constexpr int kFpsFont = 1;
constexpr int kLoadingLineY = 7;

// Guard: a slot that is not ready, or a frame past its end, is never drawn.
bool canDraw(const c_moxel* clips, const MixLayer& layer) {
    const c_moxel& clip = clips[layer.deck];
    return clip.state == CLIP_READY && layer.frame >= 0 && layer.frame < clip.frameCount;
}

void drawLayers(c_moxel* clips, const c_mix& state) {
    const MixLayer& top = state.layer[1];
    const MixLayer& bottom = state.layer[0];
    if (canDraw(clips, top)) {
        clips[top.deck].renderMoxel19(1, top.frame, state.mode);
    }
    // With the same clip on both layers the bottom one stays as it was drawn last.
    if (state.mode != MODE_TOP && bottom.deck != top.deck && canDraw(clips, bottom)) {
        clips[bottom.deck].renderMoxel19(0, bottom.frame, state.mode);
    }
}

void drawLoadingLine(SDL_Surface* video, int appWidth, const c_playlist& list) {
    const int tracks = list.familles[list.currentFamille].nbTracks;
    if (list.loading == 0 || list.loadTrack >= tracks) {
        return;
    }
    const int64_t width = int64_t{appWidth} * list.loadTrack / tracks;
    Painter(video).fill(0, kLoadingLineY, static_cast<int>(width), 1, colours::kWhite);
}

// What panel and list drew beside the last picture is not under the next one.
void clearBesidePicture() {
    const VideoOutput output;
    px::blackenOutside(videoView());
}

// A screen that is entered finds nothing of the one before beside its picture or behind it. Mix and
// options clear the video surface themselves.
void clearForNewScreen(c_all& state) {
    if (state.state == state.shown) {
        return;
    }
    state.shown = state.state;
    if (state.state == STATE_HOME || state.state == STATE_PLAYLISTS) {
        clearSurfaces();
    }
}

}  // namespace

void allocateBuffers() {
    moxelTiles16 = new uint16_t[kLayers * kFramePixels]();
    moxelAlpha16 = reinterpret_cast<uint8_t*>(new uint16_t[kFramePixels]());
    finalTilesTracks = new uint16_t[kLayers * kFramePixels]();
    finalTilesMix = new uint16_t[kFramePixels]();
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
    editor = new Editor(*playlist);
    _filters = new c_filters{};
    _filters->initFilters();
}

void createScreens() {
    TTF_Init();
    ttf = new c_ttf{};
    ttf->loadFonts();
    _lib = new c_lib{};
    _lib->initLib();
    _options = new c_options{};
    _options->initOptions();
    // The preferences are read with the video mode open already.
    if (all->appW != screen[1]->w || all->appH != screen[1]->h) {
        all->applyResolution(all->appW, all->appH);
        updateResolution();
    }
    mix = new c_mix{};
    mix->initMix();
    overMenu = new c_overMenu{};
    overMenu->initOverMenu();
    _intro = new c_intro{};
    _intro->initIntro();
    _home = new c_home{};
    _home->initHome();
}

void drawMix() {
    playlist->loopLoadPlaylist();
    if (playlist->loadSlot == 0) {
        SDL_FillRect(screen[1], nullptr, 0);
    } else if (moxel[mix->layer[1].deck].state == CLIP_READY) {
        drawLayers(moxel, *mix);
        clearBesidePicture();
        const MixLayer& active = mix->layer[mix->activeLayer];
        mix->topBar = _options->topbar;
        mix->finRender(active.frame, moxel[active.deck].frameCount);
        if (mixPictureDone != nullptr) {
            mixPictureDone();
        }
        mix->lecture();
        mix->drawUI();
        if (_options->topbar != 0) {
            drawLoadingLine(screen[1], all->appW, *playlist);
        }
    }
    if (all->subState == SUB_OVERMENU) {
        overMenu->drawOverMenu(screen[1]);
    }
}

void drawScreen() {
    clearForNewScreen(*all);
    switch (all->state) {
        case STATE_INTRO:
            _intro->draw(screen[0]);
            if (_intro->counter == 0) {
                all->state = STATE_HOME;
            }
            break;
        case STATE_HOME:
            _home->draw(screen[0]);
            break;
        case STATE_PLAYLISTS:
            playlist->draw(screen[0], _textureUI);
            break;
        case STATE_MIX:
            drawMix();
            break;
        case STATE_OPTIONS:
            _options->draw(screen[1], _textureUI);
            break;
        default:
            break;
    }
    if (all->state == STATE_MIX && _options->fps != 0) {
        ttf->drawIntH(screen[1], fps, kFpsX, kFpsY, colours::kWhite, kFpsFont);
    }
}

void showFrame() {
    if (all->state != STATE_MIX && all->state != STATE_OPTIONS) {
        putPicture(screen[0], screen[1], 0, 0);
    }
    present(screen[1]);
}

// What cannot have its memory is left undone, and the frame shows what is there; the next one tries
// again. Said once for as long as it lasts.
void actAndDraw() {
    static bool wasShort = false;
    const bool isShort = !withinMemory([] {
        keys->updateGKeys();
        keys->actions();
        drawScreen();
    });
    if (isShort && !wasShort) {
        puts(msg::kNoMemory);
    }
    wasShort = isShort;
}

int mainLoop() {
    // Deliberate: the rate is set anew before it is read, so the speed keys of the mix screen write
    // it without any effect on the pace. [quirk_speed_keys_do_not_change_the_pace]
    mix->targetFps = kStagePace;
    const int now = static_cast<int>(SDL_GetTicks());
    tempsActuel = now;
    const int interval = frameInterval(mix->targetFps);
    if (!frameDue(now, tempsPrecedent, interval)) {
        SDL_Delay(static_cast<uint32_t>(untilFrame(now, tempsPrecedent, interval)));
        return isExit;
    }
    // A clock that was set back tells no rate: the last one stands.
    if (now > tempsPrecedent) {
        fps = frameRate(now - tempsPrecedent);
    }
    tempsPrecedent = now;

    mix->nbDecks = playlist->loadSlot;
    actAndDraw();
    showFrame();
    return isExit;
}
