// Loads a playlist as the stage does, one step a frame, while the first clip plays and is mixed
// into a 1280 x 720 surface, and says how long the longest frame was and how much memory the set
// takes.
//
//   cd FOLDER && bench_load [PLAYLIST [card]]    FOLDER holds videos/ and userdata/playlists.xml
//                                                PLAYLIST counts from 0
//                                                card: from a double of a slow one
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <numeric>
#include <string>
#include <vector>

#include "clip/load_cost.h"
#include "common/limits.h"
#include "mixer/mix.h"
#include "moxel/moxel.h"
#include "playlists/playlist.h"
#include "tests/support/slow_card.h"
#include "tests/support/stage_objects.h"

namespace {

constexpr double kFrameMs = clip::kStepSeconds * 1000;

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

// Takes what the frame waited for the card to what it took, and has the rest of its 39 ms pass.
void waitForCard(Frame& frame) {
#ifdef SLOW_CARD
    static double waitedBefore = 0;
    const double waited = slow_card::facts().waited - waitedBefore;
    waitedBefore += waited;
    frame.load += waited;
    slow_card::pass(std::max(kFrameMs, frame.load + frame.play) - waited);
#else
    (void)frame;
#endif
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
    const bool fromCard = argc > 2 && strcmp(argv[2], "card") == 0;
#ifdef SLOW_CARD
    if (fromCard) {
        slow_card::insert("videos");
    }
#endif
    playlist->initLoad(index);
    std::vector<double> frames;
    std::vector<double> loads;
    while (playlist->loading != 0) {
        Frame frame = runFrame();
        if (fromCard) {
            waitForCard(frame);
        }
        frames.push_back(frame.load + frame.play);
        loads.push_back(frame.load);
    }
    const double sum = std::accumulate(frames.begin(), frames.end(), 0.0);
    const auto late =
        std::count_if(frames.begin(), frames.end(), [](double frame) { return frame > kFrameMs; });
    if (frames.empty()) {
        fprintf(stderr, "playlist %d is empty\n", index);
        return 1;
    }
    fprintf(stderr,
            "%d clips in %zu frames (%.1f s at the stage's pace)\n"
            "frame: mean %.2f ms, median %.2f ms, 99 %% %.2f ms, longest %.2f ms; %ld over 39 ms\n"
            "load step: median %.2f ms, longest %.2f ms\n"
            "resident: %ld MB before, %ld MB loaded\n",
            playlist->loadSlot, frames.size(), static_cast<double>(frames.size()) / 25.6,
            sum / static_cast<double>(frames.size()), longest(frames, 0.5), longest(frames, 0.99),
            longest(frames, 1.0), static_cast<long>(late), longest(loads, 0.5), longest(loads, 1.0),
            before, residentMb());
    return 0;
}
