#include "tests/support/stage_objects.h"

#include <utility>

#include "common/limits.h"
#include "common/rgb565.h"
#include "core/all.h"
#include "core/filters.h"
#include "editor/editor.h"
#include "input/keys.h"
#include "mainloop.h"
#include "mixer/mix.h"
#include "moxel/moxel.h"
#include "playlists/playlist.h"

namespace {

void destroyPlaylist() {
    if (playlist == nullptr) {
        return;
    }
    if (playlist->previewClip != nullptr) {
        playlist->previewClip->killRAM();
        delete playlist->previewClip;
    }
    if (playlist->dirHandle != nullptr) {
        closedir(playlist->dirHandle);
    }
    delete std::exchange(editor, nullptr);
    delete std::exchange(playlist, nullptr);
}

}  // namespace

void createObjects() {
    allocateBuffers();
    createFirstObjects();
}

void destroyObjects() {
    delete std::exchange(mix, nullptr);
    destroyPlaylist();
    for (int slot = 0; moxel != nullptr && slot < kClipSlots; ++slot) {
        moxel[slot].killRAM();
    }
    delete[] std::exchange(moxel, nullptr);
    delete std::exchange(_filters, nullptr);
    delete std::exchange(keys, nullptr);
    delete std::exchange(all, nullptr);
    delete[] std::exchange(moxelTiles16, nullptr);
    delete[] reinterpret_cast<uint16_t*>(std::exchange(moxelAlpha16, nullptr));
    delete[] std::exchange(finalTilesTracks, nullptr);
    delete[] std::exchange(finalTilesMix, nullptr);
}

StageObjects::StageObjects() {
    createObjects();
}

StageObjects::StageObjects(int w, int h) : StageObjects() {
    all->appW = w;
    all->appH = h;
    mix = new c_mix{};
    mix->initMix();
    picture.resize(static_cast<size_t>(w) * static_cast<size_t>(h));
    video_ = SDL_CreateRGBSurfaceFrom(picture.data(), w, h, px::kDepth, w * 2, px::kRedMask,
                                      px::kGreenMask, px::kBlueMask, 0);
    screen[1] = video_;
}

StageObjects::~StageObjects() {
    if (video_ != nullptr) {
        SDL_FreeSurface(video_);
        screen[1] = nullptr;
    }
    destroyObjects();
}
