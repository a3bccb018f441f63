// The longest frame of a performance: two clips drawn whole, the top one with alpha, keyed over the
// bottom one, every filter on both layers, doubled onto a 1280 x 720 surface; for every vector
// width of the processor. And the last step of loading a clip, which expands the maps of all its
// frames while the picture has to go on. The tables go to standard error.
//
//   bench_frame [FRAMES]     FRAMES: measured ones, 400 unless given
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "stage.h"
#include "synthetic_clip.h"
#include "tests/support/folder.h"
#include "timing.h"
#include "vector_targets.h"

namespace {

constexpr int kClipFrames = 64;
constexpr int kPlayedTiles = 20;  // of 100 that change from frame to frame

void write(const std::string& name, const std::vector<uint8_t>& bytes) {
    std::ofstream(name, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
}

// Everything but the expansion of the maps.
void loadAlmost(c_moxel& clip, const std::string& name) {
    clip.init("", name);
    while (clip.loadStage != 3) {
        if (clip.loopLoad(65000) == 0) {
            fprintf(stderr, "%s cannot be played\n", name.c_str());
            exit(1);
        }
    }
}

void loadDeck(int deck, bool alpha) {
    const std::string name = "deck" + std::to_string(deck) + ".m19";
    write("videos/" + name, syntheticClip(TileKind::kShortRuns, kClipFrames, 100, alpha));
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

double longestFrame() {
    return microseconds([] {
        for (const int layer : {1, 0}) {
            c_moxel& clip = moxel[mix->layer[layer].deck];
            clip.redrawCount = 1;  // every tile
            clip.renderMoxel19(layer, mix->layer[layer].frame, mix->mode);
        }
        mix->finRender(mix->layer[1].frame, kClipFrames);
        mix->lecture();
    });
}

void timeFrames(const char* name, int frames) {
    std::vector<double> times;
    for (int frame = 0; frame < frames; ++frame) {
        times.push_back(longestFrame() / 1000);
    }
    std::sort(times.begin(), times.end());
    const auto at = [&](double share) {
        return times[static_cast<size_t>(share * static_cast<double>(times.size() - 1))];
    };
    fprintf(stderr, "| %-10s | %6.2f | %6.2f | %6.2f | %6.2f |\n", name, at(0), at(0.5), at(0.99),
            at(1));
}

void timeLongestFrame(int frames) {
    loadDeck(0, false);
    loadDeck(1, true);
    mix->mode = MODE_KEY;
    mix->layer[0].deck = 0;
    mix->layer[1].deck = 1;
    switchFiltersOn();
    fprintf(stderr, "\n| %-10s | %6s | %6s | %6s | %6s |\n|---|---|---|---|---|\n", "frame, ms",
            "best", "median", "99 %", "worst");
    for (const VectorTarget& target : vectorTargets()) {
        useTarget(target);
        timeFrames(target.name.c_str(), frames);
    }
}

void timeExpansion(int changed) {
    fprintf(stderr, "\n| %d %% change | ms |\n|---|---|\n", changed);
    const auto clip = std::make_unique<c_moxel>();
    for (const int frames : {16, 64, 128, 256}) {
        write("videos/maps.m19", syntheticClip(TileKind::kFlat, frames, changed));
        loadAlmost(*clip, "maps.m19");
        // A further step of a ready clip expands again.
        std::vector<Timed> step = {{[&] { clip->loopLoad(1); }, {}}};
        const double first = microseconds(step[0].work) / 1000;
        takeTurns(step, 30);
        fprintf(stderr, "| %d frames | %.2f, the first time %.2f |\n", frames, step[0].best / 1000,
                first);
        clip->killRAM();
    }
}

}  // namespace

int main(int argc, char** argv) {
    const int frames = argc > 1 ? std::max(1, atoi(argv[1])) : 400;
    const TemporaryFolder folder;
    std::filesystem::create_directory("videos");
    createStage();
    timeLongestFrame(frames);
    timeExpansion(100);
    timeExpansion(kPlayedTiles);
    return 0;
}
