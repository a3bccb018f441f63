// The longest frame of a performance (longest_frame.h), for every vector width of the processor.
// And the last step of loading a clip, which expands the maps of all its frames while the picture
// has to go on. The tables go to standard error.
//
//   bench_frame [FRAMES]     FRAMES: measured ones, 400 unless given
#define HWY_WANT_AVX3_DL  // see vector_targets.h

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "common/limits.h"
#include "longest_frame.h"
#include "moxel/moxel.h"
#include "synthetic_clip.h"
#include "tests/support/folder.h"
#include "tests/support/stage_objects.h"
#include "timing.h"
#include "vector_targets.h"

namespace {

constexpr int kPlayedTiles = 20;  // of 100 that change from frame to frame

void timeFrames(const char* name, int frames) {
    std::vector<double> times;
    for (int frame = 0; frame < frames; ++frame) {
        times.push_back(microseconds(drawLongestFrame) / 1000);
    }
    std::sort(times.begin(), times.end());
    const auto at = [&](double share) {
        return times[static_cast<size_t>(share * static_cast<double>(times.size() - 1))];
    };
    fprintf(stderr, "| %-10s | %6.2f | %6.2f | %6.2f | %6.2f |\n", name, at(0), at(0.5), at(0.99),
            at(1));
}

void timeLongestFrame(int frames) {
    prepareLongestFrame();
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
        writeClip("maps.m19", syntheticClip(TileKind::kFlat, frames, changed));
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
    const StageObjects stage(kHdmiWidth, kHdmiHeight);
    timeLongestFrame(frames);
    timeExpansion(100);
    timeExpansion(kPlayedTiles);
    return 0;
}
