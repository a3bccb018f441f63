#include "longest_frame.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>

#include "core/filters.h"
#include "core/globals.h"
#include "mixer/mix.h"
#include "synthetic_clip.h"

namespace {

constexpr int kDeckFrames = 64;

void loadDeck(int deck, bool alpha) {
    const std::string name = "deck" + std::to_string(deck) + ".m19";
    writeClip(name, syntheticClip(TileKind::kShortRuns, kDeckFrames, 100, alpha));
    loadAlmost(moxel[deck], name);
    moxel[deck].loopLoad(1);
}

// Each in its costliest direction.
void switchFiltersOn() {
    constexpr FilterSlot kSlots[] = {
        {FILTER_INVERT, 0, 1, 0}, {FILTER_BURNED, 0, 1, 0},   {FILTER_SNOW, 0, 1, 0},
        {FILTER_ZOOM, 0, 1, 0},   {FILTER_GAME_BOY, 0, 1, 0}, {FILTER_MIRROR, 1, 1, 0},
        {FILTER_HUE, 2, 1, 0},    {FILTER_SCROLL, 0, 1, 0},
    };
    for (auto& layer : _filters->slots) {
        std::copy(std::begin(kSlots), std::end(kSlots), layer);
    }
}

}  // namespace

void writeClip(const std::string& name, const std::vector<uint8_t>& bytes) {
    std::ofstream("videos/" + name, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
}

void loadAlmost(c_moxel& clip, const std::string& name) {
    clip.init("", name);
    while (clip.loadStage != 3) {
        if (clip.loopLoad(65000) == 0) {
            fprintf(stderr, "%s cannot be played\n", name.c_str());
            exit(1);
        }
    }
}

void prepareLongestFrame() {
    loadDeck(0, false);
    loadDeck(1, true);
    mix->mode = MODE_KEY;
    mix->layer[0].deck = 0;
    mix->layer[1].deck = 1;
    switchFiltersOn();
}

void drawLongestFrame() {
    for (const int layer : {1, 0}) {
        c_moxel& clip = moxel[mix->layer[layer].deck];
        clip.redrawCount = 1;  // every tile
        clip.renderMoxel19(layer, mix->layer[layer].frame, mix->mode);
    }
    mix->finRender(mix->layer[1].frame, kDeckFrames);
    mix->lecture();
}
