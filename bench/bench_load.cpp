// Loads a playlist as the stage does, one step a frame, while the first clip plays and is mixed
// into a 1280 x 720 surface, and says how long the longest frame was and how much memory the set
// takes.
//
//   cd FOLDER && bench_load [PLAYLIST]    FOLDER holds videos/ and userdata/playlists.xml
//                                         PLAYLIST counts from 0
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "common/limits.h"
#include "mixer/mix.h"
#include "moxel/moxel.h"
#include "playlists/playlist.h"
#include "tests/support/stage_objects.h"

namespace {

using Clock = std::chrono::steady_clock;

double msSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

long residentMb() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.rfind("VmRSS:", 0) == 0) {
            return strtol(line.c_str() + 6, nullptr, 10) / 1024;
        }
    }
    return 0;
}

struct Frame {
    double load;  // ms
    double play;
};

Frame runFrame() {
    const Clock::time_point start = Clock::now();
    playlist->loopLoadPlaylist();
    const double load = msSince(start);
    mix->nbDecks = playlist->loadSlot;
    const MixLayer& top = mix->layer[1];
    if (moxel[top.deck].state == CLIP_READY) {
        moxel[top.deck].renderMoxel19(1, top.frame, mix->mode);
        mix->finRender(top.frame, moxel[top.deck].frameCount);
        mix->lecture();
    }
    return {load, msSince(start) - load};
}

double longest(std::vector<double> times, double share) {
    const auto at = static_cast<size_t>(share * static_cast<double>(times.size() - 1));
    std::nth_element(times.begin(), times.begin() + static_cast<long>(at), times.end());
    return times[at];
}

}  // namespace

int main(int argc, char** argv) {
    const StageObjects stage(kHdmiWidth, kHdmiHeight);
    playlist->lireXML();
    const int index = argc > 1 ? atoi(argv[1]) : 0;
    if (index < 0 || index >= playlist->nbFamilles) {
        fprintf(stderr, "there is no playlist %d\n", index);
        return 1;
    }
    const long before = residentMb();
    playlist->initLoad(index);
    std::vector<double> frames;
    std::vector<double> loads;
    while (playlist->loading != 0) {
        const Frame frame = runFrame();
        frames.push_back(frame.load + frame.play);
        loads.push_back(frame.load);
    }
    if (frames.empty()) {
        fprintf(stderr, "playlist %d is empty\n", index);
        return 1;
    }
    fprintf(stderr,
            "%d clips in %zu frames (%.1f s at the stage's pace)\n"
            "frame: median %.2f ms, 99 %% %.2f ms, longest %.2f ms (of 39 ms)\n"
            "load step: median %.2f ms, longest %.2f ms\n"
            "resident: %ld MB before, %ld MB loaded\n",
            playlist->loadSlot, frames.size(), static_cast<double>(frames.size()) / 25.6,
            longest(frames, 0.5), longest(frames, 0.99), longest(frames, 1.0), longest(loads, 0.5),
            longest(loads, 1.0), before, residentMb());
    return 0;
}
